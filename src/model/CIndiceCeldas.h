#pragma once
// Finds the cells of a cell list near a place. Internal.

#include "model/PaseoCeldas.h"

#include <cstdint>
#include <span>
#include <vector>

namespace Vertiz {

/// The place of a cell in plan.
struct RectanguloCelda {
    double m_dOeste = 0.0, m_dSur = 0.0, m_dEste = 0.0, m_dNorte = 0.0;
};

/// A lattice over all cells that lists for each of its squares the cells that touch it.
class CIndiceCeldas {
  public:
    /// A rectangle without area belongs to a cell that isn't to be found.
    explicit CIndiceCeldas(const std::vector<RectanguloCelda>& rectangulos);

    const Reticula& Cuadros() const { return m_Cuadros; }
    std::span<const std::uint32_t> Cuadro(std::int64_t fila, std::int64_t columna) const;
    /// The cells near a point: none outside the lattice.
    std::span<const std::uint32_t> Cerca(double x, double y) const;

  private:
    struct Rango {
        std::int64_t m_nFila0, m_nFila1, m_nColumna0, m_nColumna1;
    };
    Rango Toca(const RectanguloCelda& r) const;
    std::uint64_t Entradas(const std::vector<RectanguloCelda>& rectangulos) const;

    Reticula m_Cuadros;
    std::vector<std::uint64_t> m_Inicios;  ///< for each square, row by row, where its cells begin; one more at the end
    std::vector<std::uint32_t> m_Celdas;
};

}  // namespace Vertiz
