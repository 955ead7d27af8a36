// Pixels and tables of TIFF files: every kind of sample beside what libtiff shows, strips and tiles, scaling, windows.

#include "raster/Tiffs.h"
#include "platform/Memoria.h"
#include "support/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace {

using namespace tiffs;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Vertiz::CMatriz;
using Vertiz::CTiff;

constexpr int kNo = 15065;

struct Caso {
    unsigned bits, muestras, fotometrica;
    bool planos, teselas, packBits, motorola;
    unsigned alfa = 0;  ///< ExtraSamples + 1; 0 none
    unsigned relleno = 1;

    friend std::ostream& operator<<(std::ostream& o, const Caso& c) {
        return o << c.bits << " bits, " << c.muestras << " samples, photometric " << c.fotometrica << ", planar "
                 << c.planos << ", tiles " << c.teselas << ", PackBits " << c.packBits << ", big-endian " << c.motorola
                 << ", alpha " << c.alfa << ", fill " << c.relleno;
    }
};

class CTiffLeer : public imagenes::ConTemporales {
  protected:
    // A file of random samples that libtiff writes.
    std::filesystem::path Escribe(const Caso& c, unsigned ancho, unsigned alto) {
        const auto ruta = m_Carpeta / "azar.tif";
        const Tiff t = Abre(ruta, c.motorola ? "wb" : "wl");
        const auto pon = [&](unsigned tag, auto valor) { EXPECT_EQ(TIFFSetField(t.get(), tag, valor), 1) << tag; };
        pon(TIFFTAG_IMAGEWIDTH, ancho);
        pon(TIFFTAG_IMAGELENGTH, alto);
        pon(TIFFTAG_BITSPERSAMPLE, c.bits);
        pon(TIFFTAG_SAMPLESPERPIXEL, c.muestras);
        pon(TIFFTAG_PHOTOMETRIC, c.fotometrica);
        pon(TIFFTAG_PLANARCONFIG, c.planos ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
        pon(TIFFTAG_COMPRESSION, c.packBits ? COMPRESSION_PACKBITS : COMPRESSION_NONE);
        pon(TIFFTAG_FILLORDER, c.relleno);
        if (c.fotometrica == PHOTOMETRIC_YCBCR) TIFFSetField(t.get(), TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
        if (c.alfa > 0) {
            const std::uint16_t extra = std::uint16_t(c.alfa - 1);
            TIFFSetField(t.get(), TIFFTAG_EXTRASAMPLES, 1, &extra);
        }
        if (c.fotometrica == PHOTOMETRIC_PALETTE) {
            std::vector<std::uint16_t> mapa[3];
            for (auto& m : mapa)
                for (unsigned i = 0; i < 1U << c.bits; ++i)
                    m.push_back(std::uint16_t((i * 37 + unsigned(&m - mapa) * 91) % 256 * 257));
            TIFFSetField(t.get(), TIFFTAG_COLORMAP, mapa[0].data(), mapa[1].data(), mapa[2].data());
        }
        if (c.teselas) {
            pon(TIFFTAG_TILEWIDTH, 16);
            pon(TIFFTAG_TILELENGTH, 32);
        } else {
            pon(TIFFTAG_ROWSPERSTRIP, 7);
        }
        const std::size_t bytes = std::size_t(c.teselas ? TIFFTileSize(t.get()) : TIFFStripSize(t.get()));
        const unsigned trozos = c.teselas ? TIFFNumberOfTiles(t.get()) : TIFFNumberOfStrips(t.get());
        for (unsigned i = 0; i < trozos; ++i) {
            auto datos = imagenes::BytesAleatorios(bytes, i + 1);
            for (std::size_t j = 0; j < bytes / 3; ++j)
                datos[j] = BYTE(j / 150);  // something to compress
            if (c.teselas)
                EXPECT_GT(TIFFWriteEncodedTile(t.get(), i, datos.data(), tmsize_t(bytes)), 0);
            else
                EXPECT_GT(TIFFWriteEncodedStrip(t.get(), i, datos.data(), tmsize_t(bytes)), 0);
        }
        return ruta;
    }
    std::filesystem::path Fichero(const std::string& bytes) { return m_Carpeta.Escribe("prueba.tif", bytes); }
};

TEST_F(CTiffLeer, EveryKindOfSampleShowsWhatLibtiffShows) {
    std::vector<Caso> casos;
    for (const bool teselas : {false, true})
        for (const bool packBits : {false, true})
            for (const bool motorola : {false, true}) {
                const auto anade = [&](unsigned bits, unsigned muestras, unsigned f, bool planos, unsigned alfa = 0,
                                       unsigned relleno = 1) {
                    casos.push_back({bits, muestras, f, planos, teselas, packBits, motorola, alfa, relleno});
                };
                for (const unsigned bits : {1, 2, 4, 8})
                    for (const unsigned f : {0, 1, 3})
                        anade(bits, 1, f, false, 0, bits == 1 && (packBits || !teselas) ? 2 : 1);
                if (!teselas) {  // of these and of reversed bits libtiff shows nothing in tiles
                    anade(8, 2, 1, false, 2);
                    anade(8, 2, 3, false, 1);
                }
                anade(8, 3, 2, false);
                anade(8, 3, 2, true);
                for (const unsigned alfa : {1, 2, 3}) {
                    anade(8, 4, 2, false, alfa);
                    anade(8, 4, 2, true, alfa);
                }
                anade(8, 4, 5, false);
                anade(8, 3, 8, false);
                anade(8, 3, 6, false);
            }
    for (const Caso& c : casos) {
        SCOPED_TRACE(testing::PrintToString(c));
        const auto ruta = Escribe(c, 37, 45);
        const auto suyos = DeLibtiff(ruta);
        ASSERT_FALSE(suyos.empty());
        Abierto enMemoria(ruta), enFichero(ruta, 1);
        ASSERT_EQ(enMemoria.raster.Leer(false), 1);
        EXPECT_TRUE(Igual(EnColor(enMemoria.raster), suyos));
        EXPECT_EQ(enMemoria.raster.BytesPixel(), c.muestras == 1 ? 1 : 3);
        EXPECT_EQ(enMemoria.raster.TienePaleta(), c.fotometrica == 3 && c.muestras == 1);
        ASSERT_EQ(enFichero.raster.Leer(false), 1);
        EXPECT_TRUE(imagenes::Iguales(enFichero.raster, enMemoria.raster));
    }
}

TEST_F(CTiffLeer, AnyWindowIsThatPartOfTheWhole) {
    for (const bool teselas : {false, true})
        for (const bool packBits : {false, true}) {
            const auto ruta = Escribe({8, 3, 2, false, teselas, packBits, false}, 50, 70);
            Abierto entera(ruta);
            ASSERT_EQ(entera.raster.Leer(false), 1);
            for (const auto& v : {std::array{0, 1, 0, 1}, {16, 32, 32, 64}, {49, 50, 69, 70}, {15, 33, 6, 40}}) {
                Abierto a(ruta);
                ASSERT_EQ(a.raster.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, v[0], v[1], v[2], v[3]), 1);
                CTiff recorte;
                ASSERT_EQ(entera.raster.Recorta(70 - v[3], v[0], 70 - v[2], v[1], &recorte), 1);
                EXPECT_TRUE(imagenes::Iguales(a.raster, recorte)) << v[0];
            }
            Abierto a(ruta);
            ASSERT_EQ(a.raster.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, -5, 20, 60, 1000), 1);
            EXPECT_EQ(a.raster.Ancho(), 20);
            EXPECT_EQ(a.raster.Alto(), -10);
            a.raster.SetFichero(&a.fichero);
            ASSERT_EQ(a.raster.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, 0, 0, 10, 20), 1);
            EXPECT_EQ(a.raster.Ancho(), 50);
            a.raster.SetFichero(&a.fichero);
            EXPECT_EQ(a.raster.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, 50, 60, 0, 10), kNo);
        }
}

