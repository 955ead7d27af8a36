// The grid's scene: the order in which it is built and drawn, its life, and the way to the surface.

#include "EscenaTerreno.h"
#include "model/CTexto.h"
#include "model/IPorcentaje.h"
#include "platform/CWinApp.h"
#include "support/Temporales.h"

#include <algorithm>
#include <set>

namespace {

using modelos::Rejilla;
using Punto = Vertiz::CCoor3D<double>;
using Pasos = std::vector<std::string>;

// Notes the hooks that it is asked for.
class EscenaAtenta : public EscenaTerreno {
  public:
    using EscenaTerreno::operator=;
    EscenaAtenta(const char* nombre, Pasos& pasos) : m_nombre(nombre), m_pasos(pasos) { SetNombre(CString(L"x")); }
    ~EscenaAtenta() override { Destruir(); }
    int OnIniciar() override { return Anota("OnIniciar"), EscenaTerreno::OnIniciar(); }
    int OnIniciarLimites() override { return Anota("OnIniciarLimites"), EscenaTerreno::OnIniciarLimites(); }
    int OnIniciarEdificios() override { return Anota("OnIniciarEdificios"), EscenaTerreno::OnIniciarEdificios(); }
    int OnIniciarRupturas() override { return Anota("OnIniciarRupturas"), EscenaTerreno::OnIniciarRupturas(); }
    int OnIniciarBase() override { return Anota("OnIniciarBase"), EscenaTerreno::OnIniciarBase(); }
    int OnIniciarArboles() override { return Anota("OnIniciarArboles"), m_arboles; }
    int Iniciar() override { return Anota("Iniciar"), EscenaTerreno::Iniciar(); }
    int OnRender() override { return Anota("OnRender"), EscenaTerreno::OnRender(); }
    void Anota(const char* paso) { m_pasos.push_back(std::string(m_nombre) + paso); }

    int m_arboles = 1;

  private:
    const char* m_nombre;
    Pasos& m_pasos;
};

class Escena : public Terreno {
  protected:
    Vertiz::CDEM m_dem = Rejilla({{10, 20, 30}, {20, 30, 40}, {30, 40, 50}});

