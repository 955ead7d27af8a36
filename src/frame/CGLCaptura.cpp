// What a scene takes from the display and gives back as a picture: the palette of displays with few colours, and the
// copy of the picture.

#include "frame/CGL.h"
#include "platform/CDC.h"
#include "platform/CopiasDIB.h"

#include <cstddef>
#include <new>
#include <vector>

int CGL::CreatePalette() {
    const HDC hdc = m_pDC && !EsHuerfana() ? m_pDC->GetSafeHdc() : nullptr;
    PIXELFORMATDESCRIPTOR d{};
    return DescribePixelFormat(hdc, GetPixelFormat(hdc), sizeof(d), &d) ? CreaPaleta(d) : 0;
}

int CGL::CreaPaleta(const PIXELFORMATDESCRIPTOR& d) {
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

namespace {

constexpr int kSinContexto = 3;
constexpr int kSinLectura = 4;

}  // namespace

// The front buffer has the picture that the user sees. The back buffer's is undefined once it was presented.
int CGL::CapturaImagen(const CSize& size, char* buffer) {
    if (!MakeCurrent(nullptr)) return kSinContexto;
    if (!buffer) return kSinLectura;
    GLint anterior = GL_BACK;
    glGetIntegerv(GL_READ_BUFFER, &anterior);
    glReadBuffer(GL_FRONT);
    glReadPixels(0, 0, size.cx, size.cy, GL_BGR_EXT, GL_UNSIGNED_BYTE, buffer);
    const bool bError = HayErrorGL();
    glReadBuffer(static_cast<GLenum>(anterior));
    if (bError) return kSinLectura;
    return wglMakeCurrent(nullptr, nullptr) ? 0 : kSinContexto;
}

int CGL::CapturaImagen(const CSize& size, char* buffer, HBITMAP hBitmap, const BITMAPINFO* info) {
    constexpr UINT kPrimeraLinea = 1;  // the row that captures have always begun with
    if (const int r = CapturaImagen(size, buffer)) return r;
    const UINT lineas = static_cast<UINT>(size.cy);
    return SetDIBits(m_pDC->GetSafeHdc(), hBitmap, kPrimeraLinea, lineas, buffer, info, 0) ? 0 : kSinLectura;
}

int CGL::CreateCompatibleBitmap(CBitmap& bmp, BITMAPINFO& info, const CSize& size) {
    constexpr int kParametroMalo = 87;
    const HDC hdc = m_pDC && !EsHuerfana() ? m_pDC->GetSafeHdc() : nullptr;
    const HBITMAP nuevo = ::CreateCompatibleBitmap(hdc, size.cx, size.cy);
    if (!bmp.Attach(nuevo)) {
        DeleteObject(nuevo);
        return 0;
    }
    BITMAP datos{};
    bmp.GetBitmap(&datos);
    info.bmiHeader = {};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = datos.bmWidth;
    info.bmiHeader.biHeight = datos.bmHeight;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    return GetDIBits(hdc, bmp, 1, 75, nullptr, &info, 0) != kParametroMalo;
}
