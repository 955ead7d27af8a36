// TIFF through libtiff: every layout beside what libtiff shows of the whole file, tables, georeferencing, damage.

#include "raster/LibTiff.h"

#include "raster/Imagenes.h"
#include "raster/Resultados.h"
#include "raster/TiffDePrueba.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>
#include <optional>

namespace {

using namespace imagenes;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using Vertiz::CGeorreferencia;
using Vertiz::CMatriz;
using Vertiz::kNoSoportado;
using Vertiz::LibTiff;
using Tabla = std::unique_ptr<CMatriz<float>>;

class LibTiffTest : public ConTemporales {
  protected:
    std::filesystem::path Escribe(const FormaTiff& forma, unsigned semilla = 1) const {
        return Escribe(forma, BytesAleatorios(400'000, semilla));
    }
    std::filesystem::path Escribe(const FormaTiff& forma, std::vector<BYTE> bytes) const {
        const auto ruta = m_Carpeta / "ñandú.tif";
        EscribeTiff(ruta, forma, std::move(bytes));
        return ruta;
    }
    // Reads a whole page; the object keeps the picture.
    static int Lee(LibTiff& imagen, const std::filesystem::path& ruta) {
        CFile fichero(CString(ruta.c_str()), CFile::modeRead);
        if (!imagen.SetFichero(&fichero)) return -1;
        const int resultado = imagen.Leer(false);
        imagen.CierraFichero();
        return resultado;
    }
    static int LeeTabla(LibTiff& imagen, const std::filesystem::path& ruta, Tabla& tabla, unsigned limite = 0) {
        CFile fichero(CString(ruta.c_str()), CFile::modeRead);
        if (!imagen.SetFichero(&fichero)) return -1;
        CMatriz<float>* nueva = nullptr;
        const int resultado = imagen.Leer(false, &nueva, limite, nullptr, nullptr, nullptr, 0, 0, 0, 0);
        tabla.reset(nueva);
        return resultado;
    }
};

// ---- Pictures ----------------------------------------------------------------------------------------------------

const std::map<std::string, FormaTiff> kHojas{
    {"LZW", {}},
    {"DeflateBig", {.compresion = COMPRESSION_ADOBE_DEFLATE, .modo = "w8"}},
    {"Uncompressed", {.compresion = COMPRESSION_NONE}},
    {"BigEndian16Bits", {.bits = 16, .modo = "wb"}},
    {"BigBigEndian", {.compresion = COMPRESSION_PACKBITS, .modo = "w8b"}},
    {"Tiles", {.filasTira = 0}},
    {"TilesPlanar", {.planos = PLANARCONFIG_SEPARATE, .filasTira = 0}},
    {"Planar", {.planos = PLANARCONFIG_SEPARATE}},
    {"OneRowStrips", {.filasTira = 1}},
    {"OneStrip", {.filasTira = 29}},
    {"Grey", {.muestras = 1, .fotometrica = PHOTOMETRIC_MINISBLACK}},
    {"GreyReversed", {.muestras = 1, .fotometrica = PHOTOMETRIC_MINISWHITE}},
    {"Bits1", {.bits = 1, .muestras = 1, .fotometrica = PHOTOMETRIC_MINISWHITE}},
    {"Bits1Fax",
     {.bits = 1, .muestras = 1, .fotometrica = PHOTOMETRIC_MINISWHITE, .compresion = COMPRESSION_CCITTFAX4}},
    {"Bits4", {.bits = 4, .muestras = 1, .fotometrica = PHOTOMETRIC_MINISBLACK}},
    {"Palette", {.muestras = 1, .fotometrica = PHOTOMETRIC_PALETTE}},
    {"Palette4", {.bits = 4, .muestras = 1, .fotometrica = PHOTOMETRIC_PALETTE}},
    {"CMYK", {.muestras = 4, .fotometrica = PHOTOMETRIC_SEPARATED}},
    {"Alpha", {.muestras = 4, .extras = {EXTRASAMPLE_UNASSALPHA}}},
    {"AssociatedAlpha", {.muestras = 4, .extras = {EXTRASAMPLE_ASSOCALPHA}}},
    {"FiveSamples", {.muestras = 5, .extras = {EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_UNSPECIFIED}}},
    {"BottomFirst", {.orientacion = ORIENTATION_BOTLEFT}},
    {"BottomRightFirst", {.orientacion = ORIENTATION_BOTRIGHT}},
    {"RightFirst", {.orientacion = ORIENTATION_TOPRIGHT}},
    {"BottomFirstTiles", {.orientacion = ORIENTATION_BOTLEFT, .filasTira = 0}},
    {"LargeStrip",
     {.ancho = 2400, .alto = 2000, .bits = 1, .muestras = 1, .fotometrica = PHOTOMETRIC_MINISBLACK, .filasTira = 2000}},
    {"LargeStripBottomFirst",
     {.ancho = 2400,
      .alto = 2000,
      .bits = 1,
      .muestras = 1,
      .fotometrica = PHOTOMETRIC_MINISBLACK,
      .orientacion = ORIENTATION_BOTLEFT,
      .filasTira = 2000}},
};

class LibTiffHojas : public LibTiffTest, public testing::WithParamInterface<std::pair<const std::string, FormaTiff>> {};
INSTANTIATE_TEST_SUITE_P(Todas, LibTiffHojas, testing::ValuesIn(kHojas),
                         [](const auto& hoja) { return hoja.param.first; });

TEST_P(LibTiffHojas, ShowWhatLibtiffShowsOfTheWhole) {
    const FormaTiff& forma = GetParam().second;
    const auto ruta = Escribe(forma, BytesAleatorios(700'000, 3));
    const std::vector<BYTE> esperado = SegunLibtiff(ruta);
    ASSERT_FALSE(esperado.empty());
    for (const int modo : {0, 1}) {
        LibTiff imagen(modo);
        ASSERT_EQ(Lee(imagen, ruta), 1);
        EXPECT_EQ(imagen.Ancho(), int(forma.ancho));
        EXPECT_EQ(imagen.Alto(), -int(forma.alto));
        EXPECT_EQ(imagen.BytesPixel(), 3);
        EXPECT_EQ(imagen.NumMuestras(), 3);
        EXPECT_FALSE(imagen.TienePaleta());
        EXPECT_EQ(imagen.Tipo(), 20);
        EXPECT_TRUE(Pixeles(imagen) == esperado) << (modo != 0 ? "file" : "memory");
    }
}

TEST_P(LibTiffHojas, AWindowIsTheSameAsCroppingTheWhole) {
    const auto ruta = Escribe(GetParam().second, BytesAleatorios(700'000, 4));
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    LibTiff entera, ventana;
    ASSERT_EQ(Lee(entera, ruta), 1);
    ASSERT_TRUE(ventana.SetFichero(&fichero));
    ASSERT_EQ(ventana.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, 5, 30, 3, 21), 1);
    const int alto = -entera.Alto();
    ASSERT_EQ(entera.Recorta(alto - 21, 5, alto - 3, 30, nullptr), 1);
    EXPECT_TRUE(Iguales(ventana, entera));
}

TEST_F(LibTiffTest, AWindowIsClippedAndOneOutsideRefused) {
    const auto ruta = Escribe({});
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    LibTiff imagen;
    ASSERT_TRUE(imagen.SetFichero(&fichero));
    const auto lee = [&](int c0, int c1, int f0, int f1) {
        return imagen.Leer(false, nullptr, 0, nullptr, nullptr, nullptr, c0, c1, f0, f1);
    };
    EXPECT_EQ(lee(-4, 1000, 20, 1000), 1);
    EXPECT_EQ(imagen.Ancho(), 37);
    EXPECT_EQ(imagen.Alto(), -9);
    EXPECT_EQ(lee(0, 0, 20, 25), 1) << "the other axis is whole";
    EXPECT_EQ(imagen.Ancho(), 37);
    EXPECT_EQ(imagen.Alto(), -5);
    EXPECT_EQ(lee(30, 37, 0, 0), 1);
    EXPECT_EQ(imagen.Ancho(), 7);
    EXPECT_EQ(imagen.Alto(), -29);
    EXPECT_EQ(lee(37, 40, 0, 5), kNoSoportado);
    EXPECT_EQ(lee(3, 3, 0, 5), kNoSoportado);
    EXPECT_EQ(imagen.Alto(), 0);
}

TEST_F(LibTiffTest, TheHeaderAloneTellsSizeAndBits) {
    for (const auto& [forma, bits] : {std::pair{FormaTiff{.alto = 11, .muestras = 4}, 24},
                                      {FormaTiff{.alto = 11, .muestras = 1, .fotometrica = PHOTOMETRIC_MINISBLACK}, 8},
                                      {FormaTiff{.alto = 11, .bits = 16}, 48}}) {
        const auto ruta = Escribe(forma);
        CFile fichero(CString(ruta.c_str()), CFile::modeRead);
        LibTiff imagen;
        ASSERT_TRUE(imagen.SetFichero(&fichero));
        Progreso progreso;
        EXPECT_EQ(imagen.Leer(true), 1);
        EXPECT_THAT(progreso.m_Etapas, IsEmpty());
        EXPECT_EQ(imagen.Ancho(), 37);
        EXPECT_EQ(std::abs(imagen.Alto()), 11);
        EXPECT_EQ(imagen.BytesPixel(), bits / 8);
        BYTE pixel[3];
        EXPECT_FALSE(imagen.GetPixel(pixel, 0, 0, 0));
        EXPECT_EQ(imagen.Leer(false), 1);  // the page is the first each time
        EXPECT_EQ(imagen.BytesPixel(), 3);
    }
}

TEST_F(LibTiffTest, ResolutionIsInDotsPerInch) {
    for (const auto& [unidad, esperada] : {std::pair{RESUNIT_INCH, 200.0F}, {RESUNIT_CENTIMETER, 508.02F}}) {
        const auto ruta = m_Carpeta / "r.tif";
        {
            const Tiff tiff = AbreTiff(ruta, "w");
            PonForma(tiff.get(), {});
            TIFFSetField(tiff.get(), TIFFTAG_RESOLUTIONUNIT, unidad);
            TIFFSetField(tiff.get(), TIFFTAG_XRESOLUTION, 200.0);
            std::vector<BYTE> fila(37 * 3);
            for (unsigned f = 0; f < 29; ++f)
                TIFFWriteScanline(tiff.get(), fila.data(), f, 0);
        }
        LibTiff imagen;
        ASSERT_EQ(Lee(imagen, ruta), 1);
        EXPECT_NEAR(imagen.Resolucion(), esperada, 0.01F);
    }
}

TEST_F(LibTiffTest, OfSeveralPagesTheFirstIsReadEachTime) {
    const auto ruta = m_Carpeta / "p.tif";
    {
        const Tiff tiff = AbreTiff(ruta, "w");
        for (const std::uint32_t ancho : {5U, 8U}) {
            PonForma(tiff.get(), {.ancho = ancho, .alto = 1});
            std::vector<BYTE> fila(ancho * 3, BYTE(ancho));
            TIFFWriteScanline(tiff.get(), fila.data(), 0, 0);
            TIFFWriteDirectory(tiff.get());
        }
    }
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    LibTiff imagen;
    ASSERT_TRUE(imagen.SetFichero(&fichero));
    for (int vez = 0; vez < 2; ++vez) {
        ASSERT_EQ(imagen.Leer(false), 1);
        EXPECT_EQ(Pixeles(imagen), std::vector<BYTE>(5 * 3, 5));
    }
}

// ---- Tables ------------------------------------------------------------------------------------------------------

FormaTiff Rejilla(std::uint16_t bits, std::uint16_t formato) {
    return {.ancho = 3,
            .alto = 2,
            .bits = bits,
            .muestras = 1,
            .formato = formato,
            .fotometrica = PHOTOMETRIC_MINISBLACK,
            .filasTira = 1};
}

TEST_F(LibTiffTest, ValuesOf16BitsAreATableWithTheBottomRowFirst) {
    Tabla tabla;
    LibTiff imagen;
    auto ruta = Escribe(Rejilla(16, SAMPLEFORMAT_INT), EnBytes<std::int16_t>({1, -2, 3, 400, 500, -32768}));
    ASSERT_EQ(LeeTabla(imagen, ruta, tabla), 1);
    EXPECT_THAT(Valores(*tabla), ElementsAre(400, 500, -32768, 1, -2, 3));
    EXPECT_EQ(imagen.Ancho(), 3);
    BYTE pixel[3];
    EXPECT_FALSE(imagen.GetPixel(pixel, 0, 0, 0));

    ruta = Escribe(Rejilla(16, SAMPLEFORMAT_UINT), EnBytes<std::uint16_t>({1, 2, 3, 40000, 5, 65535}));
    ASSERT_EQ(LeeTabla(imagen, ruta, tabla), 1);
    EXPECT_THAT(Valores(*tabla), ElementsAre(40000, 5, 65535, 1, 2, 3));
}

TEST_F(LibTiffTest, HalfPrecisionIsWidened) {
    Tabla tabla;
    LibTiff imagen;
    const auto ruta = Escribe(Rejilla(16, SAMPLEFORMAT_IEEEFP),
                              EnBytes<std::uint16_t>({0x3C00, 0xC000, 0x0001, 0x7C00, 0x7BFF, 0x7E00}));
    ASSERT_EQ(LeeTabla(imagen, ruta, tabla), 1);
    const std::vector<float> v = Valores(*tabla);
    EXPECT_THAT(std::vector<float>(v.begin() + 3, v.end()), ElementsAre(1.0F, -2.0F, std::ldexp(1.0F, -24)));
    EXPECT_TRUE(std::isinf(v[0]));
    EXPECT_EQ(v[1], 65504.0F);
    EXPECT_TRUE(std::isnan(v[2]));
}

TEST_F(LibTiffTest, FloatingPointValuesAreATableWithTheTopRowFirst) {
    Tabla tabla;
    LibTiff imagen;
    auto ruta = Escribe(Rejilla(32, SAMPLEFORMAT_IEEEFP), EnBytes<float>({1.5F, -2, 3, 4, 5, 6}));
    ASSERT_EQ(LeeTabla(imagen, ruta, tabla), 1);
    EXPECT_THAT(Valores(*tabla), ElementsAre(1.5F, -2, 3, 4, 5, 6));
    ruta = Escribe(Rejilla(64, SAMPLEFORMAT_IEEEFP), EnBytes<double>({1.5, -2, 3, 4, 5, 0.1}));
    ASSERT_EQ(LeeTabla(imagen, ruta, tabla), 1);
    EXPECT_THAT(Valores(*tabla), ElementsAre(1.5F, -2, 3, 4, 5, 0.1F));
}

TEST_F(LibTiffTest, ATableInTilesIsTheSameAsInStrips) {
    std::vector<float> valores(48 * 32);
    for (std::size_t i = 0; i < valores.size(); ++i)
        valores[i] = float(i);
    FormaTiff forma = Rejilla(32, SAMPLEFORMAT_IEEEFP);
    forma.ancho = 37, forma.alto = 29, forma.filasTira = 0;
    // Tiles of 16 x 16, three in a row.
    std::vector<float> teselas;
    for (unsigned t = 0; t < 6; ++t)
        for (unsigned f = 0; f < 16; ++f)
            for (unsigned c = 0; c < 16; ++c)
                teselas.push_back(valores[(t / 3 * 16 + f) * 48 + t % 3 * 16 + c]);
    Tabla tabla;
    LibTiff imagen;
    ASSERT_EQ(LeeTabla(imagen, Escribe(forma, EnBytes(teselas)), tabla), 1);
    ASSERT_EQ(tabla->GetFilas(), 29U);
    for (unsigned f = 0; f < 29; ++f)
        for (unsigned c = 0; c < 37; ++c)
            ASSERT_EQ(tabla->Get(f, c), float(f * 48 + c)) << f << ", " << c;
}

TEST_F(LibTiffTest, ATableAboveTheLimitOrTheMemoryLiesInAFile) {
    const auto ruta = Escribe(Rejilla(16, SAMPLEFORMAT_UINT), EnBytes<std::uint16_t>({1, 2, 3, 4, 5, 6}));
    for (const auto& [limite, enFichero] : {std::pair{0U, false}, {6U, false}, {5U, true}}) {
        Tabla tabla;
        LibTiff imagen;
        ASSERT_EQ(LeeTabla(imagen, ruta, tabla, limite), 1);
        EXPECT_EQ(tabla->EstaEnFichero(), enFichero) << limite;
        EXPECT_THAT(Valores(*tabla), ElementsAre(4, 5, 6, 1, 2, 3));
    }
    LimitaMemoria(20);
    Tabla tabla;
    LibTiff imagen;
    const int resultado = LeeTabla(imagen, ruta, tabla);
    LimitaMemoria();
    ASSERT_EQ(resultado, 1);
    EXPECT_TRUE(tabla->EstaEnFichero());
}

TEST_F(LibTiffTest, ValuesWithoutATableAreRefusedAndPicturesGiveNone) {
    for (const auto& [bits, formato] : {std::pair{16, SAMPLEFORMAT_UINT},
                                        {16, SAMPLEFORMAT_INT},
                                        {32, SAMPLEFORMAT_IEEEFP},
                                        {64, SAMPLEFORMAT_IEEEFP}}) {
        Progreso progreso;
        LibTiff imagen;
        EXPECT_EQ(Lee(imagen, Escribe(Rejilla(std::uint16_t(bits), std::uint16_t(formato)))), kNoSoportado);
        EXPECT_THAT(progreso.m_Mensajes, Not(IsEmpty()));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
    Tabla tabla;
    LibTiff imagen;
    EXPECT_EQ(LeeTabla(imagen, Escribe({}), tabla), 1);
    EXPECT_EQ(tabla, nullptr);
    EXPECT_LT(imagen.Alto(), 0);
    EXPECT_EQ(Lee(imagen, Escribe(Rejilla(32, SAMPLEFORMAT_UINT))), kNoSoportado);  // libtiff shows none either
}

TEST_F(LibTiffTest, WithoutValuesTheTableIsNullWhateverItWas) {
    CMatriz<float> deOtro(1, 1);
    for (const auto& [forma, esperado] : {std::pair{FormaTiff{}, 1}, {Rejilla(32, SAMPLEFORMAT_UINT), kNoSoportado}}) {
        const auto ruta = Escribe(forma);
        CFile fichero(CString(ruta.c_str()), CFile::modeRead);
        LibTiff imagen;
        CMatriz<float>* tabla = &deOtro;
        EXPECT_EQ(imagen.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), 2);
        EXPECT_EQ(tabla, nullptr);
        ASSERT_TRUE(imagen.SetFichero(&fichero));
        tabla = &deOtro;
        EXPECT_EQ(imagen.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), esperado);
        EXPECT_EQ(tabla, nullptr);
    }
}

TEST_F(LibTiffTest, AWindowOfATableHasItsRowsInTheSameOrder) {
    const auto lee = [&](std::uint16_t formato, const std::vector<BYTE>& bytes) {
        FormaTiff forma = Rejilla(formato == SAMPLEFORMAT_IEEEFP ? 32 : 16, formato);
        forma.alto = 4;
        const auto ruta = Escribe(forma, bytes);
        CFile fichero(CString(ruta.c_str()), CFile::modeRead);
        LibTiff imagen;
        CMatriz<float>* tabla = nullptr;
        EXPECT_TRUE(imagen.SetFichero(&fichero));
        EXPECT_EQ(imagen.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 1, 3, 1, 3), 1);
        const Tabla propia(tabla);
        EXPECT_EQ(imagen.Ancho(), 2);
        EXPECT_EQ(imagen.Alto(), 2);
        return Valores(*tabla);
    };
    EXPECT_THAT(lee(SAMPLEFORMAT_UINT, EnBytes<std::uint16_t>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})),
                ElementsAre(8, 9, 5, 6));
    EXPECT_THAT(lee(SAMPLEFORMAT_IEEEFP, EnBytes<float>({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})),
                ElementsAre(5, 6, 8, 9));
}

// ---- Georeferencing ----------------------------------------------------------------------------------------------

const TIFFFieldInfo kCamposGeo[] = {
    {33550, -1, -1, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, const_cast<char*>("a")},
    {33922, -1, -1, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, const_cast<char*>("b")},
    {34264, -1, -1, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, const_cast<char*>("c")},
    {34735, -1, -1, TIFF_SHORT, FIELD_CUSTOM, 1, 1, const_cast<char*>("d")},
    {34736, -1, -1, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, const_cast<char*>("e")},
};

void EscribeGeo(const std::filesystem::path& ruta, const std::vector<std::uint16_t>& claves) {
    const Tiff tiff = AbreTiff(ruta, "w");
    TIFFMergeFieldInfo(tiff.get(), kCamposGeo, 5);
    PonForma(tiff.get(), {});
    const double escala[]{0.5, 0.25, 0}, puntos[]{0, 0, 0, 1000, 2000, 5, 10, 10, 0, 1005, 1997.5, 5};
    double matriz[16];
    for (int i = 0; i < 16; ++i)
        matriz[i] = i + 0.5;
    const double dobles[]{9102.0, 1.0};
    TIFFSetField(tiff.get(), 33550, 3, escala);
    TIFFSetField(tiff.get(), 33922, 12, puntos);
    TIFFSetField(tiff.get(), 34264, 16, matriz);
    TIFFSetField(tiff.get(), 34735, int(claves.size()), claves.data());
    TIFFSetField(tiff.get(), 34736, 2, dobles);
    std::vector<BYTE> fila(37 * 3);
    for (unsigned f = 0; f < 29; ++f)
        TIFFWriteScanline(tiff.get(), fila.data(), f, 0);
}

TEST_F(LibTiffTest, GeoTiffTagsFillTheGeoreferencing) {
    const auto ruta = m_Carpeta / "geo.tif";
    EscribeGeo(ruta, {1, 1, 0, 4, 1024, 0, 1, 2, 1025, 0, 1, 1, 2048, 0, 1, 4258, 2054, 34736, 1, 0});
    for (const bool soloCabecera : {true, false}) {
        CFile fichero(CString(ruta.c_str()), CFile::modeRead);
        LibTiff imagen;
        ASSERT_TRUE(imagen.SetFichero(&fichero));
        EXPECT_FALSE(imagen.TieneGeorreferencia());
        ASSERT_EQ(imagen.Leer(soloCabecera), 1);
        ASSERT_TRUE(imagen.TieneGeorreferencia());
        const CGeorreferencia& g = *imagen.Georreferencia();
        EXPECT_THAT(g.m_dEscala, ElementsAre(0.5, 0.25, 0));
        EXPECT_EQ(g.m_dTransformacion[15], 15.5);
        ASSERT_EQ(g.m_PuntosControl.size(), 2U);
        EXPECT_THAT(g.m_PuntosControl[1], ElementsAre(10, 10, 0, 1005, 1997.5, 5));
        EXPECT_EQ(g.m_nTipoModelo, 2);
        EXPECT_EQ(g.m_nTipoRaster, 1);
        EXPECT_EQ(g.m_nTipoGeografico, 4258);
        EXPECT_EQ(g.m_nUnidadAngular, 9102);
    }
}

TEST_F(LibTiffTest, KeysThatAreNotThereKeepTheirDefault) {
    const auto ruta = m_Carpeta / "geo.tif";
    // The header claims more keys than there are; one value lies past the doubles.
    EscribeGeo(ruta, {1, 1, 0, 40, 2048, 0, 1, 4326, 2054, 34736, 1, 77});
    LibTiff imagen;
    ASSERT_EQ(Lee(imagen, ruta), 1);
    EXPECT_EQ(imagen.Georreferencia()->m_nTipoModelo, 3);
    EXPECT_EQ(imagen.Georreferencia()->m_nTipoRaster, 2);
    EXPECT_EQ(imagen.Georreferencia()->m_nUnidadAngular, 9105);
}

TEST_F(LibTiffTest, KeysOfAFormerFileAreForgotten) {
    const auto ruta = m_Carpeta / "geo.tif";
    LibTiff imagen;
    EscribeGeo(ruta, {1, 1, 0, 2, 1024, 0, 1, 2, 2054, 0, 1, 9102});
    ASSERT_EQ(Lee(imagen, ruta), 1);
    EXPECT_EQ(imagen.Georreferencia()->m_nTipoModelo, 2);
    EscribeGeo(ruta, {1, 1, 0, 0});
    ASSERT_EQ(Lee(imagen, ruta), 1);
    EXPECT_EQ(imagen.Georreferencia()->m_nTipoModelo, 3);
    EXPECT_EQ(imagen.Georreferencia()->m_nUnidadAngular, 9105);
}

TEST_F(LibTiffTest, AFileWithoutTagsIsNotGeoreferenced) {
    const auto ruta = m_Carpeta / "geo.tif";
    EscribeGeo(ruta, {1, 1, 0, 0});
    LibTiff imagen;
    ASSERT_EQ(Lee(imagen, ruta), 1);
    ASSERT_TRUE(imagen.TieneGeorreferencia());
    ASSERT_EQ(Lee(imagen, Escribe({})), 1);
    EXPECT_FALSE(imagen.TieneGeorreferencia());
}

// ---- Files, damage, room -----------------------------------------------------------------------------------------

TEST_F(LibTiffTest, WithoutAFileThereIsNothingToRead) {
    LibTiff imagen;
    EXPECT_EQ(imagen.Leer(false), 2);
    EXPECT_FALSE(imagen.SetFichero(nullptr));
    const auto ruta = m_Carpeta.Escribe("no.tif", "this is no picture");
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    Progreso progreso;
    EXPECT_FALSE(imagen.SetFichero(&fichero));
    EXPECT_THAT(progreso.m_Mensajes, Not(IsEmpty()));
    EXPECT_EQ(imagen.Leer(false), 2);
    EXPECT_TRUE(imagen.CierraFichero());
    EXPECT_TRUE(imagen.CierraFichero());
}

TEST_F(LibTiffTest, ASecondFileClosesTheFirst) {
    const auto ruta = Escribe({});
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    const std::size_t antes = CuentaDescriptores();
    {
        LibTiff imagen;
        ASSERT_TRUE(imagen.SetFichero(&fichero));
        EXPECT_EQ(CuentaDescriptores(), antes + 1);
        ASSERT_TRUE(imagen.SetFichero(&fichero));
        EXPECT_EQ(CuentaDescriptores(), antes + 1);
        EXPECT_TRUE(imagen.CierraFichero());
        EXPECT_EQ(CuentaDescriptores(), antes);
        EXPECT_EQ(imagen.Leer(false), 2);
        ASSERT_TRUE(imagen.SetFichero(&fichero));
    }
    EXPECT_EQ(CuentaDescriptores(), antes);
}

TEST_F(LibTiffTest, ACancelAtAnyStepLeavesNothing) {
    const auto pintura = Escribe({.alto = 9});
    for (int paso = 1; paso <= 9; ++paso)
        for (const int modo : {0, 1}) {
            Progreso progreso(paso);
            LibTiff imagen(modo);
            EXPECT_EQ(Lee(imagen, pintura), 2);
            EXPECT_EQ(progreso.m_Pasos.size(), std::size_t(paso));
            EXPECT_THAT(progreso.m_Etapas, ElementsAre(56001U));
            EXPECT_EQ(progreso.m_nAbiertas, 0);
            EXPECT_EQ(imagen.Alto(), 0);
        }
    const auto valores = Escribe(Rejilla(16, SAMPLEFORMAT_UINT));
    for (int paso = 1; paso <= 2; ++paso) {
        Progreso progreso(paso);
        LibTiff imagen;
        Tabla tabla;
        EXPECT_EQ(LeeTabla(imagen, valores, tabla), 2);
        EXPECT_EQ(tabla, nullptr);
    }
}

TEST_F(LibTiffTest, WithoutMemoryThePictureGoesToAFile) {
    FormaTiff forma{.ancho = 200, .alto = 300, .compresion = COMPRESSION_NONE, .filasTira = 10};
    const auto ruta = Escribe(forma);
    LibTiff entera, imagen;
    ASSERT_EQ(Lee(entera, ruta), 1);
    Progreso progreso;
    LimitaMemoria(100'000);
    const int resultado = Lee(imagen, ruta);
    LimitaMemoria();
    ASSERT_EQ(resultado, 1);
    EXPECT_THAT(progreso.m_Mensajes, testing::Contains(testing::HasSubstr("archivo temporal")));
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 2U);  // the source and the picture
    EXPECT_TRUE(Iguales(imagen, entera));
}

TEST_F(LibTiffTest, AStripThatMemoryCannotHoldIsRefused) {
    const auto ruta = Escribe({.filasTira = 0, .tesela = 128}, BytesAleatorios(50'000, 1));
    Progreso progreso;
    LibTiff imagen(1);
    LimitaMemoria(1000);
    const int resultado = Lee(imagen, ruta);
    LimitaMemoria();
    EXPECT_EQ(resultado, kNoSoportado);
    EXPECT_THAT(progreso.m_Mensajes, Not(IsEmpty()));
}

// Changes bytes of a file in place.
void Cambia(const std::filesystem::path& ruta, std::streamoff lugar, std::string_view bytes) {
    std::fstream fichero(ruta, std::ios::in | std::ios::out | std::ios::binary);
    fichero.seekp(lugar);
    fichero.write(bytes.data(), std::streamsize(bytes.size()));
}

TEST_F(LibTiffTest, OfAFileCutShortTheStripsThatAreThereAreRead) {
    const auto ruta = Escribe({.compresion = COMPRESSION_NONE});
    LibTiff entera, cortada;
    ASSERT_EQ(Lee(entera, ruta), 1);
    std::uint64_t tira = 0;
    {
        const Tiff tiff = AbreTiff(ruta, "r+");
        std::vector<std::uint64_t> lugares(5);
        for (unsigned i = 0; i < 5; ++i)
            lugares[i] = TIFFGetStrileOffset(tiff.get(), i);
        tira = lugares[2];
    }
    // The third strip's offset lies past the end: the directory holds it as a 32-bit number.
    std::ifstream lectura(ruta, std::ios::binary);
    const std::string todo{std::istreambuf_iterator<char>(lectura), {}};
    const auto buscado = static_cast<std::uint32_t>(tira);
    const std::size_t lugar = todo.rfind(std::string(reinterpret_cast<const char*>(&buscado), 4));
    ASSERT_NE(lugar, std::string::npos);
    Cambia(ruta, std::streamoff(lugar), std::string_view("\xF0\xFF\xFF\x7F", 4));
    Progreso progreso;
    ASSERT_EQ(Lee(cortada, ruta), 1);
    EXPECT_THAT(progreso.m_Mensajes, testing::SizeIs(1));
    const std::vector<BYTE> a = Pixeles(entera), b = Pixeles(cortada);
    const std::size_t fila = 37 * 3, abajo = (29 - 21) * fila, arriba = (29 - 14) * fila;
    EXPECT_TRUE(std::equal(b.begin(), b.begin() + abajo, a.begin()));
    EXPECT_TRUE(std::all_of(b.begin() + abajo, b.begin() + arriba, [](BYTE x) { return x == 0; }));
    EXPECT_TRUE(std::equal(b.begin() + arriba, b.end(), a.begin() + arriba));
}

TEST_F(LibTiffTest, AFileOfNothingButADirectoryIsRefused) {
    for (const FormaTiff& forma : {FormaTiff{}, FormaTiff{.ancho = 3000, .alto = 3000, .filasTira = 3000},
                                   FormaTiff{.filasTira = 0}, Rejilla(16, SAMPLEFORMAT_UINT)}) {
        const auto ruta = m_Carpeta / "v.tif";
        {
            const Tiff tiff = AbreTiff(ruta, "w");
            PonForma(tiff.get(), forma);
            TIFFCheckpointDirectory(tiff.get());
        }
        Progreso progreso;
        LibTiff imagen;
        Tabla tabla;
        EXPECT_EQ(LeeTabla(imagen, ruta, tabla), kNoSoportado);
        EXPECT_EQ(tabla, nullptr);
        EXPECT_EQ(imagen.Alto(), 0);
        EXPECT_THAT(progreso.m_Mensajes, Not(IsEmpty()));
    }
}

TEST_F(LibTiffTest, ADirectoryWithoutDataIsGivenUpSoon) {
    const auto ruta = m_Carpeta / "v.tif";
    {
        const Tiff tiff = AbreTiff(ruta, "w");
        PonForma(tiff.get(), {.ancho = 10, .alto = 5000, .filasTira = 1});
        TIFFCheckpointDirectory(tiff.get());
    }
    Progreso progreso;
    LibTiff imagen;
    EXPECT_EQ(Lee(imagen, ruta), kNoSoportado);
    EXPECT_LT(progreso.m_Pasos.size(), 200U);
}

}  // namespace
