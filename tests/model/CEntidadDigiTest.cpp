#include "model/CEntidadDigi.h"

#include "model/CLinea.h"

#include <gtest/gtest.h>

#include <climits>

namespace Vertiz {
namespace {

CLinea<int> Cuadrado(int lado) {
    CLinea<int> linea("MURO");
    linea << CCoor3D<int>(0, 0, 1, 11) << CCoor3D<int>(lado, 0, 2) << CCoor3D<int>(lado, lado, 3)
          << CCoor3D<int>(0, lado, 4);
    return linea;
}

TEST(CEntidadDigi, KeepsItsBoxThroughEveryChange) {
    CLinea<int> linea = Cuadrado(10);
    EXPECT_EQ(linea.GetMaximas(), CMaximas<int>({0, 0, 1}, {10, 10, 4}));
    EXPECT_TRUE(linea.ModificaPunto(2, {50, 60, 70}, true));
    EXPECT_EQ(linea.Maxima(), CCoor3D<int>(50, 60, 70));
    EXPECT_TRUE(linea.BorraPunto(2, 1));
    EXPECT_EQ(linea.Maxima(), CCoor3D<int>(10, 10, 4));
    linea.Mover(1.5, -1.5, 0.4);
    EXPECT_EQ(linea.GetMaximas(), CMaximas<int>({2, -2, 1}, {12, 9, 4}));
    linea.Clear();
    EXPECT_TRUE(linea.EstanVacias(true));
    EXPECT_EQ(linea.GetCodigo(), L"MURO");
}

TEST(CEntidadDigi, LeavesTheBoxAloneOnRequestAndBringsItUpToDateLater) {
    CLinea<int> linea = Cuadrado(10);
    EXPECT_TRUE(linea.ModificaPunto(0, {-9, 0, 0}, false));
    EXPECT_EQ(linea.Minima().x, 0);
    linea.CalculaMaximas();
    EXPECT_EQ(linea.Minima().x, -9);
    EXPECT_FALSE(linea.ModificaPunto(4, {0, 0, 0}, true));
}

TEST(CEntidadDigi, GivesTheOriginForAnIndexOutOfRange) {
    const CLinea<int> linea = Cuadrado(10);
    EXPECT_EQ(linea.Punto(3), CCoor3D<int>(0, 10, 4));
    EXPECT_EQ(linea.Punto(4), CCoor3D<int>());
    EXPECT_EQ(linea.Punto(-1), CCoor3D<int>());
}

TEST(CEntidadDigi, DeletesOnlyPointsThatAreThere) {
    CLinea<int> linea = Cuadrado(10);
    for (const auto& [indice, cantidad] : {std::pair{-1, 1}, {4, 1}, {3, 2}, {0, 0}, {0, -1}, {1, INT_MAX}}) {
        EXPECT_FALSE(linea.BorraPunto(indice, cantidad)) << indice << ' ' << cantidad;
    }
    EXPECT_EQ(linea.NPuntos(), 4U);
    const int indices[] = {-3, 0, 2, 2, 9};
    linea.BorraPuntos(indices);
    ASSERT_EQ(linea.NPuntos(), 2U);
    EXPECT_EQ(linea.Punto(0), CCoor3D<int>(10, 0, 2));
    EXPECT_EQ(linea.Punto(1), CCoor3D<int>(0, 10, 4));
    EXPECT_EQ(linea.GetMaximas(), CMaximas<int>({0, 0, 2}, {10, 10, 4}));
    EXPECT_TRUE(linea.BorraPunto(0, 2));
    EXPECT_EQ(linea.NPuntos(), 0U);
}

TEST(CEntidadDigi, ScalesAboutTheOriginAndTurnsBySimilarity) {
    CLinea<double> linea(Cuadrado(1000));
    linea.Escalar(0.01, 0.01, 1.0);
    EXPECT_EQ(linea.Punto(2), CCoor3D<double>(10, 10, 3));
    linea.Helmert(0.0, 2.0, 100.0, 200.0, -1.0);
    EXPECT_EQ(linea.Punto(1), CCoor3D<double>(100, 220, 1));
    EXPECT_EQ(linea.GetMaximas(), CMaximas<double>({80, 200, 0}, {100, 220, 3}));
    EXPECT_EQ(linea.Punto(0).GetTipo(), 11);
    CLinea<int> entera = Cuadrado(3);
    entera.Escalar(-0.5, 0.5, 1.0);
    EXPECT_EQ(entera.GetMaximas(), CMaximas<int>({-2, 0, 1}, {0, 2, 4}));
}

TEST(CEntidadDigi, FindsItsAttributesAndAnswersMinusOneForOthers) {
    CLinea<int> linea("ARBOL");
    EXPECT_EQ(linea.DameRegistro(99), -1);
    linea.InsertaAtr(CAtrDigi(99, 1250, ""));
    linea.InsertaAtr(CAtrDigi(99, 1250, ""));
    linea.InsertaAtr(CAtrDigi(7, -40, L"cota"));
    EXPECT_EQ(linea.Atributos().size(), 2U);
    EXPECT_EQ(linea.DameRegistro(99), 1250);
    EXPECT_EQ(linea.DameRegistro(7), -40);
    EXPECT_TRUE(linea.TieneAtr(CAtrDigi(7, -40, L"cota")));
    EXPECT_FALSE(linea.TieneAtr(CAtrDigi(7, -40, L"otra")));
    EXPECT_FALSE(linea.TieneAtr(CAtrDigi(7, -41, L"cota")));
    linea.InsertaAtr(CAtrDigi(99, 3, ""));
    EXPECT_EQ(linea.DameRegistro(99), 3);
}

TEST(CEntidadDigi, ClonesDeeply) {
    CLinea<int> linea = Cuadrado(10);
    linea.SetBorrado(true);
    linea.InsertaAtr(CAtrDigi(1, 2, "x"));
    const CEntidadDigi<int>& entidad = linea;
    const auto copia = entidad.Clona();
    linea.Clear();
    ASSERT_EQ(copia->NPuntos(), 4U);
    EXPECT_TRUE(copia->EsBorrado());
    EXPECT_EQ(copia->DameRegistro(1), 2);
    EXPECT_NE(dynamic_cast<CLinea<int>*>(copia.get()), nullptr);
}

TEST(CEntidadDigi, AssignsAndSwapsContentsButNotKinds) {
    CLinea<int> a = Cuadrado(10), b("B");
    b << CCoor3D<int>(7, 7, 7);
    b.InsertaAtr(CAtrDigi(5, 5, ""));
    a.swap(b);
    EXPECT_EQ(a.NPuntos(), 1U);
    EXPECT_EQ(a.DameRegistro(5), 5);
    EXPECT_EQ(b.GetCodigo(), L"MURO");
    EXPECT_EQ(b.GetMaximas(), CMaximas<int>({0, 0, 1}, {10, 10, 4}));
    a.Asigna(b);
    EXPECT_EQ(a.NPuntos(), 4U);
    EXPECT_EQ(a.DameRegistro(5), -1);
    EXPECT_TRUE(static_cast<CCabDigi<int>&>(a) == static_cast<CCabDigi<int>&>(b));
    a.SetCodigo("OTRO");
    EXPECT_TRUE(static_cast<CCabDigi<int>&>(a) != static_cast<CCabDigi<int>&>(b));
}

TEST(CEntidadDigi, IsOrderedByCodeThenBox) {
    CLinea<int> a("A"), b("B"), a2("A");
    a << CCoor3D<int>(5, 0, 0);
    a2 << CCoor3D<int>(6, 0, 0);
    b << CCoor3D<int>(0, 0, 0);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_TRUE(a < a2);
    EXPECT_FALSE(a2 < a);
    EXPECT_FALSE(a < a);
}

TEST(CEntidadDigi, IsClosedOnlyWhenTheLastPointRepeatsTheFirstInSpace) {
    CLinea<int> linea("L");
    EXPECT_FALSE(linea.EsCerrada());
    linea << CCoor3D<int>(0, 0, 0);
    EXPECT_FALSE(linea.EsCerrada());
    linea << CCoor3D<int>(0, 0, 0);
    EXPECT_FALSE(linea.EsCerrada());
    linea << CCoor3D<int>(0, 0, 1);
    EXPECT_FALSE(linea.EsCerrada());
    linea << CCoor3D<int>(0, 0, 0, 9);
    EXPECT_TRUE(linea.EsCerrada());
}

}  // namespace
}  // namespace Vertiz
