#pragma once
// Internal. What the walks over the mesh of a grid have in common: a band of cells, and its two rows of the index map.

#include "terrain/CEscenaDEM.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

/// What the bands of one rectangle are sent from. A band is what lies between two neighbouring rows of the map.
struct CEscenaDEM::Banda {
    /// A direction in GL space.
    struct Vector {
        float x, y, z;
    };
    static Vector Normal(const float* v0, const float* v1, const float* v2);

    int f, x, colInicio, colFin, colsMapa;
    bool porAltura, tintada;
    Vector normal{0, 0, 0};          ///< of the last whole cell: strips and points keep it over a void
    std::vector<Vector> normales{};  ///< of the band's cells, by their column of the map
    /// Colours by height of the band's two rows of the map. Each row is coloured once for the two bands that it is in.
    std::vector<Color> coloresNorte{}, coloresSur{};
    std::int64_t filaSur = -1;  ///< the row that coloresSur holds

    /// The columns of the map that the rectangle can reach.
    std::int64_t Primera() const { return std::max<std::int64_t>(std::int64_t{colInicio} * f / x - 1, 0); }
    std::int64_t Ultima() const {
        return std::min<std::int64_t>(std::int64_t{colFin} * f / x + f, std::int64_t{colsMapa} - 1);
    }
};

/// A row of the index map with its colours. A vertex past its end is missing, and so are all of a row past the map's.
struct CEscenaDEM::FilaMapa {
    std::span<const std::int32_t> indices;
    const Color* colores;

    std::int32_t Indice(std::int64_t columna) const {
        const auto i = static_cast<std::size_t>(columna);
        return i < indices.size() ? indices[i] : -1;
    }
};
