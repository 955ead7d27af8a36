// Convolution, against kernels written down here and sums made pixel by pixel.

#include "raster/Imagenes.h"
#include "raster/Resultados.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using namespace imagenes;
using testing::ElementsAre;
using Vertiz::CBmp;
using Vertiz::CTiff;
using Matriz = std::vector<std::vector<double>>;

constexpr int kTipos[] = {0, 1, 2, 3, 4, 6, 7};

std::vector<Matriz> Nucleos(int tipo, int tamano) {
    if (tipo == 0) return {{{1, 0}, {0, -1}}, {{0, 1}, {-1, 0}}};
    if (tipo == 1) return {{{-1, 0, 1}, {-1, 0, 1}, {-1, 0, 1}}, {{-1, -1, -1}, {0, 0, 0}, {1, 1, 1}}};
    if (tipo == 2) return {{{-1, 0, 1}, {-2, 0, 2}, {-1, 0, 1}}, {{-1, -2, -1}, {0, 0, 0}, {1, 2, 1}}};
    const auto n = std::size_t(tamano), medio = n / 2;
    Matriz m(n, std::vector<double>(n, tipo == 3 ? 1 / 9.0 : tipo == 4 ? 1 : tipo == 6 ? 0 : -1));
    if (tipo == 4) {
        for (double& v : m[medio])
            v = 2;
        for (auto& fila : m)
            fila[medio] *= 2;
    }
    if (tipo == 6) {
        for (auto& fila : m)
            fila[medio] = -1;
        m[medio].assign(n, -1);
    }
    if (tipo == 6 || tipo == 7) m[medio][medio] = tipo == 6 ? 4 : 8;
    return {m};
}

std::vector<BYTE> Filtrados(const std::vector<BYTE>& pixeles, int ancho, int alto, int bandas, int tipo, int tamano) {
    std::vector<BYTE> salida = pixeles;
    const std::vector<Matriz> nucleos = Nucleos(tipo, tamano);
    const int lado = static_cast<int>(nucleos[0].size()), medio = lado / 2;
    const auto lugar = [&](int r, int c, int b) { return std::size_t((r * ancho + c) * bandas + b); };
    for (int r = medio; r < alto - medio; ++r)
        for (int c = medio; c < ancho - medio; ++c)
            for (int b = 0; b < bandas; ++b) {
                double valor = 0;
                for (const Matriz& nucleo : nucleos) {
                    double suma = 0;
                    for (int i = 0; i < lado; ++i)
                        for (int j = 0; j < lado; ++j)
                            suma += nucleo[std::size_t(i)][std::size_t(j)] *
                                    pixeles[lugar(r - medio + i, c - medio + j, b)];
                    valor += std::abs(suma);
                }
                salida[lugar(r, c, b)] = static_cast<BYTE>(std::min(valor, 255.0));
            }
    return salida;
}

class Filtra : public PorFormas {
  protected:
    // Dark pixels too: otherwise most sums would end at 255.
    static std::vector<BYTE> Bytes(int n, int divisor) {
        std::vector<BYTE> bytes = BytesAleatorios(std::size_t(n), 21);
        for (BYTE& b : bytes)
            b = static_cast<BYTE>(b / divisor);
        return bytes;
    }
};
INSTANTIATE_TEST_SUITE_P(Formas, Filtra, testing::ValuesIn(kFormas), NombreForma);

TEST_P(Filtra, GivesTheSumsOfEachKernelAndLeavesTheEdges) {
    const auto [bits, modo] = GetParam();
    const int bandas = bits / 8;
    for (const int tipo : kTipos)
        for (const int tamano : {1, 2, 3, 4, 5, 6, 12})
            for (const int divisor : {1, 12, 60}) {
                SCOPED_TRACE(testing::Message() << "kind " << tipo << ", side " << tamano << ", pixels / " << divisor);
                const std::vector<BYTE> bytes = Bytes(27 * 14 * bandas, divisor);
                const auto imagen = Imagen<CTiff>(27, 14, bits, modo, bytes);
                EXPECT_EQ(imagen->Filtra(tipo, tamano), 1);
                EXPECT_EQ(Pixeles(*imagen), Filtrados(bytes, 27, 14, bandas, tipo, tamano));
            }
}

TEST_P(Filtra, ImagesAsSmallAsTheKernelKeepTheirEdges) {
    const auto [bits, modo] = GetParam();
    const int bandas = bits / 8;
    for (const int tipo : kTipos)
        for (const auto& [ancho, alto] : {std::pair(1, 1), std::pair(2, 2), std::pair(3, 3), std::pair(3, 9),
                                          std::pair(9, 2), std::pair(5, 5), std::pair(4, 4)})
            for (const int tamano : {3, 4, 5}) {
                SCOPED_TRACE(testing::Message()
                             << "kind " << tipo << ", side " << tamano << ", " << ancho << " x " << alto);
                const std::vector<BYTE> bytes = Bytes(ancho * alto * bandas, 12);
                const auto imagen = Imagen<CTiff>(ancho, alto, bits, modo, bytes);
                EXPECT_EQ(imagen->Filtra(tipo, tamano), 1);
                EXPECT_EQ(Pixeles(*imagen), Filtrados(bytes, ancho, alto, bandas, tipo, tamano));
            }
}

