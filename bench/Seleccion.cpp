// Picking in a grid of 2000 x 2000 samples by a click that hits nothing, so that the whole grid is searched.
//
// The floor reads every height and compares it with the null level.

#include "Colinas.h"
#include "Turnos.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

constexpr unsigned kLado = 2000;
constexpr int kAncho = 800, kAlto = 600;
constexpr unsigned kCeldas = 2, kMuestras = 1;

// Rolling hills with some voids, in a scene that has a frame to pick in.
struct Terreno : Colinas<CEscenaDEM> {
    explicit Terreno(bool bOrto)
        : Colinas(kLado, kAncho, kAlto, Altura, [bOrto](Colinas& t) {
              t.escena.SetQuad(3);
              t.escena.SetOrtogonal(bOrto);
          }) {
        bien = bien && escena.Render();
        escena.SetQuad(1);
    }

    static double Altura(unsigned r, unsigned c) {
        const bool bVacia = r >= 400 && r < 600 && c >= 900 && c < 1300;
        return bVacia ? -9999.0 : 500 + 300 * std::sin(r * 0.01) * std::cos(c * 0.013);
    }
};

void Falla(benchmark::State& state) {
    Terreno terreno(state.range(1) != 0);
    if (!terreno.bien) return state.SkipWithError("no scene");
    const double nulo = terreno.dem.GetNulo();
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo([&] {
            std::size_t validas = 0;
            for (unsigned r = 0; r < kLado; ++r) {
                const float* fila = terreno.dem.Matriz().Fila(r);
                for (unsigned c = 0; c < kLado; ++c)
                    validas += fila[c] > nulo;
            }
            benchmark::DoNotOptimize(validas);
        });
        unsigned hallados = 0;
        turnos.Propio(
            [&] { hallados = terreno.escena.OnSeleccion(1, 1, 1, unsigned(state.range(0)), 0, 1, 1, 0, 0, 0, 0); });
        if (hallados != 0) return state.SkipWithError("the click should miss");
    }
    turnos.Informa(state);
}
BENCHMARK(Falla)
    ->ArgsProduct({{kCeldas, kMuestras}, {0, 1}})
    ->ArgNames({"kind", "orthographic"})
    ->Iterations(20)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
