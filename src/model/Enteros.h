#pragma once
// Internal. Exact arithmetic on stored coordinates: products of three of their differences fit in 128 bits.

#include "model/CCoor.h"

#include <cstdint>

namespace Vertiz::enteros {

__extension__ using Entero = __int128;

/// Twice the area of a triangle in plan, above 0 counterclockwise.
[[nodiscard]] inline Entero Cruz(const CCoor2D<int>& a, const CCoor2D<int>& b, const CCoor2D<int>& c) {
    return Entero{std::int64_t{b.x} - a.x} * (std::int64_t{c.y} - a.y) -
           Entero{std::int64_t{b.y} - a.y} * (std::int64_t{c.x} - a.x);
}

[[nodiscard]] inline int Signo(Entero n) {
    return n > 0 ? 1 : n < 0 ? -1 : 0;
}

/// n / d, rounded to the nearest, halves away from zero. @param d  not 0
[[nodiscard]] inline Entero Divide(Entero n, Entero d) {
    if (d < 0) n = -n, d = -d;
    return n < 0 ? -((-2 * n + d) / (2 * d)) : (2 * n + d) / (2 * d);
}

/// The value at t on the line through (ta, a) and (tb, b), rounded. @param t  between them, which are different
[[nodiscard]] inline int Interpola(int a, int b, std::int64_t ta, std::int64_t tb, std::int64_t t) {
    return static_cast<int>(Divide(Entero{a} * (tb - ta) + (Entero{b} - a) * (t - ta), tb - ta));
}

}  // namespace Vertiz::enteros
