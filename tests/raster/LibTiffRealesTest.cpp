// Real TIFF files, each beside what libtiff makes of it in one call.

#include "raster/Imagenes.h"
#include "raster/LibTiff.h"
#include "raster/Resultados.h"
#include "raster/TiffDePrueba.h"
#include "support/Progreso.h"

#include <gdal.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>

namespace {

using namespace imagenes;
using Vertiz::CMatriz;
using Vertiz::LibTiff;

struct Leido {
    bool abierto = false;
    int resultado = 0;
    std::unique_ptr<CMatriz<float>> tabla;
};

Leido Lee(LibTiff& imagen, const std::filesystem::path& ruta, bool conTabla) {
    Leido leido;
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    leido.abierto = imagen.SetFichero(&fichero);
    if (!leido.abierto) return leido;
    CMatriz<float>* tabla = nullptr;
    leido.resultado = imagen.Leer(false, conTabla ? &tabla : nullptr, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0);
    leido.tabla.reset(tabla);
    imagen.CierraFichero();
    return leido;
}

std::vector<std::filesystem::path> Ficheros() {
    std::vector<std::filesystem::path> rutas;
    for (const auto& f : std::filesystem::directory_iterator(CarpetaDatos() / "tiff"))
        if (f.path().extension() == ".tif" || f.path().extension() == ".tiff") rutas.push_back(f.path());
    std::ranges::sort(rutas);
    return rutas;
}

// The values as another reader gives them, row 0 at the top.
std::vector<float> SegunGdal(const std::filesystem::path& ruta, int ancho, int alto) {
    GDALAllRegister();
    const GDALDatasetH fuente = GDALOpen(ruta.c_str(), GA_ReadOnly);
    if (fuente == nullptr) return {};
    std::vector<float> valores(std::size_t(ancho) * std::size_t(alto));
    const CPLErr error = GDALRasterIO(GDALGetRasterBand(fuente, 1), GF_Read, 0, 0, ancho, alto, valores.data(), ancho,
                                      alto, GDT_Float32, 0, 0);
    GDALClose(fuente);
    return error == CE_None ? valores : std::vector<float>();
}

class LibTiffReales : public ConTemporales {};

TEST_F(LibTiffReales, ShowWhatLibtiffShowsOrSayWhyNot) {
    SALTA_SIN_DATOS("tiff");
    const std::size_t descriptores = CuentaDescriptores();
    std::size_t vistos = 0;
    for (const auto& ruta : Ficheros()) {
        SCOPED_TRACE(ruta.filename());
        Progreso progreso;
        LibTiff imagen;
        const Leido leido = Lee(imagen, ruta, false);
        if (!leido.abierto || leido.resultado != 1) {
            EXPECT_EQ(leido.resultado, leido.abierto ? Vertiz::kNoSoportado : 0);
            EXPECT_FALSE(progreso.m_Mensajes.empty());
            EXPECT_EQ(imagen.Ancho(), 0);
            EXPECT_EQ(imagen.Alto(), 0);
            continue;
        }
        ++vistos;
        EXPECT_EQ(imagen.BytesPixel(), 3);
        EXPECT_LT(imagen.Alto(), 0);
        LibTiff enFichero(1);
        EXPECT_EQ(Lee(enFichero, ruta, false).resultado, 1);
        EXPECT_TRUE(Iguales(enFichero, imagen));
        if (progreso.m_Mensajes.empty()) {
            EXPECT_TRUE(Pixeles(imagen) == SegunLibtiff(ruta));
        } else {
            EXPECT_EQ(ruta.filename(), "text.tif") << progreso.m_Mensajes.front();
        }
    }
    EXPECT_GE(vistos, 47U);
    EXPECT_EQ(CuentaDescriptores(), descriptores);
}

TEST_F(LibTiffReales, RefuseOnlyWhatIsKnownToBeRefused) {
    SALTA_SIN_DATOS("tiff");
    // Damaged, or of a depth that libtiff shows no picture of.
    const std::set<std::string> malos{"crash-0da013a13571cc8eb457a39fee8db18f8a3c7127.tif", "flower-minisblack-12.tif",
                                      "flower-minisblack-32.tif", "libtiff_segfault.tif"};
    for (const auto& ruta : Ficheros()) {
        LibTiff imagen;
        const Leido leido = Lee(imagen, ruta, true);
        EXPECT_EQ(leido.resultado != 1, malos.contains(ruta.filename())) << ruta.filename();
        EXPECT_TRUE(leido.resultado != 1 || (leido.tabla == nullptr) == (imagen.Alto() < 0)) << ruta.filename();
    }
}

TEST_F(LibTiffReales, OfADamagedFileTheSoundRowsAreRead) {
    const auto ruta = CarpetaDatos() / "tiff/text.tif";
    SALTA_SIN_DATOS("tiff/text.tif");
    Progreso progreso;
    LibTiff imagen;
    EXPECT_EQ(Lee(imagen, ruta, false).resultado, 1);
    EXPECT_THAT(progreso.m_Mensajes, testing::ElementsAre(testing::HasSubstr("scanline 320")));
    // Strip by strip: over several, libtiff's decoder of this compression adds to what the last one left behind.
    EXPECT_TRUE(Pixeles(imagen) == SegunLibtiff(ruta, true));
}

TEST_F(LibTiffReales, TablesHoldTheValuesOfTheFile) {
    SALTA_SIN_DATOS("tiff");
    const std::pair<const char*, bool> ficheros[] = {{"int16.tif", true},
                                                     {"dataraster.tif", true},
                                                     {"random-fp16.tiff", true},
                                                     {"16bit.MM.cropped.tif", true},
                                                     {"geo_float64.tif", false},
                                                     {"ndvi_256x256_gray32f_striped.tif", false},
                                                     {"lzw32f_p2_bigendian.tif", false},
                                                     {"predictor-3-gray-f32.tif", false}};
    for (const auto& [nombre, volteada] : ficheros) {
        SCOPED_TRACE(nombre);
        const auto ruta = CarpetaDatos() / "tiff" / nombre;
        LibTiff imagen;
        const Leido leido = Lee(imagen, ruta, true);
        ASSERT_NE(leido.tabla, nullptr);
        const unsigned filas = leido.tabla->GetFilas(), columnas = leido.tabla->GetColumnas();
        ASSERT_EQ(int(filas), imagen.Alto());
        const std::vector<float> gdal = SegunGdal(ruta, int(columnas), int(filas));
        ASSERT_FALSE(gdal.empty());
        unsigned distintos = 0;
        for (unsigned f = 0; f < filas; ++f)
            for (unsigned c = 0; c < columnas; ++c) {
                const float valor = leido.tabla->Get(volteada ? filas - 1 - f : f, c), otro = gdal[f * columnas + c];
                distintos += valor != otro && !(std::isnan(valor) && std::isnan(otro));
            }
        EXPECT_EQ(distintos, 0U);
    }
}

}  // namespace
