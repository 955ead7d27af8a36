#pragma once
// A picture of a terrain, taken without a window.

#include "Montaje.h"
#include "Png.h"

/// What was drawn.
struct ResultadoVista {
    Imagen imagen;
    double exageracion = 1.0;
    int pasoMalla = 1;
};

/// Draws a terrain with all that goes with it.
/// @throw std::runtime_error with a sentence for the user
ResultadoVista DibujaMontaje(Montaje& montaje, const Lienzo& lienzo);
