// Triangulating drawings: against what must hold of every triangulation, and against outlines whose area is known.

#include "Triangulaciones.h"
#include "model/Predicados.h"
#include "support/Progreso.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <numbers>
#include <random>

namespace triangulaciones {
namespace {

using Puntos = std::vector<std::pair<int, int>>;

// Triangulates outlines, cuts off what is outside, and expects twice the area given.
void EsperaArea(const CDibujo<int>& dibujo, Entero dobleArea) {
    CTIN tin;
    ASSERT_EQ(Triangula(dibujo, tin), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
    ASSERT_NO_FATAL_FAILURE(EsperaSeguida(tin, dibujo));
    const unsigned quedan = tin.BorraTriangulosSegunLimite();
    EXPECT_TRUE(DobleArea(tin) == dobleArea) << double(DobleArea(tin)) << ", not " << double(dobleArea);
    unsigned vivos = 0;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
        vivos += !tin.Triangulo(i).EsBorrado();
    EXPECT_EQ(quedan, vivos);
}

CDibujo<int> Sueltos(const Puntos& puntos) {
    CDibujo<int> dibujo;
    for (const auto& p : puntos)
        dibujo.Inserta(Linea({p}, false));
    return dibujo;
}

// The area that a hull's corners enclose, by the monotone chain.
Entero DobleAreaCasco(Puntos puntos) {
    std::ranges::sort(puntos);
    std::vector<CCoor3D<int>> casco;
    for (int vuelta = 0; vuelta < 2; ++vuelta) {
        const std::size_t base = casco.size();
        for (const auto& [x, y] : puntos) {
            const CCoor3D<int> p(x, y, 0);
            while (casco.size() >= base + 2 && Cruz(casco[casco.size() - 2], casco.back(), p) <= 0)
                casco.pop_back();
            casco.push_back(p);
        }
        casco.pop_back();
        std::ranges::reverse(puntos);
    }
    CLinea<int> linea;
    for (const auto& p : casco)
        linea << p;
    return DobleArea(linea);
}

TEST(Predicados, TheCircleIsToldExactlyOnTheWholeRangeOfTheIntegers) {
    std::mt19937 azar(6);
    std::uniform_int_distribution<int> todo(INT_MIN, INT_MAX), poco(-3, 3);
    std::array<int, 3> veces{};
    for (int i = 0; i < 30000; ++i) {
        // Corners of a rectangle lie on one circle; some of them are moved a little, or the last one far away.
        const int x = todo(azar), y = todo(azar), x2 = todo(azar), y2 = todo(azar);
        const auto mueve = [&](int v) {
            return std::clamp(v, INT_MIN + 3, INT_MAX - 3) + (i % 3 == 0 ? 0 : poco(azar));
        };
        CCoor3D<int> a(mueve(x), mueve(y), 0), b(mueve(x2), mueve(y), 0), c(mueve(x2), mueve(y2), 0);
        const CCoor3D<int> d =
            i % 5 == 0 ? CCoor3D<int>(todo(azar), todo(azar), 0) : CCoor3D<int>(mueve(x), mueve(y2), 0);
        if (Cruz(a, b, c) < 0) std::swap(a, b);
        if (Cruz(a, b, c) == 0) continue;
        const int dentro = DentroDelCirculo(a, b, c, d) ? 1 : DentroDelCirculo(b, a, c, d) ? -1 : 0;
        ASSERT_EQ(Vertiz::predicados::EnCirculo(a, b, c, d), dentro) << i;
        ++veces[std::size_t(dentro + 1)];
    }
    for (const int n : veces)
        EXPECT_GT(n, 3000);
}

TEST(CTriangulacion, ASquareIsTwoTrianglesThatKnowEachOther) {
    CTIN tin;
    ASSERT_EQ(Triangula(Dibujo({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}}), tin), 1);
    EXPECT_EQ(tin.CantidadPuntos(), 4u);
    ASSERT_EQ(tin.CantidadTriangulos(), 2u);
    ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
    EXPECT_EQ(tin.Punto(0), CCoor3D<int>(0, 0, 7));
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(tin.Punto(i).GetNumero(), int(i) + 1);
    int propios = 0, ajenos = 0;
    for (unsigned i = 0; i < 2; ++i)
        for (int k = 0; k < 3; ++k) {
            const Vertiz::CTriangulo& t = tin.Triangulo(i);
            EXPECT_EQ(t.EsLimite(k), t.Vecino(k) < 0);
            EXPECT_EQ(t.EsRuptura(k), t.Vecino(k) < 0);
            (t.Vecino(k) < 0 ? propios : ajenos) += 1;
        }
    EXPECT_EQ(propios, 4);
    EXPECT_EQ(ajenos, 2);
    EXPECT_EQ(tin.BorraTriangulosSegunLimite(), 2u);
}

TEST(CTriangulacion, TrianglesAreGivenAsClosedLinesCounterclockwise) {
    CDibujo<int> dibujo = Dibujo({{{0, 0}, {10, 0}, {10, 10}, {6, 4}}}), triangulos;
    CTIN tin;
    ASSERT_EQ(Triangula(dibujo, tin), 1);
    tin.BorraTriangulosSegunLimite();
    tin.DameTriangulos(triangulos);
    ASSERT_EQ(triangulos.Cantidad(), 2u) << "what is outside isn't given";
    Entero area = 0;
    for (unsigned i = 0; i < 2; ++i) {
        const CLinea<int> linea(*triangulos[i]);
        EXPECT_EQ(linea.NPuntos(), 4u);
        EXPECT_TRUE(linea.EsCerrada());
        EXPECT_EQ(linea.GetCodigo(), CString(L"TRIANGULO"));
        EXPECT_GT(DobleArea(linea), 0);
        EXPECT_EQ(linea.Punto(1).z, 7);
        area += DobleArea(linea);
    }
    EXPECT_EQ(area, Entero{80});
}

TEST(CTriangulacion, NothingComesOfTooFewPointsAndOfPointsInLine) {
    for (const Puntos& puntos :
         {Puntos{}, Puntos{{1, 1}}, Puntos{{1, 1}, {5, 5}}, Puntos{{1, 1}, {1, 1}, {1, 1}, {5, 5}},
          Puntos{{0, 0}, {2, 1}, {4, 2}, {6, 3}, {-2, -1}}, Puntos{{INT_MIN, INT_MIN}, {0, 0}, {INT_MAX, INT_MAX}}}) {
        CTIN tin;
        EXPECT_EQ(Triangula(Sueltos(puntos), tin), 1);
        EXPECT_EQ(tin.CantidadTriangulos(), 0u);
        EXPECT_EQ(Triangula(Dibujo({puntos}), tin), 1);
        EXPECT_EQ(tin.CantidadTriangulos(), 0u);
        EXPECT_EQ(tin.BorraTriangulosSegunLimite(), 0u);
        CDibujo<int> triangulos;
        tin.DameTriangulos(triangulos);
        EXPECT_EQ(triangulos.Cantidad(), 0u);
    }
}

TEST(CTriangulacion, SeveralPartsAndHolesFollowTheEvenOddRule) {
    const auto cuadro = [](int x, int y, int lado) {
        return Puntos{{x, y}, {x + lado, y}, {x + lado, y + lado}, {x, y + lado}};
    };
    EsperaArea(Dibujo({cuadro(0, 0, 10), cuadro(30, 5, 10)}), 400);
    EsperaArea(Dibujo({cuadro(0, 0, 10), cuadro(2, 2, 4)}), 200 - 32);
    EsperaArea(Dibujo({cuadro(0, 0, 20), cuadro(2, 2, 10), cuadro(4, 4, 2)}), 800 - 200 + 8);
    EsperaArea(Dibujo({cuadro(0, 0, 10), cuadro(10, 0, 10)}), 400);
    EsperaArea(Dibujo({cuadro(0, 0, 10), cuadro(10, 3, 10)}), 400);
    EsperaArea(Dibujo({cuadro(0, 0, 10), cuadro(0, 0, 4)}), 200 - 32);
    EsperaArea(Dibujo({cuadro(0, 0, 10), cuadro(10, 10, 10)}), 400);
}

TEST(CTriangulacion, OutlinesMayRepeatPointsGoStraightTouchThemselvesAndComeBack) {
    EsperaArea(Dibujo({{{0, 0}, {0, 0}, {10, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 10}}}), 200);
    EsperaArea(Dibujo({{{0, 0}, {3, 0}, {7, 0}, {10, 0}, {10, 5}, {10, 10}, {0, 10}, {0, 1}}}), 200);
    EsperaArea(Dibujo({{{0, 0}, {10, 0}, {10, 10}, {5, 5}, {0, 10}, {-4, 6}, {0, 2}, {5, 5}}}), 172);
    EsperaArea(Dibujo({{{0, 0}, {10, 0}, {10, 10}, {5, 10}, {5, 20}, {5, 10}, {0, 10}}}), 200);
    EsperaArea(Dibujo({{{0, 0}, {10, 0}, {10, 10}, {5, 10}, {5, 4}, {5, 10}, {0, 10}}}), 200);
    // A hole tied to its outline by a seam that is walked both ways.
    EsperaArea(Dibujo({{{0, 0}, {20, 0}, {20, 20}, {0, 20}, {0, 0}, {5, 5}, {5, 10}, {10, 10}, {10, 5}, {5, 5}}}),
               800 - 50);
}

TEST(CTriangulacion, TheTurnOfAnOutlineDoesNotMatter) {
    Puntos puntos{{0, 0}, {10, 0}, {10, 10}, {4, 4}, {0, 10}};
    EsperaArea(Dibujo({puntos}), 140);
    std::ranges::reverse(puntos);
    EsperaArea(Dibujo({puntos}), 140);
}

TEST(CTriangulacion, WithoutLimitsNothingIsInside) {
    CTIN tin;
    CDibujo<int> abierta;
    abierta.Inserta(Linea({{0, 0}, {10, 0}, {10, 10}}, false));
    ASSERT_EQ(Triangula(abierta, tin), 1);
    EXPECT_EQ(tin.CantidadTriangulos(), 1u);
    EXPECT_EQ(tin.BorraTriangulosSegunLimite(), 0u);
    EXPECT_TRUE(tin.Triangulo(0).EsBorrado());
}

TEST(CTriangulacion, LinesThatCrossAreRefusedAndTold) {
    CDibujo<int> dibujo = Dibujo({{{0, 0}, {10, 10}, {10, 0}, {0, 10}}}), cruces;
    CTIN tin;
    ASSERT_EQ(Triangula(Dibujo({{{0, 0}, {1, 0}, {0, 1}}}), tin), 1);
    EXPECT_EQ(TriangulaSinCruces(dibujo, tin, &cruces), 0);
    EXPECT_EQ(tin.CantidadTriangulos(), 0u);
    EXPECT_EQ(tin.CantidadPuntos(), 0u);
    ASSERT_EQ(cruces.Cantidad(), 1u);
    EXPECT_EQ(cruces[0]->Punto(0), CCoor3D<int>(5, 5, 7));
    EXPECT_EQ(cruces[0]->GetCodigo(), CString(L"CRUCE"));
    EXPECT_EQ(Triangula(dibujo, tin, 1), 1) << "points alone don't cross";
    EXPECT_EQ(tin.CantidadTriangulos(), 2u);
    EXPECT_FALSE(tin.Triangulo(0).EsRuptura(0) || tin.Triangulo(0).EsRuptura(1) || tin.Triangulo(0).EsRuptura(2));
}

TEST(CTriangulacion, EveryCrossingIsTold) {
    CDibujo<int> dibujo, cruces;
    for (int i = 0; i < 4; ++i)
        dibujo.Inserta(Linea({{10 * i + 5, 0}, {10 * i + 5, 100}}, false));
    dibujo.Inserta(Linea({{0, 51}, {8, 51}}, false));
    dibujo.Inserta(Linea({{12, 51}, {18, 51}}, false));
    dibujo.Inserta(Linea({{22, 51}, {28, 51}}, false));
    CTIN tin;
    EXPECT_EQ(TriangulaSinCruces(dibujo, tin, &cruces), 0);
    ASSERT_EQ(cruces.Cantidad(), 3u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(cruces[unsigned(i)]->Punto(0), CCoor3D<int>(10 * i + 5, 51, 7));
}

TEST(CTriangulacion, CrossingsAreFoundHoweverNarrow) {
    // The two lines cross by less than a unit, a long way from their ends.
    CDibujo<int> dibujo, cruces;
    dibujo.Inserta(Linea({{INT_MIN, 0}, {INT_MAX, 1}}, false));
    dibujo.Inserta(Linea({{INT_MIN, 1}, {INT_MAX, 0}}, false));
    CTIN tin;
    EXPECT_EQ(TriangulaSinCruces(dibujo, tin, &cruces), 0);
    EXPECT_EQ(cruces.Cantidad(), 1u);
    dibujo.Clear();
    dibujo.Inserta(Linea({{INT_MIN, 0}, {INT_MAX - 1, 1}}, false));
    dibujo.Inserta(Linea({{INT_MIN, 1}, {INT_MAX - 1, 2}}, false));
    EXPECT_EQ(Triangula(dibujo, tin), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaSeguida(tin, dibujo));
}

// Two segments cross between points: inside both, and at no point of the drawing.
bool HayCruce(const CDibujo<int>& dibujo) {
    const auto segmento = [&dibujo](unsigned i) {
        return std::pair(CCoor2D<double>(dibujo[i]->Punto(0)), CCoor2D<double>(dibujo[i]->Punto(1)));
    };
    const auto enMedio = [&](unsigned i, unsigned j) {
        for (unsigned k = 0; k < dibujo.Cantidad(); ++k)
            for (int m = 0; m < 2; ++m) {
                const CCoor2D<double> p(dibujo[k]->Punto(m));
                if (Vertiz::predicados::EnSegmento(p, segmento(i).first, segmento(i).second) &&
                    Vertiz::predicados::EnSegmento(p, segmento(j).first, segmento(j).second))
                    return true;
            }
        return false;
    };
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        for (unsigned j = 0; j < i; ++j) {
            const auto [a, b] = segmento(i);
            const auto [c, d] = segmento(j);
            const auto contactos = Vertiz::predicados::Contactos(a, b, c, d);
            if (contactos.nCuantos == 1 && contactos.begin()->bPropio && !enMedio(i, j)) return true;
        }
    return false;
}

TEST(CTriangulacion, RandomSegmentsAreFollowedExactlyWhenNoneCross) {
    std::mt19937 azar(13);
    std::array<int, 2> veces{};
    for (int vez = 0; vez < 600; ++vez) {
        const int rango = 2 + vez % 9;
        std::uniform_int_distribution<int> dado(0, rango);
        CDibujo<int> dibujo;
        for (int i = 0; i < 4 + vez % 40; ++i) {
            CDibujo<int> ampliado(dibujo);
            ampliado.Inserta(Linea({{dado(azar), dado(azar)}, {dado(azar), dado(azar)}}, false));
            // Mostly sets without a crossing, which grow; now and then one with the crossing that ends it.
            if (vez % 4 == 0 || !HayCruce(ampliado)) dibujo = ampliado;
            if (vez % 4 == 0 && HayCruce(dibujo)) break;
        }
        CTIN tin;
        const int resultado = TriangulaSinCruces(dibujo, tin);
        ASSERT_EQ(resultado, HayCruce(dibujo) ? 0 : 1) << vez;
        ++veces[std::size_t(resultado)];
        ASSERT_NO_FATAL_FAILURE(EsperaValida(tin)) << vez;
        if (tin.CantidadTriangulos() == 0) continue;
        ASSERT_NO_FATAL_FAILURE(EsperaSeguida(tin, dibujo)) << vez;
    }
    EXPECT_GT(veces[0], 100);
    EXPECT_GT(veces[1], 300);
}

TEST(CTriangulacion, PointsOfOnePlaceAreOneVertexOfTheFirstHeight) {
    CDibujo<int> dibujo;
    CLinea<int> linea(L"L");
    linea << CCoor3D<int>(0, 0, 1) << CCoor3D<int>(9, 0, 2) << CCoor3D<int>(0, 9, 3) << CCoor3D<int>(0, 0, 4);
    dibujo.Inserta(linea);
    CTIN tin;
    ASSERT_EQ(Triangula(dibujo, tin), 1);
    ASSERT_EQ(tin.CantidadPuntos(), 3u);
    EXPECT_EQ(tin.Punto(0).z, 1);
    EXPECT_EQ(tin.BorraTriangulosSegunLimite(), 1u) << "closed in plan is closed";
}

TEST(CTriangulacion, ErasedLinesTextsAndOtherCodesStayOut) {
    CDibujo<int> dibujo = Dibujo({{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {{2, 2}, {4, 2}, {4, 4}}});
    dibujo[1]->SetBorrado(true);
    dibujo.Inserta(Vertiz::CTexto<int>(L"L", CCoor3D<int>(5, 5, 5), L"a", 1.0));
    CTIN tin;
    ASSERT_EQ(Triangula(dibujo, tin), 1);
    EXPECT_EQ(tin.CantidadPuntos(), 4u);
    dibujo[1]->SetBorrado(false);
    dibujo[1]->SetCodigo(L"OTRO");
    const auto cuenta = [&](Vertiz::CDigiTab Vertiz::CDataTriangulacion::*tabla) {
        Vertiz::CDataTriangulacion data;
        data.*tabla = Vertiz::CDigiTab();
        (data.*tabla).Inserta(Vertiz::CElementoDigiTab(0, L"L", 0, 0, 0, 0, 0, CString(), 1), true);
        EXPECT_EQ(Vertiz::CTriangulacion(data).Run(dibujo, tin, 0, nullptr, 0.1, nullptr), 1);
        std::array<unsigned, 3> veces{tin.CantidadPuntos(), 0, 0};
        for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
            for (int k = 0; k < 3; ++k)
                veces[1] += tin.Triangulo(i).EsRuptura(k), veces[2] += tin.Triangulo(i).EsLimite(k);
        return veces;
    };
    EXPECT_EQ(cuenta(&Vertiz::CDataTriangulacion::m_Puntos), (std::array<unsigned, 3>{4, 4, 4}));
    EXPECT_EQ(cuenta(&Vertiz::CDataTriangulacion::m_Rupturas), (std::array<unsigned, 3>{7, 4, 4}));
    EXPECT_EQ(cuenta(&Vertiz::CDataTriangulacion::m_Limites), (std::array<unsigned, 3>{7, 10, 4}));
}

TEST(CTriangulacion, PointsOutsideTheHeightsAreLeftOut) {
    CDibujo<int> dibujo;
    CLinea<int> linea(L"L");
    linea << CCoor3D<int>(0, 0, 0) << CCoor3D<int>(10, 0, INT_MIN) << CCoor3D<int>(10, 10, -2147483647)
          << CCoor3D<int>(0, 10, INT_MAX);
    linea.Cierra();
    dibujo.Inserta(linea);
    CTIN tin;
    ASSERT_EQ(Triangula(dibujo, tin), 1);
    EXPECT_EQ(tin.CantidadPuntos(), 3u);
    EXPECT_EQ(tin.BorraTriangulosSegunLimite(), 1u);
    EXPECT_EQ(DobleArea(tin), Entero{100});
    Vertiz::CDataTriangulacion data;
    data.m_dCotaMinima = -2147483648.0;
    ASSERT_EQ(Vertiz::CTriangulacion(data).Run(dibujo, tin, 0, nullptr, 0.1, nullptr), 1);
    EXPECT_EQ(tin.CantidadPuntos(), 4u);
    // Without the point that it begins and ends in, an outline still bounds.
    data.m_dCotaMinima = 0;
    linea.ModificaPunto(0, CCoor3D<int>(0, 0, -1), true), linea.ModificaPunto(4, CCoor3D<int>(0, 0, -1), true);
    linea.ModificaPunto(1, CCoor3D<int>(10, 0, 0), true), linea.ModificaPunto(2, CCoor3D<int>(10, 10, 0), true);
    dibujo.Clear();
    dibujo.Inserta(linea);
    ASSERT_EQ(Vertiz::CTriangulacion(data).Run(dibujo, tin, 0, nullptr, 0.1, nullptr), 1);
    EXPECT_EQ(tin.BorraTriangulosSegunLimite(), 1u);
}

TEST(CTriangulacion, ATooLargeDistanceIsRefused) {
    CTIN tin;
    const CDibujo<int> dibujo = Dibujo({{{0, 0}, {1, 0}, {0, 1}}});
    EXPECT_EQ(Vertiz::CTriangulacion().Run(dibujo, tin, 0, nullptr, 1.0, nullptr), 1);
    for (const double distancia : {1.5, double(NAN)}) {
        EXPECT_EQ(Vertiz::CTriangulacion().Run(dibujo, tin, 0, nullptr, distancia, nullptr), 0);
        EXPECT_EQ(tin.CantidadTriangulos(), 0u);
    }
}

TEST(CTriangulacion, ItTellsItsProgressAndCanBeCancelledAmongPointsAndAmongSides) {
    CDibujo<int> dibujo;
    CLinea<int> linea(L"L");
    for (int i = 0; i < 6000; ++i)
        linea << CCoor3D<int>(i, i * 7919 % 6007, 0);
    Puntos puntos;
    for (int i = 0; i < 6000; ++i)
        puntos.emplace_back(int(1e8 * std::cos(i * 0.001)), int(1e8 * std::sin(i * 0.001)));
    dibujo.Inserta(Linea(puntos));
    CTIN tin;
    Progreso entero;
    ASSERT_EQ(Vertiz::CTriangulacion().Run(dibujo, tin, 0, &entero, 0.1, nullptr), 1);
    EXPECT_EQ(entero.m_Pasos, (std::vector<std::pair<int, int>>{{4096, 12000}, {6000, 12000}, {10096, 12000}}));
    for (const int paso : {1, 2, 3}) {
        Progreso cancela(paso);
        ASSERT_EQ(Vertiz::CTriangulacion().Run(dibujo, tin, 0, &cancela, 0.1, nullptr), 2);
        EXPECT_EQ(tin.CantidadTriangulos(), 0u);
        EXPECT_EQ(cancela.m_Pasos.size(), std::size_t(paso));
    }
}

TEST(CTriangulacion, RandomPointsMakeADelaunayTriangulationOfTheirHull) {
    std::mt19937 azar(11);
    for (const int rango : {2, 5, 30, 1000, 1000000, INT_MAX})
        for (int vez = 0; vez < (rango < 100 ? 60 : 15); ++vez) {
            std::uniform_int_distribution<int> dado(rango == INT_MAX ? INT_MIN : -rango, rango);
            Puntos puntos;
            for (int i = 0; i < 3 + vez * 4; ++i)
                puntos.emplace_back(dado(azar), dado(azar));
            CTIN tin;
            ASSERT_EQ(Triangula(Sueltos(puntos), tin), 1);
            ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
            ASSERT_TRUE(DobleArea(tin) == DobleAreaCasco(puntos)) << "range " << rango << ", run " << vez;
        }
}

TEST(CTriangulacion, PointsOnCirclesGridsAndParabolasHaveManyTies) {
    Puntos circulo, rejilla, parabola, radios;
    for (int m = 1; m < 30; ++m)
        for (int n = 0; n < m; ++n) {
            // Points with rational slopes on a circle of one radius, as far as integers allow.
            const int r = 5 * 13 * 17 * 29 * 37, x = m * m - n * n, y = 2 * m * n, z = m * m + n * n;
            if (r % z == 0) {
                for (const auto& [a, b] :
                     Puntos{{x, y}, {y, x}, {-x, y}, {-y, x}, {x, -y}, {y, -x}, {-x, -y}, {-y, -x}})
                    circulo.emplace_back(a * (r / z), b * (r / z));
            }
        }
    ASSERT_GT(circulo.size(), 50u);
    for (int i = 0; i < 20; ++i)
        for (int j = 0; j < 20; ++j)
            rejilla.emplace_back(i, j);
    for (int i = -200; i <= 200; ++i)
        parabola.emplace_back(i, i * i);
    for (int i = 1; i <= 30; ++i)
        for (int j = -3; j <= 3; ++j)
            radios.emplace_back(i * 1000, i * j);
    for (const Puntos& puntos : {circulo, rejilla, parabola, radios}) {
        CTIN tin;
        ASSERT_EQ(Triangula(Sueltos(puntos), tin), 1);
        ASSERT_NO_FATAL_FAILURE(EsperaValida(tin));
        ASSERT_TRUE(DobleArea(tin) == DobleAreaCasco(puntos));
    }
}

// A polygon that is simple as the points lie round a centre in order, at random distances.
Puntos Estrella(std::mt19937& azar, int n, double radio, double cx, double cy) {
    std::uniform_real_distribution<double> parte(0.05, 1.0);
    Puntos puntos;
    for (int i = 0; i < n; ++i) {
        const double a = 2 * std::numbers::pi * i / n, r = radio * parte(azar);
        const double x = cx + r * std::cos(a), y = cy + r * std::sin(a);
        puntos.emplace_back(int(std::clamp(x, -2147483648.0, 2147483647.0)),
                            int(std::clamp(y, -2147483648.0, 2147483647.0)));
    }
    return puntos;
}

TEST(CTriangulacion, RandomStarsKeepTheirAreaExactly) {
    std::mt19937 azar(3);
    for (const int n : {3, 4, 5, 8, 20, 100, 400})
        for (const double radio : {1e5, 1e9, 2147483647.0})
            for (int vez = 0; vez < 8; ++vez) {
                const CDibujo<int> dibujo = Dibujo({Estrella(azar, n, radio, 0, 0)});
                const Entero area = DobleArea(CLinea<int>(*dibujo[0]));
                ASSERT_NO_FATAL_FAILURE(EsperaArea(dibujo, area < 0 ? -area : area)) << n << ", " << radio;
            }
}

TEST(CTriangulacion, CombsSpiralsAndStairsKeepTheirAreaExactly) {
    for (const int n : {3, 10, 60}) {
        Puntos peine{{0, 0}};
        for (int i = 0; i < n; ++i) {
            peine.emplace_back(4 * i, 1000 - i % 3);
            peine.emplace_back(4 * i + 1, 1000);
            peine.emplace_back(4 * i + 2, 1);
            peine.emplace_back(4 * i + 3, 1 + i % 2);
        }
        peine.emplace_back(4 * n, 0);
        Puntos espiral, vuelta;
        for (int i = 0; i < 10 * n; ++i) {
            const double a = i * 0.3, r = 1e4 + 400 * i;
            espiral.emplace_back(int(r * std::cos(a)), int(r * std::sin(a)));
            vuelta.emplace_back(int((r - 4000) * std::cos(a)), int((r - 4000) * std::sin(a)));
        }
        espiral.insert(espiral.end(), vuelta.rbegin(), vuelta.rend());
        Puntos escalera{{0, 0}};
        for (int i = 0; i < n; ++i) {
            escalera.emplace_back(1000000 * (i + 1), 3 * i);
            escalera.emplace_back(1000000 * (i + 1), 3 * (i + 1));
        }
        escalera.emplace_back(0, 3 * n);
        for (const Puntos& puntos : {peine, espiral, escalera}) {
            const CDibujo<int> dibujo = Dibujo({puntos});
            const Entero area = DobleArea(CLinea<int>(*dibujo[0]));
            ASSERT_NO_FATAL_FAILURE(EsperaArea(dibujo, area < 0 ? -area : area)) << n;
        }
    }
}

TEST(CTriangulacion, NeedlesAcrossTheWholeRangeKeepTheirAreaExactly) {
    EsperaArea(Dibujo({{{INT_MIN, INT_MIN}, {INT_MAX, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}}}),
               Entero{2} * 0xFFFFFFFF * 0xFFFFFFFF);
    EsperaArea(Dibujo({{{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MAX - 1, INT_MAX}}}), 0xFFFFFFFF);
    EsperaArea(Dibujo({{{INT_MIN, 0}, {-1, 0}, {INT_MAX, 1}, {0, 1}}}), Entero{2} * 0x7FFFFFFF);
    std::mt19937 azar(8);
    std::uniform_int_distribution<int> todo(INT_MIN, INT_MAX), cerca(0, 3);
    for (int i = 0; i < 300; ++i) {
        // Beside a long side, points that are all but in line with it.
        CCoor3D<int> a(todo(azar) / 2 * 2, todo(azar) / 2 * 2, 0), b(todo(azar) / 2 * 2, todo(azar) / 2 * 2, 0);
        const CCoor3D<int> c(a.x / 2 + b.x / 2 + cerca(azar), a.y / 2 + b.y / 2 - cerca(azar), 0);
        const CDibujo<int> dibujo = Dibujo({{{a.x, a.y}, {b.x, b.y}, {c.x, c.y}}});
        const Entero area = Cruz(a, b, c);
        if (area == 0) continue;
        ASSERT_NO_FATAL_FAILURE(EsperaArea(dibujo, area < 0 ? -area : area));
    }
}

TEST(CTriangulacion, LongLinesAmongRandomPointsAreFollowed) {
    std::mt19937 azar(21);
    for (const int rango : {8, 40, 500, 1000000}) {
        for (int vez = 0; vez < 40; ++vez) {
            std::uniform_int_distribution<int> dado(-rango, rango);
            CDibujo<int> dibujo;
            Puntos puntos;
            for (int i = 0; i < 10 + 8 * vez; ++i) {
                puntos.emplace_back(dado(azar), dado(azar));
                dibujo.Inserta(Linea({puntos.back()}, false));
            }
            // Lines that only touch: a fan from one corner, and the axes of the rest.
            const int lejos = rango + 3;
            for (int i = 0; i < 7; ++i)
                dibujo.Inserta(Linea({{-lejos, -lejos}, {lejos, -lejos + 2 * lejos * i / 6}}, false));
            dibujo.Inserta(Linea({{-lejos, -lejos + 1}, {lejos - 1, lejos}}, false));
            for (const auto& [x, y] : Puntos{{-lejos, -lejos}, {lejos, lejos}})
                puntos.emplace_back(x, y);
            CTIN tin;
            ASSERT_EQ(Triangula(dibujo, tin), 1) << rango << ", " << vez;
            ASSERT_NO_FATAL_FAILURE(EsperaValida(tin)) << rango << ", " << vez;
            ASSERT_NO_FATAL_FAILURE(EsperaSeguida(tin, dibujo)) << rango << ", " << vez;
        }
    }
}

TEST(CTriangulacion, TheOrderOfTheLinesDoesNotMatter) {
    std::mt19937 azar(4);
    std::vector<Puntos> contornos;
    for (int i = 0; i < 9; ++i)
        contornos.push_back(Estrella(azar, 30, 4e5, i % 3 * 1e6, i / 3 * 1e6));
    Entero area = 0;
    for (const Puntos& p : contornos)
        area += DobleArea(Linea(p));
    for (int vez = 0; vez < 5; ++vez) {
        std::ranges::shuffle(contornos, azar);
        EsperaArea(Dibujo(contornos), area);
    }
}

}  // namespace
}  // namespace triangulaciones
