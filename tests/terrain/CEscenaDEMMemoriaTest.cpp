// What a mesh does when memory runs out: the test program's own allocator refuses blocks of a chosen size.

#include "EscenaTerreno.h"
#include "model/IPorcentaje.h"
#include "platform/CWinApp.h"

#include <cstdlib>
#include <new>

namespace {

// Blocks from `desde` to `hasta` bytes are refused, `veces` times at the most.
thread_local std::size_t desde = 0, hasta = 0;
thread_local int veces = 0;

struct SinMemoria {
    SinMemoria(std::size_t menor, std::size_t mayor, int cuantas) { desde = menor, hasta = mayor, veces = cuantas; }
    ~SinMemoria() { veces = 0; }
};

void* Reserva(std::size_t n) {
    if (veces > 0 && n >= desde && n <= hasta) {
        --veces;
        throw std::bad_alloc();
    }
    if (void* p = std::malloc(n != 0 ? n : 1)) return p;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t n) {
    return Reserva(n);
}
void* operator new[](std::size_t n) {
    return Reserva(n);
}
// Kept out of line: the compiler would see std::free beside a new that it has not inlined.
[[gnu::noinline]] void operator delete(void* p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void* p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

namespace {

// An application that notes the messages.
class Oyente : public CWinApp, public Vertiz::IPorcentaje {
  public:
    Oyente() : CWinApp(L"oyente") {}
    int Paso(int, int, int, int) override { return 1; }
    void Empieza(int, unsigned) override {}
    void Termina(int, int) override {}
    void Pasos(int, int) override {}
    void Reinicia(int, int, int) override {}
    void Mensaje(int nivel, const CString& texto, int) override {
        niveles.push_back(nivel);
        mensajes.push_back(texto);
    }
    std::vector<int> niveles;
    std::vector<CString> mensajes;
};

// 200 x 200 samples: 480 000 bytes of vertices, 160 000 of indices; with a step of 2 a quarter of both.
constexpr int kLado = 200;
constexpr std::size_t kVertices = 12 * kLado * kLado, kIndices = 4 * kLado * kLado;

class Memoria : public Terreno {
  protected:
    void SetUp() override {
        m_dem = modelos::Rejilla(kLado, kLado, [](int r, int c) { return float(r + c); });
        Toma(m_dem);
    }
    std::size_t Celdas() { return Solo(Superficie(), {"glNormal3f"}).size(); }

    Vertiz::CDEM m_dem;
    Oyente m_oyente;
};

TEST_F(Memoria, WithoutRoomForVerticesTheMeshGetsCoarserAndSaysSo) {
    {
        const SinMemoria sin(kVertices, kVertices, 1);
        ASSERT_EQ(m_escena.OnIniciar(), 1);
    }
    ASSERT_EQ(m_oyente.mensajes.size(), 1u);
    EXPECT_EQ(m_oyente.niveles[0], 3);
    EXPECT_NE(m_oyente.mensajes[0].Find(L" Sin memoria para 40000 vértices (paso 1)"), -1);
    EXPECT_GT(m_oyente.mensajes[0].Find(L" Sin memoria"), 0) << "the system's text comes first";
    EXPECT_EQ(Vertices(m_escena.m_nListaSuperficie).size(), 4u * 99 * 99) << "one sample in two";
}

TEST_F(Memoria, EachFailureTakesALargerStep) {
    const std::size_t mitad = 12 * 100 * 100;
    {
        const SinMemoria sin(mitad, kVertices, 2);
        ASSERT_EQ(m_escena.OnIniciar(), 1);
    }
    // The second message is for what was asked with a step of 2.
    ASSERT_EQ(m_oyente.mensajes.size(), 2u);
    EXPECT_NE(m_oyente.mensajes[1].Find(L"10000 vértices (paso 2)"), -1);
    EXPECT_EQ(Vertices(m_escena.m_nListaSuperficie).size(), 4u * 66 * 66);
}

TEST_F(Memoria, WithoutRoomForIndicesThereIsNoListAndNoFailure) {
    {
        const SinMemoria sin(kIndices, kIndices, 1);
        EXPECT_EQ(m_escena.OnIniciar(), 1);
    }
    EXPECT_EQ(m_escena.m_nListaSuperficie, 0u);
    ASSERT_EQ(m_oyente.mensajes.size(), 1u);
    EXPECT_NE(m_oyente.mensajes[0].Find(L" Sin memoria para 40000 índices (paso 1)"), -1);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(Celdas(), std::size_t(kLado - 1) * (kLado - 1)) << "the next build has its memory again";
}

TEST_F(Memoria, WithoutAnyMemoryForVerticesItFailsAndEnds) {
    {
        const SinMemoria sin(12, kVertices, 1000000);
        // Nothing else of these sizes may be asked for before the vertices, or the scene could not say anything.
        EXPECT_ANY_THROW(std::vector<float>(100));
        int resultado = -1;
        try {
            resultado = m_escena.OnIniciar();
        } catch (const std::bad_alloc&) {
            resultado = 0;  // the message itself found no memory
        }
        EXPECT_EQ(resultado, 0);
    }
    EXPECT_EQ(m_escena.m_nListaSuperficie, 0u);
    EXPECT_EQ(m_escena.OnIniciar(), 1);
}

}  // namespace