TEST_F(CTiffLeer, AOneBitImageWithWhiteAsZeroShowsZeroAsWhite) {
    Abierto a(Fichero(Fabrica().Imagen(8, 1, 1, 1, 0).Trozos({"\x0F"}).Bytes()));
    ASSERT_EQ(a.raster.Leer(true), 1);
    EXPECT_EQ(a.raster.Paleta()[0], 255);
    EXPECT_EQ(a.raster.Paleta()[4], 0);
    a.raster.SetFichero(&a.fichero);
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(255, 255, 255, 255, 0, 0, 0, 0));
    EXPECT_EQ(a.raster.Paleta()[4 * 255], 255) << "the pixels stand with black as 0, and so does the palette";
}

TEST_F(CTiffLeer, ThePaletteIsTheUpperByteOfTheMap) {
    Fabrica f;
    std::vector<std::uint64_t> mapa(48);
    mapa[5] = 0x80FF, mapa[16 + 5] = 0x4000, mapa[32 + 5] = 0xFFFF;
    f.Imagen(2, 1, 1, 4, 3).Pon(320, Fabrica::Short, mapa).Trozos({"\x50"});
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_EQ(imagenes::Pixel(a.raster, 0, 0), (std::vector<BYTE>{0xFF, 0x40, 0x80}));
    EXPECT_EQ(imagenes::Pixel(a.raster, 0, 1), (std::vector<BYTE>{0, 0, 0}));
}

