#pragma once
// A lock for one thread at a time, and its guard.

#include "platform/CSyncObject.h"

#include <mutex>

/// A lock that its owner may take again; it is free when it was given back as often as taken.
class LUMBRA_API CCriticalSection : public CSyncObject {
  public:
    BOOL Lock(DWORD milisegundos = INFINITE) override;
    /// Only by the thread that holds it.
    BOOL Unlock() override;

  private:
    std::recursive_mutex m_Cerrojo;
};

/// Holds an object locked, at the latest until the end of the scope.
class LUMBRA_API CSingleLock {
  public:
    /// @param objeto borrowed; has to outlive this
    explicit CSingleLock(CSyncObject* objeto, BOOL tomar = FALSE);
    ~CSingleLock();
    CSingleLock(const CSingleLock&) = delete;
    CSingleLock& operator=(const CSingleLock&) = delete;

    /// @return FALSE when the time was over first, and when this guard holds it already
    BOOL Lock(DWORD milisegundos = INFINITE);
    /// @return FALSE when this guard doesn't hold it
    BOOL Unlock();
    BOOL IsLocked() const { return m_bTomado; }

  private:
    CSyncObject* m_pObjeto;
    bool m_bTomado = false;
};
