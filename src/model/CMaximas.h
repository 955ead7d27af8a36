#pragma once
// The box that holds a model, an entity or a selection, by its highest and its lowest corner.

#include "model/CCoor.h"

#include <algorithm>
#include <type_traits>
#include <vector>

namespace Vertiz {

/// A box with sides along the axes; borders belong to it. T is int or double.
///
/// A box that has taken nothing has its corners crossed over, at (1, 1, 1) below and (-1, -1, -1) above, so that
/// whoever calculates with them by mistake gets finite numbers. Scaling and moving leave it empty.
template <class T>
class LUMBRA_API CMaximas {
  public:
    CMaximas() = default;
    /// From any two opposite corners.
    CMaximas(const CCoor3D<T>& a, const CCoor3D<T>& b) { Nuevo(a), Nuevo(b); }
    /// From the other kind of coordinates; an empty box stays empty.
    template <class U>
    requires(!std::is_same_v<T, U>) CMaximas(const CMaximas<U>& m) : m_Maxima(m.Maxima()), m_Minima(m.Minima()) {}

    [[nodiscard]] const CCoor3D<T>& Maxima() const { return m_Maxima; }
    [[nodiscard]] const CCoor3D<T>& Minima() const { return m_Minima; }
    /// To move a corner by hand; whoever crosses the corners empties the box.
    [[nodiscard]] CCoor3D<T>& Maxima() { return m_Maxima; }
    [[nodiscard]] CCoor3D<T>& Minima() { return m_Minima; }

    /// Grows the box to hold a point. A point with a coordinate that isn't finite is passed over.
    void Nuevo(const CCoor3D<T>& c) {
        if (!c.EsFinito()) return;
        if (EstanVacias(true)) {
            Fija(c, c);
            return;
        }
        m_Maxima = {std::max(m_Maxima.x, c.x), std::max(m_Maxima.y, c.y), std::max(m_Maxima.z, c.z)};
        m_Minima = {std::min(m_Minima.x, c.x), std::min(m_Minima.y, c.y), std::min(m_Minima.z, c.z)};
    }
    /// Grows the box to hold another; an empty one adds nothing.
    void Nuevo(const CMaximas& m) {
        if (m.EstanVacias(true)) return;
        Nuevo(m.m_Maxima), Nuevo(m.m_Minima);
    }

    /// True for a box that has taken nothing.
    /// @param bConCota false looks at the plan only
    [[nodiscard]] bool EstanVacias(bool bConCota) const {
        return m_Minima.x > m_Maxima.x || m_Minima.y > m_Maxima.y || (bConCota && m_Minima.z > m_Maxima.z);
    }

    /// The centre; an integer one is rounded down. The centre of an empty box is the origin.
    /// @param bConCota false gives it the height 0
    [[nodiscard]] CCoor3D<T> Centro(bool bConCota) const;

    /// The point, or the whole of the other box, lies inside or on the border. An empty box holds nothing and lies in
    /// nothing.
    /// @param modo 0 in plan, 1 with height
    [[nodiscard]] bool Dentro(const CCoor3D<T>& c, int modo) const {
        return c.x >= m_Minima.x && c.x <= m_Maxima.x && c.y >= m_Minima.y && c.y <= m_Maxima.y &&
               (modo == 0 || (c.z >= m_Minima.z && c.z <= m_Maxima.z));
    }
    [[nodiscard]] bool Dentro(const CMaximas& m, int modo) const {
        return !m.EstanVacias(modo != 0) && Dentro(m.m_Minima, modo) && Dentro(m.m_Maxima, modo);
    }

    /// The boxes share a point, be it on their borders.
    /// @param modo 0 in plan, 1 with height
    [[nodiscard]] bool InterMax(const CMaximas& m, int modo) const {
        const bool bPlanta = m_Minima.x <= m.m_Maxima.x && m.m_Minima.x <= m_Maxima.x && m_Minima.y <= m.m_Maxima.y &&
                             m.m_Minima.y <= m_Maxima.y;
        return bPlanta && (modo == 0 || (m_Minima.z <= m.m_Maxima.z && m.m_Minima.z <= m_Maxima.z)) &&
               !EstanVacias(modo != 0) && !m.EstanVacias(modo != 0);
    }

    /// Replaces the vector's content with the eight corners: the lower face counterclockwise from the lowest corner,
    /// then the upper face likewise. An empty box gives none.
    void DameVertices(std::vector<CCoor3D<T>>& vertices) const;

    void Borra() { *this = CMaximas(); }

    /// Divides both corners. A negative divisor turns the box over; an empty box stays empty.
    CMaximas& operator/=(double k);
    [[nodiscard]] CMaximas operator/(double k) const { return CMaximas(*this) /= k; }
    /// Moves both corners by minus c; an empty box stays empty.
    CMaximas& operator-=(const CCoor3D<T>& c);

    /// Same corners; two empty boxes are equal.
    [[nodiscard]] bool operator==(const CMaximas& m) const { return m_Maxima == m.m_Maxima && m_Minima == m.m_Minima; }

  private:
    void Fija(const CCoor3D<T>& maxima, const CCoor3D<T>& minima) {
        m_Maxima = {maxima.x, maxima.y, maxima.z};
        m_Minima = {minima.x, minima.y, minima.z};
    }

    CCoor3D<T> m_Maxima{T{-1}, T{-1}, T{-1}};
    CCoor3D<T> m_Minima{T{1}, T{1}, T{1}};
};

extern template class CMaximas<int>;
extern template class CMaximas<double>;

}  // namespace Vertiz
