#pragma once
// Palettes of displays that have few colours. Every display served here has true colour, so a palette is a table that
// can be selected and read back, and realising it maps nothing.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <memory>

/// A colour of a palette.
struct PALETTEENTRY {
    BYTE peRed, peGreen, peBlue, peFlags;
};

/// A palette to make: `palNumEntries` entries follow, the first of them in the record itself.
struct LOGPALETTE {
    WORD palVersion;
    WORD palNumEntries;
    PALETTEENTRY palPalEntry[1];
};

namespace plataforma {
struct Paleta;
}

/// A palette: a table of colours.
class LUMBRA_API CPalette {
  public:
    CPalette();
    ~CPalette();
    CPalette(const CPalette&) = delete;
    CPalette& operator=(const CPalette&) = delete;

    /// Copies the entries of `paleta`.
    /// @return FALSE when this object has a palette already or the record has no entry
    BOOL CreatePalette(const LOGPALETTE* paleta);

    /// Forgets the entries. The palette may still be selected somewhere: the device context then goes back to its own.
    BOOL DeleteObject();

    /// @return how many entries there are
    int GetEntryCount() const;

    /// Reads `n` entries from `primera` on.
    /// @return how many there were to read
    UINT GetPaletteEntries(UINT primera, UINT n, PALETTEENTRY* entradas) const;
    /// Writes `n` entries from `primera` on.
    /// @return how many there were to write
    UINT SetPaletteEntries(UINT primera, UINT n, const PALETTEENTRY* entradas);

  private:
    friend class CDC;
    std::shared_ptr<plataforma::Paleta> m_Paleta;  // shared with the device contexts that have it selected
};
