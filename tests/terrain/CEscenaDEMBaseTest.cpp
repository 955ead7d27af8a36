// Walls and floor: where they stand, and that together with the mesh they leave no hole.

#include "EscenaTerreno.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <random>
#include <set>

namespace {

using modelos::kVacio;
using modelos::Rejilla;
using Arista = std::pair<std::array<long, 2>, std::array<long, 2>>;

class Base : public Terreno {
  protected:
    /// The vertices of the base as they were sent: walls first, four each, then the floor's polygons.
    struct Partes {
        std::vector<std::array<double, 3>> muros, normales;
        std::vector<std::vector<std::array<double, 3>>> suelo;
    };
    Partes Construye() {
        m_escena.m_bBaseIniciada = 0;
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarBase(), 1);
        Partes partes;
        bool enSuelo = false;
        for (const std::string& l : registro.Lista(m_escena.m_nListaBase)) {
            std::array<double, 3> v{};
            if (l == "glBegin(GL_POLYGON)") {
                enSuelo = true;
                partes.suelo.emplace_back();
            } else if (Lee(l, "glVertex3f", v)) {
                enSuelo ? partes.suelo.back().push_back(v) : partes.muros.push_back(v);
            } else if (Lee(l, "glNormal3f", v) && !enSuelo) {
                partes.normales.push_back(v);
            }
        }
        return partes;
    }
    /// Numbers of a call's text, whatever the locale.
    static bool Lee(const std::string& llamada, const std::string& nombre, std::array<double, 3>& v) {
        if (!llamada.starts_with(nombre + "(")) return false;
        const char* p = llamada.data() + nombre.size() + 1;
        const char* fin = llamada.data() + llamada.size();
        for (double& n : v) {
            const auto [resto, error] = std::from_chars(p, fin, n);
            if (error != std::errc()) return false;
            p = resto + 2;
        }
        return true;
    }
    std::array<long, 2> EnPlanta(double x, double z) const {
        return {std::lround((x / m_escena.m_dFactor + m_escena.m_dRangoX / 2) * 100),
                std::lround((z / m_escena.m_dFactor + m_escena.m_dRangoY / 2) * 100)};
    }
    static Arista Ordenada(std::array<long, 2> a, std::array<long, 2> b) { return a < b ? Arista{a, b} : Arista{b, a}; }

    /// Edges in plan that belong to one quad of the surface only: where a wall has to stand.
    std::set<Arista> BordesMalla() {
        EXPECT_EQ(m_escena.OnIniciar(), 1);
        std::map<Arista, int> veces;
        const std::vector<Vertice> v = Vertices(m_escena.m_nListaSuperficie);
        for (std::size_t i = 0; i + 3 < v.size(); i += 4)
            for (std::size_t k = 0; k < 4; ++k) {
                const Vertice &a = v[i + k], &b = v[i + (k + 1) % 4];
                ++veces[Ordenada(EnPlanta(a.x, a.z), EnPlanta(b.x, b.z))];
            }
        std::set<Arista> bordes;
        for (const auto& [arista, n] : veces)
            if (n == 1) bordes.insert(arista);
        return bordes;
    }
    std::multiset<Arista> PiesMuros(const Partes& partes) const {
        std::multiset<Arista> pies;
        for (std::size_t i = 0; i + 3 < partes.muros.size(); i += 4) {
            const auto &a = partes.muros[i], &b = partes.muros[i + 1];
            pies.insert(Ordenada(EnPlanta(a[0], a[2]), EnPlanta(b[0], b[2])));
        }
        return pies;
    }
    double AreaSuelo(const Partes& partes) const {
        double area = 0;
        for (const auto& pieza : partes.suelo) {
            double doble = 0;
            for (std::size_t i = 0; i < pieza.size(); ++i) {
                const auto &a = pieza[i], &b = pieza[(i + 1) % pieza.size()];
                doble += a[0] * b[2] - b[0] * a[2];
            }
            area += std::abs(doble) / 2;
        }
        return area / m_escena.m_dFactor / m_escena.m_dFactor;
    }
    void SinHuecos(double celdasVivas, double areaCelda) {
        const Partes partes = Construye();
        const std::multiset<Arista> pies = PiesMuros(partes);
        const std::set<Arista> bordes = BordesMalla();
        EXPECT_EQ(std::set<Arista>(pies.begin(), pies.end()), bordes) << "a wall at each open edge and nowhere else";
        EXPECT_EQ(pies.size(), bordes.size()) << "no wall twice";
        EXPECT_NEAR(AreaSuelo(partes), celdasVivas * areaCelda, areaCelda * 0.01);
    }
};

