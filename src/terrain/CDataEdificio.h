#pragma once
// One building of a terrain.

#include "model/CDibujo.h"
#include "platform/Tipos.h"

/// A colour of a building, 0 to 255 each, and a byte that nobody reads.
struct CColorEdificio {
    BYTE m_nRojo = 0, m_nVerde = 0, m_nAzul = 0, m_nReserva = 0;
    bool operator==(const CColorEdificio&) const = default;
};

/// A building: walls between two outlines, and a roof. Coordinates are integers on the drawings' seeds, in the scene's
/// local terrain. A plain value; copies are deep.
struct CDataEdificio {
    CColorEdificio m_ColorPared;
    CColorEdificio m_ColorTejado;
    Vertiz::CDibujo<int> m_Superior;  ///< edge of the roof with its heights, a line for each part; walls close only
                                      ///< where a line does
    Vertiz::CDibujo<int> m_Inferior;  ///< the same lines, point by point, at the foot of the walls
    Vertiz::CDibujo<int> m_Tejado;    ///< a line for each triangle of the roof; CEdificios::AgregaEdificio fills it
};
