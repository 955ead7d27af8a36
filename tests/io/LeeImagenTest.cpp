// Pictures of the terrain that the tests make: place and colours of the pixels, other systems, damage, progress.

#include "io/LeeImagen.h"

#include "Sistemas.h"
#include "model/CElipsoide.h"
#include "model/CPuntoPortula.h"
#include "support/Progreso.h"
#include "support/Temporales.h"

#include <gdal.h>
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <fstream>
#include <functional>
#include <numbers>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Vertiz::CDataLeeImagen;
using Vertiz::CMaximas;
using Vertiz::CResultadoImagen;
using Vertiz::LeeImagen;
using Color = std::array<int, 3>;  // red, green, blue
using Coor = Vertiz::CCoor3D<double>;

CString Nombre(const std::filesystem::path& p) {
    return CString(p.string().c_str());
}

// A GeoTIFF of these colours, north row first; `ajusta` may set what else the header has.
struct Tiff {
    int m_nColumnas = 4, m_nFilas = 3, m_nBandas = 3, m_nEPSG = 25830;
    GDALDataType m_nTipo = GDT_Byte;
    std::function<int(int fila, int columna, int banda)> m_Valor = [](int f, int c, int b) {
        return 10 * f + c + 80 * b;
    };
    std::vector<double> m_Colocacion{440000.0, 10.0, 0.0, 4480000.0, 0.0, -10.0};
    std::function<void(GDALDatasetH)> m_Ajusta;

    void Graba(const std::filesystem::path& ruta) const {
        GDALAllRegister();
        const GDALDatasetH d =
            GDALCreate(GDALGetDriverByName("GTiff"), ruta.c_str(), m_nColumnas, m_nFilas, m_nBandas, m_nTipo, nullptr);
        ASSERT_NE(d, nullptr);
        auto t = m_Colocacion;
        if (!t.empty()) GDALSetGeoTransform(d, t.data());
        if (m_nEPSG != 0) GDALSetProjection(d, WKT(m_nEPSG).c_str());
        if (m_Ajusta) m_Ajusta(d);
        std::vector<int> fila(static_cast<std::size_t>(m_nColumnas));
        for (int b = 0; b < m_nBandas; ++b)
            for (int f = 0; f < m_nFilas; ++f) {
                for (int c = 0; c < m_nColumnas; ++c)
                    fila[std::size_t(c)] = m_Valor(f, c, b);
                ASSERT_EQ(GDALRasterIO(GDALGetRasterBand(d, b + 1), GF_Write, 0, f, m_nColumnas, 1, fila.data(),
                                       m_nColumnas, 1, GDT_Int32, 0, 0),
                          CE_None);
            }
        GDALClose(d);
    }
};

class Imagenes : public testing::Test {
  protected:
    CResultadoImagen Lee(const Tiff& tiff, const CDataLeeImagen& opciones = {}) {
        tiff.Graba(m_Ruta);
        return LeeImagen(Nombre(m_Ruta), opciones);
    }
    CResultadoImagen LeeBien(const Tiff& tiff, const CDataLeeImagen& opciones = {}) {
        CResultadoImagen leida = Lee(tiff, opciones);
        EXPECT_EQ(leida.m_nResultado, 1) << leida.m_Error.Utf8();
        return leida;
    }
    /// What is wrong with a file, without its name.
    std::string Error(const Tiff& tiff, const CDataLeeImagen& opciones = {}) {
        const CResultadoImagen leida = Lee(tiff, opciones);
        EXPECT_EQ(leida.m_nResultado, 0);
        EXPECT_EQ(leida.m_pRaster, nullptr);
        const std::string texto = leida.m_Error.Utf8(), nombre = m_Ruta.string() + ": ";
        EXPECT_TRUE(texto.starts_with(nombre)) << texto;
        EXPECT_EQ(texto.find('\n'), std::string::npos);
        return texto.substr(std::min(nombre.size(), texto.size()));
    }
    /// A pixel by its row from the north.
    static Color Pixel(const CResultadoImagen& leida, int fila, int columna) {
        BYTE bgr[3] = {};
        const int alto = leida.m_pRaster->Alto100() / leida.m_pRaster->Factor100();
        EXPECT_TRUE(leida.m_pRaster->GetPixel(bgr, alto - 1 - fila, columna, 0)) << fila << ", " << columna;
        return {bgr[2], bgr[1], bgr[0]};
    }
    static bool Cubierto(const CResultadoImagen& leida, int fila, int columna) {
        const int ancho = leida.m_pRaster->Ancho(), alto = leida.m_pRaster->Alto100() / leida.m_pRaster->Factor100();
        return leida.m_Cubiertos.at(std::size_t((alto - 1 - fila) * ancho + columna)) != 0;
    }
    static std::pair<int, int> Tamano(const CResultadoImagen& leida) {
        return {leida.m_pRaster->Ancho(), leida.m_pRaster->Alto100() / leida.m_pRaster->Factor100()};
    }

