// The elevation model: voids, extents, its surface between the samples, lines on it, its two forms.

#include "model/CDEM.h"

#include "RejillasPrueba.h"
#include "model/CDataHelmertNTV2.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace Vertiz;
using namespace Vertiz::rejillas;

namespace {

TEST(CDEM, AnEmptyGridAnswersEverything) {
    CDEM dem;
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.GetFilas(), 0u);
    EXPECT_TRUE(dem.GetMaximasTotalDouble().EstanVacias(true));
    EXPECT_EQ(dem.DameCeldas(), 0u);
    EXPECT_FALSE(dem.EsValido(0, 0));
    EXPECT_FALSE(dem.EsCeldaValida(0, 0, 1));
    CCoor3D<double> p = P(0, 0, 5);
    EXPECT_FALSE(dem.Proyecta(p, nullptr, false));
    EXPECT_EQ(p.z, 5.0);
    EXPECT_FALSE(dem.InterseccionVector(P(0, 0, 0), P(0, 0, 9), p));
    CPuntoDEM punto;
    EXPECT_FALSE(dem.DamePunto(punto, 0.5, 0.5, 0, 0, true, false));
    CDibujo<int> dibujo;
    EXPECT_EQ(dem.DameBase(dibujo), 1);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
    dem.CalculaVectores();
    dem.SetListaCeldas(true);
    dem.ActualizaCantidades();
    EXPECT_FALSE(dem.Proyecta(p, nullptr, false));
    EXPECT_EQ(dem.DameBase(dibujo), 1);
}

TEST(CDEM, ASampleIsValidOnlyAboveTheNullLevelAndFinite) {
    CDEM dem = Grid(2, 3);
    dem.SetNulo(-5.0);
    const float cotas[] = {-5.0f,
                           std::nextafter(-5.0f, 0.0f),
                           std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity(),
                           std::numeric_limits<float>::quiet_NaN(),
                           0.0f};
    const bool validas[] = {false, true, false, false, false, true};
    for (unsigned i = 0; i < 6; ++i)
        dem.Matriz().Set(i / 3, i % 3, cotas[i]);
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_EQ(dem.EsValido(i / 3, i % 3), validas[i]) << i;
    EXPECT_FALSE(dem.EsValido(2, 0));
    EXPECT_FALSE(dem.EsValido(0, 3));
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.GetMaximasTotalDouble().Maxima().z, 0.0);
    EXPECT_EQ(dem.GetMaximasTotalDouble().Minima().z, double(cotas[1]));
    dem.SetNulo(0.0);
    EXPECT_FALSE(dem.EsValido(1, 2));
}

TEST(CDEM, EsCeldaValidaLooksAtTheFourCornersOfAStep) {
    CDEM dem = Ondulado(7, 9);
    EXPECT_TRUE(dem.EsCeldaValida(0, 0, 6));
    EXPECT_FALSE(dem.EsCeldaValida(1, 0, 6));
    EXPECT_FALSE(dem.EsCeldaValida(0, 3, 6));
    EXPECT_FALSE(dem.EsCeldaValida(unsigned(-2), 0, 2)) << "a row that has wrapped round";
    EXPECT_FALSE(dem.EsCeldaValida(0, 0, unsigned(-1)));
    dem.Matriz().Set(3, 4, kVacio);
    EXPECT_FALSE(dem.EsCeldaValida(3, 4, 1));
    EXPECT_FALSE(dem.EsCeldaValida(2, 3, 1));
    EXPECT_FALSE(dem.EsCeldaValida(1, 2, 2));
    EXPECT_TRUE(dem.EsCeldaValida(1, 2, 4));
}

