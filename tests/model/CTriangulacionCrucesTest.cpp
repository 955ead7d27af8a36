// Lines that cross: what takes their place stays close to them, misses nothing and doesn't depend on their order.

#include "Triangulaciones.h"
#include "model/Delaunay.h"
#include "support/Progreso.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <random>
#include <set>

namespace triangulaciones {
namespace {

using Vertiz::CDataTriangulacion;
using Vertiz::CInformeTriangulacion;
using Vertiz::CTriangulacion;
using Plano = std::pair<int, int>;

CLinea<int> Segmento(const CCoor3D<int>& a, const CCoor3D<int>& b) {
    CLinea<int> linea(L"L");
    linea << a << b;
    return linea;
}

// The segment meets the square of one unit round p, border included: the boxes overlap, and the square's corners don't
// all lie on one side. In doubled coordinates from p.
bool EsVecino(const CCoor3D<int>& a, const CCoor3D<int>& b, const Plano& p) {
    const Entero ax = 2 * (Entero{a.x} - p.first), ay = 2 * (Entero{a.y} - p.second);
    const Entero bx = 2 * (Entero{b.x} - p.first), by = 2 * (Entero{b.y} - p.second);
    if (std::min(ax, bx) > 1 || std::max(ax, bx) < -1 || std::min(ay, by) > 1 || std::max(ay, by) < -1) return false;
    int izquierda = 0, derecha = 0;
    for (const int x : {-1, 1})
        for (const int y : {-1, 1}) {
            const Entero lado = (bx - ax) * (y - ay) - (by - ay) * (x - ax);
            izquierda += lado > 0, derecha += lado < 0;
        }
    return izquierda < 4 && derecha < 4;
}

std::map<Plano, std::set<Plano>> Fijos(const CTIN& tin) {
    std::map<Plano, std::set<Plano>> fijos;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
        for (int k = 0; k < 3; ++k) {
            const auto& t = tin.Triangulo(i);
            if (!t.EsRuptura(k)) continue;
            const auto *a = t.Punto(k), *b = t.Punto((k + 1) % 3);
            fijos[{a->x, a->y}].emplace(b->x, b->y);
            fijos[{b->x, b->y}].emplace(a->x, a->y);
        }
    return fijos;
}

// Each segment is a chain of followed sides that never goes back, of points within half a unit of it; and no side is
// followed that lies beside no segment.
void EsperaSeguidaDeCerca(const CTIN& tin, const CDibujo<int>& dibujo) {
    const auto fijos = Fijos(tin);
    std::set<std::pair<Plano, Plano>> vistos;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        for (unsigned j = 0; j + 1 < dibujo[i]->NPuntos(); ++j) {
            const CCoor3D<int>&a = dibujo[i]->Punto(int(j)), &b = dibujo[i]->Punto(int(j) + 1);
            const auto avance = [&](const Plano& p) {
                return (Entero{b.x} - a.x) * (Entero{p.first} - a.x) + (Entero{b.y} - a.y) * (Entero{p.second} - a.y);
            };
            const Plano final{b.x, b.y};
            std::set<Plano> llega{{a.x, a.y}};
            std::vector<Plano> pendientes{{a.x, a.y}};
            while (!pendientes.empty()) {
                const Plano p = pendientes.back();
                pendientes.pop_back();
                const auto lados = fijos.find(p);
                if (lados == fijos.end()) continue;
                for (const Plano& q : lados->second) {
                    if (avance(q) <= avance(p) || !EsVecino(a, b, q)) continue;
                    vistos.insert({p, q}), vistos.insert({q, p});
                    if (llega.insert(q).second) pendientes.push_back(q);
                }
            }
            ASSERT_TRUE(llega.contains(final)) << "line " << i << " is lost";
        }
    for (const auto& [p, lados] : fijos)
        for (const Plano& q : lados)
            ASSERT_TRUE(vistos.contains({p, q})) << p.first << ", " << p.second << " is followed for no line";
}

CDibujo<int> Sopa(std::mt19937& azar, int cuantos, const std::function<int()>& dado) {
    CDibujo<int> dibujo;
    for (int i = 0; i < cuantos; ++i) {
        const int x = dado(), y = dado(), x2 = dado(), y2 = dado();
        if (azar() % 5 == 0)
            dibujo.Inserta(Linea({{x, y}}, false));
        else
            dibujo.Inserta(Linea({{x, y}, {x2, y2}}, azar() % 7 == 0));
    }
    return dibujo;
}

void EsperaResuelta(const CDibujo<int>& dibujo) {
    CTIN tin;
    CTriangulacion triangulacion;
    ASSERT_EQ(triangulacion.Run(dibujo, tin, 0, nullptr, 0.1, nullptr), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
    if (tin.CantidadTriangulos() == 0) return;
    ASSERT_NO_FATAL_FAILURE(EsperaSeguidaDeCerca(tin, dibujo));
    // Nothing is added but what the report tells.
    std::set<Plano> lugares, cruces;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        for (const auto& p : dibujo[i]->Puntos())
            lugares.emplace(p.x, p.y);
    for (const auto& p : triangulacion.GetInforme().m_Cruces)
        cruces.emplace(p.x, p.y);
    EXPECT_EQ(cruces.size(), triangulacion.GetInforme().m_Cruces.size());
    lugares.merge(cruces);
    EXPECT_EQ(tin.CantidadPuntos(), lugares.size());
    // The other way round.
    CDibujo<int> vuelta;
    for (unsigned i = dibujo.Cantidad(); i-- > 0;) {
        CLinea<int> linea(*dibujo[i]);
        linea.Voltea();
        vuelta.Inserta(linea);
    }
    CTIN otra;
    ASSERT_EQ(Triangula(vuelta, otra), 1);
    EXPECT_EQ(Conjunto(tin), Conjunto(otra));
    if (triangulacion.GetInforme().m_Cruces.empty()) {
        ASSERT_NO_FATAL_FAILURE(EsperaSeguida(tin, dibujo));
    }
}

TEST(CTriangulacion, LinesThatCrossGetAPointOfTheirMeanHeight) {
    CDibujo<int> dibujo, cruces;
    dibujo.Inserta(Segmento({0, 0, 10}, {10, 10, 30}));
    dibujo.Inserta(Segmento({0, 10, 100}, {10, 0, 200}));
    CTIN tin;
    CTriangulacion triangulacion;
    ASSERT_EQ(triangulacion.Run(dibujo, tin, 0, nullptr, 0.1, &cruces), 1);
    ASSERT_EQ(tin.CantidadPuntos(), 5u);
    EXPECT_EQ(tin.CantidadTriangulos(), 4u);
    EXPECT_EQ(tin.Punto(4), CCoor3D<int>(5, 5, (20 + 150) / 2));
    ASSERT_EQ(cruces.Cantidad(), 1u);
    EXPECT_EQ(cruces[0]->Punto(0), tin.Punto(4));
    EXPECT_EQ(cruces[0]->GetCodigo(), CString(L"CRUCE"));
    ASSERT_EQ(triangulacion.GetInforme().m_Cruces.size(), 1u);
    ASSERT_NO_FATAL_FAILURE(EsperaSeguida(tin, dibujo));
}

TEST(CTriangulacion, ACrossingThatRoundsToAPointTakesThatPoint) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Segmento({0, 0, 10}, {11, 10, 10}));
    dibujo.Inserta(Segmento({0, 10, 20}, {11, 0, 20}));
    dibujo.Inserta(Linea({{6, 5}}, false));  // they cross at 5.5, 5
    CTIN tin;
    CTriangulacion triangulacion;
    ASSERT_EQ(triangulacion.Run(dibujo, tin, 0, nullptr, 0.1, nullptr), 1);
    EXPECT_EQ(tin.CantidadPuntos(), 5u);
    EXPECT_EQ(tin.Punto(4), CCoor3D<int>(6, 5, 7));
    EXPECT_EQ(Fijos(tin)[Plano(6, 5)].size(), 4u);
    ASSERT_EQ(triangulacion.GetInforme().m_Cruces.size(), 1u);
    EXPECT_EQ(triangulacion.GetInforme().m_Cruces[0], CCoor3D<int>(6, 5, 7));
}

TEST(CTriangulacion, ManyLinesThroughOneSpotShareOnePointOfTheMeanOfAll) {
    CDibujo<int> dibujo;
    for (int i = 0; i < 10; ++i)
        dibujo.Inserta(Segmento({-1000, 100 * i - 450, 10 * i}, {1000, 450 - 100 * i, 10 * i}));
    CTIN tin;
    ASSERT_EQ(Triangula(dibujo, tin), 1);
    ASSERT_EQ(tin.CantidadPuntos(), 21u);
    EXPECT_EQ(tin.Punto(20), CCoor3D<int>(0, 0, 45));
    EXPECT_EQ(Fijos(tin)[Plano(0, 0)].size(), 20u);
}

TEST(CTriangulacion, ALineThatIsBentPassesThroughPointsBesideItAndOthersStayStraight) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Linea({{0, 0}, {1000, 1}}, false));     // passes 250, 0 and 750, 1 by a quarter of a unit
    dibujo.Inserta(Linea({{250, 0}, {250, -50}}, false));  // from the one downwards,
    dibujo.Inserta(Linea({{750, 1}, {750, 50}}, false));   // from the other upwards
    CTIN recta, doblada;
    ASSERT_EQ(Triangula(dibujo, recta), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaSeguida(recta, dibujo));
    EXPECT_EQ(Fijos(recta)[Plano(0, 0)], (std::set<Plano>{{1000, 1}}));
    dibujo.Inserta(Linea({{100, -50}, {100, 50}}, false));
    dibujo.Inserta(Linea({{0, 10}, {1000, 11}}, false));
    ASSERT_EQ(Triangula(dibujo, doblada), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaSeguidaDeCerca(doblada, dibujo));
    auto fijos = Fijos(doblada);
    EXPECT_EQ(fijos[Plano(0, 0)], (std::set<Plano>{{100, 0}}));
    EXPECT_EQ(fijos[Plano(250, 0)], (std::set<Plano>{{100, 0}, {250, -50}, {750, 1}}));
    EXPECT_EQ(fijos[Plano(0, 10)], (std::set<Plano>{{100, 10}}));
}

