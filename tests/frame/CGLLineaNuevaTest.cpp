// The sketch line: what its list holds, how its points come and go, and that drawing in XOR twice leaves no trace.

#include "EscenaPrueba.h"
#include "support/RegistroGL.h"

using testing::IsEmpty;
using Punto = EscenaPrueba::Punto;
using Linea = Vertiz::CLinea<double>;

namespace {

class ConBoceto : public ConEscena {
  protected:
    void SetUp() override {
        ConEscena::SetUp();
        m_Escena.SetDigiTab(&m_Tabla);
        m_Escena.SetEjes(0);
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    /// A sketch of points in GL space, compiled.
    void Traza(std::initializer_list<Punto> puntos) {
        for (const Punto& p : puntos)
            m_Escena.m_LineaNueva << p;
        Compila();
    }
    void Compila() {
        EXPECT_EQ(m_Escena.OnIniciarLineaNueva(0), 1);
        wglMakeCurrent(nullptr, nullptr);
    }
    void Estilo(float grosor, int estilo, unsigned char gris = 10) {
        m_Tabla.Inserta(
            Vertiz::CElementoDigiTab(Vertiz::CTipoEntidad::Linea, L"nuevo", gris, gris, gris, grosor, estilo, L"", 1),
            true);
    }
    /// What the sketch's list holds.
    LlamadasGL Contenido() {
        RegistroGL registro;
        Compila();
        return registro.Lista(m_Escena.m_nListaLineaNueva);
    }
    Punto Terreno(const Punto& gl) const {
        Punto t;
        m_Escena.GLATerreno(t, gl.x, gl.y, gl.z, 1.0);
        return t;
    }

    Vertiz::CDigiTab m_Tabla;
};

}  // namespace

TEST_F(ConBoceto, OnePointDrawsNothing) {
    Traza({Punto(0, 0, 0)});
    EXPECT_EQ(m_Escena.m_nListaLineaNueva, 0U);
}

TEST_F(ConBoceto, WithoutATableNothingIsDrawnButThePointsAreKept) {
    m_Escena.SetDigiTab(nullptr);
    Traza({Punto(0, 0, 0), Punto(0.1, 0, 0)});
    EXPECT_EQ(m_Escena.m_nListaLineaNueva, 0U);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 2U);
}

TEST_F(ConBoceto, TheListHoldsStyleAndLineInTheStatedOrder) {
    m_Escena.SetTipoLineaNueva(1);
    Traza({Punto(0, 0, 0), Punto(0.25, 0, 0), Punto(0.25, 0.5, 0)});
    EXPECT_LLAMADAS(Contenido(), {"glDrawBuffer(GL_FRONT)", "glDisable(GL_DEPTH_TEST)", "glDepthFunc(GL_LEQUAL)",
                                  "glDisable(GL_LIGHTING)", "glDisable(GL_LIGHT0)", "glDisable(GL_TEXTURE_2D)",
                                  "glEnable(GL_COLOR_LOGIC_OP)", "glLogicOp(GL_XOR)", "glDisable(GL_LINE_STIPPLE)",
                                  "glLineWidth(3)", "glColor3f(1, 1, 0)", "glBegin(GL_LINE_STRIP)",
                                  "glVertex3f(0, 0, 0)", "glVertex3f(0.25, 0, 0)", "glVertex3f(0.25, 0.5, 0)",
                                  "glEnd()", "glDrawBuffer(GL_BACK)", "glDepthFunc(GL_LESS)", "glLogicOp(GL_COPY)"});
}

TEST_F(ConBoceto, DepthTestingThatWasOnIsPutBack) {
    Traza({Punto(0, 0, 0), Punto(0.25, 0, 0)});
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_GREATER);
    const LlamadasGL llamadas = Solo(Contenido(), {"glEnable", "glDepthFunc"});
    EXPECT_LLAMADAS(llamadas, {"glDepthFunc(GL_LEQUAL)", "glEnable(GL_COLOR_LOGIC_OP)", "glEnable(GL_DEPTH_TEST)",
                               "glDepthFunc(GL_GREATER)"});
}