    CarpetaTemporal m_Carpeta;
    std::filesystem::path m_Ruta = m_Carpeta.Ruta() / "orto ñ.tif";
};

TEST_F(Imagenes, PixelsComeAsTheyAreFromTheSouthernRowOn) {
    const CResultadoImagen leida = LeeBien({});
    EXPECT_EQ(Tamano(leida), (std::pair{4, 3}));
    EXPECT_EQ(leida.m_pRaster->BytesPixel(), 3);
    for (int f = 0; f < 3; ++f)
        for (int c = 0; c < 4; ++c) {
            EXPECT_EQ(Pixel(leida, f, c), (Color{10 * f + c, 10 * f + c + 80, 10 * f + c + 160}));
            EXPECT_TRUE(Cubierto(leida, f, c));
        }
    EXPECT_EQ(leida.m_Imagen.m_nTipo, Vertiz::CDataImagen::ABSOLUTA);
    EXPECT_EQ(leida.m_Imagen.m_dXOeste, 440000.0);
    EXPECT_EQ(leida.m_Imagen.m_dYNorte, 4480000.0);
    EXPECT_EQ(leida.m_Imagen.m_dPixelX, 10.0);
    EXPECT_EQ(leida.m_Imagen.m_dPixelY, 10.0);
    EXPECT_THAT(leida.m_Mensajes, IsEmpty());
}

TEST_F(Imagenes, GreysPalettesAndAlphaBecomeColours) {
    Tiff gris;
    gris.m_nBandas = 1;
    EXPECT_EQ(Pixel(LeeBien(gris), 2, 3), (Color{23, 23, 23}));

    Tiff paleta = gris;
    paleta.m_Valor = [](int f, int c, int) { return (f + c) % 3; };
    paleta.m_Ajusta = [](GDALDatasetH d) {
        const GDALColorTableH tabla = GDALCreateColorTable(GPI_RGB);
        const GDALColorEntry colores[] = {{1, 2, 3, 255}, {100, 50, 25, 255}, {200, 0, 255, 255}};
        for (int i = 0; i < 3; ++i)
            GDALSetColorEntry(tabla, i, &colores[i]);
        GDALSetRasterColorTable(GDALGetRasterBand(d, 1), tabla);
        GDALDestroyColorTable(tabla);
    };
    const CResultadoImagen colores = LeeBien(paleta);
    EXPECT_EQ(Pixel(colores, 0, 0), (Color{1, 2, 3}));
    EXPECT_EQ(Pixel(colores, 0, 1), (Color{100, 50, 25}));
    EXPECT_EQ(Pixel(colores, 1, 1), (Color{200, 0, 255}));

    for (const int bandas : {2, 4}) {
        Tiff conAlfa;
        conAlfa.m_nBandas = bandas;
        conAlfa.m_Valor = [bandas](int f, int c, int b) { return b == bandas - 1 ? (c == 1 ? 0 : 255) : 10 * f + c; };
        conAlfa.m_Ajusta = [bandas](GDALDatasetH d) {
            GDALSetRasterColorInterpretation(GDALGetRasterBand(d, bandas), GCI_AlphaBand);
        };
        const CResultadoImagen alfa = LeeBien(conAlfa);
        EXPECT_EQ(Pixel(alfa, 2, 3), (Color{23, 23, 23})) << bandas;
        EXPECT_EQ(Pixel(alfa, 2, 1), (Color{255, 255, 255})) << bandas;
        EXPECT_TRUE(Cubierto(alfa, 2, 3));
        EXPECT_FALSE(Cubierto(alfa, 2, 1));
    }
}

