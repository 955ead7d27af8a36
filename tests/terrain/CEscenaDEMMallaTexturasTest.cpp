// The mesh under images: which texture each cell gets, with which coordinates, and what is drawn without one.

#include "Drapeado.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <set>

namespace {

using modelos::kVacio;
using modelos::Rejilla;

// The number that begins at a place of a text, whatever the locale.
double Lee(const std::string& texto, std::size_t desde) {
    double v = std::nan("");
    std::from_chars(texto.data() + desde, texto.data() + texto.size(), v);
    return v;
}

std::string Numero(double v) {
    char texto[32];
    return {texto, std::to_chars(std::begin(texto), std::end(texto), v).ptr};
}

class MallaTexturas : public Drapeado {
  protected:
    /// Cells of 10, the north-west corner at (1000, 2000 + 10 rows).
    void Monta(
        int filas, int columnas, unsigned quad = 1,
        const std::function<float(int, int)>& altura = [](int, int) { return 5.0F; }) {
        m_filas = filas, m_columnas = columnas;
        m_dem = Rejilla(filas + 1, columnas + 1, altura, {.oeste = 1000, .sur = 2000});
        Toma(m_dem);
        m_escena.SetQuad(quad);
    }
    /// An image of 5 a pixel over these cells.
    void Cubre(int fila, int columna, int filas, int columnas) {
        const Carga carga{1000.0 + 10 * columna, 2000.0 + 10 * (m_filas - fila), 5, 5};
        ASSERT_EQ(Drapea(*Pinta(2 * columnas, 2 * filas, Abigarrado), carga), 1);
    }
    /// The calls of the surface's list, state before the first glBegin too.
    LlamadasGL Lista() {
        const RegistroGL registro;
        EXPECT_EQ(m_escena.OnIniciar(), 1);
        return registro.Lista(m_escena.m_nListaSuperficie);
    }
    Vertiz::CDEM m_dem;
    int m_filas = 0, m_columnas = 0;
};

// ---- Order ---------------------------------------------------------------------------------------------------------

/// The calls of the tiles as they are told, for a whole grid without voids and every sample shown.
LlamadasGL Esperada(const CDataTexturas& r, int filas, int columnas, double celda, bool quads) {
    LlamadasGL lista;
    const int cols = columnas + 1, rows = filas + 1;
    const double px = celda / (r.m_nAnchoTextura * r.m_dSizePixel), py = celda / (r.m_nAltoTextura * r.m_dSizePixel);
    const double smax = r.m_nCeldasCol * px, tmax = r.m_nCeldasFila * py, porCelda = celda / r.m_dSizePixel;
    const int altoCeldas = int(std::ceil(r.m_nAltoImagen / porCelda)), limite = quads ? cols - 1 : cols;
    const int anchoCeldas = int(std::ceil(r.m_nAnchoImagen / porCelda));
    const auto vertice = [&](double s, double t, int fila, int columna) {
        lista.push_back("glTexCoord2d(" + Numero(std::clamp(s, 0.0, smax)) + ", " + Numero(std::clamp(t, 0.0, tmax)) +
                        ")");
        lista.push_back("glArrayElement(" + std::to_string(fila * cols + columna) + ")");
    };
    for (int i = 0; i < r.m_nNumFilas; ++i)
        for (int j = 0; j < r.m_nNumCols; ++j) {
            const int r0 = r.m_nCeldasFila * i - r.m_nDespFila, r1 = r0 + r.m_nCeldasFila;
            const int c0 = r.m_nCeldasCol * j - r.m_nDespCol, c1 = c0 + r.m_nCeldasCol + (quads ? 0 : 1);
            lista.push_back("glBindTexture(GL_TEXTURE_2D, " + std::to_string(r.IdTextura(unsigned(i), unsigned(j))) +
                            ")");
            if (c1 < 0 || r1 < 0 || r0 > rows - 1 || c0 > limite) continue;
            lista.emplace_back("glEnable(GL_TEXTURE_2D)");
            const int inicio = std::max(i == 0 ? r.m_nCeldasFila * r.m_nNumFilas - altoCeldas + r0 : r0, 0);
            const int ultima = anchoCeldas - r.m_nDespCol + (quads ? 0 : 1);
            const int fin = std::min(j == r.m_nNumCols - 1 ? ultima : c1, limite);
            if (quads) lista.emplace_back("glBegin(GL_QUADS)");
            for (int R = inicio; R < std::min(r1, rows - 1); ++R) {
                if (!quads) lista.emplace_back("glBegin(GL_QUAD_STRIP)");
                for (int C = std::max(c0, 0); C < fin; ++C) {
                    vertice((C - c0) * px, (R - r0) * py, R, C);
                    vertice((C - c0) * px, (R - r0 + 1) * py, R + 1, C);
                    if (!quads) continue;
                    vertice((C - c0 + 1) * px, (R - r0 + 1) * py, R + 1, C + 1);
                    vertice((C - c0 + 1) * px, (R - r0) * py, R, C + 1);
                }
                if (!quads) lista.emplace_back("glEnd()");
            }
            if (quads) lista.emplace_back("glEnd()");
            lista.emplace_back("glDisable(GL_TEXTURE_2D)");
        }
    return lista;
}

/// From the first glBindTexture to the last glDisable.
LlamadasGL Teselas(const LlamadasGL& lista) {
    const auto empieza = [](const char* que) { return [que](const auto& l) { return l.starts_with(que); }; };
    const auto primera = std::find_if(lista.begin(), lista.end(), empieza("glBindTexture"));
    const auto ultima = std::find_if(lista.rbegin(), lista.rend(), empieza("glBindTexture")).base();
    return {primera, std::find_if(ultima, lista.end(), empieza("glColor3f"))};
}

/// A place of the image against the grid, in cells.
struct Lugar {
    int fila, columna, filas, columnas;
};
constexpr Lugar kLugares[] = {{0, 0, 6, 7}, {1, 2, 3, 4},     {-2, -3, 5, 6},
                              {3, 4, 9, 9}, {-5, -5, 20, 20}, {2, -1, 3, 9}};

TEST_F(MallaTexturas, TilesAreSentInTheToldOrderWithTheirCoordinates) {
    for (const unsigned quad : {0u, 1u})
        for (const Lugar& l : kLugares) {
            Monta(6, 7, quad);
            Tesela(8);
            Cubre(l.fila, l.columna, l.filas, l.columnas);
            const LlamadasGL lista = Lista();
            CDataTexturas r = Registro();
            // The names of the objects are in the list itself, in the order of the tiles.
            const LlamadasGL nombres = Solo(lista, {"glBindTexture"});
            ASSERT_EQ(nombres.size(), r.NumTeselas());
            r.m_pTexturas = std::make_shared<CTexturasGL>();
            for (const std::string& nombre : nombres)
                r.m_pTexturas->nombres.push_back(GLuint(std::stoul(nombre.substr(nombre.find(',') + 2))));
            EXPECT_EQ(std::set<GLuint>(r.m_pTexturas->nombres.begin(), r.m_pTexturas->nombres.end()).size(),
                      nombres.size());
            EXPECT_EQ(EnLineas(Sin(Teselas(lista), {"glNormal3f"})), EnLineas(Esperada(r, 6, 7, 10, quad == 1)))
                << "quad " << quad << ", image at " << l.fila << ", " << l.columna;
            m_escena.Destruir();
        }
}

TEST_F(MallaTexturas, TheSurfaceIsWhiteUnderImagesAndHasItsColourBesideThem) {
    Monta(6, 7);
    m_escena.Data().m_nSombraCeldas = 0;
    m_escena.SetColorDEM(0x0000FF);
    Cubre(1, 2, 3, 4);
    const LlamadasGL lista = Lista();
    const LlamadasGL estado = Solo(lista, {"glColor3f", "glBegin", "glEnable", "glDisable"});
    EXPECT_LLAMADAS(estado, {"glColor3f(1, 1, 1)", "glEnable(GL_TEXTURE_2D)", "glBegin(GL_QUADS)",
                             "glDisable(GL_TEXTURE_2D)", "glColor3f(1, 0, 0)", "glDisable(GL_TEXTURE_2D)",
                             "glBegin(GL_QUADS)", "glBegin(GL_QUADS)", "glBegin(GL_QUADS)", "glBegin(GL_QUADS)"});
}

TEST_F(MallaTexturas, ShadedCellsKeepTheirTintsBesideImages) {
    Monta(6, 7);
    m_escena.Data().m_nSombraCeldas = 1;
    Cubre(0, 0, 6, 6);
    const LlamadasGL lista = Lista();
    const LlamadasGL colores = Solo(lista, {"glColor3f"});
    ASSERT_EQ(colores.size(), 1u + 6 * 4) << "a column beside the image";
    EXPECT_EQ(colores[0], "glColor3f(1, 1, 1)");
    EXPECT_EQ(colores[1], "glColor3f(0.2, 0.8, 1)");
}

TEST_F(MallaTexturas, AnImageOverTheWholeGridLeavesNothingToDrawWithoutOne) {
    Monta(6, 7);
    Cubre(0, 0, 6, 7);
    const LlamadasGL lista = Lista();
    EXPECT_EQ(Solo(lista, {"glTexCoord2d"}).size(), 6u * 7 * 4);
    EXPECT_EQ(Solo(lista, {"glArrayElement"}).size(), 6u * 7 * 4);
}

TEST_F(MallaTexturas, PointsAreDrawnWithoutImages) {
    Monta(6, 7, 2);
    Cubre(0, 0, 6, 7);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    EXPECT_EQ(registro.Cuenta("glTexCoord2d"), 0u);
    EXPECT_EQ(registro.Cuenta("glBindTexture"), 0u);
    EXPECT_EQ(registro.Cuenta("glTexImage2D"), 0u) << "and no pixels are sent yet";
    EXPECT_EQ(registro.Cuenta("glBegin"), 1u);
    EXPECT_EQ(Registro().m_bCargada, 0);
}

// ---- Pixels --------------------------------------------------------------------------------------------------------

TEST_F(MallaTexturas, TheFirstBuildFillsEveryTileAndLaterOnesNone) {
    Monta(6, 7);
    Tesela(8);
    Cubre(0, 0, 6, 7);
    const std::size_t teselas = Registro().NumTeselas();
    ASSERT_GT(teselas, 1u);
    EXPECT_EQ(Registro().m_bCargada, 0);
    {
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnIniciar(), 1);
        const LlamadasGL todas = Solo(registro.Todas(), {"glTexImage2D", "glNewList"});
        ASSERT_EQ(todas.size(), teselas + 1);
        EXPECT_TRUE(todas.back().starts_with("glNewList")) << "before the list is opened";
        EXPECT_EQ(Registro().m_bCargada, 1);
    }
    {
        const RegistroGL registro;
        ASSERT_EQ(m_escena.OnIniciar(), 1);
        EXPECT_EQ(registro.Cuenta("glTexImage2D"), 0u);
    }
    Cubre(1, 1, 2, 2);
    const RegistroGL registro;
    ASSERT_EQ(m_escena.OnIniciar(), 1);
    EXPECT_EQ(registro.Cuenta("glTexImage2D"), Registro(1).NumTeselas()) << "only the new image's";
}

