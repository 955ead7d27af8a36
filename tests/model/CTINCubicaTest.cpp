// Cut and fill between two terrains, against closed formulas and against sampling.

#include "MallasPrueba.h"
#include "support/Progreso.h"

#include <climits>
#include <cmath>

namespace {

using namespace mallas;
using Vertiz::CVolumen;

// Neighbours, turn and type of a result.
void EsperaSana(const CTIN& tin) {
    EXPECT_EQ(tin.GetTipo(), CTIN::tipoCubicacion);
    EXPECT_FALSE(tin.HayRupturas());
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        ASSERT_TRUE(tin.EsVisible(i));
        ASSERT_GT(Cruz(tin.Vertice(i, 0), tin.Vertice(i, 1), tin.Vertice(i, 2)), 0);
        for (unsigned k = 0; k < 3; ++k) {
            const int vecino = tin.Fila(i).m_nVecinos[k];
            if (vecino >= 0) {
                ASSERT_GE(tin.LadoVecino(i, k), 0);
            }
        }
    }
}

TEST(CTINCubica, TwoPlanesThatCrossMakeTwoWedges) {
    const CTIN original = Cuadricula(
        4, 4, 100, [](int x, int) { return x; }, CDataSemilla(1, 50, 60, 70));
    const CTIN proyecto = Cuadricula(
        5, 2, 80, [](int, int) { return 200; }, CDataSemilla(1, 50, 60, 70));
    CTIN tin;
    ASSERT_EQ(tin.Cubica(original, proyecto, nullptr), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaSana(tin));
    EXPECT_EQ(tin.GetSemilla(), original.GetSemilla());
    // Where both are: 40 by 16; the ground rises from 0 to 40, the design lies at 20.
    const CVolumen v = tin.Volumen(0);
    EXPECT_NEAR(v.m_dEncima, 20 * 20 / 2.0 * 16, 1e-9) << "fill";
    EXPECT_NEAR(v.m_dDebajo, 20 * 20 / 2.0 * 16, 1e-9) << "cut";
    EXPECT_NEAR(v.m_dSuperficieEncima, 20 * 16, 1e-9);
    EXPECT_NEAR(tin.SuperficiePlana(), 40 * 16, 1e-9);
    for (const CPuntoTIN& p : tin.Puntos())
        EXPECT_EQ(p.z, 200 - p.x);
}

TEST(CTINCubica, OnlyWhatBothCoverCounts) {
    CTIN original = Cuadricula(4, 4, 10, [](int, int) { return 0; });
    original.BorraTriangulo(10), original.BorraTriangulo(11);  // the square from 10 to 20 each way
    const CTIN proyecto = Malla({{5, 5, 7}, {35, 5, 7}, {35, 25, 7}, {5, 25, 7}}, {{1, 2, 3}, {1, 3, 4}});
    CTIN tin;
    ASSERT_EQ(tin.Cubica(original, proyecto, nullptr), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaSana(tin));
    EXPECT_NEAR(tin.SuperficiePlana(), 30 * 20 - 100, 1e-9);
    EXPECT_NEAR(tin.Volumen(0).m_dEncima, 500 * 7, 1e-9);
    EXPECT_EQ(tin.GetMaximasInt(), Vertiz::CMaximas<int>({5, 5, 7}, {35, 25, 7}));
    CCoor3D<int> p(15, 15, 0);
    EXPECT_FALSE(tin.Proyecta(p, true, 0, nullptr));
    // The other way round: the same below.
    ASSERT_EQ(tin.Cubica(proyecto, original, nullptr), 1);
    EXPECT_NEAR(tin.Volumen(0).m_dDebajo, 500 * 7, 1e-9);
}

