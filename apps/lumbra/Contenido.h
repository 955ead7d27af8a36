#pragma once
// What a window shows: a terrain with all that goes with it, or a panorama. The window knows no more of it than this.

#include "frame/CGL.h"
#include "model/CCoor.h"

#include <memory>
#include <optional>
#include <string>

/// A point that was picked, and what the window tells of it.
struct Senalado {
    std::string lugar;    ///< absolute coordinates
    std::string detalle;  ///< the cell that holds it; empty for none
};

/// Models with their scene. The scene borrows the models: it must be gone before.
class Contenido {
  public:
    Contenido() = default;
    virtual ~Contenido() = default;
    Contenido(const Contenido&) = delete;
    Contenido& operator=(const Contenido&) = delete;

    /// The scene with its settings, without a context; the caller's.
    virtual std::unique_ptr<CGL> HazEscena() = 0;
    /// Once it has a context: all but Iniciar.
    /// @throw std::runtime_error with a sentence for the user
    virtual void Prepara(CGL& escena) = 0;

    /// The viewer stands where he stood at first.
    virtual void PonVista(CGL& escena) = 0;
    /// Brings all of it into the window, seen from the same side.
    virtual void Encuadra(CGL& escena, int ancho, int alto) = 0;
    /// After a change that shapes the lists: compiles them, and leaves the view as it is.
    virtual bool Rehaz(CGL& escena) = 0;

    /// The viewer looks round from the middle of a sphere; he can neither move nor measure.
    virtual bool EsPanorama() const { return false; }
    /// The point of the models under a pixel. Selects what holds it.
    /// @return empty when there is nothing
    virtual std::optional<Senalado> Senala(CGL&, const CPoint&) { return {}; }
    /// Decimals of coordinates and lengths.
    virtual int Decimales() const { return 0; }
    /// How the factor of heights is when nobody asks for one.
    virtual double ExageracionPropia() const { return 1.0; }
};
