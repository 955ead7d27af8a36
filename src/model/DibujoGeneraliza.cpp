// Thinning the lines of a drawing (D. H. Douglas, T. K. Peucker: Algorithms for the reduction of the number of points
// required to represent a digitized line or its caricature, 1973), here with a limit in plan and one in height.

#include "model/CDibujo.h"
#include "model/DibujoInterno.h"
#include "model/Geos.h"
#include "model/IPorcentaje.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace Vertiz {
namespace {

using CPuntos = std::vector<CCoor3D<double>>;

struct CLimites {
    double planta, cota;
};

// How far a point is from a chord, as a part of what is allowed; above 1 it has to stay.
double Desvio(const CCoor3D<double>& p, const CCoor3D<double>& a, const CCoor3D<double>& b, const CLimites& limites) {
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double largo2 = dx * dx + dy * dy;
    const double t = largo2 > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / largo2, 0.0, 1.0) : 0.0;
    const double planta = std::hypot(p.x - (a.x + t * dx), p.y - (a.y + t * dy));
    const double cota = std::abs(p.z - (a.z + t * (b.z - a.z)));
    const auto parte = [](double d, double limite) {
        if (d <= limite) return limite > 0 ? d / limite : 0.0;
        return limite > 0 ? d / limite : std::numeric_limits<double>::infinity();
    };
    return std::max(parte(planta, limites.planta), parte(cota, limites.cota));
}

CPuntos Adelgaza(const CPuntos& puntos, const CLimites& limites) {
    std::vector<bool> queda(puntos.size());
    queda.front() = queda.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> pendientes{{0, puntos.size() - 1}};
    while (!pendientes.empty()) {
        const auto [desde, hasta] = pendientes.back();
        pendientes.pop_back();
        std::size_t peor = 0;
        double desvio = 1;
        for (std::size_t i = desde + 1; i < hasta; i++) {
            const double d = Desvio(puntos[i], puntos[desde], puntos[hasta], limites);
            if (d > desvio) desvio = d, peor = i;
        }
        if (peor == 0) continue;
        queda[peor] = true;
        pendientes.emplace_back(desde, peor);
        pendientes.emplace_back(peor, hasta);
    }
    CPuntos resultado;
    for (std::size_t i = 0; i < puntos.size(); i++) {
        if (queda[i]) resultado.push_back(puntos[i]);
    }
    return resultado;
}

// A closed line has no ends to hold it: it is held by its lowest left corner, which is a corner indeed, and by the
// point farthest from there.
CPuntos AdelgazaCerrada(CPuntos puntos, const CLimites& limites) {
    puntos.pop_back();
    const auto menor = [](const auto& a, const auto& b) { return a.x < b.x || (a.x == b.x && a.y < b.y); };
    std::rotate(puntos.begin(), std::min_element(puntos.begin(), puntos.end(), menor), puntos.end());
    const CCoor3D<double> esquina = puntos.front();
    puntos.push_back(esquina);
    const auto lejano = std::max_element(puntos.begin(), puntos.end(), [&](const auto& a, const auto& b) {
        return a.Distancia2(esquina, 0) < b.Distancia2(esquina, 0);
    });
    CPuntos ida = Adelgaza(CPuntos(puntos.begin(), lejano + 1), limites);
    const CPuntos vuelta = Adelgaza(CPuntos(lejano, puntos.end()), limites);
    ida.insert(ida.end(), vuelta.begin() + 1, vuelta.end());
    return ida;
}

CPuntos Adelgaza(const CPuntos& puntos, bool cerrada, const CLimites& limites) {
    return cerrada ? AdelgazaCerrada(puntos, limites) : Adelgaza(puntos, limites);
}

bool EsSimple(const CPuntos& puntos) {
    CLinea<double> linea;
    for (const auto& p : puntos)
        linea << p;
    const geos::Geometria g = geos::DeLinea(linea);
    return g && GEOSisSimple_r(geos::Contexto(), g.get()) == 1;
}

// Thins a line as far as it can be without coming to cross itself.
CPuntos AdelgazaSinCruces(const CPuntos& puntos, bool cerrada, CLimites limites) {
    constexpr int kIntentos = 5;
    for (int i = 0; i < kIntentos; i++) {
        CPuntos fina = Adelgaza(puntos, cerrada, limites);
        // A line that crosses itself from the beginning has nothing to lose.
        if (fina.size() == puntos.size() || EsSimple(fina) || (i == 0 && !EsSimple(puntos))) return fina;
        limites.planta /= 2;
        limites.cota /= 2;
    }
    return puntos;
}

}  // namespace

template <class T>
int CDibujo<T>::Generaliza(const CDataGeneralizacion& data, CNivelMensajes nivel, IPorcentaje* porcentaje) {
    const CLimites limites{data.m_fTolerancia, data.m_fToleranciaZ};
    std::vector<bool> sobran(m_Entidades.size());
    bool cancelado = false;
    for (unsigned i = 0; i < Cantidad() && !cancelado; i++) {
        CEntidadDigi<T>& e = *m_Entidades[i];
        if (porcentaje) cancelado = porcentaje->Paso(nivel, int(i) + 1, int(Cantidad()), 0) == 0;
        if (!EsLinea(e) || e.NPuntos() < 2) continue;
        const bool cerrada = e.EsCerrada();
        if (!cerrada && data.m_bSoloCerradas) continue;
        const auto& linea = static_cast<const CLinea<T>&>(e);
        if (cerrada ? std::abs(linea.Superficie()) < data.m_fAreaMinima : linea.Longitud(0) < data.m_fLongitudMinima) {
            sobran[i] = true;
            continue;
        }
        const CPuntos puntos(e.Puntos().begin(), e.Puntos().end());
        const CPuntos fina =
            data.m_bPuedeCruzarse ? Adelgaza(puntos, cerrada, limites) : AdelgazaSinCruces(puntos, cerrada, limites);
        sobran[i] = cerrada && fina.size() < 4;
        if (fina.size() == puntos.size()) continue;
        CLinea<T> nueva(static_cast<const CTipoDat&>(e));
        for (const auto& p : fina)
            nueva << CCoor3D<T>(p);
        for (const CAtrDigi& a : e.Atributos())
            nueva.InsertaAtr(a);
        e.swap(nueva);
    }
    Quita(sobran);
    Recuenta();
    return cancelado ? 2 : 1;
}

template int CDibujo<int>::Generaliza(const CDataGeneralizacion&, CNivelMensajes, IPorcentaje*);
template int CDibujo<double>::Generaliza(const CDataGeneralizacion&, CNivelMensajes, IPorcentaje*);

}  // namespace Vertiz
