#pragma once
// Windows of an X11 display, and the surfaces that GLX draws on.

#include "platform/glx/ConexionX11.h"

#include <GL/glx.h>

#include <mutex>
#include <utility>

namespace plataforma {

/// A drawable of GLX: a window, which is its owner's, or a pbuffer, freed here.
class SuperficieGLX : public Superficie {
  public:
    SuperficieGLX(Display* display, GLXDrawable dibujable, bool pbuffer)
        : m_Display(display), m_Dibujable(dibujable), m_bPbuffer(pbuffer) {}
    ~SuperficieGLX() override;

    Display* m_Display;
    GLXDrawable m_Dibujable;
    bool m_bPbuffer;
    std::mutex m_Cerrojo;               // several threads may take the window at once
    std::pair<int, int> m_Vista{0, 0};  // size that the driver has seen of a window; 0 before the first time
};

/// Where a window is and its size; empty when there is none of that number.
std::optional<Rectangulo> MideVentana(Display* display, Window id);

/// Number of the visual that a pixel format draws with.
VisualID VisualDe(Display* display, const FormatoPixel& formato);

class VentanaX11 : public VentanaNativa {
  public:
    /// Makes a window that `formato` can draw on.
    static std::unique_ptr<VentanaX11> Crea(ConexionX11& conexion, const FormatoPixel& formato, const Rectangulo& donde,
                                            Window padre, std::string& motivo);
    /// Wraps a window of somebody else.
    static std::unique_ptr<VentanaX11> Envuelve(ConexionX11& conexion, Window id, std::string& motivo);
    ~VentanaX11() override;

    std::uintptr_t Id() const override { return m_Id; }
    void Muestra(bool visible) override;
    void Mueve(const Rectangulo& donde) override;
    void Titula(const std::string& utf8) override;
    std::optional<Rectangulo> Medidas() const override;
    void Retira() override;
    bool Admite(const FormatoPixel& formato) const override;
    std::unique_ptr<Superficie> CreaSuperficie(const FormatoPixel& formato, std::string& motivo) override;
    bool Pinta(const Imagen& imagen, int x, int y, std::string& motivo) override;

  private:
    VentanaX11(ConexionX11& conexion, Window id, VisualID visual, Colormap mapa, bool propia)
        : m_Conexion(conexion), m_Id(id), m_Visual(visual), m_Mapa(mapa), m_bPropia(propia) {}

    ConexionX11& m_Conexion;
    Window m_Id;
    VisualID m_Visual;
    Colormap m_Mapa;  // 0 for a wrapped window
    bool m_bPropia;
};

}  // namespace plataforma
