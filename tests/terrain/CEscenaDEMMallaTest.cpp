// The mesh of a regular grid: which samples it takes, and what it sends for them, in which order.

#include "EscenaTerreno.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

using modelos::kVacio;
using modelos::Rejilla;
using testing::ElementsAre;

constexpr char kAbajo[] = "glNormal3f(0, -1, 0)";

class Malla : public Terreno {};

LlamadasGL Elementos(const LlamadasGL& lista) {
    return Solo(lista, {"glBegin", "glArrayElement", "glEnd"});
}

// ---- Order ----

TEST_F(Malla, QuadsGoDownAndThenEastFromEachCellsNorthWestSample) {
    Vertiz::CDEM dem = Rejilla({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    Toma(dem);
    EXPECT_LLAMADAS(Superficie(), {"glBegin(GL_QUADS)",  //
                                   kAbajo,
                                   Elemento(0),
                                   Elemento(3),
                                   Elemento(4),
                                   Elemento(1),
                                   kAbajo,
                                   Elemento(1),
                                   Elemento(4),
                                   Elemento(5),
                                   Elemento(2),
                                   kAbajo,
                                   Elemento(3),
                                   Elemento(6),
                                   Elemento(7),
                                   Elemento(4),
                                   kAbajo,
                                   Elemento(4),
                                   Elemento(7),
                                   Elemento(8),
                                   Elemento(5),
                                   "glEnd()"});
}

TEST_F(Malla, StripsHaveOneForEachBandAndEndAtTheLastColumnWithTheFormerNormal) {
    Vertiz::CDEM dem = Rejilla({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    Toma(dem, [](EscenaTerreno& e) { e.SetQuad(0); });
    EXPECT_LLAMADAS(Superficie(), {"glBegin(GL_QUAD_STRIP)",  //
                                   kAbajo,
                                   Elemento(0),
                                   Elemento(3),  //
                                   kAbajo,
                                   Elemento(1),
                                   Elemento(4),  //
                                   kAbajo,
                                   Elemento(2),
                                   Elemento(5),
                                   "glEnd()",                 //
                                   "glBegin(GL_QUAD_STRIP)",  //
                                   kAbajo,
                                   Elemento(3),
                                   Elemento(6),  //
                                   kAbajo,
                                   Elemento(4),
                                   Elemento(7),  //
                                   kAbajo,
                                   Elemento(5),
                                   Elemento(8),
                                   "glEnd()"});
}

TEST_F(Malla, TheLastNormalOfAStripIsNotTakenFromTheNextRow) {
    // A plane that falls eastwards: a normal worked out with the next row's first sample would point the other way.
    Vertiz::CDEM dem = Rejilla(3, 3, [](int, int c) { return float(20 - 10 * c); });
    Toma(dem, [](EscenaTerreno& e) { e.SetQuad(0); });
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const auto normales = registro.Numeros("glNormal3f");
    ASSERT_EQ(normales.size(), 6u);
    for (const auto& n : normales) {
        EXPECT_NEAR(n[0], -std::sqrt(0.5), 1e-6);
        EXPECT_NEAR(n[1], -std::sqrt(0.5), 1e-6);
        EXPECT_NEAR(n[2], 0.0, 1e-6);
    }
}

TEST_F(Malla, PointsSendEachSampleWithTheOneToItsSouth) {
    Vertiz::CDEM dem = Rejilla({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}});
    Toma(dem, [](EscenaTerreno& e) { e.SetQuad(2); });
    // The last of a row comes as the east side of the cell before it.
    EXPECT_LLAMADAS(Superficie(), {"glBegin(GL_POINTS)",  //
                                   kAbajo,
                                   Elemento(0),
                                   Elemento(3),  //
                                   kAbajo,
                                   Elemento(1),
                                   Elemento(4),  //
                                   kAbajo,
                                   Elemento(2),
                                   Elemento(5),  //
                                   kAbajo,
                                   Elemento(3),
                                   Elemento(6),  //
                                   kAbajo,
                                   Elemento(4),
                                   Elemento(7),  //
                                   kAbajo,
                                   Elemento(5),
                                   Elemento(8),
                                   "glEnd()"});
}

TEST_F(Malla, NoSurfaceHasNoList) {
    Vertiz::CDEM dem = Rejilla({{1, 1}, {1, 1}});
    Toma(dem, [](EscenaTerreno& e) { e.SetQuad(3); });
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnIniciar(), 1);
    EXPECT_EQ(m_escena.m_nListaSuperficie, 0u);
    EXPECT_TRUE(registro.Listas().empty());
}

TEST_F(Malla, OneRowHasNothingToSend) {
    for (const unsigned quad : {0u, 1u, 2u}) {
        Vertiz::CDEM dem = Rejilla({{1, 2, 3}});
        Tela tela;
        EscenaTerreno otra;
        ASSERT_EQ(otra.Crear(tela.DC(), PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL), 1);
        otra.SetDEM(&dem);
        otra.SetQuad(quad);
        otra.OnZoomExtension();
        const RegistroGL registro;
        EXPECT_EQ(otra.OnIniciar(), 1);
        EXPECT_EQ(registro.Cuenta("glBegin") + registro.Cuenta("glEnd"), 0u);
    }
}

// ---- Positions ----

TEST_F(Malla, VerticesLieWhereTheTerrainIs) {
    const modelos::Sitio sitio{10, 20, 500000, 4000000, Vertiz::CDataSemilla(2, 499000, 3999000, 100)};
    Vertiz::CDEM dem = Rejilla({{130, 140}, {110, 120}}, sitio);
    Toma(dem, [](EscenaTerreno& e) { e.SetExageracionVertical(3); });
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const std::vector<Vertice> v = Vertices(m_escena.m_nListaSuperficie);
    // Local coordinates, in the order north-west, south-west, south-east, north-east.
    const double esperados[4][3] = {{1000, 1020, 30}, {1000, 1000, 10}, {1010, 1000, 20}, {1010, 1020, 40}};
    ASSERT_EQ(v.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        const auto gl = EnGL(esperados[i][0], esperados[i][1], esperados[i][2]);
        EXPECT_NEAR(v[i].x, gl[0], 1e-5);
        EXPECT_NEAR(v[i].y, gl[1], 1e-5);
        EXPECT_NEAR(v[i].z, gl[2], 1e-5);
    }
}

TEST_F(Malla, NormalsPointIntoTheTerrain) {
    Vertiz::CDEM dem = Rejilla(2, 2, [](int r, int) { return float(10 * r); });  // falls northwards
    Toma(dem);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const auto n = registro.Numeros("glNormal3f").at(0);
    EXPECT_NEAR(n[0], 0.0, 1e-6);
    EXPECT_NEAR(n[1], -std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(n[2], std::sqrt(0.5), 1e-6);
}

// ---- Colour ----

TEST_F(Malla, PlainSurfacesTakeOneColourBeforeTheFirstVertex) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) { e.SetColorDEM(0x336699); });
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    EXPECT_EQ(registro.Lista(m_escena.m_nListaSuperficie).at(1), "glDisable(GL_TEXTURE_2D)");
    ASSERT_EQ(registro.Cuenta("glColor3f"), 1u);
    const auto color = registro.Numeros("glColor3f")[0];
    EXPECT_THAT(color, testing::ElementsAre(float(0x99) / 255.0F, float(0x66) / 255.0F, float(0x33) / 255.0F));
}

