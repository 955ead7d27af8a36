#include "model/CLinea.h"
#include "model/Geos.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>
#include <string>

namespace Vertiz {
namespace {

template <class T>
CLinea<T> Linea(std::initializer_list<CCoor2D<T>> puntos, bool bCierra = false) {
    CLinea<T> linea("L");
    for (const auto& punto : puntos)
        linea << CCoor3D<T>(punto.x, punto.y, 0);
    if (bCierra) linea.Cierra();
    return linea;
}

CLinea<int> AlAzar(std::mt19937& azar, int puntos, int lado, bool bCierra) {
    std::uniform_int_distribution<int> entero(0, lado);
    CLinea<int> linea("A");
    for (int i = 0; i < puntos; ++i)
        linea << CCoor3D<int>(entero(azar), entero(azar), 0);
    if (bCierra) linea.Cierra();
    return linea;
}

long long Cruz(const CCoor3D<int>& a, const CCoor3D<int>& b, const CCoor3D<int>& c) {
    return static_cast<long long>(b.x - a.x) * (c.y - a.y) - static_cast<long long>(b.y - a.y) * (c.x - a.x);
}

bool EnBorde(const CCoor3D<int>& p, const CCoor3D<int>& a, const CCoor3D<int>& b) {
    return Cruz(a, b, p) == 0 && std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

// Even-odd rule along a ray so steep that no vertex of a small polygon lies on it.
CTipoDentro DentroDespacio(const CLinea<int>& poligono, const CCoor3D<int>& p) {
    const CCoor3D<int> lejos(p.x + 1000, p.y + 1000003, 0);
    const int n = static_cast<int>(poligono.NPuntos());
    bool bDentro = false, bLado = false;
    for (int i = 0; i < n; ++i) {
        const CCoor3D<int>&a = poligono.Punto(i), &b = poligono.Punto((i + 1) % n);
        if (p == a) return TD_BORDE_DENTRO;
        bLado = bLado || EnBorde(p, a, b);
        const bool bCruzaRayo = (Cruz(p, lejos, a) > 0) != (Cruz(p, lejos, b) > 0);
        const bool bCruzaLado = (Cruz(a, b, p) > 0) != (Cruz(a, b, lejos) > 0);
        if (bCruzaRayo && bCruzaLado) bDentro = !bDentro;
    }
    return bLado ? TD_BORDE_FUERA : bDentro ? TD_DENTRO : TD_FUERA;
}

TEST(CLineaRelaciones, PlacePointsAsACountOfCrossingsDoes) {
    std::mt19937 azar(1);
    int cuenta[5] = {};
    for (int k = 0; k < 400; ++k) {
        const CLinea<int> poligono = AlAzar(azar, 1 + k % 9, 8, k % 2 == 0);
        for (int x = -1; x <= 9; ++x) {
            for (int y = -1; y <= 9; ++y) {
                const CCoor3D<int> p(x, y, 0);
                const CTipoDentro esperado = DentroDespacio(poligono, p);
                ++cuenta[esperado];
                ASSERT_EQ(poligono.EstaDentro(p, false), esperado) << k << ": " << x << ' ' << y;
                ASSERT_EQ(CLinea<double>(poligono).EstaDentro(CCoor3D<double>(p)), esperado);
            }
        }
    }
    for (const int tipo : {TD_FUERA, TD_DENTRO, TD_BORDE_DENTRO, TD_BORDE_FUERA})
        EXPECT_GT(cuenta[tipo], 100);
}

TEST(CLineaRelaciones, PlacePointsExactlyOnTheWholeRangeOfTheIntegers) {
    const CLinea<int> triangulo = Linea<int>({{INT_MIN, INT_MIN}, {INT_MAX, INT_MIN}, {INT_MAX, INT_MAX}});
    EXPECT_EQ(triangulo.EstaDentro({INT_MAX, INT_MAX, 0}), TD_BORDE_DENTRO);
    EXPECT_EQ(triangulo.EstaDentro({12345, 12345, 0}), TD_BORDE_FUERA);
    EXPECT_EQ(triangulo.EstaDentro({12345, 12346, 0}), TD_FUERA);
    EXPECT_EQ(triangulo.EstaDentro({12346, 12345, 0}), TD_DENTRO);
    const CLinea<int> aguja = Linea<int>({{INT_MIN, 0}, {INT_MAX, 1}, {INT_MAX, 0}});
    EXPECT_EQ(aguja.EstaDentro({INT_MAX - 1, 1, 0}), TD_FUERA);
    EXPECT_EQ(aguja.EstaDentro({INT_MAX - 1, 0, 0}), TD_BORDE_FUERA);
}

TEST(CLineaRelaciones, CountPointsThatAreNotFiniteAsOutside) {
    const CLinea<double> cuadrado = Linea<double>({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    for (const double mal : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(cuadrado.EstaDentro(CCoor3D<double>(mal, 5, 0)), TD_FUERA);
        EXPECT_EQ(cuadrado.EstaDentro(CCoor3D<double>(5, mal, 0)), TD_FUERA);
    }
    EXPECT_EQ(CLinea<double>().EstaDentro(CCoor3D<double>()), TD_FUERA);
}

TEST(CLineaRelaciones, LookAtHeightOnRequest) {
    CLinea<int> linea("L");
    linea << CCoor3D<int>(0, 0, 10) << CCoor3D<int>(10, 0, 20) << CCoor3D<int>(10, 10, 20);
    EXPECT_EQ(linea.EstaDentro({8, 2, 99}, false), TD_DENTRO);
    EXPECT_EQ(linea.EstaDentro({8, 2, 99}, true), TD_FUERA);
    EXPECT_EQ(linea.EstaDentro({8, 2, 9}, true), TD_FUERA);
    EXPECT_EQ(linea.EstaDentro({8, 2, 10}, true), TD_DENTRO);
}

TEST(CLineaRelaciones, FollowALastPointThatWasWritten) {
    CLinea<double> linea = Linea<double>({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
    linea.end() = {-100, 100, 0};
    EXPECT_EQ(linea.EstaDentro(CCoor3D<double>(-50, 51, 0)), TD_DENTRO);
    EXPECT_EQ(linea.EstaDentro(CMaximas<double>({-50, 52, 0}, {-49, 54, 0})), TD_DENTRO);
}

TEST(CLineaRelaciones, PlaceRectanglesInAllSixWays) {
    const CLinea<int> poligono = Linea<int>({{0, 0}, {100, 0}, {100, 100}, {50, 50}, {0, 100}}, true);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({45, 80, 0}, {55, 90, 0})), TD_FUERA);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({10, 10, 0}, {20, 20, 0})), TD_DENTRO);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({0, 10, 0}, {20, 20, 0})), TD_BORDE_DENTRO);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({-9, 10, 0}, {0, 20, 0})), TD_BORDE_FUERA);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({-9, -9, 0}, {200, 200, 0})), TD_ENCIERRA);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({40, 40, 0}, {60, 60, 0})), TD_CRUZA);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({0, 0, 0}, {100, 100, 0})), TD_BORDE_FUERA);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>()), TD_FUERA);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({10, 10, 0}, {10, 10, 0})), TD_DENTRO);
    EXPECT_EQ(poligono.EstaDentro(CMaximas<int>({0, 0, 0}, {0, 0, 0})), TD_BORDE_DENTRO);
}

