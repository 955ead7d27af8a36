// A colour that can be told from its background.

#include "frame/ContrastaColor.h"

#include <cstdlib>

int ContrastaColor(COLORREF& color, COLORREF referencia) {
    const auto canal = [](COLORREF c, int i) { return static_cast<int>(c >> (8 * i) & 0xFF); };
    for (int i = 0; i < 3; ++i)
        if (std::abs(canal(color, i) - canal(referencia, i)) >= 10) return 0;
    COLORREF movido = 0;
    for (int i = 0; i < 3; ++i) {
        const int c = canal(color, i);
        movido |= static_cast<COLORREF>((c + 128 + (c >= 128 ? 1 : 0)) % 256) << (8 * i);
    }
    color = movido;
    return 1;
}