TEST_F(ConBoceto, TheTableGivesStyleAndColourButNeverLessThan3Wide) {
    Traza({Punto(0, 0, 0), Punto(0.25, 0, 0)});
    const LlamadasGL deFabrica = Contenido();
    EXPECT_THAT(deFabrica, testing::Contains("glLineWidth(3)"));
    EXPECT_THAT(deFabrica, testing::Contains("glDisable(GL_LINE_STIPPLE)"));
    const char* tramas[] = {"0x00FF", "0x0101", "0x1C47", "0x3927"};
    for (int estilo = 1; estilo <= 4; ++estilo) {
        m_Tabla.clear();
        Estilo(1.0F, estilo);
        const LlamadasGL llamadas = Contenido();
        EXPECT_THAT(llamadas, testing::Contains("glLineWidth(3)"));
        EXPECT_THAT(llamadas, testing::Contains("glEnable(GL_LINE_STIPPLE)"));
        EXPECT_THAT(llamadas, testing::Contains("glLineStipple(1, " + std::string(tramas[estilo - 1]) + ")"));
    }
    m_Tabla.clear();
    Estilo(5.0F, 9);
    EXPECT_THAT(Contenido(), testing::Contains("glLineWidth(5)"));
    EXPECT_THAT(Solo(Contenido(), {"glLineStipple"}), IsEmpty());
}

TEST_F(ConBoceto, AColourTooNearTheBackgroundMovesAway) {
    Estilo(1.0F, 0, 51);
    m_Escena.SetColorFondo(0x333333);
    RegistroGL registro;
    Traza({Punto(0, 0, 0), Punto(0.25, 0, 0)});
    const auto colores = registro.Numeros("glColor3f");
    ASSERT_EQ(colores.size(), 1U);
    EXPECT_FLOAT_EQ(static_cast<float>(colores[0][0]), (51 + 128) / 255.0F);
}

TEST_F(ConBoceto, Kinds3And4HoldTheHeightOrThePlaceOfTheFirstPoint) {
    Traza({Punto(0.1, 0.2, 0.3), Punto(0.2, 0.4, -0.1)});
    const auto vertices = [this](unsigned tipo) {
        m_Escena.SetTipoLineaNueva(tipo);
        RegistroGL registro;
        Compila();
        return registro.Numeros("glVertex3f");
    };
    const auto cota = vertices(3);
    ASSERT_EQ(cota.size(), 2U);
    EXPECT_NEAR(cota[1][0], 0.2, 1e-6);
    EXPECT_NEAR(cota[1][1], 0.2, 1e-6);
    EXPECT_NEAR(cota[1][2], -0.1, 1e-6);
    const auto planta = vertices(4);
    EXPECT_NEAR(planta[1][0], 0.1, 1e-6);
    EXPECT_NEAR(planta[1][1], 0.4, 1e-6);
    EXPECT_NEAR(planta[1][2], 0.3, 1e-6);
}

TEST_F(ConBoceto, DrawingTheSegmentTwiceLeavesThePictureAsItWas) {
    Traza({Punto(-0.4, 0, 0), Punto(0.4, 0, 0)});
    const auto centro = [this] {
        unsigned char bgr[3] = {};
        EXPECT_TRUE(m_Escena.MakeCurrent(nullptr));
        glReadBuffer(GL_FRONT);
        glReadPixels(32, 24, 1, 1, GL_BGR, GL_UNSIGNED_BYTE, bgr);
        wglMakeCurrent(nullptr, nullptr);
        return bgr[0] << 16 | bgr[1] << 8 | bgr[2];
    };
    m_Escena.SetTipoLineaNueva(1);
    const int antes = centro();
    EXPECT_EQ(m_Escena.RenderLineaNueva(1), 1);
    EXPECT_NE(centro(), antes);
    EXPECT_EQ(m_Escena.RenderLineaNueva(1), 1);
    EXPECT_EQ(centro(), antes);
    EXPECT_EQ(m_Escena.RenderLineaNueva(0), 1);
    EXPECT_NE(centro(), antes) << "the list draws the same";
}

TEST_F(ConBoceto, DirectDrawingIsOneSegmentAtOnce) {
    Traza({Punto(0, 0, 0), Punto(0.25, 0, 0), Punto(0.25, 0.5, 0)});
    const GLuint lista = m_Escena.m_nListaLineaNueva;
    RegistroGL registro;
    EXPECT_EQ(m_Escena.RenderLineaNueva(1), 1);
    EXPECT_EQ(registro.Numeros("glVertex3f"), (std::vector<std::vector<double>>{{0.25, 0, 0}, {0.25, 0.5, 0}}));
    EXPECT_EQ(registro.Cuenta("glFlush"), 1U);
    EXPECT_EQ(registro.Cuenta("glNewList"), 0U);
    EXPECT_EQ(m_Escena.m_nListaLineaNueva, lista);
}

