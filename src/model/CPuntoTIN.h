#pragma once
// A vertex of a triangulated terrain.

#include "model/CCoor.h"

#include <cstdint>

namespace Vertiz {

/// A vertex: integers on the terrain's seed, and its number. A plain value.
class CPuntoTIN : public CCoor3D<int> {
  public:
    CPuntoTIN() = default;
    CPuntoTIN(int xx, int yy, int zz, int tipo = 0) : CCoor3D<int>(xx, yy, zz, tipo) {}
    explicit CPuntoTIN(const CCoor3D<int>& c) : CCoor3D<int>(c) {}
    /// Rounded to integers.
    explicit CPuntoTIN(const CCoor3D<double>& c) : CCoor3D<int>(c) {}

    /// Its place in the terrain's list of points, from 1; 0 for a point of none.
    [[nodiscard]] std::int32_t GetNumero() const { return m_nNumero; }
    void SetNumero(std::int32_t numero) { m_nNumero = numero; }

  private:
    std::int32_t m_nNumero = 0;
};

}  // namespace Vertiz