TEST_F(MallaTexturas, AReferenceDrawsWithTheOwnersObjectsAndFillsNone) {
    Monta(6, 7);
    Vertiz::CDEM vecina = Rejilla(7, 8, [](int, int) { return 5.0F; }, {.oeste = 1070, .sur = 2000});
    auto* referencia = new EscenaTerreno(&vecina);
    referencia->SetQuad(1);
    m_escena.ReferenciaNuevo(referencia);
    Tesela(64);
    Vertiz::CDataImagen imagen(1000, 2060, 5, 5, Vertiz::CDataImagen::ABSOLUTA);
    CDataCargarImagen opciones;
    opciones.m_dResolucion = 5;
    CEscenaMDT& escena = m_escena;
    ASSERT_EQ(escena.CargarImagen(L"x", Pinta(20, 12, Abigarrado).release(), imagen, opciones, Carpeta()), 1);
    EXPECT_EQ(m_escena.OnIniciar(), 1);
    const RegistroGL registro;
    EXPECT_EQ(referencia->OnIniciar(), 1);
    EXPECT_EQ(registro.Cuenta("glTexImage2D"), 0u);
    // Ten cells of image, of which seven lie on the owner's grid: three on the neighbour's.
    EXPECT_EQ(registro.Cuenta("glTexCoord2d"), 6u * 3 * 4);
    EXPECT_EQ(registro.Cuenta("glArrayElement"), 6u * 7 * 4);
}

