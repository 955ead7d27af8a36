// Buildings: how their roofs come about, and what their list holds.

#include "EscenaTerreno.h"

#include <algorithm>
#include <cmath>

namespace {

using modelos::Rejilla;
using Vertiz::CCoor3D;
using Vertiz::CDataSemilla;
using Vertiz::CDibujo;
using Vertiz::CLinea;

using Puntos = std::vector<std::array<int, 3>>;

CLinea<int> Linea(const Puntos& puntos) {
    CLinea<int> linea(L"CASA");
    for (const auto& [x, y, z] : puntos)
        linea << CCoor3D<int>(x, y, z);
    return linea;
}

// A building whose walls go down to the height `suelo`.
CDataEdificio Casa(const std::vector<Puntos>& partes, int suelo, const CDataSemilla& semilla = CDataSemilla()) {
    CDataEdificio casa;
    casa.m_ColorPared = {51, 102, 153, 0};
    casa.m_ColorTejado = {255, 0, 0, 0};
    casa.m_Superior = casa.m_Inferior = CDibujo<int>(semilla);
    for (const Puntos& parte : partes) {
        CLinea<int> linea = Linea(parte);
        casa.m_Superior.Inserta(linea);
        linea.ZFija(suelo);
        casa.m_Inferior.Inserta(linea);
    }
    return casa;
}

Puntos Cuadro(int x, int y, int lado, int z) {
    return {{x, y, z}, {x + lado, y, z}, {x + lado, y + lado, z}, {x, y + lado, z}, {x, y, z}};
}

double Area(const CDibujo<int>& dibujo) {
    double area = 0;
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        area += CLinea<int>(*dibujo[i]).Superficie();
    return area;
}

// ---- The roof ------------------------------------------------------------------------------------------------------

TEST(CEdificios, ARoofCoversItsOutlineAndIsKeptWithACopyOfTheBuilding) {
    CDataEdificio casa =
        Casa({{{0, 0, 30}, {100, 0, 30}, {100, 100, 40}, {60, 100, 40}, {60, 40, 30}, {0, 40, 30}, {0, 0, 30}}}, 0,
             CDataSemilla(1, 5, 6, 7));
    CEdificios edificios;
    edificios.AgregaEdificio(casa);
    ASSERT_EQ(edificios.size(), 1u);
    EXPECT_EQ(casa.m_Tejado.Cantidad(), 4u);
    EXPECT_TRUE(casa.m_Tejado.Semilla() == casa.m_Superior.Semilla());
    EXPECT_EQ(Area(casa.m_Tejado), 100 * 40 + 40 * 60);
    const CDibujo<int>& tejado = edificios[0].m_Tejado;
    ASSERT_EQ(tejado.Cantidad(), 4u);
    for (unsigned i = 0; i < 4; ++i) {
        ASSERT_EQ(tejado[i]->NPuntos(), 4u);
        for (int k = 0; k < 4; ++k)
            EXPECT_EQ(tejado[i]->Punto(k).z, tejado[i]->Punto(k).y == 100 ? 40 : 30);
    }
    casa.m_Superior.Clear();
    EXPECT_EQ(edificios[0].m_Superior.Cantidad(), 1u) << "what the set has is its own";
    const CEdificios copia(edificios);
    edificios.clear();
    EXPECT_EQ(copia[0].m_Tejado.Cantidad(), 4u);
}

TEST(CEdificios, EveryPartHasARoofAndACourtNone) {
    CDataEdificio casa = Casa({Cuadro(0, 0, 100, 30), Cuadro(20, 20, 10, 30), Cuadro(200, 0, 50, 20)}, 0);
    CEdificios edificios;
    edificios.AgregaEdificio(casa);
    EXPECT_EQ(Area(casa.m_Tejado), 100 * 100 - 10 * 10 + 50 * 50);
}

TEST(CEdificios, AnOutlineThatIsOpenIsRoofedAsIfItClosed) {
    Puntos abierto = Cuadro(0, 0, 100, 30);
    abierto.pop_back();
    CDataEdificio casa = Casa({abierto}, 0);
    CEdificios().AgregaEdificio(casa);
    EXPECT_EQ(Area(casa.m_Tejado), 100 * 100);
    EXPECT_EQ(casa.m_Superior[0]->NPuntos(), 4u) << "the outline itself stays as it is";
}

TEST(CEdificios, ALoosePointInsideRaisesTheRoof) {
    CDataEdificio casa = Casa({Cuadro(0, 0, 100, 30), {{50, 50, 60}}}, 0);
    CEdificios().AgregaEdificio(casa);
    ASSERT_EQ(casa.m_Tejado.Cantidad(), 4u);
    for (unsigned i = 0; i < 4; ++i) {
        int alto = 0;
        for (int k = 0; k < 3; ++k)
            alto = std::max(alto, casa.m_Tejado[i]->Punto(k).z);
        EXPECT_EQ(alto, 60);
    }
}

TEST(CEdificios, ARoofIsMadeAnewEachTime) {
    CDataEdificio casa = Casa({Cuadro(0, 0, 100, 30)}, 0);
    CEdificios edificios;
    edificios.AgregaEdificio(casa);
    edificios.AgregaEdificio(casa);
    EXPECT_EQ(edificios.size(), 2u);
    EXPECT_EQ(casa.m_Tejado.Cantidad(), 2u);
}

TEST(CEdificios, OutlinesThatCrossOrBoundNothingLeaveABuildingWithoutARoof) {
    const std::vector<std::vector<Puntos>> casas{
        {{{0, 0, 5}, {100, 100, 5}, {100, 0, 5}, {0, 100, 5}, {0, 0, 5}}},  // a bow
        {{{0, 0, 5}, {100, 0, 5}}},                                         // a wall alone
        {{{0, 0, 5}}, {{9, 0, 5}}, {{0, 9, 5}}},                            // loose points
        {},
    };
    CEdificios edificios;
    for (const std::vector<Puntos>& partes : casas) {
        CDataEdificio casa = Casa(partes, 0);
        casa.m_Tejado.Inserta(Linea(Cuadro(0, 0, 1, 0)));
        edificios.AgregaEdificio(casa);
        EXPECT_EQ(casa.m_Tejado.Cantidad(), 0u);
        EXPECT_EQ(edificios.back().m_Superior.Cantidad(), partes.size());
    }
    EXPECT_EQ(edificios.size(), 4u);
}

// ---- The list ------------------------------------------------------------------------------------------------------

class Pueblo : public Terreno {
  protected:
    Vertiz::CDEM m_dem = Rejilla(3, 5, [](int r, int c) { return float(20 + r + c); },
                                 {10, 10, 120, 250, CDataSemilla(2, 20, 30, 5)});  // local: 100 to 140, 220 to 240
    CEdificios m_edificios;

