// Between GL space and pixels: points to pixels, and clicks to points of the model through the depth buffer.

#include "EscenaVista.h"
#include "support/RegistroGL.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using Punto = EscenaPrueba::Punto;
using Maximas = EscenaPrueba::Maximas;

namespace {

constexpr int kAncho = 200, kAlto = 150;
constexpr double kSinCota = 2147483647.0;

/// A box of 100 x 100 x 50 seen straight down by a square of 150 pixels in the middle of a window of 200: terrain x is
/// pixel 25 + 1.5 x, y is pixel 150 - 1.5 y. The planes lie close, so that depths are exact to a thousandth.
class ConClic : public testing::Test {
  protected:
    void SetUp() override {
        m_Escena.SetPlanoFondo(4);
        Monta();
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }

    void Monta() {
        m_Escena.Destruir();
        ASSERT_TRUE(m_Escena.Monta(m_Tela, kAncho, kAlto));
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    /// Empties the depth buffer, then writes single pixels of it; y upwards.
    struct Celda {
        int x, y;
        double profundidad;
    };
    void EscribeProfundidad(const std::vector<Celda>& celdas) {
        const Prestado prestado(m_Escena);
        glEnable(GL_DEPTH_TEST);
        glDepthMask(GL_TRUE);
        glClearDepth(1.0);
        glClear(GL_DEPTH_BUFFER_BIT);
        glEnable(GL_SCISSOR_TEST);
        for (const Celda& celda : celdas) {
            glScissor(celda.x, celda.y, 1, 1);
            glClearDepth(celda.profundidad);
            glClear(GL_DEPTH_BUFFER_BIT);
        }
        glDisable(GL_SCISSOR_TEST);
        glClearDepth(1.0);
    }
    /// The GL point at a window position, y upwards.
    Punto Desproyecta(double x, double y, double z) {
        const Prestado prestado(m_Escena);
        MatrizYViewport m;
        Punto p;
        EXPECT_EQ(gluUnProject(x, y, z, m.vista, m.proyeccion, m.viewport, &p.x, &p.y, &p.z), GL_TRUE);
        return p;
    }
    Punto Proyecta(const Punto& gl) {
        const Prestado prestado(m_Escena);
        MatrizYViewport m;
        Punto p;
        EXPECT_EQ(gluProject(gl.x, gl.y, gl.z, m.vista, m.proyeccion, m.viewport, &p.x, &p.y, &p.z), GL_TRUE);
        return p;
    }
    Punto Clic(const CPoint& pt, bool bPixelHallado = false, int esperado = 1) {
        Punto c;
        EXPECT_EQ(m_Escena.PantallaATerreno(pt, c, true, bPixelHallado, false), esperado);
        return c;
    }

    Tela m_Tela{kAncho, kAlto};
    EscenaVista m_Escena;

  private:
    struct MatrizYViewport {
        GLdouble vista[16], proyeccion[16];
        GLint viewport[4];
        MatrizYViewport() {
            glGetDoublev(GL_MODELVIEW_MATRIX, vista);
            glGetDoublev(GL_PROJECTION_MATRIX, proyeccion);
            glGetIntegerv(GL_VIEWPORT, viewport);
        }
    };
};

/// The walk from (0, 0) outwards as offsets: runs to the right, up, left, down, of 1, 1, 2, 2, 3, 3... cells.
std::vector<std::array<int, 2>> PasosEspiral(std::size_t cuantos) {
    std::vector<std::array<int, 2>> pasos{{0, 0}};
    constexpr std::array<int, 2> kSentidos[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    for (int tramo = 0; pasos.size() < cuantos; ++tramo)
        for (int k = 0; k < tramo / 2 + 1; ++k)
            pasos.push_back({pasos.back()[0] + kSentidos[tramo % 4][0], pasos.back()[1] + kSentidos[tramo % 4][1]});
    return pasos;
}

}  // namespace

// ---- Points to pixels ----------------------------------------------------------------------------------------------

TEST_F(ConClic, TerrainPointsLandOnTheirPixels) {
    CPoint pt;
    double z = -1;
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(50, 50, 25), &z, false), 1);
    EXPECT_EQ(pt, CPoint(100, 75));
    EXPECT_GT(z, 0.0);
    EXPECT_LT(z, 1.0);
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(0, 0, 0), nullptr, false), 1);
    EXPECT_EQ(pt, CPoint(25, 150));
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(100, 100, 50), nullptr, false), 1);
    EXPECT_EQ(pt, CPoint(175, 0));
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(0.5, 0, 0), nullptr, true), 1) << "a GL point";
    EXPECT_EQ(pt, CPoint(175, 75));
}

