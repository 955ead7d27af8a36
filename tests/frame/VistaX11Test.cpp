// The view on an X11 display: what the user sees in the window's own pixels, read through X and not through OpenGL.
// Each run has a server of its own.

#include "VistaPrueba.h"
#include "platform/Backend.h"
#include "platform/DiagnosticoGL.h"
#include "support/ServidorX.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

constexpr int kAncho = 120, kAlto = 90;

[[maybe_unused]] const auto* entorno = testing::AddGlobalTestEnvironment(new ConServidor);

// The pixels that the user sees, by rows from the top, as 0xRRGGBB.
using Vista = std::vector<unsigned>;

class VistaX11 : public testing::Test {
  protected:
    void SetUp() override {
        m_pDisplay = XOpenDisplay(nullptr);
        ASSERT_NE(m_pDisplay, nullptr);
        m_pVista = std::make_unique<VistaPrueba>(m_pEscena = new EscenaPrueba);
        ASSERT_TRUE(m_pVista->Abre(kAncho, kAlto, WS_VISIBLE)) << UltimoFalloGL();
        m_pEscena->SetEjes(0);
        m_pEscena->SetDigiTab(&m_Tabla);
        ASSERT_EQ(m_pEscena->SetBkColor(), 1);
        for (int i = 0; i < 50 && m_pEscena->GetPasos().back() != "OnRender"; ++i)
            CWnd::DespachaEventos(20);
        ASSERT_EQ(m_pEscena->GetPasos().back(), "OnRender") << "the display never asked for the picture";
        ASSERT_EQ(m_pEscena->Render(), 1);
    }
    void TearDown() override {
        EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current";
        m_pVista.reset();
        if (m_pDisplay) XCloseDisplay(m_pDisplay);
    }

    Vista Mira() const {
        XSync(m_pDisplay, False);
        XImage* imagen = XGetImage(m_pDisplay, m_pVista->VentanaNativa(), 0, 0, unsigned(kAncho), unsigned(kAlto),
                                   AllPlanes, ZPixmap);
        if (!imagen) return {};
        Vista v;
        for (int y = 0; y < kAlto; ++y)
            for (int x = 0; x < kAncho; ++x)
                v.push_back(static_cast<unsigned>(XGetPixel(imagen, x, y) & 0xFFFFFF));
        XDestroyImage(imagen);
        return v;
    }
    static unsigned En(const Vista& v, int x, int y) { return v.at(static_cast<std::size_t>(y * kAncho + x)); }

    /// Draws twice: the first time shows, in yellow and XOR, the second restores the picture.
    void SeDibujaYSeBorra(const std::function<void()>& dibuja) {
        const Vista antes = Mira();
        ASSERT_EQ(antes.size(), static_cast<std::size_t>(kAncho * kAlto));
        dibuja();
        const Vista con = Mira();
        int distintos = 0;
        for (std::size_t i = 0; i < antes.size(); ++i) {
            if (con[i] == antes[i]) continue;
            ++distintos;
            ASSERT_EQ(con[i], antes[i] ^ 0xFFFF00U) << "pixel " << i;
        }
        EXPECT_GT(distintos, 20);
        dibuja();
        EXPECT_EQ(Mira(), antes);
    }

    Display* m_pDisplay = nullptr;
    Vertiz::CDigiTab m_Tabla;
    std::unique_ptr<VistaPrueba> m_pVista;
    EscenaPrueba* m_pEscena = nullptr;
};

}  // namespace

TEST_F(VistaX11, TheFrameShows) {
    const Vista v = Mira();
    ASSERT_FALSE(v.empty());
    EXPECT_EQ(En(v, 2, 2), 0xE0F1FEU);
    EXPECT_GT(std::ranges::count(v, 0x00FF00U), 1000) << "the triangle";
}

TEST_F(VistaX11, ARubberBandShowsAndASecondOneWipesIt) {
    SeDibujaYSeBorra([this] { m_pEscena->DrawZoomRect(20, 70, 30, 100); });
}

