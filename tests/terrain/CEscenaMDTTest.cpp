// What all terrains share: limits, breaklines, the state that the surface is drawn in, the sky.

#include "EscenaTerreno.h"
#include "model/CTexto.h"

#include <algorithm>
#include <cmath>

namespace {

using modelos::Rejilla;
using Vertiz::CDigiTab;
using Vertiz::CElementoDigiTab;
using Vertiz::CLinea;
using Vertiz::CTipoEntidad;

class Capas : public Terreno {
  protected:
    Vertiz::CDEM m_dem = Rejilla({{10, 20, 30}, {20, 30, 40}, {30, 40, 50}});
    CDigiTab m_tabla;

    void PonRuptura(const wchar_t* codigo, int x0, int y0, int z0, int x1, int y1, int z1) {
        CLinea<int> linea{CString(codigo)};
        linea << Vertiz::CCoor3D<int>(x0, y0, z0) << Vertiz::CCoor3D<int>(x1, y1, z1);
        ASSERT_TRUE(m_dem.InsertaRuptura(linea));
    }
    void PonElemento(const wchar_t* codigo, int r, int g, int b, float grosor, int estilo) {
        m_tabla.Inserta(
            CElementoDigiTab(CTipoEntidad::Linea, codigo, BYTE(r), BYTE(g), BYTE(b), grosor, estilo, CString(), 1),
            true);
        m_escena.SetDigiTab(&m_tabla);
    }
    LlamadasGL Rupturas() {
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarRupturas(), 1);
        return registro.Lista(m_escena.m_nListaRupturas);
    }
};

TEST_F(Capas, LimitsAreABoxOfSixOpenSidesAndTheOutline) {
    Toma(m_dem);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
    const LlamadasGL lista = registro.Lista(m_escena.m_nListaLimites);
    ASSERT_GE(lista.size(), 3u);
    EXPECT_EQ(lista[1], "glLineWidth(1)") << "without a table the default element";
    EXPECT_EQ(lista[2], "glDisable(GL_LINE_STIPPLE)");
    EXPECT_EQ(Solo(lista, {"glBegin"}), LlamadasGL(7, "glBegin(GL_LINE_STRIP)"));
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_GE(v.size(), 24u + 5u);
    const auto igual = [&](std::size_t i, double x, double y, double z) {
        const auto gl = EnGL(x, y, z);
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(v[i][k], gl[k], 1e-5) << "vertex " << i;
    };
    // X lowest and highest, Z lowest and highest, Y highest and lowest; what each keeps fixed.
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(v[i][0], EnGL(0, 0, 0)[0], 1e-5);
        EXPECT_NEAR(v[4 + i][0], EnGL(20, 0, 0)[0], 1e-5);
        EXPECT_NEAR(v[8 + i][1], EnGL(0, 0, 10)[1], 1e-5);
        EXPECT_NEAR(v[12 + i][1], EnGL(0, 0, 50)[1], 1e-5);
        EXPECT_NEAR(v[16 + i][2], EnGL(0, 20, 0)[2], 1e-5);
        EXPECT_NEAR(v[20 + i][2], EnGL(0, 0, 0)[2], 1e-5);
    }
    igual(0, 0, 0, 10);
    // The outline lies on the terrain.
    for (std::size_t i = 24; i < v.size(); ++i) {
        const double x = v[i][0] / m_escena.m_dFactor + 10, y = 10 - v[i][2] / m_escena.m_dFactor;
        igual(i, x, y, 10 + (20 - y) + x);
    }
    EXPECT_EQ(m_escena.m_bLimitesIniciados, 1);
}

