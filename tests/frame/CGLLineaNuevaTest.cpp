// The sketch line: what its list holds, how its points come and go, and that drawing in XOR twice leaves no trace.

#include "EscenaVista.h"
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
    /// Puts the scene on a photograph taken from above.
    void SobreFoto() {
        m_Escena.m_nTipoImagenFondo = 1;
        m_Escena.m_DataTransformacion = FotoCenital(Punto(50, 50, 1000));
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
    EXPECT_LLAMADAS(Contenido(), {"glPushAttrib(GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT)",
                                  "glDrawBuffer(GL_FRONT)",
                                  "glDisable(GL_DEPTH_TEST)",
                                  "glDepthFunc(GL_LEQUAL)",
                                  "glDisable(GL_LIGHTING)",
                                  "glDisable(GL_LIGHT0)",
                                  "glDisable(GL_TEXTURE_2D)",
                                  "glEnable(GL_COLOR_LOGIC_OP)",
                                  "glLogicOp(GL_XOR)",
                                  "glDisable(GL_LINE_STIPPLE)",
                                  "glLineWidth(3)",
                                  "glColor3f(1, 1, 0)",
                                  "glBegin(GL_LINE_STRIP)",
                                  "glVertex3f(0, 0, 0)",
                                  "glVertex3f(0.25, 0, 0)",
                                  "glVertex3f(0.25, 0.5, 0)",
                                  "glEnd()",
                                  "glPopAttrib()",
                                  "glDrawBuffer(GL_BACK)",
                                  "glEnable(GL_COLOR_LOGIC_OP)"});
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

TEST_F(ConBoceto, ASegmentOfKind3Or4DrawnAtOnceHoldsTheOriginRatherThanTheFirstPoint) {
    Traza({Punto(0.1, 0.2, 0.3), Punto(0.2, 0.4, -0.1), Punto(0.3, 0.1, 0.2)});
    const auto vertices = [this](unsigned tipo) {
        m_Escena.SetTipoLineaNueva(tipo);
        RegistroGL registro;
        EXPECT_EQ(m_Escena.RenderLineaNueva(1), 1);
        return registro.Numeros("glVertex3f");
    };
    double x = 0, y = 0, z = 0;
    m_Escena.TerrenoAGL(Punto(0, 0, 0), x, y, z, 1.0, false);
    const auto cota = vertices(3), planta = vertices(4);
    ASSERT_EQ(cota.size(), 2U);
    ASSERT_EQ(planta.size(), 2U);
    for (const std::size_t i : {0U, 1U}) {
        EXPECT_NEAR(cota[i][1], y, 1e-6);
        EXPECT_NEAR(planta[i][0], x, 1e-6);
        EXPECT_NEAR(planta[i][2], z, 1e-6);
    }
    EXPECT_NEAR(cota[1][0], 0.3, 1e-6);
    EXPECT_NEAR(planta[1][1], 0.1, 1e-6);
}

TEST_F(ConBoceto, AFrameShowsTheSketchAfterItIsPresented) {
    m_Escena.SetTipoLineaNueva(1);
    Traza({Punto(-0.4, 0, 0), Punto(0.4, 0, 0)});
    RegistroGL registro;
    ASSERT_EQ(m_Escena.Render(), 1);
    const LlamadasGL listas = Solo(registro.Ejecutadas(), {"glCallList"});
    ASSERT_FALSE(listas.empty());
    EXPECT_EQ(listas.back(), "glCallList(" + std::to_string(m_Escena.m_nListaLineaNueva) + ")");
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

TEST_F(ConBoceto, ATransformationOfAPhotographOrASphereTakesTheSeedOffToo) {
    m_Escena.m_Semilla = Vertiz::CDataSemilla(0, 1000, 2000, 3000);
    m_Escena.m_DataTransformacion = FotoCenital(Punto(50, 50, 1000));
    m_Escena.InsertaPuntoLineaNueva(Punto(1050, 2060, 3000));
    EXPECT_NEAR(Terreno(m_Escena.m_LineaNueva.end()).x, 50, 1e-6);
    EXPECT_NEAR(Terreno(m_Escena.m_LineaNueva.end()).y, 60, 1e-6);
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

TEST_F(ConBoceto, AMoveWipesTheOldSegmentCompilesAndShowsTheNewOne) {
    Traza({Punto(0, 0, 0), Punto(0.25, 0, 0)});
    const auto pasos = [this](auto accion) {
        RegistroGL registro;
        accion();
        return EnLineas(Solo(registro.Todas(), {"glFlush", "glNewList", "glEndList", "glVertex3f"}));
    };
    const std::string pixel = pasos([this] { m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(40, 20), 1); });
    const std::string lista = "glNewList(" + std::to_string(m_Escena.m_nListaLineaNueva) + ", GL_COMPILE)\n";
    const std::string vieja = "glVertex3f(0, 0, 0)\nglVertex3f(0.25, 0, 0)\nglFlush()\n";
    EXPECT_EQ(pixel.rfind(vieja + lista + "glVertex3f(0, 0, 0)\n", 0), 0U) << pixel;
    EXPECT_EQ(pixel.find("glFlush", vieja.size()), pixel.rfind("glFlush")) << "two in all";
    EXPECT_GT(pixel.rfind("glFlush"), pixel.find("glEndList"));
    const std::string terreno = pasos([this] { m_Escena.ModificaUltimoPuntoLineaNueva(Punto(50, 50, 0), 1); });
    EXPECT_EQ(terreno.rfind("glVertex3f(0, 0, 0)\n", 0), 0U);
    EXPECT_NE(terreno.find("glFlush"), terreno.rfind("glFlush"));
    const std::string sinGoma = pasos([this] { m_Escena.ModificaUltimoPuntoLineaNueva(Punto(20, 50, 0), 0); });
    EXPECT_EQ(sinGoma.find("glFlush"), std::string::npos);
    EXPECT_EQ(pasos([this] { m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(9, 9), 0); }).find("glFlush"),
              std::string::npos);
    const std::string inserta = pasos([this] { m_Escena.InsertaPuntoLineaNueva(Punto(50, 50, 0)); });
    EXPECT_EQ(inserta.rfind("glNewList", 0), 0U) << "nothing is wiped first";
    EXPECT_NE(inserta.find("glFlush"), std::string::npos);
}

TEST_F(ConBoceto, WhatFollowsTheCursorLeavesNoTraceOnTheScreen) {
    m_Escena.SetTipoLineaNueva(1);
    const auto delante = [this] {
        EXPECT_TRUE(m_Escena.MakeCurrent(nullptr));
        std::vector<unsigned char> pixeles(std::size_t{64} * 48 * 3);
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadBuffer(GL_FRONT);
        glReadPixels(0, 0, 64, 48, GL_RGB, GL_UNSIGNED_BYTE, pixeles.data());
        glReadBuffer(GL_BACK);
        wglMakeCurrent(nullptr, nullptr);
        return pixeles;
    };
    m_Escena.m_LineaNueva << Punto(0, 0, 0) << Punto(0, 0, 0);
    const auto vacia = delante();
    m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(50, 12), 1);
    const auto uno = delante();
    EXPECT_NE(uno, vacia);
    m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(12, 40), 1);
    m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(50, 12), 1);
    EXPECT_EQ(delante(), uno);
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(delante(), uno) << "the list puts it on the new frame";
    m_Escena.BorraUltimoPuntoLineaNueva(0);
    EXPECT_EQ(delante(), vacia);
}