TEST_F(MallaTexturas, AChildFillsTheImagesThatAreItsOwn) {
    Monta(6, 7);
    Vertiz::CDataImagen imagen(1000, 2060, 5, 5, Vertiz::CDataImagen::ABSOLUTA);
    CDataCargarImagen opciones;
    opciones.m_dResolucion = 5;
    for (const int tipo : {1, 3}) {
        auto* hija = new EscenaTerreno(&m_dem);
        hija->SetTipo(tipo);
        hija->SetQuad(1);
        m_escena.ReferenciaNuevo(hija);
        CEscenaMDT& escena = *hija;
        ASSERT_EQ(escena.CargarImagen(L"x", Pinta(20, 12, Abigarrado).release(), imagen, opciones, Carpeta()), 1);
        CDataTexturas r;
        ASSERT_TRUE(hija->GetDataTexturas(0, r));
        const RegistroGL registro;
        EXPECT_EQ(hija->OnIniciar(), 1);
        EXPECT_EQ(hija->OnIniciar(), 1);
        EXPECT_EQ(registro.Cuenta("glTexImage2D"), r.NumTeselas()) << "once, type " << tipo;
    }
}

TEST_F(MallaTexturas, AnUnloadedImageIsDrawnWhite) {
    Monta(6, 7);
    Cubre(1, 1, 4, 4);
    m_escena.DescargarImagen(0, 0, 0, 1);
    const LlamadasGL lista = Lista();
    for (const std::string& l : Solo(lista, {"glBindTexture"}))
        EXPECT_EQ(l, "glBindTexture(GL_TEXTURE_2D, 0)");
    EXPECT_EQ(Solo(lista, {"glArrayElement"}).size(), 6u * 7 * 4);
    m_escena.DescargarImagen(0, 1, 1, 1);
}

