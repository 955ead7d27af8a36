#pragma once
// Internal. Floats of 16 bits, which TIFF may hold and C++ has no type for.

#include <cmath>
#include <cstdint>
#include <limits>

namespace Vertiz {

/// The value of an IEEE 754 binary16; a float holds it exactly.
inline float DeMediaPrecision(std::uint16_t bits) {
    const int exponente = bits >> 10 & 31, mantisa = bits & 1023;
    float valor = 0.0F;
    if (exponente == 31)
        valor = mantisa == 0 ? std::numeric_limits<float>::infinity() : std::numeric_limits<float>::quiet_NaN();
    else if (exponente == 0)
        valor = std::ldexp(static_cast<float>(mantisa), -24);
    else
        valor = std::ldexp(static_cast<float>(mantisa + 1024), exponente - 25);
    return (bits & 0x8000) != 0 ? -valor : valor;
}

}  // namespace Vertiz
