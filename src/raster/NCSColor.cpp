// From components, whatever their depth, sign and grid, to blue, green and red.

#include "raster/NCSColor.h"

#include <openjpeg.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace NCS {

namespace {

constexpr unsigned kBitsTabla = 16;
constexpr unsigned kBitsMaximos = 31;

BYTE ABytes(double v) {
    return static_cast<BYTE>(std::clamp(v, 0.0, 255.0) + 0.5);
}

void DeRGB(const BYTE* r, const BYTE* g, const BYTE* b, std::size_t n, BYTE* bgr) {
    for (std::size_t i = 0; i < n; i++) {
        bgr[3 * i] = b[i];
        bgr[3 * i + 1] = g[i];
        bgr[3 * i + 2] = r[i];
    }
}

// The same from samples of 32 bits: first a word for each pixel, which is done for several at a time, then four words
// into three. Samples of a sound file are bytes. @return false where they aren't: some of `bgr` is wrong then
bool DeRGB32(const std::int32_t* r, const std::int32_t* g, const std::int32_t* b, std::size_t n, BYTE* bgr) {
    static_assert(std::endian::native == std::endian::little);
    constexpr std::size_t kTramo = 512;
    std::array<std::uint32_t, kTramo> palabras;
    for (std::size_t i = 0; i < n; i += kTramo, bgr += 3 * kTramo) {
        const std::size_t tramo = std::min(kTramo, n - i);
        std::uint32_t todos = 0;
        for (std::size_t k = 0; k < tramo; k++) {
            const auto rojo = static_cast<std::uint32_t>(r[i + k]), verde = static_cast<std::uint32_t>(g[i + k]),
                       azul = static_cast<std::uint32_t>(b[i + k]);
            todos |= rojo | verde | azul;
            palabras[k] = azul | verde << 8 | rojo << 16;
        }
        if (todos > 255) return false;
        std::size_t k = 0;
        for (; k + 4 <= tramo; k += 4) {
            const std::uint32_t* const w = &palabras[k];
            const std::uint32_t a = w[0] | w[1] << 24, c = w[1] >> 8 | w[2] << 16, d = w[2] >> 16 | w[3] << 8;
            std::memcpy(bgr + 3 * k, &a, 4);
            std::memcpy(bgr + 3 * k + 4, &c, 4);
            std::memcpy(bgr + 3 * k + 8, &d, 4);
        }
        for (; k < tramo; k++)
            std::memcpy(bgr + 3 * k, &palabras[k], 3);
    }
    return true;
}

// IEC 61966-2-1, amendment 1.
void DeYCC(const BYTE* y, const BYTE* cb, const BYTE* cr, std::size_t n, BYTE* bgr) {
    for (std::size_t i = 0; i < n; i++) {
        const double luz = y[i], azul = cb[i] - 128.0, rojo = cr[i] - 128.0;
        bgr[3 * i] = ABytes(luz + 1.772 * azul);
        bgr[3 * i + 1] = ABytes(luz - 0.344136 * azul - 0.714136 * rojo);
        bgr[3 * i + 2] = ABytes(luz + 1.402 * rojo);
    }
}

void DeCMYK(const BYTE* c, const BYTE* m, const BYTE* y, const BYTE* k, std::size_t n, BYTE* bgr) {
    for (std::size_t i = 0; i < n; i++) {
        const int blanco = 255 - k[i];
        bgr[3 * i] = static_cast<BYTE>((255 - y[i]) * blanco / 255);
        bgr[3 * i + 1] = static_cast<BYTE>((255 - m[i]) * blanco / 255);
        bgr[3 * i + 2] = static_cast<BYTE>((255 - c[i]) * blanco / 255);
    }
}

// Chroma that was thinned out against the first component is no colour of its own, whatever the file calls it.
bool TieneCromaReducida(const opj_image& imagen, const std::vector<std::size_t>& colores) {
    const auto& primera = imagen.comps[colores[0]];
    return primera.dx == 1 && primera.dy == 1 && imagen.comps[colores[1]].dx != 1;
}

}  // namespace

bool CColorJ2K::PonCanal(const opj_image_comp& c) {
    if (c.data == nullptr || c.w == 0 || c.h == 0 || c.dx == 0 || c.dy == 0) return false;
    if (c.prec == 0 || c.prec > kBitsMaximos) return false;
    Canal canal;
    canal.datos = c.data;
    canal.x0 = c.x0;
    canal.y0 = c.y0;
    canal.ancho = c.w;
    canal.alto = c.h;
    canal.dx = c.dx;
    canal.dy = c.dy;
    const std::int64_t valores = std::int64_t{1} << c.prec;
    canal.menor = c.sgnd != 0 ? static_cast<std::int32_t>(-valores / 2) : 0;
    canal.mayor = static_cast<std::int32_t>(canal.menor + valores - 1);
    if (c.prec <= kBitsTabla) {
        std::vector<BYTE> tabla(static_cast<std::size_t>(valores));
        for (std::size_t i = 0; i < tabla.size(); i++)
            tabla[i] = canal.Byte(canal.menor + static_cast<std::int32_t>(i));
        canal.tabla = std::move(tabla);
    }
    m_Canales.push_back(std::move(canal));
    return true;
}

