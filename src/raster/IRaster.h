#pragma once
// The image that scenes see, whatever the format of its file.

#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

class CFile;

namespace Vertiz {

/// A picture of 8 or 24 bits. Row 0 is the bottom row. A pixel's bytes are in the order of the file: blue, green, red
/// in a bitmap; with a palette, GetPixel and GetFila give the three bytes of the entry.
///
/// Not thread-safe: one thread at a time reads a raster.
class LUMBRA_API IRaster {
  public:
    virtual ~IRaster() = default;

    /// Deletes the object itself. Safe on a null pointer through BorraRaster.
    virtual void Borrar() { delete this; }

    /// Frees header, pixels and temporary file: the object is empty again.
    virtual void Limpiar() = 0;

    /// Copies up to 256 characters of the image's name.
    virtual void SetNombre(const wchar_t* nombre) = 0;

    /// Takes the open source file, not owned, and goes to its start.
    virtual bool SetFichero(CFile* fichero) = 0;

    /// Ends the use of the source file.
    virtual bool CierraFichero() = 0;

    /// Reads the image, or only its header, from the source file.
    /// @return 1 read, 2 cancelled or without room for the pixels, 0 not an image of this format
    virtual int Leer(bool soloCabecera) = 0;

    virtual int Alto100() const = 0;     ///< height in hundredths of a pixel, never negative
    virtual int Ancho100() const = 0;    ///< width in hundredths of a pixel
    virtual int Alto() const = 0;        ///< height in pixels, negative in a file stored from the top
    virtual int Ancho() const = 0;       ///< width in pixels
    virtual UINT BytesFila() const = 0;  ///< bytes of a row, padded to four
    virtual const wchar_t* Nombre() const = 0;
    virtual int Factor100() const { return 100; }
    virtual bool TienePaleta() const = 0;    ///< one byte a pixel, standing for a palette's entry
    virtual int BytesPixel() const = 0;      ///< 1 or 3
    virtual float Resolucion() const = 0;    ///< dots per inch
    virtual const BYTE* Paleta() const = 0;  ///< 256 entries of 4 bytes, owned by the raster; null without palette

    /// Makes a new image of this size in place of what there was.
    /// @param bits     8 or 24
    /// @param relleno  colour of all pixels, BytesPixel bytes; null leaves them 0
    /// @param datos    pixels to copy, bottom row first, rows of BytesFila; null for none
    /// @param paleta   256 entries of 4 bytes to copy; null for none
    /// @return 1 made, 0 bad size or depth, 2 no room
    virtual int Crear(int ancho, int alto, int bits, float resolucion, const BYTE* relleno, const BYTE* datos,
                      const BYTE* paleta, bool soloCabecera) = 0;

    /// Writes one pixel of BytesPixel bytes; false outside the image.
    virtual bool SetPixel(int fila, int columna, const BYTE* pixel) = 0;

    /// Reads one pixel; with a radius, adds the average of the window weighted by inverse distance to pixel.
    /// @return false outside the image, with pixel untouched
    virtual bool GetPixel(BYTE* pixel, int fila, int columna, int radio) const = 0;

    /// Reads cantidad pixels of a row from columna on, as far as the image goes.
    virtual bool GetFila(BYTE* pixeles, int fila, int columna, int cantidad) const = 0;

    /// Halves the image in place.
    virtual int Reducir(int interpolacion, int nivel) = 0;

    virtual int NumMuestras() const = 0;  ///< samples of a pixel
    virtual int Tipo() const = 0;         ///< 20 TIFF, 21 BMP, 22 JPEG, 23 ECW
};

/// Borrar, for a pointer that may be null.
inline void BorraRaster(IRaster* raster) {
    if (raster) raster->Borrar();
}

/// An empty raster for a file of this name, by the end of the name without regard to case; the caller owns it and goes
/// on with SetFichero and Leer.
/// @return null for a name that no format of the library takes; no format is there yet, so always null
LUMBRA_API IRaster* CreaRaster(const wchar_t* nombre);

}  // namespace Vertiz
