#pragma once
// How a public operation lets go of the context that its hooks leave current. Internal to the scenes.

#include "platform/Contextos.h"

/// Made at the start of a public operation. One that found no context current leaves none current when all went well; a
/// context that the caller had taken stays his, and so does one in which something failed.
class EntradaPublica {
  public:
    /// @return r, after releasing the context where that is due
    int Acaba(int r) const {
        if (r != 0 && m_bNingunoActual) wglMakeCurrent(nullptr, nullptr);
        return r;
    }

  private:
    const bool m_bNingunoActual = wglGetCurrentContext() == nullptr;
};
