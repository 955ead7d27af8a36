// What copies of a scene share and needs more than a line: the lists of the overlays, and the colours of palettes.

#include "frame/CGLEstado.h"

namespace {

// 3 bits of red, 3 of green, 2 of blue: the format in which the system's own colours have a place.
bool Es332(const PIXELFORMATDESCRIPTOR& d) {
    return d.cColorBits == 8 && d.cRedBits == 3 && d.cRedShift == 0 && d.cGreenBits == 3 && d.cGreenShift == 3 &&
           d.cBlueBits == 2 && d.cBlueShift == 6;
}

}  // namespace

void CGLEstado::OlvidaListas() {
    m_nTexturaFondo = 0;
    for (GLuint* lista : {&m_nListaMarcas, &m_nListaPuntosMarcasFoto, &m_nListaPuntosMarcasTerreno, &m_nListaLineaNueva,
                          &m_nListaCielo, &m_nListaEjes, &m_nListaCamara, &m_nListaCamaraPanoramica, &m_nListaReserva,
                          &m_nListaLimites, &m_nListaMedidas, &m_nListaFuentes, &m_nListaFuentesSeleccion}) {
        *lista = 0;
    }
}

// ---- Palette -------------------------------------------------------------------------------------------------------

constexpr unsigned char CGLEstado::m_oneto8[2] = {0, 255};
constexpr unsigned char CGLEstado::m_twoto8[4] = {0, 0x55, 0xAA, 0xFF};
constexpr unsigned char CGLEstado::m_threeto8[8] = {0, 0x24, 0x49, 0x6D, 0x92, 0xB6, 0xDB, 0xFF};
constexpr int CGLEstado::m_defaultOverride[13] = {0, 3, 24, 27, 64, 67, 88, 173, 181, 236, 247, 164, 91};
constexpr PALETTEENTRY CGLEstado::m_defaultPalEntry[20] = {
    {0x00, 0x00, 0x00, 0}, {0x80, 0x00, 0x00, 0}, {0x00, 0x80, 0x00, 0}, {0x80, 0x80, 0x00, 0}, {0x00, 0x00, 0x80, 0},
    {0x80, 0x00, 0x80, 0}, {0x00, 0x80, 0x80, 0}, {0xC0, 0xC0, 0xC0, 0}, {0xC0, 0xDC, 0xC0, 0}, {0xA6, 0xCA, 0xF0, 0},
    {0xFF, 0xFB, 0xF0, 0}, {0xA0, 0xA0, 0xA4, 0}, {0x80, 0x80, 0x80, 0}, {0xFF, 0x00, 0x00, 0}, {0x00, 0xFF, 0x00, 0},
    {0xFF, 0xFF, 0x00, 0}, {0x00, 0x00, 0xFF, 0}, {0xFF, 0x00, 0xFF, 0}, {0x00, 0xFF, 0xFF, 0}, {0xFF, 0xFF, 0xFF, 0},
};

unsigned char CGLEstado::ComponentFromIndex(int i, unsigned nbits, unsigned shift) {
    const int v = shift < 32 ? i >> shift : 0;
    switch (nbits) {
        case 1:
            return m_oneto8[v & 1];
        case 2:
            return m_twoto8[v & 3];
        case 3:
            return m_threeto8[v & 7];
        default:
            return 0;
    }
}

bool CGLEstado::NecesitaPaleta(const PIXELFORMATDESCRIPTOR& d, bool bDCExterno) {
    return (d.dwFlags & PFD_NEED_PALETTE) || (bDCExterno && d.cColorBits == 8) || d.iPixelType == PFD_TYPE_COLORINDEX;
}

void CGLEstado::LlenaPaleta(const PIXELFORMATDESCRIPTOR& d, PALETTEENTRY* entradas) {
    const int n = d.cColorBits < 8 ? 1 << d.cColorBits : kEntradasPaleta;
    for (int i = 0; i < n; ++i) {
        entradas[i] = {ComponentFromIndex(i, d.cRedBits, d.cRedShift),
                       ComponentFromIndex(i, d.cGreenBits, d.cGreenShift),
                       ComponentFromIndex(i, d.cBlueBits, d.cBlueShift), 0};
    }
    if (!Es332(d)) return;
    for (int i = 1; i <= 12; ++i)
        entradas[m_defaultOverride[i]] = m_defaultPalEntry[i];
}
