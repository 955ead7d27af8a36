// Walking the cells of a lattice along a ray. Internal.
//
// J. Amanatides and A. Woo, "A Fast Voxel Traversal Algorithm for Ray Tracing", Eurographics (1987), in two dimensions;
// the crossings are found anew from the lattice's lines each time, so that nothing adds up over a long way.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "model/CCoor.h"

namespace Vertiz {

/// Cells of one size, counted from the south-west.
struct Reticula {
    double m_dOeste = 0.0, m_dSur = 0.0, m_dPasoX = 1.0, m_dPasoY = 1.0;
    std::int64_t m_nFilas = 0, m_nColumnas = 0;
};

/// The points o + t d with t from 0 on.
struct Rayo {
    CCoor3D<double> o, d;
};

/// A part of a ray, from parameter t0 to t1; empty when t1 is lower.
struct TramoRayo {
    double t0 = 0.0, t1 = std::numeric_limits<double>::infinity();

    /// Keeps what lies between two bounds of one coordinate.
    void Recorta(double origen, double direccion, double menor, double mayor) {
        if (direccion == 0.0) {
            if (origen < menor || origen > mayor) t1 = -1.0;
            return;
        }
        // In braces, or the result would refer to numbers that are gone.
        const auto [entra, sale] = std::minmax({(menor - origen) / direccion, (mayor - origen) / direccion});
        t0 = std::max(t0, entra);
        t1 = std::min(t1, sale);
    }
    bool EstaVacio() const { return !(t0 <= t1); }
};

/// Visits in order the cells that a ray passes in plan. visita(fila, columna, tramo) tells by true that it has seen
/// enough. The ray must not be vertical.
template <class Visita>
void PaseaCeldas(const Reticula& r, const Rayo& rayo, Visita&& visita) {
    TramoRayo total;
    total.Recorta(rayo.o.x, rayo.d.x, r.m_dOeste, r.m_dOeste + double(r.m_nColumnas) * r.m_dPasoX);
    total.Recorta(rayo.o.y, rayo.d.y, r.m_dSur, r.m_dSur + double(r.m_nFilas) * r.m_dPasoY);
    if (total.EstaVacio() || r.m_nFilas < 1 || r.m_nColumnas < 1) return;

    // A lattice line's parameter is worked out as the ray's cell changes, one axis at a time.
    struct Eje {
        double o, d, inicio, paso;
        std::int64_t n, i;

        Eje(double origen, double direccion, double donde, double tamano, std::int64_t cuantas, double t)
            : o(origen), d(direccion), inicio(donde), paso(tamano), n(cuantas) {
            const double celda = std::floor((o + t * d - inicio) / paso);
            i = std::int64_t(std::clamp(celda, 0.0, double(n - 1)));
        }
        double Sale() const {
            if (d == 0.0) return std::numeric_limits<double>::infinity();
            return (inicio + double(d > 0.0 ? i + 1 : i) * paso - o) / d;
        }
        bool Avanza() {
            i += d > 0.0 ? 1 : -1;
            return i >= 0 && i < n;
        }
    };
    Eje x(rayo.o.x, rayo.d.x, r.m_dOeste, r.m_dPasoX, r.m_nColumnas, total.t0);
    Eje y(rayo.o.y, rayo.d.y, r.m_dSur, r.m_dPasoY, r.m_nFilas, total.t0);
    for (double t = total.t0;;) {
        const double saleX = x.Sale(), saleY = y.Sale();
        const double fin = std::clamp(std::min(saleX, saleY), t, total.t1);
        if (visita(y.i, x.i, TramoRayo{t, fin})) return;
        if (fin >= total.t1 || !(saleX <= saleY ? x : y).Avanza()) return;
        t = fin;
    }
}

}  // namespace Vertiz
