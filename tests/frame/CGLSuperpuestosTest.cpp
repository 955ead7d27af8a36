// What is drawn round a model: the lists of axes and camera models call by call, the space of the icons, light and
// material, and the colour of a height.

#include "EscenaVista.h"
#include "support/RegistroGL.h"

#include <cmath>
#include <new>
#include <utility>

using Punto = EscenaPrueba::Punto;

namespace {

class ConSuperpuestos : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(m_Escena.Monta(m_Tela, 200, 100)); }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    Tela m_Tela{200, 100};
    EscenaVista m_Escena;
};

const LlamadasGL kMaterialNulo = {"glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, [0, 0, 0, 0])",
                                  "glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, [0, 0, 0, 0])",
                                  "glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, [0, 0, 0, 0])",
                                  "glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, [0, 0, 0, 0])",
                                  "glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 128)"};

LlamadasGL operator+(LlamadasGL a, const LlamadasGL& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

void EsperaNumeros(const std::vector<std::vector<double>>& reales, const std::vector<std::vector<double>>& esperados,
                   double tolerancia = 1e-6) {
    ASSERT_EQ(reales.size(), esperados.size());
    for (std::size_t i = 0; i < reales.size(); ++i)
        for (std::size_t k = 0; k < esperados[i].size(); ++k)
            EXPECT_NEAR(reales[i].at(k), esperados[i][k], tolerancia) << "call " << i << ", argument " << k;
}

}  // namespace

// ---- Lists ---------------------------------------------------------------------------------------------------------

TEST_F(ConSuperpuestos, TheAxesAreThreeLinesWithConesOnADarkMaterial) {
    const Prestado prestado(m_Escena);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarEjes(), 1);
    EXPECT_LLAMADAS(
        registro.Lista(m_Escena.m_nListaEjes),
        (LlamadasGL{"glDisable(GL_TEXTURE_2D)", "glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1)"} + kMaterialNulo +
         LlamadasGL{"glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                    "glLineWidth(5)",
                    "glDisable(GL_LINE_STIPPLE)",
                    "glColor3f(1, 0, 0)",
                    "glBegin(GL_LINE_STRIP)",
                    "glVertex3f(0, 0, 0)",
                    "glVertex3f(0.21, 0, 0)",
                    "glEnd()",
                    "glPushMatrix()",
                    "glTranslatef(0.2, 0, 0)",
                    "glRotatef(90, 0, 1, 0)",
                    "gluCylinder(0.025, 0, 0.05, 10, 10)",
                    "glPopMatrix()",  // x
                    "glColor3f(0, 1, 0)",
                    "glBegin(GL_LINE_STRIP)",
                    "glVertex3f(0, 0, 0)",
                    "glVertex3f(0, 0.21, 0)",
                    "glEnd()",
                    "glPushMatrix()",
                    "glTranslatef(0, 0.2, 0)",
                    "glRotatef(-90, 1, 0, 0)",
                    "gluCylinder(0.025, 0, 0.05, 10, 10)",
                    "glPopMatrix()",  // y
                    "glColor3f(0, 0, 1)",
                    "glBegin(GL_LINE_STRIP)",
                    "glVertex3f(0, 0, 0)",
                    "glVertex3f(0, 0, 0.21)",
                    "glEnd()",
                    "glPushMatrix()",
                    "glTranslatef(0, 0, 0.2)",
                    "gluCylinder(0.025, 0, 0.05, 10, 10)",
                    "glPopMatrix()",  // z
                    "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"}));
    EXPECT_EQ(Solo(registro.Todas(), {"gluQuadricDrawStyle", "gluQuadricNormals"}),
              (LlamadasGL{"gluQuadricDrawStyle(GLU_FILL)", "gluQuadricNormals(GLU_SMOOTH)"} +
               LlamadasGL{"gluQuadricDrawStyle(GLU_FILL)", "gluQuadricNormals(GLU_SMOOTH)"} +
               LlamadasGL{"gluQuadricDrawStyle(GLU_FILL)", "gluQuadricNormals(GLU_SMOOTH)"}));
    EXPECT_NE(wglGetCurrentContext(), nullptr);
}