// ---- Scaling -----------------------------------------------------------------------------------------------------

std::string Floats(const Fabrica& f, const std::vector<float>& valores) {
    std::string s;
    for (const float v : valores) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &v, 4);
        s += f.Numero(bits, 4);
    }
    return s;
}

// A row of floats that are a grid of values: points.
Fabrica Rejilla(const std::vector<float>& valores) {
    Fabrica f;
    f.Imagen(unsigned(valores.size()), 1, 1, 32, 1).Pon(339, Fabrica::Short, {3});
    f.Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 2}).Trozos({Floats(f, valores)});
    return f;
}

TEST_F(CTiffLeer, WiderSamplesAreStretchedFromTheLeastToTheGreatest) {
    for (const bool motorola : {false, true}) {
        Fabrica f(false, motorola);
        f.Imagen(3, 1, 3, 16, 2);
        f.Trozos({f.Numero(100, 2) + f.Numero(200, 2) + f.Numero(300, 2) + f.Numero(400, 2) + f.Numero(500, 2) +
                  f.Numero(600, 2) + f.Numero(100, 2) + f.Numero(101, 2) + f.Numero(599, 2)});
        Abierto a(Fichero(f.Bytes()));
        Progreso progreso;
        ASSERT_EQ(a.raster.Leer(false), 1);
        EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(102, 51, 0, 255, 204, 153, 254, 1, 0));
        EXPECT_DOUBLE_EQ(a.raster.EscalaGris(), 255.0 / 500.0);
        EXPECT_THAT(progreso.m_Mensajes, ElementsAre("Escalando valores a 256"));
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(56001u, 56001u));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
}

TEST_F(CTiffLeer, AToldMaximumTakesOnePass) {
    Fabrica f;
    f.Imagen(3, 1, 1, 16, 1).Pon(281, Fabrica::Short, {1024});
    f.Trozos({f.Numero(0, 2) + f.Numero(512, 2) + f.Numero(2000, 2)});
    Abierto a(Fichero(f.Bytes()));
    Progreso progreso;
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(0, 128, 255));
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre("Escalando valores a 1024"));
    EXPECT_THAT(progreso.m_Etapas, ElementsAre(56001u));
}

TEST_F(CTiffLeer, AToldMaximumMayTakeThirtyTwoBits) {
    Fabrica f;
    f.Imagen(1, 1, 1, 32, 1).Pon(281, Fabrica::Long, {1U << 31}).Trozos({f.Numero(1U << 30, 4)});
    Abierto a(Fichero(f.Bytes()));
    Progreso progreso;
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(128));
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre("Escalando valores a 2147483648"));
}

