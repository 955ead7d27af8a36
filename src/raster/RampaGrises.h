#pragma once
// Internal. The palette of a picture of greys.

#include "platform/Tipos.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace Vertiz {

/// Black to white in so many entries of blue, green, red and 0, from 2 to 256; the rest is 0.
/// @param invertida  white to black
inline std::array<BYTE, 256 * 4> RampaGrises(unsigned colores, bool invertida = false) {
    std::array<BYTE, 256 * 4> paleta{};
    for (unsigned i = 0; i < colores; ++i) {
        const unsigned gris = i * 255 / (colores - 1);
        std::fill_n(&paleta[std::size_t{i} * 4], 3, static_cast<BYTE>(invertida ? 255 - gris : gris));
    }
    return paleta;
}

}  // namespace Vertiz
