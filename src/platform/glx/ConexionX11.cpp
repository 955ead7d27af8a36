// The connection to an X11 display.

#include "platform/glx/ConexionX11.h"

#include "platform/CWnd.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <mutex>

namespace plataforma {

namespace {

// What the error handler knows. Errors of other connections go to whoever handled them before.
struct ErroresX {
    std::mutex m_Cerrojo;
    std::vector<Display*> m_Nuestras;
    std::vector<Display*> m_Rotas;  // those of them whose server has gone
    std::atomic<XErrorHandler> m_pAjeno{nullptr};
    std::atomic<XIOErrorHandler> m_pRoturaAjena{nullptr};
    std::atomic<int> m_nUltimo{0};
    std::atomic<Display*> m_pUltima{nullptr};      // whose the last error is
    std::atomic<unsigned long> m_nUltimaSerie{0};  // of the request that the last error answers
};

ErroresX& Errores() {
    static ErroresX& e = *new ErroresX;
    return e;
}

bool EsNuestra(Display* display) {
    std::lock_guard cierre(Errores().m_Cerrojo);
    return std::ranges::count(Errores().m_Nuestras, display) != 0;
}

int Manejador(Display* display, XErrorEvent* error) {
    ErroresX& e = Errores();
    if (EsNuestra(display)) {
        e.m_nUltimo = error->error_code;
        e.m_pUltima = display;
        e.m_nUltimaSerie = error->serial;
        return 0;
    }
    const XErrorHandler ajeno = e.m_pAjeno;
    return ajeno ? ajeno(display, error) : 0;
}

int ManejadorRotura(Display* display) {
    if (EsNuestra(display)) return 0;
    const XIOErrorHandler ajena = Errores().m_pRoturaAjena;
    return ajena ? ajena(display) : 0;
}

// The server of a connection has gone.
void Pierde(Display* display, void*) {
    {
        std::lock_guard cierre(Errores().m_Cerrojo);
        if (std::ranges::count(Errores().m_Rotas, display) == 0) Errores().m_Rotas.push_back(display);
    }
    DevuelveCerrojos(display);
}

// Puts our handler first. It stays there: what OpenGL sends to the display fails at any later time, when the window of
// a toolkit has gone, say.
// @return the one that was there
XErrorHandler PonManejador() {
    XErrorHandler anterior = XSetErrorHandler(Manejador);
    if (anterior != Manejador) Errores().m_pAjeno = anterior;
    return anterior;
}

unsigned Estado(unsigned x) {
    return (x & Button1Mask ? MK_LBUTTON : 0) | (x & Button2Mask ? MK_MBUTTON : 0) |
           (x & Button3Mask ? MK_RBUTTON : 0) | (x & ShiftMask ? MK_SHIFT : 0) | (x & ControlMask ? MK_CONTROL : 0);
}

// VK_ value of a key; 0 for one that has none.
unsigned Tecla(KeySym s) {
    struct Par {
        KeySym m_X;
        unsigned m_Vk;
    };
    static constexpr Par pares[] = {{XK_BackSpace, VK_BACK},    {XK_Tab, VK_TAB},
                                    {XK_Return, VK_RETURN},     {XK_KP_Enter, VK_RETURN},
                                    {XK_Shift_L, VK_SHIFT},     {XK_Shift_R, VK_SHIFT},
                                    {XK_Control_L, VK_CONTROL}, {XK_Control_R, VK_CONTROL},
                                    {XK_Escape, VK_ESCAPE},     {XK_space, VK_SPACE},
                                    {XK_Prior, VK_PRIOR},       {XK_Next, VK_NEXT},
                                    {XK_End, VK_END},           {XK_Home, VK_HOME},
                                    {XK_Left, VK_LEFT},         {XK_Up, VK_UP},
                                    {XK_Right, VK_RIGHT},       {XK_Down, VK_DOWN},
                                    {XK_Insert, VK_INSERT},     {XK_Delete, VK_DELETE},
                                    {XK_KP_Add, VK_ADD},        {XK_KP_Subtract, VK_SUBTRACT},
                                    {XK_plus, VK_OEM_PLUS},     {XK_equal, VK_OEM_PLUS},
                                    {XK_minus, VK_OEM_MINUS},   {XK_slash, VK_OEM_2},
                                    {XK_question, VK_OEM_2}};
    if (s >= XK_a && s <= XK_z) return static_cast<unsigned>(s - XK_a + 'A');
    if ((s >= XK_A && s <= XK_Z) || (s >= XK_0 && s <= XK_9)) return static_cast<unsigned>(s);
    if (s >= XK_F1 && s <= XK_F12) return static_cast<unsigned>(s - XK_F1 + VK_F1);
    const auto par = std::find_if(std::begin(pares), std::end(pares), [s](const Par& p) { return p.m_X == s; });
    return par == std::end(pares) ? 0 : par->m_Vk;
}

void TraduceBoton(const XButtonEvent& b, Evento& e) {
    e.m_nX = b.x;
    e.m_nY = b.y;
    e.m_nEstado = Estado(b.state);
    e.m_nInstante = static_cast<unsigned>(b.time);
    if (b.button >= 1 && b.button <= 3) {
        e.m_Tipo = b.type == ButtonPress ? TipoEvento::pulsa : TipoEvento::suelta;
        e.m_nBoton = static_cast<int>(b.button);
        // The server tells what was held before this button.
        const unsigned suyo = b.button == 1 ? MK_LBUTTON : b.button == 2 ? MK_MBUTTON : MK_RBUTTON;
        e.m_nEstado = b.type == ButtonPress ? e.m_nEstado | suyo : e.m_nEstado & ~suyo;
    } else if (b.type == ButtonPress && (b.button == 4 || b.button == 5)) {
        e.m_Tipo = TipoEvento::rueda;
        e.m_nBoton = b.button == 4 ? 1 : -1;
    }
}

Evento Traduce(XEvent& x, const ConexionX11& conexion) {
    Evento e;
    e.m_Ventana = x.xany.window;
    switch (x.type) {
        case Expose:
            e.m_Tipo = TipoEvento::repinta;
            e.m_nX = x.xexpose.x;
            e.m_nY = x.xexpose.y;
            e.m_nAncho = x.xexpose.width;
            e.m_nAlto = x.xexpose.height;
            break;
        case ConfigureNotify:
            e.m_Tipo = TipoEvento::tamano;
            e.m_nX = x.xconfigure.width;
            e.m_nY = x.xconfigure.height;
            break;
        case ClientMessage:
            if (x.xclient.message_type == conexion.AtomoProtocolos() &&
                static_cast<Atom>(x.xclient.data.l[0]) == conexion.AtomoBorra())
                e.m_Tipo = TipoEvento::cierra;
            break;
        case DestroyNotify:
            e.m_Tipo = TipoEvento::destruida;
            break;
        case MotionNotify:
            e.m_Tipo = TipoEvento::raton;
            e.m_nX = x.xmotion.x;
            e.m_nY = x.xmotion.y;
            e.m_nEstado = Estado(x.xmotion.state);
            break;
        case ButtonPress:
        case ButtonRelease:
            TraduceBoton(x.xbutton, e);
            break;
        case KeyPress:
        case KeyRelease:
            e.m_nTecla = Tecla(XLookupKeysym(&x.xkey, 0));
            // Keyboards differ in where signs stand: one that has no number of its own may be another one with Shift.
            if (e.m_nTecla == 0 && (x.xkey.state & ShiftMask) != 0) e.m_nTecla = Tecla(XLookupKeysym(&x.xkey, 1));
            e.m_nEstado = Estado(x.xkey.state);
            if (e.m_nTecla) e.m_Tipo = x.type == KeyPress ? TipoEvento::tecla : TipoEvento::teclaArriba;
            break;
        default:
            break;
    }
    return e;
}

}  // namespace

bool EstaRota(Display* display) {
    std::lock_guard cierre(Errores().m_Cerrojo);
    return std::ranges::count(Errores().m_Rotas, display) != 0;
}

std::unique_ptr<ConexionX11> ConexionX11::Abre(std::string& motivo) {
    static const bool hilos = XInitThreads() != 0;  // before any other call of Xlib
    if (!hilos) {
        motivo = "the X library can't be used from several threads; install Debian's libx11-6.";
        return nullptr;
    }
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        const char* nombre = std::getenv("DISPLAY");
        motivo = nombre && *nombre
                     ? std::string("the display \"") + nombre +
                           "\" can't be opened: no X server runs there, or it refuses this user (see xauth)."
                     : "DISPLAY isn't set: there is no X display; start from a desktop session or under xvfb-run.";
        return nullptr;
    }
    return std::unique_ptr<ConexionX11>(new ConexionX11(display));
}

