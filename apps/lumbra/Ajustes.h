#pragma once
// The settings that a window finds again the next day, in the application's settings file.

#include "Aspecto.h"

/// What is remembered of the windows before, in place of the defaults.
void RecuerdaAjustes(OpcionesVista& opciones);

/// Remembers how a window was left.
/// @param escena       its settings: colours, surface, base, projection
/// @param ancho, alto  of the window, pixels
/// @param exageracion  the user's factor of heights; 0 when he never chose one
/// @return false when the file can't be written
bool GuardaAjustes(const CGL& escena, int ancho, int alto, double exageracion);