TEST(CDEM, ExtentsAreOfAllSamplesInPlanAndOfTheValidOnesInHeight) {
    CDEM dem = Grid(3, 4, 10.0, 20.0, 500.0, 1000.0, CDataSemilla(3, 400.0, 900.0, 50.0));
    dem.ActualizaCantidades();
    EXPECT_TRUE(dem.GetMaximasTotalDouble().EstanVacias(true)) << "all void";
    dem.Matriz().Set(1, 1, 70.0f);
    dem.Matriz().Set(2, 2, 90.0f);
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.GetMaximasTotalDouble(), CMaximas<double>(P(500, 1000, 70), P(530, 1040, 90)));
    EXPECT_EQ(dem.GetMaximasDouble(), CMaximas<double>(P(100, 100, 20), P(130, 140, 40)));
    EXPECT_EQ(dem.DameCeldas(), 0u);
    dem.Matriz().Rellena(1.0f);
    EXPECT_EQ(dem.DameCeldas(), 0u) << "counts are found by ActualizaCantidades";
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.DameCeldas(), 6u);
    dem.SetMaximasDouble(CMaximas<double>(P(0, 0, 0), P(1, 2, 3)));
    EXPECT_EQ(dem.GetMaximasTotalDouble(), CMaximas<double>(P(400, 900, 50), P(401, 902, 53)));
    dem.Clear();
    EXPECT_TRUE(dem.GetMaximasDouble().EstanVacias(true));
    EXPECT_EQ(dem.GetFilas(), 0u);
}

TEST(CDEM, BadCellSizesAreRefused) {
    CDEM dem(2, 2, 0.0, -1.0, 0.0, 0.0);
    EXPECT_EQ(dem.GetCeldaX(), 1.0);
    EXPECT_FALSE(dem.SetCelda(kInfinito, 1.0));
    EXPECT_FALSE(dem.SetCelda(1.0, std::nan("")));
    EXPECT_TRUE(dem.SetCelda(0.5, 2.0));
    EXPECT_EQ(dem.GetCeldaY(), 2.0);
}

TEST(CDEM, DamePuntoIsBilinearAndExactAtTheSamples) {
    CDEM dem = Grid(2, 2, 10.0, 20.0, 100.0, 200.0);
    dem.Matriz().Set(0, 0, 1.0f), dem.Matriz().Set(0, 1, 3.0f);
    dem.Matriz().Set(1, 0, 5.0f), dem.Matriz().Set(1, 1, 11.0f);
    CPuntoDEM p(0, 0);
    ASSERT_TRUE(dem.DamePunto(p, 0.25, 0.75, 0.0, 0.0, true, false));
    EXPECT_DOUBLE_EQ(p.z, 0.75 * 0.25 * 1 + 0.25 * 0.25 * 3 + 0.75 * 0.75 * 5 + 0.25 * 0.75 * 11);
    EXPECT_DOUBLE_EQ(p.x, 102.5);
    EXPECT_DOUBLE_EQ(p.y, 215.0);
    ASSERT_TRUE(dem.DamePunto(p, 1.0, 0.0, 100.0, 50.0, true, false));
    EXPECT_EQ(p.z, 3.0);
    EXPECT_EQ(p.x, 10.0);
    EXPECT_EQ(p.y, 150.0);
    p.x = -1.0;
    ASSERT_TRUE(dem.DamePunto(p, 1.0, 1.0, 0.0, 0.0, false, true));
    EXPECT_EQ(p.z, 11.0);
    EXPECT_EQ(p.x, -1.0);
    for (const double mala : {-0.01, 1.01, std::nan(""), kInfinito}) {
        EXPECT_FALSE(dem.DamePunto(p, mala, 0.5, 0.0, 0.0, true, false));
        EXPECT_FALSE(dem.DamePunto(p, 0.5, mala, 0.0, 0.0, true, false));
    }
    p.m_nFila = std::numeric_limits<unsigned>::max();
    EXPECT_FALSE(dem.DamePunto(p, 0.5, 0.5, 0.0, 0.0, true, false));
    EXPECT_EQ(p.z, 11.0);
}

TEST(CDEM, AVoidTakesOnlyWhatNeedsIt) {
    CDEM dem = Ondulado(3, 3);
    dem.Matriz().Set(2, 2, kVacio);
    CPuntoDEM p(1, 1);
    EXPECT_FALSE(dem.DamePunto(p, 0.5, 0.5, 0, 0, true, false));
    EXPECT_FALSE(dem.DamePunto(p, 1.0, 0.5, 0, 0, true, false));
    EXPECT_TRUE(dem.DamePunto(p, 0.0, 0.5, 0, 0, true, false));
    EXPECT_TRUE(dem.DamePunto(p, 0.0, 1.0, 0, 0, true, false));
    p = CPuntoDEM(2, 0);  // the last row's samples, north of which there is nothing
    EXPECT_TRUE(dem.DamePunto(p, 0.5, 0.0, 0, 0, true, false));
    EXPECT_FALSE(dem.DamePunto(p, 0.5, 0.1, 0, 0, true, false));
}

