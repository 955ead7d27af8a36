// Between terrain and GL space: the box, the scale, the routes of photographs, orthoimages and spheres; the projection;
// the extents of a group.

#include "EscenaVista.h"
#include "support/RegistroGL.h"

#include <cmath>
#include <limits>

using Punto = EscenaPrueba::Punto;
using Maximas = EscenaPrueba::Maximas;

namespace {

constexpr double kExacto = 1e-12;

/// A scene whose GL space is built on its box, without any context.
class ConEspacio : public testing::Test {
  protected:
    void SetUp() override {
        m_Escena.m_Semilla.SetX(450);
        m_Escena.m_Semilla.SetY(550);
        m_Escena.m_Semilla.SetZ(3);
        m_Escena.EstableceMaxMin(m_Escena.m_Caja);
    }
    /// What lands at GL coordinates when nothing but the box and the scale has a say.
    Punto Directo(const Punto& q) const {
        const EscenaVista& e = m_Escena;
        const double f = e.m_dFactor;
        return {(q.x - e.m_Maximas.Minima().x - e.m_dRangoX / 2) * f,
                (q.z - e.m_Maximas.Minima().z - e.m_dRangoZ / 2) * f * e.m_fExageracionVertical,
                -(q.y - e.m_Maximas.Minima().y - e.m_dRangoY / 2) * f};
    }
    void HazHijo(int fondo) {
        m_Escena.m_bEsReferencia = 1;
        m_Escena.m_nTipoImagenFondo = fondo;
    }

    EscenaVista m_Escena;
};

/// A scene on a picture of 200 x 150, fitted and drawn.
class ConVista : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(m_Escena.Monta(m_Tela, 200, 150)); }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    Tela m_Tela{200, 150};
    EscenaVista m_Escena;
};

}  // namespace

// ---- The box of the GL space ---------------------------------------------------------------------------------------

TEST(CGLEspacio, TheFirstBoxIsNoChangeAndLaterOnesAreComparedToAMillionth) {
    EscenaVista escena;
    const Maximas caja(Punto(0, 0, 0), Punto(100, 100, 50));
    EXPECT_EQ(escena.EstableceMaxMin(caja), 0);
    EXPECT_EQ(escena.EstableceMaxMin(caja), 0);
    EXPECT_EQ(escena.EstableceMaxMin(Maximas(Punto(0, 0, 0), Punto(100, 100, 50 + 5e-8))), 0);
    for (const Maximas& otra :
         {Maximas(Punto(0, 0, 0), Punto(100, 100, 50 + 1e-6)), Maximas(Punto(0, 0, 0), Punto(100, 100 + 1e-6, 50)),
          Maximas(Punto(-1e-6, 0, 0), Punto(100, 100, 50))}) {
        escena.EstableceMaxMin(caja);
        EXPECT_EQ(escena.EstableceMaxMin(otra), 1);
        EXPECT_EQ(escena.m_Maximas, otra);
    }
}

TEST(CGLEspacio, AFlatModelHasARangeOfAHundredthAndAFiniteFactor) {
    EscenaVista escena;
    escena.EstableceMaxMin(Maximas(Punto(7, 7, 7), Punto(7, 7, 7)));
    EXPECT_EQ(escena.m_dRangoX, 0.01);
    EXPECT_EQ(escena.m_dRangoY, 0.01);
    EXPECT_EQ(escena.m_dRangoZ, 0.01);
    EXPECT_DOUBLE_EQ(escena.m_dFactor, 100.0);
}

TEST(CGLEspacio, AnEmptyBoxGivesTheSmallestRanges) {
    EscenaVista escena;
    escena.EstableceMaxMin(Maximas());
    EXPECT_EQ(escena.m_dRangoX, 0.01);
    EXPECT_TRUE(std::isfinite(escena.m_dFactor));
}

