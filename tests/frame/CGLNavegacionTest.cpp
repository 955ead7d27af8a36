// Zoom, pan, turn and fit: what each does to camera and projection.

#include "EscenaVista.h"
#include "support/RegistroGL.h"

#include <cmath>
#include <limits>
#include <numbers>

using Punto = EscenaPrueba::Punto;
using Maximas = EscenaPrueba::Maximas;

namespace {

/// A box of 100 x 100 x 50, seen straight down in a window of 200 x 150: 150 pixels to a GL unit.
class ConNavegacion : public testing::Test {
  protected:
    void SetUp() override {
        m_Escena.SetPlanoFondo(4);
        ASSERT_TRUE(m_Escena.Monta(m_Tela, 200, 150));
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    void EnPerspectiva() {
        m_Escena.SetOrtogonal(0);
        ASSERT_EQ(m_Escena.Resize(200, 150), 1);
        m_Escena.OnZoomExtension();
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    /// The eye in the middle of the box, looking down at its floor.
    void EnEsfera() {
        m_Escena.SetTipo(8);
        ASSERT_EQ(m_Escena.Resize(200, 150), 1);
        m_Escena.OnZoomExtension();
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    /// How much wider things got in a call that zooms.
    template <class Accion>
    double Ampliacion(Accion accion) {
        const double antes = MatrizDe(m_Escena, GL_PROJECTION_MATRIX)[5];
        accion();
        return MatrizDe(m_Escena, GL_PROJECTION_MATRIX)[5] / antes;
    }
    CPoint Pixel(const Punto& terreno) {
        CPoint pt;
        EXPECT_EQ(m_Escena.TerrenoAPantalla(pt, terreno, nullptr, false), 1);
        return pt;
    }

    Tela m_Tela{200, 150};
    EscenaVista m_Escena;
};

double FactorDe(double paso) {
    return 0.5 * std::abs(std::log10(paso)) * 1.2;
}

}  // namespace

// ---- Zoom by steps -------------------------------------------------------------------------------------------------

TEST_F(ConNavegacion, InPerspectiveAZoomMovesTheCamera) {
    EnPerspectiva();
    const auto avance = [&](auto accion) {
        const Punto antes = m_Escena.m_Camara.Position();
        accion();
        return antes.y - m_Escena.m_Camara.Position().y;
    };
    EXPECT_NEAR(avance([&] { m_Escena.OnZoomIn(0); }), 0.2, 1e-12) << "the speed of 0.125 is raised to the least step";
    m_Escena.m_Data.m_fVelocidad = 0.5F;
    EXPECT_NEAR(avance([&] { m_Escena.OnZoomIn(0); }), 0.5, 1e-12);
    EXPECT_NEAR(avance([&] { m_Escena.OnZoomIn(1.0); }), 1.0, 1e-12);
    EXPECT_NEAR(avance([&] { m_Escena.OnZoomIn(-0.7); }), 0.7, 1e-12);
    EXPECT_NEAR(avance([&] { m_Escena.OnZoomOut(0.7); }), -0.7, 1e-12);
    EXPECT_NEAR(avance([&] { m_Escena.OnZoomOut(0.01); }), -0.2, 1e-12);
}

TEST_F(ConNavegacion, AnOrthographicZoomMultipliesTheProjection) {
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomIn(10.0); }), 1 / 1.2, 1e-6) << "a step of 10 isn't halved";
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomOut(10.0); }), 1.2, 1e-6);
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomIn(0); }), 1 / FactorDe(0.2), 1e-5);
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomOut(-3.0); }), FactorDe(3), 1e-6);
    const Punto ojo = m_Escena.m_Camara.Position();
    m_Escena.OnZoomIn(3);
    EXPECT_EQ(m_Escena.m_Camara.Position(), ojo);
}

TEST_F(ConNavegacion, AStepOfOneDoesNothingInAnOrthographicView) {
    const double zoom = m_Escena.m_dZoom;
    EXPECT_EQ(Ampliacion([&] { m_Escena.OnZoomIn(1.0); }), 1.0);
    EXPECT_EQ(Ampliacion([&] { m_Escena.OnZoomOut(-1.0); }), 1.0);
    EXPECT_EQ(m_Escena.m_dZoom, zoom);
}

