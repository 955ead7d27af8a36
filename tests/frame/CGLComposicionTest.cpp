// Scenes inside scenes: taking in, handing back, image values, what is inherited.

#include "EscenaPrueba.h"
#include "platform/CWnd.h"
#include "support/RegistroGL.h"

#include <algorithm>

using testing::Contains;
using testing::ElementsAre;
using Punto = EscenaPrueba::Punto;
using Pasos = EscenaPrueba::Pasos;

namespace {

Vertiz::CDataTransformacion Foto(int tipo) {
    Vertiz::CDataTransformacion data;
    data.m_nTipo = tipo;
    data.m_dFocal = 1.0;
    return data;
}

/// A group without any context: image values and names need none.
struct Grupo {
    EscenaPrueba padre;
    EscenaPrueba* referencia = new EscenaPrueba(L"r");
    EscenaPrueba* vinculo = new EscenaPrueba(L"v");
    Grupo() {
        padre.ReferenciaNuevo(referencia);
        padre.VinculoNuevo(vinculo);
    }
    std::vector<int> Fondos() const {
        return {padre.m_nTipoImagenFondo, referencia->m_nTipoImagenFondo, vinculo->m_nTipoImagenFondo};
    }
};

EscenaPrueba* Fondo(int fondo, const wchar_t* nombre = L"fondo") {
    auto* escena = new EscenaPrueba(nombre);
    escena->m_nTipoImagenFondo = fondo;
    return escena;
}

}  // namespace

TEST(CGLComposicion, ABackgroundTurnsTheWholeGroupToItsOddValue) {
    for (const int fondo : {2, 4, 6}) {
        Grupo grupo;
        grupo.padre.ReferenciaNuevo(Fondo(fondo));
        EXPECT_THAT(grupo.Fondos(), testing::Each(fondo - 1));
        EXPECT_EQ(grupo.padre.DameReferencia(L"fondo")->GetTipoImagenFondo(), fondo);
    }
    Grupo grupo;
    grupo.padre.VinculoNuevo(Fondo(4));
    EXPECT_THAT(grupo.Fondos(), ElementsAre(3, 3, 3));
}

TEST(CGLComposicion, AChildOfAnImageSceneIsDrawnOverThatImage) {
    for (const auto& [tipo, fondo, transformacion, esperado] : {std::tuple(3, 0, 0, 3),
                                                                {8, 0, 11, 1},
                                                                {8, 0, 12, 5},
                                                                {1, 6, 12, 5},
                                                                {1, 5, 0, 3},
                                                                {1, 0, 11, 0},
                                                                {1, 1, 11, 0}}) {
        EscenaPrueba padre;
        padre.SetTipo(tipo);
        padre.m_nTipoImagenFondo = fondo;
        padre.m_DataTransformacion = Foto(transformacion);
        auto* hijo = new EscenaPrueba;
        padre.ReferenciaNuevo(hijo);
        EXPECT_EQ(hijo->m_nTipoImagenFondo, esperado) << tipo << " " << fondo << " " << transformacion;
    }
}

TEST(CGLComposicion, AnImageParentOverwritesTheValueOfABackgroundLinkButNotOfAReference) {
    EscenaPrueba padre;
    padre.SetTipo(8);
    EscenaPrueba* referencia = Fondo(4);
    EscenaPrueba* vinculo = Fondo(4);
    padre.ReferenciaNuevo(referencia);
    EXPECT_EQ(referencia->m_nTipoImagenFondo, 4);
    padre.VinculoNuevo(vinculo);
    EXPECT_EQ(vinculo->m_nTipoImagenFondo, 3);
}

TEST(CGLComposicion, ALinkIsJudgedByTheParentsValueBeforeItCame) {
    EscenaPrueba padre;  // becomes 5 through this very link
    EscenaPrueba* vinculo = Fondo(6);
    padre.VinculoNuevo(vinculo);
    EXPECT_EQ(padre.m_nTipoImagenFondo, 5);
    EXPECT_EQ(vinculo->m_nTipoImagenFondo, 6);
}

TEST(CGLComposicion, RemovingTheConicOrSphericalBackgroundByNameReturnsAllValuesTo0) {
    for (const int fondo : {2, 6}) {
        Grupo grupo;
        grupo.padre.ReferenciaNuevo(Fondo(fondo));
        const std::unique_ptr<CGL> fuera(grupo.padre.BorraReferencia(L"fondo"));
        ASSERT_NE(fuera, nullptr);
        EXPECT_THAT(grupo.Fondos(), ElementsAre(0, 0, 0));
    }
    Grupo grupo;
    grupo.padre.VinculoNuevo(Fondo(2));
    const std::unique_ptr<CGL> fuera(grupo.padre.BorraVinculo(L"fondo"));
    EXPECT_THAT(grupo.Fondos(), ElementsAre(0, 0, 0));
}