TEST_F(ConSuperpuestos, ListsPutThePolygonModeBackToWhatTheColourModeWants) {
    const Prestado prestado(m_Escena);
    m_Escena.SetTipoColorMDT(0);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarEjes(), 1);
    ASSERT_EQ(m_Escena.OnIniciarCamara(), 1);
    ASSERT_EQ(m_Escena.OnIniciarCamaraPanoramica(), 1);
    for (const GLuint lista : {m_Escena.m_nListaEjes, m_Escena.m_nListaCamara, m_Escena.m_nListaCamaraPanoramica})
        EXPECT_EQ(registro.Lista(lista).back(), "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)");
}

TEST_F(ConSuperpuestos, OverlaysTakeAListAnewEachTime) {
    const Prestado prestado(m_Escena);
    const GLuint vieja = m_Escena.m_nListaEjes;
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarEjes(), 1);
    const std::string id = std::to_string(m_Escena.m_nListaEjes);
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glDeleteLists", "glGenLists", "glNewList", "glEndList"}),
                    {"glDeleteLists(" + std::to_string(vieja) + ", 1)", "glGenLists(1)",
                     "glNewList(" + id + ", GL_COMPILE)", "glEndList()"});
}

TEST_F(ConSuperpuestos, TheCameraModelIsABoxWithItsOldNormalsAndALens) {
    m_Escena.SetSizeCamara(12);
    const Prestado prestado(m_Escena);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarCamara(), 1);
    const LlamadasGL lista = registro.Lista(m_Escena.m_nListaCamara);
    LlamadasGL esperada = {"glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)", "glColor3f(1, 0, 0)",
                           "glDisable(GL_TEXTURE_2D)", "glBegin(GL_QUADS)"};
    for (const char* normal : {"0, 0, 1", "0, 0, -1", "1, 0, 0", "-1, 0, 0", "0, -1, 0", "0, 1, 0"})
        esperada.push_back("glNormal3f(" + std::string(normal) + ")");
    esperada = esperada + LlamadasGL{"glEnd()", "glPushMatrix()", "glColor3f(0, 0, 1)", "glPopMatrix()",
                                     "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"};
    EXPECT_LLAMADAS(Sin(lista, {"glVertex3d", "glTranslated", "gluCylinder", "gluDisk"}), (esperada));
    const double s = 0.12, a = 0.03, b = 0.08;
    EsperaNumeros(registro.Numeros("glVertex3d"), {{s, b, -a},  {-s, b, -a},  {-s, b, a},   {s, b, a},      // 0 0 1
                                                   {s, -b, a},  {-s, -b, a},  {-s, -b, -a}, {s, -b, -a},    // 0 0 -1
                                                   {s, b, a},   {-s, b, a},   {-s, -b, a},  {s, -b, a},     // 1 0 0
                                                   {s, -b, -a}, {-s, -b, -a}, {-s, b, -a},  {s, b, -a},     // -1 0 0
                                                   {-s, b, a},  {-s, b, -a},  {-s, -b, -a}, {-s, -b, a},    // 0 -1 0
                                                   {s, b, -a},  {s, b, a},    {s, -b, a},   {s, -b, -a}});  // 0 1 0
    EsperaNumeros(registro.Numeros("glTranslated"), {{0, 0, a}, {0, 0, s / 3}});
    EsperaNumeros(registro.Numeros("gluCylinder"), {{s / 3, s / 3, s / 3, 10, 10}});
    EsperaNumeros(registro.Numeros("gluDisk"), {{0, s / 3, 10, 10}});
    // Each face: its normal, then its four corners; the lens: moved, tube, moved, disk.
    const LlamadasGL lente = Solo(lista, {"glTranslated", "gluCylinder", "gluDisk"});
    ASSERT_EQ(lente.size(), 4U);
    EXPECT_EQ(lente[1].substr(0, 11), "gluCylinder");
    EXPECT_EQ(lente[3].substr(0, 7), "gluDisk");
    for (int cara = 0; cara < 6; ++cara) {
        EXPECT_EQ(lista[4 + 5 * cara].substr(0, 10), "glNormal3f");
        EXPECT_EQ(lista[8 + 5 * cara].substr(0, 10), "glVertex3d");
    }
}

