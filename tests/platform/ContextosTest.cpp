// Rendering contexts: their life, who is current where, and joining.

#include "platform/Contextos.h"

#include "Memoria.h"
#include "platform/Backend.h"
#include "platform/DiagnosticoGL.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <cstdint>
#include <filesystem>
#include <thread>
#include <vector>

namespace {

class Contextos : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(m_Memoria.m_bFormato) << UltimoFalloGL(); }
    void TearDown() override { wglMakeCurrent(nullptr, nullptr); }

    Memoria m_Memoria;
};

TEST_F(Contextos, TheFormatHasEightBitsAColourAndTheDeepestBuffer) {
    const int n = GetPixelFormat(m_Memoria.hdc());
    ASSERT_GT(n, 0);
    PIXELFORMATDESCRIPTOR d{};
    const int cuantos = DescribePixelFormat(m_Memoria.hdc(), n, sizeof d, &d);
    ASSERT_GE(cuantos, n);
    EXPECT_EQ(d.nSize, 40);
    EXPECT_EQ(d.cRedBits, 8);
    EXPECT_EQ(d.cGreenBits, 8);
    EXPECT_EQ(d.cBlueBits, 8);
    EXPECT_EQ(d.iPixelType, PFD_TYPE_RGBA);
    EXPECT_FALSE(d.dwFlags & PFD_NEED_PALETTE);
    for (int i = 1; i <= cuantos; ++i) {
        PIXELFORMATDESCRIPTOR otro{};
        ASSERT_EQ(DescribePixelFormat(m_Memoria.hdc(), i, sizeof otro, &otro), cuantos);
        EXPECT_GE(d.cDepthBits, otro.cDepthBits);
    }
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc));
    GLint profundidad = 0, rojo = 0, muestras = 0;
    glGetIntegerv(GL_DEPTH_BITS, &profundidad);
    glGetIntegerv(GL_RED_BITS, &rojo);
    glGetIntegerv(0x80A9 /* GL_SAMPLES */, &muestras);
    EXPECT_EQ(profundidad, d.cDepthBits);
    EXPECT_EQ(rojo, 8);
    EXPECT_EQ(muestras, 0);
    if (DiagnosticoGL().m_Renderizador.find("llvmpipe") != std::string::npos) {
        EXPECT_EQ(profundidad, 32);
    }
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST_F(Contextos, ImpossibleFormatsAreRefused) {
    auto d = Deseado();
    d.iPixelType = PFD_TYPE_COLORINDEX;
    EXPECT_EQ(ChoosePixelFormat(m_Memoria.hdc(), &d), 0);
    d = Deseado(PFD_SUPPORT_OPENGL | PFD_STEREO);
    EXPECT_EQ(ChoosePixelFormat(m_Memoria.hdc(), &d), 0);
    d = Deseado(0x80000028);  // stereo or not, as it comes
    EXPECT_GT(ChoosePixelFormat(m_Memoria.hdc(), &d), 0);
    EXPECT_EQ(ChoosePixelFormat(nullptr, &d), 0);
    EXPECT_EQ(ChoosePixelFormat(m_Memoria.hdc(), nullptr), 0);
    EXPECT_FALSE(SetPixelFormat(m_Memoria.hdc(), 0, &d));
    EXPECT_FALSE(SetPixelFormat(m_Memoria.hdc(), 100000, &d));
    EXPECT_FALSE(SetPixelFormat(nullptr, 1, &d));
    EXPECT_EQ(DescribePixelFormat(m_Memoria.hdc(), 1, 39, &d), 0);
    EXPECT_EQ(DescribePixelFormat(nullptr, 1, sizeof d, &d), 0);
}

TEST_F(Contextos, TheFormatIsSetOnce) {
    const int n = GetPixelFormat(m_Memoria.hdc());
    EXPECT_TRUE(SetPixelFormat(m_Memoria.hdc(), n, nullptr));
    EXPECT_FALSE(SetPixelFormat(m_Memoria.hdc(), n == 1 ? 2 : 1, nullptr));
    EXPECT_EQ(GetPixelFormat(m_Memoria.hdc()), n);
}

TEST_F(Contextos, WithoutAFormatThereIsNoContext) {
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    EXPECT_EQ(GetPixelFormat(dc.GetSafeHdc()), 0);
    EXPECT_EQ(wglCreateContext(dc.GetSafeHdc()), nullptr);
    EXPECT_FALSE(UltimoFalloGL().empty());
    EXPECT_FALSE(PonFormato(dc.GetSafeHdc())) << "no bitmap is selected";
}

TEST_F(Contextos, ReleasingNothingIsASuccess) {
    EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    EXPECT_TRUE(wglMakeCurrent(m_Memoria.hdc(), nullptr));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(wglGetCurrentDC(), nullptr);
}

