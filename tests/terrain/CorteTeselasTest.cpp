// The file that an image is cut into, held byte by byte against a slow and plain computation.

#include "Drapeado.h"
#include "support/Progreso.h"

#include <bit>
#include <cmath>
#include <random>
#include <string>

namespace {

using modelos::Rejilla;

// Pixels as a raster keeps them, rows from the bottom.
std::vector<BYTE> Pixeles(const Vertiz::IRaster& raster) {
    const int ancho = raster.Ancho(), alto = raster.Alto100() / 100, bytes = raster.BytesPixel();
    std::vector<BYTE> pixeles;
    for (int r = 0; r < alto; ++r)
        for (int c = 0; c < ancho; ++c) {
            BYTE pixel[3]{};
            EXPECT_TRUE(raster.GetPixel(pixel, r, c, 0));
            pixeles.insert(pixeles.end(), pixel, pixel + bytes);
        }
    return pixeles;
}

class Corte : public Drapeado {
  protected:
    /// Drapes and compares record and file.
    void Comprueba(const Vertiz::CDEM& dem, Vertiz::IRaster& raster, int tesela, const Carga& carga) {
        const TeselasEsperadas esperadas(dem, tesela, raster.Ancho(), raster.Alto100() / 100, raster.BytesPixel(),
                                         Pixeles(raster), carga);
        Tesela(tesela);
        ASSERT_EQ(Drapea(raster, carga), 1);
        const auto index = unsigned(CuentaRegistros()) - 1;
        const CDataTexturas r = Registro(index);
        EXPECT_EQ(r.m_nAnchoTextura, esperadas.tesela);
        EXPECT_EQ(r.m_nAltoTextura, esperadas.tesela);
        EXPECT_EQ(r.m_nAnchoImagen, esperadas.anchoImagen);
        EXPECT_EQ(r.m_nAltoImagen, esperadas.altoImagen);
        EXPECT_EQ(r.m_nNumFilas, esperadas.numFilas);
        EXPECT_EQ(r.m_nNumCols, esperadas.numCols);
        EXPECT_EQ(r.m_nCeldasFila, esperadas.celdasFila);
        EXPECT_EQ(r.m_nCeldasCol, esperadas.celdasCol);
        EXPECT_EQ(r.m_nAltoUtil, esperadas.altoUtil);
        EXPECT_EQ(r.m_nAnchoUtil, esperadas.anchoUtil);
        EXPECT_EQ(r.m_nDespFila, esperadas.despFila);
        EXPECT_EQ(r.m_nDespCol, esperadas.despCol);
        EXPECT_DOUBLE_EQ(r.m_dOrigenX, esperadas.origenX);
        EXPECT_DOUBLE_EQ(r.m_dOrigenY, esperadas.origenY);
        EXPECT_EQ(r.m_bPiramidales, carga.piramide);
        EXPECT_EQ(r.m_dSizePixel, carga.resolucion);
        const std::vector<BYTE> fichero = Fichero(index);
        ASSERT_EQ(fichero.size(), esperadas.fichero.size());
        const auto distinto = std::mismatch(fichero.begin(), fichero.end(), esperadas.fichero.begin());
        EXPECT_EQ(distinto.first, fichero.end()) << "byte " << distinto.first - fichero.begin() << " of "
                                                 << fichero.size() << ", slots of " << r.m_nSizeTextura;
    }
};

/// Depth and home of the pixels, pyramid.
struct Forma {
    int bits, modo, piramide;
};
class Aleatorio : public Corte, public testing::WithParamInterface<Forma> {};

TEST_P(Aleatorio, ImagesAndPlacesGiveTheFileThatPlainCodeGives) {
    const Forma forma = GetParam();
    std::mt19937 azar(unsigned(forma.bits * 100 + forma.modo * 10 + forma.piramide));
    const auto entre = [&](int a, int b) { return std::uniform_int_distribution(a, b)(azar); };
    Vertiz::CDEM dem = Rejilla(12, 15, [](int r, int c) { return float(r * c); },
                               {.celdaX = 8, .celdaY = 4, .oeste = 500000, .sur = 4100000});
    Toma(dem);
    for (int vez = 0; vez < 40; ++vez) {
        const double pixeles[] = {0.25, 0.5, 1, 2, 3, 1.25, 10}, razones[] = {1, 1, 2, 0.5, 1.5, 3, 0.75, 0.3};
        Carga carga;
        carga.pixel = pixeles[entre(0, 6)];
        carga.resolucion = carga.pixel * razones[entre(0, 7)];
        carga.oeste = 500000 + entre(-320, 320) * 0.25;
        carga.norte = 4100000 + 44 + entre(-160, 160) * 0.25;
        carga.piramide = forma.piramide;
        const int ancho = entre(1, 70), alto = entre(1, 50);
        const int tesela = std::max(1 << entre(5, 7), int(std::bit_ceil(unsigned(std::ceil(8 / carga.resolucion)))));
        const Pintor colores = [](int r, int c) { return Abigarrado(r, c); };
        SCOPED_TRACE(testing::Message() << vez << ": " << ancho << " x " << alto << " of " << carga.pixel << " as "
                                        << carga.resolucion << ", tiles of " << tesela);
        const auto raster =
            forma.bits == 24 ? Pinta(ancho, alto, colores, forma.modo) : PintaGris(ancho, alto, colores, forma.modo);
        Comprueba(dem, *raster, tesela, carga);
        if (HasFailure()) return;
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Corte, Aleatorio,
                         testing::Values(Forma{24, 0, 0}, Forma{24, 1, 0}, Forma{8, 0, 0}, Forma{8, 1, 0},
                                         Forma{24, 0, 1}, Forma{24, 1, 1}, Forma{8, 0, 1}),
                         [](const auto& i) {
                             return std::to_string(i.param.bits) + (i.param.modo ? "File" : "Memory") +
                                    (i.param.piramide ? "Pyramid" : "");
                         });

/// A grid of 20 x 20 cells of 10, its north-west corner at (1000, 2200), and images of a unit a pixel.
class Corte20 : public Corte {
  protected:
    void SetUp() override {
        m_dem = Rejilla(21, 21, [](int, int) { return 5.0F; }, {.oeste = 1000, .sur = 2000});
        Toma(m_dem);
    }
    /// The colour of a tile's pixel.
    static Color Pixel(const std::vector<BYTE>& fichero, const CDataTexturas& r, int fila, int col, int i, int j) {
        const auto p = r.Tesela(unsigned(fila), unsigned(col)) * std::size_t(r.m_nSizeTextura) +
                       std::size_t(i * r.m_nAnchoTextura + j) * 3;
        return {fichero.at(p), fichero.at(p + 1), fichero.at(p + 2)};
    }
    Vertiz::CDEM m_dem;
};

TEST_F(Corte20, EachPixelLiesWhereTheImageHasIt) {
    // Terrain X and Y of a tile's pixel, by the record's origin, name the image's pixel.
    Tesela(64);
    const Carga carga{.oeste = 1017, .norte = 2163};
    ASSERT_EQ(Drapea(*Pinta(150, 150, Abigarrado), carga), 1);
    const CDataTexturas r = Registro();
    const std::vector<BYTE> fichero = Fichero();
    EXPECT_EQ(r.m_nAnchoUtil, 60);
    int vistos = 0;
    for (int fila = 0; fila < r.m_nNumFilas; ++fila)
        for (int col = 0; col < r.m_nNumCols; ++col)
            for (int i = 0; i < 60; ++i)
                for (int j = 0; j < 60; ++j) {
                    const double x = r.m_dOrigenX + col * 60 + j + 0.5;
                    const double y = r.m_dOrigenY + (r.m_nNumFilas - fila) * 60 - i - 0.5;
                    const int columna = int(std::floor(x - carga.oeste)), filaImagen = int(std::floor(carga.norte - y));
                    if (columna < 0 || columna >= 150 || filaImagen < 0 || filaImagen >= 150) continue;
                    ++vistos;
                    ASSERT_EQ(Pixel(fichero, r, fila, col, i, j), Abigarrado(filaImagen, columna))
                        << "tile " << fila << ", " << col << ", pixel " << i << ", " << j;
                }
    // Less than a cell of it lies south of the tiles, which end at a line of the grid.
    EXPECT_EQ(r.m_dOrigenY, 2020);
    EXPECT_EQ(vistos, 150 * 143);
}

TEST_F(Corte20, WhatLiesBesideTheImageIsWhiteAboveAndOnTheWestAndRepeatedElsewhere) {
    // North of the grid's edge the tiles move south, to the line of the grid.
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(50, 50, Abigarrado), {.oeste = 1015, .norte = 2205}), 1);
    const CDataTexturas r = Registro();
    const std::vector<BYTE> fichero = Fichero();
    ASSERT_EQ(r.NumTeselas(), 1u);
    constexpr Color kBlanco{255, 255, 255};
    // 60 pixels in each direction, from (1010, 2210): the image begins 5 to the east and 5 to the south.
    EXPECT_EQ(r.m_dOrigenX, 1010);
    EXPECT_EQ(r.m_dOrigenY, 2150);
    EXPECT_EQ(Pixel(fichero, r, 0, 0, 4, 30), kBlanco) << "above the image";
    EXPECT_EQ(Pixel(fichero, r, 0, 0, 30, 4), kBlanco) << "west of it";
    EXPECT_EQ(Pixel(fichero, r, 0, 0, 5, 5), Abigarrado(0, 0));
    EXPECT_EQ(Pixel(fichero, r, 0, 0, 54, 54), Abigarrado(49, 49));
    EXPECT_EQ(Pixel(fichero, r, 0, 0, 54, 63), Abigarrado(49, 49)) << "the last column goes on";
    EXPECT_EQ(Pixel(fichero, r, 0, 0, 63, 54), Abigarrado(49, 49)) << "and the last row";
}

