// A village and a wood as they are seen: in their places, the right way up, roofs and walls shut.

#include "EscenaTerreno.h"

#include <cmath>
#include <numbers>
#include <random>

namespace {

using Vertiz::CCoor3D;
using Vertiz::CDataSemilla;
using Vertiz::CDibujo;
using Vertiz::CLinea;

using Color = std::array<std::uint8_t, 3>;

constexpr Color kSuelo{204, 204, 153}, kPared{102, 51, 0}, kTejado{255, 0, 0}, kCopa{0, 255, 0}, kAbeto{0, 64, 0};
constexpr int kAncho = 480, kAlto = 360;

// A hill of 200 x 200 m, 20 m high in the north-west corner; local coordinates from (1000, 2000).
float Altura(double x, double y) {
    return float(10 + ((1200 - x) + (y - 2000)) / 20);
}

class Paisaje : public testing::Test {
  protected:
    Paisaje() {
        m_escena.SetQuad(1);
        m_escena.SetEjes(0);
        m_escena.SetPuntosCamara(0);
        m_escena.SetRupturas(0);
        m_escena.SetLimites(0);
        m_escena.SetTipoColorMDT(1);
        m_escena.Data().m_nSombraCeldas = 0;
        m_escena.SetColorDEM(RGB(kSuelo[0], kSuelo[1], kSuelo[2]));
        m_escena.SetImagenFondo(0);
        m_escena.SetDEM(&m_dem);
    }

    // Outlines in decimetres from (1000, 2000), a metre into the ground, `alto` decimetres over its highest corner; a
    // point of `cumbre` makes a pyramid.
    void Construye(const std::vector<std::vector<std::array<int, 2>>>& partes, int alto,
                   std::array<int, 3> cumbre = {}) {
        CDataEdificio casa;
        casa.m_ColorPared = {kPared[0], kPared[1], kPared[2], 0};
        casa.m_ColorTejado = {kTejado[0], kTejado[1], kTejado[2], 0};
        casa.m_Superior = casa.m_Inferior = CDibujo<int>(CDataSemilla(1));
        int bajo = 1 << 20, techo = 0;
        for (const auto& parte : partes)
            for (const auto& [x, y] : parte) {
                const int z = int(10 * Altura(1000 + x / 10.0, 2000 + y / 10.0));
                bajo = std::min(bajo, z - 10), techo = std::max(techo, z + alto);
            }
        for (const auto& parte : partes) {
            CLinea<int> arriba(L"CASA");
            for (const auto& [x, y] : parte)
                arriba << CCoor3D<int>(10000 + x, 20000 + y, techo);
            arriba.Cierra();
            casa.m_Superior.Inserta(arriba);
            arriba.ZFija(bajo);
            casa.m_Inferior.Inserta(arriba);
        }
        if (cumbre[2] > 0) {
            CLinea<int> punto(L"CASA");
            punto << CCoor3D<int>(10000 + cumbre[0], 20000 + cumbre[1], techo + cumbre[2]);
            casa.m_Superior.Inserta(punto);
            casa.m_Inferior.Inserta(punto);
        }
        m_edificios.AgregaEdificio(casa);
        m_dTecho = techo / 10.0;
    }
    void Planta(const std::vector<std::array<int, 2>>& lugares, double altura, int tipo) {
        CDibujo<int> puntos{CDataSemilla(1)};
        for (const auto& [x, y] : lugares) {
            CLinea<int> punto(L"P");
            punto << CCoor3D<int>(10000 + x, 20000 + y, 0);
            puntos.Inserta(punto);
        }
        m_escena.CargarArboles(puntos, altura, tipo, 1, nullptr);
    }
    // The picture from an azimuth and an elevation, degrees.
    Imagen Mira(double azimut, double elevacion) {
        EXPECT_EQ(m_escena.Crear(m_tela.DC(), PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL), 1);
        m_escena.RecargarEdificios(&m_edificios);
        m_escena.OnZoomExtension();
        EXPECT_EQ(m_escena.Iniciar(), 1);
        EXPECT_EQ(m_escena.Resize(kAncho, kAlto), 1);
        const double a = azimut * std::numbers::pi / 180, e = elevacion * std::numbers::pi / 180;
        m_escena.GetCamara().PositionCamera({std::sin(a) * std::cos(e), std::sin(e), -std::cos(a) * std::cos(e), 0},
                                            {0, 0, 0, 0},
                                            {-std::sin(a) * std::sin(e), std::cos(e), std::cos(a) * std::sin(e), 0});
        m_escena.OnZoomExtension();
        m_escena.SetBkColor();
        EXPECT_EQ(m_escena.Render(), 1);
        return m_tela.Lee();
    }
    // The pixel of a point in metres from the corner.
    CPoint Pixel(double x, double y, double z) {
        CPoint p;
        EXPECT_EQ(m_escena.TerrenoAPantalla(p, {1000 + x, 2000 + y, z, 0}, nullptr, false), 1);
        return p;
    }
    Color En(const Imagen& imagen, double x, double y, double z) {
        const CPoint p = Pixel(x, y, z);
        return imagen.Pixel(p.x, p.y);
    }

