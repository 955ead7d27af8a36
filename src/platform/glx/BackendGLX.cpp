// Contexts on an X11 display, through GLX.

#include "platform/OpenGL.h"
#include "platform/glx/VentanaX11.h"

#include <GL/glx.h>

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

namespace plataforma {

namespace {

class ContextoGLX : public ContextoNativo {
  public:
    ContextoGLX(Display* display, GLXContext contexto) : m_Display(display), m_Contexto(contexto) {}
    ~ContextoGLX() override {
        // The driver may have been drawing when the display was lost, and is in no state to be asked anything.
        if (EstaRota(m_Display)) return;
        GuardaErroresX guarda(m_Display);
        glXDestroyContext(m_Display, m_Contexto);
    }
    Display* m_Display;
    GLXContext m_Contexto;
};

GLXFBConfig Configuracion(const FormatoPixel& formato) {
    return static_cast<GLXFBConfig>(formato.m_Nativo);
}

class BackendGLX : public Backend {
  public:
    explicit BackendGLX(std::unique_ptr<ConexionX11> conexion)
        : m_Conexion(std::move(conexion)), m_Display(m_Conexion->Xlib()) {}

    bool Conecta(std::string& motivo);

    bool UnHiloPorSuperficie() const override { return false; }
    bool HayVentanas() const override { return true; }
    bool Perdida() const override { return m_Conexion->Rota(); }
    Pantalla MidePantalla() const override { return m_Conexion->Mide(); }

    std::unique_ptr<Superficie> CreaMemoria(int ancho, int alto, const FormatoPixel& formato,
                                            std::string& motivo) override;
    std::unique_ptr<ContextoNativo> CreaContexto(const FormatoPixel& formato, ContextoNativo* comparte,
                                                 std::string& motivo) override;
    bool HazActual(Superficie* superficie, ContextoNativo& contexto, std::string& motivo) override;
    void Suelta() override {
        GuardaErroresX guarda(m_Display);
        glXMakeCurrent(m_Display, None, nullptr);
    }
    bool Intercambia(Superficie& superficie) override {
        GuardaErroresX guarda(m_Display);
        glXSwapBuffers(m_Display, static_cast<SuperficieGLX&>(superficie).m_Dibujable);
        return guarda.Error() == 0;
    }
    void* Funcion(const char* nombre) const override {
        return reinterpret_cast<void*>(glXGetProcAddress(reinterpret_cast<const GLubyte*>(nombre)));
    }

    std::unique_ptr<VentanaNativa> CreaVentana(const Rectangulo& donde, std::uintptr_t padre,
                                               std::string& motivo) override {
        return VentanaX11::Crea(*m_Conexion, *m_pFormatoVentana, donde, static_cast<Window>(padre), motivo);
    }
    std::unique_ptr<VentanaNativa> EnvuelveVentana(std::uintptr_t id, std::string& motivo) override {
        return VentanaX11::Envuelve(*m_Conexion, static_cast<Window>(id), motivo);
    }
    std::optional<Evento> SiguienteEvento(std::chrono::milliseconds espera) override {
        return m_Conexion->SiguienteEvento(espera);
    }
    std::optional<Posicion> Cursor() override { return m_Conexion->Cursor(); }
    bool MueveCursor(const Posicion& donde) override { return m_Conexion->MueveCursor(donde); }
    bool EstaPulsada(unsigned tecla) override { return m_Conexion->EstaPulsada(tecla); }

  private:
    int Atributo(GLXFBConfig configuracion, int cual) const {
        int valor = 0;
        glXGetFBConfigAttrib(m_Display, configuracion, cual, &valor);
        return valor;
    }
    void SigueTamano(SuperficieGLX& superficie);
    bool LeeFormatos(std::string& motivo);
    bool Prueba(std::string& motivo);
    bool ElIntercambioPierdeElFrente(Superficie& superficie);

