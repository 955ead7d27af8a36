// The order in which Iniciar compiles and Render draws, and the layers that compile alone.

#include "EscenaPrueba.h"
#include "support/RegistroGL.h"

using testing::ElementsAre;
using testing::IsEmpty;
using Punto = EscenaPrueba::Punto;
using Pasos = EscenaPrueba::Pasos;

namespace {

/// A parent with a reference and a link that note in one list.
class ConFamilia : public testing::Test {
  protected:
    void SetUp() override {
        m_Padre.ReferenciaNuevo(m_pReferencia);
        m_Padre.VinculoNuevo(m_pVinculo);
        ASSERT_TRUE(m_Padre.Monta(m_Tela));
        m_Pasos.clear();
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    Tela m_Tela;
    Pasos m_Pasos;
    EscenaPrueba m_Padre{L"p", &m_Pasos};
    EscenaPrueba* m_pReferencia = new EscenaPrueba(L"r", &m_Pasos);
    EscenaPrueba* m_pVinculo = new EscenaPrueba(L"v", &m_Pasos);
};

std::string Llama(GLuint lista) {
    return "glCallList(" + std::to_string(lista) + ")";
}

std::size_t Indice(const LlamadasGL& llamadas, const std::string& llamada) {
    return static_cast<std::size_t>(std::find(llamadas.begin(), llamadas.end(), llamada) - llamadas.begin());
}

}  // namespace

TEST_F(ConFamilia, IniciarCompilesTheModelTheReferencesTheLinksThenTheOverlays) {
    m_Padre.m_Marcas.emplace_back(L"m", Punto(1, 1, 1), L"a", 1.0);
    RegistroGL registro;
    ASSERT_EQ(m_Padre.Iniciar(), 1);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciar", "r.OnIniciar", "v.OnIniciar"));
    EXPECT_THAT(registro.Listas(),
                ElementsAre(m_Padre.m_nLista, m_pReferencia->m_nLista, m_pVinculo->m_nLista, m_Padre.m_nListaEjes,
                            m_Padre.m_nListaCamara, m_Padre.m_nListaCamaraPanoramica, m_Padre.m_nListaPuntosMarcasFoto,
                            m_Padre.m_nListaPuntosMarcasTerreno, m_Padre.m_nListaMarcas));
}

TEST_F(ConFamilia, ChildrenInheritTheSettingsBeforeTheyCompile) {
    m_Padre.SetQuad(0);
    m_Padre.SetExageracionVertical(2.5F);
    ASSERT_EQ(m_Padre.Iniciar(), 1);
    for (const EscenaPrueba* hijo : {m_pReferencia, m_pVinculo}) {
        EXPECT_EQ(hijo->GetQuad(), 0U);
        EXPECT_EQ(hijo->GetExageracionVertical(), 2.5F);
    }
}

TEST_F(ConEscena, IniciarCompilesTheSketchToo) {
    Vertiz::CDigiTab tabla;
    m_Escena.SetDigiTab(&tabla);
    m_Escena.m_LineaNueva << Punto(0, 0, 0) << Punto(0.5, 0, 0);
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_NE(m_Escena.m_nListaLineaNueva, 0U);
}

TEST_F(ConFamilia, AChildThatFailsEndsIniciarBeforeTheNextOne) {
    m_pReferencia->m_sFalla = "OnIniciar";
    EXPECT_EQ(m_Padre.Iniciar(), 0);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciar", "r.OnIniciar"));
}

TEST_F(ConFamilia, ReferencesCanBeCompiledByType) {
    m_pReferencia->SetTipo(4);
    EXPECT_EQ(m_Padre.OnIniciarReferencia(2), 1);
    EXPECT_THAT(m_Pasos, IsEmpty());
    EXPECT_EQ(m_Padre.OnIniciarReferencia(4), 1);
    EXPECT_THAT(m_Pasos, ElementsAre("r.OnIniciar"));
    EXPECT_EQ(m_Padre.OnIniciarReferencia(-1), 1);
    EXPECT_EQ(m_Pasos.size(), 2U);
}

TEST_F(ConFamilia, RenderDrawsInTheStatedOrder) {
    m_Padre.SetGrosorPuntos(3);
    m_Padre.m_Marcas.emplace_back(L"m", Punto(1, 1, 1), L"a", 1.0);
    m_Padre.m_Data.m_bMarcasFoto = 1;
    m_Padre.m_Data.m_bMarcasTerreno = 1;
    m_Padre.m_PuntosCamara << Punto(10, 10, 0, 0) << Punto(20, 20, 0, 1);
    m_Padre.m_AngulosCamara << Punto(11, 12, 13) << Punto(0, 0, 0);
    ASSERT_EQ(m_Padre.Iniciar(), 1);
    ASSERT_TRUE(m_Padre.MakeCurrent(nullptr));
    m_Padre.m_nListaLineaNueva = glGenLists(1);
    glNewList(m_Padre.m_nListaLineaNueva, GL_COMPILE);
    glEndList();
    wglMakeCurrent(nullptr, nullptr);

    RegistroGL registro;
    ASSERT_EQ(m_Padre.Render(), 1);
    EXPECT_LLAMADAS(
        Solo(registro.Ejecutadas(), {"glCallList", "glFlush"}),
        {Llama(m_Padre.m_nLista), Llama(m_Padre.m_nListaCamara), Llama(m_Padre.m_nListaCamaraPanoramica),
         Llama(m_pReferencia->m_nLista), "glFlush()", Llama(m_pVinculo->m_nLista), "glFlush()",
         Llama(m_Padre.m_nListaEjes), Llama(m_Padre.m_nListaPuntosMarcasFoto),
         Llama(m_Padre.m_nListaPuntosMarcasTerreno), Llama(m_Padre.m_nListaMarcas), Llama(m_Padre.m_nListaLineaNueva)});
    const LlamadasGL todas = registro.Ejecutadas();
    EXPECT_LT(Indice(todas, "glDisable(GL_COLOR_LOGIC_OP)"), Indice(todas, Llama(m_Padre.m_nLista)));
    EXPECT_LT(Indice(todas, Llama(m_Padre.m_nListaMarcas)), Indice(todas, "glPointSize(3)"));
    EXPECT_LT(Indice(todas, "glPointSize(3)"), Indice(todas, Llama(m_Padre.m_nListaLineaNueva)));
}

TEST_F(ConEscena, MarksAreDrawnUnlitUntexturedAndFilled) {
    m_Escena.m_Marcas.emplace_back(L"m", Punto(1, 1, 1), L"a", 1.0);
    m_Escena.SetEjes(0);
    RegistroGL registro;
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glDisable", "glPolygonMode", "glPointSize"}),
                    {"glDisable(GL_COLOR_LOGIC_OP)", "glDisable(GL_LIGHTING)", "glDisable(GL_LIGHT0)",
                     "glDisable(GL_TEXTURE_2D)", "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)", "glPointSize(1)"});
}

