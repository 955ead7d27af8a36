// Windows: their life, and handing on what happens to them. What a window is on this display, the backend knows.

#include "platform/CWnd.h"

#include "platform/Contextos.h"
#include "platform/Conversiones.h"
#include "platform/Objetos.h"

#include <algorithm>

namespace plataforma {

Tabla<HWND, Lienzo>& Ventanas() {
    static auto& t = *new Tabla<HWND, Lienzo>;
    return t;
}

namespace {

// All windows that stand.
struct Abiertas {
    std::mutex m_Cerrojo;
    std::vector<CWnd*> m_Ventanas;
};

Abiertas& LasAbiertas() {
    static auto& a = *new Abiertas;
    return a;
}

// The first window that stands and fits; null when none does.
template <class Condicion>
CWnd* BuscaAbierta(Condicion condicion) {
    std::lock_guard cierre(LasAbiertas().m_Cerrojo);
    const auto& todas = LasAbiertas().m_Ventanas;
    const auto it = std::ranges::find_if(todas, condicion);
    return it == todas.end() ? nullptr : *it;
}

constexpr int kLadoMaximo = 32767;  // of a window of X11

}  // namespace

}  // namespace plataforma

using namespace plataforma;

CWnd::CWnd() = default;

CWnd::~CWnd() {
    if (m_bEnvuelta)
        CWnd::Detach();
    else
        CWnd::DestroyWindow();
}

BOOL CWnd::Create(LPCWSTR clase, LPCWSTR titulo, DWORD estilo, const CRect& rect, CWnd* padre, UINT id) {
    return CreateEx(0, clase, titulo, estilo, rect, padre, id);
}

BOOL CWnd::CreateEx(DWORD estiloEx, LPCWSTR clase, LPCWSTR titulo, DWORD estilo, const CRect& rect, CWnd* padre, UINT) {
    if (m_hWnd) return AnotaFallo("the object has a window already.");
    CREATESTRUCT cs = {padre, rect.Width(), rect.Height(), rect.left, rect.top, estilo, estiloEx, titulo, clase};
    if (!PreCreateWindow(cs)) return AnotaFallo("PreCreateWindow refused.");
    if (cs.cx < 1 || cs.cy < 1 || cs.cx > kLadoMaximo || cs.cy > kLadoMaximo)
        return AnotaFallo("no window has " + std::to_string(cs.cx) + " x " + std::to_string(cs.cy) + " pixels.");
    Backend* backend = BackendActual();
    if (!backend) return FALSE;

    std::string motivo;
    auto lienzo = std::make_shared<Lienzo>();
    lienzo->m_Ventana =
        backend->CreaVentana({cs.x, cs.y, cs.cx, cs.cy}, cs.hwndParent ? cs.hwndParent->VentanaNativa() : 0, motivo);
    if (!lienzo->m_Ventana) return AnotaFallo(motivo);
    m_hWnd = Ventanas().Inserta(lienzo);
    m_pPadre = cs.hwndParent;
    m_nAncho = m_nAlto = 0;
    {
        std::lock_guard cierre(LasAbiertas().m_Cerrojo);
        LasAbiertas().m_Ventanas.push_back(this);
    }
    if (cs.lpszName) SetWindowText(cs.lpszName);
    if (OnCreate(&cs) == -1) {
        DestroyWindow();
        return AnotaFallo("OnCreate refused.");
    }
    AvisaTamano(cs.cx, cs.cy);
    if (m_hWnd && (cs.style & WS_VISIBLE)) ShowWindow(SW_SHOW);
    return m_hWnd != nullptr;
}

BOOL CWnd::Attach(std::uintptr_t nativa) {
    if (m_hWnd) return AnotaFallo("the object has a window already.");
    Backend* backend = BackendActual();
    if (!backend) return FALSE;
    std::string motivo;
    auto lienzo = std::make_shared<Lienzo>();
    lienzo->m_Ventana = backend->EnvuelveVentana(nativa, motivo);
    if (!lienzo->m_Ventana) return AnotaFallo(motivo);
    m_hWnd = Ventanas().Inserta(std::move(lienzo));
    m_bEnvuelta = true;
    return TRUE;
}