TEST_F(ConClic, PixelsAreRoundedByAHalfAddedAndTheFractionCut) {
    // 1.5 pixels a unit: x = 50 + 1/6 is 100.25, x = 50 + 3/6 is 100.75; y counts from the height afterwards.
    CPoint pt;
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(50 + 1.0 / 6, 50 + 1.0 / 6, 0), nullptr, false), 1);
    EXPECT_EQ(pt, CPoint(100, 75));
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(50.5, 50.5, 0), nullptr, false), 1);
    EXPECT_EQ(pt, CPoint(101, 74));
    // Left of and below the window the fraction is cut towards zero.
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(-17.5, -0.8, 0), nullptr, false), 1);
    EXPECT_EQ(pt, CPoint(0, 150)) << "-1.25 + 0.5 and -1.2 + 0.5";
}

TEST_F(ConClic, ThereIsNoPixelWithoutAWindowSizeExtentsOrPlace) {
    CPoint pt(7, 7);
    EXPECT_EQ(EscenaVista().TerrenoAPantalla(pt, Punto(1, 1, 1), nullptr, false), 0);
    m_Escena.m_DataTransformacion = Esfera(Punto(0, 0, 0));
    EXPECT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(500, 0, 0), nullptr, false), 0);
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC) << "a failing path leaves the context current";
    m_Escena.m_DataTransformacion = Vertiz::CDataTransformacion();
    m_Escena.m_Maximas = Maximas();
    EXPECT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(1, 1, 1), nullptr, true), 0);
    EXPECT_EQ(pt, CPoint(7, 7));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConClic, LookingForAPixelTurnsToTheModelviewMatrix) {
    const auto modo = [&] {
        const Prestado prestado(m_Escena);
        GLint m = 0;
        glGetIntegerv(GL_MATRIX_MODE, &m);
        glMatrixMode(GL_PROJECTION);
        return m;
    };
    modo();
    CPoint pt;
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(50, 50, 25), nullptr, false), 1);
    EXPECT_EQ(modo(), GL_MODELVIEW);
}

TEST_F(ConClic, PointsFarBeyondTheWindowHaveAPixelAnInteger) {
    CPoint pt;
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(1e14, -1e14, 0), nullptr, false), 1);
    EXPECT_EQ(pt, CPoint(1000000000, 150 + 1000000000));
}

TEST_F(ConClic, ABoxIsProjectedByItsCornersHeightsFirstThenXThenY) {
    GLdouble vista[16], proyeccion[16];
    GLint viewport[4];
    {
        const Prestado prestado(m_Escena);
        glGetDoublev(GL_MODELVIEW_MATRIX, vista);
        glGetDoublev(GL_PROJECTION_MATRIX, proyeccion);
        glGetIntegerv(GL_VIEWPORT, viewport);
    }
    const RegistroGL registro;
    Maximas ventana;
    m_Escena.TerrenoAPantalla(Maximas(Punto(1000, 2000, 0), Punto(3000, 8000, 4000)), ventana, 0.01, viewport, vista,
                              proyeccion);
    std::vector<std::vector<double>> esperado;
    for (const double y : {20, 80})
        for (const double x : {10, 30})
            for (const double z : {0, 40}) {
                const Punto gl = m_Escena.EnGL(Punto(x, y, z));
                esperado.push_back({gl.x, gl.y, gl.z});
            }
    const auto real = registro.Numeros("gluProject");
    ASSERT_EQ(real.size(), 8U);
    for (int i = 0; i < 8; ++i)
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(real[i][k], esperado[i][k], 1e-12) << "corner " << i;
    EXPECT_NEAR(ventana.Minima().x, 25 + 15, 1e-3);
    EXPECT_NEAR(ventana.Maxima().y, 1.5 * 80, 1e-3);
    EXPECT_EQ(registro.Todas().size(), 8U) << "no context is touched";
}

