#pragma once
// Internal. How large a window's picture is printed, in which format, and where it lies on the page. The ratio of a
// window's sides is kept in single precision: a page of 10000 x 7000 pixels and a window of 10 to 7 have to give 10000
// x 7000 again.

#include "platform/CPoint.h"
#include "platform/Contextos.h"

#include <algorithm>
#include <cstdint>

/// Pixels of the largest picture that is printed.
constexpr std::int64_t kPixelesPagina = 20'000'000;

/// Height over width.
inline float Razon(const CSize& s) {
    return static_cast<float>(s.cy) / static_cast<float>(s.cx);
}

/// The largest size of a ratio that fits a page. @param pagina sides of 1 pixel or more
inline CSize Encaja(const CSize& pagina, float r) {
    const float ancho = static_cast<float>(pagina.cx), alto = static_cast<float>(pagina.cy);
    if (alto > ancho * r) return CSize(pagina.cx, std::max(1, static_cast<int>(ancho * r)));
    return CSize(std::max(1, static_cast<int>(alto / r)), pagina.cy);
}

inline CSize Mitad(const CSize& s) {
    return CSize(s.cx / 2, s.cy / 2);
}

/// Halves a picture until it isn't too large.
inline CSize Limita(CSize s) {
    while (std::int64_t{s.cx} * s.cy > kPixelesPagina)
        s = Mitad(s);
    return s;
}

/// The size at which a picture lies on a page: one that is wider than high over the page's whole width, another over
/// its whole height. A page that is narrower still than the picture, the same way round, cuts it.
inline CSize SobrePagina(const CSize& imagen, const CSize& pagina) {
    const float r = Razon(imagen);
    if (r < 1.0F) return CSize(pagina.cx, static_cast<int>(static_cast<float>(pagina.cx) * r));
    return CSize(static_cast<int>(static_cast<float>(pagina.cy) / r), pagina.cy);
}

/// The pixel format that a page's picture is to have. @param flags PFD_... flags
inline PIXELFORMATDESCRIPTOR DescriptorPagina(DWORD flags) {
    PIXELFORMATDESCRIPTOR d{};
    d.nSize = sizeof(d);
    d.nVersion = 1;
    d.dwFlags = flags;
    d.iPixelType = PFD_TYPE_RGBA;
    d.cColorBits = 24;
    d.cRedBits = d.cGreenBits = d.cBlueBits = 8;
    d.cRedShift = 16;
    d.cGreenShift = 8;
    d.cAccumBits = 64;
    d.cAccumRedBits = d.cAccumGreenBits = d.cAccumBlueBits = 16;
    d.cDepthBits = 32;
    d.cStencilBits = 8;
    return d;
}