TEST_F(ConSuperpuestos, TheLensStandsOnTheBoxInASpaceOfItsOwn) {
    const Prestado prestado(m_Escena);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarCamara(), 1);
    LlamadasGL lente = registro.Lista(m_Escena.m_nListaCamara);
    lente.erase(lente.begin(), std::ranges::find(lente, "glEnd()") + 1);
    for (std::string& l : lente)
        l.erase(l.find('('));
    EXPECT_LLAMADAS(lente, {"glPushMatrix", "glTranslated", "glColor3f", "gluCylinder", "glTranslated", "gluDisk",
                            "glPopMatrix", "glPolygonMode"});
}

TEST_F(ConSuperpuestos, AnOverlayThatCannotBeCompiledGives0AndOneThatCanClosesItsList) {
    for (int (CGL::*compila)() : {&CGL::OnIniciarEjes, &CGL::OnIniciarCamara, &CGL::OnIniciarCamaraPanoramica}) {
        EXPECT_EQ((EscenaVista().*compila)(), 0) << "no context";
        wglMakeCurrent(nullptr, nullptr);
        for (const char* nombre : {"glNewList", "glEndList"}) {
            const FallaGL falla(nombre, 1);
            EXPECT_EQ((m_Escena.*compila)(), 0) << nombre;
            EXPECT_TRUE(falla.Ocurrida());
        }
        wglMakeCurrent(nullptr, nullptr);
        EXPECT_EQ((m_Escena.*compila)(), 1) << "it takes the context itself";
        const RegistroGL registro;
        EXPECT_EQ((m_Escena.*compila)(), 1);
        EXPECT_EQ(registro.Cuenta("glEndList"), 1U);
    }
    EXPECT_EQ(EscenaVista().OnIniciarPuntosCamara(), 0);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConSuperpuestos, ThePanoramicCameraIsABlueSphere) {
    m_Escena.SetSizeCamara(25);
    const Prestado prestado(m_Escena);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarCamaraPanoramica(), 1);
    EXPECT_LLAMADAS(registro.Lista(m_Escena.m_nListaCamaraPanoramica),
                    {"glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)", "glDisable(GL_TEXTURE_2D)", "glPushMatrix()",
                     "glTranslatef(0, 0, 0)", "glColor3f(0, 0, 1)", "gluSphere(0.25, 10, 10)", "glPopMatrix()",
                     "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"});
}

TEST_F(ConSuperpuestos, AChildUsesItsParentsOverlays) {
    m_Escena.m_bEsReferencia = 1;
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.OnIniciarEjes(), 1);
    EXPECT_EQ(m_Escena.OnIniciarCamara(), 1);
    EXPECT_EQ(m_Escena.OnIniciarCamaraPanoramica(), 1);
    EXPECT_TRUE(registro.Todas().empty());
    m_Escena.m_bEsReferencia = 0;
}