TEST_F(Malla, CellShadingTintsEachVertexByItsPlaceInTheCell) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) { e.Data().m_nSombraCeldas = 1; });
    EXPECT_LLAMADAS(Sin(Superficie(), {"glNormal3f"}),
                    {"glBegin(GL_QUADS)", "glColor3f(0.2, 0.8, 1)", Elemento(0), "glColor3f(0.6, 0.7, 1)", Elemento(2),
                     "glColor3f(0.7, 0.9, 1)", Elemento(3), "glColor3f(0.7, 0.8, 1)", Elemento(1), "glEnd()"});
}

TEST_F(Malla, CellShadingTintsTheTwoSidesOfAStrip) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) {
        e.Data().m_nSombraCeldas = 1;
        e.SetQuad(0);
    });
    EXPECT_LLAMADAS(Sin(Superficie(), {"glNormal3f"}), {"glBegin(GL_QUAD_STRIP)", "glColor3f(0.2, 0.8, 1)", Elemento(0),
                                                        "glColor3f(0.6, 0.7, 1)", Elemento(2), "glColor3f(0.2, 0.8, 1)",
                                                        Elemento(1), "glColor3f(0.6, 0.7, 1)", Elemento(3), "glEnd()"});
}

TEST_F(Malla, CellShadingLeavesPointsAlone) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) {
        e.Data().m_nSombraCeldas = 1;
        e.SetQuad(2);
    });
    EXPECT_TRUE(Solo(Superficie(), {"glColor3f"}).empty());
}