TEST_F(ConNavegacion, TheAccumulatedZoomIsKeptWithTheFactorInSinglePrecision) {
    m_Escena.m_dZoom = 1.0;
    m_Escena.OnZoomIn(10.0);
    EXPECT_EQ(m_Escena.m_dZoom, 1.0 / 1.2F);
    EXPECT_NE(m_Escena.m_dZoom, 1.0 / 1.2);
    m_Escena.m_dZoom = 1.0;
    m_Escena.OnZoomOut(10.0);
    EXPECT_EQ(m_Escena.m_dZoom, static_cast<double>(1.2F));
}

TEST_F(ConNavegacion, ASphericalSceneZoomsByItsProjection) {
    m_Escena.SetTipo(8);
    const Punto ojo = m_Escena.m_Camara.Position();
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomOut(10.0); }), 1.2, 1e-6);
    EXPECT_EQ(m_Escena.m_Camara.Position(), ojo);
}

TEST_F(ConNavegacion, TheZoomIsOneInPerspectiveWhateverIsKept) {
    m_Escena.m_dZoom = 3;
    EXPECT_EQ(m_Escena.GetZoom(), 3);
    EXPECT_NEAR(Ampliacion([&] { m_Escena.SetZoom(6); }), 2.0, 1e-6);
    EXPECT_EQ(m_Escena.GetZoom(), 6);
    m_Escena.SetOrtogonal(0);
    EXPECT_EQ(m_Escena.GetZoom(), 1.0);
    EXPECT_EQ(Ampliacion([&] { m_Escena.SetZoom(12); }), 1.0);
    EXPECT_EQ(m_Escena.m_dZoom, 6);
}

TEST_F(ConNavegacion, AZoomThatNothingLeadsBackFromIsRefused) {
    m_Escena.m_dZoom = 3;
    for (const double zoom : {0.0, std::numeric_limits<double>::infinity(), std::nan("")}) {
        EXPECT_EQ(Ampliacion([&] { m_Escena.SetZoom(zoom); }), 1.0);
        EXPECT_EQ(m_Escena.GetZoom(), 3);
    }
}

TEST_F(ConNavegacion, AZoomAtAPixelBringsItsPointToTheMiddle) {
    const CPoint pt = Pixel(Punto(80, 30, 0));
    const Punto gl = m_Escena.EnGL(Punto(80, 30, 0));
    const Punto r = m_Escena.OnZoomCentrado(pt);
    EsperaCerca(r, gl, 1e-3);
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(Pixel(Punto(80, 30, 0)), CPoint(100, 75));
    EsperaCerca(m_Escena.m_Camara.UpVector(), Punto(0, 0, -1), 1e-12);
    const CPoint otro = Pixel(Punto(60, 40, 0));
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomOut(otro, 10.0); }), 1.2, 1e-6);
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(Pixel(Punto(60, 40, 0)), CPoint(100, 75));
}

// ---- Windows -------------------------------------------------------------------------------------------------------

TEST_F(ConNavegacion, ARectangleFillsAnOrthographicWindow) {
    const CPoint a = Pixel(Punto(20, 70, 0)), b = Pixel(Punto(60, 40, 0));
    const double zoom = 150.0 / (b.y - a.y);
    m_Escena.m_dZoom = 3;
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(a.y, b.y, a.x, b.x); }), zoom, 1e-5);
    EXPECT_DOUBLE_EQ(m_Escena.m_dZoom, zoom) << "replaced, not multiplied";
    ASSERT_EQ(m_Escena.Render(), 1);
    // The rectangle's middle is a whole pixel: half of one, enlarged, is what may be missed.
    EXPECT_NEAR(Pixel(Punto(20, 70, 0)).y, 0, 0.5 * zoom + 1);
    EXPECT_NEAR(Pixel(Punto(60, 40, 0)).y, 150, 0.5 * zoom + 1);
}

TEST_F(ConNavegacion, ARectangleFillsTheWindowByItsLongerSideAndTheZoomKeptIsItsOwn) {
    m_Escena.m_dZoom = 3;
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(60, 90, 20, 180); }), 200.0 / 160, 1e-5);
    EXPECT_DOUBLE_EQ(m_Escena.GetZoom(), 200.0 / 160);
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(25, 125, 90, 110); }), 150.0 / 100, 1e-5);
    EXPECT_DOUBLE_EQ(m_Escena.GetZoom(), 150.0 / 100);
    const FallaGL falla("glMatrixMode", 1);
    m_Escena.OnZoomVentana(60, 90, 20, 180);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_DOUBLE_EQ(m_Escena.GetZoom(), 150.0 / 100) << "what failed isn't kept";
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConNavegacion, AnEmptyRectangleIsIgnored) {
    const Punto ojo = m_Escena.m_Camara.Position();
    EXPECT_EQ(Ampliacion([&] { m_Escena.OnZoomVentana(10, 60, 50, 50); }), 1.0);
    EXPECT_EQ(Ampliacion([&] { m_Escena.OnZoomVentana(60, 60, 50, 90); }), 1.0);
    EXPECT_EQ(m_Escena.m_Camara.Position(), ojo);
}

