// New pictures: their header, their pixels, and what a bad size or a lack of room leads to.

#include "raster/Imagenes.h"
#include "platform/Errores.h"
#include "platform/Memoria.h"
#include "support/DiscoLleno.h"
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
    EXPECT_EQ(bmp.Resolucion(), float(11810 * 0.025401));  // whole pixels a metre
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

TEST_P(Crear, MakesTheHeaderAloneWithItsSign) {
    const auto [bits, modo] = GetParam();
    CBmp bmp(modo);
    for (const int alto : {3, -3}) {
        ASSERT_TRUE(bmp.Crear(5, alto, bits, 1.0F, false, nullptr, nullptr, true));
        EXPECT_EQ(bmp.Alto(), alto);
        EXPECT_EQ(bmp.Alto100(), 300);
        BYTE pixel[3];
        EXPECT_FALSE(bmp.GetPixel(pixel, 0, 0, 0));
    }
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

TEST_P(Crear, MakesTheTemporaryFileAtFullSizeAndLimpiarDeletesIt) {
    const auto [bits, modo] = GetParam();
    CTiff tiff(modo);
    ASSERT_TRUE(tiff.Crear(5, 3, bits, 1.0F, true, nullptr, nullptr, false));
    ASSERT_EQ(m_Carpeta.CuentaFicheros(), modo != 0 ? 1u : 0u);
    if (modo != 0) {
        const auto fichero = std::filesystem::directory_iterator(m_Carpeta.Ruta())->path();
        EXPECT_EQ(file_size(fichero), tiff.BytesFila() * 3);
    }
    tiff.Limpiar();
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
    EXPECT_EQ(tiff.Alto(), 0);
    EXPECT_EQ(tiff.Ancho(), 0);
}

TEST_P(Crear, FailsWithoutRoomOnTheDiskAndLeavesNothing) {
    const auto [bits, modo] = GetParam();
    const DiscoLleno lleno(100);
    CBmp bmp(modo);
    CTiff tiff(modo);
    EXPECT_EQ(bmp.Crear(50, 50, bits, 1.0F, false, nullptr, nullptr, false), modo == 0);
    EXPECT_EQ(tiff.Crear(50, 50, bits, 1.0F, false, nullptr, nullptr, false), modo == 0);
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
    if (modo != 0) {
        EXPECT_EQ(bmp.Ancho(), 0);
    }
}

// ---- Blocks handed over

// Blocks of one size, with all their bytes in a row.
CBloques Bloques(UINT cantidad, UINT tamano, const std::vector<BYTE>& bytes) {
    CBloques bloques;
    EXPECT_TRUE(bloques.Reserva(cantidad, tamano));
    EXPECT_TRUE(bloques.Escribe(0, bytes.data(), std::min<std::size_t>(bytes.size(), bloques.Bytes())));
    return bloques;
}

TEST_P(Crear, TakesRowIOfABitmapFromSixteenTimesItsPlace) {
    const auto [bits, modo] = GetParam();
    const UINT fila = bits == 8 ? 4 : 12;  // of four pixels
    const auto bytes = BytesAleatorios(fila * 20, 4);
    CBloques bloques = Bloques(20, fila, bytes);
    CBmp bmp(modo);
    ASSERT_TRUE(bmp.Crear(4, 3, bits, 1.0F, true, &bloques, nullptr, false));
    const auto Fila = [&](int f) {
        std::vector<BYTE> leida(12);
        EXPECT_TRUE(bmp.GetFila(leida.data(), f, 0, 4));
        return leida;
    };
    // The top row is stored first. 16 rows on is the second; 32 rows on lies past the end.
    for (std::size_t b = 0; b < 12; ++b) {
        const std::size_t i = bits == 8 ? b / 3 : b;  // a bitmap of 8 bits shows its ramp of grey
        EXPECT_EQ(Fila(2)[b], bytes[i]);
        EXPECT_EQ(Fila(1)[b], bytes[16 * fila + i]);
        EXPECT_EQ(Fila(0)[b], 0);
    }
    EXPECT_EQ(bloques.Cantidad(), 20u);
}

TEST_P(Crear, TakesTheRowsOfATiffOneAfterTheOther) {
    const auto [bits, modo] = GetParam();
    const UINT fila = bits == 8 ? 4 : 12;
    const auto bytes = BytesAleatorios(fila * 2, 4);
    CBloques bloques = Bloques(2, fila, bytes);
    CTiff tiff(modo);
    ASSERT_TRUE(tiff.Crear(4, 3, bits, 1.0F, true, &bloques, nullptr, false));
    std::vector<BYTE> esperados(fila, 0);
    esperados.insert(esperados.end(), bytes.begin() + fila, bytes.end());
    esperados.insert(esperados.end(), bytes.begin(), bytes.begin() + fila);
    EXPECT_EQ(Pixeles(tiff), esperados);
}

TEST_P(Crear, MovesTheBlocksOfATiffInWhenTheyAreItsOwnSize) {
    const auto [bits, modo] = GetParam();
    const UINT fila = bits == 8 ? 4 : 12;
    CBloques bloques = Bloques(3, fila, BytesAleatorios(fila * 3, 4));
    const BYTE* const primero = bloques.Bloque(0);
    const BYTE pixel[3]{*primero, primero[1], primero[2]};
    CTiff tiff(modo);
    ASSERT_TRUE(tiff.Crear(4, 3, bits, 1.0F, true, &bloques, nullptr, false));
    EXPECT_EQ(bloques.EstaVacio(), modo == 0);
    EXPECT_EQ(Pixel(tiff, 2, 0)[0], pixel[0]);
}

// ---- Samples of a TIFF

TEST(CrearTiff, SetsSamplesBitsAndPhotometricInterpretation) {
    const auto paleta = BytesAleatorios(1024, 1);
    CTiff tiff;
    EXPECT_EQ(tiff.NumMuestras(), 0);
    ASSERT_TRUE(tiff.Crear(4, 3, 24, 72.0F, true, nullptr, nullptr, false));
    EXPECT_EQ(tiff.NumMuestras(), 3);
    EXPECT_EQ(tiff.BytesMuestra(), 3);
    EXPECT_FALSE(tiff.TienePaleta());
    EXPECT_EQ(tiff.Resolucion(), 72.0F);
    ASSERT_TRUE(tiff.Crear(4, 3, 8, 72.0F, true, nullptr, nullptr, false));
    EXPECT_EQ(tiff.NumMuestras(), 1);
    EXPECT_EQ(tiff.BytesMuestra(), 1);
    EXPECT_FALSE(tiff.TienePaleta());
    ASSERT_TRUE(tiff.Crear(4, 3, 8, 72.0F, true, nullptr, paleta.data(), false));
    EXPECT_TRUE(tiff.TienePaleta());
    EXPECT_TRUE(std::equal(paleta.begin(), paleta.end(), tiff.Paleta()));
    CBmp bmp;
    EXPECT_EQ(bmp.NumMuestras(), 3);
    EXPECT_EQ(bmp.BytesMuestra(), 3);
}

// ---- Without memory

class SinMemoria : public ConTemporales {
  protected:
    SinMemoria() { LimitaMemoria(1000); }
    ~SinMemoria() override { LimitaMemoria(); }
};

TEST_F(SinMemoria, ATiffSaysSoAndGoesToAFile) {
    const Progreso progreso;
    {
        CTiff tiff;
        ASSERT_TRUE(tiff.Crear(100, 20, 24, 1.0F, true, nullptr, nullptr, false));
        EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
        EXPECT_THAT(Pixeles(tiff), Each(255));
    }
    const std::string causa = TextoError(ERROR_NOT_ENOUGH_MEMORY).Utf8();
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre(causa + ". Se procede a crear archivo temporal", causa,
                                                 "Se procede a crear archivo temporal", "20 x 300 = 6000"));
}

