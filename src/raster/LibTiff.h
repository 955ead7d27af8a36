#pragma once
// TIFF with any compression, through libtiff.

#include "raster/CTiff.h"

#include <string>

struct tiff;

namespace Vertiz {

class Etapa;

/// A picture read from a TIFF that libtiff knows: every compression of it, strips and tiles, classic and big. Pictures
/// have 24 bits and show what libtiff's RGBA interface shows, without the alpha channel. One sample of 16 bits, or of
/// 32 or 64 bits in floating point, is a table of values and no picture.
///
/// Only the first page is read, and Leer can be called again for it. A file that is damaged in part gives the rows that
/// could be decoded, the others black, and a message.
///
/// While a source is set, its file is open a second time, by its path.
class LUMBRA_API LibTiff : public CTiff {
  public:
    explicit LibTiff(int modoFichero = 0) : CTiff(modoFichero) {}
    ~LibTiff() override;

    /// Opens the file of this path; a file opened before is closed. @return false when libtiff can't read it
    bool SetFichero(CFile* fichero) override;
    bool CierraFichero() override;

    using CTiff::Leer;
    /// As told in CTiff, but the record of samples and fixed limits of grey count for nothing: libtiff chooses and
    /// scales. A header alone is that of the whole page.
    /// @param tabla  out: the table, the caller's. Values of 16 bits have row 0 at the bottom, floating-point ones at
    ///               the top
    /// @return 1; 2 without a source or cancelled; kNoSoportado for values without a `tabla` and for what libtiff can't
    ///         show
    int Leer(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, int* registro, const float* minimo,
             const float* maximo, int col0, int col1, int fila0, int fila1) override;

    struct Pagina;   ///< internal: what the file tells of the page
    struct Ventana;  ///< internal: the part that is read

  private:
    /// @param mapeado  the file is mapped into memory, where libtiff puts up with byte counts that are too great; but
    ///                 mapped pages count as the process's, and a file that gets shorter meanwhile ends it
    bool Abre(const CString& ruta, bool mapeado);
    bool LeeDirectorio(Pagina& pagina);
    bool CreaSoloCabecera(const Pagina& pagina, int ancho, int alto);
    int LeePagina(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, Ventana ventana);
    int LeeTabla(const Pagina& pagina, const Ventana& ventana, const Etapa& etapa, CMatriz<float>*& tabla,
                 unsigned limiteCeldas);
    int LeeImagen(const Pagina& pagina, const Ventana& ventana, const Etapa& etapa);

    ::tiff* m_pTiff = nullptr;  ///< null when closed
    bool m_bMapeado = false;
    std::string m_sFallo;  ///< what libtiff last complained of, UTF-8
};

}  // namespace Vertiz
