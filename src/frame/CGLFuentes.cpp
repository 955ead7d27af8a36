// The glyph lists that a scene's texts are called from: one block for texts, one for selected texts.

#include "frame/CGL.h"
#include "frame/EntradaPublica.h"
#include "frame/ListaGL.h"
#include "platform/CDC.h"
#include "platform/Fuentes.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace {

// A font that is selected in a device context while it lives.
class FuenteElegida {
  public:
    // @param alto of the em square, in pixels; one that no font has selects none
    FuenteElegida(HDC hdc, int alto)
        : m_hDC(hdc),
          m_hFuente(CreateFontW(-std::max(alto, -std::numeric_limits<int>::max()), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
                                FALSE, DEFAULT_CHARSET, OUT_TT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                                DEFAULT_PITCH | FF_DONTCARE, L"Arial")),
          m_hAnterior(SelectObject(hdc, m_hFuente)) {}
    ~FuenteElegida() {
        SelectObject(m_hDC, m_hAnterior);
        DeleteObject(m_hFuente);
    }
    FuenteElegida(const FuenteElegida&) = delete;
    FuenteElegida& operator=(const FuenteElegida&) = delete;

  private:
    HDC m_hDC;
    HFONT m_hFuente;
    HFONT m_hAnterior;
};

}  // namespace

// Texts are optional: where their lists can't be made the scene goes on without.
int CGL::CreaFuentes() {
    if (m_bFuentes == 0) return 1;
    const EntradaPublica entrada;
    if (!MakeCurrent(nullptr)) return 1;
    const HDC hdc = m_pDC->GetSafeHdc();
    const bool bTrazos = m_Data.m_bTextos3D != 0;
    // Takes a new block in place of the old one and fills it from the font that is selected.
    const auto creaBloque = [&](GLuint& lista, GLYPHMETRICSFLOAT* medidas) {
        BorraLista(lista, kGlifos);
        if (HayErrorGL()) return FALSE;
        lista = glGenLists(kGlifos);
        if (!bTrazos) return wglUseFontBitmapsW(hdc, 0, kGlifos, lista);
        return wglUseFontOutlinesW(hdc, 0, kGlifos, lista, static_cast<float>(m_Data.m_nCalidadTextos / 100.0), 0.1F,
                                   WGL_FONT_POLYGONS, medidas);
    };
    constexpr int kCuerpo = 1000, kPuntosPulgada = 72;
    const int alto =
        bTrazos ? MulDiv(kCuerpo, m_pDC->GetDeviceCaps(LOGPIXELSY), kPuntosPulgada) : m_Data.m_nAlturaTextos;
    const FuenteElegida fuente(hdc, alto);
    std::vector<GLYPHMETRICSFLOAT> medidas(kGlifos);
    if (!creaBloque(m_nListaFuentes, medidas.data())) return entrada.Acaba(1);
    m_fEscalaFuente =
        bTrazos ? std::ranges::max(medidas, {}, &GLYPHMETRICSFLOAT::gmfBlackBoxY).gmfBlackBoxY / 1.2F : 1.0F;
    const FuenteElegida fuenteSeleccion(hdc, alto);
    creaBloque(m_nListaFuentesSeleccion, nullptr);
    return entrada.Acaba(1);
}

void CGL::BorraFuentes() {
    BorraLista(m_nListaFuentes, kGlifos);
    BorraLista(m_nListaFuentesSeleccion, kGlifos);
}
