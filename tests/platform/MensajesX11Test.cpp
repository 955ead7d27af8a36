// What happens to a window on a display, as its handlers hear of it; and views on windows of a foreign toolkit.

#include "ColorX11.h"
#include "Memoria.h"
#include "platform/CView.h"
#include "platform/CopiasDIB.h"
#include "platform/DiagnosticoGL.h"

#include <X11/Xlib.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

class Vista : public CView {
  public:
    std::string m_Sucesos;
    std::vector<CSize> m_Tamanos;
    std::vector<CRect> m_Cajas;
    std::chrono::milliseconds m_Tarda{0};

  protected:
    int OnCreate(LPCREATESTRUCT) override {
        m_Sucesos += "create ";
        return 0;
    }
    void OnInitialUpdate() override { m_Sucesos += "initial "; }
    void OnSize(UINT, int cx, int cy) override { m_Tamanos.push_back({cx, cy}); }
    void OnDraw(CDC* pDC) override {
        CRect caja;
        if (pDC->GetClipBox(&caja) > NULLREGION) m_Cajas.push_back(caja);
    }
    void OnMouseMove(UINT f, CPoint p) override { Apunta('m', f, p); }
    void OnLButtonDown(UINT f, CPoint p) override { Apunta('L', f, p); }
    void OnLButtonUp(UINT f, CPoint p) override { Apunta('l', f, p); }
    void OnLButtonDblClk(UINT f, CPoint p) override { Apunta('D', f, p); }
    void OnRButtonDown(UINT f, CPoint p) override { Apunta('R', f, p); }
    void OnKeyDown(UINT, UINT, UINT) override {
        m_Sucesos += "k";
        std::this_thread::sleep_for(m_Tarda);
    }

  private:
    void Apunta(char que, UINT, CPoint p) { m_Sucesos += que + std::to_string(p.x) + "," + std::to_string(p.y) + " "; }
};

class MensajesX11 : public testing::Test {
  protected:
    void SetUp() override {
        m_Display = XOpenDisplay(nullptr);
        ASSERT_NE(m_Display, nullptr);
        ASSERT_TRUE(m_Vista.Create(nullptr, L"Mensajes", WS_VISIBLE, CRect(60, 20, 160, 100))) << UltimoFalloGL();
        for (int i = 0; i < 50 && m_Vista.m_Cajas.empty(); ++i)
            CWnd::DespachaEventos(20);
        Atiende();
        Olvida();
    }
    void TearDown() override { XCloseDisplay(m_Display); }

    void Olvida() {
        m_Vista.m_Sucesos.clear();
        m_Vista.m_Tamanos.clear();
        m_Vista.m_Cajas.clear();
    }
    void Manda(XEvent e) {
        e.xany.window = m_Vista.VentanaNativa();
        XSendEvent(m_Display, e.xany.window, False, NoEventMask, &e);
    }
    // A press and a release of a button.
    void Pulsa(unsigned boton, int x, int y, Time cuando) {
        XEvent e = {};
        e.xbutton.type = ButtonPress;
        e.xbutton.button = boton;
        e.xbutton.x = x;
        e.xbutton.y = y;
        e.xbutton.time = cuando;
        Manda(e);
        e.xbutton.type = ButtonRelease;
        Manda(e);
    }
    void Mueve(int x, int y, unsigned estado = 0) {
        XEvent e = {};
        e.xmotion.type = MotionNotify;
        e.xmotion.x = x;
        e.xmotion.y = y;
        e.xmotion.state = estado;
        Manda(e);
    }
    // Hands on all that was sent, which may arrive in parts.
    void Atiende() {
        XSync(m_Display, False);
        while (CWnd::DespachaEventos(30) > 0) {
        }
    }
    std::string Sucesos() {
        Atiende();
        return std::exchange(m_Vista.m_Sucesos, "");
    }
    unsigned long Color(Window w, int x, int y) const { return ColorVisto(m_Display, w, x, y); }

    Display* m_Display = nullptr;
    Vista m_Vista;
};

TEST_F(MensajesX11, TheSecondOfTwoNearPressesIsADoubleClick) {
    Pulsa(1, 10, 10, 1000);
    Pulsa(1, 14, 6, 1500);
    EXPECT_EQ(Sucesos(), "L10,10 l10,10 D14,6 l14,6 ");
}

TEST_F(MensajesX11, TheThirdPressBeginsAnew) {
    for (Time t : {1000, 1100, 1200, 1300})
        Pulsa(1, 10, 10, t);
    EXPECT_EQ(Sucesos(), "L10,10 l10,10 D10,10 l10,10 L10,10 l10,10 D10,10 l10,10 ");
}

TEST_F(MensajesX11, PressesFarApartAreNoDoubleClick) {
    Pulsa(1, 10, 10, 1000);
    Pulsa(1, 10, 10, 1501);  // too late
    Pulsa(1, 15, 10, 1600);  // too far to the right
    Pulsa(1, 15, 15, 1700);  // too far down
    EXPECT_EQ(Sucesos(), "L10,10 l10,10 L10,10 l10,10 L15,10 l15,10 L15,15 l15,15 ");
}