TEST_F(ConBoceto, WithAnImageThePointsAreKeptInTerrainUnitsToo) {
    m_Escena.SetTipo(3);
    m_Escena.InsertaPuntoLineaNueva(CPoint(25, 33), false);
    ASSERT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 1U);
    EXPECT_NEAR(m_Escena.m_LineaNuevaTerreno.end().x, Terreno(m_Escena.m_LineaNueva.end()).x, 1e-6);
    EXPECT_TRUE(m_Escena.DuplicaUltimoPuntoLineaNueva());
    ASSERT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 2U);
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.Punto(1), m_Escena.m_LineaNuevaTerreno.Punto(0));
    EXPECT_TRUE(m_Escena.ModificaUltimoPuntoLineaNueva(Punto(70, 80, 5), 0));
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.Punto(1), Punto(70, 80, 5));
    EXPECT_NE(m_Escena.m_LineaNuevaTerreno.Punto(0), Punto(70, 80, 5));
    m_Escena.m_LineaNueva << Punto(0.1, 0.1, 0);
    m_Escena.m_LineaNuevaTerreno << Punto(1, 2, 3);
    m_Escena.CierraLineaNueva();
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 4U);
    m_Escena.Deselecciona(0, 0, 1);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 0U);
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 0U);
}

TEST_F(ConBoceto, OnAPhotographTheTerrainPointFollowsTheCursorAndUndoKeepsIt) {
    SobreFoto();
    for (const Punto& p : {Punto(0, 0, 0), Punto(0.1, 0, 0), Punto(0.2, 0, 0)})
        m_Escena.m_LineaNueva << p;
    for (const Punto& p : {Punto(1, 1, 1), Punto(2, 2, 2), Punto(3, 3, 3)})
        m_Escena.m_LineaNuevaTerreno << p;
    EXPECT_TRUE(m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(25, 33), 1));
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.Punto(1), Punto(2, 2, 2));
    Punto hallado;
    m_Escena.BuscaCotaProxima(CPoint(25, 33), hallado, true);
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.Punto(2), hallado);
    EXPECT_NE(hallado, Punto(3, 3, 3));
    m_Escena.BorraUltimoPuntoLineaNueva(1);
    ASSERT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 2U);
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.Punto(0), Punto(1, 1, 1));
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.Punto(1), hallado);
    m_Escena.BorraUltimoPuntoLineaNueva(0);
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 1U);
}

