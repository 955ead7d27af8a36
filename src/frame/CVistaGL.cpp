// The view of a scene: what happens to its window, handed on to the scene.

#include "frame/CVistaGL.h"

#include "frame/CGL.h"
#include "platform/CDC.h"

CVistaGL::~CVistaGL() {
    delete m_pGL;
}

BOOL CVistaGL::PreCreateWindow(CREATESTRUCT& cs) {
    cs.style |= WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
    return CView::PreCreateWindow(cs);
}

int CVistaGL::OnCreate(LPCREATESTRUCT cs) {
    if (CView::OnCreate(cs) == -1) return -1;
    if (!m_pGL) return 0;
    return m_pGL->Crear(this, PFD_TYPE_RGBA, PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER) ? 0 : -1;
}

void CVistaGL::OnInitialUpdate() {
    m_bIniciado = m_pGL ? m_pGL->Iniciar() : 0;
    CView::OnInitialUpdate();
}

void CVistaGL::OnSize(UINT nType, int cx, int cy) {
    CView::OnSize(nType, cx, cy);
    if (m_pGL) m_pGL->Resize(cx, cy);
}

void CVistaGL::OnDraw(CDC* pDC) {
    CRect invalida;
    if (m_pGL && m_bIniciado && pDC->GetClipBox(&invalida) > NULLREGION) m_pGL->Render();
}

void CVistaGL::OnPaletteChanged(CWnd* pWnd) {
    if (pWnd != this) OnQueryNewPalette();
}

BOOL CVistaGL::OnQueryNewPalette() {
    CPalette* pPalette = m_pGL ? m_pGL->GetPalette() : nullptr;
    if (!pPalette) return 1;
    UINT cambiadas = 0;
    {
        CClientDC dc(this);
        dc.SelectPalette(pPalette, FALSE);
        cambiadas = dc.RealizePalette();
    }
    if (cambiadas > 0) ::InvalidateRect(m_hWnd, nullptr, TRUE);
    return 1;
}

BOOL CVistaGL::OnPreparePrinting(CPrintInfo* pInfo) {
    return DoPreparePrinting(pInfo);
}

void CVistaGL::OnPrint(CDC* pDC, CPrintInfo* pInfo) {
    if (m_pGL) m_pGL->OnPrint(pDC, pInfo, this);
}
