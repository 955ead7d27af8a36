#pragma once
// A terrain, and what goes with it, for a window.

#include "Contenido.h"
#include "Montaje.h"

class ContenidoTerreno : public Contenido {
  public:
    /// Reads all files. @throw std::runtime_error with a sentence for the user
    ContenidoTerreno(const OpcionesMontaje& opciones, Progreso& progreso, const Aviso& avisa)
        : m_Montaje(opciones, progreso, avisa), m_Vista(opciones.vista) {}

    std::unique_ptr<CGL> HazEscena() override { return m_Montaje.HazEscena(); }
    void Prepara(CGL& escena) override;
    void PonVista(CGL& escena) override;
    void Encuadra(CGL& escena, int ancho, int alto) override;
    bool Rehaz(CGL& escena) override;
    std::optional<Senalado> Senala(CGL& escena, const CPoint& pt) override;
    int Decimales() const override;
    double ExageracionPropia() const override { return m_Montaje.Exageracion(); }

  private:
    std::optional<Vertiz::CDEM::CPosicion> Celda(CEscenaDEM& escena, const CPoint& pt,
                                                 const Vertiz::CCoor3D<double>& local) const;

    Montaje m_Montaje;
    OpcionesVista m_Vista;
};
