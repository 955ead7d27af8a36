// Files in memory for fuzz targets, and the use of a picture.

#include "fuzz/UsaRaster.h"

#include "platform/Memoria.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

using Vertiz::IRaster;

namespace {

// Bytes of pixels that an input may ask for: enough for every path, and quick to fill.
constexpr ULONGLONG kMemoria = ULONGLONG{1} << 20;

void Comprueba(bool bien) {
    if (!bien) std::abort();
}

int CreaEnMemoria(const char* nombre) {
    const int descriptor = memfd_create(nombre, MFD_CLOEXEC);
    Comprueba(descriptor >= 0);
    return descriptor;
}

CString Nombre(int descriptor) {
    return CString(("/proc/self/fd/" + std::to_string(descriptor)).c_str());
}

// Every row, and pixels at the edges and between them.
void MiraPixeles(const IRaster& imagen) {
    const int alto = std::abs(imagen.Alto()), ancho = imagen.Ancho();
    std::vector<BYTE> fila(std::size_t(std::max(ancho, 0)) * 4);
    for (int f = -1; f <= std::min(alto, 300); ++f)
        imagen.GetFila(fila.data(), f, 0, ancho);
    for (const int f : {-1, 0, alto / 2, alto - 1, alto, 3 * (alto % 1000) - 1})
        for (const int c : {-1, 0, ancho / 2, ancho - 1, ancho}) {
            BYTE pixel[4]{};
            imagen.GetPixel(pixel, f, c, 0);
            imagen.GetPixel(pixel, f, c, 1);
            imagen.Muestra(pixel, c % 1000 * 100 + 30, f % 1000 * 100 + 70, 2);
        }
}

void Usa(IRaster& imagen) {
    static const int salida = CreaEnMemoria("salida");
    const bool hayPixeles = imagen.Alto() < 0;
    MiraPixeles(imagen);
    if (!hayPixeles) return;
    Comprueba(imagen.Ancho() > 0 && imagen.Nombre() != nullptr);
    CFile fichero(Nombre(salida), CFile::modeCreate | CFile::modeReadWrite);
    imagen.Grabar(&fichero);
    imagen.Negativo();
    imagen.Reducir(0, 0);
    MiraPixeles(imagen);
    imagen.PasaAMemoria(true);
    imagen.Recorta(0, 0, std::abs(imagen.Alto()), imagen.Ancho(), nullptr);
    MiraPixeles(imagen);
}

}  // namespace

CString FicheroEnMemoria(const std::uint8_t* datos, std::size_t n) {
    static const int entrada = CreaEnMemoria("entrada");
    Comprueba(ftruncate(entrada, 0) == 0);
    Comprueba(pwrite(entrada, datos, n, 0) == static_cast<ssize_t>(n));
    return Nombre(entrada);
}

void UsaRaster(const std::uint8_t* datos, std::size_t n,
               const std::function<std::unique_ptr<IRaster>(int modoFichero)>& crea) {
    LimitaMemoria(kMemoria);
    setenv("TEMP", "/dev/shm", 1);
    const CString nombre = FicheroEnMemoria(datos, n);
    for (const int modo : {0, 1})
        for (const bool soloCabecera : {true, false}) {
            CFile fichero(nombre, CFile::modeRead);
            const auto imagen = crea(modo);
            imagen->SetNombre(nombre);
            if (!imagen->SetFichero(&fichero)) continue;
            if (imagen->Leer(soloCabecera) == 1) Usa(*imagen);
            imagen->CierraFichero();
        }
}
