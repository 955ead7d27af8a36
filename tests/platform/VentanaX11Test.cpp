// What only an X11 display has: pictures that the user sees, other people's windows, and errors of the server.

#include "ColorX11.h"
#include "Memoria.h"
#include "platform/Backend.h"
#include "platform/CWnd.h"
#include "platform/DiagnosticoGL.h"
#include "support/ServidorX.h"

#include <X11/Xlib.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>

namespace {

constexpr DWORD kEnVentana = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;

// The host's own connection to the display.
class Anfitrion {
  public:
    Anfitrion() : m_Display(XOpenDisplay(nullptr)) {}
    ~Anfitrion() {
        if (m_Display) XCloseDisplay(m_Display);
    }
    Window Crea() {
        const Window w = XCreateSimpleWindow(m_Display, DefaultRootWindow(m_Display), 200, 10, 32, 32, 0, 0, 0);
        XMapWindow(m_Display, w);
        XSync(m_Display, False);
        return w;
    }
    unsigned long Color(Window w, int x, int y) const { return ColorVisto(m_Display, w, x, y); }
    void Manda(XEvent& e, Window w) {
        e.xany.window = w;
        XSendEvent(m_Display, w, False, NoEventMask, &e);
        XSync(m_Display, False);
    }
    Display* m_Display;
};

class Ventana : public CWnd {
  public:
    bool Abre() { return Create(nullptr, L"Peñón", WS_VISIBLE, CRect(50, 10, 82, 42)); }
    bool EsperaPintada() {
        for (int i = 0; i < 50 && m_nPintadas == 0; ++i)
            DespachaEventos(20);
        return m_nPintadas > 0;
    }
    int m_nPintadas = 0;
    std::string m_Sucesos;

  protected:
    void OnPaint() override { ++m_nPintadas; }
    void OnMouseMove(UINT f, CPoint p) override { Apunta('m', f, p); }
    void OnLButtonDown(UINT f, CPoint p) override { Apunta('L', f, p); }
    void OnLButtonUp(UINT f, CPoint p) override { Apunta('l', f, p); }
    void OnRButtonDown(UINT f, CPoint p) override { Apunta('R', f, p); }
    BOOL OnMouseWheel(UINT f, short d, CPoint p) override {
        Apunta(d > 0 ? '+' : '-', f, p);
        EXPECT_EQ(d * d, WHEEL_DELTA * WHEEL_DELTA);
        return TRUE;
    }
    void OnKeyDown(UINT t, UINT, UINT) override { ApuntaTecla('K', t); }
    void OnKeyUp(UINT t, UINT, UINT) override { ApuntaTecla('k', t); }
    void OnClose() override {
        m_Sucesos += "close ";
        CWnd::OnClose();
    }

  private:
    void ApuntaTecla(char que, UINT tecla) { (m_Sucesos += que).append(std::to_string(tecla)).append(" "); }
    void Apunta(char que, UINT f, CPoint p) {
        m_Sucesos += que + std::to_string(f) + "," + std::to_string(p.x) + "," + std::to_string(p.y) + " ";
    }
};

class VentanaX11 : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_Ventana.Abre()) << UltimoFalloGL();
        ASSERT_TRUE(m_Ventana.EsperaPintada());
        ASSERT_NE(m_Anfitrion.m_Display, nullptr);
    }
    void TearDown() override {
        wglMakeCurrent(nullptr, nullptr);
        wglDeleteContext(m_hRC);
    }
    void Contexto(HDC hdc) {
        ASSERT_TRUE(PonFormato(hdc, kEnVentana)) << UltimoFalloGL();
        m_hRC = wglCreateContext(hdc);
        ASSERT_TRUE(wglMakeCurrent(hdc, m_hRC)) << UltimoFalloGL();
        glViewport(0, 0, 32, 32);
    }
    unsigned long Color(int x, int y) { return m_Anfitrion.Color(m_Ventana.VentanaNativa(), x, y); }
    static void Xorea() {
        ::Xorea();
        glFlush();
    }

    Anfitrion m_Anfitrion;
    Ventana m_Ventana;
    HGLRC m_hRC = nullptr;
};

