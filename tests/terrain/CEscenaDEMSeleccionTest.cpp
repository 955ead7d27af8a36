// Picking cells and samples of a matrix by a click.

#include "VistaCenital.h"
#include "model/CLinea.h"

#include <gmock/gmock.h>

#include <random>

namespace {

using modelos::kVacio;
using testing::ElementsAre;
using testing::IsEmpty;

class Seleccion : public VistaCenital {};

TEST_F(Seleccion, AClickPicksTheCellUnderThePixel) {
    Vertiz::CDEM dem = Rejilla5(Vertiz::CDataSemilla(0, 500, 800, 100));
    Mira(dem);
    EXPECT_EQ(Pulsa(10, 20), 1u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{0, 0}));
    EXPECT_EQ(m_escena.GetTipoSeleccion(), 1);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(Pulsa(70, 110), 1u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{3, 2}));
    EXPECT_TRUE(m_escena.GetSeleccion().empty());
    EXPECT_EQ(Pulsa(140, 10), 0u);
    EXPECT_THAT(Picadas(), IsEmpty());
}

TEST_F(Seleccion, WhatIsPickedFollowsFromKindAndSurface) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    const auto tipo = [&](unsigned pedido, unsigned quad) {
        m_escena.SetQuad(quad);
        Pulsa(64, 64, pedido);
        return m_escena.GetTipoSeleccion();
    };
    EXPECT_EQ(tipo(0, 0), 1);
    EXPECT_EQ(tipo(0, 1), 1);
    EXPECT_EQ(tipo(0, 2), 0);
    EXPECT_EQ(tipo(0, 3), 1);
    EXPECT_EQ(tipo(1, 1), 0);
    EXPECT_EQ(tipo(2, 2), 1);
    EXPECT_EQ(tipo(7, 1), 1);
}

TEST_F(Seleccion, ASampleIsMetWithinEightPixels) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    for (const auto& [x, y] : {std::pair{64, 96}, {71, 96}, {57, 96}, {64, 103}, {64, 89}, {71, 89}}) {
        EXPECT_EQ(Pulsa(x, y, 1), 1u) << x << ' ' << y;
        EXPECT_THAT(Picadas(), ElementsAre(Celda{3, 2}));
    }
    for (const auto& [x, y] : {std::pair{72, 96}, {56, 96}, {64, 104}, {64, 88}, {80, 80}})
        EXPECT_EQ(Pulsa(x, y, 1), 0u) << x << ' ' << y;
    EXPECT_EQ(Pulsa(127, 127, 1), 1u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{4, 4})) << "the last row and column";
    EXPECT_EQ(Pulsa(127, 127, 2), 1u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{3, 3})) << "cells have one less";
}

TEST_F(Seleccion, ClicksInOnePlaceWalkThroughWhatLiesThere) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    // A corner belongs to the four cells round it.
    for (const Celda& celda : {Celda{0, 2}, Celda{0, 3}, Celda{1, 2}, Celda{1, 3}}) {
        EXPECT_EQ(Pulsa(96, 32, 0, 0), 1u);
        EXPECT_THAT(Picadas(), ElementsAre(celda));
    }
    EXPECT_EQ(Pulsa(96, 32, 0, 0), 0u) << "the end of the grid";
    EXPECT_THAT(Picadas(), IsEmpty());
    EXPECT_EQ(Pulsa(96, 32, 0, 0), 1u) << "and round again";
    EXPECT_THAT(Picadas(), ElementsAre(Celda{0, 2}));
    EXPECT_EQ(Pulsa(96, 32, 0, 1), 1u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{0, 2})) << "from the beginning";
}

TEST_F(Seleccion, SamplesAreWalkedTheSameWay) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    // Rows and columns 6 pixels apart: nine samples round the middle are near.
    constexpr GLdouble kModelo[16] = {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
    constexpr GLdouble kProyeccion[16] = {0.375, 0, 0, 0, 0, 0.375, 0, 0, 0, 0, -0.1, 0, 0, 0, 0, 1};
    Coloca(kModelo, kProyeccion, 0, 0, 128, 128);
    for (unsigned r = 1; r <= 3; ++r) {
        for (unsigned c = 1; c <= 3; ++c) {
            EXPECT_EQ(Pulsa(64, 64, 1, 0), 1u);
            EXPECT_THAT(Picadas(), ElementsAre(Celda{r, c}));
        }
    }
    EXPECT_EQ(Pulsa(64, 64, 1, 0), 0u);
}

