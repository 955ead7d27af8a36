// Samples of 1 to 32 and of 64 bits: unsigned, signed and floating point.

#include "raster/TiffMuestras.h"

#include "raster/MediaPrecision.h"

#include <bit>
#include <cmath>
#include <cstring>

namespace Vertiz {

namespace {

// With the bytes in the other order.
template <class U>
U Volteado(U v) {
    if constexpr (sizeof(U) == 1)
        return v;
    else if constexpr (sizeof(U) == 2)
        return __builtin_bswap16(v);
    else if constexpr (sizeof(U) == 4)
        return __builtin_bswap32(v);
    else
        return __builtin_bswap64(v);
}

// Samples of whole bytes. U holds the bits, como makes a value of them.
template <class U, class F>
void LeeEnteras(const BYTE* p, std::size_t paso, std::size_t n, bool cambia, double* destino, F como) {
    for (std::size_t i = 0; i < n; ++i, p += paso * sizeof(U)) {
        U v;
        std::memcpy(&v, p, sizeof v);
        destino[i] = double(como(cambia ? Volteado(v) : v));
    }
}

template <class U, class S, class R>
void LeeDeTipo(FormatoTiff formato, const BYTE* p, std::size_t paso, std::size_t n, bool cambia, double* destino,
               R real) {
    if (formato == FormatoTiff::Real)
        LeeEnteras<U>(p, paso, n, cambia, destino, real);
    else if (formato == FormatoTiff::Entero)
        LeeEnteras<U>(p, paso, n, cambia, destino, [](U v) { return static_cast<S>(v); });
    else
        LeeEnteras<U>(p, paso, n, cambia, destino, [](U v) { return v; });
}

// The sample at a place of a row whose samples follow each other bit by bit, the highest bit first.
std::uint32_t Bits(const BYTE* fila, std::size_t lugar, unsigned bits) {
    const std::size_t primero = lugar * bits, ultimo = primero + bits - 1;
    std::uint64_t v = 0;
    for (std::size_t i = primero / 8; i <= ultimo / 8; ++i)
        v = v << 8 | fila[i];
    return static_cast<std::uint32_t>(v >> (7 - ultimo % 8) & ((std::uint64_t{1} << bits) - 1));
}

double ConSigno(std::uint32_t v, unsigned bits) {
    const std::uint32_t signo = std::uint32_t{1} << (bits - 1);
    return (v & signo) != 0 ? double(v) - 2.0 * double(signo) : double(v);
}

// Numbers of three bytes don't come bit by bit, but in the file's byte order.
std::uint32_t Tres(const BYTE* p, bool mayorPrimero) {
    return mayorPrimero ? std::uint32_t(p[0] << 16 | p[1] << 8 | p[2]) : std::uint32_t(p[2] << 16 | p[1] << 8 | p[0]);
}

BYTE ABYTE(double v) {
    if (!(v > 0.0)) return 0;  // NaN too
    return v >= 255.0 ? BYTE{255} : static_cast<BYTE>(v + 0.5);
}

}  // namespace

MuestrasTiff::MuestrasTiff(const PaginaTiff& pagina, const std::array<unsigned, 3>& canales)
    : m_Pagina(pagina), m_nPaso(pagina.planos ? 1 : pagina.muestras), m_Color(pagina) {
    switch (pagina.fotometrica) {
        case fotometrica::kCeroBlanco:
        case fotometrica::kCeroNegro:
        case fotometrica::kPaleta:
            m_Muestras = {0};
            break;
        case fotometrica::kCMYK:
            m_Muestras = {0, 1, 2, 3};
            break;
        default:
            m_Muestras.assign(canales.begin(), canales.end());
            break;
    }
    m_nColores = m_Muestras.size();
    if (m_Color.Transparente()) m_Muestras.push_back(3);
}

std::vector<unsigned> MuestrasTiff::Planos() const {
    return m_Pagina.planos ? m_Muestras : std::vector<unsigned>{0};
}

void MuestrasTiff::SetEscala(const EscalaTiff& escala) {
    m_bEscala = true;
    m_Escala = escala;
}

// Place in its row of a colour's sample of the first pixel.
std::size_t MuestrasTiff::Primero(const TramoTiff& tramo, std::size_t color) const {
    return m_Pagina.planos ? tramo.primero : tramo.primero * m_Pagina.muestras + m_Muestras[color];
}

void MuestrasTiff::Valores(const TramoTiff& tramo, std::size_t color, double* destino) const {
    const BYTE* const fila = tramo.filas[m_Pagina.planos ? color : 0];
    const std::size_t primero = Primero(tramo, color), n = tramo.n;
    const FormatoTiff formato = m_Pagina.formato;
    const unsigned bits = m_Pagina.bits;
    const bool cambia = m_Pagina.cambiaOrden;
    const BYTE* const p = fila + primero * bits / 8;
    if (bits == 8) {
        LeeDeTipo<std::uint8_t, std::int8_t>(formato, p, m_nPaso, n, cambia, destino, [](std::uint8_t v) { return v; });
    } else if (bits == 16) {
        LeeDeTipo<std::uint16_t, std::int16_t>(formato, p, m_nPaso, n, cambia, destino, DeMediaPrecision);
    } else if (bits == 32) {
        LeeDeTipo<std::uint32_t, std::int32_t>(formato, p, m_nPaso, n, cambia, destino,
                                               [](std::uint32_t v) { return std::bit_cast<float>(v); });
    } else if (bits == 64) {
        LeeDeTipo<std::uint64_t, std::int64_t>(formato, p, m_nPaso, n, cambia, destino,
                                               [](std::uint64_t v) { return std::bit_cast<double>(v); });
    } else {
        const bool mayorPrimero = cambia == (std::endian::native == std::endian::little);
        for (std::size_t i = 0; i < n; ++i) {
            const std::size_t lugar = primero + i * m_nPaso;
            const std::uint32_t v = bits == 24 ? Tres(fila + lugar * 3, mayorPrimero) : Bits(fila, lugar, bits);
            destino[i] = formato == FormatoTiff::Entero ? ConSigno(v, bits) : double(v);
        }
    }
}

// Fewer than 8 bits to 0 to 255; entries of a palette stay as they are.
void MuestrasTiff::Expande(const TramoTiff& tramo, std::size_t color) {
    const BYTE* const fila = tramo.filas[m_Pagina.planos ? color : 0];
    const unsigned bits = m_Pagina.bits, mayor = (1U << bits) - 1;
    const bool indice = m_Pagina.fotometrica == fotometrica::kPaleta;
    std::array<BYTE, 128> tabla{};
    for (unsigned v = 0; v <= mayor; ++v)
        tabla[v] = static_cast<BYTE>(indice ? v : v * 255 / mayor);
    std::vector<BYTE>& bytes = m_Bytes[color];
    bytes.resize(tramo.n);
    std::size_t lugar = Primero(tramo, color);
    for (BYTE& b : bytes) {
        b = tabla[Bits(fila, lugar, bits)];
        lugar += m_nPaso;
    }
}

void MuestrasTiff::Reduce(const TramoTiff& tramo, std::size_t color) {
    m_Valores.resize(tramo.n);
    Valores(tramo, color, m_Valores.data());
    std::vector<BYTE>& bytes = m_Bytes[color];
    bytes.resize(tramo.n);
    const bool esColor = color < m_nColores;  // transparency has a range of its own
    const EscalaTiff escala = esColor ? m_Escala : EscalaTiff{0.0, 255.0 / (std::exp2(m_Pagina.bits) - 1.0)};
    const bool invierte = m_Pagina.fotometrica == fotometrica::kCeroBlanco && escala.factor != 0.0;
    for (std::size_t i = 0; i < tramo.n; ++i) {
        const double v = (m_Valores[i] - escala.minimo) * escala.factor;
        bytes[i] = invierte && !std::isnan(v) ? BYTE(255 - ABYTE(v)) : ABYTE(v);
    }
}

void MuestrasTiff::Pixeles(const TramoTiff& tramo, BYTE* destino) {
    std::array<const BYTE*, 4> p{};
    const bool directa = !m_bEscala && m_Pagina.bits == 8;
    for (std::size_t i = 0; i < m_Muestras.size(); ++i) {
        if (directa) {
            p[i] = tramo.filas[m_Pagina.planos ? i : 0] + Primero(tramo, i);
            continue;
        }
        if (m_bEscala)
            Reduce(tramo, i);
        else
            Expande(tramo, i);
        p[i] = m_Bytes[i].data();
    }
    m_Color.Convierte(p, directa ? m_nPaso : 1, tramo.n, m_bEscala, destino);
}

}  // namespace Vertiz