    static void TodasLasCapas(CGL& e) {
        e.SetLimites(1);
        e.SetEdificios(1);
        e.SetRupturas(1);
        e.SetBase(1);
        e.SetArboles(1);
        e.SetEjes(1);
    }
    void Prepara(EscenaAtenta& e) {
        ASSERT_EQ(e.Crear(m_tela.DC(), PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL), 1);
        e.SetQuad(1);
        e.SetDEM(&m_dem);
        e.OnZoomExtension();
    }
};

// ---- Without a grid ----

TEST_F(Escena, WithoutAGridThereIsNothingToBuild) {
    Crea();
    EXPECT_EQ(m_escena.GetTipo(), 1);
    EXPECT_EQ(m_escena.OnIniciar(), 0);
    EXPECT_EQ(m_escena.OnIniciarBase(), 0);
    EXPECT_EQ(m_escena.OnIniciarLimites(), 0);
    EXPECT_EQ(m_escena.OnIniciarRupturas(), 0);
    Punto p(1, 2, 3, 0);
    EXPECT_FALSE(m_escena.Proyecta(p));
    EXPECT_FALSE(m_escena.ProyectaVector(p, {0, 0, 0, 0}));
    EXPECT_FALSE(m_escena.HaySuavizado());
    EXPECT_FALSE(m_escena.HayRupturas());
    EXPECT_EQ(m_escena.InsertaRupturas(L"nothing"), 1);
    EXPECT_EQ(m_escena.Precision(), 1.0);
    EXPECT_EQ(m_escena.GetDEM(), nullptr);
}

// ---- Building ----

TEST_F(Escena, IsBuiltInItsOrder) {
    Pasos pasos;
    EscenaAtenta escena("", pasos);
    Prepara(escena);
    TodasLasCapas(escena);
    auto* referencia = new EscenaAtenta("ref.", pasos);
    auto* vinculo = new EscenaAtenta("vin.", pasos);
    Vertiz::CDEM otro = Rejilla({{1, 2}, {3, 4}});
    referencia->SetDEM(&otro);
    vinculo->SetDEM(&otro);
    escena.VinculoNuevo(vinculo);
    escena.ReferenciaNuevo(referencia);
    pasos.clear();
    const RegistroGL registro;
    ASSERT_EQ(escena.Iniciar(), 1);
    const auto hijo = [](const char* n) {
        const std::string s = n;
        return Pasos{s + "Iniciar",           s + "OnIniciar",     s + "OnIniciarLimites", s + "OnIniciarEdificios",
                     s + "OnIniciarRupturas", s + "OnIniciarBase", s + "OnIniciarArboles"};
    };
    Pasos esperados = hijo("");
    for (const char* n : {"ref.", "vin."})
        for (const std::string& paso : hijo(n))
            esperados.push_back(paso);
    EXPECT_EQ(pasos, esperados);
    // Surface, axes, limits and base; those of the children; camera and sky at the end.
    EXPECT_EQ(registro.Listas(),
              (std::vector<GLuint>{escena.m_nListaSuperficie, escena.m_nListaEjes, escena.m_nListaLimites,
                                   escena.m_nListaBase, referencia->m_nListaSuperficie, referencia->m_nListaLimites,
                                   referencia->m_nListaBase, vinculo->m_nListaSuperficie, vinculo->m_nListaLimites,
                                   vinculo->m_nListaBase, escena.m_nListaCamara, escena.m_nListaCielo}));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(escena.m_bLimitesIniciados & escena.m_bEdificiosIniciados & escena.m_bRupturasIniciadas &
                  escena.m_bBaseIniciada & escena.m_bArbolesIniciados,
              1);
}

TEST_F(Escena, MarksAreBuiltLastAndByTheParentAlone) {
    Toma(m_dem);
    auto* referencia = new EscenaTerreno(&m_dem);
    m_escena.ReferenciaNuevo(referencia);
    for (EscenaTerreno* escena : {&m_escena, referencia})
        escena->NuevaMarca(Vertiz::CTexto<double>(L"m", Punto(5, 5, 20, 0), L"a", 1.0, 0.0));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.Iniciar(), 1);
    EXPECT_EQ(referencia->m_nListaCielo, 0u);
    const std::vector<GLuint> listas = registro.Listas();
    const auto cielo = std::ranges::find(listas, m_escena.m_nListaCielo);
    ASSERT_NE(cielo, listas.end());
    EXPECT_EQ(listas.end() - cielo, 1 + 3) << "points on photographs, points on the terrain, and one text";
    const auto superficie = std::ranges::find(listas, referencia->m_nListaSuperficie);
    EXPECT_EQ(cielo - superficie, 2) << "the reference's surface, the camera, the sky";
}

TEST_F(Escena, ReferencesThatAreNotShownAreNotBuilt) {
    Pasos pasos;
    EscenaAtenta escena("", pasos);
    Prepara(escena);
    auto* referencia = new EscenaAtenta("ref.", pasos);
    referencia->SetDEM(&m_dem);
    escena.ReferenciaNuevo(referencia);
    escena.SetReferencia(0);
    ASSERT_EQ(escena.Iniciar(), 1);
    EXPECT_EQ(std::ranges::count(pasos, "ref.Iniciar"), 0);
}

TEST_F(Escena, AReferenceLeavesItsOwnReferencesAlone) {
    Pasos pasos;
    EscenaAtenta escena("", pasos);
    Prepara(escena);
    auto* referencia = new EscenaAtenta("ref.", pasos);
    auto* nieta = new EscenaAtenta("nieta.", pasos);
    referencia->SetDEM(&m_dem);
    nieta->SetDEM(&m_dem);
    escena.ReferenciaNuevo(referencia);
    referencia->ReferenciaNuevo(nieta);
    pasos.clear();
    ASSERT_EQ(escena.Iniciar(), 1);
    EXPECT_EQ(std::ranges::count(pasos, "ref.Iniciar"), 1);
    EXPECT_EQ(std::ranges::count(pasos, "nieta.Iniciar"), 0);
}

