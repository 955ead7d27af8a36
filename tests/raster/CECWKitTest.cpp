// CECW built against a kit, whose pictures and failures the test decides: how the workers part the picture, and how
// they end.

#include "raster/CECW.h"
#include "raster/Imagenes.h"
#include "raster/NCS.h"
#include "raster/Resultados.h"
#include "platform/Hilos.h"
#include "support/Progreso.h"

#include <array>
#include <chrono>
#include <set>

namespace {

using Vertiz::CECW;

class EcwKit : public imagenes::ConTemporales {
  protected:
    EcwKit() { NCS::g_pGuion = &m_Guion; }
    ~EcwKit() override {
        EXPECT_EQ(m_Guion.vivas, 0) << "a view is still open";
        NCS::g_pGuion = nullptr;
    }
    // The rows from arriba to abajo of columns izq to der, every paso-th, from the bottom.
    static std::vector<BYTE> Esperada(int izq, int der, int arriba, int abajo, int paso = 1) {
        std::vector<std::vector<BYTE>> filas;
        for (int y = arriba; y < abajo; y += paso) {
            filas.emplace_back();
            for (int x = izq; x < der; x += paso) {
                std::array<BYTE, 3> p{};
                NCS::CView::Pixel(x, y, p.data());
                filas.back().insert(filas.back().end(), p.begin(), p.end());
            }
        }
        std::vector<BYTE> todas;
        for (auto f = filas.rbegin(); f != filas.rend(); ++f)
            todas.insert(todas.end(), f->begin(), f->end());
        return todas;
    }
    // A failed read: 0, its message, no pixels, everything closed.
    void EsperaFallo(int hilos, const char* mensaje) {
        Progreso progreso;
        CECW imagen;
        EXPECT_EQ(imagen.LeerHilos(L"imagen.ecw", hilos, 0, 0, 0, 0, 0), 0);
        EXPECT_THAT(progreso.m_Mensajes, testing::ElementsAre(std::string("imagen.ecw: ") + mensaje));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
        std::array<BYTE, 3> pixel{};
        EXPECT_FALSE(imagen.GetPixel(pixel.data(), 0, 0, 0));
        EXPECT_EQ(imagen.Ancho(), 0);
        EXPECT_EQ(m_Guion.vivas, 0);
    }

