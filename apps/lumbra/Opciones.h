#pragma once
// What the user asks for on the command line.

#include "Montaje.h"
#include "Panorama.h"

#include <optional>
#include <string>
#include <vector>

enum class Tarea { kDibuja, kMira, kCuenta, kConvierte, kNada };  // kNada: help or version was asked for, and given

struct Orden {
    Tarea tarea = Tarea::kNada;
    std::vector<std::string> ficheros;  ///< of a window: the first one is in `montaje` too
    std::string salida;
    bool gl = false;            ///< tell about OpenGL
    bool tamanoPedido = false;  ///< the picture's size is the user's, not the usual one
    std::optional<bool> foto;   ///< the file is a picture, or isn't; empty: as it looks
    bool esfera = false;        ///< a picture is a panorama, seen from inside
    OpcionesMontaje montaje;
    OpcionesPanorama panorama;
};

/// Reads the command line.
/// @throw std::invalid_argument with a sentence for the user
Orden LeeOrden(int argc, char** argv);