TEST_F(Escena, AStepThatFailsEndsTheBuildWithTheContextCurrent) {
    Pasos pasos;
    EscenaAtenta escena("", pasos);
    Prepara(escena);
    TodasLasCapas(escena);
    escena.m_arboles = 0;
    EXPECT_EQ(escena.Iniciar(), 0);
    EXPECT_NE(wglGetCurrentContext(), nullptr);
    EXPECT_NE(escena.m_nListaSuperficie, 0u) << "what was built stays";
    EXPECT_EQ(escena.m_nListaCamara, 0u);
    escena.m_arboles = 1;
    EXPECT_EQ(escena.Iniciar(), 1);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(Escena, LineStateComesFirstAndTheLayersThatAreOffDoNotCome) {
    Toma(m_dem, [](EscenaTerreno& e) { e.SetGrosorPuntos(3); });
    const RegistroGL registro;
    ASSERT_EQ(m_escena.Iniciar(), 1);
    const LlamadasGL llamadas = Sin(registro.Ejecutadas(), {"glGetIntegerv"});
    ASSERT_GE(llamadas.size(), 3u);
    EXPECT_EQ(LlamadasGL(llamadas.begin(), llamadas.begin() + 3),
              (LlamadasGL{"glDisable(GL_LINE_SMOOTH)", "glLineWidth(3)", "glPointSize(3)"}));
    EXPECT_EQ(m_escena.m_nListaLimites + m_escena.m_nListaBase, 0u);
    EXPECT_EQ(m_escena.m_bBaseIniciada, 0);
}

TEST_F(Escena, APlainImagesSettingsAreForcedWhileItIsBuiltAndPutBack) {
    Pasos pasos;
    EscenaAtenta escena("", pasos);
    Prepara(escena);
    TodasLasCapas(escena);
    escena.SetTipo(3);
    escena.SetQuad(2);
    escena.SetTipoColorMDT(6);
    escena.SetImagenFondo(1);
    const CDataGL antes = escena.GetData();
    pasos.clear();
    const RegistroGL registro;
    ASSERT_EQ(escena.Iniciar(), 1);
    EXPECT_EQ(pasos, (Pasos{"Iniciar", "OnIniciar"})) << "no layer";
    EXPECT_EQ(escena.m_nListaEjes, 0u) << "no axes";
    const LlamadasGL lista = registro.Lista(escena.m_nListaSuperficie);
    EXPECT_EQ(Solo(lista, {"glBegin"}), LlamadasGL{"glBegin(GL_QUADS)"});
    EXPECT_TRUE(escena.GetData() == antes);
    EXPECT_EQ(escena.GetImagenFondo(), 1);
    EXPECT_EQ(escena.m_bBaseIniciada, 0);
    const FallaGL falla("glNewList", 1);
    EXPECT_EQ(escena.Iniciar(), 0);
    EXPECT_TRUE(escena.GetData() == antes) << "also after a failure";
}

TEST_F(Escena, AFailureInTheSurfaceLeavesNoErrorAndTheNextBuildRecovers) {
    Toma(m_dem);
    for (const unsigned quad : {0u, 1u})
        for (const char* llamada : {"glNewList", "glEnd", "glEndList"}) {
            m_escena.SetQuad(quad);
            {
                const FallaGL falla(llamada, 1);
                EXPECT_EQ(m_escena.Iniciar(), 0) << llamada;
                EXPECT_TRUE(falla.Ocurrida()) << llamada;
            }
            ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
            EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << llamada;
            GLint abierta = -1;
            glGetIntegerv(GL_LIST_INDEX, &abierta);
            EXPECT_EQ(abierta, 0) << llamada;
            EXPECT_EQ(m_escena.Iniciar(), 1) << llamada;
            EXPECT_FALSE(Vertices(m_escena.m_nListaSuperficie).empty());
        }
}

TEST_F(Escena, NoElementIsSentFromAnArrayThatWasNotTaken) {
    Toma(m_dem);
    for (const unsigned quad : {0u, 1u, 2u})
        for (const char* llamada : {"glEnableClientState", "glVertexPointer"}) {
            m_escena.SetQuad(quad);
            const RegistroGL registro;
            const FallaGL falla(llamada, 1);
            EXPECT_EQ(m_escena.Iniciar(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida()) << llamada;
            EXPECT_EQ(registro.Cuenta("glArrayElement"), 0u) << llamada;
        }
    EXPECT_EQ(m_escena.Iniciar(), 1);
}

TEST_F(Escena, EveryListGoesWithTheScene) {
    Toma(m_dem, [](EscenaTerreno& e) {
        TodasLasCapas(e);
        e.SetTipoColorMDT(2);
    });
    const RegistroGL registro;
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(m_escena.Iniciar(), 1);
    {
        EscenaTerreno copia(m_escena);
        copia.Destruir();  // an earlier sharer frees nothing
    }
    EXPECT_EQ(Vertices(m_escena.m_nListaSuperficie).size(), 16u);
    m_escena.Destruir();
    m_escena.Destruir();
    EXPECT_EQ(m_escena.GetDEM(), nullptr);
    EXPECT_EQ(m_escena.m_nListaSuperficie + m_escena.m_nListaBase + m_escena.m_nListaLimites, 0u);
    std::multiset<GLuint> borradas;
    for (const auto& n : registro.Numeros("glDeleteLists"))
        for (int i = 0; i < int(n[1]); ++i)
            borradas.insert(GLuint(n[0]) + GLuint(i));
    for (const GLuint lista : registro.Listas())
        EXPECT_GE(borradas.count(lista), 1u) << "list " << lista;
}

TEST_F(Escena, ACopyThatOutlivesItsSourceStillDraws) {
    Monta(m_dem);
    auto copia = std::make_unique<EscenaTerreno>(m_escena);
    EXPECT_EQ(copia->GetDEM(), &m_dem);
    const GLuint lista = m_escena.m_nListaSuperficie;
    m_escena.Destruir();
    EXPECT_EQ(copia->m_nListaSuperficie, lista);
    EXPECT_EQ(copia->Render(), 1);
    Vertiz::CDEM otro = Rejilla({{1, 2}, {3, 4}});
    EscenaTerreno conOtro(*copia, &otro);
    EXPECT_EQ(conOtro.GetDEM(), &otro);
}

// ---- Drawing ----

TEST_F(Escena, APassComesInItsOrder) {
    Monta(m_dem, [](EscenaTerreno& e) {
        e.SetGrosorPuntos(2);
        e.SetRelleno(1);
    });
    TodasLasCapas(m_escena);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    m_escena.m_nListaSeleccion = glGenLists(7);
    GLuint siguiente = m_escena.m_nListaSeleccion;
    for (GLuint* lista : {&m_escena.m_nListaRupturas, &m_escena.m_nListaLimites, &m_escena.m_nListaEdificios,
                          &m_escena.m_nListaArboles, &m_escena.m_nListaBase})
        *lista = ++siguiente;
    const auto llama = [](GLuint lista) { return "glCallList(" + std::to_string(lista) + ")"; };
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    const LlamadasGL pasada = Solo(
        registro.Ejecutadas(), {"glClear", "glLoadIdentity", "gluLookAt", "glScaled", "glCallList", "glLineWidth",
                                "glPointSize", "glEnable", "glDisable", "glClearColor", "glPolygonMode", "glOrtho"});
    LlamadasGL sinCamara;
    for (const std::string& l : pasada)
        sinCamara.push_back(l.starts_with("gluLookAt") || l.starts_with("glClearColor") || l.starts_with("glOrtho")
                                ? l.substr(0, l.find('('))
                                : l);
    EXPECT_LLAMADAS(sinCamara, {"glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)",
                                "glLoadIdentity()",
                                "gluLookAt",
                                "glDisable(GL_LINE_SMOOTH)",
                                "glLineWidth(6)",
                                "glPointSize(6)",
                                llama(m_escena.m_nListaSeleccion),
                                llama(m_escena.m_nListaRupturas),
                                llama(m_escena.m_nListaLimites),
                                "glEnable(GL_DEPTH_TEST)",
                                "glEnable(GL_LIGHTING)",
                                "glEnable(GL_LIGHT0)",
                                "glEnable(GL_COLOR_MATERIAL)",
                                "glClearColor",
                                "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                                "glLineWidth(2)",
                                "glPointSize(2)",
                                llama(m_escena.m_nListaSuperficie),
                                llama(m_escena.m_nListaEdificios),
                                llama(m_escena.m_nListaArboles),
                                llama(m_escena.m_nListaBase),
                                "glLoadIdentity()",
                                "glLoadIdentity()",
                                "glOrtho",
                                llama(m_escena.m_nListaCielo)});
}

TEST_F(Escena, APassBeginsWithTheClearAndTheModelviewMatrix) {
    Monta(m_dem);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    glMatrixMode(GL_TEXTURE);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    LlamadasGL pasada = registro.Ejecutadas();
    ASSERT_GE(pasada.size(), 4u);
    pasada.resize(4);
    pasada[3].erase(pasada[3].find('('));
    EXPECT_LLAMADAS(pasada, {"glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)", "glMatrixMode(GL_MODELVIEW)",
                             "glLoadIdentity()", "gluLookAt"});
}

TEST_F(Escena, ATallViewIsScaledAndAChildsIsNot) {
    Monta(m_dem);
    ASSERT_EQ(m_escena.Resize(60, 90), 1);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    {
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnRender(), 1);
        const auto escalas = registro.Numeros("glScaled");
        ASSERT_EQ(escalas.size(), 1u);
        for (const double e : escalas[0])
            EXPECT_NEAR(e, 60.0 / 90, 1e-9);
    }
    auto* hijo = new EscenaTerreno(&m_dem);
    m_escena.ReferenciaNuevo(hijo);
    ASSERT_EQ(m_escena.Iniciar(), 1);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    m_escena.SetVariablesReferencia(hijo);
    const RegistroGL registro;
    ASSERT_EQ(hijo->OnRender(), 1);
    EXPECT_EQ(registro.Cuenta("glScaled") + registro.Cuenta("glClear") + registro.Cuenta("gluLookAt") +
                  registro.Cuenta("glLoadIdentity"),
              0u)
        << "neither clear, camera nor sky";
    EXPECT_EQ(registro.Cuenta("glCallList"), 1u);
}

TEST_F(Escena, WithoutASurfaceThePassLeavesItOut) {
    Monta(m_dem);
    m_escena.SetQuad(3);
    ASSERT_EQ(m_escena.Iniciar(), 1);
    EXPECT_EQ(m_escena.m_nListaSuperficie, 0u);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.Render(), 1);
    EXPECT_EQ(registro.Cuenta("glCallList"), 1u) << "the sky alone";
}

