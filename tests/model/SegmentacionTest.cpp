// Gaussian smoothing and the segmentation of a graph.

#include "model/Segmentacion.h"

#include "platform/Memoria.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace Vertiz;

namespace {

CMatriz<float> Ruido(unsigned filas, unsigned columnas) {
    std::mt19937 azar(5);
    std::uniform_real_distribution<float> valor(0.0f, 255.0f);
    CMatriz<float> m(filas, columnas, 0);
    for (unsigned f = 0; f < filas; ++f)
        for (unsigned c = 0; c < columnas; ++c)
            m.Set(f, c, valor(azar));
    return m;
}

}  // namespace

TEST(Segmentacion, MascaraGaussIsTheRightHalfOfAGaussian) {
    EXPECT_EQ(MascaraGauss(0.0f).size(), 2u);
    EXPECT_EQ(MascaraGauss(-3.0f).size(), 2u);
    EXPECT_EQ(MascaraGauss(std::numeric_limits<float>::quiet_NaN()).size(), 2u);
    const std::vector<float> mascara = MascaraGauss(1.0f);
    ASSERT_EQ(mascara.size(), 5u);
    EXPECT_EQ(mascara[0], 1.0f);
    EXPECT_FLOAT_EQ(mascara[1], std::exp(-0.5f));
    EXPECT_FLOAT_EQ(mascara[4], std::exp(-8.0f));
    EXPECT_EQ(MascaraGauss(0.6f).size(), 4u);
}

TEST(Segmentacion, AMaskThatMemoryDoesNotHoldIsABadAllocation) {
    for (const float sigma : {1e30f, std::numeric_limits<float>::max()})
        EXPECT_THROW(MascaraGauss(sigma), std::bad_alloc);
    LimitaMemoria(1000);
    EXPECT_THROW(MascaraGauss(1000.0f), std::bad_alloc);
    LimitaMemoria();
}

TEST(Segmentacion, NormalizaMascaraMakesTheWholeMaskOne) {
    std::vector<float> mascara = {2.0f, -1.0f, 0.5f};
    NormalizaMascara(mascara);
    EXPECT_FLOAT_EQ(mascara[0], 0.4f);
    EXPECT_FLOAT_EQ(mascara[1], -0.2f);
    EXPECT_FLOAT_EQ(mascara[2], 0.1f);
    std::vector<float> nula = {0.0f, 0.0f};
    NormalizaMascara(nula);
    EXPECT_EQ(nula[0], 0.0f);
    std::vector<float> vacia;
    NormalizaMascara(vacia);
    EXPECT_TRUE(vacia.empty());
}

TEST(Segmentacion, ConvolucionaTransposesAndRepeatsTheEnds) {
    CMatriz<float> origen(1, 4, 0), destino(4, 1, 0);
    for (unsigned c = 0; c < 4; ++c)
        origen.Set(0, c, float(1 << (2 * c)));  // 1 4 16 64
    Convoluciona(origen, destino, {1.0f, 10.0f, 100.0f});
    EXPECT_EQ(destino.Get(0, 0), 1.0f + 10.0f * (4 + 1) + 100.0f * (16 + 1));
    EXPECT_EQ(destino.Get(1, 0), 4.0f + 10.0f * (16 + 1) + 100.0f * (64 + 1));
    EXPECT_EQ(destino.Get(3, 0), 64.0f + 10.0f * (64 + 16) + 100.0f * (64 + 4));
}

TEST(Segmentacion, SuavizaKeepsSizeAndConstantsAndIsSafeOnItself) {
    CMatriz<float> plano(6, 9, 0), suave(1, 1, 0);
    plano.Rellena(42.0f);
    Suaviza(plano, suave, 1.5f);
    ASSERT_EQ(suave.GetFilas(), 6u);
    ASSERT_EQ(suave.GetColumnas(), 9u);
    for (unsigned i = 0; i < 54; ++i)
        EXPECT_NEAR(suave.Get(i / 9, i % 9), 42.0f, 1e-4f);

    CMatriz<float> ruido = Ruido(12, 7);
    Suaviza(ruido, suave, 0.8f);
    Suaviza(ruido, ruido, 0.8f);
    for (unsigned f = 0; f < 12; ++f)
        for (unsigned c = 0; c < 7; ++c)
            EXPECT_EQ(ruido.Get(f, c), suave.Get(f, c));
    ruido.Redimensiona();
    Suaviza(ruido, suave, 1.0f);
    EXPECT_EQ(suave.GetFilas(), 0u);
}

