#pragma once
// Events as objects, over those by handle in Hilos.h.

#include "platform/CSyncObject.h"

/// An event that is the owner of its handle. See CreateEventW for manual and automatic reset.
class LUMBRA_API CEvent : public CSyncObject {
  public:
    explicit CEvent(BOOL inicial = FALSE, BOOL manual = FALSE);
    ~CEvent() override;

    BOOL SetEvent() { return ::SetEvent(m_hObject); }
    BOOL ResetEvent() { return ::ResetEvent(m_hObject); }
    BOOL PulseEvent() { return ::PulseEvent(m_hObject); }

    /// Waits for the event.
    BOOL Lock(DWORD milisegundos = INFINITE) override;
    /// Nothing to give back: always TRUE.
    BOOL Unlock() override { return TRUE; }

    operator HANDLE() const { return m_hObject; }

    HANDLE m_hObject;
};
