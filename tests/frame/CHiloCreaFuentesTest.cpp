// Glyph lists made by workers.

#include "frame/CHiloCreaFuentes.h"

#include "EscenaVista.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Fuentes.h"
#include "platform/Hilos.h"

#include <algorithm>
#include <memory>
#include <vector>

using Vertiz::CHiloCreaFuentes;

namespace {

constexpr unsigned short kCodigos = 512;

class ConHilosFuentes : public ConEscena {
  protected:
    void SetUp() override {
        ConEscena::SetUp();
        const Prestado prestado(m_Escena);
        m_nBase = glGenLists(kCodigos);
        if (!wglUseFontOutlinesW(m_Tela.DC()->GetSafeHdc(), 'A', 1, m_nBase, 0.1F, 0.0F, WGL_FONT_POLYGONS, nullptr))
            GTEST_SKIP() << UltimoFalloGL() << " (package fonts-liberation)";
        glDeleteLists(m_nBase, kCodigos);  // a driver may take a name that was given out for a list
    }
    // How many lists of the block have been made.
    int Hechas(unsigned desde = 0, unsigned hasta = kCodigos) {
        const Prestado prestado(m_Escena);
        int n = 0;
        for (unsigned i = desde; i < hasta; ++i)
            n += glIsList(m_nBase + i) == GL_TRUE;
        return n;
    }

    // What list i of the block draws, as the renderer gets it.
    std::vector<float> Dibuja(unsigned i) const {
        std::vector<float> v(1 << 16);
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadIdentity();
        glScalef(0.3F, 0.3F, 0.3F);
        glFeedbackBuffer(static_cast<GLsizei>(v.size()), GL_3D, v.data());
        glRenderMode(GL_FEEDBACK);
        glCallList(m_nBase + i);
        v.resize(static_cast<std::size_t>(std::max(0, glRenderMode(GL_RENDER))));
        glPopMatrix();
        return v;
    }

    CCriticalSection m_Seccion;
    CEvent m_Fin{FALSE, TRUE};
    GLuint m_nBase = 0;
};

}  // namespace

TEST_F(ConHilosFuentes, AnyNumberOfWorkersFillTheBlock) {
    for (unsigned n : {1U, 2U, 3U, 8U}) {
        {
            const Prestado prestado(m_Escena);
            glDeleteLists(m_nBase, kCodigos);
        }
        ASSERT_EQ(Hechas(), 0);
        // One context a worker; the scene has as many as there are processors, so more workers wait for their turn.
        const auto parte = static_cast<unsigned short>(kCodigos / n + 1);
        std::vector<std::unique_ptr<CHiloCreaFuentes>> hilos;
        for (unsigned i = 0; i < n; ++i) {
            const auto primero = static_cast<unsigned short>(i * parte);
            const auto cuantos = static_cast<unsigned short>(std::min<int>(parte, kCodigos - primero));
            if (i >= m_Escena.m_nHRCShared) hilos[i - m_Escena.m_nHRCShared]->Stop();
            hilos.push_back(std::make_unique<CHiloCreaFuentes>());
            hilos.back()->Start(i, &m_Fin, &m_Escena, m_Escena.m_phRCShared[i % m_Escena.m_nHRCShared], primero,
                                cuantos, m_nBase + primero, 0.02F, &m_Seccion);
            EXPECT_EQ(hilos.back()->GetIndice(), i);
        }
        for (auto& hilo : hilos)
            hilo->Stop();
        EXPECT_EQ(Hechas(), kCodigos) << n << " workers";
    }
    EXPECT_EQ(WaitForSingleObject(m_Fin, 0), WAIT_TIMEOUT) << "the event is the host's";
}

TEST_F(ConHilosFuentes, TheLastCodeIsACount) {
    CHiloCreaFuentes hilo;
    hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 65, 70, m_nBase, 0.02F, &m_Seccion);
    hilo.Stop();
    EXPECT_EQ(Hechas(0, 70), 70);
    EXPECT_EQ(Hechas(70), 0);
}

TEST_F(ConHilosFuentes, AreSolidsATenthOfAnEmDeepOfTheDeviationThatIsAskedFor) {
    CHiloCreaFuentes hilo;
    hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 'R', 2, m_nBase, 0.02F, &m_Seccion);
    hilo.Stop();
    const Prestado prestado(m_Escena);
    const std::vector<float> letra = Dibuja(0), siguiente = Dibuja(1);
    ASSERT_FALSE(letra.empty());
    ASSERT_TRUE(
        wglUseFontOutlinesW(m_Tela.DC()->GetSafeHdc(), 'R', 2, m_nBase, 0.02F, 0.1F, WGL_FONT_POLYGONS, nullptr));
    EXPECT_EQ(letra, Dibuja(0));
    EXPECT_EQ(siguiente, Dibuja(1));
}

