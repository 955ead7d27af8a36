#pragma once
// What holds of every constrained Delaunay triangulation, checked the slow way, and drawings to triangulate.

#include "model/CTexto.h"
#include "model/CTriangulacion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace triangulaciones {

using Vertiz::CCoor2D;
using Vertiz::CCoor3D;
using Vertiz::CDibujo;
using Vertiz::CLinea;
using Vertiz::CTIN;

__extension__ using Entero = __int128;

inline Entero Cruz(const CCoor3D<int>& a, const CCoor3D<int>& b, const CCoor3D<int>& c) {
    return (Entero{b.x} - a.x) * (Entero{c.y} - a.y) - (Entero{b.y} - a.y) * (Entero{c.x} - a.x);
}

inline CLinea<int> Linea(const std::vector<std::pair<int, int>>& puntos, bool cierra = true) {
    CLinea<int> linea(L"L");
    for (const auto& [x, y] : puntos)
        linea << CCoor3D<int>(x, y, 7);
    if (cierra) linea.Cierra();
    return linea;
}

inline CDibujo<int> Dibujo(const std::vector<std::vector<std::pair<int, int>>>& contornos) {
    CDibujo<int> dibujo;
    for (const auto& contorno : contornos)
        dibujo.Inserta(Linea(contorno));
    return dibujo;
}

inline int Triangula(const CDibujo<int>& dibujo, CTIN& tin, int modo = 0) {
    return Vertiz::CTriangulacion().Run(dibujo, tin, modo, nullptr, 0.1, nullptr);
}

/// Refuses lines that cross.
inline int TriangulaSinCruces(const CDibujo<int>& dibujo, CTIN& tin, CDibujo<int>* cruces = nullptr) {
    Vertiz::CDataTriangulacion data;
    data.m_bResuelveCruces = false;
    return Vertiz::CTriangulacion(data).Run(dibujo, tin, 0, nullptr, 0.1, cruces);
}

/// Twice the area of the triangles that are not deleted.
inline Entero DobleArea(const CTIN& tin) {
    Entero area = 0;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        const Vertiz::CTriangulo& t = tin.Triangulo(i);
        if (!t.EsBorrado()) area += Cruz(*t.Punto(0), *t.Punto(1), *t.Punto(2));
    }
    return area;
}

/// Twice the area of a line as a polygon, above 0 counterclockwise.
inline Entero DobleArea(const CLinea<int>& linea) {
    Entero area = 0;
    for (unsigned i = 0; i < linea.NPuntos(); ++i) {
        const CCoor3D<int>&a = linea.Punto(int(i)), &b = linea.Punto(int((i + 1) % linea.NPuntos()));
        area += Entero{a.x} * b.y - Entero{a.y} * b.x;
    }
    return area;
}

/// The triangles by the places of their vertices, whatever their order and numbers.
inline std::multiset<std::array<std::pair<int, int>, 3>> Conjunto(const CTIN& tin) {
    std::multiset<std::array<std::pair<int, int>, 3>> conjunto;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        std::array<std::pair<int, int>, 3> t;
        for (int k = 0; k < 3; ++k)
            t[std::size_t(k)] = {tin.Vertice(i, k).x, tin.Vertice(i, k).y};
        std::ranges::rotate(t, std::ranges::min_element(t));
        conjunto.insert(t);
    }
    return conjunto;
}

/// d lies strictly inside the circle of a, b, c: the determinant in parts of 64 bits, by another way than the
/// product's.
inline bool DentroDelCirculo(const CCoor3D<int>& a, const CCoor3D<int>& b, const CCoor3D<int>& c,
                             const CCoor3D<int>& d) {
    // Sums of products of three factors: each factor below 2^67, added up in limbs of 32 bits.
    std::array<Entero, 8> limbos{};
    const auto suma = [&limbos](Entero p, Entero q) {
        const bool negativo = (p < 0) != (q < 0);
        if (p < 0) p = -p;
        if (q < 0) q = -q;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j) {
                const Entero parte = (p >> 32 * i & 0xFFFFFFFF) * (q >> 32 * j & 0xFFFFFFFF);
                limbos[std::size_t(i + j)] += negativo ? -parte : parte;
            }
    };
    const auto vector = [&d](const CCoor3D<int>& p) {
        return std::pair<Entero, Entero>(Entero{p.x} - d.x, Entero{p.y} - d.y);
    };
    const auto [ax, ay] = vector(a);
    const auto [bx, by] = vector(b);
    const auto [cx, cy] = vector(c);
    suma(ax * ax + ay * ay, bx * cy - by * cx);
    suma(bx * bx + by * by, cx * ay - cy * ax);
    suma(cx * cx + cy * cy, ax * by - ay * bx);
    for (std::size_t i = 0; i + 1 < limbos.size(); ++i) {
        const Entero lleva = limbos[i] >> 32;
        limbos[i] -= lleva * (Entero{1} << 32);
        limbos[i + 1] += lleva;
    }
    if (limbos.back() != 0) return limbos.back() > 0;
    for (std::size_t i = limbos.size(); i-- > 0;)
        if (limbos[i] != 0) return true;
    return false;
}

