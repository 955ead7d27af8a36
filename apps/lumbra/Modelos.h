#pragma once
// The models that are shown beside the first one, whatever kinds they are of.

#include "Aspecto.h"
#include "Progreso.h"
#include "frame/CGL.h"
#include "model/CDataSemilla.h"
#include "model/CMaximas.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

/// Takes what the user should know, one line with the file's name in front.
using Aviso = std::function<void(const std::string&)>;

/// Where the models of one picture meet: what the first one lies in.
struct Marco {
    CString wkt;                   ///< its system; empty when it has none
    Vertiz::CDataSemilla semilla;  ///< local coordinates are the absolute ones less this
    std::optional<double> nulo;    ///< height that the user says is none
};

/// What a file holds, in the coordinates of a frame, ready to be shown.
class Modelo {
  public:
    Modelo() = default;
    virtual ~Modelo() = default;
    Modelo(const Modelo&) = delete;
    Modelo& operator=(const Modelo&) = delete;

    /// A scene that borrows the model, to be handed over to another scene. It must be gone before the model.
    virtual std::unique_ptr<CGL> HazEscena() = 0;

    /// What of it should be seen, local terrain units.
    /// @throw std::runtime_error with a sentence for the user, when it can't be shown as is asked for
    virtual Vertiz::CMaximas<double> Extension(const OpcionesVista& opciones) const = 0;
};

/// Reads a file as the kind of model that it is.
/// @param ruta  UTF-8
/// @throw std::runtime_error with a sentence for the user
std::unique_ptr<Modelo> LeeModelo(const std::string& ruta, const Marco& marco, Progreso& progreso, const Aviso& avisa);
