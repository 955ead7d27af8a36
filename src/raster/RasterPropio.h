#pragma once
// Rasters that belong to somebody.

#include "raster/IRaster.h"

#include <memory>

namespace Vertiz {

struct LiberaRaster {
    void operator()(IRaster* raster) const { BorraRaster(raster); }
};
/// A raster that goes with this pointer, by Borrar, unless it is handed over by release().
using RasterPropio = std::unique_ptr<IRaster, LiberaRaster>;

}  // namespace Vertiz
