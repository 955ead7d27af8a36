// What the user's hand waits for: finding the point of the model under a pixel, and moving the sketch's last point
// after the cursor.
//
// The floor of the first is the one read of the depth buffer that it makes, of the second the search for its point.

#include "Colinas.h"
#include "Turnos.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace {

constexpr unsigned kLado = 400;
constexpr int kAncho = 1200, kAlto = 900;
constexpr int kBloque = 1024;  // side of the depth block round a pixel
constexpr int kTurnos = 15, kVeces = 10;

class Escena : public CEscenaDEM {
  public:
    using CEscenaDEM::CEscenaDEM;
    using CEscenaDEM::operator=;
    using CEscenaDEM::m_pBufferProfundidad;
};

// Hills that fill the window from side to side, and half of it in the other direction.
struct Terreno : Colinas<Escena> {
    Terreno()
        : Colinas(
              kLado, kAncho, kAlto,
              [](unsigned r, unsigned c) { return 500 + 30 * std::sin(r * 0.05) * std::cos(c * 0.06); },
              [](Colinas& t) {
                  t.escena.SetQuad(1);
                  t.escena.SetEjes(0);
                  t.escena.SetDigiTab(&t.tabla);
              }) {
        bien = bien && escena.Render();
    }
};

template <class F>
auto Repite(F hace) {
    return [hace] {
        for (int i = 0; i < kVeces; ++i)
            hace();
    };
}

// A click on the model, beside it, and with nothing of it in the window.
void Pulsa(benchmark::State& state, CPoint pt, bool bVacio) {
    Terreno t;
    if (bVacio) {
        t.escena.SumaTrans(Vertiz::CCoor3D<double>(50, 0, 0));
        t.bien = t.bien && t.escena.Render();
    }
    if (!t.bien) return state.SkipWithError("no context");
    for (auto _ : state) {
        Turnos turnos;
        for (int i = 0; i < kTurnos; ++i) {
            t.escena.MakeCurrent(nullptr);
            turnos.Suelo(Repite([&] {
                glReadPixels(pt.x - kBloque / 2, kAlto - pt.y - kBloque / 2, kBloque, kBloque, GL_DEPTH_COMPONENT,
                             GL_FLOAT, t.escena.m_pBufferProfundidad.get());
            }));
            wglMakeCurrent(nullptr, nullptr);
            turnos.Propio(Repite([&] {
                Vertiz::CCoor3D<double> c;
                benchmark::DoNotOptimize(t.escena.PantallaATerreno(pt, c, false, true, false));
            }));
        }
        turnos.Informa(state, kVeces);
    }
}

// The cursor's point of a sketch of some points goes to and fro; the difference to its search is what it costs.
void Goma(benchmark::State& state) {
    Terreno t;
    if (!t.bien) return state.SkipWithError("no context");
    for (int i = 0; i < state.range(0); ++i)
        t.escena.InsertaPuntoLineaNueva(CPoint(100 + i * 7 % 1000, 400 + i * 13 % 100), false);
    int paso = 0;
    const auto sitio = [&] { return CPoint(300 + paso++ % 2 * 400, 450); };
    for (auto _ : state) {
        Turnos turnos;
        for (int i = 0; i < kTurnos; ++i) {
            turnos.Suelo(Repite([&] {
                Vertiz::CCoor3D<double> c;
                benchmark::DoNotOptimize(t.escena.PantallaATerreno(sitio(), c, true, false, false));
            }));
            turnos.Propio(Repite([&] { t.escena.ModificaUltimoPuntoLineaNueva(sitio(), 1); }));
        }
        turnos.Informa(state, kVeces);
        state.counters["beside_ms"] = (turnos.propio - turnos.suelo) * 1e3 / kVeces;
    }
}

}  // namespace

BENCHMARK_CAPTURE(Pulsa, sobre_el_modelo, CPoint(600, 450), false)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Pulsa, al_lado, CPoint(600, 100), false)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Pulsa, sin_modelo, CPoint(600, 450), true)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Goma)->Arg(10)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
