#pragma once
// The points of a triangulated terrain.

#include "model/CPuntoTIN.h"

#include <utility>
#include <vector>

namespace Vertiz {

/// A list of vertices. Pointers to them last until points are added.
class CSetPuntosMdt {
  public:
    /// @param cantidad  points to begin with, at the origin and numbered
    /// @param reserva   room for as many in all
    explicit CSetPuntosMdt(unsigned cantidad = 0, unsigned reserva = 0) {
        m_Puntos.reserve(cantidad > reserva ? cantidad : reserva);
        for (unsigned i = 0; i < cantidad; ++i)
            push_back(CPuntoTIN(), true);
    }
    /// Takes points over as they are.
    explicit CSetPuntosMdt(std::vector<CPuntoTIN> puntos) : m_Puntos(std::move(puntos)) {}

    [[nodiscard]] unsigned size() const { return static_cast<unsigned>(m_Puntos.size()); }
    [[nodiscard]] bool empty() const { return m_Puntos.empty(); }
    /// @param i  below size()
    [[nodiscard]] const CPuntoTIN& at(unsigned i) const { return m_Puntos[i]; }
    [[nodiscard]] CPuntoTIN& at(unsigned i) { return m_Puntos[i]; }
    [[nodiscard]] const CPuntoTIN* data() const { return m_Puntos.data(); }
    [[nodiscard]] auto begin() const { return m_Puntos.begin(); }
    [[nodiscard]] auto end() const { return m_Puntos.end(); }
    /// @param bNumera  the point's number becomes its place, from 1; false keeps the one that it has
    void push_back(const CPuntoTIN& punto, bool bNumera) {
        m_Puntos.push_back(punto);
        if (bNumera) m_Puntos.back().SetNumero(static_cast<std::int32_t>(m_Puntos.size()));
    }
    void reserve(unsigned cantidad) { m_Puntos.reserve(cantidad); }
    void clear() { m_Puntos.clear(); }

  private:
    std::vector<CPuntoTIN> m_Puntos;
};

}  // namespace Vertiz
