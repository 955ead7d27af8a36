#include "platform/CCriticalSection.h"

#include "platform/Parada.h"

#include <chrono>
#include <thread>

BOOL CCriticalSection::Lock(DWORD milisegundos) {
    hilos::PuntoDeParada();
    if (milisegundos == INFINITE) {
        m_mutex.lock();
    } else {
        // Looking again and again: a time limit is rare, and thread checkers don't know the system's own timed lock.
        const auto fin = std::chrono::steady_clock::now() + std::chrono::milliseconds(milisegundos);
        while (!m_mutex.try_lock()) {
            if (std::chrono::steady_clock::now() >= fin) return FALSE;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    hilos::SeccionTomada();
    return TRUE;
}

BOOL CCriticalSection::Unlock() {
    m_mutex.unlock();
    hilos::SeccionDejada();
    return TRUE;
}

CSingleLock::CSingleLock(CSyncObject* objeto, BOOL tomar) : m_objeto(objeto) {
    if (tomar) Lock();
}

CSingleLock::~CSingleLock() {
    Unlock();
}

BOOL CSingleLock::Lock(DWORD milisegundos) {
    if (m_tomado || m_objeto == nullptr) return FALSE;
    m_tomado = m_objeto->Lock(milisegundos);
    return m_tomado;
}

BOOL CSingleLock::Unlock() {
    if (!m_tomado) return FALSE;
    m_tomado = false;
    return m_objeto->Unlock();
}
