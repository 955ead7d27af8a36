// Where points and lines lie on a triangulated terrain, against looking at all triangles.

#include "MallasPrueba.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <set>

namespace {

using namespace mallas;
using Vertiz::CMarcasTriangulo;

// A surface with a hole, a bay, an island in the hole, two parts that touch in a point, and a deleted triangle.
CTIN Recortada(std::mt19937& azar, int vez) {
    CTIN tin = Azarosa(azar, 40 + vez % 5 * 60, vez % 2 == 0 ? 12 : 100000, 1000);
    std::vector<CPuntoTIN> puntos(tin.Puntos().begin(), tin.Puntos().end());
    std::vector<CTIN::CFila> filas;
    std::uniform_int_distribution<int> dado(0, 5);
    // Triangles go for good here and there, so that the rest isn't convex, and come apart, and some are marked.
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        if (dado(azar) == 0) continue;
        filas.push_back(tin.Fila(i));
        filas.back().SetBorrado(dado(azar) == 0);
    }
    CTIN nueva;
    nueva.TomaSueltos(std::move(puntos), std::move(filas));
    return nueva;
}

// All that can be asked of a place, against the plain search.
void Compara(const CTIN& tin, const CCoor3D<int>& p, int desde) {
    const std::vector<unsigned> visibles = Todos(tin, p), todos = Todos(tin, p, false);
    const int hallado = tin.Localiza(p.x, p.y, true, 0, desde);
    if (visibles.empty()) {
        ASSERT_EQ(hallado, -1);
    } else {
        ASSERT_NE(std::ranges::find(visibles, unsigned(hallado)), visibles.end()) << hallado;
    }
    const int cualquiera = tin.Localiza(p.x, p.y, true, 1, desde);
    if (todos.empty()) {
        ASSERT_EQ(cualquiera, -1);
    } else {
        ASSERT_NE(std::ranges::find(todos, unsigned(cualquiera)), todos.end()) << cualquiera;
    }
    // Inside when the angles of the triangles round the place make a whole turn: they cover all points close to it.
    double angulo = 0;
    for (const unsigned i : visibles) {
        const CTriangulo t = tin.Triangulo(i);
        int enLado = 0, vertice = -1;
        for (int k = 0; k < 3; ++k) {
            enLado += Cruz(*t.Punto(k), *t.Punto((k + 1) % 3), p) == 0;
            if (CCoor2D<int>(*t.Punto(k)) == CCoor2D<int>(p)) vertice = k;
        }
        angulo += vertice >= 0 ? t.Punto(vertice)->Angulo(*t.Punto((vertice + 1) % 3), *t.Punto((vertice + 2) % 3))
                  : enLado > 0 ? 3.14159265358979
                               : 6.28318530717959;
    }
    ASSERT_EQ(tin.Localiza(p.x, p.y, false, 0, desde) >= 0, angulo > 6.2831) << angulo;
}

TEST(CTINLocaliza, FindsWhatAPlainSearchFindsOnBrokenSurfaces) {
    std::mt19937 azar(5);
    std::array<int, 3> veces{};
    for (int vez = 0; vez < 30; ++vez) {
        const CTIN tin = Recortada(azar, vez);
        const int alcance = vez % 2 == 0 ? 13 : 105000;
        std::uniform_int_distribution<int> dado(-alcance, alcance), cual(0, int(tin.CantidadPuntos()) - 1),
            triangulo(-1, int(tin.CantidadTriangulos()) - 1);
        for (int i = 0; i < 200; ++i) {
            CCoor3D<int> p(dado(azar), dado(azar), 0);
            if (i % 3 == 0) p = tin.Punto(unsigned(cual(azar)));
            if (i % 3 == 1) {
                const CPuntoTIN& q = tin.Punto(unsigned(cual(azar)));
                p.y = q.y;
            }
            const std::size_t n = Todos(tin, p).size();
            ++veces[std::min<std::size_t>(n, 2)];
            ASSERT_NO_FATAL_FAILURE(Compara(tin, p, triangulo(azar))) << vez << ", " << i << ": " << p.x << " " << p.y;
        }
    }
    for (const int n : veces)
        EXPECT_GT(n, 300);
}

