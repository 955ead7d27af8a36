// How lines lie to points, rectangles and each other in plan.

#include "model/CLinea.h"
#include "model/Predicados.h"

#include <algorithm>
#include <optional>

namespace Vertiz {
namespace {

using predicados::CContacto;
using predicados::CPlano;

struct CSegmento {
    CPlano a, b;
};

// The sides of a line; with bAnillo also the one that closes it.
template <class T>
std::vector<CSegmento> Lados(std::span<const CCoor3D<T>> puntos, bool bAnillo) {
    std::vector<CSegmento> lados;
    lados.reserve(puntos.size());
    for (std::size_t i = 1; i < puntos.size(); ++i)
        lados.push_back({CPlano(puntos[i - 1]), CPlano(puntos[i])});
    if (bAnillo && puntos.size() > 2 && !(CPlano(puntos.back()) == CPlano(puntos.front()))) {
        lados.push_back({CPlano(puntos.back()), CPlano(puntos.front())});
    }
    return lados;
}

// Walks along a line and notes on which sides of a polygon it runs. It is cut at every place where it meets the
// polygon's border, and each piece is judged by its middle: exact on integers, since a proper crossing needs no
// judging, and the middle between two points of the model is a double.
template <class T>
class CRecorrido {
  public:
    explicit CRecorrido(std::span<const CCoor3D<T>> poligono) : m_Poligono(poligono), m_Lados(Lados(poligono, true)) {}

    // False once the line is known to cross.
    bool Anda(const CSegmento& s) {
        m_Cortes.clear();
        for (const CSegmento& lado : m_Lados) {
            for (const CContacto& contacto : predicados::Contactos(s.a, s.b, lado.a, lado.b)) {
                if (contacto.bPropio) return false;
                m_Cortes.push_back(contacto);
            }
        }
        // Without a contact the segment stays on the side where the line already is.
        if (m_Cortes.empty() && (m_bDentro || m_bFuera)) return true;
        m_bToca = m_bToca || !m_Cortes.empty();
        m_Cortes.push_back({s.a, 0.0});
        m_Cortes.push_back({s.b, 1.0});
        std::sort(m_Cortes.begin(), m_Cortes.end(), [](const auto& a, const auto& b) { return a.t < b.t; });
        for (std::size_t i = 1; i < m_Cortes.size(); ++i) {
            if (m_Cortes[i].lugar == m_Cortes[i - 1].lugar) continue;
            Juzga((m_Cortes[i].lugar + m_Cortes[i - 1].lugar) * 0.5);
        }
        return !(m_bDentro && m_bFuera);
    }

    [[nodiscard]] CTipoDentro Resultado() const {
        if (m_bToca) return m_bFuera ? TD_BORDE_FUERA : TD_BORDE_DENTRO;
        return m_bDentro ? TD_DENTRO : TD_FUERA;
    }

  private:
    void Juzga(const CPlano& p) {
        const CTipoDentro donde = predicados::PuntoEnPoligono(p, m_Poligono);
        m_bDentro = m_bDentro || donde == TD_DENTRO;
        m_bFuera = m_bFuera || donde == TD_FUERA;
    }

