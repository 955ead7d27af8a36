#pragma once
// The unit that angles are given in.

#include <numbers>

namespace Vertiz {

/// Unit of angles, by its code: 0 none (a value is used as it is, as radians), 1 radians, 2 gons (400 in a circle),
/// 3 degrees (360 in a circle). Any other code counts as 0.
class CUnidadAngular {
  public:
    enum Codigo : int { NINGUNA = 0, RADIANES = 1, CENTESIMAL = 2, SEXAGESIMAL = 3 };

    constexpr CUnidadAngular(int codigo = NINGUNA)
        : m_nCodigo(codigo >= NINGUNA && codigo <= SEXAGESIMAL ? codigo : NINGUNA) {}

    constexpr int GetCodigo() const { return m_nCodigo; }

    /// What a full circle measures in this unit.
    constexpr double Circulo() const {
        switch (m_nCodigo) {
            case CENTESIMAL:
                return 400.0;
            case SEXAGESIMAL:
                return 360.0;
            default:
                return 2.0 * std::numbers::pi;
        }
    }

    /// An angle of this unit in radians.
    constexpr double ARadianes(double angulo) const { return angulo * (2.0 * std::numbers::pi / Circulo()); }

    /// An angle in radians in this unit.
    constexpr double DesdeRadianes(double angulo) const { return angulo * (Circulo() / (2.0 * std::numbers::pi)); }

    constexpr bool operator==(const CUnidadAngular&) const = default;

  private:
    int m_nCodigo;
};

}  // namespace Vertiz
