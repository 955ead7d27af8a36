#pragma once
// The image that scenes see, whatever the format of its file.

#include "raster/CBloques.h"
#include "raster/CGeorreferencia.h"
#include "platform/CFile.h"
#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <memory>
#include <vector>

namespace Vertiz {

class CTiff;

/// A picture of 8 or 24 bits a pixel, with its pixels in memory or, for one that memory can't hold, in a temporary
/// file.
///
/// Row 0 is the bottom row. A pixel of 24 bits is blue, green, red; the formulas below number its bytes from 0. A pixel
/// of 8 bits is a grey or, with a palette, an entry of it, which GetPixel and GetFila give as its three bytes. Other
/// depths can stand in a header, but access to pixels does nothing for them.
///
/// Operations on the whole picture show their progress (IPorcentaje) and give 1, or 2 when the user cancels. Those that
/// change pixels in place, from Negativo to IndiceVegetacion and ReducePaleta, need the pixels in memory: in file mode
/// they change nothing and give 1. So do those meant for 24 bits on a picture of 8.
///
/// Not thread-safe: one thread at a time uses a raster.
class LUMBRA_API IRaster {
  public:
    IRaster(const IRaster&) = delete;
    IRaster& operator=(const IRaster&) = delete;
    /// Frees everything; the temporary file is deleted.
    virtual ~IRaster();

    /// Deletes the object itself. BorraRaster takes a null pointer too.
    virtual void Borrar() { delete this; }
    /// Frees header, pixels and working buffer and deletes the temporary file: the object is empty again. The
    /// georeferencing stays.
    virtual void Limpiar() = 0;

    /// Keeps the name of the image's file: Nombre gives up to 255 characters of it, the whole is kept beside it.
    virtual void SetNombre(const wchar_t* nombre) = 0;
    /// Takes the open source file, not owned, and goes to its start.
    /// @return false when it can't be a file of this format
    virtual bool SetFichero(CFile* fichero) = 0;
    /// Ends the use of the source file.
    virtual bool CierraFichero() = 0;
    /// Reads the image, or only its header, from the source file.
    /// @return 1 read; 2 cancelled, no source file or no temporary file; kNoSoportado, kCabeceraMala or 0 for a file
    ///         that the format's reader can't take (see there)
    virtual int Leer(bool soloCabecera) = 0;

    // Of an empty object these give 0 or null.
    virtual int Alto100() const = 0;     ///< height in hundredths of a pixel, never negative
    virtual int Ancho100() const = 0;    ///< width in hundredths of a pixel
    virtual int Alto() const = 0;        ///< height in pixels, negative once there are pixels: the top row comes first
    virtual int Ancho() const = 0;       ///< width in pixels
    virtual UINT BytesFila() const = 0;  ///< bytes of a stored row, padded to four
    virtual const wchar_t* Nombre() const = 0;
    virtual int Factor100() const { return 100; }
    virtual bool TienePaleta() const = 0;    ///< one byte a pixel, standing for an entry of the palette
    virtual int BytesPixel() const = 0;      ///< bits of a pixel / 8: 1, 3, and 0 for fewer than 8 bits
    virtual float Resolucion() const = 0;    ///< dots per inch
    virtual const BYTE* Paleta() const = 0;  ///< 256 entries of blue, green, red and 0, owned by the raster; or null

    /// Allocates a working buffer of ((ancho * 8 + 31) / 32 * 4) * alto * 3 bytes in place of the former one.
    virtual bool ReservaBuffer(int ancho, int alto) = 0;
    /// Makes a new image of this size in place of what there was.
    /// @param alto     its sign doesn't count
    /// @param bits     8 or 24; 1 and 4 give a picture without access to pixels
    /// @param rellenar all pixels white; otherwise black
    /// @param datos    blocks that the pixels come from, see CBmp and CTiff; null for none
    /// @param paleta   entries of 4 bytes to copy, 2, 16 or 256 by depth; null for a ramp of grey
    /// @param soloCabecera no pixels
    /// @return false for a bad size or without room for the pixels
    virtual bool Crear(int ancho, int alto, int bits, float resolucion, bool rellenar, CBloques* datos,
                       const BYTE* paleta, bool soloCabecera) = 0;

    /// Writes one pixel of BytesPixel bytes. @return false outside the image and in file mode
    virtual bool SetPixel(int fila, int columna, const BYTE* pixel) = 0;
    /// Reads one pixel. With a radius, the average of the window of that radius, weighted by the inverse distance and
    /// without the pixel itself, is *added* to `pixel`, which has to be 0 before; a window of one pixel gives the
    /// pixel. With a palette only the first byte of its colours is averaged.
    /// @param pixel  BytesPixel bytes, three with a palette
    /// @return false outside the image, with `pixel` untouched
    virtual bool GetPixel(BYTE* pixel, int fila, int columna, int radio) const = 0;
    /// Writes n pixels of a row from a column on, as far as they fall inside. @return false when none does
    virtual bool SetFila(const BYTE* pixeles, int fila, int columna, int n) = 0;
    /// Reads n pixels of a row from a column on, as far as the image goes; what lies outside is left untouched.
    /// @param pixeles  n times BytesPixel bytes, three each with a palette
    /// @return false when none lies inside
    virtual bool GetFila(BYTE* pixeles, int fila, int columna, int n) const = 0;