TEST(CTriangulacion, RandomLinesThatCrossAreFollowedWithinHalfAUnit) {
    std::mt19937 azar(31);
    for (int vez = 0; vez < 500; ++vez) {
        const int rango = vez % 3 == 0 ? 3 + vez % 7 : vez % 3 == 1 ? 40 : 2000;
        std::uniform_int_distribution<int> dado(-rango, rango);
        ASSERT_NO_FATAL_FAILURE(EsperaResuelta(Sopa(azar, 3 + vez % 40, [&] { return dado(azar); }))) << vez;
    }
}

TEST(CTriangulacion, NearlyParallelLinesAcrossTheWholeRangeAreUntangled) {
    std::mt19937 azar(32);
    std::uniform_int_distribution<int> poco(-2, 2), todo(INT_MIN, INT_MAX);
    for (int vez = 0; vez < 60; ++vez) {
        CDibujo<int> dibujo;
        for (int i = 0; i < 3 + vez % 12; ++i) {
            const int x = vez % 2 == 0 ? 0 : poco(azar);
            dibujo.Inserta(Linea({{INT_MIN + 2 + x, poco(azar)}, {INT_MAX - 2 + x, poco(azar)}}, false));
            if (i % 3 == 0) dibujo.Inserta(Linea({{todo(azar), poco(azar)}}, false));
        }
        ASSERT_NO_FATAL_FAILURE(EsperaResuelta(dibujo)) << vez;
        dibujo.Clear();
        for (int i = 0; i < 3 + vez % 12; ++i)
            dibujo.Inserta(Linea({{todo(azar), todo(azar)}, {todo(azar), todo(azar)}}, false));
        ASSERT_NO_FATAL_FAILURE(EsperaResuelta(dibujo)) << vez;
    }
    EsperaResuelta(Dibujo({{{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}}}));
}