TEST_F(Capas, LimitsInALargerGroupLieOnTheirOwnGrid) {
    Toma(m_dem);
    Vertiz::CMaximas<double> grupo;
    grupo.Nuevo(Vertiz::CCoor3D<double>(-100, -40, -10, 0));
    grupo.Nuevo(Vertiz::CCoor3D<double>(60, 80, 90, 0));
    m_escena.EstableceMaxMin(grupo);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_GE(v.size(), 24u + 5u);
    const auto esquina = EnGL(0, 0, 10);
    for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(v[0][k], esquina[k], 1e-5) << "the box";
    double oeste = 1e9, este = -1e9, norte = 1e9, sur = -1e9;
    for (std::size_t i = 24; i < v.size(); ++i) {
        oeste = std::min(oeste, v[i][0]), este = std::max(este, v[i][0]);
        norte = std::min(norte, v[i][2]), sur = std::max(sur, v[i][2]);
        const double x = (v[i][0] - EnGL(0, 0, 0)[0]) / m_escena.m_dFactor;
        const double y = (EnGL(0, 0, 0)[2] - v[i][2]) / m_escena.m_dFactor;
        EXPECT_NEAR(v[i][1], EnGL(0, 0, 10 + (20 - y) + x)[1], 1e-5) << "the outline lies on the terrain";
    }
    EXPECT_NEAR(oeste, EnGL(0, 0, 0)[0], 1e-5);
    EXPECT_NEAR(este, EnGL(20, 0, 0)[0], 1e-5);
    EXPECT_NEAR(norte, EnGL(0, 20, 0)[2], 1e-5);
    EXPECT_NEAR(sur, EnGL(0, 0, 0)[2], 1e-5);
}

// A grid away from the origin, longer than wide, whose drawings are in hundredths.
class CapasLejos : public Capas {
  protected:
    void SetUp() override {
        m_dem = Rejilla(3, 5, [](int r, int c) { return float(15 + 10 * r + c); },
                        {10, 10, 120, 250, Vertiz::CDataSemilla(2, 20, 30, 5)});
        Toma(m_dem);
    }
    void EsperaEn(const std::vector<double>& v, double x, double y, double z) {
        const auto gl = EnGL(x, y, z);
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_NEAR(v.at(k), gl[k], 1e-5) << x << ", " << y;
    }
};

TEST_F(CapasLejos, TheBoxGoesRoundEachSideFromItsStatedCorner) {
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
    const double o = 100, e = 140, s = 220, n = 240, b = 10, a = 34;            // local: the seed's offset is off
    const double puntos[24][3] = {{o, s, b}, {o, n, b}, {o, n, a}, {o, s, a},   // X lowest
                                  {e, s, b}, {e, n, b}, {e, n, a}, {e, s, a},   // X highest
                                  {o, s, b}, {e, s, b}, {e, n, b}, {o, n, b},   // Z lowest
                                  {o, s, a}, {e, s, a}, {e, n, a}, {o, n, a},   // Z highest
                                  {o, n, b}, {e, n, b}, {e, n, a}, {o, n, a},   // Y highest
                                  {o, s, b}, {e, s, b}, {e, s, a}, {o, s, a}};  // Y lowest
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_GE(v.size(), 24u);
    for (std::size_t i = 0; i < 24; ++i)
        EsperaEn(v[i], puntos[i][0], puntos[i][1], puntos[i][2]);
    LlamadasGL cajas = registro.Lista(m_escena.m_nListaLimites);
    cajas.erase(cajas.begin(), std::ranges::find(cajas, "glBegin(GL_LINE_STRIP)"));
    ASSERT_GE(cajas.size(), 36u);
    for (std::size_t i = 0; i < 36; ++i)
        EXPECT_TRUE(cajas[i].starts_with(i % 6 == 0 ? "glBegin" : i % 6 == 5 ? "glEnd" : "glVertex3f")) << cajas[i];
    EXPECT_EQ(cajas.back(), "glEnd()");
}

