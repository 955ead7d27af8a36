// Real TIFF files, each beside what libtiff makes of it in one call.

#include "raster/LibTiff.h"
#include "raster/Imagenes.h"
#include "raster/Resultados.h"
#include "raster/TiffDePrueba.h"
#include "support/Progreso.h"

#include <algorithm>

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
        const bool bien = leido.abierto && leido.resultado == 1;
        if (!bien) {
            if (leido.abierto) {
                EXPECT_EQ(leido.resultado, Vertiz::kNoSoportado);
            }
            EXPECT_FALSE(progreso.m_Mensajes.empty());
            EXPECT_EQ(imagen.Ancho(), 0);
            std::printf("%s: %s\n", ruta.filename().c_str(), progreso.m_Mensajes.empty() ? "" : progreso.m_Mensajes.back().c_str());
            continue;
        }
        ++vistos;
        if (!progreso.m_Mensajes.empty()) std::printf("W %s: %s\n", ruta.filename().c_str(), progreso.m_Mensajes.back().c_str());
        EXPECT_EQ(imagen.BytesPixel(), 3);
        EXPECT_LT(imagen.Alto(), 0);
        EXPECT_TRUE(Pixeles(imagen) == SegunLibtiff(ruta));
        LibTiff enFichero(1);
        EXPECT_EQ(Lee(enFichero, ruta, false).resultado, 1);
        EXPECT_TRUE(Iguales(enFichero, imagen));
    }
    EXPECT_GT(vistos, 40U);
    EXPECT_EQ(CuentaDescriptores(), descriptores);
}

}  // namespace
