#pragma once
// Where something lies with respect to a closed line.

namespace Vertiz {

/// Answer of CLinea::EstaDentro. Compares with plain integers, as callers have always done.
enum CTipoDentro : int {
    TD_FUERA = 1,         ///< outside
    TD_DENTRO = 2,        ///< inside
    TD_BORDE_DENTRO = 3,  ///< a point on a vertex; a line inside that touches the border
    TD_BORDE_FUERA = 4,   ///< a point on a side; a line outside that touches the border
    TD_ENCIERRA = 5,      ///< the argument encloses this line without touching it
    TD_CRUZA = 6,         ///< the argument lies partly inside and partly outside
};

}  // namespace Vertiz
