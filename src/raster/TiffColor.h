#pragma once
// Internal. From samples of 8 bits to the pixels that a picture stores, the same that libtiff shows for such a file.

#include "raster/TiffPagina.h"

#include <array>
#include <cstddef>
#include <memory>

namespace Vertiz {

/// The colours of one page. It keeps what it needs of the page.
class ColorTiff {
  public:
    explicit ColorTiff(const PaginaTiff& pagina);
    ~ColorTiff();

    /// The colours have to be multiplied by a transparency, a sample more.
    bool Transparente() const { return m_bTransparente; }
    /// @param p         first byte of each sample of the colour, then of the transparency
    /// @param paso      from a pixel's byte to the next one's
    /// @param invertido greys stand with black as 0 already, whatever the page says
    /// @param destino   n pixels: one byte each, or blue, green, red
    void Convierte(const std::array<const BYTE*, 4>& p, std::size_t paso, std::size_t n, bool invertido,
                   BYTE* destino) const;

  private:
    struct Tablas;  // of the colour spaces that libtiff converts

    void Gris(const BYTE* p, std::size_t paso, std::size_t n, bool invierte, BYTE* destino) const;
    void EnPaleta(const BYTE* p, std::size_t paso, std::size_t n, BYTE* destino) const;
    void Directo(const std::array<const BYTE*, 4>& p, std::size_t paso, std::size_t n, BYTE* destino) const;
    void Calculado(const std::array<const BYTE*, 4>& p, std::size_t paso, std::size_t n, BYTE* destino) const;
    void Color(const std::array<BYTE, 4>& muestras, BYTE* bgr) const;

    unsigned m_nFotometrica;
    bool m_bUnByte, m_bTransparente;
    std::array<BYTE, 256 * 4> m_Paleta{};
    std::unique_ptr<Tablas> m_pTablas;
};

/// The palette of a page as a picture holds it: 256 entries of blue, green, red and 0.
std::array<BYTE, 256 * 4> PaletaTiff(const PaginaTiff& pagina);

}  // namespace Vertiz
