#pragma once
// The header that every stored picture has: that of a device-independent bitmap.

#include "platform/Tipos.h"

/// Byte for byte the header of a BMP file of version 3 (little-endian).
struct BITMAPINFOHEADER {
    DWORD biSize = 40;
    LONG biWidth = 0;   ///< pixels
    LONG biHeight = 0;  ///< pixels, negative when the top row comes first
    WORD biPlanes = 1;
    WORD biBitCount = 0;
    DWORD biCompression = 0;
    DWORD biSizeImage = 0;
    LONG biXPelsPerMeter = 0;
    LONG biYPelsPerMeter = 0;
    DWORD biClrUsed = 0;
    DWORD biClrImportant = 0;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);
