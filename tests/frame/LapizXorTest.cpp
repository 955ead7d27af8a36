// Feedback drawn in XOR on the visible buffer: the rubber band, the circle and the sketch. What is drawn, what state
// OpenGL is left in, after errors too; and that it shows, that drawing it twice restores every pixel, and that the next
// frame has none of it.

#include "EscenaVista.h"
#include "model/CDigiTab.h"
#include "support/RegistroGL.h"

#include <functional>

using Punto = EscenaPrueba::Punto;

namespace {

/// What the pen changes and has to put back.
struct EstadoLapiz {
    GLboolean bProfundidad = GL_FALSE;
    GLint nFuncion = 0, nOperacion = 0, nBuffer = 0;
    bool operator==(const EstadoLapiz&) const = default;
};

/// A box of 100 x 100 x 50, seen straight down in a window of 200 x 150: 150 pixels to a GL unit.
class ConLapiz : public testing::Test {
  protected:
    void SetUp() override {
        m_Escena.SetPlanoFondo(4);
        m_Escena.SetDigiTab(&m_Tabla);
        ASSERT_TRUE(m_Escena.Monta(m_Tela, 200, 150));
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    EstadoLapiz Estado() {
        const Prestado prestado(m_Escena);
        EstadoLapiz e;
        e.bProfundidad = glIsEnabled(GL_DEPTH_TEST);
        glGetIntegerv(GL_DEPTH_FUNC, &e.nFuncion);
        glGetIntegerv(GL_LOGIC_OP_MODE, &e.nOperacion);
        glGetIntegerv(GL_DRAW_BUFFER, &e.nBuffer);
        return e;
    }
    /// A state that isn't what OpenGL starts with, or what it starts with.
    void Pon(bool bRaro) {
        const Prestado prestado(m_Escena);
        bRaro ? glEnable(GL_DEPTH_TEST) : glDisable(GL_DEPTH_TEST);
        glDepthFunc(bRaro ? GL_GREATER : GL_LESS);
        glLogicOp(bRaro ? GL_NAND : GL_COPY);
        glDisable(GL_COLOR_LOGIC_OP);
    }
    bool HayXor() {
        const Prestado prestado(m_Escena);
        return glIsEnabled(GL_COLOR_LOGIC_OP) == GL_TRUE;
    }
    /// The visible buffer.
    std::vector<GLubyte> Delante() {
        const Prestado prestado(m_Escena);
        std::vector<GLubyte> pixeles(200 * 150 * 3);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadBuffer(GL_FRONT);
        glReadPixels(0, 0, 200, 150, GL_RGB, GL_UNSIGNED_BYTE, pixeles.data());
        glReadBuffer(GL_BACK);
        return pixeles;
    }
    void Boceto() {
        m_Escena.m_LineaNueva << Punto(-0.4, 0, 0) << Punto(0.4, 0, 0.1);
        EXPECT_EQ(m_Escena.OnIniciarLineaNueva(0), 1);
        wglMakeCurrent(nullptr, nullptr);
    }

    Vertiz::CDigiTab m_Tabla;
    Tela m_Tela{200, 150};
    EscenaVista m_Escena;
};

/// On a picture in memory, where the visible buffer may be the one that frames are drawn in.
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
        std::vector<char> pixeles(64 * 48 * 3);
        EXPECT_EQ(m_Escena.CapturaImagen(CSize(64, 48), pixeles.data()), 0);
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

TEST_F(ConLapiz, TheRubberBandIsDrawnInXorOnTheFrontBuffer) {
    const RegistroGL registro;
    m_Escena.DrawZoomRect(10, 60, 20, 90);
    EXPECT_LLAMADAS(Sin(registro.Ejecutadas(), {"glVertex3d", "gluUnProject"}),
                    {"glGetIntegerv(GL_LIST_INDEX)",
                     "glLineWidth(3)",
                     "glPushAttrib(GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT)",
                     "glDrawBuffer(GL_FRONT)",
                     "glDisable(GL_DEPTH_TEST)",
                     "glDepthFunc(GL_LEQUAL)",
                     "glGetIntegerv(GL_VIEWPORT)",
                     "glGetDoublev(GL_MODELVIEW_MATRIX)",
                     "glGetDoublev(GL_PROJECTION_MATRIX)",
                     "glDisable(GL_LIGHTING)",
                     "glDisable(GL_LIGHT0)",
                     "glDisable(GL_TEXTURE_2D)",
                     "glEnable(GL_COLOR_LOGIC_OP)",
                     "glLogicOp(GL_XOR)",
                     "glColor3f(1, 1, 0)",
                     "glBegin(GL_LINE_LOOP)",
                     "glEnd()",
                     "glPopAttrib()",
                     "glDrawBuffer(GL_BACK)",
                     "glEnable(GL_COLOR_LOGIC_OP)"});
    const double z = 1.0F - 0.0001F;
    EXPECT_EQ(registro.Numeros("gluUnProject"),
              (std::vector<std::vector<double>>{{20, 140, z}, {90, 140, z}, {90, 90, z}, {20, 90, z}}));
    EXPECT_EQ(registro.Numeros("glVertex3d").size(), 4U);
}

TEST_F(ConLapiz, DrawingTheRubberBandTwiceWipesIt) {
    const auto antes = Delante();
    m_Escena.DrawZoomRect(40, 100, 60, 140);
    const auto con = Delante();
    m_Escena.DrawZoomRect(40, 100, 60, 140);
    EXPECT_NE(con, antes);
    EXPECT_EQ(Delante(), antes);
}

TEST_F(ConLapiz, TheSelectionCircleHasTheDistanceOfTheTwoPixelsAsItsRadius) {
    const RegistroGL registro;
    m_Escena.DrawSelCircle(100, 75, 130, 35);
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glPushMatrix", "glRotated", "gluDisk", "glPopMatrix",
                                                 "gluQuadricDrawStyle", "gluQuadricNormals", "glDrawBuffer"}),
                    {"glDrawBuffer(GL_FRONT)", "glPushMatrix()", "glRotated(90, 1, 0, 0)",
                     "gluQuadricDrawStyle(GLU_LINE)", "gluQuadricNormals(GLU_NONE)",
                     Solo(registro.Ejecutadas(), {"gluDisk"}).at(0), "glPopMatrix()", "glDrawBuffer(GL_BACK)"});
    const auto disco = registro.Numeros("gluDisk").at(0);
    EXPECT_NEAR(disco[0], 50.0 / 150, 1e-6);
    EXPECT_EQ(disco[1], disco[0]);
    EXPECT_EQ(disco[2], 20);
    EXPECT_EQ(disco[3], 1);
    const auto centro = registro.Numeros("glTranslated").at(0);
    EXPECT_NEAR(centro[0], 0, 1e-6);
    EXPECT_NEAR(centro[2], 0, 1e-6);
}

