#pragma once
// Internal. The directory of a TIFF to be written: classic, little-endian.

#include "raster/CGeorreferencia.h"
#include "platform/Tipos.h"

#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <vector>

namespace Vertiz {

/// Entries in the order of their tags, whatever the order in which they are put in.
class EntradasTiff {
  public:
    void Short(unsigned tag, std::uint16_t valor) { Shorts(tag, std::span(&valor, 1)); }
    void Shorts(unsigned tag, std::span<const std::uint16_t> valores);
    void Long(unsigned tag, std::uint32_t valor);
    void Dobles(unsigned tag, std::span<const double> valores);
    void Texto(unsigned tag, std::string_view texto);
    /// A fraction that is the number exactly, where 32 bits hold one.
    void Fraccion(unsigned tag, double valor);
    void Georreferencia(const CGeorreferencia& g);

    /// Bytes of header, directory and the values that lie behind it.
    std::uint64_t Bytes() const;
    /// Those bytes; the pixels come next.
    std::vector<BYTE> Cabecera() const;

  private:
    struct Entrada {
        std::uint16_t tipo = 0;
        std::uint32_t cuenta = 0;
        std::vector<BYTE> datos;
    };
    template <class T>
    void Pon(unsigned tag, unsigned tipoValores, std::span<const T> valores);

    std::map<unsigned, Entrada> m_Entradas;
};

}  // namespace Vertiz
