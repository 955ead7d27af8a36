#pragma once
// Keeping lines and texts apart from the background that they are drawn on.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

/// Moves a colour that can hardly be told from another: when all three channels differ by less than 10, each is moved
/// by 128 modulo 256, and by 1 more when it was 128 or above.
/// @return 1 when the colour moved, 0 otherwise
LUMBRA_API int ContrastaColor(COLORREF& color, COLORREF referencia);
