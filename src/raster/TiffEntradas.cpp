#include "raster/TiffEntradas.h"

#include "raster/EtiquetasTiff.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

namespace Vertiz {

namespace {

constexpr std::size_t kBytesHeader = 8, kBytesEntrada = 12, kHueco = 4;

// A number at the end, in little-endian order.
template <class T>
void Anade(std::vector<BYTE>& bytes, T valor) {
    if constexpr (std::is_same_v<T, double>) {
        Anade(bytes, std::bit_cast<std::uint64_t>(valor));
    } else {
        for (std::size_t i = 0; i < sizeof(T); ++i)
            bytes.push_back(static_cast<BYTE>(std::uint64_t{valor} >> 8 * i));
    }
}

// What lies behind the directory begins at even offsets.
std::size_t Par(std::size_t n) {
    return n + n % 2;
}

}  // namespace

template <class T>
void EntradasTiff::Pon(unsigned tag, unsigned tipoValores, std::span<const T> valores) {
    Entrada e{static_cast<std::uint16_t>(tipoValores), static_cast<std::uint32_t>(valores.size()), {}};
    for (const T v : valores)
        Anade(e.datos, v);
    m_Entradas[tag] = std::move(e);
}

void EntradasTiff::Shorts(unsigned tag, std::span<const std::uint16_t> valores) {
    Pon(tag, tipo::kShort, valores);
}

void EntradasTiff::Long(unsigned tag, std::uint32_t valor) {
    Pon(tag, tipo::kLong, std::span<const std::uint32_t>(&valor, 1));
}

void EntradasTiff::Dobles(unsigned tag, std::span<const double> valores) {
    Pon(tag, tipo::kDouble, valores);
}

void EntradasTiff::Texto(unsigned tag, std::string_view texto) {
    std::vector<BYTE> letras(texto.begin(), texto.end());
    letras.push_back(0);
    Pon(tag, tipo::kAscii, std::span<const BYTE>(letras));
}

void EntradasTiff::Fraccion(unsigned tag, double valor) {
    constexpr double kMaximo = std::numeric_limits<std::uint32_t>::max();
    if (!(valor > 0.0)) valor = 0.0;
    valor = std::min(valor, kMaximo);
    std::uint32_t divisor = 1;
    while (divisor < 0x80000000U && valor * divisor != std::floor(valor * divisor) && valor * divisor * 2.0 <= kMaximo)
        divisor *= 2;
    const std::uint32_t partes[]{static_cast<std::uint32_t>(valor * divisor + 0.5), divisor};
    Pon(tag, tipo::kRational, std::span<const std::uint32_t>(partes));
    m_Entradas[tag].cuenta = 1;
}

void EntradasTiff::Georreferencia(const CGeorreferencia& g) {
    const bool transforma = std::ranges::any_of(g.m_dTransformacion, [](double v) { return v != 0.0; });
    const bool escalaPropia = std::ranges::any_of(g.m_dEscala, [](double v) { return v != 1.0; });
    const std::size_t puntos = g.m_PuntosControl.size();
    // A scale means something from one tie point on only; several without one are control points, which a scale would
    // turn into something else, and so would it a transformation alone.
    if (escalaPropia || puntos == 1 || (puntos == 0 && !transforma)) Dobles(etiqueta::kModelPixelScale, g.m_dEscala);
    if (puntos > 0) {
        std::vector<double> planos;
        for (const auto& punto : g.m_PuntosControl)
            planos.insert(planos.end(), punto.begin(), punto.end());
        Dobles(etiqueta::kModelTiepoint, planos);
    }
    if (transforma) Dobles(etiqueta::kModelTransformation, g.m_dTransformacion);
    const std::pair<std::uint16_t, int> valores[]{{clave::kModelType, g.m_nTipoModelo},
                                                  {clave::kRasterType, g.m_nTipoRaster},
                                                  {clave::kGeographicType, g.m_nTipoGeografico},
                                                  {clave::kAngularUnits, g.m_nUnidadAngular}};
    std::vector<std::uint16_t> claves{1, 1, 0, std::size(valores)};  // version 1, revision 1.0
    for (const auto& [clave, valor] : valores)                       // each with its value in place
        claves.insert(claves.end(), {clave, 0, 1, static_cast<std::uint16_t>(valor)});
    Shorts(etiqueta::kGeoKeyDirectory, claves);
    const double elipsoide[]{g.m_Elipsoide.DameA(), g.m_Elipsoide.DameB()};
    Dobles(etiqueta::kGeoDoubleParams, elipsoide);
}

std::uint64_t EntradasTiff::Bytes() const {
    std::uint64_t bytes = kBytesHeader + 2 + m_Entradas.size() * kBytesEntrada + 4;
    for (const auto& [tag, e] : m_Entradas)
        if (e.datos.size() > kHueco) bytes += Par(e.datos.size());
    return bytes;
}

std::vector<BYTE> EntradasTiff::Cabecera() const {
    std::vector<BYTE> bytes{'I', 'I'}, detras;
    Anade<std::uint16_t>(bytes, 42);
    Anade<std::uint32_t>(bytes, kBytesHeader);
    Anade(bytes, static_cast<std::uint16_t>(m_Entradas.size()));
    const std::size_t finDirectorio = kBytesHeader + 2 + m_Entradas.size() * kBytesEntrada + 4;
    for (const auto& [tag, e] : m_Entradas) {
        Anade(bytes, static_cast<std::uint16_t>(tag));
        Anade(bytes, e.tipo);
        Anade(bytes, e.cuenta);
        if (e.datos.size() > kHueco) {
            Anade(bytes, static_cast<std::uint32_t>(finDirectorio + detras.size()));
            detras.insert(detras.end(), e.datos.begin(), e.datos.end());
            detras.resize(Par(detras.size()));
        } else {
            bytes.insert(bytes.end(), e.datos.begin(), e.datos.end());
            bytes.resize(bytes.size() + kHueco - e.datos.size());
        }
    }
    Anade<std::uint32_t>(bytes, 0);  // no further directory
    bytes.insert(bytes.end(), detras.begin(), detras.end());
    return bytes;
}

}  // namespace Vertiz
