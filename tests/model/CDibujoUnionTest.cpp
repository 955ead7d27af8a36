// Joining lines end to end.

#include "model/CDibujo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>

namespace {

using namespace Vertiz;

template <class T = double>
CLinea<T> Tramo(T x1, T y1, T x2, T y2, const CString& codigo = L"nuevo") {
    CLinea<T> linea(codigo);
    linea << CCoor3D<T>(x1, y1, T(0)) << CCoor3D<T>(x2, y2, T(0));
    return linea;
}

int JuntaSencilla(auto& dibujo) {
    return dibujo.Junta(0, 0, 1, 1, 1, 0, 0, 1);
}

template <class T>
double Area(const CDibujo<T>& dibujo) {
    double area = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); i++) {
        area += std::abs(static_cast<const CLinea<T>&>(*dibujo[i]).Superficie());
    }
    return area;
}

// The outline of a block of cells, as pieces of one side each, shuffled and turned at random.
std::vector<CLinea<double>> Contorno(int ancho, int alto, unsigned semilla, double lado = 1.0) {
    std::vector<CLinea<double>> tramos;
    std::mt19937 azar(semilla);
    const auto mete = [&](double x1, double y1, double x2, double y2) {
        tramos.push_back(azar() % 2 ? Tramo(x1 * lado, y1 * lado, x2 * lado, y2 * lado)
                                    : Tramo(x2 * lado, y2 * lado, x1 * lado, y1 * lado));
    };
    for (int i = 0; i < ancho; i++)
        mete(i, 0, i + 1, 0), mete(i, alto, i + 1, alto);
    for (int j = 0; j < alto; j++)
        mete(0, j, 0, j + 1), mete(ancho, j, ancho, j + 1);
    std::shuffle(tramos.begin(), tramos.end(), azar);
    return tramos;
}

TEST(CDibujoUnion, FourSidesInAnyOrderAndDirectionMakeAClosedLine) {
    for (unsigned semilla = 0; semilla < 20; semilla++) {
        CDibujo<double> dibujo;
        for (const auto& t : Contorno(3, 2, semilla))
            dibujo.Inserta(t);
        EXPECT_EQ(JuntaSencilla(dibujo), 1);
        ASSERT_EQ(dibujo.Cantidad(), 1U);
        EXPECT_TRUE(dibujo[0]->EsCerrada());
        EXPECT_EQ(dibujo[0]->NPuntos(), 11U);
        EXPECT_EQ(Area(dibujo), 6.0);
        EXPECT_EQ(dibujo.CantidadPuntos(), 11U);
    }
}

TEST(CDibujoUnion, IntegersMeetOnlyWhenEqual) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Tramo<int>(0, 0, 5, 0));
    dibujo.Inserta(Tramo<int>(6, 0, 9, 0));
    dibujo.Inserta(Tramo<int>(9, 0, 20, 0));
    JuntaSencilla(dibujo);
    ASSERT_EQ(dibujo.Cantidad(), 2U);
    EXPECT_EQ(dibujo[1]->NPuntos(), 3U);
}

TEST(CDibujoUnion, RoundingDoesNotKeepEndsApart) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Tramo<double>(0, 0, 5, 0));
    dibujo.Inserta(Tramo<double>(5.0004, -0.0003, 9, 0));
    dibujo.Inserta(Tramo<double>(9, 0.1, 12, 3));
    JuntaSencilla(dibujo);
    EXPECT_EQ(dibujo.Cantidad(), 2U);
    dibujo.Junta(0.2, 0, 1, 1, 1, 0, 0, 1);
    ASSERT_EQ(dibujo.Cantidad(), 1U);
    EXPECT_EQ(dibujo[0]->NPuntos(), 4U);
}

