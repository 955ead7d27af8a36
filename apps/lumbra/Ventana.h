#pragma once
// `lumbra view`: a window, from its opening to what is remembered of it.

#include "Contenido.h"
#include "Montaje.h"

/// @throw std::runtime_error with a sentence for the user, where no window can be opened
void CompruebaPantalla();

/// Shows the content until the user closes the window.
/// @throw std::runtime_error with a sentence for the user, also when the display goes away
void Muestra(Contenido& contenido, const OpcionesMontaje& opciones);