TEST_F(Malla, CutAndFillColoursBySignAndZeroIsNeither) {
    for (const unsigned quad : {0u, 1u, 2u}) {
        // Heights whose sign would not survive being worked back from single precision.
        const modelos::Sitio sitio{10, 10, 0, 0, Vertiz::CDataSemilla(0, 0, 0, 1234.5)};
        Vertiz::CDEM dem = Rejilla({{1234.5F, 1235.0F}, {1234.0F, 1234.5F}}, sitio);
        m_escena.Destruir();
        Toma(dem, [quad](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetQuad(quad);
            e.SetTipoColorMDT(6);
            e.Data().m_nColorTerraplen = 0x00FF00;
            e.Data().m_nColorDesmonte = 0x0000FF;
            e.Data().m_nColorNada = 0xFF0000;
        });
        const LlamadasGL lista = Superficie();
        for (std::size_t i = 1; i < lista.size(); ++i) {
            if (!lista[i].starts_with("glArrayElement")) continue;
            const char* color = lista[i] == Elemento(1)   ? "glColor3f(0, 1, 0)"
                                : lista[i] == Elemento(2) ? "glColor3f(1, 0, 0)"
                                                          : "glColor3f(0, 0, 1)";
            EXPECT_EQ(lista[i - 1], color) << lista[i];
        }
        EXPECT_EQ(Solo(lista, {"glColor3f"}).size(), 4u);
    }
}

TEST_F(Malla, TintFollowsTheRampInEveryMode) {
    for (const unsigned quad : {0u, 1u, 2u}) {
        Vertiz::CDEM dem = Rejilla({{0, 25, 50}, {50, 75, 99}, {99, 50, 25}});
        m_escena.Destruir();
        Toma(dem, [quad](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetQuad(quad);
            e.SetTipoColorMDT(2);
            e.Data().m_GamaColor = Vertiz::CDataGamaColor(L"0 0 200 0;100 200 0 0");
        });
        const LlamadasGL lista = Superficie();
        const int cotas[] = {0, 25, 50, 50, 75, 99, 99, 50, 25};
        for (std::size_t i = 1; i < lista.size(); ++i)
            for (int k = 0; k < 9; ++k) {
                if (lista[i] != Elemento(k)) continue;
                const int rojo = 2 * cotas[k], verde = 200 - rojo;
                const std::string& texto = lista[i - 1];
                ASSERT_TRUE(texto.starts_with("glColor3f(")) << texto;
                float canales[2] = {};
                const char *fin = texto.data() + texto.size(), *p = texto.data() + 10;
                p = std::from_chars(p, fin, canales[0]).ptr + 2;
                std::from_chars(p, fin, canales[1]);
                EXPECT_NEAR(canales[0], float(rojo) / 255.0F, 1e-5F);
                EXPECT_NEAR(canales[1], float(verde) / 255.0F, 1e-5F);
            }
    }
}

TEST_F(Malla, AThinnedMeshIsColouredByTheSamplesThatItShows) {
    for (const unsigned quad : {0u, 1u, 2u}) {
        Vertiz::CDEM dem = Rejilla(7, 7, [](int r, int c) { return float(10 * r + c); });
        m_escena.Destruir();
        Toma(dem, [quad](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetQuad(quad);
            e.SetTipoColorMDT(2);
            e.SetPuntosSuavizado(-1);
            e.Data().m_GamaColor = Vertiz::CDataGamaColor(L"0 0 0 0;100 200 0 0");
        });
        ASSERT_EQ(m_escena.OnIniciar(), 1);
        const std::vector<Vertice> v = Vertices(m_escena.m_nListaSuperficie);
        ASSERT_FALSE(v.empty());
        for (const Vertice& p : v) {
            const double h = p.y / m_escena.m_dFactor + 33;
            EXPECT_NEAR(p.color[0], 2 * h / 255, 0.003) << quad;
        }
    }
}

TEST_F(Malla, WithoutAGridTheStepIsOne) {
    EXPECT_EQ(m_escena.GetPasoMalla(), 1);
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 1);
}

// ---- Voids ----