TEST_F(CapasLejos, TheOutlineLiesOnTheGridAlsoInALargerGroup) {
    for (const bool enGrupo : {false, true}) {
        Vertiz::CMaximas<double> grupo;
        grupo.Nuevo(Vertiz::CCoor3D<double>(-100, -40, -10, 0));
        grupo.Nuevo(Vertiz::CCoor3D<double>(160, 280, 90, 0));
        if (enGrupo) m_escena.EstableceMaxMin(grupo);
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
        const auto v = registro.Numeros("glVertex3f");
        ASSERT_GE(v.size(), 24u + 5u);
        const auto origen = EnGL(100, 240, 0);
        double este = 0, sur = 0;
        for (std::size_t i = 24; i < v.size(); ++i) {
            const double c = (v[i][0] - origen[0]) / m_escena.m_dFactor, r = (v[i][2] - origen[2]) / m_escena.m_dFactor;
            EsperaEn(v[i], 100 + c, 240 - r, 10 + r + c / 10);
            este = std::max(este, c), sur = std::max(sur, r);
        }
        EXPECT_NEAR(este, 40, 1e-3);
        EXPECT_NEAR(sur, 20, 1e-3);
    }
}

TEST_F(CapasLejos, BreaklinesAreScaledFromTheirIntegersAndMovedToTheScenesCorner) {
    PonRuptura(L"R", 11000, 22500, 1200, 13050, 23010, 3000);
    PonElemento(L"R", 0, 255, 0, 0, 0);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarRupturas(), 1);
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_EQ(v.size(), 2u);
    EsperaEn(v[0], 110, 225, 12);
    EsperaEn(v[1], 130.5, 230.1, 30);
}

TEST_F(Capas, LimitsTakeColourAndWidthFromTheTable) {
    Toma(m_dem);
    PonElemento(L"LIMITE", 255, 0, 51, 3.0F, 0);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
    const LlamadasGL lista = registro.Lista(m_escena.m_nListaLimites);
    EXPECT_EQ(lista[0], "glColor3f(1, 0, 0.2)");
    EXPECT_EQ(lista[1], "glLineWidth(3)");
}

TEST_F(Capas, TheOutlineIsSilentAndItsLevelIsPutBack) {
    Toma(m_dem);
    m_dem.Mensajes(7);
    ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
    EXPECT_EQ(m_dem.GetMensajes(), 7);
}

TEST_F(Capas, WithoutATableThereAreNoBreaklinesAndNoFailure) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    Toma(m_dem);
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnIniciarRupturas(), 1);
    EXPECT_TRUE(registro.Todas().empty());
}

TEST_F(Capas, BreaklinesAreUnlitInTheirOwnStyleAndPlace) {
    PonRuptura(L"R", 0, 20, 30, 10, 0, 50);
    Toma(m_dem, [](EscenaTerreno& e) { e.SetExageracionVertical(2); });
    PonElemento(L"R", 0, 255, 0, 2.0F, 3);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarRupturas(), 1);
    const LlamadasGL lista = registro.Lista(m_escena.m_nListaRupturas);
    EXPECT_LLAMADAS(Sin(lista, {"glVertex3f"}),
                    {"glEnable(GL_DEPTH_TEST)", "glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE)",
                     "glEnable(GL_COLOR_MATERIAL)", "glDisable(GL_LIGHTING)", "glDisable(GL_LIGHT0)",
                     "glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, [0, 0, 0, 0])",
                     "glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, [0, 0, 0, 0])",
                     "glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, [0, 0, 0, 0])",
                     "glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, [0, 0, 0, 0])",
                     "glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 128)", "glColor3f(0, 1, 0)", "glLineWidth(2)",
                     "glEnable(GL_LINE_STIPPLE)", "glLineStipple(1, 0x1C47)", "glBegin(GL_LINE_STRIP)", "glEnd()"});
    const auto v = registro.Numeros("glVertex3f");
    const double esperados[2][3] = {{0, 20, 30}, {10, 0, 50}};
    ASSERT_EQ(v.size(), 2u);
    for (int i = 0; i < 2; ++i) {
        const auto gl = EnGL(esperados[i][0], esperados[i][1], esperados[i][2]);
        for (int k = 0; k < 3; ++k)
            EXPECT_NEAR(v[i][k], gl[k], 1e-5);
    }
    EXPECT_EQ(m_escena.m_bRupturasIniciadas, 1);
}

