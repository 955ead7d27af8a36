// Colours by libtiff's own formulas, so that a file looks the same whichever reader takes it.

#include "raster/TiffColor.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace Vertiz {

namespace {

// sRGB (IEC 61966-2-1) as a display with white at 255.
constexpr TIFFDisplay kPantalla{
    {{3.2410F, -1.5374F, -0.4986F}, {-0.9692F, 1.8760F, 0.0416F}, {0.0556F, -0.2040F, 1.0570F}},
    100.0F,
    100.0F,
    100.0F,
    255,
    255,
    255,
    1.0F,
    1.0F,
    1.0F,
    2.4F,
    2.4F,
    2.4F};

// White of D50, for pages that don't tell theirs.
constexpr float kBlancoX = 96.4250F, kBlancoY = 100.0F, kBlancoZ = 82.4680F;

}  // namespace

struct ColorTiff::Tablas {
    TIFFCIELabToRGB lab;
    TIFFYCbCrToRGB* ycbcr = nullptr;
    std::vector<std::max_align_t> memoria;  // the structure, with its tables behind it

    explicit Tablas(const PaginaTiff& pagina) {
        if (pagina.fotometrica == fotometrica::kCIELab)
            IniciaLab(pagina);
        else
            IniciaYCbCr(pagina);
    }

    void IniciaLab(const PaginaTiff& pagina) {
        constexpr float kSuma = kBlancoX + kBlancoY + kBlancoZ;
        float x = kBlancoX / kSuma, y = kBlancoY / kSuma;
        if (pagina.puntoBlanco[0] > 0.0 && pagina.puntoBlanco[1] > 0.0) {
            x = static_cast<float>(pagina.puntoBlanco[0]);
            y = static_cast<float>(pagina.puntoBlanco[1]);
        }
        float blanco[3]{x / y * 100.0F, 100.0F, (1.0F - x - y) / y * 100.0F};
        TIFFCIELabToRGBInit(&lab, &kPantalla, blanco);
    }

    void IniciaYCbCr(const PaginaTiff& pagina) {
        constexpr std::size_t kBytes = sizeof(TIFFYCbCrToRGB) + sizeof(long) + 4 * 256 * sizeof(TIFFRGBValue) +
                                       2 * 256 * sizeof(int) + 3 * 256 * sizeof(std::int32_t);
        memoria.resize(kBytes / sizeof(std::max_align_t) + 1);
        ycbcr = reinterpret_cast<TIFFYCbCrToRGB*>(memoria.data());
        float luma[3], referencia[6];
        std::ranges::copy(pagina.lumaYCbCr, luma);
        std::ranges::copy(pagina.referenciaYCbCr, referencia);
        if (!(luma[1] > 0.0F)) luma[1] = 0.587F;  // it divides
        TIFFYCbCrToRGBInit(ycbcr, luma, referencia);
    }
};

ColorTiff::ColorTiff(const PaginaTiff& pagina)
    : m_nFotometrica(pagina.fotometrica),
      m_bUnByte(pagina.EsDeUnByte()),
      m_bTransparente(pagina.fotometrica == fotometrica::kRGB && pagina.alfa == AlfaTiff::SinAsociar &&
                      pagina.formato != FormatoTiff::Real) {
    if (m_nFotometrica == fotometrica::kPaleta) m_Paleta = PaletaTiff(pagina);
    if (m_nFotometrica == fotometrica::kCIELab || m_nFotometrica == fotometrica::kYCbCr)
        m_pTablas = std::make_unique<Tablas>(pagina);
}

ColorTiff::~ColorTiff() = default;

void ColorTiff::Convierte(const std::array<const BYTE*, 4>& p, std::size_t paso, std::size_t n, bool invertido,
                          BYTE* destino) const {
    if (m_nFotometrica <= fotometrica::kCeroNegro)
        Gris(p[0], paso, n, m_nFotometrica == fotometrica::kCeroBlanco && !invertido, destino);
    else if (m_nFotometrica == fotometrica::kPaleta)
        EnPaleta(p[0], paso, n, destino);
    else if (m_bTransparente || m_nFotometrica == fotometrica::kCMYK || m_pTablas != nullptr)
        Calculado(p, paso, n, destino);
    else
        Directo(p, paso, n, destino);
}

