// Threads and events. One lock guards all objects, which makes a wait for all of several objects one step; who sets an
// object hands it over to those who wait, in their order, so that no wake-up is lost or shared.

#include "platform/Hilos.h"

#include "platform/Parada.h"

#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <vector>

namespace {

struct Espera;

enum class Clase { evento, hilo };

struct Objeto {
    Clase clase = Clase::evento;
    bool manual = true;
    bool puesto = false;
    std::vector<Espera*> esperas;

    // Threads only.
    DWORD codigo = STILL_ACTIVE;
    pid_t id = 0;
    bool vivo = false;
    int amabilidad = 0;  // what the system calls nice, of the thread's normal priority
    std::atomic<DWORD> suspensiones{0};
    std::condition_variable reanudado;
};
using ObjetoP = std::shared_ptr<Objeto>;

// One wait under way; lives on the stack of who waits.
struct Espera {
    std::vector<ObjetoP> objetos;
    bool todos = false;
    bool hecha = false;
    DWORD resultado = WAIT_TIMEOUT;
    std::condition_variable aviso;

    // Takes what it waits for when it is there.
    bool Toma() {
        const auto puesto = [](const ObjetoP& o) { return o->puesto; };
        auto primero = objetos.begin();
        auto ultimo = objetos.end();
        if (todos) {
            if (!std::ranges::all_of(objetos, puesto)) return false;
        } else {
            primero = std::ranges::find_if(objetos, puesto);
            if (primero == objetos.end()) return false;
            ultimo = primero + 1;
        }
        Acaba(WAIT_OBJECT_0 + static_cast<DWORD>(primero - objetos.begin()));
        for (; primero != ultimo; ++primero) {
            if (!(*primero)->manual) (*primero)->puesto = false;
        }
        return true;
    }

    void Acaba(DWORD r) {
        hecha = true;
        resultado = r;
        aviso.notify_one();
    }
};

// Never destroyed: threads may still end while the process does.
struct Casa {
    std::mutex cerrojo;
    std::unordered_map<HANDLE, ObjetoP> objetos;
    std::uintptr_t ultimo = 0;
};

Casa& LaCasa() {
    static Casa* const casa = new Casa;
    return *casa;
}

HANDLE Registra(ObjetoP objeto) {
    Casa& casa = LaCasa();
    const std::lock_guard guarda(casa.cerrojo);
    casa.ultimo += 4;
    const HANDLE asa = reinterpret_cast<HANDLE>(casa.ultimo);
    casa.objetos.emplace(asa, std::move(objeto));
    return asa;
}

// With the lock held.
ObjetoP Busca(HANDLE asa) {
    const auto& objetos = LaCasa().objetos;
    const auto it = objetos.find(asa);
    return it != objetos.end() ? it->second : nullptr;
}

ObjetoP Busca(HANDLE asa, Clase clase) {
    ObjetoP objeto = Busca(asa);
    return objeto && objeto->clase == clase ? objeto : nullptr;
}

// With the lock held.
void Pon(Objeto& objeto) {
    objeto.puesto = true;
    for (Espera* espera : objeto.esperas) {
        if (!objeto.puesto) break;
        if (!espera->hecha) espera->Toma();
    }
}

// Made first on its thread, so that it goes last: whoever sees the thread ended sees its other objects gone.
struct Fin {
    ObjetoP hilo;
    ~Fin() {
        if (!hilo) return;
        const std::lock_guard guarda(LaCasa().cerrojo);
        Pon(*hilo);
    }
};

thread_local Fin propio;
thread_local int secciones = 0;

void ParaMientrasSuspendido(Objeto& hilo) {
    std::unique_lock guarda(LaCasa().cerrojo);
    hilo.reanudado.wait(guarda, [&] { return hilo.suspensiones == 0; });
}

void Cuerpo(ObjetoP hilo, LPTHREAD_START_ROUTINE cuerpo, void* dato) {
    propio.hilo = hilo;
    {
        const std::lock_guard guarda(LaCasa().cerrojo);
        hilo->id = static_cast<pid_t>(GetCurrentThreadId());
        hilo->vivo = true;
        hilo->reanudado.notify_all();
    }
    ParaMientrasSuspendido(*hilo);
    const DWORD codigo = cuerpo(dato);
    const std::lock_guard guarda(LaCasa().cerrojo);
    hilo->codigo = codigo;
    hilo->vivo = false;
}

int Amabilidad(int prioridad) {
    switch (prioridad) {
        case THREAD_PRIORITY_IDLE:
            return 19;
        case THREAD_PRIORITY_TIME_CRITICAL:
            return -20;
        default:
            return -5 * std::clamp(prioridad, THREAD_PRIORITY_LOWEST, THREAD_PRIORITY_HIGHEST);
    }
}

}  // namespace

