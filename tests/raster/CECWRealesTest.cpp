// Real files of JPEG 2000: each is read as OpenJPEG reads it, or refused where OpenJPEG can't.

#include "raster/CECW.h"
#include "raster/Imagenes.h"
#include "raster/J2KPrueba.h"
#include "support/Progreso.h"
#include "support/Temporales.h"

#include <array>
#include <filesystem>

namespace {

using Vertiz::CECW;

class EcwReales : public testing::TestWithParam<const char*> {};

TEST_P(EcwReales, GivesThePixelsOfOpenJPEG) {
    const auto nombre = std::string("jp2/") + GetParam();
    SALTA_SIN_DATOS(nombre);
    const auto ruta = CarpetaDatos() / nombre;
    const j2k::Imagen esperada = j2k::Decodifica(ruta);
    Progreso progreso;
    CECW imagen;
    imagen.SetNombre(CString(ruta.c_str()));
    const int resultado = imagen.Leer(false);
    if (esperada == nullptr) {
        EXPECT_EQ(resultado, 0);
        EXPECT_EQ(progreso.m_Mensajes.size(), 1u);
        return;
    }
    ASSERT_EQ(resultado, 1) << testing::PrintToString(progreso.m_Mensajes);
    EXPECT_EQ(imagen.Ancho(), int(esperada->comps[0].w));
    EXPECT_EQ(imagen.Alto(), -int(esperada->comps[0].h));
    EXPECT_TRUE(imagenes::Pixeles(imagen) == j2k::EnBGR(*esperada));
}

constexpr const char* kFicheros[] = {"Bretagne1_0.j2k",  "Bretagne1_ht_lossy.j2k",
                                     "basn6a08.jp2",     "bogota.jp2",
                                     "broken1.jp2",      "file4.jp2",
                                     "file6.jp2",        "file8.jp2",
                                     "file9.jp2",        "img-8bit.jp2",
                                     "p0_01.j2k",        "p0_03.j2k",
                                     "p1_05.j2k",        "small_world_non_consecutive_tilepart_tlm.jp2",
                                     "subsampling_2.jp2"};
INSTANTIATE_TEST_SUITE_P(Ficheros, EcwReales, testing::ValuesIn(kFicheros),
                         [](const auto& caso) { return std::to_string(caso.index); });

TEST(EcwRealesTest, CoverTheFolder) {
    SALTA_SIN_DATOS("jp2");
    const std::filesystem::directory_iterator carpeta(CarpetaDatos() / "jp2");
    for (const auto& fichero : carpeta)
        EXPECT_THAT(kFicheros, testing::Contains(testing::StrEq(fichero.path().filename().string())));
}

TEST(EcwRealesTest, ArePlacedByTheirGeoJP2Box) {
    struct Caso {
        const char* nombre;
        double celda, x, y;
    };
    for (const Caso& c : {Caso{"jp2/bogota.jp2", 60.0, 440720.0, 100000.0},
                          Caso{"jp2/small_world_non_consecutive_tilepart_tlm.jp2", 0.9, -180.0, 90.0}}) {
        SCOPED_TRACE(c.nombre);
        SALTA_SIN_DATOS(c.nombre);
        CECW imagen;
        imagen.SetNombre(CString((CarpetaDatos() / c.nombre).c_str()));
        ASSERT_EQ(imagen.Leer(true), 1);
        ASSERT_TRUE(imagen.TieneGeorreferencia());
        const auto& g = *imagen.Georreferencia();
        EXPECT_DOUBLE_EQ(g.m_dEscala[0], c.celda);
        EXPECT_DOUBLE_EQ(g.m_dEscala[1], c.celda);
        EXPECT_THAT(g.m_PuntosControl, testing::ElementsAre(testing::ElementsAre(0, 0, 0, c.x, c.y, 0)));
    }
}

// p1_05 has the headers of all its packets in front, and tiles: parts of such a picture come out of the whole.
TEST(EcwVentanas, ShowWhatTheWholeShowsThere) {
    for (const char* nombre : {"jp2/p1_05.j2k", "jp2/p0_03.j2k", "jp2/img-8bit.jp2", "jp2/subsampling_2.jp2"}) {
        SCOPED_TRACE(nombre);
        SALTA_SIN_DATOS(nombre);
        const CString ruta((CarpetaDatos() / nombre).c_str());
        CECW entera;
        entera.SetNombre(ruta);
        ASSERT_EQ(entera.Leer(false), 1);
        for (const int y0 : {0, 35, 77}) {
            const int x0 = 3, x1 = 115, y1 = y0 + 50, alto = -entera.Alto();
            CECW parte;
            parte.SetNombre(ruta);
            ASSERT_EQ(parte.Leer(false, x0, x1, y0, y1), 1);
            Vertiz::CTiff recorte;
            ASSERT_EQ(entera.Recorta(alto - y1, x0, alto - y0, x1, &recorte), 1);
            EXPECT_TRUE(imagenes::Pixeles(parte) == imagenes::Pixeles(recorte)) << y0;
        }
    }
}

}  // namespace
