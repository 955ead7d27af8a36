// The panorama's scene: the order in which it is built, what a pass draws, and what it tells of its model.

#include "EscenaPanorama.h"

namespace {

using Vertiz::CGeoImagen;
using Coor = Vertiz::CCoor3D<double>;
using Maximas = Vertiz::CMaximas<double>;

// ---- Iniciar ---------------------------------------------------------------------------------------------------

// Notes what is asked for, in a group of scenes.
class EscenaConPasos : public EscenaPanorama {
  public:
    using EscenaPanorama::EscenaPanorama;
    using EscenaPanorama::operator=;
    int OnIniciar() override {
        m_pPasos->push_back("OnIniciar");
        return m_nFalla == 1 ? 0 : EscenaPanorama::OnIniciar();
    }
    int OnIniciarSeleccion() override {
        m_pPasos->push_back("OnIniciarSeleccion");
        return m_nFalla == 2 ? 0 : 1;
    }
    int OnIniciarLimites() override {
        m_pPasos->push_back("OnIniciarLimites");
        return m_nFalla == 3 ? 0 : 1;
    }
    EscenaPrueba::Pasos* m_pPasos = nullptr;  ///< outlives the group, whose scenes note their end too
    int m_nFalla = 0;
};

TEST_F(Esferica, IniciarBuildsInOrder) {
    EscenaPrueba::Pasos pasos;
    EscenaConPasos escena(new ImagenContada(new Foto(4, 2)), 1);
    escena.m_pPasos = &pasos;
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    auto* referencia = new EscenaPrueba(L"ref", &pasos);
    auto* vinculo = new EscenaPrueba(L"vin", &pasos);
    escena.ReferenciaNuevo(referencia);
    escena.VinculoNuevo(vinculo);
    escena.OnZoomExtension();
    const auto construye = [&] {
        pasos.clear();
        const int r = escena.Iniciar();
        wglMakeCurrent(nullptr, nullptr);
        return r;
    };
    EXPECT_EQ(construye(), 1);
    EXPECT_EQ(pasos, (EscenaPrueba::Pasos{"OnIniciar", "OnIniciarSeleccion", "ref.OnIniciar", "vin.OnIniciar"}));
    EXPECT_NE(escena.m_nListaEjes, 0u);
    escena.SetLimites(1);
    escena.SetReferencia(0);
    EXPECT_EQ(construye(), 1);
    EXPECT_EQ(pasos, (EscenaPrueba::Pasos{"OnIniciar", "OnIniciarSeleccion", "OnIniciarLimites", "vin.OnIniciar"}));
    escena.m_Data.m_bMaximasObjeto = 0;
    EXPECT_EQ(construye(), 1);
    EXPECT_EQ(pasos, (EscenaPrueba::Pasos{"OnIniciarSeleccion", "OnIniciarLimites", "vin.OnIniciar"}));
    for (const int falla : {2, 3}) {
        escena.m_nFalla = falla;
        EXPECT_EQ(construye(), 0);
    }
    escena.m_nFalla = 1;
    escena.m_Data.m_bMaximasObjeto = 1;
    EXPECT_EQ(construye(), 0);
    EXPECT_EQ(pasos, EscenaPrueba::Pasos{"OnIniciar"});
}

TEST_F(Esferica, IniciarSetsWidthsAndCompilesMarks) {
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    m_Escena.OnZoomExtension();
    m_Escena.m_Data.m_nGrosorPuntos = 3;
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glLineWidth", "glPointSize", "glDisable"}),
                    {"glLineWidth(3)", "glPointSize(3)", "glDisable(GL_LINE_SMOOTH)"});
    const std::size_t sinMarcas = registro.Listas().size();
    m_Escena.NuevaMarca(Vertiz::CTexto<double>());
    const RegistroGL* const otro = &registro;
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_GT(otro->Listas().size(), sinMarcas);
}

// ---- The pass --------------------------------------------------------------------------------------------------