TEST_F(ConLapiz, TheSelectionCircleIsTheSameWhateverMatrixAZoomLeft) {
    const auto circulo = [&](GLenum modo) {
        {
            const Prestado prestado(m_Escena);
            glMatrixMode(modo);
        }
        const auto antes = Delante();
        m_Escena.DrawSelCircle(100, 75, 130, 35);
        const auto con = Delante();
        EXPECT_NE(con, antes);
        m_Escena.DrawSelCircle(100, 75, 130, 35);
        EXPECT_EQ(Delante(), antes);
        return con;
    };
    EXPECT_EQ(circulo(GL_PROJECTION), circulo(GL_MODELVIEW));
}

TEST_F(ConLapiz, EverythingDrawnInXorLeavesTheStateAsItWasButForTheSwitchItself) {
    Boceto();
    for (const bool bRaro : {false, true}) {
        for (const auto& dibuja :
             {+[](CGL& e) { e.DrawZoomRect(40, 100, 60, 140); }, +[](CGL& e) { e.DrawSelCircle(100, 75, 130, 35); },
              +[](CGL& e) { EXPECT_EQ(e.RenderLineaNueva(1), 1); },
              +[](CGL& e) { EXPECT_EQ(e.RenderLineaNueva(0), 1); }}) {
            Pon(bRaro);
            const EstadoLapiz antes = Estado();
            ASSERT_EQ(antes.nBuffer, GL_BACK);
            dibuja(m_Escena);
            EXPECT_EQ(Estado(), antes);
            EXPECT_TRUE(HayXor());
        }
    }
}

