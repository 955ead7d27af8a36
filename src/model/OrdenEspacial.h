#pragma once
// Internal. The order in which points go into a triangulation.

#include "model/Predicados.h"

#include <span>
#include <vector>

namespace Vertiz::geometria {

/// Indices of points in rounds, each some times as large as the one before, drawn at random; inside a round along a
/// curve that fills the plane (N. Amenta, S. Choi, G. Rote: Incremental constructions con BRIO, 2003). So a point is
/// never far from the one before, and no input is a bad one. Points of one place follow each other, the first of them
/// first; otherwise the order depends on the places only, and not on the indices.
/// @param puntos  at most 2^32 - 1
[[nodiscard]] std::vector<std::uint32_t> OrdenEspacial(std::span<const predicados::CLugar> puntos);

}  // namespace Vertiz::geometria
