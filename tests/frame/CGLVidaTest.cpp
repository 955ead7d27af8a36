// From Crear to Destruir: contexts, their order, what is left behind, and copies that share.

#include "EscenaPrueba.h"
#include "platform/CWnd.h"
#include "support/Contexto.h"
#include "support/RegistroGL.h"

#include <chrono>
#include <future>
#include <thread>

using testing::Contains;
using testing::ElementsAre;
using Punto = EscenaPrueba::Punto;

TEST(CGLSinCrear, RenderResizeAndIniciarGive0) {
    EscenaPrueba escena;
    EXPECT_EQ(escena.Render(), 0);
    EXPECT_EQ(escena.Resize(10, 10), 0);
    EXPECT_EQ(escena.Iniciar(), 0);
    EXPECT_EQ(escena.IniciarSeleccion(), 0);
    EXPECT_EQ(escena.SetMaxSizeTextura(), 0);
    EXPECT_EQ(escena.MakeCurrent(nullptr), 0);
    EXPECT_TRUE(escena.GetPasos().empty());
    EXPECT_EQ(escena.m_nAncho, 0);
}

TEST(CGLSinCrear, StartsLookingStraightDownWithTheStatedDefaults) {
    const EscenaPrueba escena;
    EXPECT_EQ(escena.GetTipo(), -1);
    EXPECT_EQ(escena.GetCamara().Position(), Punto(0, 1, 0));
    EXPECT_EQ(escena.GetCamara().View(), Punto(0, 0, 0));
    EXPECT_EQ(escena.GetCamara().UpVector(), Punto(0, 0, -1));
    EXPECT_FALSE(escena.HayMaximas());
    EXPECT_EQ(escena.GetTiposObjetosMDT(), std::vector<unsigned char>{0});
    EXPECT_EQ(escena.m_LineaNueva.GetCodigo(), CString(L"nuevo"));
    EXPECT_GE(escena.m_nHRCShared, 1U);
    EXPECT_FLOAT_EQ(escena.GetPlanoCerca(), 0.0001F);
    EXPECT_FLOAT_EQ(escena.GetPlanoFondo(), 20000.0F);
}

TEST(CGLSinCrear, DestroyingASceneThatWasNeverCreatedLeavesTheHostsContextAlone) {
    Lienzo anfitrion(8, 8);
    ASSERT_TRUE(anfitrion.Actual());
    { EscenaPrueba escena; }
    EXPECT_EQ(wglGetCurrentContext(), anfitrion.Contexto());
    Lienzo::Suelta();
}

TEST_F(ConEscena, AMinimalSceneDrawsItsModel) {
    m_Escena.SetEjes(0);
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(m_Tela.Pixel(25, 15), 0x00FF00U);
    EXPECT_EQ(m_Tela.Pixel(60, 40), 0x000000U);
}

TEST_F(ConEscena, ResizeWithASideOf0ChangesNothing) {
    EXPECT_EQ(m_Escena.Resize(0, 100), 0);
    EXPECT_EQ(m_Escena.Resize(100, 0), 0);
    EXPECT_EQ(m_Escena.Resize(-5, 100), 0);
    EXPECT_EQ(m_Escena.m_nAncho, 64);
    EXPECT_EQ(m_Escena.m_nAlto, 48);
}

TEST_F(ConEscena, ResizeTakesTheSizeEvenWhenTheHookFails) {
    m_Escena.m_sFalla = "OnResize";
    EXPECT_EQ(m_Escena.Resize(32, 24), 0);
    EXPECT_EQ(m_Escena.m_nAncho, 32);
    EXPECT_EQ(m_Escena.m_nAlto, 24);
}

TEST_F(ConEscena, ASecondCrearIsRefusedUntilDestruir) {
    const HGLRC primero = m_Escena.m_hRC;
    Tela otra;
    EXPECT_EQ(m_Escena.CreaEn(otra), 0);
    EXPECT_EQ(m_Escena.m_hRC, primero);
    EXPECT_EQ(m_Escena.m_pDC, m_Tela.DC());
    m_Escena.Destruir();
    EXPECT_EQ(m_Escena.Monta(otra), 1);
    EXPECT_EQ(m_Escena.Render(), 1);
    m_Escena.Destruir();  // before its device context
}

