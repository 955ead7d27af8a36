#include "platform/Hilos.h"

#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

namespace {

constexpr DWORD kTope = 20000;  // a wait that should end does so long before; one that hangs fails

// A thread that runs any callable and is waited for at the end of the scope.
template <class F>
class Hilo {
  public:
    explicit Hilo(F f, DWORD modo = 0) : m_f(std::move(f)) {
        m_asa = CreateThread(
            nullptr, 0, [](void* dato) -> DWORD { return static_cast<Hilo*>(dato)->m_f(); }, this, modo, &m_id);
    }
    ~Hilo() {
        EXPECT_EQ(WaitForSingleObject(m_asa, kTope), WAIT_OBJECT_0);
        CloseHandle(m_asa);
    }
    HANDLE Asa() const { return m_asa; }
    DWORD Id() const { return m_id; }

  private:
    F m_f;
    HANDLE m_asa = nullptr;
    DWORD m_id = 0;
};

void Duerme(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

TEST(Hilos, AThreadRunsAndLeavesItsExitCode) {
    DWORD visto = 0;
    DWORD codigo = 0;
    Hilo hilo([&] {
        visto = GetCurrentThreadId();
        return DWORD(42);
    });
    ASSERT_EQ(WaitForSingleObject(hilo.Asa(), kTope), WAIT_OBJECT_0);
    ASSERT_TRUE(GetExitCodeThread(hilo.Asa(), &codigo));
    EXPECT_EQ(codigo, 42u);
    EXPECT_EQ(visto, hilo.Id());
    EXPECT_EQ(WaitForSingleObject(hilo.Asa(), 0), WAIT_OBJECT_0) << "an ended thread stays signalled";
}

TEST(Hilos, ARunningThreadIsStillActive) {
    CEvent fin;
    Hilo hilo([&] { return DWORD(fin.Lock()); });
    DWORD codigo = 0;
    ASSERT_TRUE(GetExitCodeThread(hilo.Asa(), &codigo));
    EXPECT_EQ(codigo, STILL_ACTIVE);
    EXPECT_EQ(WaitForSingleObject(hilo.Asa(), 10), WAIT_TIMEOUT);
    fin.SetEvent();
}

TEST(Hilos, AThreadMadeSuspendedWaitsForItsResume) {
    std::atomic<bool> corrio{false};
    Hilo hilo(
        [&] {
            corrio = true;
            return DWORD(0);
        },
        CREATE_SUSPENDED);
    EXPECT_EQ(WaitForSingleObject(hilo.Asa(), 20), WAIT_TIMEOUT);
    EXPECT_FALSE(corrio);
    EXPECT_EQ(ResumeThread(hilo.Asa()), 1u);
    EXPECT_EQ(WaitForSingleObject(hilo.Asa(), kTope), WAIT_OBJECT_0);
    EXPECT_TRUE(corrio);
    EXPECT_EQ(ResumeThread(hilo.Asa()), DWORD(-1)) << "nothing to resume in an ended thread";
}

TEST(Hilos, ASuspendedThreadStopsAtItsNextLockUntilAllSuspensionsAreTakenBack) {
    CCriticalSection seccion;
    std::atomic<int> vueltas{0};
    std::atomic<bool> fin{false};
    Hilo hilo([&] {
        while (!fin) {
            const CSingleLock toma(&seccion, TRUE);
            ++vueltas;
        }
        return DWORD(0);
    });
    EXPECT_EQ(SuspendThread(hilo.Asa()), 0u);
    EXPECT_EQ(SuspendThread(hilo.Asa()), 1u);
    Duerme(20);
    const int parado = vueltas;
    Duerme(20);
    EXPECT_EQ(vueltas, parado);
    EXPECT_TRUE(seccion.Lock(0)) << "it didn't stop with the lock held";
    seccion.Unlock();
    EXPECT_EQ(ResumeThread(hilo.Asa()), 2u);
    Duerme(20);
    EXPECT_EQ(vueltas, parado);
    EXPECT_EQ(ResumeThread(hilo.Asa()), 1u);
    while (vueltas == parado)
        Duerme(1);
    fin = true;
}

TEST(Hilos, PriorityCanBeLoweredWhileItRuns) {
    CEvent fin;
    HANDLE asa = nullptr;
    {
        Hilo hilo([&] { return DWORD(fin.Lock()); });
        asa = hilo.Asa();
        EXPECT_TRUE(SetThreadPriority(asa, THREAD_PRIORITY_NORMAL));
        EXPECT_TRUE(SetThreadPriority(asa, THREAD_PRIORITY_LOWEST));
        fin.SetEvent();
        ASSERT_EQ(WaitForSingleObject(asa, kTope), WAIT_OBJECT_0);
        EXPECT_FALSE(SetThreadPriority(asa, THREAD_PRIORITY_NORMAL));
    }
    EXPECT_FALSE(SetThreadPriority(asa, THREAD_PRIORITY_NORMAL)) << "its handle is closed";
}

struct Rastro {
    std::atomic<bool>* destruido = nullptr;
    ~Rastro() {
        if (destruido == nullptr) return;
        Duerme(20);
        *destruido = true;
    }
};
thread_local Rastro rastro;

TEST(Hilos, AnEndedThreadHasDestroyedItsThreadLocals) {
    std::atomic<bool> destruido{false};
    Hilo hilo([&] {
        rastro.destruido = &destruido;
        return DWORD(0);
    });
    ASSERT_EQ(WaitForSingleObject(hilo.Asa(), kTope), WAIT_OBJECT_0);
    EXPECT_TRUE(destruido);
}

TEST(Eventos, AnAutomaticOneLetsOneWaitPassAndAManualOneAll) {
    CEvent automatico(TRUE, FALSE);
    EXPECT_TRUE(automatico.Lock(0));
    EXPECT_FALSE(automatico.Lock(0));
    CEvent manual(TRUE, TRUE);
    EXPECT_TRUE(manual.Lock(0));
    EXPECT_TRUE(manual.Lock(0));
    manual.ResetEvent();
    EXPECT_FALSE(manual.Lock(0));
}

TEST(Eventos, ATimeoutIsWaitedOut) {
    CEvent nunca;
    const auto antes = std::chrono::steady_clock::now();
    EXPECT_EQ(WaitForSingleObject(nunca, 30), WAIT_TIMEOUT);
    EXPECT_GE(std::chrono::steady_clock::now() - antes, std::chrono::milliseconds(30));
}

TEST(Eventos, WaitingForOneGivesTheLowestIndexSetAndTakesOnlyThat) {
    std::array<CEvent, 3> eventos;
    const std::array<HANDLE, 3> asas{eventos[0], eventos[1], eventos[2]};
    eventos[2].SetEvent();
    eventos[1].SetEvent();
    EXPECT_EQ(WaitForMultipleObjects(3, asas.data(), FALSE, 0), WAIT_OBJECT_0 + 1);
    EXPECT_EQ(WaitForMultipleObjects(3, asas.data(), FALSE, 0), WAIT_OBJECT_0 + 2);
    EXPECT_EQ(WaitForMultipleObjects(3, asas.data(), FALSE, 0), WAIT_TIMEOUT);
}

TEST(Eventos, WaitingForAllTakesNothingUntilAllAreSet) {
    CEvent uno;
    CEvent otro;
    const std::array<HANDLE, 2> asas{uno, otro};
    uno.SetEvent();
    EXPECT_EQ(WaitForMultipleObjects(2, asas.data(), TRUE, 10), WAIT_TIMEOUT);
    EXPECT_TRUE(uno.Lock(0)) << "the wait that failed didn't reset it";
    Hilo hilo([&] {
        uno.SetEvent();
        Duerme(5);
        otro.SetEvent();
        return DWORD(0);
    });
    EXPECT_EQ(WaitForMultipleObjects(2, asas.data(), TRUE, kTope), WAIT_OBJECT_0);
    EXPECT_FALSE(uno.Lock(0));
    EXPECT_FALSE(otro.Lock(0));
}

TEST(Eventos, SixtyFourHandlesCanBeWaitedForAndNotOneMore) {
    std::array<CEvent, 65> eventos;
    std::array<HANDLE, 65> asas{};
    for (std::size_t i = 0; i < asas.size(); ++i) {
        eventos[i].SetEvent();
        asas[i] = eventos[i];
    }
    EXPECT_EQ(WaitForMultipleObjects(65, asas.data(), TRUE, 0), WAIT_FAILED);
    EXPECT_EQ(WaitForMultipleObjects(64, asas.data(), TRUE, 0), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForMultipleObjects(0, asas.data(), TRUE, 0), WAIT_FAILED);
}

TEST(Eventos, BadHandlesAreRefused) {
    CEvent evento;
    const std::array<HANDLE, 2> dos{evento, evento};
    EXPECT_EQ(WaitForMultipleObjects(2, dos.data(), TRUE, 0), WAIT_FAILED) << "the same one twice";
    EXPECT_EQ(WaitForSingleObject(nullptr, 0), WAIT_FAILED);
    const HANDLE asa = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    EXPECT_EQ(SuspendThread(asa), DWORD(-1)) << "an event is no thread";
    EXPECT_TRUE(CloseHandle(asa));
    EXPECT_FALSE(CloseHandle(asa));
    EXPECT_FALSE(SetEvent(asa));
    EXPECT_EQ(WaitForSingleObject(asa, 0), WAIT_FAILED);
}

TEST(Eventos, ClosingAnEventEndsTheWaitForIt) {
    const HANDLE asa = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<DWORD> resultado{WAIT_OBJECT_0};
    {
        Hilo hilo([&] {
            resultado = WaitForSingleObject(asa, kTope);
            return DWORD(0);
        });
        Duerme(10);
        CloseHandle(asa);
    }
    EXPECT_EQ(resultado, WAIT_FAILED);
}

TEST(Eventos, ClosingAThreadsHandleLetsItRunOn) {
    CEvent fin;
    CEvent acabado;
    std::array<CEvent*, 2> dos{&fin, &acabado};
    const HANDLE asa = CreateThread(
        nullptr, 0,
        [](void* dato) -> DWORD {
            auto& [espera, aviso] = *static_cast<std::array<CEvent*, 2>*>(dato);
            espera->Lock();
            aviso->SetEvent();
            return 0;
        },
        &dos, 0, nullptr);
    EXPECT_TRUE(CloseHandle(asa));
    fin.SetEvent();
    EXPECT_TRUE(acabado.Lock(kTope));
    Duerme(10);  // it leaves SetEvent before the events go
}

TEST(Eventos, APulseFreesWhoWaitsAndLeavesTheEventReset) {
    CEvent evento(FALSE, TRUE);
    std::atomic<int> libres{0};
    const auto espera = [&] {
        libres += evento.Lock(kTope);
        return DWORD(0);
    };
    {
        Hilo uno(espera);
        Hilo otro(espera);
        Duerme(30);
        evento.PulseEvent();
        for (int i = 0; i < 2000 && libres < 2; ++i)
            Duerme(1);
        EXPECT_EQ(libres, 2);
        EXPECT_FALSE(evento.Lock(0));
        evento.SetEvent();
    }
}

TEST(Eventos, InAStormNoSignalIsLostOrTakenTwice) {
    constexpr int vueltas = 3000;
    CEvent ida;
    CEvent vuelta;
    LONG cuenta = 0;
    const auto responde = [&] {
        for (int i = 0; i < vueltas; ++i) {
            if (!ida.Lock(kTope)) return DWORD(1);
            InterlockedIncrement(&cuenta);
            vuelta.SetEvent();
        }
        return DWORD(0);
    };
    Hilo uno(responde);
    Hilo otro(responde);
    for (int i = 0; i < 2 * vueltas; ++i) {
        ida.SetEvent();
        ASSERT_TRUE(vuelta.Lock(kTope));
    }
    EXPECT_EQ(InterlockedExchange(&cuenta, 0), 2 * vueltas);
}

TEST(CCriticalSection, IsRecursiveAndKeepsOthersOut) {
    CCriticalSection seccion;
    ASSERT_TRUE(seccion.Lock());
    ASSERT_TRUE(seccion.Lock());
    const auto prueba = [&] {
        BOOL tomada = FALSE;
        {
            Hilo hilo([&] {
                tomada = seccion.Lock(5);
                if (tomada) seccion.Unlock();
                return DWORD(0);
            });
        }
        return tomada;
    };
    EXPECT_FALSE(prueba());
    seccion.Unlock();
    EXPECT_FALSE(prueba()) << "taken twice, given back once";
    seccion.Unlock();
    EXPECT_TRUE(prueba());
}

TEST(CSingleLock, GivesBackAtTheEndOfTheScopeAndOnlyOnce) {
    CCriticalSection seccion;
    {
        CSingleLock toma(&seccion);
        EXPECT_FALSE(toma.IsLocked());
        EXPECT_FALSE(toma.Unlock());
        EXPECT_TRUE(toma.Lock());
        EXPECT_FALSE(toma.Lock());
    }
    long cuenta = 0;
    const auto suma = [&] {
        for (int i = 0; i < 2000; ++i) {
            const CSingleLock toma(&seccion, TRUE);
            ++cuenta;
        }
        return DWORD(0);
    };
    {
        Hilo uno(suma);
        Hilo otro(suma);
    }
    EXPECT_EQ(cuenta, 4000);
}

TEST(Interlocked, GivesTheNewValueOrTheFormerOne) {
    LONG valor = 5;
    EXPECT_EQ(InterlockedIncrement(&valor), 6);
    EXPECT_EQ(InterlockedDecrement(&valor), 5);
    EXPECT_EQ(InterlockedExchangeAdd(&valor, 10), 5);
    EXPECT_EQ(InterlockedCompareExchange(&valor, 1, 15), 15);
    EXPECT_EQ(InterlockedCompareExchange(&valor, 2, 15), 1);
    EXPECT_EQ(InterlockedExchange(&valor, 0), 1);
}

TEST(GetSystemInfo, TellsAtLeastOneProcessor) {
    SYSTEM_INFO info{};
    GetSystemInfo(&info);
    EXPECT_GE(info.dwNumberOfProcessors, 1u);
    EXPECT_GE(info.dwPageSize, 4096u);
}

}  // namespace
