// Colour between red, green and blue and the spaces that operations on pictures think in.

#include "raster/ConversionColor.h"

#include <algorithm>
#include <cmath>

namespace Vertiz {

namespace {

// A channel, rounded and kept within a byte.
int Canal(double valor) {
    return static_cast<int>(std::clamp(valor, 0.0, 255.0) + 0.5);
}

}  // namespace

HSV RGBaHSV(int r, int g, int b) {
    const int maximo = std::max({r, g, b}), delta = maximo - std::min({r, g, b});
    const double v = maximo / 255.0;
    if (delta == 0) return {0.0, 0.0, v};
    double h = 0.0;  // in sixths of the circle, from red
    if (maximo == r)
        h = double(g - b) / delta + (g < b ? 6.0 : 0.0);
    else if (maximo == g)
        h = double(b - r) / delta + 2.0;
    else
        h = double(r - g) / delta + 4.0;
    return {h * 60.0, double(delta) / maximo, v};
}

void HSVaRGB(const HSV& hsv, int& r, int& g, int& b) {
    const double sextos = hsv.h / 60.0, entero = std::floor(sextos), resto = sextos - entero;
    const int maximo = Canal(hsv.v * 255.0);
    const int minimo = Canal(hsv.v * (1.0 - hsv.s) * 255.0);
    const int baja = Canal(hsv.v * (1.0 - hsv.s * resto) * 255.0);
    const int sube = Canal(hsv.v * (1.0 - hsv.s * (1.0 - resto)) * 255.0);
    switch (static_cast<int>(entero) % 6) {  // 360 degrees are red again
        case 0:
            r = maximo, g = sube, b = minimo;
            break;
        case 1:
            r = baja, g = maximo, b = minimo;
            break;
        case 2:
            r = minimo, g = maximo, b = sube;
            break;
        case 3:
            r = minimo, g = baja, b = maximo;
            break;
        case 4:
            r = sube, g = minimo, b = maximo;
            break;
        default:
            r = maximo, g = minimo, b = baja;
            break;
    }
}

YCbCr RGBaYCbCr(int r, int g, int b) {
    return {16.0 + (65.738 * r + 129.057 * g + 25.064 * b) / 256.0,
            128.0 - (37.945 * r + 74.494 * g - 112.439 * b) / 256.0,
            128.0 + (112.439 * r - 94.154 * g - 18.285 * b) / 256.0};
}

void YCbCraRGB(const YCbCr& c, int& r, int& g, int& b) {
    // Green is what luma holds beyond red and blue, by the weights of those in it: 0.299 and 0.114 to 0.587.
    constexpr double kRojo = 0.5093696763202726, kAzul = 0.19420783645655879;
    const double y = 1.1643835616438356 * (c.y - 16.0);
    const double rojo = 1.5960267857142858 * (c.cr - 128.0), azul = 2.017232142857143 * (c.cb - 128.0);
    r = Canal(y + rojo);
    g = Canal(y - kAzul * azul - kRojo * rojo);
    b = Canal(y + azul);
}

}  // namespace Vertiz