TEST_F(VistaX11, ARubberBandLiesWhereItWasAskedFor) {
    const Vista antes = Mira();
    m_pEscena->DrawZoomRect(20, 70, 30, 100);
    const Vista con = Mira();
    int x0 = kAncho, y0 = kAlto, x1 = -1, y1 = -1;
    for (int y = 0; y < kAlto; ++y)
        for (int x = 0; x < kAncho; ++x) {
            if (En(con, x, y) == En(antes, x, y)) continue;
            x0 = std::min(x0, x);
            y0 = std::min(y0, y);
            x1 = std::max(x1, x);
            y1 = std::max(y1, y);
        }
    // The pen is three pixels wide.
    EXPECT_NEAR(x0, 30, 2);
    EXPECT_NEAR(x1, 100, 2);
    EXPECT_NEAR(y0, 20, 2);
    EXPECT_NEAR(y1, 70, 2);
}

TEST_F(VistaX11, ACircleShowsAndASecondOneWipesIt) {
    SeDibujaYSeBorra([this] { m_pEscena->DrawSelCircle(60, 45, 80, 45); });
}

TEST_F(VistaX11, ASegmentOfTheSketchShowsAndASecondOneWipesIt) {
    m_pEscena->SetTipoLineaNueva(1);
    m_pEscena->m_LineaNueva << EscenaPrueba::Punto(-0.3, 0, 0.1) << EscenaPrueba::Punto(0.3, 0, -0.1);
    SeDibujaYSeBorra([this] { EXPECT_EQ(m_pEscena->RenderLineaNueva(1), 1); });
}

TEST_F(VistaX11, TheWholeSketchLiesOnEachNewFrame) {
    const Vista limpia = Mira();
    m_pEscena->SetTipoLineaNueva(1);
    m_pEscena->m_LineaNueva << EscenaPrueba::Punto(-0.3, 0, 0.1) << EscenaPrueba::Punto(0.3, 0, -0.1)
                            << EscenaPrueba::Punto(0.2, 0, -0.3);
    ASSERT_EQ(m_pEscena->OnIniciarLineaNueva(0), 1);
    wglMakeCurrent(nullptr, nullptr);
    ASSERT_EQ(m_pEscena->Render(), 1);
    const Vista con = Mira();
    EXPECT_NE(con, limpia);
    ASSERT_EQ(m_pEscena->Render(), 1);
    EXPECT_EQ(Mira(), con) << "each frame has it once";
    m_pEscena->RenderLineaNueva(0);
    EXPECT_EQ(Mira(), limpia) << "drawn a second time it is wiped";
}

TEST_F(VistaX11, ACaptureIsWhatTheUserSees) {
    m_pEscena->DrawZoomRect(20, 70, 30, 100);
    std::vector<char> buffer(kAncho * kAlto * 3);
    ASSERT_EQ(m_pEscena->CapturaImagen(CSize(kAncho, kAlto), buffer.data()), 0);
    const Vista v = Mira();
    for (int y = 0; y < kAlto; ++y)
        for (int x = 0; x < kAncho; ++x) {
            const auto* p = reinterpret_cast<unsigned char*>(buffer.data()) + ((kAlto - 1 - y) * kAncho + x) * 3;
            ASSERT_EQ(static_cast<unsigned>(p[2] << 16 | p[1] << 8 | p[0]), En(v, x, y)) << x << ", " << y;
        }
    ASSERT_EQ(m_pEscena->MakeCurrent(nullptr), 1);
    GLint bufer = 0;
    glGetIntegerv(GL_READ_BUFFER, &bufer);
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(bufer, GL_BACK) << "the host reads what it read before";
}

TEST_F(VistaX11, PrintingLeavesTheWindowAsItIs) {
    m_pEscena->DrawZoomRect(20, 70, 30, 100);
    const Vista antes = Mira();
    Tela hoja(300, 400);
    CPrintInfo info;
    m_pVista->OnPrint(hoja.DC(), &info);
    EXPECT_EQ(hoja.Pixel(150, 200) == 0, false) << "the page is printed";
    EXPECT_EQ(hoja.Pixel(150, 10), 0U);
    EXPECT_EQ(Mira(), antes);
    m_pEscena->DrawZoomRect(20, 70, 30, 100);
    ASSERT_EQ(m_pEscena->Render(), 1);
}

