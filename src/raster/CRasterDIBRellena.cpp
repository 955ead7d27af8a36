#include "raster/CRasterDIB.h"

namespace Vertiz {

bool CRasterDIB::Rellena(int, int, const BYTE*, std::vector<int>*, std::vector<int>*) {
    return false;
}

}  // namespace Vertiz