TEST(CGLComposicion, RemovingOneOfTwoOrthoBackgroundsKeeps3) {
    Grupo grupo;
    grupo.padre.ReferenciaNuevo(Fondo(4, L"a"));
    grupo.padre.VinculoNuevo(Fondo(4, L"b"));
    const std::unique_ptr<CGL> a(grupo.padre.BorraReferencia(L"a"));
    EXPECT_THAT(grupo.padre.m_nTipoImagenFondo, 3);
    const std::unique_ptr<CGL> b(grupo.padre.BorraVinculo(L"b"));
    EXPECT_THAT(grupo.Fondos(), ElementsAre(0, 0, 0));
}

TEST(CGLComposicion, RemovingSomethingElseKeepsTheValues) {
    Grupo grupo;
    grupo.padre.ReferenciaNuevo(Fondo(2));
    const std::unique_ptr<CGL> fuera(grupo.padre.BorraVinculo(L"v"));
    EXPECT_EQ(grupo.padre.m_nTipoImagenFondo, 1);
    EXPECT_EQ(grupo.referencia->m_nTipoImagenFondo, 1);
}

TEST(CGLComposicion, RemovalByIndexSettlesOnlyTheParentAndChecksTheIndex) {
    Grupo grupo;
    grupo.padre.VinculoNuevo(Fondo(2));
    EXPECT_EQ(grupo.padre.BorraVinculo(2U), nullptr);
    EXPECT_EQ(grupo.padre.m_nTipoImagenFondo, 1);
    const std::unique_ptr<CGL> fuera(grupo.padre.BorraVinculo(1U));
    EXPECT_THAT(grupo.Fondos(), ElementsAre(0, 1, 1));
}

TEST(CGLComposicion, ChildrenAreFoundByTheirExactName) {
    Grupo grupo;
    EXPECT_EQ(grupo.padre.DameReferencia(L"r"), grupo.referencia);
    EXPECT_EQ(grupo.padre.DameReferencia(L"R"), nullptr);
    EXPECT_EQ(grupo.padre.DameReferencia(L"v"), nullptr);
    EXPECT_EQ(grupo.padre.DameVinculo(L"v"), grupo.vinculo);
    EXPECT_EQ(grupo.padre.BorraReferencia(L"v"), nullptr);
    EXPECT_EQ(grupo.padre.BorraVinculo(L"r"), nullptr);
    EXPECT_TRUE(grupo.padre.TieneReferencia());
    EXPECT_TRUE(grupo.padre.TieneVinculos());
    EXPECT_TRUE(grupo.vinculo->EsReferencia());
    EXPECT_FALSE(grupo.padre.EsReferencia());
}

TEST(CGLComposicion, NothingAndTheSceneItselfAreNotTaken) {
    EscenaPrueba padre;
    padre.ReferenciaNuevo(nullptr);
    padre.VinculoNuevo(&padre);
    EXPECT_FALSE(padre.TieneReferencia());
    EXPECT_FALSE(padre.TieneVinculos());
}

TEST(CGLComposicion, ASceneThatStandsAboveIsNotTakenAsAChild) {
    EscenaPrueba abuela;
    auto* madre = new EscenaPrueba(L"madre");
    auto* hija = new EscenaPrueba(L"hija");
    abuela.ReferenciaNuevo(madre);
    madre->VinculoNuevo(hija);
    for (CGL* antepasada : {static_cast<CGL*>(&abuela), static_cast<CGL*>(madre)}) {
        hija->ReferenciaNuevo(antepasada);
        hija->VinculoNuevo(antepasada);
    }
    EXPECT_FALSE(hija->TieneReferencia());
    EXPECT_FALSE(hija->TieneVinculos());
    EXPECT_FALSE(abuela.EsReferencia());
}

