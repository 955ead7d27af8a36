#pragma once
// What lies between two surfaces.

namespace Vertiz {

/// Volumes between a surface and the one that it is held against, terrain units. Above means that the first surface is
/// the higher one. What lies at one height counts in neither area.
struct CVolumen {
    double m_dEncima = 0.0;            ///< volume where it lies above
    double m_dDebajo = 0.0;            ///< volume where it lies below, not negative
    double m_dSuperficieEncima = 0.0;  ///< areas in plan
    double m_dSuperficieDebajo = 0.0;
};

}  // namespace Vertiz
