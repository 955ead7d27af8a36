// Outlines with holes, breaklines, and what a limit leaves.

#include "MallasPrueba.h"
#include "support/Progreso.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

using namespace mallas;
using Vertiz::CDigiTab;
using Vertiz::CElementoDigiTab;

CDigiTab Tabla(const wchar_t* codigo) {
    CDigiTab tabla;
    tabla.Inserta(CElementoDigiTab(0, codigo, 70, 70, 70, 0, 0, CString(), 1), true);
    return tabla;
}

using Par = std::pair<std::pair<int, int>, std::pair<int, int>>;

Par Segmento(const CCoor3D<int>& a, const CCoor3D<int>& b) {
    return {{a.x, a.y}, {b.x, b.y}};
}

// The directed sides of shown triangles without the same side of another one, by looking at all pairs.
std::set<Par> Bordes(const CTIN& tin) {
    std::set<Par> lados;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
        for (int k = 0; k < 3 && tin.EsVisible(i); ++k)
            lados.insert(Segmento(tin.Vertice(i, k), tin.Vertice(i, (k + 1) % 3)));
    std::set<Par> bordes;
    for (const Par& lado : lados)
        if (!lados.contains({lado.second, lado.first})) bordes.insert(lado);
    return bordes;
}

// The outlines run along all borders, once, and nowhere else, and hold the surface's area.
void EsperaContornos(const CTIN& tin) {
    CDibujo<int> dibujo, fuera, huecos;
    ASSERT_EQ(tin.Limites(dibujo, 0, 1), 1);
    ASSERT_EQ(tin.Limites(fuera, 1, 1), 1);
    ASSERT_EQ(tin.Limites(huecos, 2, 1), 1);
    EXPECT_EQ(fuera.Cantidad() + huecos.Cantidad(), dibujo.Cantidad());
    std::set<Par> quedan = Bordes(tin);
    Entero area = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
        const CLinea<int> linea(*dibujo[i]);
        ASSERT_TRUE(linea.EsCerrada());
        EXPECT_EQ(linea.GetCodigo(), CString(L"LIMITE"));
        area += triangulaciones::DobleArea(linea);
        for (unsigned j = 0; j + 1 < linea.NPuntos(); ++j)
            ASSERT_EQ(quedan.erase(Segmento(linea.Punto(int(j)), linea.Punto(int(j) + 1))), 1u) << i << ", " << j;
    }
    EXPECT_TRUE(quedan.empty());
    EXPECT_TRUE(area == triangulaciones::DobleArea(tin));
    for (unsigned i = 0; i < fuera.Cantidad(); ++i)
        EXPECT_GT(triangulaciones::DobleArea(CLinea<int>(*fuera[i])), 0);
    for (unsigned i = 0; i < huecos.Cantidad(); ++i)
        EXPECT_LT(triangulaciones::DobleArea(CLinea<int>(*huecos[i])), 0);
}

TEST(CTINLimites, ASquareWithAHoleHasTwoOutlines) {
    CTIN tin = Cuadricula(3, 3, 10, [](int x, int y) { return x + y; });
    tin.BorraTriangulo(8), tin.BorraTriangulo(9);  // the square in the middle
    EsperaContornos(tin);
    CDibujo<int> dibujo;
    dibujo.Inserta(CLinea<int>(L"OTRA"));
    ASSERT_EQ(tin.Limites(dibujo, 0, 1), 1);
    ASSERT_EQ(dibujo.Cantidad(), 3u) << "appended";
    EXPECT_EQ(dibujo[1]->NPuntos(), 13u);
    EXPECT_EQ(dibujo[2]->NPuntos(), 5u);
    for (const CCoor3D<int>& p : dibujo[1]->Puntos())
        EXPECT_EQ(p.z, p.x + p.y);
}