TEST_F(ConClic, CornersThatAreLeftOutDoNotGrowTheBox) {
    m_Escena.m_DataTransformacion = Esfera(Punto(0, 0, 0));
    GLdouble identidad[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    GLint viewport[4] = {0, 0, 100, 100};
    Maximas ventana;
    m_Escena.TerrenoAPantalla(Maximas(Punto(500, 500, 0), Punto(600, 600, 1)), ventana, 1.0, viewport, identidad,
                              identidad);
    EXPECT_TRUE(ventana.EstanVacias(true));
}

// ---- Clicks --------------------------------------------------------------------------------------------------------

TEST_F(ConClic, AClickGivesThePointOfTheModelUnderThePixel) {
    m_Escena.m_Planchas = {{0, 0, 100, 100, 10}, {60, 60, 80, 80, 40}};
    for (const float exageracion : {1.0F, 2.0F}) {
        m_Escena.SetExageracionVertical(exageracion);
        Monta();
        for (const Punto& p : {Punto(70, 70, 40), Punto(20, 30, 10)}) {
            CPoint pt;
            ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, p, nullptr, false), 1);
            Punto c;
            ASSERT_EQ(m_Escena.PantallaATerreno(pt, c, false, false, false), 1);
            EsperaCerca(c, p, 0.7);
            EXPECT_NEAR(c.z, p.z, 0.01);
            EsperaCerca(m_Escena.m_PuntoGL, m_Escena.EnGL(c), 1e-9);
        }
    }
}

TEST_F(ConClic, AnEmptyClickGivesTheFarEndOfAnOrthographicView) {
    EscribeProfundidad({});
    const double z0 = 1.0F - 0.0001F;
    EsperaCerca(Clic(CPoint(40, 50)), Desproyecta(40, 100, z0), 1e-12);
    EsperaCerca(Clic(CPoint(40, 50), true), Desproyecta(40, 100, z0), 1e-12);
}

TEST_F(ConClic, TheWalkOutwardsMeetsTheSameCellAsAnIndependentOne) {
    const auto pasos = PasosEspiral(61 * 61);
    std::mt19937 azar(3);
    std::uniform_int_distribution<int> x(70, 130), y(45, 105);
    std::uniform_real_distribution<double> z(0.1, 0.9);
    for (int vez = 0; vez < 12; ++vez) {
        std::vector<Celda> celdas;
        for (int i = 0; i < 6; ++i)
            celdas.push_back({x(azar), y(azar), z(azar)});
        const int cx = 100, cy = 75;
        const auto primero = std::ranges::find_if(pasos, [&](const auto& paso) {
            return std::ranges::any_of(celdas,
                                       [&](const Celda& c) { return c.x == cx + paso[0] && c.y == cy + paso[1]; });
        });
        ASSERT_NE(primero, pasos.end());
        // The last one written to a cell stays there.
        const auto ganadora = std::find_if(celdas.rbegin(), celdas.rend(), [&](const Celda& c) {
            return c.x == cx + (*primero)[0] && c.y == cy + (*primero)[1];
        });
        EscribeProfundidad(celdas);
        EsperaCerca(Clic(CPoint(cx, kAlto - cy), true), Desproyecta(ganadora->x, ganadora->y, ganadora->profundidad),
                    1e-5);
        EsperaCerca(Clic(CPoint(cx, kAlto - cy)), Desproyecta(cx, cy, ganadora->profundidad), 1e-5);
    }
}

TEST_F(ConClic, TheWalkTurnsRightUpLeftAndDown) {
    // Of the eight neighbours the walk takes the one on the right first, then on against the clock.
    const std::array<int, 2> orden[] = {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};
    for (std::size_t desde = 0; desde < std::size(orden); ++desde) {
        std::vector<Celda> celdas;
        for (std::size_t i = desde; i < std::size(orden); ++i)
            celdas.push_back({100 + orden[i][0], 75 + orden[i][1], 0.3 + 0.05 * static_cast<double>(i)});
        EscribeProfundidad(celdas);
        EsperaCerca(Clic(CPoint(100, 75), true), Desproyecta(celdas[0].x, celdas[0].y, celdas[0].profundidad), 1e-5);
    }
}