    std::unique_ptr<ConexionX11> m_Conexion;
    Display* m_Display;
    const FormatoPixel* m_pFormatoVentana = nullptr;  // what windows are made for
};

std::unique_ptr<Superficie> BackendGLX::CreaMemoria(int ancho, int alto, const FormatoPixel& formato,
                                                    std::string& motivo) {
    GuardaErroresX guarda(m_Display);
    const std::array<int, 7> medidas = {
        GLX_PBUFFER_WIDTH, ancho, GLX_PBUFFER_HEIGHT, alto, GLX_PRESERVED_CONTENTS, True, None};
    const GLXPbuffer nativa = glXCreatePbuffer(m_Display, Configuracion(formato), medidas.data());
    const int error = guarda.Error();
    if (error != 0 || nativa == None) {
        motivo = "the display can't give an off-screen surface of " + std::to_string(ancho) + " x " +
                 std::to_string(alto) + " pixels (" + TextoErrorX(error) + ").";
        return nullptr;
    }
    auto superficie = std::make_unique<SuperficieGLX>(m_Display, nativa, true);
    superficie->m_nAncho = ancho;
    superficie->m_nAlto = alto;
    return superficie;
}

std::unique_ptr<ContextoNativo> BackendGLX::CreaContexto(const FormatoPixel& formato, ContextoNativo* comparte,
                                                         std::string& motivo) {
    GuardaErroresX guarda(m_Display);
    // This oldest way of asking is answered with the compatibility profile: the one that has the fixed pipeline.
    GLXContext nativo = glXCreateNewContext(m_Display, Configuracion(formato), GLX_RGBA_TYPE,
                                            comparte ? static_cast<ContextoGLX*>(comparte)->m_Contexto : nullptr, True);
    const int error = guarda.Error();
    if (!nativo || error != 0) {
        if (nativo) glXDestroyContext(m_Display, nativo);
        motivo = "the display gives no OpenGL context (" + TextoErrorX(error) +
                 "); install libgl1-mesa-dri or the vendor's driver.";
        return nullptr;
    }
    return std::make_unique<ContextoGLX>(m_Display, nativo);
}

bool BackendGLX::HazActual(Superficie* superficie, ContextoNativo& contexto, std::string& motivo) {
    GuardaErroresX guarda(m_Display);
    auto* dibujable = static_cast<SuperficieGLX*>(superficie);
    // A window that vanished is not shown to the driver: it would half take it, and crash when the context goes.
    const bool existe = dibujable && (dibujable->m_bPbuffer || MideVentana(m_Display, dibujable->m_Dibujable));
    if (existe && glXMakeCurrent(m_Display, dibujable->m_Dibujable, static_cast<ContextoGLX&>(contexto).m_Contexto)) {
        if (m_Capacidades.m_bPresentaCopiando && !dibujable->m_bPbuffer) SigueTamano(*dibujable);
        return true;
    }
    motivo = "the display can't make the context current: the window is no more, or the context is in use elsewhere.";
    return false;
}

// The software driver learns of a window's new size in its own swap only, which presenting by copying never calls. So
// it is called here, before anything is drawn at the new size.
void BackendGLX::SigueTamano(SuperficieGLX& superficie) {
    const auto medidas = MideVentana(m_Display, superficie.m_Dibujable);
    if (!medidas) return;
    std::lock_guard cierre(superficie.m_Cerrojo);
    const std::pair ahora(medidas->m_nAncho, medidas->m_nAlto);
    if (superficie.m_Vista != ahora && superficie.m_Vista.first != 0) {
        glXSwapBuffers(m_Display, superficie.m_Dibujable);
        glClear(0);  // draws nothing; a read that comes first would still go by the old size, and beyond memory
    }
    superficie.m_Vista = ahora;
}

bool BackendGLX::LeeFormatos(std::string& motivo) {
    int cuantas = 0;
    GLXFBConfig* todas = glXGetFBConfigs(m_Display, m_Conexion->NPantalla(), &cuantas);
    for (int i = 0; i < cuantas; ++i) {
        GLXFBConfig c = todas[i];
        if (Atributo(c, GLX_RED_SIZE) != 8 || Atributo(c, GLX_GREEN_SIZE) != 8 || Atributo(c, GLX_BLUE_SIZE) != 8)
            continue;
        if (Atributo(c, GLX_SAMPLES) > 0 || Atributo(c, GLX_STEREO) || Atributo(c, GLX_LEVEL) != 0) continue;
        if (Atributo(c, GLX_RENDER_TYPE) != GLX_RGBA_BIT || !Atributo(c, GLX_DOUBLEBUFFER)) continue;
        XVisualInfo* visual = glXGetVisualFromFBConfig(m_Display, c);
        if (!visual) continue;
        FormatoPixel f;
        f.m_Nativo = c;
        f.m_nAlfa = Atributo(c, GLX_ALPHA_SIZE);
        f.m_nProfundidad = Atributo(c, GLX_DEPTH_SIZE);
        f.m_nEstarcido = Atributo(c, GLX_STENCIL_SIZE);
        f.m_nAcumulacion = 4 * Atributo(c, GLX_ACCUM_RED_SIZE);
        f.m_bLento = Atributo(c, GLX_CONFIG_CAVEAT) == GLX_SLOW_CONFIG;
        const int tipos = Atributo(c, GLX_DRAWABLE_TYPE);
        f.m_bVentana = (tipos & GLX_WINDOW_BIT) != 0;
        // Mesa makes a pbuffer's pixmap as deep as the colour bits and then draws on it with the visual's depth: where
        // the two differ, showing its front buffer is an error of the server.
        f.m_bMemoria = (tipos & GLX_PBUFFER_BIT) != 0 && 24 + f.m_nAlfa == visual->depth;
        XFree(visual);
        if (f.m_nProfundidad >= 16 && (f.m_bVentana || f.m_bMemoria)) m_Formatos.push_back(f);
    }
    if (todas) XFree(todas);
    OrdenaFormatos(m_Formatos);
    const auto ventana = std::find_if(m_Formatos.begin(), m_Formatos.end(),
                                      [](const FormatoPixel& f) { return f.m_bVentana && f.m_bMemoria; });
    if (ventana == m_Formatos.end()) {
        motivo =
            "the display offers no double-buffered pixel format with 8 bits a colour and a depth buffer; install "
            "libgl1-mesa-dri or the vendor's driver.";
        return false;
    }
    m_pFormatoVentana = &*ventana;
    return true;
}

// Draws, swaps, and looks whether the front buffer has the picture.
bool BackendGLX::ElIntercambioPierdeElFrente(Superficie& superficie) {
    glDrawBuffer(GL_BACK);
    glClearColor(1.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    Intercambia(superficie);
    std::array<GLubyte, 4> pixel = {};
    glReadBuffer(GL_FRONT);
    glReadPixels(1, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel[0] != 255 || pixel[1] != 0 || pixel[2] != 255;
}

// Makes a first window, never shown, and a context on it, and reads what they can do.
bool BackendGLX::Prueba(std::string& motivo) {
    const auto contexto = CreaContexto(*m_pFormatoVentana, nullptr, motivo);
    if (!contexto) return false;
    const auto ventana = CreaVentana({0, 0, 16, 16}, 0, motivo);
    if (!ventana) return false;
    const auto superficie = ventana->CreaSuperficie(*m_pFormatoVentana, motivo);
    if (!superficie || !HazActual(superficie.get(), *contexto, motivo)) return false;
    const bool vale = LeeCapacidades(m_Capacidades, motivo);
    if (vale) {
        m_Capacidades.m_bDirecto = glXIsDirect(m_Display, static_cast<ContextoGLX&>(*contexto).m_Contexto);
        m_Capacidades.m_bPresentaCopiando = Funcion("glBlitFramebuffer") && ElIntercambioPierdeElFrente(*superficie);
    }
    Suelta();
    return vale;
}

bool BackendGLX::Conecta(std::string& motivo) {
    int mayor = 0, menor = 0, error = 0, evento = 0;
    if (!glXQueryExtension(m_Display, &error, &evento) || !glXQueryVersion(m_Display, &mayor, &menor)) {
        motivo =
            "the X server has no GLX extension; start it with GLX (Xvfb: +extension GLX) and install libgl1-mesa-dri.";
        return false;
    }
    if (mayor * 100 + menor < 103) {
        motivo = "the X server's GLX is older than 1.3; a newer server is needed.";
        return false;
    }
    if (!LeeFormatos(motivo)) return false;
    // On a thread of its own: the host may have a context current on this one.
    bool vale = false;
    std::thread([&] { vale = Prueba(motivo); }).join();
    return vale;
}

}  // namespace

std::unique_ptr<Backend> ConectaGLX(std::string& motivo) {
    auto conexion = ConexionX11::Abre(motivo);
    if (!conexion) return nullptr;
    auto backend = std::make_unique<BackendGLX>(std::move(conexion));
    if (!backend->Conecta(motivo)) return nullptr;
    return backend;
}

}  // namespace plataforma