TEST(CDEM, TheSmoothSurfaceGoesThroughTheSamplesWithTheirSlopes) {
    CDEM dem = Ondulado(6, 7);
    dem.CalculaVectores();
    ASSERT_TRUE(dem.HaySuavizado());
    constexpr double e = 1e-5;
    for (unsigned f = 1; f < 5; ++f) {
        for (unsigned c = 1; c < 6; ++c) {
            CPuntoDEM aqui(f, c), este(f, c), oeste(f, c - 1), norte(f, c), sur(f - 1, c);
            ASSERT_TRUE(dem.DamePunto(aqui, 0, 0, 0, 0, true, false));
            EXPECT_EQ(aqui.z, double(dem.Matriz().Get(f, c)));
            ASSERT_TRUE(dem.DamePunto(este, e, 0, 0, 0, true, false) &&
                        dem.DamePunto(oeste, 1 - e, 0, 0, 0, true, false));
            ASSERT_TRUE(dem.DamePunto(norte, 0, e, 0, 0, true, false) &&
                        dem.DamePunto(sur, 0, 1 - e, 0, 0, true, false));
            const double vx = dem.VectorX().Get(f, c), vy = dem.VectorY().Get(f, c), vz = dem.VectorZ().Get(f, c);
            EXPECT_NEAR((este.z - aqui.z) / (e * dem.GetCeldaX()), -vx / vz, 1e-3);
            EXPECT_NEAR((aqui.z - oeste.z) / (e * dem.GetCeldaX()), -vx / vz, 1e-3);
            EXPECT_NEAR((norte.z - aqui.z) / (e * dem.GetCeldaY()), -vy / vz, 1e-3);
            EXPECT_NEAR((aqui.z - sur.z) / (e * dem.GetCeldaY()), -vy / vz, 1e-3);
        }
    }
}

TEST(CDEM, TheSmoothSurfaceHasOneSlopeOnBothSidesOfAnEdge) {
    CDEM dem = Ondulado(4, 4);
    dem.CalculaVectores();
    constexpr double e = 1e-5;
    for (double v = 0.05; v < 1.0; v += 0.1) {
        CPuntoDEM antes(1, 0), justo(1, 1), despues(1, 1);
        ASSERT_TRUE(dem.DamePunto(antes, 1 - e, v, 0, 0, true, true));
        ASSERT_TRUE(dem.DamePunto(justo, 0, v, 0, 0, true, true));
        ASSERT_TRUE(dem.DamePunto(despues, e, v, 0, 0, true, true));
        EXPECT_NEAR((justo.z - antes.z) / e, (despues.z - justo.z) / e, 5e-3);
        CPuntoDEM abajo(0, 1), encima(1, 1), linea(1, 1);
        ASSERT_TRUE(dem.DamePunto(abajo, v, 1 - e, 0, 0, true, true));
        ASSERT_TRUE(dem.DamePunto(linea, v, 0, 0, 0, true, true));
        ASSERT_TRUE(dem.DamePunto(encima, v, e, 0, 0, true, true));
        EXPECT_NEAR((linea.z - abajo.z) / e, (encima.z - linea.z) / e, 5e-3);
    }
}

TEST(CDEM, APlaneStaysAPlaneWhenItIsSmoothed) {
    CDEM dem = Grid(5, 6, 2.0, 3.0);
    for (unsigned f = 0; f < 5; ++f)
        for (unsigned c = 0; c < 6; ++c)
            dem.Matriz().Set(f, c, 100.0f + 4.0f * float(c) - 6.0f * float(f));
    dem.CalculaVectores();
    for (double x = 0.0; x <= 10.0; x += 0.37)
        for (double y = 0.0; y <= 12.0; y += 0.41)
            EXPECT_NEAR(Cota(dem, x, y), 100.0 + 2.0 * x - 2.0 * y, 1e-9);
}