TEST_F(ConClic, CellsOutsideTheWindowDoNotKeepTheClickBefore) {
    Clic(CPoint(100, 75));
    EscribeProfundidad({});
    for (const CPoint& rincon : {CPoint(0, 0), CPoint(199, 149), CPoint(-300, 75)})
        EsperaCerca(Clic(rincon, true), Desproyecta(rincon.x, kAlto - rincon.y, 1.0F - 0.0001F), 1e-12);
}

TEST_F(ConClic, AClickFarOutsideTheWindowReadsNothingAndIsEmpty) {
    constexpr int kMenor = std::numeric_limits<int>::min(), kMayor = std::numeric_limits<int>::max();
    Clic(CPoint(100, 75));
    const RegistroGL registro;
    for (const CPoint& lejos : {CPoint(kMenor, kMenor), CPoint(kMayor, kMayor), CPoint(kMayor, 75), CPoint(100, kMenor),
                                CPoint(-600, 75), CPoint(100, 700)}) {
        Punto c;
        EXPECT_EQ(m_Escena.PantallaATerreno(lejos, c, true, true, false), 1);
        EXPECT_TRUE(std::isfinite(c.x) && std::isfinite(c.y) && std::isfinite(c.z));
    }
    EXPECT_EQ(registro.Cuenta("glReadPixels"), 0U);
    EsperaCerca(Clic(CPoint(-600, 75), true), Desproyecta(-600, 75, 1.0F - 0.0001F), 1e-9);
}

TEST_F(ConClic, AVertexNearTheFoundPixelGivesItsHeight) {
    m_Escena.m_nHayVertice = 1;
    m_Escena.m_Vertice = Punto(1, 2, 33);
    EscribeProfundidad({{103, 71, 0.4}});
    Punto c;
    ASSERT_EQ(m_Escena.PantallaATerreno(CPoint(100, 75), c, false, false, true), 1);
    EXPECT_EQ(m_Escena.m_PixelBuscado, CPoint(103, kAlto - 71));
    EXPECT_NEAR(c.x, 50, 1e-3);
    EXPECT_NEAR(c.y, 50, 1e-3);
    EXPECT_NEAR(c.z, 33, 1e-9);
    m_Escena.m_PixelBuscado = CPoint(-1, -1);
    Clic(CPoint(100, 75));
    EXPECT_EQ(m_Escena.m_PixelBuscado, CPoint(-1, -1)) << "a GL point needs no vertex";
    EscribeProfundidad({});
    m_Escena.m_nHayVertice = 0;
    ASSERT_EQ(m_Escena.PantallaATerreno(CPoint(100, 75), c, false, false, true), 1);
    EXPECT_EQ(m_Escena.m_PixelBuscado, CPoint(100, 75)) << "without a hit the pixel itself";
    EXPECT_LT(c.z, -10);
}

TEST_F(ConClic, AVertexsHeightComesBackAlsoExaggeratedAndFromALowestHeightThatIsNotZero) {
    m_Escena.EstableceMaxMin(EscenaVista::Maximas(Punto(0, 0, 20), Punto(100, 100, 70)));
    m_Escena.SetExageracionVertical(2);
    m_Escena.m_nHayVertice = 1;
    m_Escena.m_Vertice = Punto(1, 2, 33);
    EscribeProfundidad({{103, 71, 0.4}});
    Punto c;
    ASSERT_EQ(m_Escena.PantallaATerreno(CPoint(100, 75), c, false, false, true), 1);
    EXPECT_NEAR(c.z, 33, 1e-5);
}

TEST_F(ConClic, OverAPhotographOnlyWhatLiesInFrontOfItIsMet) {
    for (const int fondo : {1, 2, 3, 4}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        const double suelo = Proyecta(m_Escena.EnGL(Punto(50, 50, 0))).z;
        EscribeProfundidad({{101, 75, suelo + 0.01}, {102, 75, suelo - 0.01}});
        EsperaCerca(Clic(CPoint(100, 75), true), Desproyecta(102, 75, suelo - 0.01), 1e-5);
        // Nothing in front: the depth of the first cell that holds anything, at the pixel of the click.
        EscribeProfundidad({{101, 75, suelo + 0.01}, {102, 75, suelo + 0.02}});
        EsperaCerca(Clic(CPoint(100, 75), true), Desproyecta(100, 75, suelo + 0.01), 1e-5);
    }
}

