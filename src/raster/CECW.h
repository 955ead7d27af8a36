#pragma once
// ECW and JPEG 2000.

#include "raster/CTiff.h"

namespace Vertiz {

/// A picture of 24 bits read from JPEG 2000 (files .jp2 and raw codestreams) or, where the library was built with a kit
/// for it, from ECW. The picture is read in bands of rows, one for each processor. Whatever the file's depth, sign,
/// subsampling, palette or colour model, the pixels are blue, green, red of 8 bits; what is transparent isn't told.
///
/// The georeferencing is a pixel scale and one tie point, the outer corner of the top left pixel. It comes from the
/// file (GeoJP2) or from a world file beside it; without either, a pixel counts as 1 unit from 0, 0 and
/// TieneGeorreferencia is false.
///
/// Reading gives 1; 0 for a file that can't be read, with the reason as a message of the progress (IPorcentaje) and no
/// pixels; 2 without a file and a name; kTamanoMalo for bad arguments.
class LUMBRA_API CECW : public CTiff {
  public:
    explicit CECW(int modoFichero = 0) : CTiff(modoFichero) {}

    /// Takes the file, of which only the path is used, and goes to its start. Always true: nothing is read yet.
    bool SetFichero(CFile* fichero) override;

    int Leer(bool soloCabecera) override { return Leer(soloCabecera, 0, 0, 0, 0); }
    /// Reads a window: columns [x0, x1) and rows [y0, y1), rows from the top, cut at the picture's edges.
    /// @param x0, x1  the whole width unless x0 < x1
    /// @param y0, y1  the whole height unless y0 < y1
    /// @return as above; kTamanoMalo also for a window outside the picture. A cancel stops nothing and is no failure.
    int Leer(bool soloCabecera, int x0, int x1, int y0, int y1);
    /// These formats hold no tables of values: kNoSoportado.
    int Leer(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, int* registro, const float* minimo,
             const float* maximo, int col0, int col1, int fila0, int fila1) override;
    int LeerReducido(unsigned reduccion) override;

    /// Reads a window by several threads at once, each with a band of rows.
    /// @param numHilos   threads; no more than there are rows are started
    /// @param reduccion  every such pixel of every such row, from the first on; 0 and 1 take all
    int LeerHilos(const wchar_t* ruta, int numHilos, unsigned reduccion, int x0, int x1, int y0, int y1);

    int Tipo() const override { return 23; }

  private:
    /// The path of the source file, else the name; empty without either.
    CString RutaFichero() const;
    int LeeCabecera(const CString& ruta);
    void PonGeorreferencia(double celdaX, double celdaY, double origenX, double origenY);
};

}  // namespace Vertiz