    /// Writes the image in the format of its class. @return 1; 2 cancelled or without pixels; kNoSoportado when the
    /// file can't be written or the format can't hold the image
    virtual int Grabar(CFile* fichero) = 0;

    /// Fills the region of one colour that a pixel lies in, by its four neighbours.
    /// @param pilaFilas, pilaColumnas  work list to go on with; null makes the call work off one of its own
    /// @return false outside the image, without pixels in memory, or cancelled
    virtual bool Rellena(int fila, int columna, const BYTE* pixel, std::vector<int>* pilaFilas,
                         std::vector<int>* pilaColumnas) = 0;
    /// Copies the window of rows [fila0, fila1) and columns [col0, col1).
    /// @param destino  null: this object becomes the window
    /// @return 1; kTamanoMalo for a window outside the image
    virtual int Recorta(int fila0, int col0, int fila1, int col1, IRaster* destino) = 0;
    /// Resamples to a size by the nearest pixel. @return 1, 2, or kTamanoMalo for a size that isn't above 0
    virtual int CambiaTamano(int filas, int columnas, IRaster* destino) = 0;
    /// The same with one factor for both axes. @return 1, 2, or kTamanoMalo for a factor that isn't above 0 or that
    /// leaves no row or no column
    virtual int Escala(double factor, IRaster* destino = nullptr) = 0;
    /// Halves the image in place: every second pixel of every second row.
    /// @param interpolacion as for Muestra; on whole pixels all give the same
    /// @param nivel         message level of the progress
    virtual int Reducir(int interpolacion, int nivel) = 0;
    /// From file mode to memory; in file mode still when memory doesn't suffice.
    /// @param rellenar  white where the file is short, instead of black
    virtual void PasaAMemoria(bool rellenar) = 0;

    virtual int NumMuestras() const = 0;   ///< samples kept of each pixel
    virtual int BytesMuestra() const = 0;  ///< bytes of a stored pixel
    virtual CGeorreferencia* Georreferencia() = 0;
    virtual bool TieneGeorreferencia() const = 0;  ///< a read has filled the georeferencing from the file
    virtual int Tipo() const = 0;                  ///< 20 TIFF, 21 BMP, 22 JPEG, 23 ECW and JPEG 2000
    virtual void SetGeorreferencia(const CGeorreferencia& georreferencia) = 0;

    // Formulas number the bytes of a pixel from 0 and are worked out in doubles; a result becomes a byte by cutting it
    // off, unless rounding is told. 0 / 0 counts as 0. Pictures with palette are worked on by the numbers of their
    // entries.

    /// Square convolution of each band, in both modes: the absolute sum, at most 255. A margin of half a side, rounded
    /// down, keeps its values on all four edges; an even kernel reaches further down and left.
    /// @param tipo    0 Roberts (side 2), 1 Prewitt, 2 Sobel (side 3): both directions, added; of any side: 3 all
    ///                1/9, 4 all 1 and double in the middle row and column, 6 and 7 Laplace with a centre of 4 and 8;
    ///                others change nothing
    /// @param tamano  side of the kernel where the kind leaves it open
    /// @return 1, 2, or kTamanoMalo with the image unchanged for a side below 1
    virtual int Filtra(int tipo, int tamano) = 0;
    virtual int Negativo() = 0;  ///< each byte inverted
    /// HSV value, 0 to 255, in all bands; 24 bits only.
    /// @param desplazamiento  below 256 the value is shifted by it and 128 more, wrapping past 255
    virtual int AGrises(int desplazamiento = 256) = 0;
    /// Each grey, which is byte 0, as a hue (255 for 360 degrees) of saturation 1 and value 0.5, rounded; 24 bits only.
    virtual int GrisesAColor() = 0;
    virtual int Luminancia() = 0;  ///< 0.2989 byte 0 + 0.587 byte 1 + 0.114 byte 2, in all bands; 24 bits only
    /// 16 + 0.2567890625 byte 0 + 0.50412890625 byte 1 + 0.09790625 byte 2, rounded, in all bands; 24 bits only.
    virtual int LuminanciaY() = 0;
    /// Counts of 256 greys; a pixel of 24 bits counts under 0.212655 byte 0 + 0.715158 byte 1 + 0.072187 byte 2.
    /// @param cuentas  out: 256 counts, in place of what was there
    /// @param sinBlanco, sinNegro  leave out pure white, pure black: 255 and 0 of 8 bits
    virtual int Histograma(unsigned* cuentas, bool sinBlanco, bool sinNegro) = 0;
    /// Five tables: grey, byte 0, byte 1, byte 2, Y of YCbCr; of an image of 8 bits all are equal.
    /// @param minY, maxY  out: least and greatest Y that was counted, 0 without any
    virtual int Histogramas(unsigned (*tablas)[256], int& minY, int& maxY, bool sinBlanco, bool sinNegro) = 0;
    /// Linear stretch; 24 bits only. Equal limits do nothing, limits upside down invert.
    /// @param banda  0: the Y of YCbCr from minimo..maximo to 16..235, its colour kept; 1 to 3: byte 0 to 2 to 0..255
    /// @param sinBlanco, sinNegro  leave pure white, pure black untouched
    virtual int Estira(int minimo, int maximo, int banda, bool sinBlanco, bool sinNegro) = 0;
    /// Each byte b becomes (b + brillo - 0.5) (contraste / 100 + 1) + 0.5, truncated, from 0 to 255.
    virtual int BrilloContraste(double brillo, double contraste) = 0;
    /// ((A - B) / (A + B) + 1) 255 / 2 of two different bands from 0 to 2, in all bands; 24 bits only.
    virtual int IndiceNormalizado(int a, int b) = 0;
    /// An index of vegetation, each class's own; 24 bits only.
    virtual int IndiceVegetacion() = 0;

