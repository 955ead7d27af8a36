#pragma once
// The buildings of a terrain.

#include "terrain/CDataEdificio.h"
#include "platform/Exporta.h"

#include <vector>

/// A set of buildings, which the host fills and a scene borrows (CEscenaMDT::RecargarEdificios).
class LUMBRA_API CEdificios : public std::vector<CDataEdificio> {
  public:
    /// Covers a building with a roof and adds a copy of it. The outlines of `m_Superior` bound the roof, closed where
    /// they aren't; one inside another leaves a court open. Its lines of one point are further points of the roof.
    /// @param edificio  its `m_Tejado` is made anew, on the seed of `m_Superior`; empty, and the building without a
    ///                  roof, when outlines cross or bound no area
    void AgregaEdificio(CDataEdificio& edificio);
};
