#pragma once
// Internal. How the pixels of an image and the cells of a grid are counted against each other.
//
// Sizes of cells and pixels come as decimals that binary numbers don't hold exactly (0.3 / 0.1 is below 3), and places
// are differences of large coordinates. A count within kBandaMuerta of a whole number is therefore that number:
// otherwise images that lie exactly on the grid would be cut beside it.

#include <algorithm>
#include <cmath>

constexpr double kBandaMuerta = 1e-7;
/// What counts are held to, so that sums of some of them still fit in an int.
constexpr int kCuentaMaxima = 1 << 28;

/// A count as an int, within +-kCuentaMaxima; 0 for what is not a number.
inline int Cuenta(double v) {
    return std::isnan(v) ? 0 : static_cast<int>(std::clamp<double>(v, -kCuentaMaxima, kCuentaMaxima));
}

/// Half the sign of v, 0 where v is as good as 0: added before truncating, it rounds.
inline double MedioSigno(double v) {
    return v > kBandaMuerta ? 0.5 : v < -kBandaMuerta ? -0.5 : 0.0;
}

/// Truncates towards 0, what is as good as whole to that number.
inline int Trunca(double v) {
    const double entero = std::round(v);
    return Cuenta(std::abs(v - entero) <= kBandaMuerta ? entero : std::trunc(v));
}

/// The least whole number that v doesn't exceed.
inline int TruncaPorArriba(double v) {
    return -Cuenta(std::floor(kBandaMuerta - v));
}

/// The row or column of the grid at which a row or column of tiles begins.
/// @param celdas         that a tile covers
/// @param desplazamiento cells that the first tile begins before the grid
inline int CeldasHasta(int celdas, int tesela, int desplazamiento) {
    return Trunca(static_cast<double>(celdas) * tesela - desplazamiento);
}

/// The next multiple of `paso` at or above n, which is not negative: where a mesh that shows one sample in `paso` has
/// its next one.
inline int EnPaso(int n, int paso) {
    return (n + paso - 1) / paso * paso;
}
