// Copies of pixels: to the byte, where sizes don't change; and what is refused.

#include "platform/CopiasDIB.h"

#include "platform/CWnd.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Errores.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

BITMAPINFO Cabecera(int ancho, int alto, int bits) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = 40;
    info.bmiHeader.biWidth = ancho;
    info.bmiHeader.biHeight = alto;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = static_cast<WORD>(bits);
    return info;
}

std::size_t Paso(int ancho, int bits) {
    return static_cast<std::size_t>(BytesDeFila(ancho, static_cast<unsigned>(bits)));
}

// Every byte another one, as far as bytes go; padding too.
std::vector<BYTE> Buffer(int ancho, int alto, int bits, int desde = 1) {
    std::vector<BYTE> b(Paso(ancho, bits) * static_cast<std::size_t>(alto));
    for (std::size_t i = 0; i < b.size(); ++i)
        b[i] = static_cast<BYTE>(static_cast<std::size_t>(desde) + i * 7);
    return b;
}

std::array<int, 3> Pixel(const CBitmap& bitmap, int x, int y) {
    BITMAP b{};
    bitmap.GetBitmap(&b);
    const BYTE* p = static_cast<const BYTE*>(b.bmBits) + y * b.bmWidthBytes + x * b.bmBitsPixel / 8;
    return {p[0], p[1], p[2]};
}

std::array<int, 3> Pixel(const std::vector<BYTE>& buffer, int ancho, int bits, int x, int y) {
    const BYTE* p =
        buffer.data() + Paso(ancho, bits) * static_cast<std::size_t>(y) + static_cast<std::size_t>(x * bits / 8);
    return {p[0], p[1], p[2]};
}

constexpr std::array<int, 3> kNegro = {0, 0, 0};

// Depth of the buffer, depth of the bitmap.
class CopiasDIB : public testing::TestWithParam<std::pair<int, int>> {
  protected:
    const int m_nDe = GetParam().first, m_nA = GetParam().second;
};

TEST_P(CopiasDIB, SettingFillsRowsFromTheOneThatIsNamed) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(5, 4, static_cast<UINT>(m_nA)));
    const auto buffer = Buffer(5, 4, m_nDe);
    const BITMAPINFO info = Cabecera(5, 4, m_nDe);
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 1, 4, buffer.data(), &info, 0), 3) << "the last row has no place";
    for (int x = 0; x < 5; ++x) {
        EXPECT_EQ(Pixel(bitmap, x, 0), kNegro) << "below the first row nothing changes";
        for (int y = 0; y < 3; ++y)
            EXPECT_EQ(Pixel(bitmap, x, y + 1), Pixel(buffer, 5, m_nDe, x, y));
    }
}

TEST_P(CopiasDIB, SettingTakesTheWidthThatBothHave) {
    for (int ancho : {3, 9}) {
        CBitmap bitmap;
        ASSERT_TRUE(bitmap.CreateBitmap(ancho, 2, static_cast<UINT>(m_nA)));
        const auto buffer = Buffer(6, 2, m_nDe);
        const BITMAPINFO info = Cabecera(6, 2, m_nDe);
        EXPECT_EQ(SetDIBits(nullptr, bitmap, 0, 2, buffer.data(), &info, 0), 2);
        for (int x = 0; x < ancho; ++x)
            EXPECT_EQ(Pixel(bitmap, x, 1), x < 6 ? Pixel(buffer, 6, m_nDe, x, 1) : kNegro) << x;
    }
}

TEST_P(CopiasDIB, WhatIsSetComesBack) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(5, 4, static_cast<UINT>(m_nA)));
    const auto buffer = Buffer(5, 4, m_nDe);
    BITMAPINFO info = Cabecera(5, 4, m_nDe);
    ASSERT_EQ(SetDIBits(nullptr, bitmap, 0, 4, buffer.data(), &info, 0), 4);
    std::vector<BYTE> vuelta(buffer.size(), BYTE{0xee});
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 1, 2, vuelta.data(), &info, 0), 2);
    for (int x = 0; x < 5; ++x) {
        EXPECT_EQ(Pixel(vuelta, 5, m_nDe, x, 0), Pixel(buffer, 5, m_nDe, x, 1));
        EXPECT_EQ(Pixel(vuelta, 5, m_nDe, x, 1), Pixel(buffer, 5, m_nDe, x, 2));
    }
    EXPECT_EQ(vuelta[Paso(5, m_nDe) * 2], 0xee) << "not a byte beyond the rows asked for";
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 3, 75, vuelta.data(), &info, 0), 1) << "as many rows as there are";
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 4, 1, vuelta.data(), &info, 0), 0);
}