TEST_F(ConEscena, DestruirFreesTheContextsAndMayComeTwice) {
    const HGLRC principal = m_Escena.m_hRC;
    const HGLRC compartido = m_Escena.m_phRCShared[0];
    m_Escena.Destruir();
    EXPECT_EQ(m_Escena.m_hRC, nullptr);
    EXPECT_EQ(m_Escena.m_pDC, nullptr);
    EXPECT_EQ(m_Escena.m_phRCShared, nullptr);
    EXPECT_FALSE(wglDeleteContext(principal));
    EXPECT_FALSE(wglDeleteContext(compartido));
    m_Escena.Destruir();
    EXPECT_THAT(m_Escena.GetPasos(), ElementsAre("OnLiberarContexto(1)"));
    EXPECT_EQ(m_Escena.Render(), 0);
}

TEST_F(ConEscena, DestruirDeletesTheConcretePartThenTextureThenListsInOrder) {
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    glGenTextures(1, &m_Escena.m_nTexturaFondo);
    for (GLuint* lista : {&m_Escena.m_nListaReserva, &m_Escena.m_nListaLimites, &m_Escena.m_nListaMedidas,
                          &m_Escena.m_nListaCielo, &m_Escena.m_nListaLineaNueva}) {
        *lista = glGenLists(1);
    }
    wglMakeCurrent(nullptr, nullptr);
    m_Escena.NuevaMarca(Vertiz::CTexto<double>(L"m", Punto(1, 1, 1), L"a", 1.0));
    m_Escena.NuevaMarca(Vertiz::CTexto<double>(L"m", Punto(2, 1, 1), L"b", 1.0));

    const auto borrada = [](GLuint id, int n = 1) {
        return "glDeleteLists(" + std::to_string(id) + ", " + std::to_string(n) + ")";
    };
    const LlamadasGL esperadas = {
        borrada(m_Escena.m_nLista),
        "glDeleteTextures([" + std::to_string(m_Escena.m_nTexturaFondo) + "])",
        borrada(m_Escena.m_nListaPuntosMarcasFoto),
        borrada(m_Escena.m_nListaPuntosMarcasTerreno),
        borrada(m_Escena.m_nListaMarcas, 2),
        borrada(m_Escena.m_nListaLineaNueva),
        borrada(m_Escena.m_nListaCielo),
        borrada(m_Escena.m_nListaEjes),
        borrada(m_Escena.m_nListaCamara),
        borrada(m_Escena.m_nListaCamaraPanoramica),
        borrada(m_Escena.m_nListaReserva),
        borrada(m_Escena.m_nListaLimites),
        borrada(m_Escena.m_nListaMedidas),
    };
    RegistroGL registro;
    m_Escena.Destruir();
    EXPECT_EQ(EnLineas(Solo(registro.Ejecutadas(), {"glDeleteLists", "glDeleteTextures"})), EnLineas(esperadas));
    EXPECT_EQ(m_Escena.m_nListaEjes, 0U);
    EXPECT_EQ(m_Escena.m_nListaMarcas, 0U);
    EXPECT_EQ(m_Escena.m_nTexturaFondo, 0U);
}

namespace {

/// Shows what fonts and printing keep.
struct EscenaImpresa : EscenaPrueba {
    using CGL::operator=;
    using CGL::m_bFuentes;
    using CGL::m_hBitmapImpresion;
    using CGL::m_hDCMemoria;
    using CGL::m_hRCImpresion;
    using CGL::m_nListaFuentes;
    using CGL::m_nListaFuentesSeleccion;
};

}  // namespace