TEST_F(ConBoceto, OnAPhotographAnUndoWithoutTerrainPointsAddsNone) {
    SobreFoto();
    m_Escena.m_LineaNueva << Punto(0, 0, 0) << Punto(0.1, 0, 0) << Punto(0.2, 0, 0);
    m_Escena.BorraUltimoPuntoLineaNueva(1);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 2U);
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.NPuntos(), 0U);
}

TEST_F(ConBoceto, APointThatIsNotFoundStartsFromTheOrigin) {
    SobreFoto();
    m_Escena.m_LineaNueva << Punto(0.3, 0.2, 0.1);
    m_Escena.m_LineaNuevaTerreno << Punto(1, 1, 1);
    {
        const FallaGL falla("glGetDoublev", 1);
        m_Escena.InsertaPuntoLineaNueva(CPoint(25, 33), false);
        EXPECT_TRUE(falla.Ocurrida());
    }
    EXPECT_EQ(m_Escena.m_LineaNuevaTerreno.end(), Punto(0, 0, 0));
    const Punto antes = m_Escena.m_LineaNueva.end();
    {
        const FallaGL falla("glGetDoublev", 1);
        m_Escena.ModificaUltimoPuntoLineaNueva(CPoint(40, 20), 0);
    }
    EXPECT_EQ(m_Escena.m_LineaNueva.end(), antes) << "it stays where it was";
    wglMakeCurrent(nullptr, nullptr);
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

TEST_F(ConBoceto, UndoOfAPointOfThisSceneWithoutSelectionForgetsThePointAlone) {
    m_Escena.m_PuntosSeleccion = {Punto(1, 1, 1), Punto(2, 2, 2)};
    m_Escena.BorraUltimoPuntoLineaNueva(0);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_TRUE(m_Escena.m_Seleccion.empty());
    m_Escena.m_PuntosSeleccion = {Punto(1, 1, 1, -3)};
    m_Escena.BorraUltimoPuntoLineaNueva(0);
    EXPECT_TRUE(m_Escena.m_PuntosSeleccion.empty());
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

TEST_F(ConBoceto, PointsThatWereNotKeptInTerrainUnitsComeFromGLSpace) {
    m_Escena.m_Semilla = Vertiz::CDataSemilla(1);
    m_Escena.m_LineaNueva << Punto(0, 0, 0) << Punto(0.25, 0, 0);
    m_Escena.m_LineaNuevaTerreno << Punto(12.3, 45.6, 7.0);
    m_Escena.SetTipo(3);
    Vertiz::CLinea<int> entera;
    m_Escena.DameLineaNuevaTerreno(entera);
    ASSERT_EQ(entera.NPuntos(), 2U);
    EXPECT_EQ(entera.Punto(0), Vertiz::CCoor3D<int>(123, 456, 70));
    EXPECT_EQ(entera.Punto(1), Vertiz::CCoor3D<int>(750, 500, 0));

    Linea real;
    m_Escena.DameLineaNuevaTerreno(real);
    ASSERT_EQ(real.NPuntos(), 2U);
    EXPECT_NEAR(real.Punto(0).x, 50, 1e-9) << "kept points count on photographs alone";
    SobreFoto();
    m_Escena.DameLineaNuevaTerreno(real);
    ASSERT_EQ(real.NPuntos(), 4U) << "appended";
    EXPECT_EQ(real.Punto(2), Punto(12.3, 45.6, 7.0));
    EXPECT_EQ(real.Punto(3), Terreno(Punto(0.25, 0, 0)));
}

TEST_F(ConBoceto, PixelsThatCannotBeReadLeaveTheContextCurrent) {
    m_Escena.m_LineaNueva << Punto(0, 0, 0);
    Vertiz::CLinea<int> pantalla;
    {
        const FallaGL falla("glGetDoublev", 2);
        m_Escena.DameLineaNuevaPantalla(pantalla);
        EXPECT_TRUE(falla.Ocurrida());
    }
    EXPECT_EQ(pantalla.NPuntos(), 0U);
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
    m_Escena.DameLineaNuevaPantalla(pantalla);
    EXPECT_EQ(pantalla.Punto(0), Vertiz::CCoor3D<int>(32, 24, 1)) << "y downwards; the depth rounded";
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}
