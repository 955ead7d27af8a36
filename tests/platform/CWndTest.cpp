// Windows, real ones and those in memory alike: life, size, events, drawing on them.

#include "platform/CWnd.h"

#include "Memoria.h"
#include "platform/DiagnosticoGL.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr DWORD kEnVentana = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;

class Ventana : public CWnd {
  public:
    bool Abre(int ancho, int alto, DWORD estilo = WS_VISIBLE) {
        return Create(nullptr, L"Añover", estilo, CRect(20, 30, 20 + ancho, 30 + alto));
    }
    // Hands on events until `hasta` holds, for a second at most.
    template <class Condicion>
    bool Espera(Condicion hasta) {
        for (int i = 0; i < 50 && !hasta(); ++i)
            DespachaEventos(20);
        return hasta();
    }

    std::vector<CSize> m_Tamanos;
    int m_nPintadas = 0, m_nCierres = 0, m_nDestruidas = 0;
    int m_nCrea = 0;
    bool m_bPrevia = true;
    bool m_bCierraAlPintar = false;

  protected:
    BOOL PreCreateWindow(CREATESTRUCT& cs) override {
        cs.style |= WS_CLIPSIBLINGS;
        return m_bPrevia;
    }
    int OnCreate(LPCREATESTRUCT cs) override {
        EXPECT_NE(GetSafeHwnd(), nullptr);
        EXPECT_TRUE(cs->style & WS_CLIPSIBLINGS);
        return m_nCrea;
    }
    void OnSize(UINT, int cx, int cy) override { m_Tamanos.push_back({cx, cy}); }
    void OnPaint() override {
        ++m_nPintadas;
        if (m_bCierraAlPintar) DestroyWindow();
    }
    void OnClose() override {
        ++m_nCierres;
        CWnd::OnClose();
    }
    void OnDestroy() override { ++m_nDestruidas; }
};

TEST(CWnd, IsBornWithItsSize) {
    Ventana v;
    ASSERT_TRUE(v.Abre(120, 80)) << UltimoFalloGL();
    CRect r;
    v.GetClientRect(&r);
    EXPECT_EQ(r, CRect(0, 0, 120, 80));
    ASSERT_EQ(v.m_Tamanos.size(), 1u);
    EXPECT_EQ(v.m_Tamanos[0], CSize(120, 80));
    EXPECT_FALSE(v.Abre(10, 10)) << "it stands already";
    EXPECT_TRUE(v.DestroyWindow());
    EXPECT_EQ(v.m_nDestruidas, 1);
    EXPECT_EQ(v.GetSafeHwnd(), nullptr);
    EXPECT_FALSE(v.DestroyWindow());
    EXPECT_EQ(v.m_nDestruidas, 1);
    v.GetClientRect(&r);
    EXPECT_EQ(r, CRect(0, 0, 0, 0));
    EXPECT_TRUE(v.Abre(30, 40)) << "the object can be used again";
}

TEST(CWnd, ImpossibleSizesAreRefused) {
    Ventana v;
    EXPECT_FALSE(v.Abre(0, 10));
    EXPECT_FALSE(v.Abre(10, 0));
    EXPECT_FALSE(v.Abre(100000, 10));
    EXPECT_NE(UltimoFalloGL().find("100000"), std::string::npos);
    EXPECT_FALSE(v.Abre(-10, 10));
    EXPECT_EQ(v.GetSafeHwnd(), nullptr);
    ASSERT_TRUE(v.Abre(10, 10));
    EXPECT_FALSE(v.MoveWindow(0, 0, 0, 10));
    EXPECT_FALSE(v.MoveWindow(0, 0, 100000, 10));
}

TEST(CWnd, WhoMakesItMayRefuseIt) {
    Ventana v;
    v.m_nCrea = -1;
    EXPECT_FALSE(v.Abre(10, 10));
    EXPECT_EQ(v.GetSafeHwnd(), nullptr);
    EXPECT_TRUE(v.m_Tamanos.empty());
    v.m_nCrea = 0;
    v.m_bPrevia = false;
    EXPECT_FALSE(v.Abre(10, 10));
    v.m_bPrevia = true;
    EXPECT_TRUE(v.Abre(10, 10));
}

