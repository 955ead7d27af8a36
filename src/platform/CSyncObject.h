#pragma once
// What can be locked for a while: base of critical sections and events.

#include "platform/Exporta.h"
#include "platform/Hilos.h"

/// Base of what a `CSingleLock` takes.
class LUMBRA_API CSyncObject {
  public:
    CSyncObject() = default;
    virtual ~CSyncObject() = default;
    CSyncObject(const CSyncObject&) = delete;
    CSyncObject& operator=(const CSyncObject&) = delete;

    /// @param milisegundos time limit; INFINITE for none
    /// @return FALSE when the time was over first
    virtual BOOL Lock(DWORD milisegundos = INFINITE) = 0;
    virtual BOOL Unlock() = 0;
};
