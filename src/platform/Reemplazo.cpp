// Replacing a file whole.

#include "platform/Reemplazo.h"

#include "platform/Errores.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace plataforma {

namespace {

bool FallaSistema() {
    SetLastError(ErrorDeErrno(errno));
    return false;
}

}  // namespace

std::string RutaReal(const std::string& ruta) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(ruta.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : ruta;
}

Reemplazo::Reemplazo(const std::string& ruta) : m_Ruta(RutaReal(ruta)) {
    static std::atomic<unsigned> cuenta = 0;
    struct stat antes {};
    const bool existe = stat(m_Ruta.c_str(), &antes) == 0;
    if (existe && !S_ISREG(antes.st_mode)) errno = EACCES;
    if (existe && (!S_ISREG(antes.st_mode) || access(m_Ruta.c_str(), W_OK) != 0)) {
        FallaSistema();
        return;
    }
    m_Nueva = m_Ruta + "." + std::to_string(getpid()) + "." + std::to_string(cuenta++) + ".tmp";
    m_Fichero = Descriptor(open(m_Nueva.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!m_Fichero) {
        FallaSistema();
        return;
    }
    m_bAbierto = !existe || fchmod(m_Fichero.Get(), antes.st_mode & 07777) == 0 || FallaSistema();
    if (!m_bAbierto) unlink(m_Nueva.c_str());
}

Reemplazo::~Reemplazo() {
    if (m_bAbierto) unlink(m_Nueva.c_str());
}

bool Reemplazo::Escribe(const void* bytes, std::size_t n) {
    return (m_bAbierto && m_Fichero.Escribe(bytes, n)) || FallaSistema();
}

bool Reemplazo::Termina() {
    if (!m_bAbierto || !m_Fichero.Cierra() || std::rename(m_Nueva.c_str(), m_Ruta.c_str()) != 0) return FallaSistema();
    m_bAbierto = false;
    return true;
}

}  // namespace plataforma
