#include "raster/CRasterDIB.h"

namespace Vertiz {

int CRasterDIB::Filtra(int, int) {
    return 1;
}

}  // namespace Vertiz