TEST(CTINLocaliza, RealPlacesAreDecidedExactly) {
    // The diagonal of a huge square: a place one step of a double beside it lies on one side only.
    const int lado = 2000000000;
    const CTIN tin = Malla({{0, 0, 0}, {lado, 0, 0}, {lado, lado - 1, 0}, {0, lado, 0}}, {{1, 2, 3}, {1, 3, 4}});
    for (const double x : {3.0, 1e9 + 0.5, 1.7e9}) {
        const double y = x * (double(lado - 1) / lado);
        for (const double q : {std::nextafter(y, 0.0), y, std::nextafter(y, 1e10)}) {
            // q lado = x (lado - 1) decided in whole numbers of 2^-60.
            const Entero izquierda = Entero(std::ldexp(q, 60)) * lado, derecha = Entero(std::ldexp(x, 60)) * (lado - 1);
            ASSERT_EQ(std::ldexp(q, 60), std::floor(std::ldexp(q, 60)));
            if (izquierda == derecha) continue;
            EXPECT_EQ(tin.Localiza(x, q, true, 0), izquierda < derecha ? 0 : 1) << x << " " << q - y;
        }
    }
    EXPECT_EQ(tin.Localiza(NAN, 1, true, 0), -1);
    EXPECT_EQ(tin.Localiza(1, INFINITY, true, 1), -1);
    EXPECT_EQ(CTIN().Localiza(0, 0, true, 0), -1);
}

TEST(CTINLocaliza, WallsWithoutAreaHoldNoPlace) {
    // A step: two level squares, and an upright wall between them.
    const CTIN tin = Malla({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {10, 0, 50}, {10, 10, 50}, {20, 0, 50}},
                           {{1, 2, 3}, {1, 3, 4}, {2, 5, 6}, {2, 6, 3}, {5, 7, 6}});
    CCoor3D<int> p(10, 5, 0);
    unsigned t = 99;
    EXPECT_TRUE(tin.Proyecta(p, true, 0, &t));
    EXPECT_TRUE(p.z == 0 || p.z == 50) << p.z;
    EXPECT_TRUE(t == 0 || t == 4) << t;
    for (const int x : {9, 11}) {
        CCoor3D<int> q(x, 3, 7);
        EXPECT_TRUE(tin.Proyecta(q, true, 0, nullptr));
        EXPECT_EQ(q.z, x < 10 ? 0 : 50);
    }
    for (int desde = 0; desde < 5; ++desde)
        EXPECT_TRUE(tin.Localiza(10, 5, true, 0, desde) == 0 || tin.Localiza(10, 5, true, 0, desde) == 4) << desde;
    // In line with a wall, but beyond its end, lies ground.
    const CTIN otra = Malla({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {10, 0, 50}, {10, 20, 0}, {20, 15, 0}, {0, 15, 0}},
                            {{1, 2, 3}, {2, 4, 3}, {3, 6, 5}, {3, 5, 7}});
    for (int desde = 0; desde < 4; ++desde)
        EXPECT_GE(otra.Localiza(10, 15, true, 0, desde), 2) << desde;
}

TEST(CTINLocaliza, AChangedTerrainIsSafeToAskBeforeItIsCountedAgain) {
    std::mt19937 azar(6);
    CTIN tin = Azarosa(azar, 300, 1000, 10);
    for (unsigned i = 0; i < tin.CantidadTriangulos(); i += 3) {
        CTriangulo t = tin.Triangulo(i);
        t.SetPunto2(nullptr), t.SetVecino(int(i % 3), int(i * 7 % tin.CantidadTriangulos()));
        tin.ModificaTriangulo(t, i);
    }
    for (unsigned i = 0; i < tin.CantidadPuntos(); i += 2)
        tin.ModificaPunto(CPuntoTIN(int(i) * 7919 % 2000 - 1000, int(i) * 104729 % 2000 - 1000, 0), i);
    CDibujo<int> dibujo;
    for (int i = 0; i < 300; ++i) {
        const int t = tin.Localiza(i * 31 % 2000 - 1000, i * 17 % 2000 - 1000, i % 2 == 0, unsigned(i % 3) % 2);
        EXPECT_LT(t, int(tin.CantidadTriangulos()));
        CLinea<int> linea;
        linea << CCoor3D<int>(-1000, i * 7 - 1000, 0) << CCoor3D<int>(1000, 1000 - i * 7, 0);
        tin.Proyecta(linea, true, false, false, 0, 0, true);
    }
    EXPECT_EQ(tin.Limites(dibujo, 0, 0), 1);
    ASSERT_EQ(tin.GeneraCurvas({}), 1);
    EXPECT_EQ(tin.DameCurvas(dibujo, nullptr), 1);
    EXPECT_GE(tin.Volumen(0).m_dEncima, 0.0);
}

