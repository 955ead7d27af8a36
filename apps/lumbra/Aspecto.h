#pragma once
// How a model is seen: what the user can ask of it, and the settings of a scene that follow.

#include "Cuadro.h"
#include "frame/CGL.h"
#include "model/CMaximas.h"

#include <string>

/// What a user can ask of a picture or a window. Angles are in degrees, colours RGB with red in the low byte.
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

/// A factor of heights that makes the relief of a model of these extents visible.
double ExageracionNatural(const Vertiz::CMaximas<double>& extension);

/// Puts those options into a scene's settings that have a field of their own there.
void PonOpciones(CDataGL& data, const OpcionesVista& opciones);

/// Gives a scene its settings.
/// @param extension  of what is shown, for the ramp of heights; local terrain units
/// @throw std::runtime_error with a sentence for the user
void Ajusta(CGL& escena, const OpcionesVista& opciones, const Vertiz::CMaximas<double>& extension);
