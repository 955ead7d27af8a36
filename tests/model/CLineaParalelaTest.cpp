#include "model/CLinea.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Vertiz {
namespace {

CLinea<double> Eje() {
    CLinea<double> eje("EJE");
    eje << CCoor3D<double>(0, 0, 10) << CCoor3D<double>(100, 0, 20) << CCoor3D<double>(100, 100, 40)
        << CCoor3D<double>(250, 100, 40);
    eje.InsertaAtr(CAtrDigi(1, 7, ""));
    return eje;
}

TEST(CLineaParalela, OfASegmentLiesToTheGivenSideInItsDirection) {
    CLinea<int> eje("EJE"), izquierda, derecha;
    eje << CCoor3D<int>(0, 0, 5) << CCoor3D<int>(100, 0, 15);
    ASSERT_TRUE(eje.Paralela(10.0, izquierda, 0, 5.0, 0));
    ASSERT_TRUE(eje.Paralela(10.0, derecha, 0, 5.0, 1));
    ASSERT_EQ(izquierda.NPuntos(), 2U);
    EXPECT_EQ(izquierda.Punto(0), CCoor3D<int>(0, 10, 5));
    EXPECT_EQ(izquierda.Punto(1), CCoor3D<int>(100, 10, 15));
    ASSERT_EQ(derecha.NPuntos(), 2U);
    EXPECT_EQ(derecha.Punto(0), CCoor3D<int>(0, -10, 5));
    EXPECT_EQ(derecha.Punto(1), CCoor3D<int>(100, -10, 15));
    EXPECT_EQ(derecha.GetCodigo(), L"EJE");
}

TEST(CLineaParalela, BothSidesCloseToAStrip) {
    CLinea<int> eje("EJE"), banda, vuelta;
    eje << CCoor3D<int>(0, 0, 0) << CCoor3D<int>(100, 0, 0) << CCoor3D<int>(100, 100, 0);
    ASSERT_TRUE(eje.Paralela(10.0, banda, 0, 5.0, 0));
    ASSERT_TRUE(eje.Paralela(10.0, vuelta, 0, 5.0, 1));
    vuelta.Voltea();
    banda.Une(vuelta, true);
    banda.Cierra();
    ASSERT_EQ(banda.NPuntos(), 7U);
    EXPECT_EQ(std::abs(banda.Superficie()), 4000.0);
    for (const auto& punto : eje.Puntos())
        EXPECT_NE(banda.EstaDentro(punto), TD_FUERA);
}

TEST(CLineaParalela, KeepsItsDistanceWithEveryCorner) {
    for (const int esquina : {0, 1, 2}) {
        for (const int lado : {0, 1}) {
            CLinea<double> paralela;
            ASSERT_TRUE(Eje().Paralela(10.0, paralela, esquina, 5.0, lado));
            for (const auto& p : paralela.Puntos()) {
                double distancia = HUGE_VAL;
                for (int i = 0; i < 3; ++i) {
                    const CCoor3D<double> a = Eje().Punto(i), b = Eje().Punto(i + 1);
                    for (int k = 0; k <= 1000; ++k)
                        distancia = std::min(distancia, p.Distancia(a + (b - a) * (k / 1000.0), 0));
                }
                EXPECT_GE(distancia, 10.0 - 1e-3);
                EXPECT_LE(distancia, esquina == 0 ? 10.0 * std::sqrt(2.0) + 1e-9 : 10.0 + 1e-3);
            }
            EXPECT_GT(paralela.Longitud(0), 300.0);
            EXPECT_LT(paralela.Punto(0).Distancia({0, 0, 0}, 0), 10.1);
            EXPECT_EQ(paralela.DameRegistro(1), 7);
        }
    }
}

TEST(CLineaParalela, TakesHeightsFromTheNearestPlace) {
    CLinea<double> paralela;
    ASSERT_TRUE(Eje().Paralela(10.0, paralela, 0, 5.0, 0));
    ASSERT_EQ(paralela.NPuntos(), 4U);
    EXPECT_NEAR(paralela.Punto(0).z, 10.0, 1e-9);
    EXPECT_NEAR(paralela.Punto(1).x, 90.0, 1e-9);
    EXPECT_NEAR(paralela.Punto(1).z, 19.0, 1e-9);
    EXPECT_NEAR(paralela.end().z, 40.0, 1e-9);
}

TEST(CLineaParalela, GoesInsideAndOutsideOfAClosedLine) {
    CLinea<double> cuadrado("C"), dentro, fuera;
    cuadrado << CCoor3D<double>(0, 0, 0) << CCoor3D<double>(100, 0, 0) << CCoor3D<double>(100, 100, 0)
             << CCoor3D<double>(0, 100, 0);
    cuadrado.Cierra();
    ASSERT_TRUE(cuadrado.Paralela(10.0, dentro, 0, 5.0, 0));
    ASSERT_TRUE(cuadrado.Paralela(10.0, fuera, 0, 5.0, 1));
    EXPECT_NEAR(dentro.Superficie(), 6400.0, 1e-6);
    EXPECT_NEAR(fuera.Superficie(), 14400.0, 1e-6);
    EXPECT_TRUE(dentro.EsCerrada());
    CLinea<double> nada = dentro;
    EXPECT_FALSE(cuadrado.Paralela(60.0, nada, 0, 5.0, 0));
    EXPECT_EQ(nada.NPuntos(), dentro.NPuntos());
}

TEST(CLineaParalela, CopiesAtDistanceZeroAndRefusesWhatCannotBe) {
    const CLinea<double> eje = Eje();
    CLinea<double> paralela;
    EXPECT_TRUE(eje.Paralela(0.0, paralela, 0, 5.0, 1));
    EXPECT_EQ(paralela.NPuntos(), eje.NPuntos());
    EXPECT_FALSE(eje.Paralela(-1.0, paralela, 0, 5.0, 0));
    EXPECT_FALSE(eje.Paralela(std::nan(""), paralela, 0, 5.0, 0));
    CLinea<double> punto("P"), malo("M");
    punto << CCoor3D<double>(1, 1, 1) << CCoor3D<double>(1, 1, 5);
    malo << CCoor3D<double>(0, 0, 0) << CCoor3D<double>(HUGE_VAL, 0, 0);
    EXPECT_FALSE(punto.Paralela(1.0, paralela, 0, 5.0, 0));
    EXPECT_FALSE(malo.Paralela(1.0, paralela, 0, 5.0, 0));
    EXPECT_FALSE(CLinea<double>().Paralela(1.0, paralela, 0, 5.0, 0));
    EXPECT_EQ(paralela.NPuntos(), eje.NPuntos());
}

TEST(CLineaParalela, MayReplaceTheLineItself) {
    CLinea<double> eje = Eje();
    ASSERT_TRUE(eje.Paralela(10.0, eje, 0, 5.0, 0));
    EXPECT_NEAR(eje.Punto(0).y, 10.0, 1e-9);
}

}  // namespace
}  // namespace Vertiz
