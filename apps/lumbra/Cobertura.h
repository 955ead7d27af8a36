#pragma once
// How much of a sphere a panorama covers.

#include <optional>
#include <string>

/// A picture's place in the equirectangular picture of a whole sphere, a full turn wide and half a turn high.
struct Cobertura {
    double izquierda = 0.0, ancho = 1.0;  ///< shares of the full turn, from the left
    double abajo = 0.0, alto = 1.0;       ///< shares of the half turn, from the nadir
    std::optional<double> rumbo;  ///< azimuth of the full turn's middle, degrees from north; empty when not known
};

/// What a file tells of itself in its metadata ("GPano", the photo sphere's XMP properties), where that makes sense;
/// otherwise a full turn with the horizon in the picture's middle, as high as the width makes it.
/// @param ruta         UTF-8
/// @param ancho, alto  pixels of the picture
Cobertura LeeCobertura(const std::string& ruta, int ancho, int alto);