TEST_F(Imagenes, PixelsThatTheHeaderCallsEmptyAreWhiteAndNotCovered) {
    Tiff tiff;
    tiff.m_Valor = [](int f, int c, int) { return c == 2 ? 7 : 10 * f + c + 20; };
    tiff.m_Ajusta = [](GDALDatasetH d) {
        for (int b = 1; b <= 3; ++b)
            GDALSetRasterNoDataValue(GDALGetRasterBand(d, b), 7);
    };
    const CResultadoImagen leida = LeeBien(tiff);
    EXPECT_EQ(Pixel(leida, 1, 2), (Color{255, 255, 255}));
    EXPECT_FALSE(Cubierto(leida, 1, 2));
    EXPECT_EQ(Pixel(leida, 1, 1), (Color{31, 31, 31}));
}

TEST_F(Imagenes, AZoneCutsWholePixels) {
    CDataLeeImagen opciones;
    opciones.m_Zona = CMaximas<double>(Coor(440013, 4479975, -5), Coor(440027, 4479989, 700));
    const CResultadoImagen leida = LeeBien({}, opciones);
    EXPECT_EQ(Tamano(leida), (std::pair{2, 2}));
    EXPECT_EQ(leida.m_Imagen.m_dXOeste, 440010.0);
    EXPECT_EQ(leida.m_Imagen.m_dYNorte, 4479990.0);
    EXPECT_EQ(Pixel(leida, 0, 0)[0], 11);
    EXPECT_EQ(Pixel(leida, 1, 1)[0], 22);
    // A zone that reaches beyond the image takes what there is.
    opciones.m_Zona = CMaximas<double>(Coor(439000, 4479000, 0), Coor(440015, 4490000, 0));
    const CResultadoImagen borde = LeeBien({}, opciones);
    EXPECT_EQ(Tamano(borde), (std::pair{2, 3}));
    EXPECT_EQ(borde.m_Imagen.m_dXOeste, 440000.0);
}

TEST_F(Imagenes, AnImageOverAGridIsWidenedToItsCells) {
    // Four by three pixels of 10 over a grid of cells of 25 that begins 12 west and 17 south of it.
    CDataLeeImagen opciones;
    opciones.m_Zona = CMaximas<double>(Coor(439988, 4479953, 0), Coor(440488, 4480453, 0));
    opciones.m_dCelda = 25.0;
    const CResultadoImagen leida = LeeBien({}, opciones);
    EXPECT_NEAR(leida.m_Imagen.SizePixel(), 25.0 / 3.0, 1e-9) << "a whole part of a cell, no larger than it was";
    EXPECT_NEAR(leida.m_Imagen.m_dXOeste, 439988.0, 1e-6);
    EXPECT_NEAR(leida.m_Imagen.m_dYNorte, 4480003.0, 1e-6);
    EXPECT_EQ(Tamano(leida), (std::pair{9, 6})) << "three cells to the east, two to the north";
    EXPECT_FALSE(Cubierto(leida, 0, 0));
    EXPECT_FALSE(Cubierto(leida, 5, 8));
    EXPECT_EQ(Pixel(leida, 5, 8), (Color{255, 255, 255}));
    EXPECT_TRUE(Cubierto(leida, 1, 3));
    EXPECT_NEAR(Pixel(leida, 2, 3)[0], 10 * 1.1 + 1.4, 5);

    // Cells smaller than pixels: whole numbers of them.
    opciones.m_dCelda = 4.0;
    const CResultadoImagen gruesa = LeeBien({}, opciones);
    EXPECT_NEAR(gruesa.m_Imagen.SizePixel(), 8.0, 1e-9);
    EXPECT_NEAR(std::remainder(gruesa.m_Imagen.m_dXOeste - 439988.0, 8.0), 0.0, 1e-6);
    EXPECT_NEAR(std::remainder(gruesa.m_Imagen.m_dYNorte - 4479953.0, 8.0), 0.0, 1e-6);

    // A zone inside the image is covered whole.
    opciones.m_dCelda = 5.0;
    opciones.m_Zona = CMaximas<double>(Coor(440010, 4479975, 0), Coor(440030, 4479990, 0));
    const CResultadoImagen dentro = LeeBien({}, opciones);
    EXPECT_EQ(Tamano(dentro), (std::pair{2, 2})) << "20 x 15 in pixels of 10";
    EXPECT_NEAR(dentro.m_Imagen.m_dXOeste, 440010.0, 1e-6);
    for (const unsigned char c : dentro.m_Cubiertos)
        EXPECT_EQ(c, 1);
}

