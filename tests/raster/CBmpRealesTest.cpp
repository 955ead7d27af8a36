// Real bitmaps: each opens as GDAL shows it, or is refused for its reason.

#include "raster/CBmp.h"
#include "raster/Imagenes.h"
#include "support/Progreso.h"

#include <gdal_priv.h>
#include <gmock/gmock.h>

namespace {

using namespace imagenes;
using testing::ElementsAre;
using testing::HasSubstr;
using Vertiz::CBmp;

std::string Ruta(const std::string& nombre) {
    return (CarpetaDatos() / "bmp" / nombre).string();
}

// The pixels as GDAL decodes them: rows from the bottom, three bytes each, blue first.
std::vector<BYTE> PixelesGdal(const std::string& nombre) {
    GDALAllRegister();
    const GDALDatasetUniquePtr datos(GDALDataset::Open(Ruta(nombre).c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
    if (datos == nullptr) return {};
    const int ancho = datos->GetRasterXSize(), alto = datos->GetRasterYSize();
    const GDALColorTable* const paleta = datos->GetRasterBand(1)->GetColorTable();
    std::vector<BYTE> pixeles, filas[3];
    for (int r = alto - 1; r >= 0; --r) {
        for (int b = 0; b < std::min(datos->GetRasterCount(), 3); ++b) {
            filas[b].resize(std::size_t(ancho));
            EXPECT_EQ(datos->GetRasterBand(b + 1)->RasterIO(GF_Read, 0, r, ancho, 1, filas[b].data(), ancho, 1,
                                                            GDT_Byte, 0, 0, nullptr),
                      CE_None);
        }
        for (std::size_t c = 0; c < std::size_t(ancho); ++c)
            if (paleta != nullptr) {
                const GDALColorEntry* const e = paleta->GetColorEntry(filas[0][c]);
                pixeles.insert(pixeles.end(), {BYTE(e->c3), BYTE(e->c2), BYTE(e->c1)});
            } else {
                pixeles.insert(pixeles.end(), {filas[2][c], filas[1][c], filas[0][c]});
            }
    }
    return pixeles;
}

class BmpReal : public ConTemporales, public testing::WithParamInterface<std::tuple<const char*, int>> {
  protected:
    const char* Nombre() const { return std::get<0>(GetParam()); }
    int Lee(CBmp& bmp) {
        bmp.SetNombre(CString(Nombre()));
        if (!m_Fichero.Open(CString(Ruta(Nombre()).c_str()), CFile::modeRead)) return -1;
        bmp.SetFichero(&m_Fichero);
        return bmp.Leer(false);
    }
    CFile m_Fichero;
};

class BmpQueAbre : public BmpReal {};
INSTANTIATE_TEST_SUITE_P(Todos, BmpQueAbre,
                         testing::Combine(testing::Values("blauesglas_24.bmp", "pal1.bmp", "pal1wb.bmp", "pal4.bmp",
                                                          "pal8-0.bmp", "pal8.bmp", "pal8nonsquare.bmp",
                                                          "pal8topdown.bmp", "pal8w125.bmp", "rgb24.bmp",
                                                          "rgb24largepal.bmp", "rgb24pal.bmp", "rgb32.bmp"),
                                          testing::Values(0, 1)));

TEST_P(BmpQueAbre, HasThePixelsThatGdalShows) {
    SALTA_SIN_DATOS(std::string("bmp/") + Nombre());
    CBmp bmp(std::get<1>(GetParam()));
    ASSERT_EQ(Lee(bmp), 1);
    if (bmp.BytesPixel() != 1 && bmp.BytesPixel() != 3) {
        ASSERT_EQ(bmp.Expande(), 1);
    }
    const auto gdal = PixelesGdal(Nombre());
    ASSERT_FALSE(gdal.empty());
    EXPECT_EQ(Pixeles(bmp), gdal);
}

class BmpRehusado : public BmpReal {};
INSTANTIATE_TEST_SUITE_P(Todos, BmpRehusado,
                         testing::Combine(testing::Values("badrle.bmp", "badwidth.bmp", "pal4rle.bmp", "pal8os2.bmp",
                                                          "pal8rle.bmp", "rgb16-565.bmp", "rgb32bf.bmp", "rgba32.bmp"),
                                          testing::Values(0)));

TEST_P(BmpRehusado, TellsWhy) {
    SALTA_SIN_DATOS(std::string("bmp/") + Nombre());
    const Progreso progreso;
    CBmp bmp;
    EXPECT_EQ(Lee(bmp), 15065);
    const std::string nombre = Nombre();
    const char* const motivo = nombre == "badwidth.bmp"  ? "Tamaño no válido"
                               : nombre == "pal8os2.bmp" ? "anterior a Windows"
                                                         : "Archivo comprimido";
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre(HasSubstr(motivo)));
}

TEST(BmpRealConCabeceraLarga, ShowsTheSamePicture) {
    SALTA_SIN_DATOS("bmp/pal8v4.bmp");
    const auto Abre = [](CBmp& bmp, const char* nombre) {
        CFile fichero(CString(Ruta(nombre).c_str()), CFile::modeRead);
        bmp.SetFichero(&fichero);
        ASSERT_EQ(bmp.Leer(false), 1) << nombre;
    };
    CBmp corta, v4, v5;
    Abre(corta, "pal8.bmp");
    Abre(v4, "pal8v4.bmp");
    Abre(v5, "pal8v5.bmp");
    EXPECT_TRUE(Iguales(v4, corta));
    EXPECT_TRUE(Iguales(v5, corta));
}

TEST(BmpRealDeDosBits, TakesThePaletteOfFourColours) {
    SALTA_SIN_DATOS("bmp/pal2.bmp");
    CFile fichero(CString(Ruta("pal2.bmp").c_str()), CFile::modeRead);
    CBmp bmp;
    bmp.SetFichero(&fichero);
    ASSERT_EQ(bmp.Leer(false), 1);
    const std::vector<BYTE> paleta(bmp.Paleta(), bmp.Paleta() + 16);
    fichero.Seek(70, CFile::begin);
    BYTE primero = 0;
    ASSERT_EQ(fichero.Read(&primero, 1), 1u);
    ASSERT_EQ(bmp.Expande(), 1);
    for (int c = 0; c < 4; ++c) {
        const auto entrada = paleta.begin() + 4 * (primero >> (6 - 2 * c) & 3);
        EXPECT_EQ(Pixel(bmp, 0, c), std::vector<BYTE>(entrada, entrada + 3));
    }
}

TEST(BmpRealDe16Bits, LooksLikeItsTwinOf24) {
    SALTA_SIN_DATOS("bmp/rgb16.bmp");
    CBmp dieciseis, veinticuatro;
    for (const auto& [bmp, nombre] : {std::pair{&dieciseis, "rgb16.bmp"}, {&veinticuatro, "rgb24.bmp"}}) {
        CFile fichero(CString(Ruta(nombre).c_str()), CFile::modeRead);
        bmp->SetFichero(&fichero);
        ASSERT_EQ(bmp->Leer(false), 1);
    }
    ASSERT_EQ(dieciseis.Expande(), 1);
    const auto a = Pixeles(dieciseis), b = Pixeles(veinticuatro);
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        ASSERT_NEAR(a[i], b[i], 8) << i;  // what five bits can tell
}

TEST(BmpRealCorto, KeepsTheRowsThatAreThere) {
    SALTA_SIN_DATOS("bmp/shortfile.bmp");
    CBmp corto, entero;
    for (const auto& [bmp, nombre] : {std::pair{&corto, "shortfile.bmp"}, {&entero, "pal1.bmp"}}) {
        CFile fichero(CString(Ruta(nombre).c_str()), CFile::modeRead);
        bmp->SetFichero(&fichero);
        ASSERT_EQ(bmp->Leer(false), 1);
        ASSERT_EQ(bmp->Expande(), 1);
    }
    const int filas = (273 - 62) / 16;
    for (int r = 0; r < filas; ++r)
        for (int c = 0; c < corto.Ancho(); ++c)
            ASSERT_EQ(Pixel(corto, r, c), Pixel(entero, r, c)) << r << ", " << c;
    const std::vector<BYTE> cero(corto.Paleta() == nullptr ? Pixel(corto, 63, 0) : std::vector<BYTE>{});
    for (int r = filas + 1; r < 64; ++r)
        for (int c = 0; c < corto.Ancho(); ++c)
            ASSERT_EQ(Pixel(corto, r, c), cero) << r << ", " << c;
}

}  // namespace