TEST(CGLDestruir, FreesTheGlyphsOfASceneThatBuildsThem) {
    for (const int bFuentes : {1, 0}) {
        Tela tela;
        EscenaImpresa escena;
        ASSERT_TRUE(escena.CreaEn(tela));
        ASSERT_TRUE(escena.MakeCurrent(nullptr));
        escena.m_nListaFuentes = glGenLists(1024);
        escena.m_nListaFuentesSeleccion = glGenLists(1024);
        wglMakeCurrent(nullptr, nullptr);
        escena.m_bFuentes = bFuentes;
        LlamadasGL esperadas;
        for (const GLuint bloque : {escena.m_nListaFuentes, escena.m_nListaFuentesSeleccion})
            esperadas.push_back("glDeleteLists(" + std::to_string(bloque) + ", 1024)");
        if (bFuentes == 0) esperadas.clear();
        const RegistroGL registro;
        escena.Destruir();
        EXPECT_EQ(EnLineas(Solo(registro.Ejecutadas(), {"glDeleteLists"})), EnLineas(esperadas));
        EXPECT_EQ(escena.m_nListaFuentes, 0U);
        EXPECT_EQ(escena.m_nListaFuentesSeleccion, 0U);
    }
}

TEST(CGLDestruir, WhatPrintingLeftGoesWithTheSceneUnlessItIsForgotten) {
    for (const bool bOlvida : {false, true}) {
        Tela tela;
        auto escena = std::make_unique<EscenaImpresa>();
        ASSERT_TRUE(escena->CreaEn(tela));
        CDC memoria;
        ASSERT_TRUE(memoria.CreateCompatibleDC(nullptr));
        CBitmap pagina;
        ASSERT_TRUE(pagina.CreateBitmap(4, 4, 24));
        const HBITMAP bitmap = escena->m_hBitmapImpresion = pagina.Detach();
        const HGLRC contexto = escena->m_hRCImpresion = wglCreateContext(tela.DC()->GetSafeHdc());
        const HDC dc = escena->m_hDCMemoria = memoria.Detach();
        ASSERT_NE(contexto, nullptr);
        if (bOlvida) {
            escena->Anular();
            EXPECT_EQ(escena->m_hRCImpresion, nullptr);
            EXPECT_EQ(escena->m_hDCMemoria, nullptr);
            EXPECT_EQ(escena->m_hBitmapImpresion, nullptr);
        }
        escena.reset();
        EXPECT_EQ(wglDeleteContext(contexto), bOlvida ? TRUE : FALSE);
        CDC otra;
        EXPECT_EQ(otra.Attach(dc), bOlvida ? TRUE : FALSE);
        EXPECT_EQ(DeleteObject(bitmap), bOlvida ? TRUE : FALSE);
    }
}

// ---- Crear ---------------------------------------------------------------------------------------------------------

TEST(CGLCrear, AsksTheHookWithTheFormatOfTheBitmap) {
    Tela tela(8, 8, 32);
    EscenaPrueba escena;
    ASSERT_EQ(escena.Crear(tela.DC(), PFD_TYPE_RGBA, 0x24), 1);
    EXPECT_EQ(escena.m_pVentana, nullptr);
    EXPECT_EQ(escena.m_Descriptor.nSize, 40);
    EXPECT_EQ(escena.m_Descriptor.nVersion, 1);
    EXPECT_EQ(escena.m_Descriptor.dwFlags, 0x24U);
    EXPECT_EQ(escena.m_Descriptor.iPixelType, PFD_TYPE_RGBA);
    EXPECT_EQ(escena.m_Descriptor.cColorBits, 32);
    EXPECT_EQ(escena.m_Descriptor.cDepthBits, 32);
    EXPECT_EQ(escena.m_Descriptor.cStencilBits, 0);
    EXPECT_EQ(escena.m_bDCExterno, 1);
    EXPECT_LE(escena.GetMaxTexDim(), 1024);
    EXPECT_GT(escena.GetMaxTexDim(), 0);
}

TEST(CGLCrear, AHookThatRefusesEndsItWithNothingHalfMade) {
    Tela tela;
    EscenaPrueba escena;
    escena.m_sFalla = "OnCreate";
    EXPECT_EQ(escena.CreaEn(tela), 0);
    EXPECT_EQ(escena.m_hRC, nullptr);
    EXPECT_EQ(escena.m_pDC, nullptr);
    escena.m_sFalla.clear();
    EXPECT_EQ(escena.CreaEn(tela), 1);
}

