#pragma once
// TIFF, and the image model that the compressed formats fill.

#include "raster/CRasterDIB.h"
#include "model/CMatriz.h"

#include <cstdint>
#include <set>
#include <vector>

namespace Vertiz {

class MuestrasTiff;
struct PaginaTiff;
struct VentanaTiff;

/// A picture read from TIFF 6.0 or BigTIFF by the library's own reader: both byte orders, strips and tiles,
/// uncompressed or PackBits, with GeoTIFF tags. One sample of photometric 0, 1 or 3 is stored with 8 bits a pixel,
/// everything else with 24. Files with other compressions are LibTiff's.
///
/// A read picture always has black as 0 and 8 bits a sample. Samples of more bits are stretched: from what the file
/// tells as their largest value, else from the least and greatest that it holds. So are grids of values, which a page
/// is by its GeoTIFF keys: one sample a pixel, and pixels that are points or samples of 16 or 32 bits.
///
/// A file may hold several pages: every Leer goes on to the next, and after the last gives 2. SetFichero starts anew,
/// so whoever reads the header first calls it again for the pixels.
class LUMBRA_API CTiff : public CRasterDIB {
  public:
    explicit CTiff(int modoFichero = 0) : CRasterDIB(modoFichero) {}
    ~CTiff() override;

    /// Reads the header of the file too. @return false when it isn't a TIFF
    bool SetFichero(CFile* fichero) override;
    int Leer(bool soloCabecera) override;
    /// Reads a page, as a picture or, where it holds a grid of values, as a table.
    /// @param tabla        may be null, for a picture in any case; out: the table, the caller's, row 0 at the bottom,
    ///                     or null when the page is a picture
    /// @param limiteCeldas not 0: a table with more cells goes to a file
    /// @param registro     the samples that become red, green and blue, where the page has colours; null for 0, 1 and
    ///                     2, which also stand for samples that the page doesn't have. Out: each below 3 has become 2
    ///                     minus itself
    /// @param minimo, maximo  values of a grid that become black and white, also upside down; null measures them
    /// @param col0, col1, fila0, fila1  window of the page, half-open, rows from the top, clipped to it; both of an
    ///                     axis 0 for the whole of it. The georeferencing stays that of the page
    /// @return 1; 2 without a source, after the last page or cancelled; kNoSoportado for a page that is damaged or that
    ///         this reader can't take, with a message, and without room for the pixels. The object is empty then.
    virtual int Leer(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, int* registro,
                     const float* minimo, const float* maximo, int col0, int col1, int fila0, int fila1);

    /// Writes a classic little-endian TIFF of one strip from the start of the file on, with the georeferencing that a
    /// read has found.
    int Grabar(CFile* fichero) override;
    /// @param tabla           written in place of the picture, as 32-bit floats, when georreferencia is given too;
    ///                        row 0 at the bottom
    /// @param georreferencia  written as GeoTIFF tags; null for none
    /// @return 1; 2 cancelled or without pixels; kNoSoportado above 4 GiB, for fewer than 8 bits a pixel and when the
    ///         file can't be written. What was written is cut off again then.
    int Grabar(CFile* fichero, const CMatriz<float>* tabla, const CGeorreferencia* georreferencia);

    bool TienePaleta() const override;
    float Resolucion() const override { return m_fResolucionImagen; }
    /// Block i takes the bytes from i times its size on of what `datos` holds; blocks of the picture's own size and
    /// count are moved in, and `datos` ends up empty. Without memory the picture goes to a temporary file.
    bool Crear(int ancho, int alto, int bits, float resolucion, bool rellenar, CBloques* datos, const BYTE* paleta,
               bool soloCabecera) override;
    void Limpiar() override;

    int NumMuestras() const override;
    int BytesMuestra() const override { return m_nBytesMuestra; }
    int Tipo() const override { return 20; }

    /// White where 3 g - 2.4 r - b of the chromatic coordinates is above 0 (excess green less excess red), else black.
    int IndiceVegetacion() override;
    /// As told in IRaster; the ranges of hue, saturation and value go to the progress as messages.
    int AGrises(int desplazamiento = 256) override;
    int CorrelaPlantilla(IRaster* plantilla, CTiff** destino, unsigned modo, bool completa) override;
    void ReducePaleta(const std::vector<BYTE>* paleta) override;
    int SegmentaImagen(CTiff** destino, float sigma, float c, int minimo, bool cierra, int* componentes) override;
    int ExtraeColor(CTiff** destino, const BYTE* color) override;
    void Ensancha(int columnas, bool izquierda) override;
    int MezclaSobre(IRaster* otro) override;
    int CuentaColor(const BYTE* color) override;

    /// Offset in the file of the page to read next; 0 after the last.
    std::uint64_t OffsetDirectorio() const { return m_nOffsetDirectorio; }
    /// 255 / (maximum - minimum) of the last values that were scaled to greys.
    double EscalaGris() const { return m_dEscalaGris; }

  protected:
    std::unique_ptr<CRasterDIB> Nuevo(int modoFichero) const override;
    /// Makes `nueva` a white picture of this height, depth, samples and palette. @return as Crear
    bool CreaSemejante(CTiff& nueva, int ancho) const;
    void TomaImagen(CRasterDIB& otra) override;
    void HeredaAspecto(const CRasterDIB& otra) override;
    int FalloAlmacen() const override;

  private:
    struct Peticion;  // the arguments of Leer
    int LeePagina(bool soloCabecera, const Peticion& peticion);
    bool TomaCabecera(const PaginaTiff& pagina, int ancho, int alto);
    void TomaAspecto(const PaginaTiff& pagina);
    int LeeTabla(const PaginaTiff& pagina, const VentanaTiff& ventana, const Peticion& peticion);
    int LeeImagen(const PaginaTiff& pagina, const VentanaTiff& ventana, const Peticion& peticion);
    int MideEscala(const PaginaTiff& pagina, const VentanaTiff& ventana, const Peticion& peticion,
                   MuestrasTiff& muestras);
    void ComunicaLimite(double limite) const;

    int GrabaImagen(CFile& fichero, const CGeorreferencia* georreferencia);
    int GrabaTabla(CFile& fichero, const CMatriz<float>& tabla, const CGeorreferencia& georreferencia);

    std::set<std::uint64_t> m_DirectoriosLeidos;

  protected:
    std::uint16_t m_nOrdenBytes = 0;  ///< 0x4949 little-endian, 0x4D4D big-endian
    std::uint16_t m_nVersion = 0;     ///< 42 classic, 43 big
    std::uint64_t m_nOffsetDirectorio = 0;
    std::vector<std::uint16_t> m_BitsMuestra;  ///< of each sample
    std::uint16_t m_nMuestrasPixel = 0;
    std::uint16_t m_nUnidadResolucion = 1;
    float m_fResolucionX = 0.0F, m_fResolucionY = 0.0F;
    float m_fResolucionImagen = 0.0F;
    std::uint16_t m_nBytesMuestra = 0;
    std::uint16_t m_nFotometrica = 0;
    double m_dEscalaGris = 1.0;
};

}  // namespace Vertiz
