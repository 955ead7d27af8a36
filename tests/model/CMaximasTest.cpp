#include "model/CMaximas.h"

#include "model/CPosicionEntidad.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <set>
#include <tuple>

namespace Vertiz {
namespace {

TEST(CMaximas, IsEmptyUntilItTakesAPoint) {
    CMaximas<int> caja;
    EXPECT_TRUE(caja.EstanVacias(true));
    EXPECT_TRUE(caja.EstanVacias(false));
    caja.Nuevo(CMaximas<int>());
    EXPECT_TRUE(caja.EstanVacias(true));
    caja.Nuevo({0, 0, 0});
    EXPECT_FALSE(caja.EstanVacias(true));
    caja.Borra();
    EXPECT_TRUE(caja.EstanVacias(true));
}

TEST(CMaximas, HasFiniteCornersWhenEmptyAndStaysEmptyThroughArithmetic) {
    CMaximas<double> caja;
    EXPECT_TRUE(std::isfinite(caja.Maxima().x) && std::isfinite(caja.Minima().z));
    EXPECT_TRUE(std::isfinite(caja.Maxima().x - caja.Minima().x));
    EXPECT_EQ(caja.Centro(true), CCoor3D<double>());
    caja /= -1e300;
    caja -= CCoor3D<double>(1e300, 1e300, 1e300);
    EXPECT_TRUE(caja.EstanVacias(true));
    EXPECT_TRUE((caja / 10.0).EstanVacias(true));
    EXPECT_TRUE(CMaximas<double>(CMaximas<int>()).EstanVacias(true));
    EXPECT_FALSE(caja.Dentro(CCoor3D<double>(), 0));
    std::vector<CCoor3D<double>> vertices(3);
    caja.DameVertices(vertices);
    EXPECT_TRUE(vertices.empty());
}

TEST(CMaximas, GrowsByPointsAndBoxes) {
    CMaximas<int> caja;
    caja.Nuevo({5, -5, 100});
    EXPECT_EQ(caja.Minima(), caja.Maxima());
    caja.Nuevo({INT_MIN, 7, 0});
    EXPECT_EQ(caja.Minima(), CCoor3D<int>(INT_MIN, -5, 0));
    EXPECT_EQ(caja.Maxima(), CCoor3D<int>(5, 7, 100));
    caja.Nuevo(CMaximas<int>({INT_MAX, 0, 0}, {0, 0, -1}));
    EXPECT_EQ(caja, CMaximas<int>({INT_MIN, -5, -1}, {INT_MAX, 7, 100}));
}

TEST(CMaximas, TakesPointsBeyondTheIntegers) {
    CMaximas<double> caja;
    caja.Nuevo({1e10, -1e10, 1e12});
    EXPECT_EQ(caja.Minima(), CCoor3D<double>(1e10, -1e10, 1e12));
}

TEST(CMaximas, PassesOverPointsThatAreNotFinite) {
    constexpr double infinito = std::numeric_limits<double>::infinity();
    CMaximas<double> caja;
    caja.Nuevo({0.0, 0.0, std::numeric_limits<double>::quiet_NaN()});
    EXPECT_TRUE(caja.EstanVacias(true));
    caja.Nuevo({1.0, 2.0, 3.0});
    caja.Nuevo({infinito, 0.0, 0.0});
    caja.Nuevo({0.0, -infinito, 0.0});
    EXPECT_EQ(caja, CMaximas<double>({1, 2, 3}, {1, 2, 3}));
}

TEST(CMaximas, RoundsTheIntegerCentreDownInSixtyFourBits) {
    EXPECT_EQ(CMaximas<int>({0, -3, INT_MAX}, {5, 0, INT_MAX - 1}).Centro(true), CCoor3D<int>(2, -2, INT_MAX - 1));
    EXPECT_EQ(CMaximas<int>({INT_MIN, INT_MIN, 0}, {INT_MAX, INT_MIN, 9}).Centro(false), CCoor3D<int>(-1, INT_MIN, 0));
    EXPECT_EQ((CMaximas<double>({0, -3, 1e308}, {5, 0, 1.5e308}).Centro(true)), CCoor3D<double>(2.5, -1.5, 1.25e308));
}

TEST(CMaximas, HoldsItsBordersAndLooksAtHeightInModeOneOnly) {
    const CMaximas<int> caja({0, 0, 0}, {10, 10, 10});
    EXPECT_TRUE(caja.Dentro(CCoor3D<int>(0, 10, 10), 1));
    EXPECT_FALSE(caja.Dentro(CCoor3D<int>(11, 5, 5), 0));
    EXPECT_FALSE(caja.Dentro(CCoor3D<int>(5, -1, 5), 0));
    EXPECT_TRUE(caja.Dentro(CCoor3D<int>(5, 5, 11), 0));
    EXPECT_FALSE(caja.Dentro(CCoor3D<int>(5, 5, 11), 1));
    EXPECT_TRUE(caja.Dentro(caja, 1));
    const CMaximas<int> alta({1, 1, 1}, {9, 9, 11});
    EXPECT_TRUE(caja.Dentro(alta, 0));
    EXPECT_FALSE(caja.Dentro(alta, 1));
    EXPECT_FALSE(alta.Dentro(caja, 0));
    EXPECT_FALSE(caja.Dentro(CMaximas<int>(), 0));
    EXPECT_FALSE(CMaximas<int>().Dentro(CMaximas<int>(), 0));
    EXPECT_FALSE((CMaximas<double>({0, 0, 0}, {1, 1, 1}).Dentro(CCoor3D<double>(std::nan(""), 0, 0), 0)));
}

TEST(CMaximas, MeetsBoxesThatShareABorder) {
    const CMaximas<int> caja({0, 0, 0}, {10, 10, 10});
    EXPECT_TRUE(caja.InterMax({{10, 10, 10}, {20, 20, 20}}, 1));
    EXPECT_TRUE(caja.InterMax({{-5, 4, 11}, {20, 6, 20}}, 0));
    EXPECT_FALSE(caja.InterMax({{-5, 4, 11}, {20, 6, 20}}, 1));
    EXPECT_FALSE(caja.InterMax({{11, 0, 0}, {20, 10, 10}}, 0));
    EXPECT_FALSE(caja.InterMax({{0, -20, 0}, {10, -1, 10}}, 0));
    EXPECT_FALSE(caja.InterMax(CMaximas<int>(), 0));
    EXPECT_FALSE(CMaximas<int>().InterMax(caja, 1));
}

TEST(CMaximas, ScalesMovesAndConverts) {
    CMaximas<double> caja(CMaximas<int>({-100, 0, 50}, {300, 200, 150}));
    EXPECT_EQ(caja / 100.0, CMaximas<double>({-1, 0, 0.5}, {3, 2, 1.5}));
    caja -= CCoor3D<double>(100, 100, 100);
    EXPECT_EQ(caja, CMaximas<double>({-200, -100, -50}, {200, 100, 50}));
    caja /= -1.0;
    EXPECT_FALSE(caja.EstanVacias(true));
    EXPECT_EQ(caja.Minima(), CCoor3D<double>(-200, -100, -50));
}

TEST(CMaximas, GivesItsEightCornersOnce) {
    const CMaximas<int> caja({0, 0, 0}, {1, 2, 3});
    std::vector<CCoor3D<int>> vertices(1);
    caja.DameVertices(vertices);
    std::set<std::tuple<int, int, int>> distintos;
    for (const auto& v : vertices) {
        EXPECT_TRUE((v.x == 0 || v.x == 1) && (v.y == 0 || v.y == 2) && (v.z == 0 || v.z == 3));
        distintos.insert({v.x, v.y, v.z});
    }
    EXPECT_EQ(vertices.size(), 8U);
    EXPECT_EQ(distintos.size(), 8U);
    EXPECT_EQ(vertices.front(), caja.Minima());
}

TEST(CPosicionEntidad, IsOrderedByEntityThenPoint) {
    static_assert(sizeof(CPosicionEntidad) == 8);
    EXPECT_EQ(CPosicionEntidad(3), CPosicionEntidad(3, -1));
    EXPECT_LT(CPosicionEntidad(1, 9), CPosicionEntidad(2, 0));
    EXPECT_LT(CPosicionEntidad(1, -1), CPosicionEntidad(1, 0));
    EXPECT_NE(CPosicionEntidad(1, 0), CPosicionEntidad(1, 1));
}

}  // namespace
}  // namespace Vertiz
