#pragma once
// Internal. The corners of a box of real coordinates.

#include "model/CMaximas.h"

#include <array>

/// All eight: heights first, then west to east, then south to north.
inline std::array<Vertiz::CCoor3D<double>, 8> EsquinasCaja(const Vertiz::CMaximas<double>& m) {
    using Punto = Vertiz::CCoor3D<double>;
    const Punto &a = m.Minima(), &b = m.Maxima();
    return {Punto(a.x, a.y, a.z, 0), Punto(a.x, a.y, b.z, 0), Punto(b.x, a.y, a.z, 0), Punto(b.x, a.y, b.z, 0),
            Punto(a.x, b.y, a.z, 0), Punto(a.x, b.y, b.z, 0), Punto(b.x, b.y, a.z, 0), Punto(b.x, b.y, b.z, 0)};
}