void plataforma::PuntoDeParada() {
    Objeto* const hilo = propio.hilo.get();
    if (hilo != nullptr && secciones == 0 && hilo->suspensiones != 0) ParaMientrasSuspendido(*hilo);
}
void plataforma::SeccionTomada() {
    ++secciones;
}
void plataforma::SeccionDejada() {
    --secciones;
}

HANDLE CreateThread(void*, std::size_t, LPTHREAD_START_ROUTINE cuerpo, void* dato, DWORD modo, DWORD* id) {
    if (cuerpo == nullptr || (modo & ~CREATE_SUSPENDED) != 0) return nullptr;
    const auto hilo = std::make_shared<Objeto>();
    hilo->clase = Clase::hilo;
    hilo->suspensiones = modo == CREATE_SUSPENDED ? 1 : 0;
    hilo->amabilidad = getpriority(PRIO_PROCESS, 0);
    const HANDLE asa = Registra(hilo);
    try {
        std::thread(Cuerpo, hilo, cuerpo, dato).detach();
    } catch (const std::system_error&) {
        CloseHandle(asa);
        return nullptr;
    }
    std::unique_lock guarda(LaCasa().cerrojo);
    hilo->reanudado.wait(guarda, [&] { return hilo->id != 0; });
    if (id != nullptr) *id = static_cast<DWORD>(hilo->id);
    return asa;
}

DWORD SuspendThread(HANDLE asa) {
    ObjetoP hilo;
    DWORD antes = 0;
    {
        const std::lock_guard guarda(LaCasa().cerrojo);
        hilo = Busca(asa, Clase::hilo);
        if (!hilo || !hilo->vivo) return DWORD(-1);
        antes = hilo->suspensiones++;
    }
    if (hilo == propio.hilo) ParaMientrasSuspendido(*hilo);
    return antes;
}

DWORD ResumeThread(HANDLE asa) {
    const std::lock_guard guarda(LaCasa().cerrojo);
    const ObjetoP hilo = Busca(asa, Clase::hilo);
    if (!hilo || !hilo->vivo) return DWORD(-1);
    const DWORD antes = hilo->suspensiones;
    if (antes > 0 && --hilo->suspensiones == 0) hilo->reanudado.notify_all();
    return antes;
}

BOOL SetThreadPriority(HANDLE asa, int prioridad) {
    const std::lock_guard guarda(LaCasa().cerrojo);
    const ObjetoP hilo = Busca(asa, Clase::hilo);
    if (!hilo || !hilo->vivo) return FALSE;
    const int amabilidad = std::clamp(hilo->amabilidad + Amabilidad(prioridad), -20, 19);
    return setpriority(PRIO_PROCESS, static_cast<id_t>(hilo->id), amabilidad) == 0;
}

BOOL GetExitCodeThread(HANDLE asa, DWORD* codigo) {
    const std::lock_guard guarda(LaCasa().cerrojo);
    const ObjetoP hilo = Busca(asa, Clase::hilo);
    if (!hilo || codigo == nullptr) return FALSE;
    *codigo = hilo->codigo;
    return TRUE;
}

DWORD GetCurrentThreadId() {
    return static_cast<DWORD>(syscall(SYS_gettid));
}

HANDLE CreateEventW(void*, BOOL manual, BOOL inicial, LPCWSTR nombre) {
    if (nombre != nullptr && *nombre != L'\0') return nullptr;
    const auto evento = std::make_shared<Objeto>();
    evento->manual = manual != FALSE;
    evento->puesto = inicial != FALSE;
    return Registra(evento);
}

