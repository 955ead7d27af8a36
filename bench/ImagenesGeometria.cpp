// Halving and resampling of 4000 x 4000 pixels, beside a plain loop over the same bytes and, where it is installed,
// OpenCV on one thread. All of them make the new picture in their turn, and drop that of the turn before.

#include "Turnos.h"
#include "raster/CTiff.h"

#ifdef LUMBRA_OPENCV
#include <opencv2/imgproc.hpp>
#endif

#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace {

constexpr int kLado = 4000, kLadoNuevo = 3000;

std::vector<BYTE> Bytes() {
    std::mt19937 azar(1);
    std::vector<BYTE> bytes(std::size_t{kLado} * kLado * 3);
    for (BYTE& b : bytes)
        b = static_cast<BYTE>(azar() >> 24);
    return bytes;
}

std::unique_ptr<Vertiz::CTiff> Imagen(const std::vector<BYTE>& bytes) {
    auto imagen = std::make_unique<Vertiz::CTiff>();
    imagen->Crear(kLado, kLado, 24, 72.0F, false, nullptr, nullptr, false);
    for (int f = 0; f < kLado; ++f)
        imagen->SetFila(&bytes[std::size_t(f) * kLado * 3], f, 0, kLado);
    return imagen;
}

// The nearest pixels of a picture of `lado`, by ready indices.
void BucleCercano(const std::vector<BYTE>& bytes, const std::vector<int>& indices, std::unique_ptr<BYTE[]>& destino) {
    destino.reset();
    destino = std::make_unique_for_overwrite<BYTE[]>(indices.size() * indices.size() * 3);
    BYTE* p = destino.get();
    for (const int f : indices)
        for (const int c : indices) {
            std::memcpy(p, &bytes[(std::size_t(f) * kLado + std::size_t(c)) * 3], 3);
            p += 3;
        }
}

std::vector<int> Indices(int lado) {
    std::vector<int> indices(static_cast<std::size_t>(lado));
    for (int i = 0; i < lado; ++i)
        indices[std::size_t(i)] = std::min(int(i / (double(lado) / kLado) + 0.5), kLado - 1);
    return indices;
}

#ifdef LUMBRA_OPENCV
void OpenCVCercano(std::vector<BYTE>& bytes, int lado) {
    static cv::Mat destino;
    destino.release();
    cv::setNumThreads(1);
    const cv::Mat origen(kLado, kLado, CV_8UC3, bytes.data());
    cv::resize(origen, destino, cv::Size(lado, lado), 0, 0, cv::INTER_NEAREST);
}
#endif

// @param lado of the new picture. The second argument of the benchmark asks for OpenCV as the floor.
template <class Propio>
void Compara(benchmark::State& state, int lado, const Propio& propio) {
    std::vector<BYTE> bytes = Bytes();
    std::unique_ptr<BYTE[]> destino;
    const std::vector<int> indices = Indices(lado);
    Turnos turnos;
    for (auto _ : state) {
        const auto imagen = Imagen(bytes);
        turnos.Suelo([&] {
#ifdef LUMBRA_OPENCV
            if (state.range(0) != 0) return OpenCVCercano(bytes, lado);
#endif
            BucleCercano(bytes, indices, destino);
        });
        benchmark::DoNotOptimize(destino.get());
        turnos.Propio([&] { propio(*imagen); });
    }
    turnos.Informa(state);
}

void Suelos(benchmark::internal::Benchmark* b) {
    b->ArgName("opencv")->Iterations(9)->Unit(benchmark::kMillisecond)->Arg(0);
#ifdef LUMBRA_OPENCV
    b->Arg(1);
#endif
}

void Reducir(benchmark::State& state) {
    Compara(state, kLado / 2, [](Vertiz::CTiff& imagen) { imagen.Reducir(0, 0); });
}
BENCHMARK(Reducir)->Apply(Suelos);

void CambiaTamano(benchmark::State& state) {
    Vertiz::CTiff destino;
    Compara(state, kLadoNuevo, [&](Vertiz::CTiff& imagen) { imagen.CambiaTamano(kLadoNuevo, kLadoNuevo, &destino); });
}
BENCHMARK(CambiaTamano)->Apply(Suelos);

}  // namespace