TEST(CGLEspacio, AChildKeepsItsBox) {
    EscenaVista escena;
    const Maximas caja(Punto(0, 0, 0), Punto(10, 10, 10));
    escena.EstableceMaxMin(caja);
    escena.m_bEsReferencia = 1;
    EXPECT_EQ(escena.EstableceMaxMin(Maximas(Punto(0, 0, 0), Punto(99, 99, 99))), 0);
    EXPECT_EQ(escena.m_Maximas, caja);
}

TEST(CGLEspacio, TheScaleComesFromXOrTheExaggeratedHeightAndNeverFromY) {
    EscenaVista escena;
    escena.EstableceMaxMin(Maximas(Punto(0, 0, 0), Punto(100, 4000, 50)));
    EXPECT_DOUBLE_EQ(escena.m_dFactor, 1.0 / 100);
    escena.SetExageracionVertical(4);
    EXPECT_EQ(escena.m_dFactor, static_cast<double>(static_cast<float>(1.0 / 200)));
    escena.EstableceMaxMin(Maximas(Punto(0, 0, 0), Punto(100, 4000, 75)));
    EXPECT_DOUBLE_EQ(escena.m_dFactor, 1.0 / 300) << "narrowed only where the exaggeration is set";
}

TEST(CGLEspacio, AnExaggerationThatCannotBeUndoneIsRefused) {
    EscenaVista escena;
    escena.SetExageracionVertical(3);
    escena.SetExageracionVertical(0);
    escena.SetExageracionVertical(std::numeric_limits<float>::infinity());
    EXPECT_EQ(escena.GetExageracionVertical(), 3.0F);
}

TEST(CGLEspacio, ExaggerationBeforeThereIsABoxLeavesTheScaleAtOne) {
    EscenaVista escena;
    escena.SetExageracionVertical(3);
    EXPECT_EQ(escena.m_dFactor, 1.0);
}

TEST(CGLEspacio, TheOriginIsTheLowestCorner) {
    EscenaVista escena;
    Punto c(9, 9, 9);
    EXPECT_EQ(escena.DameOrigen(c), 0);
    EXPECT_EQ(c, Punto(9, 9, 9));
    escena.EstableceMaxMin(Maximas(Punto(1, 2, 3), Punto(10, 10, 10)));
    EXPECT_EQ(escena.DameOrigen(c), 1);
    EXPECT_EQ(c, Punto(1, 2, 3));
}

// ---- Terrain to GL and back ----------------------------------------------------------------------------------------

TEST_F(ConEspacio, TheMiddleOfTheBoxIsTheOriginAndAxesGoXToXZToYAndYToMinusZ) {
    EsperaCerca(m_Escena.EnGL(Punto(50, 50, 25)), Punto(0, 0, 0), 0);
    EsperaCerca(m_Escena.EnGL(Punto(100, 50, 25)), Punto(0.5, 0, 0), kExacto);
    EsperaCerca(m_Escena.EnGL(Punto(50, 100, 25)), Punto(0, 0, -0.5), kExacto);
    EsperaCerca(m_Escena.EnGL(Punto(50, 50, 50)), Punto(0, 0.25, 0), kExacto);
    EsperaCerca(m_Escena.EnGL(Punto(5000, 2500, 2500), 1.0 / 100), Punto(0, -0, 0.25), kExacto);
}

TEST_F(ConEspacio, PointsComeBackAtAnyExaggerationAndScale) {
    for (const float exageracion : {0.1F, 1.0F, 2.5F, 40.0F})
        for (const double escala : {1.0, 0.01}) {
            m_Escena.SetExageracionVertical(exageracion);
            const Punto p(12.25 / escala, 83.5 / escala, 41.75 / escala);
            EsperaCerca(m_Escena.EnTerreno(m_Escena.EnGL(p, escala), escala), p, 1e-9 / escala);
        }
}

