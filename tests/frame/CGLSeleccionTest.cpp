// The generic selection: how a pick walks the children, what it records, what it adds to the sketch.

#include "EscenaPrueba.h"
#include "model/CAtrDigi.h"

using testing::ElementsAre;
using testing::IsEmpty;
using Punto = EscenaPrueba::Punto;
using Vertiz::CPosicionEntidad;

namespace {

/// Two references and two links under a scene that draws; a click in the middle of the picture.
class ConHijos : public ConEscena {
  protected:
    void SetUp() override {
        ConEscena::SetUp();
        m_Escena.ReferenciaNuevo(m_pR1);
        m_Escena.ReferenciaNuevo(m_pR2);
        m_Escena.VinculoNuevo(m_pV1);
        m_Escena.VinculoNuevo(m_pV2);
        m_Escena.SetDigiTab(&m_Tabla);
        ASSERT_EQ(m_Escena.Iniciar(), 1);
        ASSERT_EQ(m_Escena.Render(), 1);
    }

    unsigned Pulsa(unsigned modo, int bPuntoLibre = 0, int bReferencias = 1, int bVinculos = 1) {
        return m_Escena.OnSeleccion(25, 33, 1, 7, 0, bReferencias, bVinculos, modo, bPuntoLibre, 8, 9);
    }
    int TipoGrabado() const { return m_Escena.m_PuntosSeleccion.at(0).GetTipoCompleto(); }

    Vertiz::CDigiTab m_Tabla;
    EscenaPrueba* m_pR1 = new EscenaPrueba;
    EscenaPrueba* m_pR2 = new EscenaPrueba;
    EscenaPrueba* m_pV1 = new EscenaPrueba;
    EscenaPrueba* m_pV2 = new EscenaPrueba;
};

}  // namespace

TEST_F(ConHijos, ArgumentsReachTheChildrenWithTheirFlagsOff) {
    Pulsa(2);
    EXPECT_THAT(m_pR1->m_UltimaSeleccion, ElementsAre(25, 33, 1, 7, 0, 0, 0, 1, 0, 8, 9));
    m_Escena.OnSeleccionEnVinculos(1, 2, 3, 4, 5, 0, 6, 8);
    EXPECT_THAT(m_pV2->m_UltimaSeleccion, ElementsAre(1, 2, 3, 4, 5, 0, 0, 0, 6, 8, 1));
    m_Escena.OnSeleccionEnReferencias(1, 2, 3, 4, 5, 1, 6, 8);
    EXPECT_THAT(m_pR2->m_UltimaSeleccion, ElementsAre(1, 2, 3, 4, 5, 0, 0, 1, 6, 8, 1));
}

TEST_F(ConHijos, AWalkStopsAtTheFirstHitAndTheTipoTellsTheChild) {
    m_pR1->m_nResponde = 5;
    m_pR2->m_nResponde = 6;
    EXPECT_EQ(Pulsa(1, 0, 1, 0), 5U);
    EXPECT_THAT(m_pR2->GetPasos(), testing::Not(testing::Contains("OnSeleccion")));
    ASSERT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_EQ(TipoGrabado(), 1);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion[0], Punto(50, 50, 0));
}

TEST_F(ConHijos, LinksCountOnAfterTheReferences) {
    m_pV2->m_nResponde = 5;
    EXPECT_EQ(Pulsa(1), 5U);
    EXPECT_EQ(TipoGrabado(), 4);
    m_Escena.ClearPuntosSeleccion();
    EXPECT_EQ(m_Escena.OnSeleccionEnVinculos(25, 33, 1, 7, 0, 1, 0, 0), 5U);
    EXPECT_EQ(TipoGrabado(), 4);
}

TEST_F(ConHijos, LinksAreAskedEvenAfterAHitInAReferenceAndTheLastAnswerStands) {
    m_pR2->m_nResponde = 5;
    m_pV1->m_nResponde = 6;
    EXPECT_EQ(Pulsa(1), 6U);
    EXPECT_EQ(TipoGrabado(), 3);
    m_pV1->m_nResponde = 0;
    EXPECT_EQ(Pulsa(0), 0U);
}

