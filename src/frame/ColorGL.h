#pragma once
// Internal. Colours of the settings as OpenGL takes them.

#include "platform/OpenGL.h"
#include "platform/Tipos.h"

#include <array>

/// Channels from 0 to 1 of a colour with red in the low byte.
inline std::array<float, 3> ColorGL(int nColor) {
    const auto color = static_cast<COLORREF>(nColor);
    return {GetRValue(color) / 255.0F, GetGValue(color) / 255.0F, GetBValue(color) / 255.0F};
}

/// Makes it the current colour.
inline void FijaColorGL(int nColor) {
    const std::array<float, 3> color = ColorGL(nColor);
    glColor3f(color[0], color[1], color[2]);
}

/// Makes it the colour that buffers are cleared with, alpha 0.
inline void FijaColorFondoGL(int nColor) {
    const std::array<float, 3> color = ColorGL(nColor);
    glClearColor(color[0], color[1], color[2], 0.0F);
}
