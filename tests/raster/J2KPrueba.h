#pragma once
// JPEG 2000 for the tests: files made with OpenJPEG's encoder, and what its decoder gives for a file, turned into blue,
// green, red by plain formulas.

#include "platform/Tipos.h"

#include <gtest/gtest.h>
#include <openjpeg.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace j2k {

struct Componente {
    unsigned bits = 8;
    bool conSigno = false;
    unsigned dx = 1, dy = 1;
    bool alfa = false;
};

struct Dibujo {
    int ancho = 40, alto = 31;
    std::vector<Componente> componentes{3};
    int tesela = 0;  ///< side of the tiles; 0: one tile
    int x0 = 0, y0 = 0;
    OPJ_COLOR_SPACE color = OPJ_CLRSPC_SRGB;
    bool reversible = true;
    bool codestream = false;  ///< without boxes
    unsigned semilla = 1;
};

/// Writes a picture of random values, smoothed a little.
inline void Escribe(const std::filesystem::path& ruta, const Dibujo& d) {
    std::vector<opj_image_cmptparm_t> parametros(d.componentes.size());
    for (std::size_t i = 0; i < parametros.size(); ++i) {
        const Componente& c = d.componentes[i];
        auto& p = parametros[i];
        p = {};
        p.dx = c.dx;
        p.dy = c.dy;
        p.prec = c.bits;
        p.sgnd = c.conSigno;
        p.x0 = p.y0 = 0;
        const auto x1 = unsigned(d.x0 + d.ancho), y1 = unsigned(d.y0 + d.alto);
        p.w = (x1 + c.dx - 1) / c.dx - (unsigned(d.x0) + c.dx - 1) / c.dx;
        p.h = (y1 + c.dy - 1) / c.dy - (unsigned(d.y0) + c.dy - 1) / c.dy;
    }
    opj_image_t* imagen = opj_image_create(OPJ_UINT32(parametros.size()), parametros.data(), d.color);
    ASSERT_NE(imagen, nullptr);
    imagen->x0 = OPJ_UINT32(d.x0);
    imagen->y0 = OPJ_UINT32(d.y0);
    imagen->x1 = OPJ_UINT32(d.x0 + d.ancho);
    imagen->y1 = OPJ_UINT32(d.y0 + d.alto);
    std::mt19937 azar(d.semilla);
    for (std::size_t i = 0; i < parametros.size(); ++i) {
        auto& c = imagen->comps[i];
        c.alpha = d.componentes[i].alfa;
        const std::int64_t valores = std::int64_t{1} << c.prec, menor = c.sgnd ? -valores / 2 : 0;
        for (std::size_t k = 0; k < std::size_t{c.w} * c.h; ++k)
            c.data[k] = OPJ_INT32(menor + azar() % valores);
    }
    opj_cparameters_t opciones;
    opj_set_default_encoder_parameters(&opciones);
    opciones.tcp_numlayers = 1;
    opciones.tcp_rates[0] = d.reversible ? 0.0F : 4.0F;
    opciones.cp_disto_alloc = 1;
    opciones.irreversible = !d.reversible;
    const int menor = std::min({d.ancho, d.alto, d.tesela != 0 ? d.tesela : d.ancho});
    opciones.numresolution = menor < 4 ? 1 : 3;
    opciones.tcp_mct = d.componentes.size() == 3 && d.componentes[1].dx == 1 && d.color != OPJ_CLRSPC_SYCC;
    if (d.tesela != 0) {
        opciones.tile_size_on = OPJ_TRUE;
        opciones.cp_tdx = opciones.cp_tdy = d.tesela;
    }
    opj_codec_t* codec = opj_create_compress(d.codestream ? OPJ_CODEC_J2K : OPJ_CODEC_JP2);
    opj_stream_t* flujo = opj_stream_create_default_file_stream(ruta.c_str(), OPJ_FALSE);
    EXPECT_TRUE(opj_setup_encoder(codec, &opciones, imagen) && opj_start_compress(codec, imagen, flujo) &&
                opj_encode(codec, flujo) && opj_end_compress(codec, flujo));
    opj_stream_destroy(flujo);
    opj_destroy_codec(codec);
    opj_image_destroy(imagen);
}