TEST_F(CTiffLeer, EveryWidthOfSampleIsRead) {
    struct {
        unsigned bits, formato;
        std::string datos;  // two samples of -3 or 5, and the greater 2
    } casos[] = {
        {12, 1, std::string("\x00\x00\x05", 3)},
        {10, 2, std::string("\xFF\x40\x00", 3)},  // -3 and 0
        {16, 2, std::string("\xFD\xFF\x02\x00", 4)},
        {16, 3, std::string("\x00\xC2\x00\x40", 4)},
        {24, 2, std::string("\xFD\xFF\xFF\x02\x00\x00", 6)},
        {32, 2, std::string("\xFD\xFF\xFF\xFF\x02\x00\x00\x00", 8)},
        {64, 2, std::string("\xFD\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x02\0\0\0\0\0\0\0", 16)},
        {64, 3, std::string("\0\0\0\0\0\0\x08\xC0\0\0\0\0\0\0\0\x40", 16)},
    };
    for (const auto& c : casos) {
        SCOPED_TRACE(c.bits * 10 + c.formato);
        Fabrica f;
        f.Imagen(2, 1, 1, c.bits, 1).Pon(339, Fabrica::Short, {c.formato}).Trozos({c.datos});
        f.Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 2});
        Abierto a(Fichero(f.Bytes()));
        CMatriz<float>* tabla = nullptr;
        ASSERT_EQ(a.raster.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), 1);
        const std::unique_ptr<CMatriz<float>> suya(tabla);
        ASSERT_NE(tabla, nullptr);
        EXPECT_EQ(tabla->Get(0, 0), c.bits == 12 ? 0.0F : -3.0F);
        EXPECT_EQ(tabla->Get(0, 1), c.bits == 12 ? 5.0F : c.bits == 10 ? 0.0F : 2.0F);
        Abierto b(Fichero(f.Bytes()));
        ASSERT_EQ(b.raster.Leer(false), 1);
        EXPECT_THAT(imagenes::Pixeles(b.raster), ElementsAre(0, 255));
    }
}

TEST_F(CTiffLeer, AGridAsAPictureTellsWhatItHolds) {
    Abierto a(Fichero(Rejilla({-10.0F, 12.5F, 40.0F, NAN}).Bytes()));
    Progreso progreso;
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(0, 115, 255, 0));
    EXPECT_THAT(progreso.m_Mensajes,
                ElementsAre("Convirtiendo a valores de gris", "Máximo : 40.00", "Media : 14.17", "Mínimo : -10.00"));
}

TEST_F(CTiffLeer, FixedLimitsOfAGridReplaceTheMeasuredOnes) {
    const std::string bytes = Rejilla({-10.0F, 12.5F, 40.0F, 100.0F}).Bytes();
    const float minimo = 0.0F, maximo = 50.0F;
    Abierto a(Fichero(bytes));
    Progreso progreso;
    ASSERT_EQ(a.raster.Leer(false, nullptr, 0, nullptr, &minimo, &maximo, 0, 0, 0, 0), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(0, 64, 204, 255));
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre("Convirtiendo a valores de gris", "Máximo : 50.00", "Mínimo : 0.00"));
    Abierto b(Fichero(bytes));
    ASSERT_EQ(b.raster.Leer(false, nullptr, 0, nullptr, &minimo, nullptr, 0, 0, 0, 0), 1);
    EXPECT_THAT(imagenes::Pixeles(b.raster), ElementsAre(0, 32, 102, 255));
}

TEST_F(CTiffLeer, AWindowThatEndsBeforeItBeginsIsRefused) {
    Abierto a(Fichero(Rejilla({1.0F, 2.0F}).Bytes()));
    EXPECT_EQ(a.raster.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, 0, 0, 1, 0), 15065);
    EXPECT_EQ(Abierto(Fichero(Rejilla({1.0F, 2.0F}).Bytes()))
                  .raster.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, 1, 0, 0, 0),
              15065);
}

TEST_F(CTiffLeer, FixedLimitsUpsideDownInvert) {
    Abierto a(Fichero(Rejilla({-10.0F, 12.5F, 50.0F}).Bytes()));
    const float minimo = 50.0F, maximo = 0.0F;
    ASSERT_EQ(a.raster.Leer(false, nullptr, 0, nullptr, &minimo, &maximo, 0, 0, 0, 0), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(255, 191, 0));
    EXPECT_LT(a.raster.EscalaGris(), 0.0);
}

TEST_F(CTiffLeer, WhatIsNoNumberIsBlackAlsoWhereZeroIsWhite) {
    Abierto a(Fichero(Rejilla({1.0F, NAN, 3.0F}).Pon(262, Fabrica::Short, {0}).Bytes()));
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(255, 0, 0));
}

