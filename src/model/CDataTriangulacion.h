#pragma once
// What of a drawing a triangulation takes, and as what.

#include "model/CDigiTab.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// How a drawing is triangulated. Of the tables only kinds and codes count; as made, each takes every code.
class LUMBRA_API CDataTriangulacion {
  public:
    CDataTriangulacion();

    /// Points lower or higher than these, stored units, are left out. The usual bounds are all heights but the lowest
    /// integer, which stands for none.
    double m_dCotaMinima = -2147483647.0;
    double m_dCotaMaxima = 2147483647.0;
    CDigiTab m_Puntos;    ///< lines whose points become vertices; others are passed over
    CDigiTab m_Rupturas;  ///< those whose segments become sides of triangles
    CDigiTab m_Limites;   ///< and those that, if closed in plan, bound the surface
};

}  // namespace Vertiz
