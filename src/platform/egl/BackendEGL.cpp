// Contexts without any display, through EGL: on a graphics card that the vendor's library enumerates, or on Mesa's
// surfaceless platform. Both give off-screen surfaces ("pbuffers") of one colour store, to which GL_FRONT and GL_BACK
// are two names; a swap is nothing.
//
// A display of EGL is one for the whole process and isn't counted by its users, so it is never terminated: that would
// end the contexts that the host has on it.

#include "platform/Backend.h"
#include "platform/egl/VentanaSinPantalla.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <array>
#include <string_view>
#include <thread>

namespace plataforma {

namespace {

// What went wrong in the last call of EGL on this thread, and what to do about it.
std::string FalloEGL() {
    switch (eglGetError()) {
        case EGL_SUCCESS:
            return "EGL gives no reason.";
        case EGL_NOT_INITIALIZED:
            return "EGL can't be initialised: the driver isn't there or may not be opened; install libgl1-mesa-dri, or "
                   "let this user read /dev/dri (groups video and render).";
        case EGL_BAD_ACCESS:
            return "EGL says that the context or the surface is in use on another thread.";
        case EGL_BAD_ALLOC:
            return "EGL has not enough memory for it.";
        case EGL_BAD_ATTRIBUTE:
            return "EGL doesn't know an attribute.";
        case EGL_BAD_CONTEXT:
            return "EGL says that the context isn't valid.";
        case EGL_BAD_CONFIG:
            return "EGL says that the pixel format can't be used for it.";
        case EGL_BAD_CURRENT_SURFACE:
            return "EGL says that the current surface is no more.";
        case EGL_BAD_DISPLAY:
            return "EGL has no such display.";
        case EGL_BAD_SURFACE:
            return "EGL says that the surface isn't valid.";
        case EGL_BAD_MATCH:
            return "EGL says that the context and the surface don't fit together.";
        case EGL_BAD_PARAMETER:
            return "EGL says that an argument is wrong.";
        case EGL_CONTEXT_LOST:
            return "EGL lost the context, as after the machine has slept.";
        default:
            return "EGL fails for a reason that it doesn't name.";
    }
}

bool Contiene(const char* lista, std::string_view extension) {
    const std::string_view todas = lista ? lista : "";
    for (std::size_t i = todas.find(extension); i != std::string_view::npos; i = todas.find(extension, i + 1)) {
        const std::size_t fin = i + extension.size();
        if ((i == 0 || todas[i - 1] == ' ') && (fin == todas.size() || todas[fin] == ' ')) return true;
    }
    return false;
}

class SuperficieEGL : public Superficie {
  public:
    SuperficieEGL(EGLDisplay pantalla, EGLSurface superficie) : m_Pantalla(pantalla), m_Superficie(superficie) {}
    ~SuperficieEGL() override { eglDestroySurface(m_Pantalla, m_Superficie); }
    EGLDisplay m_Pantalla;
    EGLSurface m_Superficie;
};

class ContextoEGL : public ContextoNativo {
  public:
    ContextoEGL(EGLDisplay pantalla, EGLContext contexto) : m_Pantalla(pantalla), m_Contexto(contexto) {}
    ~ContextoEGL() override { eglDestroyContext(m_Pantalla, m_Contexto); }
    EGLDisplay m_Pantalla;
    EGLContext m_Contexto;
};

class BackendEGL : public Backend {
  public:
    explicit BackendEGL(EGLDisplay pantalla) : m_Pantalla(pantalla) {}

    bool Conecta(std::string& motivo);

    bool UnHiloPorSuperficie() const override { return true; }
    bool HayVentanas() const override { return false; }
    Pantalla MidePantalla() const override { return {}; }

    std::unique_ptr<Superficie> CreaMemoria(int ancho, int alto, const FormatoPixel& formato,
                                            std::string& motivo) override {
        const std::array<EGLint, 5> medidas = {EGL_WIDTH, ancho, EGL_HEIGHT, alto, EGL_NONE};
        EGLSurface nativa = eglCreatePbufferSurface(m_Pantalla, Configuracion(formato), medidas.data());
        if (nativa == EGL_NO_SURFACE) {
            motivo = "no off-screen surface of " + std::to_string(ancho) + " x " + std::to_string(alto) +
                     " pixels can be made: " + FalloEGL();
            return nullptr;
        }
        auto superficie = std::make_unique<SuperficieEGL>(m_Pantalla, nativa);
        superficie->m_nAncho = ancho;
        superficie->m_nAlto = alto;
        return superficie;
    }

