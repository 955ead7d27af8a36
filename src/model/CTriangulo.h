#pragma once
// A triangle of a triangulated terrain.

#include "model/CPuntoTIN.h"

#include <array>
#include <cstdint>

namespace Vertiz {

/// A triangle: its vertices, counterclockwise in plan, and what lies beyond its sides. Side i goes from vertex i to the
/// next one. The vertices belong to the terrain. A plain value.
class CTriangulo {
  public:
    CTriangulo() = default;
    /// @param vecino1,vecino2,vecino3  the triangle beyond each side, -1 for none
    CTriangulo(const CPuntoTIN* punto1, const CPuntoTIN* punto2, const CPuntoTIN* punto3, int vecino1, int vecino2,
               int vecino3)
        : m_pPuntos{punto1, punto2, punto3}, m_nVecinos{vecino1, vecino2, vecino3} {}

    /// @param i  0 to 2
    [[nodiscard]] const CPuntoTIN* Punto(int i) const { return m_pPuntos[static_cast<unsigned>(i)]; }
    /// The triangle beyond side i, or -1.
    [[nodiscard]] int Vecino(int i) const { return m_nVecinos[static_cast<unsigned>(i)]; }

    /// Side i lies on a line that the triangulation had to follow.
    [[nodiscard]] bool EsRuptura(int i) const { return (m_nRupturas >> i & 1) != 0; }
    void SetRuptura(int i) { m_nRupturas |= static_cast<std::uint8_t>(1 << i); }
    /// Side i parts what is inside the limits from what is outside: an odd number of limits runs along it.
    [[nodiscard]] bool EsLimite(int i) const { return (m_nLimites >> i & 1) != 0; }
    void SetLimite(int i) { m_nLimites |= static_cast<std::uint8_t>(1 << i); }

    /// Marked as deleted: it keeps its place, and nothing shows it.
    [[nodiscard]] bool EsBorrado() const { return m_bBorrado; }
    void SetBorrado(bool bBorrado) { m_bBorrado = bBorrado; }

  private:
    std::array<const CPuntoTIN*, 3> m_pPuntos{};
    std::array<std::int32_t, 3> m_nVecinos{-1, -1, -1};
    std::uint8_t m_nRupturas = 0;  // a bit for each side
    std::uint8_t m_nLimites = 0;
    bool m_bBorrado = false;
};

}  // namespace Vertiz
