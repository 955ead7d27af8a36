// JPEG 2000 read whole, by windows and reduced, against OpenJPEG's own decoding; files that can't be read.

#include "raster/CECW.h"

#include "raster/Imagenes.h"
#include "raster/J2KPrueba.h"
#include "raster/Resultados.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"
#include "support/Temporales.h"

#include <array>
#include <fstream>

namespace {

using j2k::Dibujo;
using Vertiz::CECW;

CString Ancha(const std::filesystem::path& ruta) {
    return {ruta.c_str()};
}

// A window of a picture of 3 bytes a pixel, rows from the bottom as all of them; the window counts from the top.
std::vector<BYTE> Recorte(const std::vector<BYTE>& bgr, int ancho, int x0, int x1, int y0, int y1, int paso = 1) {
    const int alto = int(bgr.size()) / 3 / ancho;
    std::vector<std::vector<BYTE>> filas;
    for (int y = y0; y < y1; y += paso) {
        filas.emplace_back();
        for (int x = x0; x < x1; x += paso)
            for (int i = 0; i < 3; ++i)
                filas.back().push_back(bgr[std::size_t(((alto - 1 - y) * ancho + x) * 3 + i)]);
    }
    std::vector<BYTE> recorte;
    for (auto fila = filas.rbegin(); fila != filas.rend(); ++fila)
        recorte.insert(recorte.end(), fila->begin(), fila->end());
    return recorte;
}

class EcwTest : public imagenes::ConTemporales {
  protected:
    // A file of that picture, and what OpenJPEG gives for it.
    std::filesystem::path Fichero(const Dibujo& dibujo, const char* nombre = "imagen.jp2") {
        const std::filesystem::path ruta = m_Carpeta / nombre;
        j2k::Escribe(ruta, dibujo);
        const j2k::Imagen imagen = j2k::Decodifica(ruta);
        EXPECT_NE(imagen, nullptr);
        if (imagen) m_BGR = j2k::EnBGR(*imagen);
        return ruta;
    }
    // The same, read.
    void EsperaIgual(const Dibujo& dibujo) {
        const std::filesystem::path ruta = Fichero(dibujo);
        CECW imagen;
        imagen.SetNombre(Ancha(ruta));
        ASSERT_EQ(imagen.Leer(false), 1);
        EXPECT_EQ(imagen.BytesPixel(), 3);
        EXPECT_EQ(imagenes::Pixeles(imagen), m_BGR);
    }
    // A file that can't be read: 0, one message, no pixels, and nothing left open.
    void EsperaRehusado(const std::filesystem::path& ruta, const char* motivo) {
        const std::size_t abiertos = CuentaDescriptores();
        Progreso progreso;
        for (const bool soloCabecera : {false, true}) {
            CECW imagen;
            imagen.SetNombre(Ancha(ruta));
            progreso.m_Mensajes.clear();
            EXPECT_EQ(imagen.Leer(soloCabecera), 0);
            ASSERT_EQ(progreso.m_Mensajes.size(), 1u);
            EXPECT_THAT(progreso.m_Mensajes[0], testing::HasSubstr(motivo));
            EXPECT_THAT(progreso.m_Mensajes[0], testing::StartsWith(ruta.filename().string() + ": "));
            std::array<BYTE, 3> pixel{};
            EXPECT_FALSE(imagen.GetPixel(pixel.data(), 0, 0, 0));
        }
        EXPECT_EQ(progreso.m_nAbiertas, 0);
        EXPECT_EQ(CuentaDescriptores(), abiertos);
    }

