#include "raster/CTiff.h"

namespace Vertiz {

CTiff::~CTiff() = default;
bool CTiff::SetFichero(CFile*) {
    return false;
}
bool CTiff::Crear(int, int, int, float, bool, CBloques*, const BYTE*, bool) {
    return false;
}
void CTiff::Limpiar() {
    CRasterDIB::Limpiar();
}
int CTiff::NumMuestras() const {
    return 0;
}
std::unique_ptr<CRasterDIB> CTiff::Nuevo(int modoFichero) const {
    return std::make_unique<CTiff>(modoFichero);
}

}  // namespace Vertiz