TEST(CLineaRelaciones, TellACutThroughVerticesFromAWalkAlongTheBorder) {
    const CLinea<int> cuadrado = Linea<int>({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true);
    EXPECT_EQ(cuadrado.EstaDentro(Linea<int>({{-5, -5}, {15, 15}})), TD_CRUZA);
    EXPECT_EQ(cuadrado.EstaDentro(Linea<int>({{0, 0}, {10, 10}})), TD_BORDE_DENTRO);
    EXPECT_EQ(cuadrado.EstaDentro(Linea<int>({{-5, 5}, {5, 15}})), TD_BORDE_FUERA);
    EXPECT_EQ(cuadrado.EstaDentro(Linea<int>({{-5, 0}, {15, 0}})), TD_BORDE_FUERA);
    EXPECT_EQ(cuadrado.EstaDentro(Linea<int>({{0, 0}, {10, 0}, {10, 10}})), TD_BORDE_DENTRO);
    EXPECT_EQ(cuadrado.EstaDentro(cuadrado), TD_BORDE_DENTRO);
    EXPECT_EQ(cuadrado.EstaDentro(Linea<int>({{-1, 5}, {0, 5}, {1, 5}})), TD_CRUZA);
    // An open line round the polygon encloses nothing.
    const CLinea<int> abierta = Linea<int>({{-5, -5}, {20, -5}, {20, 20}, {-5, 20}, {-5, -4}});
    EXPECT_EQ(cuadrado.EstaDentro(abierta), TD_FUERA);
    EXPECT_EQ(CLinea<int>().EstaDentro(cuadrado), TD_FUERA);
    EXPECT_EQ(cuadrado.EstaDentro(CLinea<int>()), TD_FUERA);
}

TEST(CLineaRelaciones, PlaceLinesAsTheIntersectionMatrixDoes) {
    std::mt19937 azar(3);
    const GEOSContextHandle_t geos = geos::Contexto();
    int cuenta[7] = {};
    int probados = 0;
    for (int k = 0; probados < 3000 && k < 200000; ++k) {
        const CLinea<int> poligono = AlAzar(azar, 3 + k % 4, 7, true), linea = AlAzar(azar, 2 + k % 4, 7, k % 3 == 0);
        const geos::Geometria area = geos::DePoligono(poligono), curva = geos::DeLinea(linea);
        if (!area || !curva || GEOSisValid_r(geos, area.get()) != 1 || GEOSisValid_r(geos, curva.get()) != 1) continue;
        ++probados;
        char* texto = GEOSRelate_r(geos, curva.get(), area.get());
        const std::string matriz(texto);
        GEOSFree_r(geos, texto);
        const auto hay = [&matriz](std::size_t i, std::size_t j) { return matriz[i] != 'F' || matriz[j] != 'F'; };
        const bool bDentro = hay(0, 3), bToca = hay(1, 4), bFuera = hay(2, 5);
        CTipoDentro esperado = bDentro ? TD_DENTRO : TD_FUERA;
        if (bDentro && bFuera) {
            esperado = TD_CRUZA;
        } else if (bToca) {
            esperado = bFuera ? TD_BORDE_FUERA : TD_BORDE_DENTRO;
        } else if (!bDentro && linea.EsCerrada() && DentroDespacio(linea, poligono.Punto(0)) == TD_DENTRO) {
            esperado = TD_ENCIERRA;
        }
        ++cuenta[esperado];
        ASSERT_EQ(poligono.EstaDentro(linea), esperado) << matriz;
        ASSERT_EQ(CLinea<double>(poligono).EstaDentro(CLinea<double>(linea)), esperado) << matriz;
        ASSERT_EQ(poligono.Intersecta(linea), GEOSIntersects_r(geos, geos::DeLinea(poligono).get(), curva.get()) == 1);
    }
    EXPECT_EQ(probados, 3000);
    for (const int tipo : {TD_FUERA, TD_DENTRO, TD_BORDE_DENTRO, TD_BORDE_FUERA, TD_CRUZA})
        EXPECT_GT(cuenta[tipo], 9);
}

TEST(CLineaRelaciones, AppendEachCrossingToTheLine) {
    const CLinea<double> cuadrado = Linea<double>({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true);
    CLinea<double> rayo = Linea<double>({{-5, 4}, {15, 4}});
    EXPECT_EQ(rayo.Intersecta(cuadrado, 2, -1), 2U);
    ASSERT_EQ(rayo.NPuntos(), 4U);
    EXPECT_EQ(rayo.Punto(2), CCoor3D<double>(0, 4, 0));
    EXPECT_EQ(rayo.Punto(3), CCoor3D<double>(10, 4, 0));
    CLinea<double> lejos = Linea<double>({{-5, 40}, {15, 40}});
    EXPECT_EQ(lejos.Intersecta(cuadrado, 2, -1), 0U);
    EXPECT_EQ(lejos.NPuntos(), 2U);
    CLinea<double> esquina = Linea<double>({{-5, -5}, {5, 5}});
    EXPECT_EQ(esquina.Intersecta(cuadrado, 2, -1), 1U);
    CLinea<double> alLado = Linea<double>({{-5, 0}, {5, 0}});
    EXPECT_EQ(alLado.Intersecta(cuadrado, 2, -1), 2U);
    CLinea<double> una = Linea<double>({{-5, 4}, {15, 4}});
    EXPECT_EQ(una.Intersecta(cuadrado, 2, 1), 1U);
    EXPECT_EQ(una.Intersecta(CLinea<double>(), 2, -1), 0U);
}

TEST(CLineaRelaciones, GiveCrossingsTheHeightAskedFor) {
    CLinea<int> otra("O");
    otra << CCoor3D<int>(5, -10, 0) << CCoor3D<int>(5, 10, 100);
    const auto cota = [&otra](int nCota) {
        CLinea<int> linea("L");
        linea << CCoor3D<int>(0, 0, 10) << CCoor3D<int>(10, 0, 30);
        EXPECT_EQ(linea.Intersecta(otra, nCota, -1), 1U);
        return linea.end().z;
    };
    EXPECT_EQ(cota(0), 0);
    EXPECT_EQ(cota(1), 20);
    EXPECT_EQ(cota(2), 50);
}

TEST(CLineaRelaciones, FindTheCrossingsThatSolvingFinds) {
    std::mt19937 azar(8);
    std::uniform_real_distribution<double> real(0.0, 1000.0);
    for (int k = 0; k < 300; ++k) {
        CLinea<double> a("A"), b("B");
        for (int i = 0; i < 6; ++i)
            a << CCoor3D<double>(real(azar), real(azar), 0);
        for (int i = 0; i < 6; ++i)
            b << CCoor3D<double>(real(azar), real(azar), 0);
        unsigned esperados = 0;
        for (int i = 0; i < 5; ++i) {
            for (int j = 0; j < 5; ++j) {
                const CCoor3D<double> p = a.Punto(i), q = b.Punto(j), r = a.Punto(i + 1) - p, s = b.Punto(j + 1) - q;
                const double det = r.x * s.y - r.y * s.x;
                const double t = ((q.x - p.x) * s.y - (q.y - p.y) * s.x) / det;
                const double u = ((q.x - p.x) * r.y - (q.y - p.y) * r.x) / det;
                esperados += t >= 0 && t <= 1 && u >= 0 && u <= 1;
            }
        }
        EXPECT_EQ(a.Intersecta(b), esperados > 0);
        CLinea<double> c = a;
        ASSERT_EQ(c.Intersecta(b, 0, -1), esperados);
        for (unsigned i = 0; i < esperados; ++i) {
            double deA = HUGE_VAL, deB = HUGE_VAL;
            const CCoor3D<double>& p = c.Punto(static_cast<int>(6 + i));
            for (int j = 0; j < 5; ++j) {
                deA = std::min(deA, p.DistanciaARecta(a.Punto(j), a.Punto(j + 1)));
                deB = std::min(deB, p.DistanciaARecta(b.Punto(j), b.Punto(j + 1)));
            }
            EXPECT_LT(deA, 1e-8);
            EXPECT_LT(deB, 1e-6);
        }
    }
}

TEST(CLineaRelaciones, CrossExactlyOnTheWholeRangeOfTheIntegers) {
    const CLinea<int> a = Linea<int>({{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}});
    EXPECT_TRUE(a.Intersecta(Linea<int>({{0, 1}, {1, 0}})));
    EXPECT_TRUE(a.Intersecta(Linea<int>({{7, 7}, {100, 0}})));
    EXPECT_FALSE(a.Intersecta(Linea<int>({{7, 8}, {0, 100}})));
    EXPECT_FALSE(a.Intersecta(Linea<int>({{INT_MAX, INT_MAX - 1}, {INT_MAX, INT_MIN}})));
    CLinea<int> corte = a;
    EXPECT_EQ(corte.Intersecta(Linea<int>({{INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}}), 0, -1), 1U);
    EXPECT_LE(std::abs(corte.end().x), 1);
}

TEST(CLineaRelaciones, NeitherHangNorCrashOnWhatIsNotFinite) {
    const CLinea<double> cuadrado = Linea<double>({{0, 0}, {10, 0}, {10, 10}, {0, 10}}, true);
    CLinea<double> mala = Linea<double>({{std::nan(""), 5}, {HUGE_VAL, -HUGE_VAL}, {5, 5}});
    for (const CTipoDentro donde : {cuadrado.EstaDentro(mala), mala.EstaDentro(CCoor3D<double>(1, 1, 0))}) {
        EXPECT_TRUE(donde >= TD_FUERA && donde <= TD_CRUZA);
    }
    mala.Intersecta(cuadrado, 2, 5);
    EXPECT_LE(mala.NPuntos(), 8U);
}

}  // namespace
}  // namespace Vertiz
