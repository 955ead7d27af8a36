// The table of ellipsoids, and what is worked out from its rows.

#include "model/CElipsoide.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

namespace {

using Vertiz::CElipsoide;

TEST(CElipsoide, TableHas28RowsWithTheUserDefinedOneFirst) {
    const auto& tabla = CElipsoide::Tabla();
    ASSERT_EQ(tabla.size(), 28u);
    EXPECT_EQ(tabla[0].GetId(), -1);
    EXPECT_EQ(tabla[0].GetNombre(), L"Definido por el usuario");
    EXPECT_EQ(tabla[0].DameA(), 0.0);
    for (int i = 1; i < 28; ++i)
        EXPECT_EQ(tabla[i].GetId(), i);
}

TEST(CElipsoide, EveryRowButTheFirstHasTheShapeOfTheEarth) {
    for (const auto& e : CElipsoide::Tabla()) {
        if (e.GetId() < 0) continue;
        EXPECT_TRUE(e.EsValido());
        EXPECT_NEAR(e.DameA(), 6378000.0, 800.0) << e.GetId();
        EXPECT_NEAR(1.0 / e.DameAplanamiento(), 297.5, 4.6) << e.GetId();
    }
    EXPECT_FALSE(CElipsoide::Tabla()[0].EsValido());
}

// Sums weighted by the number of the row, so that a wrong digit or two rows exchanged show.
TEST(CElipsoide, RowsAddUpToTheSumsOfThePublishedTable) {
    double a = 0.0, e2 = 0.0;
    for (const auto& e : CElipsoide::Tabla()) {
        a += e.GetId() * e.DameA();
        e2 += e.GetId() * e.DameE2();
    }
    EXPECT_NEAR(a, 2410911122.116, 1e-3);
    EXPECT_NEAR(e2, 2.530816328, 1e-9);
}

// Published semi-minor axes and flattenings; the table's eccentricities have six to nine digits.
TEST(CElipsoide, SemiMinorAxisAndFlatteningAgreeWithPublishedOnes) {
    const CElipsoide& wgs84 = *CElipsoide::Busca(26);
    EXPECT_NEAR(wgs84.DameB(), 6356752.3142, 1e-3);
    EXPECT_NEAR(wgs84.DameAplanamiento(), 1.0 / 298.257223563, 1e-11);
    const CElipsoide& hayford = *CElipsoide::Busca(20);
    EXPECT_NEAR(hayford.DameB(), 6356911.946, 0.01);
    EXPECT_NEAR(hayford.DameAplanamiento(), 1.0 / 297.0, 1e-8);
    const CElipsoide& clarke1866 = *CElipsoide::Busca(8);
    EXPECT_NEAR(clarke1866.DameB(), 6356583.8, 0.05);
    const CElipsoide& bessel = *CElipsoide::Busca(6);
    EXPECT_NEAR(bessel.DameB(), 6356078.963, 0.01);
}

TEST(CElipsoide, DefaultIsWGS84) {
    EXPECT_EQ(CElipsoide().GetId(), 26);
}

TEST(CElipsoide, NumberOutsideTheTableHasNoRow) {
    EXPECT_EQ(CElipsoide::Busca(0), nullptr);
    EXPECT_EQ(CElipsoide::Busca(28), nullptr);
}

TEST(CElipsoide, SphereHasEqualAxes) {
    const CElipsoide esfera(-1, L"Esfera", 6371000.0, 0.0);
    EXPECT_EQ(esfera.DameB(), 6371000.0);
    EXPECT_EQ(esfera.DameAplanamiento(), 0.0);
    EXPECT_TRUE(esfera.EsValido());
}

TEST(CElipsoide, ImpossibleShapesAreNotValidAndGiveFiniteResults) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const CElipsoide& e : {CElipsoide(-1, L"", 6378137.0, 1.0), CElipsoide(-1, L"", 6378137.0, 2.0)}) {
        EXPECT_FALSE(e.EsValido());
        EXPECT_EQ(e.DameB(), 0.0);
        EXPECT_EQ(e.DameAplanamiento(), 1.0);
    }
    EXPECT_FALSE(CElipsoide(-1, L"", nan, 0.006).EsValido());
    EXPECT_FALSE(CElipsoide(-1, L"", 6378137.0, nan).EsValido());
    EXPECT_FALSE(CElipsoide(-1, L"", -1.0, 0.006).EsValido());
    EXPECT_FALSE(CElipsoide(-1, L"", 6378137.0, -0.1).EsValido());
}

}  // namespace