TEST(CGLCrear, NullDrawablesAreRefused) {
    EscenaPrueba escena;
    EXPECT_EQ(escena.Crear(static_cast<CDC*>(nullptr), PFD_TYPE_RGBA, 0), 0);
    EXPECT_EQ(escena.Crear(static_cast<CWnd*>(nullptr), PFD_TYPE_RGBA, 0), 0);
}

TEST(CGLCrear, LeavesTheHostsContextAsItWas) {
    Lienzo anfitrion(8, 8);
    ASSERT_TRUE(anfitrion.Actual());
    glClearDepth(0.5);
    glDisable(GL_DEPTH_TEST);
    Tela tela;
    EscenaPrueba escena;
    ASSERT_EQ(escena.CreaEn(tela), 1);
    ASSERT_TRUE(anfitrion.Actual());
    GLdouble profundidad = 0;
    glGetDoublev(GL_DEPTH_CLEAR_VALUE, &profundidad);
    EXPECT_EQ(profundidad, 0.5);
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    Lienzo::Suelta();
}

TEST(CGLCrear, DepthTestingStartsOffAndTheProjectionOrthographic) {
    Tela tela;
    EscenaPrueba escena;
    ASSERT_EQ(escena.CreaEn(tela), 1);
    ASSERT_TRUE(escena.MakeCurrent(nullptr));
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    GLdouble proyeccion[16];
    glGetDoublev(GL_PROJECTION_MATRIX, proyeccion);
    EXPECT_DOUBLE_EQ(proyeccion[5], 2.0);
    EXPECT_FLOAT_EQ(static_cast<float>(proyeccion[10]), -1.0F / 20000.0F);
    wglMakeCurrent(nullptr, nullptr);
}

TEST(CGLCrear, AWindowGetsADeviceContextThatTheSceneOwns) {
    CWnd ventana;
    ASSERT_TRUE(ventana.Create(nullptr, L"", WS_OVERLAPPEDWINDOW, CRect(0, 0, 64, 48)));
    EscenaPrueba escena;
    ASSERT_EQ(escena.Crear(&ventana, PFD_TYPE_RGBA, PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER), 1);
    EXPECT_EQ(escena.m_pVentana, &ventana);
    EXPECT_EQ(escena.m_Descriptor.cColorBits, 24);
    EXPECT_EQ(escena.m_bDCExterno, 0);
    escena.OnZoomExtension();
    ASSERT_EQ(escena.Iniciar(), 1);
    ASSERT_EQ(escena.Resize(64, 48), 1);
    escena.OnZoomExtension();
    EXPECT_EQ(escena.Render(), 1);
    const HDC suyo = escena.m_pDC->GetSafeHdc();
    escena.Destruir();
    EXPECT_EQ(GetPixelFormat(suyo), 0) << "the device context is deleted with the scene's context";
    EXPECT_EQ(escena.Crear(&ventana, PFD_TYPE_RGBA, PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER), 1);
}

TEST_F(ConEscena, WhatAWorkersContextCompilesShowsInTheMainOne) {
    for (unsigned i = 0; i < m_Escena.m_nHRCShared; ++i) {
        GLuint lista = 0;
        std::thread([&] {
            ASSERT_TRUE(m_Escena.MakeCurrent(&m_Escena.m_phRCShared[i]));
            lista = glGenLists(1);
            glNewList(lista, GL_COMPILE);
            glEndList();
            glFinish();
            wglMakeCurrent(nullptr, nullptr);
        }).join();
        ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
        EXPECT_TRUE(glIsList(lista));
        wglMakeCurrent(nullptr, nullptr);
    }
}

// ---- MakeCurrent ---------------------------------------------------------------------------------------------------