TEST_P(CopiasDIB, StretchingToTheSameSizeCopiesToTheByte) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(8, 6, static_cast<UINT>(m_nA)));
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    ASSERT_NE(dc.SelectObject(&bitmap), nullptr);
    const auto buffer = Buffer(5, 4, m_nDe);
    const BITMAPINFO info = Cabecera(5, 4, m_nDe);
    // A part of three by two, one column in and one row up, put one column in and one row down.
    EXPECT_EQ(StretchDIBits(dc, 1, 1, 3, 2, 1, 1, 3, 2, buffer.data(), &info, DIB_RGB_COLORS, SRCCOPY), 2);
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 8; ++x) {
            const bool dentro = x >= 1 && x < 4 && y >= 3 && y < 5;  // y counts from the bottom
            EXPECT_EQ(Pixel(bitmap, x, y), dentro ? Pixel(buffer, 5, m_nDe, x, y - 2) : kNegro) << x << ' ' << y;
        }
}

INSTANTIATE_TEST_SUITE_P(Profundidades, CopiasDIB,
                         testing::Values(std::pair(24, 24), std::pair(24, 32), std::pair(32, 24), std::pair(32, 32)));

class Estirado : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_Bitmap.CreateBitmap(40, 20, 24));
        ASSERT_TRUE(m_DC.CreateCompatibleDC(nullptr));
        ASSERT_NE(m_DC.SelectObject(&m_Bitmap), nullptr);
    }
    // Two halves, the left one of the first colour.
    static std::vector<BYTE> Mitades(int ancho, int alto, BYTE izquierda, BYTE derecha) {
        std::vector<BYTE> b(Paso(ancho, 24) * static_cast<std::size_t>(alto));
        for (int y = 0; y < alto; ++y)
            for (int i = 0; i < ancho * 3; ++i)
                b[Paso(ancho, 24) * static_cast<std::size_t>(y) + static_cast<std::size_t>(i)] =
                    i / 3 < ancho / 2 ? izquierda : derecha;
        return b;
    }
    CBitmap m_Bitmap;
    CDC m_DC;
};

TEST_F(Estirado, APictureFillsItsRectangleToTheEdges) {
    const auto buffer = Mitades(4, 2, 50, 200);
    const BITMAPINFO info = Cabecera(4, 2, 24);
    EXPECT_EQ(StretchDIBits(m_DC, 0, 0, 40, 20, 0, 0, 4, 2, buffer.data(), &info, DIB_RGB_COLORS, SRCCOPY), 2);
    for (int y : {0, 10, 19}) {
        EXPECT_EQ(Pixel(m_Bitmap, 0, y)[0], 50) << "the edge isn't blended with anything";
        EXPECT_EQ(Pixel(m_Bitmap, 39, y)[0], 200);
    }
}

TEST_F(Estirado, SmallerMeansTheMeanOfWhatIsThere) {
    std::vector<BYTE> rayas(Paso(400, 24) * 200);
    for (std::size_t i = 0; i < rayas.size(); ++i)
        rayas[i] = (i / Paso(400, 24)) % 2 ? 200 : 100;  // rows in turn
    const BITMAPINFO info = Cabecera(400, 200, 24);
    EXPECT_EQ(StretchDIBits(m_DC, 0, 0, 40, 20, 0, 0, 400, 200, rayas.data(), &info, DIB_RGB_COLORS, SRCCOPY), 200);
    for (int y = 2; y < 18; ++y)
        EXPECT_NEAR(Pixel(m_Bitmap, 20, y)[1], 150, 12);
}

