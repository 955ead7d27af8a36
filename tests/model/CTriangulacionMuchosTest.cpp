// Many points, made up and real, against what holds of every Delaunay triangulation, in time that goes with their
// number.

#include "Triangulaciones.h"
#include "support/Temporales.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

namespace triangulaciones {
namespace {

using Vertiz::CPuntoTIN;
using Vertiz::CTriangulacion;

// Twice the area that the hull of some points encloses, and how many of them lie on it, those inside its sides too.
struct CCasco {
    Entero area = 0;
    std::size_t puntos = 0;
};

CCasco Casco(std::vector<std::pair<int, int>> puntos) {
    std::ranges::sort(puntos);
    puntos.erase(std::ranges::unique(puntos).begin(), puntos.end());
    CCasco casco;
    for (int vuelta = 0; vuelta < 2; ++vuelta) {
        std::vector<CCoor3D<int>> cadena;
        for (const auto& [x, y] : puntos) {
            const CCoor3D<int> p(x, y, 0);
            while (cadena.size() >= 2 && Cruz(cadena[cadena.size() - 2], cadena.back(), p) < 0)
                cadena.pop_back();
            cadena.push_back(p);
        }
        for (std::size_t i = 0; i + 1 < cadena.size(); ++i)
            casco.area += Entero{cadena[i].x} * cadena[i + 1].y - Entero{cadena[i].y} * cadena[i + 1].x;
        casco.puntos += cadena.size() - 1;
        std::ranges::reverse(puntos);
    }
    return casco;
}

// The circle of a, b, c holds d, for coordinates that differ by less than 2^30: no product exceeds 2^124.
bool Dentro(const CCoor2D<int>& a, const CCoor2D<int>& b, const CCoor2D<int>& c, const CCoor2D<int>& d) {
    const long long ax = a.x - d.x, ay = a.y - d.y, bx = b.x - d.x, by = b.y - d.y, cx = c.x - d.x, cy = c.y - d.y;
    return Entero{ax * ax + ay * ay} * (bx * cy - by * cx) - Entero{bx * bx + by * by} * (ax * cy - ay * cx) +
               Entero{cx * cx + cy * cy} * (ax * by - ay * bx) >
           0;
}

// Each triangle turns left and each side is one of two triangles that name each other, or of the border: with as many
// triangles as Euler has, which cover the hull, that leaves no room for overlaps. No circle holds the vertex beyond.
void EsperaDelaunay(const CTIN& tin, const std::vector<CPuntoTIN>& puntos) {
    std::vector<std::pair<int, int>> lugares;
    for (const CPuntoTIN& p : puntos)
        lugares.emplace_back(p.x, p.y);
    const CCasco casco = Casco(lugares);
    Entero area = 0;
    std::size_t borde = 0;
    std::vector<bool> usado(tin.CantidadPuntos(), false);
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        const CPuntoTIN &a = tin.Vertice(i, 0), &b = tin.Vertice(i, 1), &c = tin.Vertice(i, 2);
        const Entero doble = Cruz(a, b, c);
        ASSERT_GT(doble, 0) << i;
        area += doble;
        for (int k = 0; k < 3; ++k) {
            const int vecino = tin.Fila(i).m_nVecinos[std::size_t(k)];
            const std::uint32_t desde = tin.Fila(i).m_nVertices[std::size_t(k)],
                                hasta = tin.Fila(i).m_nVertices[std::size_t((k + 1) % 3)];
            usado[desde - 1] = true;
            if (vecino < 0) {
                ++borde;
                continue;
            }
            const auto& otra = tin.Fila(unsigned(vecino));
            int m = 0;
            while (m < 3 && otra.m_nVecinos[std::size_t(m)] != int(i))
                ++m;
            ASSERT_LT(m, 3);
            ASSERT_EQ(otra.m_nVertices[std::size_t(m)], hasta);
            ASSERT_EQ(otra.m_nVertices[std::size_t((m + 1) % 3)], desde);
            if (unsigned(vecino) > i) {
                ASSERT_FALSE(Dentro(a, b, c, tin.Vertice(unsigned(vecino), (m + 2) % 3))) << i;
            }
        }
    }
    EXPECT_TRUE(area == casco.area);
    EXPECT_EQ(borde, casco.puntos);
    EXPECT_EQ(tin.CantidadTriangulos() + 2 + borde, 2 * std::size_t{tin.CantidadPuntos()});
    EXPECT_TRUE(std::ranges::all_of(usado, [](bool b) { return b; }));
    std::ranges::sort(lugares);
    EXPECT_EQ(tin.CantidadPuntos(), std::size_t(std::ranges::unique(lugares).begin() - lugares.begin()));
}

void EsperaDelaunay(const std::vector<CPuntoTIN>& puntos) {
    CTIN tin;
    ASSERT_EQ(CTriangulacion().Run(puntos, CDibujo<int>(), tin, nullptr, nullptr), 1);
    ASSERT_NO_FATAL_FAILURE(EsperaDelaunay(tin, puntos));
}

std::vector<CPuntoTIN> AlAzar(int cuantos, int rango) {
    std::mt19937 azar(1);
    std::uniform_int_distribution<int> dado(-rango, rango);
    std::vector<CPuntoTIN> puntos;
    for (int i = 0; i < cuantos; ++i) {
        const int x = dado(azar);
        puntos.emplace_back(x, dado(azar), 0);
    }
    return puntos;
}

TEST(TriangulacionDeMuchos, AMillionPointsAtRandom) {
    EsperaDelaunay(AlAzar(1000000, 500000000));
}

TEST(TriangulacionDeMuchos, AGridIsAllTies) {
    std::vector<CPuntoTIN> puntos;
    for (int i = 0; i < 200; ++i)
        for (int j = 0; j < 300; ++j)
            puntos.emplace_back(25 * j, 25 * i, 0);
    EsperaDelaunay(puntos);
}

TEST(TriangulacionDeMuchos, AFewPlacesAreTakenManyTimes) {
    EsperaDelaunay(AlAzar(100000, 60));
}

TEST(TriangulacionDeMuchos, ClustersOfAllSizes) {
    std::mt19937 azar(2);
    std::normal_distribution<double> campana;
    std::vector<CPuntoTIN> puntos;
    for (int i = 0; i < 100000; ++i) {
        const int grupo = i % 12;
        const double ancho = std::pow(3.0, grupo + 1);
        puntos.emplace_back(
            CCoor3D<double>(4e7 * grupo + ancho * campana(azar), 3e6 * grupo * grupo + ancho * campana(azar), 0.0));
    }
    EsperaDelaunay(puntos);
}

TEST(TriangulacionDeMuchos, PointsInOrderOnAParabolaAndOnTwoLines) {
    std::vector<CPuntoTIN> parabola, filas, cruz;
    for (int i = -15000; i <= 15000; ++i)
        parabola.emplace_back(i, i * i, 0);
    for (int i = 0; i < 50000; ++i)
        filas.emplace_back(i, i % 2 == 0 ? 0 : 100000, 0);
    for (int i = 0; i < 50000; ++i)
        cruz.emplace_back(i % 2 == 0 ? 10 * (i - 25000) : 0, i % 2 == 0 ? 0 : 10 * (i - 25000), 0);
    for (const auto& puntos : {parabola, filas, cruz})
        EsperaDelaunay(puntos);
}

// ---- Real data
// -------------------------------------------------------------------------------------------------------

std::string Lee(const char* nombre) {
    std::ifstream f(CarpetaDatos() / nombre, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), {}};
}

