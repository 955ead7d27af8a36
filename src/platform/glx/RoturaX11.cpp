// What a thread owes to the others when it finds that a server has gone. Xlib's own header for locks defines types of
// the platform's names, so this stays in a file of its own.

#include "platform/glx/ConexionX11.h"

#include <X11/Xlibint.h>

namespace plataforma {

// Xlib expects the process to end where it calls the handlers of a lost connection. The thread that runs them has
// locked the display for itself, which would keep all others waiting for ever, and has let go of its inner lock, which
// the functions of Xlib that are under way let go of once more when they are left: of whoever holds it by then.
void DevuelveCerrojos(Display* display) {
    XUnlockDisplay(display);
    LockDisplay(display);
}

}  // namespace plataforma