TEST_F(ConBoceto, AnErrorInsideTheListGives0AndTheNextDrawingRecovers) {
    {
        const FallaGL falla("glLineWidth", 1);
        m_Escena.m_LineaNueva << Punto(0, 0, 0) << Punto(0.25, 0, 0);
        EXPECT_EQ(m_Escena.OnIniciarLineaNueva(0), 0);
        EXPECT_TRUE(falla.Ocurrida());
    }
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC) << "a failure leaves the context current";
    EXPECT_EQ(m_Escena.OnIniciarLineaNueva(0), 1);
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(m_Escena.Render(), 1);
}

// ---- Points --------------------------------------------------------------------------------------------------------

TEST_F(ConBoceto, InsertingFromTerrainReplacesTheLastPointAndRepeatsIt) {
    m_Escena.InsertaPuntoLineaNueva(Punto(0, 0, 0));
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 1U);
    m_Escena.InsertaPuntoLineaNueva(Punto(100, 0, 0));
    ASSERT_EQ(m_Escena.NPuntosLineaNueva(), 2U);
    EXPECT_EQ(m_Escena.m_LineaNueva.Punto(0), m_Escena.m_LineaNueva.Punto(1));
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 0U) << "kept only where an image takes part";
    EXPECT_NEAR(Terreno(m_Escena.m_LineaNueva.end()).x, 100, 1e-6);
    EXPECT_NE(m_Escena.m_nListaLineaNueva, 0U);
}

TEST_F(ConBoceto, TheSeedIsTakenOffOnlyWhereAPhotographTakesPart) {
    m_Escena.m_Semilla = Vertiz::CDataSemilla(0, 1000, 2000, 3000);
    m_Escena.InsertaPuntoLineaNueva(Punto(50, 60, 70));
    EXPECT_NEAR(Terreno(m_Escena.m_LineaNueva.end()).x, 50, 1e-6);
    m_Escena.m_nTipoImagenFondo = 2;
    m_Escena.InsertaPuntoLineaNueva(Punto(1050, 2060, 3070));
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.end(), Punto(50, 60, 70));
    m_Escena.m_nTipoImagenFondo = 3;
    m_Escena.InsertaPuntoLineaNueva(Punto(50, 60, 70));
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.end(), Punto(50, 60, 70));
}

TEST_F(ConBoceto, TheLastPointFollowsTheCursor) {
    EXPECT_FALSE(m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(10, 10), 1));
    EXPECT_FALSE(m_Escena.ModificaUltimoPuntoLineaNueva(Punto(10, 10, 0), 1));
    m_Escena.InsertaPuntoLineaNueva(CPoint(25, 33), false);
    m_Escena.InsertaPuntoLineaNueva(CPoint(25, 33), false);
    const Punto primero = m_Escena.m_LineaNueva.Punto(0);
    EXPECT_TRUE(m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(40, 20), 1));
    EXPECT_EQ(m_Escena.m_LineaNueva.Punto(0), primero);
    EXPECT_NE(m_Escena.m_LineaNueva.Punto(1), primero);
    EXPECT_TRUE(m_Escena.ModificaUltimoPuntoLineaNueva(Punto(70, 80, 0), 0));
    EXPECT_NEAR(Terreno(m_Escena.m_LineaNueva.Punto(1)).y, 80, 1e-6);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 2U);
}

TEST_F(ConBoceto, TheSketchCanBeClosedRepeatedAndEmptied) {
    EXPECT_FALSE(m_Escena.DuplicaUltimoPuntoLineaNueva());
    Traza({Punto(0, 0, 0), Punto(0.1, 0, 0), Punto(0.1, 0.1, 0)});
    EXPECT_FALSE(m_Escena.EsCerradaLineaNueva());
    m_Escena.CierraLineaNueva();
    EXPECT_TRUE(m_Escena.EsCerradaLineaNueva());
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 4U);
    EXPECT_TRUE(m_Escena.DuplicaUltimoPuntoLineaNueva());
    EXPECT_EQ(m_Escena.m_LineaNueva.Punto(4), m_Escena.m_LineaNueva.Punto(3));
    m_Escena.VaciaLineaNueva();
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 0U);
    EXPECT_EQ(m_Escena.m_nListaLineaNueva, 0U);
}

