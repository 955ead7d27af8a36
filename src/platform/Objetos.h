#pragma once
// Internal. The objects behind the handles: bitmaps, what device contexts draw on, device contexts. Only the files of
// this folder include this.

#include "platform/Backend.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/CFont.h"
#include "platform/CPalette.h"
#include "platform/CWnd.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

namespace plataforma {

/// Handles and the objects behind them. A handle is a number that is never given out twice, so that one kept for too
/// long is refused and can't hit a newer object. An object taken out lives on for those who hold it.
template <class Handle, class Objeto>
class Tabla {
  public:
    Handle Inserta(std::shared_ptr<Objeto> objeto) {
        std::lock_guard cierre(m_Cerrojo);
        m_Objetos.emplace(++m_nUltimo, std::move(objeto));
        return reinterpret_cast<Handle>(m_nUltimo);  // NOLINT(performance-no-int-to-ptr): it points to nothing
    }
    std::shared_ptr<Objeto> Busca(Handle handle) const {
        std::lock_guard cierre(m_Cerrojo);
        auto it = m_Objetos.find(reinterpret_cast<std::uintptr_t>(handle));
        return it == m_Objetos.end() ? nullptr : it->second;
    }
    std::shared_ptr<Objeto> Saca(Handle handle) {
        std::lock_guard cierre(m_Cerrojo);
        auto it = m_Objetos.find(reinterpret_cast<std::uintptr_t>(handle));
        if (it == m_Objetos.end()) return nullptr;
        auto objeto = std::move(it->second);
        m_Objetos.erase(it);
        return objeto;
    }

  private:
    mutable std::mutex m_Cerrojo;
    std::unordered_map<std::uintptr_t, std::shared_ptr<Objeto>> m_Objetos;
    std::uintptr_t m_nUltimo = 0;
};

/// Pixels of a bitmap: rows from the bottom up, padded to 4 bytes, blue first.
struct Bitmap {
    int m_nAncho = 0, m_nAlto = 0;
    int m_nBits = 0;  ///< a pixel: 24 or 32
    int m_nPaso = 0;  ///< bytes a row
    std::vector<BYTE> m_Pixeles;
    CBitmap* m_pClase = nullptr;  ///< the object of the host that holds it, if any
    bool m_bSeleccionado = false;
};

/// What device contexts draw on: the client area of a window, shared by all its device contexts, or the bitmap selected
/// in one memory device context. `CerrojoContextos` guards its fields.
class Lienzo {
  public:
    std::unique_ptr<VentanaNativa> m_Ventana;  ///< null in a memory device context
    std::shared_ptr<Bitmap> m_Bitmap;          ///< null for a window
    int m_nFormato = 0;                        ///< from 1; 0: not set yet
    std::shared_ptr<Superficie> m_Superficie;  ///< made with the format
    std::thread::id m_Hilo;                    ///< who draws on the surface, where it serves one thread at a time

    /// Makes the surface, or makes it anew when the size of what it stands for has changed and nobody draws on it.
    /// @return false with the reason noted
    bool PreparaSuperficie(Backend& backend);
    bool Admite(const FormatoPixel& formato) const;
};

/// Entries of a palette.
struct Paleta {
    std::vector<PALETTEENTRY> m_Entradas;
    CPalette* m_pClase = nullptr;  ///< the object of the host that holds it, if any
};

/// What a font was asked to be; its face is looked for when glyphs are made.
struct Fuente {
    std::string m_Cara;  ///< UTF-8
    int m_nAlto = 0;     ///< as given to CreateFontW, never 0
    int m_nPeso = FW_NORMAL;
    bool m_bCursiva = false;
    HFONT m_hFuente = nullptr;  ///< its handle, also when that has been deleted
    CFont* m_pClase = nullptr;  ///< the object of the host that holds it, if any
};

struct Pagina;
class Impresora;

/// A device context. That of a printer has a canvas too, on which nothing can be selected.
struct Dispositivo {
    std::shared_ptr<Lienzo> m_Lienzo;
    std::unique_ptr<Impresora> m_Impresora;  ///< null when it isn't a printer's
    std::unique_ptr<Pagina> m_Pagina;        ///< what it measures as, a printer's or a preview's; null for the others
    bool m_bAbandonada = false;              ///< a preview that a handler has given up
    std::optional<CRect> m_Recorte;          ///< empty: all may be drawn on
    HBITMAP m_hBitmap = nullptr;             ///< of the bitmap selected
    std::shared_ptr<Paleta> m_Paleta;
    std::shared_ptr<Fuente> m_Fuente;  ///< `CerrojoContextos` guards it: workers ask for it
    CBitmap m_Propio;                  ///< of one pixel, selected in a memory device context from the start
    CPalette m_PaletaPropia;           ///< black and white, selected from the start
    CFont m_FuentePropia;              ///< selected from the start

    Dispositivo();
    ~Dispositivo();
    std::shared_ptr<Bitmap> BitmapPropio() const;
    /// A device context that draws on a bitmap of one pixel until another is selected.
    static std::shared_ptr<Dispositivo> EnMemoria();
};

Tabla<HBITMAP, Bitmap>& Bitmaps();
Tabla<HDC, Dispositivo>& Dispositivos();
Tabla<HFONT, Fuente>& Fuentes();
Tabla<HWND, Lienzo>& Ventanas();

/// Guards canvases, contexts and their groups.
std::mutex& CerrojoContextos();

/// Makes a bitmap; null, with the reason noted, when sizes or depth can't be had.
std::shared_ptr<Bitmap> CreaBitmap(int ancho, int alto, int bits);

/// What is current on this thread.
struct Actual {
    Lienzo* m_pLienzo = nullptr;    ///< null when no context is current
    bool m_bConSuperficie = false;  ///< drawing goes somewhere
};
Actual ActualDelHilo();

}  // namespace plataforma
