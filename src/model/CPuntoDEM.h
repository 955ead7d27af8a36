#pragma once
// A point on a grid, with the cell that it lies in.

#include "model/CCoor.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// A point of a grid's surface and its cell: the row and column of the cell's south-west sample, row 0 in the south.
/// In a grid in cell-list form the row is the cell's index, and the column is 0.
class LUMBRA_API CPuntoDEM : public CCoor3D<double> {
  public:
    CPuntoDEM() : CCoor3D<double>(0.0, 0.0, 0.0, 0) {}
    CPuntoDEM(unsigned fila, unsigned columna) : CPuntoDEM() {
        m_nFila = fila;
        m_nColumna = columna;
    }

    unsigned m_nFila = 0, m_nColumna = 0;
};

}  // namespace Vertiz
