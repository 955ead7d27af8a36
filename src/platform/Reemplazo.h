#pragma once
// Internal. Writing a file that takes the place of another one: all of it, or nothing.

#include "platform/Descriptor.h"

#include <string>

namespace plataforma {

/// What a symbolic link leads to; other paths stay as they are.
std::string RutaReal(const std::string& ruta);

/// Writes beside the old file, under a name of its own, until `Termina`. Without that nothing of it is left. A symbolic
/// link stays one, and an old file hands its permissions on. What fails is in GetLastError.
class Reemplazo {
  public:
    explicit Reemplazo(const std::string& ruta);
    ~Reemplazo();
    Reemplazo(const Reemplazo&) = delete;
    Reemplazo& operator=(const Reemplazo&) = delete;

    /// The new file is open.
    explicit operator bool() const { return m_bAbierto; }
    bool Escribe(const void* bytes, std::size_t n);
    /// Puts the new file in the place of the old one.
    bool Termina();

  private:
    std::string m_Ruta, m_Nueva;
    Descriptor m_Fichero;
    bool m_bAbierto = false;
};

}  // namespace plataforma