TEST_F(Contextos, TheCurrentOneIsTheOneThatWasSet) {
    HGLRC uno = wglCreateContext(m_Memoria.hdc()), otro = wglCreateContext(m_Memoria.hdc());
    EXPECT_NE(uno, otro);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), uno));
    EXPECT_EQ(wglGetCurrentContext(), uno);
    EXPECT_EQ(wglGetCurrentDC(), m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), otro));
    EXPECT_EQ(wglGetCurrentContext(), otro);
    std::thread([] { EXPECT_EQ(wglGetCurrentContext(), nullptr); }).join();
    ASSERT_TRUE(wglMakeCurrent(nullptr, nullptr));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_TRUE(wglDeleteContext(uno));
    EXPECT_TRUE(wglDeleteContext(otro));
}

TEST_F(Contextos, WithoutACurrentContextCallsDoNothing) {
    glClear(GL_COLOR_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    EXPECT_FALSE(HayErrorGL());
}

TEST_F(Contextos, DeletingTheCurrentOneReleasesIt) {
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc));
    EXPECT_TRUE(wglDeleteContext(hrc));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(wglGetCurrentDC(), nullptr);
    GLint n = -7;
    glGetIntegerv(GL_MAX_LIGHTS, &n);
    EXPECT_EQ(n, -7) << "something is current still";
}

TEST_F(Contextos, UnknownHandlesAreRefused) {
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    EXPECT_TRUE(wglDeleteContext(hrc));
    EXPECT_FALSE(wglDeleteContext(hrc));
    EXPECT_FALSE(wglDeleteContext(nullptr));
    EXPECT_FALSE(wglDeleteContext(reinterpret_cast<HGLRC>(std::uintptr_t{0xdeadbeef})));
    EXPECT_FALSE(wglMakeCurrent(m_Memoria.hdc(), hrc));
    HGLRC vivo = wglCreateContext(m_Memoria.hdc());
    EXPECT_NE(vivo, hrc) << "a handle was given out twice";
    EXPECT_FALSE(wglMakeCurrent(nullptr, vivo));
    EXPECT_FALSE(wglMakeCurrent(reinterpret_cast<HDC>(std::uintptr_t{0xdeadbeef}), vivo));
    EXPECT_FALSE(wglShareLists(vivo, hrc));
    EXPECT_FALSE(wglShareLists(nullptr, vivo));
    EXPECT_FALSE(SwapBuffers(nullptr));
    EXPECT_EQ(wglCreateContext(nullptr), nullptr);
    EXPECT_TRUE(wglDeleteContext(vivo));
}

TEST_F(Contextos, ARefusalLeavesTheFormerOneCurrent) {
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc));
    EXPECT_FALSE(wglMakeCurrent(m_Memoria.hdc(), reinterpret_cast<HGLRC>(std::uintptr_t{0xdeadbeef})));
    EXPECT_EQ(wglGetCurrentContext(), hrc);
    GLint n = 0;
    glGetIntegerv(GL_MAX_LIGHTS, &n);
    EXPECT_GE(n, 8);
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST_F(Contextos, AnotherThreadCanNeitherTakeTheCurrentOneNorDeleteIt) {
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc));
    std::thread([&] {
        EXPECT_FALSE(wglMakeCurrent(m_Memoria.hdc(), hrc));
        EXPECT_NE(UltimoFalloGL().find("another thread"), std::string::npos);
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
        EXPECT_FALSE(wglDeleteContext(hrc));
    }).join();
    ASSERT_TRUE(wglMakeCurrent(nullptr, nullptr));
    std::thread([&] {
        EXPECT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc));
        EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    }).join();
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST_F(Contextos, AThreadThatEndsReleasesItsOwn) {
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    std::thread([&] { EXPECT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc)); }).join();
    EXPECT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc)) << UltimoFalloGL();
    Limpia(10, 20, 30);
    EXPECT_TRUE(SwapBuffers(m_Memoria.hdc())) << "the surface is still claimed by the thread that ended";
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST_F(Contextos, TheStateOfAContextStaysInIt) {
    HGLRC uno = wglCreateContext(m_Memoria.hdc()), otro = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), uno));
    glEnable(GL_LIGHTING);
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), otro));
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), uno));
    EXPECT_TRUE(glIsEnabled(GL_LIGHTING));
    EXPECT_TRUE(wglDeleteContext(uno));
    EXPECT_TRUE(wglDeleteContext(otro));
}