TEST_P(Filtra, AKernelLargerThanTheImageChangesNothing) {
    const auto imagen = Aleatoria<CTiff>(9, 9, GetParam().bits, GetParam().modo);
    const std::vector<BYTE> antes = Pixeles(*imagen);
    for (const int tipo : {3, 4, 6, 7})
        for (const int tamano : {10, 2147483647})
            EXPECT_EQ(imagen->Filtra(tipo, tamano), 1);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_P(Filtra, ASideBelow1IsRefused) {
    const auto imagen = Aleatoria<CBmp>(9, 9, GetParam().bits, GetParam().modo);
    const std::vector<BYTE> antes = Pixeles(*imagen);
    for (const int tipo : {0, 2, 4, 5})
        for (const int tamano : {0, -1, -2147483647})
            EXPECT_EQ(imagen->Filtra(tipo, tamano), Vertiz::kTamanoMalo);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_P(Filtra, OtherKindsChangeNothing) {
    const auto imagen = Aleatoria<CBmp>(9, 9, GetParam().bits, GetParam().modo);
    const std::vector<BYTE> antes = Pixeles(*imagen);
    for (const int tipo : {5, 8, -1, 1000})
        EXPECT_EQ(imagen->Filtra(tipo, 3), 1);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_P(Filtra, ProgressIsToldByRowsAndCancellingLeavesTheRowsDone) {
    const auto [bits, modo] = GetParam();
    const int bandas = bits / 8;
    const std::vector<BYTE> bytes = Bytes(6 * 5 * bandas, 12);
    const auto imagen = Imagen<CTiff>(6, 5, bits, modo, bytes);
    {
        const Progreso progreso(2);
        EXPECT_EQ(imagen->Filtra(2, 3), 2);
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(56003u));
        EXPECT_THAT(progreso.m_Pasos, ElementsAre(std::pair(1, 3), std::pair(2, 3)));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
    std::vector<BYTE> esperado = Filtrados(bytes, 6, 5, bandas, 2, 3);
    std::copy(bytes.begin() + 3 * 6 * bandas, bytes.end(), esperado.begin() + 3 * 6 * bandas);
    EXPECT_EQ(Pixeles(*imagen), esperado);
}

TEST(FiltraGrande, AKernelWhoseSumsAreTooLargeForShortsIsStillExact) {
    const std::vector<BYTE> bytes = BytesAleatorios(40 * 30, 4);
    for (const int tipo : {3, 4, 6, 7})
        for (const int tamano : {11, 12, 17}) {
            const auto imagen = Imagen<CTiff>(40, 30, 8, 0, bytes);
            EXPECT_EQ(imagen->Filtra(tipo, tamano), 1);
            EXPECT_EQ(Pixeles(*imagen), Filtrados(bytes, 40, 30, 1, tipo, tamano)) << tipo << ", " << tamano;
        }
}

TEST(FiltraGrande, ASumOfManyPixelsDoesNotWrap) {
    const std::vector<BYTE> bytes(20 * 20, 202);  // 324 times 202 is 88 short of 65536
    const auto imagen = Imagen<CTiff>(20, 20, 8, 0, bytes);
    EXPECT_EQ(imagen->Filtra(4, 17), 1);
    EXPECT_EQ(Pixel(*imagen, 10, 10)[0], 255);
}

TEST(FiltraPaleta, WorksOnTheStoredEntries) {
    std::vector<BYTE> paleta(1024, 0);
    for (std::size_t i = 0; i < 256; ++i)
        paleta[4 * i] = static_cast<BYTE>(255 - i);
    const std::vector<BYTE> bytes = BytesAleatorios(8 * 8, 2);
    const auto imagen = Imagen<CBmp>(8, 8, 8, 0, bytes, paleta.data());
    EXPECT_EQ(imagen->Filtra(3, 3), 1);
    const std::vector<BYTE> esperado = Filtrados(bytes, 8, 8, 1, 3, 3);
    for (int r = 0; r < 8; ++r)
        for (int c = 0; c < 8; ++c)
            EXPECT_EQ(Pixel(*imagen, r, c)[0], 255 - esperado[std::size_t(8 * r + c)]);
}

TEST(FiltraVacia, AnEmptyObjectAndOneOf4BitsAreLeftInPeace) {
    CTiff imagen;
    EXPECT_EQ(imagen.Filtra(2, 3), 1);
    ASSERT_TRUE(imagen.Crear(9, 9, 4, 1.0F, true, nullptr, nullptr, false));
    EXPECT_EQ(imagen.Filtra(2, 3), 1);
}

TEST(FiltraPlano, TheMeanOfNineKeepsAPlainImageButForWhatDoublesCutOff) {
    CTiff imagen;
    ASSERT_TRUE(imagen.Crear(5, 5, 8, 1.0F, true, nullptr, nullptr, false));
    EXPECT_EQ(imagen.Filtra(3, 3), 1);
    double suma = 0;
    for (int i = 0; i < 9; ++i)
        suma += 1 / 9.0 * 255;
    EXPECT_EQ(Pixel(imagen, 2, 2)[0], static_cast<int>(suma));
}

}  // namespace