TEST_F(Malla, AVoidTakesTheCellsRoundIt) {
    Vertiz::CDEM dem = Rejilla({{1, 1, 1, 1}, {1, kVacio, 1, 1}, {1, 1, 1, 1}});
    Toma(dem);
    // Vertices of the samples but the void: 0 to 3, 4 (-) 5 6, 7 to 10.
    EXPECT_LLAMADAS(Elementos(Superficie()), {"glBegin(GL_QUADS)",                                 //
                                              Elemento(2), Elemento(5), Elemento(6), Elemento(3),  //
                                              Elemento(5), Elemento(9), Elemento(10), Elemento(6), "glEnd()"});
}

TEST_F(Malla, AStripPassesOverAVoidWithTheFormerNormalAndNoSpike) {
    Vertiz::CDEM dem = Rejilla(3, 4, [](int r, int c) { return r == 1 && c == 1 ? kVacio : float(10 * c); });
    Toma(dem, [](EscenaTerreno& e) { e.SetQuad(0); });
    const LlamadasGL lista = Superficie();
    EXPECT_LLAMADAS(Elementos(lista), {"glBegin(GL_QUAD_STRIP)", Elemento(0), Elemento(4),             //
                                       Elemento(2), Elemento(5), Elemento(3), Elemento(6), "glEnd()",  //
                                       "glBegin(GL_QUAD_STRIP)", Elemento(4), Elemento(7),             //
                                       Elemento(5), Elemento(9), Elemento(6), Elemento(10), "glEnd()"});
    const LlamadasGL normales = Solo(lista, {"glNormal3f"});
    ASSERT_EQ(normales.size(), 6u);
    EXPECT_EQ(normales[0], "glNormal3f(0, 0, 0)") << "no cell has been whole yet";
    EXPECT_NE(normales[1], normales[0]);
    EXPECT_EQ(normales[3], normales[2]) << "beside the void the former one stays";
}

TEST_F(Malla, InfiniteHeightsAreVoids) {
    Vertiz::CDEM dem = Rejilla({{1, 1, 1}, {1, 1, INFINITY}});
    Toma(dem);
    EXPECT_LLAMADAS(Elementos(Superficie()),
                    {"glBegin(GL_QUADS)", Elemento(0), Elemento(3), Elemento(4), Elemento(1), "glEnd()"});
}

// ---- Step, subdivision, budget ----

TEST_F(Malla, WithoutAnySettingEverySampleIsShown) {
    Vertiz::CDEM dem = Rejilla(7, 7, [](int, int) { return 1.0F; });
    Toma(dem);
    EXPECT_EQ(m_escena.GetPasoMalla(), 1);
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 1);
    EXPECT_EQ(Solo(Superficie(), {"glArrayElement"}).size(), 4u * 36);
}

TEST_F(Malla, ANegativeSettingLeavesSamplesOut) {
    Vertiz::CDEM dem = Rejilla(8, 8, [](int r, int c) { return float(10 * r + c); });
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(-2); });
    EXPECT_EQ(m_escena.GetPasoMalla(), 3);
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 1);
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const std::vector<Vertice> v = Vertices(m_escena.m_nListaSuperficie);
    ASSERT_EQ(v.size(), 4u * 4) << "rows and columns 0, 3 and 6; the seventh is left over";
    double este = -1, sur = -1;
    for (const Vertice& p : v) {
        este = std::max(este, p.x);
        sur = std::max(sur, p.z);
    }
    EXPECT_NEAR(este, EnGL(60, 0, 0)[0], 1e-5);
    EXPECT_NEAR(sur, EnGL(0, 10, 0)[2], 1e-5);
}

TEST_F(Malla, StepsHoldInStripsAndPoints) {
    for (const unsigned quad : {0u, 2u}) {
        Vertiz::CDEM dem = Rejilla(5, 5, [](int, int) { return 1.0F; });
        m_escena.Destruir();
        Toma(dem, [quad](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetQuad(quad);
            e.SetPuntosSuavizado(-1);
        });
        const std::string modo = quad == 0 ? "glBegin(GL_QUAD_STRIP)" : "glBegin(GL_POINTS)";
        const LlamadasGL dos{Elemento(0), Elemento(3), Elemento(1), Elemento(4), Elemento(2), Elemento(5)};
        const LlamadasGL elementos = Solo(Superficie(), {"glArrayElement"});
        ASSERT_EQ(elementos.size(), 12u);
        EXPECT_TRUE(std::equal(dos.begin(), dos.end(), elementos.begin())) << EnLineas(elementos);
    }
}