TEST(CDibujoUnion, KeepsPlaceDirectionAndHeaderOfTheEarliestPart) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Tramo<double>(50, 50, 60, 60, L"other"));
    CLinea<double> medio = Tramo<double>(1, 0, 2, 0);
    medio.InsertaAtr(CAtrDigi(5, 99, L""));
    dibujo.Inserta(medio);
    dibujo.Inserta(Tramo<double>(1, 0, 0, 0));
    dibujo.Inserta(Tramo<double>(3, 0, 2, 0));
    dibujo.Inserta(Tramo<double>(70, 70, 80, 80, L"last"));
    JuntaSencilla(dibujo);
    ASSERT_EQ(dibujo.Cantidad(), 3U);
    EXPECT_EQ(dibujo[0]->GetCodigo(), L"other");
    EXPECT_EQ(dibujo[2]->GetCodigo(), L"last");
    EXPECT_EQ(dibujo[1]->DameRegistro(5), 99);
    ASSERT_EQ(dibujo[1]->NPuntos(), 4U);
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(dibujo[1]->Punto(i).x, i);
}

TEST(CDibujoUnion, OptionsKeepLinesApart) {
    const auto junta = [](auto... opciones) {
        CDibujo<double> dibujo;
        CLinea<double> alta(CString(L"B"));
        alta << CCoor3D<double>(2, 0, 7) << CCoor3D<double>(1, 0, 7);
        dibujo.Inserta(Tramo<double>(0, 0, 1, 0, L"A"));
        dibujo.Inserta(alta);
        dibujo.Junta(opciones...);
        return dibujo.Cantidad();
    };
    EXPECT_EQ(junta(0, 0, 0, 1, 1, 0, 0, 1), 1U);
    EXPECT_EQ(junta(0, 0, 1, 1, 1, 0, 0, 1), 2U) << "codes differ";
    EXPECT_EQ(junta(0, 0, 0, 0, 1, 0, 0, 1), 2U) << "one would have to be turned round";
    EXPECT_EQ(junta(0, 6, 0, 1, 1, 0, 1, 1), 2U) << "heights differ by more than 6";
    EXPECT_EQ(junta(0, 7, 0, 1, 1, 0, 1, 1), 1U);
}

TEST(CDibujoUnion, LinesGoStraightOnAtACrossing) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Tramo<double>(0, 0, 5, 0));
    dibujo.Inserta(Tramo<double>(5, 0, 5, 5));
    dibujo.Inserta(Tramo<double>(5, -5, 5, 0));
    dibujo.Inserta(Tramo<double>(5, 0, 10, 0));
    CDibujo<double> otro(dibujo);
    JuntaSencilla(dibujo);
    ASSERT_EQ(dibujo.Cantidad(), 2U);
    EXPECT_EQ(dibujo[0]->Punto(2).x, 10);
    EXPECT_EQ(dibujo[1]->Punto(2).y, 5);
    otro.Junta(0, 0, 1, 1, 1, 1, 0, 1);
    EXPECT_EQ(otro.Cantidad(), 4U) << "nodes are respected";
}

TEST(CDibujoUnion, OutlinesThatTouchAtACornerComeOutApart) {
    for (unsigned semilla = 0; semilla < 30; semilla++) {
        std::vector<CLinea<double>> tramos = Contorno(2, 2, semilla);
        for (auto& t : Contorno(3, 1, semilla + 100)) {
            t.Mover(2, 2, 0);
            tramos.push_back(t);
        }
        std::shuffle(tramos.begin(), tramos.end(), std::mt19937(semilla));
        CDibujo<double> dibujo;
        for (const auto& t : tramos)
            dibujo.Inserta(t);
        JuntaSencilla(dibujo);
        ASSERT_EQ(dibujo.Cantidad(), 2U);
        EXPECT_TRUE(dibujo[0]->EsCerrada());
        EXPECT_TRUE(dibujo[1]->EsCerrada());
        EXPECT_EQ(Area(dibujo), 7.0);
    }
}

