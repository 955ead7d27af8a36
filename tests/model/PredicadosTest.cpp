#include "model/Predicados.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <random>

namespace Vertiz::predicados {
namespace {

__extension__ using Entero128 = __int128;

int OrientacionEntera(const CCoor2D<int>& a, const CCoor2D<int>& b, const CCoor2D<int>& c) {
    const auto resta = [](int p, int q) { return static_cast<Entero128>(p) - q; };
    const Entero128 det = resta(b.x, a.x) * resta(c.y, a.y) - resta(b.y, a.y) * resta(c.x, a.x);
    return det > 0 ? 1 : det < 0 ? -1 : 0;
}

TEST(Predicados, OrientExactlyOnTheWholeRangeOfTheIntegers) {
    std::mt19937 azar(5);
    std::uniform_int_distribution<int> todo(INT_MIN, INT_MAX), cerca(-2, 2);
    int alineados = 0;
    for (int i = 0; i < 20000; ++i) {
        const CCoor2D<int> a(todo(azar), todo(azar)), b(todo(azar), todo(azar));
        // Near the middle of a and b the determinant is tiny beside its terms.
        const auto medio = [&](int p, int q) {
            return static_cast<int>((static_cast<long long>(p) + q) / 2) / 2 + cerca(azar);
        };
        const CCoor2D<int> c(i % 2 ? todo(azar) : medio(a.x, b.x), i % 2 ? todo(azar) : medio(a.y, b.y));
        const CCoor2D<int> d(a.x / 2, a.y / 2), e(a.x / 2 * 2, a.y / 2 * 2);
        EXPECT_EQ(Orientacion(a, b, c), OrientacionEntera(a, b, c));
        EXPECT_EQ(Orientacion(CPlano(), e, d), 0);
        const CCoor2D<int> f(d.x + cerca(azar), d.y + cerca(azar));
        const int esperado = OrientacionEntera({0, 0}, e, f);
        alineados += esperado == 0;
        EXPECT_EQ(Orientacion(CPlano(), e, f), esperado);
    }
    EXPECT_GT(alineados, 100);
}

TEST(Predicados, TellTheNextDoubleFromTheLine) {
    const CPlano a(12.0, 12.0), b(24.0, 24.0);
    const double justo = 0.5, mas = std::nextafter(justo, 1.0);
    EXPECT_EQ(Orientacion(CPlano(justo, justo), a, b), 0);
    EXPECT_EQ(Orientacion(CPlano(justo, mas), a, b), 1 * Orientacion(CPlano(0, 1), a, b));
    EXPECT_EQ(Orientacion(CPlano(mas, justo), a, b), -1 * Orientacion(CPlano(0, 1), a, b));
    EXPECT_NE(Orientacion(CPlano(0, 1), a, b), 0);
}

TEST(Predicados, BearHugeCoordinatesAndAnswerZeroForWhatIsNotFinite) {
    EXPECT_EQ(Orientacion({0, 0}, {1e300, 0}, {0, 1e300}), 1);
    EXPECT_EQ(Orientacion({0, 0}, {1e300, 1e300}, {1e308, 1e308}), 0);
    EXPECT_EQ(Orientacion({0, 0}, {1e300, 1e300}, {1e308, 0.9e308}), -1);
    EXPECT_EQ(Orientacion({std::nan(""), 0}, {1, 0}, {0, 1}), 0);
    EXPECT_EQ(Orientacion({std::numeric_limits<double>::infinity(), 0}, {1, 0}, {0, 1}), 0);
}

TEST(Predicados, FindTheContactsOfSegments) {
    const auto cuantos = [](CPlano a, CPlano b, CPlano c, CPlano d) { return Contactos(a, b, c, d).nCuantos; };
    const CContactos cruz = Contactos({0, 0}, {4, 4}, {0, 4}, {4, 0});
    ASSERT_EQ(cruz.nCuantos, 1);
    EXPECT_TRUE(cruz.lugares[0].bPropio);
    EXPECT_EQ(cruz.lugares[0].lugar, CPlano(2, 2));
    EXPECT_EQ(cruz.lugares[0].t, 0.5);
    EXPECT_EQ(cuantos({0, 0}, {4, 0}, {5, 0}, {9, 0}), 0);
    EXPECT_EQ(cuantos({0, 0}, {4, 0}, {0, 1}, {4, 1}), 0);
    EXPECT_EQ(cuantos({0, 0}, {4, 0}, {2, 0}, {2, 3}), 1);
    EXPECT_FALSE(Contactos({0, 0}, {4, 0}, {2, 0}, {2, 3}).lugares[0].bPropio);
    EXPECT_EQ(cuantos({0, 0}, {4, 0}, {4, 0}, {9, 9}), 1);
    EXPECT_EQ(cuantos({0, 0}, {4, 0}, {2, 0}, {9, 0}), 2);
    EXPECT_EQ(cuantos({0, 0}, {4, 0}, {0, 0}, {4, 0}), 2);
    EXPECT_EQ(cuantos({2, 0}, {2, 0}, {0, 0}, {4, 0}), 1);
    EXPECT_EQ(cuantos({2, 1}, {2, 1}, {0, 0}, {4, 0}), 0);
}

}  // namespace
}  // namespace Vertiz::predicados
