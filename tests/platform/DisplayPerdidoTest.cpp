// A display that goes away while its windows are in use. Each test runs in a process of its own, whose server it kills.

#include "ManoX11.h"
#include "Memoria.h"
#include "platform/CView.h"
#include "platform/CopiasDIB.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Errores.h"
#include "support/ServidorX.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

class Vista : public CView {
  public:
    bool Abre() { return Create(nullptr, L"", WS_VISIBLE, CRect(0, 0, 60, 40)); }
    int m_nDestruidas = 0;

  protected:
    void OnDraw(CDC*) override {}
    void OnDestroy() override { ++m_nDestruidas; }
};

template <class Prueba>
[[noreturn]] void EnSuProceso(Prueba prueba) {
    Servidor servidor;
    if (servidor.m_Nombre.empty()) _exit(0);
    setenv("DISPLAY", servidor.m_Nombre.c_str(), 1);
    prueba(servidor);
    AcabaProceso();
}

class DisplayPerdidoDeathTest : public testing::Test {
  protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(DisplayPerdidoDeathTest, ClosesItsWindowsAndSaysSo) {
    const auto prueba = [](Servidor& servidor) {
        Vista una, otra;
        ASSERT_TRUE(una.Abre() && otra.Abre()) << UltimoFalloGL();
        CWnd::DespachaEventos(100);
        servidor.Mata();
        // A host's loop, which waits for ever and ends with the window.
        while (una.GetSafeHwnd())
            CWnd::DespachaEventos(-1);
        EXPECT_NE(UltimoFalloGL().find("gone away"), std::string::npos);
        EXPECT_EQ(una.m_nDestruidas, 1);
        EXPECT_EQ(otra.m_nDestruidas, 1);
        EXPECT_EQ(otra.GetSafeHwnd(), nullptr);
        EXPECT_FALSE(una.Abre()) << "no new one opens";
        EXPECT_NE(UltimoFalloGL().find("gone away"), std::string::npos);
        EXPECT_EQ(CWnd::DespachaEventos(0), 0);
    };
    EXPECT_EXIT(EnSuProceso(prueba), testing::ExitedWithCode(0), "");
}

TEST_F(DisplayPerdidoDeathTest, EverythingAnswersThatItCant) {
    const auto prueba = [](Servidor& servidor) {
        Vista v;
        ASSERT_TRUE(v.Abre()) << UltimoFalloGL();
        CWnd::DespachaEventos(100);
        CClientDC dc(&v);
        ASSERT_TRUE(PonFormato(dc, PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER));
        HGLRC hrc = wglCreateContext(dc);
        ASSERT_TRUE(wglMakeCurrent(dc, hrc)) << UltimoFalloGL();
        Limpia(1, 2, 3);
        ASSERT_TRUE(SwapBuffers(dc));
        servidor.Mata();
        // Nothing is drawn meanwhile: not every driver survives drawing on a window that is no more.
        EXPECT_FALSE(SwapBuffers(dc));
        const BYTE pixel[4] = {1, 2, 3, 0};
        BITMAPINFO info{};
        info.bmiHeader = {40, 1, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        EXPECT_EQ(StretchDIBits(dc, 0, 0, 5, 5, 0, 0, 1, 1, pixel, &info, DIB_RGB_COLORS, SRCCOPY), 0);
        CRect r;
        v.GetClientRect(&r);
        EXPECT_TRUE(r.IsRectEmpty());
        EXPECT_TRUE(v.MoveWindow(1, 1, 10, 10));
        v.SetWindowText(L"nobody reads it");
        v.Invalidate();
        CWnd::DespachaEventos(10);
        EXPECT_EQ(v.GetSafeHwnd(), nullptr);
        EXPECT_EQ(wglGetCurrentContext(), nullptr) << "closing a window releases what draws on it";
        EXPECT_FALSE(wglMakeCurrent(dc, hrc));
        EXPECT_TRUE(wglDeleteContext(hrc));
        CDC memoria;
        CBitmap bitmap;
        ASSERT_TRUE(memoria.CreateCompatibleDC(nullptr) && bitmap.CreateBitmap(8, 8, 24));
        memoria.SelectObject(&bitmap);
        EXPECT_FALSE(PonFormato(memoria)) << "off-screen drawing needs the display too";
        EXPECT_NE(UltimoFalloGL().find("gone away"), std::string::npos);
    };
    EXPECT_EXIT(EnSuProceso(prueba), testing::ExitedWithCode(0), "");
}

TEST_F(DisplayPerdidoDeathTest, NoOtherThreadWaitsForIt) {
    const auto prueba = [](Servidor& servidor) {
        Vista v;
        ASSERT_TRUE(v.Abre()) << UltimoFalloGL();
        std::atomic<int> preguntas = 0;
        std::vector<std::thread> hilos;
        for (int i = 0; i < 4; ++i)
            hilos.emplace_back([&] {
                CClientDC dc(&v);
                for (CRect r(0, 0, 1, 1); !r.IsRectEmpty(); ++preguntas)
                    dc.GetClipBox(&r);  // asks the server for the window's size
            });
        while (preguntas < 50)
            CWnd::DespachaEventos(1);
        servidor.Mata();
        while (v.GetSafeHwnd())
            CWnd::DespachaEventos(-1);
        for (std::thread& hilo : hilos)
            hilo.join();
    };
    EXPECT_EXIT(EnSuProceso(prueba), testing::ExitedWithCode(0), "");
}

}  // namespace