TEST(CGLComposicion, IgualaVariablesHandsSelectionsOnAndToItselfOnlyTheSettings) {
    struct Escena : EscenaPrueba {
        using CGL::operator=;
        using CGL::m_bVistaSeleccion;
    };
    Escena a, b;
    a.SetQuad(0);
    a.SumaSeleccion(Vertiz::CPosicionEntidad(1, 2));
    a.m_PuntosSeleccion.emplace_back(1, 2, 3);
    std::vector<Vertiz::CPosicionEntidad> vista = {Vertiz::CPosicionEntidad(5)};
    a.SetVistaSeleccion(vista, false);
    a.SetSeleccion2Con1();
    a.IgualaVariables(&b);
    EXPECT_EQ(b.GetQuad(), 0U);
    EXPECT_EQ(b.GetSeleccion(), a.GetSeleccion());
    EXPECT_EQ(b.GetPuntosSeleccion().size(), 1U);
    EXPECT_EQ(b.GetVistaSeleccion(), vista);
    EXPECT_EQ(a.m_bVistaSeleccion, 1);
    EXPECT_EQ(b.m_bVistaSeleccion, 1);
    EXPECT_TRUE(b.GetSeleccion2().empty());
    a.IgualaVariables(&a);
    EXPECT_EQ(a.GetSeleccion().size(), 1U);
    EXPECT_EQ(a.GetVistaSeleccion(), vista);
}

TEST(CGLComposicion, AChildInheritsTablesAndExtentsButNotTheAspect) {
    Vertiz::CDigiTab tabla, lidar, eco;
    EscenaPrueba padre;
    padre.SetDigiTab(&tabla);
    padre.SetLidarTab(&lidar);
    padre.SetEcoTab(&eco);
    padre.SetVersionDigiTab(3);
    padre.EstableceMaxMin(EscenaPrueba::Maximas(Punto(0, 0, 0), Punto(9, 9, 9)));
    auto* hijo = new EscenaPrueba;
    hijo->m_dAspecto = 2.5;
    padre.ReferenciaNuevo(hijo);
    EXPECT_EQ(hijo->GetDigiTab(), &tabla);
    EXPECT_EQ(hijo->GetLidarTab(), &lidar);
    EXPECT_EQ(hijo->GetEcoTab(), &eco);
    EXPECT_EQ(hijo->GetVersionDigiTab(), 3U);
    EXPECT_TRUE(hijo->m_Maximas == padre.m_Maximas);
    EXPECT_EQ(hijo->m_dAspecto, 1.0);
}

TEST(CGLComposicion, TheGroupIsAskedUntilTheFirstYes) {
    Grupo grupo;
    EXPECT_FALSE(grupo.padre.TieneMDT());
    EXPECT_FALSE(grupo.padre.TieneDibujo());
    EXPECT_FALSE(grupo.padre.HayImagen());
    grupo.vinculo->SetTipo(7);
    EXPECT_TRUE(grupo.padre.TieneMDT());
    EXPECT_TRUE(grupo.padre.TieneTIN());
    EXPECT_TRUE(grupo.padre.TieneTIN3D());
    EXPECT_FALSE(grupo.padre.TieneDEM());
    grupo.referencia->SetTipo(6);
    EXPECT_TRUE(grupo.padre.TieneDibujo());
    grupo.padre.SetTipo(1);
    EXPECT_TRUE(grupo.padre.TieneDEM());
    grupo.referencia->SetTipo(3);
    EXPECT_TRUE(grupo.padre.HayImagen());
}

TEST(CGLComposicion, EachQuestionKnowsItsKindsOfSceneWhereverTheyStand) {
    struct Pregunta {
        bool (CGL::*pregunta)() const;
        std::vector<int> tipos;
    };
    const Pregunta preguntas[] = {{&CGL::TieneMDT, {1, 4, 7}},
                                  {&CGL::TieneDEM, {1}},
                                  {&CGL::TieneTIN, {4, 7}},
                                  {&CGL::TieneTIN3D, {7}},
                                  {&CGL::TieneDibujo, {2, 5, 6}}};
    for (int tipo = -1; tipo <= 8; ++tipo)
        for (int donde = 0; donde < 3; ++donde) {
            Grupo grupo;
            (donde == 0 ? &grupo.padre : donde == 1 ? grupo.referencia : grupo.vinculo)->SetTipo(tipo);
            for (const Pregunta& p : preguntas)
                EXPECT_EQ((grupo.padre.*p.pregunta)(), std::ranges::find(p.tipos, tipo) != p.tipos.end())
                    << "question " << &p - preguntas << ", type " << tipo << ", place " << donde;
            EXPECT_EQ(grupo.padre.HayImagen(), tipo == 3);
        }
}