TEST(CDEM, VectorsBesideVoidsAreFinite) {
    CDEM dem = Ondulado(5, 5);
    dem.Matriz().Set(2, 2, std::numeric_limits<float>::quiet_NaN());
    dem.Matriz().Set(0, 1, std::numeric_limits<float>::infinity());
    dem.CalculaVectores();
    for (unsigned i = 0; i < 25; ++i) {
        EXPECT_TRUE(std::isfinite(dem.VectorX().Get(i / 5, i % 5)));
        EXPECT_TRUE(std::isfinite(dem.VectorY().Get(i / 5, i % 5)));
    }
    const float lado = (dem.Matriz().Get(2, 1) - dem.Matriz().Get(2, 0)) / float(dem.GetCeldaX());
    EXPECT_FLOAT_EQ(dem.VectorX().Get(2, 1), -lado) << "one-sided beside the void";
    dem.VectorZ().Set(3, 3, 0.0f);
    dem.VectorX().Set(3, 3, std::numeric_limits<float>::quiet_NaN());
    CPuntoDEM p(3, 3);
    ASSERT_TRUE(dem.DamePunto(p, 0.3, 0.3, 0, 0, true, false));
    EXPECT_TRUE(std::isfinite(p.z));
}

TEST(CDEM, VectorsOfAnotherSizeDontSmooth) {
    CDEM dem = Ondulado(4, 4);
    const double antes = Cota(dem, 201.3, 11.1);
    dem.SetSuavizado(true);
    EXPECT_EQ(Cota(dem, 201.3, 11.1), antes);
}

TEST(CDEM, ProyectaFindsPointsInLocalAndInAbsoluteCoordinates) {
    const CDEM dem = Ondulado(6, 7);
    CCoor3D<double> local(200.0 + 2.5 * 3.4, 10.0 + 1.5 * 2.2, 0.0, 9), absoluto = local;
    absoluto += P(100.0, -50.0, 0.0);
    CPuntoDEM celda, cruda(2, 3);
    ASSERT_TRUE(dem.Proyecta(local, &celda, false));
    ASSERT_TRUE(dem.Proyecta(absoluto, nullptr, true));
    ASSERT_TRUE(dem.DamePunto(cruda, 0.4, 0.2, 0, 0, true, false));
    EXPECT_NEAR(absoluto.z, cruda.z, 1e-9);
    EXPECT_NEAR(local.z, cruda.z - 7.0, 1e-9);
    EXPECT_EQ(celda.m_nFila, 2u);
    EXPECT_EQ(celda.m_nColumna, 3u);
    EXPECT_EQ(celda.z, local.z);
    EXPECT_EQ(local.GetTipo(), 9);
}

TEST(CDEM, ProyectaTakesTheBordersAndNothingBeyond) {
    const CDEM dem = Ondulado(6, 7);
    const CMaximas<double> m = dem.GetMaximasDouble();
    for (const auto& [x, y] : {std::pair{m.Minima().x, m.Minima().y}, std::pair{m.Maxima().x, m.Maxima().y},
                               std::pair{m.Minima().x, m.Maxima().y}, std::pair{m.Maxima().x, m.Minima().y}})
        EXPECT_FALSE(std::isnan(Cota(dem, x, y)));
    EXPECT_TRUE(std::isnan(Cota(dem, m.Maxima().x + 0.001, m.Maxima().y)));
    EXPECT_TRUE(std::isnan(Cota(dem, m.Minima().x - 0.001, m.Maxima().y)));
    EXPECT_TRUE(std::isnan(Cota(dem, std::nan(""), 0.0)));
    EXPECT_TRUE(std::isnan(Cota(dem, kInfinito, 12.0)));
    EXPECT_TRUE(std::isnan(Cota(dem, -1e300, 12.0)));
}

TEST(CDEM, ProyectaIsExactAtSamplesOfARealGridBesideVoids) {
    // A step of a third of a unit in coordinates of millions: what rounds off a sample mustn't reach for the void.
    CDEM dem = Grid(40, 50, 1.0 / 3.0, 0.1, 431234.57, 4601234.13, CDataSemilla(3, 431000.0, 4601000.0, 0.0));
    for (unsigned f = 0; f < 40; f += 2)
        for (unsigned c = 0; c < 50; c += 2)
            dem.Matriz().Set(f, c, float(f) + 0.01f * float(c));
    for (unsigned f = 0; f < 40; f += 2) {
        for (unsigned c = 0; c < 50; c += 2) {
            CCoor3D<double> p = P(431234.57 + c * (1.0 / 3.0), 4601234.13 + f * 0.1);
            const CCoor3D<double> absoluto = p;
            p -= P(431000.0, 4601000.0);
            ASSERT_TRUE(dem.Proyecta(p, nullptr, false)) << f << ' ' << c;
            EXPECT_EQ(p.z, double(dem.Matriz().Get(f, c)));
            p = absoluto;
            ASSERT_TRUE(dem.Proyecta(p, nullptr, true)) << f << ' ' << c;
        }
    }
}

