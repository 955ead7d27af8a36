#pragma once
// Internal. Pictures hold blue, green, red; JPEG and TIFF hold red, green, blue.

#include "platform/Tipos.h"

#include <cstddef>
#include <span>
#include <utility>

namespace Vertiz {

/// Turns pixels of three bytes from the one order into the other.
inline void CambiaRojoAzul(std::span<BYTE> pixeles) {
    for (std::size_t i = 0; i + 2 < pixeles.size(); i += 3)
        std::swap(pixeles[i], pixeles[i + 2]);
}

}  // namespace Vertiz