TEST_F(CTiffLeer, AConstantBandAndOneWithoutValuesAreBlack) {
    for (const unsigned fotometrica : {0, 1})
        for (const float v : {7.0F, float(NAN), float(INFINITY)}) {
            Abierto a(Fichero(Rejilla({v, v}).Pon(262, Fabrica::Short, {fotometrica}).Bytes()));
            ASSERT_EQ(a.raster.Leer(false), 1);
            EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(0, 0)) << v;
        }
}

// ---- Tables ------------------------------------------------------------------------------------------------------

TEST_F(CTiffLeer, AGridIsGivenAsATableFromTheBottom) {
    Fabrica f;
    f.Imagen(2, 3, 1, 16, 1).Pon(34735, Fabrica::Short, {1, 1, 0, 2, 1024, 0, 1, 1, 1025, 0, 1, 1});
    std::string datos;
    for (const unsigned v : {1, 2, 3, 4, 5, 6})
        datos += f.Numero(v, 2);
    f.Trozos({datos});
    for (const unsigned limite : {0, 6, 5}) {
        Abierto a(Fichero(f.Bytes()));
        CMatriz<float>* tabla = nullptr;
        ASSERT_EQ(a.raster.Leer(false, &tabla, limite, nullptr, nullptr, nullptr, 0, 0, 0, 0), 1);
        const std::unique_ptr<CMatriz<float>> suya(tabla);
        ASSERT_NE(tabla, nullptr);
        EXPECT_EQ(tabla->EstaEnFichero(), limite == 5);
        EXPECT_EQ(tabla->GetFilas(), 3u);
        EXPECT_EQ(tabla->GetColumnas(), 2u);
        for (unsigned fila = 0; fila < 3; ++fila)
            for (unsigned c = 0; c < 2; ++c)
                EXPECT_EQ(tabla->Get(fila, c), float((2 - fila) * 2 + c + 1));
        BYTE pixel[3]{};
        EXPECT_FALSE(a.raster.GetPixel(pixel, 0, 0, 0)) << "no picture beside the table";
    }
    Abierto a(Fichero(f.Bytes()));
    CMatriz<float>* tabla = nullptr;
    ASSERT_EQ(a.raster.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 1, 2, 0, 2), 1);
    const std::unique_ptr<CMatriz<float>> suya(tabla);
    ASSERT_EQ(tabla->GetFilas(), 2u);
    EXPECT_EQ(tabla->Get(1, 0), 2.0F);
    EXPECT_EQ(tabla->Get(0, 0), 4.0F);
}

TEST_F(CTiffLeer, TheFirstOfSeveralPlanesOfValuesIsATable) {
    Fabrica f;
    f.Imagen(1, 1, 3, 16, 2).Pon(284, Fabrica::Short, {2}).Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 2});
    Abierto a(Fichero(f.Trozos({f.Numero(700, 2), f.Numero(800, 2), f.Numero(900, 2)}).Bytes()));
    CMatriz<float>* tabla = nullptr;
    ASSERT_EQ(a.raster.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), 1);
    const std::unique_ptr<CMatriz<float>> suya(tabla);
    ASSERT_NE(tabla, nullptr);
    EXPECT_EQ(tabla->Get(0, 0), 700.0F);
}

TEST_F(CTiffLeer, OnlyWhatTheFilesOwnKeysCallAGridIsOne) {
    const auto esTabla = [&](Fabrica& f) {
        Abierto a(Fichero(f.Bytes()));
        CMatriz<float>* tabla = nullptr;
        EXPECT_EQ(a.raster.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), 1);
        const std::unique_ptr<CMatriz<float>> suya(tabla);
        return tabla != nullptr;
    };
    Fabrica f;
    f.Imagen(1, 1, 1, 8, 1).Trozos({"abcdefgh"});
    EXPECT_FALSE(esTabla(f)) << "the default of key 1025 doesn't count";
    EXPECT_TRUE(esTabla(Fabrica(f).Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 2})));
    EXPECT_FALSE(esTabla(Fabrica(f).Pon(34735, Fabrica::Short, {1, 1, 0, 2, 1024, 0, 1, 1, 1025, 0, 1, 1})));
    f.Pon(258, Fabrica::Short, {16}).Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1024, 0, 1, 1});
    EXPECT_FALSE(esTabla(f)) << "one key doesn't make a grid of 16 bits";
    EXPECT_TRUE(esTabla(Fabrica(f).Pon(34735, Fabrica::Short, {1, 1, 0, 2, 1024, 0, 1, 1, 2048, 0, 1, 1})));
    Fabrica rgb;
    rgb.Imagen(1, 1, 3, 16, 2).Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 2}).Trozos({"abcdef"});
    EXPECT_FALSE(esTabla(rgb));
    Fabrica paleta;
    paleta.Imagen(1, 1, 1, 8, 3).Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 2}).Trozos({"a"});
    EXPECT_FALSE(esTabla(paleta.Pon(320, Fabrica::Short, std::vector<std::uint64_t>(768, 9))));
}

