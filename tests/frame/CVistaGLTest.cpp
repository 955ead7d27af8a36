// The view of a scene: which of the window's events reach the scene, in which order, and what happens without a scene
// or with one that fails.

#include "VistaPrueba.h"
#include "platform/DiagnosticoGL.h"

namespace {

using Pasos = EscenaPrueba::Pasos;

// Draws the window, whole or not.
void Pinta(CVistaGL& vista) {
    vista.InvalidateRect(nullptr);
    vista.UpdateWindow();
}

}  // namespace

TEST(CVistaGL, TheWindowLeavesOutSiblingsAndChildren) {
    VistaPrueba vista;
    ASSERT_TRUE(vista.Abre());
    EXPECT_EQ(vista.m_nEstilo, WS_CLIPSIBLINGS | WS_CLIPCHILDREN);
    VistaPrueba visible;
    ASSERT_TRUE(visible.Abre(64, 48, WS_VISIBLE));
    EXPECT_EQ(visible.m_nEstilo, WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN);
}

TEST(CVistaGL, TheSceneIsCreatedThenSizedThenInitialised) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    const Pasos& pasos = vista.Escena().GetPasos();
    ASSERT_GE(pasos.size(), 3U);
    EXPECT_EQ(pasos, (Pasos{"OnCreate", "OnResize", "OnIniciar"}));
    EXPECT_EQ(vista.m_bIniciado, 1);
    EXPECT_EQ(vista.Escena().m_nAncho, 64);
    EXPECT_EQ(vista.Escena().m_nAlto, 48);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST(CVistaGL, TheContextsAreMadeOnTheWindowWithTwoBuffers) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    EXPECT_EQ(vista.Escena().m_pVentana, &vista);
    EXPECT_EQ(vista.Escena().m_Descriptor.dwFlags, 37U);
    EXPECT_EQ(vista.Escena().m_Descriptor.iPixelType, 0);
    EXPECT_EQ(vista.Escena().m_bDCExterno, 0);
}

TEST(CVistaGL, WithoutASceneItIsAWindowAndNothingElse) {
    VistaPrueba vista;
    ASSERT_TRUE(vista.Abre());
    EXPECT_EQ(vista.m_bIniciado, 0);
    Pinta(vista);
    vista.OnSize(SIZE_RESTORED, 10, 10);
    CClientDC dc(&vista);
    vista.OnDraw(&dc);
    CPrintInfo info;
    vista.OnPrint(&dc, &info);
    EXPECT_EQ(vista.OnQueryNewPalette(), 1);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST(CVistaGL, ASceneThatCannotBeCreatedLeavesNoWindow) {
    auto* escena = new EscenaPrueba;
    escena->m_sFalla = "OnCreate";
    VistaPrueba vista(escena);
    EXPECT_FALSE(vista.Abre());
    EXPECT_EQ(vista.GetSafeHwnd(), nullptr);
    EXPECT_EQ(escena->GetPasos(), Pasos{"OnCreate"});
    escena->m_sFalla.clear();
    EXPECT_TRUE(vista.Abre()) << "the next try is free to go well";
}

TEST(CVistaGL, ASceneThatCannotBeInitialisedIsNotDrawn) {
    auto* escena = new EscenaPrueba;
    escena->m_sFalla = "OnIniciar";
    VistaPrueba vista(escena);
    ASSERT_TRUE(vista.Abre());
    EXPECT_EQ(vista.m_bIniciado, 0);
    escena->GetPasos().clear();
    Pinta(vista);
    EXPECT_EQ(escena->GetPasos(), Pasos{});
}

TEST(CVistaGL, AnInvalidWindowIsDrawn) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    vista.UpdateWindow();
    vista.Escena().GetPasos().clear();
    Pinta(vista);
    EXPECT_EQ(vista.Escena().GetPasos(), Pasos{"OnRender"});
}

TEST(CVistaGL, ANewWindowIsInvalid) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    vista.Escena().GetPasos().clear();
    vista.UpdateWindow();
    EXPECT_EQ(vista.Escena().GetPasos(), Pasos{"OnRender"});
}

TEST(CVistaGL, APageThatCannotBeHadEndsPrinting) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    CPrintInfo info;
    info.m_bPreview = TRUE;
    EXPECT_TRUE(vista.OnPreparePrinting(&info));
    info.m_Datos.m_nResolucionVista = 0;
    EXPECT_FALSE(vista.OnPreparePrinting(&info));
}

TEST(CVistaGL, AWholeWindowIsNotDrawnAgain) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    vista.UpdateWindow();
    vista.Escena().GetPasos().clear();
    CPaintDC dc(&vista);  // outside of OnPaint nothing is invalid
    vista.OnDraw(&dc);
    EXPECT_EQ(vista.Escena().GetPasos(), Pasos{});
    CClientDC todo(&vista);
    vista.OnDraw(&todo);
    EXPECT_EQ(vista.Escena().GetPasos(), Pasos{"OnRender"});
}

