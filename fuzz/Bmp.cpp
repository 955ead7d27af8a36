// Bitmaps.

#include "raster/CBmp.h"
#include "fuzz/UsaRaster.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t n) {
    UsaRaster(datos, n, [](int modo) {
        struct Expandido : Vertiz::CBmp {
            using CBmp::CBmp;
            int Leer(bool soloCabecera) override {
                const int resultado = CBmp::Leer(soloCabecera);
                if (resultado == 1 && !soloCabecera && BytesPixel() != 1) Expande();
                return resultado;
            }
        };
        return std::make_unique<Expandido>(modo);
    });
    return 0;
}