    std::vector<BYTE> m_BGR;
};

TEST_F(EcwTest, GivesThePixelsOfOpenJPEGWhateverTheComponents) {
    for (const unsigned bits : {1u, 4u, 7u, 8u, 10u, 12u, 16u, 20u})
        for (const bool conSigno : {false, true}) {
            SCOPED_TRACE(testing::Message() << bits << " bits, signed " << conSigno);
            EsperaIgual({.componentes = {{bits, conSigno}}, .color = OPJ_CLRSPC_GRAY});
            EsperaIgual({.componentes = {{bits, conSigno}, {bits, conSigno}, {bits, conSigno}}});
        }
}

TEST_F(EcwTest, LeavesAlphaOut) {
    EsperaIgual({.componentes = {{8}, {8, false, 1, 1, true}}, .color = OPJ_CLRSPC_GRAY});
    EsperaIgual({.componentes = {{8}, {8}, {8}, {8, false, 1, 1, true}}});
}

TEST_F(EcwTest, RepeatsSubsampledChromaAndTurnsItIntoColour) {
    EsperaIgual({.componentes = {{8}, {8, false, 2, 2}, {8, false, 2, 2}}, .color = OPJ_CLRSPC_SYCC});
    EsperaIgual({.componentes = {{8}, {8, false, 2, 1}, {8, false, 2, 1}}, .x0 = 3, .y0 = 5, .color = OPJ_CLRSPC_SYCC});
    EsperaIgual({.componentes = {{8}, {8}, {8}}, .color = OPJ_CLRSPC_SYCC});
}

TEST_F(EcwTest, TakesTheSizeOfTheFirstComponent) {
    EsperaIgual({.componentes = {{8, false, 2, 2}, {8, false, 2, 2}, {8, false, 2, 2}}, .x0 = 1});
}

TEST_F(EcwTest, ReadsTilesOffsetsCodestreamsAndLosses) {
    EsperaIgual({.tesela = 16, .x0 = 13, .y0 = 12});
    EsperaIgual({.ancho = 100, .alto = 20, .reversible = false});
    EsperaIgual({.ancho = 1, .alto = 1});
    const auto ruta = Fichero({.codestream = true}, "imagen.j2k");
    CECW imagen;
    imagen.SetNombre(Ancha(ruta));
    ASSERT_EQ(imagen.Leer(false), 1);
    EXPECT_EQ(imagenes::Pixeles(imagen), m_BGR);
}

TEST_F(EcwTest, GivesTheSameWhateverTheCountOfWorkers) {
    const auto ruta = Fichero({.ancho = 50, .alto = 31, .tesela = 20});
    for (const int hilos : {1, 2, 7, 30, 31, 32, 100})
        for (const int modo : {0, 1}) {
            SCOPED_TRACE(hilos);
            CECW imagen(modo);
            ASSERT_EQ(imagen.LeerHilos(Ancha(ruta), hilos, 0, 0, 0, 0, 0), 1);
            EXPECT_EQ(imagen.Alto(), -31);
            EXPECT_EQ(imagenes::Pixeles(imagen), m_BGR);
        }
}

TEST_F(EcwTest, ReadsWindows) {
    for (const int tesela : {0, 16}) {
        const auto ruta = Fichero({.ancho = 60, .alto = 45, .tesela = tesela, .x0 = 5, .y0 = 9});
        struct Caso {
            int x0, x1, y0, y1;           // asked for
            int izq, der, arriba, abajo;  // given
        };
        for (const Caso& c :
             {Caso{10, 30, 7, 20, 10, 30, 7, 20}, Caso{-5, 8, 40, 90, 0, 8, 40, 45}, Caso{10, 10, 3, 4, 0, 60, 3, 4},
              Caso{59, 60, 5, 5, 59, 60, 0, 45}, Caso{30, 10, 20, 7, 0, 60, 0, 45}}) {
            SCOPED_TRACE(testing::Message() << c.x0 << " " << c.x1 << " " << c.y0 << " " << c.y1);
            for (const int hilos : {1, 3}) {
                CECW imagen;
                ASSERT_EQ(imagen.LeerHilos(Ancha(ruta), hilos, 0, c.x0, c.x1, c.y0, c.y1), 1);
                EXPECT_EQ(imagen.Ancho(), c.der - c.izq);
                EXPECT_EQ(imagenes::Pixeles(imagen), Recorte(m_BGR, 60, c.izq, c.der, c.arriba, c.abajo));
            }
        }
        CECW imagen;
        imagen.SetNombre(Ancha(ruta));
        ASSERT_EQ(imagen.Leer(false, 10, 30, 7, 20), 1);
        EXPECT_EQ(imagenes::Pixeles(imagen), Recorte(m_BGR, 60, 10, 30, 7, 20));
    }
}

TEST_F(EcwTest, ShowsInAWindowWhatTheWholeShowsThereWithSubsampledChroma) {
    const auto ruta = Fichero({.ancho = 31,
                               .alto = 30,
                               .componentes = {{8}, {8, false, 2, 2}, {8, false, 2, 2}},
                               .x0 = 1,
                               .y0 = 1,
                               .color = OPJ_CLRSPC_SYCC});
    for (int x = 0; x < 4; ++x)
        for (int y = 0; y < 4; ++y) {
            CECW imagen;
            ASSERT_EQ(imagen.LeerHilos(Ancha(ruta), 2, 0, x, x + 5, y, y + 6), 1);
            EXPECT_EQ(imagenes::Pixeles(imagen), Recorte(m_BGR, 31, x, x + 5, y, y + 6)) << x << ", " << y;
        }
}

TEST_F(EcwTest, ReducesByTakingEveryFewPixels) {
    const auto ruta = Fichero({.ancho = 50, .alto = 31});
    for (const unsigned r : {0u, 1u, 2u, 3u, 7u, 31u, 49u, 50u, 1000u, 4000000000u}) {
        SCOPED_TRACE(r);
        const int paso = int(std::clamp(r, 1u, 1000u));
        CECW imagen;
        imagen.SetNombre(Ancha(ruta));
        ASSERT_EQ(imagen.LeerReducido(r), 1);
        EXPECT_EQ(imagen.Ancho(), (50 + paso - 1) / paso);
        EXPECT_EQ(imagen.Alto(), -((31 + paso - 1) / paso));
        EXPECT_EQ(imagenes::Pixeles(imagen), Recorte(m_BGR, 50, 0, 50, 0, 31, paso));
        for (const int hilos : {1, 3, 40}) {
            ASSERT_EQ(imagen.LeerHilos(Ancha(ruta), hilos, r, 4, 41, 3, 29), 1);
            EXPECT_EQ(imagenes::Pixeles(imagen), Recorte(m_BGR, 50, 4, 41, 3, 29, paso)) << hilos;
        }
    }
}

TEST_F(EcwTest, ReadsTheHeaderAlone) {
    const auto ruta = Fichero({});
    CFile fichero(Ancha(ruta), CFile::modeRead);
    CECW imagen;
    ASSERT_TRUE(imagen.SetFichero(&fichero));
    ASSERT_EQ(imagen.Leer(true), 1);
    EXPECT_EQ(imagen.Ancho(), 40);
    EXPECT_EQ(imagen.Alto(), 31);
    std::array<BYTE, 3> pixel{};
    EXPECT_FALSE(imagen.GetPixel(pixel.data(), 0, 0, 0));
    ASSERT_EQ(imagen.Leer(false), 1);
    EXPECT_EQ(imagen.Alto(), -31);
    EXPECT_EQ(imagenes::Pixeles(imagen), m_BGR);
}

TEST_F(EcwTest, TellsItsTypeAndRefusesTables) {
    CECW imagen;
    EXPECT_EQ(imagen.Tipo(), 23);
    EXPECT_TRUE(imagen.SetFichero(nullptr));
    Vertiz::CMatriz<float>* tabla = nullptr;
    EXPECT_EQ(imagen.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), Vertiz::kNoSoportado);
    EXPECT_EQ(tabla, nullptr);
}