TEST_F(Base, ASingleCellHasFourWallsInOrderAndAFloor) {
    Vertiz::CDEM dem = Rejilla({{30, 40}, {10, 20}});
    Toma(dem);
    const Partes partes = Construye();
    const double y = EnGL(0, 0, 10)[1];
    const auto punto = [&](double este, double norte, double h) { return EnGL(este, norte, h); };
    const std::array<double, 3> no = punto(0, 10, 30), ne = punto(10, 10, 40), so = punto(0, 0, 10),
                                se = punto(10, 0, 20);
    const auto pie = [y](std::array<double, 3> p) { return std::array<double, 3>{p[0], y, p[2]}; };
    const std::vector<std::array<double, 3>> esperados{no, ne, pie(ne), pie(no),   // row a: north
                                                       ne, se, pie(se), pie(ne),   // column c + x: east
                                                       se, so, pie(so), pie(se),   // row b: south
                                                       so, no, pie(no), pie(so)};  // column c: west
    ASSERT_EQ(partes.muros.size(), esperados.size());
    for (std::size_t i = 0; i < esperados.size(); ++i)
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(partes.muros[i][k], esperados[i][k], 1e-5) << i;
    EXPECT_EQ(partes.normales, (std::vector<std::array<double, 3>>{{0, 0, 1}, {-1, 0, 0}, {0, 0, -1}, {1, 0, 0}}));
    ASSERT_EQ(partes.suelo.size(), 1u);
    EXPECT_EQ(partes.suelo[0].size(), 4u);
    for (const auto& p : partes.suelo[0])
        EXPECT_NEAR(p[1], y, 1e-6);
}

TEST_F(Base, EachWallAndFloorTakesItsNormalAndColourBeforeTheFirstVertex) {
    Vertiz::CDEM dem = Rejilla({{1, 1}, {1, 1}});
    Toma(dem, [](EscenaTerreno& e) { e.Data().m_nColorBase = 0x00FF00; });
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarBase(), 1);
    EXPECT_EQ(registro.Cuenta("glEndList"), 1u);
    LlamadasGL lista = registro.Lista(m_escena.m_nListaBase);
    for (std::string& l : lista)
        if (l.starts_with("glVertex3f")) l = "v";
    EXPECT_LLAMADAS(lista,
                    {"glBegin(GL_QUADS)",                                               //
                     "glNormal3f(0, 0, 1)",  "glColor3f(0, 1, 0)", "v", "v", "v", "v",  //
                     "glNormal3f(-1, 0, 0)", "glColor3f(0, 1, 0)", "v", "v", "v", "v",  //
                     "glNormal3f(0, 0, -1)", "glColor3f(0, 1, 0)", "v", "v", "v", "v",  //
                     "glNormal3f(1, 0, 0)",  "glColor3f(0, 1, 0)", "v", "v", "v", "v", "glEnd()", "glBegin(GL_POLYGON)",
                     "glNormal3f(0, 1, 0)",  "glColor3f(0, 1, 0)", "v", "v", "v", "v", "glEnd()"});
}

TEST_F(Base, EachOuterWallLooksInwardsAlsoWhereAStepLeavesRowsAndColumnsOver) {
    for (const int lado : {7, 8, 9}) {
        Vertiz::CDEM dem = Rejilla(lado, lado, [](int r, int c) { return float(r + c); });
        m_escena.Destruir();
        Toma(dem, [](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetPuntosSuavizado(-2);
        });
        const Partes partes = Construye();
        ASSERT_EQ(partes.normales.size(), 8u) << "two cells on each side; a third of each row is left over";
        for (std::size_t i = 0; i < 8; ++i) {
            const auto &v = partes.muros[4 * i], &w = partes.muros[4 * i + 1];
            const std::array<double, 3> medio{(v[0] + w[0]) / 2, 0, (v[2] + w[2]) / 2};
            const auto centro = EnGL(30, (lado - 1) * 10 - 30, 0);
            const auto& n = partes.normales[i];
            EXPECT_NEAR(n[0] * (centro[0] - medio[0]) + n[2] * (centro[2] - medio[2]), 30 * m_escena.m_dFactor, 1e-5)
                << "side " << lado << ", wall " << i << " turns its back on the middle";
        }
    }
}

TEST_F(Base, WallsStandAtEveryOpenEdgeOfTheMesh) {
    Vertiz::CDEM dem = Rejilla(6, 8, [](int r, int c) { return float(r * c); });
    Toma(dem);
    SinHuecos(5 * 7, 100);
}

