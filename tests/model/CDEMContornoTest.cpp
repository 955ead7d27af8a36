// The outlines of the elevation model, counted cell by cell.

#include "RejillasPrueba.h"
#include "model/CDEM.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace Vertiz;
using namespace Vertiz::rejillas;

namespace {

TEST(CDEM, TheOutlineOfAWholeGridIsItsBorder) {
    const CDEM dem = Ondulado(6, 7);
    CDibujo<int> dibujo(dem.GetSemilla());
    ASSERT_EQ(dem.DameBase(dibujo), 1);
    ASSERT_EQ(dibujo.Cantidad(), 1u);
    const auto& linea = *dibujo[0];
    EXPECT_EQ(linea.NPuntos(), 2u * (5 + 6) + 1);
    EXPECT_EQ(linea.GetCodigo(), L"LIMITE");
    EXPECT_EQ(linea.Punto(0).x, 20000);
    EXPECT_EQ(linea.Punto(0).y, 1000);
    EXPECT_EQ(linea.Punto(0).z, int(std::lround((double(dem.Matriz().Get(0, 0)) - 7.0) * 100.0)));
    const Medidas m = Mide(dibujo);
    EXPECT_DOUBLE_EQ(m.area, 6 * 250.0 * 5 * 150.0);
}

TEST(CDEM, TheOutlineHasHolesAndPartsAsCountedCellByCell) {
    std::mt19937 azar(11);
    for (const double parte : {0.02, 0.1, 0.3, 0.5, 0.8}) {
        CDEM dem = Grid(60, 45, 100.0, 100.0);
        dem.Matriz().Rellena(5.0f);
        std::bernoulli_distribution vacio(parte);
        for (unsigned i = 0; i < 60 * 45; ++i)
            if (vacio(azar)) dem.Matriz().Set(i / 45, i % 45, kVacio);
        dem.ActualizaCantidades();

        double perimetro = 0.0;
        const auto hay = [&](int f, int c) {
            return f >= 0 && c >= 0 && dem.EsCeldaValida(unsigned(f), unsigned(c), 1);
        };
        for (int f = 0; f < 59; ++f)
            for (int c = 0; c < 44; ++c)
                if (hay(f, c)) perimetro += 100.0 * (!hay(f - 1, c) + !hay(f + 1, c) + !hay(f, c - 1) + !hay(f, c + 1));
        // Parts joined by edges, counted by spreading.
        std::vector<char> visto(59 * 44, 0);
        unsigned partes = 0;
        for (int s = 0; s < 59 * 44; ++s) {
            if (visto[std::size_t(s)] || !hay(s / 44, s % 44)) continue;
            ++partes;
            std::vector<int> pendientes = {s};
            visto[std::size_t(s)] = 1;
            while (!pendientes.empty()) {
                const int i = pendientes.back(), f = i / 44, c = i % 44;
                pendientes.pop_back();
                for (const auto& [g, d] : {std::pair{f - 1, c}, {f + 1, c}, {f, c - 1}, {f, c + 1}}) {
                    if (g < 0 || g >= 59 || d < 0 || d >= 44 || visto[std::size_t(g * 44 + d)] || !hay(g, d)) continue;
                    visto[std::size_t(g * 44 + d)] = 1;
                    pendientes.push_back(g * 44 + d);
                }
            }
        }
        CDibujo<int> dibujo;
        ASSERT_EQ(dem.DameBase(dibujo), 1);
        const Medidas m = Mide(dibujo);
        EXPECT_DOUBLE_EQ(m.area, double(dem.DameCeldas()) * 1e4);
        EXPECT_DOUBLE_EQ(m.perimetro, perimetro);
        EXPECT_EQ(m.anillos, partes);
        for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {  // no ring comes to a point twice
            std::vector<std::pair<int, int>> puntos;
            for (unsigned k = 0; k + 1 < dibujo[i]->NPuntos(); ++k)
                puntos.emplace_back(dibujo[i]->Punto(int(k)).x, dibujo[i]->Punto(int(k)).y);
            std::sort(puntos.begin(), puntos.end());
            EXPECT_EQ(std::adjacent_find(puntos.begin(), puntos.end()), puntos.end());
        }
    }
}

TEST(CDEM, AnOutlineThatDoesNotFitInIntegersLeavesTheDrawingAlone) {
    CDEM dem = Grid(3, 3, 1.0, 1.0, 431000.0, 4601000.0, CDataSemilla(3));
    dem.Matriz().Rellena(5.0f);
    CDibujo<int> dibujo;
    EXPECT_EQ(dem.DameBase(dibujo), 0);
    EXPECT_EQ(dibujo.Cantidad(), 0u);
    dem.Semilla() = CDataSemilla(3, 431000.0, 4601000.0);
    EXPECT_EQ(dem.DameBase(dibujo), 1);
}

TEST(CDEM, TheOutlineOfACellListGoesRoundItsCells) {
    CDEM dem = Lista();
    CDibujo<int> dibujo;
    ASSERT_EQ(dem.DameBase(dibujo), 1);
    ASSERT_EQ(dibujo.Cantidad(), 1u);
    EXPECT_DOUBLE_EQ(Mide(dibujo).area, 24.0);
    EXPECT_EQ(dibujo[0]->NPuntos(), 8u) << "the lattice's corner at (0, 2), which is no cell's, is left out";
    EXPECT_EQ(dibujo[0]->Punto(0).z, 10);
}

}  // namespace
