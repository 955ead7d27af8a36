#pragma once
// A picture of an elevation grid, taken without a window.

#include "Cuadro.h"
#include "Escenario.h"
#include "model/CDEM.h"

#include <optional>
#include <string>

/// What a user can ask of a picture. Angles are in degrees, colours RGB with red in the low byte.
struct OpcionesVista {
    Lienzo lienzo;
    double azimut = 215.0;      ///< where the viewer stands, clockwise from north
    double elevacion = 35.0;    ///< how high he stands over the horizon; 90 looks straight down
    bool perspectiva = true;    ///< otherwise orthographic
    double exageracion = 0.0;   ///< factor of heights; 0 chooses one that shows the relief
    unsigned color = 2;         ///< as in the scene: 0 wire, 1 plain, 2 tint by height, 6 cut and fill
    bool sombraCeldas = false;  ///< four tints a cell instead of one colour
    std::string rampa;          ///< stops "height r g b;..." of the tint; empty for the natural one
    int colorFondo = 0xFEF1E0;  ///< background
    int colorDEM = 0x62C5DD;    ///< plain surface
    bool base = true;           ///< walls and floor
    bool limites = false;       ///< the box and outline of the grid
    bool ejes = false;          ///< axes in the corner
    bool luz = true;            ///< shaded by a light
    double luzAzimut = 315.0;   ///< where the light comes from
    double luzElevacion = 45.0;
    unsigned malla = 1;  ///< 0 strips, 1 quads, 2 points
    int paso = 1;        ///< every how many samples of rows and columns one is taken
};

/// What was drawn.
struct ResultadoVista {
    Imagen imagen;
    double exageracion = 1.0;
    int pasoMalla = 1;
};

/// The smallest pixel of an image over a grid that a picture can show, terrain units: half of one that is drawn, when
/// the grid fills the picture.
double PixelMinimo(const Vertiz::CDEM& dem, const Lienzo& lienzo);

/// Draws a grid and what stands on it.
/// @param escenario  its image goes to the scene
/// @throw std::runtime_error with a sentence for the user
ResultadoVista DibujaDEM(Vertiz::CDEM& dem, const OpcionesVista& opciones, Escenario& escenario);
