#pragma once
// Internal. The triangulation by itself: points in plan and sides that it must have, by index.

#include "model/CCoor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Vertiz::geometria {

/// Constrained Delaunay triangulation of different points. Beyond each side of the convex hull lies a triangle whose
/// third vertex is the infinite one: so every triangle has three neighbours, and no coordinate is beyond the integers.
class CDelaunay {
  public:
    /// Vertices, counterclockwise, and the triangle across the side that lies opposite to each.
    struct CTriangulo {
        std::array<int, 3> v;
        std::array<int, 3> n;
    };
    using CLado = std::pair<int, int>;

    /// @param puntos  all different
    explicit CDelaunay(std::vector<CCoor2D<int>> puntos);

    /// Triangulates the points; once, before any side.
    /// @param sigue  asked now and then with the points done so far; false ends the work
    /// @return false when ended so. Points in line, and fewer than three, give no triangles
    bool Triangula(const std::function<bool(int)>& sigue);
    /// Puts a side in, in pieces where it passes through points. Not without triangles.
    /// @param a,b      different points
    /// @param bLimite  whether it bounds the surface, besides
    /// @return the side put in before that this one crosses, and can't go on
    std::optional<CLado> InsertaLado(int a, int b, bool bLimite);

    const std::vector<CTriangulo>& Triangulos() const { return m_Triangulos; }
    bool EsInfinito(const CTriangulo& t) const {
        return t.v[0] == m_nInfinito || t.v[1] == m_nInfinito || t.v[2] == m_nInfinito;
    }
    /// The side was put in.
    bool EsFijo(int a, int b) const { return m_Fijos.contains(Clave(a, b)); }
    /// An odd number of those put in there bounds the surface.
    bool EsLimite(int a, int b) const;

  private:
    struct CBorde {
        int a, b;     // a side of a cavity, counterclockwise seen from inside
        int t, lado;  // the triangle beyond, and which of its sides it is
    };
    struct CEnlace {
        std::uint64_t clave;
        int t, lado;
    };

    static std::uint64_t Clave(int a, int b) {
        return std::uint64_t(std::uint32_t(a < b ? a : b)) << 32 | std::uint32_t(a < b ? b : a);
    }
    const CCoor2D<int>& P(int v) const { return m_Puntos[std::size_t(v)]; }
    CTriangulo& T(int t) { return m_Triangulos[std::size_t(t)]; }
    const CTriangulo& T(int t) const { return m_Triangulos[std::size_t(t)]; }
    int Giro(int a, int b, int c) const;
    int LadoHacia(int t, int vecino) const;
    std::vector<int> Orden() const;
    bool Empieza(std::vector<int>& orden);
    int Localiza(int p) const;
    bool EnConflicto(int t, int p) const;
    void Inserta(int p);
    void AnotaTriangulos();
    void Fija(int a, int b, bool bLimite);
    int Avanza(int desde, int hasta, std::optional<CLado>& cruce);
    void Rellena(int a, int b);
    void RellenaCadena(const std::vector<int>& cadena);
    void Mejora(std::uint64_t ladoNuevo);
    void Voltea(int t, int k);

    std::vector<CCoor2D<int>> m_Puntos;
    int m_nInfinito;
    std::vector<CTriangulo> m_Triangulos;
    std::vector<int> m_Marcas;                        // of each triangle: the last point or cavity that took it
    std::vector<int> m_Desde;                         // of each vertex: a triangle that has it
    std::vector<int> m_Grados;                        // of each vertex: how many triangles had it before the first side
    int m_nMarca = -1;                                // of the last cavity of a side; those of points are not negative
    int m_nUltimo = 0;                                // where the next search begins
    std::unordered_map<std::uint64_t, bool> m_Fijos;  // sides put in; true: bounds the surface

    // What one insertion works with, kept to spare allocations.
    std::vector<int> m_Cavidad, m_Izquierda, m_Derecha, m_Nuevos, m_Pila;
    std::vector<CBorde> m_Bordes;
    std::vector<CEnlace> m_Enlaces;
    std::size_t m_nHechos = 0;
};

}  // namespace Vertiz::geometria