TEST_F(Seleccion, PicksAddUpAndGoOnBehindTheFirst) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    EXPECT_EQ(Pulsa(96, 32, 0, 0, 0, 1), 1u);
    EXPECT_EQ(Pulsa(96, 32, 0, 0, 0, 1), 1u);
    EXPECT_EQ(Pulsa(96, 32, 0, 0, 0, 1), 1u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{0, 2}, Celda{0, 3}, Celda{0, 3}));
    EXPECT_EQ(m_escena.CantidadSeleccion(), 3u);
    EXPECT_EQ(Pulsa(10, 10, 0, 1, 0, 1), 1u);
    EXPECT_EQ(Picadas().size(), 4u);
}

TEST_F(Seleccion, OnAVoidNothingIsPickedAndOnlyTheFirstCornerCounts) {
    Vertiz::CDEM dem = Rejilla5();
    dem.Matriz().Set(2, 2, kVacio);  // the middle one
    dem.ActualizaCantidades();
    Mira(dem);
    EXPECT_EQ(Pulsa(80, 80), 0u) << "it is the cell's north-west sample";
    EXPECT_EQ(Pulsa(64, 64, 1), 0u);
    for (const auto& [x, y] : {std::pair{48, 48}, {80, 48}, {48, 80}})
        EXPECT_EQ(Pulsa(x, y), 1u) << "seen from above a corner's depth doesn't matter";
    dem.Matriz().Set(2, 2, std::numeric_limits<float>::quiet_NaN());
    for (const auto& [x, y] : {std::pair{48, 48}, {80, 48}, {48, 80}, {80, 80}})
        EXPECT_EQ(Pulsa(x, y), 0u) << "a corner without any place";
}

TEST_F(Seleccion, WithoutItsOwnExtentNothingIsSearched) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    EXPECT_EQ(Pulsa(10, 10), 1u);
    EXPECT_EQ(m_escena.GetTipoSeleccion(), 1);
    m_escena.Data().m_bMaximasObjeto = 0;
    EXPECT_EQ(Pulsa(100, 100, 1), 0u);
    EXPECT_EQ(m_escena.GetTipoSeleccion(), 1) << "left alone";
    EXPECT_THAT(Picadas(), IsEmpty()) << "what was picked goes all the same";
}

TEST_F(Seleccion, WithoutGridOrContextTheResultIsZero) {
    EscenaTerreno sinContexto;
    EXPECT_EQ(sinContexto.OnSeleccion(1, 1, 1, 0, 0, 1, 1, 0, 0, 0, 0), 0u);
    EXPECT_EQ(sinContexto.CantidadSeleccion(), 0u);
    Vertiz::CDEM dem = Rejilla5();
    sinContexto.SetDEM(&dem);
    EXPECT_EQ(sinContexto.OnSeleccion(1, 1, 1, 0, 0, 1, 1, 0, 0, 0, 0), 0u);
    EXPECT_EQ(sinContexto.OnSeleccionConLineaNueva(0), 0u);
    sinContexto.Deselecciona(1, 1, 1);
}

TEST_F(Seleccion, AnErrorOfOpenGLGivesZero) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    for (const auto& [funcion, n] : {std::pair{"glGetIntegerv", 2},
                                     {"glGetDoublev", 1},
                                     {"glGetDoublev", 2},
                                     {"glNewList", 1},
                                     {"glMaterialfv", 1},
                                     {"glEndList", 1}}) {
        SCOPED_TRACE(funcion);
        const FallaGL falla(funcion, n);
        EXPECT_EQ(Pulsa(10, 10), 0u);
        EXPECT_TRUE(falla.Ocurrida());
        wglMakeCurrent(nullptr, nullptr);
    }
    EXPECT_EQ(Pulsa(10, 10), 1u);
}

// ---- Points and sketch ----