TEST_F(MensajesX11, AnotherButtonBetweenBreaksADoubleClick) {
    Pulsa(1, 10, 10, 1000);
    Pulsa(3, 10, 10, 1100);
    Pulsa(1, 10, 10, 1200);
    EXPECT_EQ(Sucesos(), "L10,10 l10,10 R10,10 L10,10 l10,10 ");
}

TEST_F(MensajesX11, TheDisplaysClockMayBeginAnewBetween) {
    Pulsa(1, 10, 10, 0xffffff00);
    Pulsa(1, 10, 10, 0x00000040);
    EXPECT_EQ(Sucesos(), "L10,10 l10,10 D10,10 l10,10 ");
}

TEST_F(MensajesX11, OfSizesThatWaitOnlyTheLastIsTold) {
    for (int i = 1; i <= 200; ++i) {
        XEvent e = {};
        e.xconfigure.type = ConfigureNotify;
        e.xconfigure.window = m_Vista.VentanaNativa();
        e.xconfigure.width = 100 + i;
        e.xconfigure.height = 80 + i;
        Manda(e);
        Mueve(i, i, i % 2 ? 0 : ShiftMask);  // movements that can't be left out come between
    }
    Atiende();
    ASSERT_FALSE(m_Vista.m_Tamanos.empty());
    EXPECT_LE(m_Vista.m_Tamanos.size(), 10u) << "they may arrive in a few parts";
    EXPECT_EQ(m_Vista.m_Tamanos.back(), CSize(300, 280));
}

TEST_F(MensajesX11, ResizingAgainAndAgainPaintsAFewTimes) {
    for (int i = 1; i <= 50; ++i)
        XResizeWindow(m_Display, m_Vista.VentanaNativa(), static_cast<unsigned>(100 + i), 90);
    Atiende();
    ASSERT_FALSE(m_Vista.m_Tamanos.empty());
    EXPECT_LE(m_Vista.m_Tamanos.size(), 5u);
    EXPECT_EQ(m_Vista.m_Tamanos.back(), CSize(150, 90));
    ASSERT_FALSE(m_Vista.m_Cajas.empty());
    EXPECT_LE(m_Vista.m_Cajas.size(), 5u);
    EXPECT_EQ(m_Vista.m_Cajas.back(), CRect(0, 0, 150, 90));
}

TEST_F(MensajesX11, OfMovementsThatFollowOneAnotherOnlyTheLastIsTold) {
    for (int i = 1; i <= 100; ++i)
        Mueve(i, 2 * i);
    Pulsa(1, 100, 200, 5000);
    const std::string sucesos = Sucesos();
    EXPECT_LE(std::ranges::count(sucesos, 'm'), 10) << "they may arrive in a few parts";
    EXPECT_TRUE(sucesos.ends_with("m100,200 L100,200 l100,200 ")) << sucesos;
}

TEST_F(MensajesX11, MovementsWithOtherButtonsAreKeptApart) {
    Mueve(7, 7);
    Mueve(8, 8, ShiftMask);
    Pulsa(1, 9, 9, 1000);
    Mueve(10, 10, ShiftMask);
    EXPECT_EQ(Sucesos(), "m7,7 m8,8 L9,9 l9,9 m10,10 ");
}

TEST_F(MensajesX11, EventsWithoutEndDontKeepItFromBeingPainted) {
    m_Vista.m_Tarda = std::chrono::milliseconds(3);
    XEvent e = {};
    e.xkey.type = KeyPress;
    e.xkey.keycode = XKeysymToKeycode(m_Display, XStringToKeysym("a"));
    for (int i = 0; i < 100; ++i)
        Manda(e);
    XSync(m_Display, False);
    m_Vista.Invalidate();
    CWnd::DespachaEventos();
    EXPECT_EQ(m_Vista.m_Cajas.size(), 1u);
    EXPECT_LT(m_Vista.m_Sucesos.size(), 100u) << "the rest comes later";
    for (int i = 0; i < 50 && m_Vista.m_Sucesos.size() < 100; ++i)
        CWnd::DespachaEventos();
    EXPECT_EQ(m_Vista.m_Sucesos.size(), 100u) << "and none is lost";
}

TEST_F(MensajesX11, WhatTheDisplayUncoversIsInvalid) {
    XClearArea(m_Display, m_Vista.VentanaNativa(), 10, 20, 5, 6, True);
    XClearArea(m_Display, m_Vista.VentanaNativa(), 30, 15, 7, 4, True);
    Sucesos();
    ASSERT_EQ(m_Vista.m_Cajas.size(), 1u);
    EXPECT_EQ(m_Vista.m_Cajas[0], CRect(10, 15, 37, 26));
}

