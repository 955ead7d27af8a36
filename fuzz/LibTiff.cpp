// TIFF through libtiff, as a picture and as a table.

#include "raster/LibTiff.h"

#include "fuzz/UsaRaster.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t n) {
    UsaRaster(datos, n, [](int modo) {
        // What a large picture adds is time.
        struct Pequeno : Vertiz::LibTiff {
            using LibTiff::LibTiff;
            int Leer(bool soloCabecera) override {
                const int resultado = LibTiff::Leer(true);
                if (resultado != 1 || soloCabecera) return resultado;
                if (LONGLONG{Ancho()} * std::abs(Alto()) > 250'000) return 2;
                Vertiz::CMatriz<float>* tabla = nullptr;
                LibTiff::Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0);
                const std::unique_ptr<Vertiz::CMatriz<float>> propia(tabla);
                LibTiff::Leer(false, nullptr, 0, nullptr, nullptr, nullptr, 1, 9, 2, 8);
                return LibTiff::Leer(false);
            }
            using LibTiff::Leer;
        };
        return std::make_unique<Pequeno>(modo);
    });
    return 0;
}