TEST_F(Imagenes, FinePixelsAreAveraged) {
    Tiff tiff;
    tiff.m_nColumnas = 40;
    tiff.m_nFilas = 40;
    tiff.m_Valor = [](int f, int c, int) { return (f + c) % 2 == 0 ? 0 : 200; };
    CDataLeeImagen opciones;
    opciones.m_dPixelMinimo = 40.0;
    const CResultadoImagen leida = LeeBien(tiff, opciones);
    EXPECT_EQ(Tamano(leida), (std::pair{10, 10}));
    EXPECT_EQ(leida.m_Imagen.SizePixel(), 40.0);
    for (int f = 1; f < 9; ++f)
        for (int c = 1; c < 9; ++c)
            EXPECT_NEAR(Pixel(leida, f, c)[0], 100, 12);
    EXPECT_THAT(leida.m_Mensajes, IsEmpty()) << "as it was asked for";
}

TEST_F(Imagenes, PixelsThatArentSquareAreMadeSo) {
    Tiff tiff;
    tiff.m_nColumnas = 20;
    tiff.m_nFilas = 40;
    tiff.m_Colocacion[5] = -5.0;  // half as high as wide: both are 200 m
    tiff.m_Valor = [](int f, int c, int) { return f < 20 ? (c < 10 ? 10 : 60) : (c < 10 ? 110 : 160); };
    const CResultadoImagen leida = LeeBien(tiff);
    const auto [ancho, alto] = Tamano(leida);
    EXPECT_EQ(leida.m_Imagen.m_dPixelX, leida.m_Imagen.m_dPixelY);
    EXPECT_NEAR(ancho * leida.m_Imagen.m_dPixelX, 200.0, leida.m_Imagen.m_dPixelX);
    EXPECT_NEAR(alto * leida.m_Imagen.m_dPixelY, 200.0, leida.m_Imagen.m_dPixelY);
    EXPECT_EQ(Pixel(leida, alto / 4, ancho / 4)[0], 10);
    EXPECT_EQ(Pixel(leida, alto / 4, 3 * ancho / 4)[0], 60);
    EXPECT_EQ(Pixel(leida, 3 * alto / 4, ancho / 4)[0], 110);
    EXPECT_EQ(Pixel(leida, 3 * alto / 4, 3 * ancho / 4)[0], 160);
    EXPECT_THAT(leida.m_Mensajes.at(0).Utf8(), HasSubstr("square pixels"));
}

TEST_F(Imagenes, ARotatedImageIsTurnedNorthUp) {
    Tiff tiff;
    tiff.m_nColumnas = tiff.m_nFilas = 40;
    // Columns run to the south-east, rows to the south-west; the first pixel lies northernmost.
    const double d = 10.0 * std::sqrt(0.5);
    tiff.m_Colocacion = {440000.0, d, -d, 4480000.0, -d, -d};
    tiff.m_Valor = [](int f, int c, int) { return f < 20 ? (c < 20 ? 10 : 60) : (c < 20 ? 110 : 160); };
    const CResultadoImagen leida = LeeBien(tiff);
    const auto color = [&](double x, double y) {
        const int c = int((x - leida.m_Imagen.m_dXOeste) / leida.m_Imagen.m_dPixelX);
        const int f = int((leida.m_Imagen.m_dYNorte - y) / leida.m_Imagen.m_dPixelY);
        return Pixel(leida, f, c)[0];
    };
    EXPECT_EQ(color(440000, 4480000 - 10 * d), 10);
    EXPECT_EQ(color(440000 + 20 * d, 4480000 - 40 * d), 60);
    EXPECT_EQ(color(440000 - 20 * d, 4480000 - 40 * d), 110);
    EXPECT_EQ(color(440000, 4480000 - 70 * d), 160);
    EXPECT_FALSE(Cubierto(leida, 1, 1)) << "a corner that the image doesn't reach";
    EXPECT_EQ(Pixel(leida, 1, 1), (Color{255, 255, 255}));
}

