// Windows: their life, and handing on what happens to them. What a window is on this display, the backend knows.

#include "platform/CWnd.h"

#include "platform/Contextos.h"
#include "platform/Conversiones.h"
#include "platform/Errores.h"
#include "platform/Objetos.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

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

void Apunta(CWnd* ventana) {
    std::lock_guard cierre(LasAbiertas().m_Cerrojo);
    LasAbiertas().m_Ventanas.push_back(ventana);
}

void Borra(CWnd* ventana) {
    std::lock_guard cierre(LasAbiertas().m_Cerrojo);
    std::erase(LasAbiertas().m_Ventanas, ventana);
}

// The first window that stands and fits; null when none does.
template <class Condicion>
CWnd* BuscaAbierta(Condicion condicion) {
    std::lock_guard cierre(LasAbiertas().m_Cerrojo);
    const auto& todas = LasAbiertas().m_Ventanas;
    const auto it = std::ranges::find_if(todas, condicion);
    return it == todas.end() ? nullptr : *it;
}

constexpr int kLadoMaximo = 32767;               // of a window of X11
constexpr std::chrono::milliseconds kTurno(50);  // events are handled this long before painting

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
    m_Pulsacion = {};
    Apunta(this);
    if (cs.lpszName) SetWindowText(cs.lpszName);
    if (SendMessage(WM_CREATE, 0, reinterpret_cast<LPARAM>(&cs)) == -1) {
        DestroyWindow();
        return AnotaFallo("OnCreate refused.");
    }
    AvisaTamano(cs.cx, cs.cy);
    SendMessage(WM_INITIALUPDATE);
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
    Apunta(this);
    return TRUE;
}

void CWnd::Detach() {
    if (!m_bEnvuelta) {
        DestroyWindow();
        return;
    }
    const auto lienzo = Ventanas().Saca(m_hWnd);
    if (lienzo && ActualDelHilo().m_pLienzo == lienzo.get()) wglMakeCurrent(nullptr, nullptr);
    Borra(this);
    m_hWnd = nullptr;
    m_bEnvuelta = false;
    m_Invalido = CRect();
}

BOOL CWnd::DestroyWindow() {
    if (!m_hWnd || m_bEnvuelta) return AnotaFallo("there is no window of this object's own.");
    const auto esHija = [this](const CWnd* w) { return w->m_pPadre == this; };
    while (CWnd* hija = BuscaAbierta(esHija))
        hija->DestroyWindow();
    SendMessage(WM_DESTROY);
    const auto lienzo = Ventanas().Saca(m_hWnd);
    if (!lienzo) return TRUE;  // OnDestroy destroyed it
    Borra(this);
    m_hWnd = nullptr;
    m_pPadre = nullptr;
    m_Invalido = CRect();
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
    if (modo != SW_HIDE && lienzo->m_Ventana->Id() == 0) Invalidate();
    return TRUE;
}