TEST_F(ConSuperpuestos, AnErrorEndsAnOverlayWithItsListOpenAndTheNextOneRecovers) {
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    for (const char* nombre : {"glNewList", "glMaterialfv", "glMaterialf"}) {
        const FallaGL falla(nombre, 1);
        EXPECT_EQ(m_Escena.OnIniciarEjes(), 0) << nombre;
        EXPECT_TRUE(falla.Ocurrida());
        GLint abierta = 0;
        glGetIntegerv(GL_LIST_INDEX, &abierta);
        EXPECT_EQ(abierta != 0, nombre != std::string("glNewList"));
    }
    EXPECT_EQ(m_Escena.OnIniciarEjes(), 1);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConSuperpuestos, AQuadricThatFindsNoMemoryThrowsAndTheNextOneRecovers) {
    for (int (CGL::*compila)() : {&CGL::OnIniciarEjes, &CGL::OnIniciarCamara, &CGL::OnIniciarCamaraPanoramica}) {
        const FallaGL falla("gluNewQuadric", 1, GL_OUT_OF_MEMORY);
        EXPECT_THROW((m_Escena.*compila)(), std::bad_alloc);
        EXPECT_TRUE(falla.Ocurrida());
        OlvidaErroresGL();
        EXPECT_EQ((m_Escena.*compila)(), 1);
    }
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConSuperpuestos, CameraStationsGoToGLSpaceWithTheirKindAndKeepTheirIndex) {
    m_Escena.m_PuntosCamara << Punto(25, 75, 25, 0) << Punto(500, 0, 0, 7) << Punto(50, 50, 25, 100000);
    ASSERT_EQ(m_Escena.OnIniciarPuntosCamara(), 1);
    ASSERT_EQ(m_Escena.OnIniciarPuntosCamara(), 1) << "they are taken afresh";
    EXPECT_NE(wglGetCurrentContext(), nullptr) << "the context stays";
    ASSERT_EQ(m_Escena.m_PuntosCamaraGL.NPuntos(), 3U);
    EsperaCerca(m_Escena.m_PuntosCamaraGL.Punto(0), Punto(-0.25, 0, -0.25), 1e-12);
    EXPECT_EQ(m_Escena.m_PuntosCamaraGL.Punto(1).GetTipo(), 7);
    EXPECT_EQ(m_Escena.m_PuntosCamaraGL.Punto(2).GetTipoCompleto(), 100000);
    m_Escena.m_DataTransformacion = Esfera(Punto(25, 75, 25));
    ASSERT_EQ(m_Escena.OnIniciarPuntosCamara(), 1);
    EXPECT_EQ(m_Escena.m_PuntosCamaraGL.NPuntos(), 3U) << "a station beyond the sphere keeps its place";
    wglMakeCurrent(nullptr, nullptr);
}

// ---- The icons' own space ------------------------------------------------------------------------------------------

TEST_F(ConSuperpuestos, TheAxesAreDrawnInTheCornerInASpaceOfTheirOwn) {
    m_Escena.SetEjes(1);
    m_Escena.m_Camara.SetAngulos(20, 30, 40);
    const Prestado prestado(m_Escena);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnRenderEjes(), 1);
    EXPECT_LLAMADAS(
        Sin(registro.Ejecutadas(), {"glGetIntegerv", "glGetDoublev", "gluUnProject", "glTranslated", "glRotated"}),
        {"glMatrixMode(GL_MODELVIEW)",
         "glPushMatrix()",
         "glLoadIdentity()",
         "glMatrixMode(GL_TEXTURE)",
         "glPushMatrix()",
         "glLoadIdentity()",
         "glDisable(GL_LIGHT0)",
         "glEnable(GL_LIGHT1)",
         "glMatrixMode(GL_PROJECTION)",
         "glPushMatrix()",
         "glLoadIdentity()",
         "glOrtho(-2, 2, -1, 1, -40000, 40000)",
         "glMatrixMode(GL_MODELVIEW)",
         "glCallList(" + std::to_string(m_Escena.m_nListaEjes) + ")",
         "glMatrixMode(GL_TEXTURE)",
         "glPopMatrix()",
         "glDisable(GL_LIGHT1)",
         "glEnable(GL_LIGHT0)",
         "glMatrixMode(GL_PROJECTION)",
         "glPopMatrix()",
         "glMatrixMode(GL_MODELVIEW)",
         "glPopMatrix()"});
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glOrtho", "glTranslated", "glRotated", "glCallList"}),
                    (Solo(registro.Ejecutadas(), {"glOrtho"}) + Solo(registro.Ejecutadas(), {"glTranslated"}) +
                     Solo(registro.Ejecutadas(), {"glRotated"}) + Solo(registro.Ejecutadas(), {"glCallList"})))
        << "projected, placed, turned, drawn";
    EsperaNumeros(registro.Numeros("gluUnProject"), {{0, 0, 0}});
    EsperaNumeros(registro.Numeros("glTranslated"), {{-2 + 0.25, -1 + 0.25, 30000}}, 1e-4);
    const CCamera& c = m_Escena.m_Camara;
    EsperaNumeros(registro.Numeros("glRotated"),
                  {{c.GetAnguloY(), 0, 1, 0}, {-c.GetAnguloZ(), 0, 0, 1}, {-c.GetAnguloX(), 1, 0, 0}});
}