// ---- Voids ---------------------------------------------------------------------------------------------------------

TEST_F(MallaTexturas, CellsAtAVoidAreLeftOutOfQuads) {
    Monta(6, 7, 1, [](int r, int c) { return r == 2 && c == 3 ? kVacio : 5.0F; });
    Cubre(0, 0, 6, 7);
    EXPECT_EQ(Solo(Lista(), {"glTexCoord2d"}).size(), (6u * 7 - 4) * 4);
}

TEST_F(MallaTexturas, AStripKeepsItsNormalOverAVoidAndSkipsWhatHasNoOtherSide) {
    // One band. The second sample of its south side is missing.
    Monta(1, 4, 0, [](int r, int c) { return r == 1 && c == 1 ? kVacio : float(c == 4 ? 9 : 5); });
    Cubre(-3, 0, 4, 4);  // one tile
    const LlamadasGL lista = Solo(Lista(), {"glNormal3f", "glArrayElement"});
    EXPECT_LLAMADAS(Sin(lista, {"glNormal3f"}), {Elemento(0), Elemento(5), Elemento(2), Elemento(6), Elemento(3),
                                                 Elemento(7), Elemento(4), Elemento(8)});
    const LlamadasGL normales = Solo(lista, {"glNormal3f"});
    ASSERT_EQ(normales.size(), 4u);
    EXPECT_EQ(normales[0], "glNormal3f(0, 0, 0)") << "at the beginning there is none to keep";
    EXPECT_EQ(normales[1], "glNormal3f(0, -1, 0)");
    EXPECT_EQ(normales[3], normales[2]) << "the end of the strip";
    EXPECT_NE(normales[2], normales[1]);
}

