#include "raster/CRasterDIB.h"

namespace Vertiz {

int CRasterDIB::Negativo() {
    return 1;
}
int CRasterDIB::AGrises(int) {
    return 1;
}
int CRasterDIB::GrisesAColor() {
    return 1;
}
int CRasterDIB::Luminancia() {
    return 1;
}
int CRasterDIB::LuminanciaY() {
    return 1;
}
int CRasterDIB::Estira(int, int, int, bool, bool) {
    return 1;
}
int CRasterDIB::BrilloContraste(double, double) {
    return 1;
}
int CRasterDIB::IndiceNormalizado(int, int) {
    return 1;
}

}  // namespace Vertiz
