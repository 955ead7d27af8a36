// Printing: a frame drawn into a bitmap, in a context of its own, and that bitmap laid on the page.

#include "frame/CGL.h"
#include "frame/PaginaImpresion.h"
#include "platform/CDC.h"
#include "platform/CView.h"
#include "platform/CopiasDIB.h"

#include <array>

namespace {

// What one frame leaves to the next: a context that has drawn none yet has to be told. Lists and textures are shared,
// but none of this.
class HerenciaCuadro {
  public:
    // From the current context.
    void Lee() {
        for (std::size_t i = 0; i < kOpciones.size(); ++i)
            m_bOpciones[i] = glIsEnabled(kOpciones[i]);
        glGetFloatv(GL_COLOR_CLEAR_VALUE, m_fFondo.data());
        glGetIntegerv(GL_POLYGON_MODE, m_nPoligonos.data());
        glGetDoublev(GL_PROJECTION_MATRIX, m_dProyeccion.data());
    }
    // Into the current context.
    void Pone() const {
        for (std::size_t i = 0; i < kOpciones.size(); ++i)
            m_bOpciones[i] ? glEnable(kOpciones[i]) : glDisable(kOpciones[i]);
        glClearColor(m_fFondo[0], m_fFondo[1], m_fFondo[2], m_fFondo[3]);
        glPolygonMode(GL_FRONT_AND_BACK, static_cast<GLenum>(m_nPoligonos[0]));
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(m_dProyeccion.data());
    }

  private:
    static constexpr std::array<GLenum, 8> kOpciones = {GL_DEPTH_TEST,     GL_LIGHTING,   GL_LIGHT0,       GL_LIGHT1,
                                                        GL_COLOR_MATERIAL, GL_TEXTURE_2D, GL_LINE_STIPPLE, GL_BLEND};
    std::array<GLboolean, kOpciones.size()> m_bOpciones{};
    std::array<GLfloat, 4> m_fFondo{};
    std::array<GLint, 2> m_nPoligonos{GL_FILL, GL_FILL};
    std::array<GLdouble, 16> m_dProyeccion{};
};

CSize TamanoCliente(const CView* pView) {
    CRect r;
    if (pView) pView->GetClientRect(&r);
    return CSize(r.Width(), r.Height());
}

bool EsVacio(const CSize& s) {
    return s.cx < 1 || s.cy < 1;
}

}  // namespace

void CGL::OnPrint(CDC* pDC, CPrintInfo* pInfo, CView* pView) {
    OnPrint1(pDC, pInfo, pView);
    OnRender();
    OnPrint2(pDC);
}

void CGL::OnPrint1(CDC* pDC, CPrintInfo* pInfo, CView* pView) {
    LiberaPagina();
    m_hDCAnterior = wglGetCurrentDC();
    m_hRCAnterior = wglGetCurrentContext();
    m_nAnchoImpresora = pDC ? pDC->GetDeviceCaps(HORZRES) : 0;
    m_nAltoImpresora = pDC ? pDC->GetDeviceCaps(VERTRES) : 0;

    const CSize ventana = TamanoCliente(pView), pagina(m_nAnchoImpresora, m_nAltoImpresora);
    const bool bPrevia = pInfo && pInfo->m_bPreview;
    CSize imagen;
    if (!EsVacio(ventana) && !EsVacio(pagina)) imagen = Limita(bPrevia ? ventana : Encaja(pagina, Razon(ventana)));
    // What a driver can draw on may be smaller than that. A coarser page is a page.
    while (!EsVacio(imagen) && !PreparaPagina(imagen, pView))
        imagen = Mitad(imagen);
    if (!m_hRCImpresion || !RenderPagina()) LiberaPagina();
    wglMakeCurrent(nullptr, nullptr);
}

// Makes the bitmap and a context that draws on it. @return false: nothing is left of them
bool CGL::PreparaPagina(const CSize& imagen, CView* pView) {
    constexpr DWORD kFlags = PFD_STEREO_DONTCARE | PFD_SUPPORT_OPENGL | PFD_DRAW_TO_BITMAP;
    m_CabeceraImpresion = {};
    m_CabeceraImpresion.biSize = sizeof(BITMAPINFOHEADER);
    m_CabeceraImpresion.biWidth = imagen.cx;
    m_CabeceraImpresion.biHeight = imagen.cy;
    m_CabeceraImpresion.biPlanes = 1;
    m_CabeceraImpresion.biBitCount = 24;
    m_CabeceraImpresion.biSizeImage = static_cast<DWORD>(imagen.cx) * static_cast<DWORD>(imagen.cy) * 3;
    const BITMAPINFO info{m_CabeceraImpresion, {}};
    const CClientDC dcVista(pView);
    m_hBitmapImpresion = CreateDIBSection(dcVista.GetSafeHdc(), &info, DIB_RGB_COLORS, &m_pBitsImpresion, nullptr, 0);
    m_hDCMemoria = CreateCompatibleDC(nullptr);
    if (SelectObject(m_hDCMemoria, m_hBitmapImpresion) && SetDCPixelFormat(m_hDCMemoria, kFlags))
        m_hRCImpresion = wglCreateContext(m_hDCMemoria);
    if (m_hRCImpresion) return true;
    LiberaPagina();
    return false;
}

