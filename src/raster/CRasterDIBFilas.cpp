// The walk over the rows of a picture that its operations share: progress, cancel, and both homes of the pixels.

#include "raster/CRasterDIB.h"
#include "model/Etapa.h"

namespace Vertiz {

std::size_t CRasterDIB::BytesPixelesFila() const {
    const int bytes = BytesPixel();
    return bytes == 1 || bytes == 3 ? std::size_t(Ancho()) * std::size_t(bytes) : 0;
}

int CRasterDIB::CambiaFilas(unsigned idTexto, const std::function<void(std::span<BYTE>)>& cambia) {
    const std::size_t bytes = BytesPixelesFila();
    if (m_Bloques.EstaVacio() || bytes == 0) return 1;  // nothing in memory
    const Etapa etapa(m_nNivelMensajes, idTexto);
    for (int fila = 0; fila < AltoPixeles(); ++fila) {
        cambia(FilaEnMemoria(fila).first(bytes));
        if (!etapa.Paso(fila + 1, AltoPixeles())) return 2;
    }
    return 1;
}

int CRasterDIB::MiraFilas(unsigned idTexto, const std::function<void(std::span<const BYTE>)>& mira) const {
    const std::size_t bytes = BytesPixelesFila();
    if (!TienePixeles() || bytes == 0) return 1;
    const Etapa etapa(m_nNivelMensajes, idTexto);
    std::vector<BYTE> copia;
    for (int fila = 0; fila < AltoPixeles(); ++fila) {
        const std::span<const BYTE> almacen = FilaAlmacen(fila, copia);
        if (almacen.empty()) return 2;
        mira(almacen.first(bytes));
        if (!etapa.Paso(fila + 1, AltoPixeles())) return 2;
    }
    return 1;
}

}  // namespace Vertiz
