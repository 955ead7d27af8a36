#pragma once
// Internal. Sides that cross, and what takes their place so that none does.

#include "model/Delaunay.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace Vertiz::geometria {

/// A side that a triangulation is to have.
struct CLadoPedido {
    int a, b;              ///< points
    std::uint32_t marcas;  ///< LADO_LIMITE, LADO_ISLA
};

/// A piece of one. Points from the given ones' number on are new ones.
struct CTrozoLado {
    int a, b;
    int tramo;  ///< the side that it is of
};

/// Where sides cross between points, rounded to integers, sorted and each once. Time goes with the sides and with how
/// often they cross.
/// @param delaunay    the points, with all sides put in that could be
/// @param rechazados  the others, by index
/// @param sigue       asked now and then; false ends the work
/// @return nothing when ended so, or when sides cross more than some ten million times
[[nodiscard]] std::optional<std::vector<predicados::CLugar>> LugaresDeCruce(CDelaunay& delaunay,
                                                                            std::span<const predicados::CLugar> puntos,
                                                                            std::span<const CLadoPedido> tramos,
                                                                            std::vector<int> rechazados,
                                                                            const std::function<bool()>& sigue);

/// Leads sides through the rounded places where they cross, and gives the pieces, which don't cross.
///
/// A side that comes within half a unit of such a place, in x and in y, is bent to pass through it; a side that is bent
/// passes through every point that it comes as close to, and those bend others in turn. The rest stays straight. So a
/// bent side keeps within half a unit of where it was, no side comes to lie beyond a point that it passed, and sides
/// may touch and share pieces but never cross: the pixels that a side passes through draw it together (snap rounding:
/// L. Guibas, D. Marimont, 1998), only round the crossings.
/// @param cruces  LugaresDeCruce
/// @param nuevos  out: the places that no point had, sorted
/// @param sigue   as above
/// @return nothing when ended so
[[nodiscard]] std::optional<std::vector<CTrozoLado>> ResuelveCruces(std::span<const predicados::CLugar> puntos,
                                                                    std::span<const CLadoPedido> tramos,
                                                                    std::span<const predicados::CLugar> cruces,
                                                                    std::vector<predicados::CLugar>& nuevos,
                                                                    const std::function<bool()>& sigue);

}  // namespace Vertiz::geometria
