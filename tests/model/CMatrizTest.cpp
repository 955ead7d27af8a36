// The storages of a matrix, its growth, and what happens out of range.

#include "model/CMatriz.h"

#include "model/CMatrizCuadrada.h"
#include "support/Temporales.h"

#include <gmock/gmock.h>

#include <limits>
#include <new>
#include <utility>

using namespace Vertiz;

namespace {

template <class M>
void Numera(M& m) {
    for (unsigned f = 0; f < m.GetFilas(); ++f)
        for (unsigned c = 0; c < m.GetColumnas(); ++c)
            m.Set(f, c, 100.0f * float(f) + float(c) + 1.0f);
}

template <class M>
void EsperaNumerada(const M& m, unsigned filas, unsigned columnas) {
    for (unsigned f = 0; f < filas; ++f)
        for (unsigned c = 0; c < columnas; ++c)
            ASSERT_EQ(m.Get(f, c), 100.0f * float(f) + float(c) + 1.0f);
}

void EsperaTamano(const CMatriz<double>& m, unsigned filas, unsigned columnas) {
    EXPECT_EQ(m.GetFilas(), filas);
    EXPECT_EQ(m.GetColumnas(), columnas);
}

}  // namespace

TEST(CMatriz, ASideOfZeroBecomesOne) {
    EsperaTamano(CMatriz<double>(0, 0, 0), 1, 1);
    EsperaTamano(CMatriz<double>(0, 7, 1), 1, 7);
}

TEST(CMatriz, BeginsWithZeros) {
    const CMatriz<float> m(50, 40, 0);
    for (unsigned f = 0; f < 50; ++f)
        for (unsigned c = 0; c < 40; ++c)
            ASSERT_EQ(m.Get(f, c), 0.0f);
}

TEST(CMatriz, ReadsZeroAndWritesNothingOutOfRange) {
    CMatriz<double> m(2, 3, 0);
    Numera(m);
    m.Set(2, 0, 9.0);
    m.Set(0, 3, 9.0);
    m.Set(std::numeric_limits<unsigned>::max(), std::numeric_limits<unsigned>::max(), 9.0);
    EXPECT_EQ(m.Get(2, 0), 0.0);
    EXPECT_EQ(m.Get(0, 3), 0.0);
    EXPECT_EQ(m.Fila(2), nullptr);
    EsperaNumerada(m, 2, 3);
}

TEST(CMatriz, FromAHundredMillionElementsOnTheCallerChoosesRows) {
    const CMatriz<float> filas(10000, 10000, 0);
    EXPECT_FALSE(filas.EsUnBloque());
    EXPECT_NE(filas.Fila(9999), nullptr);
    EXPECT_EQ(filas.Get(9999, 9999), 0.0f);
    EXPECT_TRUE(CMatriz<float>(10000, 10000, 1).EsUnBloque());
    EXPECT_TRUE(CMatriz<float>(9999, 10001, 0).EsUnBloque()) << "one element fewer is always a block";
}

TEST(CMatriz, ElementsAreCountedInSixtyFourBits) {
    // 65536 x 65536 is 0 in 32 bits: as a count of elements it would give a block of nothing.
    constexpr unsigned kMaximo = std::numeric_limits<unsigned>::max();
    EXPECT_THROW(CMatriz<double>(kMaximo, kMaximo, 1), std::bad_array_new_length);
    EXPECT_THROW(CMatriz<double>(kMaximo, kMaximo, 0), std::bad_array_new_length);
    CMatriz<float> filas(10000, 10000, 0);
    EXPECT_THROW(filas.Redimensiona(kMaximo, kMaximo, 1), std::bad_array_new_length);
    EXPECT_EQ(filas.GetFilas(), 0u) << "a failed allocation leaves a freed matrix";
    EXPECT_EQ(filas.Get(0, 0), 0.0f);
}

TEST(CMatriz, CopiesAreDeepAndKeepTheStorage) {
    CMatriz<double> m(3, 4, 0);
    Numera(m);
    CMatriz<double> copia(m);
    m.Rellena(0.0);
    EsperaNumerada(copia, 3, 4);
    CMatriz<double> otra(9, 9, 0);
    otra = copia;
    EsperaTamano(otra, 3, 4);
    EsperaNumerada(otra, 3, 4);
    otra = *&otra;
    EsperaNumerada(otra, 3, 4);
    const CMatriz<double> movida(std::move(otra));
    EsperaNumerada(movida, 3, 4);
}

TEST(CMatriz, RedimensionaKeepsTheKindOfStorage) {
    CMatriz<float> filas(10000, 10000, 0);
    filas.Redimensiona(2, 50'000'000, 1);
    EXPECT_FALSE(filas.EsUnBloque());
    filas.Set(1, 49'999'999, 5.0f);
    EXPECT_EQ(filas.Get(1, 49'999'999), 5.0f);
    filas.Redimensiona(3, 3, 1);
    EXPECT_TRUE(filas.EsUnBloque()) << "a small matrix is always a block";
}

