// The part of a grid that each image covers, and what is left for the surface, held against counting cells.

#include "Drapeado.h"

#include <random>

namespace {

using modelos::Rejilla;
using Zona = std::array<int, 4>;  // rows and columns: first, last excluded

std::vector<Zona> Zonas(const CDataTexturas& r) {
    std::vector<Zona> zonas;
    for (const auto& z : r.m_ZonasLibres)
        zonas.push_back({z.Minima().y, z.Maxima().y, z.Minima().x, z.Maxima().x});
    return zonas;
}

/// A grid of 20 x 30 cells of 10, its north-west corner at (1000, 2200), and images of five units a pixel, cut for it
/// into tiles of eight cells.
class ZonasLibres : public Drapeado {
  protected:
    static constexpr int kFilas = 20, kColumnas = 30;

    void SetUp() override {
        m_dem = Rejilla(kFilas + 1, kColumnas + 1, [](int, int) { return 5.0F; }, {.oeste = 1000, .sur = 2000});
        Toma(m_dem);
        Tesela(16);
    }
    /// Drapes an image over these cells: first row and column, counts. They may lie beside the grid.
    void Cubre(int fila, int columna, int filas, int columnas) {
        ASSERT_EQ(Drapea(*Pinta(2 * columnas, 2 * filas, Abigarrado),
                         {.oeste = 1000.0 + 10 * columna, .norte = 2200.0 - 10 * fila, .pixel = 5, .resolucion = 5}),
                  1);
    }
    std::vector<Zona> Libres(unsigned i = 0) const { return Zonas(Registro(i)); }
    Vertiz::CDEM m_dem;
};

TEST_F(ZonasLibres, AnImageInsideTheGridHasFourBandsRoundIt) {
    Cubre(5, 8, 6, 10);
    EXPECT_EQ(Libres(), (std::vector<Zona>{{0, 6, 0, 30}, {11, 21, 0, 30}, {5, 12, 0, 8}, {5, 12, 18, 30}}));
}

TEST_F(ZonasLibres, AnImageThatCoversTheGridHasNone) {
    Cubre(0, 0, 20, 30);
    EXPECT_TRUE(Libres().empty());
    m_escena.DescargarImagen(0, 1, 1, 1);
    Cubre(-3, -4, 40, 50);
    EXPECT_TRUE(Libres().empty());
}

TEST_F(ZonasLibres, AnImageAtACornerHasTwo) {
    Cubre(0, 0, 6, 10);
    EXPECT_EQ(Libres(), (std::vector<Zona>{{6, 21, 0, 30}, {0, 7, 10, 30}}));
    m_escena.DescargarImagen(0, 1, 1, 1);
    Cubre(14, 20, 6, 10);
    EXPECT_EQ(Libres(), (std::vector<Zona>{{0, 15, 0, 30}, {14, 21, 0, 20}}));
}

TEST_F(ZonasLibres, AnImageThatReachesOutIsCutAtTheGridsEdge) {
    Cubre(-5, -6, 10, 16);
    EXPECT_EQ(Libres(), (std::vector<Zona>{{5, 21, 0, 30}, {0, 6, 10, 30}}));
}

TEST_F(ZonasLibres, AnImageThatEndsWithinACellTakesTheWholeCell) {
    // 11 pixels: five cells and a half, from the fifth row's line and the eighth column's.
    ASSERT_EQ(Drapea(*Pinta(11, 11, Abigarrado), {.oeste = 1080, .norte = 2105, .pixel = 5, .resolucion = 5}), 1);
    // Rows 9.5 to 15 of the grid.
    EXPECT_EQ(Libres(), (std::vector<Zona>{{0, 10, 0, 30}, {15, 21, 0, 30}, {9, 16, 0, 8}, {9, 16, 14, 30}}));
}

TEST_F(ZonasLibres, AnImageBesideTheGridLeavesAllOfItAndTakesNothingFromOthers) {
    Cubre(5, 8, 6, 10);
    const auto antes = Libres();
    for (const auto& [fila, columna] : {std::pair{-10, 8}, {20, 8}, {5, -10}, {5, 30}, {-10, -10}, {100, 100}}) {
        Cubre(fila, columna, 6, 10);
        EXPECT_EQ(Libres(0), antes) << fila << ", " << columna;
        EXPECT_EQ(Libres(1), (std::vector<Zona>{{0, 21, 0, 30}})) << fila << ", " << columna;
        m_escena.DescargarImagen(1, 1, 1, 1);
    }
    m_escena.DescargarImagen(0, 1, 1, 1);
    Cubre(-10, 8, 6, 10);
    EXPECT_EQ(Libres(), (std::vector<Zona>{{0, 21, 0, 30}})) << "the terrain stays";
}

TEST_F(ZonasLibres, ASecondImageCutsTheFirstOnesBandsAndHasItsOwn) {
    Cubre(5, 8, 6, 10);   // rows 5 to 11, columns 8 to 18
    Cubre(5, 18, 6, 12);  // all that lies east of it
    EXPECT_EQ(Libres(0), (std::vector<Zona>{{0, 6, 0, 30}, {11, 21, 0, 30}, {5, 12, 0, 8}}));
    EXPECT_EQ(Libres(1), (std::vector<Zona>{{0, 6, 0, 30}, {11, 21, 0, 30}, {5, 12, 0, 18}}))
        << "its own bands do not know the first";
}

TEST_F(ZonasLibres, AThirdImageCutsBothAndHasNone) {
    Cubre(5, 8, 6, 10);
    Cubre(5, 18, 6, 12);
    Cubre(11, 0, 9, 30);  // all of the south
    EXPECT_EQ(Libres(0), (std::vector<Zona>{{0, 6, 0, 30}, {5, 12, 0, 8}}));
    EXPECT_EQ(Libres(1), (std::vector<Zona>{{0, 6, 0, 30}, {5, 12, 0, 18}}));
    EXPECT_TRUE(Libres(2).empty());
}

TEST_F(ZonasLibres, ReloadingAppendsTheBandsAgain) {
    Cubre(5, 8, 6, 10);
    EXPECT_EQ(m_escena.RecargarTexturas(2), 1);
    EXPECT_EQ(Libres().size(), 8u);
    EXPECT_EQ(m_escena.RecargarImagen(1, 2), 0) << "there is none";
    m_escena.SetDEM(nullptr);
    EXPECT_EQ(m_escena.RecargarTexturas(2), 0);
    m_escena.SetDEM(&m_dem);
}

/// Images at random, against sets of cells.
class Recortes : public ZonasLibres {
  protected:
    using Celdas = std::array<std::array<int, kColumnas>, kFilas>;
    static void Suma(Celdas& celdas, const Zona& z) {
        // The last row of a rectangle is one of samples: cells end before it.
        for (int r = std::max(z[0], 0); r < std::min(z[1] - 1, kFilas); ++r)
            for (int c = std::max(z[2], 0); c < std::min(z[3], kColumnas); ++c)
                ++celdas[std::size_t(r)][std::size_t(c)];
    }
    static Celdas Cuenta(const std::vector<Zona>& zonas) {
        Celdas celdas{};
        for (const Zona& z : zonas)
            Suma(celdas, z);
        return celdas;
    }
    static bool SeTocan(const Celdas& a, const Celdas& b) {
        for (std::size_t r = 0; r < kFilas; ++r)
            for (std::size_t c = 0; c < kColumnas; ++c)
                if (a[r][c] > 0 && b[r][c] > 0) return true;
        return false;
    }
};

TEST_F(Recortes, EveryCellIsUnderAnImageOrFreeAndNoImageIsUnderAnothersBands) {
    std::mt19937 azar(11);
    const auto entre = [&](int a, int b) { return std::uniform_int_distribution(a, b)(azar); };
    for (int vez = 0; vez < 150; ++vez) {
        Celdas todas{};
        const unsigned cuantas = unsigned(entre(1, 5));
        for (unsigned i = 0; i < cuantas; ++i) {
            const int fila = entre(-4, 19), columna = entre(-4, 29), filas = entre(1, 14), columnas = entre(1, 20);
            Cubre(fila, columna, filas, columnas);
            Celdas imagen{};
            for (Celdas* celdas : {&imagen, &todas})
                Suma(*celdas, {fila, fila + filas + 1, columna, columna + columnas});
            // It has cut the bands of all others. A later one that cuts a band in two may lengthen it again.
            for (unsigned j = 0; j < i; ++j)
                ASSERT_FALSE(SeTocan(imagen, Cuenta(Libres(j)))) << vez << ": " << i << " under the bands of " << j;
        }
        for (unsigned i = 0; i < cuantas; ++i) {
            ASSERT_LT(Libres(i).size(), 200u);
            for (const Zona& z : Libres(i)) {
                EXPECT_TRUE(z[0] >= 0 && z[1] <= kFilas + 1 && z[2] >= 0 && z[3] <= kColumnas) << vez;
                Suma(todas, z);
            }
        }
        for (std::size_t r = 0; r < kFilas; ++r)
            for (std::size_t c = 0; c < kColumnas; ++c)
                ASSERT_GT(todas[r][c], 0) << vez << ": row " << r << ", column " << c << " is drawn by nobody";
        while (CuentaRegistros() > 0)
            m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

}  // namespace