TEST_F(ConEscena, MakeCurrentEndsAListThatWasLeftOpen) {
    for (const bool bActual : {true, false}) {
        ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
        const GLuint lista = glGenLists(1);
        glNewList(lista, GL_COMPILE);
        if (!bActual) wglMakeCurrent(nullptr, nullptr);
        ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
        GLint abierta = -1;
        glGetIntegerv(GL_LIST_INDEX, &abierta);
        EXPECT_EQ(abierta, 0);
        EXPECT_FALSE(HayErrorGL());
        glDeleteLists(lista, 1);
        wglMakeCurrent(nullptr, nullptr);
    }
}

TEST_F(ConEscena, MakeCurrentWaitsForAnotherThreadButNotForEver) {
    using namespace std::chrono_literals;
    // Holds the context on another thread until the wait is over.
    const auto ocupa = [this](auto espera) {
        std::promise<void> ocupado;
        std::thread hilo([this, espera, &ocupado] {
            m_Escena.MakeCurrent(nullptr);
            ocupado.set_value();
            espera();
            wglMakeCurrent(nullptr, nullptr);
        });
        ocupado.get_future().wait();
        return hilo;
    };
    std::thread breve = ocupa([] { std::this_thread::sleep_for(15ms); });
    EXPECT_EQ(m_Escena.MakeCurrent(nullptr), 1);
    wglMakeCurrent(nullptr, nullptr);
    breve.join();
    std::promise<void> basta;
    std::thread largo = ocupa([&basta] { basta.get_future().wait(); });
    EXPECT_EQ(m_Escena.MakeCurrent(nullptr), 0);
    basta.set_value();
    largo.join();
}

// ---- Failures ------------------------------------------------------------------------------------------------------

TEST_F(ConEscena, AFailedOnIniciarGives0ReleasesTheContextAndTheNextOneRecovers) {
    m_Escena.m_sFalla = "OnIniciar";
    EXPECT_EQ(m_Escena.Iniciar(), 0);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    m_Escena.m_sFalla.clear();
    m_Escena.SetEjes(0);
    EXPECT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(m_Tela.Pixel(25, 15), 0x00FF00U);
}

TEST_F(ConEscena, AFailedOnRenderGives0LeavesTheContextCurrentAndTheNextOneRecovers) {
    m_Escena.m_sFalla = "OnRender";
    EXPECT_EQ(m_Escena.Render(), 0);
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
    m_Escena.m_sFalla.clear();
    EXPECT_EQ(m_Escena.Render(), 1);
}

TEST_F(ConEscena, AnErrorInsideAListOfTheFrameEndsIniciarAndTheNextOneRecovers) {
    m_Escena.NuevaMarca(Vertiz::CTexto<double>(L"m", Punto(1, 1, 1), L"a", 1.0));
    {
        const FallaGL falla("glEndList", 2);  // the first ends the model's own list
        EXPECT_EQ(m_Escena.Iniciar(), 0);
        EXPECT_TRUE(falla.Ocurrida());
    }
    EXPECT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_EQ(m_Escena.Render(), 1);
}

TEST_F(ConEscena, AnErrorInReadingTheTextureLimitEndsIniciarBeforeTheModel) {
    const FallaGL falla("glGetError", 1);
    EXPECT_EQ(m_Escena.Iniciar(), 0);
    EXPECT_TRUE(m_Escena.GetPasos().empty());
    wglMakeCurrent(nullptr, nullptr);
}

// ---- Copies --------------------------------------------------------------------------------------------------------

TEST_F(ConEscena, ACopyHasTheSameContextAndSharedOnesOfItsOwn) {
    EscenaPrueba copia(m_Escena);
    EXPECT_EQ(copia.m_hRC, m_Escena.m_hRC);
    EXPECT_EQ(copia.m_pDC, m_Escena.m_pDC);
    EXPECT_NE(copia.m_phRCShared[0], m_Escena.m_phRCShared[0]);
    EXPECT_NE(copia.m_pBufferProfundidad, m_Escena.m_pBufferProfundidad);
    EXPECT_EQ(copia.m_nListaEjes, m_Escena.m_nListaEjes);
    ASSERT_TRUE(copia.MakeCurrent(&copia.m_phRCShared[0]));
    EXPECT_TRUE(glIsList(m_Escena.m_nLista));
    wglMakeCurrent(nullptr, nullptr);
}