TEST_F(ConHijos, AFreePointAfterAHitThatTheLinksOverwroteIsThisScenesOwn) {
    m_pR2->m_nResponde = 5;
    EXPECT_EQ(Pulsa(2, 1), 1U) << "the links' answer stands";
    ASSERT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_EQ(TipoGrabado(), 0) << "undoing it reaches no child";
    Punto bajoElPixel;
    m_Escena.BuscaCotaProxima(CPoint(25, 33), bajoElPixel, true);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion[0], bajoElPixel);
}

TEST_F(ConHijos, TheSketchGetsThePixelOfTheChildsPointNotThatOfTheClick) {
    m_pV1->m_nResponde = 5;
    m_pV1->m_PuntoQueDa = Punto(20, 60, 0);
    EXPECT_EQ(Pulsa(3), 5U);
    CPoint pt;
    ASSERT_EQ(m_Escena.TerrenoAPantalla(pt, Punto(20, 60, 0), nullptr, false), 1);
    Vertiz::CLinea<int> pantalla;
    m_Escena.DameLineaNuevaPantalla(pantalla);
    ASSERT_EQ(pantalla.NPuntos(), 2U);
    for (const int i : {0, 1}) {
        EXPECT_NEAR(pantalla.Punto(i).x, pt.x, 1);
        EXPECT_NEAR(pantalla.Punto(i).y, pt.y, 1);
    }
}

TEST_F(ConHijos, ThePointIsTheLastThatTheChildRecorded) {
    m_pR1->m_nResponde = 5;
    m_pR1->m_PuntosSeleccion = {Punto(9, 9, 9)};
    m_pR1->m_PuntoQueDa = Punto(20, 60, 0);
    EXPECT_EQ(m_Escena.OnSeleccionEnReferencias(25, 33, 1, 7, 0, 1, 0, 0), 5U);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.at(0), Punto(20, 60, 0));
    EXPECT_EQ(TipoGrabado(), 1);
}

TEST_F(ConHijos, ClearingReachesGrandchildrenWithoutAskingTheHooks) {
    auto* nieta = new EscenaPrueba;
    m_pR1->VinculoNuevo(nieta);
    for (EscenaPrueba* escena : {&m_Escena, m_pR1, nieta, m_pV2}) {
        escena->m_Seleccion = {CPosicionEntidad(1)};
        escena->m_PuntosSeleccion = {Punto()};
    }
    EXPECT_EQ(m_Escena.CantidadSeleccion(1, 1), 4U);
    m_Escena.ClearSeleccion();
    EXPECT_EQ(m_Escena.CantidadSeleccion(1, 1), 0U);
    EXPECT_EQ(nieta->m_PuntosSeleccion.size(), 1U);
    m_Escena.ClearPuntosSeleccion();
    EXPECT_THAT(nieta->m_PuntosSeleccion, IsEmpty());
    EXPECT_THAT(m_pV2->m_PuntosSeleccion, IsEmpty());
}

TEST_F(ConHijos, Modo0SelectsWithoutAskingForThePoint) {
    m_pR1->m_nResponde = 5;
    m_pR1->m_bDaPunto = false;
    EXPECT_EQ(Pulsa(0, 0, 1, 0), 5U);
    EXPECT_THAT(m_Escena.m_PuntosSeleccion, IsEmpty());
    EXPECT_EQ(Pulsa(1, 0, 1, 0), 0U) << "the child cannot give its point";
}

TEST_F(ConHijos, Modo2RecordsAndFeedsTheSketchModo3OnlyFeedsIt) {
    m_pR1->m_nResponde = 5;
    EXPECT_EQ(Pulsa(2, 0, 1, 0), 5U);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 2U) << "the point, and the one that follows the cursor";
    EXPECT_EQ(Pulsa(3, 0, 1, 0), 5U);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 3U);
}

