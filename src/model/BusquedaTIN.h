#pragma once
// Internal. What a search for triangles starts from.

#include "model/CCoor.h"

#include <cstdint>
#include <span>
#include <vector>

namespace Vertiz {

class CTIN;

/// Where to begin to look for the triangle of a point, and where the triangulation ends. Found once, never changed.
class CBusquedaTIN {
  public:
    /// A side without a neighbour.
    struct CBorde {
        std::uint32_t m_nTriangulo;
        std::uint32_t m_nLado;
    };

    explicit CBusquedaTIN(const CTIN& tin);

    /// A triangle near a point, stored units; there has to be one.
    [[nodiscard]] unsigned Cerca(double x, double y) const;
    /// How many steps a walk may take before it is given up: more than it needs in any ordinary triangulation.
    [[nodiscard]] unsigned PasosMaximos() const { return m_nPasosMaximos; }
    /// All border sides that have a point between two heights y, some others, and perhaps one of them twice.
    [[nodiscard]] std::span<const CBorde> Bordes(double y1, double y2) const;

  private:
    [[nodiscard]] std::size_t Banda(double y) const;

    unsigned m_nPasosMaximos = 0;
    CCoor2D<double> m_Origen;
    double m_dCeldasX = 0.0, m_dCeldasY = 0.0;  // cells in a stored unit
    unsigned m_nColumnas = 1, m_nFilas = 1;
    std::vector<std::uint32_t> m_Celdas;  // a triangle near each, row by row
    double m_dBandas = 0.0;               // bands in a stored unit
    std::vector<CBorde> m_Bordes;         // of each band, one after the other
    std::vector<std::uint32_t> m_Bandas;  // where those of each begin, and the end
};

}  // namespace Vertiz