TEST_F(ConNavegacion, ARectangleMayBeDrawnFromAnyCorner) {
    const auto vista = [&](int arriba, int abajo, int izquierda, int derecha) {
        m_Escena.OnZoomExtension();
        EXPECT_EQ(m_Escena.Render(), 1);
        m_Escena.OnZoomVentana(arriba, abajo, izquierda, derecha);
        EXPECT_DOUBLE_EQ(m_Escena.GetZoom(), 200.0 / 60);
        return m_Escena.GetTrans();
    };
    const Punto esperada = vista(30, 70, 40, 100);
    EsperaCerca(vista(70, 30, 40, 100), esperada, 1e-6);
    EsperaCerca(vista(30, 70, 100, 40), esperada, 1e-6);
    EsperaCerca(vista(70, 30, 100, 40), esperada, 1e-6);
}

TEST_F(ConNavegacion, InPerspectiveARectangleBringsTheCameraNearer) {
    EnPerspectiva();
    const Punto suelo = m_Escena.EnGL(Punto(50, 50, 0));
    const double antes = m_Escena.m_Camara.Position().Distancia(suelo, 1);
    const double zoom = m_Escena.m_dZoom;
    m_Escena.OnZoomVentana(75 - 30, 75 + 30, 100 - 40, 100 + 40);
    EXPECT_EQ(m_Escena.m_dZoom, zoom);
    EXPECT_NEAR(m_Escena.m_Camara.Position().Distancia(suelo, 1), antes / 2.5, antes * 0.02);
}

TEST_F(ConNavegacion, ABoxFillsTheWindowBarOneStep) {
    const double z = 150.0 / 75.0;
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(Maximas(Punto(25, 25, 0), Punto(75, 75, 50))); }),
                z * FactorDe(0.2), 1e-3);
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_NEAR(Pixel(Punto(50, 50, 0)).x, 100, 1);
    EXPECT_NEAR(Pixel(Punto(50, 50, 0)).y, 75, 1);
}

TEST_F(ConNavegacion, ABoxOfOnePixelIsWidenedFirst) {
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(Maximas(Punto(50, 50, 10), Punto(50, 50, 10))); }),
                150.0 / 2 * FactorDe(0.2), 0.05);
}

TEST_F(ConNavegacion, InASphereTheViewTurnsToTheBoxAndZoomsUntilItNoLongerFits) {
    m_Escena.SetTipo(8);
    ASSERT_EQ(m_Escena.Resize(200, 150), 1);
    m_Escena.OnZoomExtension();
    ASSERT_EQ(m_Escena.Render(), 1);
    const Punto ojo = m_Escena.m_Camara.Position();
    const int dibujados = m_Escena.m_nDibujados;
    const Maximas caja(Punto(49, 49, 0), Punto(51, 51, 0));
    m_Escena.OnZoomVentana(caja);
    EXPECT_EQ(m_Escena.m_nDibujados, dibujados + 1);
    EXPECT_EQ(m_Escena.m_Camara.Position(), ojo);
    EsperaCerca(m_Escena.m_Camara.View(), m_Escena.EnGL(Punto(50, 50, 0)), 1e-12);
    const CPoint a = Pixel(Punto(49, 49, 0)), b = Pixel(Punto(51, 51, 0));
    EXPECT_TRUE(a.x >= 0 && a.y <= 150 && b.x <= 200 && b.y >= 0) << "just inside";
    m_Escena.OnZoomIn(0);
    const CPoint c = Pixel(Punto(49, 49, 0)), d = Pixel(Punto(51, 51, 0));
    EXPECT_FALSE(c.x >= 0 && c.y <= 150 && d.x <= 200 && d.y >= 0) << "one step more and it is out";
}

