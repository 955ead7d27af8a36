#pragma once
// How a model's integer coordinates become terrain coordinates.

#include <cmath>

namespace Vertiz {

/// The seed of a model: a stored integer n is the local coordinate n / 10^decimals, and the absolute terrain
/// coordinate is the local one plus the offset. A plain value.
class CDataSemilla {
  public:
    CDataSemilla() = default;
    /// @param decimales decimals of the integers, may be negative
    /// @param x,y,z     offset, terrain units
    explicit CDataSemilla(int decimales, double x = 0.0, double y = 0.0, double z = 0.0)
        : m_nDecimales(static_cast<short>(decimales)), m_dX(x), m_dY(y), m_dZ(z) {}

    [[nodiscard]] int GetDecimales() const { return m_nDecimales; }
    void SetDecimales(int decimales) { m_nDecimales = static_cast<short>(decimales); }
    [[nodiscard]] double GetX() const { return m_dX; }
    [[nodiscard]] double GetY() const { return m_dY; }
    [[nodiscard]] double GetZ() const { return m_dZ; }
    void SetX(double x) { m_dX = x; }
    void SetY(double y) { m_dY = y; }
    void SetZ(double z) { m_dZ = z; }

    /// 10^decimals: how many integer units make one terrain unit.
    [[nodiscard]] double Precision() const { return std::pow(10.0, m_nDecimales); }

    [[nodiscard]] bool operator==(const CDataSemilla&) const = default;

  private:
    short m_nDecimales = 0;
    double m_dX = 0.0;
    double m_dY = 0.0;
    double m_dZ = 0.0;
};

}  // namespace Vertiz