TEST_F(ConSuperpuestos, OtherValuesPutTheAxesInTheMiddleAndPerspectiveScalesByTheSign) {
    m_Escena.SetEjes(2);
    m_Escena.SetOrtogonal(0);
    const Prestado prestado(m_Escena);
    for (const auto& [aspecto, escalas] : std::initializer_list<std::pair<double, std::vector<double>>>{
             {2.0, {0.5, 1, -0.5}}, {-4.0, {-0.25, -1, 0.25}}}) {
        m_Escena.m_dAspecto = aspecto;
        const RegistroGL registro;
        ASSERT_EQ(m_Escena.OnRenderEjes(), 1);
        EsperaNumeros(registro.Numeros("glScaled"), {escalas});
        EXPECT_EQ(registro.Cuenta("glTranslated"), 0U);
        EXPECT_EQ(registro.Cuenta("glOrtho"), 0U);
    }
    m_Escena.m_dAspecto = 1e-8;
    const RegistroGL registro;
    m_Escena.OnRenderEjes();
    EXPECT_EQ(registro.Numeros("glScaled").at(0).at(1), 0.0);
}

TEST_F(ConSuperpuestos, AxesThatFailPutMatricesAndLightsBack) {
    m_Escena.SetEjes(1);
    const Prestado prestado(m_Escena);
    GLint antes[3] = {}, despues[3] = {};
    const auto pilas = [](GLint* n) {
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, n);
        glGetIntegerv(GL_PROJECTION_STACK_DEPTH, n + 1);
        glGetIntegerv(GL_TEXTURE_STACK_DEPTH, n + 2);
    };
    pilas(antes);
    {
        const FallaGL falla("gluUnProject", 1);
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.OnRenderEjes(), 0);
        EXPECT_TRUE(falla.Ocurrida());
        EXPECT_EQ(registro.Cuenta("glCallList"), 0U);
    }
    static_cast<void>(HayErrorGL());
    pilas(despues);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(despues[i], antes[i]);
    EXPECT_EQ(glIsEnabled(GL_LIGHT1), GL_FALSE);
}

TEST_F(ConSuperpuestos, TheCameraIconIsLitWhenLightIsOn) {
    m_Escena.SetEjes(1);
    const Prestado prestado(m_Escena);
    for (const int luz : {0, 1}) {
        m_Escena.SetLuz(luz);
        const RegistroGL registro;
        ASSERT_EQ(m_Escena.OnRenderCamara(), 1);
        EXPECT_LLAMADAS(
            Sin(registro.Ejecutadas(), {"glGetIntegerv", "glGetDoublev", "gluUnProject", "glRotated", "glLightfv",
                                        "glMaterialfv", "glMaterialf", "glLightModeli", "glTranslated"}),
            (LlamadasGL{"glMatrixMode(GL_MODELVIEW)", "glPushMatrix()", "glLoadIdentity()", "glMatrixMode(GL_TEXTURE)",
                        "glPushMatrix()", "glLoadIdentity()", "glMatrixMode(GL_PROJECTION)", "glPushMatrix()",
                        "glLoadIdentity()", "glOrtho(-2, 2, -1, 1, -20000, 20000)"} +
             (luz ? LlamadasGL{"glEnable(GL_LIGHTING)", "glEnable(GL_LIGHT0)"} : LlamadasGL{}) +
             LlamadasGL{"glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE)", "glEnable(GL_COLOR_MATERIAL)",
                        "glMatrixMode(GL_MODELVIEW)", "glCallList(" + std::to_string(m_Escena.m_nListaCamara) + ")",
                        "glMatrixMode(GL_TEXTURE)", "glPopMatrix()", "glMatrixMode(GL_PROJECTION)", "glPopMatrix()",
                        "glMatrixMode(GL_MODELVIEW)", "glPopMatrix()"}));
        EsperaNumeros(registro.Numeros("glTranslated"), {{-2 + 0.25, -1 + 0.25, 0.75}});
        const LlamadasGL luces = Solo(registro.Ejecutadas(), {"glMaterialf", "glLightfv"});
        EXPECT_EQ(luces.front().substr(0, 11), "glMaterialf") << "the material comes before the light";
    }
}