    void Agrega(const CDataEdificio& casa) {
        CDataEdificio copia = casa;
        m_edificios.AgregaEdificio(copia);
    }
    void Pon(const Ajuste& ajuste = {}) {
        Toma(m_dem, ajuste);
        m_escena.RecargarEdificios(&m_edificios);
    }
    LlamadasGL Lista() {
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarEdificios(), 1);
        return registro.Lista(m_escena.m_nListaEdificios);
    }
    static void EsperaVector(const std::vector<double>& v, const std::array<double, 3>& esperado) {
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_NEAR(v.at(k), esperado[k], 1e-5);
    }
};

// Its outline in hundredths, its walls from 10 to 16 or 18.
CDataEdificio CasaPequena() {
    return Casa({{{11000, 22500, 1600}, {11400, 22500, 1600}, {11000, 22800, 1800}, {11000, 22500, 1600}}}, 1000,
                CDataSemilla(2));
}

TEST_F(Pueblo, WallsGoRoundTheOutlineAndTheRoofFollows) {
    Agrega(CasaPequena());
    Pon([](EscenaTerreno& e) { e.SetExageracionVertical(2); });
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarEdificios(), 1);
    const LlamadasGL pared{"glNormal3f", "glColor3f(0.2, 0.4, 0.6)", "glVertex3f", "glVertex3f", "glVertex3f",
                           "glVertex3f"};
    LlamadasGL esperadas{"glBegin(GL_QUADS)"};
    for (int i = 0; i < 3; ++i)
        esperadas.insert(esperadas.end(), pared.begin(), pared.end());
    for (const char* l : {"glEnd()", "glColor3f(1, 0, 0)", "glBegin(GL_TRIANGLES)", "glNormal3f", "glVertex3f",
                          "glVertex3f", "glVertex3f", "glEnd()"})
        esperadas.emplace_back(l);
    LlamadasGL lista = registro.Lista(m_escena.m_nListaEdificios);
    for (std::string& l : lista)
        if (l.starts_with("glNormal3f") || l.starts_with("glVertex3f")) l.erase(l.find('('));
    EXPECT_LLAMADAS(lista, (esperadas));

    const double esquinas[4][3] = {{110, 225, 16}, {114, 225, 16}, {110, 228, 18}, {110, 225, 16}};
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_EQ(v.size(), 15u);
    for (std::size_t i = 0; i < 3; ++i) {
        const auto &p = esquinas[i], &q = esquinas[i + 1];
        EsperaVector(v[4 * i], EnGL(p[0], p[1], 10));
        EsperaVector(v[4 * i + 1], EnGL(q[0], q[1], 10));
        EsperaVector(v[4 * i + 2], EnGL(q[0], q[1], q[2]));
        EsperaVector(v[4 * i + 3], EnGL(p[0], p[1], p[2]));
    }
    // The triangle begins anywhere.
    std::size_t primero = 0;
    while (primero < 2 && std::abs(v[12][0] - EnGL(esquinas[primero][0], 0, 0)[0]) +
                                  std::abs(v[12][2] - EnGL(0, esquinas[primero][1], 0)[2]) >
                              1e-5)
        ++primero;
    for (std::size_t i = 0; i < 3; ++i) {
        const auto& p = esquinas[(primero + i) % 3];
        EsperaVector(v[12 + i], EnGL(p[0], p[1], p[2]));
    }

    // South, north-east and west wall, each towards its inside; of the roof, whose south edge is level, x is 0.
    const auto n = registro.Numeros("glNormal3f");
    ASSERT_EQ(n.size(), 4u);
    EsperaVector(n[0], {0, 0, -1});
    EsperaVector(n[1], {-0.6, 0, 0.8});
    EsperaVector(n[2], {1, 0, 0});
    // Up by 2 x 2 (exaggerated) on 3 to the north: the upward normal is (0, 3, 4) / 5 in x, y, z, and y is turned over.
    EsperaVector(n[3], {0, -0.6, 0.8});
    EXPECT_EQ(m_escena.m_bEdificiosIniciados, 1);
}

