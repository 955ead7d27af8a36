#pragma once
// Device contexts: the client area of a window, a bitmap in memory, or the pages of a printer or a PDF file.

#include "platform/CBitmap.h"
#include "platform/Contextos.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

class CFont;
class CPalette;
class CWnd;
struct CDataImpresion;

constexpr int HORZSIZE = 4;     ///< width in millimetres
constexpr int VERTSIZE = 6;     ///< height in millimetres
constexpr int HORZRES = 8;      ///< width in pixels
constexpr int VERTRES = 10;     ///< height in pixels
constexpr int BITSPIXEL = 12;   ///< colour bits a pixel
constexpr int PLANES = 14;      ///< 1
constexpr int LOGPIXELSX = 88;  ///< pixels an inch
constexpr int LOGPIXELSY = 90;  ///< pixels an inch

/// Kinds of clip boxes.
constexpr int RGN_ERROR = 0;
constexpr int NULLREGION = 1;    ///< nothing is to be drawn
constexpr int SIMPLEREGION = 2;  ///< a rectangle is

/// What printing functions answer when they fail.
constexpr int SP_ERROR = -1;

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

    operator HDC() const { return m_hDC; }

    /// Tells about the display, the bitmap of a memory device context, or the page of a printer.
    /// @param indice one of the constants above, HORZSIZE to LOGPIXELSY
    /// @return 0 for anything else, and for an unknown device context
    int GetDeviceCaps(int indice) const;

    /// Tells what is to be drawn: the invalid part of a window within its `OnPaint`, else all of the client area, the
    /// bitmap or the page.
    /// @param caja out: pixels; 0 when there is nothing
    /// @return NULLREGION, SIMPLEREGION, or RGN_ERROR for an unknown device context
    int GetClipBox(RECT* caja) const;

    /// Makes a device context for printing. Pages and the document go through the six functions below it.
    /// @param datos where to: when neither a file nor a printer is named, the user's default printer
    /// @return FALSE when this object has a device context already, when paper or resolution are out of range, or when
    ///         there is no such printer; GetLastError and UltimoFalloGL tell why, as for those that follow
    BOOL CreatePrinterDC(const CDataImpresion& datos);
    /// Begins a document. A file is written under a temporary name in its folder until `EndDoc`.
    /// @param titulo may be null
    /// @return above 0, or SP_ERROR
    int StartDoc(LPCWSTR titulo);
    /// Begins a page, white. Drawing works within a page only.
    int StartPage();
    /// Ends it.
    int EndPage();
    /// Ends the document: the file takes its name, or the document goes to the printer's queue. On failure nothing is
    /// left of it.
    int EndDoc();
    /// Forgets the document, or ends a preview. So does `DeleteDC` when `EndDoc` wasn't called.
    int AbortDoc();

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

/// The same within `OnPaint`: its clip box is what was invalid when that was called, and empty at any other time.
class LUMBRA_API CPaintDC : public CClientDC {
  public:
    explicit CPaintDC(CWnd* ventana);
};

/// The functions of `CDC` by handle. Whoever makes a device context deletes it.
LUMBRA_API HDC CreateCompatibleDC(HDC hdc);
LUMBRA_API BOOL DeleteDC(HDC hdc);
LUMBRA_API int GetDeviceCaps(HDC hdc, int indice);
/// @return the bitmap selected before; the device context's own when none was; null as `CDC::SelectObject`
LUMBRA_API HBITMAP SelectObject(HDC hdc, HBITMAP bitmap);