TEST_F(ConSuperpuestos, TheCameraIconThatFailsIsNotDrawnAndPutsMatricesBack) {
    m_Escena.SetEjes(1);
    const Prestado prestado(m_Escena);
    for (const char* nombre : {"gluUnProject", "glMaterialfv", "glLightfv"}) {
        const FallaGL falla(nombre, 1);
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.OnRenderCamara(), 0) << nombre;
        EXPECT_TRUE(falla.Ocurrida());
        EXPECT_EQ(registro.Cuenta("glCallList") + registro.Cuenta("glColorMaterial"), 0U) << nombre;
        EXPECT_EQ(registro.Cuenta("glLightfv"), nombre == std::string("glLightfv") ? 1U : 0U) << "material first";
        EXPECT_EQ(registro.Cuenta("glPushMatrix"), registro.Cuenta("glPopMatrix")) << nombre;
        static_cast<void>(HayErrorGL());
    }
}

TEST_F(ConSuperpuestos, IconsThatWereNeverCompiledAreNotCalled) {
    const Prestado prestado(m_Escena);
    const GLuint ejes = std::exchange(m_Escena.m_nListaEjes, 0), camara = std::exchange(m_Escena.m_nListaCamara, 0);
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.OnRenderEjes(), 1);
    EXPECT_EQ(m_Escena.OnRenderCamara(), 1);
    EXPECT_EQ(registro.Cuenta("glCallList"), 0U);
    m_Escena.m_nListaEjes = ejes;
    m_Escena.m_nListaCamara = camara;
}

// ---- Light, material, background -----------------------------------------------------------------------------------

TEST_F(ConSuperpuestos, LightComesFromTheSlidersByRealDivisionsAndTheAxesLightIsFixed) {
    const Prestado prestado(m_Escena);
    {
        const RegistroGL registro;
        ASSERT_EQ(m_Escena.SetLight(), 1);
        EXPECT_LLAMADAS(
            registro.Ejecutadas(),
            {"glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1)", "glLightfv(GL_LIGHT0, GL_POSITION, [5, -5, -5, 1])",
             "glLightfv(GL_LIGHT1, GL_POSITION, [5, -5, -5, 1])",
             "glLightfv(GL_LIGHT0, GL_AMBIENT, [0.18, 0.18, 0.18, 0.18])",
             "glLightfv(GL_LIGHT1, GL_AMBIENT, [0.5, 0.5, 0.5, 0.5])", "glLightfv(GL_LIGHT0, GL_DIFFUSE, [1, 1, 1, 1])",
             "glLightfv(GL_LIGHT1, GL_DIFFUSE, [1, 1, 1, 1])",
             "glLightfv(GL_LIGHT0, GL_SPECULAR, [-0.08, -0.08, -0.08, -0.08])",
             "glLightfv(GL_LIGHT1, GL_SPECULAR, [1, 1, 1, 1])"});
    }
    m_Escena.SetLightParam(13, 0);
    m_Escena.SetLightParam(24, 1);
    m_Escena.SetLightParam(37, 2);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.SetLight(), 1);
    EXPECT_EQ(registro.Ejecutadas()[1], "glLightfv(GL_LIGHT0, GL_POSITION, [3.7, 1.3, -2.6, 1])");
}

