// The life of a worker's thread.

#include "model/CHilo.h"

#include "platform/CCriticalSection.h"
#include "platform/Hilos.h"
#include "platform/Tiempo.h"

#include <gtest/gtest.h>

#include <atomic>

using namespace Vertiz;

namespace {

class Contador : public CHilo {
  public:
    explicit Contador(unsigned indice) { m_nIndice = indice; }
    Contador(const Contador&) = default;
    ~Contador() override { Stop(); }

    bool Start() { return Arranca(this); }
    void Run() {
        m_nHilo = GetCurrentThreadId();
        CCriticalSection seccion;  // taking it is where a suspended thread stops
        while (!m_bParar) {
            CSingleLock cierre(&seccion, TRUE);
            ++m_nVueltas;
        }
        m_bFin = true;
    }
    void Stop() override {
        m_bParar = true;
        CHilo::Stop();
    }

    struct Atomico : std::atomic<unsigned long long> {
        Atomico() = default;
        Atomico(const Atomico& otro) : std::atomic<unsigned long long>(otro.load()) {}
        using std::atomic<unsigned long long>::operator=;
    };
    Atomico m_bParar, m_bFin, m_nVueltas, m_nHilo;
};

void EsperaVueltas(const Contador& c, unsigned long long n) {
    for (int i = 0; i < 10'000 && c.m_nVueltas < n; ++i)
        Sleep(1);
    EXPECT_GE(c.m_nVueltas, n);
}

}  // namespace

TEST(CHilo, RunsItsBodyOnAThreadOfItsOwnUntilStopped) {
    Contador c(3);
    EXPECT_EQ(c.GetIndice(), 3u);
    EXPECT_FALSE(c.GetHandle());
    ASSERT_TRUE(c.Start());
    EXPECT_FALSE(c.Start()) << "it has its thread already";
    EXPECT_TRUE(c.GetHandle());
    EsperaVueltas(c, 1);
    c.Stop();
    EXPECT_TRUE(c.m_bFin);
    EXPECT_NE(c.m_nHilo, GetCurrentThreadId());
    EXPECT_FALSE(c.GetHandle());
    c.Stop();
}

TEST(CHilo, ItsDestructorWaitsForTheThread) {
    {
        Contador c(0);
        ASSERT_TRUE(c.Start());
    }
    SUCCEED() << "a thread left behind would write to memory that is gone";
}

TEST(CHilo, ACopyHasTheIndexAndNoThread) {
    Contador c(5);
    ASSERT_TRUE(c.Start());
    const Contador copia(c);
    EXPECT_EQ(copia.GetIndice(), 5u);
    EXPECT_FALSE(copia.GetHandle());
    EXPECT_TRUE(c.GetHandle());
}

TEST(CHilo, StopsWhereItIsAndGoesOn) {
    Contador c(0);
    EXPECT_FALSE(c.Suspender());
    EXPECT_FALSE(c.Reanudar());
    EXPECT_FALSE(c.SetPriority(CHilo::P_NORMAL));
    ASSERT_TRUE(c.Start());
    EsperaVueltas(c, 1);
    EXPECT_TRUE(c.SetPriority(CHilo::P_NORMAL));
    ASSERT_TRUE(c.Suspender());
    Sleep(20);  // for the turn that it was in
    const unsigned long long quieto = c.m_nVueltas;
    Sleep(5);
    EXPECT_EQ(c.m_nVueltas, quieto);
    ASSERT_TRUE(c.Reanudar());
    EsperaVueltas(c, quieto + 1);
    c.Stop();
}
