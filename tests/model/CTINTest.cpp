// What a triangulated terrain holds: points, triangles, neighbours, types, extents, copies.

#include "MallasPrueba.h"
#include "model/CDataHelmertNTV2.h"
#include "model/CModeloDigital.h"

#include <climits>
#include <memory>

namespace {

using namespace mallas;

// Two triangles on a square, and one beside them.
CTIN Cuadro() {
    return Malla({{0, 0, 1}, {10, 0, 2}, {10, 10, 3}, {0, 10, 4}, {20, 0, 5}}, {{1, 2, 3}, {1, 3, 4}, {2, 5, 3}});
}

TEST(CTIN, NeighboursAreFoundAcrossSharedSides) {
    const CTIN tin = Cuadro();
    ASSERT_EQ(tin.CantidadTriangulos(), 3u);
    EXPECT_EQ(tin.Triangulo(0).Vecino(0), -1);
    EXPECT_EQ(tin.Triangulo(0).Vecino(1), 2);
    EXPECT_EQ(tin.Triangulo(0).Vecino(2), 1);
    EXPECT_EQ(tin.Triangulo(1).Vecino(0), 0);
    EXPECT_EQ(tin.Triangulo(2).Vecino(2), 0);
    EXPECT_EQ(tin.LadoVecino(0, 1), 2);
    EXPECT_EQ(tin.LadoVecino(0, 0), -1);
    EXPECT_EQ(tin.Triangulo(2).Punto2(), &tin.Punto(4));
    EXPECT_EQ(tin.Punto(4).GetNumero(), 5);
    EXPECT_EQ(tin.Vertice(1, 2), CCoor3D<int>(0, 10, 4));
}

TEST(CTIN, TrianglesThatTurnRightAreTurnedRoundWithTheirMarks) {
    std::vector<CTIN::CFila> filas(2);
    filas[0].m_nVertices = {1, 3, 2};
    filas[0].SetRuptura(0), filas[0].SetLimite(2);
    filas[1].m_nVertices = {1, 3, 4};
    CTIN tin;
    tin.TomaSueltos({{0, 0, 1}, {10, 0, 2}, {10, 10, 3}, {0, 10, 4}}, filas);
    const CTriangulo t = tin.Triangulo(0);
    EXPECT_EQ(t.Punto2(), &tin.Punto(1));
    EXPECT_EQ(t.Vecino(2), 1);
    EXPECT_TRUE(t.EsRuptura(2)) << "the side 1 3";
    EXPECT_TRUE(t.EsLimite(0)) << "the side 1 2";
    EXPECT_FALSE(t.EsRuptura(0) || t.EsRuptura(1) || t.EsLimite(1) || t.EsLimite(2));
}

TEST(CTIN, OfThreeTrianglesOnASideOneHasNoNeighbourThere) {
    const CTIN tin =
        Malla({{0, 0, 0}, {10, 0, 0}, {5, 9, 0}, {5, -9, 0}, {5, -20, 0}}, {{1, 2, 3}, {2, 1, 4}, {2, 1, 5}});
    EXPECT_EQ(tin.Triangulo(0).Vecino(0), 1);
    EXPECT_EQ(tin.Triangulo(1).Vecino(0), 0);
    EXPECT_EQ(tin.Triangulo(2).Vecino(0), -1);
    // Two that run the same way along a side aren't neighbours.
    const CTIN otra =
        Malla({{0, 0, 0}, {10, 0, 0}, {5, 9, 0}, {6, 20, 0}, {5, -9, 0}}, {{1, 2, 3}, {1, 2, 4}, {2, 1, 5}});
    EXPECT_EQ(otra.Triangulo(0).Vecino(0), 2);
    EXPECT_EQ(otra.Triangulo(1).Vecino(0), -1);
    EXPECT_EQ(otra.Triangulo(2).Vecino(0), 0);
}

TEST(CTIN, WhatDoesNotExistBecomesNone) {
    std::vector<CTIN::CFila> filas(1);
    filas[0].m_nVertices = {1, 2, 9};
    filas[0].m_nVecinos = {-7, 1, 0};
    CTIN tin;
    tin.Toma({{0, 0, 0}, {9, 0, 0}}, filas);
    EXPECT_EQ(tin.Triangulo(0).Punto3(), nullptr);
    EXPECT_EQ(tin.Triangulo(0).Vecino(0), -1);
    EXPECT_EQ(tin.Triangulo(0).Vecino(1), -1);
    EXPECT_FALSE(tin.EsVisible(0));
    EXPECT_EQ(tin.Localiza(1, 0, true, 1), -1);
    EXPECT_EQ(tin.CantidadVisibles(), 0u);
    CDibujo<int> dibujo;
    tin.DameTriangulos(dibujo);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
}

TEST(CTIN, PointsAreNumberedAndDeletedOnesStaySo) {
    CPuntoTIN borrado(5, 5, 5);
    borrado.SetNumero(-77);
    CTIN tin;
    tin.Toma({{0, 0, 0}, borrado, {9, 0, 0}}, {});
    EXPECT_EQ(tin.Punto(0).GetNumero(), 1);
    EXPECT_EQ(tin.Punto(1).GetNumero(), -2);
    EXPECT_EQ(tin.Punto(2).GetNumero(), 3);
}

TEST(CTIN, PointsAndTrianglesAreReplacedOneByOne) {
    CTIN tin = Cuadro();
    CPuntoTIN p(99, 98, 97);
    p.SetNumero(40), p.SetIntensidad(6);
    EXPECT_TRUE(tin.ModificaPunto(p, 1));
    EXPECT_EQ(tin.Punto(1), CCoor3D<int>(99, 98, 97));
    EXPECT_EQ(tin.Punto(1).GetNumero(), 2) << "its number is its place";
    EXPECT_EQ(tin.Punto(1).GetIntensidad(), 6u);
    EXPECT_FALSE(tin.ModificaPunto(p, 5));
    CTriangulo t = tin.Triangulo(2);
    t.SetTipoTriangulo(3), t.SetPunto2(&p), t.SetVecino(0, 1), t.SetVecino(1, 77);
    EXPECT_TRUE(tin.ModificaTriangulo(t, 2));
    EXPECT_EQ(tin.Triangulo(2).GetTipoTriangulo(), 3u);
    EXPECT_EQ(tin.Triangulo(2).Punto1(), &tin.Punto(1));
    EXPECT_EQ(tin.Triangulo(2).Punto2(), nullptr) << "not one of its points";
    EXPECT_EQ(tin.Triangulo(2).Vecino(0), 1);
    EXPECT_EQ(tin.Triangulo(2).Vecino(1), -1);
    EXPECT_FALSE(tin.ModificaTriangulo(t, 3));
    EXPECT_TRUE(tin.BorraTriangulo(0));
    EXPECT_FALSE(tin.BorraTriangulo(3));
    EXPECT_FALSE(tin.EsVisible(0));
    EXPECT_EQ(tin.CantidadVisibles(), 1u);
    EXPECT_EQ(tin.LadoVecino(1, 0), -1) << "a deleted one is no neighbour of the surface";
}

TEST(CTIN, ADeletedPointHidesItsTrianglesAndLeavesTheExtents) {
    CTIN tin = Cuadro();
    EXPECT_EQ(tin.GetMaximasInt(), Vertiz::CMaximas<int>({0, 0, 1}, {20, 10, 5}));
    CPuntoTIN p = tin.Punto(4);
    p.SetNumero(-1);
    EXPECT_TRUE(tin.ModificaPunto(p, 4));
    tin.ActualizaCantidades();
    EXPECT_EQ(tin.Punto(4).GetNumero(), -5);
    EXPECT_FALSE(tin.EsVisible(2));
    EXPECT_TRUE(tin.EsVisible(0));
    EXPECT_EQ(tin.GetMaximasInt(), Vertiz::CMaximas<int>({0, 0, 1}, {10, 10, 4}));
}

TEST(CTIN, ExtentsAreLocalAndInTerrainUnits) {
    CTIN tin = Malla({{0, 0, 100}, {1000, 0, 0}, {0, -500, 50}}, {{1, 2, 3}}, CDataSemilla(2, 1e6, 2e6, 30));
    EXPECT_EQ(tin.GetMaximasDouble(), Vertiz::CMaximas<double>({0, -5, 0}, {10, 0, 1}));
    EXPECT_EQ(tin.GetOrigenX(), 1e6);
    EXPECT_EQ(tin.GetOrigenY(), 2e6);
    EXPECT_DOUBLE_EQ(tin.Precision(), 100.0);
    tin.SetMaximasDouble({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(tin.GetMaximasInt(), Vertiz::CMaximas<int>({100, 200, 300}, {400, 500, 600}));
    tin.Clear();
    EXPECT_TRUE(tin.GetMaximasDouble().EstanVacias(true));
    EXPECT_EQ(tin.CantidadTriangulos(), 0u);
    EXPECT_EQ(tin.GetSemilla().GetDecimales(), 2);
}

TEST(CTIN, TypesThatOccurAreToldWithoutZeroAndWithoutDeletedOnes) {
    CTIN tin = Cuadro();
    std::vector<int> tipos{1, 2, 3};
    tin.GetTiposTriangulos(tipos, nullptr, nullptr);
    EXPECT_TRUE(tipos.empty());
    for (const auto& [i, tipo] : {std::pair(0u, 7u), std::pair(1u, 200u), std::pair(2u, 7u)}) {
        CTriangulo t = tin.Triangulo(i);
        t.SetTipoTriangulo(tipo);
        tin.ModificaTriangulo(t, i);
    }
    std::vector<unsigned> cantidades;
    std::vector<double> superficies;
    tin.GetTiposTriangulos(tipos, &cantidades, &superficies);
    EXPECT_EQ(tipos, (std::vector<int>{7, 200}));
    EXPECT_EQ(cantidades, (std::vector<unsigned>{2, 1}));
    EXPECT_EQ(superficies, (std::vector<double>{100, 50}));
    tin.BorraTriangulo(1);
    tin.GetTiposTriangulos(tipos, nullptr, nullptr);
    EXPECT_EQ(tipos, std::vector<int>{7});
}

TEST(CTIN, TexturesAreTakenAwayByKindAndIndex) {
    const auto prepara = [] {
        CTIN tin = Cuadro();
        for (unsigned i = 0; i < 3; ++i) {
            CTriangulo t = tin.Triangulo(i);
            t.SetTipoTextura(i == 2 ? 2 : 1), t.SetIndiceTextura(i + 1), t.SetPared(true);
            tin.ModificaTriangulo(t, i);
        }
        return tin;
    };
    CTIN tin = prepara();
    tin.QuitaTexturas(1, 1);
    EXPECT_EQ(tin.Fila(0).GetTipoTextura(), 0u);
    EXPECT_EQ(tin.Fila(0).GetIndiceTextura(), 0u);
    EXPECT_EQ(tin.Fila(1).GetTipoTextura(), 1u);
    EXPECT_EQ(tin.Fila(1).GetIndiceTextura(), 1u) << "it moves up";
    EXPECT_EQ(tin.Fila(2).GetTipoTextura(), 2u);
    EXPECT_EQ(tin.Fila(2).GetIndiceTextura(), 3u) << "another kind";
    tin = prepara();
    tin.QuitaTexturas(1, -1);
    EXPECT_EQ(tin.Fila(0).GetTipoTextura() + tin.Fila(1).GetTipoTextura(), 0u);
    EXPECT_EQ(tin.Fila(2).GetTipoTextura(), 2u);
    EXPECT_TRUE(tin.Fila(0).EsPared());
}

TEST(CTIN, CopiesAreWholeAndPointToTheirOwnPoints) {
    Vertiz::CDataTIN data;
    data.m_CodTejado = L"T", data.m_CodPared = L"P", data.m_TiposTriangulos = {L"1", L"2"};
    CTIN tin(4, 0, CDataSemilla(1, 5, 6, 7), data);
    EXPECT_EQ(tin.GetMensajes(), 0);
    std::vector<CTIN::CFila> filas(1);
    filas[0].m_nVertices = {1, 2, 3};
    tin.Toma({{0, 0, 0}, {9, 0, 0}, {0, 9, 0}}, filas);
    ASSERT_EQ(tin.GeneraCurvas({}), 1);
    CTIN copia(tin);
    EXPECT_EQ(copia.GetTipo(), 4u);
    EXPECT_EQ(copia.GetCodTejado(), CString(L"T"));
    EXPECT_EQ(copia.GetCodPared(), CString(L"P"));
    EXPECT_EQ(copia.GetData().m_TiposTriangulos.size(), 2u);
    EXPECT_TRUE(copia.HayCurvas());
    EXPECT_EQ(copia.Triangulo(0).Punto1(), &copia.Punto(0));
    EXPECT_NE(&copia.Punto(0), &tin.Punto(0));
    copia.BorraTriangulo(0), copia.BorraCurvas();
    EXPECT_TRUE(tin.EsVisible(0) && tin.HayCurvas());
    const CPuntoTIN* const punto = &tin.Punto(0);
    CTIN movido(std::move(tin));
    EXPECT_EQ(movido.Triangulo(0).Punto1(), punto);
    EXPECT_EQ(movido.Localiza(1, 1, true, 0), 0);
    copia = movido;
    EXPECT_EQ(copia.Localiza(1, 1, true, 0), 0);
}

TEST(CTIN, ATransformationThatFailsChangesNothing) {
    CTIN tin = Cuadro();
    Vertiz::CDataHelmertNTV2 data;
    data.m_SzRejilla = L"no_such_grid.gsb";
    EXPECT_EQ(tin.Transformacion(data), 0);
    EXPECT_EQ(tin.Punto(1), CCoor3D<int>(10, 0, 2));
}

TEST(CModeloDigital, HoldsATerrainAndObjectsInOrder) {
    Vertiz::CModeloDigital modelo;
    EXPECT_EQ(modelo.GetTIN(), nullptr);
    EXPECT_TRUE(modelo.GetMaximasDouble().EstanVacias(true));
    modelo.SetTIN(std::make_unique<CTIN>(Cuadro()));
    CTIN casa = Malla({{100, 0, 50}, {110, 0, 50}, {100, 10, 60}}, {{1, 2, 3}}, CDataSemilla(1));
    casa.SetTipo(5);
    EXPECT_EQ(modelo.InsertaObjeto(std::make_unique<CTIN>(casa)), 0u);
    casa.SetTipo(6);
    EXPECT_EQ(modelo.InsertaObjeto(std::make_unique<CTIN>(casa)), 1u);
    EXPECT_EQ(modelo.GetMaximasDouble(), Vertiz::CMaximas<double>({0, 0, 1}, {20, 10, 6}));
    const Vertiz::CModeloDigital copia(modelo);
    EXPECT_TRUE(modelo.BorraObjeto(0));
    EXPECT_FALSE(modelo.BorraObjeto(1));
    ASSERT_EQ(modelo.CantidadObjetos(), 1u);
    EXPECT_EQ(modelo.Objeto(0)->GetTipo(), 6u);
    EXPECT_EQ(modelo.Objeto(1), nullptr);
    ASSERT_EQ(copia.CantidadObjetos(), 2u);
    EXPECT_EQ(copia.Objeto(0)->GetTipo(), 5u);
    EXPECT_NE(copia.GetTIN(), modelo.GetTIN());
    modelo = copia;
    EXPECT_EQ(modelo.CantidadObjetos(), 2u);
    modelo.Clear();
    EXPECT_EQ(modelo.GetTIN(), nullptr);
    EXPECT_EQ(modelo.CantidadObjetos(), 0u);
}

TEST(CModeloDigital, ObjectsOfAnotherOriginCountWhereTheyStand) {
    Vertiz::CModeloDigital modelo(std::make_unique<CTIN>(
        Malla({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}}, {{1, 2, 3}}, CDataSemilla(0, 1000, 2000, 0))));
    modelo.InsertaObjeto(std::make_unique<CTIN>(
        Malla({{0, 0, 0}, {10, 0, 0}, {0, 10, 3}}, {{1, 2, 3}}, CDataSemilla(0, 1020, 1995, 1))));
    EXPECT_EQ(modelo.GetMaximasDouble(), Vertiz::CMaximas<double>({0, -5, 0}, {30, 10, 4}));
}

TEST(CModeloDigital, OutlinesBecomeConvexPieces) {
    const Vertiz::CModeloDigital modelo(
        std::make_unique<CTIN>(Malla({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 4, 0}}, {{1, 2, 4}, {2, 3, 4}})));
    CDibujo<int> dibujo;
    ASSERT_EQ(modelo.GetTIN()->Limites(dibujo, 0, 0), 1);
    EXPECT_EQ(modelo.Convexos(dibujo), 1);
    double area = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        area += CLinea<int>(*dibujo[i]).Superficie();
    EXPECT_EQ(dibujo.Cantidad(), 2u);
    EXPECT_DOUBLE_EQ(area, modelo.GetTIN()->SuperficiePlana());
}

}  // namespace