TEST_F(ConEspacio, ABoxAwayFromTheOriginTakesItsLowestCornerOffAndGivesItBack) {
    m_Escena.EstableceMaxMin(EscenaVista::Maximas(Punto(1000, 3000, 200), Punto(1200, 3050, 260)));
    m_Escena.SetExageracionVertical(2);
    for (const auto& [fondo, escala] : {std::pair(0, 1.0), {0, 0.01}, {3, 0.01}}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        const Punto p(1050 / escala, 3040 / escala, 245 / escala);
        EsperaCerca(m_Escena.EnGL(p, escala), Punto(-50.0 / 200, 15.0 * 2 / 200, -15.0 / 200), 1e-7);
        EsperaCerca(m_Escena.EnTerreno(m_Escena.EnGL(p, escala), escala), p, 1e-6 / escala);
    }
    m_Escena.m_nTipoImagenFondo = 0;
}

TEST_F(ConEspacio, AboveAPhotographPointsGoThroughItsTransformation) {
    m_Escena.m_DataTransformacion = FotoCenital(Punto(500, 600, 1000), 20.0);
    m_Escena.m_nTipoImagenFondo = 1;
    // With the seed the point is (510, 590, 13): 10 east, 10 south and 987 below the camera of focal length 100.
    const double imagen = 100.0 * 10 / 987;
    EsperaCerca(m_Escena.EnGL(Punto(60, 40, 10)), Directo(Punto(imagen, imagen, 13)), kExacto);
    EsperaCerca(m_Escena.EnTerreno(m_Escena.EnGL(Punto(60, 40, 10))), Punto(510, 590, 13), 1e-6);
    // Without a height the photograph's own plane counts.
    const double enPlano = 100.0 * 10 / 980;
    EsperaCerca(m_Escena.EnGL(Punto(60, 40, -9999 - 3)), Directo(Punto(enPlano, enPlano, 20)), kExacto);
    double x = 1, y = 2, z = 3;
    EXPECT_FALSE(m_Escena.TerrenoAGL(Punto(60, 40, 2000), x, y, z, 1.0, false)) << "behind the camera";
}

TEST_F(ConEspacio, ThePhotographsPlaneServesPointsLessThanOneAboveTheMarkOfNoHeight) {
    m_Escena.m_DataTransformacion = FotoCenital(Punto(500, 600, 1000), 20.0);
    m_Escena.m_nTipoImagenFondo = 1;
    m_Escena.m_nCotaRaster = 10;
    // The seed lies at 3.
    for (const auto& [cota, contada] : {std::pair(7.5, 20.0), std::pair(8.5, 11.5)}) {
        const double imagen = 100.0 * 10 / (1000 - contada);
        EsperaCerca(m_Escena.EnGL(Punto(60, 40, cota)), Directo(Punto(imagen, imagen, contada)), kExacto);
    }
}

TEST_F(ConEspacio, WhichScenesLieOnAPhotograph) {
    m_Escena.m_DataTransformacion = FotoCenital(Punto(500, 600, 1000));
    const Punto p(60, 40, 10);
    const Punto directo = Directo(p), porFoto = [&] {
        m_Escena.m_nTipoImagenFondo = 1;
        return m_Escena.EnGL(p);
    }();
    ASSERT_GT(porFoto.Distancia(directo, 1), 0.1);
    for (const int fondo : {0, 2, 5, 6}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        EsperaCerca(m_Escena.EnGL(p), directo, kExacto);
    }
    for (const int fondo : {0, 1, 3, 4, 6}) {
        HazHijo(fondo);
        EsperaCerca(m_Escena.EnGL(p), porFoto, kExacto);
    }
    for (const int fondo : {2, 5}) {
        HazHijo(fondo);
        EsperaCerca(m_Escena.EnGL(p), directo, kExacto);
    }
}

TEST_F(ConEspacio, TheWayBackFromAPhotographAlsoServesAChildUnderASphericalImage) {
    m_Escena.m_DataTransformacion = FotoCenital(Punto(500, 600, 1000));
    const Punto gl(0.1, 0.2, 0.3);
    m_Escena.m_nTipoImagenFondo = 0;
    const Punto directo = m_Escena.EnTerreno(gl);
    HazHijo(2);
    EsperaCerca(m_Escena.EnTerreno(gl), directo, kExacto);
    HazHijo(5);
    EXPECT_GT(m_Escena.EnTerreno(gl).Distancia(directo, 1), 1.0);
}

