#pragma once
// How a public operation lets go of the context that its hooks leave current. Internal to the scenes.

#include "platform/Contextos.h"

/// Made at the start of a public operation. One that took the scene's context lets it go when all went well, and so
/// none is current then; the one that the caller had taken already stays his, and so does one in which something
/// failed.
class EntradaPublica {
  public:
    /// @return r, after releasing the context where that is due
    int Acaba(int r) const {
        if (r != 0 && wglGetCurrentContext() != m_hAnterior) wglMakeCurrent(nullptr, nullptr);
        return r;
    }

  private:
    const HGLRC m_hAnterior = wglGetCurrentContext();
};
