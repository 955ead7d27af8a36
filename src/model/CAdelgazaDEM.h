#pragma once
// From a grid to a triangulated terrain of as few points as a tolerance allows.

#include "model/CDEM.h"
#include "model/CTIN.h"
#include "platform/Exporta.h"

namespace Vertiz {

class IPorcentaje;

/// Thins a regular grid to triangles by greedy insertion (M. Garland, P. Heckbert: Fast Polygonal Approximation of
/// Terrains and Height Fields, 1995), many samples at a time: beginning with the corners of the outlines, each round
/// adds to every triangle the sample that lies farthest from it, until none is farther than the tolerance.
class LUMBRA_API CAdelgazaDEM {
  public:
    /// @param tolerancia  greatest vertical distance of a valid sample from the surface, terrain units; below a stored
    ///                    unit of the terrain's it becomes one
    explicit CAdelgazaDEM(double tolerancia) : m_dTolerancia(tolerancia) {}

    /// @param dem         in regular form
    /// @param tin         out: on a seed with the grid's offset, or the grid's corner when that would be beyond the
    ///                    integers, and as many decimals, up to 3, as fit in them; voids are holes
    /// @param porcentaje  progress (level 3) and cancel, or null
    /// @return 1; 0 a tolerance that isn't a number, cells in a list, or no cell with valid corners; 2 cancelled. tin
    /// is
    ///         empty unless 1
    int Run(const CDEM& dem, CTIN& tin, IPorcentaje* porcentaje) const;

  private:
    double m_dTolerancia;
};

}  // namespace Vertiz
