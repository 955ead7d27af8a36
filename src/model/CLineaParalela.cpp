// The parallel of a line: GEOS draws the curve, and this file gives it the line's direction and heights.

#include "model/CLinea.h"
#include "model/Geos.h"

#include <algorithm>
#include <cmath>

namespace Vertiz {
namespace {

// Height of the line at its place nearest to p in plan.
double CotaProxima(std::span<const CCoor3D<double>> puntos, const CCoor3D<double>& p) {
    double cota = puntos.front().z;
    double mejor = p.Distancia2(puntos.front(), 0);
    for (std::size_t i = 1; i < puntos.size(); ++i) {
        const CCoor3D<double>& a = puntos[i - 1];
        const CCoor3D<double> r = puntos[i] - a, q = p - a;
        const double largo2 = r.x * r.x + r.y * r.y;
        const double t = largo2 > 0.0 ? std::clamp((q.x * r.x + q.y * r.y) / largo2, 0.0, 1.0) : 0.0;
        const CCoor3D<double> lugar = a + r * t;
        if (const double d2 = p.Distancia2(lugar, 0); d2 < mejor) {
            mejor = d2;
            cota = lugar.z;
        }
    }
    return cota;
}

// GEOS doesn't promise a direction.
bool VaAlReves(const CLinea<double>& curva, const CLinea<double>& linea) {
    if (linea.EsCerrada() && curva.EsCerrada()) return curva.Superficie() * linea.Superficie() < 0.0;
    const CCoor3D<double>&a = linea.Punto(0), &b = linea.end();
    const CCoor3D<double>&c = curva.Punto(0), &d = curva.end();
    return a.Distancia(c, 0) + b.Distancia(d, 0) > a.Distancia(d, 0) + b.Distancia(c, 0);
}

int Esquina(int esquina) {
    if (esquina == 1) return GEOSBUF_JOIN_ROUND;
    return esquina == 2 ? GEOSBUF_JOIN_BEVEL : GEOSBUF_JOIN_MITRE;
}

// The curve at a distance to the left, to the right below 0. An offset curve is cut open where a ring closes, so a ring
// is grown or shrunk as the border of its area.
geos::Geometria Curva(const CLinea<double>& eje, double aIzquierda, int esquina, double limite) {
    constexpr int kPasosPorCuadrante = 16;
    const bool bAnillo = eje.EsCerrada() && eje.Superficie() != 0.0;
    const geos::Geometria origen = bAnillo ? geos::DePoligono(eje) : geos::DeLinea(eje);
    if (!origen) return nullptr;
    if (!bAnillo) {
        return geos::Geometria(
            GEOSOffsetCurve_r(geos::Contexto(), origen.get(), aIzquierda, kPasosPorCuadrante, esquina, limite));
    }
    const double haciaFuera = eje.Superficie() > 0.0 ? -aIzquierda : aIzquierda;
    return geos::Geometria(GEOSBufferWithStyle_r(geos::Contexto(), origen.get(), haciaFuera, kPasosPorCuadrante,
                                                 GEOSBUF_CAP_ROUND, esquina, limite));
}

}  // namespace

template <class T>
bool CLinea<T>::Paralela(double distancia, CLinea& paralela, int esquina, double limite, int lado) const {
    CLinea<double> eje(*this);
    eje.BorraPuntosDobles(0);
    if (eje.NPuntos() < 2 || !(distancia >= 0.0) || !std::isfinite(distancia)) return false;
    if (distancia == 0.0) {
        paralela = *this;
        return true;
    }
    const geos::Geometria curva =
        Curva(eje, lado == 0 ? distancia : -distancia, Esquina(esquina), std::max(limite, 1.0));
    auto trozos = geos::ALineas<double>(curva.get(), *this);
    const auto mayor = std::max_element(trozos.begin(), trozos.end(),
                                        [](const auto& a, const auto& b) { return a.Longitud(0) < b.Longitud(0); });
    if (mayor == trozos.end() || mayor->NPuntos() < 2) return false;
    if (VaAlReves(*mayor, eje)) mayor->Voltea();
    CLinea nueva(static_cast<const CTipoDat&>(*this));
    for (const CCoor3D<double>& p : mayor->Puntos()) {
        nueva << CCoor3D<T>(CCoor3D<double>(p.x, p.y, CotaProxima(eje.Puntos(), p)));
    }
    for (const CAtrDigi& atributo : this->Atributos())
        nueva.InsertaAtr(atributo);
    paralela = std::move(nueva);
    return true;
}

template bool CLinea<int>::Paralela(double, CLinea<int>&, int, double, int) const;
template bool CLinea<double>::Paralela(double, CLinea<double>&, int, double, int) const;

}  // namespace Vertiz
