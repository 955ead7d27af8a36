#pragma once
// What of a drawing a triangulation takes, and as what.

#include "model/CDigiTab.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// How a drawing is triangulated. Of the tables only kinds and codes count; as made, each takes every code, but that of
/// islands, which takes none.
class LUMBRA_API CDataTriangulacion {
  public:
    CDataTriangulacion();

    /// Points lower or higher than these, stored units, are left out. The usual bounds are all heights but the lowest
    /// integer, which stands for none.
    double m_dCotaMinima = -2147483647.0;
    double m_dCotaMaxima = 2147483647.0;
    CDigiTab m_Puntos;    ///< lines whose points become vertices, and clouds; others are passed over
    CDigiTab m_Rupturas;  ///< those whose segments become sides of triangles
    CDigiTab m_Limites;   ///< and those that, if closed in plan, bound the surface
    CDigiTab
        m_Islas;  ///< and those that, if closed in plan, bound holes in it; no limits then, whatever m_Limites says

    /// Lines that cross between their points get a point there, at the mean of their heights. Otherwise a drawing with
    /// such lines is refused.
    bool m_bResuelveCruces = true;
    /// Marks as deleted what lies outside the limits, if there are any, and inside islands. Limits inside limits, and
    /// islands inside islands, turn it round again.
    bool m_bRecorta = false;
    /// Longest side of a triangle, stored units in plan; 0 for none. Triangles with a longer side are marked as deleted
    /// from the outside in, so that a surface follows the outline of its points: those inside, where points are few,
    /// stay. Sides on lines may be as long as they are, and what lies behind a line stays.
    double m_dLadoMaximo = 0.0;
    /// The triangles inside go, too.
    bool m_bLadoMaximoDentro = false;
};

}  // namespace Vertiz