void ColorTiff::Gris(const BYTE* p, std::size_t paso, std::size_t n, bool invierte, BYTE* destino) const {
    const BYTE mascara = invierte ? 255 : 0;
    if (m_bUnByte && paso == 1) {
        if (invierte)
            std::transform(p, p + n, destino, [](BYTE b) { return static_cast<BYTE>(~b); });
        else if (p != destino)
            std::memcpy(destino, p, n);
        return;
    }
    const int bytes = m_bUnByte ? 1 : 3;
    for (std::size_t i = 0; i < n; ++i, p += paso)
        destino = std::fill_n(destino, bytes, static_cast<BYTE>(*p ^ mascara));
}

void ColorTiff::EnPaleta(const BYTE* p, std::size_t paso, std::size_t n, BYTE* destino) const {
    for (std::size_t i = 0; i < n; ++i, p += paso) {
        if (m_bUnByte)
            *destino++ = *p;
        else
            destino = std::copy_n(&m_Paleta[std::size_t{*p} * 4], 3, destino);
    }
}

void ColorTiff::Directo(const std::array<const BYTE*, 4>& p, std::size_t paso, std::size_t n, BYTE* destino) const {
    if (paso == 3 && p[1] == p[0] + 1 && p[2] == p[0] + 2) {
        const BYTE* rgb = p[0];
        for (std::size_t i = 0; i < n; ++i, rgb += 3, destino += 3) {
            destino[0] = rgb[2];
            destino[1] = rgb[1];
            destino[2] = rgb[0];
        }
        return;
    }
    for (std::size_t i = 0, j = 0; i < n; ++i, j += paso, destino += 3) {
        destino[0] = p[2][j];
        destino[1] = p[1][j];
        destino[2] = p[0][j];
    }
}

void ColorTiff::Calculado(const std::array<const BYTE*, 4>& p, std::size_t paso, std::size_t n, BYTE* destino) const {
    for (std::size_t i = 0, j = 0; i < n; ++i, j += paso, destino += 3)
        Color({p[0][j], p[1][j], p[2][j], p[3] != nullptr ? p[3][j] : BYTE{0}}, destino);
}

void ColorTiff::Color(const std::array<BYTE, 4>& m, BYTE* bgr) const {
    std::uint32_t r = 0, g = 0, b = 0;
    if (m_nFotometrica == fotometrica::kCMYK) {
        const unsigned k = 255U - m[3];
        r = k * (255U - m[0]) / 255;
        g = k * (255U - m[1]) / 255;
        b = k * (255U - m[2]) / 255;
    } else if (m_nFotometrica == fotometrica::kCIELab) {
        float x = 0.0F, y = 0.0F, z = 0.0F;
        TIFFCIELabToXYZ(&m_pTablas->lab, m[0], static_cast<signed char>(m[1]), static_cast<signed char>(m[2]), &x, &y,
                        &z);
        TIFFXYZToRGB(&m_pTablas->lab, x, y, z, &r, &g, &b);
    } else if (m_nFotometrica == fotometrica::kYCbCr) {
        TIFFYCbCrtoRGB(m_pTablas->ycbcr, m[0], m[1], m[2], &r, &g, &b);
    } else {
        r = (m[0] * unsigned{m[3]} + 127) / 255;
        g = (m[1] * unsigned{m[3]} + 127) / 255;
        b = (m[2] * unsigned{m[3]} + 127) / 255;
    }
    bgr[0] = static_cast<BYTE>(b);
    bgr[1] = static_cast<BYTE>(g);
    bgr[2] = static_cast<BYTE>(r);
}

std::array<BYTE, 256 * 4> PaletaTiff(const PaginaTiff& pagina) {
    std::array<BYTE, 256 * 4> paleta{};
    const std::vector<std::uint16_t>& mapa = pagina.mapaColor;
    // Some programs write values of 8 bits.
    const unsigned salto = std::ranges::all_of(mapa, [](unsigned v) { return v < 256; }) ? 0 : 8;
    const std::size_t colores = std::size_t{1} << pagina.bits, tercio = mapa.size() / 3;
    for (std::size_t i = 0; i < colores; ++i)
        for (std::size_t banda = 0; banda < 3; ++banda)
            paleta[i * 4 + banda] = static_cast<BYTE>(mapa[(2 - banda) * tercio + i] >> salto);
    return paleta;
}

}  // namespace Vertiz