TEST_F(Base, TheFloorKeepsTheCornersOfItsOutlineOnly) {
    Vertiz::CDEM dem = Rejilla(6, 8, [](int r, int c) { return float(r * c); });
    Toma(dem);
    const Partes partes = Construye();
    ASSERT_EQ(partes.suelo.size(), 1u);
    EXPECT_EQ(partes.suelo[0].size(), 4u);
}

TEST_F(Base, WallsStandRoundAVoidAndTheFloorLeavesItOut) {
    Vertiz::CDEM dem =
        Rejilla(8, 8, [](int r, int c) { return (r == 3 && c == 4) || (r == 0 && c == 0) ? kVacio : float(r + c); });
    Toma(dem);
    SinHuecos(7 * 7 - 4 - 1, 100);
}

TEST_F(Base, AVoidThatSplitsTheGridLeavesTwoClosedParts) {
    Vertiz::CDEM dem = Rejilla(5, 9, [](int r, int c) { return c == 4 ? kVacio : float(r + c); });
    Toma(dem);
    SinHuecos(2 * 4 * 3, 100);
}

TEST_F(Base, ScatteredVoidsLeaveNoHole) {
    for (const unsigned semilla : {1u, 2u, 3u}) {
        std::mt19937 azar(semilla);
        Vertiz::CDEM dem = Rejilla(14, 17, [&](int r, int c) { return azar() % 9 == 0 ? kVacio : float(r + c); });
        m_escena.Destruir();
        Toma(dem, [](EscenaTerreno& e) { e.SetTipo(1); });
        SinHuecos(double(dem.DameCeldas()), 100);
    }
}

TEST_F(Base, ScatteredVoidsLeaveNoHoleUnderALargerStepEither) {
    for (const unsigned semilla : {1u, 2u, 3u}) {
        std::mt19937 azar(semilla);
        Vertiz::CDEM dem = Rejilla(28, 30, [&](int r, int c) { return azar() % 7 == 0 ? kVacio : float(r + c); });
        int vivas = 0;
        for (int r = 0; r + 2 < 28; r += 2)
            for (int c = 0; c + 2 < 30; c += 2)
                vivas += dem.EsCeldaValida(unsigned(27 - r - 2), unsigned(c), 2);
        m_escena.Destruir();
        Toma(dem, [](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetPuntosSuavizado(-1);
        });
        SinHuecos(vivas, 400);
    }
}

TEST_F(Base, CornersNearerThanATwentiethOfTheLongerSideOfACellAreLeftOutOfTheFloor) {
    // A notch one unit deep in one side: its corners are 0.6 units off the straight course.
    for (const bool alto : {false, true})
        for (const auto& [lado, esquinas] : {std::pair(12.15, 4u), std::pair(11.85, 6u)}) {
            const auto altura = [&](int r, int c) {
                return (alto ? r < 2 && c == 5 : c < 2 && r == 5) ? kVacio : 1.0F;
            };
            Vertiz::CDEM dem = Rejilla(6, 6, altura, {.celdaX = alto ? 1 : lado, .celdaY = alto ? lado : 1});
            m_escena.Destruir();
            Toma(dem, [](EscenaTerreno& e) { e.SetTipo(1); });
            std::set<std::array<long, 2>> puntos;
            for (const auto& pieza : Construye().suelo)
                for (const auto& p : pieza)
                    puntos.insert(EnPlanta(p[0], p[2]));
            EXPECT_EQ(puntos.size(), esquinas) << lado;
        }
}

TEST_F(Base, ALargerStepMeetsTheMeshAndLeavesTheRestOpen) {
    Vertiz::CDEM dem = Rejilla(9, 12, [](int r, int c) { return float(r + c); });
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(-2); });
    SinHuecos(2 * 3, 900);
}

TEST_F(Base, CellsThatAreNotSquareAreClosedToo) {
    Vertiz::CDEM dem = Rejilla(6, 5, [](int r, int c) { return r == 2 && c == 2 ? kVacio : float(r + c); },
                               {.celdaX = 10, .celdaY = 37});
    Toma(dem);
    SinHuecos(5 * 4 - 4, 370);
}

TEST_F(Base, WallsEndAtTheLowestHeightOfTheScene) {
    Vertiz::CDEM dem = Rejilla({{30, 40}, {10, 20}});
    Toma(dem, [](EscenaTerreno& e) { e.SetExageracionVertical(2); });
    EXPECT_NEAR(Construye().muros[2][1], -m_escena.m_dRangoZ / 2 * m_escena.m_dFactor * 2, 1e-6);
}

