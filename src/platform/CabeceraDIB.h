#pragma once
// The header of pictures in memory and in BMP files.

#include "platform/Tipos.h"

#include <algorithm>

/// Header of a device-independent bitmap: byte for byte that of a BMP file of version 3 (little-endian).
struct BITMAPINFOHEADER {
    DWORD biSize;  ///< 40
    LONG biWidth;
    LONG biHeight;  ///< positive: rows from the bottom up
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;  ///< 0: none
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

/// Bytes of a row of pixels, padded to four; 0 for a width below 1.
constexpr ULONGLONG BytesDeFila(LONGLONG ancho, unsigned bits) {
    return (ULONGLONG{bits} * static_cast<ULONGLONG>(std::max(ancho, LONGLONG{0})) + 31) / 32 * 4;
}
