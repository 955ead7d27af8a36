#pragma once
// Laying a picture over a terrain.

#include "terrain/CEscenaDEM.h"
#include "io/LeeImagen.h"

/// Lays the image over the terrain, when there is one. Its tiles go to a file that goes with the scene.
/// @param imagen  its raster goes to the scene
/// @throw std::runtime_error with a sentence for the user
void Cubre(CEscenaDEM& escena, Vertiz::CResultadoImagen& imagen);