TEST_F(Capas, BreaklinesThatAreBuiltStayAsTheyAre) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    Toma(m_dem);
    PonElemento(L"R", 0, 255, 0, 0, 0);
    m_escena.m_bRupturasIniciadas = 1;
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnIniciarRupturas(), 1);
    EXPECT_TRUE(registro.Todas().empty());
}

TEST_F(Capas, ErasedBreaklinesAndThinWidthsAndUnknownStyles) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    PonRuptura(L"S", 1, 1, 1, 2, 2, 2);
    m_dem.Rupturas()[1]->SetBorrado(true);
    Toma(m_dem);
    PonElemento(L"R", 0, 255, 0, 0, 5);
    const LlamadasGL lista = Rupturas();
    EXPECT_EQ(Solo(lista, {"glBegin"}).size(), 1u);
    EXPECT_EQ(Solo(lista, {"glLineWidth"}), LlamadasGL{"glLineWidth(1)"});
    EXPECT_EQ(Solo(lista, {"glLineStipple"}), LlamadasGL{}) << "a style that is not known keeps the pattern";
    EXPECT_EQ(Solo(lista, {"glEnable"}).back(), "glEnable(GL_LINE_STIPPLE)");
}

TEST_F(Capas, TextsAmongTheBreaklinesAreNotDrawn) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    m_dem.Rupturas().Inserta(Vertiz::CTexto<int>(L"R", Vertiz::CCoor3D<int>(1, 1, 1), L"a", 1.0));
    ASSERT_EQ(m_dem.Rupturas().Cantidad(), 2u);
    Toma(m_dem);
    PonElemento(L"R", 0, 255, 0, 0, 0);
    EXPECT_EQ(Solo(Rupturas(), {"glBegin"}).size(), 1u);
}

TEST_F(Capas, EachStyleOfBreaklineHasItsPattern) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    Toma(m_dem);
    const char* const patrones[] = {"0x00FF", "0x0101", "0x1C47", "0x3927"};
    for (int estilo = 0; estilo <= 4; ++estilo) {
        m_tabla = CDigiTab();
        m_escena.m_bRupturasIniciadas = 0;
        PonElemento(L"R", 0, 255, 0, 0, estilo);
        const LlamadasGL lista = Rupturas();
        if (estilo == 0) {
            EXPECT_EQ(Solo(lista, {"glDisable"}).back(), "glDisable(GL_LINE_STIPPLE)");
            EXPECT_TRUE(Solo(lista, {"glLineStipple"}).empty());
        } else {
            EXPECT_EQ(Solo(lista, {"glLineStipple"}),
                      LlamadasGL{std::string("glLineStipple(1, ") + patrones[estilo - 1] + ")"});
        }
    }
}

TEST_F(Capas, ABreaklineOfTheBackgroundsColourIsMovedAwayFromIt) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    Toma(m_dem, [](EscenaTerreno& e) { e.SetColorFondo(0x646464); });
    PonElemento(L"R", 100, 100, 105, 0, 0);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarRupturas(), 1);
    const auto color = registro.Numeros("glColor3f").at(0);
    EXPECT_NEAR(color[0], 228 / 255.0, 1e-6);
    EXPECT_NEAR(color[2], 233 / 255.0, 1e-6);
}