TEST_F(Seleccion, ModesRecordThePointAndFeedTheSketch) {
    Vertiz::CDEM dem = Rejilla5(Vertiz::CDataSemilla(0, 500, 800, 100));
    Mira(dem);
    const auto puntos = [&] { return m_escena.GetPuntosSeleccion(); };
    EXPECT_EQ(Pulsa(40, 70, 0, 1, 0), 1u);
    EXPECT_THAT(puntos(), IsEmpty());
    for (const unsigned modo : {1u, 3u}) {
        EXPECT_EQ(Pulsa(40, 70, 0, 1, modo), 1u);
        ASSERT_EQ(puntos().size(), 1u) << modo;
        // Row 2 from the north, column 1, less the seed's offset.
        EXPECT_DOUBLE_EQ(puntos()[0].x, 10);
        EXPECT_DOUBLE_EQ(puntos()[0].y, 20);
        EXPECT_DOUBLE_EQ(puntos()[0].z, 21 / 8.0);
        EXPECT_EQ(m_escena.NPuntosLineaNueva(), 0u) << modo;
    }
    EXPECT_EQ(Pulsa(40, 70, 0, 1, 2), 1u);
    EXPECT_EQ(puntos().size(), 1u);
    EXPECT_EQ(m_escena.NPuntosLineaNueva(), 2u) << "the point, and the one that follows the cursor";
    EXPECT_NEAR(m_escena.m_LineaNueva.Punto(0).x, 32 / 128.0 - 0.5, 1e-5) << "where the sample lies, not the click";
    EXPECT_NEAR(m_escena.m_LineaNueva.Punto(0).z, 64 / 128.0 - 0.5, 1e-5);
    EXPECT_EQ(Pulsa(100, 70, 0, 1, 2, 1), 1u);
    EXPECT_EQ(puntos().size(), 2u);
    EXPECT_EQ(m_escena.NPuntosLineaNueva(), 3u);
    EXPECT_DOUBLE_EQ(puntos()[1].x, 30) << "that of the new pick, not of the first";
}

TEST_F(Seleccion, WithoutAHitTheFrameTakesAFreePoint) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    EXPECT_EQ(m_escena.OnSeleccion(127, 140, 1, 0, 0, 1, 1, 2, 1, 0, 0), 0u) << "nothing more is selected";
    EXPECT_EQ(m_escena.GetPuntosSeleccion().size(), 1u);
    EXPECT_EQ(m_escena.NPuntosLineaNueva(), 2u);
}

TEST_F(Seleccion, ANewPickEmptiesTheSketchWhenAsked) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    m_escena.m_LineaNueva << Vertiz::CCoor3D<double>(0, 0, 0);
    m_escena.OnSeleccion(10, 10, 1, 0, 1, 1, 1, 0, 0, 0, 1);
    EXPECT_EQ(m_escena.NPuntosLineaNueva(), 1u) << "adding leaves it";
    m_escena.OnSeleccion(10, 10, 1, 0, 0, 1, 1, 0, 0, 1, 0);
    EXPECT_EQ(m_escena.NPuntosLineaNueva(), 1u);
    m_escena.OnSeleccion(10, 10, 1, 0, 0, 1, 1, 0, 0, 0, 1);
    EXPECT_EQ(m_escena.NPuntosLineaNueva(), 0u);
}

// ---- Children ----

class SeleccionEnHijos : public Seleccion {
  protected:
    // The west half is the scene's, the whole a child's.
    void MiraConHijo(bool bReferencia) {
        for (unsigned r = 0; r < 5; ++r)
            for (unsigned c = 2; c < 5; ++c)
                m_dem.Matriz().Set(r, c, kVacio);
        m_dem.ActualizaCantidades();
        Monta(m_demHijo);
        m_escena.SetDEM(&m_dem);
        m_pHijo = new EscenaTerreno(&m_demHijo);
        bReferencia ? m_escena.ReferenciaNuevo(m_pHijo) : m_escena.VinculoNuevo(m_pHijo);
        ASSERT_EQ(m_escena.Iniciar(), 1);
        Coloca();
    }
    Vertiz::CDEM m_dem = Rejilla5(), m_demHijo = Rejilla5();
    EscenaTerreno* m_pHijo = nullptr;
};