TEST(CDibujoUnion, TextsClosedAndErasedLinesStay) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Tramo<double>(0, 0, 1, 0));
    CLinea<double> borrada = Tramo<double>(1, 0, 2, 0);
    borrada.SetBorrado(true);
    dibujo.Inserta(borrada);
    CLinea<double> cerrada = Tramo<double>(1, 0, 2, 0);
    cerrada << CCoor3D<double>(2, 2, 0);
    cerrada.Cierra();
    dibujo.Inserta(cerrada);
    CLinea<double> mala = Tramo<double>(1, 0, NAN, 0);
    dibujo.Inserta(mala);
    JuntaSencilla(dibujo);
    EXPECT_EQ(dibujo.Cantidad(), 4U);
}

TEST(CDibujoUnion, JoiningBeforeInsertionGrowsOneLine) {
    CDibujo<double> dibujo;
    EXPECT_EQ(dibujo.JuntaAntesDeInsertar(Tramo<double>(1, 0, 0, 0)), 0U);
    for (int i = 1; i < 50; i++) {
        EXPECT_EQ(dibujo.JuntaAntesDeInsertar(i % 2 ? Tramo<double>(i, 0, i + 1, 0) : Tramo<double>(i + 1, 0, i, 0)),
                  0U);
    }
    EXPECT_EQ(dibujo.JuntaAntesDeInsertar(Tramo<double>(50, 0, 50, 9, L"other code")), 1U);
    ASSERT_EQ(dibujo.Cantidad(), 2U);
    EXPECT_EQ(dibujo[0]->NPuntos(), 51U);
    EXPECT_EQ(dibujo.CantidadPuntos(), 53U);
    EXPECT_EQ(dibujo.GetMaximasDouble().Maxima().x, 50);
    for (int i = 0; i <= 50; i++)
        EXPECT_EQ(dibujo[0]->Punto(i).x, i);
}

TEST(CDibujoUnion, JoiningBeforeInsertionClosesALine) {
    CDibujo<double> dibujo;
    for (const auto& t : {Tramo<double>(0, 0, 4, 0), Tramo<double>(4, 4, 4, 0), Tramo<double>(4, 4, 0, 0)}) {
        dibujo.JuntaAntesDeInsertar(t);
    }
    ASSERT_EQ(dibujo.Cantidad(), 1U);
    EXPECT_TRUE(dibujo[0]->EsCerrada());
    EXPECT_EQ(dibujo.JuntaAntesDeInsertar(Tramo<double>(0, 0, -4, 0)), 1U) << "a closed line has no ends";
}

TEST(CDibujoUnion, JoiningBeforeInsertionSurvivesChangesBetween) {
    CDibujo<double> dibujo;
    dibujo.JuntaAntesDeInsertar(Tramo<double>(0, 0, 1, 0));
    dibujo[0]->Mover(100, 0, 0);
    EXPECT_EQ(dibujo.JuntaAntesDeInsertar(Tramo<double>(1, 0, 2, 0)), 1U);
    dibujo.Clear();
    EXPECT_EQ(dibujo.JuntaAntesDeInsertar(Tramo<double>(2, 0, 3, 0)), 0U);
    EXPECT_EQ(dibujo[0]->NPuntos(), 2U);
}

TEST(CDibujoUnion, OutlineOfALargeGridIsJoinedInTime) {
    const auto tramos = Contorno(25000, 25000, 7, 10000.0 / 25000);
    CDibujo<double> dibujo;
    const auto antes = std::chrono::steady_clock::now();
    for (const auto& t : tramos)
        dibujo.JuntaAntesDeInsertar(t);
    JuntaSencilla(dibujo);
    const std::chrono::duration<double> segundos = std::chrono::steady_clock::now() - antes;
    ASSERT_EQ(dibujo.Cantidad(), 1U);
    EXPECT_EQ(dibujo[0]->NPuntos(), 100001U);
    EXPECT_NEAR(Area(dibujo), 1e8, 1);
    // A quadratic search takes minutes; the rest is room for slow builds and busy machines.
    EXPECT_LT(segundos.count(), 10.0);
    RecordProperty("seconds", std::to_string(segundos.count()));
}

}  // namespace