TEST_F(Capas, AFailedMaterialEndsTheBreaklinesWithTheirListClosed) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    Toma(m_dem);
    PonElemento(L"R", 0, 255, 0, 0, 0);
    {
        const FallaGL falla("glMaterialf", 1);
        EXPECT_EQ(m_escena.OnIniciarRupturas(), 0);
        EXPECT_TRUE(falla.Ocurrida());
    }
    GLint abierta = -1;
    glGetIntegerv(GL_LIST_INDEX, &abierta);
    EXPECT_EQ(abierta, 0);
    EXPECT_EQ(m_escena.m_bRupturasIniciadas, 0);
    EXPECT_EQ(m_escena.OnIniciarRupturas(), 1);
}

TEST_F(Capas, LayersWhoseListCannotBeMadeFailAndAreNotTakenForBuilt) {
    PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    m_escena.SetDEM(&m_dem);
    PonElemento(L"R", 0, 255, 0, 0, 0);
    EXPECT_EQ(m_escena.OnIniciarLimites(), 0) << "no context";
    EXPECT_EQ(m_escena.OnIniciarRupturas(), 0) << "no context";
    Toma(m_dem);
    for (const char* llamada : {"glNewList", "glEndList"})
        for (int (EscenaTerreno::*capa)() : {&EscenaTerreno::OnIniciarLimites, &EscenaTerreno::OnIniciarRupturas}) {
            m_escena.m_bLimitesIniciados = m_escena.m_bRupturasIniciadas = 0;
            {
                const FallaGL falla(llamada, 1);
                EXPECT_EQ((m_escena.*capa)(), 0) << llamada;
                EXPECT_TRUE(falla.Ocurrida()) << llamada;
            }
            EXPECT_EQ(m_escena.m_bLimitesIniciados + m_escena.m_bRupturasIniciadas, 0) << llamada;
            const RegistroGL registro;
            EXPECT_EQ((m_escena.*capa)(), 1) << llamada;
            EXPECT_EQ(registro.Todas().back(), "glEndList()") << llamada;
            EXPECT_EQ(m_escena.m_bLimitesIniciados + m_escena.m_bRupturasIniciadas, 1) << llamada;
        }
}

TEST_F(Capas, AnErrorInABreaklinesWidthLeavesTheRestOutWithoutFailing) {
    for (int i = 0; i < 3; ++i)
        PonRuptura(L"R", 1, 1, 1, 2, 2, 2);
    Toma(m_dem);
    PonElemento(L"R", 0, 255, 0, 0, 0);
    const FallaGL falla("glLineWidth", 2);
    EXPECT_EQ(Solo(Rupturas(), {"glBegin"}).size(), 1u);
    EXPECT_TRUE(falla.Ocurrida());
}

TEST_F(Capas, ThePreparationOfTheSurfaceStopsAtTheFirstError) {
    Monta(m_dem, [](EscenaTerreno& e) { e.SetRelleno(1); });
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    for (const auto& [nombre, n] : {std::pair<std::string, int>("glEnable", 1),
                                    {"glEnable", 2},
                                    {"glEnable", 3},
                                    {"glColorMaterial", 1},
                                    {"glEnable", 4},
                                    {"glClearColor", 1},
                                    {"glPolygonMode", 1}}) {
        const FallaGL falla(nombre, n);
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnRender(), 0) << nombre << n;
        EXPECT_TRUE(falla.Ocurrida()) << nombre << n;
        EXPECT_TRUE(registro.Todas().back().starts_with(nombre)) << nombre << n << ", not " << registro.Todas().back();
    }
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Capas, ACopyHasTheLayersOfItsSource) {
    EscenaTerreno fuente;
    int n = 1;
    const auto enteros = [](EscenaTerreno& e) {
        return std::array<int*, 5>{&e.m_bLimitesIniciados, &e.m_bEdificiosIniciados, &e.m_bRupturasIniciadas,
                                   &e.m_bBaseIniciada, &e.m_bArbolesIniciados};
    };
    const auto listas = [](EscenaTerreno& e) {
        return std::array<GLuint*, 7>{&e.m_nListaSuperficie, &e.m_nListaEdificios, &e.m_nListaRupturas, &e.m_nListaBase,
                                      &e.m_nListaArboles,    &e.m_nListaSeleccion, &e.m_nListaCurvado};
    };
    for (int* p : enteros(fuente))
        *p = n++;
    for (GLuint* p : listas(fuente))
        *p = GLuint(n++);
    fuente.m_nTipoSeleccion = 3;
    EscenaTerreno copia(fuente), asignada;
    asignada = fuente;
    for (EscenaTerreno* e : {&copia, &asignada}) {
        n = 1;
        for (const int* p : enteros(*e))
            EXPECT_EQ(*p, n++);
        for (const GLuint* p : listas(*e))
            EXPECT_EQ(*p, GLuint(n++));
        EXPECT_EQ(e->m_nTipoSeleccion, fuente.m_nTipoSeleccion);
    }
}

