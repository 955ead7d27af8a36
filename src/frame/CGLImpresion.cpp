// What a scene takes from the display and gives back as a picture: the palette of displays with few colours, the copy
// of the picture, the glyph lists.

#include "frame/CGL.h"
#include "platform/CDC.h"

#include <cstddef>
#include <new>
#include <vector>

namespace {

bool NecesitaPaleta(const PIXELFORMATDESCRIPTOR& d, bool bDCExterno) {
    return (d.dwFlags & PFD_NEED_PALETTE) || (bDCExterno && d.cColorBits == 8) || d.iPixelType == PFD_TYPE_COLORINDEX;
}

}  // namespace

int CGL::CreatePalette() {
    const HDC hdc = m_pDC ? m_pDC->GetSafeHdc() : nullptr;
    PIXELFORMATDESCRIPTOR d{};
    if (!DescribePixelFormat(hdc, GetPixelFormat(hdc), sizeof(d), &d)) return 0;
    if (!NecesitaPaleta(d, m_bDCExterno != 0)) return 0;

    // A record with room for its entries behind the one that it declares.
    std::vector<std::byte> memoria(sizeof(LOGPALETTE) + (kEntradasPaleta - 1) * sizeof(PALETTEENTRY));
    LOGPALETTE* registro = new (memoria.data()) LOGPALETTE{};
    registro->palVersion = 0x0A00;
    registro->palNumEntries = kEntradasPaleta;
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