TEST_F(ConEscena, AFreePointIsTakenWithoutAnyChild) {
    EXPECT_EQ(m_Escena.OnSeleccion(25, 33, 1, 0, 0, 1, 1, 2, 1, 0, 0), 1U);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion[0].GetTipoCompleto(), 0);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 2U);
    EXPECT_EQ(m_Escena.OnSeleccion(25, 33, 1, 0, 0, 1, 1, 3, 1, 0, 0), 1U);
    EXPECT_EQ(m_Escena.m_PuntosSeleccion.size(), 1U);
    EXPECT_EQ(m_Escena.OnSeleccion(25, 33, 1, 0, 0, 1, 1, 1, 1, 0, 0), 0U);
    EXPECT_EQ(m_Escena.OnSeleccion(25, 33, 1, 0, 0, 1, 1, 2, 0, 0, 0), 0U);
}

TEST_F(ConHijos, WindowAndViewSelectionsSumTheChildren) {
    for (EscenaPrueba* hijo : {m_pR1, m_pR2, m_pV1}) {
        hijo->SumaSeleccion(CPosicionEntidad(1));
        hijo->m_VistaSeleccion.emplace_back(1);
    }
    m_Escena.SumaSeleccion({CPosicionEntidad(1), CPosicionEntidad(2)});
    EXPECT_EQ(m_Escena.CantidadSeleccion(0, 0), 2U);
    EXPECT_EQ(m_Escena.CantidadSeleccion(1, 0), 4U);
    EXPECT_EQ(m_Escena.CantidadSeleccion(0, 1), 3U);
    EXPECT_EQ(m_Escena.CantidadSeleccion(1, 1), 5U);
    EXPECT_EQ(m_Escena.CantidadVistaSeleccion(), 3U);
    EXPECT_TRUE(m_Escena.HayVistaSeleccion());
    EXPECT_EQ(m_Escena.OnSeleccionVentana(0, 0, 9, 9, 0, 1, 1), 0U);
    EXPECT_EQ(m_Escena.InvierteSeleccion(), 0U);
    EXPECT_EQ(m_Escena.OnVistaSeleccion(1), 0U);
    m_Escena.ClearSeleccion();
    EXPECT_FALSE(m_Escena.HaySeleccion(1, 1));
}

TEST(CGLSeleccion, WindowAndViewOperationsAddTheChildrensAnswersUp) {
    // Answers by operation, and notes the flags that it was called with.
    struct Hijo : EscenaPrueba {
        explicit Hijo(unsigned responde) : m_nVale(responde) {}
        using CGL::operator=;
        using EscenaPrueba::OnSeleccionVentana;
        unsigned OnSeleccionVentana(int, int, double, int, int bR, int bV) override { return Vale(bR, bV); }
        unsigned OnSeleccionVentana(Vertiz::CLinea<int>&, int, int bR, int bV, short, bool, bool) override {
            return Vale(bR, bV);
        }
        unsigned OnSeleccionVentana(int, int, int, int, int, int bR, int bV) override { return Vale(bR, bV); }
        unsigned OnVistaSeleccion(int) override { return m_nVale; }
        unsigned InvierteSeleccion() override { return m_nVale; }
        unsigned Vale(int bReferencias, int bVinculos) const { return bReferencias || bVinculos ? 1000 : m_nVale; }
        unsigned m_nVale;
    };
    EscenaPrueba padre;
    padre.ReferenciaNuevo(new Hijo(1));
    padre.ReferenciaNuevo(new Hijo(2));
    padre.VinculoNuevo(new Hijo(4));
    padre.VinculoNuevo(new Hijo(8));
    Vertiz::CLinea<int> linea;
    for (const auto& [bReferencias, bVinculos, suma] : {std::tuple(0, 0, 0U), {1, 0, 3U}, {0, 1, 12U}, {1, 1, 15U}}) {
        EXPECT_EQ(padre.OnSeleccionVentana(1, 2, 3.0, 0, bReferencias, bVinculos), suma);
        EXPECT_EQ(padre.OnSeleccionVentana(linea, 0, bReferencias, bVinculos, 0, false, false), suma);
        EXPECT_EQ(padre.OnSeleccionVentana(1, 2, 3, 4, 0, bReferencias, bVinculos), suma);
    }
    EXPECT_EQ(padre.OnVistaSeleccion(1), 15U);
    EXPECT_EQ(padre.InvierteSeleccion(), 15U);
}