TEST_F(ConNavegacion, InASphereAStepThatDoesNotZoomInEndsAtOnce) {
    EnEsfera();
    const Maximas caja(Punto(49, 49, 0), Punto(51, 51, 0));
    m_Escena.m_Data.m_fVelocidad = 1.0F;  // a step that zooms by nothing
    EXPECT_EQ(Ampliacion([&] { m_Escena.OnZoomVentana(caja); }), 1.0);
    m_Escena.m_Data.m_fVelocidad = 10.0F;  // one that zooms out
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(caja); }), 1.0, 1e-6) << "and is taken back";
}

TEST_F(ConNavegacion, InASphereAPointIsZoomedAtForAHundredRoundsAtMost) {
    EnEsfera();
    m_Escena.m_Data.m_fVelocidad = 7.5F;  // 1 / (0.4375 * 1.2): rounds of about 1.9
    const RegistroGL registro;
    m_Escena.OnZoomVentana(Maximas(Punto(50, 50, 0), Punto(50, 50, 0)));
    EXPECT_LE(registro.Cuenta("glMultMatrixd"), 101U);
    EXPECT_GE(registro.Cuenta("glMultMatrixd"), 10U);
}

TEST_F(ConNavegacion, InASphereABoxThatHasNoPixelsEndsAtOnce) {
    EnEsfera();
    m_Escena.m_DataTransformacion = Esfera(Punto(0, 0, 0));
    m_Escena.m_dDistanciaEsferica = 1;
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(Maximas(Punto(49, 49, 0), Punto(51, 51, 0))); }), FactorDe(0.2),
                1e-6);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConNavegacion, InASphereABoxRoundTheEyeKeepsTheView) {
    EnEsfera();
    const Punto vista = m_Escena.GetTrans();
    m_Escena.OnZoomVentana(Maximas(Punto(0, 0, 0), Punto(100, 100, 50)));
    EXPECT_EQ(m_Escena.GetTrans(), vista);
    EXPECT_NE(vista, m_Escena.m_Camara.Position());
}

TEST_F(ConNavegacion, InASphereCentringAndRectanglesLeaveTheEyeWhereItIs) {
    EnEsfera();
    const Punto vista = m_Escena.GetTrans();
    Punto medio;
    ASSERT_EQ(m_Escena.PantallaATerreno(CPoint(100, 75), medio, true, false, false), 1);
    ASSERT_GT(vista.Distancia(medio, 1), 0.1) << "the target lies behind the floor";
    const Punto r = m_Escena.OnZoomCentrado(Pixel(Punto(60, 45, 0)));
    EsperaCerca(m_Escena.GetTrans(), vista - (medio - r), 1e-12);
    EXPECT_EQ(m_Escena.m_Camara.Position(), Punto(0, 0, 0));
    // With the target on the floor the point comes to the middle.
    m_Escena.m_Camara.PositionCamera(Punto(0, 0, 0), medio, m_Escena.m_Camara.UpVector());
    ASSERT_EQ(m_Escena.Render(), 1);
    m_Escena.OnZoomCentrado(Pixel(Punto(60, 45, 0)));
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_NEAR(Pixel(Punto(60, 45, 0)).x, 100, 1);
    EXPECT_NEAR(Pixel(Punto(60, 45, 0)).y, 75, 1);
    m_Escena.m_dZoom = 3;
    EXPECT_NEAR(Ampliacion([&] { m_Escena.OnZoomVentana(60, 90, 80, 120); }), 200.0 / 40, 1e-5);
    EXPECT_DOUBLE_EQ(m_Escena.m_dZoom, 200.0 / 40);
    EXPECT_EQ(m_Escena.m_Camara.Position(), Punto(0, 0, 0));
}

// ---- Fit -----------------------------------------------------------------------------------------------------------

TEST_F(ConNavegacion, FittingFillsTheWindowAndBringsTheTargetToTheMiddle) {
    m_Escena.SumaTrans(Punto(0.3, 0.1, -0.2));
    m_Escena.OnZoomExtension();
    m_Escena.m_dZoom = 3;
    m_Escena.OnZoomExtension();
    EXPECT_NEAR(m_Escena.m_dZoom, 1.0, 1e-3) << "what this fit zoomed by, not what had been";
    ASSERT_EQ(m_Escena.Render(), 1);
    EsperaCerca(m_Escena.m_Camara.View(), Punto(0, 0, 0), 1e-12);
    EsperaCerca(m_Escena.m_Camara.Position(), Punto(0, 1, 0), 1e-12);
    EXPECT_EQ(Pixel(Punto(0, 0, 0)), CPoint(25, 150));
    EXPECT_EQ(Pixel(Punto(100, 100, 0)), CPoint(175, 0));
    EXPECT_TRUE(m_Escena.HayMaximas());
}

