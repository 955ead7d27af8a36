// Contours against an independent march over the triangles, and what must hold of every set of them.

#include "MallasPrueba.h"
#include "support/Progreso.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <map>
#include <numbers>
#include <set>

namespace {

using namespace mallas;
using Vertiz::CDataCurvas;

CDataCurvas Cada(double equidistancia, double base = 0.0, int maestras = 5) {
    CDataCurvas data;
    data.m_dEquidistancia = equidistancia, data.m_dCotaBase = base, data.m_nMaestras = maestras;
    return data;
}

using Lugar = std::array<int, 3>;
using Pieza = std::pair<Lugar, Lugar>;

Lugar L(const CCoor3D<int>& p) {
    return {p.x, p.y, p.z};
}

// Marches over the triangles: on each side the place where the height is reached, by the side's lower vertex, in whole
// numbers; what lies at the height counts as higher; the piece has the higher ground to its left.
std::multiset<Pieza> Marcha(const CTIN& tin, int cada) {
    std::multiset<Pieza> piezas;
    for (unsigned t = 0; t < tin.CantidadTriangulos(); ++t) {
        if (!tin.EsVisible(t)) continue;
        const CTriangulo tri = tin.Triangulo(t);
        for (long cota = long(tri.GetMinZ() / cada - 1) * cada; cota <= tri.GetMaxZ(); cota += cada) {
            std::vector<Lugar> lugares;
            for (int k = 0; k < 3; ++k) {
                const CPuntoTIN *a = tri.Punto(k), *b = tri.Punto((k + 1) % 3);
                if ((a->z >= cota) == (b->z >= cota)) continue;
                if (a->z > b->z) std::swap(a, b);
                const Entero parte = cota - a->z, alto = Entero{b->z} - a->z;
                lugares.push_back({Entre(a->x, b->x, parte, alto), Entre(a->y, b->y, parte, alto), int(cota)});
            }
            if (lugares.size() != 2 || lugares[0] == lugares[1]) continue;
            // Leaves by the side that rises, going round the triangle: the other order has it on the right.
            int sube = 0;
            for (int k = 0, n = 0; k < 3; ++k) {
                const bool desde = tri.Punto(k)->z >= cota, hasta = tri.Punto((k + 1) % 3)->z >= cota;
                if (desde != hasta && hasta) sube = n;
                n += desde != hasta;
            }
            if (sube == 0) std::swap(lugares[0], lugares[1]);
            piezas.emplace(lugares[0], lugares[1]);
        }
    }
    return piezas;
}

std::multiset<Pieza> PorTriangulos(const CTIN& tin) {
    std::multiset<Pieza> piezas;
    CDibujo<int> dibujo;
    for (unsigned t = 0; t < tin.CantidadTriangulos(); ++t) {
        tin.DameCurvasTriangulo(t, dibujo, L"X");
        for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
            EXPECT_EQ(dibujo[i]->NPuntos(), 2u);
            piezas.emplace(L(dibujo[i]->Punto(0)), L(dibujo[i]->Punto(1)));
        }
    }
    return piezas;
}

std::multiset<Pieza> PorCurvas(const CDibujo<int>& dibujo) {
    std::multiset<Pieza> piezas;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        for (unsigned j = 0; j + 1 < dibujo[i]->NPuntos(); ++j)
            piezas.emplace(L(dibujo[i]->Punto(int(j))), L(dibujo[i]->Punto(int(j) + 1)));
    return piezas;
}

TEST(CTINCurvas, WithoutDataThereAreNone) {
    CTIN tin = Cuadricula(2, 2, 10, [](int x, int) { return x; });
    EXPECT_FALSE(tin.HayCurvas());
    EXPECT_TRUE(tin.GetCodigoCurvas().IsEmpty());
    EXPECT_EQ(tin.GetDataCurvas(), nullptr);
    CDibujo<int> dibujo;
    dibujo.Inserta(CLinea<int>(L"A"));
    EXPECT_EQ(tin.DameCurvas(dibujo, nullptr), 1);
    EXPECT_EQ(dibujo.Cantidad(), 1u);
    tin.DameCurvasTriangulo(0, dibujo, L"X");
    EXPECT_EQ(dibujo.Cantidad(), 0u) << "replaced";
    ASSERT_EQ(tin.GeneraCurvas(Cada(5)), 1);
    EXPECT_TRUE(tin.HayCurvas());
    EXPECT_EQ(tin.GetCodigoCurvas(), CString(L"CURVA"));
    tin.DameCurvasTriangulo(99, dibujo, L"X");
    EXPECT_EQ(dibujo.Cantidad(), 0u);
    tin.BorraCurvas();
    EXPECT_FALSE(tin.HayCurvas());
}

