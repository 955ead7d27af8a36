// Thinning, convex pieces, holes and cutting, against brute force.

#include "model/CDibujo.h"
#include "model/CTexto.h"
#include "model/IPorcentaje.h"
#include "model/Predicados.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <set>

namespace {

using namespace Vertiz;
using P = CCoor3D<double>;

CLinea<double> Linea(std::initializer_list<P> puntos, const CString& codigo = L"nuevo") {
    CLinea<double> linea(codigo);
    for (const auto& p : puntos)
        linea << p;
    return linea;
}

CLinea<double> Rectangulo(double x1, double y1, double x2, double y2, const CString& codigo = L"nuevo") {
    return Linea({{x1, y1, 0}, {x2, y1, 0}, {x2, y2, 0}, {x1, y2, 0}, {x1, y1, 0}}, codigo);
}

const CLinea<double>& La(const CDibujo<double>& dibujo, unsigned i) {
    return static_cast<const CLinea<double>&>(*dibujo[i]);
}

bool EsConvexa(const CLinea<double>& linea) {
    const int n = int(linea.NPuntos()) - 1;
    for (int i = 0; i < n; i++) {
        if (predicados::Orientacion(linea.Punto(i), linea.Punto(i + 1), linea.Punto((i + 1) % n + 1)) < 0) return false;
    }
    return true;
}

double Area(const CDibujo<double>& dibujo) {
    double area = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); i++)
        area += La(dibujo, i).Superficie();
    return area;
}

// Every point in `antes` is in exactly one piece, every other one in none.
void CompruebaPiezas(const CDibujo<double>& antes, const CDibujo<double>& piezas, double area, unsigned semilla) {
    std::set<std::pair<double, double>> esquinas;
    for (unsigned i = 0; i < antes.Cantidad(); i++) {
        for (const auto& p : antes[i]->Puntos())
            esquinas.emplace(p.x, p.y);
    }
    for (unsigned i = 0; i < piezas.Cantidad(); i++) {
        EXPECT_TRUE(La(piezas, i).EsCerrada());
        EXPECT_TRUE(EsConvexa(La(piezas, i))) << "piece " << i;
        EXPECT_GT(La(piezas, i).Superficie(), 0) << "counter-clockwise, with an area";
        for (const auto& p : piezas[i]->Puntos())
            EXPECT_TRUE(esquinas.count({p.x, p.y})) << p.x << ' ' << p.y;
    }
    EXPECT_NEAR(Area(piezas), area, 1e-9 * std::max(1.0, area));

    std::mt19937 azar(semilla);
    const auto caja = antes.GetMaximasDouble();
    std::uniform_real_distribution<double> x(caja.Minima().x - 1, caja.Maxima().x + 1);
    std::uniform_real_distribution<double> y(caja.Minima().y - 1, caja.Maxima().y + 1);
    for (int k = 0; k < 300; k++) {
        const P punto(x(azar), y(azar), 0);
        int veces = 0;
        for (unsigned i = 0; i < piezas.Cantidad(); i++)
            veces += La(piezas, i).EstaDentro(punto, false) == TD_DENTRO;
        EXPECT_EQ(veces, antes.EstaDentro(punto, false) == TD_DENTRO ? 1 : 0) << punto.x << ' ' << punto.y;
    }
}

void CompruebaConvexos(const CDibujo<double>& dibujo, double area, unsigned semilla = 1) {
    CDibujo<double> piezas(dibujo);
    ASSERT_EQ(piezas.GeneraConvexos(), 1);
    CompruebaPiezas(dibujo, piezas, area, semilla);
}

TEST(CDibujoConvexos, ConvexOutlineStaysOnePiece) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Linea({{0, 0, 5}, {2, 0, 5}, {4, 0, 5}, {4, 3, 6}, {0, 3, 7}, {0, 0, 5}}, L"BASE"));
    CompruebaConvexos(dibujo, 12);
    dibujo.GeneraConvexos();
    ASSERT_EQ(dibujo.Cantidad(), 1U);
    EXPECT_EQ(dibujo[0]->NPuntos(), 6U) << "a corner on a straight side stays, neighbours may need it";
    EXPECT_EQ(dibujo[0]->GetCodigo(), L"BASE");
    double alto = 0;
    for (const auto& p : dibujo[0]->Puntos())
        alto = std::max(alto, p.z);
    EXPECT_EQ(alto, 7) << "corners keep their heights";
}