TEST(CMatriz, AFreedMatrixHasNoSize) {
    CMatriz<double> m(3, 4, 0);
    m.Redimensiona();
    EsperaTamano(m, 0, 0);
    EXPECT_EQ(m.Get(0, 0), 0.0);
    m.Set(0, 0, 1.0);
    m.Rellena(1.0);
    EXPECT_EQ(m.Get(0, 0), 0.0);
    const CMatriz<double> copia(m);
    EsperaTamano(copia, 0, 0);
    CMatriz<double> traspuesta(2, 2, 0);
    m.Traspuesta(traspuesta);
    EsperaTamano(traspuesta, 0, 0);
    m.Redimensiona(2, 0, 1);
    EsperaTamano(m, 0, 0);
    m.Redimensiona(2, 5, 1);
    EsperaTamano(m, 2, 5);
}

TEST(CMatriz, TraspuestaSwapsIndicesAlsoOnItself) {
    CMatriz<double> m(37, 70, 0), t(1, 1, 0);
    Numera(m);
    m.Traspuesta(t);
    EsperaTamano(t, 70, 37);
    for (unsigned f = 0; f < 37; ++f)
        for (unsigned c = 0; c < 70; ++c)
            ASSERT_EQ(t.Get(c, f), m.Get(f, c));
    t.Traspuesta(t);
    EsperaTamano(t, 37, 70);
    EsperaNumerada(t, 37, 70);
}

TEST(CMatriz, GrowingKeepsElementsAndAddsZeros) {
    CMatriz<double> m(2, 3, 0);
    Numera(m);
    m.AumentaFilas(2);
    m.AumentaColumnas(1);
    EsperaTamano(m, 4, 4);
    EsperaNumerada(m, 2, 3);
    for (unsigned i = 0; i < 4; ++i) {
        EXPECT_EQ(m.Get(i, 3), 0.0);
        EXPECT_EQ(m.Get(3, i), 0.0);
    }
    m.AumentaFilas(-2);
    EsperaTamano(m, 2, 4);
    EsperaNumerada(m, 2, 3);
    m.AumentaFilas(std::numeric_limits<int>::min());
    m.AumentaColumnas(-4);
    EsperaTamano(m, 1, 1);
    EXPECT_EQ(m.Get(0, 0), 1.0);
    m.Redimensiona();
    m.AumentaFilas(3);
    EsperaTamano(m, 3, 1);
}

TEST(CMatriz, RedimensionaClears) {
    CMatriz<double> m(2, 3, 0);
    Numera(m);
    m.Redimensiona(3, 3, 1);
    for (unsigned i = 0; i < 9; ++i)
        EXPECT_EQ(m.Get(i / 3, i % 3), 0.0);
}

TEST(CMatriz, ATableInAFileBehavesAsOneInMemoryAndTakesItsFileAway) {
    const CarpetaTemporal carpeta;
    {
        CMatriz<double> m = CMatriz<double>::EnFichero(5, 4);
        ASSERT_TRUE(m.EstaEnFichero());
        EXPECT_EQ(carpeta.CuentaFicheros(), 1u);
        EXPECT_EQ(m.Get(4, 3), 0.0);
        EXPECT_EQ(m.Fila(0), nullptr);
        Numera(m);
        m.Set(5, 0, 7.0);
        EXPECT_EQ(m.Get(0, 4), 0.0);
        EsperaNumerada(m, 5, 4);

        CMatriz<double> copia(m);
        EXPECT_TRUE(copia.EstaEnFichero());
        EXPECT_EQ(carpeta.CuentaFicheros(), 2u);
        m.Rellena(3.0);
        EXPECT_EQ(m.Get(4, 3), 3.0);
        EsperaNumerada(copia, 5, 4);
        copia.AumentaFilas(1);
        EXPECT_TRUE(copia.EstaEnFichero());
        EsperaNumerada(copia, 5, 4);
        EXPECT_EQ(copia.Get(5, 0), 0.0);
        copia.Traspuesta(copia);
        EsperaTamano(copia, 4, 6);
        EXPECT_EQ(copia.Get(3, 4), 404.0);

        copia.Redimensiona(2, 2, 1);
        EXPECT_FALSE(copia.EstaEnFichero());
        EXPECT_EQ(carpeta.CuentaFicheros(), 1u);
    }
    EXPECT_EQ(carpeta.CuentaFicheros(), 0u);
}

TEST(CMatrizColumna, DoesNotGrowInWidth) {
    CMatrizColumna m(4);
    Numera(m);
    m.AumentaColumnas(3);
    EsperaTamano(m, 4, 1);
    EsperaNumerada(m, 4, 1);
    m.AumentaFilas(1);
    EsperaTamano(m, 5, 1);
}

TEST(CMatrizCuadrada, StaysSquare) {
    CMatrizCuadrada m(2);
    Numera(m);
    m.Redimensiona(5, 3, 1);
    EsperaTamano(m, 5, 5);
    m.Redimensiona(2, 2, 1);
    Numera(m);
    m.AumentaFilas(2);
    EsperaTamano(m, 4, 4);
    EsperaNumerada(m, 2, 2);
    m.AumentaColumnas(1);
    EsperaTamano(m, 5, 5);
    m.AumentaColumnas(-9);
    EsperaTamano(m, 1, 1);
    EXPECT_EQ(m.Get(0, 0), 1.0);
    m.Redimensiona();
    EsperaTamano(m, 0, 0);
}
