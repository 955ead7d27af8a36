#include "support/Tela.h"

Tela::Tela(int ancho, int alto, unsigned bits) {
    m_bitmap.CreateBitmap(ancho, alto, bits);
    m_dc.CreateCompatibleDC(nullptr);
    m_dc.SelectObject(&m_bitmap);
}

unsigned Tela::Pixel(int x, int y) const {
    BITMAP datos{};
    m_bitmap.GetBitmap(&datos);
    const auto* p =
        static_cast<const unsigned char*>(datos.bmBits) + y * datos.bmWidthBytes + x * datos.bmBitsPixel / 8;
    return static_cast<unsigned>(p[2] << 16 | p[1] << 8 | p[0]);
}

Imagen Tela::Lee() const {
    BITMAP datos{};
    m_bitmap.GetBitmap(&datos);
    Imagen imagen(datos.bmWidth, datos.bmHeight);
    for (int y = 0; y < imagen.alto; ++y)
        for (int x = 0; x < imagen.ancho; ++x) {
            const unsigned rgb = Pixel(x, imagen.alto - 1 - y);
            imagen.Pinta(x, y, {std::uint8_t(rgb >> 16), std::uint8_t(rgb >> 8), std::uint8_t(rgb)});
        }
    return imagen;
}
