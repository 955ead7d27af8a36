// Pictures of another size: cut, resampled, halved, each against a plain computation; and the way back into memory.

#include "raster/Imagenes.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>
#include <functional>

namespace {

using namespace imagenes;
using testing::Each;
using testing::ElementsAre;
using testing::Pair;
using Vertiz::CBmp;
using Vertiz::CTiff;
using Vertiz::IRaster;

constexpr int kCancelado = 2, kTamanoMalo = 15105;

class Geometria : public PorFormas {
  protected:
    template <class T>
    std::unique_ptr<T> Crea(int ancho, int alto, unsigned semilla = 3) const {
        return Aleatoria<T>(ancho, alto, GetParam().bits, GetParam().modo, semilla);
    }
    // The pixels of a picture whose pixel (f, c) is that of another at origen(f, c).
    static std::vector<BYTE> Tomados(const IRaster& imagen, int filas, int columnas,
                                     const std::function<std::pair<int, int>(int, int)>& origen) {
        std::vector<BYTE> todos;
        for (int f = 0; f < filas; ++f)
            for (int c = 0; c < columnas; ++c) {
                const auto [g, d] = origen(f, c);
                const auto pixel = Pixel(imagen, g, d);
                todos.insert(todos.end(), pixel.begin(), pixel.begin() + Bandas(imagen));
            }
        return todos;
    }
};
INSTANTIATE_TEST_SUITE_P(Formas, Geometria, testing::ValuesIn(kFormas), NombreForma);

// ---- Recorta

TEST_P(Geometria, AWindowIsCopiedToAnotherPicture) {
    const auto imagen = Crea<CTiff>(9, 7);
    const auto esperados = Tomados(*imagen, 3, 4, [](int f, int c) { return std::pair{f + 2, c + 5}; });
    CTiff destino;
    EXPECT_EQ(imagen->Recorta(2, 5, 5, 9, &destino), 1);
    EXPECT_EQ(destino.Ancho(), 4);
    EXPECT_EQ(destino.Alto(), -3);
    EXPECT_EQ(Pixeles(destino), esperados);
    EXPECT_EQ(imagen->Ancho(), 9);
}

TEST_P(Geometria, AWindowBecomesThePictureItselfWithoutATargetOrWithItselfAsOne) {
    for (const bool conDestino : {false, true}) {
        const auto imagen = Crea<CBmp>(9, 7);
        const auto esperados = Tomados(*imagen, 3, 4, [](int f, int c) { return std::pair{f + 2, c + 5}; });
        EXPECT_EQ(imagen->Recorta(2, 5, 5, 9, conDestino ? imagen.get() : nullptr), 1);
        EXPECT_EQ(imagen->Ancho(), 4);
        EXPECT_EQ(imagen->Alto(), -3);
        EXPECT_EQ(Pixeles(*imagen), esperados);
    }
}

TEST_P(Geometria, AWindowWithoutRowsMakesAPictureOfHeightZero) {
    const auto imagen = Crea<CBmp>(9, 7);
    EXPECT_EQ(imagen->Recorta(4, 0, 4, 9, nullptr), 1);
    EXPECT_EQ(imagen->Alto(), 0);
    EXPECT_EQ(imagen->Ancho(), 9);
    BYTE pixel[3];
    EXPECT_FALSE(imagen->GetPixel(pixel, 0, 0, 0));
}

TEST_P(Geometria, AWindowOutsideThePictureIsRefused) {
    const auto imagen = Crea<CTiff>(9, 7);
    const auto antes = Pixeles(*imagen);
    const int malas[][4]{{-1, 0, 2, 2}, {0, -1, 2, 2}, {3, 0, 2, 2}, {0, 3, 2, 2}, {0, 0, 8, 2}, {0, 0, 2, 10}};
    for (const auto& v : malas)
        EXPECT_EQ(imagen->Recorta(v[0], v[1], v[2], v[3], nullptr), kTamanoMalo);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

// ---- CambiaTamano, Escala

TEST_P(Geometria, AnotherSizeTakesTheNearestPixels) {
    for (const auto& [filas, columnas] : {std::pair{3, 4}, {7, 9}, {1, 1}, {13, 22}, {20, 2}}) {
        const auto imagen = Crea<CBmp>(9, 7);
        const double fy = filas / 7.0, fx = columnas / 9.0;
        const auto esperados = Tomados(*imagen, filas, columnas, [&](int f, int c) {
            return std::pair{std::min(int(f / fy + 0.5), 6), std::min(int(c / fx + 0.5), 8)};
        });
        CBmp destino(GetParam().modo);
        EXPECT_EQ(imagen->CambiaTamano(filas, columnas, &destino), 1);
        EXPECT_EQ(Pixeles(destino), esperados) << filas << " x " << columnas;
        EXPECT_EQ(imagen->CambiaTamano(filas, columnas, nullptr), 1);
        EXPECT_TRUE(Iguales(*imagen, destino));
    }
}

TEST_P(Geometria, AFactorScalesBothAxes) {
    for (const double factor : {0.5, 1.0, 1.7, 0.31, 3.0}) {
        const auto imagen = Crea<CTiff>(9, 7);
        const int filas = int(7 * factor + 0.5), columnas = int(9 * factor + 0.5);
        const auto esperados = Tomados(*imagen, filas, columnas, [&](int f, int c) {
            return std::pair{std::min(int(f / factor + 0.5), 6), std::min(int(c / factor + 0.5), 8)};
        });
        EXPECT_EQ(imagen->Escala(factor), 1);
        EXPECT_EQ(imagen->Ancho(), columnas);
        EXPECT_EQ(imagen->Alto(), -filas);
        EXPECT_EQ(Pixeles(*imagen), esperados) << factor;
    }
}

TEST_P(Geometria, SizesAndFactorsThatAreNotAboveZeroAreRefused) {
    const auto imagen = Crea<CBmp>(4, 3);
    const auto antes = Pixeles(*imagen);
    for (const auto& [filas, columnas] : {std::pair{0, 4}, {4, 0}, {-1, 4}, {4, -1}, {INT_MIN, INT_MIN}})
        EXPECT_EQ(imagen->CambiaTamano(filas, columnas, nullptr), kTamanoMalo);
    for (const double factor : {0.0, -1.0, double(NAN), 1e300, 1e-9})
        EXPECT_EQ(imagen->Escala(factor), kTamanoMalo) << factor;
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_P(Geometria, AnInfiniteFactorIsRefusedAlsoWithoutPixels) {
    CTiff vacia(GetParam().modo);
    EXPECT_EQ(vacia.Escala(double(INFINITY)), kTamanoMalo);
    EXPECT_EQ(Crea<CTiff>(4, 3)->Escala(double(INFINITY)), kTamanoMalo);
}

TEST_P(Geometria, ASizeWhoseRowsMemoryCannotNumberIsRefused) {
    const auto imagen = Crea<CTiff>(4, 3);
    LimitaMemoria(1000);
    EXPECT_EQ(imagen->CambiaTamano(1, 300, nullptr), 15065);
    LimitaMemoria();
    EXPECT_EQ(imagen->Ancho(), 4);
}

TEST_P(Geometria, ACancelledResamplingLeavesThePicture) {
    const auto imagen = Crea<CBmp>(4, 9);
    const auto antes = Pixeles(*imagen);
    const Progreso progreso(3);
    EXPECT_EQ(imagen->CambiaTamano(5, 5, nullptr), kCancelado);
    EXPECT_THAT(progreso.m_Pasos, ElementsAre(Pair(1, 5), Pair(2, 5), Pair(3, 5)));
    EXPECT_THAT(progreso.m_Etapas, ElementsAre(56003));
    EXPECT_EQ(progreso.m_nAbiertas, 0);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_P(Geometria, ACancelledResamplingLeavesTheRestOfItsTargetWhite) {
    const auto imagen = Crea<CBmp>(4, 9);
    const Progreso progreso(3);
    CTiff destino;
    EXPECT_EQ(imagen->CambiaTamano(9, 4, &destino), kCancelado);
    for (int f = 0; f < 9; ++f)
        for (int c = 0; c < 4; ++c) {
            if (f < 3)
                EXPECT_EQ(Pixel(destino, f, c), Pixel(*imagen, f, c));
            else
                EXPECT_THAT(Pixel(destino, f, c), Each(255));
        }
}

// ---- Reducir

TEST_P(Geometria, HalvingTakesEverySecondPixelOfEverySecondRow) {
    for (const auto& [ancho, alto] : {std::pair{8, 6}, {7, 5}, {1, 4}, {5, 1}})
        for (const int interpolacion : {-1, 0, 1, 2}) {
            const auto imagen = Crea<CTiff>(ancho, alto);
            std::vector<BYTE> esperados;
            for (int f = 0; f < (alto + 1) / 2; ++f)
                for (int c = 0; c < (ancho + 1) / 2; ++c) {
                    BYTE pixel[3]{};
                    imagen->Muestra(pixel, 200 * c, 200 * f, interpolacion);
                    esperados.insert(esperados.end(), pixel, pixel + Bandas(*imagen));
                }
            EXPECT_EQ(imagen->Reducir(interpolacion, 3), 1);
            EXPECT_EQ(imagen->Ancho(), (ancho + 1) / 2);
            EXPECT_EQ(imagen->Alto(), -(alto + 1) / 2);
            EXPECT_EQ(Pixeles(*imagen), esperados) << ancho << " x " << alto << ", " << interpolacion;
        }
}

TEST_P(Geometria, HalvingOnePixelGivesOnePixel) {
    const auto imagen = Crea<CBmp>(1, 1);
    const auto antes = Pixeles(*imagen);
    EXPECT_EQ(imagen->Reducir(0, 3), 1);
    EXPECT_EQ(imagen->Ancho(), 1);
    EXPECT_EQ(imagen->Alto(), -1);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST_P(Geometria, ACancelledHalvingLeavesThePicture) {
    const auto imagen = Crea<CTiff>(8, 8);
    const auto antes = Pixeles(*imagen);
    const Progreso progreso(2);
    EXPECT_EQ(imagen->Reducir(0, 7), kCancelado);
    EXPECT_EQ(Pixeles(*imagen), antes);
    EXPECT_THAT(progreso.m_Niveles, Each(7));
    EXPECT_THAT(progreso.m_Pasos, ElementsAre(Pair(0, 4), Pair(1, 4)));
}

TEST_P(Geometria, HalvingKeepsTheHomeOfThePixels) {
    const auto imagen = Crea<CBmp>(8, 8);
    EXPECT_EQ(imagen->Reducir(0, 3), 1);
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), GetParam().modo != 0 ? 1u : 0u);
}

// ---- Palettes and photometry

TEST_P(Geometria, CopiesCarryThePalette) {
    const int modo = GetParam().modo;
    const auto paleta = BytesAleatorios(1024, 5);
    const auto bmp = Aleatoria<CBmp>(6, 4, 8, modo, 2, paleta.data());
    CTiff destino;
    EXPECT_EQ(bmp->Recorta(0, 0, 4, 6, &destino), 1);
    EXPECT_TRUE(destino.TienePaleta());
    EXPECT_TRUE(Iguales(destino, *bmp));
    EXPECT_EQ(bmp->Recorta(0, 0, 4, 6, nullptr), 1);
    EXPECT_TRUE(Iguales(destino, *bmp));
    EXPECT_EQ(bmp->Reducir(0, 3), 1);
    EXPECT_EQ(Pixel(*bmp, 1, 2), Pixel(destino, 2, 4));
}

TEST_P(Geometria, TheGeoreferencingStays) {
    const auto imagen = Crea<CTiff>(8, 8);
    imagen->Georreferencia()->m_dEscala[0] = 0.5;
    EXPECT_EQ(imagen->Reducir(0, 3), 1);
    EXPECT_EQ(imagen->Recorta(0, 0, 2, 2, nullptr), 1);
    EXPECT_EQ(imagen->Georreferencia()->m_dEscala[0], 0.5);
    imagen->Limpiar();
    EXPECT_EQ(imagen->Georreferencia()->m_dEscala[0], 0.5);
}

TEST_P(Geometria, WithoutPixelsThereIsNothingToDo) {
    CBmp vacia(GetParam().modo);
    EXPECT_EQ(vacia.Recorta(0, 0, 0, 0, nullptr), 2);
    EXPECT_EQ(vacia.CambiaTamano(3, 3, nullptr), 2);
    EXPECT_EQ(vacia.Escala(2.0), 2);
    EXPECT_EQ(vacia.Reducir(0, 3), 2);
    vacia.PasaAMemoria(false);
}

// ---- Memory

TEST_P(Geometria, BackInMemoryThePixelsAreTheSameAndTheFileIsGone) {
    const auto imagen = Crea<CTiff>(9, 7);
    const auto antes = Pixeles(*imagen);
    imagen->PasaAMemoria(false);
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
    EXPECT_EQ(Pixeles(*imagen), antes);
    const BYTE pixel[3]{1, 2, 3};
    EXPECT_TRUE(imagen->SetPixel(0, 0, pixel));
}

TEST(PasaAMemoria, StaysInTheFileWithoutMemory) {
    const CarpetaTemporal carpeta;
    const auto imagen = Aleatoria<CBmp>(9, 7, 24, 1);
    const auto antes = Pixeles(*imagen);
    LimitaMemoria(50);
    imagen->PasaAMemoria(true);
    LimitaMemoria();
    EXPECT_EQ(carpeta.CuentaFicheros(), 1u);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST(PasaAMemoria, FillsWithWhiteWhatTheFileLacks) {
    for (const bool rellenar : {false, true}) {
        const CarpetaTemporal carpeta;
        const auto imagen = Imagen<CBmp>(4, 2, 8, 1, std::vector<BYTE>(8, 100));
        const auto fichero = std::filesystem::directory_iterator(carpeta.Ruta())->path();
        std::filesystem::resize_file(fichero, 4);  // the top row
        imagen->PasaAMemoria(rellenar);
        EXPECT_THAT(Pixel(*imagen, 1, 0), Each(100));
        EXPECT_THAT(Pixel(*imagen, 0, 0), Each(rellenar ? 255 : 0));
    }
}

TEST(CambiaTamano, WithoutMemoryABitmapStaysAndATiffGoesToAFile) {
    const CarpetaTemporal carpeta;
    const auto bmp = Aleatoria<CBmp>(4, 4, 24, 0);
    const auto tiff = Aleatoria<CTiff>(4, 4, 24, 0);
    const auto antes = Pixeles(*bmp);
    LimitaMemoria(1000);
    EXPECT_EQ(bmp->CambiaTamano(50, 50, nullptr), 2);
    EXPECT_EQ(tiff->CambiaTamano(50, 50, nullptr), 1);
    LimitaMemoria();
    EXPECT_EQ(Pixeles(*bmp), antes);
    EXPECT_EQ(carpeta.CuentaFicheros(), 1u);
    EXPECT_EQ(Pixel(*tiff, 49, 49), Pixel(*bmp, 3, 3));
}

}  // namespace