TEST_F(CTiffLeer, TheRecordChoosesTheSamples) {
    Fabrica f;
    f.Imagen(1, 1, 4, 8, 2).Trozos({"rgbn"});
    int registro[]{3, 0, 1};
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(false, nullptr, 0, registro, nullptr, nullptr, 0, 0, 0, 0), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre('g', 'r', 'n'));
    EXPECT_THAT(registro, ElementsAre(3, 2, 1));
    int malo[]{-7, 99, 2};
    a.raster.SetFichero(&a.fichero);
    ASSERT_EQ(a.raster.Leer(false, nullptr, 0, malo, nullptr, nullptr, 0, 0, 0, 0), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre('b', 'g', 'r'));
    EXPECT_THAT(malo, ElementsAre(9, 99, 0));
}

// ---- PackBits ----------------------------------------------------------------------------------------------------

TEST_F(CTiffLeer, PacketsMayCrossRowsAndDoNothing) {
    Fabrica f;
    f.Imagen(3, 2, 1, 8, 1).Pon(259, Fabrica::Short, {32773});
    f.Trozos(
        {std::string("\x80\xFC"
                     "a\x80\x00"
                     "b",
                     6)});  // nothing, five a, nothing, one b
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre('a', 'a', 'b', 'a', 'a', 'a'));
}

TEST_F(CTiffLeer, PacketsThatEndTooSoonAreRefused) {
    for (const std::string& datos : {std::string("\xFC"
                                                 "a",
                                                 2),
                                     std::string("\x05"
                                                 "abc",
                                                 4),
                                     std::string("\xFC"
                                                 "a\xFF",
                                                 3),
                                     std::string("\x80\x80\x80\x80")}) {
        Fabrica f;
        f.Imagen(3, 2, 1, 8, 1).Pon(259, Fabrica::Short, {32773}).Trozos({datos});
        for (const int modo : {0, 1}) {
            Abierto a(Fichero(f.Bytes()), modo);
            Progreso progreso;
            EXPECT_EQ(a.raster.Leer(false), kNo);
            EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
            EXPECT_EQ(progreso.m_nAbiertas, 0);
            EXPECT_EQ(a.raster.Ancho(), 0);
            EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
        }
    }
}

// ---- Progress and memory -----------------------------------------------------------------------------------------

TEST_F(CTiffLeer, EachRowIsAStepAndCanCancel) {
    const auto ruta = Escribe({8, 3, 2, false, true, false, false}, 20, 40);
    for (const int modo : {0, 1}) {
        Abierto a(ruta, modo);
        Progreso progreso;
        ASSERT_EQ(a.raster.Leer(false), 1);
        ASSERT_THAT(progreso.m_Pasos, SizeIs(40));
        EXPECT_EQ(progreso.m_Pasos.back(), std::pair(40, 40));
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(56001u));
    }
    for (const int modo : {0, 1})
        for (const int paso : {1, 33, 40}) {
            Abierto a(ruta, modo);
            Progreso progreso(paso);
            EXPECT_EQ(a.raster.Leer(false), 2);
            EXPECT_EQ(progreso.m_nAbiertas, 0);
            EXPECT_EQ(a.raster.Ancho(), 0);
            EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
        }
    CMatriz<float>* tabla = nullptr;
    Abierto a(Fichero(Rejilla({1.0F, 2.0F}).Bytes()));
    Progreso progreso(1);
    EXPECT_EQ(a.raster.Leer(false, &tabla, 1, nullptr, nullptr, nullptr, 0, 0, 0, 0), 2);
    EXPECT_EQ(tabla, nullptr);
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 2u);
}

