#pragma once
// Files that the host program writes: whole, or not at all.

#include <cstdio>
#include <memory>
#include <string>

/// Finds out whether a file can be written, without touching its place.
/// @param ruta     UTF-8
/// @param entrada  a file that must not be replaced
/// @throw std::runtime_error with a sentence for the user
void CompruebaSalida(const std::string& ruta, const std::string& entrada);

/// @throw std::runtime_error with a sentence for the user
[[noreturn]] void FallaSalida(const std::string& ruta, const std::string& motivo);

/// Where temporary files go, UTF-8: TMPDIR, or what the system has for it.
/// @throw std::runtime_error with a sentence for the user
std::string CarpetaTemporal();

/// A file under a temporary name beside its place: gone at the end of its life unless it was given its own name.
/// A link stays, and what it leads to is replaced; what isn't an ordinary file is refused.
/// All throw std::runtime_error with a sentence for the user.
class Provisional {
  public:
    /// @param ruta  UTF-8
    explicit Provisional(const std::string& ruta);
    ~Provisional();
    Provisional(const Provisional&) = delete;
    Provisional& operator=(const Provisional&) = delete;

    std::FILE* Fichero() const { return m_pFichero; }
    /// The temporary name, for those who write by name.
    const std::string& Nombre() const { return m_Nombre; }

    /// Closes the file and gives it its own name.
    void Nombra();

  private:
    class Vigilia;  // over what ends the program

    std::string m_Ruta, m_Destino, m_Nombre;
    std::unique_ptr<Vigilia> m_pVigilia;  // of m_Nombre, from before the file is there
    std::FILE* m_pFichero = nullptr;
};
