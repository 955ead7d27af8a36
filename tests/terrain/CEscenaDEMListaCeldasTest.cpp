// The surface of a grid in cell-list form.

#include "EscenaTerreno.h"

#include <algorithm>
#include <cmath>

namespace {

using modelos::kVacio;
using modelos::ListaCeldas;

class Celdas : public Terreno {
  protected:
    std::vector<Vertice> Surge() {
        EXPECT_EQ(m_escena.OnIniciar(), 1);
        return Vertices(m_escena.m_nListaSuperficie);
    }
    void Espera(const Vertice& v, double x, double y, double z) {
        const auto gl = EnGL(x, y, z);
        EXPECT_NEAR(v.x, gl[0], 1e-5);
        EXPECT_NEAR(v.y, gl[1], 1e-5);
        EXPECT_NEAR(v.z, gl[2], 1e-5);
    }
};

TEST_F(Celdas, QuadsGoRoundFromTheNorthWestPoint) {
    const modelos::Sitio sitio{10, 20, 100, 1000, Vertiz::CDataSemilla(0, 100, 1000, 5)};
    Vertiz::CDEM dem = ListaCeldas({{10, 20}, {30, 40}}, sitio);
    Toma(dem, [](EscenaTerreno& e) { e.SetExageracionVertical(2); });
    const std::vector<Vertice> v = Surge();
    ASSERT_EQ(v.size(), 4u);
    Espera(v[0], 0, 20, 5);
    Espera(v[1], 0, 0, 25);
    Espera(v[2], 10, 0, 35);
    Espera(v[3], 10, 20, 15);
}

TEST_F(Celdas, InALargerGroupBothFormsLieWhereTheirCoordinatesAre) {
    const modelos::Sitio sitio{10, 20, 130, 1250, Vertiz::CDataSemilla(0, 100, 1000, 0)};
    Vertiz::CDEM dem = ListaCeldas({{10, 20}, {30, 45}}, sitio);
    Toma(dem);
    Vertiz::CMaximas<double> grupo;
    grupo.Nuevo(Vertiz::CCoor3D<double>(-70, 15, -20, 0));
    grupo.Nuevo(Vertiz::CCoor3D<double>(90, 300, 80, 0));
    m_escena.EstableceMaxMin(grupo);
    std::vector<Vertice> v = Surge();
    ASSERT_EQ(v.size(), 4u);
    Espera(v[0], 30, 270, 10);
    Espera(v[1], 30, 250, 30);
    Espera(v[2], 40, 250, 45);
    Espera(v[3], 40, 270, 20);
    m_escena.SetQuad(2);
    v = Surge();
    ASSERT_EQ(v.size(), 4u);
    Espera(v[0], 30, 270, 10);
    Espera(v[1], 40, 270, 20);
    Espera(v[2], 30, 250, 30);
    Espera(v[3], 40, 250, 45);
}

TEST_F(Celdas, TheNormalIsTheUnitOneOfTheWestAndNorthSides) {
    Vertiz::CDEM dem = ListaCeldas({{0, -20}, {10, 0}});
    Toma(dem);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    const auto n = registro.Numeros("glNormal3d").at(0);
    // Rises by 1 southwards along the west side, falls by 2 eastwards along the north one.
    EXPECT_NEAR(n[0], -2 / std::sqrt(6.0), 1e-9);
    EXPECT_NEAR(n[1], -1 / std::sqrt(6.0), 1e-9);
    EXPECT_NEAR(n[2], 1 / std::sqrt(6.0), 1e-9);
}

TEST_F(Celdas, ThePlainColourComesFirstAndOnlyWithoutShading) {
    Vertiz::CDEM dem = ListaCeldas({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) { e.SetColorDEM(0x0000FF); });
    for (const unsigned quad : {0u, 1u, 2u}) {
        m_escena.SetQuad(quad);
        for (const int sombra : {0, 1}) {
            m_escena.Data().m_nSombraCeldas = sombra;
            const RegistroGL registro;
            ASSERT_EQ(m_escena.OnIniciar(), 1);
            LlamadasGL lista = registro.Lista(m_escena.m_nListaSuperficie);
            lista.erase(std::ranges::find_if(lista, [](const auto& l) { return l.starts_with("glBegin"); }),
                        lista.end());
            EXPECT_EQ(lista, sombra ? LlamadasGL{} : LlamadasGL({"glColor3f(1, 0, 0)", "glDisable(GL_TEXTURE_2D)"}));
        }
    }
}

TEST_F(Celdas, TheRampColoursBothFormsUnshaded) {
    Vertiz::CDEM dem = ListaCeldas({{0, 51}, {102, 153}});
    Toma(dem, [](EscenaTerreno& e) {
        e.SetTipoColorMDT(2);
        e.Data().m_GamaColor = Vertiz::CDataGamaColor(L"0 0 0 0;255 255 0 0");
    });
    EXPECT_EQ(Solo(Superficie(), {"glColor3f"}), LlamadasGL({"glColor3f(0, 0, 0)", "glColor3f(0.4, 0, 0)",
                                                             "glColor3f(0.6, 0, 0)", "glColor3f(0.2, 0, 0)"}));
    m_escena.SetQuad(2);
    EXPECT_EQ(Solo(Superficie(), {"glColor3f"}), LlamadasGL({"glColor3f(0, 0, 0)", "glColor3f(0.2, 0, 0)",
                                                             "glColor3f(0.4, 0, 0)", "glColor3f(0.6, 0, 0)"}));
}

TEST_F(Celdas, OneNormalIntoTheTerrainStandsBeforeEachCell) {
    Vertiz::CDEM dem = ListaCeldas({{1, 1, 1}, {1, 1, 1}});
    Toma(dem);
    const LlamadasGL lista = Superficie();
    ASSERT_EQ(lista.size(), 2u * 5 + 2);
    EXPECT_EQ(lista[0], "glBegin(GL_QUADS)");
    EXPECT_EQ(lista[1], "glNormal3d(0, -1, 0)");
    EXPECT_EQ(lista[6], "glNormal3d(0, -1, 0)");
    EXPECT_EQ(lista[11], "glEnd()");
}

TEST_F(Celdas, APointsHeightTakesTheOriginsHeightInsteadOfLosingIt) {
    const modelos::Sitio sitio{10, 10, 0, 0, Vertiz::CDataSemilla(0, 0, 0, 5)};
    Vertiz::CDEM dem = ListaCeldas({{10, 20}, {30, 40}}, sitio);
    Toma(dem, [](EscenaTerreno& e) { e.SetQuad(2); });
    const std::vector<Vertice> v = Surge();
    ASSERT_EQ(v.size(), 4u);
    Espera(v[0], 0, 10, 15);
    Espera(v[3], 10, 0, 45);
    EXPECT_TRUE(Solo(Superficie(), {"glNormal3d", "glNormal3f"}).empty());
}

TEST_F(Celdas, StripsDrawNothingAndRaiseNoErrorWhenCalled) {
    Vertiz::CDEM dem = ListaCeldas({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) { e.SetQuad(0); });
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    EXPECT_EQ(registro.Cuenta("glBegin") + registro.Cuenta("glEnd"), 0u);
    EXPECT_NE(m_escena.m_nListaSuperficie, 0u);
    glCallList(m_escena.m_nListaSuperficie);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(Celdas, ACellWithAVoidIsDroppedWholeAndItsRowGoesOn) {
    Vertiz::CDEM dem = ListaCeldas({{1, 1, 1, 1}, {kVacio, 1, 1, 1}});
    Toma(dem);
    EXPECT_EQ(Surge().size(), 2u * 4);
    m_escena.SetQuad(2);
    EXPECT_EQ(Surge().size(), 7u);
}

TEST_F(Celdas, AHeightAtTheNullLevelIsAVoid) {
    Vertiz::CDEM dem = ListaCeldas({{1, 1, 1}, {-9989, 1, 1}});
    Toma(dem);
    EXPECT_EQ(Surge().size(), 4u);
}

TEST_F(Celdas, IndicesThatLeadNowhereAreDropped) {
    Vertiz::CDEM dem = ListaCeldas({{1, 1, 1}, {1, 1, 1}});
    dem.Celdas().push_back({{0, 1, 2, 99}});
    dem.Puntos()[5].m_nX = 77;
    dem.ActualizaCantidades();
    Toma(dem);
    EXPECT_EQ(Surge().size(), 4u);
    m_escena.SetQuad(2);
    EXPECT_EQ(Surge().size(), 5u);
}

TEST_F(Celdas, CutAndFillColoursEveryVertexByItsOwnHeight) {
    Vertiz::CDEM dem = ListaCeldas({{0, 5}, {-5, 0}});
    for (const unsigned quad : {1u, 2u}) {
        m_escena.Destruir();
        Toma(dem, [quad](EscenaTerreno& e) {
            e.SetTipo(1);
            e.SetQuad(quad);
            e.SetTipoColorMDT(6);
            e.Data().m_nColorTerraplen = 0x00FF00;
            e.Data().m_nColorDesmonte = 0x0000FF;
            e.Data().m_nColorNada = 0xFF0000;
        });
        const LlamadasGL colores = Solo(Superficie(), {"glColor3f"});
        const char *nada = "glColor3f(0, 0, 1)", *desmonte = "glColor3f(1, 0, 0)", *terraplen = "glColor3f(0, 1, 0)";
        EXPECT_EQ(colores, quad == 1 ? LlamadasGL({nada, desmonte, nada, terraplen})
                                     : LlamadasGL({nada, terraplen, desmonte, nada}));
    }
}

TEST_F(Celdas, CellShadingTintsQuadsOnly) {
    Vertiz::CDEM dem = ListaCeldas({{1, 2}, {3, 4}});
    Toma(dem, [](EscenaTerreno& e) { e.Data().m_nSombraCeldas = 1; });
    EXPECT_LLAMADAS(Solo(Superficie(), {"glColor3f"}), {"glColor3f(0.2, 0.8, 1)", "glColor3f(0.6, 0.7, 1)",
                                                        "glColor3f(0.7, 0.9, 1)", "glColor3f(0.7, 0.8, 1)"});
    m_escena.SetQuad(2);
    EXPECT_TRUE(Solo(Superficie(), {"glColor3f"}).empty());
}

TEST_F(Celdas, TheBaseIsAnEmptyList) {
    Vertiz::CDEM dem = ListaCeldas({{1, 2}, {3, 4}});
    Toma(dem);
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnIniciarBase(), 1);
    EXPECT_NE(m_escena.m_nListaBase, 0u);
    EXPECT_TRUE(registro.Lista(m_escena.m_nListaBase).empty());
    EXPECT_EQ(m_escena.m_bBaseIniciada, 1);
}

TEST_F(Celdas, BeforeThereIsASpaceNoRayIsFollowed) {
    Vertiz::CDEM dem = ListaCeldas({{1, 2}, {3, 4}});
    m_escena.SetDEM(&dem);
    Vertiz::CCoor3D<double> a(0.1, 0.2, 0.3, 0);
    EXPECT_FALSE(m_escena.ProyectaVector(a, {0.1, 5, 0.3, 0}));
}

TEST_F(Celdas, ARayLeavesThePointWhereItIs) {
    Vertiz::CDEM dem = ListaCeldas({{1, 2}, {3, 4}});
    Toma(dem);
    Vertiz::CCoor3D<double> a(0.1, 0.2, 0.3, 0);
    EXPECT_TRUE(m_escena.ProyectaVector(a, {0.1, 5, 0.3, 0}));
    EXPECT_EQ(a, Vertiz::CCoor3D<double>(0.1, 0.2, 0.3, 0));
}

}  // namespace