TEST_F(ConClic, ThePhotographsDepthIsTakenAtTheMiddleOfTheModelAndAtItsFoot) {
    // On a photograph the middle is the box's own; a photograph that lies elsewhere is looked for at its own height.
    const double cota = m_Escena.m_nCotaRaster + 1.0;
    for (const auto& [fondo, altura] :
         {std::pair(1, 25.0), std::pair(2, cota), std::pair(3, cota), std::pair(4, cota)}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        const RegistroGL registro;
        Clic(CPoint(100, 75));
        const auto proyectados = registro.Numeros("gluProject");
        ASSERT_EQ(proyectados.size(), 2U) << fondo;
        int i = 0;
        for (const double z : {altura, 0.0}) {
            const Punto gl = m_Escena.EnGL(Punto(50, 50, z));
            EXPECT_NEAR(proyectados[i][0], gl.x, 1e-9);
            EXPECT_NEAR(proyectados[i][1], gl.y, 1e-9) << "background " << fondo << ", height " << z;
            EXPECT_NEAR(proyectados[i][2], gl.z, 1e-9);
            ++i;
        }
    }
}

TEST_F(ConClic, InASphereWhatLiesAtItsDepthIsNotMet) {
    for (const int fondo : {5, 6}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        EscribeProfundidad({{101, 75, 0.9995}, {102, 75, 0.9}});
        EsperaCerca(Clic(CPoint(100, 75), true), Desproyecta(102, 75, 0.9), 1e-5);
        EscribeProfundidad({{101, 75, 0.9995}});
        EsperaCerca(Clic(CPoint(100, 75), true), Desproyecta(100, 75, 0.9995), 1e-5);
    }
    m_Escena.m_nTipoImagenFondo = 0;
    EscribeProfundidad({{101, 75, 0.9995}, {102, 75, 0.9}});
    EsperaCerca(Clic(CPoint(100, 75), true), Desproyecta(101, 75, 0.9995), 1e-5);
}

TEST_F(ConClic, ADepthBufferThatCannotBeReadIsReplacedByARayAtTheDepthOfTheLastPoint) {
    m_Escena.m_DesvioRayo = Punto(0.125, 0.25, 0.5);
    for (const int orto : {1, 0}) {
        m_Escena.SetOrtogonal(orto);
        ASSERT_EQ(m_Escena.Resize(kAncho, kAlto), 1);
        m_Escena.m_PuntoGL = Punto(0.1, -0.2, 0.1);
        const Punto base = Desproyecta(40, 100, Proyecta(m_Escena.m_PuntoGL).z);
        const FallaGL falla("glReadPixels", 1);
        EsperaCerca(Clic(CPoint(40, 50)), base + m_Escena.m_DesvioRayo, 1e-9);
        EXPECT_TRUE(falla.Ocurrida());
        EsperaCerca(m_Escena.m_Rayo[0], base, 1e-9);
        const Punto ojo = m_Escena.m_Camara.Position();
        EsperaCerca(m_Escena.m_Rayo[1], orto ? base + m_Escena.m_Camara.View() - ojo : ojo, 1e-9);
        EsperaCerca(m_Escena.m_PuntoGL, base + m_Escena.m_DesvioRayo, 1e-9);
    }
}

TEST_F(ConClic, ARayFollowsTheCameraAlsoWhenItLooksElsewhere) {
    const Punto ojo(0.3, 0.9, 0.2), vista(0.1, 0.05, -0.4);
    m_Escena.m_Camara.PositionCamera(ojo, vista, Punto(0, 0, -1));
    for (const int orto : {1, 0}) {
        m_Escena.SetOrtogonal(orto);
        const FallaGL falla("glReadPixels", 1);
        const Punto base = Clic(CPoint(40, 50));
        EsperaCerca(m_Escena.m_Rayo[1], orto ? base + Punto(-0.2, -0.85, -0.6) : ojo, 1e-12);
    }
}