    NCS::CGuion m_Guion;
};

TEST_F(EcwKit, PartsTheRowsAmongTheWorkersWithoutGapOrOverlap) {
    for (int alto = 1; alto <= 33; ++alto)
        for (int hilos = 1; hilos <= 34; ++hilos) {
            m_Guion.alto = alto;
            m_Guion.hilos = 0;
            m_Guion.ventanas.clear();
            CECW imagen;
            ASSERT_EQ(imagen.LeerHilos(L"imagen.ecw", hilos, 0, 0, 0, 0, 0), 1);
            ASSERT_EQ(imagenes::Pixeles(imagen), Esperada(0, 20, 0, alto)) << alto << " rows, " << hilos << " workers";
            ASSERT_EQ(m_Guion.hilos, std::min(alto, hilos));
            std::multiset<int> filas;  // of the workers' views; the first is that of the whole
            for (std::size_t i = 1; i < m_Guion.ventanas.size(); ++i)
                for (int y = m_Guion.ventanas[i][1]; y <= m_Guion.ventanas[i][3]; ++y)
                    filas.insert(y);
            ASSERT_EQ(filas.size(), std::size_t(alto));
        }
}

TEST_F(EcwKit, PartsWindowsAndReducedPictures) {
    for (const unsigned r : {0u, 1u, 2u, 3u, 5u, 40u})
        for (int hilos = 1; hilos <= 12; ++hilos) {
            CECW imagen;
            ASSERT_EQ(imagen.LeerHilos(L"imagen.ecw", hilos, r, 3, 18, 2, 29), 1);
            ASSERT_EQ(imagenes::Pixeles(imagen), Esperada(3, 18, 2, 29, int(std::max(r, 1u)))) << r << ", " << hilos;
        }
}

TEST_F(EcwKit, ReadsWithAWorkerForEachProcessor) {
    m_Guion.alto = 500;
    CECW imagen;
    imagen.SetNombre(L"imagen.ecw");
    ASSERT_EQ(imagen.Leer(false), 1);
    SYSTEM_INFO sistema;
    GetSystemInfo(&sistema);
    EXPECT_EQ(m_Guion.hilos, int(sistema.dwNumberOfProcessors));
}

TEST_F(EcwKit, FailsWithTheReasonOfTheWorkerThatFailed) {
    for (const int hilos : {1, 4}) {
        for (int vista = 0; vista <= hilos; ++vista) {
            m_Guion.abiertas = 0;
            m_Guion.fallaAbrir = vista;
            EsperaFallo(hilos, "the kit says no");
            m_Guion.abiertas = 0;
            m_Guion.fallaAbrir = -1;
            m_Guion.fallaVista = vista;
            EsperaFallo(hilos, "the kit says no");
            m_Guion.fallaVista = -1;
        }
        for (const int fila : {0, 15, 30}) {
            m_Guion.fallaLinea = fila;
            EsperaFallo(hilos, "Image decoding failed");
            m_Guion.lanzaEntero = true;
            EsperaFallo(hilos, "the reader failed");
            m_Guion.lanzaEntero = false;
            m_Guion.fallaLinea = -1;
        }
    }
}

TEST_F(EcwKit, FailsInHeaderMode) {
    m_Guion.fallaAbrir = 0;
    Progreso progreso;
    CECW imagen;
    imagen.SetNombre(L"imagen.ecw");
    EXPECT_EQ(imagen.Leer(true), 0);
    EXPECT_THAT(progreso.m_Mensajes, testing::ElementsAre("imagen.ecw: the kit says no"));
}

TEST_F(EcwKit, ReadsOnItsOwnThreadWhenTheSystemGivesNoMore) {
    m_Guion.hilosMaximos = 2;
    CECW imagen;
    ASSERT_EQ(imagen.LeerHilos(L"imagen.ecw", 5, 0, 0, 0, 0, 0), 1);
    EXPECT_EQ(imagenes::Pixeles(imagen), Esperada(0, 20, 0, 31));
}

TEST_F(EcwKit, ShowsTheProgressOfAllWorkers) {
    m_Guion.demora = 10;
    Progreso progreso;
    CECW imagen;
    ASSERT_EQ(imagen.LeerHilos(L"imagen.ecw", 3, 0, 0, 0, 0, 0), 1);
    ASSERT_GT(progreso.m_Pasos.size(), 2u);
    EXPECT_LT(progreso.m_Pasos.size(), 50u) << "it waits between two looks";
    EXPECT_EQ(progreso.m_Pasos.front(), std::pair(0, 300));
    EXPECT_GT(progreso.m_Pasos.back().first, 0);
    EXPECT_TRUE(std::ranges::is_sorted(progreso.m_Pasos));
    EXPECT_THAT(progreso.m_Niveles, testing::Each(3));
    EXPECT_EQ(progreso.m_Etapas, std::vector<unsigned>{56001});
}

TEST_F(EcwKit, WaitsForItsWorkersAfterACancel) {
    m_Guion.demora = 5;
    Progreso progreso(1);
    CECW imagen;
    EXPECT_EQ(imagen.LeerHilos(L"imagen.ecw", 2, 0, 0, 0, 0, 0), 1);
    EXPECT_EQ(progreso.m_Pasos.size(), 1u);
    EXPECT_EQ(progreso.m_nAbiertas, 0);
    EXPECT_EQ(m_Guion.lineas, 31);
    EXPECT_EQ(imagenes::Pixeles(imagen), Esperada(0, 20, 0, 31));
}

TEST_F(EcwKit, NeedsNoProgressToWait) {
    m_Guion.demora = 2;
    CECW imagen;
    EXPECT_EQ(imagen.LeerHilos(L"imagen.ecw", 4, 0, 0, 0, 0, 0), 1);
    EXPECT_EQ(imagenes::Pixeles(imagen), Esperada(0, 20, 0, 31));
}

TEST_F(EcwKit, EndsSoonAfterTheWorkersWhenOneFails) {
    m_Guion.demora = 2;
    m_Guion.fallaLinea = 0;
    const auto antes = std::chrono::steady_clock::now();
    EsperaFallo(31, "Image decoding failed");
    EXPECT_LT(std::chrono::steady_clock::now() - antes, std::chrono::seconds(5));
}

TEST_F(EcwKit, IsPlacedByTheFileInformation) {
    m_Guion.celdaX = 2.0;
    m_Guion.celdaY = -4.0;
    m_Guion.origenX = 1000.0;
    m_Guion.origenY = 5000.0;
    CECW imagen;
    ASSERT_EQ(imagen.LeerHilos(L"imagen.ecw", 3, 0, 5, 9, 7, 30), 1);
    const auto& g = *imagen.Georreferencia();
    EXPECT_EQ(g.m_dEscala[0], 2.0);
    EXPECT_EQ(g.m_dEscala[1], 4.0);
    EXPECT_THAT(g.m_PuntosControl, testing::ElementsAre(testing::ElementsAre(0, 0, 0, 1010.0, 4972.0, 0)));
    EXPECT_TRUE(imagen.TieneGeorreferencia());
    m_Guion.celdaX = m_Guion.celdaY = 1.0;
    m_Guion.origenX = m_Guion.origenY = 0.0;
    ASSERT_EQ(imagen.LeerHilos(L"imagen.ecw", 3, 0, 0, 0, 0, 0), 1);
    EXPECT_FALSE(imagen.TieneGeorreferencia());
}

TEST_F(EcwKit, StoresThePictureInFileModeToo) {
    CECW imagen(1);
    ASSERT_EQ(imagen.LeerHilos(L"imagen.ecw", 3, 0, 0, 0, 0, 0), 1);
    EXPECT_EQ(imagenes::Pixeles(imagen), Esperada(0, 20, 0, 31));
}

}  // namespace