TEST(CTINProyecta, HeightsAreThoseOfTheTrianglesPlane) {
    std::mt19937 azar(7);
    for (const int decimales : {0, 2, -1}) {
        const auto plano = [](double x, double y) { return 3 * x - 2 * y + 5; };
        const CTIN tin = Cuadricula(10, 7, 100, plano, CDataSemilla(decimales, 1e6, 5, 9));
        const double unidad = std::pow(10.0, -decimales);
        std::uniform_real_distribution<double> x(0, 1000), y(0, 700);
        unsigned cerca = ~0U;
        for (int i = 0; i < 500; ++i) {
            const double px = x(azar), py = y(azar);
            CCoor3D<double> p(px * unidad, py * unidad, -1, 4);
            ASSERT_TRUE(tin.Proyecta(p, true, 0, i % 2 == 0 ? &cerca : nullptr));
            EXPECT_NEAR(p.z, plano(px, py) * unidad, 1e-9 * unidad * 1e4);
            EXPECT_EQ(p.GetTipoCompleto(), 4);
            EXPECT_EQ(p.x, px * unidad);
        }
        ASSERT_LT(cerca, tin.CantidadTriangulos());
        CCoor3D<double> fuera(1001 * unidad, 5, -1);
        EXPECT_FALSE(tin.Proyecta(fuera, true, 0, nullptr));
        EXPECT_EQ(fuera.z, -1);
        CCoor3D<double> borde(1000 * unidad, 350 * unidad, -1);
        EXPECT_FALSE(tin.Proyecta(borde, false, 0, nullptr));
        EXPECT_TRUE(tin.Proyecta(borde, true, 0, nullptr));
    }
}

TEST(CTINProyecta, DeletedTrianglesCountOnlyWhenAsked) {
    CTIN tin = Cuadricula(2, 1, 10, [](int x, int) { return x; });
    tin.BorraTriangulo(0);
    CCoor3D<int> p(8, 2, -5);
    EXPECT_FALSE(tin.Proyecta(p, true, 0, nullptr));
    EXPECT_EQ(p.z, -5);
    EXPECT_TRUE(tin.Proyecta(p, true, 1, nullptr));
    EXPECT_EQ(p.z, 8);
    EXPECT_EQ(tin.Localiza(5, 5, true, 0), 1) << "on its side, the other one is found";
    EXPECT_EQ(tin.Localiza(5, 5, false, 0), -1) << "which is a border now";
    EXPECT_GE(tin.Localiza(5, 5, false, 1), 0);
}

// ---- Lines ----

CLinea<int> Recta(const std::vector<CCoor3D<int>>& puntos) {
    CLinea<int> linea(L"X");
    for (const auto& p : puntos)
        linea << p;
    return linea;
}

TEST(CTINProyectaLinea, PointsAreAddedWhereItCrossesSides) {
    const CTIN tin = Cuadricula(3, 1, 10, [](int x, int) { return x * x; });
    CLinea<int> linea = Recta({{1, 2, -7, 5}, {29, 2, -7, 6}});
    EXPECT_TRUE(tin.Proyecta(linea, true, false, false, 0, 0, true));
    const std::vector<CCoor3D<int>> esperados{{1, 2, 10},   {2, 2, 20},   {10, 2, 100}, {12, 2, 160},
                                              {20, 2, 400}, {22, 2, 500}, {29, 2, 850}};
    ASSERT_EQ(linea.NPuntos(), esperados.size());
    for (unsigned i = 0; i < linea.NPuntos(); ++i) {
        EXPECT_EQ(linea.Punto(int(i)), esperados[i]) << i;
        EXPECT_EQ(linea.Punto(int(i)).GetTipoCompleto(), i + 1 < linea.NPuntos() ? 5 : 6);
    }
    EXPECT_EQ(linea.GetCodigo(), CString(L"X"));
    linea = Recta({{1, 2, -7}, {29, 2, -7}});
    EXPECT_TRUE(tin.Proyecta(linea, false, false, false, 1000, 0, true));
    ASSERT_EQ(linea.NPuntos(), 2u);
    EXPECT_EQ(linea.Punto(1).z, 1850);
}

