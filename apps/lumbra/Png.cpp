#include "Png.h"

#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace {

// The file under its temporary name: gone at the end unless it was given its own.
class Provisional {
  public:
    explicit Provisional(const std::string& ruta) : m_Nombre(ruta + ".XXXXXX") {
        const int fd = mkstemp(m_Nombre.data());
        if (fd >= 0) m_pFichero = fdopen(fd, "wb");
        if (m_pFichero == nullptr) throw std::runtime_error("can't write " + ruta + ": " + std::strerror(errno));
    }
    ~Provisional() {
        if (m_pFichero != nullptr) std::fclose(m_pFichero);
        if (!m_Nombre.empty()) unlink(m_Nombre.c_str());
    }
    Provisional(const Provisional&) = delete;
    Provisional& operator=(const Provisional&) = delete;

    std::FILE* Fichero() const { return m_pFichero; }

    void Nombra(const std::string& ruta) {
        // A temporary file is its owner's alone; a picture gets the permissions that any new file gets.
        const mode_t mascara = umask(0);
        umask(mascara);
        fchmod(fileno(m_pFichero), 0666 & ~mascara);
        const bool cerrado = std::fclose(m_pFichero) == 0;
        m_pFichero = nullptr;
        if (!cerrado || std::rename(m_Nombre.c_str(), ruta.c_str()) != 0)
            throw std::runtime_error("can't write " + ruta + ": " + std::strerror(errno));
        m_Nombre.clear();
    }

  private:
    std::string m_Nombre;
    std::FILE* m_pFichero = nullptr;
};

}  // namespace

void EscribePng(const std::string& ruta, const Imagen& imagen) {
    Provisional provisional(ruta);
    png_image png = {};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(imagen.ancho);
    png.height = static_cast<png_uint_32>(imagen.alto);
    png.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_stdio(&png, provisional.Fichero(), 0, imagen.rgb.data(), 0, nullptr))
        throw std::runtime_error("can't write " + ruta + ": " + png.message);
    provisional.Nombra(ruta);
}