TEST_F(EcwTest, RefusesBadArguments) {
    const auto ruta = Fichero({});
    CECW imagen;
    EXPECT_EQ(imagen.Leer(false), 2);
    EXPECT_EQ(imagen.Leer(true), 2);
    EXPECT_EQ(imagen.LeerReducido(2), 2);
    EXPECT_EQ(imagen.LeerHilos(nullptr, 2, 0, 0, 0, 0, 0), Vertiz::kTamanoMalo);
    EXPECT_EQ(imagen.LeerHilos(L"", 2, 0, 0, 0, 0, 0), Vertiz::kTamanoMalo);
    EXPECT_EQ(imagen.LeerHilos(Ancha(ruta), 0, 0, 0, 0, 0, 0), Vertiz::kTamanoMalo);
    EXPECT_EQ(imagen.LeerHilos(Ancha(ruta), -1, 0, 0, 0, 0, 0), Vertiz::kTamanoMalo);
    EXPECT_EQ(imagen.LeerHilos(Ancha(ruta), 2, 0, 40, 50, 0, 0), Vertiz::kTamanoMalo);
    EXPECT_EQ(imagen.LeerHilos(Ancha(ruta), 2, 0, 0, 0, -9, 0), Vertiz::kTamanoMalo);
}

TEST_F(EcwTest, AHeaderThatCannotBeReadLeavesNothingOfTheFormerPicture) {
    CECW imagen;
    imagen.SetNombre(Ancha(Fichero({})));
    ASSERT_EQ(imagen.Leer(false), 1);
    imagen.SetNombre(Ancha(m_Carpeta / "nada.jp2"));
    EXPECT_EQ(imagen.Leer(true), 0);
    EXPECT_EQ(imagen.Ancho(), 0);
    EXPECT_EQ(imagen.Alto(), 0);
}