TEST(CTriangulacion, DenseBundlesOfShortLinesAreUntangled) {
    // Steps of one unit and lines between the steps: every crossing lies close to many others.
    std::mt19937 azar(33);
    for (int vez = 0; vez < 30; ++vez) {
        std::uniform_int_distribution<int> dado(0, 12), largo(-20, 20);
        CDibujo<int> dibujo;
        for (int i = 0; i < 80; ++i) {
            const int x = dado(azar), y = dado(azar);
            dibujo.Inserta(Linea({{x, y}, {x + largo(azar), y + largo(azar)}}, false));
        }
        ASSERT_NO_FATAL_FAILURE(EsperaResuelta(dibujo)) << vez;
    }
}

TEST(CTriangulacion, AnOutlineThatCrossesItselfBoundsWhatTheEvenOddRuleSays) {
    CTIN tin;
    CDataTriangulacion data;
    data.m_bRecorta = true;
    CTriangulacion triangulacion(data);
    ASSERT_EQ(triangulacion.Run(Dibujo({{{0, 0}, {20, 20}, {20, 0}, {0, 20}}}), tin, 0, nullptr, 0.1, nullptr), 1);
    EXPECT_EQ(DobleArea(tin), Entero{400});
    EXPECT_EQ(triangulacion.GetInforme().m_nFuera, 2u);
    // Two that overlap: what both surround is outside.
    ASSERT_EQ(
        triangulacion.Run(Dibujo({{{0, 0}, {20, 0}, {20, 20}, {0, 20}}, {{10, 10}, {30, 10}, {30, 30}, {10, 30}}}), tin,
                          0, nullptr, 0.1, nullptr),
        1);
    EXPECT_EQ(DobleArea(tin), Entero{2 * (400 + 400 - 200)});
}