TEST(CTINCubica, APitInASlope) {
    // A pyramid turned over, 100 by 100 and 60 deep, under a level ground.
    const CTIN suelo = Cuadricula(3, 3, 100, [](int, int) { return 500; });
    const CTIN foso = Malla({{100, 100, 500}, {200, 100, 500}, {200, 200, 500}, {100, 200, 500}, {150, 150, 440}},
                            {{1, 2, 5}, {2, 3, 5}, {3, 4, 5}, {4, 1, 5}});
    CTIN tin;
    ASSERT_EQ(tin.Cubica(suelo, foso, nullptr), 1);
    const CVolumen v = tin.Volumen(0);
    EXPECT_NEAR(v.m_dDebajo, 100.0 * 100 * 60 / 3, 1e-6);
    EXPECT_EQ(v.m_dEncima, 0);
}

TEST(CTINCubica, RandomSurfacesAgreeWithTheDifferenceEverywhere) {
    std::mt19937 azar(12);
    for (int vez = 0; vez < 6; ++vez) {
        const CTIN a = Azarosa(azar, 60, 1000000, 3000), b = Azarosa(azar, 90, 1000000, 3000);
        CTIN tin;
        ASSERT_EQ(tin.Cubica(a, b, nullptr), 1);
        ASSERT_NO_FATAL_FAILURE(EsperaSana(tin));
        std::uniform_int_distribution<int> dado(-1000000, 1000000);
        int dentro = 0, distintos = 0;
        for (int i = 0; i < 4000; ++i) {
            CCoor3D<double> p(dado(azar), dado(azar), 0), q = p, r = p;
            const bool hayA = a.Proyecta(p, true, 0, nullptr), hayB = b.Proyecta(q, true, 0, nullptr);
            const bool hay = tin.Proyecta(r, true, 0, nullptr);
            distintos += hay != (hayA && hayB);
            if (!hay || !hayA || !hayB) continue;
            ++dentro;
            // Sides are bent by half a unit where they cross, and heights rounded.
            ASSERT_NEAR(r.z, q.z - p.z, 2.0);
        }
        EXPECT_GT(dentro, 2000);
        EXPECT_LE(distintos, 2) << "within a unit of a border";
    }
}

TEST(CTINCubica, ASurfaceAgainstItselfIsLevel) {
    std::mt19937 azar(13);
    const CTIN a = Azarosa(azar, 200, 100000, 3000);
    CTIN tin;
    ASSERT_EQ(tin.Cubica(a, a, nullptr), 1);
    EXPECT_EQ(tin.CantidadTriangulos(), a.CantidadTriangulos());
    EXPECT_EQ(tin.GetMaximasInt().Minima().z, 0);
    EXPECT_EQ(tin.GetMaximasInt().Maxima().z, 0);
    CTIN propia(a);
    ASSERT_EQ(propia.Cubica(propia, a, nullptr), 1) << "a terrain may take part in what replaces it";
    EXPECT_EQ(propia.GetMaximasInt().Maxima().z, 0);
}

TEST(CTINCubica, WhatCannotBeComparedIsRefused) {
    const CTIN a = Cuadricula(1, 1, 10, [](int, int) { return INT_MAX; });
    const CTIN b = Cuadricula(1, 1, 10, [](int, int) { return INT_MIN; });
    CTIN tin = a;
    EXPECT_EQ(tin.Cubica(a, b, nullptr), 0) << "beyond the integers";
    EXPECT_EQ(tin.CantidadTriangulos(), 0u);
    EXPECT_EQ(tin.Cubica(a,
                         Cuadricula(
                             1, 1, 10, [](int, int) { return 0; }, CDataSemilla(1)),
                         nullptr),
              0);
    ASSERT_EQ(tin.Cubica(a, CTIN(), nullptr), 1);
    EXPECT_EQ(tin.CantidadTriangulos(), 0u) << "nothing in common";
    Progreso progreso(1);
    EXPECT_EQ(tin.Cubica(a, a, &progreso), 2);
    EXPECT_EQ(tin.CantidadTriangulos(), 0u);
}

}  // namespace
