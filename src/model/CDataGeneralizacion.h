#pragma once
// What CDibujo::Generaliza needs to know.

namespace Vertiz {

/// How far a drawing is thinned. Lengths are in the units that the drawing stores. All fields begin at 0, which
/// changes nothing.
struct CDataGeneralizacion {
    float m_fTolerancia = 0;      ///< a point goes when the thinned line passes at most this far from it, in plan
    float m_fToleranciaZ = 0;     ///< and at most this far from it in height
    float m_fLongitudMinima = 0;  ///< open lines shorter than this in plan are removed; 0 keeps all
    float m_fAreaMinima = 0;      ///< closed lines with less area than this in plan are removed; 0 keeps all
    int m_bSoloCerradas = 0;      ///< not 0: open lines stay as they are
    int m_bPuedeCruzarse = 0;     ///< not 0: thins faster, but a line may come to cross itself or vanish
};

}  // namespace Vertiz
