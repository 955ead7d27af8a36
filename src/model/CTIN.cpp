// The triangulated terrain: what it holds, and what of it lies within limits.

#include "model/CTIN.h"

#include <cstddef>
#include <utility>

namespace Vertiz {

void CTIN::Toma(std::vector<CPuntoTIN> puntos, std::vector<CTriangulo> triangulos) {
    m_Puntos = std::move(puntos);
    m_Triangulos = std::move(triangulos);
}

void CTIN::Clear() {
    m_Triangulos.clear();
    m_Puntos.clear();
}

// From outside in: each side that is a limit changes sides.
unsigned CTIN::BorraTriangulosSegunLimite() {
    enum class Lugar : std::uint8_t { Desconocido, Fuera, Dentro };
    std::vector<Lugar> lugares(m_Triangulos.size(), Lugar::Desconocido);
    std::vector<std::size_t> pendientes;
    const auto anota = [&](std::size_t i, bool dentro) {
        if (lugares[i] != Lugar::Desconocido) return;
        lugares[i] = dentro ? Lugar::Dentro : Lugar::Fuera;
        pendientes.push_back(i);
    };
    for (std::size_t i = 0; i < m_Triangulos.size(); ++i)
        for (int lado = 0; lado < 3; ++lado)
            if (m_Triangulos[i].Vecino(lado) < 0) anota(i, m_Triangulos[i].EsLimite(lado));
    while (!pendientes.empty()) {
        const std::size_t i = pendientes.back();
        pendientes.pop_back();
        const bool dentro = lugares[i] == Lugar::Dentro;
        for (int lado = 0; lado < 3; ++lado) {
            const int vecino = m_Triangulos[i].Vecino(lado);
            if (vecino >= 0) anota(static_cast<std::size_t>(vecino), dentro != m_Triangulos[i].EsLimite(lado));
        }
    }
    unsigned quedan = 0;
    for (std::size_t i = 0; i < m_Triangulos.size(); ++i) {
        if (lugares[i] != Lugar::Dentro) m_Triangulos[i].SetBorrado(true);
        if (!m_Triangulos[i].EsBorrado()) ++quedan;
    }
    return quedan;
}

void CTIN::DameTriangulos(CDibujo<int>& dibujo) const {
    const CLinea<int> vacia(L"TRIANGULO");
    for (const CTriangulo& triangulo : m_Triangulos) {
        if (triangulo.EsBorrado()) continue;
        CLinea<int> linea(vacia);
        linea.Reserva(4);
        for (const int i : {0, 1, 2, 0})
            linea << *triangulo.Punto(i);
        dibujo.Inserta(linea);
    }
}

}  // namespace Vertiz
