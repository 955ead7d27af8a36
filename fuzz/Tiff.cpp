// TIFF through the library's own reader: pictures, then every page as a table, and through a window.

#include "raster/CTiff.h"
#include "fuzz/UsaRaster.h"

#include <memory>

using Vertiz::CMatriz;
using Vertiz::CTiff;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t n) {
    UsaRaster(datos, n, [](int modo) { return std::make_unique<CTiff>(modo); });

    CFile fichero(FicheroEnMemoria(datos, n), CFile::modeRead);
    CTiff tiff;
    if (!tiff.SetFichero(&fichero)) return 0;
    for (int pagina = 0; pagina < 8; ++pagina) {
        int registro[]{2, pagina, 0};
        CMatriz<float>* tabla = nullptr;
        const int resultado = tiff.Leer(false, &tabla, 64, registro, nullptr, nullptr, pagina, 5, 0, pagina);
        const std::unique_ptr<CMatriz<float>> suya(tabla);
        if (resultado == 2) break;
    }
    return 0;
}
