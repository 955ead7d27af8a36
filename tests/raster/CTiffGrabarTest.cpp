// Written TIFF files: valid to other readers, the same when read back, and nothing left of one that failed.

#include "raster/Tiffs.h"
#include "support/Progreso.h"

#include <gdal.h>
#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <sstream>

namespace {

using namespace tiffs;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using Vertiz::CGeorreferencia;
using Vertiz::CMatriz;
using Vertiz::CTiff;

constexpr int kNo = 15065;

class CTiffGrabar : public imagenes::PorFormas {
  protected:
    std::filesystem::path Ruta() const { return m_Carpeta / "escrita ñ.tif"; }
    template <class F>
    int Graba(F grabar) {
        CFile fichero(CString(Ruta().string().c_str()), CFile::modeCreate | CFile::modeReadWrite);
        EXPECT_TRUE(fichero.IsOpen());
        return grabar(&fichero);
    }
    int Graba(CTiff& tiff) {
        return Graba([&](CFile* f) { return tiff.Grabar(f); });
    }
};
INSTANTIATE_TEST_SUITE_P(Formas, CTiffGrabar, testing::ValuesIn(imagenes::kFormas), imagenes::NombreForma);

CGeorreferencia Lugar() {
    CGeorreferencia g;
    g.m_dEscala[0] = 0.5;
    g.m_dEscala[1] = 0.25;
    g.m_PuntosControl = {{0.0, 0.0, 0.0, 440720.125, 3751320.5, 0.0}};
    g.m_nTipoModelo = 2;
    g.m_nTipoRaster = 1;
    g.m_nTipoGeografico = 4258;
    g.m_nUnidadAngular = 9102;
    return g;
}

void Iguales(const CGeorreferencia& a, const CGeorreferencia& b) {
    EXPECT_THAT(a.m_dEscala, ElementsAreArray(b.m_dEscala));
    EXPECT_THAT(a.m_dTransformacion, ElementsAreArray(b.m_dTransformacion));
    EXPECT_EQ(a.m_PuntosControl, b.m_PuntosControl);
    EXPECT_EQ(a.m_nTipoModelo, b.m_nTipoModelo);
    EXPECT_EQ(a.m_nTipoRaster, b.m_nTipoRaster);
    EXPECT_EQ(a.m_nTipoGeografico, b.m_nTipoGeografico);
    EXPECT_EQ(a.m_nUnidadAngular, b.m_nUnidadAngular);
}

TEST_P(CTiffGrabar, MoreRowsThanAShortHoldsAreStillOneStrip) {
    const auto [bits, modo] = GetParam();
    if (modo != 0) GTEST_SKIP() << "the strip is the same";
    const auto imagen = imagenes::Aleatoria<CTiff>(1, 70'000, bits, modo);
    ASSERT_EQ(Graba(*imagen), 1);
    EXPECT_TRUE(Igual(DeLibtiff(Ruta()), EnColor(*imagen)));
}

TEST_P(CTiffGrabar, ReadsBackIdenticalHereAndInLibtiff) {
    const auto [bits, modo] = GetParam();
    for (const int ancho : {1, 5, 64}) {
        const auto imagen = imagenes::Aleatoria<CTiff>(ancho, 7, bits, modo);
        ASSERT_EQ(Graba(*imagen), 1);
        Abierto a(Ruta());
        ASSERT_EQ(a.raster.Leer(false), 1);
        EXPECT_TRUE(imagenes::Iguales(a.raster, *imagen));
        EXPECT_EQ(a.raster.Resolucion(), 300.0F);
        EXPECT_FALSE(a.raster.TieneGeorreferencia());
        EXPECT_TRUE(Igual(DeLibtiff(Ruta()), EnColor(*imagen)));
    }
}

TEST_P(CTiffGrabar, CarriesThePalette) {
    const auto [bits, modo] = GetParam();
    if (bits != 8) GTEST_SKIP() << "only pictures of 8 bits have one";
    auto paleta = imagenes::BytesAleatorios(1024, 7);
    for (std::size_t i = 3; i < paleta.size(); i += 4)
        paleta[i] = 0;
    const auto imagen = imagenes::Aleatoria<CTiff>(9, 4, 8, modo, 3, paleta.data());
    ASSERT_EQ(Graba(*imagen), 1);
    Abierto a(Ruta());
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_TRUE(a.raster.TienePaleta());
    EXPECT_TRUE(imagenes::Iguales(a.raster, *imagen));
    EXPECT_TRUE(Igual(DeLibtiff(Ruta()), EnColor(*imagen)));
}

TEST_P(CTiffGrabar, HasItsFourteenEntriesInOrderAndFourMoreForAPlace) {
    const auto [bits, modo] = GetParam();
    const auto imagen = imagenes::Aleatoria<CTiff>(5, 3, bits, modo);
    const auto tags = [&] {
        std::ifstream f(Ruta(), std::ios::binary);
        std::stringstream todo;
        todo << f.rdbuf();
        const std::string s = todo.str();
        EXPECT_EQ(s.substr(0, 8), std::string("II*\0\10\0\0\0", 8));
        std::vector<int> lista;
        for (int i = 0; i < (BYTE(s[8]) | BYTE(s[9]) << 8); ++i)
            lista.push_back(BYTE(s[std::size_t(10 + i * 12)]) | BYTE(s[std::size_t(11 + i * 12)]) << 8);
        EXPECT_NE(s.find(std::string("Qartel\0", 7)), std::string::npos);
        return lista;
    };
    ASSERT_EQ(Graba(*imagen), 1);
    EXPECT_THAT(tags(), ElementsAre(256, 257, 258, 259, 262, 273, 277, 278, 279, 282, 283, 284, 296, 305));
    const CGeorreferencia lugar = Lugar();
    ASSERT_EQ(Graba([&](CFile* f) { return imagen->Grabar(f, nullptr, &lugar); }), 1);
    EXPECT_THAT(tags(), ElementsAre(256, 257, 258, 259, 262, 273, 277, 278, 279, 282, 283, 284, 296, 305, 33550, 33922,
                                    34735, 34736));
}

TEST_P(CTiffGrabar, ThePlaceIsKeptHereAndInGDAL) {
    const auto [bits, modo] = GetParam();
    const auto imagen = imagenes::Aleatoria<CTiff>(5, 3, bits, modo);
    const CGeorreferencia lugar = Lugar();
    ASSERT_EQ(Graba([&](CFile* f) { return imagen->Grabar(f, nullptr, &lugar); }), 1);
    Abierto a(Ruta());
    ASSERT_EQ(a.raster.Leer(false), 1);
    ASSERT_TRUE(a.raster.TieneGeorreferencia());
    Iguales(*a.raster.Georreferencia(), lugar);
    EXPECT_TRUE(imagenes::Iguales(a.raster, *imagen));

    GDALAllRegister();
    const GDALDatasetH d = GDALOpen(Ruta().c_str(), GA_ReadOnly);
    ASSERT_NE(d, nullptr);
    double g[6]{};
    EXPECT_EQ(GDALGetGeoTransform(d, g), CE_None);
    EXPECT_THAT(g, ElementsAre(440720.125, 0.5, 0.0, 3751320.5, 0.0, -0.25));
    EXPECT_EQ(GDALGetRasterCount(d), bits / 8);
    BYTE primero = 0;
    EXPECT_EQ(GDALRasterIO(GDALGetRasterBand(d, 1), GF_Read, 0, 0, 1, 1, &primero, 1, 1, GDT_Byte, 0, 0), CE_None);
    EXPECT_EQ(primero, imagenes::Pixel(*imagen, 2, 0)[bits == 8 ? 0 : 2]) << "the top left pixel, red first";
    GDALClose(d);

    // What was read with a place is written with it.
    ASSERT_EQ(Graba(a.raster), 1);
    Abierto b(Ruta());
    ASSERT_EQ(b.raster.Leer(true), 1);
    ASSERT_TRUE(b.raster.TieneGeorreferencia());
    Iguales(*b.raster.Georreferencia(), lugar);
}

TEST_F(CTiffGrabar, APlaceByTransformationOrByControlPointsStaysOne) {
    const auto imagen = imagenes::Aleatoria<CTiff>(5, 3, 8, 0);
    CGeorreferencia porMatriz, porPuntos;
    for (int i = 0; i < 16; ++i)
        porMatriz.m_dTransformacion[i] = i + 0.5;
    porPuntos.m_PuntosControl = {{0, 0, 0, 1, 2, 0}, {5, 0, 0, 8, 2.5, 0}, {0, 3, 0, 1.5, -4, 0}};
    for (const CGeorreferencia& g : {porMatriz, porPuntos}) {
        ASSERT_EQ(Graba([&](CFile* f) { return imagen->Grabar(f, nullptr, &g); }), 1);
        Abierto a(Ruta());
        ASSERT_EQ(a.raster.Leer(true), 1);
        Iguales(*a.raster.Georreferencia(), g);
    }
    GDALAllRegister();
    const GDALDatasetH d = GDALOpen(Ruta().c_str(), GA_ReadOnly);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(GDALGetGCPCount(d), 3);
    GDALClose(d);
}

TEST_F(CTiffGrabar, ATableIsWrittenAsFloatsTopRowFirst) {
    CMatriz<float> tabla(3, 4);
    for (unsigned f = 0; f < 3; ++f)
        for (unsigned c = 0; c < 4; ++c)
            tabla.Set(f, c, float(f) * 10.0F + float(c) + 0.25F);
    tabla.Set(1, 1, -1.0e30F);
    CTiff tiff;
    CGeorreferencia lugar = Lugar();
    lugar.m_nTipoRaster = 2;
    ASSERT_EQ(Graba([&](CFile* f) { return tiff.Grabar(f, &tabla, &lugar); }), 1);
    Abierto a(Ruta());
    CMatriz<float>* leida = nullptr;
    ASSERT_EQ(a.raster.Leer(false, &leida, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), 1);
    const std::unique_ptr<CMatriz<float>> suya(leida);
    ASSERT_NE(leida, nullptr);
    ASSERT_EQ(leida->GetFilas(), 3u);
    ASSERT_EQ(leida->GetColumnas(), 4u);
    for (unsigned f = 0; f < 3; ++f)
        for (unsigned c = 0; c < 4; ++c)
            EXPECT_EQ(leida->Get(f, c), tabla.Get(f, c));
    GDALAllRegister();
    const GDALDatasetH d = GDALOpen(Ruta().c_str(), GA_ReadOnly);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(GDALGetRasterDataType(GDALGetRasterBand(d, 1)), GDT_Float32);
    float primera = 0.0F;
    EXPECT_EQ(GDALRasterIO(GDALGetRasterBand(d, 1), GF_Read, 0, 0, 1, 1, &primera, 1, 1, GDT_Float32, 0, 0), CE_None);
    EXPECT_EQ(primera, 20.25F);
    GDALClose(d);
}

TEST_F(CTiffGrabar, ATableWithoutAPlaceWritesThePicture) {
    const CMatriz<float> tabla(3, 4);
    const auto imagen = imagenes::Aleatoria<CTiff>(5, 2, 24, 0);
    ASSERT_EQ(Graba([&](CFile* f) { return imagen->Grabar(f, &tabla, nullptr); }), 1);
    Abierto a(Ruta());
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_TRUE(imagenes::Iguales(a.raster, *imagen));
}

TEST_P(CTiffGrabar, ACancelLeavesNothing) {
    const auto imagen = imagenes::Aleatoria<CTiff>(5, 9, GetParam().bits, GetParam().modo);
    for (const int paso : {1, 4, 9}) {
        Progreso progreso(paso);
        EXPECT_EQ(Graba(*imagen), 2);
        EXPECT_EQ(std::filesystem::file_size(Ruta()), 0u);
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(56002u));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
}

TEST_F(CTiffGrabar, AFileThatCannotBeWrittenIsAFailure) {
    const auto imagen = imagenes::Aleatoria<CTiff>(5, 9, 24, 0);
    EXPECT_EQ(imagen->Grabar(nullptr), kNo);
    const auto ruta = m_Carpeta.Escribe("suyo.tif", "something of theirs");
    CFile lectura(CString(ruta.string().c_str()), CFile::modeRead);
    EXPECT_EQ(imagen->Grabar(&lectura), kNo);
    EXPECT_EQ(std::filesystem::file_size(ruta), 19u);
    CFile lleno(L"/dev/full", CFile::modeWrite);
    if (lleno.IsOpen()) {
        EXPECT_EQ(imagen->Grabar(&lleno), kNo);
    }
}

TEST_F(CTiffGrabar, ARasterWithoutPixelsGivesTwo) {
    CTiff vacio, cabecera, unBit;
    EXPECT_EQ(Graba(vacio), 2);
    ASSERT_TRUE(cabecera.Crear(5, 5, 24, 1.0F, false, nullptr, nullptr, true));
    EXPECT_EQ(Graba(cabecera), 2);
    ASSERT_TRUE(unBit.Crear(5, 5, 1, 1.0F, false, nullptr, nullptr, false));
    EXPECT_EQ(Graba(unBit), kNo);
}

TEST_F(CTiffGrabar, MoreThanFourGibibytesAreRefusedBeforeAnythingIsWritten) {
    CTiff grande(1);  // its pixels are a hole in a file
    ASSERT_TRUE(grande.Crear(40000, 40000, 24, 1.0F, false, nullptr, nullptr, false));
    EXPECT_EQ(Graba(grande), kNo);
    EXPECT_EQ(std::filesystem::file_size(Ruta()), 0u);
}

TEST_F(CTiffGrabar, ResolutionsSurviveExactly) {
    for (const float resolucion : {0.0F, 1.0F, 72.009F, 96.12345F, 300.0F, 4.0e6F}) {
        CTiff imagen;
        ASSERT_TRUE(imagen.Crear(2, 2, 8, resolucion, true, nullptr, nullptr, false));
        ASSERT_EQ(Graba(imagen), 1);
        Abierto a(Ruta());
        ASSERT_EQ(a.raster.Leer(true), 1);
        EXPECT_EQ(a.raster.Resolucion(), resolucion);
    }
}

}  // namespace
