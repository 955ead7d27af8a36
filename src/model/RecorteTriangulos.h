#pragma once
// Internal. Which triangles of a triangulation are no part of the surface.

#include "model/Delaunay.h"

namespace Vertiz::geometria {

/// Marks as deleted what lies outside the limits, if any side is one, and inside islands.
/// @return how many finite triangles that are
unsigned RecortaPorLimites(CDelaunay& delaunay);

/// Marks as deleted the triangles that have a side longer than `lado`, unless it was put in: those that border on what
/// is deleted or outside by a side that wasn't put in, from the outside in; or all.
/// @return how many
unsigned RecortaPorLado(CDelaunay& delaunay, double lado, bool bTodos);

}  // namespace Vertiz::geometria
