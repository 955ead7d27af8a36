#pragma once
// A window where there is no display: a place and a size that can be drawn on in memory.

#include "platform/Backend.h"

namespace plataforma {

class VentanaSinPantalla : public VentanaNativa {
  public:
    VentanaSinPantalla(Backend& backend, const Rectangulo& donde) : m_Backend(backend), m_Donde(donde) {}

    std::uintptr_t Id() const override { return 0; }
    void Muestra(bool) override {}
    void Mueve(const Rectangulo& donde) override { m_Donde = donde; }
    void Titula(const std::string&) override {}
    std::optional<Rectangulo> Medidas() const override { return m_Donde; }
    void Retira() override {}
    bool Admite(const FormatoPixel& formato) const override { return formato.m_bMemoria; }
    std::unique_ptr<Superficie> CreaSuperficie(const FormatoPixel& formato, std::string& motivo) override {
        return m_Backend.CreaMemoria(m_Donde.m_nAncho, m_Donde.m_nAlto, formato, motivo);
    }

    bool Pinta(const Imagen&, int, int, std::string& motivo) override {
        motivo = "without a display a window has no pixels of its own.";
        return false;
    }

  private:
    Backend& m_Backend;
    Rectangulo m_Donde;
};

}  // namespace plataforma
