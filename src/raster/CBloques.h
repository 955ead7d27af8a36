#pragma once
// The memory of a picture, in pieces.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace Vertiz {

/// A set of blocks of one size, so that no allocation needs a whole picture at once. Byte p of the picture is byte
/// p mod size of block p / size. It is moved, never copied: the source ends up empty.
class LUMBRA_API CBloques {
  public:
    CBloques() = default;
    CBloques(CBloques&& otros) noexcept { *this = std::move(otros); }
    CBloques& operator=(CBloques&& otros) noexcept;

    /// So many blocks of `tamano` bytes, all 0, in place of what there was.
    /// @return false without memory for them: the set is empty then
    bool Reserva(UINT cantidad, UINT tamano);
    /// Frees the blocks.
    void Vacia();
    /// Takes the blocks of another set of the same size behind its own, without copying; `otros` ends up empty.
    void Anade(CBloques&& otros);

    bool EstaVacio() const { return m_Bloques.empty(); }
    UINT Cantidad() const { return static_cast<UINT>(m_Bloques.size()); }
    UINT Tamano() const { return m_nTamano; }
    /// Bytes of all blocks.
    ULONGLONG Bytes() const { return ULONGLONG{m_nTamano} * m_Bloques.size(); }

    /// @param i below Cantidad()
    BYTE* Bloque(UINT i) { return m_Bloques[i]; }
    const BYTE* Bloque(UINT i) const { return m_Bloques[i]; }

    /// Copies n bytes from position p on; false, with nothing copied, when they aren't all there.
    bool Lee(ULONGLONG p, BYTE* destino, std::size_t n) const;
    /// Writes n bytes from position p on; false, with nothing written, when there is no room for all.
    bool Escribe(ULONGLONG p, const BYTE* origen, std::size_t n);

  private:
    struct Libera {
        ULONGLONG bytes;
        LUMBRA_API void operator()(BYTE* memoria) const;
    };
    std::vector<std::unique_ptr<BYTE[], Libera>> m_Memoria;  // of one block each or, in a large set, of many
    std::vector<BYTE*> m_Bloques;
    UINT m_nTamano = 0;
};

}  // namespace Vertiz
