// Triangulating 100 000 points: loose ones, an outline of as many corners, and a line between two dense rows.
//
// The floor sorts the same points by x and y, which no triangulation does with less.

#include "Turnos.h"
#include "model/CTriangulacion.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

namespace {

using Vertiz::CCoor3D;
using Vertiz::CDibujo;
using Vertiz::CLinea;

constexpr int kPuntos = 100000;
constexpr int kTurnos = 5;

void Suelto(CDibujo<int>& dibujo, int x, int y) {
    CLinea<int> linea(L"P");
    linea << CCoor3D<int>(x, y, 0);
    dibujo.Inserta(linea);
}

CDibujo<int> Sueltos() {
    std::mt19937 azar(1);
    std::uniform_int_distribution<int> dado(-1000000000, 1000000000);
    CDibujo<int> dibujo;
    for (int i = 0; i < kPuntos; ++i) {
        const int x = dado(azar);
        Suelto(dibujo, x, dado(azar));
    }
    return dibujo;
}

CDibujo<int> Contorno() {
    std::mt19937 azar(1);
    std::uniform_real_distribution<double> dado(1e9, 2e9);
    CLinea<int> linea(L"L");
    for (int i = 0; i < kPuntos; ++i) {
        const double a = 2 * std::numbers::pi * i / kPuntos, r = dado(azar);
        linea << CCoor3D<int>(r * std::cos(a), r * std::sin(a), 0.0);
    }
    linea.Cierra();
    CDibujo<int> dibujo;
    dibujo.Inserta(linea);
    return dibujo;
}

CDibujo<int> Filas() {
    CDibujo<int> dibujo;
    for (int i = 0; i < kPuntos; ++i)
        Suelto(dibujo, i, i % 2 != 0 ? 1000 : -1000);
    CLinea<int> linea(L"L");
    linea << CCoor3D<int>(-1, 0, 0) << CCoor3D<int>(kPuntos + 1, 0, 0);
    dibujo.Inserta(linea);
    return dibujo;
}

void Triangula(benchmark::State& state, const CDibujo<int>& dibujo) {
    std::vector<std::pair<int, int>> puntos;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        for (const CCoor3D<int>& p : dibujo[i]->Puntos())
            puntos.emplace_back(p.x, p.y);
    Turnos turnos;
    for (auto _ : state)
        for (int i = 0; i < kTurnos; ++i) {
            auto copia = puntos;
            turnos.Suelo([&] { std::ranges::sort(copia); });
            benchmark::DoNotOptimize(copia.data());
            Vertiz::CTIN tin;
            turnos.Propio([&] { Vertiz::CTriangulacion().Run(dibujo, tin, 0, nullptr, 0.1, nullptr); });
            if (tin.CantidadTriangulos() < kPuntos / 2) state.SkipWithError("too few triangles");
        }
    turnos.Informa(state);
}

void TriangulaSueltos(benchmark::State& state) {
    Triangula(state, Sueltos());
}
void TriangulaContorno(benchmark::State& state) {
    Triangula(state, Contorno());
}
void TriangulaFilas(benchmark::State& state) {
    Triangula(state, Filas());
}
BENCHMARK(TriangulaSueltos)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(TriangulaContorno)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(TriangulaFilas)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
