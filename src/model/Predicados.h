#pragma once
// Internal. The plane predicates that every decision of the model's geometry goes back to. Their answers are exact for
// the given doubles (but for magnitudes below 1e-140, whose products vanish), and so for the integers of a model,
// which are doubles without loss.

#include "model/CCoor.h"
#include "model/CTipoDentro.h"

#include <array>
#include <span>

namespace Vertiz::predicados {

using CPlano = CCoor2D<double>;

/// Side of c seen along a to b: 1 left, -1 right, 0 in line. 0 as well for what isn't finite.
[[nodiscard]] int Orientacion(const CPlano& a, const CPlano& b, const CPlano& c);

/// Side of the circle through a, b and c, which turn left, that d lies on: 1 inside, -1 outside, 0 on it. Exact.
[[nodiscard]] int EnCirculo(const CCoor2D<int>& a, const CCoor2D<int>& b, const CCoor2D<int>& c, const CCoor2D<int>& d);

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
