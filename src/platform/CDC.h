#pragma once
// Device contexts: the client area of a window, or a bitmap in memory.

#include "platform/Contextos.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

class CBitmap;
class CFont;
class CPalette;
class CWnd;

constexpr int HORZRES = 8;      ///< width in pixels
constexpr int VERTRES = 10;     ///< height in pixels
constexpr int BITSPIXEL = 12;   ///< colour bits a pixel
constexpr int PLANES = 14;      ///< 1
constexpr int LOGPIXELSX = 88;  ///< pixels an inch
constexpr int LOGPIXELSY = 90;  ///< pixels an inch

/// A device context. Objects selected in it are borrowed: they have to live until another is selected in their place,
/// or until the device context is gone. One that is deleted before is replaced by the device context's own.
class LUMBRA_API CDC {
  public:
    CDC();
    virtual ~CDC();
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    /// Makes a device context in memory. It draws on the bitmap that is selected into it.
    /// @param dc not read; may be null
    /// @return FALSE when this object has a device context already
    virtual BOOL CreateCompatibleDC(CDC* dc);

    /// Deletes the device context. When it is current on a thread, what it draws on lives until that thread releases
    /// it.
    virtual BOOL DeleteDC();

    /// Takes a device context over: it is deleted with this object.
    BOOL Attach(HDC hdc);
    /// Gives the device context up, undeleted.
    HDC Detach();

    HDC GetSafeHdc() const { return m_hDC; }

    /// Tells about the display, or the bitmap of a memory device context.
    /// @param indice HORZRES, VERTRES, BITSPIXEL, PLANES, LOGPIXELSX or LOGPIXELSY
    /// @return 0 for anything else
    int GetDeviceCaps(int indice) const;

    /// Selects a bitmap into a memory device context.
    /// @return the bitmap selected before (never null on success); null when this isn't a memory device context, when
    ///         the bitmap is empty or selected elsewhere, or when a pixel format is set and the sizes differ
    CBitmap* SelectObject(CBitmap* bitmap);

    /// @return the bitmap selected; the device context's own, of one pixel, when none was; null for a window
    CBitmap* GetCurrentBitmap() const;

    /// Selects a font, for the glyph lists of Fuentes.h.
    /// @return the font selected before, never null on success: the device context's own when that one has no CFont
    CFont* SelectObject(CFont* fuente);

    /// Selects a palette.
    /// @return the palette selected before, never null on success
    CPalette* SelectPalette(CPalette* paleta, BOOL fondo);

    /// @return how many entries of the display changed: 0, since displays here have true colour
    UINT RealizePalette();

    HDC m_hDC = nullptr;
};

/// The device context of a window's client area, for as long as this object lives.
class LUMBRA_API CClientDC : public CDC {
  public:
    /// @param ventana must have been created; otherwise `m_hDC` stays null
    explicit CClientDC(CWnd* ventana);
};
