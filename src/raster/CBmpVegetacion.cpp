// The index of vegetation of bitmaps.

#include "raster/CBmp.h"
#include "raster/Grises.h"
#include "raster/TextosProgreso.h"

#include <cmath>

namespace Vertiz {

namespace {

// How near a band comes to the value that vegetation has in it: 1 at that value, less on both sides.
std::array<double, 256> Cercania(double vegetacion) {
    std::array<double, 256> tabla;
    for (int i = 0; i < 256; ++i) {
        const double banda = i + 10.0;  // keeps black off the division
        tabla[std::size_t(i)] = 1.0 - std::abs((banda - vegetacion) / (banda + vegetacion));
    }
    return tabla;
}

}  // namespace

int CBmp::IndiceVegetacion() {
    if (BytesPixel() != 3) return 1;
    const std::array<double, 256> a = Cercania(40.0), b = Cercania(60.0), c = Cercania(10.0);
    return CambiaFilas(kTextoOperacion, [&](std::span<BYTE> fila) {
        PintaGrises(fila, [&](const BYTE* p) { return static_cast<int>(a[p[0]] * b[p[1]] * c[p[2]] * 255.0); });
    });
}

}  // namespace Vertiz
