#pragma once
// Rendering contexts: what ties OpenGL to a window or to a bitmap. The names are those that the scenes use; which of
// the ways of getting a context serves (GLX on X11, EGL without any display) is found out at the first call and nobody
// above has to know it.
//
// A host's order: pixel format of the device context, context, joining, then use.
//
//     int n = ChoosePixelFormat(hdc, &pfd);
//     SetPixelFormat(hdc, n, &pfd);
//     HGLRC hrc = wglCreateContext(hdc);
//     wglMakeCurrent(hdc, hrc);
//     ...
//     SwapBuffers(hdc);
//     wglMakeCurrent(nullptr, nullptr);
//     wglDeleteContext(hrc);
//
// Every function refuses (0, FALSE, null) a handle that it doesn't know, a deleted one too: handles are never used
// twice. After a refusal, `UltimoFalloGL()` of DiagnosticoGL.h tells why. All functions may be called on any thread.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

/// A device context: what can be drawn on. Made by `CDC` and `CClientDC`.
using HDC = struct HandleDC*;
/// A rendering context.
using HGLRC = struct HandleGLRC*;

/// What a drawing surface offers, or what is wanted of it.
struct PIXELFORMATDESCRIPTOR {
    WORD nSize;     ///< 40
    WORD nVersion;  ///< 1
    DWORD dwFlags;  ///< PFD_ flags
    BYTE iPixelType;
    BYTE cColorBits;
    BYTE cRedBits;
    BYTE cRedShift;
    BYTE cGreenBits;
    BYTE cGreenShift;
    BYTE cBlueBits;
    BYTE cBlueShift;
    BYTE cAlphaBits;
    BYTE cAlphaShift;
    BYTE cAccumBits;
    BYTE cAccumRedBits;
    BYTE cAccumGreenBits;
    BYTE cAccumBlueBits;
    BYTE cAccumAlphaBits;
    BYTE cDepthBits;
    BYTE cStencilBits;
    BYTE cAuxBuffers;
    BYTE iLayerType;
    BYTE bReserved;
    DWORD dwLayerMask;
    DWORD dwVisibleMask;
    DWORD dwDamageMask;
};
static_assert(sizeof(PIXELFORMATDESCRIPTOR) == 40);

constexpr BYTE PFD_TYPE_RGBA = 0;
constexpr BYTE PFD_TYPE_COLORINDEX = 1;
constexpr BYTE PFD_MAIN_PLANE = 0;

constexpr DWORD PFD_DOUBLEBUFFER = 0x00000001;
constexpr DWORD PFD_STEREO = 0x00000002;
constexpr DWORD PFD_DRAW_TO_WINDOW = 0x00000004;
constexpr DWORD PFD_DRAW_TO_BITMAP = 0x00000008;
constexpr DWORD PFD_SUPPORT_GDI = 0x00000010;
constexpr DWORD PFD_SUPPORT_OPENGL = 0x00000020;
constexpr DWORD PFD_GENERIC_FORMAT = 0x00000040;
constexpr DWORD PFD_NEED_PALETTE = 0x00000080;
constexpr DWORD PFD_SWAP_EXCHANGE = 0x00000200;
constexpr DWORD PFD_SWAP_COPY = 0x00000400;
constexpr DWORD PFD_DEPTH_DONTCARE = 0x20000000;
constexpr DWORD PFD_DOUBLEBUFFER_DONTCARE = 0x40000000;
constexpr DWORD PFD_STEREO_DONTCARE = 0x80000000;

/// The format that comes nearest to what is wanted. Every format offered has 8 bits each of red, green and blue in
/// fixed point and no multisampling; among them the deepest depth buffer goes first, whatever `cDepthBits` says, since
/// picking reads it. Two buffers are a must on a window.
/// @return number of the format, from 1; 0 when the device context is unknown, when no format can draw on it, or when a
///         colour-index or stereo format is wanted
LUMBRA_API int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd);

/// Fixes the format of what `hdc` draws on: once for a window, once for a memory device context (which must have a
/// bitmap selected; its off-screen surface is made here, of the bitmap's size). The same format again is a success.
/// @param pfd not read; may be null
/// @return FALSE when there is another format already, no bitmap, or no surface of that size
LUMBRA_API BOOL SetPixelFormat(HDC hdc, int formato, const PIXELFORMATDESCRIPTOR* pfd);

/// @return number of the format that was set; 0 when none was
LUMBRA_API int GetPixelFormat(HDC hdc);

/// Describes one format.
/// @param bytes size of `*pfd`, at least 40
/// @param pfd   out; null asks for the count only
/// @return count of the formats; 0 when `hdc` or `formato` is unknown
LUMBRA_API int DescribePixelFormat(HDC hdc, int formato, UINT bytes, PIXELFORMATDESCRIPTOR* pfd);

/// Shows what was drawn: on a window the back buffer becomes visible, on a memory device context the picture is copied
/// into the bits of its bitmap (which needs the device context current on this thread). The depth buffer keeps its
/// values. The back buffer's colours are undefined afterwards.
/// @return FALSE when nothing can be shown: no format set, or the context has no surface (see `wglMakeCurrent`)
LUMBRA_API BOOL SwapBuffers(HDC hdc);

/// Has what was drawn carried out. On a memory device context that is current on this thread, the picture last
/// presented, with what has been drawn on the front buffer since, is copied into the bits of its bitmap.
/// @return TRUE always
LUMBRA_API BOOL GdiFlush();

/// Makes a context for the format of `hdc`. The native context behind it is made at its first use, so that the calls to
/// `wglShareLists` that come before can be honoured.
/// @return null when `hdc` has no pixel format; otherwise the caller's, for `wglDeleteContext`
LUMBRA_API HGLRC wglCreateContext(HDC hdc);

/// Deletes a context, releasing it first when it is current on this thread.
/// @return FALSE when it is unknown, or current on another thread
LUMBRA_API BOOL wglDeleteContext(HGLRC hrc);

/// Makes `hrc` current on this thread, drawing on `hdc`; a former context is released. Both null, or `hrc` null,
/// release only, which always succeeds.
///
/// A surface made through EGL serves one thread at a time. While it does, a context made current on it by another
/// thread has no surface: lists can be compiled and textures filled (what workers do), drawing goes nowhere and
/// `SwapBuffers` says FALSE.
/// @return FALSE when a handle is unknown, when the context is current on another thread, when the formats differ, or
///         when the native context can't be made; the former context is then current still
LUMBRA_API BOOL wglMakeCurrent(HDC hdc, HGLRC hrc);

/// @return the context current on this thread, or null. Costs no more than a read.
LUMBRA_API HGLRC wglGetCurrentContext();

/// @return the device context current on this thread, or null
LUMBRA_API HDC wglGetCurrentDC();

/// Joins two contexts: lists and textures made in one are seen in both. Joining is transitive, and joining twice is a
/// success.
/// @return FALSE when a handle is unknown, or when it is too late: both have been used already without being joined
LUMBRA_API BOOL wglShareLists(HGLRC uno, HGLRC otro);
