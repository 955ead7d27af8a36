#pragma once
// Internal. One INI file in memory, between reading it and putting the new one in its place. What such a file may hold
// is told in Perfil.h.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plataforma {

/// Names and values are wide; whether a name is there is found without regard to capitals.
class FicheroIni {
  public:
    FicheroIni();
    ~FicheroIni();

    /// Reads a file; one that doesn't exist is an empty one. False when it can't be read or is no file of settings (it
    /// is larger than 16 MiB), with the reason in the last error.
    bool Lee(const wchar_t* nombre);
    /// Writes what changed, the whole file at once; false on failure, with the file as it was.
    bool Graba();

    std::optional<std::wstring> Valor(const wchar_t* seccion, const wchar_t* clave) const;
    std::vector<std::wstring> Secciones() const;
    std::vector<std::wstring> Claves(const wchar_t* seccion) const;

    /// False when the names or the text couldn't be read back.
    bool Pon(const wchar_t* seccion, const wchar_t* clave, const wchar_t* texto);
    void Quita(const wchar_t* seccion, const wchar_t* clave);
    void QuitaSeccion(const wchar_t* seccion);

  private:
    enum class Codificacion { Utf8, Utf8ConFirma, Utf16, Ansi };
    struct Datos;

    bool Interpreta(std::string_view bytes);
    std::string Escribe() const;

    std::string m_Ruta;
    Codificacion m_Codificacion = Codificacion::Utf8;
    bool m_bRetornos = false;  // lines end in carriage return and line feed
    bool m_bCambiado = false;
    std::unique_ptr<Datos> m_Datos;
};

}  // namespace plataforma