TEST_F(Pueblo, ARoofGivenAsLinesOfThreePointsIsDrawnToo) {
    CDataEdificio casa = CasaPequena();
    casa.m_Tejado = CDibujo<int>(CDataSemilla(2));
    casa.m_Tejado.Inserta(Linea({{11000, 22500, 1600}, {11400, 22500, 1600}, {11000, 22800, 1800}}));
    casa.m_Tejado.Inserta(Linea({{11000, 22500, 1600}, {11400, 22500, 1600}}));
    m_edificios.push_back(casa);
    Pon();
    const LlamadasGL lista = Lista();
    EXPECT_EQ(Solo(lista, {"glBegin"}), (LlamadasGL{"glBegin(GL_QUADS)", "glBegin(GL_TRIANGLES)"}));
    EXPECT_EQ(Solo(lista, {"glVertex3f"}).size(), 15u);
}

TEST_F(Pueblo, EveryBuildingAndEveryPartIsDrawn) {
    CDataEdificio grande =
        Casa({Cuadro(11000, 22300, 400, 2000), Cuadro(12000, 22300, 400, 2500)}, 1000, CDataSemilla(2));
    Agrega(grande);
    Agrega(CasaPequena());
    Pon();
    const LlamadasGL lista = Lista();
    EXPECT_EQ(
        Solo(lista, {"glBegin"}),
        (LlamadasGL{"glBegin(GL_QUADS)", "glBegin(GL_TRIANGLES)", "glBegin(GL_TRIANGLES)", "glBegin(GL_TRIANGLES)",
                    "glBegin(GL_TRIANGLES)", "glBegin(GL_QUADS)", "glBegin(GL_TRIANGLES)"}));
    EXPECT_EQ(Solo(lista, {"glVertex3f"}).size(), 8u * 4 + 4 * 3 + 3 * 4 + 3);
}