TEST_F(Capas, OnlyWireIsDrawnAsLinesAndAnImageNever) {
    Monta(m_dem);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    for (const unsigned modo : {0u, 1u, 2u, 6u}) {
        m_escena.SetTipoColorMDT(modo);
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnRender(), 1);
        EXPECT_EQ(Solo(registro.Ejecutadas(), {"glPolygonMode"}),
                  LlamadasGL{modo == 0 ? "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)"
                                       : "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"});
    }
    m_escena.SetTipo(3);
    m_escena.SetTipoColorMDT(0);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    EXPECT_EQ(Solo(registro.Ejecutadas(), {"glPolygonMode"}), LlamadasGL{"glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"});
    EXPECT_TRUE(Solo(registro.Ejecutadas(), {"glColorMaterial"}).empty());
}

TEST_F(Capas, TheTerrainIsLitOnlyWhenAsked) {
    Monta(m_dem);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    for (const int relleno : {0, 1}) {
        m_escena.SetRelleno(relleno);
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnRender(), 1);
        const LlamadasGL luces = Solo(registro.Ejecutadas(), {"glEnable"});
        EXPECT_EQ(std::ranges::count(luces, "glEnable(GL_LIGHTING)"), relleno);
        EXPECT_EQ(std::ranges::count(luces, "glEnable(GL_LIGHT0)"), relleno);
    }
}

TEST_F(Capas, TheSurfaceIsPreparedMaterialFirstThenLightThenState) {
    Monta(m_dem, [](EscenaTerreno& e) { e.SetRelleno(1); });
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    LlamadasGL estado = Solo(registro.Ejecutadas(), {"glLightModeli", "glMaterialfv", "glMaterialf", "glLightfv",
                                                     "glEnable", "glColorMaterial", "glClearColor", "glPolygonMode"});
    for (std::string& l : estado)
        if (!l.starts_with("glEnable")) l.erase(l.find('('));
    LlamadasGL esperado{"glLightModeli", "glMaterialfv", "glMaterialfv", "glMaterialfv",
                        "glMaterialf",   "glMaterialfv", "glLightModeli"};
    esperado.insert(esperado.end(), 8, "glLightfv");
    for (const char* paso : {"glEnable(GL_DEPTH_TEST)", "glEnable(GL_LIGHTING)", "glEnable(GL_LIGHT0)",
                             "glColorMaterial", "glEnable(GL_COLOR_MATERIAL)", "glClearColor", "glPolygonMode"})
        esperado.emplace_back(paso);
    EXPECT_LLAMADAS(estado, (esperado));
}

