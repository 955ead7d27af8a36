#pragma once
// Internal. The rows of one strip or tile, one after the other, through a small buffer: a page may well be a single
// strip of several gigabytes.

#include "raster/TiffPagina.h"
#include "platform/CFile.h"

#include <cstddef>
#include <vector>

namespace Vertiz {

/// Reads a piece from its first row on; it may be opened anew for another. File and piece are the caller's.
class LectorTrozo {
  public:
    /// Begins a piece. What it held is forgotten, its buffers are kept.
    /// @param bytesBuffer  what may be read ahead; a row fits in any case
    void Abre(CFile& fichero, const PaginaTiff& pagina, const TrozoTiff& trozo, std::size_t bytesBuffer);
    /// The next row, PaginaTiff::BytesFila bytes that stay valid until the next call; null when the piece ends before.
    /// @param lugar  room for a row, where it is unpacked to if it has to be; null for the reader's own
    const BYTE* Fila(BYTE* lugar = nullptr) {
        return m_bPackBits ? FilaPackBits(lugar != nullptr ? lugar : m_Fila.data()) : FilaSimple();
    }
    /// Passes over rows. @return false when the piece ends before
    bool Salta(std::uint64_t filas);

  private:
    const BYTE* FilaSimple();
    const BYTE* FilaPackBits(BYTE* lugar);
    /// Fills the buffer anew behind what is left of it; false when nothing came.
    bool Llena();

    CFile* m_pFichero = nullptr;
    std::uint64_t m_nOffset = 0, m_nBytes = 0;  ///< what hasn't been read yet
    std::size_t m_nFila = 0;
    bool m_bPackBits = false, m_bInvierte = false;
    std::vector<BYTE> m_Buffer;
    std::size_t m_nInicio = 0, m_nFin = 0;  ///< what is left of the buffer

    // Of a packet of PackBits that went beyond its row: bytes to come, and whether they are one and the same.
    std::vector<BYTE> m_Fila;
    std::size_t m_nPendientes = 0;
    bool m_bRepite = false;
    BYTE m_Repetido = 0;
};

}  // namespace Vertiz