TEST_F(ConEscena, AnErrorInWhatMarksNeedEndsThePassBeforeThem) {
    m_Escena.m_Marcas.emplace_back(L"m", Punto(1, 1, 1), L"a", 1.0);
    m_Escena.SetEjes(0);
    for (const int n : {2, 3, 4}) {  // the first one ends what was drawn in XOR
        const FallaGL falla("glDisable", n);
        EXPECT_EQ(m_Escena.Render(), 0) << n;
        EXPECT_TRUE(falla.Ocurrida()) << n;
    }
    const FallaGL falla("glPolygonMode", 1);
    EXPECT_EQ(m_Escena.Render(), 0);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConFamilia, CameraStationsStandTurnedByTheirAngles) {
    m_Padre.m_PuntosCamara << Punto(10, 10, 0, 0) << Punto(20, 20, 0, 1) << Punto(30, 30, 0, 0);
    m_Padre.m_AngulosCamara << Punto(11, 12, 13);
    m_Padre.SetEjes(0);
    ASSERT_EQ(m_Padre.Iniciar(), 1);
    RegistroGL registro;
    ASSERT_EQ(m_Padre.Render(), 1);
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glRotated", "glPushMatrix", "glPopMatrix"}),
                    {"glPushMatrix()", "glRotated(90, 1, 0, 0)", "glRotated(11, 1, 0, 0)", "glRotated(-12, 0, 1, 0)",
                     "glRotated(13, 0, 0, 1)", "glPopMatrix()",  // conic
                     "glPushMatrix()", "glPopMatrix()",          // panoramic: not turned
                     "glPushMatrix()", "glRotated(90, 1, 0, 0)", "glRotated(0, 1, 0, 0)", "glRotated(-0, 0, 1, 0)",
                     "glRotated(0, 0, 0, 1)", "glPopMatrix()"});  // a station without angles
    const auto lugares = registro.Numeros("glTranslated");
    ASSERT_EQ(lugares.size(), 3U);
    for (int i = 0; i < 3; ++i) {
        const Punto& p = m_Padre.m_PuntosCamaraGL.Punto(i);
        EXPECT_EQ(lugares[static_cast<std::size_t>(i)], (std::vector<double>{p.x, p.y, p.z}));
    }
    m_Padre.SetPuntosCamara(0);
    registro.Olvida();
    ASSERT_EQ(m_Padre.Render(), 1);
    EXPECT_EQ(registro.Cuenta("glTranslated"), 0U);
}

