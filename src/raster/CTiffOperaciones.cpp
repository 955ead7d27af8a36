#include "raster/CTiff.h"

namespace Vertiz {

int CTiff::IndiceVegetacion() {
    return 1;
}
int CTiff::AGrises(int) {
    return 1;
}
void CTiff::ReducePaleta(const std::vector<BYTE>*) {}
int CTiff::ExtraeColor(CTiff**, const BYTE*) {
    return 1;
}
void CTiff::Ensancha(int, bool) {}
int CTiff::MezclaSobre(IRaster*) {
    return 1;
}
int CTiff::CuentaColor(const BYTE*) {
    return 0;
}

}  // namespace Vertiz
