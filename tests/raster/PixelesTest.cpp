// Access to pixels: one by one and by rows, in memory and in file mode, inside the picture and past its edges.

#include "raster/Imagenes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

using namespace imagenes;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using Vertiz::CBmp;
using Vertiz::CTiff;
using Vertiz::IRaster;

constexpr int kAncho = 7, kAlto = 5;

class AccesoAPixeles : public PorFormas {
  protected:
    std::unique_ptr<CTiff> Crea() { return Imagen<CTiff>(kAncho, kAlto, Bits(), GetParam().modo, m_Bytes); }
    int Bits() const { return GetParam().bits; }
    std::size_t Bytes() const { return std::size_t(Bits()) / 8; }
    // The bytes of a pixel as they were put in.
    std::vector<BYTE> Esperado(int fila, int columna) const {
        const auto p = m_Bytes.begin() + (fila * kAncho + columna) * int(Bytes());
        return {p, p + int(Bytes())};
    }

    std::vector<BYTE> m_Bytes = BytesAleatorios(kAncho * kAlto * Bytes(), 7);
};
INSTANTIATE_TEST_SUITE_P(Formas, AccesoAPixeles, testing::ValuesIn(kFormas), NombreForma);

TEST_P(AccesoAPixeles, EachOneIsWhatWasPutThereCountedFromTheBottom) {
    const auto imagen = Crea();
    for (int f = 0; f < kAlto; ++f)
        for (int c = 0; c < kAncho; ++c) {
            std::vector<BYTE> pixel(Bytes());
            ASSERT_TRUE(imagen->GetPixel(pixel.data(), f, c, 0));
            ASSERT_EQ(pixel, Esperado(f, c)) << f << ", " << c;
        }
}