TEST(CWnd, IsPaintedWhenAsked) {
    Ventana v;
    ASSERT_TRUE(v.Abre(40, 30));
    ASSERT_TRUE(v.Espera([&] { return v.m_nPintadas > 0; })) << "a new window is painted";
    CWnd::DespachaEventos();
    const int antes = v.m_nPintadas;
    v.Invalidate();
    v.Invalidate();
    EXPECT_GE(CWnd::DespachaEventos(), 1);
    EXPECT_EQ(v.m_nPintadas, antes + 1) << "once, however often it was asked for";
}

TEST(CWnd, MovingItTellsItsSize) {
    Ventana v;
    ASSERT_TRUE(v.Abre(40, 30));
    ASSERT_TRUE(v.MoveWindow(5, 6, 64, 48));
    ASSERT_TRUE(v.Espera([&] { return v.m_Tamanos.size() == 2; }));
    EXPECT_EQ(v.m_Tamanos[1], CSize(64, 48));
    CRect r;
    v.GetClientRect(&r);
    EXPECT_EQ(r, CRect(0, 0, 64, 48));
    ASSERT_TRUE(v.MoveWindow(50, 60, 64, 48));
    CWnd::DespachaEventos(50);
    EXPECT_EQ(v.m_Tamanos.size(), 2u) << "the size is the same";
}

TEST(CWnd, MayBeDestroyedWhilePainting) {
    Ventana v, otra;
    ASSERT_TRUE(v.Abre(40, 30));
    ASSERT_TRUE(otra.Abre(40, 30));
    v.m_bCierraAlPintar = true;
    v.Invalidate();
    otra.Invalidate();
    CWnd::DespachaEventos();
    EXPECT_EQ(v.GetSafeHwnd(), nullptr);
    EXPECT_GE(otra.m_nPintadas, 1);
}

TEST(CWnd, ChildrenGoWithTheirParent) {
    Ventana madre, hija, nieta;
    ASSERT_TRUE(madre.Abre(100, 100));
    ASSERT_TRUE(hija.Create(nullptr, L"", WS_CHILD | WS_VISIBLE, CRect(10, 10, 60, 60), &madre));
    ASSERT_TRUE(nieta.Create(nullptr, L"", WS_CHILD | WS_VISIBLE, CRect(1, 1, 11, 11), &hija));
    EXPECT_TRUE(madre.DestroyWindow());
    EXPECT_EQ(hija.GetSafeHwnd(), nullptr);
    EXPECT_EQ(nieta.GetSafeHwnd(), nullptr);
    EXPECT_EQ(hija.m_nDestruidas, 1);
    EXPECT_EQ(nieta.m_nDestruidas, 1);
}

TEST(CWnd, ItsDevicesShareTheFormat) {
    Ventana v;
    ASSERT_TRUE(v.Abre(16, 16));
    CClientDC uno(&v);
    {
        CClientDC otro(&v);
        ASSERT_NE(otro.GetSafeHdc(), uno.GetSafeHdc());
        ASSERT_TRUE(PonFormato(otro.GetSafeHdc(), kEnVentana)) << UltimoFalloGL();
    }
    EXPECT_GT(GetPixelFormat(uno.GetSafeHdc()), 0);
    EXPECT_GT(uno.GetDeviceCaps(HORZRES), 0);
    EXPECT_GT(uno.GetDeviceCaps(VERTRES), 0);
    EXPECT_EQ(uno.GetDeviceCaps(BITSPIXEL), 32);
    EXPECT_EQ(uno.GetCurrentBitmap(), nullptr);
    CBitmap b;
    ASSERT_TRUE(b.CreateBitmap(2, 2, 24));
    EXPECT_EQ(uno.SelectObject(&b), nullptr) << "a window has no bitmap";
}

