// Palettes: tables of colours.

#include "platform/CPalette.h"

#include "platform/Objetos.h"

#include <algorithm>

using plataforma::Paleta;

CPalette::CPalette() = default;

CPalette::~CPalette() {
    DeleteObject();
}

BOOL CPalette::CreatePalette(const LOGPALETTE* paleta) {
    if (m_Paleta || !paleta || paleta->palNumEntries == 0) return FALSE;
    m_Paleta = std::make_shared<Paleta>();
    m_Paleta->m_Entradas.assign(paleta->palPalEntry, paleta->palPalEntry + paleta->palNumEntries);
    m_Paleta->m_pClase = this;
    return TRUE;
}

BOOL CPalette::DeleteObject() {
    if (!m_Paleta) return FALSE;
    m_Paleta->m_pClase = nullptr;
    m_Paleta.reset();
    return TRUE;
}

int CPalette::GetEntryCount() const {
    return m_Paleta ? static_cast<int>(m_Paleta->m_Entradas.size()) : 0;
}

UINT CPalette::GetPaletteEntries(UINT primera, UINT n, PALETTEENTRY* entradas) const {
    const UINT hay = static_cast<UINT>(GetEntryCount());
    if (!entradas || primera >= hay) return 0;
    n = std::min(n, hay - primera);
    std::copy_n(m_Paleta->m_Entradas.begin() + primera, n, entradas);
    return n;
}

UINT CPalette::SetPaletteEntries(UINT primera, UINT n, const PALETTEENTRY* entradas) {
    const UINT hay = static_cast<UINT>(GetEntryCount());
    if (!entradas || primera >= hay) return 0;
    n = std::min(n, hay - primera);
    std::copy_n(entradas, n, m_Paleta->m_Entradas.begin() + primera);
    return n;
}
