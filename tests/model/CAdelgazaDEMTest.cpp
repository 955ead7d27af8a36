// Thinning grids to triangles: no sample farther than the tolerance, voids are holes, and few points.

#include "model/CAdelgazaDEM.h"

#include "MallasPrueba.h"
#include "support/Progreso.h"

#include <climits>
#include <cmath>
#include <limits>

namespace {

using namespace mallas;
using Vertiz::CAdelgazaDEM;
using Vertiz::CDEM;

template <class Altura>
CDEM Rejilla(unsigned filas, unsigned columnas, double celdaX, double celdaY, Altura altura,
             const CDataSemilla& semilla = CDataSemilla()) {
    CDEM dem(filas, columnas, celdaX, celdaY, semilla.GetX() + 10, semilla.GetY() + 20, semilla);
    for (unsigned f = 0; f < filas; ++f)
        for (unsigned c = 0; c < columnas; ++c)
            dem.Matriz().Set(f, c, float(altura(int(f), int(c))));
    dem.ActualizaCantidades();
    return dem;
}

double Colinas(int f, int c) {
    return 40 * std::sin(f * 0.11) * std::cos(c * 0.07) + 0.05 * f;
}

// Every sample that is a corner of a valid cell lies on the surface within the tolerance, and no void does.
void EsperaFiel(const CDEM& dem, const CTIN& tin, double tolerancia, double pendiente = 0.0) {
    const CDataSemilla& semilla = tin.GetSemilla();
    double peor = 0;
    for (unsigned f = 0; f < dem.GetFilas(); ++f)
        for (unsigned c = 0; c < dem.GetColumnas(); ++c) {
            bool bCelda = false;
            for (unsigned i = 0; i < 4; ++i)
                bCelda = bCelda || dem.EsCeldaValida(f - i / 2, c - i % 2, 1);
            // Inwards by a little: rounding to stored units moves the border.
            const double empuje = 1.0 / tin.Precision();
            const double x = dem.GetOeste() + c * dem.GetCeldaX(), y = dem.GetSur() + f * dem.GetCeldaY();
            CCoor3D<double> p(x - semilla.GetX(), y - semilla.GetY(), 0);
            bool bHay = tin.Proyecta(p, true, 0, nullptr);
            const double holgura = bHay ? 0.0 : pendiente * empuje;
            for (int i = 0; i < 4 && !bHay && bCelda; ++i) {
                p = CCoor3D<double>(x - semilla.GetX() + (i % 2 == 0 ? 1 : -1) * empuje,
                                    y - semilla.GetY() + (i / 2 == 0 ? 1 : -1) * empuje, 0);
                bHay = tin.Proyecta(p, true, 0, nullptr);
            }
            ASSERT_EQ(bHay, bCelda) << f << ", " << c;
            if (!bHay) continue;
            peor = std::max(peor, std::abs(p.z + semilla.GetZ() - double(dem.Matriz().Get(f, c))) - holgura);
        }
    EXPECT_LE(peor, tolerancia * (1 + 1e-6));
    EXPECT_GT(peor, tolerancia * 0.2) << "the tolerance is made use of";
}

TEST(CAdelgazaDEM, NoSampleIsFartherThanTheTolerance) {
    const CDEM dem = Rejilla(120, 90, 5, 5, Colinas);
    unsigned antes = 120 * 90;
    for (const double tolerancia : {0.05, 0.5, 3.0}) {
        CTIN tin;
        ASSERT_EQ(CAdelgazaDEM(tolerancia).Run(dem, tin, nullptr), 1);
        ASSERT_NO_FATAL_FAILURE(EsperaFiel(dem, tin, tolerancia)) << tolerancia;
        EXPECT_LT(tin.CantidadPuntos(), antes) << "more tolerance, fewer points";
        antes = tin.CantidadPuntos();
        EXPECT_DOUBLE_EQ(tin.SuperficiePlana(), 119 * 89 * 25.0);
        EXPECT_FALSE(tin.HayRupturas());
        EXPECT_EQ(tin.GetSemilla().GetDecimales(), 3);
        CDibujo<int> limites;
        tin.Limites(limites, 0, 0);
        EXPECT_EQ(limites.Cantidad(), 1u);
    }
    EXPECT_LT(antes, 500u);
}

TEST(CAdelgazaDEM, APlaneIsTwoTriangles) {
    const CDEM dem = Rejilla(50, 70, 2, 2, [](int f, int c) { return 3 * f + c; });
    CTIN tin;
    ASSERT_EQ(CAdelgazaDEM(0.01).Run(dem, tin, nullptr), 1);
    EXPECT_EQ(tin.CantidadPuntos(), 4u);
    EXPECT_EQ(tin.CantidadVisibles(), 2u);
    EXPECT_EQ(tin.Punto(0), CCoor3D<int>(10000, 20000, 0));
}

TEST(CAdelgazaDEM, ASinglePeakIsFound) {
    const CDEM dem = Rejilla(40, 40, 1, 1, [](int f, int c) { return f == 13 && c == 29 ? 10.0 : 0.0; });
    CTIN tin;
    ASSERT_EQ(CAdelgazaDEM(0.5).Run(dem, tin, nullptr), 1);
    CCoor3D<double> p(10 + 29, 20 + 13, 0);
    ASSERT_TRUE(tin.Proyecta(p, true, 0, nullptr));
    EXPECT_DOUBLE_EQ(p.z, 10.0);
    EXPECT_LT(tin.CantidadPuntos(), 60u);
}

TEST(CAdelgazaDEM, VoidsAreHolesWhateverTheirShape) {
    const auto conHuecos = [](int f, int c) {
        const bool hueco =
            std::hypot(f - 40, c - 30) < 12 || (f > 60 && c > 60 && (f + c) % 7 < 3) || (f == c && f < 9);
        return hueco ? -9999.0 : Colinas(f, c);
    };
    const CDEM dem = Rejilla(90, 80, 3, 3, conHuecos);
    CTIN tin;
    ASSERT_EQ(CAdelgazaDEM(0.5).Run(dem, tin, nullptr), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaFiel(dem, tin, 0.5));
    EXPECT_NEAR(tin.SuperficiePlana(), double(dem.DameCeldas()) * 9, 1e-6);
    CCoor3D<double> p(10 + 30 * 3, 20 + 40 * 3, 0);
    EXPECT_FALSE(tin.Proyecta(p, true, 0, nullptr));
}

TEST(CAdelgazaDEM, CellsThatAreNotSquareOrNotWholeUnits) {
    for (const auto& [x, y] : {std::pair(1.0, 4.0), std::pair(1.0 / 3, 1.0 / 7), std::pair(0.0002777, 0.0002777)}) {
        const CDEM dem = Rejilla(60, 50, x, y, Colinas, CDataSemilla(2, 500000, 4500000, 100));
        CTIN tin;
        ASSERT_EQ(CAdelgazaDEM(0.5).Run(dem, tin, nullptr), 1);
        ASSERT_NO_FATAL_FAILURE(EsperaFiel(dem, tin, 0.5, 10 / std::min(x, y))) << x << ", " << y;
        EXPECT_EQ(tin.GetSemilla().GetZ(), 100);
        // Neighbours and turn are those of a sound triangulation.
        Entero area = 0;
        for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
            const Entero propia = Cruz(tin.Vertice(i, 0), tin.Vertice(i, 1), tin.Vertice(i, 2));
            ASSERT_GT(propia, 0);
            area += tin.EsVisible(i) ? propia : 0;
        }
        EXPECT_NEAR(double(area) / 2 / (59 * 49 * x * y * tin.Precision() * tin.Precision()), 1.0, 1e-3);
    }
}

