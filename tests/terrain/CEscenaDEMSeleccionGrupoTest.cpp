// What a click asks of the scenes below, and which of its steps a deriving scene can take over.

#include "VistaCenital.h"

#include <gmock/gmock.h>

namespace {

using modelos::kVacio;
using testing::ElementsAre;
using testing::IsEmpty;

/// A scene that is no grid.
class SinRejilla : public CGL {
  public:
    using CGL::operator=;
    ~SinRejilla() override { Destruir(); }
    int OnIniciar() override { return 1; }
    int OnRender() override { return 1; }
    int OnIniciarSeleccion() override { return 1; }
    const Vertiz::CDataSemilla& DameSemilla() const override { return m_semilla; }
    double Precision() const override { return 1.0; }
    int GetMaximasObjeto(Vertiz::CMaximas<double>&) const override { return 0; }
    int GetMaximasSeleccion(Vertiz::CMaximas<double>&) const override { return 0; }
    bool DamePuntoSeleccion2(Vertiz::CCoor3D<double>&, int) override { return false; }
    using CGL::OnSeleccion;
    unsigned OnSeleccion(int x, int y, int desdeInicio, unsigned tipo, int acumular, int bReferencias, int bVinculos,
                         unsigned modo, int bPuntoLibre, int e, int f) override {
        m_pedida = {x, y, desdeInicio, int(tipo), acumular, bReferencias, bVinculos, int(modo), bPuntoLibre, e, f};
        return 0;
    }
    std::vector<int> m_pedida;

  private:
    Vertiz::CDataSemilla m_semilla;
};

class SeleccionConGrupo : public VistaCenital {
  protected:
    /// The click at (140, 10) misses the grid.
    std::vector<int> Pregunta(SinRejilla& hijo, int bReferencias, int bVinculos, int bPuntoLibre, int acumular) {
        hijo.m_pedida.clear();
        m_escena.OnSeleccion(140, 10, 0, 5, acumular, bReferencias, bVinculos, 1, bPuntoLibre, 7, 8);
        return hijo.m_pedida;
    }
};

TEST_F(SeleccionConGrupo, AMissHandsTheArgumentsOnWith1AsTheLast) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    auto *referencia = new SinRejilla, *vinculo = new SinRejilla;
    m_escena.ReferenciaNuevo(referencia);
    m_escena.VinculoNuevo(vinculo);
    for (SinRejilla* hijo : {referencia, vinculo}) {
        const int r = hijo == referencia, v = 1 - r;
        EXPECT_THAT(Pregunta(*hijo, r, v, 0, 1), ElementsAre(140, 10, 0, 5, 1, 0, 0, 1, 0, 7, 1));
        EXPECT_THAT(Pregunta(*hijo, r, v, 6, 0), ElementsAre(140, 10, 0, 5, 0, 0, 0, 1, 6, 7, 1));
        EXPECT_THAT(Pregunta(*hijo, v, r, 0, 1), IsEmpty()) << "not asked for";
    }
}

TEST_F(SeleccionConGrupo, ScenesThatAreNoGridsAreCountedWithTheirOwnChildren) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    auto *referencia = new SinRejilla, *vinculo = new SinRejilla, *nieta = new SinRejilla;
    m_escena.ReferenciaNuevo(referencia);
    m_escena.VinculoNuevo(vinculo);
    vinculo->ReferenciaNuevo(nieta);
    referencia->SetSeleccion({{1, -1}});
    vinculo->SetSeleccion({{1, -1}, {2, -1}});
    nieta->SetSeleccion({{1, -1}, {2, -1}, {3, -1}, {4, -1}});
    EXPECT_EQ(m_escena.CantidadSeleccion(), 7u);
    Pulsa(10, 10, 0, 1, 0, 1);
    EXPECT_EQ(m_escena.CantidadSeleccion(), 8u);
}

TEST_F(SeleccionConGrupo, ANewPickLetsTheLinksGoAlsoWhereTheyAreNotAsked) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    auto* vinculo = new SinRejilla;
    m_escena.VinculoNuevo(vinculo);
    vinculo->SetSeleccion({{1, -1}});
    m_escena.OnSeleccion(10, 10, 1, 0, 0, 1, 0, 0, 0, 0, 0);
    EXPECT_TRUE(vinculo->GetSeleccion().empty());
}

