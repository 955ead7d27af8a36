// Which backend serves: the table of ways, the choice at the first use, and what all backends do alike.

#include "platform/Backend.h"

#include "platform/DiagnosticoGL.h"
#include "platform/Errores.h"
#include "platform/OpenGL.h"

#include <algorithm>
#include <mutex>
#include <tuple>

namespace plataforma {

namespace {

struct Eleccion {
    std::mutex m_Cerrojo;
    bool m_bHecha = false;
    std::string m_Forzada;  // empty: all ways, in their order
    std::string m_Nombre;
    std::string m_Motivo;  // why none serves
    std::unique_ptr<Backend> m_Backend;
    std::vector<ViaFallida> m_Fallidas;
};

// Never destroyed: drivers unload in an order of their own at the end of a process, and contexts of the host's static
// objects may outlive anything static here.
Eleccion& LaEleccion() {
    static Eleccion& e = *new Eleccion;
    return e;
}

void Elige(Eleccion& e) {
    e.m_bHecha = true;
    for (const ViaBackend& via : Vias()) {
        if (!e.m_Forzada.empty() && e.m_Forzada != via.m_Nombre) continue;
        std::string motivo;
        e.m_Backend = via.m_pConecta(motivo);
        if (e.m_Backend) {
            e.m_Nombre = via.m_Nombre;
            return;
        }
        if (!e.m_Motivo.empty()) e.m_Motivo += ' ';
        e.m_Motivo += std::string(via.m_Nombre) + ": " + motivo;
        e.m_Fallidas.push_back({via.m_Nombre, std::move(motivo)});
    }
}

std::string& FalloDelHilo() {
    thread_local std::string fallo;
    return fallo;
}

std::string Texto(GLenum nombre) {
    const GLubyte* texto = glGetString(nombre);
    return texto ? reinterpret_cast<const char*>(texto) : "";
}

int Entero(GLenum nombre) {
    GLint valor[2] = {0, 0};
    glGetIntegerv(nombre, valor);
    return valor[0];
}

}  // namespace

const std::vector<ViaBackend>& Vias() {
    static const std::vector<ViaBackend> vias = {
        {"glx", "windows and contexts of an X11 display", ConectaGLX},
        {"egl-device", "contexts of a graphics card, without a display", ConectaEGLDispositivo},
        {"egl-surfaceless", "contexts of Mesa, by software too, without a display", ConectaEGLSinSuperficie},
    };
    return vias;
}

Backend* BackendActual() {
    Eleccion& e = LaEleccion();
    std::lock_guard cierre(e.m_Cerrojo);
    if (!e.m_bHecha) Elige(e);
    if (!e.m_Backend) AnotaFallo("no way of getting an OpenGL context works. " + e.m_Motivo);
    return e.m_Backend.get();
}

std::string NombreBackendActual() {
    Eleccion& e = LaEleccion();
    std::lock_guard cierre(e.m_Cerrojo);
    return e.m_Nombre;
}

const std::vector<ViaFallida>& ViasFallidas() {
    return LaEleccion().m_Fallidas;
}

bool FuerzaBackend(const std::string& nombre) {
    const auto& vias = Vias();
    if (std::none_of(vias.begin(), vias.end(), [&](const ViaBackend& v) { return v.m_Nombre == nombre; })) return false;
    Eleccion& e = LaEleccion();
    std::lock_guard cierre(e.m_Cerrojo);
    if (e.m_bHecha) return false;
    e.m_Forzada = nombre;
    return true;
}

bool AnotaFallo(std::string motivo) {
    FalloDelHilo() = std::move(motivo);
    return false;
}

bool AnotaFallo(std::string motivo, std::uint32_t codigo) {
    SetLastError(codigo);
    return AnotaFallo(std::move(motivo));
}

bool LeeCapacidades(CapacidadesGL& c, std::string& motivo) {
    OlvidaErroresGL();
    c.m_Fabricante = Texto(GL_VENDOR);
    c.m_Renderizador = Texto(GL_RENDERER);
    c.m_Version = Texto(GL_VERSION);
    // A core context refuses display lists; nothing but a try tells all drivers' words for it apart.
    const GLuint lista = glGenLists(1);
    if (lista == 0) {
        OlvidaErroresGL();
        motivo = "the driver (" + c.m_Renderizador + ", " + c.m_Version +
                 ") gives contexts without display lists only; install a driver with the compatibility profile.";
        return false;
    }
    glDeleteLists(lista, 1);
    GLint vista[2] = {0, 0};
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, vista);
    c.m_nMaxAncho = vista[0];
    c.m_nMaxAlto = vista[1];
    c.m_nMaxTextura = Entero(GL_MAX_TEXTURE_SIZE);
    c.m_nMaxAnidamiento = Entero(GL_MAX_LIST_NESTING);
    c.m_nMaxLuces = Entero(GL_MAX_LIGHTS);
    c.m_nMaxPilaVista = Entero(GL_MAX_MODELVIEW_STACK_DEPTH);
    return true;
}

void OrdenaFormatos(std::vector<FormatoPixel>& formatos) {
    auto orden = [](const FormatoPixel& f) {
        return std::tuple(f.m_bLento, -f.m_nProfundidad, f.m_nAcumulacion, f.m_nEstarcido, f.m_nAlfa);
    };
    std::stable_sort(formatos.begin(), formatos.end(),
                     [&](const FormatoPixel& a, const FormatoPixel& b) { return orden(a) < orden(b); });
}

}  // namespace plataforma

std::string UltimoFalloGL() {
    return plataforma::FalloDelHilo();
}
