#pragma once
// What the gestures of a window mean, apart from any window: turning and nearing of a view, clicks and drags, steps of
// exaggeration, names of files, texts.

#include "model/CCoor.h"
#include "model/CLinea.h"
#include "platform/CPoint.h"

#include <functional>
#include <string>

/// Where a viewer stands, what he looks at, and what is up for him; GL units.
struct Mirada {
    Vertiz::CCoor3D<double> ojo, vista, arriba;
};

/// Turns a view about a point: round the vertical, then up or down.
/// @param azimut   degrees, against the clock seen from above
/// @param elevacion  degrees that the eye rises. A view that stands upright stays so: it ends when it looks straight
///                   down or up
/// @param bLibre   there is no such end
Mirada Gira(const Mirada& mirada, const Vertiz::CCoor3D<double>& pivote, double azimut, double elevacion, bool bLibre);

/// Brings the eye nearer to a point, which keeps its place in the picture.
/// @param factor  of the distance; bounded so that eye and point are never too near nor too far for the projection
Mirada Acerca(const Mirada& mirada, const Vertiz::CCoor3D<double>& punto, double factor);

/// How far a drag turns a view, degrees: half a turn for the window's smaller side.
double GradosDeArrastre(int pixeles, int ancho, int alto);

/// How a turn of the wheel changes distances: below 1 for one away from the user.
/// @param delta  WHEEL_DELTA for a notch
double FactorDeRueda(int delta);

/// A press and release this near to each other are a click.
bool EsClic(const CPoint& pulsado, const CPoint& soltado);

/// The next factor of heights above or below one, out of 1, 1.5, 2, 3, 5, 7, 10 ..., within 0.1 and 100.
/// @param sentido  1 or -1
double SiguienteExageracion(double actual, int sentido);

/// A name in the current folder that is free: that of the input, with a number when there is such a file already.
/// @param entrada    path of the input, UTF-8
/// @param extension  with its point
/// @param hay        tells whether there is a file of that name
std::string NombreLibre(const std::string& entrada, const std::string& extension,
                        const std::function<bool(const std::string&)>& hay);

/// A point as text: x, y and z with so many decimals, parted by blanks.
std::string TextoPunto(const Vertiz::CCoor3D<double>& p, int decimales);

/// Lengths of a line.
struct Longitudes {
    double plana = 0, real = 0;  ///< in plan, and along the slope
};
Longitudes MideLinea(const Vertiz::CLinea<double>& linea);
