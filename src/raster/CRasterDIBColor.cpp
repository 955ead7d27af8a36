// Operations that change each pixel by itself, in memory. Arithmetic is that of doubles, cut off at the point, as each
// operation's remark tells; where a byte or two decide, a table holds the results.

#include "raster/CRasterDIB.h"
#include "raster/Grises.h"
#include "raster/TextosProgreso.h"

#include <cmath>

namespace Vertiz {

namespace {

using TablaBytes = std::array<BYTE, 256>;

// The byte that a real value is cut off to, between 0 and 255; 0 for what isn't a number.
BYTE Recortado(double valor) {
    if (!(valor > 0.0)) return 0;
    return valor >= 255.0 ? BYTE{255} : static_cast<BYTE>(valor);
}

// Every byte, 0 to 255, through a function.
template <class F>
TablaBytes Tabla(const F& f) {
    TablaBytes tabla;
    for (int i = 0; i < 256; ++i)
        tabla[std::size_t(i)] = Recortado(f(i));
    return tabla;
}

void Traduce(std::span<BYTE> fila, const TablaBytes& tabla) {
    for (BYTE& b : fila)
        b = tabla[b];
}

// Luma from minimo..minimo + rango to 16..235, with the colour differences as they are.
class EstiraLuma {
  public:
    EstiraLuma(double minimo, double rango) : m_dMinimo(minimo), m_dFactor((235.0 - 16.0) / rango) {}
    void operator()(BYTE* p) const {
        YCbCr color = RGBaYCbCr(p[2], p[1], p[0]);
        color.y = 16.0 + (color.y - m_dMinimo) * m_dFactor;
        int r = 0, g = 0, b = 0;
        YCbCraRGB(color, r, g, b);
        p[0] = static_cast<BYTE>(b), p[1] = static_cast<BYTE>(g), p[2] = static_cast<BYTE>(r);
    }

  private:
    double m_dMinimo, m_dFactor;
};

}  // namespace

int CRasterDIB::Negativo() {
    return CambiaFilas(kTextoOperacion, [](std::span<BYTE> fila) {
        for (BYTE& b : fila)
            b = static_cast<BYTE>(~b);
    });
}

int CRasterDIB::AGrises(int desplazamiento) {
    if (BytesPixel() != 3) return 1;
    return CambiaFilas(kTextoOperacion,
                       [gris = ValorGris(desplazamiento)](std::span<BYTE> fila) { PintaGrises(fila, gris); });
}

int CRasterDIB::GrisesAColor() {
    if (BytesPixel() != 3) return 1;
    std::array<std::array<BYTE, 3>, 256> colores;
    for (int i = 0; i < 256; ++i) {
        int r = 0, g = 0, b = 0;
        HSVaRGB({i * 360.0 / 255.0, 1.0, 0.5}, r, g, b);
        colores[std::size_t(i)] = {static_cast<BYTE>(b), static_cast<BYTE>(g), static_cast<BYTE>(r)};
    }
    return CambiaFilas(kTextoOperacion, [&colores](std::span<BYTE> fila) {
        for (std::size_t i = 0; i < fila.size(); i += 3)
            std::ranges::copy(colores[fila[i]], &fila[i]);
    });
}

int CRasterDIB::Luminancia() {
    if (BytesPixel() != 3) return 1;
    const SumaPonderada suma(0.0, 0.2989, 0.587, 0.114);
    return CambiaFilas(kTextoOperacion, [&suma](std::span<BYTE> fila) {
        PintaGrises(fila, [&suma](const BYTE* p) { return static_cast<int>(suma(p[0], p[1], p[2])); });
    });
}

int CRasterDIB::LuminanciaY() {
    if (BytesPixel() != 3) return 1;
    const SumaPonderada suma(16.0, 0.2567890625, 0.50412890625, 0.09790625);
    return CambiaFilas(kTextoOperacion, [&suma](std::span<BYTE> fila) {
        PintaGrises(fila, [&suma](const BYTE* p) { return static_cast<int>(suma(p[0], p[1], p[2]) + 0.5); });
    });
}

int CRasterDIB::Estira(int minimo, int maximo, int banda, bool sinBlanco, bool sinNegro) {
    if (BytesPixel() != 3 || minimo == maximo || banda < 0 || banda > 3) return 1;
    const double rango = double(maximo) - minimo;
    const auto estira = [&](const auto& cambiaPixel) {
        return CambiaFilas(kTextoEstira, [&](std::span<BYTE> fila) {
            for (BYTE *p = fila.data(), *fin = p + fila.size(); p != fin; p += 3)
                if (!(sinBlanco && EsGris(p, 255)) && !(sinNegro && EsGris(p, 0))) cambiaPixel(p);
        });
    };
    if (banda == 0) return estira(EstiraLuma(minimo, rango));
    const TablaBytes tabla = Tabla([&](int i) { return (i - double(minimo)) * 255.0 / rango; });
    return estira([&](BYTE* p) { p[banda - 1] = tabla[p[banda - 1]]; });
}

int CRasterDIB::BrilloContraste(double brillo, double contraste) {
    const TablaBytes tabla = Tabla([&](int i) { return (i + brillo - 0.5) * (contraste / 100.0 + 1.0) + 0.5; });
    return CambiaFilas(kTextoBrillo, [&tabla](std::span<BYTE> fila) { Traduce(fila, tabla); });
}

int CRasterDIB::IndiceNormalizado(int a, int b) {
    if (BytesPixel() != 3 || a == b || a < 0 || a > 2 || b < 0 || b > 2) return 1;
    std::vector<BYTE> indices(256 * 256);
    for (int i = 0; i < 256; ++i)
        for (int j = 0; j < 256; ++j) {
            const double cociente = i + j != 0 ? double(i - j) / (i + j) : 0.0;
            indices[std::size_t(256 * i + j)] = Recortado((cociente + 1.0) * 0.5 * 255.0);
        }
    return CambiaFilas(kTextoOperacion, [&](std::span<BYTE> fila) {
        PintaGrises(fila, [&](const BYTE* p) { return indices[std::size_t(256 * p[a] + p[b])]; });
    });
}

}  // namespace Vertiz
