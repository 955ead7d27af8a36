// Writing beside the place and renaming.

#include "Salida.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

// Where a file really goes: a link is followed, and nothing but an ordinary file is replaced.
std::string Destino(const std::string& ruta) {
    std::error_code error;
    const fs::file_status estado = fs::status(ruta, error);
    if (fs::is_directory(estado)) FallaSalida(ruta, "that is a folder; name a file");
    if (fs::exists(estado) && !fs::is_regular_file(estado)) FallaSalida(ruta, "that is not an ordinary file");
    return fs::exists(estado) ? fs::canonical(ruta).string() : ruta;
}

// Null-terminated; read by a signal handler, which may look at no std::string.
const char* volatile g_pProvisional = nullptr;

extern "C" void BorraProvisionalYMuere(int senal) {
    if (g_pProvisional != nullptr) unlink(g_pProvisional);
    std::signal(senal, SIG_DFL);
    std::raise(senal);
}

}  // namespace

// While it lives, a user who ends the program leaves no file of that name behind, and a file that grows beyond what is
// allowed is a failed write, as on a full disk, rather than the end of the program.
class Provisional::Vigilia {
  public:
    explicit Vigilia(const char* provisional) {
        g_pProvisional = provisional;
        for (std::size_t i = 0; i < kSenales.size(); ++i) {
            struct sigaction nueva = {};
            nueva.sa_handler = kSenales[i] == SIGXFSZ ? SIG_IGN : BorraProvisionalYMuere;
            sigaction(kSenales[i], nullptr, &m_Anteriores[i]);
            if (m_Anteriores[i].sa_handler != SIG_IGN) sigaction(kSenales[i], &nueva, nullptr);
        }
    }
    ~Vigilia() {
        for (std::size_t i = 0; i < kSenales.size(); ++i)
            sigaction(kSenales[i], &m_Anteriores[i], nullptr);
        g_pProvisional = nullptr;
    }
    Vigilia(const Vigilia&) = delete;
    Vigilia& operator=(const Vigilia&) = delete;

  private:
    static constexpr std::array kSenales = {SIGINT, SIGTERM, SIGHUP, SIGXFSZ};
    std::array<struct sigaction, kSenales.size()> m_Anteriores{};
};

void FallaSalida(const std::string& ruta, const std::string& motivo) {
    throw std::runtime_error("can't write " + ruta + ": " + motivo);
}

std::string CarpetaTemporal() {
    std::error_code error;
    const std::string carpeta = fs::temp_directory_path(error).string();
    if (!error && access(carpeta.c_str(), W_OK | X_OK) == 0) return carpeta;
    throw std::runtime_error("no temporary file can be written: set TMPDIR to a folder where one can");
}

Provisional::Provisional(const std::string& ruta)
    : m_Ruta(ruta),
      m_Destino(Destino(ruta)),
      m_Nombre(m_Destino + ".XXXXXX"),
      m_pVigilia(std::make_unique<Vigilia>(m_Nombre.c_str())) {
    const int fd = mkstemp(m_Nombre.data());
    if (fd >= 0) m_pFichero = fdopen(fd, "wb");
    if (m_pFichero == nullptr) FallaSalida(ruta, std::strerror(errno));
}

Provisional::~Provisional() {
    if (m_pFichero != nullptr) std::fclose(m_pFichero);
    if (!m_Nombre.empty()) unlink(m_Nombre.c_str());
}

void Provisional::Nombra() {
    // A temporary file is its owner's alone; a file for the user gets the permissions that any new file gets.
    const mode_t mascara = umask(0);
    umask(mascara);
    fchmod(fileno(m_pFichero), 0666 & ~mascara);
    const bool cerrado = std::fclose(m_pFichero) == 0;
    m_pFichero = nullptr;
    if (!cerrado || std::rename(m_Nombre.c_str(), m_Destino.c_str()) != 0) FallaSalida(m_Ruta, std::strerror(errno));
    m_Nombre.clear();
}

void CompruebaSalida(const std::string& ruta, const std::string& entrada) {
    const fs::path destino = Destino(ruta);
    std::error_code error;
    if (fs::equivalent(destino, entrada, error)) FallaSalida(ruta, "it is the file that is read; name another");
    fs::path carpeta = destino.parent_path();
    if (carpeta.empty()) carpeta = ".";
    if (!fs::is_directory(carpeta, error)) FallaSalida(ruta, "there is no folder " + carpeta.string());
    if (access(carpeta.c_str(), W_OK | X_OK) != 0) FallaSalida(ruta, std::strerror(errno));
}
