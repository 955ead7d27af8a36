// Draped grids as they are seen: the image the right way up and in its place, no seam between it and the rest, and the
// little memory that cutting it takes.

#include "Drapeado.h"
#include "support/Memoria.h"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <fstream>

namespace {

using modelos::Rejilla;
using Punto = Vertiz::CCoor3D<double>;

constexpr int kFondo = 0xFF00FF;  // magenta, which nothing else has

bool EsFondo(std::array<std::uint8_t, 3> p) {
    return p[0] > 250 && p[1] < 5 && p[2] > 250;
}

/// A terrain of 60 x 48 cells of 10 with hills, its north-west corner at (300000, 4500480), on a picture of its own.
class FotoDrapeada : public Drapeado {
  protected:
    static constexpr int kFilas = 48, kColumnas = 60;
    static constexpr double kOeste = 300000, kSur = 4500000, kNorte = kSur + 10 * kFilas;

    FotoDrapeada() : Drapeado(kAncho, kAlto) {}
    static double Altura(double fila, double columna) {
        return 60 + 25 * std::sin(fila * 0.21) * std::cos(columna * 0.17) + columna * 0.5;
    }
    void SetUp() override {
        m_dem = Rejilla(kFilas + 1, kColumnas + 1, [](int r, int c) { return float(Altura(r, c)); },
                        {.oeste = kOeste, .sur = kSur});
        Toma(m_dem);
        m_arriba = m_escena.GetCamara();
        m_escena.SetColorFondo(kFondo);
        m_escena.Data().m_nColorDEM = 0x606060;
    }
    /// Takes a picture as a host does: straight down, or from `ojo`.
    Imagen Toma1(const Punto* ojo = nullptr) {
        m_escena.GetCamara() = m_arriba;
        EXPECT_EQ(m_escena.Iniciar(), 1);
        EXPECT_EQ(m_escena.Resize(kAncho, kAlto), 1);
        m_escena.OnZoomExtension();
        if (ojo) m_escena.GetCamara().PositionCamera(*ojo, {0, 0, 0, 0}, {0, 1, 0, 0});
        EXPECT_EQ(m_escena.SetBkColor(), 1);
        EXPECT_EQ(m_escena.Render(), 1);
        return m_tela.Lee();
    }
    /// The pixel of a place on the terrain.
    CPoint Pixel(double x, double y) {
        CPoint pt(-1, -1);
        const Punto p(x, y, Altura((kNorte - y) / 10, (x - kOeste) / 10), 0);
        EXPECT_EQ(m_escena.TerrenoAPantalla(pt, p, nullptr, false), 1);
        return pt;
    }
    static constexpr int kAncho = 420, kAlto = 336;
    Vertiz::CDEM m_dem;
    CCamera m_arriba;  // straight down
};

const Punto kOjos[] = {{0.5, 1.2, 0.9, 0}, {-1, 0.8, 0.3, 0}, {0.1, 1, -1, 0}};

// ---- The right way up ----------------------------------------------------------------------------------------------

TEST_F(FotoDrapeada, TheImageIsTheRightWayUpAndNotMirrored) {
    // Red grows to the east and green to the north, in every tile as in all of the image.
    const auto color = [](double fx, double fy) { return Color{BYTE(250 * fx), BYTE(250 * (1 - fy)), 100}; };
    const auto pintor = [&](int r, int c) { return color(c / 300.0, r / 240.0); };
    for (const int tesela : {1024, 64}) {
        Tesela(tesela);
        ASSERT_EQ(Drapea(*Pinta(300, 240, pintor), {.oeste = kOeste, .norte = kNorte, .pixel = 2, .resolucion = 2}), 1);
        for (int vista = -1; vista < 3; ++vista) {
            const Imagen imagen = Toma1(vista < 0 ? nullptr : &kOjos[vista]);
            if (vista < 0) {
                EXPECT_LT(Pixel(kOeste + 50, kNorte - 50).y, Pixel(kOeste + 50, kSur + 50).y) << "north is up";
                EXPECT_LT(Pixel(kOeste + 50, kNorte - 50).x, Pixel(kOeste + 550, kNorte - 50).x) << "west is left";
            }
            for (double fx = 0.15; fx < 0.9; fx += 0.1)
                for (double fy = 0.15; fy < 0.9; fy += 0.1) {
                    const CPoint p = Pixel(kOeste + 600 * fx, kNorte - 480 * fy);
                    if (p.x < 0 || p.x >= kAncho || p.y < 0 || p.y >= kAlto) continue;
                    const auto visto = imagen.Pixel(p.x, p.y);
                    for (std::size_t b = 0; b < 3; ++b)
                        EXPECT_NEAR(visto[b], color(fx, fy)[b], 14) << "view " << vista << ", at " << fx << ", " << fy;
                }
        }
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

// ---- In its place --------------------------------------------------------------------------------------------------

/// The middle of the pixels of a colour, by their indices (a pixel's centre lies half a pixel on), within ten of p
/// along a row or a column; -1 when there is none.
double Medio(const Imagen& imagen, CPoint p, bool fila, std::size_t canal) {
    double suma = 0;
    int n = 0;
    for (int d = -10; d <= 10; ++d) {
        const int x = p.x + (fila ? d : 0), y = p.y + (fila ? 0 : d);
        if (x < 0 || y < 0 || x >= imagen.ancho || y >= imagen.alto) continue;
        const auto v = imagen.Pixel(x, y);
        if (v[canal] < v[1] + 60) continue;
        suma += fila ? x : y;
        ++n;
    }
    return n > 0 ? suma / n : -1;
}

// A shaded relief of the grid itself with a line each 60 units: red where X is whole, blue where Y is.
Pintor Lineas(double oeste, double norte, double pixel) {
    return [=](int r, int c) {
        const double x = oeste + (c + 0.5) * pixel - 300000, y = norte - (r + 0.5) * pixel - 4500000;
        const auto cerca = [](double v) { return std::abs(v - std::round(v / 60) * 60) < 2; };
        if (cerca(x)) return Color{250, 0, 0};
        if (cerca(y)) return Color{0, 0, 250};
        const double fila = (480 - y) / 10, columna = x / 10;
        const double luz = std::sin(fila * 0.21 + 0.8) * std::cos(columna * 0.17);
        const BYTE gris = BYTE(150 + 60 * luz);
        return Color{gris, gris, gris};
    };
}

const Punto kSur45{0, 1, 0.8, 0};  // from the south, so that lines keep to rows and columns of the picture

struct Caso {
    double oeste, norte;  // from the grid's north-west
    int ancho, alto;      // pixels
    double pixel, resolucion;
    int piramide, paso;
    unsigned quad;
};

TEST_F(FotoDrapeada, EveryLineOfAnImageFallsOnItsCoordinate) {
    const Caso casos[] = {
        {0, 0, 600, 480, 1, 1, 0, 1, 1},            // all of the grid
        {0, 0, 600, 480, 1, 1, 0, 1, 0},            // as strips
        {-37.25, 53.5, 700, 600, 1, 1, 0, 1, 1},    // beyond it, off the lines of the grid
        {63.5, -41.25, 400, 380, 1, 1, 0, 1, 1},    // inside
        {63.5, -41.25, 800, 760, 0.5, 1, 0, 1, 0},  // thinned
        {60, -40, 400, 380, 1, 0.5, 0, 1, 1},       // enlarged
        {0, 0, 600, 480, 1, 1, 1, 1, 1},            // with a pyramid
        // Where samples are left out and a tile's edge lies between two of them, the cell there is stretched. Tiles of
        // 16 cells end on samples.
        {0, 0, 480, 384, 1.25, 1.25, 0, 2, 1},
        {80, -40, 256, 256, 1.25, 1.25, 0, 4, 0},
    };
    for (const Caso& k : casos)
        for (const bool arriba : {true, false}) {
            SCOPED_TRACE(testing::Message() << "case " << &k - casos << (arriba ? " from above" : " aslant"));
            const double oeste = kOeste + k.oeste, norte = kNorte + k.norte;
            m_escena.SetQuad(k.quad);
            m_escena.SetPuntosSuavizado(1 - k.paso);
            Tesela(128);
            ASSERT_EQ(Drapea(*Pinta(k.ancho, k.alto, Lineas(oeste, norte, k.pixel)),
                             {oeste, norte, k.pixel, k.resolucion, k.piramide}),
                      1);
            const Imagen imagen = Toma1(arriba ? nullptr : &kSur45);
            // A smaller copy of the image has pixels of twice the size; where samples are left out, the mesh is not as
            // high as the relief.
            const double margen = k.piramide != 0 || (k.paso > 1 && !arriba) ? 2 : 1;
            int vistas = 0;
            for (int i = 1; i < 10; ++i)
                for (int j = 1; j < 8; ++j) {
                    // Halfway between two crossings, on a line of each direction.
                    const double x = kOeste + 60 * i, y = kSur + 60 * j;
                    const auto dentro = [&](double px, double py) {
                        return px > oeste + 12 && py < norte - 12 && px < oeste + k.ancho * k.pixel - 12 &&
                               py > norte - k.alto * k.pixel + 12;
                    };
                    if (dentro(x, y - 30)) {
                        const CPoint p = Pixel(x, y - 30);
                        const double visto = Medio(imagen, p, true, 0);
                        EXPECT_NEAR(visto + 0.5, p.x, margen) << "X " << 60 * i << " at Y " << 60 * j - 30;
                        ++vistas;
                    }
                    if (dentro(x - 30, y)) {
                        const CPoint p = Pixel(x - 30, y);
                        const double visto = Medio(imagen, p, false, 2);
                        EXPECT_NEAR(visto + 0.5, p.y, margen) << "Y " << 60 * j << " at X " << 60 * i - 30;
                        ++vistas;
                    }
                }
            EXPECT_GT(vistas, 20);
            m_escena.DescargarImagen(0, 1, 1, 1);
        }
}

// ---- No seam -------------------------------------------------------------------------------------------------------

TEST_F(FotoDrapeada, NoBackgroundShowsBetweenTheImageAndTheRest) {
    struct Lugar {
        double oeste, norte;
        int ancho, alto;
    };
    const Lugar lugares[] = {{0, 0, 600, 480},          {130, -90, 210, 170}, {133.7, -87.1, 215, 177},
                             {333.3, -222.2, 400, 400}, {-20, 20, 700, 30},   {250, 100, 30, 700},
                             {-70, 40, 333, 290},       {5000, 0, 100, 100}};
    int i = 0;
    for (const int paso : {1, 2, 4})
        for (const unsigned quad : {0u, 1u}) {
            m_escena.SetQuad(quad);
            m_escena.SetPuntosSuavizado(1 - paso);
            const Punto* ojo = ++i % 4 == 0 ? nullptr : &kOjos[i % 4 - 1];
            const Imagen desnuda = Toma1(ojo);
            for (const Lugar& l : lugares) {
                SCOPED_TRACE(testing::Message() << "step " << paso << ", quad " << quad << ", " << l.ancho << " x "
                                                << l.alto << " at " << l.oeste << ", " << l.norte);
                Tesela(64);
                ASSERT_EQ(Drapea(*Pinta(l.ancho / 2, l.alto / 2,
                                        [](int, int) {
                                            return Color{0, 200, 0};
                                        }),
                                 {kOeste + l.oeste, kNorte + l.norte, 2, 2}),
                          1);
                // A second image, so that bands are cut too.
                ASSERT_EQ(Drapea(*Pinta(60, 40,
                                        [](int, int) {
                                            return Color{0, 0, 200};
                                        }),
                                 {kOeste + 401.3, kNorte - 222, 2, 2}),
                          1);
                const Imagen drapeada = Toma1(ojo);
                m_escena.DescargarImagen(0, 1, 1, 1);
                m_escena.DescargarImagen(0, 1, 1, 1);
                int distintos = 0, terreno = 0;
                for (int y = 0; y < kAlto; ++y)
                    for (int x = 0; x < kAncho; ++x) {
                        terreno += !EsFondo(desnuda.Pixel(x, y));
                        distintos += EsFondo(drapeada.Pixel(x, y)) != EsFondo(desnuda.Pixel(x, y));
                    }
                EXPECT_GT(terreno, kAncho * kAlto / 10);
                EXPECT_EQ(distintos, 0);
            }
        }
}

TEST_F(FotoDrapeada, TheSecondImageShowsBesideTheFirstWhichWinsWhereTheyOverlap) {
    const auto liso = [](Color color) { return [color](int, int) { return color; }; };
    ASSERT_EQ(Drapea(*Pinta(150, 240, liso({250, 0, 0})), {kOeste, kNorte, 2, 2}), 1);
    ASSERT_EQ(Drapea(*Pinta(150, 120, liso({0, 0, 250})), {kOeste + 200, kNorte, 2, 2}), 1);
    const Imagen imagen = Toma1();
    const auto visto = [&](double x, double y) {
        const CPoint p = Pixel(kOeste + x, kNorte - y);
        return imagen.Pixel(p.x, p.y);
    };
    EXPECT_GT(visto(100, 100)[0], 200);
    EXPECT_GT(visto(250, 100)[0], 200) << "under both";
    EXPECT_GT(visto(400, 100)[2], 200);
    EXPECT_LT(visto(550, 100)[2], 150) << "beside both";
    EXPECT_LT(visto(400, 400)[2], 150) << "the first's bands are whole below the second";
    EXPECT_NEAR(visto(400, 400)[0], visto(400, 400)[1], 2);
}

TEST_F(FotoDrapeada, TilesOfAnotherSizeShowTheSame) {
    for (const auto& [oeste, norte] : {std::pair{0.0, 0.0}, {63.5, -41.25}, {-37.25, 53.5}})
        for (const auto& [antes, despues, celdas] : {std::tuple{128, 64, 6}, {64, 128, 12}}) {
            SCOPED_TRACE(testing::Message() << "at " << oeste << ", " << norte << ": " << antes << " to " << despues);
            Tesela(antes);
            // 420 rows are seven tiles of 60, or three and a half of 120: the tiles reach further north then.
            ASSERT_EQ(Drapea(*Pinta(480, 420, Lineas(kOeste + oeste, kNorte + norte, 1)),
                             {kOeste + oeste, kNorte + norte, 1, 1}),
                      1);
            const double sur = Registro().m_dOrigenY;
            const Imagen una = Toma1();
            Tesela(1024);
            m_escena.CambiaSizeTexturas(despues, despues, Carpeta(), 1);
            const CDataTexturas r = Registro();
            EXPECT_EQ(r.m_nAnchoTextura, despues);
            EXPECT_EQ(r.m_nCeldasFila, celdas);
            EXPECT_EQ(r.m_nCeldasCol, celdas);
            EXPECT_EQ(r.m_dOrigenY, sur);
            EXPECT_EQ(r.m_bPiramidales, 0);
            const Imagen otra = Toma1();
            int distintos = 0, terreno = 0;
            for (int y = 0; y < kAlto; ++y)
                for (int x = 0; x < kAncho; ++x) {
                    const auto a = una.Pixel(x, y), b = otra.Pixel(x, y);
                    terreno += !EsFondo(a);
                    for (std::size_t k = 0; k < 3; ++k)
                        if (std::abs(a[k] - b[k]) > 60) {
                            ++distintos;
                            break;
                        }
                }
            EXPECT_GT(terreno, kAncho * kAlto / 4);
            EXPECT_LT(distintos, terreno / 200);
            m_escena.DescargarImagen(0, 1, 1, 1);
        }
}

// Red and green in the north, blue and yellow in the south.
Color Cuadrante(int fila, int columna, int filas, int columnas) {
    const bool norte = fila < filas / 2, oeste = columna < columnas / 2;
    if (norte) return oeste ? Color{250, 0, 0} : Color{0, 250, 0};
    return oeste ? Color{0, 0, 250} : Color{250, 250, 0};
}

TEST_F(FotoDrapeada, FromFarAwayAPyramidShowsTheImage) {
    // Tiles come to a pixel and less: every level has to be there, and the parts of the image in their places.
    const auto pintor = [](int r, int c) { return Cuadrante(r, c, 240, 300); };
    Tesela(64);
    m_escena.SetQuad(1);
    ASSERT_EQ(Drapea(*Pinta(300, 240, pintor), {kOeste, kNorte, 2, 2, 1}), 1);
    const Punto ojo{0.1, 12, 0.1, 0};
    EXPECT_EQ(m_escena.SetOrtogonal(0), 1);
    const Imagen imagen = Toma1(&ojo);
    std::array<int, 4> vistos{};
    int otros = 0;
    for (int y = 0; y < kAlto; ++y)
        for (int x = 0; x < kAncho; ++x) {
            const auto v = imagen.Pixel(x, y);
            if (EsFondo(v)) continue;
            const bool r = v[0] > 180, g = v[1] > 180, b = v[2] > 180;
            if (r && g && !b)
                ++vistos[3];
            else if (r && !g && !b)
                ++vistos[0];
            else if (g && !r && !b)
                ++vistos[1];
            else if (b && !r && !g)
                ++vistos[2];
            else
                ++otros;
        }
    const int todos = vistos[0] + vistos[1] + vistos[2] + vistos[3];
    EXPECT_GT(todos, 50);
    for (const int n : vistos)
        EXPECT_NEAR(n, todos / 4, todos / 12 + 4);
    EXPECT_LT(otros, todos / 4) << "neither white nor black tiles";
}

// ---- Memory --------------------------------------------------------------------------------------------------------

TEST_F(FotoDrapeada, CuttingAPictureInAFileTakesLittleMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "memory of sanitizers counts too";
#endif
    // 4000 x 4000 pixels are 46 megabytes; a tile of 1024 is three.
    for (const double resolucion : {0.1, 0.15}) {
        Vertiz::CBmp raster(1);
        ASSERT_TRUE(raster.Crear(4000, 4000, 24, 100.0F, true, nullptr, nullptr, false));
        malloc_trim(0);
        std::ofstream("/proc/self/clear_refs") << 5 << std::flush;
        const long antes = MemoriaProceso("VmRSS:");
        ASSERT_EQ(Drapea(raster, {kOeste, kNorte, 0.1, resolucion, 1}), 1);
        EXPECT_LT(MemoriaProceso("VmHWM:") - antes, 32 * 1024) << resolucion;
        m_escena.DescargarImagen(0, 1, 1, 1);
    }
}

}  // namespace