TEST_F(Imagenes, AnotherSystemIsBroughtToTheTerrains) {
    // Stripes of a thousandth of a degree in degrees: each terrain point must have the colour of its own degrees.
    Tiff tiff;
    tiff.m_nEPSG = 4326;
    tiff.m_nColumnas = tiff.m_nFilas = 200;
    constexpr double kPixel = 1e-4, kOeste = -4.0, kNorte = 40.0;
    tiff.m_Colocacion = {kOeste, kPixel, 0, kNorte, 0, -kPixel};
    tiff.m_Valor = [](int f, int c, int b) { return b == 0 ? c / 20 * 25 : b == 1 ? f / 20 * 25 : 128; };
    CDataLeeImagen opciones;
    opciones.m_WKT = CString(WKT(32630).c_str());
    const CResultadoImagen leida = LeeBien(tiff, opciones);
    EXPECT_THAT(leida.m_Mensajes.at(0).Utf8(), HasSubstr("WGS 84"));
    int mirados = 0;
    for (int f = 5; f < 200; f += 10)
        for (int c = 5; c < 200; c += 10) {
            if (f % 20 == 0 || c % 20 == 0) continue;
            Vertiz::CPuntoPortula p;
            constexpr double kGrado = std::numbers::pi / 180.0;
            // The middle of each stripe, away from its edges.
            const double lon = kOeste + (c / 20 * 20 + 10) * kPixel, lat = kNorte - (f / 20 * 20 + 10) * kPixel;
            ASSERT_EQ(p.GeoToUTM(lat * kGrado, lon * kGrado, Vertiz::CElipsoide(), 30, true), 30);
            const int columna = int((p.x - leida.m_Imagen.m_dXOeste) / leida.m_Imagen.m_dPixelX),
                      fila = int((leida.m_Imagen.m_dYNorte - p.y) / leida.m_Imagen.m_dPixelY);
            EXPECT_EQ(Pixel(leida, fila, columna), (Color{c / 20 * 25, f / 20 * 25, 128})) << lat << ", " << lon;
            ++mirados;
        }
    EXPECT_GT(mirados, 300);
    EXPECT_FALSE(Cubierto(leida, 0, 0)) << "meridians aren't upright on the terrain";
}

TEST_F(Imagenes, TheTerrainsOwnSystemByAnotherNameChangesNothing) {
    CDataLeeImagen opciones;
    opciones.m_WKT = CString(WKT(25830).c_str());
    const CResultadoImagen leida = LeeBien({}, opciones);
    EXPECT_THAT(leida.m_Mensajes, IsEmpty());
    EXPECT_EQ(Pixel(leida, 1, 1)[0], 11);
    Tiff sin;
    sin.m_nEPSG = 0;
    EXPECT_THAT(LeeBien(sin, opciones).m_Mensajes.at(0).Utf8(), HasSubstr("no coordinate system"));
    EXPECT_THAT(LeeBien(sin).m_Mensajes, IsEmpty());
}

TEST_F(Imagenes, OnePixelIsAnImage) {
    Tiff tiff;
    tiff.m_nColumnas = tiff.m_nFilas = 1;
    const CResultadoImagen leida = LeeBien(tiff);
    EXPECT_EQ(Tamano(leida), (std::pair{1, 1}));
    EXPECT_EQ(Pixel(leida, 0, 0), (Color{0, 80, 160}));
}