TEST(CGLCopia, TheLastOfTheCopiesFreesTheContext) {
    Tela tela;
    auto original = std::make_unique<EscenaPrueba>();
    ASSERT_TRUE(original->Monta(tela));
    original->SetEjes(0);
    auto copia = std::make_unique<EscenaPrueba>(*original);
    const HGLRC contexto = original->m_hRC;

    original->GetPasos().clear();
    original->Destruir();
    EXPECT_THAT(original->GetPasos(), ElementsAre("OnLiberarContexto(0)"));
    EXPECT_EQ(original->m_hRC, nullptr);
    EXPECT_EQ(original->GetTipo(), -1);
    EXPECT_EQ(original->m_nListaEjes, 0U);
    original.reset();

    EXPECT_EQ(copia->Render(), 1);
    EXPECT_EQ(tela.Pixel(25, 15), 0x00FF00U);
    copia->Destruir();
    EXPECT_THAT(copia->GetPasos(), Contains("OnLiberarContexto(1)"));
    EXPECT_FALSE(wglDeleteContext(contexto));
}

TEST_F(ConEscena, AssignmentFreesWhatTheTargetHadAndKeepsItsDepthBlock) {
    Tela otraTela;
    EscenaPrueba otra;
    ASSERT_TRUE(otra.Monta(otraTela));
    const HGLRC suyo = otra.m_hRC;
    const float* bloque = otra.m_pBufferProfundidad.get();
    otra = m_Escena;
    EXPECT_FALSE(wglDeleteContext(suyo));
    EXPECT_EQ(otra.m_hRC, m_Escena.m_hRC);
    EXPECT_EQ(otra.m_pBufferProfundidad.get(), bloque);
    EXPECT_NE(otra.m_phRCShared[0], m_Escena.m_phRCShared[0]);
    const EscenaPrueba& misma = otra;
    otra = misma;
    EXPECT_EQ(otra.m_hRC, m_Escena.m_hRC);
}

TEST_F(ConEscena, ACopyTakesSettingsAndStationsButNotWhatTheUserIsDoing) {
    m_Escena.SetNombre(L"escena");
    m_Escena.SetQuad(1);
    m_Escena.SumaSeleccion(Vertiz::CPosicionEntidad(3, 4));
    m_Escena.m_PuntosSeleccion.push_back(Punto(1, 2, 3));
    m_Escena.m_LineaNueva << Punto(0, 0, 0);
    m_Escena.m_Marcas.emplace_back();
    m_Escena.m_PuntosCamara << Punto(1, 1, 1);
    m_Escena.m_PuntosCamaraGL << Punto(2, 2, 2);
    m_Escena.m_AngulosCamara << Punto(3, 3, 3);
    m_Escena.SetSizeCamara(7.0);
    const EscenaPrueba copia(m_Escena);
    EXPECT_EQ(copia.GetQuad(), 1U);
    EXPECT_EQ(copia.m_PuntosCamara.NPuntos(), 1U);
    EXPECT_EQ(copia.m_PuntosCamaraGL.NPuntos(), 1U);
    EXPECT_EQ(copia.m_AngulosCamara.NPuntos(), 1U);
    EXPECT_FLOAT_EQ(copia.m_fSizeCamara, 7.0F);
    EXPECT_EQ(copia.m_nAncho, 64);
    EXPECT_TRUE(copia.m_Maximas == m_Escena.m_Maximas);
    EXPECT_TRUE(copia.GetNombre().IsEmpty());
    EXPECT_TRUE(copia.GetSeleccion().empty());
    EXPECT_TRUE(copia.GetPuntosSeleccion().empty());
    EXPECT_EQ(copia.NPuntosLineaNueva(), 0U);
    EXPECT_TRUE(copia.m_Marcas.empty());
    EXPECT_FALSE(copia.HayMaximas());
    m_Escena.m_Marcas.clear();
}