TEST_F(SeleccionEnHijos, WhatTheSceneMissesIsAskedOfThemAndCounted) {
    for (const bool bReferencia : {true, false}) {
        if (!bReferencia) m_escena.Destruir();
        MiraConHijo(bReferencia);
        EXPECT_EQ(Pulsa(10, 40, 0, 1, 1), 1u);
        EXPECT_THAT(Picadas(), ElementsAre(Celda{1, 0}));
        EXPECT_THAT(m_pHijo->GetSeleccionCeldas(), IsEmpty()) << "the scene's hit is enough";
        EXPECT_EQ(Pulsa(100, 40, 0, 1, 1, 1), 1u);
        EXPECT_THAT(m_pHijo->GetSeleccionCeldas(), ElementsAre(Celda{1, 3}));
        EXPECT_EQ(m_escena.CantidadSeleccion(), 2u);
        ASSERT_EQ(m_escena.GetPuntosSeleccion().size(), 2u);
        EXPECT_EQ(m_escena.GetPuntosSeleccion()[1].GetTipo(), 1) << "the first child's";
        EXPECT_DOUBLE_EQ(m_escena.GetPuntosSeleccion()[1].x, 30);
        EXPECT_EQ(m_escena.OnSeleccion(100, 40, 1, 0, 1, 0, 0, 1, 0, 0, 0), 0u) << "not asked for";
        EXPECT_EQ(m_escena.OnSeleccion(100, 40, 1, 0, 1, 1, 1, 1, 0, 0, 0), 1u);
        m_escena.Deselecciona(1, 1, 0);
        EXPECT_EQ(m_escena.CantidadSeleccion(), 0u);
        EXPECT_EQ(m_pHijo->m_nListaSeleccion, 0u);
    }
}

TEST_F(SeleccionEnHijos, AChildIsSearchedAlsoWithoutItsOwnExtent) {
    MiraConHijo(true);
    m_escena.Data().m_bMaximasObjeto = m_pHijo->Data().m_bMaximasObjeto = 0;
    EXPECT_EQ(Pulsa(10, 40), 1u);
    EXPECT_THAT(Picadas(), IsEmpty());
    EXPECT_THAT(m_pHijo->GetSeleccionCeldas(), ElementsAre(Celda{1, 0}));
}

TEST_F(SeleccionEnHijos, ResumingLeavesReferencesAndEmptiesLinks) {
    MiraConHijo(true);
    EXPECT_EQ(Pulsa(100, 40), 1u);
    EXPECT_EQ(Pulsa(10, 40, 0, 0), 1u);
    EXPECT_EQ(m_pHijo->GetSeleccionCeldas().size(), 1u) << "the reference keeps its pick";
    EXPECT_EQ(Pulsa(10, 40, 0, 1), 1u);
    EXPECT_THAT(m_pHijo->GetSeleccionCeldas(), IsEmpty());
    // Clicks that resume in a reference: its former pick goes, so there is none more, and never fewer than none.
    EXPECT_EQ(Pulsa(96, 32, 0, 0), 1u);
    for (int i = 0; i < 5; ++i)
        EXPECT_LE(Pulsa(96, 32, 0, 0), 1u);
    m_escena.Destruir();
    MiraConHijo(false);
    EXPECT_EQ(Pulsa(100, 40), 1u);
    EXPECT_EQ(Pulsa(10, 40, 0, 0), 1u);
    EXPECT_THAT(m_pHijo->GetSeleccionCeldas(), IsEmpty()) << "the link has let go";
}

// ---- The list ----

