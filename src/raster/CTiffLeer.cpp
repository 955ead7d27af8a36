#include "raster/CTiff.h"
#include "raster/Resultados.h"

namespace Vertiz {

int CTiff::Leer(bool) {
    return kNoSoportado;
}
int CTiff::Leer(bool, CMatriz<float>**, unsigned, int*, const float*, const float*, int, int, int, int) {
    return kNoSoportado;
}

}  // namespace Vertiz