    Vertiz::CDEM m_dem = modelos::Rejilla(21, 21, [](int r, int c) { return Altura(1000 + c * 10, 2200 - r * 10); },
                                          {10, 10, 1000, 2000, {}});
    CEdificios m_edificios;
    double m_dTecho = 0;  // of the last building
    Tela m_tela{kAncho, kAlto};
    EscenaTerreno m_escena;
};

const std::vector<std::array<int, 2>> kEle{{200, 300}, {800, 300}, {800, 600}, {500, 600}, {500, 1000}, {200, 1000}};

TEST_F(Paisaje, FromAboveRoofsAreShutAndCourtsAreOpen) {
    Construye({{{1200, 1200}, {1800, 1200}, {1800, 1800}, {1200, 1800}},
               {{1400, 1400}, {1600, 1400}, {1600, 1600}, {1400, 1600}}},
              80);
    const double techoPatio = m_dTecho;
    Construye({kEle}, 60);
    const Imagen imagen = Mira(180, 90);
    for (double x = 22; x < 79; x += 3)
        for (double y = 32; y < 59; y += 3)
            EXPECT_EQ(En(imagen, x, y, m_dTecho), kTejado) << x << ", " << y;
    EXPECT_EQ(En(imagen, 35, 90, m_dTecho), kTejado) << "the wing to the north";
    EXPECT_EQ(En(imagen, 65, 80, 20), kSuelo) << "the corner that the outline leaves out";
    EXPECT_EQ(En(imagen, 130, 150, techoPatio), kTejado);
    EXPECT_EQ(En(imagen, 150, 150, 20), kSuelo) << "the court";
    EXPECT_EQ(En(imagen, 100, 100, 20), kSuelo);
}

TEST_F(Paisaje, FromEachSideItsWallIsSeenUnderTheRoof) {
    for (const auto& [azimut, x, y] : {std::array{180, 100, 80}, {90, 120, 100}, {0, 100, 120}, {270, 80, 100}}) {
        m_edificios.clear();
        m_escena.Destruir();
        m_escena.SetDEM(&m_dem);
        Construye({{{800, 800}, {1200, 800}, {1200, 1200}, {800, 1200}}}, 200, {1000, 1000, 150});
        const Imagen imagen = Mira(azimut, 20);
        EXPECT_EQ(En(imagen, x, y, m_dTecho - 8), kPared) << azimut;
        EXPECT_EQ(En(imagen, (x + 100) / 2.0, (y + 100) / 2.0, m_dTecho + 7.5), kTejado) << azimut;
        const CPoint cumbre = Pixel(100, 100, m_dTecho + 15);
        EXPECT_EQ(imagen.Pixel(cumbre.x, cumbre.y + 4), kTejado) << azimut;
        EXPECT_NE(imagen.Pixel(cumbre.x, cumbre.y - 4), kTejado) << azimut;
    }
}

TEST_F(Paisaje, TreesStandOnTheHillWithTheirTopsUp) {
    Planta({{500, 500}}, 30, 1);
    Planta({{1500, 500}}, 30, 0);
    const Imagen imagen = Mira(180, 5);
    const double z1 = Altura(1050, 2050), z2 = Altura(1150, 2050);
    EXPECT_EQ(En(imagen, 50, 50, z1 + 20), kCopa);
    EXPECT_EQ(En(imagen, 50, 50, z1 + 5), (Color{255, 128, 0})) << "the trunk";
    EXPECT_EQ(En(imagen, 150, 50, z2 + 15), kAbeto);
    EXPECT_EQ(En(imagen, 150, 50, z2 + 4), (Color{128, 64, 0})) << "the trunk";
    // A cone is narrow above and wide below.
    EXPECT_NE(En(imagen, 155, 50, z2 + 25), kAbeto);
    EXPECT_EQ(En(imagen, 155, 50, z2 + 9), kAbeto);
    const CPoint cumbre = Pixel(150, 50, z2 + 30);
    EXPECT_EQ(imagen.Pixel(cumbre.x, cumbre.y + 5), kAbeto);
    EXPECT_NE(imagen.Pixel(cumbre.x, cumbre.y - 3), kAbeto);
}

TEST_F(Paisaje, AVillageInAWoodIsFarFromEmpty) {
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 3; ++j) {
            const int x = 150 + 430 * i, y = 200 + 380 * j;
            Construye({{{x, y}, {x + 160, y}, {x + 160, y + 120}, {x, y + 120}}}, 60 + 20 * i, {x + 80, y + 60, 50});
        }
    std::mt19937 azar(2);
    std::uniform_int_distribution<int> dado(0, 2000), alto(1350, 2000);
    std::vector<std::array<int, 2>> abetos, naranjos;
    for (int i = 0; i < 120; ++i)
        abetos.push_back({dado(azar), alto(azar)});
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 3; ++j)
            naranjos.push_back({50 + 430 * i, 130 + 380 * j});
    Planta(abetos, 14, 0);
    Planta(naranjos, 9, 1);
    const Imagen imagen = Mira(200, 35);
    std::array<int, 4> veces{};
    for (int y = 0; y < kAlto; ++y)
        for (int x = 0; x < kAncho; ++x) {
            const Color c = imagen.Pixel(x, y);
            veces[0] += c == kTejado, veces[1] += c == kPared, veces[2] += c == kAbeto, veces[3] += c == kCopa;
        }
    EXPECT_GT(veces[0], 1000);
    EXPECT_GT(veces[1], 500);
    EXPECT_GT(veces[2], 2000);
    EXPECT_GT(veces[3], 300);
}

}  // namespace
