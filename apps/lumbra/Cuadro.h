#pragma once
// What a scene is drawn on to become a picture: a bitmap in memory, larger than the picture for smooth edges.

#include "Png.h"
#include "frame/CGL.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"

/// The picture that a user asks for.
struct Lienzo {
    int ancho = 1200, alto = 900;  ///< pixels
    int muestreo = 0;              ///< it is drawn this many times as large each way, and averaged; 0 chooses
};

/// How many times as large a picture is drawn, when nobody asks: twice, and as it is where twice doesn't fit.
/// @throw std::runtime_error with a sentence for the user, for a size that can't be drawn
int Muestreo(const Lienzo& lienzo);

/// Ends a drawing that failed, with what OpenGL tells of it.
/// @throw std::runtime_error with a sentence for the user
[[noreturn]] void FallaGL(const std::string& que);

/// The bitmap and its device. All throw std::runtime_error with a sentence for the user.
class Cuadro {
  public:
    explicit Cuadro(const Lienzo& lienzo);

    /// Width over height.
    double Aspecto() const { return static_cast<double>(m_Lienzo.ancho) / m_Lienzo.alto; }

    /// Makes the scene's contexts.
    void Crea(CGL& escena);
    /// Sets the scene's projection, once its lists are there.
    void Ajusta(CGL& escena);
    /// Clears with the scene's own colour, and draws.
    Imagen Dibuja(CGL& escena);

  private:
    Lienzo m_Lienzo;
    int m_nMuestreo;
    CBitmap m_Mapa;
    CDC m_DC;
};
