// Predicates on integers, against slower ways to the same answer.

#include "Triangulaciones.h"
#include "model/Predicados.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <random>
#include <set>

namespace Vertiz::predicados {
namespace {

TEST(Predicados, TurnsAreExactOnTheWholeRangeOfTheIntegers) {
    EXPECT_EQ(Giro({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}), 1);
    EXPECT_EQ(Giro({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MAX, INT_MIN}), -1);
    EXPECT_EQ(Giro({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {0, 0}), 0);
    EXPECT_EQ(Giro({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {0, 1}), 1);
    EXPECT_EQ(Giro({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX - 1}, {INT_MAX - 1, INT_MAX - 1}), 1);
}

TEST(Predicados, TheCircleIsTheSameNearAndFar) {
    // Around 2^30 the way of working changes.
    std::mt19937 azar(9);
    std::array<int, 3> veces{};
    for (const std::int64_t lado : {std::int64_t{1} << 29, (std::int64_t{1} << 30) - 3, std::int64_t{1} << 30,
                                    (std::int64_t{1} << 30) + 3, std::int64_t{1} << 31}) {
        std::uniform_int_distribution<std::int64_t> dado(-4, 4);
        for (int i = 0; i < 4000; ++i) {
            const auto punto = [&](std::int64_t x, std::int64_t y) {
                const auto entero = [](std::int64_t v) { return int(std::clamp<std::int64_t>(v, INT_MIN, INT_MAX)); };
                return CCoor3D<int>(entero(x + dado(azar) / 3), entero(y + dado(azar) / 3), 0);
            };
            const std::int64_t base = -lado / 2;
            const CCoor3D<int> a = punto(base, base), b = punto(base + lado, base), c = punto(base + lado, base + lado),
                               d = punto(base, base + lado);
            const int dentro = triangulaciones::DentroDelCirculo(a, b, c, d)   ? 1
                               : triangulaciones::DentroDelCirculo(b, a, c, d) ? -1
                                                                               : 0;
            ASSERT_EQ(EnCirculo(a, b, c, d), dentro);
            ASSERT_EQ(EnCirculoLejos(a, b, c, d), dentro);
            ++veces[std::size_t(dentro + 1)];
        }
    }
    for (const int n : veces)
        EXPECT_GT(n, 500);
}

TEST(Predicados, OfPointsOnACircleTheLargestIsCutOffHoweverTheyAreGiven) {
    // Corners of a rectangle, counterclockwise; the last is the largest.
    const std::array<CLugar, 4> p{CLugar{0, 5}, CLugar{0, 0}, CLugar{9, 0}, CLugar{9, 5}};
    for (std::size_t falta = 0; falta < 4; ++falta)
        for (std::size_t giro = 0; giro < 3; ++giro) {
            std::array<CLugar, 3> t;
            for (std::size_t k = 0; k < 3; ++k)
                t[(k + giro) % 3] = p[(falta + 1 + k) % 4];
            // The diagonal joins 0 and 2: triangles 0 1 2 and 2 3 0 are Delaunay's.
            EXPECT_EQ(EnCirculoUnico(t[0], t[1], t[2], p[falta]), falta == 0 || falta == 2) << falta << giro;
        }
}

TEST(Predicados, CrossingsRoundToTheNearestIntegers) {
    EXPECT_EQ(CruceRedondeado({0, 0}, {10, 10}, {0, 10}, {10, 0}), CLugar(5, 5));
    EXPECT_EQ(CruceRedondeado({0, 0}, {5, 5}, {0, 5}, {5, 0}), CLugar(3, 3)) << "halves go up";
    EXPECT_EQ(CruceRedondeado({0, 0}, {-5, -5}, {0, -5}, {-5, 0}), CLugar(-2, -2));
    EXPECT_EQ(CruceRedondeado({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}),
              CLugar(0, 0));
    std::mt19937 azar(4);
    std::uniform_int_distribution<int> dado(-1000, 1000);
    for (int i = 0; i < 20000; ++i) {
        const CLugar a(dado(azar), dado(azar)), b(dado(azar), dado(azar)), c(dado(azar), dado(azar)),
            d(dado(azar), dado(azar));
        if (Giro(a, b, c) * Giro(a, b, d) >= 0 || Giro(c, d, a) * Giro(c, d, b) >= 0) continue;
        // x = n / m with both far below 2^63.
        const std::int64_t rx = b.x - a.x, ry = b.y - a.y, sx = d.x - c.x, sy = d.y - c.y, m = rx * sy - ry * sx;
        const std::int64_t t = (c.x - a.x) * sy - (c.y - a.y) * sx;
        const auto cerca = [m](std::int64_t numerador, int v) {
            // -1/2 <= numerador / m - v < 1/2, halves up
            const std::int64_t resto = 2 * (numerador - m * v), signo = m < 0 ? -1 : 1;
            return signo * resto >= -signo * m && signo * resto < signo * m;
        };
        const CLugar p = CruceRedondeado(a, b, c, d);
        ASSERT_TRUE(cerca(a.x * m + t * rx, p.x)) << i;
        ASSERT_TRUE(cerca(a.y * m + t * ry, p.y)) << i;
        ASSERT_EQ(p, CruceRedondeado(d, c, b, a));
        ASSERT_TRUE(PasaPor(a, b, p));
        ASSERT_TRUE(PasaPor(c, d, p));
    }
}

TEST(Predicados, ASquareHasItsLeftAndLowerSidesOnly) {
    const CLugar p(0, 0);
    EXPECT_TRUE(PasaPor({-3, 0}, {3, 0}, p));
    EXPECT_TRUE(PasaPor({0, 0}, {7, 9}, p)) << "it begins inside";
    EXPECT_TRUE(PasaPor({0, 0}, {0, 0}, p));
    EXPECT_FALSE(PasaPor({1, 0}, {7, 0}, p));
    EXPECT_FALSE(PasaPor({-3, 2}, {3, 2}, p));
    // Along x + y = 1 it touches the corner at the upper right, along x + y = -1 the lower left.
    EXPECT_FALSE(PasaPor({-2, 3}, {3, -2}, p));
    EXPECT_TRUE(PasaPor({-3, 2}, {2, -3}, p));
    EXPECT_FALSE(PasaPor({-3, 2}, {-1, 0}, p)) << "it ends before";
    // Through the corners at the upper left and lower right from inside and outside.
    EXPECT_FALSE(PasaPor({-2, -1}, {1, 2}, p));
    EXPECT_FALSE(PasaPor({-1, -2}, {2, 1}, p));
    EXPECT_TRUE(PasaPor({INT_MIN, -1}, {INT_MAX, 1}, p));
    EXPECT_TRUE(PasaPor({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MAX, INT_MAX}));
    EXPECT_FALSE(PasaPor({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MAX, INT_MAX - 1}));
}

TEST(Predicados, EveryPlaceOfASegmentIsInOneSquare) {
    // Sampled densely, at fractions whose rounding is known exactly.
    std::mt19937 azar(5);
    std::uniform_int_distribution<int> dado(-12, 12);
    for (int i = 0; i < 400; ++i) {
        const CLugar a(dado(azar), dado(azar)), b(dado(azar), dado(azar));
        constexpr int n = 720;
        std::set<CLugar> vistos;
        const auto redondea = [](int doble) { return int(std::floor((double(doble) / n) + 0.5)); };
        for (int k = 0; k <= n; ++k)
            vistos.emplace(redondea(a.x * (n - k) + b.x * k), redondea(a.y * (n - k) + b.y * k));
        for (const CLugar& p : vistos)
            ASSERT_TRUE(PasaPor(a, b, p));
        int cuantos = 0;
        for (int x = -14; x <= 14; ++x)
            for (int y = -14; y <= 14; ++y)
                cuantos += PasaPor(a, b, {x, y});
        // What is passed between two samples is missed by them: a few corners.
        ASSERT_GE(cuantos, int(vistos.size()));
        ASSERT_LE(cuantos, int(vistos.size()) + 6);
    }
}

}  // namespace
}  // namespace Vertiz::predicados
