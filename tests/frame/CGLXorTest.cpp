// Feedback in XOR on pictures in memory, where the visible buffer may be the one that frames are drawn in: it shows,
// drawing it a second time restores every pixel, and the next frame is not touched by it.

#include "EscenaPrueba.h"

#include <functional>

namespace {

constexpr int kAncho = 64, kAlto = 48;

class EnMemoria : public ConEscena {
  protected:
    void SetUp() override {
        ConEscena::SetUp();
        m_Escena.SetEjes(0);
        m_Escena.SetDigiTab(&m_Tabla);
        m_Escena.SetTipoLineaNueva(1);
        ASSERT_EQ(m_Escena.SetBkColor(), 1);
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    /// What a capture of the picture has, by rows from below.
    std::vector<char> Mira() {
        std::vector<char> pixeles(std::size_t{kAncho} * kAlto * 3);
        EXPECT_EQ(m_Escena.CapturaImagen(CSize(kAncho, kAlto), pixeles.data()), 0);
        return pixeles;
    }
    void SeDibujaYSeBorra(const std::function<void()>& dibuja) {
        const std::vector<char> antes = Mira();
        dibuja();
        const std::vector<char> con = Mira();
        int distintos = 0;
        for (std::size_t i = 0; i < antes.size(); ++i) {
            if (con[i] == antes[i]) continue;
            ++distintos;
            ASSERT_NE(i % 3, 0U) << "yellow has no blue";
            ASSERT_EQ(con[i], static_cast<char>(~antes[i])) << "byte " << i;
        }
        EXPECT_GT(distintos, 20);
        dibuja();
        EXPECT_EQ(Mira(), antes);
        dibuja();
        ASSERT_EQ(m_Escena.Render(), 1);
        EXPECT_EQ(Mira(), antes) << "a new frame has none of it";
    }

    Vertiz::CDigiTab m_Tabla;
};

}  // namespace

TEST_F(EnMemoria, ARubberBandShowsAndASecondOneWipesIt) {
    SeDibujaYSeBorra([this] { m_Escena.DrawZoomRect(10, 40, 12, 50); });
}

TEST_F(EnMemoria, ACircleShowsAndASecondOneWipesIt) {
    SeDibujaYSeBorra([this] { m_Escena.DrawSelCircle(30, 24, 42, 24); });
}

TEST_F(EnMemoria, ASegmentOfTheSketchShowsAndASecondOneWipesIt) {
    m_Escena.m_LineaNueva << EscenaPrueba::Punto(-0.3, 0, 0.1) << EscenaPrueba::Punto(0.3, 0, -0.1);
    SeDibujaYSeBorra([this] { EXPECT_EQ(m_Escena.RenderLineaNueva(1), 1); });
}

TEST_F(EnMemoria, TheSketchLiesOnTheFrameAndNotOnTheBitmapThatWasPresented) {
    const std::vector<char> limpia = Mira();
    const unsigned presentado = m_Tela.Pixel(32, 24);
    m_Escena.m_LineaNueva << EscenaPrueba::Punto(-0.3, 0, 0.0) << EscenaPrueba::Punto(0.3, 0, 0.0);
    ASSERT_EQ(m_Escena.OnIniciarLineaNueva(0), 1);
    wglMakeCurrent(nullptr, nullptr);
    ASSERT_EQ(m_Escena.Render(), 1);
    const std::vector<char> con = Mira();
    EXPECT_NE(con, limpia);
    EXPECT_EQ(m_Tela.Pixel(32, 24), presentado);
    ASSERT_EQ(m_Escena.MakeCurrent(nullptr), 1);
    GdiFlush();
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(m_Tela.Pixel(32, 24), presentado ^ 0xFFFF00U) << "GdiFlush brings it there";
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(Mira(), con) << "each frame has it once";
}
