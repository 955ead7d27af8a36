// The mesh of a smooth grid, whose cells are divided: which vertices it places, and at which height.

#include "EscenaTerreno.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace {

using modelos::kVacio;
using modelos::Rejilla;

class Suave : public Terreno {};

TEST_F(Suave, ASmoothGridIsDivided) {
    Vertiz::CDEM dem = Rejilla(3, 3, [](int r, int c) { return float(10 * r + 5 * c); });
    dem.CalculaVectores();
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(2); });
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 3);
    EXPECT_EQ(m_escena.GetPasoMalla(), 1);
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const std::vector<Vertice> v = Vertices(m_escena.m_nListaSuperficie);
    ASSERT_EQ(v.size(), 4u * 36);
    // A plane stays a plane: every vertex lies on it.
    for (const Vertice& p : v) {
        const double x = p.x / m_escena.m_dFactor + 10, y = 10 - p.z / m_escena.m_dFactor;
        const auto esperado = EnGL(x, y, 10 * (20 - y) / 10 + 5 * x / 10);
        EXPECT_NEAR(p.y, esperado[1], 2e-5);
    }
}

TEST_F(Suave, SmoothingGoesOutwardsBetweenSamples) {
    Vertiz::CDEM dem = Rejilla(4, 4, [](int, int c) { return c == 1 || c == 2 ? 10.0F : 0.0F; });
    dem.CalculaVectores();
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(1); });
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    double alto = -1;
    for (const Vertice& p : Vertices(m_escena.m_nListaSuperficie))
        alto = std::max(alto, p.y);
    EXPECT_GT(alto, EnGL(0, 0, 10.5)[1]) << "the ridge swells between two samples of 10";
}

TEST_F(Suave, ADividedMeshIsColouredByItsOwnHeights) {
    Vertiz::CDEM dem = Rejilla(2, 2, [](int, int c) { return float(10 * c); });
    dem.CalculaVectores();
    Toma(dem, [](EscenaTerreno& e) {
        e.SetPuntosSuavizado(1);
        e.SetTipoColorMDT(2);
        e.Data().m_GamaColor = Vertiz::CDataGamaColor(L"0 0 0 0;20 200 0 0");
    });
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    for (const Vertice& p : Vertices(m_escena.m_nListaSuperficie)) {
        const double h = p.y / m_escena.m_dFactor + 5;
        EXPECT_NEAR(p.color[0], h * 10 / 255, 0.004);
    }
}

TEST_F(Suave, WithoutSmoothingNothingIsDivided) {
    Vertiz::CDEM dem = Rejilla(3, 3, [](int, int) { return 1.0F; });
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(2); });
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 1);
    EXPECT_EQ(Solo(Superficie(), {"glArrayElement"}).size(), 4u * 4);
}

TEST_F(Suave, AVoidInASmoothGridTakesItsNeighboursDivisionsToo) {
    Vertiz::CDEM dem = Rejilla({{1, 1, 1}, {1, 1, 1}, {1, 1, kVacio}});
    dem.CalculaVectores();
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(1); });
    const LlamadasGL lista = Superficie();
    EXPECT_GT(Solo(lista, {"glArrayElement"}).size(), 0u);
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    for (const Vertice& p : Vertices(m_escena.m_nListaSuperficie))
        EXPECT_FALSE(p.x > 1e-5 && p.z > 1e-5) << "no vertex in the cell of the void";
}

TEST_F(Suave, ASampleWithAVoidInItsCellHasNoVertexInASmoothGrid) {
    constexpr int kLado = 4, f = 2;
    for (int vacio = 0; vacio < kLado * kLado; ++vacio) {
        const auto vale = [vacio](int r, int c) { return r * kLado + c != vacio; };
        // The cell of a sample is the one to its south-east; that of the last column is the one on its west.
        const auto colocado = [&](int i, int j) {
            const int r = i / f, c = j / f, oeste = c == kLado - 1 ? c - 1 : c;
            return vale(r, c) && vale(r, oeste + 1) &&
                   (r == kLado - 1 || (vale(r + 1, oeste) && vale(r + 1, oeste + 1)));
        };
        std::set<std::pair<long, long>> esperados, vistos;
        for (int i = 0; i < (kLado - 1) * f; ++i)
            for (int j = 0; j < (kLado - 1) * f; ++j)
                if (colocado(i, j) && colocado(i + 1, j) && colocado(i, j + 1) && colocado(i + 1, j + 1))
                    esperados.emplace(i, j);
        Vertiz::CDEM dem = Rejilla(kLado, kLado, [&](int r, int c) { return vale(r, c) ? float(r + c) : kVacio; });
        dem.CalculaVectores();
        m_escena.Destruir();
        Toma(dem, [](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetPuntosSuavizado(f - 1);
        });
        ASSERT_EQ(m_escena.OnIniciar(), 1);
        const std::vector<Vertice> v = Vertices(m_escena.m_nListaSuperficie);
        const auto origen = EnGL(0, (kLado - 1) * 10, 0);
        const double fino = 10.0 / f * m_escena.m_dFactor;
        for (std::size_t k = 0; k < v.size(); k += 4)
            vistos.emplace(std::lround((v[k].z - origen[2]) / fino), std::lround((v[k].x - origen[0]) / fino));
        EXPECT_EQ(vistos, esperados) << "void at row " << vacio / kLado << ", column " << vacio % kLado;
    }
}

TEST_F(Suave, TheOriginsHeightIsTakenOffADividedMesh) {
    const modelos::Sitio sitio{10, 10, 0, 0, Vertiz::CDataSemilla(0, 0, 0, 100)};
    Vertiz::CDEM dem = Rejilla(
        2, 2, [](int, int c) { return float(100 + 10 * c); }, sitio);
    dem.CalculaVectores();
    Toma(dem, [](EscenaTerreno& e) { e.SetPuntosSuavizado(1); });
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const std::vector<Vertice> v = Vertices(m_escena.m_nListaSuperficie);
    ASSERT_EQ(v.size(), 16u);
    for (const Vertice& p : v)
        EXPECT_NEAR(p.y, EnGL(0, 0, p.x / m_escena.m_dFactor + 5)[1], 1e-5);
}

}  // namespace
