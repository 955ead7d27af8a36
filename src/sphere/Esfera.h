#pragma once
// Internal. Spheres that cover a range of polar angles, which those of GLU can't.

/// Sends a sphere about the origin into the open list, or draws it.
///
/// A point at the meridian angle m and the polar angle p, in a sphere of radius r, is
///     r (-sin m sin p, cos m sin p, cos p), with z turned round in a sphere seen from inside:
/// polar angles then count from the nadir, and textures stand upright. In texture space s is m over a full turn, and t
/// goes from 0 at `inicio` to 1 at `fin`.
///
/// @param radio        GL units
/// @param meridianos, paralelos  divisions of a turn and of the range; with less than one of each nothing is drawn
/// @param normales     GLU_NONE leaves normals out; GLU_SMOOTH, GLU_FLAT send one for each vertex
/// @param orientacion  GLU_OUTSIDE, or GLU_INSIDE, with normals towards the middle
/// @param estilo       GLU_FILL in bands from `fin` to `inicio`; GLU_LINE and GLU_SILHOUETTE parallels and meridians;
///                     GLU_POINT vertices alone
/// @param textura      not 0: texture coordinates, and no caps; 0: the first and the last band are caps that reach the
///                     poles
/// @param inicio, fin  range of polar angles, degrees
void DibujaEsfera(double radio, int meridianos, int paralelos, int normales, int orientacion, int estilo, int textura,
                  double inicio, double fin);
