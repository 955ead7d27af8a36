#include "model/CCoor.h"

#include "model/CDataSemilla.h"

#include <gtest/gtest.h>

#include <climits>
#include <numbers>
#include <random>

namespace Vertiz {
namespace {

constexpr double kInfinito = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(CCoor, IsAPlainValueOfSixteenBytesInIntegers) {
    static_assert(sizeof(CCoor3D<int>) == 16 && sizeof(CCoor3D<double>) == 32);
    static_assert(std::is_trivially_copyable_v<CCoor3D<int>> && !std::is_polymorphic_v<CCoor3D<int>>);
    const CCoor3D<double> c(1.0, 2.0, 3.0);
    EXPECT_EQ(&c.x + 1, &c.y);
    EXPECT_EQ(&c.x + 2, &c.z);
}

TEST(CCoor, RoundsToTheNearestWhenIntegersAreUpdated) {
    CCoor3D<int> c(0, 0, 0, 7);
    c.Actualiza(2.5, -2.5, 0.49999999999999994);
    EXPECT_EQ(c, CCoor3D<int>(3, -3, 0));
    c.Actualiza(2.4, -2.4, -0.6);
    EXPECT_EQ(c, CCoor3D<int>(2, -2, -1));
    c.ActualizaXY(8.7, -8.7);
    EXPECT_EQ(c, CCoor3D<int>(9, -9, -1));
    c.ActualizaX(1.2), c.ActualizaY(1.8);
    EXPECT_EQ(c, CCoor3D<int>(1, 2, -1));
    EXPECT_EQ(c.GetTipo(), 7);
}

TEST(CCoor, KeepsRealValuesAsTheyAreInDoubles) {
    CCoor3D<double> c;
    c.Actualiza(0.1, -1e300, 2.5);
    EXPECT_EQ(c, CCoor3D<double>(0.1, -1e300, 2.5));
}

TEST(CCoor, IsFiniteOnlyWithAllItsComponents) {
    EXPECT_TRUE(CCoor3D<double>(1, -1e300, 0).EsFinito());
    EXPECT_TRUE(CCoor3D<int>(INT_MAX, 0, INT_MIN).EsFinito());
    EXPECT_FALSE(CCoor3D<double>(kNan, 0, 0).EsFinito());
    EXPECT_FALSE(CCoor3D<double>(0, kInfinito, 0).EsFinito());
    EXPECT_FALSE(CCoor3D<double>(0, 0, -kInfinito).EsFinito());
}

TEST(CCoor, FitsInIntegersWithinTheirRangeOnly) {
    EXPECT_TRUE(CabeEnEnteros({double(INT_MAX), -double(INT_MAX), 0.5}));
    EXPECT_FALSE(CabeEnEnteros({double(INT_MAX) + 1.0, 0.0, 0.0}));
    EXPECT_FALSE(CabeEnEnteros({0.0, -2147483649.0, 0.0}));
    EXPECT_FALSE(CabeEnEnteros({0.0, 0.0, kNan}));
}

TEST(CCoor, KeepsTipoWhenConvertedBothWays) {
    const CCoor3D<int> entero(CCoor3D<double>(1.6, -1.6, 0.2, 9000));
    EXPECT_EQ(entero, CCoor3D<int>(2, -2, 0));
    EXPECT_EQ(entero.GetTipo(), 9000);
    const CCoor3D<double> real(entero);
    EXPECT_EQ(real, CCoor3D<double>(2.0, -2.0, 0.0));
    EXPECT_EQ(real.GetTipo(), 9000);
    EXPECT_EQ(CCoor2D<int>(CCoor2D<double>(1.6, 0.4, 5)).GetTipo(), 5);
    EXPECT_EQ(CCoor2D<double>(entero).GetTipo(), 9000);
}

TEST(CCoor, HoldsAllThirtyTwoBitsOfTipoAndGivesTheLowOnesAsShort) {
    const CCoor3D<int> c(0, 0, 0, static_cast<int>(0xC8050123U));
    EXPECT_EQ(static_cast<std::uint32_t>(c.GetTipoCompleto()), 0xC8050123U);
    EXPECT_EQ(c.GetTipo(), 0x0123);
    EXPECT_EQ(CCoor3D<int>(0, 0, 0, 0x18000).GetTipo(), SHRT_MIN);
    EXPECT_EQ(CCoor3D<double>(c).GetTipoCompleto(), c.GetTipoCompleto());
}

TEST(CCoor, StopsAtTheEndsOfTheIntegers) {
    const CCoor3D<int> c(1e12, -1e12, kNan);
    EXPECT_EQ(c, CCoor3D<int>(INT_MAX, INT_MIN, 0));
    EXPECT_EQ(CCoor3D<int>(kInfinito, -kInfinito, 2147483646.6), CCoor3D<int>(INT_MAX, INT_MIN, INT_MAX));
    const CCoor3D<int> alto(INT_MAX, INT_MAX, 5), bajo(INT_MIN, INT_MIN, 5);
    EXPECT_EQ(alto - bajo, CCoor3D<int>(INT_MAX, INT_MAX, 0));
    EXPECT_EQ(bajo - alto, CCoor3D<int>(INT_MIN, INT_MIN, 0));
    EXPECT_EQ(alto + alto, CCoor3D<int>(INT_MAX, INT_MAX, 10));
    EXPECT_EQ(bajo + bajo, CCoor3D<int>(INT_MIN, INT_MIN, 10));
    EXPECT_EQ(alto * 2.0, CCoor3D<int>(INT_MAX, INT_MAX, 10));
    EXPECT_EQ(CCoor3D<int>(1, -1, 0) / 0.0, CCoor3D<int>(INT_MAX, INT_MIN, 0));
}

TEST(CCoor, CalculatesComponentwiseAndKeepsItsOwnTipo) {
    CCoor3D<double> c(1.0, 2.0, 3.0, 4);
    c += CCoor3D<double>(10.0, 20.0, 30.0, 99);
    EXPECT_EQ(c, CCoor3D<double>(11.0, 22.0, 33.0));
    c -= CCoor3D<double>(1.0, 1.0, 1.0, 98);
    c *= 2.0;
    c /= 4.0;
    EXPECT_EQ(c, CCoor3D<double>(5.0, 10.5, 16.0));
    EXPECT_EQ(c.GetTipo(), 4);
    EXPECT_EQ((c - CCoor3D<int>(1, 1, 1)) * 2.0, CCoor3D<double>(8.0, 19.0, 30.0));
    EXPECT_EQ(CCoor3D<int>(3, 5, -3) / 2.0, CCoor3D<int>(2, 3, -2));
    CCoor2D<int> p(1, 2, 3);
    p += CCoor2D<int>(1, 1);
    p *= 1.5;
    EXPECT_EQ(p, CCoor2D<int>(3, 5));
    EXPECT_EQ(p - CCoor2D<int>(1, 1), CCoor2D<int>(2, 4));
    EXPECT_EQ(p.GetTipo(), 3);
}

TEST(CCoor, MultipliesToARightHandedCrossProduct) {
    const CCoor3D<double> x(1.0, 0.0, 0.0), y(0.0, 1.0, 0.0);
    EXPECT_EQ(x * y, CCoor3D<double>(0.0, 0.0, 1.0));
    EXPECT_EQ(y * x, CCoor3D<double>(0.0, 0.0, -1.0));
    EXPECT_EQ(CCoor3D<double>(1, 2, 3) * CCoor3D<double>(4, 5, 6), CCoor3D<double>(-3, 6, -3));
}

TEST(CCoor, NormalisesVectorsOfAnySize) {
    for (const double escala : {1.0, 1e-310, 1e-200, 1e200, 1e307}) {
        CCoor3D<double> c(2.0 * escala, -3.0 * escala, 6.0 * escala, 8);
        ASSERT_TRUE(c.Normaliza()) << escala;
        EXPECT_NEAR(c.x, 2.0 / 7.0, 1e-12) << escala;
        EXPECT_NEAR(c.y, -3.0 / 7.0, 1e-12) << escala;
        EXPECT_NEAR(c.z, 6.0 / 7.0, 1e-12) << escala;
        EXPECT_EQ(c.GetTipo(), 8);
    }
    CCoor2D<double> p(3.0, 4.0);
    ASSERT_TRUE(p.Normaliza());
    EXPECT_DOUBLE_EQ(p.x, 0.6);
    CCoor3D<int> entero(0, -INT_MAX, 5);
    ASSERT_TRUE(entero.Normaliza());
    EXPECT_EQ(entero, CCoor3D<int>(0, -1, 0));
}

TEST(CCoor, RefusesToNormaliseZeroAndWhatIsNotFinite) {
    CCoor3D<double> cero(0.0, -0.0, 0.0, 3);
    EXPECT_FALSE(cero.Normaliza());
    EXPECT_EQ(cero, CCoor3D<double>());
    CCoor3D<double> infinito(kInfinito, 1.0, 2.0);
    EXPECT_FALSE(infinito.Normaliza());
    EXPECT_EQ(infinito, CCoor3D<double>(kInfinito, 1.0, 2.0));
    CCoor3D<double> nan(1.0, kNan, 2.0);
    EXPECT_FALSE(nan.Normaliza());
    EXPECT_EQ(nan.x, 1.0);
    CCoor2D<int> plano;
    EXPECT_FALSE(plano.Normaliza());
}

TEST(CCoor, TurnsCounterclockwiseRoundAnAxisOfAnyLength) {
    const double recto = std::numbers::pi / 2.0;
    const CCoor3D<double> c = CCoor3D<double>(2.0, 0.0, 7.0, 5).Rotar(recto, {0.0, 0.0, 1000.0});
    EXPECT_NEAR(c.x, 0.0, 1e-12);
    EXPECT_NEAR(c.y, 2.0, 1e-12);
    EXPECT_NEAR(c.z, 7.0, 1e-12);
    EXPECT_EQ(c.GetTipo(), 5);
    const CCoor3D<double> diagonal = CCoor3D<double>(1, 0, 0).Rotar(2.0 * std::numbers::pi / 3.0, {0.1, 0.1, 0.1});
    EXPECT_NEAR(diagonal.x, 0.0, 1e-12);
    EXPECT_NEAR(diagonal.y, 1.0, 1e-12);
    EXPECT_NEAR(diagonal.z, 0.0, 1e-12);
    EXPECT_EQ(CCoor3D<double>(1, 2, 3).Rotar(1.0, {0, 0, 0}), CCoor3D<double>(1, 2, 3));
    EXPECT_EQ(CCoor3D<int>(10, 0, 4).Rotar(recto, {0, 0, 3}), CCoor3D<int>(0, 10, 4));
}

TEST(CCoor, MeasuresInPlanWithDimensionZeroAndInSpaceWithOne) {
    const CCoor3D<int> a(0, 0, 0), b(3, 4, 12);
    EXPECT_EQ(a.Distancia(b, 0), 5.0);
    EXPECT_EQ(a.Distancia(b, 1), 13.0);
    EXPECT_EQ(a.Distancia2(b, 0), 25.0);
    EXPECT_EQ(a.Distancia2(b, 1), 169.0);
    EXPECT_EQ(CCoor3D<int>(INT_MIN, 0, 0).Distancia({INT_MAX, 0, 0}, 1), 4294967295.0);
    EXPECT_DOUBLE_EQ((CCoor3D<double>(3e200, 0, 0).Distancia({0, 4e200, 0}, 1)), 5e200);
    EXPECT_EQ(CCoor2D<int>(1, 1).Distancia({4, 5}), 5.0);
    EXPECT_EQ(CCoor2D<int>(1, 1).Distancia2({4, 5}), 25.0);
}

TEST(CCoor, GivesTheAngleBetweenTwoOthers) {
    const CCoor3D<double> c(10.0, 10.0, 99.0);
    EXPECT_NEAR(c.Angulo(CCoor3D<double>(20, 10, 0), CCoor3D<double>(10, 15, 5)), std::numbers::pi / 2.0, 1e-15);
    EXPECT_NEAR(c.Angulo({20, 10}, {0, 10}), std::numbers::pi, 1e-15);
    EXPECT_NEAR(c.Angulo({10, 15}, {20, 20}), std::numbers::pi / 4.0, 1e-15);
    EXPECT_EQ(c.Angulo({10, 10}, {20, 20}), 0.0);
}

TEST(CCoor, MeasuresTheDistanceToALine) {
    const CCoor3D<int> a(0, 0, 0), b(10, 0, 0);
    EXPECT_DOUBLE_EQ(CCoor3D<int>(5, -7, 100).DistanciaARecta(a, b), 7.0);
    EXPECT_DOUBLE_EQ(CCoor3D<int>(50, 7, 0).DistanciaARecta(a, b), 7.0);
    EXPECT_DOUBLE_EQ(CCoor3D<int>(3, 4, 0).DistanciaARecta(a, a), 5.0);
    const CCoor3D<int> lejosA(INT_MIN, INT_MIN, 0), lejosB(INT_MAX, INT_MAX, 0);
    EXPECT_NEAR(CCoor3D<int>(INT_MIN, INT_MAX, 0).DistanciaARecta(lejosA, lejosB), 4294967295.0 / std::sqrt(2.0), 1e-5);
    std::mt19937 azar(11);
    std::uniform_int_distribution<int> entero(-1000, 1000);
    for (int i = 0; i < 500; ++i) {
        const CCoor3D<int> p(entero(azar), entero(azar), 0), q(entero(azar), entero(azar), 0);
        const CCoor3D<int> r(entero(azar), entero(azar), 0);
        const double lado = q.Distancia(r, 0);
        if (lado == 0.0) continue;
        // Height of the triangle from its area by Heron's formula.
        const long double l1 = p.Distancia(q, 0), l2 = p.Distancia(r, 0), s = (l1 + l2 + lado) / 2;
        const long double area2 = s * (s - l1) * (s - l2) * (s - lado);
        EXPECT_NEAR(p.DistanciaARecta(q, r), 2.0 * std::sqrt(std::max(area2, 0.0L)) / lado, 1e-3);
    }
}

TEST(CCoor, InterpolatesTheHeightOnALine) {
    const CCoor3D<int> a(0, 0, 100), b(10, 0, 201);
    EXPECT_EQ(CCoor3D<int>(5, 80, 0).InterpolaZ(a, b), 151);
    EXPECT_EQ(CCoor3D<int>(20, 0, 0).InterpolaZ(a, b), 302);
    EXPECT_EQ(CCoor3D<int>(5, 5, 0).InterpolaZ(a, {0, 0, 7}), 100);
    EXPECT_DOUBLE_EQ((CCoor3D<double>(1, 1, 0).InterpolaZ({0, 0, 0}, {2, 2, 5})), 2.5);
    EXPECT_EQ(CCoor3D<int>(0, 0, 0).InterpolaZ({INT_MIN, 0, INT_MIN}, {INT_MAX, 0, INT_MAX}), 0);
}

TEST(CCoor, GoesFromAzimuthAndDistance) {
    const CCoor3D<int> c(100, 100, 7, 3);
    EXPECT_EQ(c.AzD(0.0, 50.0), CCoor3D<int>(100, 150, 7));
    EXPECT_EQ(c.AzD(std::numbers::pi / 2.0, 50.0), CCoor3D<int>(150, 100, 7));
    EXPECT_EQ(c.AzD(0.0, 50.0).GetTipo(), 3);
}

TEST(CDataSemilla, GivesTheUnitsInOneTerrainUnit) {
    EXPECT_EQ(CDataSemilla().Precision(), 1.0);
    CDataSemilla semilla(3, 500000.0, 4500000.0, -10.0);
    EXPECT_EQ(semilla.Precision(), 1000.0);
    EXPECT_EQ(CDataSemilla(-2).Precision(), 0.01);
    const CDataSemilla copia = semilla;
    EXPECT_EQ(copia, semilla);
    semilla.SetDecimales(2), semilla.SetX(1.0), semilla.SetY(2.0), semilla.SetZ(3.0);
    EXPECT_EQ(semilla, CDataSemilla(2, 1.0, 2.0, 3.0));
    EXPECT_FALSE(copia == semilla);
}

}  // namespace
}  // namespace Vertiz
