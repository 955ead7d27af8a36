// Cutting the lines of a drawing with a closed one.

#include "model/CDibujo.h"
#include "model/DibujoInterno.h"
#include "model/Geos.h"
#include "model/IPorcentaje.h"
#include "model/Predicados.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace Vertiz {
namespace {

using predicados::CPlano;
using CPuntos = std::vector<CCoor3D<double>>;

bool EsFinito(const CCoor3D<double>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

// The closed line that cuts, in real coordinates.
class CLimite {
  public:
    explicit CLimite(CPuntos anillo) : m_Anillo(std::move(anillo)) {
        for (const auto& p : m_Anillo)
            m_Caja.Nuevo({p.x, p.y, 0});
    }

    bool EsValido() const {
        return m_Anillo.size() >= 4 && m_Anillo.front() == m_Anillo.back() &&
               std::all_of(m_Anillo.begin(), m_Anillo.end(), EsFinito);
    }

    // Cuts a segment. @param paso  told each part in its order: from where to where, 0 to 1, and whether it is inside
    template <class F>
    void Parte(const CCoor3D<double>& a, const CCoor3D<double>& b, F paso) const {
        CMaximas<double> caja({a.x, a.y, 0}, {b.x, b.y, 0});
        if (!caja.InterMax(m_Caja, 0)) {
            paso(0.0, 1.0, false);
            return;
        }
        std::vector<double> cortes{0.0, 1.0};
        std::vector<std::pair<double, double>> enBorde;
        for (std::size_t i = 1; i < m_Anillo.size(); i++) {
            const CPlano c(m_Anillo[i - 1]), d(m_Anillo[i]);
            if (std::max(c.x, d.x) < caja.Minima().x || std::min(c.x, d.x) > caja.Maxima().x) continue;
            const auto contactos = predicados::Contactos(a, b, c, d);
            for (const auto& contacto : contactos)
                cortes.push_back(contacto.t);
            if (contactos.nCuantos == 2) {
                enBorde.push_back(std::minmax(contactos.lugares[0].t, contactos.lugares[1].t));
            }
        }
        std::sort(cortes.begin(), cortes.end());
        for (std::size_t i = 1; i < cortes.size(); i++) {
            if (cortes[i] <= cortes[i - 1]) continue;
            const double medio = (cortes[i - 1] + cortes[i]) / 2;
            const bool borde = std::any_of(enBorde.begin(), enBorde.end(),
                                           [&](const auto& t) { return t.first <= medio && medio <= t.second; });
            paso(cortes[i - 1], cortes[i], borde || EstaDentro(a + (b - a) * medio));
        }
    }

  private:
    bool EstaDentro(const CCoor3D<double>& p) const {
        const std::span<const CCoor3D<double>> anillo(m_Anillo);
        return predicados::PuntoEnPoligono(CPlano(p), anillo) != TD_FUERA;
    }

    CPuntos m_Anillo;
    CMaximas<double> m_Caja;
};

// The point of a segment at t; its ends come back as they are.
CCoor3D<double> En(const CCoor3D<double>& a, const CCoor3D<double>& b, double t) {
    if (t <= 0) return a;
    return t >= 1 ? b : a + (b - a) * t;
}

// The pieces of a line inside or outside.
std::vector<CPuntos> Corta(const CPuntos& linea, const CLimite& limite, bool dentro) {
    std::vector<CPuntos> trozos;
    bool abierto = false;  // the last piece goes on
    bool desdePrincipio = false;
    for (std::size_t i = 1; i < linea.size(); i++) {
        if (linea[i].x == linea[i - 1].x && linea[i].y == linea[i - 1].y) {
            // Straight up, or a repeated point: it goes where its neighbours go.
            if (abierto) trozos.back().push_back(linea[i]);
            continue;
        }
        limite.Parte(linea[i - 1], linea[i], [&](double desde, double hasta, bool esDentro) {
            if (esDentro != dentro) {
                abierto = false;
                return;
            }
            if (!abierto) {
                trozos.push_back({En(linea[i - 1], linea[i], desde)});
                if (i == 1 && desde == 0) desdePrincipio = true;
            }
            abierto = true;
            trozos.back().push_back(En(linea[i - 1], linea[i], hasta));
        });
    }
    // The beginning of a closed line is no end.
    if (linea.front() == linea.back() && trozos.size() > 1 && abierto && desdePrincipio) {
        trozos.back().insert(trozos.back().end(), trozos.front().begin() + 1, trozos.front().end());
        trozos.front() = std::move(trozos.back());
        trozos.pop_back();
    }
    return trozos;
}

template <class T>
void InsertaTrozo(CDibujo<T>& salida, const CEntidadDigi<T>& original, CLinea<T> trozo) {
    for (const CAtrDigi& a : original.Atributos())
        trozo.InsertaAtr(a);
    salida.Inserta(trozo);
}

template <class T>
void CortaArea(const CLinea<T>& linea, const GEOSGeometry* limite, bool dentro, CDibujo<T>& salida) {
    const geos::Geometria area = geos::DePoligono(linea);
    if (!area || !limite) return;
    const geos::Geometria resto(dentro ? GEOSIntersection_r(geos::Contexto(), area.get(), limite)
                                       : GEOSDifference_r(geos::Contexto(), area.get(), limite));
    if (!resto) return;
    for (auto& trozo : geos::ALineas<T>(resto.get(), linea)) {
        if (trozo.EsCerrada()) InsertaTrozo(salida, linea, std::move(trozo));
    }
}

}  // namespace

template <class T>
int CDibujo<T>::CortaConLimite(const CDibujo& entrada, const CLinea<T>& limite, CDibujo& salida, int dentro,
                               int abiertas, IPorcentaje* porcentaje) {
    salida.Clear();
    const CLimite corte(CPuntos(limite.Puntos().begin(), limite.Puntos().end()));
    if (!corte.EsValido()) return 0;
    const geos::Geometria area = abiertas ? nullptr : geos::DePoligono(limite);

    for (unsigned i = 0; i < entrada.Cantidad(); i++) {
        const CEntidadDigi<T>& e = *entrada[i];
        if (porcentaje && porcentaje->Paso(entrada.GetMensajes(), int(i) + 1, int(entrada.Cantidad()), 0) == 0) {
            return 2;
        }
        if (!EsLinea(e) || e.NPuntos() < 2) continue;
        if (!abiertas && e.EsCerrada()) {
            CortaArea(static_cast<const CLinea<T>&>(e), area.get(), dentro != 0, salida);
            continue;
        }
        const CPuntos puntos(e.Puntos().begin(), e.Puntos().end());
        if (!std::all_of(puntos.begin(), puntos.end(), EsFinito)) continue;
        for (const CPuntos& trozo : Corta(puntos, corte, dentro != 0)) {
            CLinea<T> linea(static_cast<const CTipoDat&>(e));
            for (const auto& p : trozo)
                linea << CCoor3D<T>(p);
            InsertaTrozo(salida, e, std::move(linea));
        }
    }
    return 1;
}

template int CDibujo<int>::CortaConLimite(const CDibujo&, const CLinea<int>&, CDibujo&, int, int, IPorcentaje*);
template int CDibujo<double>::CortaConLimite(const CDibujo&, const CLinea<double>&, CDibujo&, int, int, IPorcentaje*);

}  // namespace Vertiz