TEST_F(ConEspacio, ADrawingLiesOneUnitAboveAnOrthoimage) {
    const Punto suelo(10, 20, 0), alto(10, 20, 0.5);
    const auto espera = [&](int fondo, bool sobre) {
        EsperaCerca(m_Escena.EnGL(suelo), Directo(Punto(10, 20, sobre ? 1 : 0)), kExacto);
        EsperaCerca(m_Escena.EnGL(alto), Directo(alto), kExacto);
        EXPECT_EQ(m_Escena.m_nTipoImagenFondo, fondo);
    };
    for (const int fondo : {0, 1, 2, 3, 4, 5, 6}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        espera(fondo, fondo == 3);
    }
    for (const int fondo : {0, 1, 2, 3, 4, 5, 6}) {
        HazHijo(fondo);
        espera(fondo, fondo != 0 && fondo != 4 && fondo != 5);
    }
}

TEST_F(ConEspacio, RoundASphereCoordinatesStartAtItsCentreAndEndAtTheLargestDistance) {
    m_Escena.m_DataTransformacion = Esfera(Punto(460, 560, 5));
    // With the seed: (470, 580, 8), 10 east, 20 north and 3 above the centre.
    EsperaCerca(m_Escena.EnGL(Punto(20, 30, 5)), Punto(0.1, 0.03, -0.2), kExacto);
    const Punto lejos(10 + 80.5, 10, 2);
    double x = 0, y = 0, z = 0;
    EXPECT_FALSE(m_Escena.TerrenoAGL(lejos, x, y, z, 1.0, false));
    EXPECT_TRUE(m_Escena.TerrenoAGL(lejos, x, y, z, 1.0, true));
    EXPECT_TRUE(m_Escena.TerrenoAGL(Punto(10 + 79.5, 10, 2), x, y, z, 1.0, false));
    m_Escena.m_dDistanciaEsferica = 79;
    EXPECT_FALSE(m_Escena.TerrenoAGL(Punto(10 + 79.5, 10, 2), x, y, z, 1.0, false));
}

TEST_F(ConEspacio, TheWayBackFromASphereMultipliesByTheScale) {
    m_Escena.m_DataTransformacion = Esfera(Punto(460, 560, 5));
    EsperaCerca(m_Escena.EnTerreno(Punto(0.1, 0.03, -0.2)), Punto(470, 580, 8), 1e-9);
    EsperaCerca(m_Escena.EnTerreno(Punto(0.1, 0.03, -0.2), 10.0), Punto(4700, 5800, 80), 1e-9);
}

TEST_F(ConEspacio, AChildOfASphericalImageOnThePhotoRouteStandsAtTheSeed) {
    m_Escena.m_DataTransformacion = Esfera(Punto(460, 560, 5));
    HazHijo(0);
    EsperaCerca(m_Escena.EnGL(Punto(77, 88, 99)), Punto(-0.1, -0.02, 0.1), kExacto);
}

TEST_F(ConEspacio, AConicTransformationKeepsPointsAboveTheLowestHeight) {
    m_Escena.m_DataTransformacion = FotoCenital(Punto(500, 600, 1000));
    Punto sale;
    ASSERT_TRUE(m_Escena.TransformaConData(Punto(510, 590, -5), sale));
    EXPECT_EQ(sale.z, 1.0);
    ASSERT_TRUE(m_Escena.TransformaConData(Punto(510, 590, 0), sale));
    EXPECT_EQ(sale.z, 1.0);
    ASSERT_TRUE(m_Escena.TransformaConData(Punto(510, 590, 0.5), sale));
    EXPECT_EQ(sale.z, 0.5);
}

