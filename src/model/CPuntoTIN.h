#pragma once
// A vertex of a triangulated terrain.

#include "model/CCoor.h"
#include "model/CSetPuntos.h"

#include <cstdint>

namespace Vertiz {

/// A vertex: integers on the terrain's seed, its number, and what a scanner tells of the place. A plain value of 28
/// bytes.
class CPuntoTIN : public CCoor3D<int> {
  public:
    CPuntoTIN() = default;
    CPuntoTIN(int xx, int yy, int zz, int tipo = 0) : CCoor3D<int>(xx, yy, zz, tipo) {}
    explicit CPuntoTIN(const CCoor3D<int>& c) : CCoor3D<int>(c) {}
    /// Rounded to integers.
    explicit CPuntoTIN(const CCoor3D<double>& c) : CCoor3D<int>(c) {}
    /// From a cloud: intensity and class of its attribute word, colour of its record.
    CPuntoTIN(const CCoor3D<int>& c, const tipoAero3& info)
        : CCoor3D<int>(c),
          m_nIntensidad(static_cast<std::uint16_t>(CSetPuntos<int>::Intensidad(c))),
          m_nClase(static_cast<std::uint8_t>(CSetPuntos<int>::Clase(c))),
          m_nRojo(info.rojo),
          m_nVerde(info.verde),
          m_nAzul(info.azul) {}

    /// Its place in the terrain's list of points, from 1; negative once it is deleted; 0 for a point of none. A point
    /// that a scene adds has a negative number too.
    [[nodiscard]] std::int32_t GetNumero() const { return m_nNumero; }
    void SetNumero(std::int32_t numero) { m_nNumero = numero; }
    [[nodiscard]] bool EsBorrado() const { return m_nNumero < 0; }

    [[nodiscard]] std::uint16_t GetIntensidad() const { return m_nIntensidad; }
    void SetIntensidad(std::uint16_t intensidad) { m_nIntensidad = intensidad; }
    /// Class of a LiDAR point, as its table of styles knows it.
    [[nodiscard]] std::uint8_t GetClase() const { return m_nClase; }
    void SetClase(std::uint8_t clase) { m_nClase = clase; }
    [[nodiscard]] std::uint8_t GetRojo() const { return m_nRojo; }
    [[nodiscard]] std::uint8_t GetVerde() const { return m_nVerde; }
    [[nodiscard]] std::uint8_t GetAzul() const { return m_nAzul; }
    void SetColor(std::uint8_t rojo, std::uint8_t verde, std::uint8_t azul) {
        m_nRojo = rojo, m_nVerde = verde, m_nAzul = azul;
    }

  private:
    std::int32_t m_nNumero = 0;
    std::uint16_t m_nIntensidad = 0;
    std::uint8_t m_nClase = 0;
    std::uint8_t m_nRojo = 0, m_nVerde = 0, m_nAzul = 0;
};
static_assert(sizeof(CPuntoTIN) == 28);

}  // namespace Vertiz