TEST_F(ConNavegacion, FittingInPerspectiveBacksOffByTheWholeAngle) {
    m_Escena.SetOrtogonal(0);
    ASSERT_EQ(m_Escena.Resize(200, 150), 1);
    m_Escena.OnZoomExtension();
    const double radio = std::sqrt(0.5 * 0.5 + 0.5 * 0.5 + 0.25 * 0.25);
    const double distancia = 2 * radio / std::tan(45 * std::numbers::pi / 180);
    EsperaCerca(m_Escena.m_Camara.Position(), Punto(0, distancia, 0), 1e-9);
    EsperaCerca(m_Escena.m_Camara.View(), Punto(0, distancia - 1, 0), 1e-9);
}

TEST_F(ConNavegacion, ASphericalSceneIsFittedWithTheEyeAtItsCentre) {
    m_Escena.SetTipo(8);
    m_Escena.m_Camara.PositionCamera(Punto(1, 1, 1), Punto(1, 1, 0), Punto(0, 1, 0));
    m_Escena.OnZoomExtension();
    EsperaCerca(m_Escena.m_Camara.Position(), Punto(0, 0, 0), 0);
    EsperaCerca(m_Escena.m_Camara.View(), Punto(1, 1, 0), 0);
    m_Escena.m_Camara.PositionCamera(Punto(0, 0, 2), Punto(0, 0, 0), Punto(0, 1, 0));
    m_Escena.OnZoomExtension();
    EsperaCerca(m_Escena.m_Camara.View(), Punto(0, 0, -2), 0);  // not the eye: it goes on looking where it did
}

TEST_F(ConNavegacion, OneBoxTwiceCompilesAtMostOnce) {
    const int antes = m_Escena.m_nIniciados;
    const Maximas caja(Punto(0, 0, 0), Punto(300, 200, 10));
    m_Escena.ZoomExtension(caja);
    m_Escena.ZoomExtension(caja);
    EXPECT_EQ(m_Escena.m_nIniciados, antes + 1);
}

TEST_F(ConNavegacion, AnEmptyBoxIsASpaceOfTwoThousand) {
    m_Escena.m_nHayCaja = 0;
    m_Escena.m_Caja = Maximas();
    m_Escena.OnZoomExtension();
    EXPECT_EQ(m_Escena.m_Maximas, Maximas(Punto(0, 0, 0), Punto(2000, 2000, 0)));
    EXPECT_FALSE(m_Escena.HayMaximas());
    EXPECT_DOUBLE_EQ(m_Escena.m_dFactor, 1.0 / 2000);
    m_Escena.ZoomExtension(Maximas(Punto(0, 0, 0), Punto(1, 1, 1)));
    EXPECT_TRUE(m_Escena.HayMaximas());
}

TEST_F(ConNavegacion, AModelThatCannotBeCompiledEndsTheFit) {
    m_Escena.SetEscala(5);
    m_Escena.SumaTrans(Punto(0.3, 0, 0));
    const FallaGL falla("glColor3f", 1);
    m_Escena.OnZoomIn(3);
    EXPECT_EQ(Ampliacion([&] { m_Escena.ZoomExtension(Maximas(Punto(0, 0, 0), Punto(7, 7, 7))); }), 1.0);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_EQ(m_Escena.GetEscala(), 1.0F);
    EXPECT_EQ(m_Escena.GetTrans(), Punto(0.3, 0, 0)) << "the view stays";
}

TEST(CGLAjusteSinVentana, WithoutAWindowSizeOnlyTheSpaceIsBuilt) {
    EscenaVista escena;
    escena.OnZoomExtension();
    EXPECT_EQ(escena.m_Maximas, escena.m_Caja);
    EXPECT_FALSE(escena.HayMaximas());
}