TEST_F(Malla, ColumnsLeftOverByAStepEndAStripAtTheLastSample) {
    for (const unsigned quad : {0u, 2u}) {
        // Columns 0, 2 and 4 of six, rows 0, 2 and 4 of six: the sixth of each is left over.
        Vertiz::CDEM dem = Rejilla(6, 6, [](int, int) { return 1.0F; });
        m_escena.Destruir();
        Toma(dem, [quad](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetQuad(quad);
            e.SetPuntosSuavizado(-1);
        });
        EXPECT_LLAMADAS(Solo(Superficie(), {"glArrayElement"}),
                        {Elemento(0), Elemento(3), Elemento(1), Elemento(4), Elemento(2), Elemento(5),  //
                         Elemento(3), Elemento(6), Elemento(4), Elemento(7), Elemento(5), Elemento(8)});
    }
}

TEST_F(Malla, ADividedGridSendsEachSubrowAsABandThatEndsAtTheLastSample) {
    for (const unsigned quad : {0u, 2u}) {
        Vertiz::CDEM dem = Rejilla(2, 2, [](int, int) { return 1.0F; });
        dem.CalculaVectores();
        m_escena.Destruir();
        Toma(dem, [quad](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetQuad(quad);
            e.SetPuntosSuavizado(1);
        });
        const LlamadasGL lista = Superficie();
        EXPECT_LLAMADAS(Solo(lista, {"glArrayElement"}),
                        {Elemento(0), Elemento(3), Elemento(1), Elemento(4), Elemento(2), Elemento(5),  //
                         Elemento(3), Elemento(6), Elemento(4), Elemento(7), Elemento(5), Elemento(8)});
        EXPECT_EQ(Solo(lista, {"glBegin"}).size(), quad == 0 ? 2u : 1u);
        EXPECT_EQ(Solo(lista, {"glNormal3f"}), LlamadasGL(6, kAbajo));
    }
}

// A scene with an image laid over its grid.
class ConImagen : public EscenaTerreno {
  public:
    using EscenaTerreno::operator=;
    bool HayTexturas() const override { return true; }
};

TEST_F(Malla, UnderAnImageTheStepIsAPowerOfTwoAndNothingIsDivided) {
    Vertiz::CDEM dem = Rejilla(20, 20, [](int, int) { return 1.0F; });
    dem.CalculaVectores();
    ConImagen escena;
    escena.SetDEM(&dem);
    const auto malla = [&](unsigned quad, int n) {
        escena.SetQuad(quad);
        escena.SetPuntosSuavizado(n);
        return std::pair(escena.GetPasoMalla(), escena.GetSubdivisionMalla());
    };
    for (const unsigned quad : {0u, 1u}) {
        EXPECT_EQ(malla(quad, -1), std::pair(2, 1));
        EXPECT_EQ(malla(quad, -2), std::pair(4, 1));
        EXPECT_EQ(malla(quad, -3), std::pair(4, 1));
        EXPECT_EQ(malla(quad, -4), std::pair(8, 1));
        EXPECT_EQ(malla(quad, -7), std::pair(8, 1));
        EXPECT_EQ(malla(quad, 2), std::pair(1, 1));
    }
    // Points take no image.
    EXPECT_EQ(malla(2, -2), std::pair(3, 1));
    EXPECT_EQ(malla(2, 2), std::pair(1, 3));
}

TEST_F(Malla, OutsideABuildARectangleSendsNothing) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) { e.SetTipoColorMDT(2); });
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    m_escena.SetDEM(nullptr);
    const RegistroGL registro;
    EXPECT_EQ(m_escena.GeneraDEMRegular(0, 0, 2, 1, 1, 1, 2, 2), 1);
    EXPECT_EQ(registro.Cuenta("glArrayElement"), 0u);
}

TEST_F(Malla, NormalsAreUnitVectorsAcrossBothSidesOfTheirCell) {
    Vertiz::CDEM dem = Rejilla(2, 2, [](int r, int c) { return float(10 * r - 20 * c); });
    Toma(dem);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const auto n = registro.Numeros("glNormal3f").at(0);
    // Rises by 1 southwards and falls by 2 eastwards.
    EXPECT_NEAR(n[0], -2 / std::sqrt(6.0), 1e-6);
    EXPECT_NEAR(n[1], -1 / std::sqrt(6.0), 1e-6);
    EXPECT_NEAR(n[2], 1 / std::sqrt(6.0), 1e-6);
}

TEST_F(Malla, WithoutAContextThereIsNoSurface) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    m_escena.SetDEM(&dem);
    EXPECT_EQ(m_escena.OnIniciar(), 0);
    EXPECT_EQ(m_escena.Iniciar(), 0);
}