TEST(Segmentacion, SuavizaIsTheSameInBothDirections) {
    CMatriz<float> ruido = Ruido(8, 8), girada(1, 1, 0), suave(1, 1, 0), suaveGirada(1, 1, 0);
    ruido.Traspuesta(girada);
    Suaviza(ruido, suave, 1.0f);
    Suaviza(girada, suaveGirada, 1.0f);
    for (unsigned f = 0; f < 8; ++f)
        for (unsigned c = 0; c < 8; ++c)
            EXPECT_NEAR(suave.Get(f, c), suaveGirada.Get(c, f), 1e-3f);
}

TEST(Segmentacion, DiferenciaColorIsTheDistanceInThreePlanes) {
    CMatriz<float> a(2, 2, 0), b(2, 2, 0), c(2, 2, 0);
    a.Set(1, 1, 2.0f);
    b.Set(1, 1, -3.0f);
    c.Set(1, 1, 6.0f);
    EXPECT_DOUBLE_EQ(DiferenciaColor(a, b, c, 0, 0, 1, 1), 7.0);
    EXPECT_DOUBLE_EQ(DiferenciaColor(a, b, c, 1, 1, 1, 1), 0.0);
}

TEST(Segmentacion, BosqueJoinsByRank) {
    Bosque bosque(4);
    EXPECT_EQ(bosque.Componentes(), 4u);
    EXPECT_EQ(bosque.Une(0, 1), 1u) << "at equal ranks the first goes under the second";
    EXPECT_EQ(bosque.Une(1, 2), 1u) << "the lower rank goes under the higher";
    EXPECT_EQ(bosque.Raiz(2), 1u);
    EXPECT_EQ(bosque.Cantidad(1), 3u);
    EXPECT_EQ(bosque.Componentes(), 2u);
}

TEST(Segmentacion, AGraphPartsAtItsHeavyEdges) {
    // Two chains of light edges with one heavy edge between them.
    std::vector<Arista> aristas = {{50.0f, 2, 3}, {1.0f, 0, 1}, {1.5f, 4, 5}, {2.0f, 1, 2}, {1.2f, 3, 4}};
    Bosque bosque;
    SegmentaGrafo(bosque, 6, aristas, 10.0f);
    EXPECT_EQ(bosque.Componentes(), 2u);
    EXPECT_EQ(bosque.Raiz(0), bosque.Raiz(2));
    EXPECT_EQ(bosque.Raiz(3), bosque.Raiz(5));
    EXPECT_NE(bosque.Raiz(2), bosque.Raiz(3));
    EXPECT_TRUE(std::is_sorted(aristas.begin(), aristas.end(),
                               [](const Arista& a, const Arista& b) { return a.m_fPeso < b.m_fPeso; }));
    SegmentaGrafo(bosque, 6, aristas, 1000.0f);
    EXPECT_EQ(bosque.Componentes(), 1u);
}

TEST(Segmentacion, AnEdgeAtTheThresholdStillJoins) {
    std::vector<Arista> aristas = {{3.0f, 0, 1}, {4.5f, 1, 2}};
    Bosque bosque;
    SegmentaGrafo(bosque, 3, aristas, 4.5f);  // after the first edge that set allows 3 + 4.5 / 2
    EXPECT_EQ(bosque.Componentes(), 1u);
    SegmentaGrafo(bosque, 3, aristas, 4.4f);
    EXPECT_EQ(bosque.Componentes(), 2u) << "the lone vertex only allows 4.4";
}

TEST(Segmentacion, EdgesThatLeadNowhereJoinNothing) {
    std::vector<Arista> aristas = {{std::numeric_limits<float>::quiet_NaN(), 0, 1}, {1.0f, 0, 9}, {1.0f, 1, 1}};
    Bosque bosque;
    SegmentaGrafo(bosque, 2, aristas, 10.0f);
    EXPECT_EQ(bosque.Componentes(), 2u);
    SegmentaGrafo(bosque, -1, aristas, 10.0f);
    EXPECT_EQ(bosque.Componentes(), 0u);
}