TEST(CDibujoConvexos, HolesAndIslandsInThemAreCutOut) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Rectangulo(0, 0, 10, 10));
    dibujo.Inserta(Rectangulo(1, 1, 9, 8));
    dibujo.Inserta(Rectangulo(2, 2, 5, 5));
    dibujo.Inserta(Rectangulo(20, 0, 25, 5));
    CompruebaConvexos(dibujo, 100 - 56 + 9 + 25);
}

TEST(CDibujoConvexos, OutlinesThatTouchAtCornersAndSidesAreCut) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Rectangulo(0, 0, 10, 10));
    dibujo.Inserta(Rectangulo(2, 2, 4, 4));
    dibujo.Inserta(Rectangulo(4, 4, 6, 6));      // corner to corner with the hole before
    dibujo.Inserta(Rectangulo(10, 10, 12, 12));  // with the outer one
    CompruebaConvexos(dibujo, 100 - 4 - 4 + 4);
}

TEST(CDibujoConvexos, OtherEntitiesStay) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Linea({{0, 0, 0}, {5, 5, 0}}, L"OPEN"));
    dibujo.Inserta(Linea({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {3, 1, 0}, {0, 0, 0}}));
    dibujo.Inserta(CTexto<double>(L"T", P(0, 0, 0), L"text", 1.0));
    EXPECT_EQ(dibujo.GeneraConvexos(), 1);
    ASSERT_EQ(dibujo.Cantidad(), 4U);
    EXPECT_EQ(dibujo[0]->GetCodigo(), L"OPEN");
    EXPECT_TRUE(dibujo[1]->EsTexto());
}

TEST(CDibujoConvexos, NothingToCutAndNothingThatCanBeCut) {
    CDibujo<double> vacio;
    EXPECT_EQ(vacio.GeneraConvexos(), 1);
    EXPECT_EQ(vacio.Cantidad(), 0U);
    CDibujo<double> plano;
    plano.Inserta(Linea({{0, 0, 0}, {4, 0, 0}, {9, 0, 0}, {0, 0, 0}}));
    EXPECT_EQ(plano.GeneraConvexos(), 1);
    EXPECT_EQ(plano.Cantidad(), 0U) << "no area, no piece";
    CDibujo<double> malo;
    malo.Inserta(Linea({{0, 0, 0}, {std::numeric_limits<double>::infinity(), 0, 0}, {4, 4, 0}, {0, 0, 0}}));
    EXPECT_EQ(malo.GeneraConvexos(), 0);
    EXPECT_EQ(malo[0]->NPuntos(), 4U);
}

// The outlines of random cells of a grid, as a terrain with voids has them.
CDibujo<double> Manchas(int lado, unsigned semilla, double& area, double escala = 1.0) {
    std::mt19937 azar(semilla);
    std::vector<std::vector<bool>> celda(unsigned(lado) + 2, std::vector<bool>(unsigned(lado) + 2));
    area = 0;
    for (int i = 1; i <= lado; i++) {
        for (int j = 1; j <= lado; j++) {
            celda[unsigned(i)][unsigned(j)] = azar() % 3 != 0;
            area += celda[unsigned(i)][unsigned(j)] ? escala * escala : 0;
        }
    }
    CDibujo<double> dibujo;
    const auto lado2 = [&](int x1, int y1, int x2, int y2) {
        dibujo.JuntaAntesDeInsertar(Linea({{x1 * escala, y1 * escala, 0}, {x2 * escala, y2 * escala, 0}}));
    };
    for (int i = 0; i <= lado; i++) {
        for (int j = 0; j <= lado; j++) {
            const auto en = [&](int a, int b) { return bool(celda[unsigned(a)][unsigned(b)]); };
            if (en(i, j) != en(i + 1, j)) lado2(i + 1, j, i + 1, j + 1);
            if (en(i, j) != en(i, j + 1)) lado2(i, j + 1, i + 1, j + 1);
        }
    }
    dibujo.Junta(0, 0, 1, 1, 1, 0, 0, 1);
    return dibujo;
}

