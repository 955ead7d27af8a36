#include "raster/CTiff.h"
#include "raster/Resultados.h"

namespace Vertiz {

int CTiff::Grabar(CFile*, const CMatriz<float>*, const CGeorreferencia*) {
    return kNoSoportado;
}

}  // namespace Vertiz