TEST_F(VentanaX11, WhatIsPresentedShows) {
    CClientDC dc(&m_Ventana);
    Contexto(dc.GetSafeHdc());
    Limpia(0x12, 0x34, 0x56);
    EXPECT_NE(Color(5, 5), 0x123456u);
    ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
    EXPECT_EQ(Color(5, 5), 0x123456u);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 1, 1);
    glDisable(GL_SCISSOR_TEST);
    Limpia(0x65, 0x43, 0x21);
    glEnable(GL_SCISSOR_TEST);
    ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
    EXPECT_EQ(Color(31, 0), 0x654321u) << "the scissor is the scene's, not the presentation's";
}

TEST_F(VentanaX11, XorOnTheFrontBufferShowsAndWipes) {
    CClientDC dc(&m_Ventana);
    Contexto(dc.GetSafeHdc());
    for (unsigned long fondo : {0x102030ul, 0x908070ul}) {
        Limpia(static_cast<int>(fondo >> 16), static_cast<int>(fondo >> 8 & 255), static_cast<int>(fondo & 255));
        ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
        Xorea();
        EXPECT_EQ(Color(4, 28), fondo ^ 0xffff00u) << "shown";
        EXPECT_EQ(Color(28, 4), fondo) << "the rest of the window stays";
        Xorea();
        EXPECT_EQ(Color(4, 28), fondo) << "wiped";
    }
}

TEST_F(VentanaX11, XorOfSeveralTimesWithReleasesBetween) {
    CClientDC dc(&m_Ventana);
    Contexto(dc.GetSafeHdc());
    Limpia(0x10, 0x20, 0x30);
    ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
    for (int i = 1; i <= 4; ++i) {
        ASSERT_TRUE(wglMakeCurrent(nullptr, nullptr));
        ASSERT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), m_hRC));
        Xorea();
        EXPECT_EQ(Color(4, 28), i % 2 ? 0xefdf30u : 0x102030u);
    }
}

TEST_F(VentanaX11, AWindowThatChangesItsSizeShowsWhole) {
    CClientDC dc(&m_Ventana);
    Contexto(dc.GetSafeHdc());
    Limpia(1, 2, 3);
    ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
    for (int lado : {100, 20, 64}) {
        ASSERT_TRUE(wglMakeCurrent(nullptr, nullptr));
        ASSERT_TRUE(m_Ventana.MoveWindow(50, 10, lado, lado));
        CWnd::DespachaEventos(200);
        ASSERT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), m_hRC));
        glViewport(0, 0, lado, lado);
        Limpia(0x10, 0x20, 0x30);
        glColor3ub(0x40, 0x50, 0x60);
        glRectf(0, -1, 1, 0);
        ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
        EXPECT_EQ(Color(lado - 1, lado - 1), 0x405060u) << lado;
        EXPECT_EQ(Color(lado - 1, 0), 0x102030u) << lado;
        EXPECT_EQ(Color(0, 0), 0x102030u) << lado;
        Xorea();
        EXPECT_EQ(Color(1, lado - 1), 0xefdf30u) << lado;
        EXPECT_EQ(Color(lado - 1, lado - 1), 0x405060u) << lado;
        Xorea();
        EXPECT_EQ(Color(1, lado - 1), 0x102030u) << lado;
    }
}

TEST_F(VentanaX11, SeveralThreadsAtOnceOnOneWindow) {
    CClientDC dc(&m_Ventana);
    Contexto(dc.GetSafeHdc());
    HGLRC otro = wglCreateContext(dc.GetSafeHdc());
    ASSERT_TRUE(wglShareLists(m_hRC, otro));
    GLuint lista = 0;
    std::thread([&] {
        ASSERT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), otro));
        lista = glGenLists(1);
        glNewList(lista, GL_COMPILE);
        glColor3ub(0, 0, 200);
        glRectf(-1, -1, 1, 1);
        glEndList();
        glFinish();
    }).join();
    glCallList(lista);
    ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
    EXPECT_EQ(Color(5, 5), 0x0000c8u);
    EXPECT_TRUE(wglDeleteContext(otro));
}