TEST(CGLComposicion, TheKindOfImageIsThatOfTheTransformation) {
    for (int tipo = 0; tipo <= 12; ++tipo) {
        EscenaPrueba escena;
        escena.m_DataTransformacion = Foto(tipo);
        EXPECT_EQ(escena.EsImagenConica(), tipo == 11);
        EXPECT_EQ(escena.EsImagenEsferica(), tipo == 12);
    }
}

TEST(CGLComposicion, SomeQuestionsLookAtTheSceneItselfAndSomeAtItsChildrenAlone) {
    struct Habladora : EscenaPrueba {
        using CGL::operator=;
        bool EsCubicacion() const override { return m_bDice; }
        bool HaySuavizado() const override { return m_bDice; }
        bool HayRupturas() const override { return m_bDice; }
        bool TienePuntos() const override { return m_bDice || CGL::TienePuntos(); }
        bool TieneLidar() const override { return m_bDice || CGL::TieneLidar(); }
        bool TieneLaserTerrestre() const override { return m_bDice || CGL::TieneLaserTerrestre(); }
        bool m_bDice = false;
    };
    for (const bool bVinculo : {false, true}) {
        Habladora padre;
        auto* hija = new Habladora;
        bVinculo ? padre.VinculoNuevo(hija) : padre.ReferenciaNuevo(hija);
        const auto respuestas = [&] {
            return std::vector<bool>{padre.TieneCubicacion(), padre.TieneSuavizado(), padre.TieneRupturas()};
        };
        const auto deHijas = [&] {
            return std::vector<bool>{padre.CGL::TienePuntos(), padre.CGL::TieneLidar(),
                                     padre.CGL::TieneLaserTerrestre()};
        };
        EXPECT_THAT(respuestas(), testing::Each(false));
        padre.m_bDice = true;
        EXPECT_THAT(respuestas(), testing::Each(true));
        EXPECT_THAT(deHijas(), testing::Each(false));
        padre.m_bDice = false;
        hija->m_bDice = true;
        EXPECT_THAT(respuestas(), testing::Each(true));
        EXPECT_THAT(deHijas(), testing::Each(true));
    }
}

// ---- With contexts -------------------------------------------------------------------------------------------------

TEST_F(ConEscena, AChildAttachedAfterCrearTakesTheContext) {
    auto* hijo = new EscenaPrueba(L"h");
    m_Escena.ReferenciaNuevo(hijo);
    EXPECT_EQ(hijo->m_hRC, m_Escena.m_hRC);
    EXPECT_EQ(hijo->m_pDC, m_Escena.m_pDC);
    EXPECT_EQ(hijo->m_bDCExterno, m_Escena.m_bDCExterno);
    ASSERT_NE(hijo->m_phRCShared, nullptr);
    EXPECT_NE(hijo->m_phRCShared[0], m_Escena.m_phRCShared[0]);
    ASSERT_TRUE(hijo->MakeCurrent(&hijo->m_phRCShared[0]));
    EXPECT_TRUE(glIsList(m_Escena.m_nLista));
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_EQ(m_Escena.Render(), 1);
}

TEST(CGLComposicion, ChildrenAttachedBeforeCrearTakeTheContextThen) {
    Tela tela;
    EscenaPrueba padre;
    auto* hijo = new EscenaPrueba;
    auto* nieto = new EscenaPrueba;
    hijo->ReferenciaNuevo(nieto);
    padre.VinculoNuevo(hijo);
    EXPECT_EQ(hijo->MakeCurrent(nullptr), 0);
    ASSERT_EQ(padre.CreaEn(tela), 1);
    for (EscenaPrueba* escena : {hijo, nieto}) {
        EXPECT_EQ(escena->m_hRC, padre.m_hRC);
        ASSERT_NE(escena->m_phRCShared, nullptr);
        EXPECT_EQ(escena->MakeCurrent(nullptr), 1);
        wglMakeCurrent(nullptr, nullptr);
    }
    Tela otra;
    EXPECT_EQ(hijo->CreaEn(otra), 0) << "a child has its parent's context";
}