TEST(CDibujoConvexos, RandomGridsWithVoidsAreCoveredExactly) {
    for (unsigned semilla = 1; semilla <= 25; semilla++) {
        double area = 0;
        const CDibujo<double> dibujo = Manchas(9, semilla, area, semilla % 2 ? 1.0 : 0.7);
        for (unsigned i = 0; i < dibujo.Cantidad(); i++)
            EXPECT_TRUE(dibujo[i]->EsCerrada());
        CompruebaConvexos(dibujo, area, semilla);
    }
}

TEST(CDibujoConvexos, RandomStarsAreCoveredExactly) {
    for (unsigned semilla = 1; semilla <= 25; semilla++) {
        std::mt19937 azar(semilla);
        std::uniform_real_distribution<double> radio(1, 10);
        CDibujo<double> dibujo;
        double area = 0;
        for (const double factor : {1.0, 0.05}) {  // the small star is a hole of the large one
            CLinea<double> estrella(CString(L"S"));
            for (int i = 0; i < 60; i++) {
                const double a = 2 * std::numbers::pi * i / 60, r = radio(azar) * factor;
                estrella << P(r * std::cos(a), r * std::sin(a), 0);
            }
            estrella.Cierra();
            area += (factor == 1.0 ? 1 : -1) * std::abs(estrella.Superficie());
            dibujo.Inserta(estrella);
        }
        CompruebaConvexos(dibujo, area, semilla);
    }
}

TEST(CDibujoConvexos, FloorOfAGridIsThinnedToItsCorners) {
    double area = 0;
    CDibujo<double> dibujo = Manchas(40, 3, area);
    EXPECT_EQ(dibujo.Generaliza({0.05F, 0.05F, 0, 0, 0, 0}, 0, nullptr), 1);
    CompruebaConvexos(dibujo, area);
    CDibujo<double> entero;
    for (int i = 0; i < 100; i++)
        entero.JuntaAntesDeInsertar(Linea({{i * 1.0, 0, 0}, {i + 1.0, 0, 0}}));
    entero.JuntaAntesDeInsertar(Linea({{100, 0, 0}, {100, 50, 0}}));
    entero.JuntaAntesDeInsertar(Linea({{100, 50, 0}, {0, 0, 0}}));
    entero.Junta(0, 0, 1, 1, 1, 0, 0, 1);
    entero.Generaliza({0.05F, 0.05F, 0, 0, 0, 0}, 0, nullptr);
    ASSERT_EQ(entero.Cantidad(), 1U);
    EXPECT_EQ(entero[0]->NPuntos(), 4U);
    EXPECT_TRUE(entero[0]->EsCerrada());
}

TEST(CDibujoGeneraliza, KeepsWhatLeavesTheToleranceInPlanOrHeight) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Linea({{0, 0, 0}, {5, 0.9, 0}, {10, 0, 0}, {15, 1.2, 0}, {20, 0, 0}}));
    dibujo.Inserta(Linea({{0, 0, 0}, {5, 0, 3}, {10, 0, 0}}));
    dibujo[0]->InsertaAtr(CAtrDigi(4, 44, L""));
    CDibujo<double> igual(dibujo);
    igual.Generaliza({}, 0, nullptr);
    EXPECT_EQ(igual.CantidadPuntos(), 8U) << "without tolerance nothing changes";
    dibujo.Generaliza({1.0F, 2.0F, 0, 0, 0, 0}, 0, nullptr);
    EXPECT_EQ(dibujo[0]->NPuntos(), 3U) << "only the point 1.2 off the chord stays";
    EXPECT_EQ(dibujo[0]->Punto(1).x, 15);
    EXPECT_EQ(dibujo[0]->DameRegistro(4), 44);
    EXPECT_EQ(dibujo[1]->NPuntos(), 3U) << "3 above the chord";
    dibujo.Generaliza({1.0F, 3.0F, 0, 0, 0, 0}, 0, nullptr);
    EXPECT_EQ(dibujo[1]->NPuntos(), 2U);
    EXPECT_EQ(dibujo.CantidadPuntos(), 5U);
}