TEST_F(ConHilosFuentes, OnlyTheTakingOfTheContextIsGuarded) {
    CHiloCreaFuentes hilo;
    bool bMientras = false;
    for (int intento = 0; intento < 20 && !bMientras; ++intento) {
        hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 0, kCodigos, m_nBase, 0.0F, &m_Seccion);
        for (int n = 0; n < kCodigos && !bMientras;) {
            const CSingleLock cierre(&m_Seccion, TRUE);
            n = Hechas();
            bMientras = n > 0 && n < kCodigos;
        }
        hilo.Stop();
        const Prestado prestado(m_Escena);
        glDeleteLists(m_nBase, kCodigos);
    }
    EXPECT_TRUE(bMientras) << "lists are made while another holds the section";
}

TEST_F(ConHilosFuentes, AreOfTheFontThatIsSelected) {
    const HFONT negrita = CreateFontW(-20, 0, 0, 0, FW_BOLD, 0, 0, 0, 1, 0, 0, 0, 0, L"Arial");
    const HFONT antes = SelectObject(m_Tela.DC()->GetSafeHdc(), negrita);
    CHiloCreaFuentes hilo;
    hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 'A', 1, m_nBase, 0.02F, &m_Seccion);
    hilo.Stop();
    const Prestado prestado(m_Escena);
    double ancho[2] = {};
    for (int i = 0; i < 2; ++i) {
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glCallList(m_nBase);
        double m[16] = {};
        glGetDoublev(GL_MODELVIEW_MATRIX, m);
        ancho[i] = m[12];
        SelectObject(m_Tela.DC()->GetSafeHdc(), antes);
        ASSERT_TRUE(
            wglUseFontOutlinesW(m_Tela.DC()->GetSafeHdc(), 'A', 1, m_nBase, 0.02F, 0.1F, WGL_FONT_POLYGONS, nullptr));
    }
    EXPECT_GT(ancho[0], ancho[1]) << "bold letters are wider";
    DeleteObject(negrita);
}

TEST_F(ConHilosFuentes, WithoutSceneContextOrSectionNothingBreaks) {
    CHiloCreaFuentes hilo;
    hilo.Start(0, nullptr, nullptr, m_Escena.m_phRCShared[0], 'A', 1, m_nBase, 0.02F, &m_Seccion);
    hilo.Stop();
    hilo.Start(0, nullptr, &m_Escena, nullptr, 'A', 1, m_nBase, 0.02F, &m_Seccion);
    hilo.Stop();
    EXPECT_EQ(Hechas(), 0);
    hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 'A', 1, m_nBase, 0.02F, nullptr);
    hilo.Stop();
    EXPECT_EQ(Hechas(), 1) << "a single worker needs no lock";
}

TEST_F(ConHilosFuentes, ASecondStartWaitsForTheFirst) {
    CHiloCreaFuentes hilo;
    hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 0, 256, m_nBase, 0.02F, &m_Seccion);
    hilo.Start(1, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 256, 256, m_nBase + 256, 0.02F, &m_Seccion);
    hilo.Stop();
    EXPECT_EQ(Hechas(), kCodigos);
}

TEST_F(ConHilosFuentes, DestructionWaitsForTheEnd) {
    {
        CHiloCreaFuentes hilo;
        hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 0, kCodigos, m_nBase, 0.0F, &m_Seccion);
    }
    EXPECT_EQ(Hechas(), kCodigos);
    EXPECT_TRUE(wglDeleteContext(m_Escena.m_phRCShared[0])) << "the worker has left its context";
    m_Escena.m_phRCShared[0] = nullptr;
}

TEST_F(ConHilosFuentes, AWorkerIsSuspendedAndGoesOn) {
    CHiloCreaFuentes hilo;
    EXPECT_FALSE(hilo.Suspender()) << "there is no thread yet";
    EXPECT_FALSE(hilo.Reanudar());
    EXPECT_FALSE(hilo.SetPriority(THREAD_PRIORITY_NORMAL));
    m_Seccion.Lock();  // where it waits
    hilo.Start(0, nullptr, &m_Escena, m_Escena.m_phRCShared[0], 0, kCodigos, m_nBase, 0.02F, &m_Seccion);
    EXPECT_TRUE(hilo.Suspender());
    EXPECT_TRUE(hilo.SetPriority(THREAD_PRIORITY_LOWEST));
    m_Seccion.Unlock();
    EXPECT_TRUE(hilo.Reanudar());
    hilo.Stop();
    EXPECT_EQ(Hechas(), kCodigos);
}