TEST_F(Seleccion, TheListShowsPickedCellsInRedWithoutLight) {
    Vertiz::CDEM dem = Rejilla5(Vertiz::CDataSemilla(0, 500, 800, 100));
    Mira(dem);
    const RegistroGL registro;
    ASSERT_EQ(Pulsa(40, 70), 1u);
    const LlamadasGL lista = registro.Lista(m_escena.m_nListaSeleccion);
    const std::string nulo = "[0, 0, 0, 0])", cara = "(GL_FRONT_AND_BACK, ";
    LlamadasGL esperado{"glColor3f(1, 0, 0)",          "glDisable(GL_TEXTURE_2D)",
                        "glEnable(GL_DEPTH_TEST)",     "glColorMaterial" + cara + "GL_AMBIENT_AND_DIFFUSE)",
                        "glEnable(GL_COLOR_MATERIAL)", "glDisable(GL_LIGHTING)",
                        "glDisable(GL_LIGHT0)"};
    for (const char* material : {"GL_AMBIENT", "GL_DIFFUSE", "GL_SPECULAR", "GL_EMISSION"})
        esperado.push_back("glMaterialfv" + cara + material + ", " + nulo);
    esperado.insert(esperado.end(), {"glMaterialf" + cara + "GL_SHININESS, 128)", "glBegin(GL_QUADS)"});
    EXPECT_EQ(EnLineas({lista.begin(), lista.begin() + 13}), EnLineas(esperado));
    EXPECT_LLAMADAS(Sin({lista.begin() + 13, lista.end()}, {"glNormal3d"}),
                    {lista[14], lista[15], lista[16], lista[17], "glEnd()"});
    const auto v = registro.Numeros("glVertex3d");
    ASSERT_EQ(v.size(), 4u);
    const double esquinas[4][3] = {{10, 20, 21 / 8.0}, {20, 20, 22 / 8.0}, {20, 10, 32 / 8.0}, {10, 10, 31 / 8.0}};
    for (std::size_t i = 0; i < 4; ++i) {
        const auto gl = EnGL(esquinas[i][0], esquinas[i][1], esquinas[i][2]);
        for (std::size_t j = 0; j < 3; ++j)
            EXPECT_NEAR(v[i][j], gl[j], 1e-7) << i << ' ' << j;
    }
    // Rises by 1/8 each 10 eastwards and by 10/8 each 10 southwards; into the terrain.
    const auto n = registro.Numeros("glNormal3d").at(0);
    const double largo = std::sqrt(1 + 0.125 * 0.125 + 0.0125 * 0.0125);
    EXPECT_NEAR(n[0], 0.0125 / largo, 1e-6);
    EXPECT_NEAR(n[1], -1 / largo, 1e-6);
    EXPECT_NEAR(n[2], 0.125 / largo, 1e-6);
}

TEST_F(Seleccion, TheListShowsPickedSamplesAsPoints) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    Pulsa(32, 64, 1);
    Pulsa(96, 64, 1, 1, 0, 1);
    RegistroGL registro;
    ASSERT_EQ(m_escena.IniciarSeleccion(), 1);
    EXPECT_LLAMADAS(Solo(registro.Lista(m_escena.m_nListaSeleccion), {"glBegin"}), {"glBegin(GL_POINTS)"});
    const auto v = registro.Numeros("glVertex3d");
    ASSERT_EQ(v.size(), 2u);
    EXPECT_NEAR(v[0][0], EnGL(10, 20, 0)[0], 1e-9);
    EXPECT_NEAR(v[1][1], EnGL(30, 20, 23 / 8.0)[1], 1e-9);
    // Positions of another grid leave out what isn't there.
    Vertiz::CDEM otra = modelos::Rejilla(3, 3, [](int, int) { return 1.0F; });
    m_escena.SetDEM(&otra);
    registro.Olvida();
    ASSERT_EQ(m_escena.IniciarSeleccion(), 1);
    EXPECT_EQ(registro.Cuenta("glVertex3d"), 1u);
}

TEST_F(Seleccion, EachChangeMakesTheListAnewAndLettingGoDeletesIt) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    {
        const RegistroGL registro;
        EXPECT_EQ(m_escena.IniciarSeleccion(), 1);
        EXPECT_EQ(registro.Cuenta("glGenLists"), 0u) << "nothing is picked";
    }
    Pulsa(10, 10);
    const GLuint lista = m_escena.m_nListaSeleccion;
    ASSERT_GT(lista, 0u);
    EXPECT_EQ(LlamadasEnCuadro(lista), 1);
    {
        const RegistroGL registro;
        Pulsa(40, 10, 0, 1, 0, 1);
        EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glDeleteLists", "glGenLists"}),
                        {"glDeleteLists(" + std::to_string(lista) + ", 1)", "glGenLists(1)"});
    }
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    m_escena.Deselecciona(0, 0, 0);
    EXPECT_EQ(m_escena.m_nListaSeleccion, 0u);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_THAT(Picadas(), IsEmpty());
    EXPECT_FALSE(m_escena.HaySeleccion(0, 0));
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    EXPECT_FALSE(glIsList(lista));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Seleccion, PickedCellsAndSamplesShowOnTheSurface) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    const auto dibuja = [&] {
        EXPECT_EQ(m_escena.Resize(120, 90), 1);
        m_escena.OnZoomExtension();
        EXPECT_EQ(m_escena.Render(), 1);
        return m_tela.Lee();
    };
    Pulsa(40, 70);
    EXPECT_TRUE(ComoGuardada(dibuja(), "terrain/picked_cell"));
    Coloca();
    Pulsa(64, 32, 1);
    EXPECT_TRUE(ComoGuardada(dibuja(), "terrain/picked_sample"));
}