TEST_F(ConFamilia, WithReferenciaOffLinksAreStillDrawn) {
    m_Padre.SetReferencia(0);
    ASSERT_EQ(m_Padre.Render(), 1);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnRender", "v.OnRender"));
}

TEST_F(ConFamilia, AChildThatFailsToDrawEndsThePass) {
    m_pReferencia->m_sFalla = "OnRender";
    EXPECT_EQ(m_Padre.Render(), 0);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnRender", "r.OnRender"));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConFamilia, ChildrenInheritTheSettingsBeforeEachDrawing) {
    m_Padre.SetQuad(0);
    m_Padre.m_Camara.PositionCamera(Punto(0, 2, 0), Punto(0, 1, 0), Punto(0, 0, -1));
    ASSERT_EQ(m_Padre.Render(), 1);
    EXPECT_EQ(m_pReferencia->GetQuad(), 0U);
    EXPECT_EQ(m_pVinculo->GetQuad(), 0U);
    EXPECT_EQ(m_pVinculo->GetCamara().View(), Punto(0, 1, 0));
}

TEST_F(ConEscena, AxesAreNotDrawnOverAnImageOrWhenOff) {
    const auto dibujaEjes = [this] {
        RegistroGL registro;
        EXPECT_EQ(m_Escena.Render(), 1);
        const LlamadasGL llamadas = registro.Ejecutadas();
        return Indice(llamadas, Llama(m_Escena.m_nListaEjes)) < llamadas.size();
    };
    EXPECT_TRUE(dibujaEjes());
    m_Escena.SetTipo(3);
    EXPECT_FALSE(dibujaEjes());
    m_Escena.SetTipo(1);
    m_Escena.m_nTipoImagenFondo = 3;
    EXPECT_FALSE(dibujaEjes());
    m_Escena.m_nTipoImagenFondo = 0;
    m_Escena.SetEjes(0);
    EXPECT_FALSE(dibujaEjes());
}

TEST_F(ConEscena, AxesThatFailDoNotFailThePass) {
    FallaGL falla("glGetDoublev", 1);
    EXPECT_EQ(m_Escena.Render(), 1);
    EXPECT_TRUE(falla.Ocurrida());
}

TEST_F(ConEscena, XorLeftOnByFeedbackDoesNotReachTheNextFrame) {
    m_Escena.SetEjes(0);
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    glEnable(GL_COLOR_LOGIC_OP);
    glLogicOp(GL_CLEAR);
    wglMakeCurrent(nullptr, nullptr);
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(m_Tela.Pixel(25, 15), 0x00FF00U);
}

TEST_F(ConEscena, AnErrorPendingAfterTheSketchIsForgotten) {
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    m_Escena.m_nListaLineaNueva = glGenLists(1);
    wglMakeCurrent(nullptr, nullptr);
    m_Escena.SetEjes(0);
    FallaGL falla("glCallList", 2);
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_TRUE(falla.Ocurrida());
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    EXPECT_FALSE(HayErrorGL());
    wglMakeCurrent(nullptr, nullptr);
}

// ---- Layers alone --------------------------------------------------------------------------------------------------

TEST_F(ConEscena, EachLayerIsCompiledByItsOwnHook) {
    struct Capas : EscenaPrueba {
        using CGL::operator=;
        int Es(int n) { return m_nCapa = n, 1; }
        int OnIniciarLimites() override { return Es(1); }
        int OnIniciarBase() override { return Es(2); }
        int OnIniciarArboles() override { return Es(3); }
        int OnIniciarEdificios() override { return Es(4); }
        int OnIniciarRupturas() override { return Es(5); }
        int OnIniciarCurvado() override { return Es(6); }
        int m_nCapa = 0;
    };
    Tela tela;
    Capas escena;
    ASSERT_TRUE(escena.CreaEn(tela));
    int n = 0;
    for (int (CGL::*inicia)() : {&CGL::IniciarLimites, &CGL::IniciarBase, &CGL::IniciarArboles, &CGL::IniciarEdificios,
                                 &CGL::IniciarRupturas, &CGL::IniciarCurvado}) {
        EXPECT_EQ((escena.*inicia)(), 1);
        EXPECT_EQ(escena.m_nCapa, ++n);
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
    }
}

