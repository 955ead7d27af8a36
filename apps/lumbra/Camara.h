#pragma once
// Where a scene's viewer stands and looks.

#include "terrain/CEscenaDEM.h"

double ARadianes(double grados);

/// The scalar product.
double Producto(const Vertiz::CCoor3D<double>& a, const Vertiz::CCoor3D<double>& b);

/// A direction in GL space: x east, y up, z south.
/// @param azimut     degrees clockwise from north
/// @param elevacion  degrees over the horizon
Vertiz::CCoor3D<double> Direccion(double azimut, double elevacion);

/// What is up for one who looks in that direction, and also for one who stands there and looks at the middle; straight
/// down, what he would have before him.
Vertiz::CCoor3D<double> Arriba(double azimut, double elevacion);

/// The point of what is drawn that lies under a pixel, or within a few pixels of it.
/// @param gl           out: GL space
/// @param profundidad  out: its window depth; may be null
/// @return false when there is nothing
bool HallaBajo(CGL& escena, const CPoint& pt, Vertiz::CCoor3D<double>& gl, double* profundidad);

/// The viewer stands in a direction from the model's middle, and looks at it.
void PonCamara(CGL& escena, double azimut, double elevacion);

/// Brings a model to fill the picture but for some margin, after the scene's own fit.
/// @param extension  of the model, local terrain units
/// @param aspecto    the picture's width over its height
void Encuadra(CEscenaDEM& escena, const Vertiz::CMaximas<double>& extension, double aspecto);

/// Brings a model to fill a window but for some margin, seen from the same side, however it was zoomed before. The
/// scene has been drawn, or fitted, since its projection was made.
/// @param ancho, alto  of the window, pixels
void EncuadraVentana(CEscenaDEM& escena, const Vertiz::CMaximas<double>& extension, int ancho, int alto);