// ---- Against a plain walk ----

// The first cell or sample from a place on, each corner through GLU.
std::optional<Vertiz::CDEM::CPosicion> Paseo(const EscenaTerreno& escena, const Vertiz::CDEM& dem,
                                             const GLdouble* modelo, const GLdouble* proyeccion, const GLint* viewport,
                                             int x, int y, bool celdas) {
    const double wx = x, wy = viewport[3] - y;
    const auto ventana = [&](unsigned r, unsigned c, Vertiz::CCoor3D<double>& v) {
        const auto& total = dem.GetMaximasTotalDouble();
        const auto& s = dem.GetSemilla();
        const float h = float(dem.Matriz().Get(dem.GetFilas() - 1 - r, c) - s.GetZ());
        const Vertiz::CCoor3D<double> p(total.Minima().x - s.GetX() + c * dem.GetCeldaX(),
                                        total.Maxima().y - s.GetY() - r * dem.GetCeldaY(), h, 0);
        double gx = 0, gy = 0, gz = 0;
        return escena.TerrenoAGL(p, gx, gy, gz, 1.0, false) &&
               gluProject(gx, gy, gz, modelo, proyeccion, viewport, &v.x, &v.y, &v.z) == GL_TRUE;
    };
    const unsigned menos = celdas ? 1 : 0;
    for (unsigned r = 0; r + menos < dem.GetFilas(); ++r) {
        for (unsigned c = 0; c + menos < dem.GetColumnas(); ++c) {
            if (!dem.EsValido(dem.GetFilas() - 1 - r, c)) continue;
            Vertiz::CCoor3D<double> v[4];
            if (!celdas) {
                if (ventana(r, c, v[0]) && v[0].x > wx - 8 && v[0].x < wx + 8 && v[0].y > wy - 8 && v[0].y < wy + 8)
                    return Vertiz::CDEM::CPosicion{r, c};
                continue;
            }
            if (!ventana(r, c, v[0]) || !ventana(r, c + 1, v[1]) || !ventana(r + 1, c + 1, v[2]) ||
                !ventana(r + 1, c, v[3]))
                continue;
            Vertiz::CLinea<double> linea;
            for (const auto& p : v)
                linea << p;
            linea.Cierra();
            if (linea.EstaDentro(Vertiz::CCoor3D<double>(wx, wy, 0, 0), false) != 1)
                return Vertiz::CDEM::CPosicion{r, c};
        }
    }
    return std::nullopt;
}