TEST_F(MensajesX11, APictureCanBeCopiedOntoTheWindow) {
    std::vector<BYTE> bytes(16 * 4);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<BYTE>(3 * i);
    BITMAPINFO info{};
    info.bmiHeader = {40, 5, 4, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    CClientDC dc(&m_Vista);
    EXPECT_EQ(StretchDIBits(dc, 20, 30, 5, 4, 0, 0, 5, 4, bytes.data(), &info, DIB_RGB_COLORS, SRCCOPY), 4)
        << UltimoFalloGL();
    const Window w = m_Vista.VentanaNativa();
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 5; ++x) {
            const BYTE* p = bytes.data() + 16 * (3 - y) + 3 * x;
            EXPECT_EQ(Color(w, 20 + x, 30 + y), p[0] | p[1] << 8 | p[2] << 16) << x << ' ' << y;
        }
    EXPECT_EQ(StretchDIBits(dc, 0, 0, 100, 80, 4, 3, 1, 1, bytes.data(), &info, DIB_RGB_COLORS, SRCCOPY), 1);
    EXPECT_EQ(Color(w, 99, 79), Color(w, 0, 0)) << "over all of it";
    EXPECT_NE(Color(w, 0, 0), 0u);
}

TEST_F(MensajesX11, AViewWorksOnAWindowOfTheHosts) {
    const Window w = XCreateSimpleWindow(m_Display, DefaultRootWindow(m_Display), 200, 10, 50, 40, 0, 0, 0);
    XMapWindow(m_Display, w);
    XSync(m_Display, False);
    {
        Vista v;
        ASSERT_TRUE(v.Attach(w)) << UltimoFalloGL();
        CWnd::DespachaEventos(20);
        EXPECT_EQ(v.m_Sucesos, "") << "what happens to it is the toolkit's";
        EXPECT_EQ(v.SendMessage(WM_CREATE), 0);
        v.SendMessage(WM_INITIALUPDATE);
        v.SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(50, 40));
        v.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(3, 4));
        EXPECT_EQ(v.m_Sucesos, "create initial D3,4 ");
        ASSERT_EQ(v.m_Tamanos.size(), 1u);
        EXPECT_EQ(v.m_Tamanos[0], CSize(50, 40));
        const CRect expuesta(5, 5, 15, 10);
        v.InvalidateRect(&expuesta);
        v.UpdateWindow();
        v.Invalidate();
        CWnd::DespachaEventos();
        ASSERT_EQ(v.m_Cajas.size(), 2u);
        EXPECT_EQ(v.m_Cajas[0], expuesta);
        EXPECT_EQ(v.m_Cajas[1], CRect(0, 0, 50, 40)) << "also where the host lets events be handed on";
        EXPECT_EQ(CWnd::FromHandle(v.GetSafeHwnd()), &v);
        CClientDC dc(&v);
        ASSERT_TRUE(PonFormato(dc, PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER)) << UltimoFalloGL();
    }
    XWindowAttributes a;
    EXPECT_TRUE(XGetWindowAttributes(m_Display, w, &a)) << "it lives on";
    XDestroyWindow(m_Display, w);
}

// Draws on a window of so many pixels, however large; true when it shows.
bool DibujaYMuestra(CWnd& ventana, HDC hdc, HGLRC hrc) {
    CRect r;
    ventana.GetClientRect(&r);
    if (!wglMakeCurrent(hdc, hrc)) return false;
    glViewport(0, 0, r.Width(), r.Height());
    Limpia(0x20, 0x40, 0x60);
    const bool mostrado = SwapBuffers(hdc) && glGetError() == GL_NO_ERROR;
    wglMakeCurrent(nullptr, nullptr);
    return mostrado;
}

TEST_F(MensajesX11, AWindowMayBeAsSmallAsAPixelAndLargerThanTheScreen) {
    CClientDC dc(&m_Vista);
    ASSERT_TRUE(PonFormato(dc, PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER));
    HGLRC hrc = wglCreateContext(dc);
    ASSERT_TRUE(DibujaYMuestra(m_Vista, dc, hrc)) << UltimoFalloGL();
    for (const CSize& lado : {CSize(1, 1), CSize(3000, 2), CSize(1, 1), CSize(90, 70)}) {
        Olvida();
        ASSERT_TRUE(m_Vista.MoveWindow(0, 0, lado.cx, lado.cy));
        for (int i = 0; i < 50 && m_Vista.m_Tamanos.empty(); ++i)
            CWnd::DespachaEventos(20);
        ASSERT_EQ(m_Vista.m_Tamanos.size(), 1u);
        EXPECT_EQ(m_Vista.m_Tamanos[0], lado);
        EXPECT_TRUE(DibujaYMuestra(m_Vista, dc, hrc)) << UltimoFalloGL();
        EXPECT_EQ(Color(m_Vista.VentanaNativa(), 0, 0), 0x204060u);
    }
    EXPECT_TRUE(wglDeleteContext(hrc));
}

}  // namespace
