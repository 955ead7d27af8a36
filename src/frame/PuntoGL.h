#pragma once
// Internal. Points and directions of GL space, worked out in doubles and sent to a list in floats.

#include "model/CCoor.h"
#include "platform/OpenGL.h"

/// Sends a vertex.
inline void MandaVertice(const Vertiz::CCoor3D<double>& p) {
    glVertex3f(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
}

/// Makes a direction, brought to length 1, the current normal; one without length stays as it is.
inline void FijaNormal(Vertiz::CCoor3D<double> direccion) {
    direccion.Normaliza();
    glNormal3f(static_cast<float>(direccion.x), static_cast<float>(direccion.y), static_cast<float>(direccion.z));
}