TEST(CWnd, CanBeDrawnOnAndPresented) {
    Ventana v;
    ASSERT_TRUE(v.Abre(16, 16));
    ASSERT_TRUE(v.Espera([&] { return v.m_nPintadas > 0; }));
    CClientDC dc(&v);
    ASSERT_TRUE(PonFormato(dc.GetSafeHdc(), kEnVentana));
    HGLRC hrc = wglCreateContext(dc.GetSafeHdc());
    ASSERT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), hrc)) << UltimoFalloGL();
    glClearDepth(0.5);
    glEnable(GL_DEPTH_TEST);
    Limpia(12, 34, 56);
    ASSERT_TRUE(SwapBuffers(dc.GetSafeHdc()));
    GLubyte p[4] = {};
    glReadBuffer(GL_FRONT);
    glReadPixels(8, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    EXPECT_EQ(p[0], 12);
    EXPECT_EQ(p[2], 56);
    GLfloat z = 0;
    glReadPixels(8, 8, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &z);
    EXPECT_NEAR(z, 0.5f, 1e-6f) << "picking reads the depth after presenting";
    EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    EXPECT_TRUE(SwapBuffers(dc.GetSafeHdc())) << "presenting needs no current context on a window";
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST(CWnd, TheContextFollowsAWindowThatGrows) {
    Ventana v;
    ASSERT_TRUE(v.Abre(16, 16));
    CClientDC dc(&v);
    ASSERT_TRUE(PonFormato(dc.GetSafeHdc(), kEnVentana));
    HGLRC hrc = wglCreateContext(dc.GetSafeHdc());
    ASSERT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), hrc));
    Limpia(1, 2, 3);
    ASSERT_TRUE(wglMakeCurrent(nullptr, nullptr));
    ASSERT_TRUE(v.MoveWindow(0, 0, 100, 90));
    ASSERT_TRUE(v.Espera([&] { return v.m_Tamanos.size() == 2; }));
    ASSERT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), hrc));
    glViewport(0, 0, 100, 90);
    Limpia(200, 100, 50);
    GLubyte p[4] = {};
    glReadPixels(99, 89, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    EXPECT_EQ(p[0], 200);
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST(CWnd, DestroyingItReleasesACurrentContext) {
    Ventana v;
    ASSERT_TRUE(v.Abre(16, 16));
    CClientDC dc(&v);
    ASSERT_TRUE(PonFormato(dc.GetSafeHdc(), kEnVentana));
    HGLRC hrc = wglCreateContext(dc.GetSafeHdc());
    ASSERT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), hrc));
    EXPECT_TRUE(v.DestroyWindow());
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    CClientDC nuevo(&v);
    EXPECT_EQ(nuevo.GetSafeHdc(), nullptr);
    // The device context that is left keeps what it draws on: drawing there shows nothing and breaks nothing.
    EXPECT_TRUE(wglMakeCurrent(dc.GetSafeHdc(), hrc));
    Limpia(1, 2, 3);
    SwapBuffers(dc.GetSafeHdc());
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST(CWnd, DestroyingItWhileAnotherThreadDrawsBreaksNothing) {
    auto v = std::make_unique<Ventana>();
    ASSERT_TRUE(v->Abre(16, 16));
    auto dc = std::make_unique<CClientDC>(v.get());
    const HDC hdc = dc->GetSafeHdc();
    ASSERT_TRUE(PonFormato(hdc, kEnVentana));
    HGLRC hrc = wglCreateContext(hdc);
    std::thread hilo([&] {
        ASSERT_TRUE(wglMakeCurrent(hdc, hrc));
        std::thread([&] {  // the window and its device context go meanwhile
            v->DestroyWindow();
            dc.reset();
            v.reset();
        })
            .join();
        for (int i = 0; i < 5; ++i) {
            Limpia(i, 2, 3);
            glFinish();
        }
        EXPECT_FALSE(SwapBuffers(hdc));
        EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    });
    hilo.join();
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST(CWnd, WhatIsNoWindowIsntWrapped) {
    CWnd v;
    EXPECT_FALSE(v.Attach(0));
    EXPECT_FALSE(v.Attach(0x7fffffff));
    EXPECT_FALSE(UltimoFalloGL().empty());
    EXPECT_EQ(v.GetSafeHwnd(), nullptr);
    v.Detach();
    EXPECT_FALSE(v.ShowWindow(SW_SHOW));
    EXPECT_FALSE(v.SetWindowText(L"x"));
    EXPECT_EQ(v.VentanaNativa(), 0u);
}

}  // namespace