TEST_F(ConNavegacion, PartsAreFittedOnlyWhenTheyAreThere) {
    const Maximas antes = m_Escena.m_Maximas;
    m_Escena.OnZoomExtensionSeleccion();
    m_Escena.OnZoomExtensionReferencia();
    m_Escena.m_nHayCaja = 0;
    m_Escena.m_Caja = Maximas(Punto(0, 0, 0), Punto(7, 7, 7));
    m_Escena.OnZoomExtensionObjeto();
    EXPECT_EQ(m_Escena.m_Maximas, antes);
    m_Escena.m_CajaSeleccion = Maximas(Punto(1, 1, 1), Punto(2, 2, 2));
    m_Escena.OnZoomExtensionSeleccion();
    EXPECT_EQ(m_Escena.m_Maximas, m_Escena.m_CajaSeleccion);
    m_Escena.m_nHayCaja = 1;
    m_Escena.OnZoomExtensionObjeto();
    EXPECT_EQ(m_Escena.m_Maximas, m_Escena.m_Caja);
    auto* referencia = new EscenaVista;
    referencia->m_Caja = Maximas(Punto(5, 5, 5), Punto(9, 9, 9));
    m_Escena.ReferenciaNuevo(referencia);
    m_Escena.OnZoomExtensionReferencia();
    EXPECT_EQ(m_Escena.m_Maximas, referencia->m_Caja);
}

// ---- Turning -------------------------------------------------------------------------------------------------------

TEST_F(ConNavegacion, TurningGoesRoundTheTargetOrTheEye) {
    for (const int bVista : {1, 0}) {
        m_Escena.m_Camara.PositionCamera(Punto(0, 1, 0), Punto(0, 0, 0), Punto(0, 0, -1));
        ASSERT_EQ(m_Escena.Render(), 1);
        for (void (CGL::*gira)(double, int, Punto*) : {&CGL::SumaAnguloX, &CGL::SumaAnguloY, &CGL::SumaAnguloZ}) {
            const CCamera antes = m_Escena.GetCamara();
            (m_Escena.*gira)(15, bVista, nullptr);
            const CCamera& despues = m_Escena.m_Camara;
            EsperaCerca(bVista ? despues.View() : despues.Position(), bVista ? antes.View() : antes.Position(), 1e-5);
            EXPECT_NEAR(despues.Position().Distancia(despues.View(), 1), 1.0, 1e-5);
        }
        EXPECT_GT(m_Escena.m_Camara.UpVector().Distancia(Punto(0, 0, -1), 1), 0.1);
    }
}

TEST_F(ConNavegacion, EachTurnHasItsAxis) {
    const auto eje = [&](auto gira) {
        m_Escena.m_Camara.PositionCamera(Punto(0, 1, 0), Punto(0, 0, 0), Punto(0, 0, -1));
        EXPECT_EQ(m_Escena.Render(), 1);
        const RegistroGL registro;
        gira();
        return registro.Numeros("glRotated").at(0);
    };
    using V = std::vector<double>;
    EXPECT_EQ(eje([&] { m_Escena.SumaAnguloX(10, 1, nullptr); }), (V{-10, 1, 0, 0}));
    EXPECT_EQ(eje([&] { m_Escena.SumaAnguloY(10, 1, nullptr); }), (V{-10, 0, -1, 0}));
    EXPECT_EQ(eje([&] { m_Escena.SumaAnguloZ(10, 1, nullptr); }), (V{-10, 0, 0, -1}));
    EXPECT_EQ(eje([&] { m_Escena.AumentaAnguloX(1, nullptr); })[0], -5);
    EXPECT_EQ(eje([&] { m_Escena.ReduceAnguloX(1, nullptr); })[0], 5);
    EXPECT_EQ(eje([&] { m_Escena.AumentaAnguloZ(1, nullptr); }), (V{-5, 0, 0, -1}));
    EXPECT_EQ(eje([&] { m_Escena.SetAnguloX(25, 1); })[0], -25);
}

TEST_F(ConNavegacion, InASphereATurnIsAlwaysRoundTheEye) {
    EnEsfera();
    Punto pivote(0.1, -0.25, 0.1);
    for (Punto* p : {static_cast<Punto*>(nullptr), &pivote}) {
        m_Escena.SumaAnguloX(10, 1, p);
        EsperaCerca(m_Escena.m_Camara.Position(), Punto(0, 0, 0), 1e-5);
        ASSERT_EQ(m_Escena.Render(), 1);
    }
}

TEST_F(ConNavegacion, AnAngleIsSetByTheDifferenceToThePresentOne) {
    m_Escena.SetAngulos(10, 0, 0);
    ASSERT_EQ(m_Escena.Render(), 1);
    const RegistroGL registro;
    m_Escena.SetAnguloX(25, 1);
    EXPECT_NEAR(registro.Numeros("glRotated").at(0)[0], -15, 1e-5);
}

