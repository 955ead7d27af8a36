#include "raster/CTiff.h"

namespace Vertiz {

int CTiff::SegmentaImagen(CTiff**, float, float, int, bool, int*) {
    return 1;
}

}  // namespace Vertiz
