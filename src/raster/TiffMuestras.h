#pragma once
// Internal. From the samples of a page to values, and to the pixels that a picture stores.

#include "raster/TiffColor.h"
#include "raster/TiffFilas.h"

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

namespace Vertiz {

/// How values of samples become bytes.
struct EscalaTiff {
    double minimo = 0.0;  ///< becomes 0
    double factor = 0.0;  ///< 0 makes everything 0
};

/// The samples of one page, which has to outlive it.
class MuestrasTiff {
  public:
    /// @param canales  samples of the page that become red, green and blue where the page has colours
    MuestrasTiff(const PaginaTiff& pagina, const std::array<unsigned, 3>& canales);

    /// The planes that FilasTiff has to give.
    std::vector<unsigned> Planos() const;
    /// Samples that take part in the colour: 1, 3 or 4.
    std::size_t Colores() const { return m_nColores; }
    /// The values of one of them.
    void Valores(const TramoTiff& tramo, std::size_t color, double* destino) const;
    /// From now on pixels come from values, brought to bytes.
    void SetEscala(const EscalaTiff& escala);
    /// The pixels as a picture stores them, one byte or blue, green and red.
    void Pixeles(const TramoTiff& tramo, BYTE* destino);

  private:
    std::size_t Primero(const TramoTiff& tramo, std::size_t color) const;
    void Expande(const TramoTiff& tramo, std::size_t color);
    void Reduce(const TramoTiff& tramo, std::size_t color);

    const PaginaTiff& m_Pagina;
    std::vector<unsigned> m_Muestras;  ///< those of the colour, then transparency where it counts
    std::size_t m_nColores = 0;
    std::size_t m_nPaso;  ///< from a sample of a pixel to that of the next
    bool m_bEscala = false;
    EscalaTiff m_Escala;
    ColorTiff m_Color;
    std::array<std::vector<BYTE>, 4> m_Bytes;
    std::vector<double> m_Valores;
};

}  // namespace Vertiz
