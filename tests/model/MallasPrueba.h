#pragma once
// Small triangulated terrains for tests, made by hand or by the plain triangulator.

#include "Triangulaciones.h"

#include <random>
#include <utility>
#include <vector>

namespace mallas {

using triangulaciones::Cruz;
using triangulaciones::Entero;
using Vertiz::CCoor2D;
using Vertiz::CCoor3D;
using Vertiz::CDataSemilla;
using Vertiz::CDibujo;
using Vertiz::CLinea;
using Vertiz::CPuntoTIN;
using Vertiz::CTIN;
using Vertiz::CTriangulo;

using Caras = std::vector<std::array<unsigned, 3>>;

/// Points and faces by number, from 1; neighbours are found.
inline CTIN Malla(const std::vector<CCoor3D<int>>& puntos, const Caras& caras,
                  const CDataSemilla& semilla = CDataSemilla()) {
    std::vector<CTIN::CFila> filas;
    for (const auto& cara : caras)
        filas.emplace_back().m_nVertices = {cara[0], cara[1], cara[2]};
    CTIN tin(semilla);
    tin.TomaSueltos(std::vector<CPuntoTIN>(puntos.begin(), puntos.end()), std::move(filas));
    return tin;
}

/// A grid of n by m squares of a side, each of two triangles, with heights of a function of x and y.
template <class Altura>
CTIN Cuadricula(int n, int m, int lado, Altura altura, const CDataSemilla& semilla = CDataSemilla()) {
    std::vector<CCoor3D<int>> puntos;
    Caras caras;
    for (int f = 0; f <= m; ++f)
        for (int c = 0; c <= n; ++c)
            puntos.emplace_back(c * lado, f * lado, int(altura(c * lado, f * lado)));
    for (int f = 0; f < m; ++f)
        for (int c = 0; c < n; ++c) {
            const unsigned a = unsigned(f * (n + 1) + c + 1), b = a + 1, d = a + unsigned(n) + 1, e = d + 1;
            caras.push_back({a, b, e});
            caras.push_back({a, e, d});
        }
    return Malla(puntos, caras, semilla);
}

/// A Delaunay triangulation of random points with random heights.
inline CTIN Azarosa(std::mt19937& azar, int n, int rango, int alto) {
    std::uniform_int_distribution<int> dado(-rango, rango), cota(-alto, alto);
    CDibujo<int> dibujo;
    CLinea<int> linea(L"P");
    for (int i = 0; i < n; ++i)
        linea << CCoor3D<int>(dado(azar), dado(azar), cota(azar));
    dibujo.Inserta(linea);
    CTIN tin;
    triangulaciones::Triangula(dibujo, tin, 1);
    return tin;
}

/// The place at `parte` of `total` between two values, rounded, halves away from zero.
inline int Entre(int desde, int hasta, Entero parte, Entero total) {
    Entero n = desde * total + (Entero{hasta} - desde) * parte;
    if (total < 0) n = -n, total = -total;
    const Entero modulo = n < 0 ? -n : n, entera = modulo / total;
    return int((n < 0 ? -1 : 1) * (entera + (2 * (modulo - entera * total) >= total ? 1 : 0)));
}

/// A point lies in a triangle of the terrain, its border included, by looking at all of them.
inline std::vector<unsigned> Todos(const CTIN& tin, const CCoor3D<int>& p, bool bVisibles = true) {
    std::vector<unsigned> hallados;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        if (bVisibles && !tin.EsVisible(i)) continue;
        const CTriangulo t = tin.Triangulo(i);
        bool bDentro = Cruz(*t.Punto1(), *t.Punto2(), *t.Punto3()) > 0;
        for (int k = 0; k < 3; ++k)
            bDentro = bDentro && Cruz(*t.Punto(k), *t.Punto((k + 1) % 3), p) >= 0;
        if (bDentro) hallados.push_back(i);
    }
    return hallados;
}

}  // namespace mallas