TEST_F(ConNavegacion, APivotKeepsItsPixel) {
    Punto pivote = m_Escena.EnGL(Punto(70, 40, 0));
    const CPoint antes = Pixel(Punto(70, 40, 0));
    m_Escena.SumaAnguloY(20, 1, &pivote);
    ASSERT_EQ(m_Escena.Render(), 1);
    const CPoint despues = Pixel(Punto(70, 40, 0));
    EXPECT_NEAR(despues.x, antes.x, 1);
    EXPECT_NEAR(despues.y, antes.y, 1);
}

// ---- Panning -------------------------------------------------------------------------------------------------------

TEST_F(ConNavegacion, APanMovesByPixelsOfTheModel) {
    const auto paso = [&](auto accion) {
        m_Escena.m_Camara.PositionCamera(Punto(0, 1, 0), Punto(0, 0, 0), Punto(0, 0, -1));
        EXPECT_EQ(m_Escena.Render(), 1);
        accion();
        EsperaCerca(m_Escena.m_Camara.View(), m_Escena.m_Camara.Position() - Punto(0, 1, 0), 1e-9);
        EXPECT_EQ(m_Escena.GetTrans(), m_Escena.m_Camara.View());
        return m_Escena.GetTrans();
    };
    const double diez = 10.0 / 150;
    EsperaCerca(paso([&] { m_Escena.AumentaXTrans(); }), Punto(diez, 0, 0), 1e-4);
    EsperaCerca(paso([&] { m_Escena.ReduceXTrans(); }), Punto(-diez, 0, 0), 1e-4);
    EsperaCerca(paso([&] { m_Escena.AumentaZTrans(); }), Punto(0, 0, -diez), 1e-4);
    EsperaCerca(paso([&] { m_Escena.ReduceZTrans(); }), Punto(0, 0, diez), 1e-4);
    EsperaCerca(paso([&] { m_Escena.SumaTrans(Punto(0.1, 0.2, 0.3)); }), Punto(0.1, 0.2, 0.3), 1e-12);
    EsperaCerca(paso([&] { m_Escena.SumaXTrans(0.25); }), Punto(0.25, 0, 0), 1e-9);
}

TEST_F(ConNavegacion, APanWithoutAPointUsesTheSizeOfAPixel) {
    m_Escena.m_bRayoHalla = false;
    {
        const FallaGL falla("glReadPixels", 1);
        m_Escena.AumentaXTrans();
        ASSERT_TRUE(falla.Ocurrida());
    }
    EsperaCerca(m_Escena.GetTrans(), Punto(10.0 / 200, 0, 0), 1e-9);
    m_Escena.SumaTrans(Punto(0, 0, 0.3));
    CCamera esperada = m_Escena.GetCamara();
    esperada.SumaZTrans(-10.0 / 200 + esperada.View().z);
    const FallaGL falla("glReadPixels", 1);
    m_Escena.ReduceZTrans();
    EsperaCerca(m_Escena.GetTrans(), esperada.View(), 1e-12);
}

TEST_F(ConNavegacion, APanWithoutAContextDoesNothing) {
    EscenaVista escena;
    escena.AumentaXTrans();
    escena.AumentaZTrans();
    EsperaCerca(escena.GetTrans(), Punto(0, 0, 0), 0);
}

TEST_F(ConNavegacion, ASphericalSceneNeverPans) {
    m_Escena.SetTipo(8);
    const Punto ojo = m_Escena.m_Camara.Position(), vista = m_Escena.m_Camara.View();
    m_Escena.AumentaXTrans();
    m_Escena.ReduceZTrans();
    m_Escena.SumaXTrans(1);
    m_Escena.SumaYTrans(1);
    m_Escena.SumaZTrans(1);
    m_Escena.SumaTrans(Punto(1, 1, 1));
    m_Escena.CompruebaCotaCamara();
    EXPECT_EQ(m_Escena.m_Camara.Position(), ojo);
    EXPECT_EQ(m_Escena.m_Camara.View(), vista);
}

TEST_F(ConNavegacion, TheTargetIsLaidOnTheModel) {
    m_Escena.CompruebaCotaCamara();
    EsperaCerca(m_Escena.m_Camara.View(), m_Escena.EnGL(Punto(50, 50, 0)), 1e-3);
    EsperaCerca(m_Escena.m_Camara.Position(), Punto(0, 1, 0), 1e-12);
}
