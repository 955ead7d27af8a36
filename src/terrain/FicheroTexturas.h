#pragma once
// Internal. The temporary file that holds the tiles of an image: its name, its layout, and reading a tile.
//
// The file has no header; what it takes to read it stands in CDataTexturas. It is a sequence of levels, each tile of a
// level half as wide and half as high as in the one before, cut off to whole pixels, until both would be 0; without a
// pyramid there is only level 0. A level is one slot for each tile, row by row from the north, columns from the west.
// In a slot, rows follow from the north without padding, pixels as red, green, blue. A slot is as long as a picture
// with padded rows would be, so that tiles narrower than four pixels leave some of it unused.

#include "platform/CFile.h"
#include "platform/CString.h"
#include "platform/CabeceraDIB.h"
#include "platform/Tipos.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct CDataTexturas;

/// Bytes of a row of pixels of three bytes, padded to four.
constexpr std::int64_t BytesFilaTextura(std::int64_t pixeles) {
    return static_cast<std::int64_t>(BytesDeFila(pixeles, 24));
}

/// A level of the file.
struct CNivelTexturas {
    int ancho = 0, alto = 0;  ///< a tile, in pixels; one of them may be 0 where tiles aren't square
    std::int64_t bytes = 0;   ///< a tile's slot
    std::int64_t inicio = 0;  ///< where the level begins

    std::int64_t Posicion(std::size_t tesela) const { return inicio + static_cast<std::int64_t>(tesela) * bytes; }
    /// Bytes of a row in a slot.
    std::size_t BytesFila() const { return static_cast<std::size_t>(ancho) * 3; }
    std::int64_t Fin(std::size_t teselas) const { return Posicion(teselas); }
};

/// The levels of a file, the full one first; the last one's Fin is the file's length. None for sizes below 1.
/// @param ancho, alto  a tile, in pixels at level 0
std::vector<CNivelTexturas> NivelesTexturas(int ancho, int alto, std::size_t teselas, bool bPiramide);
std::vector<CNivelTexturas> NivelesTexturas(const CDataTexturas& registro);

/// Sets the sizes of slot and level 0 from those of the tiles.
/// @return false when a slot, or the number of slots, is not above 0 or above 2^31 - 1
bool FijaTamanosTextura(CDataTexturas& registro);

/// Closes a file, deletes it from its folder, and frees the object.
struct BorraFichero {
    void operator()(CFile* fichero) const;
};
/// A file that goes with this pointer, unless it is handed over by release().
using FicheroPasajero = std::unique_ptr<CFile, BorraFichero>;

/// Creates an empty file for reading and writing, "Texturas<seconds><milliseconds><counter>.tmp".
/// @param carpeta  where; empty for the bare name
/// @param ruta     out, if given: path of the new file, or the one that couldn't be made
/// @return null when it can't be made
FicheroPasajero CreaFicheroTexturas(const CString& carpeta, CString* ruta = nullptr);

/// Reads a slot, or the part of it that the span has room for. What the file doesn't have is white.
/// @return false when reading failed
/// @thread any, also several on one file
bool LeeTesela(const CFile& fichero, std::int64_t posicion, std::span<BYTE> pixeles);