TEST(CTINLimites, PartsThatTouchInAPointStayApart) {
    const CTIN tin = Malla({{0, 0, 0}, {10, 0, 0}, {5, 5, 0}, {0, 10, 0}, {10, 10, 0}}, {{1, 2, 3}, {3, 5, 4}});
    CDibujo<int> dibujo;
    ASSERT_EQ(tin.Limites(dibujo, 0, 1), 1);
    EXPECT_EQ(dibujo.Cantidad(), 2u);
    EsperaContornos(tin);
    // A hole that touches the outline in a point is part of it.
    CTIN otra = Cuadricula(3, 3, 10, [](int, int) { return 0; });
    otra.BorraTriangulo(0);
    otra.BorraTriangulo(8), otra.BorraTriangulo(9), otra.BorraTriangulo(1);
    EsperaContornos(otra);
}

TEST(CTINLimites, NothingIsBoundedByNothing) {
    CDibujo<int> dibujo;
    EXPECT_EQ(CTIN().Limites(dibujo, 0, 1), 1);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
    CTIN tin = Cuadricula(1, 1, 10, [](int, int) { return 0; });
    tin.BorraTriangulo(0), tin.BorraTriangulo(1);
    EXPECT_EQ(tin.Limites(dibujo, 0, 1), 1);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
}

TEST(CTINLimites, RandomSurfacesAreBoundedByTheirBorders) {
    std::mt19937 azar(4);
    unsigned huecos = 0;
    for (int vez = 0; vez < 40; ++vez) {
        CTIN tin = Azarosa(azar, 30 + 10 * vez, 100000, 1000);
        std::uniform_int_distribution<int> dado(0, 4);
        for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
            if (dado(azar) == 0) tin.BorraTriangulo(i);
        ASSERT_NO_FATAL_FAILURE(EsperaContornos(tin)) << vez;
        CDibujo<int> dibujo;
        tin.Limites(dibujo, 2, 0);
        huecos += dibujo.Cantidad();
    }
    EXPECT_GT(huecos, 200u);
}

TEST(CTINLimites, NeighboursThatDoNotAgreeAreBorders) {
    CTIN tin = Cuadricula(2, 2, 10, [](int, int) { return 0; });
    CTriangulo t = tin.Triangulo(2);
    t.SetVecino(0, 7), t.SetVecino(1, 0), t.SetVecino(2, 2);
    tin.ModificaTriangulo(t, 2);
    CDibujo<int> dibujo;
    ASSERT_EQ(tin.Limites(dibujo, 0, 0), 1);
    Entero area = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        area += triangulaciones::DobleArea(CLinea<int>(*dibujo[i]));
    EXPECT_EQ(area, Entero{800});
}

// ---- Breaklines ----

// A square with an outline, a hole, and a breakline that forks.
CTIN ConRupturas() {
    CDibujo<int> dibujo;
    dibujo.Inserta(triangulaciones::Linea({{0, 0}, {100, 0}, {100, 100}, {0, 100}}));
    dibujo.Inserta(triangulaciones::Linea({{60, 60}, {80, 60}, {80, 80}, {60, 80}}));
    dibujo.Inserta(triangulaciones::Linea({{10, 10}, {30, 12}, {50, 10}}, false));
    dibujo.Inserta(triangulaciones::Linea({{50, 10}, {70, 30}}, false));
    dibujo.Inserta(triangulaciones::Linea({{50, 10}, {70, 5}}, false));
    CTIN tin;
    EXPECT_EQ(triangulaciones::Triangula(dibujo, tin), 1);
    tin.BorraTriangulosSegunLimite();
    return tin;
}

unsigned Tramos(const CDibujo<int>& dibujo) {
    unsigned tramos = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        tramos += dibujo[i]->NPuntos() - 1;
    return tramos;
}