// A valid corner of a few samples in a large void, so that the walk is quick.
Vertiz::CDEM Esquina(unsigned lado) {
    Vertiz::CDEM dem(lado, lado, 1, 1, 0, 0);
    for (unsigned r = 0; r < 5; ++r)
        for (unsigned c = 0; c < 5; ++c)
            dem.Matriz().Set(lado - 1 - r, c, float(r + c));
    dem.ActualizaCantidades();
    return dem;
}

TEST_F(Malla, ALargeGridIsThinnedByItself) {
    Vertiz::CDEM dem = Esquina(3000);
    Toma(dem, [](EscenaTerreno& e) { e.SetBase(1); });
    EXPECT_EQ(m_escena.GetPasoMalla(), 2);
    EXPECT_EQ(m_escena.GetPuntosSuavizado(), 0) << "the setting stays";
    EXPECT_EQ(Solo(Superficie(), {"glArrayElement"}).size(), 4u * 4);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarBase(), 1);
    EXPECT_EQ(Solo(registro.Lista(m_escena.m_nListaBase), {"glNormal3f"}).size(), 8u + 1)
        << "walls stand on the same step: two on each side, and one floor";
}

TEST_F(Malla, TheBudgetIsFiveMillionSamples) {
    const auto paso = [](unsigned filas, unsigned columnas, int n) {
        Vertiz::CDEM dem(filas, columnas, 1, 1, 0, 0);
        EscenaTerreno escena;
        escena.SetDEM(&dem);
        escena.SetPuntosSuavizado(n);
        return escena.GetPasoMalla();
    };
    EXPECT_EQ(paso(2000, 2500, 0), 1) << "exactly five million are not too many";
    EXPECT_EQ(paso(2000, 2501, 0), 2);
    EXPECT_EQ(paso(2000, 2501, 3), 2) << "a setting above 0 comes down too";
    EXPECT_EQ(paso(2000, 2501, -4), 5) << "one that is coarse enough stays";
    EXPECT_EQ(paso(4500, 4500, -1), 3) << "a quarter of twenty millions and a quarter is too many still";
}

TEST_F(Malla, TheBudgetCountsForADividedMesh) {
    Vertiz::CDEM dem = Esquina(1000);
    dem.SetSuavizado(true);
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(9); });
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 2) << "3 x 3 of a million samples would be too many";
    dem.SetSuavizado(false);
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 1);
    EXPECT_EQ(m_escena.GetPasoMalla(), 1);
}

TEST_F(Malla, AStepBeyondTheGridShowsNothingAndEnds) {
    Vertiz::CDEM dem = Rejilla(4, 4, [](int, int) { return 1.0F; });
    for (const int n : {-10, -2'000'000'000, std::numeric_limits<int>::min()}) {
        m_escena.Destruir();
        Toma(dem, [n](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetPuntosSuavizado(n);
            e.SetBase(1);
        });
        EXPECT_TRUE(Solo(Superficie(), {"glArrayElement"}).empty());
        EXPECT_EQ(m_escena.OnIniciarBase(), 1);
    }
}

TEST_F(Malla, NoVertexOutsideTheReachOfASphericalView) {
    // TerrenoAGL leaves points out that are far from the sphere's centre; they must not become spikes.
    Vertiz::CDEM dem = Rejilla(3, 30, [](int, int) { return 1.0F; });
    Toma(dem);
    Vertiz::CDataTransformacion data;
    data.m_nTipo = Vertiz::CDataTransformacion::ESFERICA;
    m_escena.SetDataTransformacion(data);
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    for (const Vertice& p : Vertices(m_escena.m_nListaSuperficie))
        EXPECT_LE(p.x / m_escena.m_dFactor, 80.5);
}

TEST_F(Malla, TheWorkingArrayIsNotLeftToOpenGL) {
    Vertiz::CDEM dem = Rejilla({{1, 2}, {3, 4}});
    Toma(dem);
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    EXPECT_EQ(glIsEnabled(GL_VERTEX_ARRAY), GL_FALSE);
}

TEST_F(Terreno, AGridWithoutSamplesIsNotDividedHoweverMuchIsAskedFor) {
    Vertiz::CDEM dem;
    dem.SetSuavizado(true);
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(1000); });
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 1);
    EXPECT_TRUE(Superficie().empty());
}

}  // namespace