TEST(CDibujoGeneraliza, RemovesWhatIsTooSmall) {
    CDibujo<double> dibujo;
    dibujo.Inserta(Rectangulo(0, 0, 2, 2));
    dibujo.Inserta(Rectangulo(0, 0, 1, 1));
    dibujo.Inserta(Linea({{0, 0, 0}, {3, 0, 0}}));
    dibujo.Inserta(Linea({{0, 0, 0}, {1, 0, 0}}));
    dibujo.Generaliza({0, 0, 2.0F, 2.0F, 0, 0}, 0, nullptr);
    ASSERT_EQ(dibujo.Cantidad(), 2U);
    EXPECT_EQ(La(dibujo, 0).Superficie(), 4);
    EXPECT_EQ(La(dibujo, 1).Longitud(0), 3);
    dibujo.Generaliza({5.0F, 0, 9.0F, 0, 1, 0}, 0, nullptr);
    ASSERT_EQ(dibujo.Cantidad(), 2U) << "only closed ones are looked at";
    EXPECT_GT(La(dibujo, 0).Superficie(), 0) << "an area isn't thinned away";
    dibujo.Generaliza({5.0F, 0, 9.0F, 0, 1, 1}, 0, nullptr);
    EXPECT_EQ(dibujo.Cantidad(), 1U) << "unless it may be";
}

TEST(CDibujoGeneraliza, OutlineDoesNotComeToCrossItself) {
    // A spike reaches through the bay that a coarse thinning would fill.
    CDibujo<double> dibujo;
    dibujo.Inserta(Linea({{0, 0, 0},
                          {10, 0, 0},
                          {10, 5, 0},
                          {5.2, 5, 0},
                          {5, 1, 0},
                          {4.8, 5, 0},
                          {0, 5, 0},
                          {0, 4, 0},
                          {4, 4.5, 0},
                          {4.2, 2, 0},
                          {0, 1, 0},
                          {0, 0, 0}}));
    for (float tolerancia = 0.1F; tolerancia < 6; tolerancia *= 1.3F) {
        CDibujo<double> fino(dibujo);
        fino.Generaliza({tolerancia, 0, 0, 0, 0, 0}, 0, nullptr);
        if (fino.Cantidad() == 0) continue;
        EXPECT_TRUE(fino[0]->EsCerrada());
        CDibujo<double> piezas(fino);
        piezas.GeneraConvexos();
        EXPECT_NEAR(Area(piezas), std::abs(La(fino, 0).Superficie()), 1e-9) << tolerancia;
    }
}

struct CCancela : IPorcentaje {
    int quedan = 2;
    int Paso(int, int, int, int) override { return quedan-- > 0; }
    void Empieza(int, unsigned) override {}
    void Termina(int, int) override {}
    void Pasos(int, int) override {}
    void Reinicia(int, int, int) override {}
    void Mensaje(int, const CString&, int) override {}
};

TEST(CDibujoGeneraliza, CanBeCancelled) {
    CDibujo<double> dibujo;
    for (int i = 0; i < 5; i++)
        dibujo.Inserta(Linea({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}));
    CCancela cancela;
    EXPECT_EQ(dibujo.Generaliza({0.1F, 0.1F, 0, 0, 0, 0}, 1, &cancela), 2);
    EXPECT_EQ(dibujo[0]->NPuntos(), 2U);
    EXPECT_EQ(dibujo[4]->NPuntos(), 3U);
}

TEST(CDibujoAreas, PointLiesInARingButNotInItsHole) {
    CDibujo<double> dibujo;
    EXPECT_EQ(dibujo.EstaDentro(P(1, 1, 0), false), TD_FUERA);
    dibujo.Inserta(Rectangulo(0, 0, 10, 10));
    dibujo.Inserta(Rectangulo(2, 2, 8, 8));
    dibujo.Inserta(Linea({{-50, -50, 0}, {50, 60, 0}}));
    EXPECT_EQ(dibujo.EstaDentro(P(1, 1, 0), false), TD_DENTRO);
    EXPECT_EQ(dibujo.EstaDentro(P(5, 5, 0), false), TD_FUERA);
    EXPECT_EQ(dibujo.EstaDentro(P(11, 5, 0), false), TD_FUERA);
    EXPECT_EQ(dibujo.EstaDentro(P(2, 5, 0), false), TD_BORDE_FUERA);
    EXPECT_EQ(dibujo.EstaDentro(P(10, 10, 0), false), TD_BORDE_DENTRO);
    dibujo[1]->SetBorrado(true);
    EXPECT_EQ(dibujo.EstaDentro(P(5, 5, 0), false), TD_DENTRO);
}