TEST_F(Corte20, EightBitsAtTheirOwnResolutionAreWhite) {
    Tesela(64);
    ASSERT_EQ(Drapea(*PintaGris(50, 50, Abigarrado), {.oeste = 1000, .norte = 2200}), 1);
    const std::vector<BYTE> fichero = Fichero();
    EXPECT_EQ(fichero, std::vector<BYTE>(64 * 64 * 3, 255)) << "white, not a hole";
}

TEST_F(Corte20, EightBitsThatAreSampledShowInGrey) {
    Tesela(64);
    ASSERT_EQ(Drapea(*PintaGris(50, 50, Abigarrado), {.oeste = 1000, .norte = 2200, .resolucion = 2}), 1);
    const CDataTexturas r = Registro();
    const std::vector<BYTE> fichero = Fichero();
    const int arriba = r.m_nAltoUtil - 25;  // the image ends with the tile
    // A pixel of the texture takes the upper left one of the image's four.
    const BYTE gris = Abigarrado(6, 8)[0];
    EXPECT_EQ(Pixel(fichero, r, 0, 0, arriba + 3, 4), (Color{gris, gris, gris}));
}

TEST_F(Corte20, APaletteShowsItsFirstByteInGrey) {
    std::vector<BYTE> paleta(1024);
    for (std::size_t i = 0; i < 256; ++i)
        paleta[4 * i] = BYTE(255 - i), paleta[4 * i + 1] = 10, paleta[4 * i + 2] = 20;
    const Carga carga{.oeste = 1000, .norte = 2200, .resolucion = 2};
    Tesela(64);
    ASSERT_EQ(Drapea(*PintaGris(50, 50, Abigarrado, 0, paleta.data()), carga), 1);
    const CDataTexturas r = Registro();
    const BYTE gris = BYTE(255 - Abigarrado(6, 8)[0]);
    EXPECT_EQ(Pixel(Fichero(), r, 0, 0, r.m_nAltoUtil - 25 + 3, 4), (Color{gris, gris, gris}));
}

