// Device contexts and what is selected in them.

#include "platform/CDC.h"

#include "platform/CPalette.h"
#include "platform/CWnd.h"
#include "platform/Objetos.h"

#include <cmath>

namespace plataforma {

Tabla<HDC, Dispositivo>& Dispositivos() {
    static auto& t = *new Tabla<HDC, Dispositivo>;
    return t;
}

Dispositivo::Dispositivo() {
    struct {
        LOGPALETTE m_Cabecera;
        PALETTEENTRY m_Otra;
    } dos = {{0x300, 2, {{0, 0, 0, 0}}}, {255, 255, 255, 0}};
    m_PaletaPropia.CreatePalette(&dos.m_Cabecera);
    m_FuentePropia.CreateFontW(0, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                               CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, nullptr);
    m_Fuente = Fuentes().Busca(m_FuentePropia.GetSafeHandle());
}

std::shared_ptr<Bitmap> Dispositivo::BitmapPropio() const {
    return Bitmaps().Busca(m_Propio.GetSafeHandle());
}

Dispositivo::~Dispositivo() {
    if (!m_Lienzo || !m_Lienzo->m_Bitmap) return;
    std::lock_guard cierre(CerrojoContextos());
    m_Lienzo->m_Bitmap->m_bSeleccionado = false;
}

}  // namespace plataforma

using namespace plataforma;

CDC::CDC() = default;

CDC::~CDC() {
    CDC::DeleteDC();
}

BOOL CDC::CreateCompatibleDC(CDC*) {
    if (m_hDC) return AnotaFallo("the object has a device context already.");
    auto dispositivo = std::make_shared<Dispositivo>();
    dispositivo->m_Lienzo = std::make_shared<Lienzo>();
    dispositivo->m_Propio.CreateBitmap(1, 1, 24);
    dispositivo->m_Lienzo->m_Bitmap = dispositivo->BitmapPropio();
    m_hDC = Dispositivos().Inserta(std::move(dispositivo));
    return TRUE;
}

BOOL CDC::DeleteDC() {
    const HDC hdc = Detach();
    return Dispositivos().Saca(hdc) != nullptr;
}

BOOL CDC::Attach(HDC hdc) {
    if (m_hDC || !Dispositivos().Busca(hdc)) return FALSE;
    m_hDC = hdc;
    return TRUE;
}

HDC CDC::Detach() {
    const HDC hdc = m_hDC;
    m_hDC = nullptr;
    return hdc;
}

int CDC::GetDeviceCaps(int indice) const {
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    if (!dispositivo) return 0;
    const Bitmap* bitmap = dispositivo->m_Lienzo->m_Bitmap.get();
    Backend* backend = BackendActual();
    Pantalla pantalla = backend ? backend->MidePantalla() : Pantalla();
    if (bitmap) {
        pantalla.m_nAncho = bitmap->m_nAncho;
        pantalla.m_nAlto = bitmap->m_nAlto;
    } else if (pantalla.m_nAncho == 0) {  // without a display the window is all the screen there is
        const auto donde = dispositivo->m_Lienzo->m_Ventana->Medidas().value_or(Rectangulo());
        pantalla.m_nAncho = donde.m_nAncho;
        pantalla.m_nAlto = donde.m_nAlto;
    }
    switch (indice) {
        case HORZRES:
            return pantalla.m_nAncho;
        case VERTRES:
            return pantalla.m_nAlto;
        case BITSPIXEL:
            return bitmap ? bitmap->m_nBits : 32;
        case PLANES:
            return 1;
        case LOGPIXELSX:
        case LOGPIXELSY:
            return static_cast<int>(std::lround(pantalla.m_dPuntosPulgada));
        default:
            return 0;
    }
}

CBitmap* CDC::SelectObject(CBitmap* bitmap) {
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    const auto nuevo = bitmap ? Bitmaps().Busca(bitmap->GetSafeHandle()) : nullptr;
    if (!dispositivo || !nuevo || dispositivo->m_Lienzo->m_Ventana) {
        AnotaFallo("a bitmap can be selected in a memory device context only.");
        return nullptr;
    }
    std::lock_guard cierre(CerrojoContextos());
    Lienzo& lienzo = *dispositivo->m_Lienzo;
    const std::shared_ptr<Bitmap> anterior = lienzo.m_Bitmap;
    CBitmap* resultado = anterior->m_pClase ? anterior->m_pClase : &dispositivo->m_Propio;
    if (nuevo == anterior) return resultado;
    if (nuevo->m_bSeleccionado) {
        AnotaFallo("the bitmap is selected in another device context.");
        return nullptr;
    }
    // The surface has the size of the bitmap; the device context's own bitmap of one pixel only stands for "none".
    if (lienzo.m_nFormato != 0 && nuevo != dispositivo->BitmapPropio() &&
        (nuevo->m_nAncho != lienzo.m_Superficie->m_nAncho || nuevo->m_nAlto != lienzo.m_Superficie->m_nAlto)) {
        AnotaFallo("the bitmap's size isn't the one that the pixel format was set for.");
        return nullptr;
    }
    anterior->m_bSeleccionado = false;
    nuevo->m_bSeleccionado = nuevo != dispositivo->BitmapPropio();
    lienzo.m_Bitmap = nuevo;
    return resultado;
}

CBitmap* CDC::GetCurrentBitmap() const {
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    if (!dispositivo || dispositivo->m_Lienzo->m_Ventana) return nullptr;
    std::lock_guard cierre(CerrojoContextos());
    CBitmap* clase = dispositivo->m_Lienzo->m_Bitmap->m_pClase;
    return clase ? clase : &dispositivo->m_Propio;
}

CPalette* CDC::SelectPalette(CPalette* paleta, BOOL) {
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    if (!dispositivo || !paleta || !paleta->m_Paleta) {
        AnotaFallo("there is no palette to select, or no device context.");
        return nullptr;
    }
    const auto anterior = dispositivo->m_Paleta;
    dispositivo->m_Paleta = paleta->m_Paleta;
    return anterior && anterior->m_pClase ? anterior->m_pClase : &dispositivo->m_PaletaPropia;
}

UINT CDC::RealizePalette() {
    return 0;
}

CClientDC::CClientDC(CWnd* ventana) {
    auto lienzo = ventana ? Ventanas().Busca(ventana->GetSafeHwnd()) : nullptr;
    if (!lienzo) {
        AnotaFallo("there is no window to draw on.");
        return;
    }
    auto dispositivo = std::make_shared<Dispositivo>();
    dispositivo->m_Lienzo = std::move(lienzo);
    m_hDC = Dispositivos().Inserta(std::move(dispositivo));
}
