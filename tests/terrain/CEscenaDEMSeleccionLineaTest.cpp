// Picking by the sketch, and picking in a grid in cell-list form.

#include "VistaCenital.h"
#include "model/CDigiTab.h"

#include <gmock/gmock.h>

namespace {

using modelos::kVacio;
using testing::ElementsAre;
using testing::IsEmpty;

class SeleccionConLinea : public VistaCenital {
  protected:
    // A sketch through pixels of the view from above, at the height of GL's origin.
    void Traza(const std::vector<CPoint>& pixeles) {
        m_escena.VaciaLineaNueva();
        for (const CPoint& p : pixeles)
            m_escena.m_LineaNueva << Vertiz::CCoor3D<double>(p.x / 128.0 - 0.5, 0.0, p.y / 128.0 - 0.5, 0);
    }
};

TEST_F(SeleccionConLinea, CellsCountWithAllCornersInsideAndSamplesEachAlone) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    Traza({{20, 20}, {110, 20}, {110, 70}, {20, 70}});
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(0), 2u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{1, 1}, Celda{1, 2}));
    EXPECT_EQ(m_escena.GetTipoSeleccion(), 1);
    EXPECT_GT(m_escena.m_nListaSeleccion, 0u);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_TRUE(m_escena.EsCerradaLineaNueva()) << "the sketch itself";
    Traza({{20, 20}, {110, 20}, {110, 70}, {20, 70}});
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(1), 6u) << "what was picked before has gone";
    EXPECT_THAT(Picadas(), ElementsAre(Celda{1, 1}, Celda{1, 2}, Celda{1, 3}, Celda{2, 1}, Celda{2, 2}, Celda{2, 3}));
    EXPECT_EQ(m_escena.GetTipoSeleccion(), 0);
    EXPECT_TRUE(m_escena.EsCerradaLineaNueva());
}

TEST_F(SeleccionConLinea, TheBorderCountsAndAConcaveSketchLeavesItsBayOut) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    Traza({{0, 0}, {128, 0}, {128, 128}, {64, 64}, {0, 128}});
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(1), 5u + 5u + 5u + 4u + 2u);
    Traza({{0, 0}, {128, 0}, {128, 32}, {0, 32}});
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(2), 4u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{0, 0}, Celda{0, 1}, Celda{0, 2}, Celda{0, 3}));
}

TEST_F(SeleccionConLinea, ACellIsLeftOutForAnyOfItsCorners) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    // Round three corners of the cell (1, 1), whose middle is the pixel (48, 48).
    for (const auto& [x, y] : {std::pair{1, 1}, {1, -1}, {-1, 1}, {-1, -1}}) {
        const auto en = [&](int dx, int dy) { return CPoint(48 + x * dx, 48 + y * dy); };
        Traza({en(-23, -23), en(27, -23), en(-23, 27)});
        EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(0), 0u) << x << ' ' << y;
        EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(1), 3u) << x << ' ' << y;
    }
}

TEST_F(SeleccionConLinea, TheClosedSketchIsShown) {
    Vertiz::CDEM dem = Rejilla5();
    Vertiz::CDigiTab tabla;
    Mira(dem);
    m_escena.SetDigiTab(&tabla);
    Traza({{20, 20}, {110, 20}, {110, 70}});
    const RegistroGL registro;
    m_escena.OnSeleccionConLineaNueva(1);
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_EQ(v.size(), 4u);
    EXPECT_EQ(v.front(), v.back());
    m_escena.SetDigiTab(nullptr);
}

TEST_F(SeleccionConLinea, VoidsAreLeftOutByTheFirstCorner) {
    Vertiz::CDEM dem = Rejilla5();
    dem.Matriz().Set(2, 2, kVacio);
    dem.ActualizaCantidades();
    Mira(dem);
    Traza({{-5, -5}, {133, -5}, {133, 133}, {-5, 133}});
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(1), 24u);
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(0), 15u);
    EXPECT_THAT(Picadas(), testing::Not(testing::Contains(Celda{2, 2})));
}

