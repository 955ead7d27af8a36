#pragma once
// Internal. What the directory of one page of a TIFF says, checked against the size of the file.

#include "raster/CGeorreferencia.h"
#include "raster/EtiquetasTiff.h"
#include "platform/CFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace Vertiz {

/// The header of a TIFF.
struct CabeceraTiff {
    std::uint16_t orden = 0;       ///< 0x4949 little-endian, 0x4D4D big-endian
    std::uint16_t version = 0;     ///< 42 classic, 43 big
    std::uint64_t directorio = 0;  ///< offset of the first directory

    bool EsGrande() const { return version == 43; }
};

/// The header at the start of a file; nothing when it isn't a TIFF.
std::optional<CabeceraTiff> LeeCabeceraTiff(CFile& fichero);

/// A strip or a tile: where its bytes are.
struct TrozoTiff {
    std::uint64_t offset, bytes;
};

enum class FormatoTiff { Natural = 1, Entero = 2, Real = 3 };
enum class AlfaTiff { Ninguna, Asociada, SinAsociar };

/// A page. After LeePaginaTiff every piece lies inside the file, or gives up at its own end when it is compressed.
struct PaginaTiff {
    int ancho = 0, alto = 0;
    unsigned muestras = 1;  ///< of a pixel
    unsigned bits = 1;      ///< of each sample
    FormatoTiff formato = FormatoTiff::Natural;
    unsigned fotometrica = 0;
    AlfaTiff alfa = AlfaTiff::Ninguna;  ///< what sample 3 of a colour is
    bool packBits = false;
    bool planos = false;          ///< each sample in pieces of its own
    bool bitsInvertidos = false;  ///< FillOrder 2
    bool cambiaOrden = false;     ///< numbers have the other byte order than this machine
    double maximoMuestra = -1.0;  ///< MaxSampleValue; -1 when it isn't told

    /// All pieces of the first sample's plane, then those of the second...; strips are as wide as the page. Strips that
    /// lie one behind the other are one piece.
    std::vector<TrozoTiff> trozos;
    std::uint64_t anchoTrozo = 0, altoTrozo = 0;

    unsigned unidadResolucion = 1;
    float resolucionX = 0.0F, resolucionY = 0.0F;
    std::vector<std::uint16_t> mapaColor;  ///< all reds, all greens, all blues
    double puntoBlanco[2]{};               ///< chromaticity of white; 0 when it isn't told
    float lumaYCbCr[3]{0.299F, 0.587F, 0.114F};
    float referenciaYCbCr[6]{0.0F, 255.0F, 128.0F, 255.0F, 128.0F, 255.0F};

    std::optional<CGeorreferencia> georreferencia;
    std::size_t claves = 0;       ///< GeoKeys that the file has
    bool puntos = false;          ///< key 1025 of the file itself calls pixels points
    std::uint64_t siguiente = 0;  ///< offset of the next directory; 0 for the last

    /// Bytes of a row of a piece.
    std::uint64_t BytesFila() const { return (anchoTrozo * (planos ? 1 : muestras) * bits + 7) / 8; }
    std::uint64_t TrozosAncho() const { return (std::uint64_t(ancho) + anchoTrozo - 1) / anchoTrozo; }
    std::uint64_t TrozosAlto() const { return (std::uint64_t(alto) + altoTrozo - 1) / altoTrozo; }
    /// Bytes of a pixel in a piece; 0 for less than one.
    unsigned BytesMuestra() const { return bits * (planos ? 1 : muestras) / 8; }
    /// One sample that is a grey or an entry of the palette: such a picture is stored with 8 bits a pixel.
    bool EsDeUnByte() const {
        return muestras == 1 && fotometrica != fotometrica::kRGB && fotometrica <= fotometrica::kPaleta;
    }
    /// A grid of values rather than a picture.
    bool EsNumerica() const;
};

/// Reads the directory at an offset.
/// @param pagina  out: what it says; `siguiente` also when the page is refused, if it could be read
/// @return empty, or for the user why the page can't be taken
CString LeePaginaTiff(CFile& fichero, const CabeceraTiff& cabecera, std::uint64_t offset, PaginaTiff& pagina);

}  // namespace Vertiz
