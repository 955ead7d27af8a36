#pragma once
// Internal. Which lines follow one another end to end; the search behind CDibujo::Junta.

#include "model/CCoor.h"

#include <array>
#include <span>
#include <vector>

namespace Vertiz::geometria {

/// An open line, reduced to what joining needs: its ends (first, last) and the points next to them.
struct CTramo {
    std::array<CCoor3D<double>, 2> extremos;
    std::array<CCoor3D<double>, 2> vecinos;
    unsigned grupo = 0;  ///< only lines of the same group are joined
};

/// What may be joined; lengths in the units of the coordinates.
struct CReglasUnion {
    double distancia = 0;       ///< ends this far apart in plan still meet
    double cota = 0;            ///< and this far apart in height, if comparaCotas
    bool invierte = true;       ///< a line may be turned round to fit
    bool respetaNudos = false;  ///< nothing is joined where more than two ends meet
    bool comparaCotas = false;
};

/// A line in a chain, as it stands or turned round.
struct CEslabon {
    unsigned tramo;
    bool volteado;
};

/// Lines that follow one another.
struct CCadena {
    std::vector<CEslabon> eslabones;
    bool cerrada = false;  ///< its end meets its beginning
};

/// Chains of lines, in the order of their search; every line is in exactly one of them. Where several lines could go
/// on, the straightest one does. A chain that comes back to a place where it has been gives the loop away as a closed
/// chain, so that no chain passes a place twice. Takes linear time, but where very many ends meet in one place.
std::vector<CCadena> Encadena(std::span<const CTramo> tramos, const CReglasUnion& reglas);

}  // namespace Vertiz::geometria
