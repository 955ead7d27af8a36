// lumbra: shows elevation grids and panoramas in a window or draws them into pictures, tells about files, and converts
// pictures.

#include "ContenidoPanorama.h"
#include "ContenidoTerreno.h"
#include "Convierte.h"
#include "Foto.h"
#include "Informacion.h"
#include "Opciones.h"
#include "Png.h"
#include "Progreso.h"
#include "Salida.h"
#include "Ventana.h"
#include "Vista.h"
#include "platform/Conversiones.h"
#include "platform/Numeros.h"

#include <cstdio>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>

namespace {

void Avisa(const std::string& texto) {
    std::fprintf(stderr, "%s\n", texto.c_str());
}

void AvisaReduccion(const std::string& ruta, const Foto& foto, const Panorama& panorama) {
    if (panorama.Ancho() < foto.Ancho())
        Avisa(ruta + ": larger than OpenGL takes here; shown as " + std::to_string(panorama.Ancho()) + " x " +
              std::to_string(panorama.Alto()) + " pixels");
}

bool HayFoto(const Orden& orden, Progreso& progreso) {
    return orden.foto ? *orden.foto : EsFoto(orden.montaje.fichero, progreso);
}

void DibujaFoto(const Orden& orden, Progreso& progreso) {
    const Foto foto(orden.montaje.fichero, progreso);
    const Imagen imagen = ImagenDeFoto(foto, orden.tamanoPedido ? orden.montaje.vista.lienzo.ancho : 0,
                                       orden.tamanoPedido ? orden.montaje.vista.lienzo.alto : 0);
    EscribePng(orden.salida, imagen);
    std::printf("%s -> %s: %d x %d pixels\n", orden.montaje.fichero.c_str(), orden.salida.c_str(), imagen.ancho,
                imagen.alto);
}

void DibujaEsfera(const Orden& orden, Progreso& progreso) {
    Muestreo(orden.montaje.vista.lienzo);  // a size that can't be drawn is told before the reading
    const Foto foto(orden.montaje.fichero, progreso);
    const Panorama panorama(foto, orden.montaje.fichero, orden.panorama, orden.montaje.vista.colorFondo);
    AvisaReduccion(orden.montaje.fichero, foto, panorama);
    const Imagen imagen = DibujaPanorama(panorama, orden.montaje.vista.lienzo);
    EscribePng(orden.salida, imagen);
    std::printf("%s -> %s: %d x %d pixels, to azimuth %s from %s, elevation %s\n", orden.montaje.fichero.c_str(),
                orden.salida.c_str(), imagen.ancho, imagen.alto, TextoGeneral(panorama.Mirada().azimut, 6).c_str(),
                panorama.HayNorte() ? "north" : "the panorama's middle",
                TextoGeneral(panorama.Mirada().elevacion, 6).c_str());
}

void DibujaTerreno(const Orden& orden, Progreso& progreso) {
    Muestreo(orden.montaje.vista.lienzo);
    Montaje montaje(orden.montaje, progreso, Avisa);
    const ResultadoVista vista = DibujaMontaje(montaje, orden.montaje.vista.lienzo);
    EscribePng(orden.salida, vista.imagen);
    progreso.Termina(1, 0);
    std::printf("%s -> %s: %d x %d pixels, heights x %g", orden.montaje.fichero.c_str(), orden.salida.c_str(),
                vista.imagen.ancho, vista.imagen.alto, vista.exageracion);
    if (vista.pasoMalla > 1) std::printf(", one sample in %d of rows and columns", vista.pasoMalla);
    std::printf("\n");
}

void Dibuja(const Orden& orden, Progreso& progreso) {
    CompruebaSalida(orden.salida, orden.montaje.fichero);  // before the work, not after it
    const char* opcion = orden.montaje.DelTerreno();
    if (!orden.esfera && !HayFoto(orden, progreso))
        DibujaTerreno(orden, progreso);
    else if (opcion != nullptr)
        throw std::invalid_argument(std::string(opcion) + " goes with an elevation grid; " + orden.montaje.fichero +
                                    " is a picture");
    else if (orden.esfera)
        DibujaEsfera(orden, progreso);
    else
        DibujaFoto(orden, progreso);
}

void Mira(const Orden& orden, Progreso& progreso) {
    CompruebaPantalla();  // before the reading, not after it
    const std::string& fichero = orden.montaje.fichero;
    if (orden.esfera) {
        const Foto foto(fichero, progreso);
        ContenidoPanorama contenido(Panorama(foto, fichero, orden.panorama, orden.montaje.vista.colorFondo));
        AvisaReduccion(fichero, foto, contenido.Vuelta());
        Muestra(contenido, orden.montaje);
    } else if (HayFoto(orden, progreso)) {
        throw std::invalid_argument(fichero +
                                    " is a picture: view looks round in a panorama with --sphere; render draws "
                                    "a picture as itself");
    } else {
        ContenidoTerreno contenido(orden.montaje, progreso, Avisa);
        Muestra(contenido, orden.montaje);
    }
}

void Convierte(const Orden& orden, Progreso& progreso) {
    CompruebaSalida(orden.salida, orden.montaje.fichero);
    const Foto foto(orden.montaje.fichero, progreso);
    ConvierteFoto(foto, orden.salida, progreso);
    std::printf("%s -> %s: %d x %d pixels\n", orden.montaje.fichero.c_str(), orden.salida.c_str(), foto.Ancho(),
                foto.Alto());
}

void Cuenta(const Orden& orden, Progreso& progreso) {
    if (orden.gl && !CuentaGL()) throw std::runtime_error("no rendering context can be had; the reasons stand above");
    if (orden.montaje.fichero.empty()) return;
    if (HayFoto(orden, progreso)) {
        const Foto foto(orden.montaje.fichero, progreso, Foto::Que::kCabecera);
        std::printf("%s\n", orden.montaje.fichero.c_str());
        CuentaFoto(foto);
        return;
    }
    const Vertiz::CResultadoDEM leido =
        LeeTerreno(orden.montaje.fichero, orden.montaje.terreno, CString(), progreso, Avisa);
    std::printf("%s\n", orden.montaje.fichero.c_str());
    CuentaDEM(leido);
}

void Cumple(const Orden& orden, Progreso& progreso) {
    if (orden.tarea == Tarea::kDibuja) Dibuja(orden, progreso);
    if (orden.tarea == Tarea::kMira) Mira(orden, progreso);
    if (orden.tarea == Tarea::kCuenta) Cuenta(orden, progreso);
    if (orden.tarea == Tarea::kConvierte) Convierte(orden, progreso);
    if (std::fflush(stdout) != 0) throw std::runtime_error("can't write to standard output");
}

}  // namespace

int main(int argc, char** argv) {
    constexpr int kFallo = 1, kMalUso = 2;
    try {
        Progreso progreso;  // the application object: the command line's defaults are in its settings
        Cumple(LeeOrden(argc, argv), progreso);
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "lumbra: %s\n", error.what());
        return kMalUso;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "lumbra: not enough memory\n");
        return kFallo;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lumbra: %s\n", error.what());
        return kFallo;
    }
    return 0;
}