    std::unique_ptr<ContextoNativo> CreaContexto(const FormatoPixel& formato, ContextoNativo* comparte,
                                                 std::string& motivo) override {
        eglBindAPI(EGL_OPENGL_API);
        // Without attributes a context of the lowest version is asked for, which drivers answer with their
        // compatibility profile: the one that has the fixed pipeline.
        EGLContext nativo =
            eglCreateContext(m_Pantalla, Configuracion(formato),
                             comparte ? static_cast<ContextoEGL*>(comparte)->m_Contexto : EGL_NO_CONTEXT, nullptr);
        if (nativo == EGL_NO_CONTEXT) {
            motivo = "no OpenGL context can be made: " + FalloEGL();
            return nullptr;
        }
        return std::make_unique<ContextoEGL>(m_Pantalla, nativo);
    }

    bool HazActual(Superficie* superficie, ContextoNativo& contexto, std::string& motivo) override {
        eglBindAPI(EGL_OPENGL_API);  // per thread
        EGLSurface nativa = superficie ? static_cast<SuperficieEGL*>(superficie)->m_Superficie : EGL_NO_SURFACE;
        if (eglMakeCurrent(m_Pantalla, nativa, nativa, static_cast<ContextoEGL&>(contexto).m_Contexto)) return true;
        motivo = "the context can't be made current: " + FalloEGL();
        return false;
    }

