#pragma once
// Bitmaps.

#include "raster/CRasterDIB.h"

namespace Vertiz {

/// A device-independent bitmap, uncompressed (BMP version 3 and later), with 8 or 24 bits in full use; other depths
/// load but have no access to pixels before Expande.
///
/// Leer gives kNoSoportado for a compressed file, one of the version before Windows, and one whose sizes make no sense.
/// Rows that a file is too short for stay black. Without memory the picture goes to a temporary file.
class LUMBRA_API CBmp : public CRasterDIB {
  public:
    explicit CBmp(int modoFichero = 0) : CRasterDIB(modoFichero) {}

    int Leer(bool soloCabecera) override;
    int Grabar(CFile* fichero) override;
    bool TienePaleta() const override;
    float Resolucion() const override;
    /// Block i of the picture takes the bytes from 16 times i times its size on of what `datos` holds, end to end: a
    /// host that hands blocks over lays them out so. What lies past the end stays 0.
    bool Crear(int ancho, int alto, int bits, float resolucion, bool rellenar, CBloques* datos, const BYTE* paleta,
               bool soloCabecera) override;

    /// Makes 24 bits of a picture of another depth: of 1, 2, 4 and 8 bits by its palette, of 16 (five bits a channel)
    /// and of 32 bits.
    /// @return 1; 2 cancelled, without pixels or without room, with the picture as it was
    int Expande();

    int NumMuestras() const override { return 3; }
    int BytesMuestra() const override { return 3; }
    int Tipo() const override { return 21; }

    /// (1 - |(A - 40) / (A + 40)|) (1 - |(B - 60) / (B + 60)|) (1 - |(C - 10) / (C + 10)|) of the bytes + 10, in all
    /// bands.
    int IndiceVegetacion() override;

    int CorrelaPlantilla(IRaster*, CTiff**, unsigned, bool) override { return 1; }
    void ReducePaleta(const std::vector<BYTE>*) override {}
    int SegmentaImagen(CTiff**, float, float, int, bool, int*) override { return 1; }
    int ExtraeColor(CTiff**, const BYTE*) override { return 1; }
    void Ensancha(int, bool) override {}
    int MezclaSobre(IRaster*) override { return 1; }
    int CuentaColor(const BYTE*) override { return 0; }

  protected:
    std::unique_ptr<CRasterDIB> Nuevo(int modoFichero) const override;

  private:
    const wchar_t* LeeCabecera(ULONGLONG& pixeles);
    void LeePaleta(ULONGLONG posicion);
    int LeePixeles(ULONGLONG posicion);
    void BuscaExtremosPaleta();
};

}  // namespace Vertiz
