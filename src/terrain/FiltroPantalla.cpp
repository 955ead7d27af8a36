// The quick test of samples against a rectangle of the screen.
//
// A window coordinate is (n / w / 2 + 1 / 2) * size + origin, with n and w linear in the GL place. Against the middle m
// of the rectangle it is compared without the division: l = n * size / 2 + w * (size / 2 + origin - m) is linear too,
// and has the sign of the difference wherever w is positive.

#include "terrain/FiltroPantalla.h"

#include <algorithm>
#include <limits>

namespace {

// Of the sum of the terms' sizes: sixteen times what a float rounds off. A row takes four roundings.
constexpr double kRedondeo = 0x1p-20;

}  // namespace

FiltroPantalla::FiltroPantalla(const MatricesGL& matrices, const CajaVentana& caja, const Lugares& lugares)
    : m_dMedioX((caja.x1 - caja.x0) * 0.5),
      m_dMedioY((caja.y1 - caja.y0) * 0.5),
      m_dAlturaAGL(lugares.alturaAGL),
      m_dOrigenY(lugares.origenY),
      m_dRuido(lugares.ruido) {
    // A row of projection times modelview, and of the sizes of what was summed for it.
    const auto fila = [&](int i) {
        Forma f;
        for (std::size_t j = 0; j < 4; ++j) {
            for (std::size_t k = 0; k < 4; ++k) {
                const double producto = matrices.proyeccion[4 * k + std::size_t(i)] * matrices.modelview[4 * j + k];
                f.a[j] += producto;
                f.cota[j] += std::abs(producto);
            }
        }
        return f;
    };
    m_W = fila(3);
    const auto ventana = [&](int i, double medio) {
        Forma f = fila(i);
        const double size = matrices.viewport[2 + i] * 0.5, origen = matrices.viewport[i];
        for (std::size_t j = 0; j < 4; ++j) {
            f.a[j] = f.a[j] * size + m_W.a[j] * (size + origen - medio);
            f.cota[j] = f.cota[j] * size + m_W.cota[j] * (size + std::abs(origen) + std::abs(medio));
        }
        return f;
    };
    m_X = ventana(0, (caja.x0 + caja.x1) * 0.5);
    m_Y = ventana(1, (caja.y0 + caja.y1) * 0.5);
    for (Forma* f : {&m_X, &m_Y, &m_W}) {
        for (const double x : lugares.columnas)
            f->columnas.push_back(static_cast<float>(f->a[0] * x));
    }
    for (const double x : lugares.columnas)
        m_dColumnaMayor = std::max(m_dColumnaMayor, std::abs(x));
}

FiltroPantalla::Termino FiltroPantalla::EnFila(const Forma& forma, double z) const {
    const auto& [a, cota, columnas] = forma;
    const double mayor = cota[0] * m_dColumnaMayor + cota[1] * std::abs(m_dOrigenY) + cota[2] * std::abs(z) + cota[3];
    // Beyond what floats hold nothing is sure.
    if (!(mayor < 1e30)) return {0.0F, 0.0F, std::numeric_limits<float>::infinity(), 0.0F};
    return {static_cast<float>(a[1] * m_dOrigenY + a[2] * z + a[3]), static_cast<float>(a[1] * m_dAlturaAGL),
            static_cast<float>(kRedondeo * mayor + m_dRuido * (cota[0] + cota[1] + cota[2])),
            static_cast<float>(kRedondeo * cota[1] * std::abs(m_dAlturaAGL))};
}

void FiltroPantalla::Fila(double z, const float* alturas, std::uint32_t* lados) const {
    const Termino x = EnFila(m_X, z), y = EnFila(m_Y, z), w = EnFila(m_W, z);
    const auto medioX = static_cast<float>(m_dMedioX), medioY = static_cast<float>(m_dMedioY);
    const float margenX = x.margen + medioX * w.margen, kMargenX = x.kMargen + medioX * w.kMargen;
    const float margenY = y.margen + medioY * w.margen, kMargenY = y.kMargen + medioY * w.kMargen;
    const float* const columnasX = m_X.columnas.data();
    const float* const columnasY = m_Y.columnas.data();
    const float* const columnasW = m_W.columnas.data();
    const std::size_t n = m_X.columnas.size();
    // Without branches, so that the compiler takes several samples at once. A height that is no number has no side.
    for (std::size_t c = 0; c < n; ++c) {
        const float h = alturas[c], a = std::abs(h);
        const float divisor = columnasW[c] + w.fila + w.k * h;
        const float tamano = std::abs(divisor);
        const float vx = columnasX[c] + x.fila + x.k * h, vy = columnasY[c] + y.fila + y.k * h;
        const float dx = divisor < 0.0F ? -vx : vx, dy = divisor < 0.0F ? -vy : vy;
        const float limiteX = medioX * tamano + margenX + kMargenX * a;
        const float limiteY = medioY * tamano + margenY + kMargenY * a;
        const std::uint32_t lado =
            (dx < -limiteX ? 1u : 0u) | (dx > limiteX ? 2u : 0u) | (dy < -limiteY ? 4u : 0u) | (dy > limiteY ? 8u : 0u);
        lados[c] = tamano > w.margen + w.kMargen * a ? lado : 0u;
    }
}
