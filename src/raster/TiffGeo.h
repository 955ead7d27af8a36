#pragma once
// Internal. The tags of GeoTIFF 1.0, gathered from a directory, and what they mean.

#include "raster/TiffPagina.h"

namespace Vertiz {

/// Values of the tags; empty for one that isn't there.
struct ClavesGeo {
    std::vector<double> escala;          ///< 33550 ModelPixelScale
    std::vector<double> puntos;          ///< 33922 ModelTiepoint
    std::vector<double> transformacion;  ///< 34264 ModelTransformation
    std::vector<std::uint64_t> claves;   ///< 34735 GeoKeyDirectory
    std::vector<double> reales;          ///< 34736 GeoDoubleParams
};

/// Puts into a page the georeferencing that its tags tell; none without tags.
void LeeGeorreferencia(const ClavesGeo& geo, PaginaTiff& pagina);

}  // namespace Vertiz