TEST_F(Escena, ListsThatStillExistAreNotDrawnWhenTheirSettingIsOff) {
    Monta(m_dem);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    GLuint siguiente = glGenLists(5);
    for (GLuint* lista : {&m_escena.m_nListaRupturas, &m_escena.m_nListaLimites, &m_escena.m_nListaEdificios,
                          &m_escena.m_nListaArboles, &m_escena.m_nListaBase})
        *lista = siguiente++;
    m_escena.SetQuad(3);
    for (const int mostrada : {-1, 0, 1, 2, 3, 4}) {
        m_escena.SetQuad(mostrada == 4 ? 0 : 3);
        m_escena.SetRupturas(mostrada == 0);
        m_escena.SetLimites(mostrada == 1);
        m_escena.SetEdificios(mostrada == 2);
        m_escena.SetArboles(mostrada == 3);
        m_escena.SetBase(mostrada == 4);
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnRender(), 1);
        // The sky always, the one that is shown, and with the base, which Quad 3 leaves out, the surface.
        EXPECT_EQ(registro.Cuenta("glCallList"), mostrada == -1 ? 1u : mostrada == 4 ? 3u : 2u) << mostrada;
    }
}

TEST_F(Escena, WithoutItsGridTheOldSurfaceGoes) {
    Monta(m_dem);
    m_escena.SetDEM(nullptr);
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnIniciar(), 0);
    EXPECT_EQ(m_escena.m_nListaSuperficie, 0u);
    EXPECT_EQ(registro.Cuenta("glDeleteLists"), 1u);
}