BYTE CColorJ2K::Canal::Byte(std::int32_t valor) const {
    const std::int64_t v = std::clamp(valor, menor, mayor) - std::int64_t{menor};
    if (!tabla.empty()) return tabla[static_cast<std::size_t>(v)];
    const std::int64_t rango = std::int64_t{mayor} - menor;
    return static_cast<BYTE>((v * 255 + rango / 2) / rango);
}

bool CColorJ2K::Prepara(const opj_image& imagen, std::int64_t x0, std::int64_t y0) {
    std::vector<std::size_t> colores;
    for (std::size_t i = 0; i < imagen.numcomps; i++)
        if (imagen.comps[i].alpha == 0) colores.push_back(i);
    if (colores.empty()) return false;

    if (colores.size() < 3)
        m_Modelo = Modelo::kGris;
    else if (imagen.color_space == OPJ_CLRSPC_CMYK && colores.size() >= 4)
        m_Modelo = Modelo::kCMYK;
    else if (imagen.color_space == OPJ_CLRSPC_SYCC || imagen.color_space == OPJ_CLRSPC_EYCC ||
             TieneCromaReducida(imagen, colores))
        m_Modelo = Modelo::kYCC;
    else
        m_Modelo = Modelo::kRGB;

    const std::size_t canales = m_Modelo == Modelo::kGris ? 1 : m_Modelo == Modelo::kCMYK ? 4 : 3;
    for (std::size_t i = 0; i < canales; i++)
        if (!PonCanal(imagen.comps[colores[i]])) return false;
    m_nDx = imagen.comps[0].dx;
    m_nDy = imagen.comps[0].dy;
    m_nX0 = x0;
    m_nY0 = y0;
    return m_nDx > 0 && m_nDy > 0;
}

const std::int32_t* CColorJ2K::Muestras(const Canal& canal, std::int64_t x, std::int64_t y, int n) const {
    const std::int64_t primera = x - canal.x0;
    if (canal.dx != m_nDx || primera < 0 || primera + n > canal.ancho) return nullptr;
    const std::int64_t fila = std::clamp<std::int64_t>(y * m_nDy / canal.dy - canal.y0, 0, canal.alto - 1);
    return canal.datos + fila * canal.ancho + primera;
}

bool CColorJ2K::LineaDirecta(std::int64_t x, std::int64_t y, int n, BYTE* bgr) const {
    if (m_Modelo != Modelo::kGris && m_Modelo != Modelo::kRGB) return false;
    std::array<const std::int32_t*, 3> bandas{};
    for (std::size_t i = 0; i < m_Canales.size(); i++) {
        const Canal& canal = m_Canales[i];
        bandas[i] = Muestras(canal, x, y, n);
        if (bandas[i] == nullptr || canal.menor != 0 || canal.mayor != 255) return false;
    }
    if (m_Modelo == Modelo::kGris) bandas[1] = bandas[2] = bandas[0];
    return DeRGB32(bandas[0], bandas[1], bandas[2], static_cast<std::size_t>(n), bgr);
}

void CColorJ2K::LineaCanal(const Canal& canal, std::int64_t x, std::int64_t y, int n, BYTE* bytes) const {
    if (const std::int32_t* const datos = Muestras(canal, x, y, n)) {
        for (int i = 0; i < n; i++)
            bytes[i] = canal.Byte(datos[i]);
        return;
    }
    const std::int64_t fila = std::clamp<std::int64_t>(y * m_nDy / canal.dy - canal.y0, 0, canal.alto - 1);
    const std::int32_t* const datos = canal.datos + fila * canal.ancho;
    for (int i = 0; i < n; i++)
        bytes[i] =
            canal.Byte(datos[std::clamp<std::int64_t>((x + i) * m_nDx / canal.dx - canal.x0, 0, canal.ancho - 1)]);
}

void CColorJ2K::Linea(int fila, int columna, int n, BYTE* bgr, std::vector<BYTE>& componentes) const {
    if (LineaDirecta(m_nX0 + columna, m_nY0 + fila, n, bgr)) return;
    const auto ancho = static_cast<std::size_t>(n);
    componentes.resize(ancho * m_Canales.size());
    for (std::size_t i = 0; i < m_Canales.size(); i++)
        LineaCanal(m_Canales[i], m_nX0 + columna, m_nY0 + fila, n, componentes.data() + ancho * i);

    const BYTE* c0 = componentes.data();
    switch (m_Modelo) {
        case Modelo::kGris:
            DeRGB(c0, c0, c0, ancho, bgr);
            break;
        case Modelo::kRGB:
            DeRGB(c0, c0 + ancho, c0 + 2 * ancho, ancho, bgr);
            break;
        case Modelo::kYCC:
            DeYCC(c0, c0 + ancho, c0 + 2 * ancho, ancho, bgr);
            break;
        case Modelo::kCMYK:
            DeCMYK(c0, c0 + ancho, c0 + 2 * ancho, c0 + 3 * ancho, ancho, bgr);
            break;
    }
}

}  // namespace NCS