TEST_F(MallaTexturas, ANormalOfASlopeIsTheOneWithoutImages) {
    const auto cuesta = [](int r, int c) { return float(3 * r + 2 * c); };
    Monta(6, 7, 1, cuesta);
    const LlamadasGL sinImagen = Solo(Lista(), {"glNormal3f"});
    Cubre(0, 0, 6, 7);
    EXPECT_EQ(Solo(Lista(), {"glNormal3f"}), sinImagen);
}

// ---- Steps ---------------------------------------------------------------------------------------------------------

TEST_F(MallaTexturas, AStepIsAPowerOfTwoUnderImagesAndCellsAreNeverDivided) {
    Monta(16, 16);
    m_escena.SetPuntosSuavizado(-2);
    EXPECT_EQ(m_escena.GetPasoMalla(), 3);
    Cubre(0, 0, 8, 8);
    EXPECT_EQ(m_escena.GetPasoMalla(), 4);
    m_escena.SetQuad(2);
    EXPECT_EQ(m_escena.GetPasoMalla(), 3) << "points have no images";
    m_escena.SetQuad(1);
    m_dem.CalculaVectores();
    m_escena.SetPuntosSuavizado(2);
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 1);
    m_escena.DescargarImagen(0, 1, 1, 1);
    EXPECT_EQ(m_escena.GetSubdivisionMalla(), 3);
}

TEST_F(MallaTexturas, AQuadOfALargerStepShowsAllTheImageThatItCovers) {
    Monta(8, 8);
    m_escena.SetPuntosSuavizado(-1);
    Tesela(16);
    Cubre(0, 0, 8, 8);
    ASSERT_EQ(Registro().m_nCeldasCol, 8);
    const LlamadasGL lista = Solo(Lista(), {"glTexCoord2d"});
    ASSERT_EQ(lista.size(), 4u * 4 * 4);
    EXPECT_LLAMADAS(
        LlamadasGL(lista.begin(), lista.begin() + 8),
        {"glTexCoord2d(0, 0)", "glTexCoord2d(0, 0.25)", "glTexCoord2d(0.25, 0.25)", "glTexCoord2d(0.25, 0)",
         "glTexCoord2d(0.25, 0)", "glTexCoord2d(0.25, 0.25)", "glTexCoord2d(0.5, 0.25)", "glTexCoord2d(0.5, 0)"});
}

/// Cells of the mesh that a list draws, with what each corner shows, held against the terrain.
class Cobertura : public MallaTexturas {
  protected:
    struct Vertice {
        int fila, columna;  // samples of the grid
    };