BOOL SetEvent(HANDLE asa) {
    const std::lock_guard guarda(LaCasa().cerrojo);
    const ObjetoP evento = Busca(asa, Clase::evento);
    if (!evento) return FALSE;
    Pon(*evento);
    return TRUE;
}

BOOL ResetEvent(HANDLE asa) {
    const std::lock_guard guarda(LaCasa().cerrojo);
    const ObjetoP evento = Busca(asa, Clase::evento);
    if (!evento) return FALSE;
    evento->puesto = false;
    return TRUE;
}

BOOL PulseEvent(HANDLE asa) {
    const std::lock_guard guarda(LaCasa().cerrojo);
    const ObjetoP evento = Busca(asa, Clase::evento);
    if (!evento) return FALSE;
    Pon(*evento);
    evento->puesto = false;
    return TRUE;
}

DWORD WaitForSingleObject(HANDLE objeto, DWORD milisegundos) {
    return WaitForMultipleObjects(1, &objeto, FALSE, milisegundos);
}

DWORD WaitForMultipleObjects(DWORD cuenta, const HANDLE* asas, BOOL todos, DWORD milisegundos) {
    if (cuenta == 0 || cuenta > MAXIMUM_WAIT_OBJECTS || asas == nullptr) return WAIT_FAILED;
    plataforma::PuntoDeParada();
    Espera espera;
    espera.todos = todos != FALSE;
    std::unique_lock guarda(LaCasa().cerrojo);
    for (DWORD i = 0; i < cuenta; ++i) {
        ObjetoP objeto = Busca(asas[i]);
        if (!objeto || std::ranges::find(espera.objetos, objeto) != espera.objetos.end()) return WAIT_FAILED;
        espera.objetos.push_back(std::move(objeto));
    }
    if (espera.Toma()) return espera.resultado;
    if (milisegundos == 0) return WAIT_TIMEOUT;

    for (const ObjetoP& objeto : espera.objetos)
        objeto->esperas.push_back(&espera);
    const auto hecha = [&] { return espera.hecha; };
    if (milisegundos == INFINITE) {
        espera.aviso.wait(guarda, hecha);
    } else {
        espera.aviso.wait_for(guarda, std::chrono::milliseconds(milisegundos), hecha);
    }
    for (const ObjetoP& objeto : espera.objetos)
        std::erase(objeto->esperas, &espera);
    guarda.unlock();
    plataforma::PuntoDeParada();
    return espera.resultado;
}

BOOL CloseHandle(HANDLE asa) {
    Casa& casa = LaCasa();
    const std::lock_guard guarda(casa.cerrojo);
    const auto nodo = casa.objetos.extract(asa);
    if (nodo.empty()) return FALSE;
    if (nodo.mapped()->clase == Clase::evento) {
        for (Espera* espera : nodo.mapped()->esperas) {
            if (!espera->hecha) espera->Acaba(WAIT_FAILED);
        }
    }
    return TRUE;
}

void GetSystemInfo(SYSTEM_INFO* info) {
    cpu_set_t usables;
    const bool sabido = sched_getaffinity(0, sizeof usables, &usables) == 0;
    const unsigned cuenta = sabido ? static_cast<unsigned>(CPU_COUNT(&usables)) : std::thread::hardware_concurrency();
    info->dwPageSize = static_cast<DWORD>(sysconf(_SC_PAGESIZE));
    info->dwNumberOfProcessors = std::max(1u, cuenta);
}

LONG InterlockedIncrement(LONG* valor) {
    return ++std::atomic_ref(*valor);
}
LONG InterlockedDecrement(LONG* valor) {
    return --std::atomic_ref(*valor);
}
LONG InterlockedExchange(LONG* valor, LONG nuevo) {
    return std::atomic_ref(*valor).exchange(nuevo);
}
LONG InterlockedExchangeAdd(LONG* valor, LONG suma) {
    return std::atomic_ref(*valor).fetch_add(suma);
}
LONG InterlockedCompareExchange(LONG* valor, LONG nuevo, LONG esperado) {
    std::atomic_ref(*valor).compare_exchange_strong(esperado, nuevo);
    return esperado;
}
