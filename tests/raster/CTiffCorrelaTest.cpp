// Template matching against the plain sums over every window.

#include "raster/Imagenes.h"
#include "raster/Resultados.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using namespace imagenes;
using Vertiz::CBmp;
using Vertiz::CTiff;

using Matriz = std::vector<std::vector<double>>;

Matriz Valores(const Vertiz::IRaster& imagen, unsigned modo) {
    Matriz m(unsigned(std::abs(imagen.Alto())), std::vector<double>(unsigned(imagen.Ancho())));
    for (std::size_t r = 0; r < m.size(); ++r)
        for (std::size_t c = 0; c < m[r].size(); ++c) {
            auto p = Pixel(imagen, int(r), int(c));
            if (Bandas(imagen) == 1) p[1] = p[2] = p[0];
            m[r][c] = modo == 0 ? double(int(0.2989 * p[2] + 0.587 * p[1] + 0.114 * p[0])) : p[3 - modo];
        }
    return m;
}

// The fit at one offset, in whole numbers up to the last division: what is measured is the walk, not how doubles round.
BYTE Ajuste(const Matriz& imagen, const Matriz& plantilla, int dy, int dx) {
    const int h = int(plantilla.size()), w = int(plantilla[0].size());
    const double n = double(w) * h;
    double si = 0, st = 0, sii = 0, stt = 0, sit = 0;
    for (int r = 0; r < h; ++r)
        for (int c = 0; c < w; ++c) {
            const int y = dy + r, x = dx + c;
            const bool dentro = y >= 0 && x >= 0 && y < int(imagen.size()) && x < int(imagen[0].size());
            const double i = dentro ? imagen[unsigned(y)][unsigned(x)] : 0.0, t = plantilla[unsigned(r)][unsigned(c)];
            si += i, st += t, sii += i * i, stt += t * t, sit += i * t;
        }
    const double potencia = (n * sii - si * si) * (n * stt - st * st);
    return potencia == 0.0 ? BYTE{0} : BYTE(std::abs((n * sit - si * st) / std::sqrt(potencia)) * 255.0);
}

std::vector<BYTE> Esperado(const Matriz& imagen, const Matriz& plantilla, int bandas) {
    std::vector<BYTE> bytes;
    for (int dy = 1 - int(plantilla.size()); dy < int(imagen.size()); ++dy)
        for (int dx = 1 - int(plantilla[0].size()); dx < int(imagen[0].size()); ++dx)
            bytes.insert(bytes.end(), std::size_t(bandas), Ajuste(imagen, plantilla, dy, dx));
    return bytes;
}

struct Resultado {
    ~Resultado() { Vertiz::BorraRaster(imagen); }
    CTiff* imagen = nullptr;
};

class CorrelaPlantilla : public PorFormas {};
INSTANTIATE_TEST_SUITE_P(Formas, CorrelaPlantilla, testing::ValuesIn(kFormas), NombreForma);

TEST_P(CorrelaPlantilla, GivesThePlainSumsOfEveryWindow) {
    const auto [bits, modo] = GetParam();
    const auto imagen = Aleatoria<CTiff>(23, 17, bits, modo, 7);
    const auto plantilla = Aleatoria<CTiff>(6, 5, bits, 0, 8);
    for (const unsigned banda : {0U, 1U, 2U, 3U}) {
        Resultado r;
        ASSERT_EQ(imagen->CorrelaPlantilla(plantilla.get(), &r.imagen, banda, true), 1);
        ASSERT_NE(r.imagen, nullptr);
        EXPECT_EQ(r.imagen->Ancho(), 23 + 5);
        EXPECT_EQ(r.imagen->Alto(), -(17 + 4));
        EXPECT_EQ(Pixeles(*r.imagen), Esperado(Valores(*imagen, banda), Valores(*plantilla, banda), bits / 8)) << banda;
    }
}

