#pragma once
// Makers of small models, with heights that a test can reckon by hand.

#include <functional>
#include <vector>

#include "model/CDEM.h"

namespace modelos {

/// A height that a grid counts as a void.
constexpr float kVacio = -9999.0F;

/// Where a grid lies and how large its cells are, terrain units.
struct Sitio {
    double celdaX = 10.0, celdaY = 10.0;
    double oeste = 0.0, sur = 0.0;  ///< absolute position of the south-west sample
    Vertiz::CDataSemilla semilla{};
};

/// Rows of heights as they lie on a map: the north one first, all of one length.
using Filas = std::vector<std::vector<float>>;

/// A regular grid, its extents found.
Vertiz::CDEM Rejilla(const Filas& filas, const Sitio& sitio = {});

/// The same, from a height for each row (from the north) and column.
Vertiz::CDEM Rejilla(int filas, int columnas, const std::function<float(int, int)>& altura, const Sitio& sitio = {});

/// The same samples in cell-list form: a point for each, a cell for each square of four, from the north by rows.
Vertiz::CDEM ListaCeldas(const Filas& filas, const Sitio& sitio = {});

}  // namespace modelos
