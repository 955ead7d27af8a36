// Blocks that are made all at once or not at all, and bytes across their borders.

#include "raster/CBloques.h"

#include "platform/Memoria.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace Vertiz {

void CBloques::Libera::operator()(BYTE* memoria) const {
    LiberaCeros(memoria, bytes);
}

CBloques& CBloques::operator=(CBloques&& otros) noexcept {
    if (this == &otros) return *this;
    m_Memoria = std::exchange(otros.m_Memoria, {});
    m_Bloques = std::exchange(otros.m_Bloques, {});
    m_nTamano = std::exchange(otros.m_nTamano, 0);
    return *this;
}

bool CBloques::Reserva(UINT cantidad, UINT tamano) {
    Vacia();
    constexpr unsigned kPorBloque = 32;  // its pointers, and what the allocator adds
    const ULONGLONG bytes = ULONGLONG{cantidad} * tamano;
    if (!HayMemoria(bytes + ULONGLONG{cantidad} * kPorBloque)) return false;
    // Many blocks at a time, and so large pages, where it is worth it. In small sets each has memory of its own, past
    // whose end the tools that watch memory let nobody write.
    constexpr ULONGLONG kGrande = ULONGLONG{8} << 20, kJuntos = ULONGLONG{32} << 20;
    const auto juntos = bytes < kGrande ? 1U : static_cast<UINT>(std::max<ULONGLONG>(kJuntos / tamano, 1));
    try {
        m_Bloques.reserve(cantidad);
        m_Memoria.reserve(cantidad / juntos + 1);
        for (UINT i = 0; i < cantidad; ++i) {
            if (i % juntos == 0) {
                const ULONGLONG parte = ULONGLONG{std::min(juntos, cantidad - i)} * tamano;
                m_Memoria.emplace_back(ReservaCeros(parte), Libera{parte});
                if (m_Memoria.back() == nullptr) throw std::bad_alloc();
            }
            m_Bloques.push_back(m_Memoria.back().get() + std::size_t{i % juntos} * tamano);
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
    decltype(m_Memoria)().swap(m_Memoria);
    m_nTamano = 0;
}

void CBloques::Anade(CBloques&& otros) {
    if (EstaVacio()) {
        *this = std::move(otros);
        return;
    }
    m_Memoria.insert(m_Memoria.end(), std::move_iterator(otros.m_Memoria.begin()),
                     std::move_iterator(otros.m_Memoria.end()));
    m_Bloques.insert(m_Bloques.end(), otros.m_Bloques.begin(), otros.m_Bloques.end());
    otros.Vacia();
}

bool CBloques::Lee(ULONGLONG p, BYTE* destino, std::size_t n) const {
    if (p > Bytes() || n > Bytes() - p) return false;
    while (n > 0) {
        const std::size_t inicio = p % m_nTamano, tramo = std::min<std::size_t>(n, m_nTamano - inicio);
        std::copy_n(m_Bloques[p / m_nTamano] + inicio, tramo, destino);
        p += tramo, destino += tramo, n -= tramo;
    }
    return true;
}

bool CBloques::Escribe(ULONGLONG p, const BYTE* origen, std::size_t n) {
    if (p > Bytes() || n > Bytes() - p) return false;
    while (n > 0) {
        const std::size_t inicio = p % m_nTamano, tramo = std::min<std::size_t>(n, m_nTamano - inicio);
        std::copy_n(origen, tramo, m_Bloques[p / m_nTamano] + inicio);
        p += tramo, origen += tramo, n -= tramo;
    }
    return true;
}

}  // namespace Vertiz