TEST(CorrelaPlantillaGrande, TilesMeetWithoutASeam) {
    const auto imagen = Aleatoria<CTiff>(700, 300, 8, 0, 3);
    const auto plantilla = Aleatoria<CTiff>(9, 70, 8, 0, 4);
    Resultado r;
    ASSERT_EQ(imagen->CorrelaPlantilla(plantilla.get(), &r.imagen, 1, true), 1);
    const Matriz i = Valores(*imagen, 1), t = Valores(*plantilla, 1);
    const std::vector<BYTE> pixeles = Pixeles(*r.imagen);
    std::mt19937 azar(5);
    for (int k = 0; k < 2000; ++k) {
        const int fila = int(azar() % unsigned(300 + 69)), columna = int(azar() % unsigned(700 + 8));
        ASSERT_EQ(pixeles[unsigned(fila * 708 + columna)], Ajuste(i, t, fila - 69, columna - 8))
            << fila << ", " << columna;
    }
}

TEST(CorrelaPlantillaPartes, FindsThePatchThatTheTemplateWasCutFrom) {
    const auto imagen = Aleatoria<CTiff>(40, 30, 24, 0, 11);
    CTiff plantilla;
    ASSERT_EQ(imagen->Recorta(12, 20, 20, 31, &plantilla), 1);
    Resultado r;
    ASSERT_EQ(imagen->CorrelaPlantilla(&plantilla, &r.imagen, 0, true), 1);
    EXPECT_EQ(Pixel(*r.imagen, 12 + 7, 20 + 10), std::vector<BYTE>(3, 255));
}

TEST(CorrelaPlantillaPartes, WithoutTheWholeOnlyTheFirstCellIsComputed) {
    const auto imagen = Aleatoria<CTiff>(9, 8, 24, 0, 1);
    const auto plantilla = Aleatoria<CTiff>(4, 3, 24, 0, 2);
    Resultado r;
    ASSERT_EQ(imagen->CorrelaPlantilla(plantilla.get(), &r.imagen, 0, false), 1);
    std::vector<BYTE> esperado(9 * 8 * 3, 0);
    std::fill_n(esperado.begin(), 3, Ajuste(Valores(*imagen, 0), Valores(*plantilla, 0), 0, 0));
    EXPECT_NE(esperado[0], 0);
    EXPECT_EQ(Pixeles(*r.imagen), esperado);
}

TEST(CorrelaPlantillaPartes, AFlatTemplateOrWindowFitsNowhere) {
    const auto imagen = Aleatoria<CTiff>(12, 9, 8, 0, 1);
    CTiff lisa;
    ASSERT_TRUE(lisa.Crear(3, 3, 8, 1.0F, true, nullptr, nullptr, false));
    Resultado r, s;
    ASSERT_EQ(imagen->CorrelaPlantilla(&lisa, &r.imagen, 0, true), 1);
    EXPECT_THAT(Pixeles(*r.imagen), testing::Each(0));
    const auto plantilla = Aleatoria<CTiff>(3, 3, 8, 0, 2);
    CTiff negra;
    ASSERT_TRUE(negra.Crear(12, 9, 8, 1.0F, false, nullptr, nullptr, false));
    ASSERT_EQ(negra.CorrelaPlantilla(plantilla.get(), &s.imagen, 0, true), 1);
    EXPECT_THAT(Pixeles(*s.imagen), testing::Each(0));
}

