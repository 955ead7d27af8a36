#pragma once
// Internal. The plane predicates that every decision of the model's geometry goes back to. Their answers are exact for
// the given doubles (but for magnitudes below 1e-140, whose products vanish), and so for the integers of a model,
// which are doubles without loss.

#include "model/CCoor.h"
#include "model/CTipoDentro.h"

#include <array>
#include <cstdint>
#include <span>

namespace Vertiz::predicados {

// ---- On integers: exact, and quick enough for the inner loops of a triangulation
// -------------------------------------

__extension__ using Entero128 = __int128;

/// A place in plan on integers, all of their range. 8 bytes.
struct CLugar {
    int x = 0, y = 0;

    CLugar() = default;
    CLugar(int xx, int yy) : x(xx), y(yy) {}
    CLugar(const CCoor2D<int>& c) : x(c.x), y(c.y) {}
    CLugar(const CCoor3D<int>& c) : x(c.x), y(c.y) {}
    bool operator==(const CLugar&) const = default;
    auto operator<=>(const CLugar&) const = default;
};

/// Twice the area of a, b, c, above 0 counterclockwise. A difference of coordinates takes 33 bits with its sign, so a
/// product takes 65 and this 66.
[[nodiscard]] inline Entero128 DobleArea(const CLugar& a, const CLugar& b, const CLugar& c) {
    const std::int64_t ux = std::int64_t{b.x} - a.x, uy = std::int64_t{b.y} - a.y;
    const std::int64_t vx = std::int64_t{c.x} - a.x, vy = std::int64_t{c.y} - a.y;
    return Entero128{ux} * vy - Entero128{uy} * vx;
}

/// Side of c seen along a to b: 1 left, -1 right, 0 in line.
[[nodiscard]] inline int Giro(const CLugar& a, const CLugar& b, const CLugar& c) {
    const Entero128 area = DobleArea(a, b, c);
    return area > 0 ? 1 : area < 0 ? -1 : 0;
}

/// What EnCirculo does where coordinates differ by 2^30 and more.
[[nodiscard]] int EnCirculoLejos(const CLugar& a, const CLugar& b, const CLugar& c, const CLugar& d);

/// Side of the circle through a, b and c, which turn left, that d lies on: 1 inside, -1 outside, 0 on it.
[[nodiscard]] inline int EnCirculo(const CLugar& a, const CLugar& b, const CLugar& c, const CLugar& d) {
    const std::int64_t ax = std::int64_t{a.x} - d.x, ay = std::int64_t{a.y} - d.y;
    const std::int64_t bx = std::int64_t{b.x} - d.x, by = std::int64_t{b.y} - d.y;
    const std::int64_t cx = std::int64_t{c.x} - d.x, cy = std::int64_t{c.y} - d.y;
    // The usual case. Differences below 2^30 give squared lengths and cross products of up to 2^61, which fit in 64
    // bits; their products, up to 2^122, and the sum of three of them, below 2^124, fit in 128: nothing is rounded.
    constexpr std::int64_t cerca = std::int64_t{1} << 30;
    const auto lejos = [](std::int64_t v) { return static_cast<std::uint64_t>(v + cerca); };
    if ((lejos(ax) | lejos(ay) | lejos(bx) | lejos(by) | lejos(cx) | lejos(cy)) >= 2 * std::uint64_t{cerca})
        return EnCirculoLejos(a, b, c, d);
    const Entero128 det = Entero128{ax * ax + ay * ay} * (bx * cy - by * cx) +
                          Entero128{bx * bx + by * by} * (cx * ay - cy * ax) +
                          Entero128{cx * cx + cy * cy} * (ax * by - ay * bx);
    return det > 0 ? 1 : det < 0 ? -1 : 0;
}

/// d lies inside the circle of a, b and c, which turn left, with a rule for those on it that makes the Delaunay
/// triangulation of given points unique: as if each point were lifted off the paraboloid above the plane by an amount
/// that vanishes, but is incomparably larger for those of larger x, then y (H. Edelsbrunner, E. P. Mücke: Simulation
/// of simplicity, 1990). Of four points on a circle the largest is cut off by the diagonal between its neighbours.
[[nodiscard]] inline bool EnCirculoUnico(const CLugar& a, const CLugar& b, const CLugar& c, const CLugar& d) {
    const int lado = EnCirculo(a, b, c, d);
    if (lado != 0) return lado > 0;
    // Lifting a corner lifts the plane above d by the share that the corner has in d.
    if (d > a && d > b && d > c) return false;
    if (a > b && a > c) return Giro(d, b, c) > 0;
    return b > c ? Giro(a, d, c) > 0 : Giro(a, b, d) > 0;
}

/// Where the segments a b and c d cross, which they do inside both, rounded to the nearest integers (halves up).
[[nodiscard]] CLugar CruceRedondeado(const CLugar& a, const CLugar& b, const CLugar& c, const CLugar& d);

/// The segment a b passes through what is rounded to p: a square of one unit round it, with its left and lower sides.
[[nodiscard]] bool PasaPor(const CLugar& a, const CLugar& b, const CLugar& p);

// ---- On doubles
// ------------------------------------------------------------------------------------------------------

using CPlano = CCoor2D<double>;

/// Side of c seen along a to b: 1 left, -1 right, 0 in line. 0 as well for what isn't finite.
[[nodiscard]] int Orientacion(const CPlano& a, const CPlano& b, const CPlano& c);

/// p lies on the segment a b, ends included.
[[nodiscard]] bool EnSegmento(const CPlano& p, const CPlano& a, const CPlano& b);

/// A place that two segments share.
struct CContacto {
    CPlano lugar;          ///< rounded to doubles where both are crossed inside; otherwise the very end
    double t = 0;          ///< where on the first segment, 0 to 1; exactly 0 or 1 at an end
    double u = 0;          ///< where on the second one
    bool bPropio = false;  ///< each crosses the other inside
};

/// The places that segments a b and c d share: none, one, or the two ends of a common piece.
struct CContactos {
    std::array<CContacto, 2> lugares;
    int nCuantos = 0;

