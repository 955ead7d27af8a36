#include "raster/CTiff.h"
#include "raster/Resultados.h"

namespace Vertiz {

int CTiff::Leer(bool soloCabecera) {
    return Leer(soloCabecera, nullptr, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0);
}
int CTiff::Leer(bool, CMatriz<float>**, unsigned, int*, const float*, const float*, int, int, int, int) {
    return kNoSoportado;
}

}  // namespace Vertiz