    void Comprueba(int x, unsigned quad) {
        RegistroGL registro;
        ASSERT_EQ(m_escena.OnIniciar(), 1);
        const CDataTexturas r = Registro();
        const int porFila = m_columnas / x + 1, filasMalla = m_filas / x, columnasMalla = m_columnas / x;
        std::map<std::pair<int, int>, int> celdas;
        int tesela = -1;
        bool textura = false;
        std::array<double, 2> st{};
        std::vector<Vertice> cara;
        for (const std::string& l : registro.Lista(m_escena.m_nListaSuperficie)) {
            if (l.starts_with("glBindTexture")) ++tesela;
            if (l == "glEnable(GL_TEXTURE_2D)") textura = true;
            if (l == "glDisable(GL_TEXTURE_2D)") textura = false;
            if (l.starts_with("glBegin")) cara.clear();
            if (l.starts_with("glTexCoord2d")) {
                st[0] = Lee(l, l.find('(') + 1);
                st[1] = Lee(l, l.find(',') + 2);
            }
            if (!l.starts_with("glArrayElement")) continue;
            const int e = std::stoi(l.substr(l.find('(') + 1));
            const Vertice v{e / porFila * x, e % porFila * x};
            if (textura) {
                const int c0 = r.m_nCeldasCol * (tesela % r.m_nNumCols) - r.m_nDespCol;
                const int r0 = r.m_nCeldasFila * (tesela / r.m_nNumCols) - r.m_nDespFila;
                const double px = 10 / (r.m_nAnchoTextura * r.m_dSizePixel);
                ASSERT_DOUBLE_EQ(st[0], std::clamp((v.columna - c0) * px, 0.0, r.m_nCeldasCol * px));
                ASSERT_DOUBLE_EQ(st[1], std::clamp((v.fila - r0) * px, 0.0, r.m_nCeldasFila * px));
            }
            cara.push_back(v);
            if (cara.size() < 4) continue;
            ++celdas[{cara[0].fila, cara[0].columna}];
            EXPECT_EQ(cara[quad == 1 ? 2 : 3].fila, cara[0].fila + x);
            EXPECT_EQ(cara[quad == 1 ? 2 : 3].columna, cara[0].columna + x);
            cara.erase(cara.begin(), cara.begin() + (quad == 1 ? 4 : 2));
        }
        EXPECT_EQ(celdas.size(), std::size_t(filasMalla) * std::size_t(columnasMalla)) << "cells that nobody draws";
        for (const auto& [celda, veces] : celdas)
            EXPECT_EQ(veces, 1) << "row " << celda.first << ", column " << celda.second;
    }
};

TEST_F(Cobertura, EveryCellIsDrawnOnceWithItsOwnPartOfTheImage) {
    std::mt19937 azar(3);
    const auto entre = [&](int a, int b) { return std::uniform_int_distribution(a, b)(azar); };
    Monta(23, 26);
    for (int vez = 0; vez < 240; ++vez) {
        const unsigned quad = unsigned(vez % 2);
        const int x = 1 << entre(0, 2);
        m_escena.SetQuad(quad);
        m_escena.SetPuntosSuavizado(1 - x);
        Tesela(1 << entre(2, 5));
        const Lugar l{entre(-8, 24), entre(-8, 27), entre(1, 30), entre(1, 30)};
        SCOPED_TRACE(testing::Message() << vez << ": quad " << quad << ", step " << x << ", " << l.filas << " x "
                                        << l.columnas << " cells at " << l.fila << ", " << l.columna);
        Cubre(l.fila, l.columna, l.filas, l.columnas);
        Comprueba(x, quad);
        if (HasFailure()) return;
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

// ---- Failures ------------------------------------------------------------------------------------------------------

TEST_F(MallaTexturas, TilesOfMoreCellsThanCanBeCountedAreDrawn) {
    Monta(6, 7);
    Cubre(0, 0, 6, 7);
    std::vector<CDataTexturas> registros;
    m_escena.GetDataTexturas(registros);
    CDataTexturas& r = registros.at(0);
    r.m_nCeldasCol = std::numeric_limits<int>::max();
    r.m_nDespCol = -1;
    m_escena.SetDataTexturas(registros);
    const LlamadasGL lista = Lista();
    EXPECT_EQ(std::ranges::count_if(lista, [](const auto& l) { return l.starts_with("glTexCoord2d"); }), 4 * 6 * 6)
        << "all but the first column";
}

TEST_F(MallaTexturas, AnErrorInATileFailsAndLeavesNoOpenList) {
    for (const char* llamada : {"glBindTexture", "glEnd"}) {
        Monta(6, 7, llamada[2] == 'E' ? 0 : 1);
        Tesela(8);
        Cubre(0, 0, 6, 7);
        ASSERT_EQ(m_escena.OnIniciar(), 1) << "the pixels are in place";
        {
            const FallaGL falla(llamada, 2);
            EXPECT_EQ(m_escena.OnIniciar(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida());
        }
        GLint lista = 0;
        glGetIntegerv(GL_LIST_INDEX, &lista);
        EXPECT_EQ(lista, 0);
        EXPECT_EQ(m_escena.OnIniciar(), 1) << "the next build has nothing to make up for";
        m_escena.Destruir();
    }
}

}  // namespace
