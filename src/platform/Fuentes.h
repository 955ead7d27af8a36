#pragma once
// Fonts by handle, and display lists of their glyphs: one list for each code, solid or flat outlines, or bitmaps. The
// face is looked for among the fonts that the system has installed.
//
//     HFONT fuente = CreateFontW(-20, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
//                                CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"Arial");
//     HFONT anterior = SelectObject(hdc, fuente);
//     wglUseFontBitmapsW(hdc, 0, 1024, base);
//     SelectObject(hdc, anterior);
//     DeleteObject(fuente);
//     ...
//     glListBase(base);
//     glCallLists(4, GL_UNSIGNED_SHORT, u"Text");
//
// All functions may be called on any thread; after a refusal `UltimoFalloGL()` tells why.

#include "platform/Contextos.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

/// A font by handle.
using HFONT = struct HandleFuente*;

constexpr int FW_DONTCARE = 0;
constexpr int FW_NORMAL = 400;
constexpr int FW_BOLD = 700;
constexpr DWORD ANSI_CHARSET = 0;
constexpr DWORD DEFAULT_CHARSET = 1;
constexpr DWORD OUT_DEFAULT_PRECIS = 0;
constexpr DWORD OUT_TT_PRECIS = 4;
constexpr DWORD CLIP_DEFAULT_PRECIS = 0;
constexpr DWORD DEFAULT_QUALITY = 0;
constexpr DWORD ANTIALIASED_QUALITY = 4;
constexpr DWORD DEFAULT_PITCH = 0;
constexpr DWORD FF_DONTCARE = 0;

/// Describes a font. The face itself is looked for when glyphs are made: the installed one of that name, or the nearest
/// that fontconfig knows, with Liberation Sans where Arial isn't there.
/// @param alto    pixels; negative: height of the em square, positive: from the lowest to the highest line of the face,
///                0: a default of 16 for the em square. Above 32767 either way it is refused
/// @param ancho, escape, orientacion  not read: characters have the face's own width and stand on a level line
/// @param peso    100 to 900, FW_NORMAL is 400; 0 takes that. The nearest among the installed faces; none is emboldened
/// @param cursiva non-zero: an italic face, where there is one; none is slanted
/// @param subrayada, tachada  not read: glyphs have no line under or through them
/// @param juego, salida, recorte, calidad, paso  not read: codes are Unicode's, faces are outlines
/// @param cara    name of the face; null or empty takes Arial
/// @return the caller's, for DeleteObject or CFont::Attach; null only when `alto` is refused
LUMBRA_API HFONT CreateFontW(int alto, int ancho, int escape, int orientacion, int peso, DWORD cursiva, DWORD subrayada,
                             DWORD tachada, DWORD juego, DWORD salida, DWORD recorte, DWORD calidad, DWORD paso,
                             LPCWSTR cara);

/// Deletes a font. One that is selected in a device context serves there until another is selected.
/// @return FALSE when the handle is unknown
LUMBRA_API BOOL DeleteObject(HFONT fuente);

/// Selects a font into a device context of any kind. It is borrowed.
/// @return the one selected before, from the start the device context's own (Arial, 16 pixels), which also stands in
///         for one that was deleted; null when a handle is unknown
LUMBRA_API HFONT SelectObject(HDC hdc, HFONT fuente);

/// A point of real coordinates.
struct POINTFLOAT {
    float x, y;
};

/// Where a glyph lies in its cell, in parts of the em square's side, y upwards.
struct GLYPHMETRICSFLOAT {
    float gmfBlackBoxX;           ///< width of the smallest box round the glyph; 0 for a blank
    float gmfBlackBoxY;           ///< its height
    POINTFLOAT gmfptGlyphOrigin;  ///< its upper left corner, from the pen on the base line
    float gmfCellIncX;            ///< from this pen to the next
    float gmfCellIncY;            ///< 0
};

constexpr int WGL_FONT_LINES = 0;
constexpr int WGL_FONT_POLYGONS = 1;

/// Compiles the outlines of `cuantos` glyphs of the font selected in `hdc` into the lists from `base` on, one each.
/// Coordinates are parts of the em square's side, so that the font's height has no influence: the pen stands at the
/// origin, x goes to the right, y upwards. Each list ends with a translation to the next pen, so that one glCallLists
/// writes a text. Lists change no other state.
///
/// Contours count by the rule of non-zero winding, as TrueType has it: where several cover a place it is filled once.
/// A code without a glyph shows the face's sign for a missing one.
/// @param primero    first code, of Unicode
/// @param desviacion how far chords may be from the curves, in parts of the em square's side; 0 is one of the units
///                   that the face was designed in
/// @param extrusion  depth: the front lies at z = 0 with its normal along z, the back at z = -extrusion with the
///                   opposite one, and sides with normals outwards join them; edges of less than about 37 degrees are
///                   shaded as round. 0: the front alone
/// @param formato    WGL_FONT_POLYGONS: filled, each face counter-clockwise seen from outside; WGL_FONT_LINES:
///                   outlines (of front and back, and lines between them) without normals
/// @param medidas    out: room for `cuantos`; may be null
/// @return FALSE when no context is current, when arguments make no sense, when no face can be found, and after a GL
///         error, one that was pending included; the lists before the failing one are good then, and no list is open
LUMBRA_API BOOL wglUseFontOutlinesW(HDC hdc, DWORD primero, DWORD cuantos, DWORD base, float desviacion,
                                    float extrusion, int formato, GLYPHMETRICSFLOAT* medidas);

/// Compiles bitmaps of `cuantos` glyphs of the font selected in `hdc` into the lists from `base` on: each one glBitmap
/// of a bit a pixel at the raster position, which it moves on to the next pen. They have the font's height in pixels,
/// whatever matrices are. A code without a glyph shows the face's sign for a missing one. Pixel storage is put back.
/// @return FALSE as above, and for an em square of more than 1024 pixels
LUMBRA_API BOOL wglUseFontBitmapsW(HDC hdc, DWORD primero, DWORD cuantos, DWORD base);