TEST_F(Imagenes, AnImageOffTheTerrainSaysWhereBothLie) {
    CDataLeeImagen opciones;
    opciones.m_Zona = CMaximas<double>(Coor(500000, 4479975, 0), Coor(501000, 4479989, 0));
    const std::string texto = Error({}, opciones);
    EXPECT_THAT(texto, HasSubstr("off the terrain"));
    EXPECT_THAT(texto, HasSubstr("440000"));
    EXPECT_THAT(texto, HasSubstr("500000"));
    for (const auto& [x, y] : {std::pair{-100.0, 0.0}, {100.0, 0.0}, {0.0, -100.0}, {0.0, 100.0}}) {
        opciones.m_Zona = CMaximas<double>(Coor(440000 + x, 4479970 + y, 0), Coor(440040 + x, 4480000 + y, 0));
        EXPECT_THAT(Error({}, opciones), HasSubstr("off the terrain: the image has")) << x << ", " << y;
    }
    Tiff ajena;
    ajena.m_nEPSG = 4326;
    ajena.m_Colocacion = {10.0, 0.001, 0, 50.0, 0, -0.001};
    opciones.m_WKT = CString(WKT(32630).c_str());
    EXPECT_THAT(Error(ajena, opciones), HasSubstr("off the terrain"));
}

TEST_F(Imagenes, AnImageWithoutAColourOnTheTerrainIsNone) {
    Tiff tiff;
    tiff.m_nBandas = 4;
    tiff.m_Valor = [](int, int, int b) { return b == 3 ? 0 : 100; };
    tiff.m_Ajusta = [](GDALDatasetH d) { GDALSetRasterColorInterpretation(GDALGetRasterBand(d, 4), GCI_AlphaBand); };
    EXPECT_THAT(Error(tiff), HasSubstr("no colour"));
}

TEST_F(Imagenes, WhatCantBeDrapedIsRefused) {
    Tiff sin;
    sin.m_Colocacion.clear();
    EXPECT_THAT(Error(sin), HasSubstr("no georeference"));
    Tiff ancha;
    ancha.m_nTipo = GDT_UInt16;
    EXPECT_THAT(Error(ancha), HasSubstr("8 bits"));
    Tiff loca;
    loca.m_Colocacion = {std::nan(""), 10, 0, 0, 0, -10};
    EXPECT_NE(Error(loca), "");
    EXPECT_THAT(LeeImagen(L"/no/hay.tif").m_Error.Utf8(), HasSubstr("no such file"));
    std::ofstream(m_Ruta) << "hello";
    EXPECT_THAT(LeeImagen(Nombre(m_Ruta)).m_Error.Utf8(), HasSubstr("not a raster"));
    std::ofstream(m_Ruta, std::ios::trunc).close();
    EXPECT_THAT(LeeImagen(Nombre(m_Ruta)).m_Error.Utf8(), HasSubstr("empty"));
    CDataLeeImagen opciones;
    opciones.m_WKT = L"nonsense";
    EXPECT_THAT(Error({}, opciones), HasSubstr("coordinate system"));
}

TEST_F(Imagenes, ADamagedFileIsRefused) {
    Tiff tiff;
    tiff.m_nColumnas = tiff.m_nFilas = 300;
    tiff.Graba(m_Ruta);
    std::filesystem::resize_file(m_Ruta, std::filesystem::file_size(m_Ruta) / 2);
    const CResultadoImagen leida = LeeImagen(Nombre(m_Ruta));
    EXPECT_EQ(leida.m_nResultado, 0);
    EXPECT_NE(leida.m_Error.Utf8(), "");
}

TEST_F(Imagenes, ReadingTellsItsProgressAndCanBeCancelled) {
    Tiff tiff;
    tiff.m_nColumnas = tiff.m_nFilas = 600;
    tiff.Graba(m_Ruta);
    Progreso progreso;
    EXPECT_EQ(LeeImagen(Nombre(m_Ruta), {}, &progreso).m_nResultado, 1);
    EXPECT_FALSE(progreso.m_Pasos.empty());
    Progreso cancela(1);
    const CResultadoImagen leida = LeeImagen(Nombre(m_Ruta), {}, &cancela);
    EXPECT_EQ(leida.m_nResultado, 2);
    EXPECT_EQ(leida.m_pRaster, nullptr);
    EXPECT_TRUE(leida.m_Error.IsEmpty());
}

}  // namespace
