#pragma once
// TIFF files for tests, written with libtiff, and what libtiff's RGBA interface makes of a whole file at once.

#include "model/CMatriz.h"
#include "platform/Tipos.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <vector>

namespace imagenes {

struct CierraTiff {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, CierraTiff>;

/// Opens a file with libtiff, which then keeps its complaints to itself. @param modo  of TIFFOpen
inline Tiff AbreTiff(const std::filesystem::path& ruta, const char* modo) {
    TIFFOpenOptions* const opciones = TIFFOpenOptionsAlloc();
    const auto calla = [](TIFF*, void*, const char*, const char*, va_list) { return 1; };
    TIFFOpenOptionsSetErrorHandlerExtR(opciones, calla, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(opciones, calla, nullptr);
    Tiff tiff(TIFFOpenExt(ruta.c_str(), modo, opciones));
    TIFFOpenOptionsFree(opciones);
    return tiff;
}

/// The layout of a file.
struct FormaTiff {
    std::uint32_t ancho = 37, alto = 29;
    std::uint16_t bits = 8, muestras = 3, formato = SAMPLEFORMAT_UINT;
    std::uint16_t fotometrica = PHOTOMETRIC_RGB, compresion = COMPRESSION_LZW, planos = PLANARCONFIG_CONTIG;
    std::uint16_t orientacion = ORIENTATION_TOPLEFT;
    std::uint32_t filasTira = 7;          ///< 0 for tiles
    std::uint32_t tesela = 16;            ///< side of a tile
    const char* modo = "w";               ///< of TIFFOpen: byte order, classic or big
    std::vector<std::uint16_t> extras{};  ///< kinds of the samples past the photometric ones

    bool PorTiras() const { return filasTira != 0; }
};

inline void PonForma(TIFF* tiff, const FormaTiff& f) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, f.ancho);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, f.alto);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, int{f.bits});
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, int{f.muestras});
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, int{f.formato});
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, int{f.fotometrica});
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, int{f.compresion});
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, int{f.planos});
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, int{f.orientacion});
    if (!f.extras.empty()) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, int(f.extras.size()), f.extras.data());
    if (f.PorTiras()) {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, f.filasTira);
    } else {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, f.tesela);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, f.tesela);
    }
    if (f.fotometrica != PHOTOMETRIC_PALETTE) return;
    std::array<std::vector<std::uint16_t>, 3> tablas;
    for (unsigned canal = 0; canal < 3; ++canal)
        for (unsigned i = 0; i < 1U << f.bits; ++i)
            tablas[canal].push_back(static_cast<std::uint16_t>(((i + 1) * (canal + 3) * 37 % 256) * 257));
    TIFFSetField(tiff, TIFFTAG_COLORMAP, tablas[0].data(), tablas[1].data(), tablas[2].data());
}

/// Writes a file of this layout; the samples are the bytes in turn, row after row (plane after plane when separate),
/// in the machine's byte order. Only files in strips take bytes of their own; tiles take them tile after tile.
inline void EscribeTiff(const std::filesystem::path& ruta, const FormaTiff& f, std::vector<BYTE> bytes) {
    const Tiff tiff = AbreTiff(ruta, f.modo);
    ASSERT_NE(tiff, nullptr) << ruta;
    PonForma(tiff.get(), f);
    std::size_t lugar = 0;
    const std::uint32_t trozos = f.PorTiras() ? TIFFNumberOfStrips(tiff.get()) : TIFFNumberOfTiles(tiff.get());
    for (std::uint32_t i = 0; i < trozos; ++i) {
        const std::uint32_t porPlano = f.PorTiras() ? (f.alto + f.filasTira - 1) / f.filasTira : 1;
        const std::uint32_t filas = f.PorTiras() ? std::min(f.filasTira, f.alto - i % porPlano * f.filasTira) : 0;
        const auto n =
            static_cast<std::size_t>(f.PorTiras() ? TIFFVStripSize64(tiff.get(), filas) : TIFFTileSize64(tiff.get()));
        ASSERT_LE(lugar + n, bytes.size());
        const tmsize_t escritos = f.PorTiras() ? TIFFWriteEncodedStrip(tiff.get(), i, &bytes[lugar], tmsize_t(n))
                                               : TIFFWriteEncodedTile(tiff.get(), i, &bytes[lugar], tmsize_t(n));
        ASSERT_EQ(escritos, tmsize_t(n));
        lugar += n;
    }
}

/// What libtiff shows of the first page: rows from the bottom of blue, green, red; empty for what it can't show.
/// @param porTiras  a strip at a time, for pages whose first row is the top one
inline std::vector<BYTE> SegunLibtiff(const std::filesystem::path& ruta, bool porTiras = false) {
    const Tiff tiff = AbreTiff(ruta, "r");
    if (tiff == nullptr) return {};
    std::uint32_t ancho = 0, alto = 0, tira = 0;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &ancho);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &alto);
    TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_ROWSPERSTRIP, &tira);
    char motivo[1024];
    if (TIFFRGBAImageOK(tiff.get(), motivo) == 0) return {};
    std::vector<std::uint32_t> pixeles(std::size_t{ancho} * alto);
    if (!porTiras) {
        if (TIFFReadRGBAImageOriented(tiff.get(), ancho, alto, pixeles.data(), ORIENTATION_BOTLEFT, 0) != 1) return {};
    } else {
        // A strip comes with its bottom row first, as the whole does.
        for (std::uint32_t fila = 0; fila < alto; fila += tira) {
            const std::uint32_t debajo = alto - std::min(fila + tira, alto);
            TIFFReadRGBAStrip(tiff.get(), fila, &pixeles[std::size_t{debajo} * ancho]);
        }
    }
    std::vector<BYTE> bgr;
    bgr.reserve(3 * pixeles.size());
    for (const std::uint32_t p : pixeles)
        for (const std::uint32_t canal : {TIFFGetB(p), TIFFGetG(p), TIFFGetR(p)})
            bgr.push_back(static_cast<BYTE>(canal));
    return bgr;
}

/// The cells of a table, row after row.
inline std::vector<float> Valores(const Vertiz::CMatriz<float>& tabla) {
    std::vector<float> valores;
    for (unsigned f = 0; f < tabla.GetFilas(); ++f)
        for (unsigned c = 0; c < tabla.GetColumnas(); ++c)
            valores.push_back(tabla.Get(f, c));
    return valores;
}

/// Values as they lie in memory.
template <class T>
std::vector<BYTE> EnBytes(const std::vector<T>& valores) {
    std::vector<BYTE> bytes(valores.size() * sizeof(T));
    std::memcpy(bytes.data(), valores.data(), bytes.size());
    return bytes;
}

}  // namespace imagenes
