// Operations that only TIFF's model of picture has, against plain walks over the pixels.

#include "raster/Imagenes.h"
#include "raster/Resultados.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <climits>
#include <memory>

namespace {

using namespace imagenes;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using Vertiz::CBmp;
using Vertiz::CTiff;
using Vertiz::IRaster;

using Bytes = std::vector<BYTE>;

class Operaciones : public PorFormas {};
INSTANTIATE_TEST_SUITE_P(Formas, Operaciones, testing::ValuesIn(kFormas), NombreForma);

// Pixels of a few values only, so that colours repeat.
Bytes PocosColores(std::size_t n, unsigned semilla = 1) {
    Bytes bytes = BytesAleatorios(n, semilla);
    for (BYTE& b : bytes)
        b = static_cast<BYTE>(b % 2 == 0 ? 255 : b % 4);
    return bytes;
}

// A palette whose entries 255 and 7 are white and others colours of their own.
Bytes Paleta() {
    Bytes paleta(1024, 0);
    for (std::size_t i = 0; i < 256; ++i) {
        paleta[4 * i] = static_cast<BYTE>(i);
        paleta[4 * i + 1] = static_cast<BYTE>(3 * i);
        paleta[4 * i + 2] = static_cast<BYTE>(5 * i + 1);
    }
    for (const std::size_t i : {7, 255})
        std::fill_n(paleta.begin() + std::ptrdiff_t(4 * i), 3, BYTE{255});
    return paleta;
}

// ---- Vegetation --------------------------------------------------------------------------------------------------

TEST(IndiceVegetacionTiff, IsWhiteWhereGreenExceedsAndTellsTheRanges) {
    const Progreso progreso;
    const Bytes pixeles = BytesAleatorios(23 * 9 * 3, 8);
    const auto imagen = Imagen<CTiff>(23, 9, 24, 0, pixeles);
    EXPECT_EQ(imagen->IndiceVegetacion(), 1);
    Bytes esperado;
    for (std::size_t i = 0; i < pixeles.size(); i += 3) {
        const double s = pixeles[i] + pixeles[i + 1] + pixeles[i + 2];
        const double r = pixeles[i + 2] / s, g = pixeles[i + 1] / s, b = pixeles[i] / s;
        esperado.insert(esperado.end(), 3, (2 * g - r - b) - (1.4 * r - g) > 0 ? 255 : 0);
    }
    EXPECT_EQ(Pixeles(*imagen), esperado);
    EXPECT_THAT(progreso.m_Etapas, ElementsAre(56003u));
    EXPECT_EQ(progreso.m_Pasos.size(), 9u);
    EXPECT_EQ(progreso.m_Mensajes.size(), 3u);
}

TEST(IndiceVegetacionTiff, RangesOfKnownColours) {
    const Progreso progreso;
    // Green, red and blue alone, black, and grey.
    const auto imagen = Imagen<CTiff>(5, 1, 24, 0, {0, 255, 0, 0, 0, 255, 255, 0, 0, 0, 0, 0, 50, 50, 50});
    EXPECT_EQ(imagen->IndiceVegetacion(), 1);
    EXPECT_THAT(Pixeles(*imagen), ElementsAre(255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre("ExG: -1.00 - 2.00", "ExR: -1.00 - 1.40", "ExG-ExR: -2.40 - 3.00"));
}

TEST(IndiceVegetacionTiff, FiguresOfBlackAre0) {
    const Progreso progreso;
    EXPECT_EQ(Imagen<CTiff>(2, 1, 24, 0, {0, 0, 0, 0, 255, 0})->IndiceVegetacion(), 1);
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre("ExG: 0.00 - 2.00", "ExR: -1.00 - 0.00", "ExG-ExR: 0.00 - 3.00"));
}

TEST(IndiceVegetacionTiff, CancellingGives2WithoutRanges) {
    const Progreso progreso(2);
    const auto imagen = Aleatoria<CTiff>(4, 4, 24, 0);
    EXPECT_EQ(imagen->IndiceVegetacion(), 2);
    EXPECT_THAT(progreso.m_Mensajes, IsEmpty());
    EXPECT_EQ(progreso.m_nAbiertas, 0);
}

TEST_P(Operaciones, IndexOfVegetationAndGreysNeedColourInMemory) {
    const auto [bits, modo] = GetParam();
    if (bits == 24 && modo == 0) return;
    const Progreso progreso;
    const auto imagen = Aleatoria<CTiff>(4, 4, bits, modo);
    const Bytes antes = Pixeles(*imagen);
    EXPECT_EQ(imagen->IndiceVegetacion(), 1);
    EXPECT_EQ(imagen->AGrises(3), 1);
    EXPECT_EQ(Pixeles(*imagen), antes);
    EXPECT_THAT(progreso.m_Etapas, IsEmpty());
    EXPECT_THAT(progreso.m_Mensajes, IsEmpty());
}

// ---- Greys -------------------------------------------------------------------------------------------------------

TEST(AGrisesTiff, TellsTheRangesOfHueSaturationAndValue) {
    const Progreso progreso;
    // Blue first: a dull green, a red, a grey.
    const auto imagen = Imagen<CTiff>(3, 1, 24, 0, {51, 102, 51, 0, 0, 204, 153, 153, 153});
    EXPECT_EQ(imagen->AGrises(), 1);
    EXPECT_THAT(Pixeles(*imagen), ElementsAre(102, 102, 102, 204, 204, 204, 153, 153, 153));
    EXPECT_THAT(progreso.m_Mensajes,
                ElementsAre("Hue min=0.000 max=120.000", "Satur min=0.000 max=1.000", "Value min=0.400 max=0.800"));
}

TEST(AGrisesTiff, GivesTheSameWithAndWithoutListener) {
    const auto solo = Aleatoria<CTiff>(9, 5, 24, 0), oido = Aleatoria<CTiff>(9, 5, 24, 0);
    EXPECT_EQ(solo->AGrises(-20), 1);
    const Progreso progreso;
    EXPECT_EQ(oido->AGrises(-20), 1);
    EXPECT_TRUE(Iguales(*solo, *oido));
}

TEST(AGrisesTiff, CancellingGives2WithoutRanges) {
    const Progreso progreso(3);
    EXPECT_EQ(Aleatoria<CTiff>(4, 4, 24, 0)->AGrises(), 2);
    EXPECT_THAT(progreso.m_Mensajes, IsEmpty());
}

// ---- Palettes ----------------------------------------------------------------------------------------------------

const Bytes kDiezColores = {0,   0, 0,   0,   0,   255, 0,   255, 0,   0,   255, 255, 255, 0,   0,
                            255, 0, 255, 255, 255, 0,   255, 255, 255, 128, 0,   0,   0,   128, 255};

Bytes Reducidos(Bytes pixeles, const Bytes& paleta, std::size_t muestras, std::size_t salto, bool negroDoble) {
    for (std::size_t i = 0; i < pixeles.size(); i += muestras) {
        int mejor = INT_MAX;
        std::size_t elegido = 0;
        for (std::size_t k = 0; k < paleta.size(); k += salto) {
            int d = 0;
            for (std::size_t j = 0; j < muestras; ++j)
                d += (paleta[k + j] - pixeles[i + j]) * (paleta[k + j] - pixeles[i + j]);
            if (k == 0 && negroDoble) d *= 2;
            if (d < mejor) mejor = d, elegido = k;
        }
        std::copy_n(paleta.begin() + std::ptrdiff_t(elegido), muestras, pixeles.begin() + std::ptrdiff_t(i));
    }
    return pixeles;
}

TEST(ReducePaleta, TakesTheNearestOfTheTenColours) {
    const Bytes pixeles = BytesAleatorios(61 * 47 * 3, 3);
    const auto imagen = Imagen<CTiff>(61, 47, 24, 0, pixeles);
    imagen->ReducePaleta(nullptr);
    EXPECT_EQ(Pixeles(*imagen), Reducidos(pixeles, kDiezColores, 3, 3, true));
}

TEST(ReducePaleta, TakesTheNearestOfAPaletteGiven) {
    const Bytes pixeles = BytesAleatorios(61 * 47 * 3, 3);
    for (const std::size_t colores : {1, 2, 16, 200}) {
        const Bytes paleta = BytesAleatorios(3 * colores, 9);
        const auto imagen = Imagen<CTiff>(61, 47, 24, 0, pixeles);
        imagen->ReducePaleta(&paleta);
        EXPECT_EQ(Pixeles(*imagen), Reducidos(pixeles, paleta, 3, 3, false)) << colores;
    }
}

TEST(ReducePaleta, OfGreysTakesOneByteAColour) {
    const Bytes pixeles = BytesAleatorios(31 * 7, 3), paleta = {200, 0, 90};
    const auto imagen = Imagen<CTiff>(31, 7, 8, 0, pixeles), propia = Imagen<CTiff>(31, 7, 8, 0, pixeles);
    imagen->ReducePaleta(&paleta);
    EXPECT_EQ(Pixeles(*imagen), Reducidos(pixeles, paleta, 1, 1, false));
    propia->ReducePaleta(nullptr);
    EXPECT_EQ(Pixeles(*propia), Reducidos(pixeles, kDiezColores, 1, 3, true));
}

TEST(ReducePaleta, TheFirstOfEqualsStands) {
    const Bytes paleta = {10, 0, 0, 30, 0, 0, 30, 0, 0, 10, 0, 0};
    const auto imagen = Imagen<CTiff>(2, 1, 24, 0, {20, 0, 0, 20, 9, 0});
    imagen->ReducePaleta(&paleta);
    EXPECT_THAT(Pixeles(*imagen), ElementsAre(10, 0, 0, 10, 0, 0));
}

TEST(ReducePaleta, BlackHasToBeTwiceAsNearOnlyInTheOwnTable) {
    // Squares of the distances: 6728 to black, 8264 to the ninth colour.
    const auto propia = Imagen<CTiff>(1, 1, 24, 0, {58, 58, 0}), dada = Imagen<CTiff>(1, 1, 24, 0, {58, 58, 0});
    propia->ReducePaleta(nullptr);
    EXPECT_THAT(Pixeles(*propia), ElementsAre(128, 0, 0));
    dada->ReducePaleta(&kDiezColores);
    EXPECT_THAT(Pixeles(*dada), ElementsAre(0, 0, 0));
}

TEST(ReducePaleta, APaletteThatDoesNotFitDoesNothing) {
    const auto imagen = Aleatoria<CTiff>(5, 5, 24, 0);
    const Bytes antes = Pixeles(*imagen), vacia, coja = {1, 2, 3, 4};
    imagen->ReducePaleta(&vacia);
    imagen->ReducePaleta(&coja);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_F(ConTemporales, ReducingThePaletteNeedsPixelsInMemory) {
    CTiff().ReducePaleta(nullptr);
    const auto imagen = Aleatoria<CTiff>(5, 5, 24, 1);
    const Bytes antes = Pixeles(*imagen);
    imagen->ReducePaleta(nullptr);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

// ---- Colours -----------------------------------------------------------------------------------------------------

int Cuenta(const Bytes& pixeles, std::size_t paso, const BYTE* color) {
    int n = 0;
    for (std::size_t i = 0; i < pixeles.size(); i += paso)
        n += std::equal(color, color + paso, &pixeles[i]);
    return n;
}

TEST_P(Operaciones, CountsThePixelsOfAColour) {
    const auto [bits, modo] = GetParam();
    const auto paso = std::size_t(bits / 8);
    const Bytes pixeles = PocosColores(31 * 13 * paso);
    const auto imagen = Imagen<CTiff>(31, 13, bits, modo, pixeles);
    for (const auto& color : {std::array<BYTE, 3>{255, 255, 255}, {1, 3, 255}, {255, 255, 3}, {9, 9, 9}})
        EXPECT_EQ(imagen->CuentaColor(color.data()), Cuenta(pixeles, paso, color.data()));
    EXPECT_GT(imagen->CuentaColor(std::array<BYTE, 3>{255, 255, 3}.data()), 0);
}

TEST_P(Operaciones, ExtractsThePixelsOfAColourOnWhite) {
    const auto [bits, modo] = GetParam();
    const auto paso = std::size_t(bits / 8);
    Bytes pixeles = PocosColores(31 * 13 * paso);
    const auto imagen = Imagen<CTiff>(31, 13, bits, modo, pixeles);
    const BYTE color[3] = {1, 255, 3};
    std::copy_n(color, paso, &pixeles[7 * paso]);
    ASSERT_TRUE(imagen->SetFila(&pixeles[7 * paso], 0, 7, 1));
    CTiff* destino = nullptr;
    EXPECT_EQ(imagen->ExtraeColor(&destino, color), 1);
    const std::unique_ptr<CTiff> capa(destino);
    ASSERT_NE(capa, nullptr);
    EXPECT_TRUE(Iguales(*imagen, *Imagen<CTiff>(31, 13, bits, 0, pixeles)));
    for (std::size_t i = 0; i < pixeles.size(); i += paso)
        if (!std::equal(color, color + paso, &pixeles[i])) std::fill_n(&pixeles[i], paso, BYTE{255});
    EXPECT_EQ(Pixeles(*capa), pixeles);
    EXPECT_FLOAT_EQ(capa->Resolucion(), 300.0F);
    EXPECT_EQ(capa->CuentaColor(color), Cuenta(pixeles, paso, color));
}

TEST_P(Operaciones, ExtractsAColourIntoAnExistingPictureAndIntoItself) {
    const auto [bits, modo] = GetParam();
    const Bytes pixeles = PocosColores(std::size_t(31 * 13 * bits / 8));
    const auto imagen = Imagen<CTiff>(31, 13, bits, modo, pixeles);
    const BYTE color[3] = {3, 255, 1};
    const auto otra = Aleatoria<CTiff>(4, 90, 32 - bits, modo);
    CTiff *nueva = nullptr, *existente = otra.get(), *misma = imagen.get();
    EXPECT_EQ(imagen->ExtraeColor(&nueva, color), 1);
    EXPECT_EQ(imagen->ExtraeColor(&existente, color), 1);
    EXPECT_EQ(imagen->ExtraeColor(&misma, color), 1);
    const std::unique_ptr<CTiff> capa(nueva);
    EXPECT_EQ(existente, otra.get());
    EXPECT_TRUE(Iguales(*capa, *otra));
    EXPECT_TRUE(Iguales(*capa, *imagen));
}

TEST_P(Operaciones, OfAPictureWithPaletteAColourIsThatOfItsEntries) {
    const auto [bits, modo] = GetParam();
    if (bits != 8) return;
    const Bytes paleta = Paleta(), entradas = {1, 2, 255, 7, 2, 200};
    const auto imagen = Imagen<CTiff>(3, 2, 8, modo, entradas, paleta.data());
    const BYTE blanco[3] = {255, 255, 255}, dos[3] = {2, 6, 11};
    EXPECT_EQ(imagen->CuentaColor(blanco), 2);
    EXPECT_EQ(imagen->CuentaColor(dos), 2);
    CTiff* destino = nullptr;
    EXPECT_EQ(imagen->ExtraeColor(&destino, dos), 1);
    const std::unique_ptr<CTiff> capa(destino);
    EXPECT_TRUE(Iguales(*capa, *Imagen<CTiff>(3, 2, 8, modo, {255, 2, 255, 255, 2, 255}, paleta.data())));
    EXPECT_TRUE(capa->TienePaleta());
}

TEST(ExtraeColor, WithoutPixelsOrPlaceForTheResultDoesNothing) {
    const BYTE color[3]{};
    CTiff vacia, *destino = nullptr;
    EXPECT_EQ(vacia.ExtraeColor(&destino, color), 1);
    EXPECT_EQ(destino, nullptr);
    EXPECT_EQ(vacia.CuentaColor(color), 0);
    EXPECT_EQ(Aleatoria<CTiff>(2, 2, 24, 0)->ExtraeColor(nullptr, color), 1);
}

// ---- More columns ------------------------------------------------------------------------------------------------

TEST_P(Operaciones, WidensWithWhiteOnEitherSide) {
    const auto [bits, modo] = GetParam();
    const auto paso = std::ptrdiff_t(bits / 8);
    const Bytes pixeles = BytesAleatorios(std::size_t(7 * 4 * paso), 6);
    for (const bool izquierda : {false, true}) {
        const auto imagen = Imagen<CTiff>(7, 4, bits, modo, pixeles);
        imagen->Ensancha(3, izquierda);
        Bytes esperado;
        for (int r = 0; r < 4; ++r) {
            if (izquierda) esperado.insert(esperado.end(), std::size_t(3 * paso), 255);
            const auto fila = pixeles.begin() + r * 7 * paso;
            esperado.insert(esperado.end(), fila, fila + 7 * paso);
            if (!izquierda) esperado.insert(esperado.end(), std::size_t(3 * paso), 255);
        }
        EXPECT_EQ(imagen->Ancho(), 10);
        EXPECT_EQ(imagen->Alto(), -4);
        EXPECT_EQ(Pixeles(*imagen), esperado);
        EXPECT_FLOAT_EQ(imagen->Resolucion(), 300.0F);
        EXPECT_EQ(imagen->NumMuestras(), Aleatoria<CTiff>(1, 1, bits, 0)->NumMuestras());
    }
}

TEST_P(Operaciones, WideningKeepsThePalette) {
    const auto [bits, modo] = GetParam();
    if (bits != 8) return;
    const Bytes paleta = Paleta();
    const auto imagen = Imagen<CTiff>(2, 1, 8, modo, {1, 2}, paleta.data());
    imagen->Ensancha(1, true);
    EXPECT_TRUE(imagen->TienePaleta());
    EXPECT_THAT(Pixeles(*imagen), ElementsAre(255, 255, 255, 1, 3, 6, 2, 6, 11));
}

TEST(Ensancha, AWidthThatNoPictureHasChangesNothing) {
    const auto imagen = Aleatoria<CTiff>(5, 5, 24, 0);
    const Bytes antes = Pixeles(*imagen);
    for (const int columnas : {0, -1, INT_MIN, INT_MAX, INT_MAX - 5})
        imagen->Ensancha(columnas, false);
    EXPECT_EQ(imagen->Ancho(), 5);
    EXPECT_EQ(Pixeles(*imagen), antes);
    CTiff vacia;
    vacia.Ensancha(3, true);
    EXPECT_EQ(vacia.Ancho(), 0);
}

// ---- Layers ------------------------------------------------------------------------------------------------------

TEST_P(Operaciones, MergesOverAnotherWhereThatIsNotWhite) {
    const auto [bits, modo] = GetParam();
    const auto paso = std::size_t(bits / 8);
    const Bytes arriba = PocosColores(29 * 11 * paso, 1), debajo = PocosColores(29 * 11 * paso, 2);
    Bytes esperado = debajo;
    for (std::size_t i = 0; i < esperado.size(); i += paso)
        if (std::any_of(&debajo[i], &debajo[i] + paso, [](BYTE b) { return b != 255; }))
            std::copy_n(&arriba[i], paso, &esperado[i]);
    const auto imagen = Imagen<CTiff>(29, 11, bits, modo, arriba);
    const auto tiff = Imagen<CTiff>(29, 11, bits, modo, debajo);
    EXPECT_EQ(imagen->MezclaSobre(tiff.get()), 1);
    EXPECT_EQ(Pixeles(*tiff), esperado);
    EXPECT_EQ(Pixeles(*imagen), arriba);
    const auto bmp = Imagen<CBmp>(29, 11, bits, modo, debajo);  // with a ramp for a palette where it has 8 bits
    EXPECT_EQ(imagen->MezclaSobre(bmp.get()), 1);
    EXPECT_TRUE(Iguales(*bmp, *Imagen<CBmp>(29, 11, bits, 0, esperado)));
}

TEST(MezclaSobre, WhiteOfAPictureWithPaletteIsWhatLooksWhite) {
    const Bytes paleta = Paleta();
    const auto imagen = Imagen<CTiff>(4, 1, 8, 0, {10, 11, 12, 13}, paleta.data());
    const auto otra = Imagen<CTiff>(4, 1, 8, 0, {255, 7, 1, 0}, paleta.data());
    EXPECT_EQ(imagen->MezclaSobre(otra.get()), 1);
    EXPECT_TRUE(Iguales(*otra, *Imagen<CTiff>(4, 1, 8, 0, {255, 7, 12, 13}, paleta.data())));
}

TEST(MezclaSobre, DifferentSizesOrDepthsAreRefused) {
    const auto imagen = Aleatoria<CTiff>(6, 5, 24, 0);
    for (const auto& [ancho, alto, bits] : {std::array{5, 5, 24}, std::array{6, 4, 24}, std::array{6, 5, 8}}) {
        const auto otra = Aleatoria<CTiff>(ancho, alto, bits, 0);
        const Bytes antes = Pixeles(*otra);
        EXPECT_EQ(imagen->MezclaSobre(otra.get()), Vertiz::kTamanoMalo);
        EXPECT_EQ(Pixeles(*otra), antes);
    }
    EXPECT_EQ(imagen->MezclaSobre(nullptr), Vertiz::kTamanoMalo);
}

TEST(MezclaSobre, OverItselfChangesNothing) {
    const auto imagen = Aleatoria<CTiff>(6, 5, 24, 0);
    const Bytes antes = Pixeles(*imagen);
    EXPECT_EQ(imagen->MezclaSobre(imagen.get()), 1);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

// ---- Bitmaps don't ----------------------------------------------------------------------------------------------

TEST(CBmp, GivesTheStatedResultsOfTiffsOperationsAndDoesNothing) {
    const auto imagen = Aleatoria<CBmp>(6, 5, 24, 0);
    const auto otra = Aleatoria<CBmp>(6, 5, 24, 0, 2);
    const Bytes antes = Pixeles(*imagen), antesOtra = Pixeles(*otra);
    CTiff* destino = nullptr;
    int componentes = 0;
    const BYTE color[3] = {antes[0], antes[1], antes[2]};
    EXPECT_EQ(imagen->CorrelaPlantilla(otra.get(), &destino, 0, true), 1);
    EXPECT_EQ(imagen->SegmentaImagen(&destino, 1, 1, 1, false, &componentes), 1);
    EXPECT_EQ(imagen->ExtraeColor(&destino, color), 1);
    EXPECT_EQ(imagen->MezclaSobre(otra.get()), 1);
    EXPECT_EQ(imagen->CuentaColor(color), 0);
    imagen->ReducePaleta(nullptr);
    imagen->Ensancha(3, true);
    EXPECT_EQ(destino, nullptr);
    EXPECT_EQ(Pixeles(*imagen), antes);
    EXPECT_EQ(Pixeles(*otra), antesOtra);
}

}  // namespace
