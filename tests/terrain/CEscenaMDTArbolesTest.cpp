// Trees: planting them on a grid, and the faces that they are made of.

#include "EscenaTerreno.h"
#include "model/CSetPuntos.h"
#include "model/CTexto.h"
#include "support/Contexto.h"
#include "support/Progreso.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

namespace {

using modelos::Rejilla;
using Vertiz::CCoor3D;
using Vertiz::CDataSemilla;
using Vertiz::CDibujo;
using Vertiz::CLinea;

using Terna = std::array<double, 3>;

Terna Menos(const Terna& a, const Terna& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Terna Cruz(const Terna& a, const Terna& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double Escalar(const Terna& a, const Terna& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Terna ATerna(const std::vector<double>& v) {
    return {v.at(0), v.at(1), v.at(2)};
}

class Bosque : public Terreno {
  protected:
    // Local: x 100 to 140, y 220 to 240, heights 15 to 45.
    Vertiz::CDEM m_dem = Rejilla(3, 5, [](int r, int c) { return float(20 + 10 * r + 2.5 * c); },
                                 {10, 10, 120, 250, CDataSemilla(0, 20, 30, 5)});

    static CDibujo<int> Puntos(const std::vector<std::array<int, 2>>& lugares, int decimales = 2) {
        CDibujo<int> dibujo{CDataSemilla(decimales)};
        for (const auto& [x, y] : lugares) {
            CLinea<int> linea(L"ARBOL");
            linea << CCoor3D<int>(x, y, 77);
            dibujo.Inserta(linea);
        }
        return dibujo;
    }
    // Puts a tree in without a grid's help.
    void Planta(const wchar_t* codigo, int x, int y, int z, int altura) {
        CLinea<int> linea{CString(codigo)};
        linea << CCoor3D<int>(x, y, z);
        if (altura != -1) linea.InsertaAtr(Vertiz::CAtrDigi(99, altura, CString()));
        m_escena.m_Arboles.Inserta(linea);
    }
    const Vertiz::CEntidadDigi<int>& Arbol(unsigned i) { return *m_escena.m_Arboles[i]; }
    double AlturaLocal(double x, double y) const { return 15 + (240 - y) + (x - 100) / 4; }
};

// ---- Planting ------------------------------------------------------------------------------------------------------

TEST_F(Bosque, ATreeStandsOnTheTerrainWithItsKindAndItsHeight) {
    m_escena.SetDEM(&m_dem);
    m_escena.m_bArbolesIniciados = 1;
    CDibujo<int> puntos = Puntos({{10500, 23500}, {12345, 22222}});
    puntos.Semilla() = CDataSemilla(2, 1, 2, 3);
    m_escena.CargarArboles(puntos, 7.129, 0, 0, nullptr);
    EXPECT_EQ(m_escena.m_bArbolesIniciados, 0);
    EXPECT_TRUE(m_escena.m_Arboles.Semilla() == puntos.Semilla());
    ASSERT_EQ(m_escena.m_Arboles.Cantidad(), 2u);
    for (unsigned i = 0; i < 2; ++i) {
        EXPECT_EQ(Arbol(i).GetCodigo(), CString(L"0"));
        EXPECT_EQ(Arbol(i).DameRegistro(99), 712) << "cut off";
        ASSERT_EQ(Arbol(i).NPuntos(), 1u);
        const CCoor3D<int>&p = Arbol(i).Punto(0), &q = puntos[i]->Punto(0);
        EXPECT_EQ(p.x, q.x);
        EXPECT_EQ(p.y, q.y);
        EXPECT_NEAR(p.z, 100 * AlturaLocal(q.x / 100.0, q.y / 100.0), 1);
    }
    ASSERT_EQ(Arbol(0).Atributos().size(), 1u);
    EXPECT_EQ(Arbol(0).Atributos()[0].GetTexto(), CString());
    for (const int tipo : {1, 2, -1}) {
        m_escena.CargarArboles(puntos, 7, tipo, 0, nullptr);
        EXPECT_EQ(Arbol(1).GetCodigo(), CString(L"1"));
    }
}

TEST_F(Bosque, OffTheGridATreeKeepsTheHeightOfItsPoint) {
    m_escena.SetDEM(&m_dem);
    m_escena.CargarArboles(Puntos({{0, 0}}), 5, 0, 0, nullptr);
    ASSERT_EQ(m_escena.m_Arboles.Cantidad(), 1u);
    EXPECT_EQ(Arbol(0).Punto(0), CCoor3D<int>(0, 0, 77));
}

TEST_F(Bosque, OnlySinglePointsThatAreNotErasedBecomeTrees) {
    m_escena.SetDEM(&m_dem);
    CDibujo<int> puntos = Puntos({{10500, 23500}, {10600, 23500}});
    puntos[1]->SetBorrado(true);
    CLinea<int> linea(L"L");
    linea << CCoor3D<int>(10500, 23500, 0) << CCoor3D<int>(10600, 23500, 0);
    puntos.Inserta(linea);
    puntos.Inserta(Vertiz::CTexto<int>(L"T", CCoor3D<int>(10500, 23500, 0), L"a", 1.0));
    Vertiz::CSetPuntos<int> nube{CString(L"N")};
    nube << CCoor3D<int>(10500, 23500, 0);
    puntos.Inserta(nube);
    m_escena.CargarArboles(puntos, 5, 0, 0, nullptr);
    EXPECT_EQ(m_escena.m_Arboles.Cantidad(), 1u);
}

TEST_F(Bosque, WithoutAGridNothingIsPlanted) {
    Planta(L"0", 1, 1, 1, 5);
    m_escena.m_bArbolesIniciados = 1;
    Progreso progreso;
    m_escena.CargarArboles(Puntos({{10500, 23500}}), 5, 0, 0, &progreso);
    EXPECT_EQ(m_escena.m_Arboles.Cantidad(), 1u);
    EXPECT_EQ(m_escena.m_bArbolesIniciados, 1);
    EXPECT_TRUE(progreso.m_Etapas.empty());
}

TEST_F(Bosque, HeightsThatDoNotFitAreKeptInRange) {
    m_escena.SetDEM(&m_dem);
    for (const auto& [altura, registro] :
         {std::pair(1e300, INT_MAX), {-1e300, INT_MIN}, {std::nan(""), 0}, {-0.009, 0}, {-3.5, -350}}) {
        m_escena.CargarArboles(Puntos({{10500, 23500}}), altura, 0, 0, nullptr);
        EXPECT_EQ(Arbol(0).DameRegistro(99), registro) << altura;
    }
}

TEST_F(Bosque, TreesAreAddedOrTakeTheOthersPlace) {
    m_escena.SetDEM(&m_dem);
    const CDibujo<int> uno = Puntos({{10500, 23500}}), dos = Puntos({{10600, 23500}, {10700, 23500}});
    m_escena.CargarArboles(uno, 5, 0, 1, nullptr);
    m_escena.CargarArboles(dos, 6, 1, 1, nullptr);
    ASSERT_EQ(m_escena.m_Arboles.Cantidad(), 3u);
    EXPECT_EQ(Arbol(0).DameRegistro(99), 500);
    EXPECT_EQ(Arbol(2).GetCodigo(), CString(L"1"));
    m_escena.CargarArboles(dos, 6, 1, 0, nullptr);
    EXPECT_EQ(m_escena.m_Arboles.Cantidad(), 2u);
}

TEST_F(Bosque, TreesOfOtherDecimalsStayWhereTheyStand) {
    m_escena.SetDEM(&m_dem);
    m_escena.CargarArboles(Puntos({{10500, 23500}}), 5, 0, 0, nullptr);
    m_escena.m_Arboles.Inserta(*Puntos({{10700, 23500}})[0]);
    const int z = Arbol(0).Punto(0).z;
    m_escena.CargarArboles(Puntos({{106000, 235000}}, 3), 6, 0, 1, nullptr);
    ASSERT_EQ(m_escena.m_Arboles.Cantidad(), 3u);
    EXPECT_EQ(m_escena.m_Arboles.Semilla().GetDecimales(), 3);
    EXPECT_EQ(Arbol(0).Punto(0), CCoor3D<int>(105000, 235000, z * 10));
    EXPECT_EQ(Arbol(0).DameRegistro(99), 5000);
    EXPECT_EQ(Arbol(1).DameRegistro(99), -1) << "one without a height gets none";
    EXPECT_EQ(Arbol(2).Punto(0).x, 106000);
    EXPECT_EQ(Arbol(2).DameRegistro(99), 6000);
}

TEST_F(Bosque, PlantingTellsItsProgress) {
    m_escena.SetDEM(&m_dem);
    Progreso progreso;
    m_escena.CargarArboles(Puntos({{10500, 23500}, {10600, 23500}, {10700, 23500}}), 5, 0, 0, &progreso);
    EXPECT_EQ(progreso.m_Etapas, std::vector<unsigned>{12196});
    EXPECT_EQ(progreso.m_Pasos, (std::vector<std::pair<int, int>>{{0, 3}, {1, 3}, {2, 3}}));
    EXPECT_TRUE(std::ranges::all_of(progreso.m_Niveles, [](int n) { return n == 3; }));
    EXPECT_EQ(progreso.m_nAbiertas, 0);
    EXPECT_EQ(m_escena.m_Arboles.Cantidad(), 3u);
    m_escena.CargarArboles(Puntos({{10500, 23500}}), 5, 0, 0, nullptr);
    EXPECT_EQ(progreso.m_Etapas.size(), 1u) << "only the progress that is given counts";
}

TEST_F(Bosque, ACancelLeavesNoTreesAtAll) {
    m_escena.SetDEM(&m_dem);
    const CDibujo<int> puntos = Puntos({{10500, 23500}, {10600, 23500}, {10700, 23500}});
    m_escena.CargarArboles(puntos, 5, 0, 0, nullptr);
    m_escena.m_bArbolesIniciados = 1;
    Progreso progreso(2);
    m_escena.CargarArboles(puntos, 5, 0, 1, &progreso);
    EXPECT_EQ(progreso.m_Pasos.size(), 2u);
    EXPECT_EQ(progreso.m_nAbiertas, 0);
    EXPECT_EQ(m_escena.m_Arboles.Cantidad(), 0u);
    EXPECT_EQ(m_escena.m_bArbolesIniciados, 0);
}

// ---- Faces ---------------------------------------------------------------------------------------------------------

// One tree's calls and numbers, as it goes into a list.
struct Faces {
    LlamadasGL llamadas;
    std::vector<std::vector<double>> vertices, normales;
};

Faces Pinta(int (*pinta)(float, float, float, float)) {
    const RegistroGL registro;
    const GLuint lista = glGenLists(1);
    glNewList(lista, GL_COMPILE);
    EXPECT_EQ(pinta(0.25F, 0.5F, -0.125F, 3.0F), 1);
    glEndList();
    Faces caras{registro.Lista(lista), registro.Numeros("glVertex3f"), registro.Numeros("glNormal3f")};
    glDeleteLists(lista, 1);
    for (std::string& l : caras.llamadas)
        if (l.starts_with("glNormal3f") || l.starts_with("glVertex3f")) l.erase(l.find('('));
    return caras;
}

LlamadasGL Cara(int vertices, const std::string& color) {
    LlamadasGL cara{"glNormal3f", color};
    cara.insert(cara.end(), std::size_t(vertices), "glVertex3f");
    return cara;
}

LlamadasGL Tanda(const std::string& modo, int caras, const LlamadasGL& cara) {
    LlamadasGL tanda{"glBegin(" + modo + ")"};
    for (int i = 0; i < caras; ++i)
        tanda.insert(tanda.end(), cara.begin(), cara.end());
    tanda.emplace_back("glEnd()");
    return tanda;
}

LlamadasGL operator+(LlamadasGL a, const LlamadasGL& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The eight corners of a section: x and z.
std::vector<std::array<double, 2>> Octogono(double r) {
    const double k = r * 0.7071067811865476;
    return {{0, r}, {k, k}, {r, 0}, {k, -k}, {0, -r}, {-k, -k}, {-r, 0}, {-k, k}};
}

void EsperaEn(const std::vector<double>& v, double x, double y, double z) {
    EXPECT_NEAR(v.at(0), x + 0.25, 1e-6);
    EXPECT_NEAR(v.at(1), y + 0.5, 1e-6);
    EXPECT_NEAR(v.at(2), z - 0.125, 1e-6);
}

// Eight sides from the foot up, each normal square on its face and towards the axis.
void EsperaTronco(const Faces& caras, double radio, double alto) {
    const auto p = Octogono(radio);
    for (std::size_t i = 0; i < 8; ++i) {
        const auto &a = p[i], &b = p[(i + 1) % 8];
        EsperaEn(caras.vertices.at(4 * i), a[0], 0, a[1]);
        EsperaEn(caras.vertices.at(4 * i + 1), b[0], 0, b[1]);
        EsperaEn(caras.vertices.at(4 * i + 2), b[0], alto, b[1]);
        EsperaEn(caras.vertices.at(4 * i + 3), a[0], alto, a[1]);
        const double x = a[0] + b[0], z = a[1] + b[1], largo = std::hypot(x, z);
        const Terna n = ATerna(caras.normales.at(i));
        EXPECT_NEAR(n[0], -x / largo, 1e-6);
        EXPECT_NEAR(n[1], 0, 1e-6);
        EXPECT_NEAR(n[2], -z / largo, 1e-6);
    }
}

// The normal of a triangle as sent: of length 1, square on it, and away from the side that it is seen from.
void EsperaNormal(const Faces& caras, std::size_t normal, std::size_t vertice) {
    const Terna n = ATerna(caras.normales.at(normal)), a = ATerna(caras.vertices.at(vertice)),
                b = ATerna(caras.vertices.at(vertice + 1)), c = ATerna(caras.vertices.at(vertice + 2));
    const Terna v = Cruz(Menos(b, a), Menos(c, b));
    EXPECT_NEAR(Escalar(n, n), 1, 1e-5);
    EXPECT_NEAR(Escalar(n, v), -std::sqrt(Escalar(v, v)), 1e-5 * std::sqrt(Escalar(v, v)));
}

class Caras : public Contexto {};

TEST_F(Caras, ARoundTreeIsATrunkAndAnIcosahedron) {
    const Faces caras = Pinta(&CEscenaMDT::PintaNaranjo);
    EXPECT_LLAMADAS(caras.llamadas, (Tanda("GL_QUADS", 8, Cara(4, "glColor3f(1, 0.5, 0)")) +
                                     Tanda("GL_TRIANGLES", 20, Cara(3, "glColor3f(0, 1, 0)"))));
    EsperaTronco(caras, 0.3, 1.0);
    // Crown 2 high: edge scale 4/3, centre 1 + 1 above the foot.
    const double s = 4.0 / 3, X = 0.5257311 * s, Z = 0.8506508 * s;
    const double v[12][3] = {{-X, 0, Z}, {X, 0, Z},   {-X, 0, -Z}, {X, 0, -Z}, {0, Z, X},  {0, Z, -X},
                             {0, -Z, X}, {0, -Z, -X}, {Z, X, 0},   {-Z, X, 0}, {Z, -X, 0}, {-Z, -X, 0}};
    const int orden[20][3] = {{0, 4, 1}, {0, 9, 4},  {9, 5, 4},  {4, 5, 8},  {4, 8, 1},  {8, 10, 1}, {8, 3, 10},
                              {5, 3, 8}, {5, 2, 3},  {2, 7, 3},  {7, 10, 3}, {7, 6, 10}, {7, 11, 6}, {11, 0, 6},
                              {0, 1, 6}, {6, 1, 10}, {9, 0, 11}, {9, 11, 2}, {9, 2, 5},  {7, 2, 11}};
    ASSERT_EQ(caras.vertices.size(), 32u + 60u);
    for (std::size_t i = 0; i < 20; ++i) {
        for (std::size_t k = 0; k < 3; ++k) {
            const auto& p = v[orden[i][2 - k]];
            EsperaEn(caras.vertices[32 + 3 * i + k], p[0], 2 + p[1], p[2]);
        }
        EsperaNormal(caras, 8 + i, 32 + 3 * i);
    }
}

TEST_F(Caras, AConiferIsATrunkAndAConeWithoutABase) {
    const Faces caras = Pinta(&CEscenaMDT::PintaConifera);
    EXPECT_LLAMADAS(caras.llamadas, (Tanda("GL_QUADS", 8, Cara(4, "glColor3f(0.5, 0.25, 0)")) +
                                     Tanda("GL_TRIANGLES", 8, Cara(3, "glColor3f(0, 0.25, 0)"))));
    EsperaTronco(caras, 0.15, 0.75);
    const auto p = Octogono(0.75);
    for (std::size_t i = 0; i < 8; ++i) {
        const auto &a = p[i], &b = p[(i + 1) % 8];
        EsperaEn(caras.vertices[32 + 3 * i], b[0], 0.75, b[1]);
        EsperaEn(caras.vertices[32 + 3 * i + 1], 0, 3, 0);
        EsperaEn(caras.vertices[32 + 3 * i + 2], a[0], 0.75, a[1]);
        EsperaNormal(caras, 8 + i, 32 + 3 * i);
    }
}

TEST_F(Caras, ATreeWithoutHeightHasNoNumberThatIsNone) {
    for (auto* pinta : {&CEscenaMDT::PintaNaranjo, &CEscenaMDT::PintaConifera}) {
        const RegistroGL registro;
        EXPECT_EQ(pinta(0, 0, 0, 0), 1);
        for (const char* llamada : {"glNormal3f", "glVertex3f"})
            for (const auto& v : registro.Numeros(llamada))
                EXPECT_EQ(v, (std::vector<double>{0, 0, 0}));
    }
}

TEST_F(Caras, AnErrorAfterTheTrunkClosesTheList) {
    for (auto* pinta : {&CEscenaMDT::PintaNaranjo, &CEscenaMDT::PintaConifera}) {
        const FallaGL falla("glEnd", 1);
        const GLuint lista = glGenLists(1);
        glNewList(lista, GL_COMPILE);
        EXPECT_EQ(pinta(0, 0, 0, 1), 0);
        GLint abierta = -1;
        glGetIntegerv(GL_LIST_INDEX, &abierta);
        EXPECT_EQ(abierta, 0);
        glDeleteLists(lista, 1);
    }
}

// ---- The list ------------------------------------------------------------------------------------------------------

TEST_F(Bosque, EachTreeStandsInItsPlaceAndSize) {
    Toma(m_dem, [](EscenaTerreno& e) { e.SetExageracionVertical(2); });
    m_escena.m_Arboles.Semilla() = CDataSemilla(2);
    Planta(L"0", 11050, 22525, 1600, 400);
    Planta(L"1", 12000, 23000, 2000, 600);
    Planta(L"00", 13000, 23000, 2000, 600);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarArboles(), 1);
    EXPECT_EQ(m_escena.m_bArbolesIniciados, 1);
    const LlamadasGL lista = registro.Lista(m_escena.m_nListaArboles);
    EXPECT_EQ(Solo(lista, {"glBegin"}).size(), 6u);
    const auto v = registro.Numeros("glVertex3f");
    ASSERT_EQ(v.size(), 32u + 24 + 2 * (32 + 60));
    const double f = m_escena.m_dFactor;
    const auto espera = [&](std::size_t i, const std::array<double, 3>& pie, double x, double y, double z) {
        EXPECT_NEAR(v[i][0], pie[0] + x, 1e-5);
        EXPECT_NEAR(v[i][1], pie[1] + y, 1e-5);
        EXPECT_NEAR(v[i][2], pie[2] + z, 1e-5);
    };
    // Heights are exaggerated, and with them the widths.
    espera(0, EnGL(110.5, 225.25, 16), 0, 0, 4 * f * 2 * 0.05);
    espera(33, EnGL(110.5, 225.25, 16), 0, 4 * f * 2, 0);
    espera(56, EnGL(120, 230, 20), 0, 0, 6 * f * 2 * 0.1);
    espera(58, EnGL(120, 230, 20), 6 * f * 2 * 0.1 * std::sqrt(0.5), 6 * f * 2 / 3, 6 * f * 2 * 0.1 * std::sqrt(0.5));
    espera(56 + 92, EnGL(130, 230, 20), 0, 0, 6 * f * 2 * 0.1);
}

TEST_F(Bosque, ATreeWithoutAHeightOrAPointIsNotDrawn) {
    Toma(m_dem);
    Planta(L"0", 110, 225, 16, -1);
    Planta(L"0", 110, 225, 16, -7);
    CLinea<int> vacia(L"0");
    vacia.InsertaAtr(Vertiz::CAtrDigi(99, 5, CString()));
    m_escena.m_Arboles.Inserta(vacia);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciarArboles(), 1);
    EXPECT_TRUE(registro.Lista(m_escena.m_nListaArboles).empty());
    EXPECT_EQ(registro.Listas().size(), 1u);
}

TEST_F(Bosque, WithoutTreesThereIsNoListAndNoFailure) {
    Toma(m_dem);
    Planta(L"0", 110, 225, 16, 4);
    ASSERT_EQ(m_escena.OnIniciarArboles(), 1);
    const GLuint lista = m_escena.m_nListaArboles;
    EXPECT_NE(lista, 0u);
    {
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarArboles(), 1);
        EXPECT_TRUE(registro.Todas().empty()) << "built already";
    }
    m_escena.CargarArboles(Puntos({}), 5, 0, 0, nullptr);
    const RegistroGL registro;
    EXPECT_EQ(m_escena.OnIniciarArboles(), 1);
    EXPECT_TRUE(registro.Listas().empty());
    EXPECT_EQ(m_escena.m_nListaArboles, 0u);
    EXPECT_FALSE(glIsList(lista));
    EXPECT_EQ(m_escena.m_bArbolesIniciados, 0);
}

TEST_F(Bosque, AnErrorEndsTheListAndTreesCanBeTriedAgain) {
    m_escena.SetDEM(&m_dem);
    Planta(L"0", 110, 225, 16, 4);
    EXPECT_EQ(m_escena.OnIniciarArboles(), 0) << "no context";
    Toma(m_dem);
    for (const char* llamada : {"glNewList", "glEnd", "glEndList"}) {
        m_escena.m_bArbolesIniciados = 0;
        {
            const FallaGL falla(llamada, 1);
            EXPECT_EQ(m_escena.OnIniciarArboles(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida()) << llamada;
        }
        EXPECT_EQ(m_escena.m_bArbolesIniciados, 0) << llamada;
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciarArboles(), 1) << llamada;
        EXPECT_EQ(registro.Todas().back(), "glEndList()") << llamada;
    }
    m_escena.m_bArbolesIniciados = 0;
    const FallaGL falla("glDeleteLists", 1);
    EXPECT_EQ(m_escena.OnIniciarArboles(), 0);
    EXPECT_TRUE(falla.Ocurrida());
}

TEST_F(Bosque, TreesAreBuiltAndDrawnWhenAskedForAndPlantedOnesShowAtTheNextBuild) {
    Monta(m_dem, [](EscenaTerreno& e) { e.SetArboles(1); });
    EXPECT_EQ(m_escena.m_nListaArboles, 0u);
    m_escena.CargarArboles(Puntos({{11000, 23000}}), 5, 0, 0, nullptr);
    ASSERT_EQ(m_escena.IniciarArboles(), 1);
    const GLuint lista = m_escena.m_nListaArboles;
    ASSERT_NE(lista, 0u);
    for (const int visibles : {1, 0}) {
        m_escena.SetArboles(visibles);
        EXPECT_EQ(LlamadasEnCuadro(lista), visibles);
    }
}

TEST_F(Bosque, ACopyHasTheTreesAndTheAxesOfItsSource) {
    EscenaTerreno fuente;
    EXPECT_EQ(fuente.m_nEjeX, 1);
    EXPECT_EQ(fuente.m_nEjeY, 2);
    EXPECT_EQ(fuente.m_nEjeZ, 3);
    CLinea<int> arbol(L"0");
    arbol << CCoor3D<int>(1, 2, 3);
    fuente.m_Arboles.Inserta(arbol);
    fuente.m_nEjeX = -2, fuente.m_nEjeY = 3, fuente.m_nEjeZ = 1;
    EscenaTerreno copia(fuente), asignada;
    asignada = fuente;
    for (EscenaTerreno* e : {&copia, &asignada}) {
        ASSERT_EQ(e->m_Arboles.Cantidad(), 1u);
        EXPECT_EQ(e->m_Arboles[0]->Punto(0), CCoor3D<int>(1, 2, 3));
        EXPECT_EQ(e->m_nEjeX, -2);
        EXPECT_EQ(e->m_nEjeY, 3);
        EXPECT_EQ(e->m_nEjeZ, 1);
    }
    fuente.m_Arboles.Clear();
    EXPECT_EQ(copia.m_Arboles.Cantidad(), 1u);
}

}  // namespace