TEST_P(AccesoAPixeles, OutsideThePictureAreRefusedAndLeaveTheOutputAlone) {
    const auto imagen = Crea();
    const auto antes = Pixeles(*imagen);
    for (const auto& [f, c] : std::initializer_list<std::pair<int, int>>{
             {-1, 0}, {0, -1}, {kAlto, 0}, {0, kAncho}, {3 * kAlto - 1, 0}, {INT_MAX, 0}, {0, INT_MAX}, {INT_MIN, 0}}) {
        BYTE pixel[3]{9, 9, 9};
        for (const int radio : {0, 1})
            EXPECT_FALSE(imagen->GetPixel(pixel, f, c, radio)) << f << ", " << c;
        EXPECT_THAT(pixel, Each(9));
        EXPECT_FALSE(imagen->SetPixel(f, c, pixel)) << f << ", " << c;
        std::vector<BYTE> fila(2 * 3, 9);
        if (c >= 0) {
            EXPECT_FALSE(imagen->GetFila(fila.data(), f, c, 2)) << f << ", " << c;
            EXPECT_FALSE(imagen->SetFila(fila.data(), f, c, 2)) << f << ", " << c;
        }
        EXPECT_THAT(fila, Each(9));
    }
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_P(AccesoAPixeles, AreWrittenOneByOneInMemoryOnly) {
    const auto imagen = Crea();
    const BYTE nuevo[3]{1, 2, 3};
    EXPECT_EQ(imagen->SetPixel(2, 3, nuevo), GetParam().modo == 0);
    if (GetParam().modo == 0) std::copy_n(nuevo, Bytes(), m_Bytes.begin() + (2 * kAncho + 3) * int(Bytes()));
    EXPECT_THAT(Pixeles(*imagen), ElementsAreArray(m_Bytes));
}

TEST_P(AccesoAPixeles, OfARowAreClippedOnBothSides) {
    const auto imagen = Crea();
    for (int desde = -3; desde <= kAncho + 1; ++desde)
        for (int n = -1; n <= kAncho + 5; ++n) {
            std::vector<BYTE> leidos(std::size_t(std::max(n, 0)) * Bytes(), 0xEE), esperados = leidos;
            bool hay = false;
            for (int i = 0; i < n; ++i)
                if (desde + i >= 0 && desde + i < kAncho) {
                    std::ranges::copy(Esperado(1, desde + i), esperados.begin() + i * int(Bytes()));
                    hay = true;
                }
            EXPECT_EQ(imagen->GetFila(leidos.data(), 1, desde, n), hay) << desde << ", " << n;
            ASSERT_EQ(leidos, esperados) << desde << ", " << n;
        }
}

TEST_P(AccesoAPixeles, OfARowAreWrittenAsFarAsTheyFallInside) {
    const auto nuevos = BytesAleatorios(std::size_t(kAncho + 9) * Bytes(), 8);
    for (int desde = -3; desde <= kAncho; ++desde)
        for (int n = 0; n <= kAncho + 5; ++n) {
            const auto imagen = Crea();
            std::vector<BYTE> esperados = m_Bytes;
            bool hay = false;
            for (int i = 0; i < n; ++i)
                if (desde + i >= 0 && desde + i < kAncho) {
                    std::copy_n(nuevos.begin() + i * int(Bytes()), Bytes(),
                                esperados.begin() + (3 * kAncho + desde + i) * int(Bytes()));
                    hay = true;
                }
            EXPECT_EQ(imagen->SetFila(nuevos.data(), 3, desde, n), hay) << desde << ", " << n;
            ASSERT_EQ(Pixeles(*imagen), esperados) << desde << ", " << n;
        }
}

TEST_P(AccesoAPixeles, AWindowGivesTheMeanByInverseDistanceWithoutItsCentreAndInsideThePicture) {
    const auto imagen = Crea();
    for (const int radio : {1, 2, 40})
        for (int f = 0; f < kAlto; ++f)
            for (int c = 0; c < kAncho; ++c) {
                double sumas[3]{}, pesos = 0;
                for (int g = 0; g < kAlto; ++g)
                    for (int d = 0; d < kAncho; ++d) {
                        if ((g == f && d == c) || std::abs(g - f) > radio || std::abs(d - c) > radio) continue;
                        const double peso = 1 / std::sqrt(std::pow(g - f, 2) + std::pow(d - c, 2));
                        for (std::size_t b = 0; b < Bytes(); ++b)
                            sumas[b] += peso * Esperado(g, d)[b];
                        pesos += peso;
                    }
                const auto leido = Pixel(*imagen, f, c, radio);
                for (std::size_t b = 0; b < Bytes(); ++b)
                    ASSERT_EQ(leido[b], BYTE(sumas[b] / pesos)) << f << ", " << c << ", radius " << radio;
            }
}

TEST_P(AccesoAPixeles, TheMeanOfAWindowIsAddedToTheOutput) {
    const auto imagen = Crea();
    std::vector<BYTE> sobreCero = Pixel(*imagen, 2, 2, 1), sobreDiez(3, 10);
    EXPECT_TRUE(imagen->GetPixel(sobreDiez.data(), 2, 2, 1));
    for (std::size_t b = 0; b < Bytes(); ++b)
        EXPECT_EQ(sobreDiez[b], BYTE(sobreCero[b] + 10));
}

TEST_P(AccesoAPixeles, AWindowOfOnePixelGivesThePixel) {
    const auto imagen = Imagen<CBmp>(1, 1, 24, GetParam().modo, {5, 6, 7});
    EXPECT_THAT(Pixel(*imagen, 0, 0, 3), ElementsAre(5, 6, 7));
    EXPECT_THAT(Pixel(*imagen, 0, 0, -1), ElementsAre(5, 6, 7));
}

class PixelesDePaleta : public ConTemporales, public testing::WithParamInterface<int> {
  protected:
    PixelesDePaleta() {
        for (std::size_t i = 0; i < 256; ++i)
            m_Paleta[4 * i] = BYTE(i), m_Paleta[4 * i + 1] = BYTE(255 - i), m_Paleta[4 * i + 2] = BYTE(i / 2);
    }
    std::vector<BYTE> m_Paleta = std::vector<BYTE>(1024);
};
INSTANTIATE_TEST_SUITE_P(Modos, PixelesDePaleta, testing::Values(0, 1));

TEST_P(PixelesDePaleta, ComeAsTheColoursOfTheirEntries) {
    const auto bmp = Imagen<CBmp>(3, 1, 8, GetParam(), {10, 200, 31}, m_Paleta.data());
    EXPECT_TRUE(bmp->TienePaleta());
    EXPECT_EQ(bmp->BytesPixel(), 1);
    EXPECT_THAT(Pixel(*bmp, 0, 1), ElementsAre(200, 55, 100));
    EXPECT_THAT(Pixeles(*bmp), ElementsAre(10, 245, 5, 200, 55, 100, 31, 224, 15));
    const auto tiff = Imagen<CTiff>(3, 1, 8, GetParam(), {10, 200, 31}, m_Paleta.data());
    EXPECT_TRUE(tiff->TienePaleta());
    EXPECT_TRUE(Iguales(*tiff, *bmp));
}

TEST_P(PixelesDePaleta, OfAWindowOnlyTheFirstByteIsAveraged) {
    const auto bmp = Imagen<CBmp>(3, 1, 8, GetParam(), {10, 200, 31}, m_Paleta.data());
    BYTE pixel[3]{1, 2, 3};
    EXPECT_TRUE(bmp->GetPixel(pixel, 0, 1, 1));
    EXPECT_THAT(pixel, ElementsAre(1 + (10 + 31) / 2, 2, 3));
}

TEST_P(PixelesDePaleta, OfARowClippedOnTheLeftStandBehindTheGap) {
    const auto bmp = Imagen<CBmp>(3, 1, 8, GetParam(), {10, 200, 31}, m_Paleta.data());
    std::vector<BYTE> fila(4 * 3, 1);
    EXPECT_TRUE(bmp->GetFila(fila.data(), 0, -2, 4));
    EXPECT_THAT(fila, ElementsAre(1, 1, 1, 1, 1, 1, 10, 245, 5, 200, 55, 100));
}

TEST_P(PixelesDePaleta, WithoutOneAreSingleBytes) {
    const auto tiff = Imagen<CTiff>(3, 1, 8, GetParam(), {10, 200, 31});
    EXPECT_FALSE(tiff->TienePaleta());
    EXPECT_THAT(Pixeles(*tiff), ElementsAre(10, 200, 31));
    EXPECT_THAT(Pixel(*tiff, 0, 2), ElementsAre(31, 0, 0));
}

TEST_P(PixelesDePaleta, WithoutAGivenOneGetARampOfGreyInABitmap) {
    const auto bmp = Imagen<CBmp>(2, 1, 8, GetParam(), {10, 200});
    EXPECT_THAT(Pixeles(*bmp), ElementsAre(10, 10, 10, 200, 200, 200));
}

TEST(Pixeles, OfFourBitsAreThereButUntouched) {
    CBmp bmp;
    ASSERT_TRUE(bmp.Crear(3, 2, 4, 1.0F, false, nullptr, nullptr, false));
    EXPECT_EQ(bmp.BytesPixel(), 0);
    EXPECT_FALSE(bmp.TienePaleta());
    BYTE pixel[3]{9, 9, 9};
    EXPECT_TRUE(bmp.GetPixel(pixel, 1, 2, 0));
    EXPECT_TRUE(bmp.SetPixel(1, 2, pixel));
    EXPECT_THAT(pixel, Each(9));
}

TEST(Pixeles, OfAnEmptyObjectGiveNothing) {
    for (const int modo : {0, 1}) {
        CBmp bmp(modo);
        CTiff tiff(modo);
        for (IRaster* r : {static_cast<IRaster*>(&bmp), static_cast<IRaster*>(&tiff)}) {
            BYTE pixel[3]{9, 9, 9};
            EXPECT_FALSE(r->GetPixel(pixel, 0, 0, 0));
            EXPECT_FALSE(r->GetPixel(pixel, 0, 0, 1));
            EXPECT_FALSE(r->GetFila(pixel, 0, 0, 1));
            EXPECT_FALSE(r->SetPixel(0, 0, pixel));
            EXPECT_FALSE(r->SetFila(pixel, 0, 0, 1));
            r->Muestra(pixel, 0, 0, 1);
            EXPECT_THAT(pixel, Each(9));
            EXPECT_EQ(r->Alto(), 0);
            EXPECT_EQ(r->Ancho(), 0);
            EXPECT_EQ(r->Alto100(), 0);
            EXPECT_EQ(r->Ancho100(), 0);
            EXPECT_EQ(r->BytesFila(), 0u);
            EXPECT_EQ(r->BytesPixel(), 0);
            EXPECT_EQ(r->Resolucion(), 0.0F);
            EXPECT_EQ(r->Paleta(), nullptr);
            EXPECT_FALSE(r->TienePaleta());
            EXPECT_FALSE(r->TieneGeorreferencia());
            EXPECT_STREQ(r->Nombre(), L"");
        }
        EXPECT_EQ(tiff.NumMuestras(), 0);
    }
}

}  // namespace