TEST_F(Seleccion, TheQuickWalkPicksWhatAPlainOneDoes) {
    std::mt19937 azar(5);
    const auto uno = [&] { return std::uniform_real_distribution<>(-1, 1)(azar); };
    const Vertiz::CDataSemilla semilla(0, 400000, 4600000, 1000);
    Vertiz::CDEM dem =
        modelos::Rejilla(25, 33, [&](int, int) { return azar() % 50 == 0 ? kVacio : float(1000 + 60 * uno()); },
                         {10, 10, 400000, 4600000, semilla});
    Monta(dem);
    int hallados = 0, vacios = 0;
    for (int vista = 0; vista < 400; ++vista) {
        const bool perspectiva = vista % 2 == 1, alineada = vista % 5 == 0;
        ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
        const GLint viewport[4] = {vista % 3 * 7, vista % 4 * 5, 128 + vista % 7 * 100, 128 + vista % 11 * 60};
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        const double zoom = std::exp2(4 * uno());
        if (perspectiva)
            gluPerspective(60, 1.3, 0.001, 10);
        else if (alineada)
            glOrtho(-0.5, 0.5, -0.5, 0.5, -5, 5);  // columns on whole pixels
        else
            glOrtho(-zoom, zoom, -zoom, zoom, -5, 5);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        if (alineada)
            glRotated(90, 1, 0, 0);
        else  // from far, from within, and from behind
            gluLookAt(uno(), 0.7 * uno(), uno(), 0.3 * uno(), 0, 0.3 * uno(), 0, 1, 0.01);
        GLdouble modelo[16], proyeccion[16];
        glGetDoublev(GL_MODELVIEW_MATRIX, modelo);
        glGetDoublev(GL_PROJECTION_MATRIX, proyeccion);
        Coloca(modelo, proyeccion, viewport[0], viewport[1], viewport[2], viewport[3]);
        for (int i = 0; i < 6; ++i) {
            int x = int(azar() % unsigned(viewport[2])), y = int(azar() % unsigned(viewport[3]));
            if (alineada) x = viewport[0] + i * viewport[2] / 32, y = viewport[3] / 2 - viewport[1];
            const bool celdas = i % 2 == 0;
            const auto esperada = Paseo(m_escena, dem, modelo, proyeccion, viewport, x, y, celdas);
            Pulsa(x, y, celdas ? 2 : 1);
            const Celdas picadas = Picadas();
            esperada ? ++hallados : ++vacios;
            ASSERT_EQ(picadas.empty(), !esperada) << "view " << vista << ", click " << i;
            if (esperada) {
                ASSERT_EQ(picadas[0], *esperada) << "view " << vista << ", click " << i;
            }
        }
    }
    EXPECT_GT(hallados, 400);
    EXPECT_GT(vacios, 400);
}

TEST_F(Seleccion, OnBordersThatRoundingDecidesItStillDoes) {
    std::mt19937 azar(9);
    const auto uno = [&] { return std::uniform_real_distribution<>(-1, 1)(azar); };
    Vertiz::CDEM dem = modelos::Rejilla(31, 31, [&](int, int) { return float(7 * uno()); });
    Monta(dem);
    constexpr GLint kViewport[4] = {0, 0, 300, 300};
    for (int vista = 0; vista < 300; ++vista) {
        ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glRotated(60 + 30 * uno(), 1, 0, 0);
        glRotated(180 * uno(), 0, 1, 0);
        GLdouble modelo[16], proyeccion[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, -0.1, 0, 0, 0, 0, 1};
        glGetDoublev(GL_MODELVIEW_MATRIX, modelo);
        // Moved so that a sample comes as near to a whole pixel as OpenGL's matrices, of floats, let it.
        const unsigned r = azar() % 31, c = azar() % 31;
        const auto gl = EnGL(10.0 * c, 10.0 * (30 - r), dem.Matriz().Get(30 - r, c));
        Vertiz::CCoor3D<double> v;
        gluProject(gl[0], gl[1], gl[2], modelo, proyeccion, kViewport, &v.x, &v.y, &v.z);
        proyeccion[12] = (std::round(v.x) - v.x) / 150;
        proyeccion[13] = (std::round(v.y) - v.y) / 150;
        Coloca(modelo, proyeccion, 0, 0, 300, 300);
        ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
        glGetDoublev(GL_PROJECTION_MATRIX, proyeccion);
        wglMakeCurrent(nullptr, nullptr);
        for (const int borde : {0, 8, -8}) {
            const int x = int(std::round(v.x)) + borde, y = 300 - int(std::round(v.y)) + borde;
            const auto esperada = Paseo(m_escena, dem, modelo, proyeccion, kViewport, x, y, borde == 0);
            Pulsa(x, y, borde == 0 ? 2 : 1);
            const Celdas picadas = Picadas();
            ASSERT_EQ(picadas.empty(), !esperada) << "view " << vista;
            if (esperada) {
                ASSERT_EQ(picadas[0], *esperada) << "view " << vista;
            }
        }
    }
}

TEST_F(Seleccion, AMissProjectsAlmostNothing) {
    Vertiz::CDEM dem = modelos::Rejilla(200, 200, [](int r, int c) { return float((r * 7 + c * 13) % 40); });
    Mira(dem);
    const RegistroGL registro;
    EXPECT_EQ(Pulsa(200, 10), 0u);
    EXPECT_EQ(registro.Cuenta("gluProject"), 0u);
    EXPECT_EQ(Pulsa(64, 64), 1u);
    EXPECT_LE(registro.Cuenta("gluProject"), 64u) << "and a hit only what is near";
}

}  // namespace