TEST_F(ConEspacio, AMapTransformationGoesFromTheTerrainToTheImage) {
    Vertiz::CDataTransformacion& data = m_Escena.m_DataTransformacion;
    data.m_nTipo = Vertiz::CDataTransformacion::AFIN_2D;
    data.m_Parametros = {1000, 2000, 2, 0, 0, -4};  // X = 1000 + 2 x, Y = 2000 - 4 y
    Punto sale;
    ASSERT_TRUE(m_Escena.TransformaConData(Punto(1010, 1960, 7), sale));
    EsperaCerca(sale, Punto(5, 10, 7), 1e-9);
    data.m_nTipo = Vertiz::CDataTransformacion::AFIN_3D;
    data.m_Parametros = {1000, 2000, 0, 2, 0, 0, 0, -4, 0, 0, 0, 10};
    ASSERT_TRUE(m_Escena.TransformaConData(Punto(1010, 1960, 70), sale));
    EsperaCerca(sale, Punto(5, 10, 7), 1e-9);
}

// ---- The transformation of an image --------------------------------------------------------------------------------

TEST(CGLTransformacion, IsHandedToTheChildrenUnlessThisSceneIsTheConicImageOrUnderASphere) {
    for (const int fondo : {0, 1, 2, 3, 4, 5, 6}) {
        EscenaVista padre;
        auto* referencia = new EscenaVista;
        auto* vinculo = new EscenaVista;
        padre.ReferenciaNuevo(referencia);
        padre.VinculoNuevo(vinculo);
        padre.m_nTipoImagenFondo = fondo;
        padre.SetDataTransformacion(FotoCenital(Punto(1, 2, 3)));
        EXPECT_EQ(padre.GetDataTransformacion().GetTipo(), 11);
        const int esperado = fondo == 2 || fondo == 5 ? 0 : 11;
        EXPECT_EQ(referencia->m_DataTransformacion.GetTipo(), esperado) << fondo;
        EXPECT_EQ(vinculo->m_DataTransformacion.GetTipo(), esperado) << fondo;
    }
}

TEST(CGLTransformacion, OfASphereTurnsTheCameraByItsRotation) {
    for (const int resta : {0, 1}) {
        EscenaVista escena;
        Vertiz::CDataTransformacion esfera = Esfera(Punto(0, 0, 0));
        esfera.SetAngulos(10, 20, 30);
        esfera.m_nResta180 = resta;
        escena.SetDataTransformacion(esfera);
        CCamera esperada;
        double ejes[16];
        esperada.AnglesToAxes(Punto(-20 - 90, -(10 + 180) + (resta ? 180 : 0), -(30 + 180)), ejes, 1);
        const Punto arriba = esperada.UpVector(), frente = esperada.View();
        esperada.PositionCamera(Punto(0, 0, 0), arriba, frente);
        EsperaCerca(escena.m_Camara.Position(), Punto(0, 0, 0), 0);
        EsperaCerca(escena.m_Camara.View(), arriba, 1e-9);
        EsperaCerca(escena.m_Camara.UpVector(), frente, 1e-9);
        EXPECT_NEAR(escena.GetAnguloX(), esperada.GetAnguloX(), 1e-6);
    }
}

TEST(CGLTransformacion, OfAPhotographLeavesTheCamera) {
    EscenaVista escena;
    escena.SetDataTransformacion(FotoCenital(Punto(1, 2, 3)));
    EsperaCerca(escena.m_Camara.Position(), Punto(0, 1, 0), 0);
}

// ---- Projection ----------------------------------------------------------------------------------------------------

TEST_F(ConVista, AResizeKeepsTheZoomOfAnOrthographicView) {
    const double zoom = m_Escena.GetZoom();
    const auto antes = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    EXPECT_NEAR(antes[5], 2 * zoom, 1e-5);
    for (const CSize& size : {CSize(100, 30), CSize(31, 200), CSize(200, 150), CSize(1, 1)}) {
        ASSERT_EQ(m_Escena.Resize(size.cx, size.cy), 1);
        const auto m = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
        EXPECT_NEAR(m[5], antes[5], 1e-5);
        EXPECT_NEAR(m[0], antes[5] * size.cy / size.cx, 1e-4);
        EXPECT_NEAR(m[10], antes[10], 1e-9);
        EXPECT_EQ(m_Escena.GetZoom(), zoom);
        EXPECT_DOUBLE_EQ(m_Escena.m_dFactorPantalla, 1.0 / size.cx);
        EXPECT_DOUBLE_EQ(m_Escena.m_dAspecto, static_cast<double>(size.cx) / size.cy);
    }
}

