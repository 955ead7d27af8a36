#pragma once
// Internal. Pictures hold blue, green, red; JPEG and TIFF hold red, green, blue.

#include "platform/Tipos.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace Vertiz {

/// Turns pixels of three bytes from the one order into the other.
inline void CambiaRojoAzul(std::span<BYTE> pixeles) {
    for (std::size_t i = 0; i + 2 < pixeles.size(); i += 3)
        std::swap(pixeles[i], pixeles[i + 2]);
}

/// The same on the way to another place, which doesn't overlap: `n` pixels.
inline void CopiaRojoAzul(const BYTE* fuente, std::size_t n, BYTE* destino) {
    // Four bytes at a time: the last of them is the next pixel's first, which then is written over.
    if constexpr (std::endian::native == std::endian::little)
        for (; n > 1; --n, fuente += 3, destino += 3) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, fuente, 4);
            pixel = __builtin_bswap32(pixel) >> 8;
            std::memcpy(destino, &pixel, 4);
        }
    for (; n > 0; --n, fuente += 3, destino += 3)
        destino[0] = fuente[2], destino[1] = fuente[1], destino[2] = fuente[0];
}

}  // namespace Vertiz
