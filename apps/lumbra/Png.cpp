// The picture is written under a temporary name beside its place, so that nothing half-written is ever found there.

#include "Png.h"

#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Falla(const std::string& ruta, const std::string& motivo) {
    throw std::runtime_error("can't write " + ruta + ": " + motivo);
}

// Where a picture really goes: a link is followed, and nothing but an ordinary file is replaced.
std::string Destino(const std::string& ruta) {
    std::error_code error;
    const fs::file_status estado = fs::status(ruta, error);
    if (fs::is_directory(estado)) Falla(ruta, "that is a folder; name a file");
    if (fs::exists(estado) && !fs::is_regular_file(estado)) Falla(ruta, "that is not an ordinary file");
    return fs::exists(estado) ? fs::canonical(ruta).string() : ruta;
}

// Null-terminated; read by a signal handler, which may look at no std::string.
const char* volatile g_pProvisional = nullptr;

extern "C" void BorraProvisionalYMuere(int senal) {
    if (g_pProvisional != nullptr) unlink(g_pProvisional);
    std::signal(senal, SIG_DFL);
    std::raise(senal);
}

// While it lives, a user who ends the program leaves no file of that name behind, and a file that grows beyond what is
// allowed is a failed write, as on a full disk, rather than the end of the program.
class Vigilia {
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

// The file under its temporary name: gone at the end unless it was given its own.
class Provisional {
  public:
    explicit Provisional(const std::string& ruta)
        : m_Ruta(ruta), m_Destino(Destino(ruta)), m_Nombre(m_Destino + ".XXXXXX"), m_Vigilia(m_Nombre.c_str()) {
        const int fd = mkstemp(m_Nombre.data());
        if (fd >= 0) m_pFichero = fdopen(fd, "wb");
        if (m_pFichero == nullptr) Falla(ruta, std::strerror(errno));
    }
    ~Provisional() {
        if (m_pFichero != nullptr) std::fclose(m_pFichero);
        if (!m_Nombre.empty()) unlink(m_Nombre.c_str());
    }
    Provisional(const Provisional&) = delete;
    Provisional& operator=(const Provisional&) = delete;

    std::FILE* Fichero() const { return m_pFichero; }

    void Nombra() {
        // A temporary file is its owner's alone; a picture gets the permissions that any new file gets.
        const mode_t mascara = umask(0);
        umask(mascara);
        fchmod(fileno(m_pFichero), 0666 & ~mascara);
        const bool cerrado = std::fclose(m_pFichero) == 0;
        m_pFichero = nullptr;
        if (!cerrado || std::rename(m_Nombre.c_str(), m_Destino.c_str()) != 0) Falla(m_Ruta, std::strerror(errno));
        m_Nombre.clear();
    }

  private:
    std::string m_Ruta, m_Destino, m_Nombre;
    Vigilia m_Vigilia;  // of m_Nombre, from before the file is there
    std::FILE* m_pFichero = nullptr;
};

}  // namespace

void CompruebaSalida(const std::string& ruta, const std::string& entrada) {
    const fs::path destino = Destino(ruta);
    std::error_code error;
    if (fs::equivalent(destino, entrada, error)) Falla(ruta, "it is the file that is read; name another with --output");
    fs::path carpeta = destino.parent_path();
    if (carpeta.empty()) carpeta = ".";
    if (!fs::is_directory(carpeta, error)) Falla(ruta, "there is no folder " + carpeta.string());
    if (access(carpeta.c_str(), W_OK | X_OK) != 0) Falla(ruta, std::strerror(errno));
}

void EscribePng(const std::string& ruta, const Imagen& imagen) {
    Provisional provisional(ruta);
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(imagen.ancho);
    png.height = static_cast<png_uint_32>(imagen.alto);
    png.format = PNG_FORMAT_RGB;
    errno = 0;
    if (!png_image_write_to_stdio(&png, provisional.Fichero(), 0, imagen.rgb.data(), 0, nullptr))
        Falla(ruta, errno != 0 ? std::strerror(errno) : png.message);
    provisional.Nombra();
}
