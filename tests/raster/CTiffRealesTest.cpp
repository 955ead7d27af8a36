// Real TIFF files: each opens with the pixels that libtiff shows, or is refused as compressed.

#include "raster/Tiffs.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using namespace tiffs;

class CTiffReales : public imagenes::ConTemporales {};

struct Profundidad {
    bool propia = false;  ///< one of the two compressions that the reader knows
    unsigned bits = 0;
};

Profundidad Mira(const std::filesystem::path& ruta) {
    const Tiff t = Abre(ruta);
    std::uint16_t compresion = 0, bits = 0;
    if (!t) return {};
    TIFFGetFieldDefaulted(t.get(), TIFFTAG_COMPRESSION, &compresion);
    TIFFGetFieldDefaulted(t.get(), TIFFTAG_BITSPERSAMPLE, &bits);
    return {compresion == COMPRESSION_NONE || compresion == COMPRESSION_PACKBITS, bits};
}

TEST_F(CTiffReales, ShowWhatLibtiffShowsOrAreRefusedAsCompressed) {
    SALTA_SIN_DATOS("tiff/cea.tif");
    int leidos = 0, rechazados = 0, profundos = 0;
    for (const auto& entrada : std::filesystem::directory_iterator(CarpetaDatos() / "tiff")) {
        const auto ruta = entrada.path();
        if (!ruta.extension().string().starts_with(".tif")) continue;
        SCOPED_TRACE(ruta.filename().string());
        Progreso progreso;
        Abierto a(ruta);
        ASSERT_TRUE(a.bCabecera);
        const auto [propia, bits] = Mira(ruta);
        if (!propia) {
            EXPECT_EQ(a.raster.Leer(false), 15065);
            EXPECT_EQ(progreso.m_Mensajes.size(), 1u);
            ++rechazados;
            continue;
        }
        ASSERT_EQ(a.raster.Leer(false), 1) << testing::PrintToString(progreso.m_Mensajes);
        if (bits > 8) {  // stretched to what they hold: libtiff shows their upper byte, or nothing
            const auto pixeles = EnColor(a.raster);
            EXPECT_EQ(*std::ranges::min_element(pixeles), 0);
            EXPECT_EQ(*std::ranges::max_element(pixeles), 255);
            ++profundos;
            continue;
        }
        const auto suyos = DeLibtiff(ruta);
        ASSERT_FALSE(suyos.empty());
        EXPECT_TRUE(Igual(EnColor(a.raster), suyos));
        Abierto enFichero(ruta, 1);
        ASSERT_EQ(enFichero.raster.Leer(false), 1);
        EXPECT_TRUE(imagenes::Iguales(enFichero.raster, a.raster));
        ++leidos;
    }
    EXPECT_EQ(leidos, 28);
    EXPECT_EQ(profundos, 8);
    EXPECT_EQ(rechazados, 36);
}

}  // namespace