TEST_F(Pueblo, ThePrecisionOfTheFirstBuildingIsThatOfAll) {
    Agrega(CasaPequena());
    CDataEdificio otra = CasaPequena();
    otra.m_Superior.Semilla() = otra.m_Inferior.Semilla() = CDataSemilla(0);
    Agrega(otra);
    Pon();
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarEdificios(), 1);
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_EQ(v.size(), 30u);
    for (std::size_t i = 0; i < 15; ++i)
        EXPECT_EQ(v[i], v[15 + i]);
}

TEST_F(Pueblo, LinesOfOnePointHaveNoWall) {
    Agrega(Casa({{{11000, 22500, 1600}}, {{11500, 22500, 1600}, {11900, 22500, 1600}}}, 1000, CDataSemilla(2)));
    Pon();
    EXPECT_EQ(Solo(Lista(), {"glVertex3f"}).size(), 4u);
}

TEST_F(Pueblo, PointsOneAboveTheOtherLeaveNoWallWithoutWidth) {
    Agrega(Casa({{{11000, 22500, 1600},
                  {11000, 22500, 1900},
                  {11400, 22500, 1600},
                  {11400, 22500, 1600},
                  {11400, 22700, 1600}}},
                1000, CDataSemilla(2)));
    Pon();
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarEdificios(), 1);
    EXPECT_EQ(registro.Numeros("glVertex3f").size(), 8u + registro.Cuenta("glBegin") * 3 - 3);
    for (const auto& normal : registro.Numeros("glNormal3f"))
        EXPECT_NEAR(std::hypot(normal[0], normal[1], normal[2]), 1, 1e-5);
}

TEST_F(Pueblo, AWallWithoutHeightHasNoNormalAndNoNumberThatIsNone) {
    Agrega(Casa({{{11000, 22500, 1000}, {11400, 22500, 1000}}}, 1000, CDataSemilla(2)));
    Pon();
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarEdificios(), 1);
    EXPECT_EQ(registro.Numeros("glNormal3f"), (std::vector<std::vector<double>>{{0, 0, 0}}));
}

TEST_F(Pueblo, OutlinesThatDoNotMatchAreDrawnAsFarAsTheyDo) {
    CDataEdificio casa = CasaPequena();
    casa.m_Superior.Inserta(Linea(Cuadro(11500, 22500, 100, 1600)));
    casa.m_Inferior[0]->BorraPunto(2, 2);
    m_edificios.push_back(casa);
    Pon();
    EXPECT_EQ(Solo(Lista(), {"glVertex3f"}).size(), 4u);
}

TEST_F(Pueblo, WithoutBuildingsThereIsNoListAndNoFailure) {
    Agrega(CasaPequena());
    Pon();
    ASSERT_EQ(m_escena.OnIniciarEdificios(), 1);
    const GLuint lista = m_escena.m_nListaEdificios;
    const CEdificios vacio;
    for (const CEdificios* edificios : {static_cast<const CEdificios*>(nullptr), &vacio}) {
        m_escena.RecargarEdificios(edificios);
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarEdificios(), 1);
        EXPECT_TRUE(registro.Listas().empty());
        EXPECT_EQ(m_escena.m_nListaEdificios, 0u);
        EXPECT_EQ(m_escena.m_bEdificiosIniciados, 0);
    }
    EXPECT_FALSE(glIsList(lista));
}

