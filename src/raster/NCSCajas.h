#pragma once
// Internal. What a file of JPEG 2000 tells before it is decoded: where its codestream begins and what that claims, and
// where the picture lies.

#include "raster/NCS.h"
#include "platform/CFile.h"

#include <cstdint>
#include <vector>

namespace NCS {

/// Number of every error of this reader; what went wrong is told by its text.
constexpr int kFallo = 1;

/// The structure of a file, found by walking its boxes (ISO/IEC 15444-1, annex I) or, of a raw codestream, at once.
struct CEstructuraJ2K {
    bool m_bCodestream = false;        ///< a raw codestream, without boxes
    std::uint64_t m_nInicio = 0;       ///< offset of the codestream
    std::uint64_t m_nTeselas = 0;      ///< tiles that it claims
    std::int64_t m_nTeselaY = 0;       ///< first row of the tiles, on the reference grid
    std::int64_t m_nAltoTesela = 0;    ///< their height on it
    std::uint32_t m_nComponentes = 0;  ///< components that it claims
    /// The headers of all packets stand in the main header (PPM). OpenJPEG 2.5 loses its place in them when it passes
    /// over tiles, so that such a picture has to be decoded whole.
    bool m_bCabecerasJuntas = false;
    std::vector<BYTE> m_GeoTIFF;  ///< what the GeoJP2 box holds; empty without one
};

/// Reads the structure and checks what the codestream claims against the size of the file.
/// @return the reason why the file can't be read, when it can't
CError LeeEstructura(CFile& fichero, const CString& ruta, CEstructuraJ2K& estructura);

/// Cell sizes and origin from the GeoJP2 box, else from a world file beside the picture. Without either `info` stays
/// as it was.
void LeePosicion(const CString& ruta, const std::vector<BYTE>& geotiff, CFileInfo& info);

}  // namespace NCS
