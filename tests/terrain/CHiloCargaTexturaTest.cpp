// Workers that fill the tiles of a draped image together.

#include "terrain/CHiloCargaTextura.h"

#include "EscenaImagen.h"
#include "platform/Hilos.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <fstream>

namespace {

using Vertiz::CHiloCargaTextura;

const Teselado kMuchas{5, 3, 16, 16, true};

class Trabajadores : public Imagenes {
  protected:
    void SetUp() override {
        Imagenes::SetUp();
        ASSERT_GE(m_escena.m_nHRCShared, 1u);
        for (unsigned i = 0; i < m_escena.m_nHRCShared; ++i)
            m_contextos.push_back(m_escena.m_phRCShared[i]);
    }

    CDataTexturas& Registro() { return m_escena.m_Texturas.at(0); }
    void Arranca(CHiloCargaTextura& hilo, HGLRC contexto, int tipo, unsigned index = 0) {
        hilo.Start(m_nSiguiente++, &m_fin, &m_contador, &m_escena.m_Texturas, index, tipo, &m_escena.m_Referencias,
                   &m_escena.m_Vinculos, &m_escena, contexto, &m_seccion, &m_fila, &m_parar);
    }
    /// Runs as many workers as there are contexts to their end.
    void Llena(int tipo, unsigned index = 0) {
        std::vector<std::unique_ptr<CHiloCargaTextura>> hilos;
        for (const HGLRC contexto : m_contextos) {
            hilos.push_back(std::make_unique<CHiloCargaTextura>());
            Arranca(*hilos.back(), contexto, tipo, index);
        }
        EXPECT_TRUE(m_fin.Lock(30000));
        for (auto& hilo : hilos)
            hilo->Stop();
    }
    /// Which tiles are full, row by row.
    std::string Llenas() {
        std::string llenas;
        for (unsigned f = 0; f < unsigned(Registro().m_nNumFilas); ++f)
            for (unsigned c = 0; c < unsigned(Registro().m_nNumCols); ++c)
                llenas += Registro().EstaLlena(f, c) ? '1' : '0';
        return llenas;
    }
    static std::vector<std::vector<std::int32_t>> Triangulos(const std::string& teselas) {
        std::vector<std::vector<std::int32_t>> listas;
        for (const char t : teselas)
            listas.emplace_back(t == '1' ? 2 : 0, 7);
        return listas;
    }
    EscenaImagen* Hijo(bool referencia, int tipo) {
        auto* hijo = new EscenaImagen;
        hijo->SetTipo(1);
        if (referencia)
            m_escena.ReferenciaNuevo(hijo);
        else
            m_escena.VinculoNuevo(hijo);
        hijo->SetTipo(tipo);
        return hijo;
    }
    /// The workers have left their contexts: this thread can take them.
    void EsperaContextosLibres() {
        for (HGLRC contexto : m_contextos) {
            EXPECT_TRUE(m_escena.MakeCurrent(&contexto));
            wglMakeCurrent(nullptr, nullptr);
        }
    }

    std::vector<HGLRC> m_contextos;
    CEvent m_fin;
    CCriticalSection m_seccion;
    long m_contador = 0;
    unsigned m_fila = 0;
    bool m_parar = false;
    unsigned m_nSiguiente = 0;
};

TEST_F(Trabajadores, TogetherTheyFillEveryTileOfAnImageWithItsPixels) {
    const Teselado t = kMuchas.Liso();
    ASSERT_EQ(Carga(m_escena, t), 1);
    const RegistroGL registro;
    Llena(3);
    EXPECT_EQ(Llenas(), std::string(15, '1'));
    EXPECT_EQ(registro.Cuenta("glTexImage2D"), 15u * 5u) << "each tile once, with its five levels";
    EXPECT_GE(registro.Cuenta("glFinish"), 1u);
    EXPECT_EQ(m_fila, 5u);
    EXPECT_FALSE(m_parar);
    EsperaContextosLibres();
    for (unsigned f = 0; f < 5; ++f)
        for (unsigned c = 0; c < 3; ++c)
            for (int l = 0; l < 5; ++l) {
                const auto pixeles = Lee(Registro().IdTextura(f, c), l);
                ASSERT_EQ(pixeles.size(), std::size_t(3 * (16 >> l) * (16 >> l)));
                for (std::size_t i = 0; i < pixeles.size(); ++i)
                    ASSERT_NEAR(pixeles[i], t.TonoLiso(l, int(f), int(c))[i % 3], 8)
                        << f << ", " << c << ", level " << l;
            }
}

TEST_F(Trabajadores, OneCountsItsRowsTwice) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    m_contextos.resize(1);
    Llena(3);
    EXPECT_EQ(m_contador, 6) << "the last row's number, from 1, and one more when it is done";
    EXPECT_EQ(m_fila, 5u);
}