TEST_F(Pueblo, WhatIsBuiltStaysUntilTheSetIsReplaced) {
    Agrega(CasaPequena());
    Pon();
    ASSERT_EQ(m_escena.OnIniciarEdificios(), 1);
    {
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarEdificios(), 1);
        EXPECT_TRUE(registro.Todas().empty());
    }
    CEdificios dos = m_edificios;
    dos.push_back(dos[0]);
    m_escena.RecargarEdificios(&dos);
    EXPECT_EQ(Solo(Lista(), {"glBegin(GL_QUADS)", "glVertex3f"}).size(), 30u);
    CEdificios salida;
    m_escena.GetEdificios(salida);
    EXPECT_EQ(salida.size(), 2u);
    m_escena.RecargarEdificios(nullptr);
    m_escena.GetEdificios(salida);
    EXPECT_TRUE(salida.empty());
}

TEST_F(Pueblo, AnErrorEndsTheListAndBuildingsCanBeTriedAgain) {
    Agrega(CasaPequena());
    m_escena.SetDEM(&m_dem);
    m_escena.RecargarEdificios(&m_edificios);
    EXPECT_EQ(m_escena.OnIniciarEdificios(), 0) << "no context";
    Toma(m_dem);
    for (const auto& [llamada, n] : {std::pair("glNewList", 1), {"glEnd", 1}, {"glEnd", 2}, {"glEndList", 1}}) {
        {
            const FallaGL falla(llamada, n);
            EXPECT_EQ(m_escena.OnIniciarEdificios(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida()) << llamada;
        }
        EXPECT_EQ(m_escena.m_bEdificiosIniciados, 0) << llamada;
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarEdificios(), 1) << llamada;
        EXPECT_EQ(registro.Todas().back(), "glEndList()") << llamada;
        m_escena.RecargarEdificios(&m_edificios);
    }
    const FallaGL falla("glDeleteLists", 1);
    EXPECT_EQ(m_escena.OnIniciarEdificios(), 0);
    EXPECT_TRUE(falla.Ocurrida());
}

TEST_F(Pueblo, NothingMoreIsSentAfterAnErrorAndTheListIsShut) {
    Agrega(Casa({Cuadro(11000, 22300, 400, 2000)}, 1000, CDataSemilla(2)));
    Agrega(CasaPequena());
    Pon();
    for (const std::size_t n : {1u, 2u, 3u}) {  // walls, and the two triangles of the roof
        const FallaGL falla("glEnd", int(n));
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarEdificios(), 0);
        EXPECT_EQ(registro.Cuenta("glBegin"), n);
        EXPECT_EQ(registro.Cuenta("glEndList"), 1u);
    }
}

TEST_F(Pueblo, TheyAreBuiltAndDrawnWhenAskedFor) {
    Agrega(CasaPequena());
    m_escena.RecargarEdificios(&m_edificios);
    Monta(m_dem, [](EscenaTerreno& e) { e.SetEdificios(0); });
    EXPECT_EQ(m_escena.GetEdificios(), 0);
    EXPECT_EQ(m_escena.m_nListaEdificios, 0u);
    m_escena.SetEdificios(1);
    ASSERT_EQ(m_escena.Iniciar(), 1);
    const GLuint lista = m_escena.m_nListaEdificios;
    ASSERT_NE(lista, 0u);
    for (const int visibles : {1, 0}) {
        m_escena.SetEdificios(visibles);
        EXPECT_EQ(LlamadasEnCuadro(lista), visibles);
    }
    EscenaTerreno copia(m_escena);
    EXPECT_EQ(copia.m_pEdificios, &m_edificios);
    m_escena.Destruir();
    EXPECT_EQ(m_escena.m_nListaEdificios, 0u);
}

}  // namespace
