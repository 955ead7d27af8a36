// Pointer and keys. The backend that serves knows them, if anybody does.

#include "platform/CursorTeclas.h"

#include "platform/Backend.h"

using namespace plataforma;

namespace {

// Code that ports its tests of keys finds them in both bytes.
constexpr short kPulsada = static_cast<short>(0xFF80);

}  // namespace

BOOL GetCursorPos(POINT* punto) {
    Backend* backend = punto ? BackendActual() : nullptr;
    const auto cursor = backend ? backend->Cursor() : std::nullopt;
    if (!cursor) return FALSE;
    *punto = {cursor->m_nX, cursor->m_nY};
    return TRUE;
}

BOOL SetCursorPos(int x, int y) {
    Backend* backend = BackendActual();
    return backend && backend->MueveCursor({x, y});
}

short GetKeyState(int tecla) {
    Backend* backend = tecla > 0 ? BackendActual() : nullptr;
    return backend && backend->EstaPulsada(static_cast<unsigned>(tecla)) ? kPulsada : 0;
}
