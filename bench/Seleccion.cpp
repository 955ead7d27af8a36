// Picking in a grid of 2000 x 2000 samples by a click that hits nothing, so that the whole grid is searched.
//
// The floor reads every height and compares it with the null level.

#include "Turnos.h"
#include "terrain/CEscenaDEM.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

constexpr unsigned kLado = 2000;
constexpr int kAncho = 800, kAlto = 600;
constexpr unsigned kCeldas = 2, kMuestras = 1;

// Rolling hills with some voids, in a scene that has a frame to pick in.
struct Terreno {
    explicit Terreno(bool bOrto) : dem(kLado, kLado, 5.0, 5.0, 500000.0, 4500000.0), escena(&dem) {
        for (unsigned r = 0; r < kLado; ++r)
            for (unsigned c = 0; c < kLado; ++c)
                dem.Matriz().Set(r, c, float(500 + 300 * std::sin(r * 0.01) * std::cos(c * 0.013)));
        for (unsigned r = 400; r < 600; ++r)
            for (unsigned c = 900; c < 1300; ++c)
                dem.Matriz().Set(r, c, -9999.0F);
        dem.ActualizaCantidades();
        bitmap.CreateBitmap(kAncho, kAlto, 24);
        dc.CreateCompatibleDC(nullptr);
        dc.SelectObject(&bitmap);
        escena.SetQuad(3);
        escena.SetOrtogonal(bOrto);
        bien = escena.Crear(&dc, PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL) != 0;
        escena.OnZoomExtension();
        bien = bien && escena.Iniciar() && escena.Resize(kAncho, kAlto);
        escena.OnZoomExtension();
        bien = bien && escena.Render();
        escena.SetQuad(1);
    }

    CBitmap bitmap;
    CDC dc;
    Vertiz::CDEM dem;
    CEscenaDEM escena;
    bool bien = false;
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