TEST_F(Contextos, JoinedOnesSeeTheirListsAndTexturesFromOtherThreads) {
    HGLRC principal = wglCreateContext(m_Memoria.hdc());
    constexpr int nHilos = 4;
    std::vector<HGLRC> deHilo;
    for (int i = 0; i < nHilos; ++i) {
        deHilo.push_back(wglCreateContext(m_Memoria.hdc()));
        ASSERT_TRUE(wglShareLists(principal, deHilo.back()));
    }
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), principal));  // current here while the others work

    std::vector<GLuint> listas(nHilos), texturas(nHilos);
    std::barrier todos(nHilos);
    std::vector<std::thread> hilos;
    for (int i = 0; i < nHilos; ++i)
        hilos.emplace_back([&, i] {
            ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), deHilo[i])) << UltimoFalloGL();
            todos.arrive_and_wait();  // all current at once
            listas[i] = glGenLists(1);
            glNewList(listas[i], GL_COMPILE);
            glColor3ub(static_cast<GLubyte>(50 + i), 0, 0);
            glRectf(-1, -1, 1, 1);
            glEndList();
            const GLubyte texel[4] = {static_cast<GLubyte>(100 + i), 1, 2, 3};
            glGenTextures(1, &texturas[i]);
            glBindTexture(GL_TEXTURE_2D, texturas[i]);
            glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, texel);
            EXPECT_FALSE(HayErrorGL());
            glFinish();
            todos.arrive_and_wait();
            EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
        });
    for (auto& h : hilos)
        h.join();

    for (int i = 0; i < nHilos; ++i) {
        EXPECT_TRUE(glIsList(listas[i]));
        for (int j = 0; j < i; ++j)
            EXPECT_NE(listas[i], listas[j]);
        glViewport(0, 0, 8, 8);
        glCallList(listas[i]);
        GLubyte pixel[4] = {};
        glReadPixels(4, 4, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
        EXPECT_EQ(pixel[0], 50 + i);
        EXPECT_TRUE(glIsTexture(texturas[i]));
        glBindTexture(GL_TEXTURE_2D, texturas[i]);
        GLubyte texel[4] = {};
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texel);
        EXPECT_EQ(texel[0], 100 + i);
    }
    EXPECT_FALSE(HayErrorGL());
    for (HGLRC h : deHilo)
        EXPECT_TRUE(wglDeleteContext(h));
    EXPECT_TRUE(glIsList(listas[0])) << "lists outlive the context that compiled them";
    EXPECT_TRUE(wglDeleteContext(principal));
}

TEST_F(Contextos, ListsArentSeenWithoutJoining) {
    HGLRC uno = wglCreateContext(m_Memoria.hdc()), otro = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), uno));
    const GLuint lista = glGenLists(1);
    glNewList(lista, GL_COMPILE);
    glEndList();
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), otro));
    EXPECT_FALSE(glIsList(lista));
    EXPECT_FALSE(wglShareLists(uno, otro)) << "both have been used: too late";
    EXPECT_NE(UltimoFalloGL().find("too late"), std::string::npos);
    EXPECT_TRUE(wglDeleteContext(uno));
    EXPECT_TRUE(wglDeleteContext(otro));
}

TEST_F(Contextos, JoiningReachesAUsedOneWhenTheOtherIsNot) {
    HGLRC usado = wglCreateContext(m_Memoria.hdc()), b = wglCreateContext(m_Memoria.hdc()),
          c = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), usado));
    const GLuint lista = glGenLists(1);
    glNewList(lista, GL_COMPILE);
    glEndList();
    EXPECT_TRUE(wglShareLists(b, c));
    EXPECT_TRUE(wglShareLists(c, usado)) << "the used one may stand on either side, and joining is transitive";
    EXPECT_TRUE(wglShareLists(usado, b)) << "again";
    EXPECT_TRUE(wglShareLists(b, b));
    for (HGLRC h : {b, c}) {
        ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), h));
        EXPECT_TRUE(glIsList(lista));
    }
    for (HGLRC h : {usado, b, c})
        EXPECT_TRUE(wglDeleteContext(h));
}

TEST_F(Contextos, TheGroupOutlivesTheOneThatBeganIt) {
    HGLRC a = wglCreateContext(m_Memoria.hdc()), b = wglCreateContext(m_Memoria.hdc()),
          c = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglShareLists(a, b));
    ASSERT_TRUE(wglShareLists(a, c));
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), a));
    const GLuint lista = glGenLists(1);
    glNewList(lista, GL_COMPILE);
    glEndList();
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), b));
    ASSERT_TRUE(wglDeleteContext(a));
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), c));  // its native context is made only now
    EXPECT_TRUE(glIsList(lista));
    EXPECT_TRUE(wglDeleteContext(b));
    EXPECT_TRUE(wglDeleteContext(c));
}

