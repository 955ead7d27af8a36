#pragma once
// The library's own application object.

#include "platform/CWinApp.h"

/// Stands in as the owner of the settings where the host has no application object. The library makes one when it is
/// loaded; it adds nothing to its base.
class LUMBRA_API CLumbraApp : public CWinApp {
  public:
    CLumbraApp() : CWinApp(nullptr, DeLaBiblioteca{}) {}
};
