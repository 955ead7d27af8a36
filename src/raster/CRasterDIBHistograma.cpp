#include "raster/CRasterDIB.h"

namespace Vertiz {

int CRasterDIB::Histograma(unsigned*, bool, bool) {
    return 1;
}
int CRasterDIB::Histogramas(unsigned (*)[256], int&, int&, bool, bool) {
    return 1;
}

}  // namespace Vertiz
