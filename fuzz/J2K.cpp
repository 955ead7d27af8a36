// JPEG 2000: as every picture, and by windows and reduced, on several threads.

#include "raster/CECW.h"
#include "platform/Memoria.h"
#include "fuzz/UsaRaster.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t n) {
    UsaRaster(datos, n, [](int modo) { return std::make_unique<Vertiz::CECW>(modo); });

    LimitaMemoria(ULONGLONG{16} << 20);  // the decoder works on integers of 32 bits
    const CString nombre = FicheroEnMemoria(datos, n);
    Vertiz::CECW imagen;
    if (imagen.LeerHilos(nombre, 2, 0, 0, 0, 0, 0) != 1) return 0;
    imagen.LeerHilos(nombre, 3, 0, 1, imagen.Ancho(), 2, 7);
    imagen.LeerHilos(nombre, 2, 3, 0, 0, 0, 0);
    return 0;
}