    std::span<const CCoor3D<T>> m_Poligono;
    std::vector<CSegmento> m_Lados;
    std::vector<CContacto> m_Cortes;
    bool m_bDentro = false;
    bool m_bFuera = false;
    bool m_bToca = false;
};

double Altura(double a, double b, double parte) {
    return a + (b - a) * parte;
}

// Boxes in plan that can't meet spare the pairs of segments.
bool Lejos(const CSegmento& s, const CMaximas<double>& caja) {
    CMaximas<double> propia;
    propia.Nuevo({s.a.x, s.a.y, 0.0});
    propia.Nuevo({s.b.x, s.b.y, 0.0});
    return !propia.InterMax(caja, 0);
}

// The box of points as they stand: a line's own may be behind them.
template <class T>
CMaximas<T> Caja(std::span<const CCoor3D<T>> puntos) {
    CMaximas<T> caja;
    for (const CCoor3D<T>& punto : puntos)
        caja.Nuevo(punto);
    return caja;
}

}  // namespace

template <class T>
CTipoDentro CLinea<T>::EstaDentro(const CCoor3D<T>& punto, bool bConCota) const {
    if (bConCota) {
        const CMaximas<T> caja = Caja(this->Puntos());
        if (!(punto.z >= caja.Minima().z && punto.z <= caja.Maxima().z)) return TD_FUERA;
    }
    return predicados::PuntoEnPoligono(CPlano(punto), this->Puntos());
}

template <class T>
CTipoDentro CLinea<T>::EstaDentro(const CMaximas<T>& rectangulo) const {
    if (rectangulo.EstanVacias(false)) return TD_FUERA;
    const CCoor3D<T>& a = rectangulo.Minima();
    const CCoor3D<T>& b = rectangulo.Maxima();
    CLinea contorno;
    contorno << a << CCoor3D<T>(b.x, a.y, a.z) << CCoor3D<T>(b.x, b.y, a.z) << CCoor3D<T>(a.x, b.y, a.z) << a;
    return EstaDentro(contorno);
}

template <class T>
CTipoDentro CLinea<T>::EstaDentro(const CLinea& linea) const {
    const CMaximas<T> cajaLinea = Caja(linea.Puntos());
    if (this->NPuntos() == 0 || !Caja(this->Puntos()).InterMax(cajaLinea, 0)) return TD_FUERA;
    // A line without extent in plan is a point.
    if (cajaLinea.Minima().x == cajaLinea.Maxima().x && cajaLinea.Minima().y == cajaLinea.Maxima().y) {
        return EstaDentro(linea.Punto(0));
    }
    CRecorrido<T> recorrido(this->Puntos());
    for (const CSegmento& lado : Lados(linea.Puntos(), false)) {
        if (!(lado.a == lado.b) && !recorrido.Anda(lado)) return TD_CRUZA;
    }
    const CTipoDentro resultado = recorrido.Resultado();
    if (resultado != TD_FUERA || !linea.EsCerrada()) return resultado;
    return linea.EstaDentro(this->Punto(0)) == TD_DENTRO ? TD_ENCIERRA : TD_FUERA;
}

template <class T>
bool CLinea<T>::Intersecta(const CLinea& otra) const {
    const CMaximas<double> caja(Caja(otra.Puntos()));
    const std::vector<CSegmento> lados = Lados(this->Puntos(), false), otros = Lados(otra.Puntos(), false);
    return std::any_of(lados.begin(), lados.end(), [&](const CSegmento& lado) {
        return !Lejos(lado, caja) && std::any_of(otros.begin(), otros.end(), [&](const CSegmento& otro) {
            return predicados::Contactos(lado.a, lado.b, otro.a, otro.b).nCuantos > 0;
        });
    });
}

template <class T>
unsigned CLinea<T>::Intersecta(const CLinea& otra, int nCota, int nMaximo) {
    const CMaximas<double> caja(Caja(otra.Puntos()));
    const std::vector<CSegmento> lados = Lados(this->Puntos(), false), otros = Lados(otra.Puntos(), false);
    struct CCorte {
        CContacto contacto;
        std::size_t otro;
    };
    std::vector<CCoor3D<double>> nuevos;
    std::vector<CCorte> cortes;
    for (std::size_t i = 0; i < lados.size(); ++i) {
        if (Lejos(lados[i], caja)) continue;
        cortes.clear();
        for (std::size_t j = 0; j < otros.size(); ++j) {
            for (const CContacto& c : predicados::Contactos(lados[i].a, lados[i].b, otros[j].a, otros[j].b)) {
                cortes.push_back({c, j});
            }
        }
        std::stable_sort(cortes.begin(), cortes.end(),
                         [](const CCorte& a, const CCorte& b) { return a.contacto.t < b.contacto.t; });
        for (const CCorte& corte : cortes) {
            const CContacto& c = corte.contacto;
            // A vertex belongs to the two sides that meet there.
            if (!nuevos.empty() && CPlano(nuevos.back()) == c.lugar) continue;
            double z = 0.0;
            if (nCota == 1) z = Altura(this->m_Puntos[i].z, this->m_Puntos[i + 1].z, c.t);
            if (nCota == 2) z = Altura(otra.m_Puntos[corte.otro].z, otra.m_Puntos[corte.otro + 1].z, c.u);
            nuevos.emplace_back(c.lugar.x, c.lugar.y, z);
        }
    }
    if (nMaximo >= 0 && nuevos.size() > static_cast<std::size_t>(nMaximo))
        nuevos.resize(static_cast<std::size_t>(nMaximo));
    for (const CCoor3D<double>& punto : nuevos)
        *this << CCoor3D<T>(punto);
    return static_cast<unsigned>(nuevos.size());
}

template CTipoDentro CLinea<int>::EstaDentro(const CCoor3D<int>&, bool) const;
template CTipoDentro CLinea<double>::EstaDentro(const CCoor3D<double>&, bool) const;
template CTipoDentro CLinea<int>::EstaDentro(const CMaximas<int>&) const;
template CTipoDentro CLinea<double>::EstaDentro(const CMaximas<double>&) const;
template CTipoDentro CLinea<int>::EstaDentro(const CLinea<int>&) const;
template CTipoDentro CLinea<double>::EstaDentro(const CLinea<double>&) const;
template bool CLinea<int>::Intersecta(const CLinea<int>&) const;
template bool CLinea<double>::Intersecta(const CLinea<double>&) const;
template unsigned CLinea<int>::Intersecta(const CLinea<int>&, int, int);
template unsigned CLinea<double>::Intersecta(const CLinea<double>&, int, int);

}  // namespace Vertiz
