#pragma once
// A view from inside a panorama.

#include "Cobertura.h"
#include "Cuadro.h"
#include "Foto.h"
#include "raster/CTiff.h"
#include "sphere/CEscenaImagen360.h"

#include <memory>
#include <optional>
#include <string>

/// What a user can ask of a view; angles are in degrees.
struct OpcionesPanorama {
    struct Mirada {
        double azimut, elevacion;
    };
    std::optional<Mirada> mirada;  ///< where to look; empty for the picture's middle
    double campo = 60.0;           ///< height of the view
};

/// A panorama that can be shown. All throw std::runtime_error with a sentence for the user.
class Panorama {
  public:
    /// @param foto  borrowed, also by the scene
    /// @param ruta  of the picture, for what it tells of itself; UTF-8
    Panorama(const Foto& foto, const std::string& ruta, const OpcionesPanorama& opciones, int colorFondo);

    /// The scene, without a context.
    std::unique_ptr<CEscenaImagen360> HazEscena() const;
    /// Once it has one: the viewer looks where he is asked to.
    void PonMirada(CGL& escena) const;

    /// Where to look; azimuths count clockwise from north, or from the picture's middle.
    const OpcionesPanorama::Mirada& Mirada() const { return m_Mirada; }
    /// The picture tells where north is.
    bool HayNorte() const { return m_Cobertura.rumbo.has_value(); }
    /// Pixels shown of the panorama: fewer than it has where it was too large.
    int Ancho() const { return m_nAncho; }
    int Alto() const { return m_nAlto; }

  private:
    Cobertura m_Cobertura;
    std::unique_ptr<Vertiz::CTiff> m_pEntera;  // the picture in a full turn, where it isn't one by itself
    Vertiz::IRaster* m_pRaster;                // m_pEntera or the photograph
    OpcionesPanorama::Mirada m_Mirada{};
    double m_dCampo;
    int m_nColorFondo;
    int m_nAncho = 0, m_nAlto = 0;
};

/// Draws the view. @throw std::runtime_error with a sentence for the user
Imagen DibujaPanorama(const Panorama& panorama, const Lienzo& lienzo);
