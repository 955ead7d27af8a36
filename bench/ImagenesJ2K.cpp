// Reading of JPEG 2000, beside OpenJPEG with as many threads as there are processors.

#include "Turnos.h"
#include "raster/CECW.h"
#include "platform/Hilos.h"

#include <malloc.h>
#include <openjpeg.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr int kLado = 3000;

// Hills of colour with some noise, written by OpenJPEG. @param tesela side of the tiles, 0 for one
std::string Fichero(int tesela, bool reversible) {
    const std::filesystem::path carpeta = std::filesystem::temp_directory_path();
    const std::string ruta = carpeta / ("bench" + std::to_string(tesela) + (reversible ? "r.jp2" : "i.jp2"));
    opj_image_cmptparm_t parametros[3]{};
    for (auto& p : parametros) {
        p.dx = p.dy = 1;
        p.w = p.h = kLado;
        p.prec = 8;
    }
    opj_image_t* imagen = opj_image_create(3, parametros, OPJ_CLRSPC_SRGB);
    imagen->x1 = imagen->y1 = kLado;
    unsigned azar = 1;
    for (int b = 0; b < 3; ++b)
        for (int i = 0; i < kLado * kLado; ++i) {
            azar = azar * 1664525U + 1013904223U;
            imagen->comps[b].data[i] =
                int(120 + 80 * std::sin(i / kLado * 0.02 + b) * std::cos(i % kLado * 0.03)) + int(azar >> 28);
        }
    opj_cparameters_t opciones;
    opj_set_default_encoder_parameters(&opciones);
    opciones.tcp_numlayers = 1;
    opciones.cp_disto_alloc = 1;
    opciones.tcp_rates[0] = reversible ? 0.0F : 12.0F;
    opciones.irreversible = !reversible;
    opciones.tcp_mct = 1;
    opciones.tile_size_on = tesela != 0;
    opciones.cp_tdx = opciones.cp_tdy = tesela != 0 ? tesela : kLado;
    opj_codec_t* codec = opj_create_compress(OPJ_CODEC_JP2);
    opj_setup_encoder(codec, &opciones, imagen);
    opj_codec_set_threads(codec, opj_get_num_cpus());
    opj_stream_t* flujo = opj_stream_create_default_file_stream(ruta.c_str(), OPJ_FALSE);
    if (!opj_start_compress(codec, imagen, flujo) || !opj_encode(codec, flujo) || !opj_end_compress(codec, flujo))
        std::abort();
    opj_stream_destroy(flujo);
    opj_destroy_codec(codec);
    opj_image_destroy(imagen);
    return ruta;
}

// To a picture of bytes, as a caller of OpenJPEG makes one of its components of 32 bits.
void LeeConOpenJPEG(const std::string& ruta, int hilos) {
    opj_stream_t* flujo = opj_stream_create_default_file_stream(ruta.c_str(), OPJ_TRUE);
    opj_codec_t* codec = opj_create_decompress(OPJ_CODEC_JP2);
    opj_dparameters_t opciones;
    opj_set_default_decoder_parameters(&opciones);
    opj_setup_decoder(codec, &opciones);
    opj_codec_set_threads(codec, hilos);
    opj_image_t* imagen = nullptr;
    if (!opj_read_header(flujo, codec, &imagen) || !opj_decode(codec, flujo, imagen)) std::abort();
    std::vector<BYTE> pixeles(std::size_t{3} * kLado * kLado);
    for (std::size_t i = 0; i < pixeles.size() / 3; ++i)
        for (std::size_t b = 0; b < 3; ++b)
            pixeles[3 * i + b] = BYTE(std::clamp(imagen->comps[2 - b].data[i], 0, 255));
    benchmark::DoNotOptimize(pixeles[pixeles.size() / 2]);
    opj_stream_destroy(flujo);
    opj_destroy_codec(codec);
    opj_image_destroy(imagen);
}

double Reloj() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// Threads are what counts here, so time by the clock counts beside the processors' time.
void LeeJ2K(benchmark::State& state) {
    const std::string ruta = Fichero(int(state.range(0)), state.range(1) != 0);
    Turnos turnos;
    double suelo = 1e9, propio = 1e9;
    for (auto _ : state) {
        malloc_trim(0);  // new memory on both sides, whatever was measured before
        double t = Reloj();
        turnos.Suelo([&] { LeeConOpenJPEG(ruta, Procesadores()); });
        suelo = std::min(suelo, Reloj() - t);
        t = Reloj();
        turnos.Propio([&] {
            Vertiz::CECW imagen;
            imagen.SetNombre(CString(ruta.c_str()));
            if (imagen.Leer(false) != 1) std::abort();
        });
        propio = std::min(propio, Reloj() - t);
    }
    turnos.Informa(state);
    state.counters["floor_clock_ms"] = suelo * 1e3;
    state.counters["own_clock_ms"] = propio * 1e3;
    state.counters["ratio_clock"] = propio / suelo;
    std::remove(ruta.c_str());
}
BENCHMARK(LeeJ2K)
    ->ArgNames({"tile", "reversible"})
    ->Args({0, 1})
    ->Args({0, 0})
    ->Args({1024, 1})
    ->Args({256, 0})
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

}  // namespace