TEST(CTINCurvas, IntervalsThatCannotBeAreRefused) {
    CTIN tin = Cuadricula(
        2, 2, 10, [](int x, int) { return x * 100000000; }, CDataSemilla(1));
    ASSERT_EQ(tin.GeneraCurvas(Cada(1e6)), 1);
    for (const double mala : {0.0, -1.0, 0.05, double(NAN), double(INFINITY), 1e300})
        EXPECT_EQ(tin.GeneraCurvas(Cada(mala)), 0) << mala;
    EXPECT_EQ(tin.GeneraCurvas(Cada(1, NAN)), 0);
    EXPECT_EQ(tin.GeneraCurvas(Cada(1, 1e300)), 0);
    EXPECT_EQ(tin.GeneraCurvas(Cada(0.1)), 0) << "far too many pieces";
    EXPECT_EQ(tin.GetDataCurvas()->m_dEquidistancia, 1e6) << "those before stay";
}

TEST(CTINCurvas, MajorOnesHaveTheirCode) {
    CTIN tin = Cuadricula(
        1, 1, 100, [](int x, int) { return x - 50; }, CDataSemilla(1));
    CDataCurvas data = Cada(1.0, 0.5, 3);
    data.m_CodigoMaestra = L"M", data.m_Codigo = L"C";
    ASSERT_EQ(tin.GeneraCurvas(data), 1);
    CDibujo<int> dibujo;
    ASSERT_EQ(tin.DameCurvas(dibujo, nullptr), 1);
    std::map<int, CString> codigos;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        codigos[dibujo[i]->Punto(0).z] = dibujo[i]->GetCodigo();
    ASSERT_EQ(codigos.size(), 10u);
    for (const auto& [z, codigo] : codigos)
        EXPECT_EQ(codigo, CString((z - 5) % 30 == 0 ? L"M" : L"C")) << z;
    tin.DameCurvasTriangulo(0, dibujo, L"OTRO");
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        EXPECT_EQ(dibujo[i]->GetCodigo(), CString((dibujo[i]->Punto(0).z - 5) % 30 == 0 ? L"M" : L"OTRO"));
    data.m_nMaestras = 0;
    ASSERT_EQ(tin.GeneraCurvas(data), 1);
    dibujo.Clear();
    tin.DameCurvas(dibujo, nullptr);
    EXPECT_EQ(dibujo.Cantidad(), 10u);
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        EXPECT_EQ(dibujo[i]->GetCodigo(), CString(L"C"));
}

TEST(CTINCurvas, HeightsAreRoundedOneByOne) {
    // Every third of a metre in centimetres.
    CTIN tin = Cuadricula(
        1, 1, 10000, [](int x, int) { return x; }, CDataSemilla(2));
    ASSERT_EQ(tin.GeneraCurvas(Cada(1.0 / 3.0)), 1);
    CDibujo<int> dibujo;
    tin.DameCurvas(dibujo, nullptr);
    std::set<int> cotas;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        cotas.insert(dibujo[i]->Punto(0).z);
    ASSERT_EQ(cotas.size(), 300u);
    int n = 1;
    for (const int cota : cotas)
        EXPECT_EQ(cota, int(std::round(n++ * 100.0 / 3.0)));
}

TEST(CTINCurvas, AConesContoursAreClosedAndTurnRoundTheTop) {
    CTIN tin = Cuadricula(40, 40, 10, [](int x, int y) { return 1000 - 4 * std::hypot(x - 200, y - 200); });
    ASSERT_EQ(tin.GeneraCurvas(Cada(100)), 1);
    CDibujo<int> dibujo;
    ASSERT_EQ(tin.DameCurvas(dibujo, nullptr), 1);
    int cerradas = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
        const CLinea<int> linea(*dibujo[i]);
        const int z = linea.Punto(0).z;
        if (z <= 200) continue;  // cut by the border
        ++cerradas;
        ASSERT_TRUE(linea.EsCerrada()) << z;
        const double radio = (1000 - z) / 4.0, area = double(triangulaciones::DobleArea(linea)) / 2;
        EXPECT_NEAR(area / (std::numbers::pi * radio * radio), 1.0, 0.2) << "counterclockwise: the top is to the left";
    }
    EXPECT_EQ(cerradas, 7) << "300 to 900; the top itself is a point";
}

TEST(CTINCurvas, APlateauAtAContoursHeightIsBoundedByOne) {
    // Level squares in the middle of a slope that falls away on all sides, and a level pit.
    for (const int centro : {100, -100}) {
        CTIN tin = Cuadricula(6, 6, 10,
                              [centro](int x, int y) { return x >= 20 && x <= 40 && y >= 20 && y <= 40 ? centro : 0; });
        ASSERT_EQ(tin.GeneraCurvas(Cada(100)), 1);
        CDibujo<int> dibujo;
        ASSERT_EQ(tin.DameCurvas(dibujo, nullptr), 1);
        EXPECT_EQ(PorTriangulos(tin), Marcha(tin, 100));
        if (centro > 0) {
            ASSERT_EQ(dibujo.Cantidad(), 1u);
            const CLinea<int> linea(*dibujo[0]);
            EXPECT_TRUE(linea.EsCerrada());
            EXPECT_EQ(triangulaciones::DobleArea(linea), Entero{800}) << "the plateau's own outline";
        } else {
            // All round lies at 0: the ground falls below it along the pit's rim. The pit's floor isn't above itself.
            ASSERT_EQ(dibujo.Cantidad(), 1u);
            EXPECT_EQ(dibujo[0]->Punto(0).z, 0);
            EXPECT_LT(triangulaciones::DobleArea(CLinea<int>(*dibujo[0])), 0) << "the pit lies to the right";
        }
    }
    CTIN llano = Cuadricula(3, 3, 10, [](int, int) { return 100; });
    ASSERT_EQ(llano.GeneraCurvas(Cada(100)), 1);
    EXPECT_TRUE(PorTriangulos(llano).empty());
}

