// Segmentation against a plain one: a list of edges in the order told, a stable sort, and regions as plain labels.

#include "raster/Imagenes.h"
#include "model/Segmentacion.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace {

using namespace imagenes;
using Vertiz::CBmp;
using Vertiz::CTiff;

struct Regiones {
    std::vector<BYTE> pixeles;
    int cantidad;
};

// Labels instead of a forest: only the partition counts, since thresholds depend on sizes and weights alone.
Regiones Segmenta(const Vertiz::IRaster& imagen, float sigma, float c, int minimo, bool cierra) {
    const int w = imagen.Ancho(), h = std::abs(imagen.Alto());
    const auto bandas = unsigned(Bandas(imagen));
    const std::vector<BYTE> p = Pixeles(imagen);
    std::vector<Vertiz::CMatriz<float>> planos(3, Vertiz::CMatriz<float>(unsigned(h), unsigned(w)));
    for (unsigned b = 0; b < 3; ++b) {
        for (int f = 0; f < h; ++f)
            for (int col = 0; col < w; ++col)
                planos[b].Set(unsigned(f), unsigned(col), p[unsigned(f * w + col) * bandas + (bandas == 1 ? 0 : b)]);
        Vertiz::Suaviza(planos[b], planos[b], sigma);
    }
    struct Borde {
        float peso;
        int a, b;
    };
    std::vector<Borde> bordes;
    for (int f = 0; f < h; ++f)
        for (int col = 0; col < w; ++col)
            for (const auto& [df, dc] : {std::pair{0, 1}, {-1, 0}, {-1, 1}, {1, 1}}) {
                int c2 = col + dc;
                if (c2 == w && cierra) c2 = 0;
                if (f + df < 0 || f + df >= h || c2 >= w) continue;
                bordes.push_back({float(Vertiz::DiferenciaColor(planos[0], planos[1], planos[2], unsigned(f),
                                                                unsigned(col), unsigned(f + df), unsigned(c2))),
                                  f * w + col, (f + df) * w + c2});
            }
    std::stable_sort(bordes.begin(), bordes.end(), [](const Borde& a, const Borde& b) { return a.peso < b.peso; });
    std::vector<int> etiqueta(unsigned(w * h));
    for (int i = 0; i < w * h; ++i)
        etiqueta[unsigned(i)] = i;
    std::map<int, int> tamano;
    std::map<int, float> umbral;
    for (int i = 0; i < w * h; ++i)
        tamano[i] = 1, umbral[i] = c;
    const auto une = [&](int a, int b, float peso) {
        std::ranges::replace(etiqueta, a, b);
        tamano[b] += tamano[a];
        umbral[b] = peso + c / float(tamano[b]);
        tamano.erase(a);
    };
    for (const Borde& e : bordes) {
        const int a = etiqueta[unsigned(e.a)], b = etiqueta[unsigned(e.b)];
        if (a != b && e.peso <= umbral[a] && e.peso <= umbral[b]) une(a, b, e.peso);
    }
    for (const Borde& e : bordes) {
        const int a = etiqueta[unsigned(e.a)], b = etiqueta[unsigned(e.b)];
        if (a != b && (tamano[a] < minimo || tamano[b] < minimo)) une(a, b, 0);
    }
    Regiones r{p, int(tamano.size())};
    for (unsigned b = 0; b < bandas; ++b) {
        std::map<int, double> suma;
        for (unsigned i = 0; i < etiqueta.size(); ++i)
            suma[etiqueta[i]] += p[i * bandas + b];
        for (unsigned i = 0; i < etiqueta.size(); ++i)
            r.pixeles[i * bandas + b] = BYTE(std::floor(suma[etiqueta[i]] / tamano[etiqueta[i]] + 0.5));
    }
    return r;
}

struct Resultado {
    ~Resultado() { Vertiz::BorraRaster(imagen); }
    CTiff* imagen = nullptr;
};

// Few colours, so that many edges have the same weight and their order shows.
template <class T>
std::unique_ptr<T> PocosColores(int ancho, int alto, int bits, int modo, unsigned semilla) {
    auto bytes = BytesAleatorios(std::size_t(ancho) * std::size_t(alto) * std::size_t(bits) / 8, semilla);
    for (BYTE& b : bytes)
        b = BYTE(b / 64 * 64);
    return Imagen<T>(ancho, alto, bits, modo, bytes);
}

class SegmentaImagen : public PorFormas {};
INSTANTIATE_TEST_SUITE_P(Formas, SegmentaImagen, testing::ValuesIn(kFormas), NombreForma);