TEST_F(Base, TheOriginsHeightIsTakenOffWallsAndFloor) {
    Vertiz::CDEM dem = Rejilla({{130, 140}, {110, 120}}, {.semilla = Vertiz::CDataSemilla(0, 0, 0, 100)});
    Toma(dem);
    const Partes partes = Construye();
    EXPECT_NEAR(partes.muros[0][1], EnGL(0, 10, 30)[1], 1e-6);
    EXPECT_NEAR(partes.muros[2][1], EnGL(0, 10, 10)[1], 1e-6);
    dem.Matriz().Set(0, 0, 75);
    dem.ActualizaCantidades();
    EXPECT_NEAR(Construye().muros[2][1], EnGL(0, 10, -25)[1], 1e-6);
}

TEST_F(Base, NoWallOutsideTheReachOfASphericalView) {
    Vertiz::CDEM dem = Rejilla(3, 30, [](int, int) { return 1.0F; });
    Toma(dem);
    Vertiz::CDataTransformacion data;
    data.m_nTipo = Vertiz::CDataTransformacion::ESFERICA;
    m_escena.SetDataTransformacion(data);
    const Partes partes = Construye();
    EXPECT_FALSE(partes.muros.empty());
    for (const auto& p : partes.muros)
        EXPECT_LE(p[0] / m_escena.m_dFactor, 80.5);
}

TEST_F(Base, AGridThatReachesBelowTheSceneTakesTheFloorDown) {
    Vertiz::CDEM dem = Rejilla({{30, 40}, {10, 20}});
    Toma(dem);
    dem.Matriz().Set(0, 0, -25);
    dem.ActualizaCantidades();
    EXPECT_NEAR(Construye().muros[2][1], (-m_escena.m_dRangoZ / 2 - 35) * m_escena.m_dFactor, 1e-6);
}

TEST_F(Base, AGridThatLiesAboveTheSceneKeepsTheScenesFloor) {
    Vertiz::CDEM dem = Rejilla({{30, 40}, {10, 20}});
    Toma(dem);
    dem.Matriz().Set(0, 0, 20);
    dem.ActualizaCantidades();
    EXPECT_NEAR(Construye().muros[2][1], -m_escena.m_dRangoZ / 2 * m_escena.m_dFactor, 1e-6);
}

TEST_F(Base, PointsAndNoSurfaceHaveNone) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem);
    for (const unsigned quad : {2u, 3u}) {
        m_escena.SetQuad(quad);
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarBase(), 1);
        EXPECT_EQ(m_escena.m_nListaBase, 0u);
        EXPECT_TRUE(registro.Todas().empty());
    }
}

TEST_F(Base, IsBuiltOnceUntilIniciarClearsIt) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) { e.SetBase(1); });
    ASSERT_EQ(m_escena.OnIniciarBase(), 1);
    const GLuint primera = m_escena.m_nListaBase;
    EXPECT_EQ(m_escena.m_bBaseIniciada, 1);
    {
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnIniciarBase(), 1);
        EXPECT_TRUE(registro.Todas().empty());
    }
    const RegistroGL registro;
    ASSERT_EQ(m_escena.Iniciar(), 1);
    EXPECT_FALSE(registro.Lista(m_escena.m_nListaBase).empty());
    EXPECT_NE(primera, 0u);
}

TEST_F(Base, ThePublicEntryTakesAndReleasesTheContext) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem);
    ASSERT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(m_escena.IniciarBase(), 1);
    EXPECT_NE(m_escena.m_nListaBase, 0u);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(m_escena.IniciarLimites(), 1);
    EXPECT_NE(m_escena.m_nListaLimites, 0u);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(Base, AnErrorAfterTheWallsEndsItAndTheNextOneRecovers) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem);
    for (const char* llamada : {"glNewList", "glEnd", "glEndList"}) {
        {
            const FallaGL falla(llamada, 1);
            EXPECT_EQ(m_escena.OnIniciarBase(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida());
        }
        EXPECT_EQ(m_escena.m_bBaseIniciada, 0);
        ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << llamada;
        EXPECT_EQ(m_escena.OnIniciarBase(), 1) << llamada;
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << llamada;
        m_escena.m_bBaseIniciada = 0;
    }
}

TEST_F(Base, WithoutAGridOrAContextThereIsNone) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    m_escena.SetDEM(&dem);
    EXPECT_EQ(m_escena.OnIniciarBase(), 0);
    m_escena.SetDEM(nullptr);
    Crea();
    EXPECT_EQ(m_escena.OnIniciarBase(), 0);
}

}  // namespace