TEST(CTINCurvas, ContoursThroughVerticesGoOn) {
    // A plane whose contours pass through all vertices of the grid.
    CTIN tin = Cuadricula(5, 5, 10, [](int x, int y) { return x + y; });
    ASSERT_EQ(tin.GeneraCurvas(Cada(10)), 1);
    CDibujo<int> dibujo;
    ASSERT_EQ(tin.DameCurvas(dibujo, nullptr), 1);
    EXPECT_EQ(dibujo.Cantidad(), 9u) << "10 to 90; 100 is a corner, and 0 has nothing below";
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
        const CLinea<int> linea(*dibujo[i]);
        const int z = linea.Punto(0).z;
        EXPECT_NEAR(linea.Longitud(0), std::sqrt(2.0) * std::min(z, 100 - z), 1e-9);
        EXPECT_FALSE(linea.EsCerrada());
    }
    EXPECT_EQ(PorCurvas(dibujo), Marcha(tin, 10));
}

TEST(CTINCurvas, RandomSurfacesAgreeWithTheMarchAndContoursJoin) {
    std::mt19937 azar(9);
    std::size_t piezas = 0, cerradas = 0, abiertas = 0;
    for (int vez = 0; vez < 24; ++vez) {
        const int rango = vez % 2 == 0 ? 30 : 1000000, alto = vez % 4 < 2 ? 6 : 1000, cada = vez % 4 < 2 ? 2 : 37;
        CTIN tin = Azarosa(azar, 30 + vez * 10, rango, alto);
        std::uniform_int_distribution<int> dado(0, 9);
        for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
            if (vez % 3 == 0 && dado(azar) == 0) tin.BorraTriangulo(i);
        ASSERT_EQ(tin.GeneraCurvas(Cada(cada)), 1);
        const std::multiset<Pieza> esperadas = Marcha(tin, cada);
        ASSERT_EQ(PorTriangulos(tin), esperadas) << vez;
        CDibujo<int> dibujo;
        ASSERT_EQ(tin.DameCurvas(dibujo, nullptr), 1);
        ASSERT_EQ(PorCurvas(dibujo), esperadas) << vez;
        piezas += esperadas.size();
        std::vector<std::pair<CCoor3D<int>, CCoor3D<int>>> bordes;
        for (unsigned t = 0; t < tin.CantidadTriangulos(); ++t)
            for (unsigned k = 0; k < 3 && tin.EsVisible(t); ++k)
                if (tin.LadoVecino(t, k) < 0)
                    bordes.emplace_back(tin.Vertice(t, int(k)), tin.Vertice(t, int((k + 1) % 3)));
        // What is open ends at a border of the surface.
        for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
            if (L(dibujo[i]->Punto(0)) == L(dibujo[i]->Punto(int(dibujo[i]->NPuntos()) - 1))) {
                ++cerradas;
                continue;
            }
            ++abiertas;
            for (const int j : {0, int(dibujo[i]->NPuntos()) - 1}) {
                const CCoor3D<int>& p = dibujo[i]->Punto(j);
                const bool bBorde = std::ranges::any_of(
                    bordes, [&p](const auto& lado) { return p.DistanciaARecta(lado.first, lado.second) < 1.0; });
                ASSERT_TRUE(bBorde) << vez << ", contour " << i;
            }
        }
    }
    EXPECT_GT(piezas, 8000u);
    EXPECT_GT(cerradas, 400u);
    EXPECT_GT(abiertas, 200u);
}

TEST(CTINCurvas, HeightsAtTheEndsOfTheRangeAreReached) {
    CTIN tin = Malla({{0, 0, INT_MIN}, {INT_MAX, 0, INT_MAX}, {0, INT_MAX, INT_MAX}}, {{1, 2, 3}});
    ASSERT_EQ(tin.GeneraCurvas(Cada(1e9)), 1);
    CDibujo<int> dibujo;
    tin.DameCurvasTriangulo(0, dibujo, L"X");
    ASSERT_EQ(dibujo.Cantidad(), 5u);
    EXPECT_EQ(dibujo[0]->Punto(0).z, -2000000000);
    EXPECT_EQ(dibujo[4]->Punto(1).z, 2000000000);
}

TEST(CTINCurvas, TheyCanBeCancelled) {
    CTIN tin = Cuadricula(5, 5, 10, [](int x, int) { return x; });
    ASSERT_EQ(tin.GeneraCurvas(Cada(10)), 1);
    Progreso progreso(1);
    CDibujo<int> dibujo;
    EXPECT_EQ(tin.DameCurvas(dibujo, &progreso), 2);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
}

}  // namespace