TEST_F(ConSuperpuestos, MaterialComesFromTheSlidersByRealDivisions) {
    const Prestado prestado(m_Escena);
    m_Escena.SetLightParam(75, 8);
    m_Escena.SetLightParam(45, 9);
    m_Escena.SetLightParam(7, 10);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.SetMaterial(), 1);
    EXPECT_LLAMADAS(registro.Ejecutadas(), {"glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1)",
                                            "glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, [0.18, 0.18, 0.18, 0])",
                                            "glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, [1, 1, 1, 0])",
                                            "glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, [0.5, 0.5, 0.5, 0])",
                                            "glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 2.25)",
                                            "glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, [0.07, 0.07, 0.07, 0])"});
}

TEST_F(ConSuperpuestos, LightAndMaterialStopAtTheFirstError) {
    const Prestado prestado(m_Escena);
    for (int n = 1; n <= 8; ++n) {
        const FallaGL falla("glLightfv", n);
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.SetLight(), 0);
        EXPECT_EQ(registro.Cuenta("glLightfv"), static_cast<std::size_t>(n));
    }
    for (int n = 1; n <= 4; ++n) {
        const FallaGL falla("glMaterialfv", n);
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.SetMaterial(), 0);
        EXPECT_EQ(registro.Cuenta("glMaterialfv"), static_cast<std::size_t>(n));
    }
    {
        const FallaGL falla("glMaterialf", 1);
        EXPECT_EQ(m_Escena.SetMaterial(), 0);
    }
    for (int (CGL::*prepara)() : {&CGL::SetLight, &CGL::SetMaterial}) {
        const FallaGL falla("glLightModeli", 1);
        EXPECT_EQ((m_Escena.*prepara)(), 0);
    }
}

TEST_F(ConSuperpuestos, TheBackgroundIsClearedWithItsColourAndTheContextReleased) {
    m_Escena.SetColorFondo(0x336699);  // red 0x99, green 0x66, blue 0x33
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.SetBkColor(), 1);
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glClearColor", "glClear"}),
                    {"glClearColor(0.6, 0.4, 0.2, 0)", "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)"});
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(EscenaVista().SetBkColor(), 0);
    for (const char* nombre : {"glClearColor", "glClear"}) {
        const FallaGL falla(nombre, 1);
        EXPECT_EQ(m_Escena.SetBkColor(), 0) << nombre;
        EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC) << "a failure leaves it current";
    }
    wglMakeCurrent(nullptr, nullptr);
}

// ---- Colours -------------------------------------------------------------------------------------------------------

TEST(ContrasteColor, WhiteOnAlmostWhiteTurnsMiddleGrey) {
    COLORREF c = RGB(255, 255, 255);
    EXPECT_EQ(ContrastaColor(c, RGB(250, 250, 250)), 1);
    EXPECT_EQ(c, RGB(128, 128, 128));
}

TEST(ContrasteColor, EveryChannelMovesByHalfTheRange) {
    COLORREF c = RGB(0, 127, 128);
    EXPECT_EQ(ContrastaColor(c, c), 1);
    EXPECT_EQ(c, RGB(128, 255, 1));
}

TEST(ContrasteColor, ADifferenceOfTenInOneChannelIsEnough) {
    for (const COLORREF fondo : {RGB(110, 100, 100), RGB(100, 90, 100), RGB(100, 100, 110)}) {
        COLORREF c = RGB(100, 100, 100);
        EXPECT_EQ(ContrastaColor(c, fondo), 0);
        EXPECT_EQ(c, RGB(100, 100, 100));
    }
    COLORREF c = RGB(100, 100, 100);
    EXPECT_EQ(ContrastaColor(c, RGB(109, 91, 109)), 1);
}

