// The index of a cell list: a lattice of squares, and for each the cells that touch it, in one array.

#include "model/CIndiceCeldas.h"

#include <algorithm>
#include <cmath>

namespace Vertiz {

namespace {

bool TieneArea(const RectanguloCelda& r) {
    return r.m_dOeste < r.m_dEste && r.m_dSur < r.m_dNorte;
}

std::int64_t Lugar(double valor, double inicio, double paso, std::int64_t n) {
    return std::int64_t(std::clamp(std::floor((valor - inicio) / paso), 0.0, double(n - 1)));
}

}  // namespace

CIndiceCeldas::CIndiceCeldas(const std::vector<RectanguloCelda>& rectangulos) {
    RectanguloCelda todo;
    std::uint64_t n = 0;
    for (const RectanguloCelda& r : rectangulos) {
        if (!TieneArea(r)) continue;
        if (n++ == 0) todo = r;
        todo = {std::min(todo.m_dOeste, r.m_dOeste), std::min(todo.m_dSur, r.m_dSur), std::max(todo.m_dEste, r.m_dEste),
                std::max(todo.m_dNorte, r.m_dNorte)};
    }
    if (n == 0) return;

    // About a square for each cell; fewer when cells overlap so much that the lists would grow out of proportion.
    for (auto lado = std::int64_t(std::ceil(std::sqrt(double(n)))); lado > 0; lado /= 2) {
        m_Cuadros = {todo.m_dOeste,
                     todo.m_dSur,
                     (todo.m_dEste - todo.m_dOeste) / double(lado),
                     (todo.m_dNorte - todo.m_dSur) / double(lado),
                     lado,
                     lado};
        if (Entradas(rectangulos) <= 8 * n + 64) break;
    }

    m_Inicios.assign(std::size_t(m_Cuadros.m_nFilas * m_Cuadros.m_nColumnas) + 2, 0);
    const auto porCuadro = [&](auto&& accion) {
        for (std::size_t i = 0; i < rectangulos.size(); ++i) {
            if (!TieneArea(rectangulos[i])) continue;
            const Rango t = Toca(rectangulos[i]);
            for (std::int64_t f = t.m_nFila0; f <= t.m_nFila1; ++f)
                for (std::int64_t c = t.m_nColumna0; c <= t.m_nColumna1; ++c)
                    accion(std::size_t(f * m_Cuadros.m_nColumnas + c), std::uint32_t(i));
        }
    };
    // Counted two places ahead, added up to starts one place ahead, and moved on to their own place while filling.
    porCuadro([&](std::size_t cuadro, std::uint32_t) { ++m_Inicios[cuadro + 2]; });
    for (std::size_t i = 2; i < m_Inicios.size(); ++i)
        m_Inicios[i] += m_Inicios[i - 1];
    m_Celdas.resize(m_Inicios.back());
    porCuadro([&](std::size_t cuadro, std::uint32_t celda) { m_Celdas[m_Inicios[cuadro + 1]++] = celda; });
}

CIndiceCeldas::Rango CIndiceCeldas::Toca(const RectanguloCelda& r) const {
    const Reticula& c = m_Cuadros;
    return {Lugar(r.m_dSur, c.m_dSur, c.m_dPasoY, c.m_nFilas), Lugar(r.m_dNorte, c.m_dSur, c.m_dPasoY, c.m_nFilas),
            Lugar(r.m_dOeste, c.m_dOeste, c.m_dPasoX, c.m_nColumnas),
            Lugar(r.m_dEste, c.m_dOeste, c.m_dPasoX, c.m_nColumnas)};
}

std::uint64_t CIndiceCeldas::Entradas(const std::vector<RectanguloCelda>& rectangulos) const {
    std::uint64_t entradas = 0;
    for (const RectanguloCelda& r : rectangulos) {
        if (!TieneArea(r)) continue;
        const Rango t = Toca(r);
        entradas += std::uint64_t(t.m_nFila1 - t.m_nFila0 + 1) * std::uint64_t(t.m_nColumna1 - t.m_nColumna0 + 1);
    }
    return entradas;
}

std::span<const std::uint32_t> CIndiceCeldas::Cuadro(std::int64_t fila, std::int64_t columna) const {
    const auto i = std::size_t(fila * m_Cuadros.m_nColumnas + columna);
    return std::span(m_Celdas).subspan(m_Inicios[i], m_Inicios[i + 1] - m_Inicios[i]);
}

std::span<const std::uint32_t> CIndiceCeldas::Cerca(double x, double y) const {
    const Reticula& c = m_Cuadros;
    // A square's width of margin: whoever asks has a tolerance of its own at the edges of cells.
    const bool bDentro = x >= c.m_dOeste - c.m_dPasoX && x <= c.m_dOeste + double(c.m_nColumnas + 1) * c.m_dPasoX &&
                         y >= c.m_dSur - c.m_dPasoY && y <= c.m_dSur + double(c.m_nFilas + 1) * c.m_dPasoY;
    if (m_Celdas.empty() || !bDentro) return {};
    return Cuadro(Lugar(y, c.m_dSur, c.m_dPasoY, c.m_nFilas), Lugar(x, c.m_dOeste, c.m_dPasoX, c.m_nColumnas));
}

}  // namespace Vertiz
