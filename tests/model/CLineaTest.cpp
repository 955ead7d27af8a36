#include "model/CLinea.h"

#include <gtest/gtest.h>

#include <climits>
#include <numbers>

namespace Vertiz {
namespace {

template <class T>
CLinea<T> Linea(std::initializer_list<CCoor3D<T>> puntos) {
    CLinea<T> linea("L");
    for (const auto& punto : puntos)
        linea << punto;
    return linea;
}

TEST(CLinea, IsBuiltFromACodeATypeOrAnotherLine) {
    EXPECT_EQ(CLinea<int>("nuevo").GetCodigo(), L"nuevo");
    EXPECT_TRUE(CLinea<int>(CTipoDat(CTipoEntidad::Clotoide, "eje")).EsClotoide());
    CLinea<double> real("r");
    real << CCoor3D<double>(1.5, -1.5, 0.2, 77);
    real.InsertaAtr(CAtrDigi(1, 2, "x"));
    real.SetBorrado(true);
    const CLinea<int> entera(real);
    EXPECT_EQ(entera.Punto(0), CCoor3D<int>(2, -2, 0));
    EXPECT_EQ(entera.Punto(0).GetTipo(), 77);
    EXPECT_EQ(entera.DameRegistro(1), 2);
    EXPECT_TRUE(entera.EsBorrado());
    EXPECT_EQ(entera.GetCodigo(), L"r");
    EXPECT_EQ(entera.GetMaximas(), CMaximas<int>({2, -2, 0}, {2, -2, 0}));
    const CEntidadDigi<int>& entidad = entera;
    EXPECT_EQ(CLinea<double>(entidad).Punto(0), CCoor3D<double>(2, -2, 0));
}

TEST(CLinea, LetsItsLastPointBeWritten) {
    auto linea = Linea<double>({{1, 1, 1}, {2, 2, 2}});
    linea.end() = {9, 9, 9};
    EXPECT_EQ(linea.Punto(1), CCoor3D<double>(9, 9, 9));
    EXPECT_EQ(std::as_const(linea).end(), CCoor3D<double>(9, 9, 9));
    CLinea<double> vacia;
    vacia.end() = {5, 5, 5};
    EXPECT_EQ(vacia.NPuntos(), 0U);
    EXPECT_EQ(vacia.end(), CCoor3D<double>());
    EXPECT_EQ(std::as_const(vacia).end(), CCoor3D<double>());
}

TEST(CLinea, ClosesOnceWithACopyOfTheFirstPoint) {
    auto linea = Linea<int>({{0, 0, 5, 3}, {10, 0, 5}, {10, 10, 5}});
    EXPECT_TRUE(linea.Cierra());
    ASSERT_EQ(linea.NPuntos(), 4U);
    EXPECT_EQ(linea.end().GetTipo(), 3);
    EXPECT_TRUE(linea.EsCerrada());
    EXPECT_TRUE(linea.Cierra());
    EXPECT_EQ(linea.NPuntos(), 4U);
    auto punto = Linea<int>({{1, 1, 1}});
    EXPECT_FALSE(punto.Cierra());
    EXPECT_EQ(punto.NPuntos(), 1U);
    EXPECT_FALSE(CLinea<int>().Cierra());
}

TEST(CLinea, JoinsAnotherAsItStands) {
    auto a = Linea<int>({{0, 0, 0}, {1, 0, 0}});
    EXPECT_TRUE(a.Une(Linea<int>({{1, 0, 0}, {5, 5, 5}}), true));
    EXPECT_EQ(a.NPuntos(), 4U);
    EXPECT_EQ(a.Maxima(), CCoor3D<int>(5, 5, 5));
    EXPECT_TRUE(a.Une(CLinea<int>(), true));
    EXPECT_TRUE(a.Une(a, true));
    EXPECT_EQ(a.NPuntos(), 8U);
}

TEST(CLinea, JoinsWhicheverEndsMeet) {
    const CCoor3D<int> p(0, 0, 0), q(1, 0, 0), r(2, 0, 0);
    for (const bool bVuelve : {false, true}) {
        for (const bool bOtraVuelve : {false, true}) {
            auto a = Linea<int>({p, q}), b = Linea<int>({q, r});
            if (bVuelve) a.Voltea();
            if (bOtraVuelve) b.Voltea();
            ASSERT_TRUE(a.Une(b, false));
            ASSERT_EQ(a.NPuntos(), 3U);
            EXPECT_EQ(a.Punto(0), p);
            EXPECT_EQ(a.Punto(1), q);
            EXPECT_EQ(a.Punto(2), r);
        }
    }
    auto lejos = Linea<int>({p, q});
    EXPECT_FALSE(lejos.Une(Linea<int>({{5, 5, 5}, {6, 6, 6}}), false));
    EXPECT_FALSE(lejos.Une(CLinea<int>(), false));
    EXPECT_EQ(lejos.NPuntos(), 2U);
}

TEST(CLinea, TurnsRoundAndTakesOneHeight) {
    auto linea = Linea<int>({{0, 0, 1}, {1, 0, 2}, {2, 0, 3}});
    linea.Voltea();
    EXPECT_EQ(linea.Punto(0), CCoor3D<int>(2, 0, 3));
    linea.ZFija(8);
    EXPECT_EQ(linea.Punto(2), CCoor3D<int>(0, 0, 8));
    EXPECT_EQ(linea.GetMaximas(), CMaximas<int>({0, 0, 8}, {2, 0, 8}));
}

TEST(CLinea, DropsRepeatedPointsInPlanOrInSpace) {
    const auto linea = Linea<int>({{0, 0, 0}, {0, 0, 0}, {0, 0, 9}, {1, 0, 0}, {0, 0, 0}, {0, 0, 0}});
    auto espacio = linea, planta = linea;
    EXPECT_EQ(espacio.BorraPuntosDobles(), 2U);
    EXPECT_EQ(espacio.NPuntos(), 4U);
    EXPECT_EQ(planta.BorraPuntosDobles(0), 3U);
    EXPECT_EQ(planta.NPuntos(), 3U);
    EXPECT_EQ(planta.Maxima().z, 0);
    EXPECT_TRUE(planta.EsCerrada());
    EXPECT_EQ(CLinea<int>().BorraPuntosDobles(), 0U);
}

TEST(CLinea, MeasuresAreaAndLength) {
    auto cuadrado = Linea<int>({{0, 0, 0}, {4, 0, 3}, {4, 4, 3}, {0, 4, 0}});
    EXPECT_EQ(cuadrado.Superficie(), 16.0);
    EXPECT_EQ(cuadrado.Longitud(0), 12.0);
    EXPECT_EQ(cuadrado.Longitud(1), 14.0);
    cuadrado.Cierra();
    EXPECT_EQ(cuadrado.Superficie(), 16.0);
    cuadrado.Voltea();
    EXPECT_EQ(cuadrado.Superficie(), -16.0);
    EXPECT_EQ(CLinea<int>().Superficie(), 0.0);
    EXPECT_EQ(CLinea<int>().Longitud(1), 0.0);
    const auto todo =
        Linea<int>({{INT_MIN, INT_MIN, 0}, {INT_MAX, INT_MIN, 0}, {INT_MAX, INT_MAX, 0}, {INT_MIN, INT_MAX, 0}});
    EXPECT_DOUBLE_EQ(todo.Superficie(), 4294967295.0 * 4294967295.0);
}

TEST(CLinea, FindsTheCentreOfAnAreaALengthOrPoints) {
    // An L of three unit squares.
    auto ele = Linea<double>({{0, 0, 1}, {2, 0, 1}, {2, 1, 1}, {1, 1, 1}, {1, 2, 1}, {0, 2, 1}});
    ele.Cierra();
    for (const double lejos : {0.0, 4.5e6}) {
        auto movida = ele;
        movida.Mover(lejos, lejos, 0.0);
        EXPECT_NEAR(movida.Centroide().x, lejos + 2.5 / 3.0, 1e-8);
        EXPECT_NEAR(movida.Centroide().y, lejos + 2.5 / 3.0, 1e-8);
        EXPECT_DOUBLE_EQ(movida.Centroide().z, 1.0);
    }
    EXPECT_EQ((Linea<double>({{0, 0, 0}, {10, 0, 0}, {10, 2, 6}}).Centroide()),
              CCoor3D<double>(70.0 / 12.0, 2.0 / 12.0, 2));
    EXPECT_EQ((Linea<int>({{7, 8, 9}}).Centroide()), CCoor3D<int>(7, 8, 9));
    EXPECT_EQ((Linea<int>({{7, 8, 9}, {7, 8, 11}, {7, 8, 9}}).Centroide()), CCoor3D<int>(7, 8, 10));
    EXPECT_EQ((Linea<int>({{0, 0, 0}, {10, 0, 0}, {0, 0, 0}}).Centroide()), CCoor3D<int>(5, 0, 0));
    EXPECT_EQ(CLinea<int>().Centroide(), CCoor3D<int>());
}

TEST(CLinea, TracesAnArcThroughThreePointsWithinTheGivenSagitta) {
    const double radio = 100.0, flecha = 0.05;
    for (const double sentido : {1.0, -1.0}) {
        CLinea<double> arco;
        ASSERT_TRUE(
            arco.Arco({1100, 1000, 0}, {1000, 1000 + sentido * 100, 10}, {1000, 1000 - sentido * 100, 40}, flecha));
        double angulo = 0.0;
        for (unsigned i = 0; i < arco.NPuntos(); ++i) {
            EXPECT_NEAR(arco.Punto(static_cast<int>(i)).Distancia({1000, 1000, 0}, 0), radio, 1e-9);
            if (i == 0) continue;
            const auto &a = arco.Punto(static_cast<int>(i) - 1), &b = arco.Punto(static_cast<int>(i));
            EXPECT_GE(((a + b) * 0.5).Distancia({1000, 1000, 0}, 0), radio - flecha - 1e-9);
            EXPECT_GE(b.z, a.z);
            const double cruz = (a.x - 1000) * (b.y - 1000) - (a.y - 1000) * (b.x - 1000);
            EXPECT_GT(cruz * sentido, 0.0);
            angulo += CCoor3D<double>(1000, 1000, 0).Angulo(a, b);
        }
        EXPECT_NEAR(angulo, 1.5 * std::numbers::pi, 1e-9);
        EXPECT_EQ(arco.end(), CCoor3D<double>(1000, 1000 - sentido * 100, 40));
    }
}

TEST(CLinea, TracesAStraightArcThroughPointsInLine) {
    CLinea<int> arco;
    EXPECT_TRUE(arco.Arco({0, 0, 0}, {5, 0, 0}, {10, 0, 0}, 1.0));
    EXPECT_EQ(arco.NPuntos(), 3U);
    EXPECT_FALSE(arco.Arco({0, 0, 0}, {5, 5, 0}, {10, 0, 0}, 0.0));
    EXPECT_EQ(arco.NPuntos(), 3U);
    CLinea<double> nada;
    EXPECT_FALSE(nada.Arco({std::nan(""), 0, 0}, {5, 5, 0}, {10, 0, 0}, 1.0));
    EXPECT_EQ(nada.NPuntos(), 0U);
}

TEST(CLinea, TracesAnArcOfAnEllipse) {
    CLinea<double> arco;
    ASSERT_TRUE(arco.ArcoElipse({10, 20, 7}, 50.0, 20.0, std::numbers::pi / 2.0, 0.0, std::numbers::pi, 0.01));
    EXPECT_NEAR(arco.Punto(0).x, 10.0, 1e-9);
    EXPECT_NEAR(arco.Punto(0).y, 70.0, 1e-9);
    EXPECT_NEAR(arco.end().y, -30.0, 1e-9);
    for (const auto& p : arco.Puntos()) {
        EXPECT_NEAR(std::pow((p.y - 20) / 50, 2) + std::pow((p.x - 10) / 20, 2), 1.0, 1e-12);
        EXPECT_EQ(p.z, 7.0);
    }
    EXPECT_LT(arco.Minima().x, -9.9);
    const unsigned antes = arco.NPuntos();
    EXPECT_FALSE(arco.ArcoElipse({0, 0, 0}, 0.0, 1.0, 0.0, 0.0, 1.0, 0.1));
    EXPECT_FALSE(arco.ArcoElipse({0, 0, 0}, 1.0, 1.0, 0.0, 0.0, std::nan(""), 0.1));
    EXPECT_FALSE(arco.ArcoElipse({0, 0, 0}, 1.0, 1.0, 0.0, 0.0, 1.0, -0.1));
    EXPECT_EQ(arco.NPuntos(), antes);
}

TEST(CLinea, LimitsTheStepsOfAnArcThatAsksForTooMany) {
    CLinea<double> arco;
    EXPECT_TRUE(arco.ArcoElipse({0, 0, 0}, 1e9, 1e9, 0.0, 0.0, 6.0, 1e-12));
    EXPECT_LE(arco.NPuntos(), 100001U);
}

}  // namespace
}  // namespace Vertiz
