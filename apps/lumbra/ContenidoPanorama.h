#pragma once
// A panorama for a window, which looks round in it.

#include "Contenido.h"
#include "Panorama.h"

#include <utility>

class ContenidoPanorama : public Contenido {
  public:
    explicit ContenidoPanorama(Panorama vuelta) : m_Vuelta(std::move(vuelta)) {}

    const Panorama& Vuelta() const { return m_Vuelta; }

    std::unique_ptr<CGL> HazEscena() override {
        std::unique_ptr<CGL> escena = m_Vuelta.HazEscena();
        m_fCampo = escena->GetAnguloVista();
        return escena;
    }
    void Prepara(CGL& escena) override {
        m_Vuelta.PonMirada(escena);
        escena.OnZoomExtension();
    }
    void PonVista(CGL& escena) override { m_Vuelta.PonMirada(escena); }
    /// A panorama is round the viewer: nothing has to be brought into the window but the height of the view.
    void Encuadra(CGL& escena, int ancho, int alto) override {
        escena.SetAnguloVista(m_fCampo);
        escena.Resize(ancho, alto);
    }
    bool Rehaz(CGL& escena) override { return escena.Iniciar() != 0; }
    bool EsPanorama() const override { return true; }

  private:
    Panorama m_Vuelta;
    float m_fCampo = 60.0F;  // degrees
};