TEST(CTINProyectaLinea, AlongSidesAndThroughVerticesEachVertexComesOnce) {
    const CTIN tin = Cuadricula(3, 3, 10, [](int x, int y) { return x + 100 * y; });
    for (const auto& [desde, hasta, cuantos] :
         {std::tuple(CCoor3D<int>(0, 10, 0), CCoor3D<int>(30, 10, 0), 4u),  // along inner sides
          std::tuple(CCoor3D<int>(30, 0, 0), CCoor3D<int>(0, 0, 0), 4u),    // along the border
          std::tuple(CCoor3D<int>(0, 0, 0), CCoor3D<int>(30, 30, 0), 4u),   // along diagonals
          std::tuple(CCoor3D<int>(30, 0, 0), CCoor3D<int>(0, 30, 0), 7u),   // across them
          std::tuple(CCoor3D<int>(5, 10, 0), CCoor3D<int>(7, 10, 0), 2u),   // inside one side
          std::tuple(CCoor3D<int>(10, 10, 0), CCoor3D<int>(20, 30, 0), 3u)}) {
        CLinea<int> linea = Recta({desde, hasta});
        EXPECT_TRUE(tin.Proyecta(linea, true, false, false, 0, 0, true));
        EXPECT_EQ(linea.NPuntos(), cuantos) << desde.x << " " << desde.y;
        for (const auto& p : linea.Puntos())
            EXPECT_EQ(p.z, p.x + 100 * p.y);
    }
}

TEST(CTINProyectaLinea, PointsWithoutSurfaceGoOrStay) {
    CTIN tin = Cuadricula(3, 1, 10, [](int x, int) { return x; });
    tin.BorraTriangulo(2), tin.BorraTriangulo(3);  // the middle square
    const std::vector<CCoor3D<int>> puntos{{-5, 5, 77}, {4, 5, 77}, {14, 5, 77}, {28, 5, 77}};
    CLinea<int> linea = Recta(puntos);
    EXPECT_FALSE(tin.Proyecta(linea, true, false, false, 0, 0, true));
    const auto xs = [&linea] {
        std::vector<int> valores;
        for (const auto& p : linea.Puntos())
            valores.push_back(p.x);
        return valores;
    };
    EXPECT_EQ(xs(), (std::vector<int>{0, 4, 5, 10, 20, 25, 28})) << "the surface's borders are met, too";
    linea = Recta(puntos);
    EXPECT_FALSE(tin.Proyecta(linea, false, true, false, 0, 0, true));
    ASSERT_EQ(xs(), (std::vector<int>{-5, 4, 14, 28}));
    EXPECT_EQ(linea.Punto(0).z, 77);
    EXPECT_EQ(linea.Punto(1).z, 4);
    EXPECT_EQ(linea.Punto(2).z, 77);
    linea = Recta({puntos[1], puntos[2]});
    EXPECT_TRUE(tin.Proyecta(linea, false, false, true, 0, 0, true)) << "with deleted triangles";
    EXPECT_EQ(linea.Punto(1).z, 14);
    linea = Recta({{100, 100, 5}});
    EXPECT_FALSE(tin.Proyecta(linea, true, false, false, 0, 0, true));
    EXPECT_EQ(linea.NPuntos(), 0u);
    linea = Recta({{0, 5, 5}});
    EXPECT_FALSE(tin.Proyecta(linea, true, false, false, 0, 0, false)) << "the border doesn't belong to it";
    linea = Recta({});
    EXPECT_TRUE(tin.Proyecta(linea, true, false, false, 0, 0, true));
    linea = Recta(puntos);
    EXPECT_FALSE(CTIN().Proyecta(linea, true, true, false, 0, 0, true));
    EXPECT_EQ(linea.NPuntos(), 4u);
}

