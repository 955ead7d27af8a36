// Triangulating points: beside Qhull, which is the floor here, and by how their number grows; outlines and lines beside
// a sort of their points.
//
// The floor of outlines and lines sorts the same points by x and y, which no triangulation does with less.

#include "MemoriaViva.h"
#include "Turnos.h"
#include "model/CTriangulacion.h"
#include "model/Delaunay.h"

#include <benchmark/benchmark.h>
#include <libqhull_r/qhull_ra.h>

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
using Vertiz::CPuntoTIN;
using Vertiz::predicados::CLugar;

constexpr int kPuntos = 100000;
constexpr int kTurnos = 5;

// ---- Points
// ------------------------------------------------------------------------------------------------------------

std::vector<CLugar> AlAzar(int cuantos) {
    std::mt19937 azar(1);
    std::uniform_int_distribution<int> dado(-1000000000, 1000000000);
    std::vector<CLugar> puntos;
    for (int i = 0; i < cuantos; ++i) {
        const int x = dado(azar);
        puntos.emplace_back(x, dado(azar));
    }
    return puntos;
}

std::vector<CLugar> EnRejilla(int cuantos) {
    const int lado = int(std::sqrt(double(cuantos)));
    std::vector<CLugar> puntos;
    for (int i = 0; i < lado * lado; ++i)
        puntos.emplace_back(i % lado * 1000, i / lado * 1000);
    return puntos;
}

// Ten heaps, each some times as wide as the one before.
std::vector<CLugar> EnGrupos(int cuantos) {
    std::mt19937 azar(1);
    std::normal_distribution<double> campana;
    std::vector<CLugar> puntos;
    for (int i = 0; i < cuantos; ++i) {
        const double grupo = i % 10, ancho = std::pow(10.0, 1.0 + 0.75 * grupo);
        const double x = 2e8 * grupo - 1e9 + ancho * campana(azar);
        puntos.emplace_back(int(x), int(2e7 * grupo * grupo + ancho * campana(azar)));
    }
    return puntos;
}

std::vector<CLugar> Ordenados(int cuantos) {
    std::vector<CLugar> puntos = AlAzar(cuantos);
    std::ranges::sort(puntos);
    return puntos;
}

int Qhull(std::vector<double>& coordenadas) {
    qhT qh;
    qh_zero(&qh, stderr);
    char opciones[] = "qhull d Qbb Qc Qz";
    const int resultado =
        qh_new_qhull(&qh, 2, int(coordenadas.size() / 2), coordenadas.data(), False, opciones, nullptr, stderr);
    qh_freeqhull(&qh, qh_ALL);
    return resultado;
}

void Puntos(benchmark::State& state, std::vector<CLugar> (*hace)(int)) {
    const std::vector<CLugar> puntos = hace(int(state.range(0)));
    std::vector<double> coordenadas;
    for (const CLugar& p : puntos)
        coordenadas.insert(coordenadas.end(), {double(p.x), double(p.y)});
    Turnos turnos;
    std::size_t bytes = 0;
    for (auto _ : state)
        for (int i = 0; i < 3; ++i) {
            if (i == 0) turnos.Suelo([&] { benchmark::DoNotOptimize(Qhull(coordenadas)); });
            const std::size_t antes = memoria.ahora;
            memoria.maximo = antes;
            turnos.Propio([&] {
                Vertiz::geometria::CDelaunay delaunay(puntos);
                delaunay.Triangula([](int) { return true; });
                if (delaunay.Cantidad() < int(puntos.size())) state.SkipWithError("too few triangles");
            });
            bytes = memoria.maximo - antes;
        }
    turnos.Informa(state);
    state.counters["bytes_a_point"] = double(bytes) / double(puntos.size());
}

// From points to a terrain that may be asked where a point lies, in the most memory that there is at one time: the
// points given are in it.
void Terreno(benchmark::State& state) {
    const std::vector<CLugar> lugares = AlAzar(int(state.range(0)));
    std::vector<double> coordenadas;
    for (const CLugar& p : lugares)
        coordenadas.insert(coordenadas.end(), {double(p.x), double(p.y)});
    Turnos turnos;
    std::size_t bytes = 0;
    for (auto _ : state) {
        turnos.Suelo([&] { benchmark::DoNotOptimize(Qhull(coordenadas)); });
        for (int i = 0; i < 3; ++i) {
            const std::size_t antes = memoria.ahora;
            memoria.maximo = antes;
            std::vector<CPuntoTIN> puntos;
            puntos.reserve(lugares.size());
            for (const CLugar& p : lugares)
                puntos.emplace_back(p.x, p.y, 0);
            Vertiz::CTIN tin;
            turnos.Propio(
                [&] { Vertiz::CTriangulacion().Run(std::move(puntos), CDibujo<int>(), tin, nullptr, nullptr); });
            if (tin.CantidadTriangulos() < lugares.size()) state.SkipWithError("too few triangles");
            bytes = memoria.maximo - antes;
        }
    }
    turnos.Informa(state);
    state.counters["bytes_a_point"] = double(bytes) / double(lugares.size());
}

BENCHMARK_CAPTURE(Puntos, al_azar, AlAzar)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Puntos, en_rejilla, EnRejilla)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Puntos, en_grupos, EnGrupos)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Puntos, ordenados, Ordenados)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(Terreno)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

// ---- Outlines and lines
// ------------------------------------------------------------------------------------------------

void Suelto(CDibujo<int>& dibujo, int x, int y) {
    CLinea<int> linea(L"P");
    linea << CCoor3D<int>(x, y, 0);
    dibujo.Inserta(linea);
}

CDibujo<int> Sueltos() {
    CDibujo<int> dibujo;
    for (const CLugar& p : AlAzar(kPuntos))
        Suelto(dibujo, p.x, p.y);
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

// 300 lines one way and 300 the other, which cross 90 000 times.
CDibujo<int> Cruces() {
    CDibujo<int> dibujo;
    for (int i = 0; i < 300; ++i)
        for (const bool bAlto : {false, true}) {
            const int a = 3000000 * i - 450000000, b = 500000000, inclina = 1000 * i;
            CLinea<int> linea(L"L");
            if (bAlto)
                linea << CCoor3D<int>(a, -b, 0) << CCoor3D<int>(a + inclina, b, 0);
            else
                linea << CCoor3D<int>(-b, a, 0) << CCoor3D<int>(b, a + inclina, 0);
            dibujo.Inserta(linea);
        }
    return dibujo;
}

void Triangula(benchmark::State& state, CDibujo<int> (*hace)(), unsigned minimo) {
    const CDibujo<int> dibujo = hace();
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
            if (tin.CantidadTriangulos() < minimo) state.SkipWithError("too few triangles");
        }
    turnos.Informa(state);
}

BENCHMARK_CAPTURE(Triangula, sueltos, Sueltos, kPuntos)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Triangula, contorno, Contorno, kPuntos / 2)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Triangula, filas, Filas, kPuntos / 2)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Triangula, cruces, Cruces, 170000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
