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

/// Half-open, in pixels from the top left corner.
struct LibTiff::Ventana {
    int col0, col1, fila0, fila1;

    /// The part of a window that lies in the page; all 0 is the whole page.
    Ventana(const Pagina& pagina, int c0, int c1, int f0, int f1) {
        const int ancho = static_cast<int>(pagina.ancho), alto = static_cast<int>(pagina.alto);
        const bool entera = c0 == 0 && c1 == 0 && f0 == 0 && f1 == 0;
        col0 = entera ? 0 : std::max(c0, 0);
        col1 = entera ? ancho : std::min(c1, ancho);
        fila0 = entera ? 0 : std::max(f0, 0);
        fila1 = entera ? alto : std::min(f1, alto);
    }
    int Columnas() const { return col1 - col0; }
    int Filas() const { return fila1 - fila0; }
    bool EstaVacia() const { return col0 >= col1 || fila0 >= fila1; }
};

}  // namespace Vertiz
