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
bool CBmp::Crear(int ancho, int alto, int bits, float resolucion, bool rellenar, CBloques* datos, const BYTE* paleta,
                 bool soloCabecera) {
    if (!CreaCabecera(ancho, alto, bits, resolucion, paleta)) return false;
    if (soloCabecera) return true;
    m_Cabecera.biHeight = -AltoPixeles();
    if (ReservaAlmacen() && LlenaAlmacen(rellenar, datos, 16)) return true;
    Limpiar();
    return false;
}
std::unique_ptr<CRasterDIB> CBmp::Nuevo(int modoFichero) const {
    return std::make_unique<CBmp>(modoFichero);
}

}  // namespace Vertiz