TEST_P(SegmentaImagen, GivesThePlainRegionsInTheirMeanColours) {
    const auto [bits, modo] = GetParam();
    for (const auto& [sigma, c, minimo, cierra] : {std::tuple{0.0F, 60.0F, 1, false},
                                                   {0.8F, 100.0F, 5, false},
                                                   {0.5F, 30.0F, 12, true},
                                                   {0.0F, 200.0F, 3, true}})
        for (unsigned semilla = 1; semilla < 6; ++semilla) {
            const auto imagen = PocosColores<CTiff>(17, 11, bits, modo, semilla);
            Resultado r;
            int componentes = -1;
            ASSERT_EQ(imagen->SegmentaImagen(&r.imagen, sigma, c, minimo, cierra, &componentes), 1);
            const Regiones esperado = Segmenta(*imagen, sigma, c, minimo, cierra);
            ASSERT_NE(r.imagen, nullptr);
            EXPECT_EQ(componentes, esperado.cantidad) << semilla;
            EXPECT_EQ(Pixeles(*r.imagen), esperado.pixeles) << semilla;
        }
}

TEST(SegmentaImagenPartes, ClosesTheImageOnItself) {
    // A stripe on each side, of one colour: apart in a plain picture, together when it closes.
    const auto imagen = Imagen<CTiff>(5, 2, 8, 0, {9, 200, 200, 200, 9, 9, 200, 200, 200, 9});
    int abiertas = 0, cerradas = 0;
    ASSERT_EQ(imagen->SegmentaImagen(nullptr, 0, 1, 0, false, &abiertas), 1);
    ASSERT_EQ(imagen->SegmentaImagen(nullptr, 0, 1, 0, true, &cerradas), 1);
    EXPECT_EQ(abiertas, 3);
    EXPECT_EQ(cerradas, 2);
}

TEST(SegmentaImagenPartes, SmallRegionsJoinWhatIsMostLikeThem) {
    // One pixel of 100 between 90 and 200.
    const auto imagen = Imagen<CTiff>(7, 1, 8, 0, {90, 90, 90, 100, 200, 200, 200});
    Resultado r;
    int componentes = 0;
    ASSERT_EQ(imagen->SegmentaImagen(&r.imagen, 0, 1, 2, false, &componentes), 1);
    EXPECT_EQ(componentes, 2);
    EXPECT_EQ(Pixeles(*r.imagen), (std::vector<BYTE>{93, 93, 93, 93, 200, 200, 200}));  // 92.5
}

TEST(SegmentaImagenPartes, ACancelStoresNothing) {
    const auto imagen = PocosColores<CTiff>(6, 5, 24, 0, 1);
    Progreso progreso(3);
    Resultado r;
    int componentes = -1;
    EXPECT_EQ(imagen->SegmentaImagen(&r.imagen, 0, 10, 0, false, &componentes), 2);
    EXPECT_EQ(r.imagen, nullptr);
    EXPECT_EQ(componentes, -1);
    EXPECT_EQ(progreso.m_Etapas, std::vector<unsigned>{56003});
    EXPECT_EQ(progreso.m_nAbiertas, 0);
}

TEST(SegmentaImagenPartes, ThePictureMayBecomeItsOwnRegions) {
    const auto imagen = PocosColores<CTiff>(9, 7, 24, 0, 2);
    Resultado r;
    ASSERT_EQ(imagen->SegmentaImagen(&r.imagen, 0, 60, 4, false, nullptr), 1);
    CTiff* mismo = imagen.get();
    ASSERT_EQ(imagen->SegmentaImagen(&mismo, 0, 60, 4, false, nullptr), 1);
    EXPECT_EQ(Pixeles(*imagen), Pixeles(*r.imagen));
}

TEST(SegmentaImagenPartes, WithoutMemoryForTheGraphItFails) {
    const auto imagen = PocosColores<CTiff>(9, 7, 24, 0, 2);
    Resultado r;
    LimitaMemoria(1000);
    const int resultado = imagen->SegmentaImagen(&r.imagen, 0, 60, 4, false, nullptr);
    LimitaMemoria();
    EXPECT_EQ(resultado, 0);
    EXPECT_EQ(r.imagen, nullptr);
}

TEST(SegmentaImagenPartes, ABitmapAndAnEmptyPictureAreLeftAlone) {
    CTiff vacia;
    Resultado r;
    EXPECT_EQ(vacia.SegmentaImagen(&r.imagen, 0, 1, 0, false, nullptr), 1);
    const auto bmp = Aleatoria<CBmp>(3, 3, 24, 0);
    EXPECT_EQ(bmp->SegmentaImagen(&r.imagen, 0, 1, 0, false, nullptr), 1);
    EXPECT_EQ(r.imagen, nullptr);
}

}  // namespace