TEST_F(VistaX11, AWindowMayShrinkToOnePixelAndGrowAgain) {
    m_pVista->MoveWindow(0, 0, 1, 1);
    for (int i = 0; i < 50 && m_pEscena->m_nAncho != 1; ++i)
        CWnd::DespachaEventos(20);
    EXPECT_EQ(m_pEscena->m_nAncho, 1);
    EXPECT_EQ(m_pEscena->Render(), 1);
    m_pVista->MoveWindow(0, 0, kAncho, kAlto);
    for (int i = 0; i < 50 && m_pEscena->m_nAncho != kAncho; ++i)
        CWnd::DespachaEventos(20);
    m_pEscena->OnZoomExtension();
    ASSERT_EQ(m_pEscena->SetBkColor(), 1);
    ASSERT_EQ(m_pEscena->Render(), 1);
    EXPECT_GT(std::ranges::count(Mira(), 0x00FF00U), 1000);
}

TEST_F(VistaX11, AWindowClosedByTheUserLeavesTheSceneSafe) {
    m_pVista->SendMessage(WM_CLOSE);
    EXPECT_EQ(m_pVista->GetSafeHwnd(), nullptr);
    m_pEscena->Render();
    m_pEscena->DrawZoomRect(20, 70, 30, 100);
    m_pEscena->Iniciar();
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(VistaX11, AWindowThatVanishesLeavesTheSceneWithoutAContext) {
    XDestroyWindow(m_pDisplay, m_pVista->VentanaNativa());
    XSync(m_pDisplay, False);
    EXPECT_EQ(m_pEscena->Render(), 0);
    EXPECT_EQ(m_pEscena->Resize(20, 20), 0);
    std::vector<char> buffer(kAncho * kAlto * 3);
    EXPECT_EQ(m_pEscena->CapturaImagen(CSize(kAncho, kAlto), buffer.data()), 3);
    Tela hoja(300, 400);
    CPrintInfo info;
    m_pVista->OnPrint(hoja.DC(), &info);
    EXPECT_EQ(hoja.Pixel(150, 200), 0U);
    for (int i = 0; i < 50 && m_pVista->GetSafeHwnd(); ++i)
        CWnd::DespachaEventos(20);
    EXPECT_EQ(m_pVista->GetSafeHwnd(), nullptr);
}

// In a process of its own, with a server of its own, which it kills.
class VistaX11DeathTest : public VistaX11 {
  protected:
    void SetUp() override {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        VistaX11::SetUp();
    }
};

TEST_F(VistaX11DeathTest, ADisplayThatGoesAwayLeavesTheSceneSafe) {
    const auto prueba = [this] {
        XCloseDisplay(m_pDisplay);  // the test's own connection would end the program
        ConServidor::s_pServidor->Mata();
        EXPECT_EQ(m_pEscena->Render(), 0);
        EXPECT_EQ(m_pEscena->Resize(20, 20), 0);
        m_pEscena->DrawZoomRect(20, 70, 30, 100);
        for (int i = 0; i < 10; ++i)
            CWnd::DespachaEventos(20);
        EXPECT_EQ(m_pVista->GetSafeHwnd(), nullptr);
        EXPECT_EQ(m_pEscena->Render(), 0);
        AcabaProceso();
    };
    EXPECT_EXIT(prueba(), testing::ExitedWithCode(0), "");
}

TEST_F(VistaX11, APickOnAWindowThatHasShrunkStaysWithinItsPicture) {
    for (int n = 0; n < 60; ++n) {
        XResizeWindow(m_pDisplay, m_pVista->VentanaNativa(), 1 + unsigned(n * 37 % 90), 1 + unsigned(n * 53 % 90));
        XSync(m_pDisplay, False);
        EscenaPrueba::Punto c;
        for (const CPoint& pt : {CPoint(0, 0), CPoint(60, 31), CPoint(119, 89)})
            EXPECT_EQ(m_pEscena->PantallaATerreno(pt, c, true, false, false), 1);
        if (n % 3 == 0) {
            EXPECT_EQ(m_pEscena->Render(), 1);
        }
    }
}