TEST(CDibujoAreas, IslandsAreTakenOut) {
    CDibujo<double> dibujo, islas;
    dibujo.Inserta(Rectangulo(2, 2, 8, 8, L"hole"));
    dibujo.Inserta(Rectangulo(0, 0, 10, 10, L"outer"));
    dibujo.Inserta(Rectangulo(3, 3, 4, 4, L"inner"));
    dibujo.Inserta(Rectangulo(0, 0, 1, 1, L"hole at the corner"));
    dibujo.Inserta(Rectangulo(20, 0, 21, 1, L"beside"));
    dibujo.Inserta(Linea({{5, 5, 0}, {6, 6, 0}}, L"open"));
    EXPECT_EQ(dibujo.BorraIslas(&islas), 2U);
    ASSERT_EQ(dibujo.Cantidad(), 4U);
    ASSERT_EQ(islas.Cantidad(), 2U);
    EXPECT_EQ(islas[0]->GetCodigo(), L"hole");
    EXPECT_EQ(islas[1]->GetCodigo(), L"hole at the corner");
    EXPECT_EQ(dibujo[0]->GetCodigo(), L"outer");
    EXPECT_EQ(dibujo[1]->GetCodigo(), L"inner");
    EXPECT_EQ(dibujo.BorraIslas(nullptr), 1U) << "with its hole gone, the inner one is a hole of the outer one";
}

TEST(CDibujoCorte, LineIsCutInOrderWithItsHeights) {
    CDibujo<double> entrada, salida;
    CLinea<double> linea = Linea({{-5, 5, 0}, {15, 5, 20}, {15, 8, 20}, {5, 8, 10}}, L"L");
    linea.InsertaAtr(CAtrDigi(3, 33, L""));
    entrada.Inserta(linea);
    const auto caja = Rectangulo(0, 0, 10, 10);
    EXPECT_EQ(CDibujo<double>::CortaConLimite(entrada, caja, salida, 1, 1, nullptr), 1);
    ASSERT_EQ(salida.Cantidad(), 2U);
    EXPECT_EQ(La(salida, 0).Punto(0), P(0, 5, 5));
    EXPECT_EQ(La(salida, 0).Punto(1), P(10, 5, 15));
    EXPECT_EQ(La(salida, 1).Punto(1), P(5, 8, 10));
    EXPECT_EQ(salida[1]->GetCodigo(), L"L");
    EXPECT_EQ(salida[1]->DameRegistro(3), 33);
    EXPECT_EQ(CDibujo<double>::CortaConLimite(entrada, caja, salida, 0, 1, nullptr), 1);
    ASSERT_EQ(salida.Cantidad(), 2U);
    EXPECT_EQ(salida[1]->NPuntos(), 4U);
}

TEST(CDibujoCorte, InsideAndOutsideMakeTheWhole) {
    for (unsigned semilla = 1; semilla < 40; semilla++) {
        std::mt19937 azar(semilla);
        const auto n = [&] { return double(azar() % 21) - 5; };  // whole numbers meet the limit's corners and sides
        CDibujo<double> entrada, dentro, fuera;
        CLinea<double> linea;
        for (int i = 0; i < 12; i++)
            linea << P(n(), n(), 0);
        entrada.Inserta(linea);
        const auto limite = Linea({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 5, 0}, {0, 10, 0}, {0, 0, 0}});
        CDibujo<double>::CortaConLimite(entrada, limite, dentro, 1, 1, nullptr);
        CDibujo<double>::CortaConLimite(entrada, limite, fuera, 0, 1, nullptr);
        double suma = 0;
        for (const auto* d : {&dentro, &fuera}) {
            for (unsigned i = 0; i < d->Cantidad(); i++) {
                suma += La(*d, i).Longitud(0);
                for (int k = 1; k < int((*d)[i]->NPuntos()); k++) {
                    const P medio = (La(*d, i).Punto(k - 1) + La(*d, i).Punto(k)) / 2;
                    const auto donde = limite.EstaDentro(medio, false);
                    EXPECT_NE(donde, d == &dentro ? TD_FUERA : TD_DENTRO);
                }
            }
        }
        EXPECT_NEAR(suma, linea.Longitud(0), 1e-9);
    }
}

