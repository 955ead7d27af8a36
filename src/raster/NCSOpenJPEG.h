#pragma once
// Internal. A JPEG 2000 file as the views of it share it: its header, and the windows that are being decoded.

#include "raster/NCS.h"
#include "raster/NCSCajas.h"
#include "raster/NCSColor.h"

#include <deque>
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

/// Rows of a window that are decoded at once.
struct CBandaJ2K {
    CRectangulo ventana;
    CError error;
    std::unique_ptr<opj_image, BorraImagen> imagen;
    CColorJ2K color;  // of the image, where there is no error
};

/// How the pixels of a file are found in it.
struct CPlanJ2K {
    bool codestream = false;     ///< a raw codestream, without boxes
    bool porPartes = true;       ///< parts of the picture can be decoded by themselves
    std::vector<int> cortes{0};  ///< rows where the bands of the whole picture begin, ascending
};

/// A window of a file. Its bands are decoded once, each by whichever view first needs a line of it.
///
/// A band is made of whole rows of tiles, so that nothing is decoded twice. A picture of one tile is one band: views on
/// several threads that decoded a part each would all go through the whole codestream, and decode the code-blocks on
/// their borders again. One decoding with as many threads as processors does it once.
class CVentanaJ2K {
  public:
    CVentanaJ2K(CString ruta, const CPlanJ2K& plan, const CRectangulo& ventana);

    const CRectangulo& Ventana() const { return m_Ventana; }
    /// The band with a row of the window: decodes it, or waits until another thread has. Any thread may call it.
    std::shared_ptr<const CBandaJ2K> Banda(int fila);
    /// A view has read so many rows of a band. Once all of them are read, the band goes when the views let it go.
    void Leidas(const CBandaJ2K& banda, int filas);

  private:
    struct CLugar {
        CRectangulo ventana;
        std::mutex mutex;
        std::shared_ptr<const CBandaJ2K> banda;
        int leidas = 0;
    };
    CLugar& Lugar(int fila);
    CBandaJ2K Decodifica(const CRectangulo& ventana) const;

    CString m_sRuta;
    CPlanJ2K m_Plan;
    CRectangulo m_Ventana;
    int m_nHilos;  // of one decoding
    std::deque<CLugar> m_Lugares;
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
    CPlanJ2K m_Plan;
    CFileInfo m_Informacion;
    std::mutex m_Mutex;
    std::vector<std::weak_ptr<CVentanaJ2K>> m_Ventanas;
};

}  // namespace NCS