TEST(CDEM, AGridOfOneRowIsALine) {
    CDEM dem = Grid(1, 5);
    for (unsigned c = 0; c < 5; ++c)
        dem.Matriz().Set(0, c, float(c));
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.DameCeldas(), 0u);
    EXPECT_DOUBLE_EQ(Cota(dem, 2.5, 0.0), 2.5);
    EXPECT_TRUE(std::isnan(Cota(dem, 2.5, 0.5)));
    CCoor3D<double> p;
    EXPECT_FALSE(dem.InterseccionVector(P(2, 0.5, 0), P(2, -3, 5), p));
    CDibujo<int> dibujo;
    EXPECT_EQ(dem.DameBase(dibujo), 1);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
}

TEST(CDEM, ProyectaALineInsertsTheCrossingsOfRowsAndColumns) {
    const CDEM dem = Ondulado(6, 7);
    CLinea<double> linea(CString(L"camino"));
    linea << CCoor3D<double>(201.0, 10.5, 0.0, 0x10004) << CCoor3D<double>(206.0, 12.5, 0.0, 5);
    CLinea<double> sola = linea;
    EXPECT_TRUE(dem.Proyecta(sola, false, true, false));
    EXPECT_EQ(sola.NPuntos(), 2u);
    EXPECT_EQ(sola.Punto(0).z, Cota(dem, 201.0, 10.5));

    EXPECT_TRUE(dem.Proyecta(linea, true, true, false));
    ASSERT_EQ(linea.NPuntos(), 5u);  // columns at 202.5 and 205, row at 11.5
    EXPECT_NEAR(linea.Punto(1).x, 202.5, 1e-12);
    EXPECT_NEAR(linea.Punto(2).y, 11.5, 1e-12);
    EXPECT_NEAR(linea.Punto(3).x, 205.0, 1e-12);
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(linea.Punto(i).z, Cota(dem, linea.Punto(i).x, linea.Punto(i).y), 1e-12);
    EXPECT_EQ(linea.Punto(3).GetTipoCompleto(), 0x10004);
    EXPECT_EQ(linea.Punto(4).GetTipo(), 5);
    EXPECT_EQ(linea.GetCodigo(), L"camino");
    EXPECT_EQ(linea.GetMaximas().Maxima().z,
              std::max({linea.Punto(0).z, linea.Punto(1).z, linea.Punto(2).z, linea.Punto(3).z, linea.Punto(4).z}));
}

TEST(CDEM, ProyectaALineKeepsOrDropsWhatHasNoTerrain) {
    const CDEM dem = Ondulado(6, 7);
    CLinea<double> linea(CString(L"camino"));
    linea << P(150, 11, 33) << P(203, 11, 33) << P(1e9, 11, 44) << P(204, 11, 33);
    CLinea<double> corta = linea;
    EXPECT_FALSE(dem.Proyecta(linea, false, true, false));
    ASSERT_EQ(linea.NPuntos(), 4u);
    EXPECT_EQ(linea.Punto(0).z, 33.0);
    EXPECT_EQ(linea.Punto(1).z, Cota(dem, 203, 11));
    EXPECT_EQ(linea.Punto(2).z, 44.0);
    EXPECT_FALSE(dem.Proyecta(corta, true, false, false));
    for (unsigned i = 0; i < corta.NPuntos(); ++i)
        EXPECT_NEAR(corta.Punto(int(i)).z, Cota(dem, corta.Punto(int(i)).x, 11), 1e-6);
    EXPECT_GE(corta.NPuntos(), 2u);
}

TEST(CDEM, BreaklinesStandOnTheSeedThatTheGridHasNow) {
    CDEM dem;
    dem.Semilla() = CDataSemilla(3, 400000, 4000000);
    CLinea<int> linea;
    linea << CCoor3D<int>(0, 0, 0) << CCoor3D<int>(1000, 0, 0);
    ASSERT_TRUE(dem.InsertaRuptura(linea));
    EXPECT_EQ(dem.Rupturas().Semilla(), dem.GetSemilla());
    EXPECT_EQ(dem.Rupturas().Precision(), 1000.0);
}