TEST_F(EcwTest, ShowsItsProgressAndGoesOnAfterACancel) {
    const auto ruta = Fichero({.ancho = 300, .alto = 300});
    for (const int cancelaEn : {0, 1}) {
        Progreso progreso(cancelaEn);
        CECW imagen;
        ASSERT_EQ(imagen.LeerHilos(Ancha(ruta), 2, 0, 0, 0, 0, 0), 1);
        EXPECT_EQ(imagenes::Pixeles(imagen), m_BGR);
        EXPECT_EQ(progreso.m_Etapas, std::vector<unsigned>{56001});
        EXPECT_EQ(progreso.m_nAbiertas, 0);
        EXPECT_THAT(progreso.m_Niveles, testing::Each(3));
        ASSERT_FALSE(progreso.m_Pasos.empty());
        if (cancelaEn == 1) {
            EXPECT_EQ(progreso.m_Pasos.size(), 1u);
        }
        for (const auto& [hechos, total] : progreso.m_Pasos) {
            EXPECT_EQ(total, 200);
            EXPECT_LE(hechos, total);
        }
    }
}

TEST_F(EcwTest, IsPlacedByItsWorldFile) {
    const auto ruta = Fichero({});
    m_Carpeta.Escribe("imagen.j2w", "0.5\n0\n0\n-0.25\n1000.25\n2000.125\n");
    CECW imagen;
    imagen.SetNombre(Ancha(ruta));
    for (const bool soloCabecera : {true, false}) {
        ASSERT_EQ(imagen.Leer(soloCabecera), 1);
        EXPECT_TRUE(imagen.TieneGeorreferencia());
        const auto& g = *imagen.Georreferencia();
        EXPECT_EQ(g.m_dEscala[0], 0.5);
        EXPECT_EQ(g.m_dEscala[1], 0.25);
        ASSERT_EQ(g.m_PuntosControl.size(), 1u);
        EXPECT_THAT(g.m_PuntosControl[0], testing::ElementsAre(0, 0, 0, 1000.0, 2000.25, 0));
    }
    // A window hangs on its own corner.
    ASSERT_EQ(imagen.Leer(false, 10, 20, 8, 9), 1);
    EXPECT_THAT(imagen.Georreferencia()->m_PuntosControl[0],
                testing::ElementsAre(0, 0, 0, 1000.0 + 10 * 0.5, 2000.25 - 8 * 0.25, 0));
    ASSERT_EQ(imagen.Leer(false, -4, 20, -3, 9), 1);
    EXPECT_THAT(imagen.Georreferencia()->m_PuntosControl[0], testing::ElementsAre(0, 0, 0, 1000.0, 2000.25, 0));
}

TEST_F(EcwTest, HasNoPlaceWithoutAGoodWorldFile) {
    const auto ruta = Fichero({});
    for (const char* texto : {"", "0.5\n0.1\n0.1\n-0.5\n1\n2\n", "0.5\n0\n0\n", "0\n0\n0\n0\n1\n2\n", "hola"}) {
        m_Carpeta.Escribe("imagen.wld", texto);
        CECW imagen;
        imagen.SetNombre(Ancha(ruta));
        ASSERT_EQ(imagen.Leer(true), 1);
        EXPECT_FALSE(imagen.TieneGeorreferencia()) << texto;
        EXPECT_EQ(imagen.Georreferencia()->m_dEscala[0], 1.0);
    }
}

TEST_F(EcwTest, RefusesWhatIsNoJpeg2000) {
    EsperaRehusado(m_Carpeta / "falta.jp2", "can't be found");
    EsperaRehusado(m_Carpeta.Escribe("vacio.jp2", ""), "is empty");
    EsperaRehusado(m_Carpeta.Escribe("corto.jp2", "abc"), "too short");
    EsperaRehusado(m_Carpeta.Escribe("texto.jp2", "This is a text and no picture."), "not a JPEG 2000 file");
    std::filesystem::create_directory(m_Carpeta / "carpeta.jp2");
    EsperaRehusado(m_Carpeta / "carpeta.jp2", "can't be opened");
}

