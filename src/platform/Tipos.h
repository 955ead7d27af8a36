#pragma once
// The plain types that the interfaces of this library are written with. Their widths are part of those interfaces:
// LONG, DWORD and COLORREF have 32 bits whatever the machine's own `long` has.

#include <cstdint>

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using LONG = std::int32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using BOOL = int;
using HANDLE = void*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;

// Macros, and guarded ones, because the headers of image libraries define the same two names in the same way.
#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

/// A colour: red in the low byte, then green, then blue; the high byte is 0.
using COLORREF = std::uint32_t;

/// Makes a colour of three channels from 0 to 255; only the low byte of each counts.
constexpr COLORREF RGB(int r, int g, int b) {
    return static_cast<BYTE>(r) | static_cast<COLORREF>(static_cast<BYTE>(g)) << 8 |
           static_cast<COLORREF>(static_cast<BYTE>(b)) << 16;
}
constexpr BYTE GetRValue(COLORREF color) {
    return static_cast<BYTE>(color);
}
constexpr BYTE GetGValue(COLORREF color) {
    return static_cast<BYTE>(color >> 8);
}
constexpr BYTE GetBValue(COLORREF color) {
    return static_cast<BYTE>(color >> 16);
}

/// Size of a buffer that holds any path, with the null at its end.
constexpr int MAX_PATH = 4096;

/// valor * por / entre in 64 bits, rounded to the nearest number, halves away from 0.
/// @return -1 when `entre` is 0 or the result has no place in an int
constexpr int MulDiv(int valor, int por, int entre) {
    if (entre == 0) return -1;
    const std::int64_t producto = std::int64_t{valor} * por, divisor = entre;
    const std::int64_t p = producto < 0 ? -producto : producto, d = divisor < 0 ? -divisor : divisor;
    const std::int64_t r = (p + d / 2) / d;
    if (r > 0x7FFFFFFF) return -1;
    return static_cast<int>((producto < 0) == (divisor < 0) ? r : -r);
}

/// A pixel of a window, y downwards.
struct POINT {
    LONG x, y;
};

/// Width and height in pixels.
struct SIZE {
    LONG cx, cy;
};

/// A rectangle in pixels: left and top belong to it, right and bottom don't.
struct RECT {
    LONG left, top, right, bottom;
};
