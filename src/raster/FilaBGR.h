#pragma once
// Internal. Rows of any picture as blue, green and red: textures are made of them.

#include "raster/IRaster.h"

#include <algorithm>
#include <span>
#include <vector>

namespace Vertiz {

/// Reads a picture row by row: colours, greys of 8 bits, palettes. What the picture doesn't have is white, and so are
/// pixels of any other depth.
class FilaBGR {
  public:
    /// @param raster   borrowed
    /// @param columnas  pixels of a row, from the first column on
    FilaBGR(const IRaster& raster, int columnas)
        : m_Raster(raster),
          m_nColumnas(columnas),
          m_nBytes(raster.TienePaleta() ? 3 : raster.BytesPixel()),
          m_Fila(3 * static_cast<std::size_t>(columnas)) {}

    /// Row `fila`, counted as the raster does; three bytes a pixel, valid until the next call.
    std::span<const BYTE> Lee(int fila) {
        std::ranges::fill(m_Fila, BYTE{255});
        if (m_nBytes == 1 || m_nBytes == 3) m_Raster.GetFila(m_Fila.data(), fila, 0, m_nColumnas);
        if (m_nBytes == 1)  // greys
            for (std::size_t c = m_Fila.size() / 3; c-- > 0;)
                m_Fila[3 * c] = m_Fila[3 * c + 1] = m_Fila[3 * c + 2] = m_Fila[c];
        return m_Fila;
    }

  private:
    const IRaster& m_Raster;
    int m_nColumnas, m_nBytes;
    std::vector<BYTE> m_Fila;
};

}  // namespace Vertiz