TEST(CDibujoCorte, LineOnTheBorderIsInsideAndClosedLineStaysWhole) {
    CDibujo<double> entrada, salida;
    entrada.Inserta(Linea({{2, 0, 0}, {8, 0, 0}}));
    entrada.Inserta(Rectangulo(3, 3, 4, 4));
    entrada.Inserta(Rectangulo(5, 5, 15, 6));
    const auto caja = Rectangulo(0, 0, 10, 10);
    CDibujo<double>::CortaConLimite(entrada, caja, salida, 1, 1, nullptr);
    ASSERT_EQ(salida.Cantidad(), 3U);
    EXPECT_TRUE(salida[1]->EsCerrada());
    EXPECT_EQ(La(salida, 2).Punto(0), P(10, 6, 0)) << "where a closed line begins it isn't cut";
    EXPECT_EQ(salida[2]->NPuntos(), 4U);
}

TEST(CDibujoCorte, SlantedBorderIsInsideWhateverIsRounded) {
    CDibujo<double> entrada, salida;
    entrada.Inserta(Linea({{0, 0, 0}, {21, 7, 0}}));
    for (int k = 0; k < 7; k++) {
        for (const double lado : {5.0, -5.0}) {  // the limit lies to either side of the line
            const P a(3.0 * k, k, 0), b(3.0 * k + 3, k + 1.0, 0);
            const auto limite = Linea({a, b, {a.x, a.y + lado, 0}, a});
            CDibujo<double>::CortaConLimite(entrada, limite, salida, 1, 1, nullptr);
            ASSERT_EQ(salida.Cantidad(), 1U) << k << ' ' << lado;
            EXPECT_NEAR(La(salida, 0).Longitud(0), std::sqrt(10), 1e-9);
        }
    }
}

TEST(CDibujoCorte, ClosedLinesAreCutAsAreas) {
    CDibujo<double> entrada, salida;
    entrada.Inserta(Rectangulo(-5, -5, 5, 5, L"A"));
    entrada.Inserta(Rectangulo(-5, -5, 15, 15, L"B"));
    const auto caja = Rectangulo(0, 0, 10, 10);
    CDibujo<double>::CortaConLimite(entrada, caja, salida, 1, 0, nullptr);
    ASSERT_EQ(salida.Cantidad(), 2U);
    EXPECT_EQ(std::abs(La(salida, 0).Superficie()), 25);
    EXPECT_EQ(std::abs(La(salida, 1).Superficie()), 100);
    CDibujo<double>::CortaConLimite(entrada, caja, salida, 0, 0, nullptr);
    ASSERT_EQ(salida.Cantidad(), 3U);
    EXPECT_EQ(salida[2]->GetCodigo(), L"B");
    EXPECT_EQ(std::abs(La(salida, 2).Superficie()), 100) << "the hole";
}

TEST(CDibujoCorte, LimitThatIsNoneAndCancel) {
    CDibujo<double> entrada, salida;
    for (int i = 0; i < 5; i++)
        entrada.Inserta(Linea({{2, 2, 0}, {8, 3, 0}}));
    EXPECT_EQ(CDibujo<double>::CortaConLimite(entrada, Linea({{0, 0, 0}, {9, 9, 0}}), salida, 1, 1, nullptr), 0);
    EXPECT_EQ(CDibujo<double>::CortaConLimite(entrada, Linea({{0, 0, 0}, {9, 9, 0}, {0, 9, 0}}), salida, 1, 1, nullptr),
              0)
        << "it is open";
    CCancela cancela;
    EXPECT_EQ(CDibujo<double>::CortaConLimite(entrada, Rectangulo(0, 0, 10, 10), salida, 1, 1, &cancela), 2);
    EXPECT_EQ(salida.Cantidad(), 2U);
}

}  // namespace