TEST(CGLCopia, ACopyMadeBeforeCrearHasNoPartInTheContext) {
    Tela tela;
    EscenaPrueba original;
    const EscenaPrueba copia(original);
    ASSERT_EQ(original.CreaEn(tela), 1);
    const HGLRC contexto = original.m_hRC;
    original.Destruir();
    EXPECT_FALSE(wglDeleteContext(contexto));
}

TEST(CGLCopia, ChildrenAreDestroyedWithTheLastCopyThatHoldsThem) {
    const int vivas = EscenaPrueba::s_nVivas;
    {
        Tela tela;
        auto original = std::make_unique<EscenaPrueba>();
        ASSERT_TRUE(original->CreaEn(tela));
        original->ReferenciaNuevo(new EscenaPrueba(L"r"));
        original->VinculoNuevo(new EscenaPrueba(L"v"));
        EscenaPrueba copia(*original);
        original.reset();
        EXPECT_EQ(EscenaPrueba::s_nVivas, vivas + 3);
        ASSERT_NE(copia.DameReferencia(L"r"), nullptr);
        EXPECT_EQ(copia.DameReferencia(L"r")->MakeCurrent(nullptr), 1);
        wglMakeCurrent(nullptr, nullptr);
    }
    EXPECT_EQ(EscenaPrueba::s_nVivas, vivas);
}

TEST(CGLCopia, ACopyThatHasForgottenTheContextIsNoSharerAnyMore) {
    Tela tela;
    EscenaPrueba original;
    ASSERT_TRUE(original.CreaEn(tela));
    EscenaPrueba copia(original);
    copia.Anular();
    const HGLRC contexto = original.m_hRC;
    original.Destruir();
    EXPECT_FALSE(wglDeleteContext(contexto));
}

TEST(CGLCopia, ACopyOfAChildTakesTheContextForAsLongAsItsParentHasIt) {
    Tela tela;
    auto padre = std::make_unique<EscenaPrueba>();
    ASSERT_TRUE(padre->CreaEn(tela));
    auto* hijo = new EscenaPrueba;
    padre->ReferenciaNuevo(hijo);
    EscenaPrueba construida(*hijo), asignada;
    asignada = *hijo;
    for (EscenaPrueba* copia : {&construida, &asignada}) {
        EXPECT_EQ(copia->MakeCurrent(nullptr), 1);
        wglMakeCurrent(nullptr, nullptr);
        EXPECT_TRUE(copia->EsReferencia());
    }
    padre.reset();
    for (EscenaPrueba* copia : {&construida, &asignada})
        EXPECT_EQ(copia->MakeCurrent(nullptr), 0);
}

TEST_F(ConEscena, AnularForgetsWithoutFreeing) {
    const std::unique_ptr<EscenaPrueba> referencia(new EscenaPrueba), vinculo(new EscenaPrueba);
    m_Escena.ReferenciaNuevo(referencia.get());
    m_Escena.VinculoNuevo(vinculo.get());
    const HGLRC contexto = m_Escena.m_hRC;
    CPalette paleta;
    m_Escena.m_pPalette = &paleta;
    m_Escena.m_nTexturaFondo = 7;
    m_Escena.m_nTipoImagenFondo = 3;
    m_Escena.SetTipo(4);
    m_Escena.Anular();
    EXPECT_EQ(m_Escena.m_hRC, nullptr);
    EXPECT_EQ(m_Escena.m_pDC, nullptr);
    EXPECT_EQ(m_Escena.m_pPalette, nullptr);
    EXPECT_EQ(m_Escena.m_nTexturaFondo, 0U);
    EXPECT_EQ(m_Escena.m_nTipoImagenFondo, 0);
    EXPECT_EQ(m_Escena.GetTipo(), -1);
    EXPECT_FALSE(m_Escena.TieneReferencia());
    EXPECT_FALSE(m_Escena.TieneVinculos());
    EXPECT_TRUE(wglDeleteContext(contexto));
}