TEST_F(SinMemoria, ATiffFailsWhenThereIsNoFileEither) {
    const DiscoLleno lleno(100);
    CTiff tiff;
    EXPECT_FALSE(tiff.Crear(100, 20, 24, 1.0F, true, nullptr, nullptr, false));
    EXPECT_EQ(tiff.Ancho(), 0);
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
    LimitaMemoria();
    EXPECT_TRUE(tiff.Crear(10, 2, 24, 1.0F, true, nullptr, nullptr, false));  // in memory again
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 0u);
}

TEST_F(SinMemoria, ABitmapFails) {
    CBmp bmp;
    EXPECT_FALSE(bmp.Crear(100, 20, 24, 1.0F, true, nullptr, nullptr, false));
    EXPECT_EQ(bmp.Ancho(), 0);
}

TEST_F(SinMemoria, APictureLargerThanTheMachineIsRefusedBeforeItIsMade) {
    LimitaMemoria();
    CBmp bmp;
    EXPECT_FALSE(bmp.Crear(700'000'000, INT_MAX, 24, 1.0F, false, nullptr, nullptr, false));
}

TEST_F(SinMemoria, TheWorkingBufferIsRefused) {
    CBmp bmp;
    EXPECT_TRUE(bmp.ReservaBuffer(10, 10));
    EXPECT_FALSE(bmp.ReservaBuffer(100, 100));
    LimitaMemoria();
    EXPECT_TRUE(bmp.ReservaBuffer(100, 100));
    EXPECT_FALSE(bmp.ReservaBuffer(INT_MAX, INT_MAX));
    EXPECT_FALSE(bmp.ReservaBuffer(-1, 4));
    EXPECT_FALSE(bmp.ReservaBuffer(4, -1));
}