TEST(CVistaGL, WithoutExtentsTheListsAreCompiledForNothing) {
    auto* escena = new EscenaPrueba;
    VistaPrueba vista(escena);
    vista.m_bEspacio = false;
    ASSERT_TRUE(vista.Abre());
    EXPECT_EQ(vista.m_bIniciado, 1);
    EXPECT_TRUE(escena->m_Maximas.EstanVacias(true));
    // A host that catches up.
    escena->OnZoomExtension();
    EXPECT_EQ(escena->Iniciar(), 1);
    Pinta(vista);
    EXPECT_FALSE(escena->m_Maximas.EstanVacias(true));
}

TEST(CVistaGL, ANewSizeReachesTheScene) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    vista.Escena().GetPasos().clear();
    vista.OnSize(SIZE_RESTORED, 100, 20);
    EXPECT_EQ(vista.Escena().GetPasos(), Pasos{"OnResize"});
    EXPECT_EQ(vista.Escena().m_nAncho, 100);
    vista.OnSize(SIZE_RESTORED, 0, 0);  // as a window that is put away
    EXPECT_EQ(vista.Escena().m_nAncho, 100);
    vista.OnSize(SIZE_RESTORED, 1, 1);
    EXPECT_EQ(vista.Escena().m_nAlto, 1);
    EXPECT_EQ(vista.Escena().Render(), 1);
}

TEST(CVistaGL, TheViewDeletesItsScene) {
    const int antes = EscenaPrueba::s_nVivas;
    {
        VistaPrueba vista(new EscenaPrueba);
        ASSERT_TRUE(vista.Abre());
        EXPECT_EQ(EscenaPrueba::s_nVivas, antes + 1);
    }
    EXPECT_EQ(EscenaPrueba::s_nVivas, antes);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST(CVistaGL, AClosedWindowLeavesTheSceneSafe) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    ASSERT_EQ(vista.Escena().MakeCurrent(nullptr), 1);
    vista.DestroyWindow();
    EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context on the window would be left behind";
    // Whether these go well or not is the display's to say.
    vista.Escena().Render();
    vista.Escena().Resize(20, 20);
    vista.Escena().Iniciar();
    std::vector<char> buffer(64 * 48 * 3);
    vista.Escena().CapturaImagen(CSize(64, 48), buffer.data());
    CPrintInfo info;
    vista.OnPrint(nullptr, &info);
    vista.OnQueryNewPalette();
    wglMakeCurrent(nullptr, nullptr);
}

TEST(CVistaGL, AViewCanBeCreatedAgainOnceItsSceneIsDestroyed) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    vista.DestroyWindow();
    EXPECT_FALSE(vista.Abre()) << "the scene's contexts are still those of the first window";
    vista.Escena().Destruir();
    ASSERT_TRUE(vista.Abre(80, 60));
    EXPECT_EQ(vista.m_bIniciado, 1);
    EXPECT_EQ(vista.Escena().Render(), 1) << UltimoFalloGL();
}

TEST(CVistaGL, AWindowGoesOnWithoutTheSceneThatItHad) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    delete vista.m_pGL;
    vista.m_pGL = nullptr;
    Pinta(vista);
    vista.OnSize(SIZE_RESTORED, 30, 30);
    EXPECT_EQ(vista.OnQueryNewPalette(), 1);
}

TEST(CVistaGL, APaletteIsTakenOverWithoutPaintingAnew) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    vista.UpdateWindow();
    vista.Escena().GetPasos().clear();
    const LOGPALETTE uno{0x300, 1, {{1, 2, 3, 0}}};
    vista.Escena().m_pPalette = new CPalette;
    vista.Escena().m_pPalette->CreatePalette(&uno);
    EXPECT_EQ(vista.OnQueryNewPalette(), 1);
    vista.OnPaletteChanged(&vista);
    vista.OnPaletteChanged(nullptr);
    vista.UpdateWindow();
    EXPECT_EQ(vista.Escena().GetPasos(), Pasos{}) << "displays of true colour map no entries";
}

TEST(CVistaGL, NothingIsWipedBeforeTheSceneIsDrawn) {
    VistaPrueba vista;
    EXPECT_EQ(vista.OnEraseBkgnd(nullptr), 0);
}

TEST(CVistaGL, MessagesReachTheScene) {
    VistaPrueba vista(new EscenaPrueba);
    ASSERT_TRUE(vista.Abre());
    vista.Escena().GetPasos().clear();
    vista.SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(33, 22));
    EXPECT_EQ(vista.Escena().m_nAncho, 33);
    EXPECT_EQ(vista.Escena().m_nAlto, 22);
    EXPECT_EQ(vista.SendMessage(WM_QUERYNEWPALETTE), 1);
    vista.SendMessage(WM_PALETTECHANGED, 0);
}

TEST(CVistaGL, OnlyPalettesOfOtherWindowsCallForItsOwn) {
    class Cuenta : public VistaPrueba {
      public:
        BOOL OnQueryNewPalette() override {
            ++m_nVeces;
            return VistaPrueba::OnQueryNewPalette();
        }
        int m_nVeces = 0;
    };
    Cuenta vista;
    VistaPrueba otra;
    ASSERT_TRUE(vista.Abre());
    vista.OnPaletteChanged(&vista);
    EXPECT_EQ(vista.m_nVeces, 0);
    vista.OnPaletteChanged(&otra);
    EXPECT_EQ(vista.m_nVeces, 1);
}