    [[nodiscard]] const CContacto* begin() const { return lugares.data(); }
    [[nodiscard]] const CContacto* end() const { return lugares.data() + nCuantos; }
    void Agrega(const CContacto& contacto);
};
[[nodiscard]] CContactos Contactos(const CPlano& a, const CPlano& b, const CPlano& c, const CPlano& d);

/// Where p lies with respect to a ring, which closes from its last point to its first: 1 outside, 2 inside (even-odd
/// rule), 3 on a vertex, 4 on a side.
template <class T>
[[nodiscard]] CTipoDentro PuntoEnPoligono(const CPlano& p, std::span<const CCoor3D<T>> anillo) {
    if (anillo.empty()) return TD_FUERA;
    bool bDentro = false, bLado = false;
    CPlano a(anillo.back());
    for (const CCoor3D<T>& vertice : anillo) {
        const CPlano b(vertice);
        if (p == b) return TD_BORDE_DENTRO;
        if (a.y == p.y && b.y == p.y) {
            bLado = bLado || ((a.x < p.x) != (b.x < p.x));
        } else if ((a.y > p.y) != (b.y > p.y) && (a.x >= p.x || b.x >= p.x)) {
            // The side crosses the level of p: does it do so to the right of p?
            const int lado = a.x > p.x && b.x > p.x ? (b.y > a.y ? 1 : -1) : Orientacion(a, b, p);
            bLado = bLado || lado == 0;
            if ((lado > 0) == (b.y > a.y)) bDentro = !bDentro;
        }
        a = b;
    }
    if (bLado) return TD_BORDE_FUERA;
    return bDentro ? TD_DENTRO : TD_FUERA;
}

}  // namespace Vertiz::predicados