BOOL CWnd::MoveWindow(int x, int y, int ancho, int alto, BOOL repinta) {
    const auto lienzo = Ventanas().Busca(m_hWnd);
    if (!lienzo) return AnotaFallo("there is no window.");
    if (ancho < 1 || alto < 1 || ancho > kLadoMaximo || alto > kLadoMaximo)
        return AnotaFallo("no window has " + std::to_string(ancho) + " x " + std::to_string(alto) + " pixels.");
    lienzo->m_Ventana->Mueve({x, y, ancho, alto});
    if (lienzo->m_Ventana->Id() == 0) AvisaTamano(ancho, alto);
    if (repinta) Invalidate();
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

void CWnd::Invalidate(BOOL borra) {
    InvalidateRect(nullptr, borra);
}

void CWnd::InvalidateRect(const RECT* rect, BOOL) {
    CRect cliente;
    GetClientRect(&cliente);
    m_Invalido |= rect ? cliente & CRect(*rect) : cliente;
}

void CWnd::UpdateWindow() {
    if (!m_Invalido.IsRectEmpty()) SendMessage(WM_PAINT);
}

LRESULT CWnd::SendMessage(UINT mensaje, WPARAM w, LPARAM l) {
    return m_hWnd ? WindowProc(mensaje, w, l) : 0;
}

std::uintptr_t CWnd::VentanaNativa() const {
    const auto lienzo = Ventanas().Busca(m_hWnd);
    return lienzo ? lienzo->m_Ventana->Id() : 0;
}

CWnd* CWnd::Busca(std::uintptr_t nativa) {
    return BuscaAbierta([&](const CWnd* w) { return w->VentanaNativa() == nativa; });
}

CWnd* CWnd::FromHandle(HWND hWnd) {
    return BuscaAbierta([&](const CWnd* w) { return w->m_hWnd == hWnd; });
}

// Closes what a display that has gone away leaves behind. A handler may close others.
void CWnd::CierraTodas() {
    while (CWnd* w = BuscaAbierta([](const CWnd*) { return true; })) {
        if (w->m_bEnvuelta)
            w->Detach();
        else
            w->CWnd::DestroyWindow();
    }
    AnotaFallo("the display has gone away, and the windows with it.", ERROR_GEN_FAILURE);
}

int CWnd::DespachaEventos(int espera) {
    Backend* backend = BackendActual();
    if (!backend) return 0;
    int cuantos = 0;
    std::vector<HWND> repintan;
    auto apunta = [&] {
        repintan.clear();
        std::lock_guard cierre(LasAbiertas().m_Cerrojo);
        for (const CWnd* w : LasAbiertas().m_Ventanas)
            if (!w->m_Invalido.IsRectEmpty()) repintan.push_back(w->m_hWnd);
    };
    apunta();
    std::chrono::milliseconds plazo(repintan.empty() ? espera : 0);
    const auto fin = std::chrono::steady_clock::now() + plazo + kTurno;
    while (const auto evento = backend->SiguienteEvento(plazo)) {
        ++cuantos;
        plazo = std::chrono::milliseconds(0);
        if (CWnd* w = Busca(evento->m_Ventana)) w->Despacha(*evento);
        // Events that come as fast as they are handled must not keep the picture from being painted.
        if (std::chrono::steady_clock::now() > fin) break;
    }
    if (backend->Perdida()) {
        CierraTodas();
        return cuantos;
    }
    // Painting comes last and once, however many reasons there were. Any handler may have destroyed any window.
    apunta();
    for (HWND hWnd : repintan) {
        CWnd* w = FromHandle(hWnd);
        if (!w) continue;
        ++cuantos;
        w->SendMessage(WM_PAINT);
    }
    return cuantos;
}

void CWnd::AvisaTamano(int cx, int cy) {
    if (cx == m_nAncho && cy == m_nAlto) return;
    m_nAncho = cx;
    m_nAlto = cy;
    SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(cx, cy));
}

// The event that comes second near to the first one, in time and place. A third one begins anew.
bool CWnd::EsDobleClic(const Evento& e) {
    const CPoint pt(e.m_nX, e.m_nY);
    const CSize lejos = pt - m_Pulsacion.m_Punto;
    const bool doble = m_Pulsacion.m_nBoton == e.m_nBoton &&
                       e.m_nInstante - m_Pulsacion.m_nInstante <= DOUBLE_CLICK_TIME &&
                       std::max(std::abs(lejos.cx), std::abs(lejos.cy)) <= DOUBLE_CLICK_DISTANCE;
    m_Pulsacion = doble ? Pulsacion() : Pulsacion{e.m_nBoton, pt, e.m_nInstante};
    return doble;
}

void CWnd::Despacha(const Evento& e) {
    // Of each button: pressed, released, pressed twice.
    static constexpr UINT botones[][3] = {{WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK},
                                          {WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MBUTTONDBLCLK},
                                          {WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK}};
    const LPARAM punto = MAKELPARAM(e.m_nX, e.m_nY);
    const CRect parte(CPoint(e.m_nX, e.m_nY), CSize(e.m_nAncho, e.m_nAlto));
    switch (e.m_Tipo) {
        case TipoEvento::tamano:
            AvisaTamano(e.m_nX, e.m_nY);
            break;
        case TipoEvento::repinta:
            InvalidateRect(&parte);
            break;
        case TipoEvento::cierra:
            SendMessage(WM_CLOSE);
            break;
        case TipoEvento::destruida:
            DestroyWindow();
            break;
        case TipoEvento::raton:
            SendMessage(WM_MOUSEMOVE, e.m_nEstado, punto);
            break;
        case TipoEvento::pulsa:
            SendMessage(botones[e.m_nBoton - 1][EsDobleClic(e) ? 2 : 0], e.m_nEstado, punto);
            break;
        case TipoEvento::suelta:
            SendMessage(botones[e.m_nBoton - 1][1], e.m_nEstado, punto);
            break;
        case TipoEvento::rueda: {
            const auto giro = static_cast<WORD>(e.m_nBoton * WHEEL_DELTA);
            SendMessage(WM_MOUSEWHEEL, e.m_nEstado | WPARAM{giro} << 16, punto);
            break;
        }
        case TipoEvento::tecla:
            SendMessage(WM_KEYDOWN, e.m_nTecla, 1);
            break;
        case TipoEvento::teclaArriba:
            SendMessage(WM_KEYUP, e.m_nTecla, 1);
            break;
        case TipoEvento::ninguno:
            break;
    }
}

