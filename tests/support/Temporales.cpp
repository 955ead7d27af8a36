// Temporary folders and counts, on the standard library.

#include "support/Temporales.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace {

constexpr std::array kVariables{"TMP", "TEMP", "TMPDIR"};

}  // namespace

CarpetaTemporal::CarpetaTemporal() {
    std::string plantilla = (std::filesystem::temp_directory_path() / "lumbra año XXXXXX").string();
    if (mkdtemp(plantilla.data()) == nullptr) throw std::runtime_error("no temporary folder can be made: " + plantilla);
    m_ruta = plantilla;
    for (std::size_t i = 0; i < kVariables.size(); ++i) {
        if (const char* valor = std::getenv(kVariables[i])) m_antes[i] = valor;
        setenv(kVariables[i], m_ruta.c_str(), 1);
    }
}

CarpetaTemporal::~CarpetaTemporal() {
    for (std::size_t i = 0; i < kVariables.size(); ++i) {
        if (m_antes[i]) {
            setenv(kVariables[i], m_antes[i]->c_str(), 1);
        } else {
            unsetenv(kVariables[i]);
        }
    }
    std::error_code nada;
    std::filesystem::remove_all(m_ruta, nada);
}

std::filesystem::path CarpetaTemporal::Escribe(std::string_view nombre, std::string_view contenido) const {
    const std::filesystem::path ruta = m_ruta / nombre;
    std::filesystem::create_directories(ruta.parent_path());
    std::ofstream(ruta, std::ios::binary) << contenido;
    return ruta;
}

std::size_t CarpetaTemporal::CuentaFicheros() const {
    std::size_t cuenta = 0;
    for (const auto& entrada : std::filesystem::recursive_directory_iterator(m_ruta))
        cuenta += !entrada.is_directory();
    return cuenta;
}

std::size_t CarpetaTemporal::CuentaAbiertos() const {
    std::size_t cuenta = 0;
    std::error_code nada;  // the descriptor that reads the folder is gone when its own turn comes
    for (const auto& entrada : std::filesystem::directory_iterator("/proc/self/fd"))
        cuenta += std::filesystem::read_symlink(entrada, nada).string().starts_with(m_ruta.string() + "/");
    return cuenta;
}

std::size_t CuentaDescriptores() {
    std::size_t cuenta = 0;
    for ([[maybe_unused]] const auto& entrada : std::filesystem::directory_iterator("/proc/self/fd"))
        ++cuenta;
    return cuenta - 1;  // without the one that reads the folder
}

std::filesystem::path CarpetaDatos() {
    return LUMBRA_DATA;
}