TEST(CAdelgazaDEM, FarFromItsSeedATerrainTakesTheGridsCorner) {
    CDEM dem = Rejilla(20, 20, 10, 10, Colinas);
    dem.SetOrigen(4e6, 5e8);
    dem.ActualizaCantidades();
    CTIN tin;
    ASSERT_EQ(CAdelgazaDEM(0.5).Run(dem, tin, nullptr), 1);
    EXPECT_EQ(tin.GetOrigenX(), 4e6);
    EXPECT_EQ(tin.GetOrigenY(), 5e8);
    EXPECT_EQ(tin.GetSemilla().GetDecimales(), 3);
    ASSERT_NO_FATAL_FAILURE(EsperaFiel(dem, tin, 0.5));
}

TEST(CAdelgazaDEM, WhatCannotBeThinnedIsRefused) {
    CTIN tin = Cuadricula(1, 1, 10, [](int, int) { return 0; });
    EXPECT_EQ(CAdelgazaDEM(1).Run(CDEM(), tin, nullptr), 0);
    EXPECT_EQ(tin.CantidadTriangulos(), 0u) << "it is emptied";
    EXPECT_EQ(CAdelgazaDEM(1).Run(Rejilla(5, 5, 1, 1, [](int f, int c) { return (f + c) % 2 != 0 ? 1.0 : -9999.0; }),
                                  tin, nullptr),
              0)
        << "no cell has all its corners";
    const CDEM dem = Rejilla(5, 5, 1, 1, Colinas);
    EXPECT_EQ(CAdelgazaDEM(NAN).Run(dem, tin, nullptr), 0);
    CDEM lista = dem;
    lista.SetListaCeldas(true);
    EXPECT_EQ(CAdelgazaDEM(1).Run(lista, tin, nullptr), 0);
    EXPECT_EQ(CAdelgazaDEM(-5).Run(dem, tin, nullptr), 1) << "a stored unit is the least";
    ASSERT_NO_FATAL_FAILURE(EsperaFiel(dem, tin, 0.001));
    CDEM infinita = Rejilla(2, 2, 1e300, 1e300, Colinas);
    EXPECT_EQ(CAdelgazaDEM(1).Run(infinita, tin, nullptr), 0);
}

TEST(CAdelgazaDEM, ItCanBeCancelled) {
    const CDEM dem = Rejilla(30, 30, 1, 1, Colinas);
    Progreso progreso(2);
    CTIN tin;
    EXPECT_EQ(CAdelgazaDEM(0.1).Run(dem, tin, &progreso), 2);
    EXPECT_EQ(tin.CantidadTriangulos(), 0u);
    EXPECT_EQ(progreso.m_Pasos.size(), 2u);
}

}  // namespace