TEST_F(ConLapiz, AListIsIndifferentToTheStateInWhichItWasCompiled) {
    for (const bool bAlCompilar : {false, true}) {
        Pon(bAlCompilar);
        m_Escena.m_LineaNueva.Clear();
        Boceto();
        Pon(!bAlCompilar);
        const EstadoLapiz antes = Estado();
        EXPECT_EQ(m_Escena.RenderLineaNueva(0), 1);
        EXPECT_EQ(Estado(), antes);
    }
}

TEST_F(ConLapiz, AFrameTurnsXorOff) {
    m_Escena.DrawZoomRect(40, 100, 60, 140);
    ASSERT_TRUE(HayXor());
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_FALSE(HayXor());
}

TEST_F(ConLapiz, AnErrorPutsTheStateBackAndLeavesTheContextCurrent) {
    Boceto();
    struct Fallo {
        const char* nombre;
        int n;
        void (*dibuja)(CGL&);
    };
    const auto banda = +[](CGL& e) { e.DrawZoomRect(40, 100, 60, 140); };
    const auto circulo = +[](CGL& e) { e.DrawSelCircle(100, 75, 130, 35); };
    const auto boceto = +[](CGL& e) { EXPECT_EQ(e.OnIniciarLineaNueva(1), 0); };
    for (const Fallo& fallo : {Fallo{"glGetIntegerv", 2, banda},
                               {"glGetDoublev", 1, banda},
                               {"glGetDoublev", 2, banda},
                               {"glDisable", 2, banda},
                               {"glDisable", 3, banda},
                               {"glGetDoublev", 1, circulo},
                               {"glDisable", 3, circulo},
                               {"glDisable", 2, boceto},
                               {"glDisable", 3, boceto},
                               {"glColor3f", 1, boceto},
                               {"glLineWidth", 1, boceto}}) {
        Pon(true);
        const EstadoLapiz antes = Estado();
        const auto pintado = Delante();
        {
            const FallaGL falla(fallo.nombre, fallo.n);
            fallo.dibuja(m_Escena);
            EXPECT_TRUE(falla.Ocurrida()) << fallo.nombre << fallo.n;
        }
        EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC) << fallo.nombre << fallo.n;
        EXPECT_EQ(Estado(), antes) << fallo.nombre << fallo.n;
        EXPECT_EQ(Delante(), pintado) << "nothing is drawn";
    }
    EXPECT_EQ(m_Escena.Render(), 1);
}

TEST_F(ConLapiz, AListThatFailedLeavesTheStateOfTheNextFramesAlone) {
    for (const auto& [nombre, n] : {std::pair("glDisable", 2), {"glColor3f", 1}, {"glLineWidth", 1}}) {
        m_Escena.m_LineaNueva.Clear();
        m_Escena.m_LineaNueva << Punto(-0.4, 0, 0) << Punto(0.4, 0, 0.1);
        {
            const FallaGL falla(nombre, n);
            EXPECT_EQ(m_Escena.OnIniciarLineaNueva(0), 0);
            EXPECT_TRUE(falla.Ocurrida());
        }
        EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
        Pon(true);
        const EstadoLapiz antes = Estado();
        EXPECT_EQ(m_Escena.RenderLineaNueva(0), 1) << nombre;
        EXPECT_EQ(Estado(), antes) << nombre;
    }
}

TEST_F(ConLapiz, WithoutAContextNothingIsDrawnAndNothingBreaks) {
    EscenaVista escena;
    escena.SetDigiTab(&m_Tabla);
    escena.m_LineaNueva << Punto() << Punto(0.1, 0, 0);
    escena.DrawZoomRect(0, 10, 0, 10);
    escena.DrawSelCircle(0, 10, 0, 10);
    EXPECT_EQ(escena.OnIniciarLineaNueva(0), 0);
    EXPECT_EQ(escena.OnIniciarLineaNueva(1), 0);
    EXPECT_EQ(escena.RenderLineaNueva(1), 1);
    EXPECT_EQ(escena.RenderLineaNueva(0), 0);
}

// ---- What is seen ----

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
