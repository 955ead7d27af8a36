// Luminance, histograms and the Sobel filter of 4000 x 4000 pixels, beside a plain loop over the same bytes and, where
// it is installed, OpenCV on one thread.

#include "Turnos.h"
#include "raster/CTiff.h"

#ifdef LUMBRA_OPENCV
#include <opencv2/imgproc.hpp>
#endif

#include <array>
#include <cmath>
#include <random>

namespace {

constexpr int kLado = 4000;
constexpr int kOpenCV = 1;  // the second floor

// A picture and its bytes: random ones, or all alike as in a scanned sheet.
struct Escena {
    Escena(int bits, bool plana) : bytesFila(std::size_t(kLado * bits / 8)), pixeles(kLado * bytesFila, 250) {
        std::mt19937 azar(1);
        for (BYTE& b : pixeles)
            if (!plana) b = static_cast<BYTE>(azar() >> 24);
        imagen.Crear(kLado, kLado, bits, 72.0F, false, nullptr, nullptr, false);
        for (int f = 0; f < kLado; ++f)
            imagen.SetFila(Fila(f), f, 0, kLado);
    }
    BYTE* Fila(int f) { return &pixeles[std::size_t(f) * bytesFila]; }
#ifdef LUMBRA_OPENCV
    cv::Mat Matriz() {
        cv::setNumThreads(1);
        return cv::Mat(kLado, kLado, bytesFila == kLado ? CV_8U : CV_8UC3, pixeles.data());
    }
#endif

    std::size_t bytesFila;
    std::vector<BYTE> pixeles;
    Vertiz::CTiff imagen;
};

// Takes turns with the plain loop, or with OpenCV where the benchmark's second argument asks for it.
template <class Bucle, class OpenCV, class Propio>
void Compara(benchmark::State& state, const Bucle& bucle, const OpenCV& openCV, const Propio& propio) {
    Turnos turnos;
    for (auto _ : state) {
        if (state.range(1) == kOpenCV)
            turnos.Suelo(openCV);
        else
            turnos.Suelo(bucle);
        turnos.Propio(propio);
    }
    turnos.Informa(state);
}

void Tamanos(benchmark::internal::Benchmark* b) {
    b->ArgNames({"bits", "opencv"})->Iterations(7)->Unit(benchmark::kMillisecond);
    for (const int bits : {8, 24}) {
        b->Args({bits, 0});
#ifdef LUMBRA_OPENCV
        b->Args({bits, kOpenCV});
#endif
    }
}

// ---- Luminance ---------------------------------------------------------------------------------------------------

void Luminancia(benchmark::State& state) {
    Escena e(24, false);
    const auto bucle = [&] {
        for (int f = 0; f < kLado; ++f)
            for (BYTE *p = e.Fila(f), *fin = p + e.bytesFila; p != fin; p += 3)
                p[0] = p[1] = p[2] = static_cast<BYTE>(0.2989 * p[0] + 0.587 * p[1] + 0.114 * p[2]);
    };
    const auto openCV = [&] {
#ifdef LUMBRA_OPENCV
        static cv::Mat gris, color;
        cv::cvtColor(e.Matriz(), gris, cv::COLOR_BGR2GRAY);
        cv::cvtColor(gris, color, cv::COLOR_GRAY2BGR);
#endif
    };
    Compara(state, bucle, openCV, [&] { e.imagen.Luminancia(); });
}
BENCHMARK(Luminancia)->Apply([](auto* b) {
    b->ArgNames({"bits", "opencv"})->Iterations(7)->Unit(benchmark::kMillisecond)->Args({24, 0});
#ifdef LUMBRA_OPENCV
    b->Args({24, kOpenCV});
#endif
});

// ---- Histogram ---------------------------------------------------------------------------------------------------

void Histograma(benchmark::State& state, bool plana) {
    Escena e(int(state.range(0)), plana);
    std::array<unsigned, 256> cuentas{};
    const auto bucle = [&] {
        cuentas.fill(0);
        for (int f = 0; f < kLado; ++f) {
            const BYTE *const fila = e.Fila(f), *const fin = fila + e.bytesFila;
            if (e.bytesFila == kLado)
                for (const BYTE* p = fila; p != fin; ++p)
                    ++cuentas[*p];
            else
                for (const BYTE* p = fila; p != fin; p += 3)
                    ++cuentas[static_cast<std::size_t>(0.212655 * p[0] + 0.715158 * p[1] + 0.072187 * p[2])];
        }
        benchmark::DoNotOptimize(cuentas);
    };
    const auto openCV = [&] {
#ifdef LUMBRA_OPENCV
        cv::Mat gris = e.Matriz(), cuenta;
        if (gris.channels() == 3) cv::cvtColor(e.Matriz(), gris, cv::COLOR_BGR2GRAY);
        const int canal = 0, cantidad = 256;
        const float limites[] = {0, 256}, *rangos = limites;
        cv::calcHist(&gris, 1, &canal, cv::noArray(), cuenta, 1, &cantidad, &rangos);
#endif
    };
    Compara(state, bucle, openCV, [&] { e.imagen.Histograma(cuentas.data(), false, false); });
}
BENCHMARK_CAPTURE(Histograma, random, false)->Apply(Tamanos);
BENCHMARK_CAPTURE(Histograma, plain, true)->Apply(Tamanos);

// ---- Sobel -------------------------------------------------------------------------------------------------------

// One row of |x| + |y| of both kernels, from three rows; `paso` bytes from a pixel to the next.
void FilaSobel(const BYTE* s, const BYTE* m, const BYTE* n, BYTE* __restrict destino, std::size_t fin,
               std::size_t paso) {
    for (std::size_t j = paso; j < fin; ++j) {
        const int x = s[j + paso] - s[j - paso] + 2 * (m[j + paso] - m[j - paso]) + n[j + paso] - n[j - paso];
        const int y = n[j - paso] - s[j - paso] + 2 * (n[j] - s[j]) + n[j + paso] - s[j + paso];
        destino[j] = static_cast<BYTE>(std::min(std::abs(x) + std::abs(y), 255));
    }
}

void Sobel(benchmark::State& state) {
    Escena e(int(state.range(0)), false);
    std::vector<BYTE> salida(e.pixeles.size());
    const auto bucle = [&] {
        const std::size_t paso = e.bytesFila / kLado;
        for (int f = 1; f < kLado - 1; ++f)
            FilaSobel(e.Fila(f - 1), e.Fila(f), e.Fila(f + 1), &salida[std::size_t(f) * e.bytesFila],
                      e.bytesFila - paso, paso);
        benchmark::DoNotOptimize(salida.data());
    };
    const auto openCV = [&] {
#ifdef LUMBRA_OPENCV
        static cv::Mat x, y, x8, y8, suma;
        cv::Sobel(e.Matriz(), x, CV_16S, 1, 0);
        cv::Sobel(e.Matriz(), y, CV_16S, 0, 1);
        cv::convertScaleAbs(x, x8);
        cv::convertScaleAbs(y, y8);
        cv::add(x8, y8, suma);
#endif
    };
    Compara(state, bucle, openCV, [&] { e.imagen.Filtra(2, 3); });
}
BENCHMARK(Sobel)->Apply(Tamanos);

}  // namespace
