// Matching of a template and segmentation, beside OpenCV's on one thread.

#ifdef LUMBRA_OPENCV

#include "Turnos.h"
#include "raster/CTiff.h"

#include <opencv2/imgproc.hpp>
#include <opencv2/ximgproc/segmentation.hpp>

#include <cmath>
#include <cstring>
#include <random>

namespace {

// Hills of grey with some noise: neither flat nor all edges.
std::vector<BYTE> Colinas(int ancho, int alto, int bandas) {
    std::mt19937 azar(1);
    std::vector<BYTE> pixeles;
    for (int f = 0; f < alto; ++f)
        for (int c = 0; c < ancho; ++c)
            for (int b = 0; b < bandas; ++b)
                pixeles.push_back(BYTE(120 + 80 * std::sin(f * 0.02 + b) * std::cos(c * 0.03) + azar() % 20));
    return pixeles;
}

void Llena(Vertiz::CTiff& imagen, int ancho, int alto, int bits, const std::vector<BYTE>& pixeles) {
    imagen.Crear(ancho, alto, bits, 72.0F, false, nullptr, nullptr, false);
    for (int f = 0; f < alto; ++f)
        imagen.SetFila(&pixeles[std::size_t(f) * std::size_t(ancho) * std::size_t(bits / 8)], f, 0, ancho);
}

// The whole correlation of 2000 x 2000 pixels with a template of 64 x 64. OpenCV's is that of the image with an edge of
// zeros round it; its normalised coefficient is the same figure.
void Correla(benchmark::State& state) {
    cv::setNumThreads(1);
    constexpr int kLado = 2000, kPlantilla = 64;
    const std::vector<BYTE> pixeles = Colinas(kLado, kLado, 1), parte = Colinas(kPlantilla, kPlantilla, 1);
    Vertiz::CTiff imagen, plantilla;
    Llena(imagen, kLado, kLado, 8, pixeles);
    Llena(plantilla, kPlantilla, kPlantilla, 8, parte);
    cv::Mat orlada, resultado;
    cv::copyMakeBorder(cv::Mat(kLado, kLado, CV_8U, const_cast<BYTE*>(pixeles.data())), orlada, kPlantilla - 1,
                       kPlantilla - 1, kPlantilla - 1, kPlantilla - 1, cv::BORDER_CONSTANT);
    const cv::Mat modelo(kPlantilla, kPlantilla, CV_8U, const_cast<BYTE*>(parte.data()));
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo([&] { cv::matchTemplate(orlada, modelo, resultado, cv::TM_CCOEFF_NORMED); });
        Vertiz::CTiff* destino = nullptr;
        turnos.Propio([&] { imagen.CorrelaPlantilla(&plantilla, &destino, 1, true); });
        Vertiz::BorraRaster(destino);
    }
    turnos.Informa(state);
}
BENCHMARK(Correla)->Iterations(5)->Unit(benchmark::kMillisecond);

void Segmenta(benchmark::State& state) {
    cv::setNumThreads(1);
    const int lado = int(state.range(0));
    const std::vector<BYTE> pixeles = Colinas(lado, lado, 3);
    Vertiz::CTiff imagen;
    Llena(imagen, lado, lado, 24, pixeles);
    const cv::Mat origen(lado, lado, CV_8UC3, const_cast<BYTE*>(pixeles.data()));
    cv::Mat etiquetas;
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo([&] {
            cv::ximgproc::segmentation::createGraphSegmentation(0.8, 300.0F, 50)->processImage(origen, etiquetas);
        });
        Vertiz::CTiff* destino = nullptr;
        turnos.Propio([&] { imagen.SegmentaImagen(&destino, 0.8F, 300.0F, 50, false, nullptr); });
        Vertiz::BorraRaster(destino);
    }
    turnos.Informa(state);
}
BENCHMARK(Segmenta)->Arg(500)->Arg(1000)->ArgName("side")->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace

#endif
