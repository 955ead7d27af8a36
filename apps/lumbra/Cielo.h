#pragma once
// A sky, from a picture of any kind.

#include "Foto.h"

#include <string>

/// A picture as a scene takes its sky: in a file of its own, which goes with the object. Scenes show skies from outside
/// their sphere, so to speak: the picture is turned over, and its middle brought to the north.
class Cielo {
  public:
    /// @throw std::runtime_error with a sentence for the user
    explicit Cielo(const Foto& foto);
    ~Cielo();
    Cielo(const Cielo&) = delete;
    Cielo& operator=(const Cielo&) = delete;

    /// UTF-8.
    const std::string& Ruta() const { return m_Ruta; }

  private:
    std::string m_Ruta;
};
