#pragma once
// What a triangulation came upon.

#include "model/CCoor.h"

#include <vector>

namespace Vertiz {

/// Counts and places of what was out of the ordinary. A plain value.
struct CInformeTriangulacion {
    unsigned m_nRepetidos = 0;           ///< points left out since one before lies in the same place in plan
    std::vector<CCoor3D<int>> m_Cotas;   ///< those of them that had another height, as they were
    std::vector<CCoor3D<int>> m_Cruces;  ///< where lines crossed between points: the vertices that they share now, or
                                         ///< where they would if they weren't refused; by x, then y
    bool m_bDemasiadosCruces = false;    ///< refused: lines cross more often than some ten million times
    bool m_bSinTriangulos = false;       ///< there are points, but none three of them make a triangle
    unsigned m_nLargos = 0;              ///< triangles deleted for their sides
    unsigned m_nFuera = 0;               ///< and for limits and islands
};

}  // namespace Vertiz
