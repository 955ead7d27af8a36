// Pictures from inside a made panorama: what lies north, east, south, west, above and below is told by its colour.

#include "EscenaPanorama.h"

#include <cmath>
#include <numbers>
#include <string>

namespace {

constexpr unsigned kNorte = 0xFF0000, kEste = 0x00FF00, kSur = 0x0000FF, kOeste = 0xFFFF00, kCielo = 0xFFFFFF,
                   kSuelo = 0x000000, kFondo = 0x102030;
constexpr int kAncho = 200, kAlto = 100;
constexpr float kVista = 80.0F;  // vertical

constexpr double kGrado = std::numbers::pi / 180.0;

// Four quarters about the picture's middle, the first of them north; the upper and the lower eighth are sky and ground.
Foto::Color Cuartos(int fila, int columna) {
    const auto rgb = [](unsigned c) { return Foto::Color{BYTE(c >> 16), BYTE(c >> 8), BYTE(c)}; };
    if (fila >= 28) return rgb(kCielo);
    if (fila < 4) return rgb(kSuelo);
    constexpr unsigned kColores[4] = {kSur, kOeste, kNorte, kEste};
    return rgb(kColores[(columna + 8) / 16 % 4]);
}

class Vista : public testing::Test {
  protected:
    void SetUp() override {
        CDataGL data = m_Escena.GetData();
        data.m_nColorFondo = 0x302010;
        data.m_nEjes = 0;
        m_Escena.SetData(data);
        m_Escena.SetAnguloVista(kVista);
        m_Escena.GetImagen()->m_bDirecta = true;
        m_Escena.GetImagen()->m_Correcciones[2] = 180.0;  // the middle looks north
    }

    void Mira(double azimut, double elevacion) {
        if (!m_Escena.m_hRC) {
            ASSERT_EQ(m_Escena.Monta(m_Tela, kAncho, kAlto), 1);
            ASSERT_TRUE(m_Escena.SetBkColor());
        }
        const double a = azimut * kGrado, e = elevacion * kGrado;
        m_Escena.GetCamara().PositionCamera({0, 0, 0, 0},
                                            {std::sin(a) * std::cos(e), std::sin(e), -std::cos(a) * std::cos(e), 0},
                                            {-std::sin(a) * std::sin(e), std::cos(e), std::cos(a) * std::sin(e), 0});
        ASSERT_EQ(m_Escena.Render(), 1);
    }
    /// Colour of a pixel from the picture's middle: x to the right, y upwards.
    unsigned En(int x, int y) const { return m_Tela.Pixel(kAncho / 2 + x, kAlto / 2 + y); }
    /// How many pixels from the middle a direction lies that is so many degrees beside the view.
    static double Pixeles(double grados) {
        return std::tan(grados * kGrado) / std::tan(kVista / 2 * kGrado) * kAlto / 2;
    }

