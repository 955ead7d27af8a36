// The picture is written under a temporary name beside its place, so that nothing half-written is ever found there.

#include "Png.h"

#include "Salida.h"

#include <png.h>

#include <cerrno>
#include <cstring>

void EscribePng(const std::string& ruta, const Imagen& imagen) {
    Provisional provisional(ruta);
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(imagen.ancho);
    png.height = static_cast<png_uint_32>(imagen.alto);
    png.format = PNG_FORMAT_RGB;
    errno = 0;
    if (!png_image_write_to_stdio(&png, provisional.Fichero(), 0, imagen.rgb.data(), 0, nullptr))
        FallaSalida(ruta, errno != 0 ? std::strerror(errno) : png.message);
    provisional.Nombra();
}