TEST_F(EcwTest, SaysThatEcwNeedsAKit) {
    EsperaRehusado(m_Carpeta.Escribe("imagen.jp2", std::string("\x65\x02\x01\x01", 4).append(60, '\0')),
                   "this is an ECW file");
    EsperaRehusado(m_Carpeta.Escribe("imagen.ECW", std::string(64, 'x')), "LUMBRA_ECW_SDK");
    // The content counts, not the name.
    const auto ruta = Fichero({}, "jpeg2000.ecw");
    CECW imagen;
    imagen.SetNombre(Ancha(ruta));
    EXPECT_EQ(imagen.Leer(false), 1);
}

TEST_F(EcwTest, RefusesHeadersThatClaimTheImpossible) {
    const std::string bueno = j2k::Lee(Fichero({.codestream = true}, "bueno.j2k"));
    const auto con = [&](std::size_t posicion, std::initializer_list<int> valores) {
        std::string malo = bueno;
        for (const int v : valores)
            malo[posicion++] = char(v);
        return m_Carpeta.Escribe("malo.j2k", malo);
    };
    constexpr std::size_t kAncho = 8, kTesela = 24, kComponentes = 40;
    EsperaRehusado(con(kAncho, {0, 0, 0, 0}), "impossible sizes");
    EsperaRehusado(con(kAncho, {0xFF, 0xFF, 0xFF, 0xFF}), "impossible sizes");
    EsperaRehusado(con(kTesela, {0, 0, 0, 0}), "impossible sizes");
    EsperaRehusado(con(kTesela, {0, 0, 0, 1, 0, 0, 0, 1}), "more tiles than the file can hold");
    EsperaRehusado(con(kComponentes, {0, 0}), "impossible sizes");
    EsperaRehusado(con(kComponentes, {0x40, 0}), "impossible sizes");
}

TEST_F(EcwTest, FailsWithoutMemory) {
    const auto ruta = Fichero({.ancho = 300, .alto = 300});
    Progreso progreso;
    CECW imagen;
    for (const ULONGLONG limite : {10'000, 200'000, 1'000'000}) {
        LimitaMemoria(limite);
        progreso.m_Mensajes.clear();
        EXPECT_EQ(imagen.LeerHilos(Ancha(ruta), 3, 0, 0, 0, 0, 0), 0);
        LimitaMemoria();
        ASSERT_EQ(progreso.m_Mensajes.size(), 1u);
        EXPECT_THAT(progreso.m_Mensajes[0], testing::HasSubstr("not enough memory"));
    }
    EXPECT_EQ(imagen.LeerHilos(Ancha(ruta), 3, 0, 0, 0, 0, 0), 1);
}

TEST_F(EcwTest, EndsOnDamagedFilesWithoutPixels) {
    const std::string bueno = j2k::Lee(Fichero({.ancho = 200, .alto = 150}));
    std::mt19937 azar(7);
    int fallidos = 0;
    for (int i = 0; i < 60; ++i) {
        std::string malo = bueno;
        if (i % 3 == 0)
            malo.resize(azar() % malo.size());
        else
            for (int k = 0; k < 20; ++k)
                malo[azar() % (i % 3 == 1 ? 200 : malo.size())] = char(azar());
        CECW imagen;
        imagen.SetNombre(Ancha(m_Carpeta.Escribe("malo.jp2", malo)));
        const int resultado = imagen.Leer(false);
        std::array<BYTE, 3> pixel{};
        EXPECT_EQ(imagen.GetPixel(pixel.data(), 0, 0, 0), resultado == 1);
        fallidos += resultado != 1;
    }
    EXPECT_GT(fallidos, 20);
}

TEST_F(EcwTest, DropsTheFormerPictureWhenAReadFails) {
    CECW imagen;
    imagen.SetNombre(Ancha(Fichero({})));
    ASSERT_EQ(imagen.Leer(false), 1);
    imagen.SetNombre(Ancha(m_Carpeta.Escribe("malo.jp2", "no picture at all")));
    EXPECT_EQ(imagen.Leer(false), 0);
    EXPECT_EQ(imagen.Ancho(), 0);
}

}  // namespace
