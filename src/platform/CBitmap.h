#pragma once
// Pictures in memory: rows from the bottom up, each padded to 4 bytes, blue first.

#include "platform/CabeceraDIB.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

class CDC;

/// A bitmap by handle.
using HBITMAP = struct HandleBitmap*;

/// What a bitmap is made of.
struct BITMAP {
    LONG bmType;        ///< 0
    LONG bmWidth;       ///< pixels
    LONG bmHeight;      ///< pixels
    LONG bmWidthBytes;  ///< bytes a row, a multiple of 4
    WORD bmPlanes;      ///< 1
    WORD bmBitsPixel;   ///< 24 or 32
    void* bmBits;       ///< first byte of the bottom row; lives as long as the bitmap
};

/// An entry of a palette.
struct RGBQUAD {
    BYTE rgbBlue, rgbGreen, rgbRed, rgbReserved;
};

/// Header and palette of a picture; the palette isn't read.
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};

constexpr DWORD BI_RGB = 0;
constexpr UINT DIB_RGB_COLORS = 0;

/// A bitmap and its handle. Rows run from the bottom up, each padded to 4 bytes; a pixel is blue, green, red and, with
/// 32 bits, a byte that nobody reads. A new bitmap is black.
class LUMBRA_API CBitmap {
  public:
    CBitmap();
    ~CBitmap();
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    /// Makes a bitmap of the depth of `dc`: 32 bits a pixel for a screen, that of the selected bitmap for a memory
    /// device context. Sizes are pixels.
    /// @return FALSE when this object has a bitmap already, when a side is below 1, or when there is no memory for it
    BOOL CreateCompatibleBitmap(CDC* dc, int ancho, int alto);

    /// Makes a bitmap of `bits` (24 or 32) bits a pixel.
    /// @return FALSE as above, and for any other depth
    BOOL CreateBitmap(int ancho, int alto, UINT bits);

    /// Takes a bitmap over: it is deleted with this object.
    BOOL Attach(HBITMAP h);
    /// Gives the bitmap up, undeleted.
    HBITMAP Detach();

    /// Deletes the bitmap. One that is still selected in a device context lives on in it until another is selected.
    BOOL DeleteObject();

    /// Tells size, depth and where the pixels are.
    /// @return 0 without a bitmap
    int GetBitmap(BITMAP* datos) const;

    HBITMAP GetSafeHandle() const { return m_hObject; }
    operator HBITMAP() const { return m_hObject; }

    HBITMAP m_hObject = nullptr;
};

/// Makes a bitmap whose pixels the caller writes and reads directly.
/// @param hdc, archivo, inicio  not read; may be null and 0
/// @param info 24 or 32 bits, uncompressed, positive height
/// @param bits out: first byte of the bottom row; may be null
/// @return the caller's, for `DeleteObject` or `CBitmap::Attach`; null when the header asks for what isn't offered
LUMBRA_API HBITMAP CreateDIBSection(struct HandleDC* hdc, const BITMAPINFO* info, UINT uso, void** bits, HANDLE archivo,
                                    DWORD inicio);

/// @return FALSE when the handle is unknown
LUMBRA_API BOOL DeleteObject(HBITMAP h);