TEST_F(ConBoceto, UndoTakesTheLastPointOrTheOneBeforeTheCursors) {
    Traza({Punto(0, 0, 0), Punto(0.1, 0, 0), Punto(0.2, 0, 0)});
    m_Escena.BorraUltimoPuntoLineaNueva(1);
    ASSERT_EQ(m_Escena.NPuntosLineaNueva(), 2U);
    EXPECT_EQ(m_Escena.m_LineaNueva.Punto(0), Punto(0, 0, 0));
    EXPECT_EQ(m_Escena.m_LineaNueva.Punto(1), Punto(0.2, 0, 0));
    m_Escena.BorraUltimoPuntoLineaNueva(0);
    ASSERT_EQ(m_Escena.NPuntosLineaNueva(), 1U);
    EXPECT_EQ(m_Escena.m_LineaNueva.Punto(0), Punto(0, 0, 0));
}

TEST_F(ConBoceto, UndoWithOnePointStillUndoesTheSelection) {
    Traza({Punto(0, 0, 0)});
    m_Escena.m_Seleccion = {Vertiz::CPosicionEntidad(1), Vertiz::CPosicionEntidad(2)};
    m_Escena.m_PuntosSeleccion = {Punto(1, 1, 1), Punto(2, 2, 2)};
    m_Escena.GetPasos().clear();
    m_Escena.BorraUltimoPuntoLineaNueva(0);
    EXPECT_EQ(m_Escena.m_Seleccion.size(), 1U);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 1U);
    EXPECT_THAT(m_Escena.GetPasos(), testing::ElementsAre("OnIniciarSeleccion"));
}

TEST_F(ConBoceto, UndoReachesTheChildThatThePointCameFrom) {
    auto* referencia = new EscenaPrueba;
    auto* vinculo = new EscenaPrueba;
    m_Escena.ReferenciaNuevo(referencia);
    m_Escena.VinculoNuevo(vinculo);
    m_Escena.m_Seleccion = {Vertiz::CPosicionEntidad(9)};
    m_Escena.m_PuntosSeleccion = {Punto(0, 0, 0, 1), Punto(0, 0, 0, 2), Punto(0, 0, 0, 7)};
    for (EscenaPrueba* hijo : {referencia, vinculo}) {
        hijo->m_Seleccion = {Vertiz::CPosicionEntidad(1)};
        hijo->m_PuntosSeleccion = {Punto()};
    }
    m_Escena.BorraUltimoPuntoLineaNueva(1);  // of a child that isn't there
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.size(), 2U);
    m_Escena.BorraUltimoPuntoLineaNueva(1);
    EXPECT_TRUE(vinculo->m_Seleccion.empty());
    EXPECT_FALSE(referencia->m_Seleccion.empty());
    m_Escena.BorraUltimoPuntoLineaNueva(1);
    EXPECT_TRUE(referencia->m_Seleccion.empty());
    EXPECT_EQ(m_Escena.m_Seleccion.size(), 1U) << "none of these was this scene's";
}

// ---- Reading -------------------------------------------------------------------------------------------------------

TEST_F(ConBoceto, TheSketchComesBackInTerrainUnitsIntegersAndPixels) {
    m_Escena.m_Semilla = Vertiz::CDataSemilla(2);
    m_Escena.InsertaPuntoLineaNueva(Punto(25.5, 75.25, 0));
    Linea real;
    m_Escena.DameLineaNuevaTerreno(real);
    ASSERT_EQ(real.NPuntos(), 1U);
    EXPECT_NEAR(real.Punto(0).x, 25.5, 1e-9);
    EXPECT_NEAR(real.Punto(0).y, 75.25, 1e-9);
    Vertiz::CLinea<int> entera;
    m_Escena.DameLineaNuevaTerreno(entera);
    EXPECT_EQ(entera.Punto(0), Vertiz::CCoor3D<int>(2550, 7525, 0));
    Vertiz::CLinea<int> pantalla;
    m_Escena.DameLineaNuevaPantalla(pantalla);
    ASSERT_EQ(pantalla.NPuntos(), 1U);
    CPoint pt;
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(25.5, 75.25, 0), nullptr, false), 1);
    EXPECT_NEAR(pantalla.Punto(0).x, pt.x, 1);
    EXPECT_NEAR(pantalla.Punto(0).y, pt.y, 1);
}

TEST_F(ConBoceto, WithAnImageTheIntegersComeFromTheTerrainPoints) {
    m_Escena.m_Semilla = Vertiz::CDataSemilla(1);
    m_Escena.m_LineaNueva << Punto(0, 0, 0);
    m_Escena.m_LineaNuevaTerreno << Punto(12.3, 45.6, 7.0);
    m_Escena.SetTipo(3);
    Vertiz::CLinea<int> entera;
    m_Escena.DameLineaNuevaTerreno(entera);
    EXPECT_EQ(entera.Punto(0), Vertiz::CCoor3D<int>(123, 456, 70));
}
