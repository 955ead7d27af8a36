// PNG through libpng's simplified interface, and the comparison of pictures.

#include "support/Imagen.h"

#include <png.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace {

std::size_t Indice(const Imagen& imagen, int x, int y) {
    if (x < 0 || y < 0 || x >= imagen.ancho || y >= imagen.alto) throw std::out_of_range("pixel outside the picture");
    return (static_cast<std::size_t>(y) * imagen.ancho + x) * 3;
}

int DiferenciaDePixel(const Imagen& una, const Imagen& otra, std::size_t i) {
    int mayor = 0;
    for (std::size_t k = i; k < i + 3; ++k)
        mayor = std::max(mayor, std::abs(una.bytes[k] - otra.bytes[k]));
    return mayor;
}

std::filesystem::path ConSufijo(const std::filesystem::path& carpeta, const std::string& nombre, const char* sufijo) {
    return carpeta / (nombre + sufijo);
}

}  // namespace

std::array<std::uint8_t, 3> Imagen::Pixel(int x, int y) const {
    const std::size_t i = Indice(*this, x, y);
    return {bytes[i], bytes[i + 1], bytes[i + 2]};
}

void Imagen::Pinta(int x, int y, std::array<std::uint8_t, 3> color) {
    std::ranges::copy(color, bytes.begin() + static_cast<std::ptrdiff_t>(Indice(*this, x, y)));
}

bool EscribePng(const Imagen& imagen, const std::filesystem::path& ruta) {
    std::error_code error;
    if (ruta.has_parent_path()) std::filesystem::create_directories(ruta.parent_path(), error);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(imagen.ancho);
    png.height = static_cast<png_uint_32>(imagen.alto);
    png.format = PNG_FORMAT_RGB;
    return png_image_write_to_file(&png, ruta.c_str(), 0, imagen.bytes.data(), 0, nullptr) != 0;
}

Imagen LeePng(const std::filesystem::path& ruta) {
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&png, ruta.c_str()) == 0) return {};
    png.format = PNG_FORMAT_RGB;
    Imagen imagen(static_cast<int>(png.width), static_cast<int>(png.height));
    if (png_image_finish_read(&png, nullptr, imagen.bytes.data(), 0, nullptr) == 0) return {};
    return imagen;
}

Imagen Diferencia(const Imagen& una, const Imagen& otra) {
    Imagen diferencia(una.ancho, una.alto);
    int mayor = 1;
    for (std::size_t i = 0; i < una.bytes.size(); i += 3)
        mayor = std::max(mayor, DiferenciaDePixel(una, otra, i));
    for (std::size_t i = 0; i < una.bytes.size(); i += 3) {
        const auto gris = static_cast<std::uint8_t>(DiferenciaDePixel(una, otra, i) * 255 / mayor);
        std::fill_n(diferencia.bytes.begin() + static_cast<std::ptrdiff_t>(i), 3, gris);
    }
    return diferencia;
}

testing::AssertionResult IgualImagen(const Imagen& real, const Imagen& esperada, Tolerancia tolerancia) {
    if (real.ancho != esperada.ancho || real.alto != esperada.alto) {
        return testing::AssertionFailure() << "the picture has " << real.ancho << " x " << real.alto << " pixels, not "
                                           << esperada.ancho << " x " << esperada.alto;
    }
    std::size_t distintos = 0;
    std::size_t peor = 0;
    int mayor = 0;
    for (std::size_t i = 0; i < real.bytes.size(); i += 3) {
        const int d = DiferenciaDePixel(real, esperada, i);
        if (d > tolerancia.canal) ++distintos;
        if (d > mayor) {
            mayor = d;
            peor = i / 3;
        }
    }
    const std::size_t pixeles = real.bytes.size() / 3;
    if (static_cast<double>(distintos) <= tolerancia.parte * static_cast<double>(pixeles)) {
        return testing::AssertionSuccess();
    }
    const std::size_t ancho = static_cast<std::size_t>(real.ancho);
    return testing::AssertionFailure() << distintos << " of " << pixeles << " pixels differ by more than "
                                       << tolerancia.canal << "; the worst, at (" << peor % ancho << ", "
                                       << peor / ancho << "), by " << mayor;
}

CarpetasImagen CarpetasImagen::DelProyecto() {
    return {std::filesystem::path(LUMBRA_SOURCE_DIR) / "tests" / "pictures",
            std::filesystem::path(LUMBRA_BINARY_DIR) / "tests" / "output"};
}

testing::AssertionResult ComoGuardada(const Imagen& real, const std::string& nombre, Tolerancia tolerancia,
                                      const CarpetasImagen& carpetas) {
    for (const char* sufijo : {".expected.png", ".actual.png", ".difference.png"}) {
        std::error_code nada;
        std::filesystem::remove(ConSufijo(carpetas.salida, nombre, sufijo), nada);
    }
    const std::filesystem::path guardada = ConSufijo(carpetas.guardadas, nombre, ".png");
    const Imagen esperada = LeePng(guardada);
    testing::AssertionResult resultado =
        esperada.bytes.empty() ? testing::AssertionFailure() << "there is no stored picture " << guardada.string()
                               : IgualImagen(real, esperada, tolerancia);
    if (resultado) return resultado;

    const std::filesystem::path actual = ConSufijo(carpetas.salida, nombre, ".actual.png");
    const bool escrita = EscribePng(real, actual);
    if (!esperada.bytes.empty()) EscribePng(esperada, ConSufijo(carpetas.salida, nombre, ".expected.png"));
    if (esperada.ancho == real.ancho && esperada.alto == real.alto) {
        EscribePng(Diferencia(real, esperada), ConSufijo(carpetas.salida, nombre, ".difference.png"));
    }
    return resultado << (escrita ? "; what was drawn is in " : "; what was drawn can't be written to ")
                     << actual.string();
}