namespace {

/// The channels that a height gets, 0 to 255.
std::vector<int> Tinta(const EscenaVista& escena, double z, bool bInterpolar = true, double sombra = -1) {
    const RegistroGL registro;
    escena.glColorTintaHipsometrica(z, bInterpolar, sombra);
    const auto colores = registro.Numeros("glColor3f");
    EXPECT_EQ(colores.size(), 1U);
    std::vector<int> canales;
    for (const double v : colores.at(0))
        canales.push_back(static_cast<int>(std::lround(v * 255)));
    return canales;
}

using Canales = std::vector<int>;

EscenaVista& ConGama(EscenaVista& escena, const wchar_t* gama) {
    escena.m_Data.m_GamaColor = Vertiz::CDataGamaColor(gama);
    return escena;
}

}  // namespace

TEST(TintaHipsometrica, WithFewerThanTwoStopsEverythingIsBlack) {
    EscenaVista escena;
    EXPECT_EQ(Tinta(escena, 5), (Canales{0, 0, 0}));
    EXPECT_EQ(Tinta(ConGama(escena, L"10 200 100 50"), 5), (Canales{0, 0, 0}));
}

TEST(TintaHipsometrica, AtAndAboveTheLastStopIsBlack) {
    EscenaVista escena;
    ConGama(escena, L"0 200 100 50;10 100 200 250;20 10 20 30");
    EXPECT_EQ(Tinta(escena, 19.999), (Canales{10, 20, 30}));
    EXPECT_EQ(Tinta(escena, 20), (Canales{0, 0, 0}));
    EXPECT_EQ(Tinta(escena, 1e9, false), (Canales{0, 0, 0}));
    EXPECT_EQ(Tinta(escena, 20, true, 1.0), (Canales{255, 255, 255})) << "shading still lightens it";
}

TEST(TintaHipsometrica, BetweenStopsChannelsAreInterpolatedAndRoundedOrTakenFromTheLowerOne) {
    EscenaVista escena;
    ConGama(escena, L"0 200 100 50;10 100 200 251;20 10 20 30");
    EXPECT_EQ(Tinta(escena, 0), (Canales{200, 100, 50}));
    EXPECT_EQ(Tinta(escena, 5), (Canales{150, 150, 151})) << "150.5 + 0.5";
    EXPECT_EQ(Tinta(escena, 10), (Canales{100, 200, 251}));
    EXPECT_EQ(Tinta(escena, 15, false), (Canales{100, 200, 251}));
    EXPECT_EQ(Tinta(escena, 9.99, false), (Canales{200, 100, 50}));
}

TEST(TintaHipsometrica, BelowTheFirstStopChannelsRunOnAndWrap) {
    EscenaVista escena;
    ConGama(escena, L"0 200 100 50;10 100 200 250");
    // t = -1: 300, 0 and -150 (truncated from -149.5 to -149), of which the low bytes count.
    EXPECT_EQ(Tinta(escena, -10), (Canales{300 - 256, 0, 256 - 149}));
    EXPECT_EQ(Tinta(escena, -10, false), (Canales{200, 100, 50}));
    EXPECT_EQ(Tinta(escena, -1e300).size(), 3U) << "no integer holds these";
}

TEST(TintaHipsometrica, ShadingGoesFromBlackOverTheColourToWhite) {
    EscenaVista escena;
    ConGama(escena, L"0 200 100 51;10 200 100 51");
    EXPECT_EQ(Tinta(escena, 5, true, 0.5), (Canales{200, 100, 51}));
    EXPECT_EQ(Tinta(escena, 5, true, 0.0), (Canales{0, 0, 0}));
    EXPECT_EQ(Tinta(escena, 5, true, 1.0), (Canales{255, 255, 255}));
    EXPECT_EQ(Tinta(escena, 5, true, 0.25), (Canales{100, 50, 26})) << "25.5 + 0.5";
    EXPECT_EQ(Tinta(escena, 5, true, 0.75), (Canales{227, 177, 153})) << "the fraction is cut";
    EXPECT_EQ(Tinta(escena, 5, true, -0.1), (Canales{200, 100, 51}));
}
