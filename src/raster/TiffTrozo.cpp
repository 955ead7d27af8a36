// Rows out of a piece: as they are, or unpacked from PackBits.

#include "raster/TiffTrozo.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace Vertiz {

namespace {

constexpr std::array<BYTE, 256> Invertidos() {
    std::array<BYTE, 256> tabla{};
    for (unsigned i = 0; i < tabla.size(); ++i)
        for (unsigned bit = 0; bit < 8; ++bit)
            if ((i >> bit & 1) != 0) tabla[i] = static_cast<BYTE>(tabla[i] | 0x80 >> bit);
    return tabla;
}

}  // namespace

void LectorTrozo::Abre(CFile& fichero, const PaginaTiff& pagina, const TrozoTiff& trozo, std::size_t bytesBuffer) {
    m_pFichero = &fichero;
    m_nOffset = trozo.offset;
    m_nBytes = trozo.bytes;
    m_nFila = pagina.BytesFila();
    m_bPackBits = pagina.packBits;
    m_bInvierte = pagina.bitsInvertidos;
    m_nInicio = m_nFin = m_nPendientes = 0;
    // Whole rows, when they come as they are.
    std::size_t bytes = m_bPackBits ? bytesBuffer : std::max<std::size_t>(bytesBuffer / m_nFila, 1) * m_nFila;
    bytes = std::min<std::uint64_t>(bytes, m_nBytes);
    if (m_Buffer.size() < bytes) m_Buffer.resize(bytes);
    if (m_bPackBits) m_Fila.resize(m_nFila);
}

bool LectorTrozo::Llena() {
    std::memmove(m_Buffer.data(), m_Buffer.data() + m_nInicio, m_nFin - m_nInicio);
    m_nFin -= m_nInicio;
    m_nInicio = 0;
    const std::size_t n = std::min<std::uint64_t>(m_Buffer.size() - m_nFin, m_nBytes);
    if (n == 0 || m_pFichero->Seek(static_cast<LONGLONG>(m_nOffset), CFile::begin) != m_nOffset) return false;
    const std::size_t leidos = m_pFichero->Read(m_Buffer.data() + m_nFin, n);
    if (m_bInvierte) {
        static constexpr std::array<BYTE, 256> kInvertidos = Invertidos();
        for (BYTE* p = m_Buffer.data() + m_nFin; p != m_Buffer.data() + m_nFin + leidos; ++p)
            *p = kInvertidos[*p];
    }
    m_nFin += leidos;
    m_nOffset += leidos;
    m_nBytes -= leidos;
    return leidos > 0;
}

bool LectorTrozo::Salta(std::uint64_t filas) {
    if (m_bPackBits) {
        for (; filas > 0; --filas)
            if (Fila() == nullptr) return false;
        return true;
    }
    const std::uint64_t bytes = filas * m_nFila, enBuffer = std::min<std::uint64_t>(bytes, m_nFin - m_nInicio);
    m_nInicio += enBuffer;
    if (bytes - enBuffer > m_nBytes) return false;
    m_nOffset += bytes - enBuffer;
    m_nBytes -= bytes - enBuffer;
    return true;
}

const BYTE* LectorTrozo::FilaSimple() {
    while (m_nFin - m_nInicio < m_nFila)
        if (!Llena()) return nullptr;
    const BYTE* const fila = m_Buffer.data() + m_nInicio;
    m_nInicio += m_nFila;
    return fila;
}

// A packet begins with n: up to 127, n + 1 bytes follow; from 129 on, the next byte counts 257 - n times; 128 is
// nothing.
const BYTE* LectorTrozo::FilaPackBits(BYTE* lugar) {
    BYTE* destino = lugar;
    BYTE* const fin = destino + m_nFila;
    while (destino != fin) {
        if (m_nPendientes == 0) {
            while (m_nFin - m_nInicio < 2)
                if (!Llena()) return nullptr;
            const unsigned n = m_Buffer[m_nInicio++];
            if (n == 128) continue;
            m_bRepite = n > 128;
            m_nPendientes = m_bRepite ? 257 - n : n + 1;
            if (m_bRepite) m_Repetido = m_Buffer[m_nInicio++];
        }
        // Most packets are short. So many bytes are written without a call; those too many the next packet overwrites.
        constexpr std::size_t kCorto = 64;
        const auto queda = static_cast<std::size_t>(fin - destino);
        std::size_t tramo = std::min(m_nPendientes, queda);
        if (m_bRepite) {
            if (tramo <= kCorto && queda >= kCorto)
                std::memset(destino, m_Repetido, kCorto);
            else
                std::memset(destino, m_Repetido, tramo);
        } else {
            if (m_nInicio == m_nFin && !Llena()) return nullptr;
            const BYTE* const origen = m_Buffer.data() + m_nInicio;
            const std::size_t hay = m_nFin - m_nInicio;
            tramo = std::min(tramo, hay);
            if (tramo <= kCorto && queda >= kCorto && hay >= kCorto)
                std::memcpy(destino, origen, kCorto);
            else
                std::memcpy(destino, origen, tramo);
            m_nInicio += tramo;
        }
        destino += tramo;
        m_nPendientes -= tramo;
    }
    return lugar;
}

}  // namespace Vertiz
