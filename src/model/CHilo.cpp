// The worker's thread, over the platform's.

#include "model/CHilo.h"

#include "platform/Hilos.h"

#include <utility>

namespace Vertiz {

CHilo& CHilo::operator=(const CHilo& otro) {
    m_nIndice = otro.m_nIndice;
    return *this;
}

CHilo::~CHilo() {
    CHilo::Stop();
}

void CHilo::Stop() {
    if (!m_hHilo) return;
    const HANDLE hilo = std::exchange(m_hHilo, nullptr);
    WaitForSingleObject(hilo, INFINITE);
    CloseHandle(hilo);
}

bool CHilo::SetPriority(int prioridad) {
    return m_hHilo && SetThreadPriority(m_hHilo, prioridad);
}

bool CHilo::Suspender() {
    return m_hHilo && SuspendThread(m_hHilo) != DWORD(-1);
}

bool CHilo::Reanudar() {
    return m_hHilo && ResumeThread(m_hHilo) != DWORD(-1);
}

bool CHilo::Arranca(DWORD (*cuerpo)(void*), void* dato) {
    if (m_hHilo) return false;
    m_hHilo = CreateThread(nullptr, 0, cuerpo, dato, 0, nullptr);
    if (!m_hHilo) return false;
    SetPriority(P_NORMAL);
    return true;
}

}  // namespace Vertiz
