// The contexts of a scene: making the main one and one for each worker, taking them, lending them to children, and
// parting from them.

#include "frame/CGL.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/Tiempo.h"

#include <algorithm>

namespace {

PIXELFORMATDESCRIPTOR Descriptor(int tipoPixel, DWORD flags, int bitsColor) {
    PIXELFORMATDESCRIPTOR descriptor{};
    descriptor.nSize = sizeof(descriptor);
    descriptor.nVersion = 1;
    descriptor.dwFlags = flags;
    descriptor.iPixelType = static_cast<BYTE>(tipoPixel);
    descriptor.cColorBits = static_cast<BYTE>(bitsColor);
    descriptor.cDepthBits = 32;
    descriptor.iLayerType = PFD_MAIN_PLANE;
    return descriptor;
}

int BitsPorPixel(const CDC& dc) {
    BITMAP datos{};
    const CBitmap* bitmap = dc.GetCurrentBitmap();
    return bitmap && bitmap->GetBitmap(&datos) ? datos.bmBitsPixel : dc.GetDeviceCaps(BITSPIXEL);
}

// A worker may be about to leave the context: it is asked for again for a tenth of a second.
bool ActivaConPaciencia(HDC hdc, HGLRC contexto) {
    constexpr int kIntentos = 10;
    constexpr DWORD kPausaMs = 10;
    for (int i = 0; i < kIntentos; ++i) {
        if (wglMakeCurrent(hdc, contexto)) return true;
        Sleep(kPausaMs);
    }
    return false;
}

// An operation that failed inside a list left it open, and an open list swallows all that is drawn after it.
void CierraListaAbierta() {
    GLint lista = 0;
    glGetIntegerv(GL_LIST_INDEX, &lista);
    if (lista == 0) return;
    glEndList();
    glGetError();
}

}  // namespace

int CGL::Crear(CWnd* pVentana, int tipoPixel, DWORD flags) {
    if (m_hRC || m_bEsReferencia || !pVentana) return 0;
    DestruirDC();
    PIXELFORMATDESCRIPTOR descriptor = Descriptor(tipoPixel, flags, 24);
    if (!OnCreate(pVentana, &descriptor)) return 0;
    m_pDC = new CClientDC(pVentana);
    m_bDCExterno = 0;
    return CreaContextos(descriptor);
}

int CGL::Crear(CDC* pDC, int tipoPixel, DWORD flags) {
    if (m_hRC || m_bEsReferencia || !pDC) return 0;
    DestruirDC();
    m_pDC = pDC;
    m_bDCExterno = 1;  // before anything can fail: it is not ours to delete
    PIXELFORMATDESCRIPTOR descriptor = Descriptor(tipoPixel, flags, BitsPorPixel(*pDC));
    if (OnCreate(nullptr, &descriptor)) return CreaContextos(descriptor);
    DestruirDC();
    return 0;
}

int CGL::CreaContextos(const PIXELFORMATDESCRIPTOR& descriptor) {
    if (!CreaContextoPrincipal(descriptor) || !CreaContextosCompartidos()) {
        DestruirDC();
        return 0;
    }
    // These two reach no context: image scenes rely on depth testing being off until a scene turns it on, and a context
    // of the host's has to be left alone.
    wglMakeCurrent(nullptr, nullptr);
    glClearDepth(1.0);
    glEnable(GL_DEPTH_TEST);
    if (!SetMaxSizeTextura() || !CargaProyeccion()) {
        DestruirDC();
        return 0;
    }
    for (CGL* hijo : Hijos())
        Presta(*hijo);
    return 1;
}

int CGL::CreaContextoPrincipal(const PIXELFORMATDESCRIPTOR& descriptor) {
    const HDC hdc = m_pDC->GetSafeHdc();
    const int formato = ChoosePixelFormat(hdc, &descriptor);
    if (formato == 0 || !SetPixelFormat(hdc, formato, &descriptor)) return 0;
    CreatePalette();
    m_pDuenos = std::make_shared<char>();  // copies made before have no part in this context
    m_hRC = wglCreateContext(hdc);
    return m_hRC != nullptr;
}

// One context for each worker, joined to the main one before any of them is used: what a worker compiles has to show.
int CGL::CreaContextosCompartidos() {
    DestruirHRCShared();
    if (!m_hRC || EsHuerfana()) return 0;
    m_phRCShared = std::make_unique<HGLRC[]>(m_nHRCShared);
    for (unsigned i = 0; i < m_nHRCShared; ++i) {
        m_phRCShared[i] = wglCreateContext(m_pDC->GetSafeHdc());
        if (!m_phRCShared[i] || !wglShareLists(m_hRC, m_phRCShared[i])) return 0;
    }
    return 1;
}

