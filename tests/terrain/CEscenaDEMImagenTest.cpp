// What a terrain looks like: invariants of the picture.

#include "EscenaTerreno.h"

#include <cmath>

namespace {

using modelos::kVacio;
using modelos::Rejilla;

constexpr int kFondo = 0x402010;

class Foto : public testing::Test {
  protected:
    using Ajuste = std::function<void(EscenaTerreno&)>;

    /// A picture as a host takes one; looking straight down unless `ojo` says from where.
    Imagen Toma(Vertiz::CDEM& dem, int ancho, int alto, const Ajuste& ajuste = {},
                const Vertiz::CCoor3D<double>* ojo = nullptr) {
        Tela tela(ancho, alto);
        EscenaTerreno escena(&dem);
        escena.SetQuad(1);
        escena.SetEjes(0);
        escena.SetColorFondo(kFondo);
        escena.SetTipoColorMDT(2);
        escena.Data().m_GamaColor = Vertiz::CDataGamaColor(L"-1 0 60 200;60 250 120 0");
        if (ajuste) ajuste(escena);
        EXPECT_EQ(escena.Crear(tela.DC(), PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL), 1);
        escena.OnZoomExtension();
        EXPECT_EQ(escena.Iniciar(), 1);
        EXPECT_EQ(escena.Resize(ancho, alto), 1);
        escena.OnZoomExtension();
        if (ojo) escena.GetCamara().PositionCamera(*ojo, {0, 0, 0, 0}, {0, 1, 0, 0});
        EXPECT_EQ(escena.SetBkColor(), 1);
        EXPECT_EQ(escena.Render(), 1);
        return tela.Lee();
    }
};

std::array<std::uint8_t, 3> Fondo() {
    return {kFondo & 0xFF, kFondo >> 8 & 0xFF, kFondo >> 16 & 0xFF};
}

int CuentaFondo(const Imagen& imagen) {
    int n = 0;
    for (int y = 0; y < imagen.alto; ++y)
        for (int x = 0; x < imagen.ancho; ++x)
            n += imagen.Pixel(x, y) == Fondo();
    return n;
}

Imagen Girada(const Imagen& a) {  // a quarter clockwise
    Imagen b(a.alto, a.ancho);
    for (int y = 0; y < a.alto; ++y)
        for (int x = 0; x < a.ancho; ++x)
            b.Pinta(a.alto - 1 - y, x, a.Pixel(x, y));
    return b;
}

float Plano(int r, int c) {
    return r == 2 && c == 5 ? kVacio : float(3 * r + c);
}

TEST_F(Foto, NorthIsUpAndEastIsRight) {
    Vertiz::CDEM dem = Rejilla(9, 9, [](int r, int c) { return r == 0 || c == 8 ? 50.0F : 0.0F; });
    const Imagen imagen = Toma(dem, 90, 90);
    EXPECT_GT(imagen.Pixel(45, 2)[0], 150) << "high in the north";
    EXPECT_GT(imagen.Pixel(87, 45)[0], 150) << "and in the east";
    EXPECT_LT(imagen.Pixel(45, 87)[0], 100);
    EXPECT_LT(imagen.Pixel(2, 45)[0], 100);
}

TEST_F(Foto, ATurnedTerrainGivesTheTurnedPicture) {
    Vertiz::CDEM dem = Rejilla(9, 9, Plano);
    Vertiz::CDEM girado = Rejilla(9, 9, [](int r, int c) { return Plano(8 - c, r); });
    const Imagen una = Toma(dem, 101, 101), otra = Toma(girado, 101, 101);
    EXPECT_NE(una, otra);
    EXPECT_TRUE(IgualImagen(otra, Girada(una), {.canal = 3, .parte = 0.01}));
}

TEST_F(Foto, ExaggerationOfTwoOnHalfTheHeightsEqualsOneOnTheWhole) {
    const auto altura = [](int r, int c) { return float(20 + 10 * std::sin(r) * std::cos(c)); };
    Vertiz::CDEM entera = Rejilla(12, 12, altura);
    Vertiz::CDEM media = Rejilla(12, 12, [&](int r, int c) { return altura(r, c) / 2; });
    const auto sinTinta = [](EscenaTerreno& e) {
        e.SetTipoColorMDT(1);
        e.SetRelleno(1);
        e.SetBase(1);
    };
    const Vertiz::CCoor3D<double> ojo(1, 1, 1, 0);
    const Imagen una = Toma(entera, 120, 90, sinTinta, &ojo);
    const Imagen otra = Toma(
        media, 120, 90,
        [&](EscenaTerreno& e) {
            sinTinta(e);
            e.SetExageracionVertical(2);
        },
        &ojo);
    EXPECT_TRUE(IgualImagen(otra, una));
    EXPECT_LT(CuentaFondo(una), 120 * 90) << "something is seen";
    EXPECT_NE(una, Toma(media, 120, 90, sinTinta, &ojo));
}

TEST_F(Foto, VoidsAreHolesAndNotCliffs) {
    Vertiz::CDEM dem = Rejilla(9, 9, [](int r, int c) { return r == 4 && c == 4 ? kVacio : 10.0F; });
    const Imagen imagen = Toma(dem, 100, 100);
    EXPECT_EQ(imagen.Pixel(50, 50), Fondo());
    EXPECT_NE(imagen.Pixel(20, 20), Fondo());
    // Seen from the side a flat terrain stays flat: nothing hangs down from the hole.
    const Vertiz::CCoor3D<double> ojo(0, 0.02, 1, 0);
    const Imagen lado = Toma(dem, 100, 100, {}, &ojo);
    for (int y = 60; y < 100; ++y)
        EXPECT_EQ(lado.Pixel(50, y), Fondo()) << y;
}

TEST_F(Foto, MillionsOfMetresAwayThePictureIsTheSame) {
    const auto altura = [](int r, int c) { return float(20 + 10 * std::sin(r * 0.7) * std::cos(c * 1.1)); };
    Vertiz::CDEM cerca = Rejilla(40, 40, altura, {.celdaX = 0.5, .celdaY = 0.5});
    Vertiz::CDEM lejos = Rejilla(40, 40, altura, {.celdaX = 0.5, .celdaY = 0.5, .oeste = 699999.5, .sur = 4799999.5});
    const Vertiz::CCoor3D<double> ojo(1, 1, 1, 0);
    for (const unsigned quad : {0u, 1u, 2u}) {
        const auto ajuste = [quad](EscenaTerreno& e) {
            e.SetQuad(quad);
            e.SetBase(1);
        };
        const Imagen una = Toma(cerca, 160, 120, ajuste, &ojo);
        EXPECT_LT(CuentaFondo(una), 160 * 120 - 1000) << "something is seen";
        EXPECT_TRUE(IgualImagen(Toma(lejos, 160, 120, ajuste, &ojo), una, {.canal = 2, .parte = 0.001})) << quad;
    }
}

TEST_F(Foto, AClosedBlockHidesItsInside) {
    // Nothing of the background is seen through the block: all of its silhouette is covered from every side.
    Vertiz::CDEM dem = Rejilla(9, 9, [](int r, int c) { return float(30 + 10 * std::sin(r) * std::cos(c)); });
    const auto base = [](EscenaTerreno& e) { e.SetBase(1); };
    for (const Vertiz::CCoor3D<double>& ojo :
         {Vertiz::CCoor3D<double>(1, 0.7, 1, 0), {-1, 0.7, 1, 0}, {-1, -0.7, -1, 0}, {1, -0.7, -1, 0}}) {
        const Imagen imagen = Toma(dem, 120, 120, base, &ojo);
        for (int y = 0; y < imagen.alto; ++y) {
            int cambios = 0;
            for (int x = 1; x < imagen.ancho; ++x)
                cambios += (imagen.Pixel(x, y) == Fondo()) != (imagen.Pixel(x - 1, y) == Fondo());
            EXPECT_LE(cambios, 2) << "row " << y;
        }
    }
}

TEST_F(Foto, StripsAndQuadsOfAWholeGridLookTheSame) {
    Vertiz::CDEM dem = Rejilla(9, 9, [](int r, int c) { return float(3 * r + c); });
    const Imagen quads = Toma(dem, 101, 101);
    EXPECT_TRUE(IgualImagen(Toma(dem, 101, 101, [](EscenaTerreno& e) { e.SetQuad(0); }), quads, {.canal = 3}));
}

TEST_F(Foto, ChildrenShareTheParentsFrame) {
    Vertiz::CDEM oeste = Rejilla(5, 5, [](int, int) { return 10.0F; });
    Vertiz::CDEM este = Rejilla(5, 5, [](int, int) { return 10.0F; }, {.oeste = 40});
    Vertiz::CDEM ambos = Rejilla(5, 9, [](int, int) { return 10.0F; });
    const Imagen uno = Toma(ambos, 120, 90);
    const Imagen dos = Toma(oeste, 120, 90, [&este](EscenaTerreno& e) { e.ReferenciaNuevo(new EscenaTerreno(&este)); });
    EXPECT_TRUE(IgualImagen(dos, uno, {.canal = 2, .parte = 0.002}));
}

}  // namespace