TEST_F(Esferica, APassClearsTurnsTheSphereAndLeavesTexturesOff) {
    ASSERT_EQ(m_Escena.Monta(m_Tela), 1);
    CGeoImagen& imagen = *m_Escena.GetImagen();
    imagen.m_bDirecta = true;
    imagen.m_Correcciones[0] = 10.0;
    imagen.m_Correcciones[1] = 20.0;
    imagen.m_Correcciones[2] = 30.0;
    m_Escena.m_Data.m_nColorFondo = 0x0000FF;
    m_Escena.m_Data.m_nGrosorPuntos = 2;
    LlamadasGL cuadro = Cuadro();
    for (std::string& l : cuadro)
        if (l.starts_with("glCallList") || l.starts_with("gluLookAt")) l = l.substr(0, l.find('('));
    EXPECT_LLAMADAS(cuadro, {"glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)", "glMatrixMode(GL_MODELVIEW)",
                             "glLoadIdentity()", "gluLookAt", "glPointSize(2)", "glMatrixMode(GL_MODELVIEW)",
                             "glPushMatrix()", "glRotated(-90, 1, 0, 0)", "glRotated(10, 1, 0, 0)",
                             "glRotated(20, 0, 1, 0)", "glRotated(30, 0, 0, 1)", "glCallList", "glPopMatrix()",
                             "glClearColor(1, 0, 0, 0)", "glDisable(GL_TEXTURE_2D)"});
    EXPECT_NEAR(imagen.m_Resultados[0], 10.0, 1e-12);
    EXPECT_NEAR(imagen.m_Resultados[1], 20.0, 1e-12);
    EXPECT_NEAR(imagen.m_Resultados[2], 30.0, 1e-12);
    imagen.m_Correcciones[2] = 31.0;
    Cuadro();
    EXPECT_NEAR(imagen.m_Resultados[2], 31.0, 1e-12) << "the attitude may change between frames";
}

TEST_F(Esferica, ATallViewIsScaled) {
    ASSERT_EQ(m_Escena.Monta(m_Tela, 24, 48), 1);
    EXPECT_LLAMADAS(Solo(Cuadro(), {"glScaled"}), {"glScaled(0.5, 0.5, 0.5)"});
}

TEST_F(Esferica, LimitsShowWhileTheyAreSet) {
    ASSERT_EQ(m_Escena.Monta(m_Tela), 1);
    EXPECT_EQ(Solo(Cuadro(), {"glCallList"}).size(), 1u);
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    m_Escena.m_nListaLimites = glGenLists(1);
    glNewList(m_Escena.m_nListaLimites, GL_COMPILE);
    glEndList();
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(Solo(Cuadro(), {"glCallList"}).size(), 1u);
    m_Escena.SetLimites(1);
    const LlamadasGL cuadro = Solo(Cuadro(), {"glCallList", "glPointSize"});
    ASSERT_EQ(cuadro.size(), 3u);
    EXPECT_EQ(cuadro[0], "glCallList(" + std::to_string(m_Escena.m_nListaLimites) + ")");
}

TEST_F(Esferica, BeforeIniciarAPassDrawsTheBackgroundAlone) {
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    EXPECT_LLAMADAS(Solo(Cuadro(), {"glCallList", "glRotated", "glPushMatrix"}), {});
    EXPECT_EQ(m_Escena.GetImagen()->m_Resultados[0], 0.0);
}

TEST_F(Esferica, GLErrorsInAPassAreFailures) {
    ASSERT_EQ(m_Escena.Monta(m_Tela), 1);
    for (const char* llamada : {"glClear", "glMatrixMode", "glLoadIdentity", "glCallList", "glDisable"}) {
        ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
        GLint antes = 0, despues = 0;
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &antes);
        {
            const FallaGL falla(llamada, 1);
            EXPECT_EQ(m_Escena.OnRender(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida()) << llamada;
        }
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &despues);
        EXPECT_EQ(antes, despues) << llamada;
        EXPECT_EQ(m_Escena.OnRender(), 1) << "after " << llamada;
        wglMakeCurrent(nullptr, nullptr);
    }
}

TEST_F(Esferica, AsAReferenceItDrawsInItsParentsFrame) {
    EscenaPrueba padre;
    padre.SetEjes(0);
    ASSERT_EQ(padre.CreaEn(m_Tela), 1);
    auto* hija = new EscenaPanorama(new ImagenContada(new Foto(4, 2)), 1);
    padre.ReferenciaNuevo(hija);
    padre.m_Data.m_bMaximasObjeto = 0;  // a child is built all the same
    padre.OnZoomExtension();
    ASSERT_EQ(padre.Iniciar(), 1);
    ASSERT_EQ(padre.Resize(64, 48), 1);
    const RegistroGL registro;
    ASSERT_EQ(padre.Render(), 1);
    EXPECT_EQ(Solo(registro.Ejecutadas(), {"glClear"}).size(), 1u) << "the parent's";
    EXPECT_EQ(Solo(registro.Ejecutadas(), {"gluLookAt"}).size(), 1u);
    EXPECT_EQ(registro.Cuenta("glRotated"), 4u) << "the sphere is there";
    padre.Destruir();
    EXPECT_EQ(Foto::s_nVivas, 1) << "a child goes with its parent";
}