// What the context starts with. A resize keeps the zoom by comparing its projection with the one before, so that there
// has to be one to begin with.
int CGL::CargaProyeccion() {
    if (!MakeCurrent(nullptr)) return 0;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-0.5, 0.5, -0.5, 0.5, -m_fPlanoFondo, m_fPlanoFondo);
    if (HayErrorGL()) return 0;
    return wglMakeCurrent(nullptr, nullptr);
}

int CGL::SetMaxSizeTextura() {
    return MakeCurrent(nullptr) && LeeMaxTexDim() && wglMakeCurrent(nullptr, nullptr);
}

bool CGL::LeeMaxTexDim() {
    constexpr int kMaxLado = 1024;  // however much the hardware offers
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &m_nMaxTexDim);
    if (HayErrorGL()) return false;
    m_nMaxTexDim = std::min(m_nMaxTexDim, kMaxLado);
    return true;
}

int CGL::MakeCurrent(HGLRC* p) {
    const HGLRC contexto = p ? *p : m_hRC;
    if (!contexto || !m_pDC) return 0;
    if (EsHuerfana()) return 0;
    if (m_pPalette && !m_bDCExterno) {
        if (!m_pDC->SelectPalette(m_pPalette, FALSE)) return 0;
        m_pDC->RealizePalette();
    }
    if (wglGetCurrentContext() != contexto && !ActivaConPaciencia(m_pDC->GetSafeHdc(), contexto)) return 0;
    CierraListaAbierta();
    return 1;
}

// Lends the context to a child, which in turn lends it to its own.
void CGL::Presta(CGL& hijo) const {
    hijo.DestruirHRCShared();  // while it still knows how many there are
    hijo.m_pPalette = m_pPalette;
    hijo.m_hRC = m_hRC;
    hijo.m_nHRCShared = m_nHRCShared;
    hijo.m_nMaxTexDim = m_nMaxTexDim;
    hijo.m_pDC = m_pDC;
    hijo.m_bDCExterno = m_bDCExterno;
    hijo.m_pPrestamo = m_bEsReferencia ? m_pPrestamo : std::weak_ptr<const char>(m_pDuenos);
    hijo.CreaContextosCompartidos();
    for (CGL* nieto : hijo.Hijos())
        hijo.Presta(*nieto);
}

// Parts from the context, the concrete scene first: frees it with all that lives in it, or only forgets it when it is
// the parent's or when copies go on using it. Children are destroyed, or part from the context too.
// @return whether it was this scene's alone
bool CGL::DejaContexto(bool bDestruirHijos) {
    const bool bUltimo = m_pDuenos.use_count() == 1;
    const bool bMio = bUltimo && !m_bEsReferencia;
    if (m_hRC) {
        const bool bBorra = MakeCurrent(nullptr) && bUltimo;
        OnLiberarContexto(bBorra);
        if (bBorra && m_bEsReferencia) BorraFuentes();  // its own, in a context that lives on
        wglMakeCurrent(nullptr, nullptr);
    }
    if (bMio) BorraTexturaFondo();
    if (bDestruirHijos) {
        ClearReferencias();
        ClearVinculos();
    } else {
        for (CGL* hijo : Hijos())
            hijo->DejaContexto(false);  // its lists' ids would stand for lists of the next context
    }
    if (bMio) {
        if (MakeCurrent(nullptr)) BorraListas();
        DestruirDC();
    } else {
        m_hRC = nullptr;
        m_pDC = nullptr;
        m_pPalette = nullptr;
        DestruirHRCShared();
    }
    OlvidaListas();
    m_pDuenos = std::make_shared<char>();
    return bMio;
}

void CGL::DestruirDC() {
    if (m_pDC && m_pPaletaAnterior) m_pDC->SelectPalette(m_pPaletaAnterior, FALSE);
    m_pPaletaAnterior = nullptr;
    delete m_pPalette;
    m_pPalette = nullptr;
    if (m_hRC) {
        if (wglGetCurrentContext() == m_hRC) wglMakeCurrent(nullptr, nullptr);
        wglDeleteContext(m_hRC);
        m_hRC = nullptr;
    }
    if (!m_bDCExterno) delete m_pDC;
    m_pDC = nullptr;
    DestruirHRCShared();
}

void CGL::DestruirHRCShared() {
    if (!m_phRCShared) return;
    for (unsigned i = 0; i < m_nHRCShared; ++i) {
        if (!m_phRCShared[i]) continue;
        if (wglGetCurrentContext() == m_phRCShared[i]) wglMakeCurrent(nullptr, nullptr);
        wglDeleteContext(m_phRCShared[i]);
    }
    m_phRCShared.reset();
}