ConexionX11::ConexionX11(Display* display)
    : m_Display(display), m_nPantalla(DefaultScreen(display)), m_Raiz(RootWindow(display, m_nPantalla)) {
    {
        std::lock_guard cierre(Errores().m_Cerrojo);
        Errores().m_Nuestras.push_back(display);
    }
    PonManejador();
    // A server that goes away would end the process too. Calls to Xlib then return without having done anything.
    const XIOErrorHandler rotura = XSetIOErrorHandler(ManejadorRotura);
    if (rotura != ManejadorRotura) Errores().m_pRoturaAjena = rotura;
    XSetIOErrorExitHandler(display, Pierde, nullptr);
    m_Protocolos = XInternAtom(display, "WM_PROTOCOLS", False);
    m_Borra = XInternAtom(display, "WM_DELETE_WINDOW", False);
}

ConexionX11::~ConexionX11() {
    XCloseDisplay(m_Display);
    std::lock_guard cierre(Errores().m_Cerrojo);
    std::erase(Errores().m_Nuestras, m_Display);
    std::erase(Errores().m_Rotas, m_Display);
}

Pantalla ConexionX11::Mide() const {
    Pantalla p{DisplayWidth(m_Display, m_nPantalla), DisplayHeight(m_Display, m_nPantalla), 96.0};
    const int mm = DisplayHeightMM(m_Display, m_nPantalla);
    if (mm > 0) p.m_dPuntosPulgada = p.m_nAlto * 25.4 / mm;
    return p;
}

