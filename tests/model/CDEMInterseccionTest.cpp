// Where rays meet the elevation model, against brute force, and between its two forms.

#include "RejillasPrueba.h"
#include "model/CDEM.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <optional>
#include <random>
#include <vector>

using namespace Vertiz;
using namespace Vertiz::rejillas;

namespace {

// Where a ray first meets the bilinear surface, by solving every cell's quadratic: in local coordinates.
std::optional<double> FuerzaBruta(const CDEM& dem, const CCoor3D<double>& o, const CCoor3D<double>& d) {
    const double oeste = dem.GetOeste() - dem.GetSemilla().GetX(), sur = dem.GetSur() - dem.GetSemilla().GetY();
    std::optional<double> mejor;
    for (unsigned f = 0; f + 1 < dem.GetFilas(); ++f) {
        for (unsigned c = 0; c + 1 < dem.GetColumnas(); ++c) {
            if (!dem.EsCeldaValida(f, c, 1)) continue;
            const double z0 = dem.Matriz().Get(f, c), z1 = dem.Matriz().Get(f, c + 1) - z0,
                         z2 = dem.Matriz().Get(f + 1, c) - z0, z3 = dem.Matriz().Get(f + 1, c + 1) - z0 - z1 - z2;
            const double u0 = (o.x - oeste) / dem.GetCeldaX() - c, du = d.x / dem.GetCeldaX();
            const double v0 = (o.y - sur) / dem.GetCeldaY() - f, dv = d.y / dem.GetCeldaY();
            // z0 + z1 u + z2 v + z3 u v = o.z + t d.z
            const double a = z3 * du * dv, b = z1 * du + z2 * dv + z3 * (u0 * dv + v0 * du) - d.z,
                         k = z0 + z1 * u0 + z2 * v0 + z3 * u0 * v0 - o.z - dem.GetSemilla().GetZ();
            std::vector<double> raices;
            if (std::abs(a) < 1e-14 * (std::abs(b) + 1e-300)) {
                raices = {-k / b};
            } else if (b * b >= 4.0 * a * k) {
                const double q = -0.5 * (b + std::copysign(std::sqrt(b * b - 4.0 * a * k), b));
                raices = {q / a, k / q};
            }
            for (const double t : raices) {
                const double u = u0 + t * du, v = v0 + t * dv, e = 1e-12;
                if (t >= 0.0 && u >= -e && u <= 1.0 + e && v >= -e && v <= 1.0 + e && (!mejor || t < *mejor)) mejor = t;
            }
        }
    }
    return mejor;
}

TEST(CDEM, ARayMeetsTheSurfaceWhereBruteForceDoes) {
    CDEM dem = Ondulado(23, 31, 7);
    std::mt19937 azar(99);
    std::uniform_real_distribution<double> x(190.0, 285.0), y(0.0, 52.0), z(-8.0, 45.0);
    std::uniform_int_distribution<unsigned> f(0, 22), c(0, 30);
    for (int i = 0; i < 40; ++i)
        dem.Matriz().Set(f(azar), c(azar), kVacio);
    int cortes = 0;
    for (int i = 0; i < 3000; ++i) {
        const CCoor3D<double> desde = P(x(azar), y(azar), z(azar)), hacia = P(x(azar), y(azar), z(azar));
        CCoor3D<double> corte;
        const bool bCorta = dem.InterseccionVector(hacia, desde, corte);
        const auto t = FuerzaBruta(dem, desde, hacia - desde);
        ASSERT_EQ(bCorta, t.has_value()) << i;
        if (!bCorta) continue;
        ++cortes;
        const CCoor3D<double> esperado = desde + (hacia - desde) * *t;
        EXPECT_NEAR(corte.x, esperado.x, 1e-7) << i;
        EXPECT_NEAR(corte.y, esperado.y, 1e-7) << i;
        EXPECT_NEAR(corte.z, esperado.z, 1e-7) << i;
        EXPECT_NEAR(corte.z, Cota(dem, corte.x, corte.y), 1e-6) << i;
    }
    EXPECT_GT(cortes, 1000);
}

TEST(CDEM, ARayMeetsTheSmoothSurfaceFirstWhereSamplingSeesIt) {
    CDEM dem = Ondulado(9, 9, 3);
    dem.CalculaVectores();
    std::mt19937 azar(4);
    std::uniform_real_distribution<double> x(200.5, 219.5), y(10.5, 21.5);
    for (int i = 0; i < 300; ++i) {
        const CCoor3D<double> desde = P(x(azar), y(azar), 40.0), hacia = P(x(azar), y(azar), -15.0);
        CCoor3D<double> corte;
        ASSERT_TRUE(dem.InterseccionVector(hacia, desde, corte));
        EXPECT_NEAR(corte.z, Cota(dem, corte.x, corte.y), 1e-9);
        const double t = (corte.z - desde.z) / (hacia.z - desde.z);
        EXPECT_NEAR(corte.x, desde.x + t * (hacia.x - desde.x), 1e-9);
        for (double s = 0.0; s < t - 1e-6; s += 0.002) {
            const CCoor3D<double> p = desde + (hacia - desde) * s;
            ASSERT_GT(p.z, Cota(dem, p.x, p.y)) << "met before";
        }
    }
}

TEST(CDEM, NoRaySlipsThroughBetweenCells) {
    const CDEM dem = Ondulado(12, 12, 2);
    std::mt19937 azar(21);
    std::uniform_real_distribution<double> x(190.0, 240.0), y(0.0, 40.0), parte(0.0, 10.999);
    for (int i = 0; i < 20000; ++i) {
        const bool bFila = i % 2 == 0;
        const double a = 0.001 + parte(azar) * 0.999,
                     b = 1.0 + std::floor(parte(azar) * 10.0 / 11.0);  // not on the border
        const double px = 200.0 + 2.5 * (bFila ? a : b), py = 10.0 + 1.5 * (bFila ? b : a);
        const CCoor3D<double> orilla = P(px, py, Cota(dem, px, py)),
                              desde = P(x(azar), y(azar), 500.0);  // too steep to graze
        CCoor3D<double> p;
        ASSERT_TRUE(dem.InterseccionVector(orilla, desde, p)) << i;
    }
}

TEST(CDEM, ARayTakesTheFirstCellOfAListWhateverSquareListsIt) {
    CDEM dem;
    dem.SetListaCeldas(true);
    dem.ListaX() = {0, 1, 3, 5, 8};
    dem.ListaY() = {0, 1, 3, 8};
    const auto celda = [&](unsigned x0, unsigned y0, unsigned x1, unsigned y1, float z) {
        const auto n = std::uint32_t(dem.Puntos().size());
        for (const auto& [i, j] : {std::pair{x0, y0}, {x0, y1}, {x1, y1}, {x1, y0}})
            dem.Puntos().push_back({z, i, j, 0, 0.0f, 0.0f, 0.0f});
        dem.Celdas().push_back({{n, n + 1, n + 2, n + 3}});
    };
    celda(0, 0, 1, 1, 0.0f);
    celda(2, 2, 4, 3, 5.0f);   // reaches into the south-west quarter, where the ray begins
    celda(3, 0, 4, 2, 10.0f);  // stands before it on the ray
    dem.ActualizaCantidades();
    CCoor3D<double> p;
    ASSERT_TRUE(dem.InterseccionVector(P(8, 4, 28 - 29.2), P(1, 1, 28), p));
    EXPECT_EQ(p.z, 10.0);
}

TEST(CDEM, RaysAlongTheAxesAndStraightDown) {
    CDEM dem = Grid(5, 5);
    for (unsigned i = 0; i < 25; ++i)
        dem.Matriz().Set(i / 5, i % 5, float(i % 5));  // z = x
    CCoor3D<double> p;
    ASSERT_TRUE(dem.InterseccionVector(P(1.3, 2.4, 5), P(1.3, 2.4, 50), p));
    EXPECT_NEAR(p.z, 1.3, 1e-15);
    EXPECT_FALSE(dem.InterseccionVector(P(1.3, 2.4, 60), P(1.3, 2.4, 50), p)) << "upwards, away from it";
    ASSERT_TRUE(dem.InterseccionVector(P(1.3, 2.4, -5), P(1.3, 2.4, -50), p)) << "from below";
    ASSERT_TRUE(dem.InterseccionVector(P(4, 4, 0), P(4, 4, 9), p)) << "the last corner";
    EXPECT_EQ(p.z, 4.0);
    for (const double y : {0.0, 0.5, 1.0, 2.0, 4.0}) {
        ASSERT_TRUE(dem.InterseccionVector(P(3, y, 2.25), P(-7, y, 2.25), p)) << y;
        EXPECT_DOUBLE_EQ(p.x, 2.25);
        ASSERT_TRUE(dem.InterseccionVector(P(3, y, 2.25), P(12, y, 2.25), p)) << y;
        EXPECT_DOUBLE_EQ(p.x, 2.25);
    }
    for (const double x : {0.0, 0.5, 1.0, 4.0}) {
        ASSERT_TRUE(dem.InterseccionVector(P(x, 3, x), P(x, -1, x), p)) << "in the surface itself, from its edge";
        EXPECT_EQ(p.y, 0.0);
        EXPECT_FALSE(dem.InterseccionVector(P(x, 3, x + 0.01), P(x, -1, x + 0.01), p));
    }
    EXPECT_FALSE(dem.InterseccionVector(P(-1, 2, -0.5), P(-3, 2, -0.5), p)) << "passes under the low side";
    EXPECT_FALSE(dem.InterseccionVector(P(9, 9, 1), P(9, 0, 1), p)) << "beside the grid";
}

TEST(CDEM, ARayStartsAtItsSecondPoint) {
    CDEM dem = Grid(3, 3);
    dem.Matriz().Rellena(10.0f);
    CCoor3D<double> p;
    EXPECT_TRUE(dem.InterseccionVector(P(1.0, 1.1, 12), P(1.0, 0.9, 30), p)) << "goes on beyond the point";
    EXPECT_FALSE(dem.InterseccionVector(P(1.0, 1.1, 30), P(1.0, 0.9, 12), p)) << "never looks behind its start";
    EXPECT_TRUE(dem.InterseccionVector(P(1.0, 1.1, 30), P(1.0, 0.9, 10), p)) << "starts on the surface";
    EXPECT_EQ(p.y, 0.9);
}

TEST(CDEM, RaysPassThroughVoidsAndEdges) {
    CDEM dem = Grid(5, 5);
    dem.Matriz().Rellena(1.0f);
    dem.Matriz().Set(2, 2, kVacio);
    CCoor3D<double> p = P(7, 7, 7);
    EXPECT_FALSE(dem.InterseccionVector(P(2.2, 2.2, 1), P(2.2, 2.1, 9), p));
    EXPECT_EQ(p, P(7, 7, 7));
    // Exactly along the edge between a whole cell and the hole, whichever of them the walk takes.
    EXPECT_TRUE(dem.InterseccionVector(P(1.0, 2.0, 1), P(1.0, 0.5, 9), p));
    EXPECT_TRUE(dem.InterseccionVector(P(3.0, 2.0, 1), P(3.0, 0.5, 9), p));
    // Through corners of the lattice, from every side.
    for (int i = 0; i < 360; i += 15) {
        const double a = i * std::numbers::pi / 180.0;
        EXPECT_TRUE(dem.InterseccionVector(P(1, 1, 1), P(1 + 0.9 * std::cos(a), 1 + 0.9 * std::sin(a), 4), p)) << i;
    }
    EXPECT_TRUE(dem.InterseccionVector(P(4, 4, 1), P(-10, -10, 8), p));
}

TEST(CDEM, RaysThatAreNoneMeetNothing) {
    CDEM dem = Grid(3, 3);
    dem.Matriz().Rellena(1.0f);
    CCoor3D<double> p;
    for (const double malo : {std::nan(""), kInfinito, -kInfinito}) {
        EXPECT_FALSE(dem.InterseccionVector(P(malo, 1, 1), P(1, 1, 5), p));
        EXPECT_FALSE(dem.InterseccionVector(P(1, 1, 1), P(1, malo, 5), p));
        EXPECT_FALSE(dem.InterseccionVector(P(1, 1, malo), P(1, 1, 5), p));
    }
    EXPECT_FALSE(dem.InterseccionVector(P(1, 1, 5), P(1, 1, 5), p));
    EXPECT_FALSE(dem.InterseccionVector(P(1e308, 1, 5), P(-1e308, 1, 5), p)) << "a direction beyond doubles";
    EXPECT_TRUE(dem.InterseccionVector(P(1, 1, 1), P(1e9, 1e9, 1e9), p));
    EXPECT_NEAR(p.x, 1.0, 1e-6);
    EXPECT_TRUE(dem.InterseccionVector(P(1.0 + 1e-13, 1, -1e6), P(1, 1, 1e6), p)) << "all but straight down";
    EXPECT_NEAR(p.z, 1.0, 1e-9);
}

TEST(CDEM, RaysMeetACellListAsTheyMeetTheSameGrid) {
    // A regular grid told as a list of its cells.
    const CDEM grid = Ondulado(14, 11, 5);
    CDEM lista;
    lista.Semilla() = grid.GetSemilla();
    lista.SetListaCeldas(true);
    for (unsigned c = 0; c < 11; ++c)
        lista.ListaX().push_back(grid.GetOeste() + c * grid.GetCeldaX());
    for (unsigned f = 0; f < 14; ++f)
        lista.ListaY().push_back(grid.GetSur() + f * grid.GetCeldaY());
    for (unsigned f = 0; f < 14; ++f)
        for (unsigned c = 0; c < 11; ++c)
            lista.Puntos().push_back({grid.Matriz().Get(f, c), c, f, 0, 0.0f, 0.0f, 0.0f});
    for (unsigned f = 0; f < 13; ++f)
        for (unsigned c = 0; c < 10; ++c)
            lista.Celdas().push_back({{f * 11 + c, (f + 1) * 11 + c, (f + 1) * 11 + c + 1, f * 11 + c + 1}});
    lista.ActualizaCantidades();
    EXPECT_EQ(lista.GetMaximasDouble(), grid.GetMaximasDouble());
    CDEM suave = grid, listaSuave = lista;
    suave.CalculaVectores();
    listaSuave.SetSuavizado(true);
    for (unsigned i = 0; i < 14 * 11; ++i) {
        listaSuave.Puntos()[i].m_fVectorX = suave.VectorX().Get(i / 11, i % 11);
        listaSuave.Puntos()[i].m_fVectorY = suave.VectorY().Get(i / 11, i % 11);
        listaSuave.Puntos()[i].m_fVectorZ = suave.VectorZ().Get(i / 11, i % 11);
    }

    std::mt19937 azar(8);
    std::uniform_real_distribution<double> x(195.0, 230.0), y(5.0, 35.0), z(-8.0, 45.0);
    for (int i = 0; i < 1000; ++i) {
        const CCoor3D<double> desde = P(x(azar), y(azar), z(azar)), hacia = P(x(azar), y(azar), z(azar));
        const bool bSuave = i % 2 == 1;
        CCoor3D<double> a, b;
        const bool bCorta = (bSuave ? suave : grid).InterseccionVector(hacia, desde, a);
        ASSERT_EQ(bCorta, (bSuave ? listaSuave : lista).InterseccionVector(hacia, desde, b)) << i;
        if (!bCorta) continue;
        EXPECT_NEAR(a.x, b.x, 1e-7);
        EXPECT_NEAR(a.y, b.y, 1e-7);
        EXPECT_NEAR(a.z, b.z, 1e-7);
    }
    CDibujo<int> deGrid(grid.GetSemilla()), deLista(grid.GetSemilla());
    ASSERT_EQ(grid.DameBase(deGrid), 1);
    ASSERT_EQ(lista.DameBase(deLista), 1);
    ASSERT_EQ(deLista.Cantidad(), 1u);
    EXPECT_EQ(Mide(deGrid).area, Mide(deLista).area);
    EXPECT_EQ(deGrid[0]->NPuntos(), deLista[0]->NPuntos());
}

}  // namespace
