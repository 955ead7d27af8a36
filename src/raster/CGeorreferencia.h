#pragma once
// Where a picture lies, in the terms of GeoTIFF.

#include "model/CElipsoide.h"
#include "platform/Exporta.h"

#include <array>
#include <vector>

namespace Vertiz {

/// The georeferencing of a raster, as GeoTIFF 1.0 tells it (tags 33550, 33922 and 34264, and the keys named below).
struct LUMBRA_API CGeorreferencia {
    CElipsoide m_Elipsoide;
    double m_dEscala[3]{1.0, 1.0, 1.0};  ///< size of a pixel in x, y and z, terrain units
    double m_dTransformacion[16]{};      ///< from pixels to terrain, by rows; all 0 when there is none
    /// Column, row and level of a pixel, counted from the top left corner, and x, y, z of the same point in the
    /// terrain.
    std::vector<std::array<double, 6>> m_PuntosControl;
    int m_nTipoModelo = 3;         ///< key 1024
    int m_nTipoRaster = 2;         ///< key 1025: 1 pixels are areas, 2 points
    int m_nUnidadLineal = 9001;    ///< metres
    int m_nUnidadAngular = 9105;   ///< key 2054
    int m_nTipoGeografico = 4326;  ///< key 2048
};

}  // namespace Vertiz
