#pragma once
// A change of datum between two UTM systems, by seven parameters or by an NTv2 grid.

#include "model/CCoor.h"
#include "model/CSistemaReferencia.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <span>

namespace Vertiz {

/// How coordinates of one reference system become those of another: UTM to geodetic on the first ellipsoid, the
/// change of datum, and back to UTM on the second.
///
/// Without a grid the change is the Helmert transformation of geocentric coordinates in seven parameters, in the
/// position-vector convention (EPSG method 1033/9606), and heights are ellipsoidal and change too. With a grid it is
/// the horizontal shift of an NTv2 file (EPSG method 9615) and heights stay.
class LUMBRA_API CDataHelmertNTV2 {
  public:
    CSistemaReferencia m_Origen;
    CSistemaReferencia m_Destino;

    double m_dTX = 0.0;  ///< translations, metres
    double m_dTY = 0.0;
    double m_dTZ = 0.0;
    double m_dRX = 0.0;  ///< rotations, arc seconds, position vector
    double m_dRY = 0.0;
    double m_dRZ = 0.0;
    double m_dEscala = 0.0;  ///< difference of scale, parts per million

    CString m_SzRejilla;  ///< path or name of the NTv2 grid; empty for the seven parameters

    /// Both systems are valid, all parameters finite, and the grid's name has no comma and no @ in front. The grid
    /// itself is looked for when it is used.
    bool EsValida() const;

    /// Points of the first system to the second, in place, x and y in metres, z metres over the ellipsoid.
    /// A point outside the grid, or with no result, gets NaN in x and y.
    /// @return false when a point had no result, or when the operation can't be made (EsValida false, grid missing):
    ///         then all points stay as they were
    /// @thread any; each has a geodetic context of its own
    bool Transforma(std::span<CCoor3D<double>> puntos) const;

    /// The other way.
    bool TransformaInversa(std::span<CCoor3D<double>> puntos) const;
};

}  // namespace Vertiz
