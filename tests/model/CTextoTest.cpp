#include "model/CTexto.h"

#include <gtest/gtest.h>

namespace Vertiz {
namespace {

TEST(CTexto, CarriesItsPointStringHeightAndOrientation) {
    const CTexto<int> texto("COTA", {100, 200, 30}, L"ñandú", 10.0, 4500.5);
    EXPECT_TRUE(texto.EsTexto());
    EXPECT_EQ(texto.NPuntos(), 1U);
    EXPECT_EQ(texto.Punto(0), CCoor3D<int>(100, 200, 30));
    EXPECT_EQ(texto.Texto(), L"ñandú");
    EXPECT_EQ(texto.GetAltura(), 10.0);
    EXPECT_EQ(texto.GetOrientacion(), 4500.5);
    EXPECT_EQ(texto.PuntoPintar(), texto.Punto(0));
}

TEST(CTexto, FramesTheTextWithFourCorners) {
    const CTexto<int> texto("T", {100, 200, 30}, L"abcde", 10.0);
    const CLinea<int> marco = texto.Limites(true);
    ASSERT_EQ(marco.NPuntos(), 4U);
    EXPECT_EQ(marco.Punto(0), CCoor3D<int>(100, 200, 30));
    EXPECT_EQ(marco.Punto(1), CCoor3D<int>(130, 200, 30));
    EXPECT_EQ(marco.Punto(2), CCoor3D<int>(130, 210, 30));
    EXPECT_EQ(marco.Punto(3), CCoor3D<int>(100, 210, 30));
    EXPECT_EQ(marco.GetCodigo(), L"T");
}

TEST(CTexto, TurnsItsFrameByHundredthsOfADegree) {
    const CTexto<int> texto("T", {0, 0, 5}, L"abcde", 10.0, 9000.0);
    const CLinea<int> girado = texto.Limites(true);
    EXPECT_EQ(girado.Punto(1), CCoor3D<int>(0, 30, 5));
    EXPECT_EQ(girado.Punto(2), CCoor3D<int>(-10, 30, 5));
    const CLinea<int> recto = texto.Limites(false);
    EXPECT_EQ(recto.Punto(0), CCoor3D<int>(-10, 0, 5));
    EXPECT_EQ(recto.Punto(2), CCoor3D<int>(0, 30, 5));
    EXPECT_EQ(texto.GetMaximas(), CMaximas<int>({-10, 0, 5}, {0, 30, 5}));
}

TEST(CTexto, StartsPaintingAtTheLowerLeftCornerOfEachJustification) {
    CTexto<double> texto("T", {0, 0, 0}, L"abcde", 10.0);
    texto.SetJustificacion(CJustificacion::MedioCentro);
    EXPECT_EQ(texto.PuntoPintar(), CCoor3D<double>(-15, -5, 0));
    texto.SetJustificacion(CJustificacion::ArribaDerecha);
    EXPECT_EQ(texto.PuntoPintar(), CCoor3D<double>(-30, -10, 0));
    texto.SetOrientacion(9000.0);
    EXPECT_NEAR(texto.PuntoPintar().x, 10.0, 1e-12);
    EXPECT_NEAR(texto.PuntoPintar().y, -30.0, 1e-12);
    EXPECT_EQ(texto.Punto(0), CCoor3D<double>());
}

TEST(CTexto, KeepsItsBoxWhenItChanges) {
    CTexto<double> texto("T", {0, 0, 0}, L"a", 10.0);
    EXPECT_EQ(texto.Maxima(), CCoor3D<double>(6, 10, 0));
    texto.SetTexto(L"abcde");
    EXPECT_EQ(texto.Maxima(), CCoor3D<double>(30, 10, 0));
    texto.SetAltura(20.0);
    EXPECT_EQ(texto.Maxima(), CCoor3D<double>(60, 20, 0));
    texto.SetPunto({1, 1, 1});
    EXPECT_EQ(texto.Maxima(), CCoor3D<double>(61, 21, 1));
    texto.SetTexto(L"");
    EXPECT_EQ(texto.Maxima().x, 1.0);
    texto.Clear();
    EXPECT_TRUE(texto.EstanVacias(true));
}

TEST(CTexto, TakesItsHeightAndOrientationAlongWhenScaledAndTurned) {
    CTexto<double> texto("T", {10, 0, 0}, L"ab", 10.0, 1000.0);
    texto.Escalar(0.1, 0.1, 1.0);
    EXPECT_NEAR(texto.GetAltura(), 1.0, 1e-15);
    texto.Helmert(0.0, 3.0, 0.0, 0.0);
    EXPECT_NEAR(texto.GetAltura(), 3.0, 1e-15);
    EXPECT_NEAR(texto.GetOrientacion(), 10000.0, 1e-9);
    EXPECT_EQ(texto.Punto(0), CCoor3D<double>(0, 3, 0));
    texto.Mover(1, 2, 3);
    EXPECT_EQ(texto.Punto(0), CCoor3D<double>(1, 5, 3));
}

TEST(CTexto, ConvertsClonesAndSwaps) {
    const CTexto<int> entero("T", {1, 2, 3}, L"hola", 10.0, 500.0, CJustificacion::MedioIzquierda);
    CTexto<double> real(entero);
    EXPECT_TRUE(real.EsTexto());
    EXPECT_EQ(real.Texto(), L"hola");
    EXPECT_EQ(real.GetJustificacion(), CJustificacion::MedioIzquierda);
    EXPECT_NEAR(real.Maxima().y, static_cast<CMaximas<double>>(entero).Maxima().y, 0.51);
    const auto clon = real.Clona();
    EXPECT_EQ(dynamic_cast<CTexto<double>&>(*clon).Texto(), L"hola");
    CTexto<double> otro("U", {9, 9, 9}, L"adiós", 1.0);
    otro.swap(real);
    EXPECT_EQ(real.Texto(), L"adiós");
    EXPECT_EQ(otro.GetAltura(), 10.0);
    EXPECT_EQ(otro.Punto(0), CCoor3D<double>(1, 2, 3));
    real.Asigna(otro);
    EXPECT_EQ(real.Texto(), L"hola");
    EXPECT_EQ(real.GetMaximas(), otro.GetMaximas());
}

}  // namespace
}  // namespace Vertiz
