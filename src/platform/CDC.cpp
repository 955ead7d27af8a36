// Device contexts and what is selected in them.

#include "platform/CDC.h"

#include "platform/CPalette.h"
#include "platform/CWnd.h"
#include "platform/Errores.h"
#include "platform/Impresora.h"
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

std::shared_ptr<Dispositivo> Dispositivo::EnMemoria() {
    auto nuevo = std::make_shared<Dispositivo>();
    nuevo->m_Lienzo = std::make_shared<Lienzo>();
    nuevo->m_Propio.CreateBitmap(1, 1, 24);
    nuevo->m_Lienzo->m_Bitmap = nuevo->BitmapPropio();
    nuevo->m_hBitmap = nuevo->m_Propio.GetSafeHandle();
    return nuevo;
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

namespace {

// What a device context draws on.
Pagina Mide(const Dispositivo& dispositivo) {
    if (dispositivo.m_Pagina) return *dispositivo.m_Pagina;
    Pagina p;
    if (dispositivo.m_Lienzo->m_Ventana) {
        const auto donde = dispositivo.m_Lienzo->m_Ventana->Medidas().value_or(Rectangulo());
        p.m_nAncho = donde.m_nAncho;
        p.m_nAlto = donde.m_nAlto;
    } else {
        p.m_nAncho = dispositivo.m_Lienzo->m_Bitmap->m_nAncho;
        p.m_nAlto = dispositivo.m_Lienzo->m_Bitmap->m_nAlto;
    }
    return p;
}

// The same as questions about the device are answered: a window tells of its screen.
Pagina MideAparato(const Dispositivo& dispositivo) {
    Pagina p = Mide(dispositivo);
    if (dispositivo.m_Pagina) return p;
    Backend* backend = BackendActual();
    const Pantalla pantalla = backend ? backend->MidePantalla() : Pantalla();
    // Without a display the window is all the screen there is.
    if (dispositivo.m_Lienzo->m_Ventana && pantalla.m_nAncho != 0) {
        p.m_nAncho = pantalla.m_nAncho;
        p.m_nAlto = pantalla.m_nAlto;
    }
    p.m_nResolucion = static_cast<int>(std::lround(pantalla.m_dPuntosPulgada));
    p.m_dAncho = p.m_nAncho / pantalla.m_dPuntosPulgada * 25.4;
    p.m_dAlto = p.m_nAlto / pantalla.m_dPuntosPulgada * 25.4;
    return p;
}

// One step of printing, by the answers of the functions that print.
template <class Paso>
int Imprime(HDC hdc, Paso paso) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo || !dispositivo->m_Impresora) {
        AnotaFallo("the device context isn't a printer's.", ERROR_INVALID_HANDLE);
        return SP_ERROR;
    }
    return paso(*dispositivo->m_Impresora) ? 1 : SP_ERROR;
}

}  // namespace

CDC::CDC() = default;

CDC::~CDC() {
    CDC::DeleteDC();
}

BOOL CDC::CreateCompatibleDC(CDC*) {
    if (m_hDC) return AnotaFallo("the object has a device context already.");
    m_hDC = ::CreateCompatibleDC(nullptr);
    return TRUE;
}

BOOL CDC::DeleteDC() {
    return ::DeleteDC(Detach());
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
    return ::GetDeviceCaps(m_hDC, indice);
}

int CDC::GetClipBox(RECT* caja) const {
    if (caja) *caja = CRect();
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    if (!dispositivo || !caja) return AnotaFallo("unknown device context.", ERROR_INVALID_HANDLE);
    const Pagina medidas = Mide(*dispositivo);
    const CRect todo(0, 0, medidas.m_nAncho, medidas.m_nAlto);
    const CRect resultado = dispositivo->m_Recorte.value_or(todo);
    *caja = resultado;
    return resultado.IsRectEmpty() ? NULLREGION : SIMPLEREGION;
}

CBitmap* CDC::SelectObject(CBitmap* bitmap) {
    CBitmap* anterior = GetCurrentBitmap();
    return ::SelectObject(m_hDC, bitmap ? bitmap->GetSafeHandle() : nullptr) ? anterior : nullptr;
}

CBitmap* CDC::GetCurrentBitmap() const {
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    if (!dispositivo || dispositivo->m_Lienzo->m_Ventana) return nullptr;
    std::lock_guard cierre(CerrojoContextos());
    CBitmap* clase = dispositivo->m_Lienzo->m_Bitmap->m_pClase;
    return clase ? clase : &dispositivo->m_Propio;
}