TEST_F(Capas, TheSkyTurnsWithTheCameraBetweenMatricesOfItsOwn) {
    Monta(m_dem);
    m_escena.SetAngulos(20, 30, 40);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    LlamadasGL cielo = Sin(registro.Ejecutadas(), {"glGetIntegerv"});
    const std::string lista = "glCallList(" + std::to_string(m_escena.m_nListaSuperficie) + ")";
    cielo.erase(cielo.begin(), std::ranges::find(cielo, lista) + 1);
    for (std::string& l : cielo)
        if (l.starts_with("glOrtho") || l.starts_with("glRotated")) l.erase(l.find('('));
    EXPECT_LLAMADAS(cielo,
                    {"glMatrixMode(GL_MODELVIEW)", "glPushMatrix()", "glLoadIdentity()", "glMatrixMode(GL_PROJECTION)",
                     "glPushMatrix()", "glLoadIdentity()", "glOrtho", "glRotated", "glRotated", "glRotated",
                     "glMatrixMode(GL_MODELVIEW)", "glCallList(" + std::to_string(m_escena.m_nListaCielo) + ")",
                     "glMatrixMode(GL_PROJECTION)", "glPopMatrix()", "glMatrixMode(GL_MODELVIEW)", "glPopMatrix()"});
    const std::vector<std::vector<double>> esperados{
        {m_escena.GetAnguloY(), 0, 1, 0}, {-m_escena.GetAnguloZ(), 0, 0, 1}, {-m_escena.GetAnguloX(), 1, 0, 0}};
    const auto giros = registro.Numeros("glRotated");
    ASSERT_EQ(giros.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 4; ++k)
            EXPECT_NEAR(giros[i][k], esperados[i][k], 1e-9);
    EXPECT_NEAR(esperados[0][0], 30, 1e-5);
}

TEST_F(Capas, TheSkyKeepsItsProportionInATallView) {
    Monta(m_dem);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    {
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnRender(), 1);
        EXPECT_EQ(registro.Numeros("glOrtho"), (std::vector<std::vector<double>>{{-0.5, 0.5, -0.375, 0.375, 0, 1}}));
    }
    ASSERT_EQ(m_escena.Resize(45, 90), 1);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    EXPECT_EQ(registro.Numeros("glOrtho"), (std::vector<std::vector<double>>{{-0.25, 0.25, -0.5, 0.5, 0, 1}}));
    EXPECT_EQ(registro.Cuenta("glPushMatrix"), registro.Cuenta("glPopMatrix"));
    EXPECT_EQ(Solo(registro.Todas(), {"glMatrixMode"}).back(), "glMatrixMode(GL_MODELVIEW)");
}

TEST_F(Capas, InPerspectiveTheSkyStandsFarBeyondTheModel) {
    Monta(m_dem, [](EscenaTerreno& e) { e.SetOrtogonal(0); });
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    const auto p = registro.Numeros("gluPerspective");
    ASSERT_EQ(p.size(), 1u);
    EXPECT_NEAR(p[0][3], m_escena.GetPlanoFondo() * 1000.0, 1);
    const auto escala = registro.Numeros("glScaled").back();
    EXPECT_NEAR(escala[0], 10 / (120.0 / 90), 1e-9);
    EXPECT_EQ(escala[1], 10);
}

TEST_F(Capas, WithoutASkyTheMatricesAreStillPutBack) {
    Monta(m_dem);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    glDeleteLists(m_escena.m_nListaCielo, 1);
    m_escena.m_nListaCielo = 0;
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    EXPECT_EQ(Solo(registro.Ejecutadas(), {"glCallList"}),
              LlamadasGL{"glCallList(" + std::to_string(m_escena.m_nListaSuperficie) + ")"});
    EXPECT_EQ(registro.Cuenta("glPushMatrix"), 2u);
    EXPECT_EQ(registro.Cuenta("glPopMatrix"), 2u);
}

