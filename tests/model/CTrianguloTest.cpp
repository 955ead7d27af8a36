// One triangle: its words of marks, its geometry, and its pieces.

#include "MallasPrueba.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <random>

namespace {

using namespace mallas;
using Vertiz::CMarcasTriangulo;

TEST(CMarcasTriangulo, EachMarkHasItsOwnBits) {
    const auto palabras = [](auto pon) {
        CMarcasTriangulo marcas;
        pon(marcas);
        return std::pair(marcas.GetPalabra(0), marcas.GetPalabra(1));
    };
    using P = std::pair<unsigned, unsigned>;
    EXPECT_EQ(palabras([](auto& m) { m.SetBorrado(true); }), P(1u << 10, 0u));
    EXPECT_EQ(palabras([](auto& m) { m.SetIndiceTextura(511); }), P(511u << 17, 0u));
    EXPECT_EQ(palabras([](auto& m) { m.SetFilaTextura(63); }), P(63u << 26, 0u));
    EXPECT_EQ(palabras([](auto& m) { m.SetTipoTextura(3); }), P(0u, 3u));
    EXPECT_EQ(palabras([](auto& m) { m.SetColumnaTextura(63); }), P(0u, 63u << 2));
    EXPECT_EQ(palabras([](auto& m) { m.SetPared(true); }), P(0u, 1u << 8));
    EXPECT_EQ(palabras([](auto& m) { m.SetTipoTriangulo(255); }), P(0u, 255u << 9));
    EXPECT_EQ(palabras([](auto& m) { m.SetRuptura(0), m.SetRuptura(2); }), P(5u, 0u));
    EXPECT_EQ(palabras([](auto& m) { m.SetLimite(1); }), P(16u, 0u));
}

TEST(CMarcasTriangulo, MarksAreReadBackAndLeaveTheOthersAlone) {
    CMarcasTriangulo m;
    m.SetPalabra(0, ~0U), m.SetPalabra(1, ~0U);
    EXPECT_TRUE(m.EsBorrado() && m.EsPared() && m.EsRuptura(1) && m.EsLimite(2) && m.TieneRuptura());
    m.SetIndiceTextura(300), m.SetFilaTextura(40), m.SetColumnaTextura(22), m.SetTipoTextura(2), m.SetTipoTriangulo(7);
    m.SetBorrado(false), m.SetPared(false), m.SetRuptura(1, false), m.SetLimite(2, false);
    EXPECT_EQ(m.GetIndiceTextura(), 300u);
    EXPECT_EQ(m.GetFilaTextura(), 40u);
    EXPECT_EQ(m.GetColumnaTextura(), 22u);
    EXPECT_EQ(m.GetTipoTextura(), 2u);
    EXPECT_EQ(m.GetTipoTriangulo(), 7u);
    EXPECT_FALSE(m.EsBorrado() || m.EsPared() || m.EsRuptura(1) || m.EsLimite(2));
    EXPECT_TRUE(m.EsRuptura(0) && m.EsRuptura(2) && m.EsLimite(0) && m.EsLimite(1));
    EXPECT_EQ(m.GetPalabra(0) >> 11 & 63U, 63u) << "bits of nobody's";
    EXPECT_EQ(m.GetPalabra(1) >> 17, 0x7FFFu);
    m.SetIndiceTextura(512 + 5);
    EXPECT_EQ(m.GetIndiceTextura(), 5u);
    EXPECT_EQ(m.GetFilaTextura(), 40u);
}

TEST(CPuntoTIN, TakesIntensityClassAndColourFromACloud) {
    const CCoor3D<int> nube(1, 2, 3, int(0xC5U << 24 | 3U << 16 | 0xABCDU));
    const CPuntoTIN p(nube, Vertiz::tipoAero3{9, 10, 20, 30});
    EXPECT_EQ(p.GetIntensidad(), 0xABCDu);
    EXPECT_EQ(p.GetClase(), 0xC5u);
    EXPECT_EQ(p.GetRojo(), 10u);
    EXPECT_EQ(p.GetVerde(), 20u);
    EXPECT_EQ(p.GetAzul(), 30u);
    EXPECT_EQ(p, CCoor3D<int>(1, 2, 3));
    EXPECT_EQ(p.GetNumero(), 0);
}

TEST(CSetPuntosMdt, NumbersPointsWhenAsked) {
    Vertiz::CSetPuntosMdt puntos(2, 10);
    EXPECT_EQ(puntos.size(), 2u);
    EXPECT_EQ(puntos.at(1).GetNumero(), 2);
    CPuntoTIN p(5, 6, 7);
    p.SetNumero(-9);
    puntos.push_back(p, false);
    puntos.push_back(p, true);
    EXPECT_EQ(puntos.at(2).GetNumero(), -9);
    EXPECT_EQ(puntos.at(3).GetNumero(), 4);
    puntos.clear();
    EXPECT_TRUE(puntos.empty());
    EXPECT_EQ(Vertiz::CSetPuntosMdt(0, 0).size(), 0u);
}

struct Tres {
    CPuntoTIN a, b, c;
    CTriangulo t{&a, &b, &c, -1, -1, -1};
    Tres(const CCoor3D<int>& p, const CCoor3D<int>& q, const CCoor3D<int>& r) : a(p), b(q), c(r) {}
};

TEST(CTriangulo, VerticesNeighboursAndExtents) {
    Tres v({0, 5, -1}, {10, -3, 4}, {2, 8, 9});
    CTriangulo t;
    EXPECT_FALSE(t.EsValido());
    t.SetPunto1(&v.a), t.SetPunto2(&v.b);
    EXPECT_FALSE(t.EsValido()) << "without its third vertex";
    t.SetPunto3(&v.c);
    EXPECT_TRUE(t.EsValido());
    t.SetVecino(1, 70000);
    EXPECT_EQ(t.Vecino(1), 70000);
    EXPECT_EQ(t.Vecino(0), -1);
    EXPECT_EQ(t.GetMinX(), 0);
    EXPECT_EQ(t.GetMaxX(), 10);
    EXPECT_EQ(t.GetMinY(), -3);
    EXPECT_EQ(t.GetMaxY(), 8);
    EXPECT_EQ(t.GetMinZ(), -1);
    EXPECT_EQ(t.GetMaxZ(), 9);
    EXPECT_EQ(t.GetMaximas(), Vertiz::CMaximas<int>({0, -3, -1}, {10, 8, 9}));
    CCoor3D<int> centro(0, 0, 0, 12);
    t.CentroMasas(centro);
    EXPECT_EQ(centro, CCoor3D<int>(4, 3, 4));
    EXPECT_EQ(centro.GetTipoCompleto(), 12);
    t.SetPuntos(&v.c, &v.a, &v.b);
    EXPECT_EQ(t.Punto(0), &v.c);
    EXPECT_EQ(t.Punto3(), &v.b);
}

TEST(CTriangulo, CentresAndAreasHoldAtTheEndsOfTheRange) {
    Tres v({INT_MIN, INT_MIN, INT_MAX}, {INT_MAX, INT_MIN, INT_MAX}, {INT_MIN, INT_MAX, INT_MAX});
    CCoor3D<int> centro;
    v.t.CentroMasas(centro);
    EXPECT_EQ(centro, CCoor3D<int>(-715827883, -715827883, INT_MAX));
    const double lado = 4294967295.0;
    EXPECT_DOUBLE_EQ(v.t.SuperficiePlana(), lado * lado / 2);
    EXPECT_DOUBLE_EQ(v.t.SuperficieReal(), lado * lado / 2);
    CCoor3D<int> p(0, -1, 5);
    EXPECT_TRUE(v.t.Proyecta(p, true, 0, 1.0));
    EXPECT_EQ(p.z, INT_MAX);
}

TEST(CTriangulo, SlopesAreInDegrees) {
    EXPECT_DOUBLE_EQ(Tres({0, 0, 7}, {9, 0, 7}, {0, 9, 7}).t.Pendiente(), 0.0);
    EXPECT_NEAR(Tres({0, 0, 0}, {9, 0, 9}, {0, 9, 0}).t.Pendiente(), 45.0, 1e-12);
    EXPECT_NEAR(Tres({0, 0, 0}, {0, 9, 0}, {9, 0, 9}).t.Pendiente(), 45.0, 1e-12) << "whichever way it turns";
    EXPECT_NEAR(Tres({0, 0, 0}, {9, 0, 0}, {3, 0, 9}).t.Pendiente(), 90.0, 1e-12) << "upright";
    EXPECT_DOUBLE_EQ(Tres({0, 0, 0}, {1, 1, 1}, {3, 3, 3}).t.Pendiente(), 0.0) << "in line";
    EXPECT_NEAR(Tres({0, 0, 0}, {3, 0, 4}, {0, 9, 0}).t.SuperficieReal(), 22.5, 1e-12);
    EXPECT_NEAR(Tres({0, 0, 0}, {3, 0, 4}, {0, 9, 0}).t.SuperficiePlana(), 13.5, 1e-12);
}

TEST(CTriangulo, PointsAreProjectedExactlyAndRoundedOnce) {
    std::mt19937 azar(1);
    for (const int rango : {3, 40, 1000000, INT_MAX})
        for (int i = 0; i < 4000; ++i) {
            std::uniform_int_distribution<int> dado(rango == INT_MAX ? INT_MIN : -rango, rango);
            const auto punto = [&] { return CCoor3D<int>(dado(azar), dado(azar), dado(azar)); };
            Tres v(punto(), punto(), punto());
            CCoor3D<int> p = punto();
            if (i % 3 == 0) v.t.CentroMasas(p);
            if (i % 7 == 0) p = v.b;
            const Entero area = Cruz(v.a, v.b, v.c), u = Cruz(v.b, v.c, p), w = Cruz(v.c, v.a, p),
                         x = Cruz(v.a, v.b, p);
            const bool bCerca = area > 0 ? u >= 0 && w >= 0 && x >= 0 : area < 0 && u <= 0 && w <= 0 && x <= 0;
            const bool bDentro = bCerca && u != 0 && w != 0 && x != 0;
            const CCoor3D<int> antes = p;
            CCoor3D<int> q = p;
            ASSERT_EQ(v.t.Proyecta(q, false, 0, 1.0), bDentro);
            ASSERT_EQ(v.t.Proyecta(p, true, 1, 1.0), bCerca);
            ASSERT_EQ(p, antes) << "it only tells";
            ASSERT_EQ(v.t.Proyecta(p, true, 0, 1.0), bCerca);
            if (!bCerca) {
                ASSERT_EQ(p, antes);
                continue;
            }
            // |p.z area - sum| is at most half the area.
            const Entero resto = (p.z * area - (v.a.z * u + v.b.z * w + v.c.z * x)) * 2;
            ASSERT_LE(resto < 0 ? -resto : resto, area < 0 ? -area : area);
        }
}

TEST(CTriangulo, HeightsAreScaledWhenAsked) {
    Tres v({0, 0, 100}, {10, 0, 200}, {0, 10, 300});
    CCoor3D<int> p(5, 5, 0);
    EXPECT_TRUE(v.t.Proyecta(p, true, 0, 0.5));
    EXPECT_EQ(p.z, 125);
}

Entero DobleArea(const CTriangulo& t) {
    const Entero area = Cruz(*t.Punto1(), *t.Punto2(), *t.Punto3());
    return area;
}

TEST(CTriangulo, ACutMakesThreePiecesOrTwoThroughAVertex) {
    Tres v({0, 0, 0}, {100, 0, 100}, {0, 100, 200});
    CPuntoTIN a(7, 7, 7, 3), b;
    a.SetNumero(-1), b.SetNumero(-2);
    CTriangulo t1, t2, t3;
    ASSERT_TRUE(v.t.DivideTrianguloX(t1, t2, t3, 40, &a, &b));
    EXPECT_TRUE(t1.EsValido() && t2.EsValido() && t3.EsValido());
    EXPECT_EQ(DobleArea(t1) + DobleArea(t2) + DobleArea(t3), Entero{10000});
    EXPECT_GT(DobleArea(t1), 0);
    EXPECT_GT(DobleArea(t2), 0);
    EXPECT_GT(DobleArea(t3), 0);
    EXPECT_EQ(a.GetNumero(), -1) << "number and type stay";
    EXPECT_EQ(a.GetTipoCompleto(), 3);
    const CPuntoTIN& abajo = a.y == 0 ? a : b;
    const CPuntoTIN& arriba = a.y == 0 ? b : a;
    EXPECT_EQ(abajo, CCoor3D<int>(40, 0, 40));
    EXPECT_EQ(arriba, CCoor3D<int>(40, 60, 160));
    ASSERT_TRUE(v.t.DivideTrianguloY(t1, t2, t3, 50, &a, &b));
    EXPECT_EQ(DobleArea(t1) + DobleArea(t2) + DobleArea(t3), Entero{10000});
    // Through a vertex.
    Tres w({0, 0, 0}, {100, -50, 0}, {100, 50, 60});
    Tres x({50, 0, 0}, {100, -50, 0}, {0, 60, 60});
    ASSERT_TRUE(x.t.DivideTrianguloX(t1, t2, t3, 50, &a, &b));
    EXPECT_TRUE(t1.EsValido() && t2.EsValido());
    EXPECT_FALSE(t3.EsValido());
    EXPECT_EQ(DobleArea(t1) + DobleArea(t2), DobleArea(x.t));
    EXPECT_EQ(a, CCoor3D<int>(50, 5, 30));
    // Touching isn't cutting.
    a = CPuntoTIN(1, 1, 1);
    for (const int corte : {-1, 0, 100, 101})
        EXPECT_FALSE(w.t.DivideTrianguloX(t1, t2, t3, corte, &a, &b)) << corte;
    EXPECT_EQ(a, CCoor3D<int>(1, 1, 1));
    EXPECT_FALSE(v.t.DivideTrianguloY(t1, t2, t3, 100, &a, &b));
}

TEST(CTriangulo, RandomCutsKeepAreaAndTurnAndEachPieceItsSide) {
    std::mt19937 azar(2);
    int cortados = 0, porVertice = 0;
    for (int i = 0; i < 20000; ++i) {
        const int rango = i % 3 == 0 ? 6 : 1000000;
        std::uniform_int_distribution<int> dado(-rango, rango);
        const auto punto = [&] { return CCoor3D<int>(dado(azar), dado(azar), dado(azar)); };
        Tres v(punto(), punto(), punto());
        CPuntoTIN a, b;
        CTriangulo t[3];
        const int corte = i % 4 == 0 ? v.a.x : dado(azar);
        const bool bCorta = v.t.GetMinX() < corte && corte < v.t.GetMaxX();
        ASSERT_EQ(v.t.DivideTrianguloX(t[0], t[1], t[2], corte, &a, &b), bCorta);
        if (!bCorta) continue;
        ++cortados;
        porVertice += t[2].Punto1() == nullptr;
        EXPECT_EQ(a.x, corte);
        Entero suma = 0;
        for (const CTriangulo& pieza : t) {
            if (pieza.Punto1() == nullptr) continue;
            suma += DobleArea(pieza);
            EXPECT_TRUE(pieza.GetMaxX() <= corte || pieza.GetMinX() >= corte);
        }
        // Rounding moves each new corner by half a unit at most, across the triangle's width.
        const Entero falta = suma - DobleArea(v.t);
        const Entero ancho = Entero{v.t.GetMaxX()} - v.t.GetMinX();
        EXPECT_LE(falta < 0 ? -falta : falta, ancho * 2);
    }
    EXPECT_GT(cortados, 5000);
    EXPECT_GT(porVertice, 500);
}

TEST(CTriangulo, PiecesRememberWhereTheyComeFrom) {
    CTriangulo t;
    EXPECT_TRUE(t.Trozos().empty());
    t.AlmacenaTrozoCurva(5);
    t.AlmacenaTrozoCurva(9);
    EXPECT_EQ(t.Trozos(), (std::vector<std::uint32_t>{5, 9}));
}

}  // namespace
