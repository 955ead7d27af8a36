#pragma once
// Internal. Greys out of pixels of 24 bits, as the operations on colour count and paint them.

#include "raster/ConversionColor.h"
#include "platform/Tipos.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

namespace Vertiz {

/// base + p0 a + p1 b + p2 c of three bytes, added up from the left. The products come out of tables, which is as exact
/// as the written-out sum and almost twice as fast; integers in place of doubles would cut off otherwise where the sum
/// is whole, since some of these sums come out just below.
class SumaPonderada {
  public:
    SumaPonderada(double base, double p0, double p1, double p2) {
        for (int i = 0; i < 256; ++i) {
            m_Primero[std::size_t(i)] = base + p0 * i;
            m_Segundo[std::size_t(i)] = p1 * i;
            m_Tercero[std::size_t(i)] = p2 * i;
        }
    }
    double operator()(BYTE a, BYTE b, BYTE c) const { return m_Primero[a] + m_Segundo[b] + m_Tercero[c]; }

  private:
    std::array<double, 256> m_Primero, m_Segundo, m_Tercero;
};

/// The HSV value of a pixel as a byte, shifted as AGrises tells.
class ValorGris {
  public:
    explicit ValorGris(int desplazamiento) {
        for (int i = 0; i < 256; ++i) {
            const auto v = static_cast<unsigned>(RGBaHSV(i, i, i).v * 255);
            const bool sinCambio = desplazamiento >= 256;
            m_Grises[std::size_t(i)] = static_cast<BYTE>(sinCambio ? v : v + unsigned(desplazamiento) + 128U);
        }
    }
    BYTE operator()(const BYTE* p) const { return m_Grises[std::max({p[0], p[1], p[2]})]; }

  private:
    std::array<BYTE, 256> m_Grises;
};

/// Paints each pixel of a row in the grey that `gris` gives for its three bytes. Four pixels are three words: so the
/// bytes are written with a quarter of the stores.
template <class Gris>
void PintaGrises(std::span<BYTE> fila, const Gris& gris) {
    static_assert(std::endian::native == std::endian::little);
    const auto uno = [&gris](const BYTE* p) { return std::uint32_t{static_cast<BYTE>(gris(p))}; };
    BYTE *p = fila.data(), *const fin = p + fila.size();
    for (; fin - p >= 12; p += 12) {
        const std::uint32_t a = uno(p), b = uno(p + 3), c = uno(p + 6), d = uno(p + 9);
        const std::uint32_t w0 = a * 0x010101U | b << 24, w1 = b * 0x0101U | c * 0x01010000U, w2 = c | d * 0x01010100U;
        std::memcpy(p, &w0, 4);
        std::memcpy(p + 4, &w1, 4);
        std::memcpy(p + 8, &w2, 4);
    }
    for (; p != fin; p += 3)
        p[0] = p[1] = p[2] = static_cast<BYTE>(gris(p));
}

/// All three bytes of a pixel are `valor`: pure white of 255, pure black of 0.
inline bool EsGris(const BYTE* p, BYTE valor) {
    return p[0] == valor && p[1] == valor && p[2] == valor;
}

}  // namespace Vertiz