TEST_F(Contextos, ThoseOfAnotherFormatAreRefused) {
    PIXELFORMATDESCRIPTOR d{};
    const int n = GetPixelFormat(m_Memoria.hdc());
    const int cuantos = DescribePixelFormat(m_Memoria.hdc(), 1, sizeof d, &d);
    Memoria otra;
    HGLRC hrc = wglCreateContext(otra.hdc());
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(8, 8, 24));
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    ASSERT_NE(dc.SelectObject(&bitmap), nullptr);
    int distinto = 1;
    while (distinto <= cuantos && (distinto == n || !SetPixelFormat(dc.GetSafeHdc(), distinto, nullptr)))
        ++distinto;
    if (distinto > cuantos) GTEST_SKIP() << "the driver has one format only";
    EXPECT_FALSE(wglMakeCurrent(dc.GetSafeHdc(), hrc));
    EXPECT_TRUE(wglMakeCurrent(otra.hdc(), hrc));
    EXPECT_TRUE(wglDeleteContext(hrc));
}

TEST_F(Contextos, DeletingTheCurrentDeviceBreaksNothing) {
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc));
    const HDC hdc = m_Memoria.hdc();
    EXPECT_TRUE(m_Memoria.m_DC.DeleteDC());
    EXPECT_FALSE(m_Memoria.m_DC.DeleteDC());
    Limpia(1, 2, 3);
    EXPECT_FALSE(HayErrorGL());
    EXPECT_FALSE(SwapBuffers(hdc));
    EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    EXPECT_FALSE(wglMakeCurrent(hdc, hrc));
    EXPECT_TRUE(wglDeleteContext(hrc));
}

std::size_t Descriptores() {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

TEST_F(Contextos, TwoHundredContextsLeaveNothingBehind) {
    auto uno = [] {
        Memoria m(64, 64);
        HGLRC a = wglCreateContext(m.hdc()), b = wglCreateContext(m.hdc());
        ASSERT_TRUE(wglShareLists(a, b));
        ASSERT_TRUE(wglMakeCurrent(m.hdc(), a)) << UltimoFalloGL();
        Limpia(1, 2, 3);
        ASSERT_TRUE(wglMakeCurrent(m.hdc(), b)) << UltimoFalloGL();
        ASSERT_TRUE(wglDeleteContext(a));
        ASSERT_TRUE(wglDeleteContext(b));
    };
    uno();
    const std::size_t antes = Descriptores();
    for (int i = 0; i < 100; ++i)
        uno();
    EXPECT_EQ(Descriptores(), antes);
}

TEST_F(Contextos, TheBackendIsChosenOnce) {
    EXPECT_FALSE(plataforma::FuerzaBackend("egl-surfaceless")) << "one serves already";
    EXPECT_FALSE(plataforma::FuerzaBackend("none such"));
}

TEST_F(Contextos, TheDiagnosisSaysWhoServesAndWhyTheOthersDont) {
    HGLRC hrc = wglCreateContext(m_Memoria.hdc());
    ASSERT_TRUE(wglMakeCurrent(m_Memoria.hdc(), hrc));
    const CDiagnosticoGL d = DiagnosticoGL();
    EXPECT_EQ(wglGetCurrentContext(), hrc);
    ASSERT_TRUE(d.m_bHay);
    EXPECT_EQ(d.m_Via, plataforma::NombreBackendActual());
    ASSERT_EQ(d.m_Vias.size(), 3u);
    EXPECT_EQ(d.m_Vias[0].m_Nombre, "glx");
    EXPECT_EQ(d.m_Vias[1].m_Nombre, "egl-device");
    EXPECT_EQ(d.m_Vias[2].m_Nombre, "egl-surfaceless");
    for (const CViaGL& v : d.m_Vias) {
        EXPECT_EQ(v.m_bSirve, v.m_Nombre == d.m_Via);
        EXPECT_EQ(v.m_Motivo.empty(), v.m_bSirve) << v.m_Nombre;
        EXPECT_FALSE(v.m_Descripcion.empty());
    }
    EXPECT_EQ(d.m_Renderizador, reinterpret_cast<const char*>(glGetString(GL_RENDERER)));
    GLint vista[2] = {0, 0}, textura = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, vista);
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &textura);
    EXPECT_EQ(d.m_nMaxAnchoVista, vista[0]);
    EXPECT_EQ(d.m_nMaxTextura, textura);
    EXPECT_GE(d.m_nBitsProfundidad, 24);
    EXPECT_GE(d.m_nMaxAnidamiento, 64);
    EXPECT_FALSE(d.m_VersionGLU.empty());
    EXPECT_FALSE(HayErrorGL());
    EXPECT_TRUE(wglDeleteContext(hrc));
}

}  // namespace
