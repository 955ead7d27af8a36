#pragma once
// A view from inside a panorama.

#include "Cuadro.h"
#include "Foto.h"

#include <optional>
#include <string>

/// What a user can ask of a view; angles are in degrees.
struct OpcionesPanorama {
    struct Mirada {
        double azimut, elevacion;
    };
    std::optional<Mirada> mirada;  ///< where to look; empty for the picture's middle
    double campo = 60.0;           ///< height of the view
};

/// What was drawn.
struct ResultadoPanorama {
    Imagen imagen;
    OpcionesPanorama::Mirada mirada{};  ///< azimuths count clockwise from north, or from the picture's middle
    bool bNorte = false;                ///< the picture tells where north is
    int ancho = 0, alto = 0;            ///< pixels shown of the panorama: fewer than it has where it was too large
};

/// Draws the view.
/// @param ruta  of the picture, for what it tells of itself; UTF-8
/// @throw std::runtime_error with a sentence for the user
ResultadoPanorama DibujaPanorama(const Foto& foto, const std::string& ruta, const OpcionesPanorama& opciones,
                                 const Lienzo& lienzo, int colorFondo);
