#include "raster/CRasterDIB.h"

namespace Vertiz {

int CRasterDIB::Recorta(int, int, int, int, IRaster*) {
    return 1;
}
int CRasterDIB::CambiaTamano(int, int, IRaster*) {
    return 1;
}
int CRasterDIB::Escala(double, IRaster*) {
    return 1;
}
int CRasterDIB::Reducir(int, int) {
    return 1;
}
void CRasterDIB::PasaAMemoria(bool) {}
int CRasterDIB::LeerReducido(unsigned) {
    return 1;
}

}  // namespace Vertiz
