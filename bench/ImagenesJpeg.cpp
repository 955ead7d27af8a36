// Reading of JPEG, beside plain decoding by libjpeg-turbo of the same file, row by row into one buffer.

#include "Turnos.h"
#include "raster/CJpeg.h"

#include <jpeglib.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int kLado = 4000;

// Hills of colour with some noise.
std::string Fichero(bool progresivo) {
    const std::string ruta = std::filesystem::temp_directory_path() / (progresivo ? "bench_p.jpg" : "bench_b.jpg");
    FILE* const salida = std::fopen(ruta.c_str(), "wb");
    if (salida == nullptr) std::abort();
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errores;
    jpeg.err = jpeg_std_error(&errores);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, salida);
    jpeg.image_width = jpeg.image_height = kLado;
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 85, TRUE);
    if (progresivo) jpeg_simple_progression(&jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<BYTE> fila(3 * kLado);
    unsigned azar = 1;
    for (int f = 0; f < kLado; ++f) {
        for (int i = 0; i < 3 * kLado; ++i) {
            azar = azar * 1664525U + 1013904223U;
            fila[std::size_t(i)] = BYTE(120 + 80 * std::sin(f * 0.02 + i % 3) * std::cos(i * 0.01) + int(azar >> 28));
        }
        BYTE* p = fila.data();
        jpeg_write_scanlines(&jpeg, &p, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::fclose(salida);
    return ruta;
}

void Decodifica(const std::string& ruta) {
    FILE* const entrada = std::fopen(ruta.c_str(), "rb");
    if (entrada == nullptr) std::abort();
    jpeg_decompress_struct jpeg{};
    jpeg_error_mgr errores;
    jpeg.err = jpeg_std_error(&errores);
    jpeg_create_decompress(&jpeg);
    jpeg_stdio_src(&jpeg, entrada);
    jpeg_read_header(&jpeg, TRUE);
    jpeg_start_decompress(&jpeg);
    const std::size_t fila = std::size_t{3} * jpeg.output_width;
    std::vector<BYTE> pixeles(fila * jpeg.output_height);
    while (jpeg.output_scanline < jpeg.output_height) {
        BYTE* p = &pixeles[fila * jpeg.output_scanline];
        jpeg_read_scanlines(&jpeg, &p, 1);
    }
    jpeg_finish_decompress(&jpeg);
    jpeg_destroy_decompress(&jpeg);
    benchmark::DoNotOptimize(pixeles.data());
    std::fclose(entrada);
}

void LeeJpeg(benchmark::State& state) {
    const std::string ruta = Fichero(state.range(0) != 0);
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo([&] { Decodifica(ruta); });
        turnos.Propio([&] {
            CFile fichero(CString(ruta.c_str()), CFile::modeRead);
            Vertiz::CJpeg imagen;
            if (!imagen.SetFichero(&fichero) || imagen.Leer(false) != 1) std::abort();
        });
    }
    turnos.Informa(state);
    std::remove(ruta.c_str());
}
BENCHMARK(LeeJpeg)->ArgName("progressive")->Arg(0)->Arg(1)->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
