// What was drawn reaches the bitmap: exact pixels, the right way up, whatever the scene's state.

#include "Memoria.h"
#include "platform/DiagnosticoGL.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using Pixel = std::array<int, 3>;

class Presentacion : public testing::Test {
  protected:
    void Usa(const Memoria& m) {
        ASSERT_TRUE(m.m_bFormato) << UltimoFalloGL();
        m_hRC = wglCreateContext(m.hdc());
        ASSERT_TRUE(wglMakeCurrent(m.hdc(), m_hRC)) << UltimoFalloGL();
    }
    void TearDown() override { wglDeleteContext(m_hRC); }

    HGLRC m_hRC = nullptr;
};

TEST_F(Presentacion, ColoursArriveExactly) {
    Memoria m(5, 3);
    Usa(m);
    Limpia(10, 120, 250);
    EXPECT_EQ(m.Pixel(0, 0), (Pixel{0, 0, 0})) << "a new bitmap is black";
    ASSERT_TRUE(SwapBuffers(m.hdc()));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x)
            EXPECT_EQ(m.Pixel(x, y), (Pixel{250, 120, 10}));
    EXPECT_FALSE(HayErrorGL());
}

TEST_F(Presentacion, TheFirstRowIsTheBottomOne) {
    for (UINT bits : {24u, 32u}) {
        Memoria m(7, 9, bits);
        Usa(m);
        glViewport(0, 0, 7, 9);
        Limpia(0, 0, 0);
        glEnable(GL_SCISSOR_TEST);
        glScissor(1, 2, 3, 1);
        Limpia(255, 0, 0);  // row 2 from the bottom, columns 1 to 3
        ASSERT_TRUE(SwapBuffers(m.hdc()));
        EXPECT_TRUE(glIsEnabled(GL_SCISSOR_TEST));
        for (int y = 0; y < 9; ++y)
            for (int x = 0; x < 7; ++x)
                EXPECT_EQ(m.Pixel(x, y), (y == 2 && x >= 1 && x <= 3 ? Pixel{0, 0, 255} : Pixel{0, 0, 0}))
                    << x << ' ' << y;
        wglDeleteContext(m_hRC);
    }
}

TEST_F(Presentacion, TheScenesPixelStateNeitherHindersNorChanges) {
    Memoria m(6, 4);
    Usa(m);
    Limpia(40, 50, 60);
    glPixelStorei(GL_PACK_ROW_LENGTH, 100);
    glPixelStorei(GL_PACK_SKIP_ROWS, 2);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelTransferf(GL_RED_SCALE, 0.5f);
    glPixelTransferf(GL_BLUE_BIAS, 0.5f);
    glReadBuffer(GL_FRONT);
    ASSERT_TRUE(SwapBuffers(m.hdc()));
    EXPECT_EQ(m.Pixel(3, 2), (Pixel{60, 50, 40}));
    GLint largo = 0, lectura = 0;
    GLfloat escala = 0;
    glGetIntegerv(GL_PACK_ROW_LENGTH, &largo);
    glGetIntegerv(GL_READ_BUFFER, &lectura);
    glGetFloatv(GL_RED_SCALE, &escala);
    EXPECT_EQ(largo, 100);
    EXPECT_EQ(lectura, GL_FRONT);
    EXPECT_EQ(escala, 0.5f);
    EXPECT_FALSE(HayErrorGL());
}

TEST_F(Presentacion, DepthStaysAfterPresenting) {
    Memoria m(4, 4);
    Usa(m);
    glEnable(GL_DEPTH_TEST);
    glClearDepth(0.25);
    Limpia(0, 0, 0);
    ASSERT_TRUE(SwapBuffers(m.hdc()));
    GLfloat z[16] = {};
    glReadPixels(0, 0, 4, 4, GL_DEPTH_COMPONENT, GL_FLOAT, z);
    for (GLfloat v : z)
        EXPECT_NEAR(v, 0.25f, 1e-6f);
}

TEST_F(Presentacion, XorOnTheFrontBufferShowsAndWipes) {
    Memoria m(8, 8);
    Usa(m);
    glViewport(0, 0, 8, 8);
    Limpia(10, 20, 30);
    ASSERT_TRUE(SwapBuffers(m.hdc()));
    Xorea();
    EXPECT_EQ(m.Pixel(1, 1), (Pixel{30, 20, 10})) << "nobody has asked for it yet";
    ASSERT_TRUE(GdiFlush());
    EXPECT_EQ(m.Pixel(1, 1), (Pixel{30, 20 ^ 255, 10 ^ 255}));
    EXPECT_EQ(m.Pixel(6, 6), (Pixel{30, 20, 10}));
    Xorea();
    EXPECT_FALSE(HayErrorGL());
    ASSERT_TRUE(GdiFlush());
    EXPECT_EQ(m.Pixel(1, 1), (Pixel{30, 20, 10}));
}

