#pragma once
// The address of what was picked in a drawing.

#include <compare>

namespace Vertiz {

/// Index of an entity, and of a point inside it; a point of -1 stands for the whole entity. Ordered by entity, then by
/// point. A plain value of 8 bytes: an octree holds one for each point of a cloud.
struct CPosicionEntidad {
    int m_nEntidad = 0;
    int m_nPunto = -1;

    CPosicionEntidad() = default;
    CPosicionEntidad(int entidad, int punto = -1) : m_nEntidad(entidad), m_nPunto(punto) {}

    [[nodiscard]] auto operator<=>(const CPosicionEntidad&) const = default;
};

}  // namespace Vertiz