TEST_F(Escena, InPointsABaseThatStillExistsIsNotDrawn) {
    Monta(m_dem, [](EscenaTerreno& e) { e.SetBase(1); });
    ASSERT_NE(m_escena.m_nListaBase, 0u);
    m_escena.SetQuad(2);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.Render(), 1);
    EXPECT_EQ(registro.Cuenta("glCallList"), 2u) << "the surface and the sky alone";
}

TEST_F(Escena, APassThatFailsEndsWithZeroAndTheNextOneIsWhole) {
    Monta(m_dem);
    for (const char* llamada :
         {"glClear", "glLoadIdentity", "glLightModeli", "glColorMaterial", "glPolygonMode", "glOrtho"}) {
        {
            const FallaGL falla(llamada, 1);
            EXPECT_EQ(m_escena.Render(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida()) << llamada;
        }
        EXPECT_EQ(m_escena.Render(), 1) << llamada;
    }
}

// ---- The way to the surface ----

TEST_F(Escena, PointsAreLaidOnTheGrid) {
    Toma(m_dem);
    Punto p(10, 10, 0, 0);
    EXPECT_TRUE(m_escena.Proyecta(p));
    EXPECT_NEAR(p.z, 30, 1e-9);
    p = Punto(100, 10, 7, 0);
    EXPECT_FALSE(m_escena.Proyecta(p));
    EXPECT_EQ(p.z, 7);
}

TEST_F(Escena, ARayEndsOnTheSurface) {
    const modelos::Sitio sitio{10, 10, 500000, 4000000, Vertiz::CDataSemilla(0, 499000, 3999000, 5)};
    Vertiz::CDEM dem = Rejilla(
        5, 5, [](int r, int c) { return float(10 * r + 5 * c); }, sitio);
    Toma(dem, [](EscenaTerreno& e) { e.SetExageracionVertical(2); });
    // Straight down over (1010, 1030) local: row 1 from the north, column 1.
    auto gl = EnGL(1010, 1030, 0);
    Punto a(gl[0], gl[1], gl[2], 0);
    ASSERT_TRUE(m_escena.ProyectaVector(a, {gl[0], 3, gl[2], 0}));
    const auto esperado = EnGL(1010, 1030, 10 + 5 - 5);
    EXPECT_NEAR(a.x, esperado[0], 1e-9);
    EXPECT_NEAR(a.y, esperado[1], 1e-9);
    EXPECT_NEAR(a.z, esperado[2], 1e-9);
    Punto fuera(5, 0, 5, 0);
    EXPECT_FALSE(m_escena.ProyectaVector(fuera, {5, 3, 5, 0}));
    EXPECT_EQ(fuera, Punto(5, 0, 5, 0));
}

TEST_F(Escena, AnObliqueRayMovesThePointInPlanToo) {
    Vertiz::CDEM dem = Rejilla(5, 7, [](int, int c) { return c == 0 ? 0.0F : 20.0F; });
    Toma(dem, [](EscenaTerreno& e) { e.SetExageracionVertical(2); });
    const auto desde = EnGL(25, 15, 120), hasta = EnGL(35, 20, 70);  // goes on to the plateau at (45, 25)
    const auto lejos = EnGL(55, 30, -30);
    Punto a(lejos[0], lejos[1], lejos[2], 0);
    ASSERT_TRUE(m_escena.ProyectaVector(a, {desde[0], desde[1], desde[2], 0}));
    const auto esperado = EnGL(45, 25, 20);
    EXPECT_NEAR(hasta[0], (desde[0] + esperado[0]) / 2, 1e-9) << "on the way";
    EXPECT_NEAR(a.x, esperado[0], 1e-9);
    EXPECT_NEAR(a.y, esperado[1], 1e-9);
    EXPECT_NEAR(a.z, esperado[2], 1e-9);
}

TEST_F(Escena, SomethingIsSelectedWhenTheFrameHasAnEntity) {
    EXPECT_FALSE(m_escena.HaySeleccion(1, 1));
    m_escena.SetSeleccion(std::vector<Vertiz::CPosicionEntidad>(1));
    EXPECT_TRUE(m_escena.HaySeleccion(1, 1));
}

TEST_F(Escena, AssignmentTakesTheGridToo) {
    EscenaTerreno fuente(&m_dem), destino;
    destino = fuente;
    EXPECT_EQ(destino.GetDEM(), &m_dem);
}

TEST_F(Escena, ReferencesOfEveryTypeAreBuilt) {
    Toma(m_dem);
    auto* referencia = new EscenaTerreno(&m_dem);
    referencia->SetTipo(4);
    referencia->SetQuad(1);
    m_escena.ReferenciaNuevo(referencia);
    ASSERT_EQ(m_escena.Iniciar(), 1);
    EXPECT_NE(referencia->m_nListaSuperficie, 0u);
}

TEST_F(Escena, ExtentsAreThoseOfTheGridAndNoneWithoutAWholeCell) {
    m_escena.SetDEM(&m_dem);
    Vertiz::CMaximas<double> m;
    ASSERT_EQ(m_escena.GetMaximasObjeto(m), 1);
    EXPECT_EQ(m.Maxima(), Punto(20, 20, 50, 0));
    Vertiz::CDEM vacio = Rejilla({{modelos::kVacio, 1}, {1, 1}});
    m_escena.SetDEM(&vacio);
    EXPECT_EQ(m_escena.GetMaximasObjeto(m), 0);
}

// ---- Breaklines ----

// An application that can cancel at a step.
class Cancelador : public CWinApp, public Vertiz::IPorcentaje {
  public:
    Cancelador() : CWinApp(L"cancelador") {}
    int Paso(int nivel, int actual, int total, int) override {
        if (nivel == 3) pasos.emplace_back(actual, total);
        return nivel == 3 && actual == cancelaEn ? 0 : 1;
    }
    void Empieza(int nivel, unsigned texto) override {
        if (nivel == 3) empieza = texto;
    }
    void Termina(int nivel, int) override {
        if (nivel == 3) ++terminadas;
    }
    void Pasos(int, int) override {}
    void Reinicia(int, int, int) override {}
    void Mensaje(int, const CString&, int) override {}
    std::vector<std::pair<int, int>> pasos;
    unsigned empieza = 0;
    int terminadas = 0, cancelaEn = -1;
};

constexpr char kRupturas[] = "A 1 1 0\nA 5 5 0\n\nB 2 2 0\n\nC 3 3 0\nC 9 9 0\n";

TEST_F(Escena, BreaklinesAreReadFromAFileWithProgress) {
    Toma(m_dem);
    const CarpetaTemporal carpeta;
    const auto ruta = carpeta.Escribe("lineas.txt", kRupturas);
    Cancelador app;
    m_escena.m_bRupturasIniciadas = 1;
    EXPECT_EQ(m_escena.InsertaRupturas(CString(ruta.c_str())), 1);
    EXPECT_EQ(m_dem.Rupturas().Cantidad(), 2u) << "a single point is no line";
    EXPECT_TRUE(m_escena.HayRupturas());
    EXPECT_EQ(app.empieza, 19068u);
    EXPECT_EQ(app.pasos, (std::vector<std::pair<int, int>>{{1, 3}, {2, 3}, {3, 3}}));
    EXPECT_EQ(app.terminadas, 1);
    EXPECT_EQ(m_escena.m_bRupturasIniciadas, 0);
    m_escena.m_bRupturasIniciadas = 1;
    m_escena.BorraRupturas();
    EXPECT_FALSE(m_escena.HayRupturas());
    EXPECT_EQ(m_escena.m_bRupturasIniciadas, 0);
}

TEST_F(Escena, ACancelledReadOfBreaklinesKeepsTheOnesSoFar) {
    Toma(m_dem);
    const CarpetaTemporal carpeta;
    const auto ruta = carpeta.Escribe("lineas.txt", kRupturas);
    Cancelador app;
    app.cancelaEn = 3;
    EXPECT_EQ(m_escena.InsertaRupturas(CString(ruta.c_str())), 2);
    EXPECT_EQ(m_dem.Rupturas().Cantidad(), 1u);
    EXPECT_EQ(app.terminadas, 1);
}

TEST_F(Escena, AFileOfBreaklinesThatIsNotThereIsAFailure) {
    Toma(m_dem);
    EXPECT_EQ(m_escena.InsertaRupturas(L"/no/such/file"), 0);
    EXPECT_FALSE(m_escena.HayRupturas());
}

}  // namespace

TEST(CEscenaDEM, AssignmentBetweenASceneAndOneBelowItChangesNothing) {
    Vertiz::CDEM arriba(2, 2, 1.0, 1.0, 0.0, 0.0), abajo(2, 2, 1.0, 1.0, 0.0, 0.0);
    CEscenaDEM madre(&arriba);
    auto* hija = new CEscenaDEM(&abajo);
    madre.ReferenciaNuevo(hija);
    madre = *hija;
    *hija = madre;
    EXPECT_EQ(madre.GetDEM(), &arriba);
    EXPECT_EQ(hija->GetDEM(), &abajo);
    EXPECT_TRUE(madre.TieneReferencia());
    EXPECT_FALSE(hija->TieneReferencia());
}
