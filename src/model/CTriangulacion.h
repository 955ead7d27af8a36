#pragma once
// Makes a triangulated terrain from a drawing.

#include "model/CDataTriangulacion.h"
#include "model/CDibujo.h"
#include "model/CTIN.h"

namespace Vertiz {

class IPorcentaje;

/// Delaunay triangulation of the points of a drawing, constrained to its lines.
///
/// Every decision is exact on the drawing's integers, whatever their size. No vertex is added: those of the triangles
/// are the drawing's points. Points on one place in plan are one vertex, of the height of the first of them. A line
/// that passes through points is followed in pieces, lines may touch and run along each other and themselves, and
/// segments without length don't count. Time goes with n log n; a long line between dense points may take more, since
/// the triangles that it cuts are made anew.
class LUMBRA_API CTriangulacion {
  public:
    explicit CTriangulacion(const CDataTriangulacion& data = CDataTriangulacion()) : m_Data(data) {}

    /// Triangulates the lines of a drawing that are not erased.
    /// @param dibujo      texts and clouds are passed over; lines of one point give a vertex only
    /// @param tin         out: its former content goes. Points in line give no triangles
    /// @param modo        0 follows the lines, 1 takes only their points
    /// @param porcentaje  progress (level 3) and cancel, or null
    /// @param distancia   stored units; points closer than this in plan count as one. Different integers are at least 1
    ///                    apart: the usual 0.1, as any value up to 1, joins equal points only; larger ones are refused
    /// @param cruces      may be null: gets a line of one point for each place where lines cross that may not
    /// @return 1 done; 0 lines cross between their points, distancia is too large, or there are more than 2^29 points:
    ///         tin is empty then; 2 cancelled, tin is empty
    int Run(const CDibujo<int>& dibujo, CTIN& tin, int modo, IPorcentaje* porcentaje, double distancia,
            CDibujo<int>* cruces) const;

  private:
    CDataTriangulacion m_Data;
};

}  // namespace Vertiz