TEST_F(SeleccionConLinea, WithoutALineOrASurfaceNothingIsPickedAndTheFormerGoes) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    const auto espera = [&](unsigned cuantas) {
        m_escena.Data().m_nQuad = 1;
        ASSERT_EQ(Pulsa(10, 10), 1u);
        if (cuantas == 3) m_escena.Data().m_nQuad = 3;
        EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(0), 0u);
        EXPECT_THAT(Picadas(), IsEmpty());
        EXPECT_EQ(m_escena.m_nListaSeleccion, 0u) << "nor does it show any more";
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
    };
    espera(0);
    Traza({{50, 50}});
    espera(1);
    Traza({{50, 50}, {60, 50}, {55, 55}});  // within one cell
    espera(2);
    Traza({{0, 0}, {128, 0}, {128, 128}, {0, 128}});
    espera(3);
    m_escena.SetDEM(nullptr);
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(0), 0u);
}

TEST_F(SeleccionConLinea, AnErrorOfOpenGLGivesZero) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    for (const auto& [funcion, n] : {std::pair{"glGetIntegerv", 2}, {"glGetDoublev", 2}, {"glNewList", 1}}) {
        SCOPED_TRACE(funcion);
        Traza({{0, 0}, {128, 0}, {128, 128}, {0, 128}});
        const FallaGL falla(funcion, n);
        EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(0), 0u);
        EXPECT_TRUE(falla.Ocurrida());
        wglMakeCurrent(nullptr, nullptr);
    }
}

TEST_F(SeleccionConLinea, OverAnImageEachSampleIsProjectedOnce) {
    // A scene over an orthophoto moves points at the lowest height up, which the quick test doesn't know.
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    auto* imagen = new EscenaTerreno;
    imagen->SetImagenOrtoFondo();
    m_escena.VinculoNuevo(imagen);
    Coloca();
    ASSERT_EQ(m_escena.GetTipoImagenFondo(), 3);
    const RegistroGL registro;
    EXPECT_EQ(Pulsa(112, 112), 1u);
    EXPECT_THAT(Picadas(), ElementsAre(Celda{3, 3}));
    EXPECT_EQ(registro.Cuenta("gluProject"), 25u + 4u);
}

// ---- Cell lists ----

class SeleccionEnLista : public SeleccionConLinea {
  protected:
    static constexpr double kOeste = 500, kSur = 800, kSz = 100;

    // As Rejilla5, in cell-list form; the sample of row 1 and column 1 is a void.
    void MiraLista() {
        modelos::Filas filas(5, std::vector<float>(5));
        for (int r = 0; r < 5; ++r)
            for (int c = 0; c < 5; ++c)
                filas[std::size_t(r)][std::size_t(c)] = float(kSz) + float(10 * r + c) / 8.0F;
        filas[1][1] = kVacio;
        m_dem = modelos::ListaCeldas(filas, {10, 10, kOeste, kSur, Vertiz::CDataSemilla(0, kOeste, kSur, kSz)});
        Mira(m_dem);
    }
    std::vector<int> Indices() const {
        std::vector<int> indices;
        for (const auto& p : m_escena.GetSeleccion()) {
            EXPECT_EQ(p.m_nPunto, -1);
            indices.push_back(p.m_nEntidad);
        }
        return indices;
    }
    Vertiz::CDEM m_dem;
};

TEST_F(SeleccionEnLista, AClickPicksCellsAndPointsByTheirIndex) {
    MiraLista();
    EXPECT_EQ(Pulsa(70, 70), 1u);
    EXPECT_THAT(Indices(), ElementsAre(2 * 4 + 2));
    EXPECT_THAT(Picadas(), IsEmpty());
    EXPECT_EQ(m_escena.CantidadSeleccion(), 1u);
    EXPECT_EQ(Pulsa(60, 100, 1), 1u);
    EXPECT_THAT(Indices(), ElementsAre(3 * 5 + 2));
    EXPECT_EQ(Pulsa(10, 10), 0u) << "a cell with a void corner isn't drawn either";
    EXPECT_EQ(Pulsa(32, 32, 1), 0u);
    EXPECT_EQ(Pulsa(60, 105, 1), 0u);
}

