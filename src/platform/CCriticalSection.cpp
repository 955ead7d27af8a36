#include "platform/CCriticalSection.h"

#include <chrono>

#include "platform/Parada.h"

BOOL CCriticalSection::Lock(DWORD milisegundos) {
    hilos::PuntoDeParada();
    if (milisegundos == INFINITE) {
        m_mutex.lock();
    } else if (!m_mutex.try_lock_for(std::chrono::milliseconds(milisegundos))) {
        return FALSE;
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