void CWnd::Detach() {
    if (!m_bEnvuelta) {
        DestroyWindow();
        return;
    }
    const auto lienzo = Ventanas().Saca(m_hWnd);
    if (lienzo && ActualDelHilo().m_pLienzo == lienzo.get()) wglMakeCurrent(nullptr, nullptr);
    m_hWnd = nullptr;
    m_bEnvuelta = false;
}

BOOL CWnd::DestroyWindow() {
    if (!m_hWnd || m_bEnvuelta) return AnotaFallo("there is no window of this object's own.");
    const auto esHija = [this](const CWnd* w) { return w->m_pPadre == this; };
    while (CWnd* hija = BuscaAbierta(esHija))
        hija->DestroyWindow();
    OnDestroy();
    const auto lienzo = Ventanas().Saca(m_hWnd);
    if (!lienzo) return TRUE;  // OnDestroy destroyed it
    {
        std::lock_guard cierre(LasAbiertas().m_Cerrojo);
        std::erase(LasAbiertas().m_Ventanas, this);
    }
    m_hWnd = nullptr;
    m_pPadre = nullptr;
    m_bRepinta = false;
    if (ActualDelHilo().m_pLienzo == lienzo.get()) wglMakeCurrent(nullptr, nullptr);
    // Device contexts of the window, and contexts current on it on other threads, keep the native window until they
    // let go; the user sees it no more.
    lienzo->m_Ventana->Retira();
    return TRUE;
}

BOOL CWnd::ShowWindow(int modo) {
    const auto lienzo = Ventanas().Busca(m_hWnd);
    if (!lienzo) return FALSE;
    lienzo->m_Ventana->Muestra(modo != SW_HIDE);
    // Where there is a display it asks for the picture; without one nobody else does.
    if (modo != SW_HIDE && lienzo->m_Ventana->Id() == 0) m_bRepinta = true;
    return TRUE;
}

BOOL CWnd::MoveWindow(int x, int y, int ancho, int alto, BOOL repinta) {
    const auto lienzo = Ventanas().Busca(m_hWnd);
    if (!lienzo) return AnotaFallo("there is no window.");
    if (ancho < 1 || alto < 1 || ancho > kLadoMaximo || alto > kLadoMaximo)
        return AnotaFallo("no window has " + std::to_string(ancho) + " x " + std::to_string(alto) + " pixels.");
    lienzo->m_Ventana->Mueve({x, y, ancho, alto});
    if (lienzo->m_Ventana->Id() == 0) AvisaTamano(ancho, alto);
    if (repinta) m_bRepinta = true;
    return TRUE;
}

BOOL CWnd::SetWindowText(LPCWSTR titulo) {
    const auto lienzo = Ventanas().Busca(m_hWnd);
    if (!lienzo) return FALSE;
    lienzo->m_Ventana->Titula(AUtf8(titulo ? titulo : L""));
    return TRUE;
}

void CWnd::GetClientRect(CRect* rect) const {
    if (!rect) return;
    const auto lienzo = Ventanas().Busca(m_hWnd);
    const Rectangulo medidas = lienzo ? lienzo->m_Ventana->Medidas().value_or(Rectangulo()) : Rectangulo();
    *rect = CRect(0, 0, medidas.m_nAncho, medidas.m_nAlto);
}

void CWnd::Invalidate(BOOL) {
    m_bRepinta = m_hWnd != nullptr;
}

std::uintptr_t CWnd::VentanaNativa() const {
    const auto lienzo = Ventanas().Busca(m_hWnd);
    return lienzo ? lienzo->m_Ventana->Id() : 0;
}

CWnd* CWnd::Busca(std::uintptr_t nativa) {
    return BuscaAbierta([&](const CWnd* w) { return w->VentanaNativa() == nativa; });
}

CWnd* CWnd::Busca(HWND hWnd) {
    return BuscaAbierta([&](const CWnd* w) { return w->m_hWnd == hWnd; });
}