TEST(CDEM, BreaklinesAreCopiedIn) {
    CDEM dem = Ondulado(3, 3);
    CLinea<int> linea(CString(L"rotura"));
    linea << CCoor3D<int>(1, 2, 3, 0);
    EXPECT_FALSE(dem.InsertaRuptura(linea));
    linea << CCoor3D<int>(4, 5, 6, 0);
    EXPECT_TRUE(dem.InsertaRuptura(linea));
    linea << CCoor3D<int>(7, 8, 9, 0);
    ASSERT_EQ(dem.Rupturas().Cantidad(), 1u);
    EXPECT_EQ(dem.Rupturas()[0]->NPuntos(), 2u);
    EXPECT_EQ(dem.Rupturas().Semilla(), dem.GetSemilla());
    dem.Clear();
    EXPECT_EQ(dem.Rupturas().Cantidad(), 0u);
}

TEST(CDEM, CopiesAreIndependent) {
    CDEM dem = Lista();
    const CDEM copia = dem;
    dem.Puntos()[0].m_fCota = 99.0f;
    dem.Clear();
    dem.ActualizaCantidades();
    EXPECT_DOUBLE_EQ(Cota(copia, 0.0, 0.0), 10.0);
    EXPECT_EQ(copia.DameCeldas(), 3u);
}

TEST(CDEM, ACellListHasExtentsValidityAndASurface) {
    CDEM dem = Lista();
    EXPECT_EQ(dem.DameCeldas(), 3u);
    EXPECT_EQ(dem.GetMaximasTotalDouble(), CMaximas<double>(P(0, 0, 10), P(6, 4, 21)));
    EXPECT_TRUE(dem.EsValido(7, 0));
    EXPECT_FALSE(dem.EsValido(8, 0));
    EXPECT_TRUE(dem.EsCeldaValida(2, 0, 1));
    EXPECT_FALSE(dem.EsCeldaValida(3, 0, 1));
    EXPECT_DOUBLE_EQ(Cota(dem, 1.0, 1.0), 0.75 * (0.75 * 10 + 0.25 * 14) + 0.25 * (0.75 * 12 + 0.25 * 18));
    EXPECT_DOUBLE_EQ(Cota(dem, 5.0, 1.0), 0.25 * (14 + 15 + 16 + 18));
    EXPECT_DOUBLE_EQ(Cota(dem, 6.0, 4.0), 21.0);
    EXPECT_DOUBLE_EQ(Cota(dem, 4.0, 2.0), 16.0);
    EXPECT_TRUE(std::isnan(Cota(dem, 6.1, 1.0)));
    CPuntoDEM celda;
    CCoor3D<double> p = P(5, 3);
    ASSERT_TRUE(dem.Proyecta(p, &celda, false));
    EXPECT_EQ(celda.m_nFila, 2u);
    CPuntoDEM punto(1, 0);
    ASSERT_TRUE(dem.DamePunto(punto, 0.5, 0.25, 1.0, 0.0, false, false));
    EXPECT_DOUBLE_EQ(punto.x, 4.0);
    EXPECT_DOUBLE_EQ(punto.y, 0.5);

    dem.Puntos()[4].m_fCota = kVacio;
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.DameCeldas(), 1u);
    EXPECT_TRUE(std::isnan(Cota(dem, 5.0, 1.0)));
    EXPECT_DOUBLE_EQ(Cota(dem, 0.0, 0.0), 10.0);
}

TEST(CDEM, ACellListWithIndicesThatLeadNowhereIsLeftOut) {
    CDEM dem = Lista();
    dem.Celdas().push_back({{0, 5, 6, 500}});
    dem.Puntos()[2].m_nX = 77;
    dem.ListaY()[2] = std::nan("");
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.DameCeldas(), 0u);
    EXPECT_TRUE(std::isnan(Cota(dem, 1.0, 1.0)));
    CCoor3D<double> p;
    EXPECT_FALSE(dem.InterseccionVector(P(1, 1, 0), P(2, 2, 50), p));
    CDibujo<int> dibujo;
    EXPECT_EQ(dem.DameBase(dibujo), 1);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
}

