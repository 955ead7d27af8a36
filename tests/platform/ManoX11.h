#pragma once
// A hand on the keyboard of an X11 display.

#include <X11/Xlib.h>

/// Presses and releases keys by the server's test extension, on a connection of its own to $DISPLAY.
class ManoX11 {
  public:
    ManoX11();
    ~ManoX11() { Retira(); }
    ManoX11(const ManoX11&) = delete;
    ManoX11& operator=(const ManoX11&) = delete;

    /// @return false when the display or its extension can't be had
    bool Puede() const { return m_bPuede; }
    void Pulsa(KeySym tecla) { Manda(KeyPress, tecla); }
    void Suelta(KeySym tecla) { Manda(KeyRelease, tecla); }
    /// Ends the connection.
    void Retira();
    Display* Xlib() const { return m_Display; }

  private:
    void Manda(int que, KeySym tecla);

    Display* m_Display;
    int m_nCodigo = 0;  // of the extension's requests
    bool m_bPuede = false;
};