inline std::string Lee(const std::filesystem::path& ruta) {
    std::ifstream fichero(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(fichero), {}};
}

struct BorraImagen {
    void operator()(opj_image_t* imagen) const { opj_image_destroy(imagen); }
};
using Imagen = std::unique_ptr<opj_image_t, BorraImagen>;

/// What OpenJPEG decodes, whole and on one thread; null when it can't.
inline Imagen Decodifica(const std::filesystem::path& ruta) {
    const std::string bytes = Lee(ruta);
    const bool codestream = bytes.size() > 2 && BYTE(bytes[0]) == 0xFF && BYTE(bytes[1]) == 0x4F;
    opj_stream_t* flujo = opj_stream_create_default_file_stream(ruta.c_str(), OPJ_TRUE);
    opj_codec_t* codec = opj_create_decompress(codestream ? OPJ_CODEC_J2K : OPJ_CODEC_JP2);
    opj_dparameters_t opciones;
    opj_set_default_decoder_parameters(&opciones);
    opj_image_t* imagen = nullptr;
    const bool bien = opj_setup_decoder(codec, &opciones) && opj_read_header(flujo, codec, &imagen) &&
                      opj_decode(codec, flujo, imagen);
    opj_stream_destroy(flujo);
    opj_destroy_codec(codec);
    Imagen resultado(imagen);
    return bien ? std::move(resultado) : nullptr;
}

/// A value brought to 8 bits: its place between the least and the greatest of its depth, rounded.
inline double A8Bits(const opj_image_comp_t& c, OPJ_INT32 v) {
    const double menor = c.sgnd ? -std::ldexp(1.0, int(c.prec) - 1) : 0.0;
    return std::floor((v - menor) * 255.0 / (std::ldexp(1.0, int(c.prec)) - 1.0) + 0.5);
}

/// The picture as blue, green, red, rows from the bottom; its size is that of the first component.
inline std::vector<BYTE> EnBGR(const opj_image_t& imagen) {
    const auto& primera = imagen.comps[0];
    std::vector<const opj_image_comp_t*> colores;
    for (OPJ_UINT32 i = 0; i < imagen.numcomps; ++i)
        if (imagen.comps[i].alpha == 0) colores.push_back(&imagen.comps[i]);
    const bool color = colores.size() >= 3;
    const bool ycc = color && (imagen.color_space == OPJ_CLRSPC_SYCC || colores[1]->dx != primera.dx);
    const auto redondea = [](double v) { return BYTE(std::clamp(std::floor(v + 0.5), 0.0, 255.0)); };
    std::vector<BYTE> bgr;
    for (OPJ_INT64 fila = OPJ_INT64{primera.h} - 1; fila >= 0; --fila)
        for (OPJ_INT64 columna = 0; columna < primera.w; ++columna) {
            const auto valor = [&](std::size_t canal) {
                const auto& c = *colores[color ? canal : 0];
                const OPJ_INT64 x = (primera.x0 + columna) * primera.dx / c.dx - c.x0;
                const OPJ_INT64 y = (primera.y0 + fila) * primera.dy / c.dy - c.y0;
                return A8Bits(
                    c, c.data[std::clamp<OPJ_INT64>(y, 0, c.h - 1) * c.w + std::clamp<OPJ_INT64>(x, 0, c.w - 1)]);
            };
            double r = valor(0), g = valor(1), b = valor(2);
            if (ycc) {
                const double y = r, cb = g - 128.0, cr = b - 128.0;
                r = y + 1.402 * cr;
                g = y - 0.344136 * cb - 0.714136 * cr;
                b = y + 1.772 * cb;
            }
            for (const double v : {b, g, r})
                bgr.push_back(redondea(v));
        }
    return bgr;
}

}  // namespace j2k