TEST_F(Presentacion, ABitmapOfTheSameSizeTakesOver) {
    Memoria m(4, 4);
    Usa(m);
    CBitmap otro, mayor;
    ASSERT_TRUE(otro.CreateBitmap(4, 4, 32));
    ASSERT_TRUE(mayor.CreateBitmap(5, 4, 24));
    EXPECT_EQ(m.m_DC.SelectObject(&mayor), nullptr) << "the surface has another size";
    EXPECT_EQ(m.m_DC.SelectObject(&otro), &m.m_Bitmap);
    Limpia(9, 8, 7);
    ASSERT_TRUE(SwapBuffers(m.hdc()));
    BITMAP b{};
    ASSERT_TRUE(otro.GetBitmap(&b));
    EXPECT_EQ(static_cast<BYTE*>(b.bmBits)[0], 7);
    EXPECT_EQ(m.Pixel(0, 0), (Pixel{0, 0, 0}));
}

TEST_F(Presentacion, ADeletedBitmapLivesOnInTheDevice) {
    Memoria m(4, 4);
    Usa(m);
    EXPECT_TRUE(m.m_Bitmap.DeleteObject());
    Limpia(1, 2, 3);
    EXPECT_TRUE(SwapBuffers(m.hdc()));
    EXPECT_NE(m.m_DC.GetCurrentBitmap(), &m.m_Bitmap);
}

TEST_F(Presentacion, WithoutACurrentContextThereIsNothingToCopy) {
    Memoria m(4, 4), otra(4, 4);
    EXPECT_FALSE(SwapBuffers(m.hdc()));
    Usa(otra);
    EXPECT_FALSE(SwapBuffers(m.hdc()));
    EXPECT_TRUE(wglMakeCurrent(nullptr, nullptr));
    EXPECT_TRUE(GdiFlush());
}

TEST_F(Presentacion, WhoDrawsNowhereIsTold) {
    Memoria m(4, 4);
    Usa(m);
    HGLRC otro = wglCreateContext(m.hdc());
    std::thread([&] {
        ASSERT_TRUE(wglMakeCurrent(m.hdc(), otro));
        Limpia(200, 0, 0);
        // Either the surface serves both threads, or this one is told that it has none.
        if (SwapBuffers(m.hdc())) {
            EXPECT_EQ(m.Pixel(0, 0), (Pixel{0, 0, 200}));
        } else {
            EXPECT_NE(UltimoFalloGL().find("another thread"), std::string::npos);
        }
    }).join();
    // Once alone it draws, also when its first use had no surface.
    ASSERT_TRUE(wglMakeCurrent(m.hdc(), otro));
    Limpia(0, 100, 0);
    glViewport(0, 0, 4, 4);
    glColor3ub(0, 0, 77);
    glRectf(-1, -1, 0, 0);
    ASSERT_TRUE(SwapBuffers(m.hdc()));
    EXPECT_EQ(m.Pixel(3, 3), (Pixel{0, 100, 0}));
    EXPECT_EQ(m.Pixel(0, 0), (Pixel{77, 0, 0}));
    EXPECT_TRUE(wglDeleteContext(otro));
}

TEST_F(Presentacion, ImpossibleSizesAreAClearFailure) {
    for (auto [ancho, alto] : {std::pair{100000, 16}, {16, 100000}}) {
        Memoria m(ancho, alto);
        EXPECT_TRUE(m.m_bSeleccionado);
        EXPECT_FALSE(m.m_bFormato);
        EXPECT_NE(UltimoFalloGL().find("100000"), std::string::npos) << UltimoFalloGL();
        EXPECT_EQ(GetPixelFormat(m.hdc()), 0);
        EXPECT_EQ(wglCreateContext(m.hdc()), nullptr);
    }
}

TEST_F(Presentacion, ALargePictureIsDrawnWhole) {
    Memoria m(6000, 40);
    Usa(m);
    glViewport(0, 0, 6000, 40);
    Limpia(0, 0, 0);
    glColor3ub(255, 255, 255);
    glRectf(0.999f, -1, 1, 1);
    ASSERT_TRUE(SwapBuffers(m.hdc()));
    EXPECT_EQ(m.Pixel(5999, 39), (Pixel{255, 255, 255}));
    EXPECT_EQ(m.Pixel(5990, 39), (Pixel{0, 0, 0}));
}

}  // namespace