    // What follows does its work in CTiff and the classes derived from it; CBmp gives the stated result and does
    // nothing.

    /// Normalised cross-correlation with a template. @param destino  a new CTiff is stored in it when it is null
    /// @return 1
    virtual int CorrelaPlantilla(IRaster* plantilla, CTiff** destino, unsigned modo, bool completa) = 0;
    /// Each pixel becomes the nearest colour of a palette. @param paleta  NumMuestras bytes a colour; null: a palette
    /// of ten colours of the library's own, whose black has to be twice as near. The first of equals stands.
    virtual void ReducePaleta(const std::vector<BYTE>* paleta) = 0;
    /// Parts the image into regions of like colour.
    /// @param destino     out: a new picture, the caller's, that shows each region in its mean colour; null for none
    /// @param sigma       Gaussian smoothing beforehand, pixels
    /// @param c           greater values give larger regions
    /// @param minimo      regions with fewer pixels join a neighbour
    /// @param cierra      the image closes on itself: the last column lies beside the first
    /// @param componentes out: count of regions; may be null
    /// @return 1, or 2 when cancelled
    virtual int SegmentaImagen(CTiff** destino, float sigma, float c, int minimo, bool cierra, int* componentes) = 0;
    /// A picture of the same kind with the pixels of one colour only, on white.
    /// @param destino  a new CTiff, the caller's, is stored in it when it is null; otherwise that object takes the
    /// result
    /// @param color    three bytes; one for a picture of 8 bits without palette
    /// @return 1; kNoSoportado without room for it
    virtual int ExtraeColor(CTiff** destino, const BYTE* color) = 0;
    /// Adds columns of white, entry 255 where there is a palette, on the left or on the right. Without room for them
    /// the picture stays as it was. The georeferencing isn't changed.
    virtual void Ensancha(int columnas, bool izquierda) = 0;
    /// Copies the pixels to `otro` where that one isn't pure white. @return 1, kTamanoMalo for different sizes or
    /// depths
    virtual int MezclaSobre(IRaster* otro) = 0;
    virtual int CuentaColor(const BYTE* color) = 0;  ///< pixels of one colour, as in ExtraeColor
    /// Reads every `reduccion`-th pixel of every such row of the file; CECW only, 1 elsewhere.
    virtual int LeerReducido(unsigned reduccion) = 0;

    /// Samples at a position in hundredths of a pixel, rows counted from the bottom.
    /// @param pixel         BytesPixel bytes, three with a palette; untouched outside the image
    /// @param interpolacion -1 the pixel that the position lies in; 0 nearest, white past the last row or column; 1
    ///                      bilinear; 2 cubic convolution
    void Muestra(BYTE* pixel, int x100, int y100, int interpolacion) const;

    /// Message level of the progress; 3 in a new object.
    int NivelMensajes() const { return m_nNivelMensajes; }
    void SetNivelMensajes(int nivel) { m_nNivelMensajes = nivel; }

  protected:
    /// @param modoFichero  not 0: pixels go to a temporary file
    explicit IRaster(int modoFichero) : m_bModoFichero(modoFichero) {}

    /// Closes the temporary file, and deletes it unless it is shared.
    void LiberaTemporal();

    int m_nNivelMensajes = 3;
    int m_bModoFichero;
    std::unique_ptr<CFile> m_pTemporal;  ///< the stored picture: rows of BytesFila, the top one first, no header
    CString m_sTemporal;                 ///< its path
    CBloques m_Bloques;                  ///< the stored picture in memory mode
    int m_bCompartido = 0;               ///< the temporary file isn't this object's to delete
};

/// Borrar, for a pointer that may be null.
inline void BorraRaster(IRaster* raster) {
    if (raster) raster->Borrar();
}

/// An empty raster for a file of this name, by the end of the name without regard to case; the caller owns it and goes
/// on with SetFichero and Leer. "tif" and "tiff" give a LibTiff, "bmp" a CBmp, "jpg" and "jpeg" a CJpeg, "ecw" and
/// "jp2" a CECW.
/// @return null for any other name
LUMBRA_API IRaster* CreaRaster(const wchar_t* nombre);

}  // namespace Vertiz
