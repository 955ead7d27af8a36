#pragma once
// Elevation models that the tests of CDEM share, and what they ask of them.

#include "model/CDEM.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace Vertiz::rejillas {

constexpr float kVacio = -9999.0f;
constexpr double kInfinito = std::numeric_limits<double>::infinity();

inline CDEM Grid(unsigned filas, unsigned columnas, double celdaX = 1.0, double celdaY = 1.0, double oeste = 0.0,
                 double sur = 0.0, const CDataSemilla& semilla = CDataSemilla()) {
    return CDEM(filas, columnas, celdaX, celdaY, oeste, sur, semilla);
}

// Rolling ground with random bumps.
inline CDEM Ondulado(unsigned filas, unsigned columnas, unsigned numero = 1) {
    CDEM dem = Grid(filas, columnas, 2.5, 1.5, 300.0, -40.0, CDataSemilla(2, 100.0, -50.0, 7.0));
    std::mt19937 azar(numero);
    std::uniform_real_distribution<float> bulto(-1.5f, 1.5f);
    for (unsigned f = 0; f < filas; ++f)
        for (unsigned c = 0; c < columnas; ++c)
            dem.Matriz().Set(f, c, 20.0f + 5.0f * std::sin(float(f) * 0.7f) * std::cos(float(c) * 0.4f) + bulto(azar));
    dem.ActualizaCantidades();
    return dem;
}

// A cell list with a great cell in the west and two small ones beside it.
//     4 +-----+ 5-6
//       |     +--+        x: 0 4 6   y: 0 2 4
//     0 +-----+--+
inline CDEM Lista() {
    CDEM dem;
    dem.SetListaCeldas(true);
    dem.ListaX() = {0.0, 4.0, 6.0};
    dem.ListaY() = {0.0, 2.0, 4.0};
    const auto punto = [&](float z, unsigned x, unsigned y) { dem.Puntos().push_back({z, x, y, 0, 0.0f, 0.0f, 0.0f}); };
    punto(10, 0, 0), punto(14, 1, 0), punto(15, 2, 0);
    punto(16, 1, 1), punto(18, 2, 1);
    punto(12, 0, 2), punto(18, 1, 2), punto(21, 2, 2);
    dem.Celdas() = {{{0, 5, 6, 1}}, {{1, 3, 4, 2}}, {{3, 6, 7, 4}}};
    dem.ActualizaCantidades();
    return dem;
}

inline CCoor3D<double> P(double x, double y, double z = 0.0) {
    return CCoor3D<double>(x, y, z, 0);
}

inline double Cota(const CDEM& dem, double x, double y) {
    CCoor3D<double> p = P(x, y, -77.0);
    return dem.Proyecta(p, nullptr, false) ? p.z : std::nan("");
}

// Area and perimeter of what an outline surrounds, in units of a cell.
struct Medidas {
    double area = 0.0, perimetro = 0.0;
    unsigned anillos = 0, agujeros = 0;
};
inline Medidas Mide(const CDibujo<int>& dibujo) {
    Medidas m;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
        const auto& linea = *dibujo[i];
        EXPECT_TRUE(linea.EsCerrada());
        double area = 0.0;
        for (unsigned k = 0; k + 1 < linea.NPuntos(); ++k) {
            const auto &a = linea.Punto(int(k)), &b = linea.Punto(int(k) + 1);
            area += 0.5 * (double(a.x) * b.y - double(b.x) * a.y);
            m.perimetro += std::hypot(b.x - a.x, b.y - a.y);
        }
        m.area += area;
        (area > 0.0 ? m.anillos : m.agujeros) += 1;
    }
    return m;
}

}  // namespace Vertiz::rejillas
