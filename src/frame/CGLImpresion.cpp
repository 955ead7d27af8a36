// What a scene takes from the display and gives back as a picture: the palette of displays with few colours, the copy
// of the picture, the glyph lists.

#include "frame/CGL.h"
#include "platform/CDC.h"

#include <cstddef>
#include <new>
#include <vector>

namespace {

constexpr int kEntradas = 256;

// The levels of a channel of 1, 2 and 3 bits.
constexpr unsigned char kUnBit[2] = {0, 255};
constexpr unsigned char kDosBits[4] = {0, 0x55, 0xAA, 0xFF};
constexpr unsigned char kTresBits[8] = {0, 0x24, 0x49, 0x6D, 0x92, 0xB6, 0xDB, 0xFF};
// The places of the system's colours, and these.
constexpr int kEntradasSistema[13] = {0, 3, 24, 27, 64, 67, 88, 173, 181, 236, 247, 164, 91};
constexpr PALETTEENTRY kColoresSistema[20] = {
    {0x00, 0x00, 0x00, 0}, {0x80, 0x00, 0x00, 0}, {0x00, 0x80, 0x00, 0}, {0x80, 0x80, 0x00, 0}, {0x00, 0x00, 0x80, 0},
    {0x80, 0x00, 0x80, 0}, {0x00, 0x80, 0x80, 0}, {0xC0, 0xC0, 0xC0, 0}, {0xC0, 0xDC, 0xC0, 0}, {0xA6, 0xCA, 0xF0, 0},
    {0xFF, 0xFB, 0xF0, 0}, {0xA0, 0xA0, 0xA4, 0}, {0x80, 0x80, 0x80, 0}, {0xFF, 0x00, 0x00, 0}, {0x00, 0xFF, 0x00, 0},
    {0xFF, 0xFF, 0x00, 0}, {0x00, 0x00, 0xFF, 0}, {0xFF, 0x00, 0xFF, 0}, {0x00, 0xFF, 0xFF, 0}, {0xFF, 0xFF, 0xFF, 0},
};

// 3 bits of red, 3 of green, 2 of blue: the format in which the system's own colours have a place.
bool Es332(const PIXELFORMATDESCRIPTOR& d) {
    return d.cColorBits == 8 && d.cRedBits == 3 && d.cRedShift == 0 && d.cGreenBits == 3 && d.cGreenShift == 3 &&
           d.cBlueBits == 2 && d.cBlueShift == 6;
}

bool NecesitaPaleta(const PIXELFORMATDESCRIPTOR& d, bool bDCExterno) {
    return (d.dwFlags & PFD_NEED_PALETTE) || (bDCExterno && d.cColorBits == 8) || d.iPixelType == PFD_TYPE_COLORINDEX;
}

}  // namespace

unsigned char CGL::ComponentFromIndex(int i, unsigned nbits, unsigned shift) {
    const unsigned v = static_cast<unsigned>(i) >> shift;
    switch (nbits) {
        case 1:
            return kUnBit[v & 1];
        case 2:
            return kDosBits[v & 3];
        case 3:
            return kTresBits[v & 7];
        default:
            return 0;
    }
}

int CGL::CreatePalette() {
    const HDC hdc = m_pDC ? m_pDC->GetSafeHdc() : nullptr;
    PIXELFORMATDESCRIPTOR d{};
    if (!DescribePixelFormat(hdc, GetPixelFormat(hdc), sizeof(d), &d)) return 0;
    if (!NecesitaPaleta(d, m_bDCExterno != 0)) return 0;

    // A record with room for its entries behind the one that it declares.
    std::vector<std::byte> memoria(sizeof(LOGPALETTE) + (kEntradas - 1) * sizeof(PALETTEENTRY));
    LOGPALETTE* registro = new (memoria.data()) LOGPALETTE{};
    registro->palVersion = 0x0A00;
    registro->palNumEntries = kEntradas;
    if (d.iPixelType == PFD_TYPE_RGBA) {
        LlenaPaleta(d, registro->palPalEntry);
    } else {
        OnCreatePaletteCI(registro);
    }

    delete m_pPalette;
    m_pPalette = new CPalette;
    m_pPalette->CreatePalette(registro);
    if (!m_bDCExterno) {
        m_pPaletaAnterior = m_pDC->SelectPalette(m_pPalette, FALSE);
        m_pDC->RealizePalette();
    }
    return 1;
}

// @param entradas room for 256
void CGL::LlenaPaleta(const PIXELFORMATDESCRIPTOR& d, PALETTEENTRY* entradas) {
    const int n = d.cColorBits < 8 ? 1 << d.cColorBits : kEntradas;
    for (int i = 0; i < n; ++i) {
        entradas[i] = {ComponentFromIndex(i, d.cRedBits, d.cRedShift),
                       ComponentFromIndex(i, d.cGreenBits, d.cGreenShift),
                       ComponentFromIndex(i, d.cBlueBits, d.cBlueShift), 0};
    }
    if (!Es332(d)) return;
    for (int i = 1; i <= 12; ++i)
        entradas[kEntradasSistema[i]] = kColoresSistema[i];
}

int CGL::CapturaImagen(const CSize& size, char* buffer) {
    constexpr int SIN_CONTEXTO = 3, SIN_LECTURA = 4;
    if (!MakeCurrent(nullptr)) return SIN_CONTEXTO;
    glReadPixels(0, 0, size.cx, size.cy, GL_BGR_EXT, GL_UNSIGNED_BYTE, buffer);
    if (HayErrorGL()) return SIN_LECTURA;
    return wglMakeCurrent(nullptr, nullptr) ? 0 : SIN_CONTEXTO;
}

int CGL::CreaFuentes() {
    return 1;
}