TEST_F(Esferica, AsABackgroundItTurnsWithTheCameraAlone) {
    ASSERT_EQ(m_Escena.Monta(m_Tela), 1);
    m_Escena.SetAnguloVista(50.0F);
    m_Escena.m_Camara.PositionCamera({0, 0, 0, 0}, {1, 0.2, -0.5, 0}, {0, 1, 0, 0});
    m_Escena.SetOrtogonal(0);
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    {
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.RenderConica(), 1);
        LlamadasGL llamadas = Sin(registro.Ejecutadas(), {"glGetIntegerv"});
        const auto giros = registro.Numeros("glRotated");
        ASSERT_EQ(giros.size(), 3u);
        EXPECT_EQ(giros[0], (std::vector<double>{m_Escena.GetAnguloY(), 0, 1, 0}));
        EXPECT_EQ(giros[1], (std::vector<double>{-m_Escena.GetAnguloZ(), 0, 0, 1}));
        EXPECT_EQ(giros[2], (std::vector<double>{-m_Escena.GetAnguloX(), 1, 0, 0}));
        for (std::string& l : llamadas)
            if (!l.starts_with("glMatrixMode")) l = l.substr(0, l.find('('));
        EXPECT_LLAMADAS(llamadas,
                        {"glMatrixMode(GL_MODELVIEW)", "glPushMatrix", "glLoadIdentity", "glMatrixMode(GL_PROJECTION)",
                         "glPushMatrix", "glLoadIdentity", "gluPerspective", "glScaled", "glRotated", "glRotated",
                         "glRotated", "glMatrixMode(GL_MODELVIEW)", "glCallList", "glMatrixMode(GL_PROJECTION)",
                         "glPopMatrix", "glMatrixMode(GL_MODELVIEW)", "glPopMatrix"});
    }
    m_Escena.SetOrtogonal(1);
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.RenderConica(), 1);
    EXPECT_EQ(registro.Cuenta("glOrtho"), 1u);
    EXPECT_EQ(registro.Cuenta("gluPerspective"), 0u);
    wglMakeCurrent(nullptr, nullptr);
}

// ---- The model -------------------------------------------------------------------------------------------------

TEST_F(Esferica, ItsExtentsAreTheImagesLessItsOrigin) {
    Vertiz::CDataImagen datos = ImagenContada::Panorama();
    datos.m_nTipo = Vertiz::CDataImagen::ABSOLUTA;
    datos.DataTrans().m_CentroProyeccion = {440100, 4480200, 650, 0};
    CGeoImagen imagen(new Foto(2, 1), datos, Vertiz::CDataSemilla(2, 440000, 4480000, 600));
    const EscenaPanorama escena(EscenaPanorama(), &imagen, 0);
    Maximas m;
    ASSERT_EQ(escena.GetMaximasObjeto(m), 1);
    EXPECT_EQ(m.Minima(), Coor(99.5, 199.5, 49.5));
    EXPECT_EQ(m.Maxima(), Coor(100.5, 200.5, 50.5));
    EXPECT_EQ(escena.DameSemilla(), imagen.GetSemilla());
    EXPECT_EQ(escena.Precision(), 100.0);
}

TEST_F(Esferica, NothingCanBeSelected) {
    Maximas m;
    m.Nuevo(Coor(1, 2, 3));
    const Maximas antes = m;
    EXPECT_EQ(m_Escena.GetMaximasSeleccion(m), 1);
    EXPECT_EQ(m, antes);
    Coor c(4, 5, 6);
    EXPECT_TRUE(m_Escena.DamePuntoSeleccion2(c, 0));
    EXPECT_EQ(c, Coor(4, 5, 6));
    EXPECT_EQ(m_Escena.OnIniciarSeleccion(), 1);
}

TEST_F(Esferica, SpheresOfEveryStyleCanBeDrawnByIt) {
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    m_Escena._gluSphere(2.0, 4, 2, GLU_SMOOTH, GLU_OUTSIDE, GLU_FILL, 0, 0.0, 180.0);
    m_Escena._gluSphere(2.0, 4, 2, GLU_NONE, GLU_OUTSIDE, GLU_SILHOUETTE, 0, 0.0, 180.0);
    EXPECT_LLAMADAS(
        Solo(registro.Todas(), {"glBegin"}),
        {"glBegin(GL_TRIANGLE_FAN)", "glBegin(GL_TRIANGLE_FAN)", "glBegin(GL_LINE_LOOP)", "glBegin(GL_LINE_STRIP)",
         "glBegin(GL_LINE_STRIP)", "glBegin(GL_LINE_STRIP)", "glBegin(GL_LINE_STRIP)"});
    wglMakeCurrent(nullptr, nullptr);
}

}  // namespace