TEST_F(ConEscena, AContextOfTheChildsOwnIsReleasedWithItsListsFirst) {
    Tela otra;
    auto* hijo = new EscenaPrueba;
    ASSERT_TRUE(hijo->Monta(otra));
    hijo->GetPasos().clear();
    const HGLRC suyo = hijo->m_hRC;
    m_Escena.ReferenciaNuevo(hijo);
    EXPECT_THAT(hijo->GetPasos(), ElementsAre("OnLiberarContexto(1)"));
    EXPECT_EQ(hijo->m_nLista, 0U);
    EXPECT_EQ(hijo->m_nListaEjes, 0U);
    EXPECT_FALSE(wglDeleteContext(suyo));
    EXPECT_EQ(hijo->m_hRC, m_Escena.m_hRC);
    m_Escena.GetPasos().clear();
    EXPECT_EQ(m_Escena.Iniciar(), 1);
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    EXPECT_TRUE(glIsList(m_Escena.m_nLista));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConEscena, TheFamilyOfAChildPartsFromItsOldContextToo) {
    Tela otra;
    auto* hijo = new EscenaPrueba;
    auto* nieto = new EscenaPrueba;
    hijo->ReferenciaNuevo(nieto);
    ASSERT_TRUE(hijo->Monta(otra));
    ASSERT_NE(nieto->m_nLista, 0U);
    nieto->GetPasos().clear();
    m_Escena.ReferenciaNuevo(hijo);
    EXPECT_THAT(nieto->GetPasos(), ElementsAre("OnLiberarContexto(1)"));
    EXPECT_EQ(nieto->m_nListaEjes, 0U) << "the number stands for another list in the new context";
    EXPECT_EQ(nieto->m_hRC, m_Escena.m_hRC);
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    for (const GLuint lista : {m_Escena.m_nLista, m_Escena.m_nListaEjes, hijo->m_nLista, nieto->m_nLista})
        EXPECT_TRUE(glIsList(lista));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConEscena, DestroyingAChildFreesItsListsAndLeavesTheParentUsable) {
    auto* hijo = new EscenaPrueba(L"h");
    m_Escena.ReferenciaNuevo(hijo);
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    const GLuint lista = hijo->m_nLista;
    const GLuint ejes = m_Escena.m_nListaEjes;
    m_Escena.ClearReferencias();
    EXPECT_FALSE(m_Escena.TieneReferencia());
    ASSERT_TRUE(m_Escena.MakeCurrent(nullptr));
    EXPECT_FALSE(glIsList(lista));
    EXPECT_TRUE(glIsList(ejes));
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(m_Escena.Render(), 1);
}

TEST(CGLComposicion, AChildThatWasHandedBackOutlivesItsParent) {
    CWnd ventana;  // whose device context goes with the parent
    ASSERT_TRUE(ventana.Create(nullptr, L"", WS_OVERLAPPEDWINDOW, CRect(0, 0, 64, 48)));
    auto padre = std::make_unique<EscenaPrueba>();
    ASSERT_TRUE(padre->Crear(&ventana, PFD_TYPE_RGBA, PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER));
    padre->ReferenciaNuevo(new EscenaPrueba(L"h"));
    ASSERT_TRUE(padre->Iniciar());
    const std::unique_ptr<CGL> hijo(padre->BorraReferencia(L"h"));
    auto* prueba = static_cast<EscenaPrueba*>(hijo.get());
    padre.reset();
    EXPECT_EQ(hijo->MakeCurrent(nullptr), 0);
    const EscenaPrueba copia(*prueba);
    EXPECT_EQ(copia.m_phRCShared, nullptr);
    prueba->GetPasos().clear();
    hijo->Destruir();
    EXPECT_THAT(prueba->GetPasos(), ElementsAre("h.OnLiberarContexto(0)"));
}

TEST(CGLComposicion, DestroyingASceneDestroysItsWholeFamily) {
    const int vivas = EscenaPrueba::s_nVivas;
    {
        EscenaPrueba padre;
        auto* hijo = new EscenaPrueba;
        padre.ReferenciaNuevo(hijo);
        hijo->VinculoNuevo(new EscenaPrueba);
        EXPECT_EQ(EscenaPrueba::s_nVivas, vivas + 3);
    }
    EXPECT_EQ(EscenaPrueba::s_nVivas, vivas);
}

TEST_F(ConEscena, AConicBackgroundSetsTheProjectionAnewAndFitsTheView) {
    m_Escena.SumaTrans(Punto(0.3, 0, 0));
    RegistroGL registro;
    m_Escena.ReferenciaNuevo(Fondo(2));
    EXPECT_LT(m_Escena.GetTrans().x, 0.2) << "fitted";
    EXPECT_GE(registro.Cuenta("glViewport"), 1U);
    registro.Olvida();
    m_Escena.ReferenciaNuevo(Fondo(4));
    EXPECT_EQ(registro.Cuenta("glViewport"), 0U);
}