BOOL CDC::CreatePrinterDC(const CDataImpresion& datos) {
    if (m_hDC) return AnotaFallo("the object has a device context already.", ERROR_ALREADY_EXISTS);
    const auto pagina = MidePagina(datos, datos.m_nResolucion);
    CDataImpresion destino = datos;
    if (!pagina || (destino.m_sFichero.IsEmpty() && !BuscaImpresora(destino.m_sImpresora))) return FALSE;
    auto dispositivo = Dispositivo::EnMemoria();
    dispositivo->m_Pagina = std::make_unique<Pagina>(*pagina);
    dispositivo->m_Impresora = std::make_unique<Impresora>(destino, *pagina);
    m_hDC = Dispositivos().Inserta(std::move(dispositivo));
    return TRUE;
}

int CDC::StartDoc(LPCWSTR titulo) {
    return Imprime(m_hDC, [titulo](Impresora& i) { return i.EmpiezaDocumento(titulo); });
}
int CDC::StartPage() {
    return Imprime(m_hDC, [](Impresora& i) { return i.EmpiezaPagina(); });
}
int CDC::EndPage() {
    return Imprime(m_hDC, [](Impresora& i) { return i.AcabaPagina(); });
}
int CDC::EndDoc() {
    return Imprime(m_hDC, [](Impresora& i) { return i.AcabaDocumento(); });
}
int CDC::AbortDoc() {
    const auto dispositivo = Dispositivos().Busca(m_hDC);
    if (dispositivo && dispositivo->m_Pagina && !dispositivo->m_Impresora) return dispositivo->m_bAbandonada = true;
    return Imprime(m_hDC, [](Impresora& i) { return i.Aborta(); });
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

CPaintDC::CPaintDC(CWnd* ventana) : CClientDC(ventana) {
    if (const auto dispositivo = Dispositivos().Busca(m_hDC)) dispositivo->m_Recorte = ventana->m_Pintando;
}

HDC CreateCompatibleDC(HDC) {
    return Dispositivos().Inserta(Dispositivo::EnMemoria());
}

BOOL DeleteDC(HDC hdc) {
    return Dispositivos().Saca(hdc) != nullptr;
}

int GetDeviceCaps(HDC hdc, int indice) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo) return 0;
    const Pagina p = MideAparato(*dispositivo);
    switch (indice) {
        case HORZSIZE:
            return static_cast<int>(std::lround(p.m_dAncho));
        case VERTSIZE:
            return static_cast<int>(std::lround(p.m_dAlto));
        case HORZRES:
            return p.m_nAncho;
        case VERTRES:
            return p.m_nAlto;
        case BITSPIXEL:
            return dispositivo->m_Lienzo->m_Bitmap ? dispositivo->m_Lienzo->m_Bitmap->m_nBits : 32;
        case PLANES:
            return 1;
        case LOGPIXELSX:
        case LOGPIXELSY:
            return p.m_nResolucion;
        default:
            return 0;
    }
}

HBITMAP SelectObject(HDC hdc, HBITMAP hBitmap) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    const auto nuevo = Bitmaps().Busca(hBitmap);
    if (!dispositivo || !nuevo || dispositivo->m_Lienzo->m_Ventana || dispositivo->m_Impresora) {
        AnotaFallo("a bitmap can be selected in a memory device context only.");
        return nullptr;
    }
    std::lock_guard cierre(CerrojoContextos());
    Lienzo& lienzo = *dispositivo->m_Lienzo;
    const std::shared_ptr<Bitmap> anterior = lienzo.m_Bitmap;
    const HBITMAP propio = dispositivo->m_Propio.GetSafeHandle();
    // The one before may have been deleted meanwhile: it can't be selected again, the device context's own can.
    const HBITMAP resultado = Bitmaps().Busca(dispositivo->m_hBitmap) ? dispositivo->m_hBitmap : propio;
    if (nuevo == anterior) return resultado;
    if (nuevo->m_bSeleccionado) {
        AnotaFallo("the bitmap is selected in another device context.");
        return nullptr;
    }
    // The surface has the size of the bitmap; the device context's own bitmap of one pixel only stands for "none".
    if (lienzo.m_nFormato != 0 && hBitmap != propio &&
        (nuevo->m_nAncho != lienzo.m_Superficie->m_nAncho || nuevo->m_nAlto != lienzo.m_Superficie->m_nAlto)) {
        AnotaFallo("the bitmap's size isn't the one that the pixel format was set for.");
        return nullptr;
    }
    anterior->m_bSeleccionado = false;
    nuevo->m_bSeleccionado = hBitmap != propio;
    lienzo.m_Bitmap = nuevo;
    dispositivo->m_hBitmap = hBitmap;
    return resultado;
}
