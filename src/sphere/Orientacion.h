#pragma once
// Internal. How a panorama hangs in the terrain.

#include <array>

namespace Vertiz {
class CGeoImagen;
}

/// Angles R1, R2, R3 of a panorama, in degrees: Rx(R1) Ry(R2) Rz(R3), right-handed turns, carries its sphere's axes to
/// the terrain's (x east, y north, z up). Its middle column looks along the sphere's -y.
///
/// Angles that stand for the view as they are (m_bDirecta) are those of the placement plus the corrections. Others are
/// turned round from the camera's frame to the terrain's, with the convergence of the meridians of UTM zone 30 where
/// the panorama has coordinates of its own (m_bSituada).
std::array<double, 3> OrientacionPanorama(const Vertiz::CGeoImagen& imagen);