TEST_F(ConClic, ARayThatMeetsNothingSaysSoAndStillReleasesTheContext) {
    m_Escena.m_bRayoHalla = false;
    const FallaGL falla("glReadPixels", 1);
    Clic(CPoint(40, 50), false, 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(ConClic, AClickThatFailsChangesNothingAndLeavesTheContext) {
    const Punto antes = m_Escena.m_PuntoGL;
    for (const char* nombre : {"glGetIntegerv", "glGetDoublev", "gluUnProject"}) {
        // The look for an open list reads an integer before the viewport is read.
        const FallaGL falla(nombre, nombre == std::string("glGetIntegerv") ? 2 : 1);
        Punto c(7, 8, 9);
        EXPECT_EQ(m_Escena.PantallaATerreno(CPoint(40, 50), c, false, false, false), 0) << nombre;
        EXPECT_TRUE(falla.Ocurrida());
        EXPECT_EQ(m_Escena.m_PuntoGL, antes);
        EXPECT_NE(wglGetCurrentContext(), nullptr);
        wglMakeCurrent(nullptr, nullptr);
    }
    {
        const FallaGL lectura("glReadPixels", 1);
        EscenaVista sinVista;
        Punto c;
        EXPECT_EQ(sinVista.PantallaATerreno(CPoint(1, 1), c, true, false, false), 0) << "no context";
        EXPECT_FALSE(lectura.Ocurrida());
    }
}

TEST_F(ConClic, APixelAndADepthGiveAPointWithoutSearching) {
    EscribeProfundidad({{100, 75, 0.2}});
    const RegistroGL registro;
    Punto c;
    ASSERT_EQ(m_Escena.PantallaZATerreno(CPoint(100, 75), c, 0.6, true), 1);
    EXPECT_EQ(registro.Cuenta("glReadPixels"), 0U);
    EsperaCerca(c, Desproyecta(100, 75, 0.6), 1e-12);
    EsperaCerca(m_Escena.m_PuntoGL, c, 0);
    Punto terreno;
    ASSERT_EQ(m_Escena.PantallaZATerreno(CPoint(100, 75), terreno, 0.6, false), 1);
    EsperaCerca(terreno, m_Escena.EnTerreno(c), 1e-9);
}

TEST_F(ConClic, TheCameraIsReadBackFromTheModelviewMatrix) {
    CCamera otra;
    const Punto ojo(0.3, 0.8, 0.4), vista(0.1, 0.05, -0.2);
    Punto direccion = vista - ojo;
    direccion.Normaliza();
    Punto arriba = direccion * Punto(0, 1, 0) * direccion;
    arriba.Normaliza();
    otra.PositionCamera(ojo, vista, arriba);
    const Prestado prestado(m_Escena);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    otra.Look();
    m_Escena.CalculaCamaraDesdeMatrices();
    EsperaCerca(m_Escena.m_Camara.Position(), ojo, 1e-6);
    EsperaCerca(m_Escena.m_Camara.View() - m_Escena.m_Camara.Position(), direccion, 1e-6);
    EsperaCerca(m_Escena.m_Camara.UpVector(), arriba, 1e-6);
    EXPECT_NEAR(std::remainder(m_Escena.GetAnguloX() - otra.GetAnguloX(), 360), 0, 1e-3);
    EXPECT_NEAR(std::remainder(m_Escena.GetAnguloZ() - otra.GetAnguloZ(), 360), 0, 1e-3);
    // A matrix without an inverse changes nothing.
    const CCamera buena = m_Escena.GetCamara();
    glScaled(1, 0, 1);
    m_Escena.CalculaCamaraDesdeMatrices();
    EsperaCerca(m_Escena.m_Camara.Position(), buena.Position(), 0);
}

// ---- Heights under the cursor --------------------------------------------------------------------------------------

namespace {

/// A child that answers a height without looking.
class EscenaCota : public EscenaVista {
  public:
    EscenaCota(double resultado, const Punto& punto) : m_dResultado(resultado), m_Punto(punto) {}
    using EscenaVista::operator=;
    double BuscaCotaProxima(const CPoint&, Punto& c, bool) override {
        ++m_nVeces;
        c = m_Punto;
        return m_dResultado;
    }
    double m_dResultado;
    Punto m_Punto;
    int m_nVeces = 0;
};

}  // namespace

TEST_F(ConClic, TheNearestHeightIsFoundInsideTheExtents) {
    m_Escena.m_Planchas = {{0, 0, 50, 100, 25}};
    Monta();
    Punto c;
    EXPECT_EQ(m_Escena.BuscaCotaProxima(CPoint(60, 75), c, false), 0.0);
    EXPECT_NEAR(c.z, 25, 0.01);
    EscribeProfundidad({});
    EXPECT_EQ(m_Escena.BuscaCotaProxima(CPoint(60, 75), c, false), kSinCota);
    EXPECT_EQ(EscenaVista().BuscaCotaProxima(CPoint(1, 1), c, false), kSinCota);
}

TEST_F(ConClic, WithAnImageAPointWithoutHeightLiesAtZero) {
    m_Escena.SetPlanoFondo(20000);
    Monta();
    EscribeProfundidad({});
    Punto c;
    EXPECT_EQ(m_Escena.BuscaCotaProxima(CPoint(60, 75), c, false), kSinCota);
    EXPECT_LT(c.z, -9998);
    m_Escena.SetTipo(3);
    EXPECT_EQ(m_Escena.BuscaCotaProxima(CPoint(60, 75), c, false), 0.0);
    EXPECT_EQ(c.z, 0.0);
}

TEST_F(ConClic, WithAnImageWhatLiesLessThanOneAboveTheMarkOfNoHeightHasNone) {
    m_Escena.m_nCotaRaster = 20;
    m_Escena.m_nHayVertice = 1;
    for (const auto& [tipo, cota, esperada] : {std::tuple(3, 20.5, 0.0), {3, 21.5, 21.5}, {1, 20.5, 20.5}}) {
        m_Escena.SetTipo(tipo);
        m_Escena.m_Vertice = Punto(50, 50, cota);
        Punto c;
        EXPECT_EQ(m_Escena.BuscaCotaProxima(CPoint(100, 75), c, true), 0.0);
        EXPECT_NEAR(c.z, esperada, 1e-9) << tipo << ", " << cota;
    }
}

TEST_F(ConClic, WithAnImageTheReferencesMissesAreCopiedAndTheirHitsAreNot) {
    auto* acierto = new EscenaCota(0.0, Punto(1, 1, 1));
    auto* fallo = new EscenaCota(kSinCota, Punto(2, 2, 2));
    auto* imagen = new EscenaCota(kSinCota, Punto(3, 3, 3));
    auto* esfera = new EscenaCota(kSinCota, Punto(4, 4, 4));
    auto* vinculo = new EscenaCota(kSinCota, Punto(5, 5, 5));
    for (CGL* hijo : std::initializer_list<CGL*>{acierto, fallo, imagen, esfera})
        m_Escena.ReferenciaNuevo(hijo);
    m_Escena.VinculoNuevo(vinculo);
    imagen->SetTipo(3);
    esfera->SetTipo(8);
    m_Escena.m_Maximas = Maximas(Punto(0, 0, 0), Punto(1, 1, 1));  // the click lies outside
    Punto c;
    EXPECT_EQ(m_Escena.BuscaCotaProxima(CPoint(60, 75), c, false), kSinCota);
    EXPECT_EQ(c, Punto(2, 2, 2));
    EXPECT_EQ(acierto->m_nVeces, 1);
    EXPECT_EQ(imagen->m_nVeces + esfera->m_nVeces + vinculo->m_nVeces, 0);
    imagen->SetTipo(4);
    EXPECT_EQ(m_Escena.BuscaCotaProxima(CPoint(60, 75), c, false), kSinCota);
    EXPECT_NE(c, Punto(2, 2, 2)) << "no image any more: the references aren't asked";
}

TEST(CGLCotas, AChildsProjectionWinsOverThePicture) {
    EscenaVista padre;
    auto* referencia = new EscenaCota(kSinCota, Punto(9, 9, 21));
    auto* vinculo = new EscenaCota(0.0, Punto(9, 9, 22));
    padre.ReferenciaNuevo(referencia);
    padre.VinculoNuevo(vinculo);
    double x = 3, y = 4;
    EXPECT_EQ(padre.BuscaCotaProximaConReferencias(x, y, CPoint(1, 1), false), 22) << "the last one asked";
    EXPECT_EQ(referencia->m_nVeces, 1);
    vinculo->m_bProyecta = true;
    vinculo->m_dCotaProyectada = 8;
    EXPECT_EQ(padre.BuscaCotaProximaConReferencias(x, y, CPoint(1, 1), false), 8);
    referencia->m_bProyecta = true;
    referencia->m_dCotaProyectada = 7;
    EXPECT_EQ(padre.BuscaCotaProximaConReferencias(x, y, CPoint(1, 1), false), 7);
    EXPECT_EQ(referencia->m_nVeces, 1);
}
