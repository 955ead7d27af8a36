#pragma once
// Internal. Numbers of a TIFF, in either byte order, and the entries of its directories.

#include "raster/TiffPagina.h"

#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

namespace Vertiz {

/// An entry of a directory.
struct EntradaTiff {
    unsigned tag = 0, tipo = 0;
    std::uint64_t cuenta = 0;
    BYTE valor[8]{};  ///< the values themselves or, when they don't fit, their offset; 4 bytes in a classic file
};

/// Reads numbers from a file. Nothing is read or allocated that the file's size doesn't cover.
class NumerosTiff {
  public:
    NumerosTiff(CFile& fichero, const CabeceraTiff& cabecera)
        : m_Fichero(fichero),
          m_nTamano(fichero.GetLength()),
          m_bGrande(cabecera.EsGrande()),
          m_bCambia((cabecera.orden == 0x4D4D) == (std::endian::native == std::endian::little)) {}

    bool CambiaOrden() const { return m_bCambia; }
    std::uint64_t Tamano() const { return m_nTamano; }

    /// The unsigned number in 1 to 8 bytes.
    std::uint64_t Numero(const BYTE* bytes, unsigned n) const;
    /// The entries of the directory at an offset; nothing when it doesn't lie in the file.
    std::optional<std::vector<EntradaTiff>> Directorio(std::uint64_t offset, std::uint64_t& siguiente) const;
    /// The values of an entry of a type of unsigned integers, `maximo` of them at most; none for another type.
    /// @param bien  set to false when they don't lie in the file
    std::vector<std::uint64_t> Enteros(const EntradaTiff& e, std::uint64_t maximo, bool& bien) const;
    /// The values of an entry of unsigned integers, fractions or floats; none for another type.
    std::vector<double> Reales(const EntradaTiff& e, bool& bien) const;

  private:
    bool Lee(std::uint64_t offset, BYTE* destino, std::size_t n) const;
    /// The bytes of the first n values.
    std::vector<BYTE> Datos(const EntradaTiff& e, std::uint64_t n, bool& bien) const;

    CFile& m_Fichero;
    std::uint64_t m_nTamano;
    bool m_bGrande, m_bCambia;
};

}  // namespace Vertiz
