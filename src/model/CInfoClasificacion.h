#pragma once
// One class of objects of a terrain model and whether it is shown.

namespace Vertiz {

/// One class of objects, told by the type of its models, and whether a scene shows it. A type that no row names is
/// shown.
struct CInfoClasificacion {
    int m_nTipo = 0;         ///< type of the objects, as their models carry it
    bool m_bVisible = true;  ///< whether they are drawn

    bool operator==(const CInfoClasificacion&) const = default;
};

}  // namespace Vertiz