TEST_F(Corte20, APictureOfFewerBitsIsWhite) {
    for (const double resolucion : {1.0, 2.0}) {
        Vertiz::CBmp raster;
        ASSERT_TRUE(raster.Crear(50, 50, 4, 100.0F, false, nullptr, nullptr, false));
        Tesela(64);
        ASSERT_EQ(Drapea(raster, {.oeste = 1000, .norte = 2200, .resolucion = resolucion}), 1);
        const std::vector<BYTE> fichero = Fichero();
        EXPECT_EQ(fichero, std::vector<BYTE>(fichero.size(), 255)) << resolucion;
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

TEST_F(Corte20, RowsThatCanNotBeReadAreWhite) {
    struct Rota : Vertiz::CBmp {
        int legibles = 0;  // rows from the south
        bool GetFila(BYTE* pixeles, int fila, int columna, int n) const override {
            return fila < legibles && CBmp::GetFila(pixeles, fila, columna, n);
        }
    };
    for (const double resolucion : {1.0, 2.0})
        for (const int legibles : {0, 20}) {
            Rota raster;
            ASSERT_TRUE(raster.Crear(50, 50, 24, 100.0F, false, nullptr, nullptr, false));  // black
            raster.legibles = legibles;
            Tesela(64);
            ASSERT_EQ(Drapea(raster, {.oeste = 1000, .norte = 2200, .resolucion = resolucion}), 1);
            const std::vector<BYTE> fichero = Fichero();
            // The south rows and those that repeat the last of them to the edge of the tile; no hole.
            const int negras = legibles == 0 ? 0 : resolucion == 1.0 ? (20 + 4) * 64 : (10 + 2) * 32;
            EXPECT_EQ(std::count(fichero.begin(), fichero.end(), 0), 3 * negras);
            EXPECT_EQ(std::count(fichero.begin(), fichero.end(), 255), std::ssize(fichero) - 3 * negras);
            m_escena.DescargarImagen(0, 1, 1, 1);
        }
}

TEST_F(Corte20, AllLevelsOfAPyramidAreThereDownToAPixel) {
    // 64 down to 1: seven levels of 3 x 3 tiles.
    Tesela(64);
    ASSERT_EQ(Drapea(*Pinta(150, 150,
                            [](int, int) {
                                return Color{10, 20, 30};
                            }),
                     {.oeste = 1000, .norte = 2200, .piramide = 1}),
              1);
    const CDataTexturas r = Registro();
    ASSERT_EQ(r.NumTeselas(), 9u);
    std::size_t bytes = 0;
    const std::vector<BYTE> fichero = Fichero();
    for (int lado = 64; lado > 0; lado /= 2) {
        const int ranura = (lado * 24 + 31) / 32 * 4 * lado;
        for (int t = 0; t < 9; ++t) {
            // The first row is in the image's north, which the tiles' doesn't reach: look at the last one.
            const std::size_t p = bytes + std::size_t(ranura * t + (lado - 1) * lado * 3);
            EXPECT_EQ((Color{fichero.at(p), fichero.at(p + 1), fichero.at(p + 2)}), (Color{10, 20, 30}))
                << "side " << lado << ", tile " << t;
        }
        bytes += std::size_t(9 * ranura);
    }
    EXPECT_EQ(fichero.size(), bytes);
}

TEST_F(Corte20, ReducedTilesKeepTheirPlaceFarFromTheEdge) {
    // 30 of 32 pixels are used: 15, then 7.5 and 3.75. Cut off to 7 and 3, the first tile would show the image six
    // pixels of the level too far south.
    Tesela(32);
    const auto franjas = [](int r, int) { return Color{BYTE(r), 0, 0}; };
    ASSERT_EQ(Drapea(*Pinta(32, 240, franjas), {.oeste = 1000, .norte = 2200, .piramide = 1}), 1);
    const CDataTexturas r = Registro();
    ASSERT_EQ(r.m_nNumFilas, 8);
    ASSERT_EQ(r.m_nAltoUtil, 30);
    const std::vector<BYTE> fichero = Fichero();
    std::size_t inicio = 0;
    const auto n = r.NumTeselas();
    for (int nivel = 0, lado = 32; nivel < 4; ++nivel, lado /= 2) {
        const auto ranura = std::size_t(lado * lado * 3);
        for (unsigned t = 0; t < 8; ++t) {
            const int rojo = fichero[inicio + r.Tesela(t, 0) * ranura];
            EXPECT_NEAR(rojo, int(30 * t), 2 << nivel) << "level " << nivel << ", tile " << t;
        }
        inicio += ranura * n;
    }
}

TEST_F(Corte20, TilesThatTheImageDoesNotTouchAreHolesAndTheFileHasItsLength) {
    // An image that begins west of its first tile's pixels: moved by less than a cell it may leave the last tiles
    // empty.
    Tesela(16);
    const Carga carga{.oeste = 995, .norte = 2200};
    ASSERT_EQ(Drapea(*Pinta(11, 10, Abigarrado), carga), 1);
    const CDataTexturas r = Registro();
    ASSERT_EQ(r.NumTeselas(), 2u);
    const std::vector<BYTE> fichero = Fichero();
    ASSERT_EQ(fichero.size(), 2u * 16 * 16 * 3);
    EXPECT_TRUE(std::all_of(fichero.begin() + 16 * 16 * 3, fichero.end(), [](BYTE b) { return b == 0; }));
    EXPECT_EQ(Pixel(fichero, r, 0, 0, 0, 0), Abigarrado(0, 5));
}

TEST_F(Corte20, SizesOfTheRasterAreReadAgainAfterEachHalving) {
    // An odd width: 25, 13, 7, 4. The last pixel of each level is repeated to the tile's edge.
    Tesela(32);
    const auto franjas = [](int, int c) { return Color{BYTE(10 * c), 0, 0}; };
    ASSERT_EQ(Drapea(*Pinta(25, 25, franjas), {.oeste = 1000, .norte = 2200, .piramide = 1}), 1);
    const std::vector<BYTE> fichero = Fichero();
    std::size_t inicio = 0;
    for (int lado = 32, ultima = 24; lado >= 8; lado /= 2) {
        const std::size_t fila = inicio + std::size_t((lado - 1) * lado * 3);
        EXPECT_EQ(fichero[fila + std::size_t(lado - 1) * 3], BYTE(10 * ultima)) << lado;
        inicio += std::size_t(lado * lado * 3);
        ultima -= ultima % (64 / lado);
    }
}

TEST_F(Corte20, ProgressCountsTheRowsOfAllTilesAndLevels) {
    Tesela(64);
    Progreso progreso;
    ASSERT_EQ(Drapea(*Pinta(150, 150, Abigarrado), {.oeste = 1017, .norte = 2205, .piramide = 1}, 2), 1);
    // 3 x 3 tiles of 60 useful rows; 30, 15, 7, 3, 1, 1.
    EXPECT_EQ(progreso.m_Etapas.at(0), 12194u);
    EXPECT_EQ(progreso.m_nAbiertas, 0);
    std::vector<std::pair<int, int>> filas;
    for (std::size_t i = 0; i < progreso.m_Pasos.size(); ++i)
        if (progreso.m_Pasos[i].second == 9 * (60 + 30 + 15 + 7 + 3 + 1 + 1)) filas.push_back(progreso.m_Pasos[i]);
    ASSERT_FALSE(filas.empty());
    for (std::size_t i = 1; i < filas.size(); ++i)
        EXPECT_GT(filas[i].first, filas[i - 1].first);
    EXPECT_EQ(filas.back().first, filas.back().second) << "what is skipped counts too";
}

TEST_F(Corte20, WithoutALevelOfMessagesThereIsNoProgress) {
    Tesela(64);
    Progreso progreso(1);
    EXPECT_EQ(Drapea(*Pinta(50, 50, Abigarrado), {.oeste = 1000, .norte = 2200}, 0), 1);
    EXPECT_EQ(CuentaRegistros(), 1u);
    EXPECT_TRUE(progreso.m_Etapas.empty());
}

}  // namespace
