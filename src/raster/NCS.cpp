// Threads and events of the reader behind CECW.

#include "raster/NCS.h"

#include <chrono>
#include <system_error>

namespace NCS {

void CEvent::Set() {
    // The notice goes out under the lock: who waits may destroy the event as soon as it gets through.
    const std::lock_guard cierre(m_Mutex);
    m_bActivo = true;
    m_Aviso.notify_all();
}

void CEvent::Wait() {
    std::unique_lock cierre(m_Mutex);
    m_Aviso.wait(cierre, [this] { return m_bActivo; });
}

bool CEvent::Wait(unsigned milisegundos) {
    std::unique_lock cierre(m_Mutex);
    return m_Aviso.wait_for(cierre, std::chrono::milliseconds(milisegundos), [this] { return m_bActivo; });
}

bool CThread::Start(void* dato) {
    try {
        m_Hilo = std::thread([this, dato] { Work(dato); });
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void CThread::Join() {
    if (m_Hilo.joinable()) m_Hilo.join();
}

}  // namespace NCS
