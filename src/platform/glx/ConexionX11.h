#pragma once
// The connection to an X11 display: opening it, keeping its errors from the host's process, reading its events,
// pointer and keys.

#include "platform/Backend.h"

#include <X11/Xlib.h>

namespace plataforma {

/// A connection of the library's own: the host's toolkit has another, whose errors and events are none of our business.
class ConexionX11 {
  public:
    /// @return null, with a sentence why, when no display can be opened
    static std::unique_ptr<ConexionX11> Abre(std::string& motivo);
    ~ConexionX11();
    ConexionX11(const ConexionX11&) = delete;
    ConexionX11& operator=(const ConexionX11&) = delete;

    Display* Xlib() const { return m_Display; }
    int NPantalla() const { return m_nPantalla; }
    Window Raiz() const { return m_Raiz; }
    Atom AtomoBorra() const { return m_Borra; }
    Atom AtomoProtocolos() const { return m_Protocolos; }
    Pantalla Mide() const;
    std::optional<Evento> SiguienteEvento(std::chrono::milliseconds espera);
    std::optional<Posicion> Cursor() const;
    bool MueveCursor(const Posicion& donde);
    bool EstaPulsada(unsigned tecla) const;
    /// The server has gone away: calls to Xlib return without having done anything.
    bool Rota() const;

  private:
    explicit ConexionX11(Display* display);
    bool Contesta() const;  // the server is there
    void DejaLaUltima(XEvent& x);

    Display* m_Display;
    int m_nPantalla;
    Window m_Raiz;
    Atom m_Protocolos, m_Borra;
};

/// Leaves Xlib's locks as its functions expect them, from within the handler of a lost connection.
void DevuelveCerrojos(Display* display);

/// Stands for an error's code where there is no server to give one.
constexpr int kServidorPerdido = -1;

/// The server of one of our connections has gone away.
bool EstaRota(Display* display);

/// An error of the server, for a person.
std::string TextoErrorX(int error);

/// Holds back the errors of calls to Xlib that can fail, from here to the end of the block. An error that nobody
/// handles would end the host's process.
class GuardaErroresX {
  public:
    explicit GuardaErroresX(Display* display);
    ~GuardaErroresX();
    GuardaErroresX(const GuardaErroresX&) = delete;
    GuardaErroresX& operator=(const GuardaErroresX&) = delete;

    /// Waits until the server has done all that it was asked.
    /// @return code of the last error of what was asked since the block began; kServidorPerdido when there is no server
    ///         any more; 0 for none
    int Error();

  private:
    Display* m_Display;
    XErrorHandler m_pAnterior;
    unsigned long m_nDesde;  // requests before it may fail late; that is nothing to this block
};

}  // namespace plataforma