std::optional<Evento> ConexionX11::SiguienteEvento(std::chrono::milliseconds espera) {
    const GuardaErroresX guarda(m_Display);
    if (XPending(m_Display) <= 0) {
        if (espera.count() == 0) return std::nullopt;
        pollfd canal = {ConnectionNumber(m_Display), POLLIN, 0};
        poll(&canal, 1, espera.count() < 0 ? -1 : static_cast<int>(espera.count()));
        if (XPending(m_Display) <= 0) return std::nullopt;
    }
    XEvent x;
    XNextEvent(m_Display, &x);
    DejaLaUltima(x);
    return Traduce(x, *this);
}

// Of sizes that wait, and of movements that follow one another, the last one is all that counts.
void ConexionX11::DejaLaUltima(XEvent& x) {
    if (x.type == ConfigureNotify) {
        while (XCheckTypedWindowEvent(m_Display, x.xany.window, ConfigureNotify, &x)) {
        }
    }
    while (x.type == MotionNotify && XPending(m_Display) > 0) {
        XEvent otro;
        XPeekEvent(m_Display, &otro);
        if (otro.type != MotionNotify || otro.xany.window != x.xany.window || otro.xmotion.state != x.xmotion.state)
            break;
        XNextEvent(m_Display, &x);
    }
}

std::optional<Posicion> ConexionX11::Cursor() const {
    const GuardaErroresX guarda(m_Display);
    Window raiz = None, hija = None;
    Posicion p, enVentana;
    unsigned botones = 0;
    if (!XQueryPointer(m_Display, m_Raiz, &raiz, &hija, &p.m_nX, &p.m_nY, &enVentana.m_nX, &enVentana.m_nY, &botones))
        return std::nullopt;  // on another screen, or the server has gone
    return p;
}

// A display that has its pointer from another one takes the request and does nothing: only looking tells.
bool ConexionX11::MueveCursor(const Posicion& donde) {
    const GuardaErroresX guarda(m_Display);
    const auto antes = Cursor();
    XWarpPointer(m_Display, None, m_Raiz, 0, 0, 0, 0, donde.m_nX, donde.m_nY);
    const auto despues = Cursor();
    return despues && (despues == donde || despues != antes);
}

bool ConexionX11::Contesta() const {
    Window raiz = None;
    int x = 0, y = 0;
    unsigned ancho = 0, alto = 0, borde = 0, bits = 0;
    return XGetGeometry(m_Display, m_Raiz, &raiz, &x, &y, &ancho, &alto, &borde, &bits) != 0;
}

bool ConexionX11::Rota() const {
    return EstaRota(m_Display);
}

bool ConexionX11::EstaPulsada(unsigned tecla) const {
    const GuardaErroresX guarda(m_Display);
    std::array<char, 32> teclado{};  // a bit for each key
    XQueryKeymap(m_Display, teclado.data());
    // Without a server that call leaves anything behind; only a later answer proves it.
    if (!Contesta()) return false;
    for (unsigned codigo = 0; codigo < teclado.size() * 8; ++codigo)
        if ((teclado[codigo / 8] >> codigo % 8 & 1) &&
            Tecla(XkbKeycodeToKeysym(m_Display, static_cast<KeyCode>(codigo), 0, 0)) == tecla)
            return true;
    return false;
}

GuardaErroresX::GuardaErroresX(Display* display)
    : m_Display(display), m_pAnterior(PonManejador()), m_nDesde(XNextRequest(display)) {}

GuardaErroresX::~GuardaErroresX() {
    if (m_pAnterior == Manejador) return;
    // The host has put a handler of its own since: what is under way must come back before it is in charge again.
    XSync(m_Display, False);
    XSetErrorHandler(m_pAnterior);
}

std::string TextoErrorX(int error) {
    return error == kServidorPerdido ? "it has gone away" : "error " + std::to_string(error);
}

int GuardaErroresX::Error() {
    XSync(m_Display, False);
    if (EstaRota(m_Display)) return kServidorPerdido;
    const ErroresX& e = Errores();
    return e.m_pUltima == m_Display && e.m_nUltimaSerie >= m_nDesde ? e.m_nUltimo.load() : 0;
}

}  // namespace plataforma
