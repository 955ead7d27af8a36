#pragma once
// What is noted of a triangle beside its place: two words of bits.

#include <array>
#include <cstdint>

namespace Vertiz {

/// The two words of marks of a triangle. A plain value.
///
/// First word: bits 0 to 2 the sides on breaklines, 3 to 5 those on limits, 10 deleted, 17 to 25 index of the texture,
/// 26 to 31 its row of tiles. Second word: bits 0 and 1 kind of texture, 2 to 7 column of tiles, 8 wall, 9 to 16 type
/// of triangle; bits 17 to 31 stay 0. Values that don't fit lose their upper bits.
class CMarcasTriangulo {
  public:
    /// Kinds of texture.
    enum : unsigned {
        ttNinguna = 0,
        ttImagen = 1,
        ttSimple = 2,    ///< a colour within polygons
        ttDividida = 3,  ///< pieces that the scene keeps stand for the triangle
    };

    /// Side i, which goes from vertex i (0 to 2) to the next one, lies on a line that the triangulation had to follow.
    [[nodiscard]] bool EsRuptura(int i) const { return Lee(0, kRuptura + i, 1) != 0; }
    void SetRuptura(int i, bool b = true) { Pon(0, kRuptura + i, 1, b); }
    /// Some side is a breakline.
    [[nodiscard]] bool TieneRuptura() const { return Lee(0, kRuptura, 3) != 0; }
    /// Side i parts what is inside the limits from what is outside: an odd number of limits runs along it.
    [[nodiscard]] bool EsLimite(int i) const { return Lee(0, kLimite + i, 1) != 0; }
    void SetLimite(int i, bool b = true) { Pon(0, kLimite + i, 1, b); }

    /// Marked as deleted: it keeps its place, and nothing shows it.
    [[nodiscard]] bool EsBorrado() const { return Lee(0, 10, 1) != 0; }
    void SetBorrado(bool b) { Pon(0, 10, 1, b); }

    /// Index of the image, or of the simple texture: 0 to 511.
    [[nodiscard]] unsigned GetIndiceTextura() const { return Lee(0, 17, 9); }
    void SetIndiceTextura(unsigned n) { Pon(0, 17, 9, n); }
    /// Row and column of the tile inside the image: 0 to 63.
    [[nodiscard]] unsigned GetFilaTextura() const { return Lee(0, 26, 6); }
    void SetFilaTextura(unsigned n) { Pon(0, 26, 6, n); }
    [[nodiscard]] unsigned GetColumnaTextura() const { return Lee(1, 2, 6); }
    void SetColumnaTextura(unsigned n) { Pon(1, 2, 6, n); }
    [[nodiscard]] unsigned GetTipoTextura() const { return Lee(1, 0, 2); }
    void SetTipoTextura(unsigned n) { Pon(1, 0, 2, n); }

    /// The wall of an object; otherwise its roof.
    [[nodiscard]] bool EsPared() const { return Lee(1, 8, 1) != 0; }
    void SetPared(bool b) { Pon(1, 8, 1, b); }
    /// Row of the table of types, 0 to 255; 0 for a triangle without a type, otherwise 1 + place of the code.
    [[nodiscard]] unsigned GetTipoTriangulo() const { return Lee(1, 9, 8); }
    void SetTipoTriangulo(unsigned n) { Pon(1, 9, 8, n); }

    /// The whole words, 0 and 1.
    [[nodiscard]] std::uint32_t GetPalabra(unsigned i) const { return m_nPalabras[i]; }
    void SetPalabra(unsigned i, std::uint32_t palabra) { m_nPalabras[i] = palabra; }

  private:
    static constexpr int kRuptura = 0, kLimite = 3;

    [[nodiscard]] unsigned Lee(unsigned palabra, int bit, int ancho) const {
        return m_nPalabras[palabra] >> bit & ((1U << ancho) - 1);
    }
    void Pon(unsigned palabra, int bit, int ancho, unsigned valor) {
        const std::uint32_t mascara = ((1U << ancho) - 1) << bit;
        m_nPalabras[palabra] = (m_nPalabras[palabra] & ~mascara) | (valor << bit & mascara);
    }

    std::array<std::uint32_t, 2> m_nPalabras{};
};

}  // namespace Vertiz