TEST(CTriangulacion, AGridOfLinesCrossesEverywhere) {
    constexpr int n = 60;
    CDibujo<int> dibujo;
    for (int i = 0; i < n; ++i) {
        dibujo.Inserta(Linea({{100 * i, -50}, {100 * i, 100 * n}}, false));
        dibujo.Inserta(Linea({{-50, 100 * i}, {100 * n, 100 * i}}, false));
    }
    CTIN tin;
    CTriangulacion triangulacion;
    ASSERT_EQ(triangulacion.Run(dibujo, tin, 0, nullptr, 0.1, nullptr), 1);
    EXPECT_EQ(triangulacion.GetInforme().m_Cruces.size(), std::size_t(n * n));
    EXPECT_EQ(tin.CantidadPuntos(), unsigned(n * n + 4 * n));
    ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
    ASSERT_NO_FATAL_FAILURE(EsperaSeguida(tin, dibujo));
    ASSERT_EQ(TriangulaSinCruces(dibujo, tin), 0);
}

TEST(CTriangulacion, OfASideThatIsRefusedNoPieceStays) {
    using namespace Vertiz::geometria;
    const std::vector<CDelaunay::CLugar> lugares{{0, 0}, {3, 0}, {10, 0}, {6, -5}, {6, 5}, {-4, 7}};
    CDelaunay delaunay(lugares);
    ASSERT_TRUE(delaunay.Triangula([](int) { return true; }));
    ASSERT_TRUE(delaunay.InsertaLado(3, 4, 0));
    ASSERT_FALSE(delaunay.InsertaLado(0, 2, LADO_LIMITE)) << "past 3, 0 it crosses the first one";
    ASSERT_FALSE(delaunay.InsertaLado(2, 0, LADO_LIMITE));
    int fijos = 0;
    for (int t = 0; t < delaunay.Cantidad(); ++t)
        for (int k = 0; k < 3; ++k)
            fijos += delaunay.Marcas(t, k) != 0;
    EXPECT_EQ(fijos, 2) << "the first one, from either side";
    std::vector<CDelaunay::CLado> lados;
    delaunay.Cruzados(0, 2, lados);
    EXPECT_EQ(lados.size(), 1u);
}

TEST(CTriangulacion, ItCanBeCancelledAtAnyStepAmongCrossings) {
    std::mt19937 azar(5);
    std::uniform_int_distribution<int> dado(-1000, 1000);
    const CDibujo<int> dibujo = Sopa(azar, 300, [&] { return dado(azar); });
    CTIN tin;
    Progreso entero;
    ASSERT_EQ(CTriangulacion().Run(dibujo, tin, 0, &entero, 0.1, nullptr), 1);
    const int pasos = int(entero.m_Pasos.size());
    ASSERT_GT(pasos, 5);
    for (int i = 1; i <= pasos; ++i) {
        Progreso cancela(i);
        CTriangulacion triangulacion;
        ASSERT_EQ(triangulacion.Run(dibujo, tin, 0, &cancela, 0.1, nullptr), 2) << i;
        EXPECT_EQ(int(cancela.m_Pasos.size()), i);
        EXPECT_EQ(tin.CantidadPuntos(), 0u);
        EXPECT_FALSE(triangulacion.GetInforme().m_bDemasiadosCruces);
    }
}

}  // namespace
}  // namespace triangulaciones
