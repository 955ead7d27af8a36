// Copying pixels between bitmaps, buffers, pages and windows.

#include "platform/CopiasDIB.h"

#include "platform/Errores.h"
#include "platform/ImagenCairo.h"
#include "platform/Impresora.h"
#include "platform/Objetos.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace plataforma {

namespace {

// A picture in somebody's memory.
struct Vista {
    const BYTE* m_pPixeles;
    int m_nAncho, m_nAlto, m_nBits;
    std::size_t m_nPaso;

    const BYTE* Fila(int y) const { return m_pPixeles + m_nPaso * static_cast<std::size_t>(y); }
};

bool Ofrecida(const BITMAPINFO* info) {
    if (!info) return false;
    const BITMAPINFOHEADER& h = info->bmiHeader;
    return h.biSize == sizeof h && h.biWidth > 0 && h.biHeight > 0 && h.biPlanes == 1 && h.biCompression == BI_RGB &&
           (h.biBitCount == 24 || h.biBitCount == 32);
}

bool FallaCabecera() {
    return AnotaFallo("the header tells of a kind of picture that isn't offered.", ERROR_INVALID_PARAMETER);
}

Vista VistaDe(const void* bits, const BITMAPINFOHEADER& h) {
    return {static_cast<const BYTE*>(bits), h.biWidth, h.biHeight, h.biBitCount,
            static_cast<std::size_t>(BytesDeFila(h.biWidth, h.biBitCount))};
}

// Copies a row of `n` pixels of one depth into another.
void CopiaFila(const BYTE* de, int bitsDe, BYTE* a, int bitsA, int n) {
    if (bitsDe == bitsA && bitsDe == 24) {
        std::memcpy(a, de, static_cast<std::size_t>(n) * 3);
        return;
    }
    for (int i = 0; i < n; ++i, de += bitsDe / 8, a += bitsA / 8) {
        a[0] = de[0];
        a[1] = de[1];
        a[2] = de[2];
        if (bitsA == 32) a[3] = 0;
    }
}

// A picture of cairo's: rows from the top down, a pixel is blue, green, red and nothing. Null, with the reason noted.
SuperficieCairo CreaImagen(int ancho, int alto) {
    SuperficieCairo s(cairo_image_surface_create(CAIRO_FORMAT_RGB24, ancho, alto));
    if (cairo_surface_status(s.get()) == CAIRO_STATUS_SUCCESS) return s;
    AnotaFallo("there is no picture of " + std::to_string(ancho) + " x " + std::to_string(alto) +
                   " pixels: " + cairo_status_to_string(cairo_surface_status(s.get())) + ".",
               ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

// Part of a picture, turned the other way up; `y` counts from its bottom row.
SuperficieCairo Recorta(const Vista& de, int x, int y, int ancho, int alto) {
    SuperficieCairo s = CreaImagen(ancho, alto);
    if (!s) return nullptr;
    cairo_surface_flush(s.get());
    BYTE* filas = cairo_image_surface_get_data(s.get());
    const auto paso = static_cast<std::size_t>(cairo_image_surface_get_stride(s.get()));
    for (int i = 0; i < alto; ++i)
        CopiaFila(de.Fila(y + i) + static_cast<std::size_t>(x) * static_cast<std::size_t>(de.m_nBits / 8), de.m_nBits,
                  filas + paso * static_cast<std::size_t>(alto - 1 - i), 32, ancho);
    cairo_surface_mark_dirty(s.get());
    return s;
}

// The part `visible` of a picture stretched over `donde`.
SuperficieCairo Estira(SuperficieCairo imagen, const CRect& donde, const CRect& visible) {
    const int ancho = cairo_image_surface_get_width(imagen.get()), alto = cairo_image_surface_get_height(imagen.get());
    if (donde == visible && donde.Size() == CSize(ancho, alto)) return imagen;
    SuperficieCairo s = CreaImagen(visible.Width(), visible.Height());
    if (!s) return nullptr;
    const LapizCairo lapiz(cairo_create(s.get()));
    cairo_translate(lapiz.get(), donde.left - visible.left, donde.top - visible.top);
    cairo_scale(lapiz.get(), static_cast<double>(donde.Width()) / ancho, static_cast<double>(donde.Height()) / alto);
    cairo_set_source_surface(lapiz.get(), imagen.get(), 0.0, 0.0);
    // Beyond the picture its edge goes on: nothing else is blended with it.
    cairo_pattern_set_extend(cairo_get_source(lapiz.get()), CAIRO_EXTEND_PAD);
    if (donde.Size() == CSize(ancho, alto))
        cairo_pattern_set_filter(cairo_get_source(lapiz.get()), CAIRO_FILTER_NEAREST);
    cairo_paint(lapiz.get());
    cairo_surface_flush(s.get());
    if (cairo_status(lapiz.get()) == CAIRO_STATUS_SUCCESS) return s;
    AnotaFallo(
        std::string("the picture can't be stretched: ") + cairo_status_to_string(cairo_status(lapiz.get())) + ".",
        ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

void PonEnBitmap(Bitmap& bitmap, cairo_surface_t* imagen, const CRect& donde) {
    const BYTE* filas = cairo_image_surface_get_data(imagen);
    const auto paso = static_cast<std::size_t>(cairo_image_surface_get_stride(imagen));
    for (int i = 0; i < donde.Height(); ++i) {
        const auto fila = static_cast<std::size_t>(bitmap.m_nAlto - 1 - (donde.top + i));
        CopiaFila(filas + paso * static_cast<std::size_t>(i), 32,
                  bitmap.m_Pixeles.data() + fila * static_cast<std::size_t>(bitmap.m_nPaso) +
                      static_cast<std::size_t>(donde.left) * static_cast<std::size_t>(bitmap.m_nBits / 8),
                  bitmap.m_nBits, donde.Width());
    }
}

bool PonEnVentana(VentanaNativa& ventana, cairo_surface_t* imagen, const CRect& donde) {
    const Imagen filas = {cairo_image_surface_get_data(imagen), donde.Width(), donde.Height(),
                          cairo_image_surface_get_stride(imagen)};
    std::string motivo;
    return ventana.Pinta(filas, donde.left, donde.top, motivo) || AnotaFallo(motivo, ERROR_NOT_SUPPORTED);
}

// On a window or a bitmap.
bool Dibuja(Lienzo& lienzo, SuperficieCairo imagen, const CRect& donde) {
    CRect todo;
    if (lienzo.m_Ventana) {
        const auto medidas = lienzo.m_Ventana->Medidas();
        if (!medidas) return AnotaFallo("the window is no more.", ERROR_INVALID_HANDLE);
        todo = CRect(0, 0, medidas->m_nAncho, medidas->m_nAlto);
    } else {
        todo = CRect(0, 0, lienzo.m_Bitmap->m_nAncho, lienzo.m_Bitmap->m_nAlto);
    }
    const CRect visible = donde & todo;
    if (visible.IsRectEmpty()) return true;
    const SuperficieCairo hecha = Estira(std::move(imagen), donde, visible);
    if (!hecha) return false;
    if (lienzo.m_Ventana) return PonEnVentana(*lienzo.m_Ventana, hecha.get(), visible);
    PonEnBitmap(*lienzo.m_Bitmap, hecha.get(), visible);
    return true;
}

}  // namespace

}  // namespace plataforma

using namespace plataforma;

HBITMAP CreateCompatibleBitmap(HDC hdc, int ancho, int alto) {
    if (!Dispositivos().Busca(hdc)) {
        AnotaFallo("unknown device context.", ERROR_INVALID_HANDLE);
        return nullptr;
    }
    auto bitmap = CreaBitmap(ancho, alto, GetDeviceCaps(hdc, BITSPIXEL));
    return bitmap ? Bitmaps().Inserta(std::move(bitmap)) : nullptr;
}

int SetDIBits(HDC, HBITMAP hBitmap, UINT inicio, UINT lineas, const void* bits, const BITMAPINFO* info, UINT) {
    const auto bitmap = Bitmaps().Busca(hBitmap);
    if (!bitmap || !bits) return AnotaFallo("there is no such bitmap, or nothing to copy.", ERROR_INVALID_PARAMETER);
    if (!Ofrecida(info)) return FallaCabecera();
    const auto alto = static_cast<UINT>(bitmap->m_nAlto);
    if (inicio >= alto) return AnotaFallo("the bitmap has no such row.", ERROR_INVALID_PARAMETER);
    const Vista de = VistaDe(bits, info->bmiHeader);
    const auto n = static_cast<int>(std::min({lineas, alto - inicio, static_cast<UINT>(de.m_nAlto)}));
    for (int i = 0; i < n; ++i)
        CopiaFila(de.Fila(i), de.m_nBits,
                  bitmap->m_Pixeles.data() +
                      (inicio + static_cast<std::size_t>(i)) * static_cast<std::size_t>(bitmap->m_nPaso),
                  bitmap->m_nBits, std::min(de.m_nAncho, bitmap->m_nAncho));
    return n;
}

int GetDIBits(HDC, HBITMAP hBitmap, UINT inicio, UINT lineas, void* bits, BITMAPINFO* info, UINT) {
    const auto bitmap = Bitmaps().Busca(hBitmap);
    if (!bitmap || !info || info->bmiHeader.biSize != sizeof info->bmiHeader) {
        AnotaFallo("there is no such bitmap, or no header to fill in.", ERROR_INVALID_PARAMETER);
        return ERROR_INVALID_PARAMETER;
    }
    BITMAPINFOHEADER& h = info->bmiHeader;
    const auto alto = static_cast<UINT>(bitmap->m_nAlto);
    if (!bits) {
        h.biWidth = bitmap->m_nAncho;
        h.biHeight = bitmap->m_nAlto;
        h.biPlanes = 1;
        if (h.biBitCount == 0) h.biBitCount = static_cast<WORD>(bitmap->m_nBits);
        h.biCompression = BI_RGB;
        h.biSizeImage = static_cast<DWORD>(BytesDeFila(h.biWidth, h.biBitCount) * alto);
    }
    if (!Ofrecida(info)) {
        FallaCabecera();
        return ERROR_INVALID_PARAMETER;
    }
    if (!bits) return 1;
    if (inicio >= alto) return 0;
    const auto n = static_cast<int>(std::min(lineas, alto - inicio));
    const auto paso = static_cast<std::size_t>(BytesDeFila(h.biWidth, h.biBitCount));
    for (int i = 0; i < n; ++i) {
        BYTE* fila = static_cast<BYTE*>(bits) + paso * static_cast<std::size_t>(i);
        std::memset(fila, 0, paso);
        CopiaFila(bitmap->m_Pixeles.data() +
                      (inicio + static_cast<std::size_t>(i)) * static_cast<std::size_t>(bitmap->m_nPaso),
                  bitmap->m_nBits, fila, h.biBitCount, std::min(h.biWidth, bitmap->m_nAncho));
    }
    return n;
}

int StretchDIBits(HDC hdc, int x, int y, int ancho, int alto, int sx, int sy, int anchoOrigen, int altoOrigen,
                  const void* bits, const BITMAPINFO* info, UINT uso, DWORD operacion) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo) return AnotaFallo("unknown device context.", ERROR_INVALID_HANDLE);
    if (!Ofrecida(info)) return FallaCabecera();
    const BITMAPINFOHEADER& h = info->bmiHeader;
    const bool dentro = sx >= 0 && sy >= 0 && anchoOrigen > 0 && altoOrigen > 0 && anchoOrigen <= h.biWidth - sx &&
                        altoOrigen <= h.biHeight - sy;
    // Sums of corners stay within an int.
    const bool cabe = ancho > 0 && alto > 0 && ancho < 1 << 24 && alto < 1 << 24 && std::abs(x / 2) < 1 << 24 &&
                      std::abs(y / 2) < 1 << 24;
    if (!bits || !dentro || !cabe || uso != DIB_RGB_COLORS || operacion != SRCCOPY)
        return AnotaFallo("a picture can be copied from within its bounds, onto a rectangle that isn't empty.",
                          ERROR_INVALID_PARAMETER);
    const CRect donde(x, y, x + ancho, y + alto);
    SuperficieCairo imagen = Recorta(VistaDe(bits, h), sx, sy, anchoOrigen, altoOrigen);
    if (!imagen) return 0;
    const bool hecho = dispositivo->m_Impresora ? dispositivo->m_Impresora->Pinta(imagen.get(), donde)
                                                : Dibuja(*dispositivo->m_Lienzo, std::move(imagen), donde);
    return hecho ? altoOrigen : 0;
}
