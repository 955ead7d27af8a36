#pragma once
// Internal. The triangulation by itself: places in plan and sides that it must have, by index.

#include "model/CTIN.h"
#include "model/Predicados.h"

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
///
/// It works on the records that a terrain stores, and hands them over in the end: millions of triangles aren't held
/// twice. While it works, the second word of a triangle's marks and its neighbours have other meanings.
class CDelaunay {
  public:
    using CLugar = predicados::CLugar;
    /// Two vertices, by the indices of their points.
    using CLado = std::pair<int, int>;
    using CFila = CTIN::CFila;

    /// @param puntos  fewer than 2^28, which may be equal; points of one place are one vertex, the first of them
    explicit CDelaunay(std::span<const CLugar> puntos);

    /// Triangulates the points; once, before any side.
    /// @param sigue  asked now and then with the vertices done so far; false ends the work
    /// @return false when ended so. Points in line, and fewer than three, give no triangles
    bool Triangula(const std::function<bool(int)>& sigue);

    /// Puts a side in, in pieces where it passes through points. Not without triangles.
    /// @param a,b     points; nothing happens when they are of one place
    /// @param marcas  LADO_LIMITE and LADO_ISLA, which two of them on one side take away again
    /// @return false when it crosses one that was put in before: it isn't put in then. The triangulation serves for
    ///         more sides and questions still, but need not be Delaunay's where it would have passed
    bool InsertaLado(int a, int b, std::uint32_t marcas);
    /// The sides put in that the way from a to b crosses between their vertices, appended.
    void Cruzados(int a, int b, std::vector<CLado>& lados);

    /// How many different places there are.
    [[nodiscard]] int CantidadVertices() const { return static_cast<int>(m_Lugares.size()) - 1; }
    /// The first point of the place of a point.
    [[nodiscard]] int Primero(int punto) const { return m_Puntos[static_cast<std::size_t>(Vertice(punto))]; }
    /// Those with the infinite vertex included.
    [[nodiscard]] int Cantidad() const { return static_cast<int>(m_Triangulos.size()); }
    [[nodiscard]] bool EsInfinito(int t) const { return Infinito(T(t)); }
    /// Where vertex k of a finite triangle is; they go round counterclockwise.
    [[nodiscard]] const CLugar& Lugar(int t, int k) const { return P(V(T(t), k)); }
    /// The triangle beyond side k, which lies opposite to vertex k.
    [[nodiscard]] int Vecino(int t, int k) const { return Triangulo(N(T(t), k)); }
    /// LADO_ bits of side k.
    [[nodiscard]] std::uint32_t Marcas(int t, int k) const { return Bits(T(t), k); }
    [[nodiscard]] bool EsBorrado(int t) const { return (T(t).GetPalabra(0) & kBorrado) != 0; }
    void Borra(int t) { T(t).SetPalabra(0, T(t).GetPalabra(0) | kBorrado); }

    /// Hands over the finite triangles and is without any afterwards.
    /// @param numeros  of each point the number by which triangles name it
    std::vector<CFila> Entrega(std::span<const int> numeros);

  private:
    // A side of a triangle, in four times the triangle's index plus its place. A triangle names by it, as its
    // neighbour, the other side of side k, which lies opposite to vertex k.
    using CPuerta = std::int32_t;
    static constexpr int kInfinito = 0;  // vertices are numbered from 1 as they go in: so those of a triangle lie close
    static constexpr int kOtro[3] = {1, 2, 0};           // the next place in a triangle
    static constexpr int kTercero[3] = {2, 0, 1};        // and the one after it
    static constexpr std::uint32_t kBorrado = 1U << 12;  // below it, four bits for each side

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

    static CPuerta Puerta(int t, int k) { return t << 2 | k; }
    static int Triangulo(CPuerta puerta) { return puerta >> 2; }
    static int Lado(CPuerta puerta) { return puerta & 3; }
    static int V(const CFila& t, int k) { return static_cast<int>(t.m_nVertices[static_cast<unsigned>(k)]); }
    static CPuerta N(const CFila& t, int k) { return t.m_nVecinos[static_cast<unsigned>(k)]; }
    static void PonVecino(CFila& t, int k, CPuerta puerta) { t.m_nVecinos[static_cast<unsigned>(k)] = puerta; }
    static bool Infinito(const CFila& t) { return V(t, 0) == 0 || V(t, 1) == 0 || V(t, 2) == 0; }
    static int Sitio(const CFila& t, int v) { return V(t, 0) == v ? 0 : V(t, 1) == v ? 1 : 2; }
    static std::uint32_t Bits(const CFila& t, int k) { return t.GetPalabra(0) >> 4 * k & 15U; }
    static void PonBits(CFila& t, int k, std::uint32_t bits) {
        t.SetPalabra(0, (t.GetPalabra(0) & ~(15U << 4 * k)) | bits << 4 * k);
    }
    static CFila Fila(int a, int b, int c, CPuerta na = 0, CPuerta nb = 0, CPuerta nc = 0, std::uint32_t nota = 0) {
        CFila fila;
        fila.m_nVertices = {static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b),
                            static_cast<std::uint32_t>(c)};
        fila.m_nVecinos = {na, nb, nc};
        fila.SetPalabra(1, nota);
        return fila;
    }
    static std::uint64_t Clave(int a, int b) {
        return std::uint64_t(std::uint32_t(a < b ? a : b)) << 32 | std::uint32_t(a < b ? b : a);
    }

    int Vertice(int punto) const { return m_Vertices[static_cast<std::size_t>(punto)]; }
    const CLugar& P(int v) const { return m_Lugares[static_cast<std::size_t>(v)]; }
    CFila& T(int t) { return m_Triangulos[static_cast<std::size_t>(t)]; }
    const CFila& T(int t) const { return m_Triangulos[static_cast<std::size_t>(t)]; }
    int& Desde(int v) { return m_Desde[static_cast<std::size_t>(v)]; }
    bool EnCavidad(int t) const { return T(t).GetPalabra(1) == m_nNota; }
    int Giro(int a, int b, int c) const { return predicados::Giro(P(a), P(b), P(c)); }

    // Points
    int Empieza();
    int Localiza(const CLugar& p);
    bool EnConflicto(const CFila& t, const CLugar& p) const;
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

    // The infinite vertex has a place of its own in these, the first.
    std::vector<CLugar> m_Lugares;  // of the vertices
    std::vector<int> m_Puntos;      // of each vertex: its point
    std::vector<int> m_Desde;       // of each vertex: a triangle that has it
    std::vector<int> m_Grados;      // of each vertex: how many triangles had it before the first side
    std::vector<int> m_Vertices;    // of each point: its vertex
    std::vector<CFila> m_Triangulos;
    std::uint32_t m_nNota = 0;  // of the last cavity of a side; its triangles have it in their second word
    int m_nUltimo = 0;          // where the next search begins

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
