#pragma once
// Elevation grids, as the host program reads them and as it shows one beside others.

#include "Modelos.h"
#include "io/LeeDEM.h"

#include <optional>

/// How grids are read.
struct OpcionesTerreno {
    std::optional<double> nulo;  ///< void value in place of the file's own
    bool grados = false;         ///< leave a grid in degrees as it is
};

/// Reads a grid, and tells what its user should know.
/// @param ruta  UTF-8
/// @param wkt   system to bring it to; empty for its own
/// @throw std::runtime_error with a sentence for the user
Vertiz::CResultadoDEM LeeTerreno(const std::string& ruta, const OpcionesTerreno& opciones, const CString& wkt,
                                 Progreso& progreso, const Aviso& avisa);

/// @throw std::runtime_error with a sentence for the user, when no cell has heights at its four corners
void CompruebaCeldas(const Vertiz::CDEM& dem, const std::string& ruta);

/// @throw std::runtime_error with a sentence for the user, when one sample in so many leaves no cell
void CompruebaPaso(const Vertiz::CDEM& dem, int paso);

/// The part of a grid that holds heights: many are a piece of country in a rectangle of voids.
Vertiz::CMaximas<double> ExtensionConDatos(const Vertiz::CDEM& dem);

/// A grid that is shown beside another model.
class ModeloTerreno : public Modelo {
  public:
    explicit ModeloTerreno(std::unique_ptr<Vertiz::CDEM> pDEM) : m_pDEM(std::move(pDEM)) {}

    std::unique_ptr<CGL> HazEscena() override;
    Vertiz::CMaximas<double> Extension(const OpcionesVista& opciones) const override;

    /// Reads one for a frame. @throw std::runtime_error with a sentence for the user
    static std::unique_ptr<Modelo> Lee(const std::string& ruta, const Marco& marco, Progreso& progreso,
                                       const Aviso& avisa);

  private:
    std::unique_ptr<Vertiz::CDEM> m_pDEM;
};
