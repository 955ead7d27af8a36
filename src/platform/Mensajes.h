#pragma once
// Messages: what a window is told, as a number and two values. `CWnd::WindowProc` turns each into a handler.

#include "platform/Tipos.h"

#include <cstdint>

using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

/// Values of a message beside its number: `w` and `l`. A point is two signed 16-bit numbers, x low, y high.
constexpr UINT WM_CREATE = 0x0001;      ///< l: CREATESTRUCT*, may be null; result: that of `OnCreate`
constexpr UINT WM_DESTROY = 0x0002;     ///< the window is about to go
constexpr UINT WM_SIZE = 0x0005;        ///< w: SIZE_ value; l: width and height, pixels
constexpr UINT WM_PAINT = 0x000F;       ///< paint what is invalid
constexpr UINT WM_CLOSE = 0x0010;       ///< the user wants it closed
constexpr UINT WM_ERASEBKGND = 0x0014;  ///< nobody sends it, and `CWnd` has no handler for it
constexpr UINT WM_KEYDOWN = 0x0100;     ///< w: VK_ value; l: repetitions
constexpr UINT WM_KEYUP = 0x0101;       ///< w: VK_ value
constexpr UINT WM_COMMAND = 0x0111;     ///< low word of w: number of the command; result: 1 when it was known
constexpr UINT WM_MOUSEMOVE = 0x0200;   ///< this and the next nine: w: MK_ values; l: point of the client area
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_RBUTTONDBLCLK = 0x0206;
constexpr UINT WM_MBUTTONDOWN = 0x0207;
constexpr UINT WM_MBUTTONUP = 0x0208;
constexpr UINT WM_MBUTTONDBLCLK = 0x0209;
constexpr UINT WM_MOUSEWHEEL = 0x020A;       ///< w: MK_ values, turn in its high word; l: point of the client area
constexpr UINT WM_QUERYNEWPALETTE = 0x030F;  ///< result: that of `OnQueryNewPalette`
constexpr UINT WM_PALETTECHANGED = 0x0311;   ///< w: HWND of the window that changed it
constexpr UINT WM_INITIALUPDATE = 0x0364;    ///< a view that was created is to fill itself

constexpr WORD LOWORD(std::uintptr_t v) {
    return static_cast<WORD>(v);
}
constexpr WORD HIWORD(std::uintptr_t v) {
    return static_cast<WORD>(v >> 16);
}
/// Two 16-bit numbers in one value; what a point or a size is sent as.
constexpr LPARAM MAKELPARAM(int bajo, int alto) {
    return static_cast<LPARAM>(static_cast<DWORD>(static_cast<WORD>(alto)) << 16 | static_cast<WORD>(bajo));
}
constexpr int GET_X_LPARAM(LPARAM l) {
    return static_cast<std::int16_t>(LOWORD(static_cast<std::uintptr_t>(l)));
}
constexpr int GET_Y_LPARAM(LPARAM l) {
    return static_cast<std::int16_t>(HIWORD(static_cast<std::uintptr_t>(l)));
}