TEST(CTINProyectaLinea, AddedPointsKeepTheirDistanceWhenAsked) {
    const CTIN tin = Cuadricula(3, 1, 10, [](int x, int) { return x; });
    CLinea<int> linea = Recta({{1, 2, 0}, {29, 2, 0}});
    EXPECT_TRUE(tin.Proyecta(linea, true, false, false, 0, 3, true));
    std::vector<int> xs;
    for (const auto& p : linea.Puntos())
        xs.push_back(p.x);
    EXPECT_EQ(xs, (std::vector<int>{1, 10, 20, 29}));
}

TEST(CTINProyectaLinea, RandomLinesMeetTheSidesThatAPlainSearchMeets) {
    std::mt19937 azar(8);
    int propios = 0;
    for (int vez = 0; vez < 40; ++vez) {
        const CTIN tin = Recortada(azar, vez);
        const int alcance = vez % 2 == 0 ? 13 : 105000;
        std::uniform_int_distribution<int> dado(-alcance, alcance), cual(0, int(tin.CantidadPuntos()) - 1);
        for (int i = 0; i < 40; ++i) {
            CCoor3D<int> a(dado(azar), dado(azar), 0), b(dado(azar), dado(azar), 0);
            if (i % 4 == 0) a = tin.Punto(unsigned(cual(azar)));
            if (i % 4 == 1) b = tin.Punto(unsigned(cual(azar)));
            a.z = b.z = 0;
            if (CCoor2D<int>(a) == CCoor2D<int>(b)) continue;
            // Every place inside the segment where it meets a side of a shown triangle, in whole numbers.
            std::set<std::pair<int, int>> esperados;
            for (unsigned t = 0; t < tin.CantidadTriangulos(); ++t) {
                if (!tin.EsVisible(t)) continue;
                for (int k = 0; k < 3; ++k) {
                    const CPuntoTIN &c = tin.Vertice(t, k), &d = tin.Vertice(t, (k + 1) % 3);
                    const Entero ladoA = Cruz(c, d, a), ladoB = Cruz(c, d, b), ladoC = Cruz(a, b, c),
                                 ladoD = Cruz(a, b, d);
                    const auto entre = [&](const CPuntoTIN& v) {
                        const Entero avance =
                            (Entero{v.x} - a.x) * (Entero{b.x} - a.x) + (Entero{v.y} - a.y) * (Entero{b.y} - a.y);
                        return avance > 0 && double(avance) < a.Distancia2(b, 0);
                    };
                    if (ladoC == 0 && entre(c)) esperados.emplace(c.x, c.y);
                    if ((ladoC > 0 ? ladoD < 0 : ladoC < 0 && ladoD > 0) &&
                        (ladoA > 0 ? ladoB < 0 : ladoA < 0 && ladoB > 0)) {
                        const std::pair<int, int> p(Entre(a.x, b.x, ladoA, ladoA - ladoB),
                                                    Entre(a.y, b.y, ladoA, ladoA - ladoB));
                        if (p != std::pair(a.x, a.y) && p != std::pair(b.x, b.y)) esperados.insert(p), ++propios;
                    }
                }
            }
            CLinea<int> linea = Recta({a, b});
            tin.Proyecta(linea, true, true, false, 0, 0, true);
            std::set<std::pair<int, int>> hallados;
            double antes = -1;
            for (unsigned j = 0; j < linea.NPuntos(); ++j) {
                const CCoor3D<int>& p = linea.Punto(int(j));
                EXPECT_GT(p.Distancia(a, 0), antes - 1.5) << "in order";
                antes = p.Distancia(a, 0);
                if (j > 0 && j + 1 < linea.NPuntos()) hallados.emplace(p.x, p.y);
            }
            ASSERT_EQ(hallados, esperados) << vez << ", " << i;
        }
    }
    EXPECT_GT(propios, 5000);
}

}  // namespace
