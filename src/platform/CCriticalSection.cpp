// The lock for one thread at a time, and its guard.

#include "platform/CCriticalSection.h"

#include "platform/Parada.h"

#include <chrono>
#include <thread>

BOOL CCriticalSection::Lock(DWORD milisegundos) {
    plataforma::PuntoDeParada();
    if (milisegundos == INFINITE) {
        m_Cerrojo.lock();
    } else {
        // Looking again and again: a time limit is rare, and thread checkers don't know the system's own timed lock.
        const auto fin = std::chrono::steady_clock::now() + std::chrono::milliseconds(milisegundos);
        while (!m_Cerrojo.try_lock()) {
            if (std::chrono::steady_clock::now() >= fin) return FALSE;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    plataforma::SeccionTomada();
    return TRUE;
}

BOOL CCriticalSection::Unlock() {
    m_Cerrojo.unlock();
    plataforma::SeccionDejada();
    return TRUE;
}

CSingleLock::CSingleLock(CSyncObject* objeto, BOOL tomar) : m_pObjeto(objeto) {
    if (tomar) Lock();
}

CSingleLock::~CSingleLock() {
    Unlock();
}

BOOL CSingleLock::Lock(DWORD milisegundos) {
    if (m_bTomado || m_pObjeto == nullptr) return FALSE;
    m_bTomado = m_pObjeto->Lock(milisegundos);
    return m_bTomado;
}

BOOL CSingleLock::Unlock() {
    if (!m_bTomado) return FALSE;
    m_bTomado = false;
    return m_pObjeto->Unlock();
}
