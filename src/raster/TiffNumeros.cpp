#include "raster/TiffNumeros.h"

#include "raster/EtiquetasTiff.h"

#include <algorithm>

namespace Vertiz {

namespace {

// Bytes of a value of a type; 0 for an unknown one.
unsigned BytesTipo(unsigned t) {
    constexpr BYTE kBytes[]{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
    return t < std::size(kBytes) ? kBytes[t] : 0;
}

bool EsEntero(unsigned t) {
    return t == tipo::kByte || t == tipo::kShort || t == tipo::kLong || t == tipo::kLong8 || t == tipo::kIfd ||
           t == tipo::kIfd8;
}

}  // namespace

std::uint64_t NumerosTiff::Numero(const BYTE* bytes, unsigned n) const {
    const bool mayorPrimero = m_bCambia == (std::endian::native == std::endian::little);
    std::uint64_t v = 0;
    for (unsigned i = 0; i < n; ++i)
        v = v << 8 | bytes[mayorPrimero ? i : n - 1 - i];
    return v;
}

bool NumerosTiff::Lee(std::uint64_t offset, BYTE* destino, std::size_t n) const {
    if (offset > m_nTamano || n > m_nTamano - offset) return false;
    return m_Fichero.Seek(static_cast<LONGLONG>(offset), CFile::begin) == offset && m_Fichero.Read(destino, n) == n;
}

std::optional<std::vector<EntradaTiff>> NumerosTiff::Directorio(std::uint64_t offset, std::uint64_t& siguiente) const {
    const unsigned bytesCuenta = m_bGrande ? 8 : 2, bytesEntrada = m_bGrande ? 20 : 12, bytesOffset = m_bGrande ? 8 : 4;
    BYTE numero[8];
    if (!Lee(offset, numero, bytesCuenta)) return {};
    const std::uint64_t cuenta = Numero(numero, bytesCuenta), primera = offset + bytesCuenta;
    if (cuenta > (m_nTamano - primera) / bytesEntrada || (!m_bGrande && cuenta > 0x7FFF)) return {};

    std::vector<BYTE> bytes(cuenta * bytesEntrada);
    if (!Lee(primera, bytes.data(), bytes.size())) return {};
    std::vector<EntradaTiff> entradas(cuenta);
    const BYTE* p = bytes.data();
    for (EntradaTiff& e : entradas) {
        e.tag = static_cast<unsigned>(Numero(p, 2));
        e.tipo = static_cast<unsigned>(Numero(p + 2, 2));
        e.cuenta = Numero(p + 4, bytesOffset);
        std::copy_n(p + 4 + bytesOffset, bytesOffset, e.valor);
        p += bytesEntrada;
    }
    // A file that ends right behind its last directory has no further one.
    siguiente = Lee(primera + bytes.size(), numero, bytesOffset) ? Numero(numero, bytesOffset) : 0;
    return entradas;
}

std::vector<BYTE> NumerosTiff::Datos(const EntradaTiff& e, std::uint64_t n, bool& bien) const {
    const unsigned bytes = BytesTipo(e.tipo), hueco = m_bGrande ? 8 : 4;
    if (e.cuenta <= hueco / bytes) return {e.valor, e.valor + n * bytes};
    const std::uint64_t offset = Numero(e.valor, hueco);
    if (offset > m_nTamano || e.cuenta > (m_nTamano - offset) / bytes) {
        bien = false;
        return {};
    }
    std::vector<BYTE> datos(n * bytes);
    if (!Lee(offset, datos.data(), datos.size())) bien = false;
    return datos;
}

std::vector<std::uint64_t> NumerosTiff::Enteros(const EntradaTiff& e, std::uint64_t maximo, bool& bien) const {
    if (!EsEntero(e.tipo)) return {};
    const unsigned bytes = BytesTipo(e.tipo);
    const std::vector<BYTE> datos = Datos(e, std::min(e.cuenta, maximo), bien);
    std::vector<std::uint64_t> valores(datos.size() / bytes);
    for (std::size_t i = 0; i < valores.size(); ++i)
        valores[i] = Numero(&datos[i * bytes], bytes);
    return valores;
}

std::vector<double> NumerosTiff::Reales(const EntradaTiff& e, bool& bien) const {
    const bool fraccion = e.tipo == tipo::kRational;
    if (!EsEntero(e.tipo) && !fraccion && e.tipo != tipo::kFloat && e.tipo != tipo::kDouble) return {};
    const unsigned bytes = BytesTipo(e.tipo);
    const std::vector<BYTE> datos = Datos(e, e.cuenta, bien);
    std::vector<double> valores(datos.size() / bytes);
    for (std::size_t i = 0; i < valores.size(); ++i) {
        const BYTE* p = &datos[i * bytes];
        const std::uint64_t v = Numero(p, bytes);
        if (fraccion) {
            const std::uint64_t divisor = Numero(p + 4, 4);
            valores[i] = divisor == 0 ? 0.0 : double(Numero(p, 4)) / double(divisor);
        } else if (e.tipo == tipo::kFloat) {
            valores[i] = double(std::bit_cast<float>(static_cast<std::uint32_t>(v)));
        } else {
            valores[i] = e.tipo == tipo::kDouble ? std::bit_cast<double>(v) : double(v);
        }
    }
    return valores;
}

}  // namespace Vertiz
