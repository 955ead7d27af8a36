#pragma once
// JPEG files for tests, written and read with libjpeg in its plainest use.

#include "platform/Tipos.h"

#include <jpeglib.h>

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

namespace imagenes {

inline std::string Contenido(const std::filesystem::path& ruta) {
    std::ifstream fichero(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(fichero), {}};
}

/// A JPEG of these rows, top first. @param ajusta  changes the parameters before it starts
inline std::string HazJpeg(int ancho, int alto, int componentes, J_COLOR_SPACE espacio, const std::vector<BYTE>& filas,
                           const std::function<void(jpeg_compress_struct&)>& ajusta = nullptr) {
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errores;
    jpeg.err = jpeg_std_error(&errores);
    jpeg_create_compress(&jpeg);
    unsigned char* datos = nullptr;
    unsigned long n = 0;
    jpeg_mem_dest(&jpeg, &datos, &n);
    jpeg.image_width = JDIMENSION(ancho);
    jpeg.image_height = JDIMENSION(alto);
    jpeg.input_components = componentes;
    jpeg.in_color_space = espacio;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 75, TRUE);
    if (ajusta) ajusta(jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    for (int f = 0; f < alto; ++f) {
        auto* fila = const_cast<BYTE*>(&filas[std::size_t(f) * std::size_t(ancho) * std::size_t(componentes)]);
        jpeg_write_scanlines(&jpeg, &fila, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::string todo(reinterpret_cast<char*>(datos), n);
    std::free(datos);
    return todo;
}

/// The pixels of a JPEG by libjpeg: rows from the bottom of blue, green, red; empty for one that it can't read.
inline std::vector<BYTE> SegunLibjpeg(const std::string& jpg) {
    struct Errores {
        jpeg_error_mgr base;
        std::jmp_buf vuelta;
    } errores;
    static jpeg_decompress_struct jpeg;
    static std::vector<BYTE> bgr, fila;
    jpeg = {};
    bgr.clear();
    jpeg.err = jpeg_std_error(&errores.base);
    errores.base.error_exit = [](j_common_ptr j) { std::longjmp(reinterpret_cast<Errores*>(j->err)->vuelta, 1); };
    errores.base.emit_message = [](j_common_ptr, int) {};
    if (setjmp(errores.vuelta) != 0) {
        jpeg_destroy_decompress(&jpeg);
        return {};
    }
    jpeg_create_decompress(&jpeg);
    jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char*>(jpg.data()), jpg.size());
    jpeg_read_header(&jpeg, TRUE);
    jpeg_start_decompress(&jpeg);
    const std::size_t ancho = jpeg.output_width, alto = jpeg.output_height, n = std::size_t(jpeg.output_components);
    bgr.assign(3 * ancho * alto, 0);
    fila.assign(ancho * n, 0);
    for (std::size_t f = 0; f < alto; ++f) {
        BYTE* destino = fila.data();
        jpeg_read_scanlines(&jpeg, &destino, 1);
        if (n != 1 && n != 3) continue;
        for (std::size_t c = 0; c < ancho; ++c)
            for (std::size_t i = 0; i < 3; ++i)
                bgr[((alto - 1 - f) * ancho + c) * 3 + i] = fila[n == 1 ? c : 3 * c + 2 - i];
    }
    jpeg_finish_decompress(&jpeg);
    jpeg_destroy_decompress(&jpeg);
    return bgr;
}

}  // namespace imagenes
