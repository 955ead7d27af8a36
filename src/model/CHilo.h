#pragma once
// The base of worker threads.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

namespace Vertiz {

/// A worker: a thread of its own and an index among its fellows. A derived worker has a `void Run()` as its body and
/// starts it with Arranca.
///
/// A worker belongs to the thread that made it: only its Run runs elsewhere. Since Run uses the derived part, a derived
/// destructor calls Stop() first.
class LUMBRA_API CHilo {
  public:
    /// Normal priority, for SetPriority.
    static constexpr int P_NORMAL = 0;

    CHilo() = default;
    /// Copies the index only: a thread has one owner, and the copy has none to run yet.
    CHilo(const CHilo& otro) : m_nIndice(otro.m_nIndice) {}
    CHilo& operator=(const CHilo& otro);
    virtual ~CHilo();

    /// Waits for the end of the thread, without limit, and closes its handle. Not for Run itself to call, nor while the
    /// thread is suspended.
    virtual void Stop();

    /// These do nothing and return false when there is no thread or the system refuses.
    bool SetPriority(int prioridad);
    /// Asks the thread to stop at its next wait or lock (calls nest), and lets it go on.
    bool Suspender();
    bool Reanudar();

    HANDLE GetHandle() const { return m_hHilo; }
    unsigned GetIndice() const { return m_nIndice; }

  protected:
    /// Starts the thread with the derived worker's Run at normal priority.
    /// @return false when one runs or none could be made
    template <class Trabajador>
    bool Arranca(Trabajador* trabajador) {
        return Arranca(
            [](void* dato) -> DWORD {
                static_cast<Trabajador*>(dato)->Run();
                return 0;
            },
            trabajador);
    }

    HANDLE m_hHilo = nullptr;
    unsigned m_nIndice = 0;

  private:
    bool Arranca(DWORD (*cuerpo)(void*), void* dato);
};

}  // namespace Vertiz