TEST_F(SeleccionEnLista, ClicksInOnePlaceWalkOn) {
    MiraLista();
    for (const int celda : {2 * 4 + 2, 2 * 4 + 3, 3 * 4 + 2, 3 * 4 + 3}) {
        EXPECT_EQ(Pulsa(96, 96, 0, 0), 1u);
        EXPECT_THAT(Indices(), ElementsAre(celda));
    }
    EXPECT_EQ(Pulsa(96, 96, 0, 0), 0u);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(Pulsa(96, 96, 0, 1), 1u);
        EXPECT_THAT(Indices(), ElementsAre(2 * 4 + 2)) << "from the beginning";
    }
    EXPECT_EQ(Pulsa(96, 96, 0, 0, 0, 1), 1u);
    EXPECT_EQ(Pulsa(96, 96, 0, 0, 0, 1), 1u);
    EXPECT_THAT(Indices(), ElementsAre(2 * 4 + 2, 2 * 4 + 3, 2 * 4 + 3)) << "behind the first";
    for (const int raro : {-7, 1000, std::numeric_limits<int>::max()}) {
        m_escena.SetSeleccion({{raro, -1}});
        EXPECT_EQ(Pulsa(96, 96, 0, 0), raro < 0 ? 1u : 0u);
    }
}

TEST_F(SeleccionEnLista, TheSketchPicksToo) {
    MiraLista();
    Traza({{20, 20}, {110, 20}, {110, 70}, {20, 70}});
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(0), 1u);
    EXPECT_THAT(Indices(), ElementsAre(1 * 4 + 2));
    EXPECT_EQ(m_escena.OnSeleccionConLineaNueva(1), 5u);
    EXPECT_EQ(Indices().size(), 6u) << "they add up here";
    EXPECT_EQ(Indices()[1], 1 * 5 + 2);
}

TEST_F(SeleccionEnLista, TheListHasThemWhereTheSurfaceIs) {
    MiraLista();
    RegistroGL registro;
    ASSERT_EQ(Pulsa(70, 70), 1u);
    auto v = registro.Numeros("glVertex3d");
    ASSERT_EQ(v.size(), 4u);
    const auto gl = EnGL(20, 20, 22 / 8.0);
    for (std::size_t j = 0; j < 3; ++j)
        EXPECT_NEAR(v[0][j], gl[j], 1e-6) << j;
    EXPECT_EQ(Solo(registro.Lista(m_escena.m_nListaSeleccion), {"glBegin"}).at(0), "glBegin(GL_QUADS)");
    const auto n = registro.Numeros("glNormal3d").at(0);
    EXPECT_LT(n[1], -0.9) << "into the terrain";
    EXPECT_NEAR(n[0] * n[0] + n[1] * n[1] + n[2] * n[2], 1.0, 1e-9);
    m_escena.SetSeleccion({{2, -1}, {-1, -1}, {99, -1}, {5 + 1, -1}});
    registro.Olvida();
    ASSERT_EQ(m_escena.OnSeleccion(64, 96, 1, 1, 1, 0, 0, 0, 0, 0, 0), 1u);
    v = registro.Numeros("glVertex3d");
    ASSERT_EQ(v.size(), 2u) << "what isn't there and the void are left out";
    EXPECT_NEAR(v[0][1], EnGL(20, 40, 2 * kSz + 2 / 8.0)[1], 1e-6) << "points add the origin's height";
    EXPECT_EQ(Solo(registro.Lista(m_escena.m_nListaSeleccion), {"glBegin"}).at(0), "glBegin(GL_POINTS)");
}

TEST_F(SeleccionEnLista, AnUndonePickShowsNoLonger) {
    MiraLista();
    ASSERT_EQ(Pulsa(70, 70, 0, 1, 1), 1u);
    ASSERT_EQ(Pulsa(70, 100, 0, 1, 1, 1), 1u);
    m_escena.BorraUltimoPuntoLineaNueva(0);
    EXPECT_THAT(Indices(), ElementsAre(2 * 4 + 2));
    EXPECT_GT(m_escena.m_nListaSeleccion, 0u);
    m_escena.BorraUltimoPuntoLineaNueva(0);
    EXPECT_THAT(Indices(), IsEmpty());
    EXPECT_EQ(m_escena.m_nListaSeleccion, 0u);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(SeleccionEnLista, ItsPointsAreAsStored) {
    MiraLista();
    ASSERT_EQ(Pulsa(64, 96, 1, 1, 1), 1u);
    const auto puntos = m_escena.GetPuntosSeleccion();
    ASSERT_EQ(puntos.size(), 1u);
    EXPECT_EQ(puntos[0].x, kOeste + 20);
    EXPECT_EQ(puntos[0].y, kSur + 10);
    EXPECT_EQ(puntos[0].z, float(kSz) + 32 / 8.0F);
}

}  // namespace
