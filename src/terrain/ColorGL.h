#pragma once
// Colours of the settings as OpenGL takes them.

#include <array>

#include "platform/Tipos.h"

/// Channels from 0 to 1 of a colour with red in the low byte.
inline std::array<float, 3> ColorGL(int nColor) {
    const auto color = static_cast<COLORREF>(nColor);
    return {GetRValue(color) / 255.0F, GetGValue(color) / 255.0F, GetBValue(color) / 255.0F};
}
