#pragma once
// What tests need of the file system: folders that clean up behind themselves, the real files, and counts for finding
// leaks.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// A folder of its own for one test, with ñ and a space in its name. It and all in it go with the object. While it
/// lives, TMP, TEMP and TMPDIR name it, so that the temporary files of the code under test can be counted.
class CarpetaTemporal {
  public:
    CarpetaTemporal();
    ~CarpetaTemporal();
    CarpetaTemporal(const CarpetaTemporal&) = delete;
    CarpetaTemporal& operator=(const CarpetaTemporal&) = delete;

    const std::filesystem::path& Ruta() const { return m_ruta; }
    std::filesystem::path operator/(std::string_view nombre) const { return m_ruta / nombre; }

    /// Writes a file into the folder, bytes as they are, and gives its path.
    std::filesystem::path Escribe(std::string_view nombre, std::string_view contenido) const;

    /// How many files are in it, in its folders too.
    std::size_t CuentaFicheros() const;

    /// How many of its files this process has open, deleted ones too. Unlike CuentaDescriptores it doesn't see what
    /// libraries open once and keep, their databases for one.
    std::size_t CuentaAbiertos() const;

  private:
    std::filesystem::path m_ruta;
    std::array<std::optional<std::string>, 3> m_antes;  // TMP, TEMP and TMPDIR
};

/// How many files, sockets and pipes the process has open.
std::size_t CuentaDescriptores();

/// The folder of real files (CMake variable LUMBRA_DATA), which not every machine has.
std::filesystem::path CarpetaDatos();

/// Ends the test as skipped, with the reason, when a file of the real data isn't there.
#define SALTA_SIN_DATOS(nombre)                                                          \
    do {                                                                                 \
        if (!std::filesystem::exists(CarpetaDatos() / (nombre)))                         \
            GTEST_SKIP() << "no real data: " << (CarpetaDatos() / (nombre)).string()     \
                         << " is missing (set LUMBRA_DATA to the folder that holds it)"; \
    } while (false)