TEST_F(ConHijos, DeseleccionaEmptiesWhatIsAskedFor) {
    const auto llena = [this] {
        for (EscenaPrueba* escena : {&m_Escena, m_pR1, m_pV1}) {
            escena->m_Seleccion = {CPosicionEntidad(1)};
            escena->m_PuntosSeleccion = {Punto()};
        }
    };
    llena();
    m_Escena.m_LineaNueva << Punto() << Punto(0.1, 0, 0);
    m_Escena.Deselecciona(0, 0, 0);
    EXPECT_EQ(m_Escena.CantidadSeleccion(1, 1), 2U);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 2U);
    EXPECT_THAT(m_Escena.m_PuntosSeleccion, IsEmpty());
    m_Escena.Deselecciona(1, 0, 1);
    EXPECT_EQ(m_Escena.CantidadSeleccion(1, 1), 1U);
    EXPECT_EQ(m_Escena.NPuntosLineaNueva(), 0U);
    m_Escena.Deselecciona(0, 1, 0);
    EXPECT_EQ(m_Escena.CantidadSeleccion(1, 1), 0U);
}

TEST(CGLSeleccion, TheTwoSelectionsAreCopiedOntoEachOther) {
    EscenaPrueba escena;
    escena.SetSeleccion({CPosicionEntidad(1)});
    escena.SetSeleccion2Con1();
    escena.SetSeleccion({CPosicionEntidad(2), CPosicionEntidad(3)});
    EXPECT_THAT(escena.GetSeleccion2(), ElementsAre(CPosicionEntidad(1)));
    escena.SetSeleccion1Con2();
    EXPECT_THAT(escena.GetSeleccion(), ElementsAre(CPosicionEntidad(1)));
    escena.DeseleccionaLa2();
    EXPECT_THAT(escena.GetSeleccion2(), IsEmpty());
    EXPECT_EQ(escena.OnSeleccion(Vertiz::CAtrDigi(), 0), 0U);
}

TEST(CGLSeleccion, ARecordedPointIsGivenInsideItsBounds) {
    EscenaPrueba escena;
    Punto p;
    EXPECT_FALSE(escena.DamePuntoSeleccion(p, 0));
    escena.m_PuntosSeleccion.emplace_back(1, 2, 3);
    EXPECT_TRUE(escena.DamePuntoSeleccion(p, 0));
    EXPECT_EQ(p, Punto(1, 2, 3));
    EXPECT_FALSE(escena.DamePuntoSeleccion(p, 1));
    EXPECT_FALSE(escena.DamePuntoSeleccion(p, -1));
}

TEST_F(ConEscena, AViewSelectionIsCompiledOnlyWhenAsked) {
    std::vector<CPosicionEntidad> vista = {CPosicionEntidad(4)};
    m_Escena.SetVistaSeleccion(vista, false);
    EXPECT_THAT(m_Escena.GetPasos(), IsEmpty());
    m_Escena.SetVistaSeleccion(vista, true);
    EXPECT_THAT(m_Escena.GetPasos(), ElementsAre("OnIniciarVista"));
    EXPECT_EQ(m_Escena.m_hRCEnVista, m_Escena.m_hRC);
    EXPECT_EQ(m_Escena.GetVistaSeleccion(), vista);
    EscenaPrueba sinContexto;
    sinContexto.SetVistaSeleccion(vista, true);
    EXPECT_THAT(sinContexto.GetPasos(), ElementsAre("OnIniciarVista")) << "the hook finds out for itself";
}

TEST_F(ConEscena, IniciarSeleccionTakesAndReleasesTheContext) {
    EXPECT_EQ(m_Escena.IniciarSeleccion(), 1);
    EXPECT_THAT(m_Escena.GetPasos(), ElementsAre("OnIniciarSeleccion"));
    m_Escena.m_sFalla = "OnIniciarSeleccion";
    EXPECT_EQ(m_Escena.IniciarSeleccion(), 0);
}
