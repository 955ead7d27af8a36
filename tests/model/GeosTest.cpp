#include "model/Geos.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

namespace Vertiz {
namespace {

CLinea<int> Cuadrado() {
    CLinea<int> linea("C");
    linea << CCoor3D<int>(0, 0, 1) << CCoor3D<int>(10, 0, 2) << CCoor3D<int>(10, 10, 3) << CCoor3D<int>(0, 10, 4);
    return linea;
}

TEST(Geos, BringsALineThereAndBackWithItsHeights) {
    const auto lineas = geos::ALineas<int>(geos::DeLinea(Cuadrado()).get(), CTipoDat(0, "X"));
    ASSERT_EQ(lineas.size(), 1U);
    ASSERT_EQ(lineas[0].NPuntos(), 4U);
    EXPECT_EQ(lineas[0].Punto(2), CCoor3D<int>(10, 10, 3));
    EXPECT_EQ(lineas[0].GetCodigo(), L"X");
}

TEST(Geos, ClosesPolygonsAndGivesTheirRings) {
    const geos::Geometria poligono = geos::DePoligono(Cuadrado());
    double area = 0.0;
    ASSERT_EQ(GEOSArea_r(geos::Contexto(), poligono.get(), &area), 1);
    EXPECT_EQ(area, 100.0);
    const geos::Geometria anillo(GEOSBuffer_r(geos::Contexto(), poligono.get(), 5.0, 2));
    const geos::Geometria conHueco(GEOSDifference_r(geos::Contexto(), anillo.get(), poligono.get()));
    EXPECT_EQ(geos::ALineas<double>(conHueco.get(), CTipoDat()).size(), 2U);
}

TEST(Geos, MakesNothingOfTooFewPointsOrOfWhatIsNotFinite) {
    CLinea<double> linea;
    EXPECT_EQ(geos::DeLinea(linea), nullptr);
    EXPECT_EQ(geos::DePoligono(linea), nullptr);
    linea << CCoor3D<double>(0, 0, 0) << CCoor3D<double>(std::nan(""), 0, 0);
    EXPECT_EQ(geos::DeLinea(linea), nullptr);
    linea << CCoor3D<double>(1, HUGE_VAL, 0);
    EXPECT_EQ(geos::DePoligono(linea), nullptr);
    EXPECT_TRUE(geos::ALineas<double>(nullptr, CTipoDat()).empty());
}

TEST(Geos, HasAContextForEachThread) {
    GEOSContextHandle_t otro = nullptr;
    std::thread([&otro] {
        otro = geos::Contexto();
        EXPECT_NE(geos::DePoligono(Cuadrado()), nullptr);
    }).join();
    EXPECT_NE(otro, nullptr);
    EXPECT_NE(otro, geos::Contexto());
    EXPECT_EQ(geos::Contexto(), geos::Contexto());
}

}  // namespace
}  // namespace Vertiz