TEST_F(ConFamilia, EveryLayerButTheLimitsGoesOnToTheChildren) {
    struct Hija : EscenaPrueba {
        using CGL::operator=;
        int OnIniciarEdificios() override { return ++m_nVeces; }
        int OnIniciarRupturas() override { return ++m_nVeces; }
        int OnIniciarCurvado() override { return ++m_nVeces; }
        int m_nVeces = 0;
    };
    auto* hija = new Hija;
    m_Padre.VinculoNuevo(hija);
    EXPECT_EQ(m_Padre.IniciarEdificios(), 1);
    EXPECT_EQ(m_Padre.IniciarRupturas(), 1);
    EXPECT_EQ(m_Padre.IniciarCurvado(), 1);
    EXPECT_EQ(hija->m_nVeces, 3);
}

TEST_F(ConEscena, MarksAndMeasuresAreCompiledAndDrawnEachWhenThereAreAny) {
    m_Escena.SetEjes(0);
    m_Escena.m_Marcas.emplace_back(L"m", Punto(1, 1, -9999), L"a", 1.0);
    RegistroGL registro;
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    const auto compiladas = [&] { return Solo(registro.Todas(), {"glGenLists"}).size(); };
    const std::size_t conMarcas = compiladas();
    m_Escena.m_Medidas.emplace_back(CString(L"medida"));
    registro.Olvida();
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_EQ(compiladas(), conMarcas + 3) << "measures compile the marks once more";
    // No setting shows them: measures draw the marks on photographs by themselves.
    registro.Olvida();
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_LLAMADAS(
        Solo(registro.Ejecutadas(), {"glCallList"}),
        {Llama(m_Escena.m_nLista), Llama(m_Escena.m_nListaPuntosMarcasFoto), Llama(m_Escena.m_nListaMarcas)});
}

TEST_F(ConEscena, AFrameThatCannotBePresentedIsAFailure) {
    struct Ladrona : EscenaPrueba {
        using CGL::operator=;
        int OnRender() override {
            wglMakeCurrent(nullptr, nullptr);  // a picture in memory is presented by its own context alone
            return 1;
        }
    };
    Tela tela;
    Ladrona escena;
    escena.SetEjes(0);
    ASSERT_TRUE(escena.Monta(tela));
    EXPECT_EQ(escena.Render(), 0);
}

TEST_F(ConFamilia, LayersWalkTheReferencesWhenOnThenTheLinks) {
    EXPECT_EQ(m_Padre.IniciarArboles(), 1);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciarArboles", "r.OnIniciarArboles", "v.OnIniciarArboles"));
    m_Pasos.clear();
    m_Padre.SetReferencia(0);
    EXPECT_EQ(m_Padre.IniciarArboles(), 1);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciarArboles", "v.OnIniciarArboles"));
}

TEST_F(ConFamilia, TheFirstLayerThatFailsEndsTheWalk) {
    m_pReferencia->m_sFalla = "OnIniciarArboles";
    EXPECT_EQ(m_Padre.IniciarArboles(), 0);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciarArboles", "r.OnIniciarArboles"));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConFamilia, ALayerThatFailsInTheSceneItselfDoesNotReachTheChildren) {
    m_Padre.m_sFalla = "OnIniciarArboles";
    EXPECT_EQ(m_Padre.IniciarArboles(), 0);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciarArboles"));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConEscena, AnErrorOfOpenGLIsToldOnce) {
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    EXPECT_EQ(m_Escena.OutputGlError(nullptr), 0);
    glEnable(0xFFFFFFFF);
    EXPECT_EQ(m_Escena.OutputGlError(nullptr), 1);
    EXPECT_EQ(m_Escena.OutputGlError(nullptr), 0);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConFamilia, LimitsGoOnToTheChildrenOnlyInASphericalScene) {
    EXPECT_EQ(m_Padre.IniciarLimites(), 1);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciarLimites"));
    m_Pasos.clear();
    m_Padre.SetTipo(8);
    EXPECT_EQ(m_Padre.IniciarLimites(), 1);
    EXPECT_THAT(m_Pasos, ElementsAre("p.OnIniciarLimites", "r.OnIniciarLimites", "v.OnIniciarLimites"));
}

TEST_F(ConFamilia, TheBaseIsNothingInASphericalScene) {
    EXPECT_EQ(m_Padre.IniciarBase(), 1);
    EXPECT_EQ(m_Pasos.size(), 3U);
    m_Pasos.clear();
    m_Padre.m_nTipoImagenFondo = 6;
    EXPECT_EQ(m_Padre.IniciarBase(), 1);
    EXPECT_THAT(m_Pasos, IsEmpty());
}

TEST_F(ConEscena, PublicEntriesLeaveAContextThatTheCallerHadTaken) {
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    EXPECT_EQ(m_Escena.IniciarEdificios(), 1);
    EXPECT_EQ(m_Escena.RenderLineaNueva(1), 1);
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(m_Escena.IniciarEdificios(), 1);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}
