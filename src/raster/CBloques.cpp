// Blocks that are made all at once or not at all, and bytes across their borders.

#include "raster/CBloques.h"

#include "platform/Memoria.h"

#include <algorithm>
#include <new>
#include <utility>

namespace Vertiz {

CBloques& CBloques::operator=(CBloques&& otros) noexcept {
    if (this == &otros) return *this;
    m_Bloques = std::exchange(otros.m_Bloques, {});
    m_nTamano = std::exchange(otros.m_nTamano, 0);
    return *this;
}

bool CBloques::Reserva(UINT cantidad, UINT tamano) {
    Vacia();
    constexpr unsigned kPorBloque = 32;  // its pointer, and what the allocator adds
    if (!HayMemoria(ULONGLONG{cantidad} * (ULONGLONG{tamano} + kPorBloque))) return false;
    try {
        m_Bloques.reserve(cantidad);
        for (UINT i = 0; i < cantidad; ++i) {
            // From the system they come as zeros already, which only calloc knows.
            m_Bloques.emplace_back(static_cast<BYTE*>(std::calloc(std::max(tamano, 1U), 1)));
            if (m_Bloques.back() == nullptr) throw std::bad_alloc();
        }
    } catch (const std::bad_alloc&) {
        Vacia();
        return false;
    }
    m_nTamano = tamano;
    return true;
}

void CBloques::Vacia() {
    decltype(m_Bloques)().swap(m_Bloques);
    m_nTamano = 0;
}

bool CBloques::Lee(ULONGLONG p, BYTE* destino, std::size_t n) const {
    if (p > Bytes() || n > Bytes() - p) return false;
    while (n > 0) {
        const std::size_t inicio = p % m_nTamano, tramo = std::min<std::size_t>(n, m_nTamano - inicio);
        std::copy_n(m_Bloques[p / m_nTamano].get() + inicio, tramo, destino);
        p += tramo, destino += tramo, n -= tramo;
    }
    return true;
}

bool CBloques::Escribe(ULONGLONG p, const BYTE* origen, std::size_t n) {
    if (p > Bytes() || n > Bytes() - p) return false;
    while (n > 0) {
        const std::size_t inicio = p % m_nTamano, tramo = std::min<std::size_t>(n, m_nTamano - inicio);
        std::copy_n(origen, tramo, m_Bloques[p / m_nTamano].get() + inicio);
        p += tramo, origen += tramo, n -= tramo;
    }
    return true;
}

}  // namespace Vertiz
