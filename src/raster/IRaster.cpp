// Opening of rasters by the extension of their name.

#include "raster/IRaster.h"

namespace Vertiz {

IRaster* CreaRaster(const wchar_t* /*nombre*/) {
    return nullptr;
}

}  // namespace Vertiz