TEST_F(Capas, InPerspectiveTheSkyIsSetUpInItsOrder) {
    Monta(m_dem, [](EscenaTerreno& e) { e.SetOrtogonal(0); });
    m_escena.SetAngulos(20, 30, 40);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    LlamadasGL orden = Solo(registro.Ejecutadas(), {"gluPerspective", "glScaled", "glRotated", "glOrtho"});
    for (std::string& l : orden)
        l.erase(l.find('('));
    EXPECT_LLAMADAS(orden, {"gluPerspective", "glScaled", "glRotated", "glRotated", "glRotated"});
    const auto p = registro.Numeros("gluPerspective").at(0);
    EXPECT_NEAR(p[0], 45, 1e-6);
    EXPECT_NEAR(p[1], 120.0 / 90, 1e-9);
    EXPECT_NEAR(p[2], m_escena.GetPlanoCerca(), 1e-9);
    const auto escala = registro.Numeros("glScaled").at(0);
    EXPECT_EQ(escala, (std::vector<double>{10 / (120.0 / 90), 10, 10 / (120.0 / 90)}));
    const auto giros = registro.Numeros("glRotated");
    ASSERT_EQ(giros.size(), 3u);
    EXPECT_NEAR(giros[0][0], m_escena.GetAnguloY(), 1e-9);
    EXPECT_NEAR(giros[1][0], -m_escena.GetAnguloZ(), 1e-9);
    EXPECT_NEAR(giros[2][0], -m_escena.GetAnguloX(), 1e-9);
}

TEST_F(Capas, TheBackgroundIsClearedWithItsColourAndNoOpacity) {
    Monta(m_dem, [](EscenaTerreno& e) { e.SetColorFondo(RGB(51, 102, 255)); });
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnRender(), 1);
    EXPECT_EQ(Solo(registro.Ejecutadas(), {"glClearColor"}).back(), "glClearColor(0.2, 0.4, 1, 0)");
}

TEST_F(Capas, LimitsOfTheBackgroundsColourAreMovedAwayFromIt) {
    Toma(m_dem, [](EscenaTerreno& e) { e.SetColorFondo(RGB(70, 75, 61)); });
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
    EXPECT_NEAR(registro.Numeros("glColor3f").at(0).at(1), 198 / 255.0, 1e-6) << "the default element is near it";
    m_escena.SetColorFondo(RGB(70, 70, 60));
    ASSERT_EQ(m_escena.OnIniciarLimites(), 1);
    EXPECT_NEAR(registro.Numeros("glColor3f").at(1).at(1), 70 / 255.0, 1e-6) << "10 apart in one channel is enough";
}

TEST_F(CapasLejos, BreaklinesKeepTheirPlaceWhateverTheExtentsGiven) {
    PonRuptura(L"R", 11000, 22500, 1200, 13050, 23010, 3000);
    PonElemento(L"R", 0, 255, 0, 0, 0);
    Vertiz::CMaximas<double> otras;
    otras.Nuevo(Vertiz::CCoor3D<double>(105, 231, 3, 0));
    otras.Nuevo(Vertiz::CCoor3D<double>(300, 400, 90, 0));
    const RegistroGL registro;
    ASSERT_EQ(m_escena.DibujarRupturas(m_dem.Rupturas(), otras), 1);
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_EQ(v.size(), 2u);
    EsperaEn(v[0], 110, 225, 12);
    EsperaEn(v[1], 130.5, 230.1, 30);
}

TEST_F(CapasLejos, ShiftsMoveADrawingByAxis) {
    m_escena.SetExageracionVertical(3);
    m_escena.EstableceMaxMin(m_escena.m_Maximas);
    const double f = m_escena.m_dFactor;
    double x = 7 * f, y = 11 * f, z = 100;
    m_escena.TerrenoAPantallaGL(x, y, z, m_escena.m_Maximas, 0.5, 0.25, 30, 20);
    EXPECT_EQ(x, double(float(7 * f + 0.5 - m_escena.m_dRangoX * f * 0.5)));
    EXPECT_EQ(z, double(float(11 * f + 0.25 - m_escena.m_dRangoY * f * 0.5))) << "depth, from Y";
    EXPECT_EQ(y, double(float((100 - 50 - m_escena.m_dRangoZ * 0.5) * f * 3))) << "height, from Z";
}

}  // namespace
