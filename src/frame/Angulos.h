#pragma once
// Internal. Degrees, which hosts and OpenGL speak, and radians, which arithmetic needs.

#include <numbers>

inline double ARadianes(double grados) {
    return grados * std::numbers::pi / 180.0;
}

inline double AGrados(double radianes) {
    return radianes * 180.0 / std::numbers::pi;
}
