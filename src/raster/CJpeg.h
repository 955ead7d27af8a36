#pragma once
// JPEG, in both directions.

#include "raster/CTiff.h"

namespace Vertiz {

class Etapa;

/// A picture read from or written to JPEG (ITU-T T.81) through libjpeg. It has 24 bits; of grey files all three bytes
/// are equal. Four components (CMYK) are read as black.
///
/// A file that ends early gives the rows that could be decoded, the rest as libjpeg fills it, and a message.
class LUMBRA_API CJpeg : public CTiff {
  public:
    explicit CJpeg(int modoFichero = 0) : CTiff(modoFichero) {}

    /// Keeps the file and goes to its start; nothing is read yet.
    bool SetFichero(CFile* fichero) override;
    /// @return 1; 2 without a source, for what isn't a JPEG or can't be decoded, without room, or cancelled;
    ///         kCabeceraMala when the header isn't whole
    int Leer(bool soloCabecera) override;
    /// A JPEG holds no table. @return kNoSoportado
    int Leer(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, int* registro, const float* minimo,
             const float* maximo, int col0, int col1, int fila0, int fila1) override;

    using CTiff::Grabar;
    /// Writes a JPEG of quality 75. The picture has to be in memory and of 24 bits: one of 8 comes out wrong, three
    /// lines of the file running through each row.
    /// @return 1; 2 without pixels in memory, when libjpeg or the file fails, or cancelled: nothing stays in the file
    int Grabar(CFile* fichero) override;

    int Tipo() const override { return 22; }

  private:
    class Lector;
    int LeePixeles(Lector& lector, const Etapa& etapa);
};

}  // namespace Vertiz