TEST_F(Estirado, WhatLiesOutsideIsCut) {
    const auto buffer = Mitades(10, 10, 50, 200);
    const BITMAPINFO info = Cabecera(10, 10, 24);
    EXPECT_EQ(StretchDIBits(m_DC, -5, -5, 10, 10, 0, 0, 10, 10, buffer.data(), &info, DIB_RGB_COLORS, SRCCOPY), 10);
    EXPECT_EQ(Pixel(m_Bitmap, 0, 19)[0], 200);
    EXPECT_EQ(Pixel(m_Bitmap, 4, 15)[0], 200);
    EXPECT_EQ(Pixel(m_Bitmap, 5, 15), kNegro);
    EXPECT_EQ(StretchDIBits(m_DC, -40, 5, 80, 10, 0, 0, 10, 10, buffer.data(), &info, DIB_RGB_COLORS, SRCCOPY), 10);
    EXPECT_EQ(Pixel(m_Bitmap, 10, 10)[0], 200) << "cut from a stretched picture";
    EXPECT_EQ(StretchDIBits(m_DC, 100, 100, 10, 10, 0, 0, 10, 10, buffer.data(), &info, DIB_RGB_COLORS, SRCCOPY), 10);
    EXPECT_EQ(StretchDIBits(m_DC, -2000000, 0, 4000000, 20, 0, 0, 10, 10, buffer.data(), &info, 0, SRCCOPY), 10);
}

TEST_F(Estirado, WhatItCantDoIsRefused) {
    const auto buffer = Mitades(10, 10, 50, 200);
    const BITMAPINFO bueno = Cabecera(10, 10, 24);
    const auto prueba = [&](const BITMAPINFO* info, int sx, int sy, int sw, int sh, int w, int h, const void* bits) {
        SetLastError(0);
        const int n = StretchDIBits(m_DC, 0, 0, w, h, sx, sy, sw, sh, bits, info, DIB_RGB_COLORS, SRCCOPY);
        return n == 0 && GetLastError() == ERROR_INVALID_PARAMETER;
    };
    const void* bits = buffer.data();
    EXPECT_TRUE(prueba(&bueno, 0, 0, 10, 11, 5, 5, bits)) << "more than there is";
    EXPECT_TRUE(prueba(&bueno, 1, 0, 10, 10, 5, 5, bits));
    EXPECT_TRUE(prueba(&bueno, -1, 0, 5, 5, 5, 5, bits));
    EXPECT_TRUE(prueba(&bueno, 0, 0, 0, 5, 5, 5, bits));
    EXPECT_TRUE(prueba(&bueno, 0, 0, 5, 5, 0, 5, bits));
    EXPECT_TRUE(prueba(&bueno, 0, 0, 5, 5, 5, -5, bits));
    EXPECT_TRUE(prueba(&bueno, 0, 0, 5, 5, 2147483647, 5, bits));
    EXPECT_TRUE(prueba(&bueno, 2147483647, 0, 2147483647, 5, 5, 5, bits));
    EXPECT_TRUE(prueba(&bueno, 0, 0, 5, 5, 5, 5, nullptr));
    EXPECT_TRUE(prueba(nullptr, 0, 0, 5, 5, 5, 5, bits));
    BITMAPINFO otro = Cabecera(10, -10, 24);
    EXPECT_TRUE(prueba(&otro, 0, 0, 5, 5, 5, 5, bits)) << "rows from the top down";
    otro = Cabecera(10, 10, 8);
    EXPECT_TRUE(prueba(&otro, 0, 0, 5, 5, 5, 5, bits));
    otro = bueno;
    otro.bmiHeader.biCompression = 1;
    EXPECT_TRUE(prueba(&otro, 0, 0, 5, 5, 5, 5, bits));
    EXPECT_EQ(StretchDIBits(m_DC, 0, 0, 5, 5, 0, 0, 5, 5, bits, &bueno, 1, SRCCOPY), 0);
    EXPECT_EQ(StretchDIBits(m_DC, 0, 0, 5, 5, 0, 0, 5, 5, bits, &bueno, 0, 0), 0);
    EXPECT_EQ(StretchDIBits(nullptr, 0, 0, 5, 5, 0, 0, 5, 5, bits, &bueno, 0, SRCCOPY), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(Pixel(m_Bitmap, 0, 19), kNegro) << "nothing was drawn";
}

TEST(CopiasDIBSueltas, AskingForTheHeaderFillsItIn) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(5, 87, 32));
    BITMAPINFO info{};
    info.bmiHeader.biSize = 40;
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 0, 0, nullptr, &info, 0), 1);
    EXPECT_EQ(info.bmiHeader.biWidth, 5);
    EXPECT_EQ(info.bmiHeader.biHeight, 87);
    EXPECT_EQ(info.bmiHeader.biPlanes, 1);
    EXPECT_EQ(info.bmiHeader.biBitCount, 32);
    EXPECT_EQ(info.bmiHeader.biSizeImage, 5u * 4 * 87);
    info.bmiHeader.biBitCount = 24;
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 1, 75, nullptr, &info, 0), 1) << "another depth may be wanted";
    EXPECT_EQ(info.bmiHeader.biBitCount, 24);
    EXPECT_EQ(info.bmiHeader.biSizeImage, 16u * 87);
}

