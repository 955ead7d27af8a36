// Palettes of displays with few colours, and the copy of the picture.

#include "EscenaPrueba.h"
#include "support/RegistroGL.h"

#include <array>

TEST(CGLPaleta, AChannelIsSpreadOverAByte) {
    EscenaPrueba escena;
    EXPECT_EQ(escena.ComponentFromIndex(1, 1, 0), 255);
    EXPECT_EQ(escena.ComponentFromIndex(2, 1, 0), 0);
    EXPECT_EQ(escena.ComponentFromIndex(0b10'0000, 2, 4), 0xAA);
    EXPECT_EQ(escena.ComponentFromIndex(0b101'000, 3, 3), 0xB6);
    EXPECT_EQ(escena.ComponentFromIndex(0xFF, 4, 0), 0);
    EXPECT_EQ(escena.ComponentFromIndex(0xFF, 0, 0), 0);
}

TEST_F(ConEscena, ATrueColourDisplayNeedsNoPalette) {
    EXPECT_EQ(m_Escena.CreatePalette(), 0);
    EXPECT_EQ(m_Escena.GetPalette(), nullptr);
}

TEST(CGLPaleta, ASceneWithoutADeviceContextGetsNone) {
    EscenaPrueba escena;
    EXPECT_EQ(escena.CreatePalette(), 0);
}

TEST_F(ConEscena, ThePictureIsReadFromItsLowerLeftCorner) {
    m_Escena.SetEjes(0);
    ASSERT_EQ(m_Escena.Render(), 1);
    std::array<char, 64 * 48 * 3> buffer{};
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(64, 48), buffer.data()), 0);
    const char* pixel = buffer.data() + (15 * 64 + 25) * 3;
    EXPECT_EQ(pixel[0], 0);
    EXPECT_EQ(static_cast<unsigned char>(pixel[1]), 255);
    EXPECT_EQ(pixel[2], 0);
}

TEST_F(ConEscena, CaptureTellsWhyItFailed) {
    char buffer[3];
    EscenaPrueba sinContexto;
    EXPECT_EQ(sinContexto.CapturaImagen(CSize(1, 1), buffer), 3);
    const FallaGL falla("glReadPixels", 1);
    EXPECT_EQ(m_Escena.CapturaImagen(CSize(1, 1), buffer), 4);
    wglMakeCurrent(nullptr, nullptr);
}
