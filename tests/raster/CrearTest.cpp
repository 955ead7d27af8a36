// New pictures: their header, their pixels, and what a bad size or a lack of room leads to.

#include "raster/Imagenes.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <climits>

namespace {

using namespace imagenes;
using testing::Each;
using testing::ElementsAre;
using Vertiz::CBloques;
using Vertiz::CBmp;
using Vertiz::CTiff;

class Crear : public PorFormas {};
INSTANTIATE_TEST_SUITE_P(Formas, Crear, testing::ValuesIn(kFormas), NombreForma);

TEST_P(Crear, GivesABlackPictureWithItsHeader) {
    CBmp bmp(GetParam().modo);
    ASSERT_TRUE(bmp.Crear(5, 3, GetParam().bits, 300.0F, false, nullptr, nullptr, false));
    EXPECT_EQ(bmp.Ancho(), 5);
    EXPECT_EQ(bmp.Alto(), -3);
    EXPECT_EQ(bmp.Alto100(), 300);
    EXPECT_EQ(bmp.Ancho100(), 500);
    EXPECT_EQ(bmp.BytesPixel(), GetParam().bits / 8);
    EXPECT_EQ(bmp.BytesFila(), GetParam().bits == 8 ? 8u : 16u);
    EXPECT_NEAR(bmp.Resolucion(), 300.0F, 0.03F);  // whole pixels a metre
    EXPECT_THAT(Pixeles(bmp), Each(0));
}

TEST_P(Crear, TakesTheAbsoluteHeight) {
    const auto [bits, modo] = GetParam();
    CTiff tiff(modo);
    ASSERT_TRUE(tiff.Crear(2, -3, bits, 1.0F, true, nullptr, nullptr, false));
    EXPECT_EQ(tiff.Alto(), -3);
    EXPECT_THAT(Pixeles(tiff), Each(255));
    EXPECT_EQ(Pixeles(tiff).size(), 6u * unsigned(bits) / 8);
}

TEST_P(Crear, RefusesSizesThatNoPictureHasAndKeepsTheOldOne) {
    const auto [bits, modo] = GetParam();
    const auto imagen = Aleatoria<CTiff>(4, 3, bits, modo);
    const auto antes = Pixeles(*imagen);
    for (const auto& [ancho, alto] : {std::pair{-1, 3}, {4, INT_MIN}, {INT_MAX, 1}})
        if (bits == 24 || ancho != INT_MAX) {
            EXPECT_FALSE(imagen->Crear(ancho, alto, bits, 1.0F, false, nullptr, nullptr, false))
                << ancho << " x " << alto;
        }
    EXPECT_FALSE(imagen->Crear(4, 3, 0, 1.0F, false, nullptr, nullptr, false));
    EXPECT_EQ(Pixeles(*imagen), antes);
}

}  // namespace