TEST_F(VentanaX11, EventsReachTheWindow) {
    const Window w = m_Ventana.VentanaNativa();
    XEvent e = {};
    e.xbutton.type = ButtonPress;
    e.xbutton.x = 3;
    e.xbutton.y = 4;
    e.xbutton.button = 1;
    e.xbutton.state = ShiftMask;
    m_Anfitrion.Manda(e, w);
    e.xbutton.type = ButtonRelease;
    e.xbutton.state = ShiftMask | Button1Mask;
    m_Anfitrion.Manda(e, w);
    e.xbutton.type = ButtonPress;
    e.xbutton.state = ControlMask;
    for (unsigned boton : {3u, 4u, 5u}) {
        e.xbutton.button = boton;
        m_Anfitrion.Manda(e, w);
    }
    e = {};
    e.xmotion.type = MotionNotify;
    e.xmotion.x = 7;
    e.xmotion.y = 8;
    e.xmotion.state = Button2Mask;
    m_Anfitrion.Manda(e, w);
    e = {};
    e.xkey.type = KeyPress;
    e.xkey.keycode = XKeysymToKeycode(m_Anfitrion.m_Display, XStringToKeysym("a"));
    m_Anfitrion.Manda(e, w);
    e.xkey.type = KeyRelease;
    e.xkey.keycode = XKeysymToKeycode(m_Anfitrion.m_Display, XStringToKeysym("Left"));
    m_Anfitrion.Manda(e, w);
    CWnd::DespachaEventos(200);
    EXPECT_EQ(m_Ventana.m_Sucesos, "L5,3,4 l4,3,4 R10,3,4 +8,3,4 -8,3,4 m16,7,8 K65 k37 ");
}

TEST_F(VentanaX11, TheUserClosesIt) {
    XEvent e = {};
    e.xclient.type = ClientMessage;
    e.xclient.message_type = XInternAtom(m_Anfitrion.m_Display, "WM_PROTOCOLS", False);
    e.xclient.format = 32;
    e.xclient.data.l[0] = static_cast<long>(XInternAtom(m_Anfitrion.m_Display, "WM_DELETE_WINDOW", False));
    m_Anfitrion.Manda(e, m_Ventana.VentanaNativa());
    CWnd::DespachaEventos(200);
    EXPECT_EQ(m_Ventana.m_Sucesos, "close ");
    EXPECT_EQ(m_Ventana.GetSafeHwnd(), nullptr);
}

TEST_F(VentanaX11, TheTitleArrivesInUtf8) {
    const Window w = m_Ventana.VentanaNativa();
    XTextProperty texto = {};
    ASSERT_TRUE(
        XGetTextProperty(m_Anfitrion.m_Display, w, &texto, XInternAtom(m_Anfitrion.m_Display, "_NET_WM_NAME", False)));
    EXPECT_STREQ(reinterpret_cast<const char*>(texto.value), "Peñón");
    XFree(texto.value);
}

TEST_F(VentanaX11, AWindowOfTheHostCanBeDrawnOn) {
    const Window w = m_Anfitrion.Crea();
    CWnd envuelta;
    ASSERT_TRUE(envuelta.Attach(w)) << UltimoFalloGL();
    EXPECT_EQ(envuelta.VentanaNativa(), w);
    EXPECT_FALSE(envuelta.DestroyWindow()) << "it is the host's";
    CRect r;
    envuelta.GetClientRect(&r);
    EXPECT_EQ(r, CRect(0, 0, 32, 32));
    {
        CClientDC dc(&envuelta);
        Contexto(dc.GetSafeHdc());
        Limpia(0xab, 0xcd, 0xef);
        ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
        EXPECT_EQ(m_Anfitrion.Color(w, 9, 9), 0xabcdefu);
        wglMakeCurrent(nullptr, nullptr);
    }
    envuelta.Detach();
    XWindowAttributes a;
    EXPECT_TRUE(XGetWindowAttributes(m_Anfitrion.m_Display, w, &a)) << "it lives on";
    XDestroyWindow(m_Anfitrion.m_Display, w);
}

