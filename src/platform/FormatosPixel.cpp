// Pixel formats: what a backend offers, in the words of a descriptor, and which one a device context takes.

#include "platform/Contextos.h"
#include "platform/Objetos.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace plataforma {

bool Lienzo::Admite(const FormatoPixel& formato) const {
    return m_Ventana ? m_Ventana->Admite(formato) : formato.m_bMemoria;
}

bool Lienzo::PreparaSuperficie(Backend& backend) {
    Rectangulo medidas;
    if (m_Ventana) {
        const auto donde = m_Ventana->Medidas();
        if (!donde) return AnotaFallo("the window is no more.");
        medidas = *donde;
    } else {
        medidas = {0, 0, m_Bitmap->m_nAncho, m_Bitmap->m_nAlto};
    }
    const bool sigueSola = m_Superficie && m_Superficie->m_nAncho == 0;
    const bool vale =
        m_Superficie &&
        (sigueSola || (m_Superficie->m_nAncho == medidas.m_nAncho && m_Superficie->m_nAlto == medidas.m_nAlto));
    if (vale) return true;

    const CapacidadesGL& c = backend.Capacidades();
    if (medidas.m_nAncho > c.m_nMaxAncho || medidas.m_nAlto > c.m_nMaxAlto)
        return AnotaFallo("a picture of " + std::to_string(medidas.m_nAncho) + " x " + std::to_string(medidas.m_nAlto) +
                          " pixels is too large: the driver draws up to " + std::to_string(c.m_nMaxAncho) + " x " +
                          std::to_string(c.m_nMaxAlto) + ".");
    const FormatoPixel& formato = backend.Formatos()[static_cast<std::size_t>(m_nFormato) - 1];
    std::string motivo;
    std::shared_ptr<Superficie> nueva = m_Ventana
                                            ? m_Ventana->CreaSuperficie(formato, motivo)
                                            : backend.CreaMemoria(medidas.m_nAncho, medidas.m_nAlto, formato, motivo);
    if (!nueva) return AnotaFallo(motivo);
    m_Superficie = std::move(nueva);
    return true;
}

namespace {

PIXELFORMATDESCRIPTOR Describe(const FormatoPixel& f, bool unBufer) {
    PIXELFORMATDESCRIPTOR d{};
    d.nSize = sizeof d;
    d.nVersion = 1;
    d.dwFlags = PFD_SUPPORT_OPENGL | (unBufer ? 0 : PFD_DOUBLEBUFFER) | (f.m_bVentana ? PFD_DRAW_TO_WINDOW : 0) |
                (f.m_bMemoria ? PFD_DRAW_TO_BITMAP : 0);
    d.iPixelType = PFD_TYPE_RGBA;
    d.cColorBits = 24;
    d.cRedBits = d.cGreenBits = d.cBlueBits = 8;
    d.cRedShift = 16;
    d.cGreenShift = 8;
    d.cAlphaBits = static_cast<BYTE>(f.m_nAlfa);
    d.cAlphaShift = f.m_nAlfa ? 24 : 0;
    d.cAccumBits = static_cast<BYTE>(f.m_nAcumulacion);
    d.cAccumRedBits = d.cAccumGreenBits = d.cAccumBlueBits = d.cAccumAlphaBits =
        static_cast<BYTE>(f.m_nAcumulacion / 4);
    d.cDepthBits = static_cast<BYTE>(f.m_nProfundidad);
    d.cStencilBits = static_cast<BYTE>(f.m_nEstarcido);
    d.iLayerType = PFD_MAIN_PLANE;
    return d;
}

}  // namespace

}  // namespace plataforma

using namespace plataforma;

int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo || !pfd) return AnotaFallo("unknown device context, or no descriptor.");
    if (pfd->iPixelType != PFD_TYPE_RGBA) return AnotaFallo("no display here has colour-index formats.");
    if ((pfd->dwFlags & PFD_STEREO) && !(pfd->dwFlags & PFD_STEREO_DONTCARE))
        return AnotaFallo("no stereo format is offered.");
    Backend* backend = BackendActual();
    if (!backend) return 0;

    // The order of the list is that of preference; what is missing of the wishes goes before, but for the depth.
    const auto& formatos = backend->Formatos();
    auto falta = [](int hay, int pide) { return pide > 0 && hay < std::min(pide, 8); };
    int mejor = 0;
    auto mejorNota = std::tuple(true, 0, 3);
    for (std::size_t i = 0; i < formatos.size(); ++i) {
        const FormatoPixel& f = formatos[i];
        if (!dispositivo->m_Lienzo->Admite(f)) continue;
        const auto nota = std::tuple(f.m_bLento, -f.m_nProfundidad,
                                     falta(f.m_nAlfa, pfd->cAlphaBits) + falta(f.m_nEstarcido, pfd->cStencilBits) +
                                         falta(f.m_nAcumulacion, pfd->cAccumBits));
        if (mejor && nota >= mejorNota) continue;
        mejor = static_cast<int>(i) + 1;
        mejorNota = nota;
    }
    if (!mejor) AnotaFallo("no pixel format of the driver can draw on the device context.");
    return mejor;
}

BOOL SetPixelFormat(HDC hdc, int formato, const PIXELFORMATDESCRIPTOR*) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo) return AnotaFallo("unknown device context.");
    Backend* backend = BackendActual();
    if (!backend) return FALSE;
    Lienzo& lienzo = *dispositivo->m_Lienzo;
    std::lock_guard cierre(CerrojoContextos());
    if (lienzo.m_nFormato == formato && formato != 0) return TRUE;
    if (lienzo.m_nFormato != 0) return AnotaFallo("the device context has another pixel format already.");
    if (formato < 1 || static_cast<std::size_t>(formato) > backend->Formatos().size())
        return AnotaFallo("unknown pixel format.");
    if (!lienzo.Admite(backend->Formatos()[static_cast<std::size_t>(formato) - 1]))
        return AnotaFallo("the pixel format can't draw on the device context.");
    if (!lienzo.m_Ventana && lienzo.m_Bitmap == dispositivo->BitmapPropio())
        return AnotaFallo("no bitmap is selected in the memory device context.");
    lienzo.m_nFormato = formato;
    if (lienzo.PreparaSuperficie(*backend)) return TRUE;
    lienzo.m_nFormato = 0;
    return FALSE;
}

int GetPixelFormat(HDC hdc) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo) return 0;
    std::lock_guard cierre(CerrojoContextos());
    return dispositivo->m_Lienzo->m_nFormato;
}

int DescribePixelFormat(HDC hdc, int formato, UINT bytes, PIXELFORMATDESCRIPTOR* pfd) {
    if (!Dispositivos().Busca(hdc)) return AnotaFallo("unknown device context.");
    Backend* backend = BackendActual();
    if (!backend) return 0;
    const auto& formatos = backend->Formatos();
    const int cuantos = static_cast<int>(formatos.size());
    if (!pfd) return cuantos;
    if (formato < 1 || formato > cuantos || bytes < sizeof *pfd) return AnotaFallo("unknown pixel format.");
    *pfd = Describe(formatos[static_cast<std::size_t>(formato) - 1], backend->Capacidades().m_bUnBufer);
    return cuantos;
}
