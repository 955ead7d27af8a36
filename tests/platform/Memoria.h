#pragma once
// What the tests of contexts draw on: a bitmap in a memory device context, with its pixel format set.

#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/Contextos.h"
#include "platform/OpenGL.h"

#include <array>

/// A descriptor of what scenes ask for.
inline PIXELFORMATDESCRIPTOR Deseado(DWORD flags = PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL) {
    PIXELFORMATDESCRIPTOR d{};
    d.nSize = sizeof d;
    d.nVersion = 1;
    d.dwFlags = flags;
    d.cColorBits = 24;
    d.cDepthBits = 32;
    return d;
}

/// Sets the format that fits best; false when that fails.
inline bool PonFormato(HDC hdc, DWORD flags = PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL) {
    const auto d = Deseado(flags);
    return SetPixelFormat(hdc, ChoosePixelFormat(hdc, &d), &d);
}

struct Memoria {
    explicit Memoria(int ancho = 8, int alto = 8, UINT bits = 24) {
        m_Bitmap.CreateBitmap(ancho, alto, bits);
        m_DC.CreateCompatibleDC(nullptr);
        m_bSeleccionado = m_DC.SelectObject(&m_Bitmap) != nullptr;
        m_bFormato = PonFormato(hdc());
    }
    HDC hdc() const { return m_DC.GetSafeHdc(); }

    /// Blue, green and red of a pixel of the bitmap, y upwards.
    std::array<int, 3> Pixel(int x, int y) const {
        BITMAP b{};
        m_Bitmap.GetBitmap(&b);
        const BYTE* p = static_cast<const BYTE*>(b.bmBits) + y * b.bmWidthBytes + x * b.bmBitsPixel / 8;
        return {p[0], p[1], p[2]};
    }

    CBitmap m_Bitmap;
    CDC m_DC;
    bool m_bSeleccionado = false;
    bool m_bFormato = false;
};

/// Clears the current context to a colour, in bytes.
inline void Limpia(int r, int g, int b) {
    glClearColor(static_cast<float>(r) / 255.0f, static_cast<float>(g) / 255.0f, static_cast<float>(b) / 255.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

/// Draws over the lower left quarter of the front buffer in XOR: red and green turn into their opposites.
inline void Xorea() {
    glDrawBuffer(GL_FRONT);
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_XOR);
    glColor3f(1, 1, 0);
    glRectf(-1, -1, 0, 0);
    glDisable(GL_COLOR_LOGIC_OP);
    glDrawBuffer(GL_BACK);
}
