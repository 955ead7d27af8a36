// Reading of TIFF: uncompressed pixels beside fread and one pass that turns them, PackBits beside libtiff.

#include "Turnos.h"
#include "raster/CTiff.h"

#include <malloc.h>
#include <tiffio.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr unsigned kLado = 8000;

// Runs and noise by turns, written by libtiff.
std::string Fichero(unsigned muestras, unsigned compresion) {
    const std::string ruta = std::filesystem::temp_directory_path() / ("bench" + std::to_string(compresion) + ".tif");
    TIFF* const t = TIFFOpen(ruta.c_str(), "w");
    if (t == nullptr) std::abort();
    TIFFSetField(t, TIFFTAG_IMAGEWIDTH, kLado);
    TIFFSetField(t, TIFFTAG_IMAGELENGTH, kLado);
    TIFFSetField(t, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(t, TIFFTAG_SAMPLESPERPIXEL, muestras);
    TIFFSetField(t, TIFFTAG_PHOTOMETRIC, muestras == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(t, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(t, TIFFTAG_COMPRESSION, compresion);
    TIFFSetField(t, TIFFTAG_ROWSPERSTRIP, 16);
    std::vector<BYTE> fila(std::size_t{kLado} * muestras);
    unsigned azar = 1;
    for (unsigned f = 0; f < kLado; ++f) {
        for (std::size_t i = 0; i < fila.size(); ++i) {
            azar = azar * 1664525U + 1013904223U;
            fila[i] = i / 40 % 2 == 0 ? BYTE(i / 80) : BYTE(azar >> 24);
        }
        if (TIFFWriteScanline(t, fila.data(), f) != 1) std::abort();
    }
    TIFFClose(t);
    return ruta;
}

void Lee(const std::string& ruta) {
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    Vertiz::CTiff tiff;
    if (!tiff.SetFichero(&fichero) || tiff.Leer(false) != 1) std::abort();
    benchmark::DoNotOptimize(tiff.Paleta());
}

// The bytes of the file, and rows with red and blue exchanged in memory of their own.
void LeeConFread(const std::string& ruta) {
    constexpr std::size_t kFila = std::size_t{kLado} * 3, kTodo = kFila * kLado;
    const std::unique_ptr<BYTE[], void (*)(void*)> todo(static_cast<BYTE*>(std::malloc(kTodo)), std::free);
    const std::unique_ptr<BYTE[], void (*)(void*)> imagen(static_cast<BYTE*>(std::malloc(kTodo)), std::free);
    std::FILE* const f = std::fopen(ruta.c_str(), "rb");
    if (f == nullptr || std::fread(todo.get(), 1, kTodo, f) != kTodo) std::abort();
    std::fclose(f);
    const BYTE* p = todo.get();
    for (BYTE *q = imagen.get(), *fin = q + kTodo; q != fin; p += 3, q += 3) {
        q[0] = p[2];
        q[1] = p[1];
        q[2] = p[0];
    }
    benchmark::DoNotOptimize(imagen.get()[kTodo / 2]);
}

// Strips decoded to greys in memory of their own, as a caller of libtiff does it.
void LeeConLibtiff(const std::string& ruta) {
    TIFF* const t = TIFFOpen(ruta.c_str(), "r");
    if (t == nullptr) std::abort();
    const auto tira = std::size_t(TIFFStripSize(t));
    std::vector<BYTE> imagen(std::size_t{kLado} * kLado);
    for (unsigned i = 0; i < TIFFNumberOfStrips(t); ++i)
        if (TIFFReadEncodedStrip(t, i, &imagen[i * tira], tmsize_t(tira)) < 0) std::abort();
    TIFFClose(t);
    benchmark::DoNotOptimize(imagen[imagen.size() / 2]);
}

void SinComprimir(benchmark::State& state) {
    const std::string ruta = Fichero(3, COMPRESSION_NONE);
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo([&] { LeeConFread(ruta); });
        turnos.Propio([&] { Lee(ruta); });
    }
    turnos.Informa(state);
    std::filesystem::remove(ruta);
}
BENCHMARK(SinComprimir)->Name("tiff/uncompressed 8000 x 8000 RGB")->Iterations(5)->Unit(benchmark::kMillisecond);

void PackBits(benchmark::State& state) {
    const std::string ruta = Fichero(1, COMPRESSION_PACKBITS);
    Turnos turnos;
    for (auto _ : state) {
        // Pixels in new memory on both sides, whatever was measured before.
        malloc_trim(0);
        turnos.Suelo([&] { LeeConLibtiff(ruta); });
        turnos.Propio([&] { Lee(ruta); });
    }
    turnos.Informa(state);
    std::filesystem::remove(ruta);
}
BENCHMARK(PackBits)->Name("tiff/PackBits 8000 x 8000 grey")->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