// ---- Blocks

TEST(Bloques, AreMovedAndReadAcrossTheirEnds) {
    const auto bytes = BytesAleatorios(12, 3);
    CBloques bloques = Bloques(3, 4, bytes);
    std::vector<BYTE> leidos(7);
    EXPECT_TRUE(bloques.Lee(3, leidos.data(), 7));
    EXPECT_TRUE(std::equal(leidos.begin(), leidos.end(), bytes.begin() + 3));
    EXPECT_FALSE(bloques.Lee(6, leidos.data(), 7));
    EXPECT_FALSE(bloques.Lee(~ULONGLONG{0}, leidos.data(), 2));
    EXPECT_FALSE(bloques.Escribe(6, leidos.data(), 7));
    CBloques otros = Bloques(1, 2, {});
    otros = std::move(bloques);
    EXPECT_TRUE(bloques.EstaVacio());
    EXPECT_EQ(bloques.Tamano(), 0u);
    EXPECT_EQ(otros.Bytes(), 12u);
}

TEST(Bloques, AreTakenOverBehindOthers) {
    const auto bytes = BytesAleatorios(20, 3);
    CBloques todos, primeros = Bloques(2, 4, bytes);
    CBloques ultimos = Bloques(3, 4, {bytes.begin() + 8, bytes.end()});
    const BYTE* const ultimo = ultimos.Bloque(2);
    todos.Anade(std::move(primeros));
    todos.Anade(std::move(ultimos));
    EXPECT_TRUE(primeros.EstaVacio());
    EXPECT_TRUE(ultimos.EstaVacio());
    ASSERT_EQ(todos.Cantidad(), 5u);
    EXPECT_EQ(todos.Bloque(4), ultimo);
    std::vector<BYTE> leidos(20);
    EXPECT_TRUE(todos.Lee(0, leidos.data(), 20));
    EXPECT_EQ(leidos, bytes);
}

// Large sets have many blocks to a piece of memory.
TEST(Bloques, OfALargeSetAreZerosThatDoNotOverlap) {
    for (const auto& [cantidad, tamano] : {std::pair{3000u, 24000u}, {3u, 40000000u}, {2000000u, 5u}}) {
        CBloques bloques;
        ASSERT_TRUE(bloques.Reserva(cantidad, tamano));
        ASSERT_EQ(bloques.Cantidad(), cantidad);
        std::size_t malos = 0;
        for (UINT i = 0; i < cantidad; ++i) {
            BYTE* const b = bloques.Bloque(i);
            malos += b[0] != 0 || b[tamano / 2] != 0 || b[tamano - 1] != 0;
            b[0] = b[tamano / 2] = b[tamano - 1] = static_cast<BYTE>(i % 255 + 1);
        }
        for (UINT i = 0; i < cantidad; ++i)
            malos += bloques.Bloque(i)[0] != i % 255 + 1 || bloques.Bloque(i)[tamano - 1] != i % 255 + 1;
        EXPECT_EQ(malos, 0u) << cantidad << " x " << tamano;
    }
}

// A hundred dots a centimetre are 10000 a metre, though the float of dots per inch lies a little below.
TEST(CrearBmp, KeepsAWholeResolution) {
    CBmp bmp;
    for (const float porMetro : {10000.0F, 2835.0F, 118.0F, 39369.0F}) {
        ASSERT_TRUE(bmp.Crear(2, 2, 8, float(porMetro * 0.025401), false, nullptr, nullptr, true));
        EXPECT_EQ(bmp.Resolucion(), float(porMetro * 0.025401)) << porMetro;
    }
    ASSERT_TRUE(bmp.Crear(2, 2, 8, 72.0F, false, nullptr, nullptr, true));
    EXPECT_EQ(bmp.Resolucion(), float(2834 * 0.025401));  // cut off from 2834.5
}

}  // namespace
