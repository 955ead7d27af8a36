// JPEG.

#include "raster/CJpeg.h"
#include "fuzz/UsaRaster.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t n) {
    UsaRaster(datos, n, [](int modo) {
        // What a large picture adds is time.
        struct Pequeno : Vertiz::CJpeg {
            using CJpeg::CJpeg;
            int Leer(bool soloCabecera) override {
                const int resultado = CJpeg::Leer(true);
                if (resultado != 1 || soloCabecera) return resultado;
                return LONGLONG{Ancho()} * std::abs(Alto()) <= 250'000 ? CJpeg::Leer(false) : 2;
            }
            using CJpeg::Leer;
        };
        return std::make_unique<Pequeno>(modo);
    });
    return 0;
}