TEST_F(ConVista, AZoomByStepsLeavesDepthAndIsKeptByAResize) {
    const auto antes = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    m_Escena.OnZoomIn(3.0);
    const auto cerca = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    ASSERT_GT(std::abs(cerca[5] - antes[5]), 0.1);
    ASSERT_EQ(m_Escena.Resize(90, 120), 1);
    const auto m = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    EXPECT_NEAR(m[5], cerca[5], 1e-5);
    EXPECT_NEAR(m[10], antes[10], 1e-9);
}

TEST(CGLProyeccion, TheFirstResizeHasNoZoomToKeep) {
    Tela tela;
    EscenaVista escena;
    ASSERT_EQ(escena.CreaEn(tela), 1);
    ASSERT_EQ(escena.Resize(64, 48), 1);
    const auto m = MatrizDe(escena, GL_PROJECTION_MATRIX);
    EXPECT_FLOAT_EQ(static_cast<float>(m[0]), 1.5F);
    EXPECT_FLOAT_EQ(static_cast<float>(m[5]), 2.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(m[10]), -1.0F / 20000);
}

TEST_F(ConVista, PerspectiveLeavesTheAccumulatedZoomAndOrthographicStartsAfreshAfterIt) {
    m_Escena.SetOrtogonal(0);
    m_Escena.m_dZoom = 7;
    ASSERT_EQ(m_Escena.Resize(100, 50), 1);
    EXPECT_EQ(m_Escena.m_dZoom, 7);
    EXPECT_DOUBLE_EQ(m_Escena.m_dFactorPantalla, 2.0 / 100);
    auto m = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    const double cotangente = 1.0 / std::tan(22.5 * std::acos(-1.0) / 180);
    EXPECT_NEAR(m[5], cotangente, 1e-5);
    EXPECT_NEAR(m[0], cotangente / 2, 1e-5);
    m_Escena.SetOrtogonal(1);
    ASSERT_EQ(m_Escena.Resize(100, 50), 1);
    m = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    EXPECT_FLOAT_EQ(static_cast<float>(m[5]), 2.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(m[10]), -1.0F / 20000);
}

TEST_F(ConVista, ASphericalSceneIsInPerspectiveWhateverTheSetting) {
    m_Escena.SetTipo(8);
    ASSERT_EQ(m_Escena.Resize(100, 50), 1);
    EXPECT_EQ(MatrizDe(m_Escena, GL_PROJECTION_MATRIX)[11], -1.0);
}

TEST_F(ConVista, AWindowLargerThanAViewportCanBeIsHalvedToFit) {
    GLint limites[2] = {};
    {
        const Prestado prestado(m_Escena);
        glGetIntegerv(GL_MAX_VIEWPORT_DIMS, limites);
    }
    const auto antes = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    ASSERT_EQ(m_Escena.Resize(2 * limites[0], limites[0]), 1);
    GLint viewport[4] = {};
    {
        const Prestado prestado(m_Escena);
        glGetIntegerv(GL_VIEWPORT, viewport);
    }
    EXPECT_EQ(viewport[2], limites[0]);
    EXPECT_EQ(viewport[3], limites[0] / 2);
    EXPECT_EQ(m_Escena.m_nAncho, 2 * limites[0]);
    EXPECT_DOUBLE_EQ(m_Escena.m_dAspecto, 1.0);
    EXPECT_DOUBLE_EQ(m_Escena.m_dFactorPantalla, 1.0 / limites[0]);
    // The width's half stays at aspect / 2, the height's half is divided too.
    const auto m = MatrizDe(m_Escena, GL_PROJECTION_MATRIX);
    EXPECT_NEAR(m[5], antes[5], 1e-5);
    EXPECT_NEAR(m[0] / m[5], 0.25, 1e-6);
}