// Hue: folded about the middle of the circle, greys by their mean, white as nothing.
TEST(CorrelaPlantillaPartes, HueIsFoldedAndGreysKeepTheirMean) {
    const std::vector<std::pair<std::vector<BYTE>, BYTE>> casos = {
        {{0, 0, 255}, 0},                               // blue, green, red: red is hue 0
        {{0, 255, 0}, 170},                             // green: 120 degrees, 85
        {{255, 0, 0}, 170},                             // blue: 240 degrees, 170, folded 85
        {{255, 255, 0}, 255},                           // cyan: 180 degrees, 127.5
        {{100, 110, 124}, 111}, {{100, 112, 125}, 40},  // no longer all nearer than 25: 28.8 degrees
        {{255, 255, 255}, 0},   {{254, 255, 255}, 254},
    };
    // The value shows against a template whose second cell is 0: the fit of (v, 0) with (t, 0) tells v > 0 only, so the
    // image holds each colour beside a grey of the value that it should have, and both windows have to fit alike.
    for (const auto& [color, valor] : casos) {
        std::vector<BYTE> uno = color, otro(3, valor);
        for (const BYTE b :
             {BYTE{10}, BYTE{10}, BYTE{10}, BYTE{60}, BYTE{60}, BYTE{60}, BYTE{200}, BYTE{200}, BYTE{200}})
            uno.push_back(b), otro.push_back(b);
        if (valor == 255) std::fill_n(otro.begin(), 3, BYTE{254});  // a grey of 255 would be white
        const auto a = Imagen<CTiff>(4, 1, 24, 0, uno), b = Imagen<CTiff>(4, 1, 24, 0, otro);
        const auto plantilla = Imagen<CTiff>(4, 1, 24, 0, {200, 200, 200, 10, 10, 10, 150, 150, 150, 60, 60, 60});
        Resultado ra, rb;
        ASSERT_EQ(a->CorrelaPlantilla(plantilla.get(), &ra.imagen, 4, false), 1);
        ASSERT_EQ(b->CorrelaPlantilla(plantilla.get(), &rb.imagen, 4, false), 1);
        EXPECT_NEAR(Pixel(*ra.imagen, 0, 0)[0], Pixel(*rb.imagen, 0, 0)[0], valor == 255 ? 1 : 0)
            << int(color[0]) << " " << int(color[1]) << " " << int(color[2]);
    }
}

TEST(CorrelaPlantillaPartes, ACancelKeepsTheRowsThatWereComputed) {
    const auto imagen = Aleatoria<CTiff>(10, 10, 8, 0, 1);
    const auto plantilla = Aleatoria<CTiff>(3, 3, 8, 0, 2);
    Resultado entera, cortada;
    ASSERT_EQ(imagen->CorrelaPlantilla(plantilla.get(), &entera.imagen, 0, true), 1);
    {
        Progreso progreso(5);
        ASSERT_EQ(imagen->CorrelaPlantilla(plantilla.get(), &cortada.imagen, 0, true), 1);
        EXPECT_EQ(progreso.m_Pasos.back(), (std::pair{5, 12}));
    }
    auto esperado = Pixeles(*entera.imagen);
    std::fill(esperado.begin() + 5 * 12, esperado.end(), BYTE{0});
    EXPECT_EQ(Pixeles(*cortada.imagen), esperado);
}

TEST(CorrelaPlantillaPartes, WithoutMemoryItFails) {
    const auto imagen = Aleatoria<CTiff>(20, 20, 8, 0, 1);
    const auto plantilla = Aleatoria<CTiff>(3, 3, 8, 0, 2);
    Resultado r;
    LimitaMemoria(200);
    const int resultado = imagen->CorrelaPlantilla(plantilla.get(), &r.imagen, 0, true);
    LimitaMemoria();
    EXPECT_EQ(resultado, 0);
    EXPECT_EQ(r.imagen, nullptr);
}

TEST(CorrelaPlantillaPartes, BadArgumentsAreRefused) {
    const auto imagen = Aleatoria<CTiff>(5, 5, 8, 0, 1);
    CTiff vacia;
    Resultado r;
    EXPECT_EQ(imagen->CorrelaPlantilla(nullptr, &r.imagen, 0, true), Vertiz::kTamanoMalo);
    EXPECT_EQ(imagen->CorrelaPlantilla(&vacia, &r.imagen, 0, true), Vertiz::kTamanoMalo);
    EXPECT_EQ(vacia.CorrelaPlantilla(imagen.get(), &r.imagen, 0, true), Vertiz::kTamanoMalo);
    EXPECT_EQ(imagen->CorrelaPlantilla(imagen.get(), nullptr, 0, true), Vertiz::kTamanoMalo);
    EXPECT_EQ(r.imagen, nullptr);
    const auto bmp = Aleatoria<CBmp>(5, 5, 8, 0, 1);
    EXPECT_EQ(bmp->CorrelaPlantilla(imagen.get(), &r.imagen, 0, true), 1);
    EXPECT_EQ(r.imagen, nullptr);
}

}  // namespace