TEST(CTINRupturas, LinesRunAsFarAsTheyCan) {
    const CTIN tin = ConRupturas();
    EXPECT_TRUE(tin.HayRupturas());
    CDibujo<int> dibujo;
    ASSERT_EQ(tin.DameLineasRuptura(Tabla(L"*"), dibujo, false, true, nullptr, nullptr, true), 1);
    ASSERT_EQ(dibujo.Cantidad(), 3u) << "the fork parts three lines";
    EXPECT_EQ(Tramos(dibujo), 4u);
    for (unsigned i = 0; i < 3; ++i) {
        EXPECT_EQ(dibujo[i]->GetCodigo(), CString(L"RUPTURA"));
        EXPECT_EQ(dibujo[i]->Punto(0).z, 7);
    }
    CDibujo<int> sueltos;
    ASSERT_EQ(tin.DameLineasRuptura(Tabla(L"*"), sueltos, false, true, nullptr, nullptr, false), 1);
    EXPECT_EQ(sueltos.Cantidad(), 4u);
}

TEST(CTINRupturas, LimitsGoAlongApartOrNotAtAll) {
    const CTIN tin = ConRupturas();
    CDibujo<int> todas, sin, bordes;
    ASSERT_EQ(tin.DameLineasRuptura(Tabla(L"*"), todas, false, false, nullptr, nullptr, true), 1);
    EXPECT_EQ(Tramos(todas), 12u);
    EXPECT_EQ(todas.Cantidad(), 5u);
    ASSERT_EQ(tin.DameLineasRuptura(Tabla(L"*"), sin, false, false, nullptr, &bordes, true), 1);
    EXPECT_EQ(Tramos(sin), 4u);
    EXPECT_EQ(Tramos(bordes), 8u);
    ASSERT_EQ(bordes.Cantidad(), 2u);
    EXPECT_TRUE(bordes[0]->EsCerrada() && bordes[1]->EsCerrada());
}

TEST(CTINRupturas, TheirCodeHasToBeInTheTable) {
    CTIN tin = ConRupturas();
    CDibujo<int> dibujo;
    ASSERT_EQ(tin.DameLineasRuptura(Tabla(L"OTRO"), dibujo, false, false, nullptr, nullptr, true), 1);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
    Vertiz::CDataTIN data;
    data.m_CodRupturas = L"OTRO";
    tin.SetData(data);
    ASSERT_EQ(tin.DameLineasRuptura(Tabla(L"OTRO"), dibujo, false, false, nullptr, nullptr, true), 1);
    ASSERT_EQ(dibujo.Cantidad(), 5u);
    EXPECT_EQ(dibujo[0]->GetCodigo(), CString(L"OTRO"));
}

TEST(CTINRupturas, DeletedTrianglesGiveThemOnlyWhenAsked) {
    CTIN tin = Malla({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}, {{1, 2, 3}, {1, 3, 4}});
    for (const unsigned i : {0u, 1u}) {
        CTriangulo t = tin.Triangulo(i);
        t.SetRuptura(i == 0 ? 2 : 0), t.SetRuptura(1);
        tin.ModificaTriangulo(t, i);
    }
    const auto tramos = [&tin](bool bBorrados) {
        CDibujo<int> dibujo;
        tin.DameLineasRuptura(Tabla(L"*"), dibujo, bBorrados, false, nullptr, nullptr, false);
        return dibujo.Cantidad();
    };
    EXPECT_EQ(tramos(false), 3u) << "the diagonal once";
    tin.BorraTriangulo(0);
    EXPECT_EQ(tramos(false), 2u);
    EXPECT_EQ(tramos(true), 3u);
    EXPECT_TRUE(tin.HayRupturas());
    tin.BorraTriangulo(1);
    EXPECT_FALSE(tin.HayRupturas());
    EXPECT_EQ(tramos(false), 0u);
}

TEST(CTINRupturas, TheyCanBeCancelled) {
    const CTIN tin = ConRupturas();
    Progreso progreso(1);
    CDibujo<int> dibujo, bordes;
    EXPECT_EQ(tin.DameLineasRuptura(Tabla(L"*"), dibujo, false, false, &progreso, &bordes, true), 2);
    EXPECT_EQ(dibujo.Cantidad() + bordes.Cantidad(), 0u);
    Progreso entero;
    EXPECT_EQ(tin.DameLineasRuptura(Tabla(L"*"), dibujo, false, false, &entero, nullptr, true), 1);
    EXPECT_EQ(entero.m_Pasos.size(), 1u);
}

}  // namespace
