#pragma once
// Internal. Cutting areas into convex pieces; the geometry behind CDibujo::GeneraConvexos.

#include <optional>
#include <vector>

namespace Vertiz::geometria {

/// A corner of an outline.
struct CEsquina {
    double x, y, z;
    unsigned linea;  // whatever the caller wants to know of it again
};

/// The pieces, each a counter-clockwise ring of indices into the corners, the first one not repeated.
struct CPiezas {
    std::vector<CEsquina> esquinas;  // those given, and the points where outlines cross
    std::vector<std::vector<unsigned>> anillos;
};

/// Cuts the area between closed outlines into convex pieces in n log n time. What an even number of outlines surround
/// is outside.
/// @param contornos  rings of corners, the first one not repeated, in either direction
/// @return nothing when a coordinate isn't finite or memory fails
std::optional<CPiezas> Convexos(const std::vector<std::vector<CEsquina>>& contornos);

}  // namespace Vertiz::geometria