TEST_F(Trabajadores, OnlyTilesThatATriangleUsesAreFilled) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    Registro().m_TriangulosTextura = Triangulos("100000000000001");
    const auto usa = [](EscenaImagen* hijo, const std::string& teselas) {
        CDataTexturas r = kMuchas.Registro();
        r.m_TriangulosTextura = Triangulos(teselas);
        hijo->SetDataTexturas({r});
    };
    usa(Hijo(true, 1), "010000000000000");
    usa(Hijo(true, 7), "001000000000000");
    usa(Hijo(false, 4), "000100000000");
    usa(Hijo(false, 3), "000010000000000");
    Llena(4);
    EXPECT_EQ(Llenas(), "110100000000001") << "here, in a reference and in a link, which are terrains";
    EXPECT_FALSE(m_parar);
}

TEST_F(Trabajadores, AGridHasNoTrianglesAndIsLeftAlone) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    const RegistroGL registro;
    Llena(1);
    EXPECT_EQ(Llenas(), std::string(15, '0'));
    EXPECT_TRUE(registro.Todas().empty());
}

TEST_F(Trabajadores, FullTilesAreNotFilledAgain) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    Registro().m_TriangulosTextura = Triangulos("111111011111111");
    Llena(4);
    m_fila = 0;
    Registro().m_TriangulosTextura = Triangulos("111111111111111");
    const RegistroGL registro;
    Llena(4);
    EXPECT_EQ(Llenas(), std::string(15, '1'));
    EXPECT_EQ(registro.Cuenta("glBindTexture"), 1u);
}

TEST_F(Trabajadores, ObjectsThatHaveGoneAreMadeOnceForAll) {
    // So many that making them takes longer than it takes the others to come.
    constexpr std::size_t kColumnas = 10000;
    ASSERT_EQ(Carga(m_escena, {2, int(kColumnas), 1, 1}), 1);
    for (int vez = 0; vez < 3; ++vez) {
        Registro().m_pTexturas = nullptr;
        Registro().m_TriangulosTextura.assign(2 * kColumnas, {});
        Registro().m_TriangulosTextura[0] = Registro().m_TriangulosTextura[kColumnas] = {7};
        m_fila = 0;
        const RegistroGL registro;
        Llena(4);
        EXPECT_EQ(registro.Cuenta("glGenTextures"), 1u);
        EXPECT_TRUE(Registro().EstaLlena(0, 0) && Registro().EstaLlena(1, 0));
        EXPECT_FALSE(m_parar);
    }
}

TEST_F(Trabajadores, WithNothingToDoTheEndIsSignalledAllTheSame) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    m_fila = 5;
    Llena(3);
    EXPECT_EQ(m_contador, 0);
    m_fila = 0;
    Llena(3, 1);
    EXPECT_EQ(m_fila, 0u) << "there is no such record";
    Registro().m_nNumFilas = -3;
    Llena(3);
    EXPECT_EQ(m_fila, 0u);
}

TEST_F(Trabajadores, AFailureStopsAWorkerAndLeavesNoContextTaken) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    m_contextos.resize(1);
    const FallaGL falla("glTexImage2D", 12);
    Llena(3);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_TRUE(m_parar);
    EXPECT_EQ(Llenas(), "110000000000000");
    EXPECT_EQ(m_fila, 1u);
    EsperaContextosLibres();
}

TEST_F(Trabajadores, AFailureOfOneStopsTheOthers) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    if (m_contextos.size() < 2) GTEST_SKIP() << "one processor: there is one context for workers";
    CHiloCargaTextura primero, segundo;
    m_seccion.Lock();
    Arranca(primero, m_contextos.front(), 3);
    Arranca(segundo, m_contextos.back(), 3);
    const FallaGL falla("glTexImage2D", 1);
    m_seccion.Unlock();  // they wait for it with their first row
    primero.Stop();
    segundo.Stop();
    EXPECT_TRUE(m_parar);
    EXPECT_LE(m_fila, 3u);
}

