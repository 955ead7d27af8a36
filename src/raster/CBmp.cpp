#include "raster/CBmp.h"

#include "raster/Resultados.h"

namespace Vertiz {

int CBmp::Leer(bool) {
    return kNoSoportado;
}
int CBmp::Grabar(CFile*) {
    return kNoSoportado;
}
bool CBmp::TienePaleta() const {
    return m_Cabecera.biBitCount == 8 && !m_Paleta.empty();
}
float CBmp::Resolucion() const {
    return static_cast<float>(m_Cabecera.biXPelsPerMeter * 0.025401);
}
bool CBmp::Crear(int, int, int, float, bool, CBloques*, const BYTE*, bool) {
    return false;
}
int CBmp::IndiceVegetacion() {
    return 1;
}
std::unique_ptr<CRasterDIB> CBmp::Nuevo(int modoFichero) const {
    return std::make_unique<CBmp>(modoFichero);
}

}  // namespace Vertiz
