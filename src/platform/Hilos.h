#pragma once
// Threads, events by handle, and waiting for them. A handle names a thread or an event; its value is never used twice,
// so that one closed too early or twice is refused and never hits another object.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <cstddef>

constexpr DWORD INFINITE = 0xFFFFFFFF;      ///< no time limit
constexpr DWORD WAIT_OBJECT_0 = 0;          ///< the object waited for; with several, plus its index
constexpr DWORD WAIT_ABANDONED_0 = 0x80;    ///< never returned: neither threads nor events can be abandoned
constexpr DWORD WAIT_TIMEOUT = 258;         ///< the time was over first
constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;   ///< bad arguments, or an event closed while it was waited for
constexpr DWORD MAXIMUM_WAIT_OBJECTS = 64;  ///< most handles in one wait
constexpr DWORD CREATE_SUSPENDED = 4;       ///< the thread begins with its first ResumeThread
constexpr DWORD STILL_ACTIVE = 259;         ///< exit code of a thread that hasn't ended
constexpr int THREAD_PRIORITY_IDLE = -15;
constexpr int THREAD_PRIORITY_LOWEST = -2;
constexpr int THREAD_PRIORITY_BELOW_NORMAL = -1;
constexpr int THREAD_PRIORITY_NORMAL = 0;
constexpr int THREAD_PRIORITY_ABOVE_NORMAL = 1;
constexpr int THREAD_PRIORITY_HIGHEST = 2;
constexpr int THREAD_PRIORITY_TIME_CRITICAL = 15;

/// What a thread runs; what it returns is its exit code.
using LPTHREAD_START_ROUTINE = DWORD (*)(void*);

/// Starts a thread. Its handle becomes signalled when it has ended, with its thread-local objects destroyed.
/// @param seguridad, pila not read: the system's defaults serve
/// @param modo 0 or CREATE_SUSPENDED
/// @param id   out: number of the thread; may be null
/// @return the caller's, for CloseHandle (which doesn't end the thread); null when the system has no more threads
LUMBRA_API HANDLE CreateThread(void* seguridad, std::size_t pila, LPTHREAD_START_ROUTINE cuerpo, void* dato, DWORD modo,
                               DWORD* id);

/// Asks a thread to stop. It stops where nobody can depend on it: at its next wait or lock of this library, and not
/// while it holds a critical section. Stopping it anywhere could leave the allocator or the OpenGL driver locked for
/// the whole process. A thread that suspends itself stops at once. Calls nest.
/// @return how many suspensions there were before; DWORD(-1) for a bad handle or a thread that has ended
LUMBRA_API DWORD SuspendThread(HANDLE hilo);

/// Takes one suspension back; with the last one the thread goes on.
/// @return how many suspensions there were before (0: it wasn't suspended); DWORD(-1) as above
LUMBRA_API DWORD ResumeThread(HANDLE hilo);

/// Sets one of the THREAD_PRIORITY_ values. Lower than now always works; higher needs the system's permission.
/// @return FALSE when refused, for a bad handle and for a thread that has ended
LUMBRA_API BOOL SetThreadPriority(HANDLE hilo, int prioridad);

/// @param codigo out: what the thread returned, STILL_ACTIVE while it runs
LUMBRA_API BOOL GetExitCodeThread(HANDLE hilo, DWORD* codigo);

/// Number of the calling thread.
LUMBRA_API DWORD GetCurrentThreadId();

/// Makes an event.
/// @param manual  TRUE: stays set, and lets all pass, until reset; FALSE: lets one wait pass and resets itself
/// @param inicial TRUE: set from the start
/// @return the caller's, for CloseHandle
LUMBRA_API HANDLE CreateEventW(void* seguridad, BOOL manual, BOOL inicial, LPCWSTR nombre);

/// Sets, resets, or sets for those who wait at this moment. @return FALSE when the handle is no event's
LUMBRA_API BOOL SetEvent(HANDLE evento);
LUMBRA_API BOOL ResetEvent(HANDLE evento);
LUMBRA_API BOOL PulseEvent(HANDLE evento);

/// Waits for a thread's end or an event.
/// @param milisegundos 0 looks only; INFINITE has no limit
/// @return WAIT_OBJECT_0, WAIT_TIMEOUT or WAIT_FAILED
LUMBRA_API DWORD WaitForSingleObject(HANDLE objeto, DWORD milisegundos);

/// Waits for one of several objects, or for all. Waiting for all takes them together: no event is reset before all are
/// set. When several are set, the one with the lowest index counts.
/// @param cuenta 1 to MAXIMUM_WAIT_OBJECTS handles, none twice
/// @return WAIT_OBJECT_0 plus the index (0 for all), WAIT_TIMEOUT or WAIT_FAILED
LUMBRA_API DWORD WaitForMultipleObjects(DWORD cuenta, const HANDLE* objetos, BOOL todos, DWORD milisegundos);

/// Closes a handle. A thread goes on, and who waits for its end goes on waiting; who waits for an event gets
/// WAIT_FAILED, since nobody could set it any more. @return FALSE for an unknown handle
LUMBRA_API BOOL CloseHandle(HANDLE objeto);

/// What the machine has.
struct SYSTEM_INFO {
    DWORD dwPageSize;            ///< bytes
    DWORD dwNumberOfProcessors;  ///< those that this process may use, at least 1
};
LUMBRA_API void GetSystemInfo(SYSTEM_INFO* info);
/// Processors that this process may use, at least 1.
inline int Procesadores() {
    SYSTEM_INFO info{};
    GetSystemInfo(&info);
    return static_cast<int>(info.dwNumberOfProcessors);
}

/// Atomic arithmetic on a plain variable. Increment, Decrement give the new value; the others the former one.
LUMBRA_API LONG InterlockedIncrement(LONG* valor);
LUMBRA_API LONG InterlockedDecrement(LONG* valor);
LUMBRA_API LONG InterlockedExchange(LONG* valor, LONG nuevo);
LUMBRA_API LONG InterlockedExchangeAdd(LONG* valor, LONG suma);
LUMBRA_API LONG InterlockedCompareExchange(LONG* valor, LONG nuevo, LONG esperado);