TEST_F(ConVista, AResizeTouchesTheProjectionAlone) {
    for (const int orto : {1, 0}) {
        m_Escena.SetOrtogonal(orto);
        {
            const Prestado prestado(m_Escena);
            glMatrixMode(GL_MODELVIEW);
            glTranslated(1, 2, 3);
        }
        const auto vista = MatrizDe(m_Escena, GL_MODELVIEW_MATRIX);
        ASSERT_EQ(m_Escena.Resize(100, 50), 1);
        EXPECT_EQ(MatrizDe(m_Escena, GL_MODELVIEW_MATRIX), vista);
        EXPECT_EQ(MatrizDe(m_Escena, GL_PROJECTION_MATRIX)[11], orto ? 0.0 : -1.0);
    }
}

TEST_F(ConVista, AChildLeavesTheProjection) {
    m_Escena.m_bEsReferencia = 1;
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.OnResize(10, 10), 1);
    EXPECT_TRUE(registro.Todas().empty());
    m_Escena.m_bEsReferencia = 0;
}

TEST_F(ConVista, AResizeThatFailsLeavesTheContextToWhoeverCalledTheHook) {
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    const FallaGL falla("glLoadIdentity", 1);
    EXPECT_EQ(m_Escena.OnResize(10, 10), 0);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
    wglMakeCurrent(nullptr, nullptr);
}

// ---- Extents of a group --------------------------------------------------------------------------------------------

namespace {

/// A parent of (0..10), a reference of (100..110) and a link of (-110..-100), all at height 0 to 1.
class ConCajas : public testing::Test {
  protected:
    void SetUp() override {
        m_Padre.ReferenciaNuevo(m_pReferencia);
        m_Padre.VinculoNuevo(m_pVinculo);
        m_Padre.m_Caja = Caja(0);
        m_pReferencia->m_Caja = Caja(100);
        m_pVinculo->m_Caja = Caja(-110);
    }
    static Maximas Caja(double x) { return {Punto(x, x, 0), Punto(x + 10, x + 10, 1)}; }
    static Maximas Junta(const Maximas& a, const Maximas& b) {
        Maximas m = a;
        m.Nuevo(b);
        return m;
    }
    Maximas DelGrupo(int esperado) const {
        Maximas m;
        EXPECT_EQ(m_Padre.GetMaximas(m), esperado);
        return m;
    }

    EscenaVista m_Padre;
    EscenaVista* m_pReferencia = new EscenaVista;
    EscenaVista* m_pVinculo = new EscenaVista;
};

}  // namespace

TEST_F(ConCajas, TheGroupIsTheSceneItsLinksAndWhenOnItsReferences) {
    EXPECT_EQ(DelGrupo(1), Junta(Caja(-110), Caja(100)));
    m_Padre.SetReferencia(0);
    EXPECT_EQ(DelGrupo(1), Junta(Caja(-110), Caja(0)));
    m_Padre.SetReferencia(1);
    m_Padre.SetTipo(8);
    EXPECT_EQ(DelGrupo(1), Junta(Caja(-110), Caja(0)));
}

TEST_F(ConCajas, TheOwnExtentCanBeLeftOut) {
    m_Padre.SetLimitesProyecto(0);
    EXPECT_EQ(m_Padre.m_Data.m_bMaximasObjeto, 0);
    EXPECT_EQ(DelGrupo(1), Caja(100));
}

TEST_F(ConCajas, NothingAnywhereIsNothing) {
    for (EscenaVista* escena : {&m_Padre, m_pReferencia, m_pVinculo}) {
        escena->m_nHayCaja = 0;
        escena->m_Caja = Maximas();
    }
    EXPECT_TRUE(DelGrupo(0).EstanVacias(true));
    m_pVinculo->m_nHayCaja = 1;  // it says it has something, but its box is empty
    EXPECT_TRUE(DelGrupo(1).EstanVacias(true));
}