bool CGL::SetDCPixelFormat(HDC hdc, DWORD flags) {
    PIXELFORMATDESCRIPTOR d = DescriptorPagina(flags);
    int formato = ChoosePixelFormat(hdc, &d);
    if (formato == 0) {
        formato = 1;
        if (!DescribePixelFormat(hdc, formato, sizeof(d), &d)) return false;
    }
    return SetPixelFormat(hdc, formato, &d) != FALSE;
}

// Draws the frame in the page's context. That takes the place of the main one, here and in the children, so that
// whoever asks for the context during the frame gets it.
bool CGL::RenderPagina() {
    // Before its first use: afterwards it would be too late to share lists.
    if (!wglShareLists(m_hRC, m_hRCImpresion)) return false;
    HerenciaCuadro herencia;
    if (!MakeCurrent(nullptr)) return false;
    herencia.Lee();
    if (!wglMakeCurrent(m_hDCMemoria, m_hRCImpresion)) return false;
    herencia.Pone();
    glViewport(0, 0, m_CabeceraImpresion.biWidth, m_CabeceraImpresion.biHeight);
    if (HayErrorGL()) return false;

    class Suplente {
      public:
        explicit Suplente(CGL& escena)
            : m_Escena(escena), m_hRC(escena.m_hRC), m_pDC(escena.m_pDC), m_b(escena.m_bDCExterno) {
            m_DC.Attach(escena.m_hDCMemoria);
            escena.PonContexto(escena.m_hRCImpresion, &m_DC, 1);
        }
        ~Suplente() {
            m_DC.Detach();
            m_Escena.PonContexto(m_hRC, m_pDC, m_b);
        }

      private:
        CGL& m_Escena;
        HGLRC m_hRC;
        CDC* m_pDC;
        int m_b;
        CDC m_DC;
    };
    const Suplente suplente(*this);
    return Render() != 0;
}

void CGL::PonContexto(HGLRC hRC, CDC* pDC, int bDCExterno) {
    m_hRC = hRC;
    m_pDC = pDC;
    m_bDCExterno = bDCExterno;
    for (CGL* hijo : Hijos())
        hijo->PonContexto(hRC, pDC, bDCExterno);
}

void CGL::OnPrint2(CDC* pDC) {
    wglMakeCurrent(nullptr, nullptr);
    if (m_hRCImpresion) wglDeleteContext(m_hRCImpresion);
    m_hRCImpresion = nullptr;
    if (m_hRCAnterior) wglMakeCurrent(m_hDCAnterior, m_hRCAnterior);
    m_hDCAnterior = nullptr;
    m_hRCAnterior = nullptr;

    const CSize imagen(m_CabeceraImpresion.biWidth, m_CabeceraImpresion.biHeight);
    if (m_hBitmapImpresion && pDC) {
        const CSize sitio = SobrePagina(imagen, CSize(m_nAnchoImpresora, m_nAltoImpresora));
        const BITMAPINFO info{m_CabeceraImpresion, {}};
        StretchDIBits(pDC->GetSafeHdc(), (m_nAnchoImpresora - sitio.cx) / 2, (m_nAltoImpresora - sitio.cy) / 2,
                      sitio.cx, sitio.cy, 0, 0, imagen.cx, imagen.cy, m_pBitsImpresion, &info, DIB_RGB_COLORS, SRCCOPY);
    }
    LiberaPagina();
}

// Frees the page's context, device context and bitmap, those that there are.
void CGL::LiberaPagina() {
    if (m_hRCImpresion) wglDeleteContext(m_hRCImpresion);
    if (m_hDCMemoria) DeleteDC(m_hDCMemoria);
    if (m_hBitmapImpresion) DeleteObject(m_hBitmapImpresion);
    m_hRCImpresion = nullptr;
    m_hDCMemoria = nullptr;
    m_hBitmapImpresion = nullptr;
    m_pBitsImpresion = nullptr;
}