using Lado = std::pair<const Vertiz::CPuntoTIN*, const Vertiz::CPuntoTIN*>;

/// Triangles turn left, know their neighbours, have each side once, and no neighbour's vertex lies in a circle unless a
/// line runs between.
inline void EsperaValida(const CTIN& tin) {
    std::map<Lado, unsigned> lados;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        const Vertiz::CTriangulo& t = tin.Triangulo(i);
        ASSERT_GT(Cruz(*t.Punto(0), *t.Punto(1), *t.Punto(2)), 0) << "triangle " << i;
        for (int k = 0; k < 3; ++k)
            ASSERT_TRUE(lados.emplace(Lado{t.Punto(k), t.Punto((k + 1) % 3)}, i).second) << "two triangles on a side";
    }
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        const Vertiz::CTriangulo& t = tin.Triangulo(i);
        for (int k = 0; k < 3; ++k) {
            const Vertiz::CPuntoTIN *a = t.Punto(k), *b = t.Punto((k + 1) % 3);
            const auto otro = lados.find(Lado{b, a});
            ASSERT_EQ(t.Vecino(k), otro == lados.end() ? -1 : int(otro->second)) << "triangle " << i;
            if (t.Vecino(k) < 0) continue;
            const Vertiz::CTriangulo& vecino = tin.Triangulo(unsigned(t.Vecino(k)));
            int m = 0;
            while (vecino.Punto(m) == a || vecino.Punto(m) == b)
                ++m;
            const int lado = (m + 1) % 3;
            ASSERT_EQ(t.EsRuptura(k), vecino.EsRuptura(lado));
            ASSERT_EQ(t.EsLimite(k), vecino.EsLimite(lado));
            if (!t.EsRuptura(k)) {
                ASSERT_FALSE(DentroDelCirculo(*t.Punto(0), *t.Punto(1), *t.Punto(2), *vecino.Punto(m)))
                    << "triangle " << i;
            }
        }
    }
}

/// Every segment of the drawing is made of sides that are marked as followed. Slow.
inline void EsperaSeguida(const CTIN& tin, const CDibujo<int>& dibujo) {
    std::map<std::pair<int, int>, std::vector<std::pair<int, int>>> fijos;  // from each point the followed sides
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
        for (int k = 0; k < 3; ++k) {
            const Vertiz::CTriangulo& t = tin.Triangulo(i);
            const Vertiz::CPuntoTIN *a = t.Punto(k), *b = t.Punto((k + 1) % 3);
            if (!t.EsRuptura(k)) continue;
            fijos[{a->x, a->y}].emplace_back(b->x, b->y);
            fijos[{b->x, b->y}].emplace_back(a->x, a->y);
        }
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        for (unsigned j = 0; j + 1 < dibujo[i]->NPuntos(); ++j) {
            CCoor3D<int> a = dibujo[i]->Punto(int(j));
            const CCoor3D<int> b = dibujo[i]->Punto(int(j) + 1);
            while (a.x != b.x || a.y != b.y) {
                bool sigue = false;
                for (const auto& [x, y] : fijos[{a.x, a.y}]) {
                    const CCoor3D<int> c(x, y, 0);
                    const Entero avance =
                        (Entero{b.x} - a.x) * (Entero{x} - a.x) + (Entero{b.y} - a.y) * (Entero{y} - a.y);
                    if (Cruz(a, b, c) != 0 || avance <= 0) continue;
                    a = c, sigue = true;
                    break;
                }
                ASSERT_TRUE(sigue) << "line " << i << " is left at " << a.x << ", " << a.y;
            }
        }
}

}  // namespace triangulaciones
