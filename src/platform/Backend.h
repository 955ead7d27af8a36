#pragma once
// Internal. The one interface between the platform's classes and the ways of getting windows and rendering contexts.
// Each way is a `Backend`, in a folder of its own; a table lists them in the order in which they are tried, and the
// first one that can be connected serves the whole process. Only the files of this folder include this.
//
// A backend holds no state of the classes above it: it makes native objects, which are freed by their destructors, and
// reports events as plain values. Every function that can fail gives its reason as a sentence.

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace plataforma {

/// A pixel format of a backend. All are RGBA with 8 bits each of red, green and blue in fixed point, not multisampled,
/// and drawing to both GL_FRONT and GL_BACK is possible (one store may answer to both names).
struct FormatoPixel {
    void* m_Nativo = nullptr;  ///< what the backend knows it by
    int m_nAlfa = 0;           ///< bits
    int m_nProfundidad = 0;
    int m_nEstarcido = 0;
    int m_nAcumulacion = 0;   ///< bits of all four components
    bool m_bVentana = false;  ///< can draw on windows
    bool m_bMemoria = false;  ///< can draw on off-screen surfaces
    bool m_bLento = false;    ///< the driver warns of it
};

/// What a native context draws on. Freed by its destructor, which may run while the surface still is current.
class Superficie {
  public:
    virtual ~Superficie() = default;
    int m_nAncho = 0;  ///< of an off-screen surface, pixels; 0 for a window's, which follows the window
    int m_nAlto = 0;
};

/// A native context. Freed by its destructor; it is current nowhere then.
class ContextoNativo {
  public:
    virtual ~ContextoNativo() = default;
};

/// Where a window is, pixels.
struct Rectangulo {
    int m_nX = 0, m_nY = 0, m_nAncho = 0, m_nAlto = 0;
};

/// A picture: rows from the top down; a pixel is a number 0x00RRGGBB.
struct Imagen {
    const unsigned char* m_pFilas = nullptr;
    int m_nAncho = 0, m_nAlto = 0;
    int m_nPaso = 0;  ///< bytes from one row to the next
};

/// A window of the window system, or a size that stands for one. A window that was made here is destroyed by the
/// destructor, one that was wrapped is left alone.
class VentanaNativa {
  public:
    virtual ~VentanaNativa() = default;
    virtual std::uintptr_t Id() const = 0;  ///< native number; 0 for none
    virtual void Muestra(bool visible) = 0;
    virtual void Mueve(const Rectangulo& donde) = 0;
    virtual void Titula(const std::string& utf8) = 0;
    virtual std::optional<Rectangulo> Medidas() const = 0;  ///< empty when the window is no more
    /// Takes the window away from the user's eyes for good. Contexts may be current on it until it is destroyed.
    virtual void Retira() = 0;
    virtual bool Admite(const FormatoPixel& formato) const = 0;
    virtual std::unique_ptr<Superficie> CreaSuperficie(const FormatoPixel& formato, std::string& motivo) = 0;
    /// Draws a picture without OpenGL, where the window can be seen.
    virtual bool Pinta(const Imagen& imagen, int x, int y, std::string& motivo) = 0;
};

enum class TipoEvento { ninguno, tamano, repinta, cierra, destruida, raton, pulsa, suelta, rueda, tecla, teclaArriba };

/// Something that happened to a window.
struct Evento {
    TipoEvento m_Tipo = TipoEvento::ninguno;
    std::uintptr_t m_Ventana = 0;   ///< native number
    int m_nX = 0, m_nY = 0;         ///< pointer in the client area, or the new size
    int m_nBoton = 0;               ///< 1 left, 2 middle, 3 right; notches of the wheel
    unsigned m_nTecla = 0;          ///< VK_ value
    unsigned m_nEstado = 0;         ///< MK_ values
    int m_nAncho = 0, m_nAlto = 0;  ///< of what is to be painted from m_nX, m_nY on
    unsigned m_nInstante = 0;       ///< milliseconds of the display's clock, which begins anew after 49 days
};

/// A pixel of the screen, y downwards.
struct Posicion {
    int m_nX = 0, m_nY = 0;
    bool operator==(const Posicion&) const = default;
};

/// The screen: 0 for what isn't known.
struct Pantalla {
    int m_nAncho = 0, m_nAlto = 0;   ///< pixels
    double m_dPuntosPulgada = 96.0;  ///< pixels an inch
};

/// Limits of the driver and who made it; filled in when the backend is connected.
struct CapacidadesGL {
    std::string m_Fabricante, m_Renderizador, m_Version;
    int m_nMaxTextura = 0, m_nMaxAncho = 0, m_nMaxAlto = 0;
    int m_nMaxAnidamiento = 0, m_nMaxLuces = 0, m_nMaxPilaVista = 0;
    bool m_bDirecto = false;
    bool m_bUnBufer = false;           ///< GL_FRONT and GL_BACK are the same store
    bool m_bPresentaCopiando = false;  ///< the driver's swap leaves the front buffer as it was: copy into it instead
};

/// One way of getting windows and contexts, connected. It serves any thread.
class Backend {
  public:
    virtual ~Backend() = default;

    /// Formats on offer, the best first.
    const std::vector<FormatoPixel>& Formatos() const { return m_Formatos; }
    const CapacidadesGL& Capacidades() const { return m_Capacidades; }

    /// A surface serves one thread at a time; contexts made current on it elsewhere go without.
    virtual bool UnHiloPorSuperficie() const = 0;
    /// Windows can be seen.
    virtual bool HayVentanas() const = 0;
    /// The display has gone away: nothing of this backend works any more, and nothing of it is harmful.
    virtual bool Perdida() const { return false; }
    virtual Pantalla MidePantalla() const = 0;

    /// Makes an off-screen surface, sides in pixels.
    virtual std::unique_ptr<Superficie> CreaMemoria(int ancho, int alto, const FormatoPixel& formato,
                                                    std::string& motivo) = 0;
    /// Makes a context, in the share group of `comparte` unless that is null.
    virtual std::unique_ptr<ContextoNativo> CreaContexto(const FormatoPixel& formato, ContextoNativo* comparte,
                                                         std::string& motivo) = 0;
    /// Makes a context current on this thread; `superficie` null: without a surface.
    virtual bool HazActual(Superficie* superficie, ContextoNativo& contexto, std::string& motivo) = 0;
    /// Leaves this thread without a current context.
    virtual void Suelta() = 0;
    /// The driver's own swap, for windows; true when it was done.
    virtual bool Intercambia(Superficie& superficie) = 0;
    /// Entry point of an OpenGL function.
    virtual void* Funcion(const char* nombre) const = 0;

    virtual std::unique_ptr<VentanaNativa> CreaVentana(const Rectangulo& donde, std::uintptr_t padre,
                                                       std::string& motivo) = 0;
    virtual std::unique_ptr<VentanaNativa> EnvuelveVentana(std::uintptr_t id, std::string& motivo) = 0;
    /// The next thing that happened, waiting for it that long at most; empty when nothing did. A negative wait is for
    /// ever.
    virtual std::optional<Evento> SiguienteEvento(std::chrono::milliseconds espera) = 0;

    /// Where the pointer is; empty without one.
    virtual std::optional<Posicion> Cursor() = 0;
    /// Puts the pointer at a pixel, or at the nearest one of the screen.
    /// @return false when it stays where it was
    virtual bool MueveCursor(const Posicion& donde) = 0;
    /// Whether a key is held down; `tecla` is a VK_ value, those of events.
    virtual bool EstaPulsada(unsigned tecla) = 0;

  protected:
    std::vector<FormatoPixel> m_Formatos;
    CapacidadesGL m_Capacidades;
};

/// A way of getting contexts.
struct ViaBackend {
    const char* m_Nombre;
    const char* m_Descripcion;  ///< one line, for a person
    /// Connects whole, or returns null with a sentence that says why and what to install or set. Leaves the thread's
    /// current context, the host's too, as it found it.
    std::unique_ptr<Backend> (*m_pConecta)(std::string& motivo);
};

/// All ways, in the order in which they are tried.
const std::vector<ViaBackend>& Vias();

/// Why a way wasn't taken, for each that was tried before the one that serves.
struct ViaFallida {
    std::string m_Nombre, m_Motivo;
};

/// The backend that serves, found at the first call; null when there is none, then `UltimoFalloGL` says why.
Backend* BackendActual();
/// Name of the way that serves; empty when none does or none was looked for yet.
std::string NombreBackendActual();
/// Ways that were tried and failed on the way to the one that serves.
const std::vector<ViaFallida>& ViasFallidas();

/// Has one way serve, and no other; for tests. Only before the first use.
/// @return false when the name is unknown or a backend serves already
bool FuerzaBackend(const std::string& nombre);

/// Keeps a failure's reason for `UltimoFalloGL`, on this thread.
/// @return false, so that a caller can return it
bool AnotaFallo(std::string motivo);
/// The same, with a code for GetLastError.
bool AnotaFallo(std::string motivo, std::uint32_t codigo);

/// Reads the driver's names and limits from the current context and checks that it is of the fixed pipeline.
bool LeeCapacidades(CapacidadesGL& capacidades, std::string& motivo);

/// Sorts formats so that the better go first: deep depth buffer, not slow, then as few extras as possible.
void OrdenaFormatos(std::vector<FormatoPixel>& formatos);

std::unique_ptr<Backend> ConectaGLX(std::string& motivo);
std::unique_ptr<Backend> ConectaEGLDispositivo(std::string& motivo);
std::unique_ptr<Backend> ConectaEGLSinSuperficie(std::string& motivo);

}  // namespace plataforma