TEST(CDEM, VectorsOfACellListFollowAPlane) {
    CDEM dem = Lista();
    for (CDEM::CPunto& p : dem.Puntos())
        p.m_fCota = float(5.0 + 2.0 * dem.ListaX()[p.m_nX] - 1.0 * dem.ListaY()[p.m_nY]);
    dem.ActualizaCantidades();
    dem.CalculaVectores();
    EXPECT_FLOAT_EQ(dem.Puntos()[3].m_fVectorX / dem.Puntos()[3].m_fVectorZ, -2.0f);
    EXPECT_FLOAT_EQ(dem.Puntos()[3].m_fVectorY / dem.Puntos()[3].m_fVectorZ, 1.0f);
    for (double x = 0.0; x <= 6.0; x += 0.4)
        for (double y = 0.0; y <= 4.0; y += 0.3)
            EXPECT_NEAR(Cota(dem, x, y), 5.0 + 2.0 * x - y, 1e-6);
}

TEST(CDEM, AChangeOfDatumMovesTheTerrainAndItsHeights) {
    CDataHelmertNTV2 data;
    data.m_Origen = data.m_Destino =
        CSistemaReferencia(L"UTM 31", CElipsoide(17, L"GRS 1980", 6378137.0, 0.00669438), 31, true);
    data.m_dTX = 40.0, data.m_dTY = -25.0, data.m_dTZ = 60.0;
    CDEM dem = Grid(30, 40, 50.0, 50.0, 430000.0, 4600000.0);
    for (unsigned f = 0; f < 30; ++f)
        for (unsigned c = 0; c < 40; ++c)
            dem.Matriz().Set(f, c, 200.0f + 2.0f * float(c) - float(f));
    dem.Matriz().Set(15, 20, kVacio);
    dem.ActualizaCantidades();
    const CDEM antes = dem;
    ASSERT_EQ(dem.Transformacion(data), 1);
    int comparados = 0;
    for (double x = 430210.0; x < 431800.0; x += 173.0) {
        for (double y = 4600210.0; y < 4601300.0; y += 131.0) {
            CCoor3D<double> p = P(x, y);
            if (!antes.Proyecta(p, nullptr, true)) continue;
            std::vector<CCoor3D<double>> movido = {p};
            ASSERT_TRUE(data.Transforma(movido));
            CCoor3D<double> aqui = movido[0];
            if (!dem.Proyecta(aqui, nullptr, true)) continue;
            EXPECT_NEAR(aqui.z, movido[0].z, 1e-3);
            ++comparados;
        }
    }
    EXPECT_GT(comparados, 60);
    EXPECT_LT(dem.DameCeldas(), antes.DameCeldas() + 100u);

    CDEM lista = Lista();
    EXPECT_EQ(lista.Transformacion(data), 0);
    CDEM vacio = Grid(3, 3);
    EXPECT_EQ(vacio.Transformacion(data), 0);
    data.m_dTX = std::nan("");
    CDEM igual = antes;
    EXPECT_EQ(igual.Transformacion(data), 0);
    EXPECT_EQ(igual.GetMaximasTotalDouble(), antes.GetMaximasTotalDouble());
}

TEST(CDEM, AGreatGridIsQuick) {
    CDEM dem = Grid(1500, 1500);
    for (unsigned f = 0; f < 1500; ++f)
        for (unsigned c = 0; c < 1500; ++c)
            dem.Matriz().Set(f, c, (f % 50 == 7 && c % 50 == 9) ? kVacio : float((f * 7 + c * 13) % 100));
    dem.ActualizaCantidades();
    EXPECT_EQ(dem.DameCeldas(), 1499u * 1499u - 30u * 30u * 4u);
    CDibujo<int> dibujo;
    ASSERT_EQ(dem.DameBase(dibujo), 1);
    EXPECT_EQ(dibujo.Cantidad(), 1u + 30u * 30u);
    CCoor3D<double> p;
    EXPECT_TRUE(dem.InterseccionVector(P(1490, 1495, 5), P(-1e6, -1e6, 900000), p));
    EXPECT_TRUE(dem.InterseccionVector(P(1498.5, 1498.5, 0), P(0.5, 0.5, 1e4), p));
}

}  // namespace