TEST_F(ConCajas, UnderASphericalImageOnlyTheImageCountsReferencesBeforeLinks) {
    m_Padre.m_nTipoImagenFondo = 5;
    m_pReferencia->m_nTipoImagenFondo = 5;
    m_pVinculo->m_nTipoImagenFondo = 5;
    EXPECT_TRUE(DelGrupo(0).EstanVacias(true));
    m_pVinculo->m_nTipoImagenFondo = 6;
    EXPECT_EQ(DelGrupo(1), Caja(-110));
    m_pReferencia->m_nTipoImagenFondo = 6;
    EXPECT_EQ(DelGrupo(1), Caja(100));
    m_Padre.m_bEsReferencia = 1;
    EXPECT_EQ(DelGrupo(1), Junta(Caja(-110), Caja(100)));
    m_Padre.m_bEsReferencia = 0;
}

TEST_F(ConCajas, ExtentsAreSoughtByTheImageValue) {
    m_pReferencia->m_nTipoImagenFondo = 4;
    Maximas m;
    EXPECT_EQ(m_Padre.GetMaximasReferencia(m, 6), 0);
    EXPECT_EQ(m_Padre.GetMaximasReferencia(m, 0), 0);
    EXPECT_TRUE(m.EstanVacias(true));
    EXPECT_EQ(m_Padre.GetMaximasReferencia(m, 4), 1);
    EXPECT_EQ(m, Caja(100));
    EXPECT_EQ(m_Padre.GetMaximasVinculos(m, -1), 1);
    EXPECT_EQ(m, Junta(Caja(-110), Caja(100)));
}

TEST_F(ConCajas, BoxesOnAPhotographAreThoseOfTheirCornersOnTheImage) {
    const Vertiz::CDataTransformacion foto = FotoCenital(Punto(0, 0, 100));
    m_Padre.SetDataTransformacion(foto);
    m_Padre.m_Maximas = Maximas(Punto(0, 0, -10), Punto(1, 1, 1));
    m_Padre.m_nTipoImagenFondo = 1;
    m_Padre.SetReferencia(0);
    m_pVinculo->m_nHayCaja = 0;
    m_pVinculo->m_Caja = Maximas();
    // On film x goes to the right and y down; the upper corners lie 99 below the camera, the lower ones 100.
    EsperaCerca(DelGrupo(1).Minima(), Punto(0, -1000.0 / 99, 0), 1e-9);
    EsperaCerca(DelGrupo(1).Maxima(), Punto(1000.0 / 99, 0, 1), 1e-9);
    Maximas m;
    EXPECT_EQ(m_Padre.GetMaximasReferencia(m, -1), 1);
    EsperaCerca(m.Minima(), Punto(10000.0 / 100, -11000.0 / 99, 0), 1e-9);
    for (const int fondo : {2, 5, 6}) {
        m_pReferencia->m_nTipoImagenFondo = fondo;
        Maximas sinTocar;
        EXPECT_EQ(m_Padre.GetMaximasReferencia(sinTocar, -1), 1);
        EXPECT_EQ(sinTocar, Caja(100));
    }
}

TEST_F(ConCajas, OnlyASceneOverAConicPhotographSeesItsOwnBoxThroughIt) {
    m_Padre.SetDataTransformacion(FotoCenital(Punto(0, 0, 100)));
    m_Padre.SetReferencia(0);
    m_pVinculo->m_nHayCaja = 0;
    m_pVinculo->m_Caja = Maximas();
    for (const int fondo : {0, 2, 3, 4}) {
        m_Padre.m_nTipoImagenFondo = fondo;
        EXPECT_EQ(DelGrupo(1), Caja(0)) << fondo;
    }
    m_Padre.m_nTipoImagenFondo = 1;
    EXPECT_NE(DelGrupo(1), Caja(0));
    m_Padre.m_DataTransformacion = Vertiz::CDataTransformacion();
    EXPECT_EQ(DelGrupo(1), Caja(0)) << "a photograph without a transformation";
    // A box that the scene doesn't answer for grows the group's as it stands.
    m_Padre.m_DataTransformacion = FotoCenital(Punto(0, 0, 100));
    m_Padre.m_nHayCaja = 0;
    EXPECT_EQ(DelGrupo(0), Caja(0));
}