struct PocaMemoria {
    PocaMemoria() { LimitaMemoria(100); }
    ~PocaMemoria() { LimitaMemoria(); }
};

TEST_F(CTiffLeer, WithoutMemoryItGoesOnInATemporaryFile) {
    const auto ruta = Escribe({8, 3, 2, false, false, false, false}, 20, 40);
    Abierto entera(ruta);
    ASSERT_EQ(entera.raster.Leer(false), 1);
    {
        Abierto a(ruta);
        const PocaMemoria poca;
        Progreso progreso;
        ASSERT_EQ(a.raster.Leer(false), 1);
        ASSERT_THAT(progreso.m_Mensajes, SizeIs(4));
        EXPECT_THAT(progreso.m_Mensajes[0], testing::EndsWith(". Se procede a crear archivo temporal"));
        EXPECT_EQ(m_Carpeta.CuentaFicheros(), 2u);
        EXPECT_TRUE(imagenes::Iguales(a.raster, entera.raster));
    }
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
}

TEST_F(CTiffLeer, WithoutAPlaceForTheTemporaryFileItIsRefused) {
    const auto ruta = Escribe({8, 3, 2, false, false, false, false}, 20, 40);
    setenv("TEMP", (m_Carpeta / "no hay").c_str(), 1);
    Abierto a(ruta, 1);
    Progreso progreso;
    EXPECT_EQ(a.raster.Leer(false), kNo);
    EXPECT_EQ(a.raster.Ancho(), 0);
    EXPECT_FALSE(progreso.m_Mensajes.empty());
}

// What reading in file mode takes of memory at most, in kilobytes, in a process of its own; -1 when it fails.
long MaximoLeyendo(const std::filesystem::path& ruta) {
    int tubo[2];
    if (pipe(tubo) != 0) return -1;
    const pid_t hijo = fork();
    if (hijo == 0) {
        // What the tests before took isn't this reading's: the peak counts from here on.
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
        const long antes = MemoriaProceso("VmRSS:");
        long kb = -1;
        {
            Abierto a(ruta, 1);
            if (a.raster.Leer(false) == 1) kb = MemoriaProceso("VmHWM:") - antes;
        }
        _exit(write(tubo[1], &kb, sizeof kb) == sizeof kb ? 0 : 1);
    }
    close(tubo[1]);
    long kb = -1;
    if (read(tubo[0], &kb, sizeof kb) != sizeof kb) kb = -1;
    close(tubo[0]);
    waitpid(hijo, nullptr, 0);
    return kb;
}

TEST_F(CTiffLeer, APictureOfManyTimesTheLimitTakesLittleMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "memory of sanitizers counts too";
#endif
    // The pixels are a hole in the file: one strip, and tiles over the same bytes.
    constexpr unsigned kAncho = 20000, kAlto = 5000;  // 300 MB
    const auto fichero = [&](Fabrica f, std::uint64_t offset, std::size_t trozos, bool teselas) {
        f.Pon(256, Fabrica::Short, {kAncho}).Pon(257, Fabrica::Short, {kAlto});
        const std::vector<std::uint64_t> offsets(trozos, offset);
        f.Pon(teselas ? 324 : 273, Fabrica::Long, offsets).Pon(teselas ? 325 : 279, Fabrica::Long, offsets);
        const auto ruta = Fichero(f.Bytes());
        std::filesystem::resize_file(ruta, offset + std::uint64_t{kAncho} * kAlto * 3);
        return ruta;
    };
    Fabrica f;
    f.Imagen(kAncho, kAlto, 3, 8, 2);
    constexpr long kMaximo = 64 * 1024;
    const auto mide = [&](const std::filesystem::path& ruta) {
        const long kb = MaximoLeyendo(ruta);
        EXPECT_GT(kb, 0);
        EXPECT_LT(kb, kMaximo);
        std::filesystem::remove(ruta);
    };
    mide(fichero(f, 4096, 1, false));
    Fabrica t(f);
    t.Quita(278).Pon(322, Fabrica::Short, {256}).Pon(323, Fabrica::Short, {256});
    mide(fichero(t, 1 << 20, 79 * 20, true));
}

}  // namespace
