#pragma once
// Internal. A JPEG 2000 file as the views of it share it: its header, and the windows that are being decoded.

#include "raster/NCS.h"
#include "raster/NCSCajas.h"
#include "raster/NCSColor.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

struct opj_image;

namespace NCS {

/// Columns [x0, x1) and rows [y0, y1) of a picture, rows from the top.
struct CRectangulo {
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;

    bool Contiene(const CRectangulo& otro) const {
        return x0 <= otro.x0 && y0 <= otro.y0 && otro.x1 <= x1 && otro.y1 <= y1;
    }
};

struct BorraImagen {
    void operator()(opj_image* imagen) const;
};

/// A window of a file, decoded once, by whichever view first needs a line of it.
///
/// Views on several threads that decoded a band each would do work twice: all of them go through the whole codestream
/// and decode the code-blocks on their borders again. One decoding with as many threads as processors does it once.
class CVentanaJ2K {
  public:
    CVentanaJ2K(CString ruta, bool codestream, const CRectangulo& ventana)
        : m_sRuta(std::move(ruta)), m_bCodestream(codestream), m_Ventana(ventana) {}

    const CRectangulo& Ventana() const { return m_Ventana; }
    /// Decodes, or waits until another thread has. Any thread may call it.
    const CError& Decodifica();
    /// After a Decodifica without error: n pixels of a row of the picture, as BGR.
    /// @param componentes  room to work in, the calling thread's own
    void Linea(int fila, int columna, int n, BYTE* bgr, std::vector<BYTE>& componentes) const {
        m_Color.Linea(fila, columna, n, bgr, componentes);
    }

  private:
    CString m_sRuta;
    bool m_bCodestream;
    CRectangulo m_Ventana;
    std::once_flag m_Una;
    CError m_Error;
    std::unique_ptr<opj_image, BorraImagen> m_pImagen;
    CColorJ2K m_Color;
};

/// An open file. Views that open the same file meanwhile get the same object.
class CImagenJ2K {
  public:
    /// @param error  out: why it can't be opened
    /// @return null when it can't
    static std::shared_ptr<CImagenJ2K> Abre(const CString& ruta, CError& error);

    const CFileInfo& Informacion() const { return m_Informacion; }
    /// A window that holds this one: another view's, or a new one.
    std::shared_ptr<CVentanaJ2K> Ventana(const CRectangulo& ventana);

  private:
    CError LeeCabecera();

    CString m_sRuta;
    ULONGLONG m_nBytes = 0;  // size and time of the file: another one of the same name isn't taken for it
    LONGLONG m_nMomento = 0;
    bool m_bCodestream = false;
    CFileInfo m_Informacion;
    std::mutex m_Mutex;
    std::vector<std::weak_ptr<CVentanaJ2K>> m_Ventanas;
};

}  // namespace NCS
