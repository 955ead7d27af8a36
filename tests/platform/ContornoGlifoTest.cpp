// Polygons of glyphs: borders by non-zero winding, and triangles that cover exactly what they enclose.

#include "platform/ContornoGlifo.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace plataforma;

namespace {

// A square with its corner at (x, y), counter-clockwise; a negative side runs clockwise over the same place.
Contorno Cuadrado(double x, double y, double lado) {
    Contorno c{{x, y}, {x + lado, y}, {x + lado, y + lado}, {x, y + lado}};
    return c;
}

Contorno AlReves(Contorno c) {
    std::ranges::reverse(c);
    return c;
}

double Area(const Contorno& c) {
    double a = 0;
    for (std::size_t i = 0; i < c.size(); ++i) {
        const PuntoPlano &p = c[i], &q = c[(i + 1) % c.size()];
        a += (p.x * q.y - q.x * p.y) / 2;
    }
    return a;
}

double Area(const std::vector<Contorno>& contornos) {
    double a = 0;
    for (const Contorno& c : contornos)
        a += Area(c);
    return a;
}

bool Cubre(const std::vector<PuntoPlano>& t, double x, double y) {
    for (std::size_t i = 0; i + 2 < t.size(); i += 3) {
        bool dentro = true;
        for (std::size_t j = 0; j < 3; ++j) {
            const PuntoPlano &a = t[i + j], &b = t[i + (j + 1) % 3];
            dentro = dentro && (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x) > 0;
        }
        if (dentro) return true;
    }
    return false;
}

// Borders and triangles of contours, with what always holds of them.
struct Relleno {
    explicit Relleno(const std::vector<Contorno>& contornos) {
        EXPECT_TRUE(HallaBordes(contornos, m_Bordes));
        EXPECT_TRUE(Triangula(m_Bordes, m_Triangulos));
        double area = 0;
        for (std::size_t i = 0; i + 2 < m_Triangulos.size(); i += 3) {
            const double a = Area(Contorno(m_Triangulos.begin() + static_cast<std::ptrdiff_t>(i),
                                           m_Triangulos.begin() + static_cast<std::ptrdiff_t>(i + 3)));
            EXPECT_GE(a, 0.0) << "counter-clockwise";
            area += a;
        }
        EXPECT_EQ(m_Triangulos.size() % 3, 0U);
        EXPECT_NEAR(area, Area(m_Bordes), 1e-9);
    }
    std::vector<Contorno> m_Bordes;
    std::vector<PuntoPlano> m_Triangulos;
};

}  // namespace

TEST(ContornoGlifo, ASquareIsTwoTrianglesWhicheverWayItRuns) {
    for (const Contorno& c : {Cuadrado(0, 0, 2), AlReves(Cuadrado(0, 0, 2))}) {
        const Relleno r({c});
        ASSERT_EQ(r.m_Bordes.size(), 1U);
        EXPECT_DOUBLE_EQ(Area(r.m_Bordes[0]), 4.0) << "counter-clockwise";
        EXPECT_EQ(r.m_Triangulos.size(), 6U);
    }
}

TEST(ContornoGlifo, AContourTheOtherWayRoundIsAHole) {
    const Relleno r({AlReves(Cuadrado(0, 0, 4)), Cuadrado(1, 1, 2)});
    ASSERT_EQ(r.m_Bordes.size(), 2U);
    EXPECT_DOUBLE_EQ(Area(r.m_Bordes), 12.0);
    EXPECT_LT(std::min(Area(r.m_Bordes[0]), Area(r.m_Bordes[1])), 0.0) << "borders of holes run clockwise";
    EXPECT_FALSE(Cubre(r.m_Triangulos, 2.01, 2.02));
    EXPECT_TRUE(Cubre(r.m_Triangulos, 0.51, 2.02));
}

TEST(ContornoGlifo, AContourTheSameWayRoundIsNone) {
    const Relleno r({Cuadrado(0, 0, 4), Cuadrado(1, 1, 2)});
    EXPECT_EQ(r.m_Bordes.size(), 1U);
    EXPECT_DOUBLE_EQ(Area(r.m_Bordes), 16.0);
    EXPECT_TRUE(Cubre(r.m_Triangulos, 2.01, 2.02));
}

TEST(ContornoGlifo, ContoursThatOverlapAreFilledOnce) {
    const Relleno r({Cuadrado(0, 0, 2), Cuadrado(1, 1, 2)});
    EXPECT_EQ(r.m_Bordes.size(), 1U);
    EXPECT_DOUBLE_EQ(Area(r.m_Bordes), 7.0);
}

TEST(ContornoGlifo, NothingHasNoBorder) {
    const Relleno r({});
    EXPECT_TRUE(r.m_Bordes.empty());
    EXPECT_TRUE(r.m_Triangulos.empty());
}