    void Suelta() override {
        eglBindAPI(EGL_OPENGL_API);
        eglMakeCurrent(m_Pantalla, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }

    bool Intercambia(Superficie&) override { return true; }

    void* Funcion(const char* nombre) const override { return reinterpret_cast<void*>(eglGetProcAddress(nombre)); }

    std::unique_ptr<VentanaNativa> CreaVentana(const Rectangulo& donde, std::uintptr_t, std::string&) override {
        return std::make_unique<VentanaSinPantalla>(*this, donde);
    }
    std::unique_ptr<VentanaNativa> EnvuelveVentana(std::uintptr_t, std::string& motivo) override {
        motivo = "there is no display that a window could be on.";
        return nullptr;
    }
    std::optional<Evento> SiguienteEvento(std::chrono::milliseconds) override { return std::nullopt; }
    std::optional<Posicion> Cursor() override { return std::nullopt; }
    bool MueveCursor(const Posicion&) override { return false; }
    bool EstaPulsada(unsigned) override { return false; }

  private:
    static EGLConfig Configuracion(const FormatoPixel& formato) { return formato.m_Nativo; }
    int Atributo(EGLConfig configuracion, EGLint cual) const {
        EGLint valor = 0;
        eglGetConfigAttrib(m_Pantalla, configuracion, cual, &valor);
        return valor;
    }
    void LeeFormatos();
    bool Prueba(std::string& motivo);

    EGLDisplay m_Pantalla;
};

void BackendEGL::LeeFormatos() {
    EGLint cuantas = 0;
    eglGetConfigs(m_Pantalla, nullptr, 0, &cuantas);
    std::vector<EGLConfig> todas(static_cast<std::size_t>(cuantas));
    eglGetConfigs(m_Pantalla, todas.data(), cuantas, &cuantas);
    const bool distingueReales = Contiene(eglQueryString(m_Pantalla, EGL_EXTENSIONS), "EGL_EXT_pixel_format_float");
    for (EGLConfig c : todas) {
        if (Atributo(c, EGL_RED_SIZE) != 8 || Atributo(c, EGL_GREEN_SIZE) != 8 || Atributo(c, EGL_BLUE_SIZE) != 8)
            continue;
        if (Atributo(c, EGL_SAMPLES) > 0 || !(Atributo(c, EGL_RENDERABLE_TYPE) & EGL_OPENGL_BIT)) continue;
        if (!(Atributo(c, EGL_SURFACE_TYPE) & EGL_PBUFFER_BIT)) continue;
        if (distingueReales && Atributo(c, EGL_COLOR_COMPONENT_TYPE_EXT) != EGL_COLOR_COMPONENT_TYPE_FIXED_EXT)
            continue;
        FormatoPixel f;
        f.m_Nativo = c;
        f.m_nAlfa = Atributo(c, EGL_ALPHA_SIZE);
        f.m_nProfundidad = Atributo(c, EGL_DEPTH_SIZE);
        f.m_nEstarcido = Atributo(c, EGL_STENCIL_SIZE);
        f.m_bVentana = f.m_bMemoria = true;  // a window is a surface in memory here
        f.m_bLento = Atributo(c, EGL_CONFIG_CAVEAT) == EGL_SLOW_CONFIG;
        if (f.m_nProfundidad >= 16) m_Formatos.push_back(f);
    }
    OrdenaFormatos(m_Formatos);
}

// Makes a first context and reads what it can do.
bool BackendEGL::Prueba(std::string& motivo) {
    const auto contexto = CreaContexto(m_Formatos.front(), nullptr, motivo);
    if (!contexto) return false;
    const auto superficie = CreaMemoria(16, 16, m_Formatos.front(), motivo);
    if (!superficie || !HazActual(superficie.get(), *contexto, motivo)) return false;
    const bool vale = LeeCapacidades(m_Capacidades, motivo);
    Suelta();
    return vale;
}

bool BackendEGL::Conecta(std::string& motivo) {
    EGLint mayor = 0, menor = 0;
    if (!eglInitialize(m_Pantalla, &mayor, &menor)) {
        motivo = FalloEGL();
        return false;
    }
    const char* extensiones = eglQueryString(m_Pantalla, EGL_EXTENSIONS);
    if (!Contiene(extensiones, "EGL_KHR_surfaceless_context")) {
        motivo =
            "the driver can't make a context current without a surface (EGL_KHR_surfaceless_context); install a newer "
            "one.";
        return false;
    }
    if (!eglBindAPI(EGL_OPENGL_API)) {
        motivo = "the driver has OpenGL ES only, not OpenGL; install libgl1-mesa-dri or the vendor's OpenGL.";
        return false;
    }
    LeeFormatos();
    if (m_Formatos.empty()) {
        motivo = "the driver offers no off-screen pixel format with 8 bits a colour and a depth buffer.";
        return false;
    }
    m_Capacidades.m_bDirecto = true;
    m_Capacidades.m_bUnBufer = true;
    // On a thread of its own: the host may have a context current on this one.
    bool vale = false;
    std::thread([&] { vale = Prueba(motivo); }).join();
    return vale;
}

std::unique_ptr<Backend> ConectaPantalla(EGLenum plataforma, void* nativa, std::string& motivo) {
    EGLDisplay pantalla = eglGetPlatformDisplay(plataforma, nativa, nullptr);
    if (pantalla == EGL_NO_DISPLAY) {
        motivo = FalloEGL();
        return nullptr;
    }
    auto backend = std::make_unique<BackendEGL>(pantalla);
    if (!backend->Conecta(motivo)) return nullptr;
    return backend;
}

}  // namespace

std::unique_ptr<Backend> ConectaEGLDispositivo(std::string& motivo) {
    const char* extensiones = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (!Contiene(extensiones, "EGL_EXT_platform_device")) {
        motivo =
            "the EGL library can't list graphics cards (EGL_EXT_platform_device); install the vendor's driver, or "
            "Mesa's libegl-mesa0.";
        return nullptr;
    }
    auto lista = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    auto texto = reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(eglGetProcAddress("eglQueryDeviceStringEXT"));
    EGLint cuantos = 0;
    std::array<EGLDeviceEXT, 16> dispositivos{};
    if (!lista || !texto || !lista(static_cast<EGLint>(dispositivos.size()), dispositivos.data(), &cuantos)) {
        motivo = "the graphics cards can't be listed: " + FalloEGL();
        return nullptr;
    }
    for (EGLint i = 0; i < cuantos; ++i) {
        EGLDeviceEXT dispositivo = dispositivos[static_cast<std::size_t>(i)];
        if (Contiene(texto(dispositivo, EGL_EXTENSIONS), "EGL_MESA_device_software")) continue;
        std::string suyo;
        if (auto backend = ConectaPantalla(EGL_PLATFORM_DEVICE_EXT, dispositivo, suyo)) return backend;
        motivo += "card " + std::to_string(i + 1) + ": " + suyo + " ";
    }
    if (motivo.empty()) motivo = "no graphics card with a driver was found; install the vendor's driver to use one.";
    return nullptr;
}

std::unique_ptr<Backend> ConectaEGLSinSuperficie(std::string& motivo) {
    if (!Contiene(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), "EGL_MESA_platform_surfaceless")) {
        motivo =
            "Mesa's EGL isn't installed (EGL_MESA_platform_surfaceless); install libegl-mesa0 and libgl1-mesa-dri.";
        return nullptr;
    }
    return ConectaPantalla(EGL_PLATFORM_SURFACELESS_MESA, nullptr, motivo);
}

}  // namespace plataforma