TEST_F(Trabajadores, AFileThatIsGoneStopsThem) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    Registro().m_pFichero->Close();
    Llena(3);
    EXPECT_TRUE(m_parar);
    EXPECT_EQ(Llenas(), std::string(15, '0'));
}

// While it lives, the process gets so many bytes of memory more, and no others.
class PocaMemoria {
  public:
    explicit PocaMemoria(rlim_t bytes) : m_Antes{} {
        getrlimit(RLIMIT_AS, &m_Antes);
        rlim_t paginas = 0;
        std::ifstream("/proc/self/statm") >> paginas;
        const rlimit limite{paginas * rlim_t(sysconf(_SC_PAGESIZE)) + bytes, m_Antes.rlim_max};
        setrlimit(RLIMIT_AS, &limite);
    }
    ~PocaMemoria() { setrlimit(RLIMIT_AS, &m_Antes); }
    PocaMemoria(const PocaMemoria&) = delete;
    PocaMemoria& operator=(const PocaMemoria&) = delete;

  private:
    rlimit m_Antes;
};

TEST_F(Trabajadores, WithoutMemoryTheyStopAndTheProcessGoesOn) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer has a memory of its own";
#endif
    ASSERT_EQ(Carga(m_escena, Teselado{1, 1, 8, 8}), 1);
    m_contextos.resize(1);
    Llena(3);  // so that the context has what it needs
    Registro().m_pTexturas->llenas[0] = 0;
    m_fila = 0;
    Registro().m_nAnchoTextura = 32768, Registro().m_nAltoTextura = 20000;  // a slot of nearly 2 GB
    m_escena.m_nMaxTexDim = 32768;
    const PocaMemoria poca(rlim_t{1} << 29);
    Llena(3);
    EXPECT_TRUE(m_parar);
    EXPECT_EQ(Llenas(), "0");
}

TEST_F(Trabajadores, AHostThatCancelsIsObeyed) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    m_parar = true;
    CHiloCargaTextura hilo;
    {
        const CSingleLock cierre(&m_seccion, TRUE);  // the worker can't take a row meanwhile
        Arranca(hilo, m_contextos[0], 3);
        EXPECT_FALSE(std::atomic_ref(m_parar).load()) << "a new start forgets the cancel of the one before";
        std::atomic_ref(m_parar).store(true);
    }
    EXPECT_TRUE(m_fin.Lock(30000));
    hilo.Stop();
    EXPECT_LE(m_fila, 1u);
    EXPECT_LE(std::ranges::count(Llenas(), '1'), 1);
}

TEST_F(Trabajadores, TilesWhoseContextCannotBeTakenArePassedOver) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    m_contextos = {nullptr};
    Llena(3);
    EXPECT_EQ(m_fila, 5u) << "all rows are gone through";
    EXPECT_FALSE(m_parar);
    EXPECT_EQ(Llenas(), std::string(15, '0'));
}

TEST_F(Trabajadores, TheContextIsReleasedBeforeTheEndIsSignalled) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    CHiloCargaTextura hilo;
    m_fila = 5;
    Arranca(hilo, m_contextos[0], 3);
    hilo.Stop();
    ASSERT_TRUE(m_fin.Lock(0));
    m_fila = 4;
    hilo.Run();  // here, where it can be looked at
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_TRUE(m_fin.Lock(0));
    EXPECT_EQ(Llenas(), "000000000000111");
}

TEST_F(Trabajadores, AWorkerWaitsForItsThreadAtItsEnd) {
    ASSERT_EQ(Carga(m_escena, kMuchas), 1);
    {
        CHiloCargaTextura hilo;
        Arranca(hilo, m_contextos[0], 3);
        EXPECT_EQ(hilo.GetIndice(), 0u);
    }
    EXPECT_EQ(Llenas(), std::string(15, '1'));
    CHiloCargaTextura nunca;
    nunca.Stop();
    EXPECT_EQ(nunca.GetHandle(), nullptr);
}

}  // namespace