TEST(CopiasDIBSueltas, WrongArgumentsAreNumber87) {
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateBitmap(5, 4, 24));
    BITMAPINFO info = Cabecera(5, 4, 24);
    SetLastError(0);
    EXPECT_EQ(GetDIBits(nullptr, nullptr, 0, 4, nullptr, &info, 0), 87);
    EXPECT_EQ(GetLastError(), 87u);
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 0, 4, nullptr, nullptr, 0), 87);
    info.bmiHeader.biSize = 12;
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 0, 4, nullptr, &info, 0), 87);
    info = Cabecera(5, 4, 16);
    EXPECT_EQ(GetDIBits(nullptr, bitmap, 0, 4, nullptr, &info, 0), 87) << "a depth that isn't offered";
    const auto buffer = Buffer(5, 4, 24);
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 0, 4, buffer.data(), &info, 0), 0);
    info = Cabecera(5, 4, 24);
    EXPECT_EQ(SetDIBits(nullptr, nullptr, 0, 4, buffer.data(), &info, 0), 0);
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 4, 4, buffer.data(), &info, 0), 0);
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 0, 4, nullptr, &info, 0), 0);
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 0, 4, buffer.data(), nullptr, 0), 0);
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 0, 0, buffer.data(), &info, 0), 0);
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 0, 4000000000u, buffer.data(), &info, 0), 4);
    info.bmiHeader.biHeight = 2;
    EXPECT_EQ(SetDIBits(nullptr, bitmap, 0, 4, buffer.data(), &info, 0), 2) << "the buffer has no more";
}

TEST(CopiasDIBSueltas, DevicesByHandle) {
    const HDC hdc = CreateCompatibleDC(nullptr);
    ASSERT_NE(hdc, nullptr);
    EXPECT_EQ(GetDeviceCaps(hdc, HORZRES), 1);
    const HBITMAP uno = CreateCompatibleBitmap(hdc, 30, 20);
    ASSERT_NE(uno, nullptr) << UltimoFalloGL();
    const HBITMAP propio = SelectObject(hdc, uno);
    ASSERT_NE(propio, nullptr);
    EXPECT_EQ(GetDeviceCaps(hdc, HORZRES), 30);
    const HBITMAP otro = CreateCompatibleBitmap(hdc, 7, 8);
    EXPECT_EQ(SelectObject(hdc, otro), uno);
    EXPECT_TRUE(DeleteObject(otro)) << "selected still";
    EXPECT_EQ(SelectObject(hdc, uno), propio) << "one that was deleted can't come back";
    EXPECT_EQ(SelectObject(hdc, propio), uno);
    EXPECT_EQ(GetDeviceCaps(hdc, VERTRES), 1);
    EXPECT_TRUE(DeleteObject(uno));
    EXPECT_TRUE(DeleteDC(hdc));
    EXPECT_FALSE(DeleteDC(hdc));
    EXPECT_EQ(GetDeviceCaps(hdc, HORZRES), 0);
    EXPECT_EQ(CreateCompatibleBitmap(hdc, 5, 5), nullptr);
    EXPECT_EQ(SelectObject(hdc, uno), nullptr);
}

}  // namespace