// The integers of a LAS file, as they are stored.
std::vector<CPuntoTIN> PuntosLas(const std::string& las) {
    const auto lee = [&las](std::size_t lugar, auto valor) {
        std::memcpy(&valor, las.data() + lugar, sizeof valor);
        return valor;
    };
    const std::size_t inicio = lee(96, std::uint32_t{}), largo = lee(105, std::uint16_t{}),
                      cuantos = lee(107, std::uint32_t{});
    std::vector<CPuntoTIN> puntos;
    for (std::size_t i = 0; i < cuantos && inicio + (i + 1) * largo <= las.size(); ++i) {
        const std::size_t lugar = inicio + i * largo;
        puntos.emplace_back(lee(lugar, int{}), lee(lugar + 4, int{}), lee(lugar + 8, int{}));
    }
    return puntos;
}

TEST(TriangulacionDeMuchos, PointsOfAScanner) {
    for (const char* nombre : {"las/autzen_trim.las", "las/spruce.las", "las/sample_c.las"}) {
        SALTA_SIN_DATOS(nombre);
        const auto puntos = PuntosLas(Lee(nombre));
        ASSERT_GT(puntos.size(), 10000u) << nombre;
        ASSERT_NO_FATAL_FAILURE(EsperaDelaunay(puntos)) << nombre;
    }
}

TEST(TriangulacionDeMuchos, NodesOfAGridOfHeights) {
    SALTA_SIN_DATOS("dem/srtmgl3_rocky_mountains.asc");
    std::istringstream fichero(Lee("dem/srtmgl3_rocky_mountains.asc"));
    fichero.imbue(std::locale::classic());
    int columnas = 0, filas = 0;
    std::string palabra;
    fichero >> palabra >> columnas >> palabra >> filas;
    ASSERT_GT(columnas, 10);
    std::vector<CPuntoTIN> puntos;
    for (int i = 0; i < std::min(filas, 200); ++i)
        for (int j = 0; j < std::min(columnas, 200); ++j)
            puntos.emplace_back(90 * j, -90 * i, 0);
    EsperaDelaunay(puntos);
}

// The points of a LandXML surface, thousandths of a unit from the first one.
std::vector<CPuntoTIN> PuntosXml(const std::string& xml) {
    std::vector<CPuntoTIN> puntos;
    std::array<double, 3> primero{};
    for (std::size_t i = xml.find("<P id"); i != std::string::npos; i = xml.find("<P id", i + 1)) {
        const char *p = xml.data() + xml.find('>', i) + 1, *fin = xml.data() + xml.size();
        std::array<double, 3> v{};
        for (double& c : v) {
            while (*p == ' ')
                ++p;
            p = std::from_chars(p, fin, c).ptr;
        }
        if (puntos.empty()) primero = v;
        puntos.emplace_back(
            CCoor3D<double>((v[1] - primero[1]) * 1e3, (v[0] - primero[0]) * 1e3, (v[2] - primero[2]) * 1e3));
    }
    return puntos;
}

TEST(TriangulacionDeMuchos, PointsOfDesignSurfaces) {
    for (const char* nombre : {"tin/olympus-new.xml", "tin/S4.xml", "tin/subdivision.xml"}) {
        SALTA_SIN_DATOS(nombre);
        const auto puntos = PuntosXml(Lee(nombre));
        ASSERT_GT(puntos.size(), 1000u) << nombre;
        ASSERT_NO_FATAL_FAILURE(EsperaDelaunay(puntos)) << nombre;
    }
}

}  // namespace
}  // namespace triangulaciones