TEST_F(VentanaX11, AWindowThatVanishesDoesntEndTheProcess) {
    const Window w = m_Anfitrion.Crea();
    CWnd envuelta;
    ASSERT_TRUE(envuelta.Attach(w));
    CClientDC dc(&envuelta);
    Contexto(dc.GetSafeHdc());
    Limpia(1, 2, 3);
    ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
    XDestroyWindow(m_Anfitrion.m_Display, w);
    XSync(m_Anfitrion.m_Display, False);

    // Nothing is drawn meanwhile: not every driver survives drawing on a window that is no more.
    EXPECT_FALSE(SwapBuffers(dc.GetSafeHdc()));
    CWnd::DespachaEventos();
    EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    EXPECT_FALSE(wglMakeCurrent(dc.GetSafeHdc(), m_hRC)) << "nothing is left to draw on";
    CRect r;
    envuelta.GetClientRect(&r);
    EXPECT_EQ(r, CRect(0, 0, 0, 0));
    CWnd nueva;
    EXPECT_FALSE(nueva.Attach(w));
}

TEST_F(VentanaX11, AServerThatGoesAwayDoesntEndTheProcess) {
    Servidor servidor;
    if (servidor.m_Nombre.empty()) GTEST_SKIP() << "Xvfb isn't installed";
    const std::string antes = std::getenv("DISPLAY");
    setenv("DISPLAY", servidor.m_Nombre.c_str(), 1);
    std::string motivo;
    auto backend = plataforma::ConectaGLX(motivo);
    setenv("DISPLAY", antes.c_str(), 1);
    ASSERT_NE(backend, nullptr) << motivo;
    auto ventana = backend->CreaVentana({0, 0, 16, 16}, 0, motivo);
    ASSERT_NE(ventana, nullptr) << motivo;
    const auto& formato = backend->Formatos().front();
    auto superficie = ventana->CreaSuperficie(formato, motivo);
    auto contexto = backend->CreaContexto(formato, nullptr, motivo);
    ASSERT_TRUE(backend->HazActual(superficie.get(), *contexto, motivo)) << motivo;
    Limpia(1, 2, 3);
    ASSERT_TRUE(backend->Intercambia(*superficie));
    glFinish();
    servidor.Mata();
    // Nothing is drawn from here on: not every driver survives drawing on a window that is no more.
    while (backend->SiguienteEvento(std::chrono::milliseconds(10))) {
    }
    EXPECT_FALSE(ventana->Medidas());
    backend->Suelta();
}

int g_nErroresDelAnfitrion = 0;

TEST_F(VentanaX11, TheHostsErrorsAreItsOwnAndOursAreNot) {
    const XErrorHandler anterior = XSetErrorHandler([](Display*, XErrorEvent*) { return ++g_nErroresDelAnfitrion; });
    g_nErroresDelAnfitrion = 0;
    CWnd nueva;
    EXPECT_FALSE(nueva.Attach(0x7fffffff));
    EXPECT_EQ(g_nErroresDelAnfitrion, 0) << "the library's own errors reach nobody";
    XUnmapWindow(m_Anfitrion.m_Display, 0x7fffffff);
    XSync(m_Anfitrion.m_Display, False);
    EXPECT_EQ(g_nErroresDelAnfitrion, 1) << "the host's handler is in charge again";
    XSetErrorHandler(anterior);
    EXPECT_NE(anterior, nullptr);
}

TEST_F(VentanaX11, AMemoryDeviceJoinsItsListsWithTheWindows) {
    CClientDC dc(&m_Ventana);
    Contexto(dc.GetSafeHdc());
    Memoria memoria(8, 8);
    ASSERT_TRUE(memoria.m_bFormato) << UltimoFalloGL();
    HGLRC otro = wglCreateContext(memoria.hdc());
    ASSERT_TRUE(wglShareLists(m_hRC, otro));
    const GLuint lista = glGenLists(1);
    glNewList(lista, GL_COMPILE);
    glColor3ub(90, 80, 70);
    glRectf(-1, -1, 1, 1);
    glEndList();
    ASSERT_TRUE(wglMakeCurrent(memoria.hdc(), otro)) << UltimoFalloGL();
    glViewport(0, 0, 8, 8);
    glCallList(lista);
    ASSERT_TRUE(SwapBuffers(memoria.hdc()));
    EXPECT_EQ(memoria.Pixel(4, 4), (std::array<int, 3>{70, 80, 90}));
    EXPECT_TRUE(wglDeleteContext(otro));
}

}  // namespace
