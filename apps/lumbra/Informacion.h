#pragma once
// What the host program tells about files and about the graphics of the machine.

#include "Foto.h"
#include "io/LeeDEM.h"

/// Prints what is known of an elevation grid.
void CuentaDEM(const Vertiz::CResultadoDEM& leido);

/// Prints what is known of a picture; its header is enough.
void CuentaFoto(const Foto& foto);

/// Prints which way of getting a rendering context serves, what it can do, and why each other one doesn't serve.
/// @return false when none serves
bool CuentaGL();