int CWnd::DespachaEventos(int espera) {
    Backend* backend = BackendActual();
    if (!backend) return 0;
    int cuantos = 0;
    std::vector<HWND> repintan;
    auto apunta = [&] {
        std::lock_guard cierre(LasAbiertas().m_Cerrojo);
        for (const CWnd* w : LasAbiertas().m_Ventanas)
            if (w->m_bRepinta) repintan.push_back(w->m_hWnd);
    };
    apunta();
    std::chrono::milliseconds plazo(repintan.empty() ? espera : 0);
    while (const auto evento = backend->SiguienteEvento(plazo)) {
        ++cuantos;
        plazo = std::chrono::milliseconds(0);
        if (CWnd* w = Busca(evento->m_Ventana)) w->Despacha(*evento);
    }
    // Painting comes last and once, however many reasons there were. Any handler may have destroyed any window.
    repintan.clear();
    apunta();
    for (HWND hWnd : repintan) {
        CWnd* w = Busca(hWnd);
        if (!w) continue;
        w->m_bRepinta = false;
        ++cuantos;
        w->OnPaint();
    }
    return cuantos;
}

void CWnd::AvisaTamano(int cx, int cy) {
    if (cx == m_nAncho && cy == m_nAlto) return;
    m_nAncho = cx;
    m_nAlto = cy;
    OnSize(SIZE_RESTORED, cx, cy);
}

void CWnd::Despacha(const Evento& e) {
    const CPoint pt(e.m_nX, e.m_nY);
    switch (e.m_Tipo) {
        case TipoEvento::tamano:
            AvisaTamano(e.m_nX, e.m_nY);
            break;
        case TipoEvento::repinta:
            m_bRepinta = true;
            break;
        case TipoEvento::cierra:
            OnClose();
            break;
        case TipoEvento::destruida:
            DestroyWindow();
            break;
        case TipoEvento::raton:
            OnMouseMove(e.m_nEstado, pt);
            break;
        case TipoEvento::pulsa:
            if (e.m_nBoton == 1) OnLButtonDown(e.m_nEstado, pt);
            if (e.m_nBoton == 2) OnMButtonDown(e.m_nEstado, pt);
            if (e.m_nBoton == 3) OnRButtonDown(e.m_nEstado, pt);
            break;
        case TipoEvento::suelta:
            if (e.m_nBoton == 1) OnLButtonUp(e.m_nEstado, pt);
            if (e.m_nBoton == 2) OnMButtonUp(e.m_nEstado, pt);
            if (e.m_nBoton == 3) OnRButtonUp(e.m_nEstado, pt);
            break;
        case TipoEvento::rueda:
            OnMouseWheel(e.m_nEstado, static_cast<short>(e.m_nBoton * WHEEL_DELTA), pt);
            break;
        case TipoEvento::tecla:
            OnKeyDown(e.m_nTecla, 1, 0);
            break;
        case TipoEvento::teclaArriba:
            OnKeyUp(e.m_nTecla, 1, 0);
            break;
        case TipoEvento::ninguno:
            break;
    }
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT&) {
    return TRUE;
}
int CWnd::OnCreate(LPCREATESTRUCT) {
    return 0;
}
void CWnd::OnDestroy() {}
void CWnd::OnSize(UINT, int, int) {}
void CWnd::OnPaint() {}
void CWnd::OnClose() {
    DestroyWindow();
}
void CWnd::OnMouseMove(UINT, CPoint) {}
void CWnd::OnLButtonDown(UINT, CPoint) {}
void CWnd::OnLButtonUp(UINT, CPoint) {}
void CWnd::OnMButtonDown(UINT, CPoint) {}
void CWnd::OnMButtonUp(UINT, CPoint) {}
void CWnd::OnRButtonDown(UINT, CPoint) {}
void CWnd::OnRButtonUp(UINT, CPoint) {}
BOOL CWnd::OnMouseWheel(UINT, short, CPoint) {
    return FALSE;
}
void CWnd::OnKeyDown(UINT, UINT, UINT) {}
void CWnd::OnKeyUp(UINT, UINT, UINT) {}
