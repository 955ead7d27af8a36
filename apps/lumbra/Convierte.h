#pragma once
// Pictures from one format to another.

#include "Foto.h"
#include "Png.h"

#include <string>

/// True for a name that ConvierteFoto can write: BMP, TIFF, JPEG, PNG.
bool EsSalidaFoto(const std::string& ruta);

/// Writes a picture in the format of the name. Greys stay greys in BMP and TIFF, and TIFF keeps the georeference.
/// @param progreso  kept quiet meanwhile
/// @throw std::runtime_error with a sentence for the user
void ConvierteFoto(const Foto& foto, const std::string& ruta, Progreso& progreso);

/// The picture in red, green and blue, brought to a size that it fits into; each pixel is the mean of those that it
/// stands for.
/// @param ancho, alto  0 for the picture's own
Imagen ImagenDeFoto(const Foto& foto, int ancho = 0, int alto = 0);
