// Flood fill: the region of one colour by its four neighbours, as a plain walk finds it.

#include "raster/Imagenes.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <climits>
#include <set>

namespace {

using namespace imagenes;
using testing::IsEmpty;
using Vertiz::CBmp;
using Vertiz::CTiff;

constexpr int kAncho = 24, kAlto = 17;

class Rellena : public testing::TestWithParam<int> {
  protected:
    std::size_t Bytes() const { return std::size_t(GetParam()) / 8; }
    // Pixels of two colours, so that regions of every shape arise.
    std::vector<BYTE> DosColores(unsigned semilla, unsigned claros) const {
        std::mt19937 azar(semilla);
        std::vector<BYTE> pixeles;
        for (int i = 0; i < kAncho * kAlto; ++i)
            pixeles.insert(pixeles.end(), Bytes(), azar() % 100 < claros ? BYTE{200} : BYTE{30});
        return pixeles;
    }
    // The same picture filled by the plainest walk.
    std::vector<BYTE> Rellenados(std::vector<BYTE> pixeles, int fila, int columna, const BYTE* nuevo) const {
        const auto En = [&](int f, int c) { return pixeles.begin() + (f * kAncho + c) * int(Bytes()); };
        const std::vector<BYTE> viejo(En(fila, columna), En(fila, columna) + int(Bytes()));
        std::set<std::pair<int, int>> vistos, pendientes{{fila, columna}};
        while (!pendientes.empty()) {
            const auto [f, c] = pendientes.extract(pendientes.begin()).value();
            if (f < 0 || f >= kAlto || c < 0 || c >= kAncho || !std::equal(viejo.begin(), viejo.end(), En(f, c)) ||
                !vistos.emplace(f, c).second)
                continue;
            pendientes.insert({{f + 1, c}, {f - 1, c}, {f, c + 1}, {f, c - 1}});
        }
        for (const auto& [f, c] : vistos)
            std::copy_n(nuevo, Bytes(), En(f, c));
        return pixeles;
    }

    static constexpr BYTE kNuevo[3]{1, 2, 3};
};
INSTANTIATE_TEST_SUITE_P(Bits, Rellena, testing::Values(8, 24));

TEST_P(Rellena, ReachesTheRegionThatAPlainWalkReaches) {
    for (unsigned semilla = 0; semilla < 40; ++semilla) {
        const auto pixeles = DosColores(semilla, 30 + semilla);
        const auto imagen = Imagen<CTiff>(kAncho, kAlto, GetParam(), 0, pixeles);
        const int fila = int(semilla * 7 % kAlto), columna = int(semilla * 5 % kAncho);
        EXPECT_TRUE(imagen->Rellena(fila, columna, kNuevo, nullptr, nullptr));
        ASSERT_EQ(Pixeles(*imagen), Rellenados(pixeles, fila, columna, kNuevo)) << semilla;
    }
}

TEST_P(Rellena, WithTheColourThatIsThereEndsAtOnce) {
    const std::vector<BYTE> pixeles(kAncho * kAlto * Bytes(), 50);
    const auto imagen = Imagen<CTiff>(kAncho, kAlto, GetParam(), 0, pixeles);
    std::vector<BYTE> igual = Pixel(*imagen, 3, 3);
    EXPECT_TRUE(imagen->Rellena(3, 3, igual.data(), nullptr, nullptr));
    std::vector<int> filas, columnas;
    EXPECT_TRUE(imagen->Rellena(3, 3, igual.data(), &filas, &columnas));
    EXPECT_THAT(filas, IsEmpty());
    EXPECT_EQ(Pixeles(*imagen), pixeles);
}

TEST_P(Rellena, OnTheCallersListDoesOneStep) {
    std::vector<BYTE> pixeles(kAncho * kAlto * Bytes(), 50);
    const auto imagen = Imagen<CTiff>(kAncho, kAlto, GetParam(), 0, pixeles);
    std::vector<int> filas, columnas;
    EXPECT_TRUE(imagen->Rellena(0, 4, kNuevo, &filas, &columnas));
    std::set<std::pair<int, int>> vecinos;
    for (std::size_t i = 0; i < filas.size(); ++i)
        vecinos.emplace(filas[i], columnas.at(i));
    EXPECT_EQ(vecinos, (std::set<std::pair<int, int>>{{0, 3}, {0, 5}, {1, 4}}));
    std::copy_n(kNuevo, Bytes(), pixeles.begin() + 4 * int(Bytes()));
    EXPECT_EQ(Pixeles(*imagen), pixeles);
}

TEST_P(Rellena, IsRefusedOutsideAndInFileMode) {
    const CarpetaTemporal carpeta;
    const auto pixeles = DosColores(2, 50);
    const auto enMemoria = Imagen<CTiff>(kAncho, kAlto, GetParam(), 0, pixeles);
    for (const auto& [f, c] : {std::pair{-1, 0}, {0, -1}, {kAlto, 0}, {0, kAncho}, {INT_MAX, INT_MAX}})
        EXPECT_FALSE(enMemoria->Rellena(f, c, kNuevo, nullptr, nullptr));
    const auto enFichero = Imagen<CTiff>(kAncho, kAlto, GetParam(), 1, pixeles);
    EXPECT_FALSE(enFichero->Rellena(0, 0, kNuevo, nullptr, nullptr));
    EXPECT_EQ(Pixeles(*enMemoria), pixeles);
    EXPECT_EQ(Pixeles(*enFichero), pixeles);
}

TEST_P(Rellena, EndsWhenTheUserCancels) {
    const std::vector<BYTE> pixeles(kAncho * kAlto * Bytes(), 50);
    const auto imagen = Imagen<CTiff>(kAncho, kAlto, GetParam(), 0, pixeles);
    const Progreso progreso(3);
    EXPECT_FALSE(imagen->Rellena(0, 0, kNuevo, nullptr, nullptr));
    EXPECT_EQ(progreso.m_Pasos.size(), 3u);
    EXPECT_EQ(progreso.m_Pasos[0], std::pair(0, 1));
    EXPECT_NE(Pixeles(*imagen).back(), kNuevo[Bytes() - 1]);
}

TEST(RellenaPaleta, WorksOnEntries) {
    std::vector<BYTE> paleta(1024, 77);  // all entries look the same
    const auto imagen = Imagen<CBmp>(3, 1, 8, 0, {5, 5, 6}, paleta.data());
    paleta[4 * 9] = 1;
    const BYTE nueve[]{9};
    EXPECT_TRUE(imagen->Rellena(0, 0, nueve, nullptr, nullptr));
    std::vector<int> f, c;
    const BYTE siete[]{7};
    EXPECT_TRUE(imagen->Rellena(0, 0, siete, &f, &c));
    EXPECT_EQ(c, std::vector<int>{1});  // entry 9 beside it, not the 6 of the same colour
}

TEST(RellenaOtras, DepthsDoNothing) {
    CBmp bmp;
    ASSERT_TRUE(bmp.Crear(8, 8, 4, 1.0F, true, nullptr, nullptr, false));
    const BYTE color[3]{};
    EXPECT_TRUE(bmp.Rellena(1, 1, color, nullptr, nullptr));
}

}  // namespace
