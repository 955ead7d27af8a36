#pragma once
// Copying pixels between bitmaps, buffers of the caller's and what can be drawn on. A buffer has the layout that its
// header tells: 24 or 32 bits, uncompressed, positive height, so that rows run from the bottom up and each takes a
// multiple of 4 bytes. Other headers are refused. Reasons for refusals are in UltimoFalloGL and GetLastError.

#include "platform/CBitmap.h"
#include "platform/CDC.h"

constexpr DWORD SRCCOPY = 0x00CC0020;

/// Makes a bitmap of the depth of `hdc`.
/// @return the caller's, for `DeleteObject` or `CBitmap::Attach`; null as `CBitmap::CreateCompatibleBitmap` FALSE
LUMBRA_API HBITMAP CreateCompatibleBitmap(HDC hdc, int ancho, int alto);

/// Copies rows of a buffer into a bitmap: the first row of the buffer becomes row `inicio` of the bitmap, counted from
/// the bottom. Rows and columns that the bitmap doesn't have are left out.
/// @param hdc, uso  not read; may be null and 0
/// @param lineas    rows to copy; `info` tells how many there are, and their width
/// @return rows copied; 0 when there are none, or an argument is wrong
LUMBRA_API int SetDIBits(HDC hdc, HBITMAP bitmap, UINT inicio, UINT lineas, const void* bits, const BITMAPINFO* info,
                         UINT uso);

/// Copies rows of a bitmap, from `inicio` on, counted from the bottom, into a buffer of the width and depth of `info`.
/// Columns that the bitmap doesn't have, and the fourth byte of 32 bits, become 0.
/// @param hdc, uso  not read; may be null and 0
/// @param bits      null: `info` is filled in instead, with size and planes of the bitmap and, where `biBitCount` is 0,
///                  its depth; `biSizeImage` tells the bytes of all rows. The result is then 1.
/// @return rows copied; 0 when the bitmap has no row `inicio`; 87 (ERROR_INVALID_PARAMETER, which GetLastError gives
///         too) when there is no such bitmap or no header, or when its format isn't offered
LUMBRA_API int GetDIBits(HDC hdc, HBITMAP bitmap, UINT inicio, UINT lineas, void* bits, BITMAPINFO* info, UINT uso);

/// Draws part of a buffer's picture, stretched, on a printer's page, the bitmap of a memory device context, or a
/// window. What lies outside is cut. A page takes the picture at its own resolution, whatever its size there; elsewhere
/// pixels are blended where the size changes, and copied exactly where it doesn't. A window shows it until it is next
/// drawn on, and only where there is a display.
/// @param x, y, ancho, alto                target, pixels, y downwards; sides above 0
/// @param sx, sy, anchoOrigen, altoOrigen  part of the picture, pixels; `sy` counts from its bottom row
/// @param uso        DIB_RGB_COLORS, as the buffer's colours are; anything else is refused
/// @param operacion  SRCCOPY, so that the picture replaces what was there; anything else is refused
/// @return rows of the picture that were drawn; 0 on failure
LUMBRA_API int StretchDIBits(HDC hdc, int x, int y, int ancho, int alto, int sx, int sy, int anchoOrigen,
                             int altoOrigen, const void* bits, const BITMAPINFO* info, UINT uso, DWORD operacion);