LRESULT CWnd::WindowProc(UINT mensaje, WPARAM w, LPARAM l) {
    if (mensaje >= WM_MOUSEMOVE && mensaje <= WM_MOUSEWHEEL) return MensajeRaton(mensaje, w, l);
    switch (mensaje) {
        case WM_CREATE:
            return OnCreate(reinterpret_cast<LPCREATESTRUCT>(l));
        case WM_DESTROY:
            OnDestroy();
            return 0;
        case WM_SIZE:
            OnSize(static_cast<UINT>(w), LOWORD(static_cast<WPARAM>(l)), HIWORD(static_cast<WPARAM>(l)));
            return 0;
        case WM_PAINT:
            // What a handler invalidates is for the next time.
            m_Pintando = std::exchange(m_Invalido, CRect());
            OnPaint();
            m_Pintando = CRect();
            return 0;
        case WM_CLOSE:
            OnClose();
            return 0;
        case WM_KEYDOWN:
            OnKeyDown(static_cast<UINT>(w), LOWORD(static_cast<WPARAM>(l)), 0);
            return 0;
        case WM_KEYUP:
            OnKeyUp(static_cast<UINT>(w), LOWORD(static_cast<WPARAM>(l)), 0);
            return 0;
        case WM_COMMAND:
            return OnCommand(w, l);
        case WM_QUERYNEWPALETTE:
            return OnQueryNewPalette();
        case WM_PALETTECHANGED:
            OnPaletteChanged(FromHandle(reinterpret_cast<HWND>(w)));  // NOLINT(performance-no-int-to-ptr)
            return 0;
        default:
            return 0;
    }
}

LRESULT CWnd::MensajeRaton(UINT mensaje, WPARAM w, LPARAM l) {
    using Manejador = void (CWnd::*)(UINT, CPoint);
    // In the order of their numbers.
    static constexpr Manejador manejadores[] = {&CWnd::OnMouseMove,     &CWnd::OnLButtonDown, &CWnd::OnLButtonUp,
                                                &CWnd::OnLButtonDblClk, &CWnd::OnRButtonDown, &CWnd::OnRButtonUp,
                                                &CWnd::OnRButtonDblClk, &CWnd::OnMButtonDown, &CWnd::OnMButtonUp,
                                                &CWnd::OnMButtonDblClk};
    const CPoint pt(GET_X_LPARAM(l), GET_Y_LPARAM(l));
    if (mensaje == WM_MOUSEWHEEL) return OnMouseWheel(LOWORD(w), static_cast<short>(HIWORD(w)), pt);
    const Manejador manejador = manejadores[mensaje - WM_MOUSEMOVE];
    (this->*manejador)(static_cast<UINT>(w), pt);
    return 0;
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
BOOL CWnd::OnCommand(WPARAM, LPARAM) {
    return FALSE;
}
void CWnd::OnPaletteChanged(CWnd*) {}
BOOL CWnd::OnQueryNewPalette() {
    return FALSE;
}
void CWnd::OnMouseMove(UINT, CPoint) {}
void CWnd::OnLButtonDown(UINT, CPoint) {}
void CWnd::OnLButtonUp(UINT, CPoint) {}
void CWnd::OnMButtonDown(UINT, CPoint) {}
void CWnd::OnMButtonUp(UINT, CPoint) {}
void CWnd::OnRButtonDown(UINT, CPoint) {}
void CWnd::OnRButtonUp(UINT, CPoint) {}
void CWnd::OnLButtonDblClk(UINT flags, CPoint pt) {
    OnLButtonDown(flags, pt);
}
void CWnd::OnMButtonDblClk(UINT flags, CPoint pt) {
    OnMButtonDown(flags, pt);
}
void CWnd::OnRButtonDblClk(UINT flags, CPoint pt) {
    OnRButtonDown(flags, pt);
}
BOOL CWnd::OnMouseWheel(UINT, short, CPoint) {
    return FALSE;
}
void CWnd::OnKeyDown(UINT, UINT, UINT) {}
void CWnd::OnKeyUp(UINT, UINT, UINT) {}

BOOL InvalidateRect(HWND hWnd, const RECT* rect, BOOL borra) {
    CWnd* ventana = CWnd::FromHandle(hWnd);
    if (!ventana) return AnotaFallo("there is no such window.", ERROR_INVALID_HANDLE);
    ventana->InvalidateRect(rect, borra);
    return TRUE;
}
