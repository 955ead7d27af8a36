#pragma once
// Internal. Outlines of glyphs as polygons: what is inside them, and its triangles.

#include <vector>

namespace plataforma {

struct PuntoPlano {
    double x = 0, y = 0;
};

/// A closed line: its last point is joined to its first.
using Contorno = std::vector<PuntoPlano>;

/// The border of what contours enclose by the rule of non-zero winding: the inside always lies to the left, so that
/// outer borders run counter-clockwise and those of holes clockwise, whichever way the contours ran.
/// @return false when the tessellation fails
bool HallaBordes(const std::vector<Contorno>& contornos, std::vector<Contorno>& bordes);

/// Covers what borders enclose with triangles, counter-clockwise, three points each.
/// @return false when the tessellation fails
bool Triangula(const std::vector<Contorno>& bordes, std::vector<PuntoPlano>& triangulos);

}  // namespace plataforma