    Tela m_Tela{kAncho, kAlto};
    EscenaPanorama m_Escena{new ImagenContada(new Foto(64, 32, Cuartos)), 1};
};

TEST_F(Vista, EachAzimuthShowsItsQuarter) {
    const unsigned colores[] = {kNorte, kEste, kSur, kOeste};
    for (int i = 0; i < 4; ++i)
        for (const int desvio : {-40, 0, 40}) {
            Mira(90.0 * i + desvio, 0.0);
            EXPECT_EQ(En(0, 0), colores[i]) << 90 * i + desvio;
        }
}

TEST_F(Vista, RightIsClockwise) {
    Mira(0.0, 0.0);
    const double borde = Pixeles(45.0);
    EXPECT_EQ(En(int(borde - 2), 0), kNorte);
    EXPECT_EQ(En(int(borde + 2), 0), kEste);
    EXPECT_EQ(En(-int(borde - 2), 0), kNorte);
    EXPECT_EQ(En(-int(borde + 2), 0), kOeste);
    Mira(180.0, 0.0);
    EXPECT_EQ(En(int(borde + 2), 0), kOeste);
    EXPECT_EQ(En(-int(borde + 2), 0), kEste);
}

TEST_F(Vista, UpIsUp) {
    const double borde = Pixeles(67.5 - 50.0);
    Mira(0.0, 50.0);
    EXPECT_EQ(En(0, 0), kNorte);
    EXPECT_EQ(En(0, int(borde - 2)), kNorte);
    EXPECT_EQ(En(0, int(borde + 2)), kCielo);
    Mira(0.0, -50.0);
    EXPECT_EQ(En(0, 0), kNorte);
    EXPECT_EQ(En(0, -int(borde - 2)), kNorte);
    EXPECT_EQ(En(0, -int(borde + 2)), kSuelo);
    Mira(30.0, 90.0);
    EXPECT_EQ(En(0, 0), kCielo);
    Mira(30.0, -90.0);
    EXPECT_EQ(En(0, 0), kSuelo);
}

TEST_F(Vista, TheWholeSphereIsCoveredWithoutASeam) {
    for (int azimut = 0; azimut < 360; azimut += 45)
        for (const int elevacion : {-80, -30, 0, 30, 80}) {
            Mira(azimut, elevacion);
            int vacios = 0;
            for (int y = 0; y < kAlto; ++y)
                for (int x = 0; x < kAncho; ++x)
                    vacios += m_Tela.Pixel(x, y) == kFondo;
            EXPECT_EQ(vacios, 0) << azimut << ", " << elevacion;
        }
}

TEST_F(Vista, APartOfTheSphereLeavesTheRestToTheBackground) {
    // From 30 degrees under the horizon to 45 over it; all rows of the picture lie within.
    m_Escena.GetImagen()->m_dPolarInicio = 60.0;
    m_Escena.GetImagen()->m_dPolarFin = 135.0;
    Mira(0.0, 30.0);
    const int arriba = int(Pixeles(15.0));
    EXPECT_EQ(En(0, 0), kNorte);
    EXPECT_EQ(En(0, arriba - 3), kCielo);
    EXPECT_EQ(En(0, arriba + 3), kFondo);
    Mira(0.0, -15.0);
    EXPECT_EQ(En(0, -arriba + 3), kSuelo);
    EXPECT_EQ(En(0, -arriba - 3), kFondo);
}

TEST_F(Vista, TheMiddleLooksSouthWithoutAngles) {
    m_Escena.GetImagen()->m_Correcciones[2] = 0.0;
    Mira(180.0, 0.0);
    EXPECT_EQ(En(0, 0), kNorte) << "the middle quarter";
    Mira(270.0, 0.0);
    EXPECT_EQ(En(0, 0), kEste) << "the one to its right";
}

TEST_F(Vista, ATurnOfTheImageTurnsThePictureTheOtherWay) {
    for (const double azimut : {90.0, 180.0, 270.0}) {
        m_Escena.GetImagen()->m_Correcciones[2] = 180.0 - azimut;
        Mira(azimut, 0.0);
        EXPECT_EQ(En(0, 0), kNorte) << "the middle now looks to " << azimut;
    }
}

TEST_F(Vista, TheRecordedAttitudeAgreesWithThePointsOfTheTerrain) {
    // The transformation that carries terrain points to pixels knows nothing of OpenGL: a direction that it sees on
    // column c must show what the picture has there.
    Vertiz::CDataTransformacion& trans = m_Escena.GetImagen()->GetDataImagen().DataTrans();
    trans.SetAngulos(4.0, -6.0, 75.0);
    m_Escena.GetImagen()->m_Correcciones[2] = 0.0;
    trans.m_Interior.Set(0, 0, 64 / (2 * std::numbers::pi));
    trans.m_Interior.Set(1, 1, 32 / std::numbers::pi);
    trans.m_CentroImagen = {32, 16, 0};
    for (int azimut = 5; azimut < 360; azimut += 20)
        for (const int elevacion : {-70, -35, 10, 55, 75}) {
            const double a = azimut * kGrado, e = elevacion * kGrado;
            Vertiz::CCoor3D<double> pixel;
            ASSERT_TRUE(trans.Transforma(
                {100 * std::sin(a) * std::cos(e), 100 * std::cos(a) * std::cos(e), 100 * std::sin(e), 0}, pixel));
            const double dentroX = std::abs(std::remainder(pixel.x - 8.0, 16.0)),
                         dentroY = std::abs(std::abs(pixel.y - 16.0) - 12.0);
            if (dentroX < 1.0 || dentroY < 1.0) continue;  // too near a border to tell
            const Foto::Color c = Cuartos(31 - int(pixel.y), int(pixel.x));
            Mira(azimut, elevacion);
            EXPECT_EQ(En(0, 0), unsigned(c[0] << 16 | c[1] << 8 | c[2])) << azimut << ", " << elevacion;
        }
}

}  // namespace
