#pragma once
// A colour that fills areas of a terrain.

#include "model/CDibujo.h"
#include "platform/Exporta.h"

#include <cstdint>
#include <memory>

/// Outlines, and the colour that the terrain inside them takes.
///
/// Plain copies share the drawing: a scene and its references and links show the same one.
struct LUMBRA_API CDataTexturaSimple {
    std::uint32_t m_nColor = 0;  ///< red in the low byte
    /// Outlines, integers on their own seed.
    std::shared_ptr<Vertiz::CDibujo<int>> m_pDibujo;

    /// Becomes a copy of `otra` with a drawing of its own.
    void Duplica(const CDataTexturaSimple& otra);
};
