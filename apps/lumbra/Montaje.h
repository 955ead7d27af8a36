#pragma once
// A terrain with all that is shown with it, from the user's files to a scene: what stands and lies on it, and the
// models beside it.

#include "Aspecto.h"
#include "Escenario.h"
#include "Modelos.h"
#include "Terreno.h"
#include "terrain/CEscenaDEM.h"
#include "model/CDigiTab.h"

#include <memory>
#include <string>
#include <vector>

/// Files of models to show beside the first one, UTF-8.
struct OpcionesComposicion {
    std::vector<std::string> referencias;  ///< shown while the scene shows references
    std::vector<std::string> vinculos;     ///< always shown
};

/// What the user asks to see.
struct OpcionesMontaje {
    std::string fichero;  ///< elevation grid, UTF-8
    OpcionesTerreno terreno;
    OpcionesVista vista;
    OpcionesEscenario escenario;
    OpcionesComposicion composicion;

    /// The first option that is asked for of those that only a terrain has a use for, as the user wrote it; null for
    /// none.
    const char* DelTerreno() const;
};

/// The models and styles that a scene borrows: it must be gone before. All throw std::runtime_error with a sentence for
/// the user.
class Montaje {
  public:
    /// Reads all files.
    Montaje(const OpcionesMontaje& opciones, Progreso& progreso, const Aviso& avisa);

    /// The scene with its settings, and what stands on the terrain; it has no context yet.
    std::unique_ptr<CEscenaDEM> HazEscena();

    /// Once the scene has a context: the models beside it join, the image goes over it, the viewer takes his place.
    /// What is left to do is Iniciar.
    void Prepara(CEscenaDEM& escena);

    /// Once the lists are built for good: what was needed for them alone goes.
    void Aligera() { m_Escenario.cielo.reset(); }

    /// What is to be seen as the scene's settings are now, local terrain units.
    Vertiz::CMaximas<double> Extension(const CEscenaDEM& escena) const;

    /// The factor of heights that was asked for, or that shows the relief.
    double Exageracion() const { return m_dExageracion; }
    const Vertiz::CDEM& Terreno() const { return *m_Leido.m_pDEM; }
    const CString& Sistema() const { return m_Leido.m_Sistema; }
    bool EnGrados() const { return m_Leido.m_Unidad == L"degree"; }

  private:
    struct Acompanante {
        std::string ruta;
        std::unique_ptr<Modelo> modelo;
        Vertiz::CMaximas<double> extension;
        bool bReferencia;
    };
    void LeeAcompanantes(const std::vector<std::string>& rutas, bool bReferencia, Progreso& progreso,
                         const Aviso& avisa);

    OpcionesVista m_Vista;
    OpcionesTerreno m_Lectura;
    Vertiz::CResultadoDEM m_Leido;
    Escenario m_Escenario;
    std::vector<Acompanante> m_Acompanantes;
    Vertiz::CDigiTab m_Estilos;
    Vertiz::CMaximas<double> m_Terreno;  // what of the first model is to be seen, with what stands on it
    double m_dExageracion = 1.0;
};
