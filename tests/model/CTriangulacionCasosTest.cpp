// What drawings may bring: points of one place, clouds, no plan at all; and what of a surface is cut off.

#include "Triangulaciones.h"
#include "model/CSetPuntos.h"
#include "support/Progreso.h"

#include <algorithm>
#include <array>
#include <climits>
#include <random>

namespace triangulaciones {
namespace {

using Vertiz::CDataTriangulacion;
using Vertiz::CPuntoTIN;
using Vertiz::CTriangulacion;

Vertiz::CDigiTab Tabla(const wchar_t* codigo) {
    Vertiz::CDigiTab tabla;
    tabla.Inserta(Vertiz::CElementoDigiTab(0, codigo, 0, 0, 0, 0, 0, CString(), 1), true);
    return tabla;
}

std::vector<CPuntoTIN> Rejilla(int columnas, int filas, int paso) {
    std::vector<CPuntoTIN> puntos;
    for (int i = 0; i < filas; ++i)
        for (int j = 0; j < columnas; ++j)
            puntos.emplace_back(j * paso, i * paso, 5);
    return puntos;
}

TEST(CTriangulacion, PointsOfOnePlaceWithOtherHeightsAreReported) {
    std::vector<CPuntoTIN> puntos{{0, 0, 1}, {9, 0, 2}, {0, 9, 3}, {0, 0, 4}, {9, 0, 2}, {0, 0, 5}, {0, 0, 1}};
    CTIN tin;
    Progreso progreso;
    CTriangulacion triangulacion;
    ASSERT_EQ(triangulacion.Run(puntos, CDibujo<int>(), tin, &progreso, nullptr), 1);
    ASSERT_EQ(tin.CantidadPuntos(), 3u);
    EXPECT_EQ(tin.Punto(0).z, 1);
    EXPECT_EQ(tin.Punto(2).GetNumero(), 3);
    EXPECT_EQ(triangulacion.GetInforme().m_nRepetidos, 4u);
    EXPECT_EQ(triangulacion.GetInforme().m_Cotas, (std::vector<CCoor3D<int>>{{0, 0, 4}, {0, 0, 5}}));
    EXPECT_THAT(progreso.m_Mensajes, testing::ElementsAre("4 points left out: others lie in the same place",
                                                          "2 of them have another height; the first one counts"));
    Progreso callado;
    EXPECT_EQ(triangulacion.Mensajes(0), 1);
    ASSERT_EQ(triangulacion.Run(puntos, CDibujo<int>(), tin, &callado, nullptr), 1);
    EXPECT_TRUE(callado.m_Mensajes.empty());
}

TEST(CTriangulacion, OfThousandsOfPointsOnOnePlaceTheFirstCounts) {
    std::vector<CPuntoTIN> puntos;
    for (int i = 0; i < 20000; ++i)
        puntos.emplace_back(i % 3, i % 2, i);
    CTIN tin;
    ASSERT_EQ(CTriangulacion().Run(puntos, CDibujo<int>(), tin, nullptr, nullptr), 1);
    ASSERT_EQ(tin.CantidadPuntos(), 6u);
    for (unsigned i = 0; i < 6; ++i)
        EXPECT_EQ(tin.Punto(i).z, int(i));
}

TEST(CTriangulacion, PointsThatMakeNoTriangleGiveAMessage) {
    CTIN tin;
    CTriangulacion triangulacion;
    Progreso progreso;
    ASSERT_EQ(
        triangulacion.Run(std::vector<CPuntoTIN>(50000, CPuntoTIN(7, 7, 7)), CDibujo<int>(), tin, &progreso, nullptr),
        1);
    EXPECT_EQ(tin.CantidadPuntos(), 1u);
    EXPECT_EQ(tin.CantidadTriangulos(), 0u);
    EXPECT_TRUE(triangulacion.GetInforme().m_bSinTriangulos);
    ASSERT_EQ(progreso.m_Mensajes.size(), 2u);
    EXPECT_EQ(progreso.m_Mensajes[1], "the points lie in line: there are no triangles");
    ASSERT_EQ(triangulacion.Run(std::vector<CPuntoTIN>(), CDibujo<int>(), tin, nullptr, nullptr), 1);
    EXPECT_FALSE(triangulacion.GetInforme().m_bSinTriangulos);
}

TEST(CTriangulacion, AHundredThousandPointsInLineEndAtOnceAndSoDoThoseBesideThem) {
    std::vector<CPuntoTIN> puntos;
    for (int i = 0; i < 100000; ++i)
        puntos.emplace_back(i * 6000 - 300000000, i * 9000 - 450000000, 0);
    CDibujo<int> dibujo;
    dibujo.Inserta(Linea({{puntos.front().x, puntos.front().y}, {puntos.back().x, puntos.back().y}}, false));
    CTIN tin;
    CTriangulacion triangulacion;
    ASSERT_EQ(triangulacion.Run(puntos, dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(tin.CantidadTriangulos(), 0u);
    EXPECT_TRUE(triangulacion.GetInforme().m_bSinTriangulos);
    // With one point beside the line all triangles have it; the line passes through all others.
    puntos.emplace_back(300000000, -300000000, 0);
    ASSERT_EQ(triangulacion.Run(puntos, dibujo, tin, nullptr, nullptr), 1);
    ASSERT_EQ(tin.CantidadTriangulos(), 99999u);
    unsigned seguidos = 0;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
        for (int k = 0; k < 3; ++k)
            seguidos += tin.Fila(i).EsRuptura(k);
    EXPECT_EQ(seguidos, 99999u);
    // Lines from that one to each of the others follow sides that are there.
    CDibujo<int> abanico;
    for (int i = 0; i < 100000; i += 1000) {
        const CPuntoTIN& p = puntos[std::size_t(i)];
        abanico.Inserta(Linea({{300000000, -300000000}, {p.x, p.y}}, false));
    }
    ASSERT_EQ(triangulacion.Run(puntos, abanico, tin, nullptr, nullptr), 1);
    EXPECT_EQ(tin.CantidadTriangulos(), 99999u);
}

TEST(CTriangulacion, PointsAtTheEndsOfTheRangeMakeTriangles) {
    std::vector<CPuntoTIN> puntos;
    for (const int x : {INT_MIN, INT_MIN + 1, 0, INT_MAX - 1, INT_MAX})
        for (const int y : {INT_MIN, INT_MIN + 1, 0, INT_MAX - 1, INT_MAX})
            puntos.emplace_back(x, y, x);
    CTIN tin;
    CDataTriangulacion data;
    data.m_dCotaMinima = INT_MIN;
    data.m_bRecorta = true;
    data.m_dLadoMaximo = 1e10;
    ASSERT_EQ(CTriangulacion(data).Run(
                  puntos, Dibujo({{{INT_MIN, INT_MIN}, {INT_MAX, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}}}),
                  tin, nullptr, nullptr),
              1);
    EXPECT_EQ(tin.CantidadTriangulos(), 32u);
    EXPECT_EQ(DobleArea(tin), Entero{2} * 0xFFFFFFFF * 0xFFFFFFFF);
    ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
}

TEST(CTriangulacion, TheSquaresOfAGridAllHaveTheSameDiagonal) {
    CTIN tin;
    ASSERT_EQ(CTriangulacion().Run(Rejilla(30, 20, 7), CDibujo<int>(), tin, nullptr, nullptr), 1);
    ASSERT_EQ(tin.CantidadTriangulos(), 2u * 29 * 19);
    ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
        for (int k = 0; k < 3; ++k) {
            const CPuntoTIN &a = tin.Vertice(i, k), &b = tin.Vertice(i, (k + 1) % 3);
            if (a.x != b.x && a.y != b.y) {
                EXPECT_LT((a.x - b.x) * (a.y - b.y), 0) << "from the upper left to the lower right";
            }
        }
}

TEST(CTriangulacion, TheOrderOfThePointsDoesNotMatterHoweverManyLieOnCircles) {
    std::mt19937 azar(17);
    for (int vez = 0; vez < 60; ++vez) {
        const int rango = std::array{4, 9, 20, 1000, 1000000000}[std::size_t(vez % 5)];
        std::uniform_int_distribution<int> dado(-rango, rango);
        std::vector<CPuntoTIN> puntos;
        for (int i = 0; i < 20 + 5 * vez; ++i)
            puntos.emplace_back(dado(azar), dado(azar), 0);
        CDibujo<int> lineas;
        for (int i = 0; i < vez % 4; ++i)
            lineas.Inserta(Linea({{dado(azar), dado(azar)}, {dado(azar), dado(azar)}}, false));
        CTIN una, otra;
        ASSERT_EQ(CTriangulacion().Run(puntos, lineas, una, nullptr, nullptr), 1);
        std::ranges::shuffle(puntos, azar);
        ASSERT_EQ(CTriangulacion().Run(puntos, lineas, otra, nullptr, nullptr), 1);
        ASSERT_EQ(Conjunto(una), Conjunto(otra)) << vez;
    }
}

TEST(CTriangulacion, CloudsGivePointsWithWhatAScannerTells) {
    CDibujo<int> dibujo;
    Vertiz::CSetPuntos<int> nube(L"N");
    nube.Inserta(CCoor3D<int>(0, 0, 1, 0x05001234), {.rojo = 10, .verde = 20, .azul = 30});
    nube.Inserta(CCoor3D<int>(9, 0, 2), {});
    nube.Inserta(CCoor3D<int>(0, 9, INT_MIN), {});
    nube.Inserta(CCoor3D<int>(0, 9, 3), {});
    dibujo.Inserta(nube);
    dibujo.Inserta(nube);
    dibujo[1]->SetBorrado(true);
    CTIN tin;
    ASSERT_EQ(Triangula(dibujo, tin), 1);
    ASSERT_EQ(tin.CantidadPuntos(), 3u);
    ASSERT_EQ(tin.CantidadTriangulos(), 1u);
    EXPECT_EQ(tin.Punto(0).GetClase(), 5);
    EXPECT_EQ(tin.Punto(0).GetIntensidad(), Vertiz::CSetPuntos<int>::Intensidad(nube.Punto(0)));
    EXPECT_EQ(tin.Punto(0).GetVerde(), 20);
    EXPECT_FALSE(tin.Fila(0).TieneRuptura()) << "a cloud is no line";
    EXPECT_EQ(tin.Punto(2).z, 3);
}

TEST(CTriangulacion, DeletedPointsAndThoseWithoutHeightStayOut) {
    std::vector<CPuntoTIN> puntos{{0, 0, 1}, {9, 0, 2}, {0, 9, 3}, {9, 9, 4}, {5, 5, INT_MIN}};
    puntos[3].SetNumero(-4);
    CTIN tin;
    ASSERT_EQ(CTriangulacion().Run(puntos, CDibujo<int>(), tin, nullptr, nullptr), 1);
    EXPECT_EQ(tin.CantidadPuntos(), 3u);
    EXPECT_EQ(tin.CantidadTriangulos(), 1u);
}

TEST(CTriangulacion, IslandsAreHolesWithAndWithoutLimits) {
    const auto contorno = [](const wchar_t* codigo, int x, int y, int lado) {
        CLinea<int> linea(codigo);
        for (const auto& [i, j] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 1}})
            linea << CCoor3D<int>(x + i * lado, y + j * lado, 0);
        linea.Cierra();
        return linea;
    };
    CDibujo<int> dibujo;
    dibujo.Inserta(contorno(L"ISLA", 40, 40, 20));
    dibujo.Inserta(contorno(L"ISLA", 90, 40, 20));  // half of it is beyond the limit
    CDataTriangulacion data;
    data.m_bRecorta = true;
    data.m_Islas = Tabla(L"ISLA");
    const std::vector<CPuntoTIN> puntos = Rejilla(16, 11, 10);
    CTIN tin;
    CTriangulacion triangulacion(data);
    ASSERT_EQ(triangulacion.Run(puntos, dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{2 * (150 * 100 - 400 - 400)});
    EXPECT_EQ(triangulacion.GetInforme().m_nFuera, 16u);
    dibujo.Inserta(contorno(L"L", 0, 0, 100));
    ASSERT_EQ(triangulacion.Run(puntos, dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{2 * (100 * 100 - 400 - 200)});
    // An island inside an island is land again; a side of two islands is none's.
    dibujo.Inserta(contorno(L"ISLA", 45, 45, 10));
    dibujo.Inserta(contorno(L"ISLA", 60, 40, 20));
    ASSERT_EQ(triangulacion.Run(puntos, dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{2 * (100 * 100 - 400 - 200 + 100 - 400)});
    data.m_bRecorta = false;
    ASSERT_EQ(CTriangulacion(data).Run(puntos, dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{2 * 150 * 100}) << "only when told";
    data.m_bRecorta = true;
    ASSERT_EQ(CTriangulacion(data).Run(puntos, CDibujo<int>(), tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{2 * 150 * 100}) << "without limits nothing is outside";
}

// A ring of points 10 apart, 4 wide, round a square hole of 60, with one notch of 40 in its outer border.
std::vector<CPuntoTIN> Marco() {
    std::vector<CPuntoTIN> puntos;
    for (const CPuntoTIN& p : Rejilla(15, 15, 10)) {
        const bool hueco = p.x > 40 && p.x < 100 && p.y > 40 && p.y < 100;
        const bool muesca = p.x > 50 && p.x < 90 && p.y < 30;
        if (!hueco && !muesca) puntos.push_back(p);
    }
    return puntos;
}

TEST(CTriangulacion, TheLongestSideTakesTrianglesFromTheOutsideInOrAll) {
    CTIN tin;
    CDataTriangulacion data;
    data.m_dLadoMaximo = 20.0;
    CTriangulacion fuera(data);
    ASSERT_EQ(fuera.Run(Marco(), CDibujo<int>(), tin, nullptr, nullptr), 1);
    // Less what short sides cut off in the corners of the notch and of the hole.
    const Entero todo = 2 * 140 * 140, muesca = 2 * (40 * 30 - 2 * 50), hueco = 2 * (60 * 60 - 4 * 50);
    EXPECT_EQ(DobleArea(tin), todo - muesca);
    EXPECT_GT(fuera.GetInforme().m_nLargos, 2u);
    data.m_bLadoMaximoDentro = true;
    ASSERT_EQ(CTriangulacion(data).Run(Marco(), CDibujo<int>(), tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), todo - muesca - hueco);
    data.m_dLadoMaximo = 14.2;  // the diagonals have 14.14
    ASSERT_EQ(CTriangulacion(data).Run(Rejilla(9, 9, 10), CDibujo<int>(), tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{2 * 80 * 80});
    data.m_dLadoMaximo = 14.1;
    ASSERT_EQ(CTriangulacion(data).Run(Rejilla(9, 9, 10), CDibujo<int>(), tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{0});
    data.m_dLadoMaximo = 10.0;  // just as long is not longer
    ASSERT_EQ(CTriangulacion(data).Run({{0, 0, 0}, {6, 0, 0}, {6, 8, 0}}, CDibujo<int>(), tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{48});
}

TEST(CTriangulacion, TheLongestSideStopsAtLinesAndDoesNotCountThem) {
    CTIN tin;
    CDataTriangulacion data;
    data.m_dLadoMaximo = 20.0;
    CDibujo<int> dibujo;
    dibujo.Inserta(Linea({{50, 0}, {90, 0}}, false));  // across the notch
    const Entero todo = 2 * 140 * 140;
    ASSERT_EQ(CTriangulacion(data).Run(Marco(), dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), todo) << "what lies behind the line stays";
    // Two points 100 from each other, joined by lines, and one between them.
    dibujo = Dibujo({{{0, 0}, {100, 0}, {50, 5}}});
    ASSERT_EQ(CTriangulacion(data).Run({}, dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{500});
    data.m_bLadoMaximoDentro = true;
    ASSERT_EQ(CTriangulacion(data).Run({}, dibujo, tin, nullptr, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{500});
}

}  // namespace
}  // namespace triangulaciones
