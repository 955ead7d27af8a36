// Areas and volumes against the closed formulas of known shapes.

#include "MallasPrueba.h"

#include <cmath>
#include <numbers>

namespace {

using namespace mallas;
using Vertiz::CVolumen;

TEST(CTINVolumen, AreasInPlanAndOnTheSurface) {
    CTIN tin = Cuadricula(
        3, 2, 100, [](int x, int) { return x * 3 / 4; }, CDataSemilla(1));
    EXPECT_DOUBLE_EQ(tin.SuperficiePlana(), 600);
    EXPECT_NEAR(tin.SuperficieReal(), 600 * 1.25, 1e-9);
    tin.BorraTriangulo(0);
    EXPECT_DOUBLE_EQ(tin.SuperficiePlana(), 550);
    EXPECT_NEAR(tin.SuperficieReal(), 550 * 1.25, 1e-9);
    EXPECT_EQ(CTIN().SuperficiePlana(), 0.0);
}

TEST(CTINVolumen, APrismStandsOnOrHangsUnderThePlane) {
    const CTIN tin = Cuadricula(
        4, 5, 10, [](int, int) { return 7; }, CDataSemilla(0, 500, 600, 0));
    CVolumen v = tin.Volumen(3);
    EXPECT_DOUBLE_EQ(v.m_dEncima, 2000 * 4);
    EXPECT_EQ(v.m_dDebajo, 0);
    EXPECT_DOUBLE_EQ(v.m_dSuperficieEncima, 2000);
    EXPECT_EQ(v.m_dSuperficieDebajo, 0);
    v = tin.Volumen(8.5);
    EXPECT_DOUBLE_EQ(v.m_dDebajo, 3000);
    EXPECT_EQ(v.m_dEncima, 0);
    EXPECT_DOUBLE_EQ(v.m_dSuperficieDebajo, 2000);
    v = tin.Volumen(7);
    EXPECT_EQ(v.m_dEncima + v.m_dDebajo + v.m_dSuperficieEncima + v.m_dSuperficieDebajo, 0);
}

TEST(CTINVolumen, APyramidIsCutAtAnyHeight) {
    // Height 60 over a square of 200: below the cut at h remains a smaller one.
    const CTIN tin = Malla({{0, 0, 0}, {200, 0, 0}, {200, 200, 0}, {0, 200, 0}, {100, 100, 60}},
                           {{1, 2, 5}, {2, 3, 5}, {3, 4, 5}, {4, 1, 5}});
    for (const double h : {0.0, 1.0, 13.7, 30.0, 59.0, 60.0}) {
        const CVolumen v = tin.Volumen(h);
        const double lado = 200 * (60 - h) / 60, punta = lado * lado * (60 - h) / 3;
        EXPECT_NEAR(v.m_dEncima, punta, 1e-8) << h;
        EXPECT_NEAR(v.m_dEncima - v.m_dDebajo, 200.0 * 200 * 60 / 3 - 200.0 * 200 * h, 1e-8);
        EXPECT_NEAR(v.m_dSuperficieEncima, lado * lado, 1e-8);
        EXPECT_NEAR(v.m_dSuperficieDebajo, h == 0 ? 0.0 : 40000 - lado * lado, 1e-8);
    }
}

TEST(CTINVolumen, AConeOfManySidesComesNearTheConesVolume) {
    std::vector<CCoor3D<int>> puntos{{0, 0, 100000}};
    Caras caras;
    const int n = 720;
    for (int i = 0; i < n; ++i) {
        const double a = 2 * std::numbers::pi * i / n;
        puntos.emplace_back(200000 * std::cos(a), 200000 * std::sin(a), 0.0);
        caras.push_back({1, unsigned(i + 2), unsigned((i + 1) % n + 2)});
    }
    const CTIN tin = Malla(puntos, caras, CDataSemilla(3));
    EXPECT_NEAR(tin.Volumen(0).m_dEncima / (std::numbers::pi * 200 * 200 * 100 / 3), 1.0, 2e-5);
    EXPECT_NEAR(tin.Volumen(50).m_dEncima / (std::numbers::pi * 100 * 100 * 50 / 3), 1.0, 2e-5);
}

TEST(CTINVolumen, PlanesThatCrossPartTheGroundAlongALine) {
    // z = x over a square of 100 by 100 against z = 50, against a sloping plane, and against itself.
    const CTIN tin = Cuadricula(
        7, 7, 100, [](int x, int) { return x; }, CDataSemilla(1));
    const double lado = 70;
    CVolumen v = tin.Volumen(50);
    EXPECT_NEAR(v.m_dEncima, 20 * 20 / 2.0 * lado, 1e-9);
    EXPECT_NEAR(v.m_dDebajo, 50 * 50 / 2.0 * lado, 1e-9);
    EXPECT_NEAR(v.m_dSuperficieEncima, 20 * lado, 1e-9);
    EXPECT_NEAR(v.m_dSuperficieDebajo, 50 * lado, 1e-9);
    v = tin.Volumen(0, 0, 1);  // x against y: a wedge on each side of the diagonal
    EXPECT_NEAR(v.m_dEncima, lado * lado * lado / 6, 1e-9);
    EXPECT_NEAR(v.m_dDebajo, lado * lado * lado / 6, 1e-9);
    EXPECT_NEAR(v.m_dSuperficieEncima, lado * lado / 2, 1e-9);
    v = tin.Volumen(0, 1, 0);
    EXPECT_NEAR(v.m_dEncima + v.m_dDebajo, 0, 1e-9);
}

TEST(CTINVolumen, RandomSurfacesAgreeWithCuttingEachTriangle) {
    std::mt19937 azar(10);
    for (int vez = 0; vez < 20; ++vez) {
        const CTIN tin = Azarosa(azar, 100, 1000, 50);
        const double h = vez % 3 == 0 ? 0.0 : vez * 1.3 - 12;
        CVolumen suma;
        for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
            // The polygon above the plane, corner by corner, as a fan of prisms.
            for (const int signo : {1, -1}) {
                std::vector<CCoor3D<double>> poligono;
                for (int k = 0; k < 3; ++k) {
                    const CCoor3D<double> a(tin.Vertice(i, k)), b(tin.Vertice(i, (k + 1) % 3));
                    if ((a.z - h) * signo >= 0) poligono.push_back(a);
                    if ((a.z - h) * (b.z - h) < 0) poligono.push_back(a + (b - a) * ((h - a.z) / (b.z - a.z)));
                }
                for (std::size_t k = 1; k + 1 < poligono.size(); ++k) {
                    const auto u = poligono[k] - poligono[0], w = poligono[k + 1] - poligono[0];
                    const double area = (u.x * w.y - u.y * w.x) / 2;
                    const double media = (poligono[0].z + poligono[k].z + poligono[k + 1].z) / 3 - h;
                    (signo > 0 ? suma.m_dEncima : suma.m_dDebajo) += area * media * signo;
                    (signo > 0 ? suma.m_dSuperficieEncima : suma.m_dSuperficieDebajo) += media == 0 ? 0 : area;
                }
            }
        }
        const CVolumen v = tin.Volumen(h);
        EXPECT_NEAR(v.m_dEncima / suma.m_dEncima, 1.0, 1e-11) << vez;
        EXPECT_NEAR(v.m_dDebajo / suma.m_dDebajo, 1.0, 1e-11) << vez;
        EXPECT_NEAR(v.m_dSuperficieEncima / suma.m_dSuperficieEncima, 1.0, 1e-11) << vez;
        EXPECT_NEAR(v.m_dSuperficieDebajo / suma.m_dSuperficieDebajo, 1.0, 1e-11) << vez;
    }
}

}  // namespace
