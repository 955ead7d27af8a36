#pragma once
// A triangle of a triangulated terrain.

#include "model/CMarcasTriangulo.h"
#include "model/CMaximas.h"
#include "model/CPuntoTIN.h"
#include "platform/Exporta.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace Vertiz {

/// A triangle: its vertices, counterclockwise in plan, what lies beyond its sides, and its marks. Side i goes from
/// vertex i to the next one. The vertices belong to the terrain, or to whoever cut the triangle; they may be null. A
/// plain value.
///
/// Whoever asks for more than vertices, neighbours and marks gives it three vertices first.
class LUMBRA_API CTriangulo : public CMarcasTriangulo {
  public:
    CTriangulo() = default;
    /// @param vecino1,vecino2,vecino3  the triangle beyond each side, -1 for none
    CTriangulo(const CPuntoTIN* punto1, const CPuntoTIN* punto2, const CPuntoTIN* punto3, int vecino1, int vecino2,
               int vecino3)
        : m_pPuntos{punto1, punto2, punto3}, m_nVecinos{vecino1, vecino2, vecino3} {}

    /// @param i  0 to 2
    [[nodiscard]] const CPuntoTIN* Punto(int i) const { return m_pPuntos[static_cast<unsigned>(i)]; }
    [[nodiscard]] const CPuntoTIN* Punto1() const { return m_pPuntos[0]; }
    [[nodiscard]] const CPuntoTIN* Punto2() const { return m_pPuntos[1]; }
    [[nodiscard]] const CPuntoTIN* Punto3() const { return m_pPuntos[2]; }
    void SetPunto1(const CPuntoTIN* punto) { m_pPuntos[0] = punto; }
    void SetPunto2(const CPuntoTIN* punto) { m_pPuntos[1] = punto; }
    void SetPunto3(const CPuntoTIN* punto) { m_pPuntos[2] = punto; }
    void SetPuntos(const CPuntoTIN* punto1, const CPuntoTIN* punto2, const CPuntoTIN* punto3) {
        m_pPuntos = {punto1, punto2, punto3};
    }
    /// The triangle beyond side i, or -1.
    [[nodiscard]] int Vecino(int i) const { return m_nVecinos[static_cast<unsigned>(i)]; }
    void SetVecino(int i, int vecino) { m_nVecinos[static_cast<unsigned>(i)] = vecino; }

    // ---- Extents, stored units ----
    [[nodiscard]] CMaximas<int> GetMaximas() const;
    [[nodiscard]] int GetMinX() const { return std::min({Punto1()->x, Punto2()->x, Punto3()->x}); }
    [[nodiscard]] int GetMaxX() const { return std::max({Punto1()->x, Punto2()->x, Punto3()->x}); }
    [[nodiscard]] int GetMinY() const { return std::min({Punto1()->y, Punto2()->y, Punto3()->y}); }
    [[nodiscard]] int GetMaxY() const { return std::max({Punto1()->y, Punto2()->y, Punto3()->y}); }
    [[nodiscard]] int GetMinZ() const { return std::min({Punto1()->z, Punto2()->z, Punto3()->z}); }
    [[nodiscard]] int GetMaxZ() const { return std::max({Punto1()->z, Punto2()->z, Punto3()->z}); }

    // ---- Geometry ----
    /// Three vertices that don't lie in line in plan. Exact.
    [[nodiscard]] bool EsValido() const;
    /// Slope of its plane in degrees, 0 level to 90 upright; 0 when its vertices lie in line in space.
    [[nodiscard]] double Pendiente() const;
    /// Centre of mass, each coordinate rounded; `Tipo` of c stays.
    void CentroMasas(CCoor3D<int>& c) const;
    /// Area in plan, and true area on its plane, square stored units.
    [[nodiscard]] double SuperficiePlana() const;
    [[nodiscard]] double SuperficieReal() const;
    /// Where a point lies in plan: inside, decided exactly, whichever way the vertices turn.
    /// @param bBorde  sides and vertices belong to the inside
    [[nodiscard]] bool Contiene(const CCoor2D<int>& punto, bool bBorde) const;
    /// Puts a point on the triangle's plane. Exact, rounded once.
    /// @param punto   in: x, y; out: z. Unchanged on failure
    /// @param bBorde  sides and vertices belong to the triangle
    /// @param modo    0 gives it the height; 1 only tells whether it lies in the triangle
    /// @param escala  the height is multiplied by it
    /// @return whether the point lies in the triangle in plan; false for vertices in line
    bool Proyecta(CCoor3D<int>& punto, bool bBorde, unsigned modo, double escala) const;

    // ---- Pieces ----
    /// Cuts the triangle by the line x = `x`, stored units.
    /// @param t1,t2,t3  out: pieces that turn as this one does, without neighbours and marks. Those that have no area,
    ///                  since the line passes through a vertex or rounding leaves none, aren't EsValido()
    /// @param a,b       vertices for the cut: they take x, y and z, heights on the sides cut, rounded; the rest of them
    ///                  stays. They are the caller's, and pieces point to them
    /// @return false, with nothing changed, when the line doesn't pass between the vertices
    bool DivideTrianguloX(CTriangulo& t1, CTriangulo& t2, CTriangulo& t3, int x, CPuntoTIN* a, CPuntoTIN* b) const;
    /// The same with the line y = `y`.
    bool DivideTrianguloY(CTriangulo& t1, CTriangulo& t2, CTriangulo& t3, int y, CPuntoTIN* a, CPuntoTIN* b) const;
    /// Notes of a piece the triangle that it comes from.
    void AlmacenaTrozoCurva(unsigned triangulo) { m_Trozos.push_back(triangulo); }
    /// What was noted, in order.
    [[nodiscard]] const std::vector<std::uint32_t>& Trozos() const { return m_Trozos; }

  private:
    bool Divide(int CCoor3D<int>::*eje, int valor, CTriangulo& t1, CTriangulo& t2, CTriangulo& t3, CPuntoTIN* a,
                CPuntoTIN* b) const;

    std::array<const CPuntoTIN*, 3> m_pPuntos{};
    std::array<std::int32_t, 3> m_nVecinos{-1, -1, -1};
    std::vector<std::uint32_t> m_Trozos;
};

}  // namespace Vertiz
