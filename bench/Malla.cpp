// Questions to a terrain of a million random points: where a point lies, by walking; contours; volumes.
//
// The floor of a point query reads a triangle and its vertices at random, which no search does without. Contours and
// volumes are held against a walk over all triangles, and against themselves on a tenth of the points.

#include "Turnos.h"
#include "model/CTriangulacion.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using Vertiz::CCoor3D;
using Vertiz::CTIN;

constexpr int kPuntos = 1000000;
constexpr int kPreguntas = 1000000;
constexpr int kTurnos = 5;
constexpr int kAlcance = 1000000000;

CTIN Terreno(int puntos) {
    std::mt19937 azar(1);
    std::uniform_int_distribution<int> dado(-kAlcance, kAlcance);
    Vertiz::CLinea<int> linea(L"P");
    for (int i = 0; i < puntos; ++i) {
        const int x = dado(azar), y = dado(azar);
        linea << CCoor3D<int>(double(x), double(y), 1e6 * std::sin(x * 1e-8) * std::cos(y * 1e-8));
    }
    Vertiz::CDibujo<int> dibujo;
    dibujo.Inserta(linea);
    CTIN tin(Vertiz::CDataSemilla(3));
    Vertiz::CTriangulacion().Run(dibujo, tin, 1, nullptr, 0.1, nullptr);
    return tin;
}

const CTIN& Grande() {
    static const CTIN tin = Terreno(kPuntos);
    return tin;
}

void PuntosAlAzar(benchmark::State& state) {
    const CTIN& tin = Grande();
    std::mt19937 azar(2);
    std::uniform_real_distribution<double> dado(-0.99e6, 0.99e6);
    std::uniform_int_distribution<unsigned> cual(0, tin.CantidadTriangulos() - 1);
    std::vector<CCoor3D<double>> puntos;
    std::vector<unsigned> triangulos;
    for (int i = 0; i < kPreguntas; ++i) {
        const double x = dado(azar);
        puntos.emplace_back(x, dado(azar), 0.0);
        triangulos.push_back(cual(azar));
    }
    Turnos turnos;
    for (auto _ : state)
        for (int i = 0; i < kTurnos; ++i) {
            double suma = 0;
            turnos.Suelo([&] {
                for (const unsigned t : triangulos)
                    suma += double(tin.Vertice(t, 0).z) + tin.Vertice(t, 1).z + tin.Vertice(t, 2).z;
            });
            benchmark::DoNotOptimize(suma);
            int dentro = 0;
            turnos.Propio([&] {
                for (CCoor3D<double>& p : puntos)
                    dentro += tin.Proyecta(p, true, 0, nullptr) ? 1 : 0;
            });
            if (dentro < kPreguntas * 99 / 100) state.SkipWithError("points aren't found");
        }
    turnos.Informa(state);
    state.counters["us_each"] = turnos.propio / kPreguntas * 1e6;
}

// A walk over all triangles with their vertices.
double Recorre(const CTIN& tin) {
    double suma = 0;
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i)
        if (tin.EsVisible(i)) suma += double(tin.Vertice(i, 0).z) * tin.Vertice(i, 1).z - tin.Vertice(i, 2).z;
    return suma;
}

template <class Hace>
void Frente(benchmark::State& state, Hace hace) {
    const CTIN& tin = Grande();
    const CTIN chico = Terreno(kPuntos / 10);
    Turnos turnos, deUnDecimo;
    for (auto _ : state)
        for (int i = 0; i < kTurnos; ++i) {
            turnos.Suelo([&] { benchmark::DoNotOptimize(Recorre(tin)); });
            turnos.Propio([&] { hace(tin); });
            deUnDecimo.Propio([&] { hace(chico); });
        }
    turnos.Informa(state);
    state.counters["10x_points"] = turnos.propio / deUnDecimo.propio;
}

void Volumenes(benchmark::State& state) {
    Frente(state, [](const CTIN& tin) { benchmark::DoNotOptimize(tin.Volumen(100.0)); });
}
void Curvas(benchmark::State& state) {
    // The count of pieces grows with the root of that of points: the interval makes it grow as the points do.
    Frente(state, [](const CTIN& tin) {
        CTIN copia(tin);
        Vertiz::CDataCurvas data;
        data.m_dEquidistancia = tin.CantidadPuntos() > kPuntos / 2 ? 10.0 : 31.6;
        copia.GeneraCurvas(data);
        Vertiz::CDibujo<int> dibujo;
        copia.DameCurvas(dibujo, nullptr);
        benchmark::DoNotOptimize(dibujo.Cantidad());
    });
}
BENCHMARK(PuntosAlAzar)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Volumenes)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Curvas)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
