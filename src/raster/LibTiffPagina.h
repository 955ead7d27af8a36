#pragma once
// Internal. What libtiff tells of a page, and the part of it that is read.

#include "raster/LibTiff.h"

#include <algorithm>
#include <cstdint>

namespace Vertiz {

struct LibTiff::Pagina {
    std::uint32_t ancho = 0, alto = 0;
    std::uint32_t anchoTesela = 0, altoTesela = 0;  ///< 0 in strips
    std::uint16_t muestras = 1, bits = 1, unidad = 2, formato = 1;
    float resolucionX = 0.0F, resolucionY = 0.0F;

    bool HayTeselas() const { return altoTesela != 0; }
    /// A grid of values rather than a picture.
    bool SonValores() const {
        constexpr std::uint16_t kComaFlotante = 3;
        return muestras == 1 && (bits == 16 || ((bits == 32 || bits == 64) && formato == kComaFlotante));
    }
    std::uint32_t BytesValor() const { return bits / 8U; }
};

/// Half-open, in pixels from the top left corner; an axis with both 0 is whole.
struct LibTiff::Ventana {
    int col0, col1, fila0, fila1;

    /// Keeps the part that lies in the page; false when there is none.
    bool Limita(const Pagina& pagina) {
        const int ancho = static_cast<int>(pagina.ancho), alto = static_cast<int>(pagina.alto);
        if (col0 == 0 && col1 == 0) col1 = ancho;
        if (fila0 == 0 && fila1 == 0) fila1 = alto;
        *this = {std::max(col0, 0), std::min(col1, ancho), std::max(fila0, 0), std::min(fila1, alto)};
        return col0 < col1 && fila0 < fila1;
    }
    int Columnas() const { return col1 - col0; }
    int Filas() const { return fila1 - fila0; }
};

}  // namespace Vertiz
