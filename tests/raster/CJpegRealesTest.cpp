// Real JPEG files, each beside what plain libjpeg makes of it, and another reader.

#include "raster/CJpeg.h"
#include "raster/Imagenes.h"
#include "raster/JpegDePrueba.h"
#include "support/Progreso.h"

#include <gdal.h>

#include <algorithm>
#include <set>

namespace {

using namespace imagenes;
using Vertiz::CJpeg;

std::vector<std::filesystem::path> Ficheros() {
    std::vector<std::filesystem::path> rutas;
    for (const auto& f : std::filesystem::directory_iterator(CarpetaDatos() / "jpeg"))
        if (f.path().extension() == ".jpg") rutas.push_back(f.path());
    std::ranges::sort(rutas);
    return rutas;
}

int Lee(CJpeg& imagen, const std::filesystem::path& ruta) {
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    return imagen.SetFichero(&fichero) ? imagen.Leer(false) : -1;
}

class CJpegReales : public ConTemporales {};

TEST_F(CJpegReales, ShowWhatLibjpegShowsOrSayWhyNot) {
    SALTA_SIN_DATOS("jpeg");
    const std::set<std::string> malos{"gradient_ls.jpg", "monkey12.jpg"};  // lossless, 12 bits
    const std::set<std::string> avisan{"truncated_jpeg.jpg"};
    for (const auto& ruta : Ficheros()) {
        SCOPED_TRACE(ruta.filename());
        Progreso progreso;
        CJpeg imagen;
        if (malos.contains(ruta.filename())) {
            EXPECT_EQ(Lee(imagen, ruta), 2);
            EXPECT_EQ(progreso.m_Mensajes.size(), 1U);
            EXPECT_EQ(imagen.Alto(), 0);
            continue;
        }
        ASSERT_EQ(Lee(imagen, ruta), 1);
        EXPECT_EQ(progreso.m_Mensajes.size(), avisan.count(ruta.filename()));
        EXPECT_TRUE(Pixeles(imagen) == SegunLibjpeg(Contenido(ruta)));
        CJpeg enFichero(1);
        EXPECT_EQ(Lee(enFichero, ruta), 1);
        EXPECT_TRUE(Iguales(enFichero, imagen));
    }
}

TEST_F(CJpegReales, AnotherReaderSeesTheSameWithinOne) {
    GDALAllRegister();
    for (const char* nombre : {"testorig.jpg", "sunrise-progressive.jpg", "restarts.jpg", "no-jfif-ycbcr.jpg"}) {
        SALTA_SIN_DATOS(std::string("jpeg/") + nombre);
        SCOPED_TRACE(nombre);
        const auto ruta = CarpetaDatos() / "jpeg" / nombre;
        CJpeg imagen;
        ASSERT_EQ(Lee(imagen, ruta), 1);
        const int ancho = imagen.Ancho(), alto = -imagen.Alto();
        std::vector<BYTE> rgb(std::size_t(ancho) * std::size_t(alto) * 3);
        const GDALDatasetH fuente = GDALOpen(ruta.c_str(), GA_ReadOnly);
        ASSERT_NE(fuente, nullptr);
        int bandas[]{3, 2, 1};
        EXPECT_EQ(GDALDatasetRasterIO(fuente, GF_Read, 0, 0, ancho, alto, rgb.data(), ancho, alto, GDT_Byte, 3, bandas,
                                      3, 3 * ancho, 1),
                  CE_None);
        GDALClose(fuente);
        const std::vector<BYTE> pixeles = Pixeles(imagen);
        int peor = 0;
        for (int f = 0; f < alto; ++f)
            for (int b = 0; b < 3 * ancho; ++b)
                peor = std::max(peor, std::abs(pixeles[std::size_t((alto - 1 - f) * 3 * ancho + b)] -
                                               rgb[std::size_t(f * 3 * ancho + b)]));
        EXPECT_LE(peor, 1);
    }
}

}  // namespace
