// A grid of triangles to begin at, and the border sides by bands of y.

#include "model/BusquedaTIN.h"

#include "model/CTIN.h"

#include <algorithm>
#include <cmath>

namespace Vertiz {
namespace {

constexpr std::size_t kTriangulosPorCelda = 4;
constexpr std::uint32_t kVacia = ~std::uint32_t{0};

bool TieneVertices(const CTIN::CFila& fila) {
    return std::ranges::find(fila.m_nVertices, 0U) == fila.m_nVertices.end();
}

}  // namespace

CBusquedaTIN::CBusquedaTIN(const CTIN& tin) {
    const unsigned cuantos = tin.CantidadTriangulos();
    m_nPasosMaximos = 100 + 10 * unsigned(std::sqrt(double(cuantos)));
    CMaximas<int> caja;
    for (const CPuntoTIN& p : tin.Puntos())
        caja.Nuevo(p);
    m_Origen = CCoor2D<double>(caja.Minima());
    const double ancho = std::max(1.0, double(caja.Maxima().x) - caja.Minima().x);
    const double alto = std::max(1.0, double(caja.Maxima().y) - caja.Minima().y);

    // Cells about as wide as high, but not more of them in a row than there are in all.
    const double celdas = double(std::max<std::size_t>(1, cuantos / kTriangulosPorCelda));
    m_nColumnas = unsigned(std::clamp(std::sqrt(celdas * ancho / alto), 1.0, celdas));
    m_nFilas = unsigned(std::clamp(celdas / m_nColumnas, 1.0, celdas));
    m_dCeldasX = m_nColumnas / ancho;
    m_dCeldasY = m_nFilas / alto;
    m_Celdas.assign(std::size_t{m_nColumnas} * m_nFilas, kVacia);
    std::vector<CBorde> bordes;
    std::uint32_t algun = 0;
    for (std::uint32_t i = 0; i < cuantos; ++i) {
        const CTIN::CFila& fila = tin.Fila(i);
        if (!TieneVertices(fila)) continue;
        CCoor2D<double> centro;
        for (int k = 0; k < 3; ++k)
            centro += CCoor2D<double>(tin.Vertice(i, k)) / 3.0;
        const auto en = [](double celda, unsigned n) { return std::size_t(std::clamp(celda, 0.0, double(n - 1))); };
        m_Celdas[en((centro.y - m_Origen.y) * m_dCeldasY, m_nFilas) * m_nColumnas +
                 en((centro.x - m_Origen.x) * m_dCeldasX, m_nColumnas)] = i;
        algun = i;
        for (std::uint32_t k = 0; k < 3; ++k)
            if (fila.m_nVecinos[k] < 0) bordes.push_back({i, k});
    }
    // A cell without a triangle's centre takes that of the cell before.
    for (std::uint32_t& celda : m_Celdas)
        algun = celda = celda == kVacia ? algun : celda;

    // Bands, as many as border sides unless long ones would then stand in too many of them.
    std::size_t bandas = std::max<std::size_t>(1, bordes.size() / 2);
    const auto extremos = [&](const CBorde& b) {
        const double y1 = tin.Vertice(b.m_nTriangulo, int(b.m_nLado)).y;
        const double y2 = tin.Vertice(b.m_nTriangulo, int((b.m_nLado + 1) % 3)).y;
        return std::pair(Banda(std::min(y1, y2)), Banda(std::max(y1, y2)));
    };
    for (;; bandas /= 2) {
        m_dBandas = double(bandas) / (alto + 1.0);
        m_Bandas.assign(bandas + 1, 0);
        std::size_t total = 0;
        for (const CBorde& borde : bordes) {
            const auto [desde, hasta] = extremos(borde);
            total += hasta - desde + 1;
        }
        if (bandas == 1 || total <= bordes.size() * 8) {
            m_Bordes.resize(total);
            break;
        }
    }
    for (const CBorde& borde : bordes) {
        const auto [desde, hasta] = extremos(borde);
        for (std::size_t b = desde; b <= hasta; ++b)
            ++m_Bandas[b + 1];
    }
    for (std::size_t b = 0; b < bandas; ++b)
        m_Bandas[b + 1] += m_Bandas[b];
    std::vector<std::uint32_t> siguiente(m_Bandas.begin(), m_Bandas.end() - 1);
    for (const CBorde& borde : bordes) {
        const auto [desde, hasta] = extremos(borde);
        for (std::size_t b = desde; b <= hasta; ++b)
            m_Bordes[siguiente[b]++] = borde;
    }
}

unsigned CBusquedaTIN::Cerca(double x, double y) const {
    const auto en = [](double celda, unsigned n) {
        return celda > 0.0 ? std::size_t(std::min(celda, double(n - 1))) : 0;  // 0 for what isn't a number, too
    };
    return m_Celdas[en((y - m_Origen.y) * m_dCeldasY, m_nFilas) * m_nColumnas +
                    en((x - m_Origen.x) * m_dCeldasX, m_nColumnas)];
}

std::size_t CBusquedaTIN::Banda(double y) const {
    const double banda = (y - m_Origen.y) * m_dBandas;
    return banda > 0.0 ? std::size_t(std::min(banda, double(m_Bandas.size() - 2))) : 0;
}

std::span<const CBusquedaTIN::CBorde> CBusquedaTIN::Bordes(double y1, double y2) const {
    const std::size_t desde = m_Bandas[Banda(y1)], hasta = m_Bandas[Banda(y2) + 1];
    return std::span(m_Bordes).subspan(desde, hasta - desde);
}

}  // namespace Vertiz