TEST_F(SeleccionConGrupo, CellsAndTheFramesListBothCountAsSomethingSelected) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    EXPECT_FALSE(m_escena.HaySeleccion(1, 1));
    Pulsa(10, 10);
    EXPECT_TRUE(m_escena.HaySeleccion(0, 0));
    m_escena.Deselecciona(0, 0, 0);
    m_escena.SetSeleccion({{1, -1}});
    EXPECT_TRUE(m_escena.HaySeleccion(0, 0));
}

TEST_F(SeleccionConGrupo, AClickThatFailsAsksNobodyAndTakesNoFreePoint) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    auto* referencia = new SinRejilla;
    m_escena.ReferenciaNuevo(referencia);
    const FallaGL falla("glGetDoublev", 1);
    EXPECT_EQ(m_escena.OnSeleccion(10, 10, 1, 0, 0, 1, 1, 2, 1, 0, 0), 0u);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_THAT(referencia->m_pedida, IsEmpty());
    EXPECT_TRUE(m_escena.GetPuntosSeleccion().empty());
    EXPECT_NE(wglGetCurrentContext(), nullptr);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(SeleccionConGrupo, WithoutAContextTheListFails) {
    Vertiz::CDEM dem = modelos::ListaCeldas({{1, 2}, {3, 4}});
    EscenaTerreno escena(&dem);
    EXPECT_EQ(escena.OnIniciarSeleccion(), 1) << "nothing is selected";
    escena.SetSeleccion({{0, -1}});
    EXPECT_EQ(escena.OnIniciarSeleccion(), 0);
}

/// Notes which of its steps a click asks for.
class EscenaDerivada : public EscenaTerreno {
  public:
    using EscenaTerreno::EscenaTerreno;
    using EscenaTerreno::operator=;
    void Deselecciona(int bReferencias, int bVinculos, int bLinea) override {
        m_pasos.emplace_back("Deselecciona");
        EscenaTerreno::Deselecciona(bReferencias, bVinculos, bLinea);
    }
    int OnIniciarSeleccion() override {
        m_pasos.emplace_back("OnIniciarSeleccion");
        return EscenaTerreno::OnIniciarSeleccion();
    }
    bool DamePuntoSeleccion2(Vertiz::CCoor3D<double>& p, int i) override {
        m_pasos.emplace_back("DamePuntoSeleccion2");
        return m_bDaPunto && EscenaTerreno::DamePuntoSeleccion2(p, i);
    }
    std::vector<std::string> m_pasos;
    bool m_bDaPunto = true;
};

TEST_F(SeleccionConGrupo, ADerivingSceneTakesPartInTheSteps) {
    Vertiz::CDEM dem = Rejilla5();
    Mira(dem);
    EscenaDerivada escena;
    escena = m_escena;  // it shares the context and its matrices
    escena.SetDEM(&dem);
    EXPECT_EQ(escena.OnSeleccion(10, 10, 1, 0, 0, 1, 1, 1, 0, 0, 0), 1u);
    EXPECT_THAT(escena.m_pasos, ElementsAre("Deselecciona", "OnIniciarSeleccion", "DamePuntoSeleccion2"));
    EXPECT_EQ(escena.GetPuntosSeleccion().size(), 1u);
    escena.m_bDaPunto = false;
    EXPECT_EQ(escena.OnSeleccion(40, 10, 1, 0, 0, 1, 1, 2, 0, 0, 0), 0u) << "picked, but without a point";
    EXPECT_TRUE(escena.GetPuntosSeleccion().empty());
    EXPECT_EQ(escena.NPuntosLineaNueva(), 0u);
    escena.m_pasos.clear();
    escena.OnSeleccionConLineaNueva(0);
    EXPECT_THAT(escena.m_pasos, IsEmpty()) << "without a sketch";
    escena.Deselecciona(0, 0, 0);
}

}  // namespace
