#pragma once
// Internal. The triangulation by itself: places in plan and sides that it must have, by index.

#include "model/Predicados.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace Vertiz::geometria {

/// What a side of a triangle is, besides a side: bits.
enum : std::uint32_t {
    LADO_FIJO = 1,    ///< it was put in
    LADO_LIMITE = 2,  ///< an odd number of limits runs along it
    LADO_ISLA = 4     ///< and an odd number of islands
};

/// Constrained Delaunay triangulation. Beyond each side of the convex hull lies a triangle whose third vertex is the
/// infinite one: so every triangle has three neighbours, and no coordinate is beyond the integers. It depends on the
/// places and the sides put in alone, whatever their order: where several triangulations are Delaunay's, a rule takes
/// one (predicados::EnCirculoUnico).
class CDelaunay {
  public:
    using CLugar = predicados::CLugar;
    /// Two vertices, by the indices of their points.
    using CLado = std::pair<int, int>;
    static constexpr int kInfinito = -1;

    /// @param puntos  at most 2^29, which may be equal; points of one place are one vertex, the first of them
    explicit CDelaunay(std::span<const CLugar> puntos);

    /// Triangulates the points; once, before any side.
    /// @param sigue  asked now and then with the points done so far; false ends the work
    /// @return false when ended so. Points in line, and fewer than three, give no triangles
    bool Triangula(const std::function<bool(int)>& sigue);

    /// Puts a side in, in pieces where it passes through points. Not without triangles.
    /// @param a,b     points; nothing happens when they are of one place
    /// @param marcas  LADO_LIMITE and LADO_ISLA, which two of them on one side take away again
    /// @return false when it crosses one that was put in before: nothing of it stays then
    bool InsertaLado(int a, int b, std::uint32_t marcas);
    /// The sides put in that the way from a to b crosses between their vertices.
    void Cruzados(int a, int b, std::vector<CLado>& lados);

    /// The first point of the place of a point.
    [[nodiscard]] int Primero(int punto) const { return m_Puntos[static_cast<std::size_t>(m_Vertices[punto])]; }
    /// Those with the infinite vertex included.
    [[nodiscard]] int Cantidad() const { return static_cast<int>(m_Triangulos.size()); }
    [[nodiscard]] bool EsInfinito(int t) const { return Infinito(T(t)); }
    /// The vertices of a triangle, counterclockwise, as points; kInfinito for the infinite one.
    [[nodiscard]] int Vertice(int t, int k) const {
        const int v = T(t).v[k];
        return v < 0 ? kInfinito : m_Puntos[static_cast<std::size_t>(v)];
    }
    /// The triangle beyond side k, which lies opposite to vertex k.
    [[nodiscard]] int Vecino(int t, int k) const { return Triangulo(T(t).n[k]); }
    /// LADO_ bits of side k.
    [[nodiscard]] std::uint32_t Marcas(int t, int k) const { return Bits(T(t), k); }

    /// A number that the caller may keep in each triangle after all sides.
    [[nodiscard]] int& Nota(int t) { return T(t).nota; }
    [[nodiscard]] int Nota(int t) const { return T(t).nota; }

  private:
    // A side of a triangle, in four times the triangle's index plus its place.
    using CPuerta = std::uint32_t;

    // Half a cache line. Vertices are numbered as they go in, so that those of a triangle lie close in memory.
    struct alignas(32) CTriangulo {
        int v[3];              // counterclockwise
        int nota = 0;          // the last cavity that took it
        CPuerta n[3];          // the other side of side k, which lies opposite to vertex k
        std::uint32_t marcas;  // four bits for each side
    };
    struct CBorde {
        int a;         // where a side of a cavity begins, counterclockwise seen from inside
        CPuerta otra;  // and its other side
    };
    struct CEnlace {
        std::uint64_t clave;
        CPuerta puerta;
        std::uint32_t marcas;
    };
    struct CPieza {
        int a, b;
        std::uint32_t antes;
    };

    static CPuerta Puerta(int t, int k) { return static_cast<CPuerta>(t) << 2 | static_cast<CPuerta>(k); }
    static int Triangulo(CPuerta puerta) { return static_cast<int>(puerta >> 2); }
    static int Lado(CPuerta puerta) { return static_cast<int>(puerta & 3U); }
    static bool Infinito(const CTriangulo& t) { return (t.v[0] | t.v[1] | t.v[2]) < 0; }
    static std::uint32_t Bits(const CTriangulo& t, int k) { return t.marcas >> 4 * k & 15U; }
    static void PonBits(CTriangulo& t, int k, std::uint32_t bits) {
        t.marcas = (t.marcas & ~(15U << 4 * k)) | bits << 4 * k;
    }
    static std::uint64_t Clave(int a, int b) {
        return std::uint64_t(std::uint32_t(a < b ? a : b)) << 32 | std::uint32_t(a < b ? b : a);
    }
    static int Sitio(const CTriangulo& t, int v) { return t.v[0] == v ? 0 : t.v[1] == v ? 1 : 2; }

    const CLugar& P(int v) const { return m_Lugares[static_cast<std::size_t>(v)]; }
    CTriangulo& T(int t) { return m_Triangulos[static_cast<std::size_t>(t)]; }
    const CTriangulo& T(int t) const { return m_Triangulos[static_cast<std::size_t>(t)]; }
    int& Desde(int v) { return m_Desde[static_cast<std::size_t>(v + 1)]; }
    int Giro(int a, int b, int c) const { return predicados::Giro(P(a), P(b), P(c)); }

    // Points
    int Empieza();
    int Localiza(const CLugar& p);
    bool EnConflicto(const CTriangulo& t, const CLugar& p) const;
    void Inserta(int p);

    // Sides
    void AnotaTriangulos();
    CPuerta Camina(int desde, int hasta);
    CPuerta Sale(int desde, int hasta);
    CPuerta BuscaLado(int a, int b);
    void Marca(CPuerta puerta, std::uint32_t marcas);
    CPuerta Rellena(int a, int b);
    void RellenaCadena(const std::vector<int>& cadena);
    CPuerta Enlaza(std::uint64_t ladoNuevo);
    void Mejora();
    void Voltea(int t, int k);

    std::vector<CLugar> m_Lugares;          // of the vertices, in the order in which they go in
    std::vector<int> m_Puntos;              // of each vertex: its point
    std::vector<int> m_Vertices;            // of each point: its vertex
    std::vector<CTriangulo> m_Triangulos;
    std::vector<int> m_Desde;               // of each vertex, the infinite one first: a triangle that has it
    std::vector<int> m_Grados;              // of each vertex: how many triangles had it before the first side
    int m_nNota = 0;                        // of the last cavity of a side
    int m_nUltimo = 0;                      // where the next search begins

    // What one insertion works with, kept to spare allocations.
    std::vector<int> m_Cavidad, m_Izquierda, m_Derecha, m_Pila;
    std::vector<CPuerta> m_Puertas;
    std::vector<CBorde> m_Bordes;
    std::vector<CEnlace> m_Enlaces;
    std::vector<CLado> m_Cruzados;
    std::vector<CPieza> m_Piezas;
    std::size_t m_nHechos = 0;
};

}  // namespace Vertiz::geometria
