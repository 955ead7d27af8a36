#pragma once
// Where an image lies: its north-west corner, the size of its pixels and its transformation.

#include "model/CDataTransformacion.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// Placement of an image on the terrain.
class LUMBRA_API CDataImagen {
  public:
    /// What the corner's coordinates are.
    enum Tipo : int {
        LOCAL = 0,              ///< terrain coordinates without the seed's offset
        ABSOLUTA = 1,           ///< terrain coordinates with it
        SIN_GEORREFERENCIA = 2  ///< none: the image lies in its own pixels
    };

    CDataImagen() = default;

    /// @param xOeste, yNorte outer corner of the first pixel, terrain units
    /// @param pixelX, pixelY size of a pixel, terrain units, both positive
    CDataImagen(double xOeste, double yNorte, double pixelX, double pixelY, int tipo);

    double m_dXOeste = 0.0;
    double m_dYNorte = 0.0;
    double m_dPixelX = 1.0;
    double m_dPixelY = 1.0;
    int m_nTipo = SIN_GEORREFERENCIA;

    /// The size of a pixel along x, terrain units.
    double SizePixel() const { return m_dPixelX; }

    /// The image's transformation, part of this record.
    const CDataTransformacion& DataTrans() const { return m_DataTrans; }
    CDataTransformacion& DataTrans() { return m_DataTrans; }

    /// Angles of the transformation's rotation, in degrees, and what CMatrizCuadrada::GetAngulos gives fourth.
    /// @return false, with the arguments untouched, when the rotation has none
    bool GetAngulos(double& a, double& b, double& c, double& d) const;

  private:
    CDataTransformacion m_DataTrans{CUnidadAngular(CUnidadAngular::SEXAGESIMAL)};
};

}  // namespace Vertiz
