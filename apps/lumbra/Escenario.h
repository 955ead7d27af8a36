#pragma once
// What stands and lies on a terrain: its image, buildings, trees, breaklines and sky, out of the user's files.

#include "Cielo.h"
#include "Progreso.h"
#include "terrain/CEdificios.h"
#include "io/LeeDEM.h"
#include "io/LeeImagen.h"
#include "model/CDibujo.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The user's files, UTF-8; empty for none.
struct OpcionesEscenario {
    std::string imagen, edificios, arboles, rupturas, cielo;
    std::string campoAltura;      ///< attribute that holds the buildings' heights; empty for the usual names
    double alturaArboles = 10.0;  ///< of trees whose file has no height, terrain units
    bool coniferas = false;       ///< the trees are conifers

    /// The first option that is asked for, as the user wrote it; null for none.
    const char* Primera() const;
};

/// All of it, ready for a scene. Breaklines are in the grid.
struct Escenario {
    Vertiz::CResultadoImagen imagen;  ///< without a raster when there is none
    CEdificios edificios;
    std::vector<std::pair<double, Vertiz::CDibujo<int>>> arboles;  ///< height, and feet of the trees that have it
    bool coniferas = false;
    std::unique_ptr<Cielo> cielo;      ///< null for none; not needed any more once the scene's lists are built
    Vertiz::CMaximas<double> maximas;  ///< of buildings and trees, local terrain units; empty without
};

/// Reads the files. Everything goes onto the grid: what lies off it is left out.
/// @param pixelMinimo  smallest pixel of the image that the picture can show, terrain units
/// @param avisa        takes what the user should know, one line with the file's name in front
/// @throw std::runtime_error with a sentence for the user
Escenario LeeEscenario(const OpcionesEscenario& opciones, Vertiz::CResultadoDEM& terreno, double pixelMinimo,
                       Progreso& progreso, const std::function<void(const std::string&)>& avisa);
