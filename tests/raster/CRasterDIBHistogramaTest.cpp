// Histograms, against counts made pixel by pixel.

#include "raster/Imagenes.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <array>
#include <numeric>

namespace {

using namespace imagenes;
using testing::Each;
using testing::ElementsAre;
using Vertiz::CBmp;
using Vertiz::CTiff;
using Tabla = std::array<unsigned, 256>;

constexpr bool kSiNo[] = {false, true};

// The five tables of a picture without palette: grey, bytes 0 to 2, luma. Of 8 bits all count the byte.
std::array<Tabla, 5> Cuenta(const std::vector<BYTE>& pixeles, int bits, bool sinBlanco, bool sinNegro) {
    std::array<Tabla, 5> tablas{};
    const auto paso = std::size_t(bits / 8);
    for (std::size_t i = 0; i < pixeles.size(); i += paso) {
        const BYTE a = pixeles[i], b = pixeles[i + (paso == 3 ? 1 : 0)], c = pixeles[i + (paso == 3 ? 2 : 0)];
        if (sinBlanco && a == 255 && b == 255 && c == 255) continue;
        if (sinNegro && a == 0 && b == 0 && c == 0) continue;
        const double gris = bits == 8 ? a : 0.212655 * a + 0.715158 * b + 0.072187 * c;
        const double luma = bits == 8 ? a : 16 + (65.738 * c + 129.057 * b + 25.064 * a) / 256;
        ++tablas[0][std::size_t(gris)];
        ++tablas[1][a];
        ++tablas[2][b];
        ++tablas[3][c];
        ++tablas[4][std::size_t(luma)];
    }
    return tablas;
}

// Random pixels with some of pure white and black among them.
std::vector<BYTE> ConPuros(int n, int bits) {
    std::vector<BYTE> pixeles = BytesAleatorios(std::size_t(n * bits / 8), 11);
    const std::ptrdiff_t paso = bits / 8;
    std::fill_n(pixeles.begin() + 5 * paso, 4 * paso, BYTE{255});
    std::fill_n(pixeles.begin() + 20 * paso, 7 * paso, BYTE{0});
    return pixeles;
}

class Histograma : public PorFormas {};
INSTANTIATE_TEST_SUITE_P(Formas, Histograma, testing::ValuesIn(kFormas), NombreForma);

TEST_P(Histograma, CountsEachPixelUnderItsGrey) {
    const auto [bits, modo] = GetParam();
    const std::vector<BYTE> pixeles = ConPuros(37 * 11, bits);
    const auto imagen = Imagen<CTiff>(37, 11, bits, modo, pixeles);
    for (const bool sinBlanco : kSiNo)
        for (const bool sinNegro : kSiNo) {
            Tabla cuentas;
            cuentas.fill(99);
            EXPECT_EQ(imagen->Histograma(cuentas.data(), sinBlanco, sinNegro), 1);
            EXPECT_EQ(cuentas, Cuenta(pixeles, bits, sinBlanco, sinNegro)[0]) << sinBlanco << sinNegro;
        }
}

TEST_P(Histograma, FiveTablesAreGreyTheBytesAndLuma) {
    const auto [bits, modo] = GetParam();
    const std::vector<BYTE> pixeles = ConPuros(37 * 11, bits);
    const auto imagen = Imagen<CTiff>(37, 11, bits, modo, pixeles);
    for (const bool sinBlanco : kSiNo)
        for (const bool sinNegro : kSiNo) {
            unsigned tablas[5][256];
            int minimo = -1, maximo = -1;
            EXPECT_EQ(imagen->Histogramas(tablas, minimo, maximo, sinBlanco, sinNegro), 1);
            const std::array<Tabla, 5> esperadas = Cuenta(pixeles, bits, sinBlanco, sinNegro);
            for (std::size_t i = 0; i < 5; ++i)
                EXPECT_EQ(std::to_array(tablas[i]), esperadas[i]) << "table " << i << sinBlanco << sinNegro;
            const Tabla& y = esperadas[4];
            const auto contada = [](unsigned n) { return n > 0; };
            EXPECT_EQ(minimo, std::ranges::find_if(y, contada) - y.begin());
            EXPECT_EQ(maximo, 255 - (std::find_if(y.rbegin(), y.rend(), contada) - y.rbegin()));
        }
}

TEST_P(Histograma, WithNothingToCountTablesAndLimitsAre0) {
    const auto [bits, modo] = GetParam();
    CTiff blanca(modo);
    ASSERT_TRUE(blanca.Crear(5, 5, bits, 1.0F, true, nullptr, nullptr, false));
    for (CTiff vacia; CTiff* const imagen : {&vacia, &blanca}) {
        unsigned tablas[5][256];
        int minimo = -1, maximo = -1;
        EXPECT_EQ(imagen->Histogramas(tablas, minimo, maximo, true, true), 1);
        for (const auto& tabla : tablas)
            EXPECT_THAT(tabla, Each(0u));
        EXPECT_EQ(minimo, 0);
        EXPECT_EQ(maximo, 0);
    }
}

TEST_P(Histograma, ProgressIsToldByRowsAndCancels) {
    const auto imagen = Aleatoria<CBmp>(4, 3, GetParam().bits, GetParam().modo);
    Tabla cuentas;
    unsigned tablas[5][256];
    int minimo = 0, maximo = 0;
    {
        const Progreso progreso;
        EXPECT_EQ(imagen->Histograma(cuentas.data(), false, false), 1);
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(56004u));
        EXPECT_THAT(progreso.m_Pasos, ElementsAre(std::pair(1, 3), std::pair(2, 3), std::pair(3, 3)));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
    {
        const Progreso progreso(2);
        EXPECT_EQ(imagen->Histograma(cuentas.data(), false, false), 2);
        EXPECT_EQ(std::accumulate(cuentas.begin(), cuentas.end(), 0u), 8u);
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
    {
        const Progreso progreso(1);
        EXPECT_EQ(imagen->Histogramas(tablas, minimo, maximo, false, false), 2);
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(56004u));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
}

TEST_P(Histograma, LooksOnly) {
    const auto imagen = Aleatoria<CBmp>(8, 3, GetParam().bits, GetParam().modo);
    const std::vector<BYTE> antes = Pixeles(*imagen);
    Tabla cuentas;
    EXPECT_EQ(imagen->Histograma(cuentas.data(), true, true), 1);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST(HistogramaPaleta, CountsTheEntriesAsTheyAreStored) {
    std::vector<BYTE> paleta(1024, 77);
    const auto imagen = Imagen<CBmp>(4, 1, 8, 0, {3, 9, 9, 255}, paleta.data());
    Tabla cuentas;
    EXPECT_EQ(imagen->Histograma(cuentas.data(), true, false), 1);
    EXPECT_EQ(cuentas[3], 1u);
    EXPECT_EQ(cuentas[9], 2u);
    EXPECT_EQ(std::accumulate(cuentas.begin(), cuentas.end(), 0u), 3u);
}

TEST(HistogramaGris, CutsOffAsDoublesDoWhereTheSumIsWhole) {
    std::vector<BYTE> pixeles;
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
            int resto = (212655 * a + 715158 * b) % 1000000;
            for (int c = 0; c < 256; ++c, resto = (resto + 72187) % 1000000)
                if (resto == 0)
                    for (const int v : {a, b, c})
                        pixeles.push_back(static_cast<BYTE>(v));
        }
    ASSERT_EQ(pixeles.size(), 3u * 256);
    Tabla cuentas;
    EXPECT_EQ(Imagen<CBmp>(256, 1, 24, 0, pixeles)->Histograma(cuentas.data(), false, false), 1);
    EXPECT_EQ(cuentas, Cuenta(pixeles, 24, false, false)[0]);
}

}  // namespace
