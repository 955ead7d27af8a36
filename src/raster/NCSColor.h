#pragma once
// Internal. Rows of a decoded picture as blue, green and red of 8 bits.

#include "platform/Tipos.h"

#include <cstdint>
#include <vector>

struct opj_image;
struct opj_image_comp;

namespace NCS {

/// How the components of a decoded picture become colours. Components of other depths are brought to 8 bits over their
/// whole range; subsampled ones are repeated; alpha is left out.
class CColorJ2K {
  public:
    /// @param imagen  decoded, whole or in part; has to outlive this object
    /// @param x0, y0  first sample that the whole picture has of the first component, in that one's grid
    /// @return false when its components can't make a colour
    bool Prepara(const opj_image& imagen, std::int64_t x0, std::int64_t y0);
    /// n pixels of a row from a column on, both in pixels of the whole picture.
    void Linea(int fila, int columna, int n, BYTE* bgr, std::vector<BYTE>& componentes) const;

  private:
    enum class Modelo { kGris, kRGB, kYCC, kCMYK };

    struct Canal {
        const std::int32_t* datos = nullptr;
        std::int64_t x0 = 0, y0 = 0;  // its first sample, in its own grid
        std::int64_t ancho = 0, alto = 0;
        std::int64_t dx = 1, dy = 1;  // steps of its grid, in pixels of the reference grid
        std::int32_t menor = 0, mayor = 255;
        std::vector<BYTE> tabla;  // bytes of the values from menor on; empty where there are too many

        BYTE Byte(std::int32_t valor) const;
    };

    bool PonCanal(const opj_image_comp& componente);
    // The samples of a line where they stand on the picture's own grid; else null.
    const std::int32_t* Muestras(const Canal& canal, std::int64_t x, std::int64_t y, int n) const;
    // Greys and colours of 8 bits; false for others.
    bool LineaDirecta(std::int64_t x, std::int64_t y, int n, BYTE* bgr) const;
    // One line of a channel, on the grid of the picture.
    void LineaCanal(const Canal& canal, std::int64_t x, std::int64_t y, int n, BYTE* bytes) const;

    Modelo m_Modelo = Modelo::kGris;
    std::vector<Canal> m_Canales;
    std::int64_t m_nDx = 1, m_nDy = 1;  // the picture's pixels are the samples of the first component
    std::int64_t m_nX0 = 0, m_nY0 = 0;
};

}  // namespace NCS
