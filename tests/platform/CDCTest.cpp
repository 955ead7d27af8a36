// Device contexts, bitmaps and palettes.

#include "platform/CDC.h"

#include "platform/CBitmap.h"
#include "platform/CPalette.h"
#include "platform/DiagnosticoGL.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace {

TEST(CBitmap, RowsArePaddedToFourBytes) {
    const int esperado[][3] = {{1, 24, 4}, {4, 24, 12}, {5, 24, 16}, {5, 32, 20}};
    for (const auto& [ancho, bits, paso] : esperado) {
        CBitmap b;
        ASSERT_TRUE(b.CreateBitmap(ancho, 3, static_cast<UINT>(bits)));
        BITMAP datos{};
        ASSERT_NE(b.GetBitmap(&datos), 0);
        EXPECT_EQ(datos.bmWidth, ancho);
        EXPECT_EQ(datos.bmHeight, 3);
        EXPECT_EQ(datos.bmWidthBytes, paso);
        EXPECT_EQ(datos.bmBitsPixel, bits);
        const auto* p = static_cast<const BYTE*>(datos.bmBits);
        for (int i = 0; i < 3 * paso; ++i)
            EXPECT_EQ(p[i], 0);
    }
}

TEST(CBitmap, WhatIsntOfferedIsAClearFailure) {
    CBitmap b;
    EXPECT_FALSE(b.CreateBitmap(0, 10, 24));
    EXPECT_FALSE(b.CreateBitmap(10, 0, 24));
    EXPECT_FALSE(b.CreateBitmap(-5, 10, 24));
    EXPECT_FALSE(b.CreateBitmap(10, 10, 8));
    EXPECT_FALSE(b.CreateBitmap(100000, 100000, 24));
    EXPECT_NE(UltimoFalloGL().find("2 GiB"), std::string::npos);
    EXPECT_FALSE(b.CreateBitmap(2147483647, 2147483647, 32)) << "the size overflows";
    BITMAP datos{};
    EXPECT_EQ(b.GetBitmap(&datos), 0);
    EXPECT_FALSE(b.DeleteObject());
    ASSERT_TRUE(b.CreateBitmap(10, 10, 24));
    EXPECT_FALSE(b.CreateBitmap(10, 10, 24)) << "there is one already";
    EXPECT_TRUE(b.DeleteObject());
    EXPECT_FALSE(b.DeleteObject());
}

TEST(CBitmap, ACompatibleOneHasTheBitsOfTheDevice) {
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    CBitmap de32, copia;
    ASSERT_TRUE(de32.CreateBitmap(2, 2, 32));
    ASSERT_NE(dc.SelectObject(&de32), nullptr);
    ASSERT_TRUE(copia.CreateCompatibleBitmap(&dc, 3, 3));
    BITMAP datos{};
    copia.GetBitmap(&datos);
    EXPECT_EQ(datos.bmBitsPixel, 32);
    CBitmap nada;
    EXPECT_FALSE(nada.CreateCompatibleBitmap(nullptr, 3, 3));
}

TEST(CBitmap, ASectionGivesItsPixels) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = 3;
    info.bmiHeader.biHeight = 2;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    HBITMAP h = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    ASSERT_NE(h, nullptr);
    ASSERT_NE(bits, nullptr);
    static_cast<BYTE*>(bits)[23] = 200;
    CBitmap b;
    ASSERT_TRUE(b.Attach(h));
    BITMAP datos{};
    b.GetBitmap(&datos);
    EXPECT_EQ(datos.bmBits, bits);
    EXPECT_EQ(static_cast<BYTE*>(datos.bmBits)[23], 200);
    CBitmap otro;
    EXPECT_FALSE(otro.Attach(h)) << "it has an owner";
    EXPECT_EQ(b.Detach(), h);
    EXPECT_TRUE(DeleteObject(h));
    EXPECT_FALSE(DeleteObject(h));

    info.bmiHeader.biHeight = -2;
    EXPECT_EQ(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0), nullptr);
    EXPECT_EQ(bits, nullptr);
    info.bmiHeader.biHeight = 2;
    info.bmiHeader.biBitCount = 16;
    EXPECT_EQ(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0), nullptr);
    EXPECT_EQ(CreateDIBSection(nullptr, nullptr, DIB_RGB_COLORS, nullptr, nullptr, 0), nullptr);
}

TEST(CDC, SelectingGivesBackTheFormerOne) {
    CDC dc;
    EXPECT_EQ(dc.GetSafeHdc(), nullptr);
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    EXPECT_FALSE(dc.CreateCompatibleDC(nullptr));
    CBitmap a, b;
    ASSERT_TRUE(a.CreateBitmap(2, 3, 24));
    ASSERT_TRUE(b.CreateBitmap(4, 5, 32));
    CBitmap* propio = dc.SelectObject(&a);
    ASSERT_NE(propio, nullptr);
    EXPECT_EQ(dc.GetCurrentBitmap(), &a);
    EXPECT_EQ(dc.GetDeviceCaps(HORZRES), 2);
    EXPECT_EQ(dc.GetDeviceCaps(VERTRES), 3);
    EXPECT_EQ(dc.SelectObject(&b), &a);
    EXPECT_EQ(dc.GetDeviceCaps(BITSPIXEL), 32);
    EXPECT_EQ(dc.SelectObject(propio), &b);
    EXPECT_EQ(dc.GetCurrentBitmap(), propio);
    EXPECT_EQ(dc.SelectObject(static_cast<CBitmap*>(nullptr)), nullptr);
    CBitmap vacio;
    EXPECT_EQ(dc.SelectObject(&vacio), nullptr);
}

TEST(CDC, ABitmapIsSelectedInOnePlace) {
    CDC uno, otro;
    ASSERT_TRUE(uno.CreateCompatibleDC(nullptr));
    ASSERT_TRUE(otro.CreateCompatibleDC(&uno));
    CBitmap b;
    ASSERT_TRUE(b.CreateBitmap(2, 2, 24));
    ASSERT_NE(uno.SelectObject(&b), nullptr);
    EXPECT_EQ(otro.SelectObject(&b), nullptr);
    EXPECT_TRUE(uno.DeleteDC());
    EXPECT_NE(otro.SelectObject(&b), nullptr) << "free again";
}

TEST(CDC, WithoutADeviceThereAreNoAnswers) {
    CDC dc;
    EXPECT_EQ(dc.GetDeviceCaps(HORZRES), 0);
    EXPECT_EQ(dc.GetCurrentBitmap(), nullptr);
    EXPECT_FALSE(dc.DeleteDC());
    EXPECT_EQ(dc.Detach(), nullptr);
    EXPECT_FALSE(dc.Attach(nullptr));
    CBitmap b;
    ASSERT_TRUE(b.CreateBitmap(2, 2, 24));
    EXPECT_EQ(dc.SelectObject(&b), nullptr);
    CPalette p;
    EXPECT_EQ(dc.SelectPalette(&p, FALSE), nullptr);
    CClientDC deNadie(nullptr);
    EXPECT_EQ(deNadie.GetSafeHdc(), nullptr);
}

TEST(CDC, TheHandlePassesFromOneToAnother) {
    CDC uno, otro;
    ASSERT_TRUE(uno.CreateCompatibleDC(nullptr));
    const HDC hdc = uno.Detach();
    ASSERT_NE(hdc, nullptr);
    EXPECT_EQ(uno.GetSafeHdc(), nullptr);
    EXPECT_TRUE(otro.Attach(hdc));
    EXPECT_EQ(otro.GetDeviceCaps(HORZRES), 1) << "its own bitmap has one pixel";
    EXPECT_TRUE(otro.DeleteDC());
    EXPECT_FALSE(uno.Attach(hdc));
}

TEST(CDC, PixelsAnInchArePossibleOnes) {
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    EXPECT_GE(dc.GetDeviceCaps(LOGPIXELSY), 50);
    EXPECT_LE(dc.GetDeviceCaps(LOGPIXELSY), 800);
    EXPECT_EQ(dc.GetDeviceCaps(PLANES), 1);
    EXPECT_EQ(dc.GetDeviceCaps(12345), 0);
}

// A record of palette with `n` entries, the i-th of red i.
std::vector<std::byte> Registro(WORD n) {
    std::vector<std::byte> bytes(sizeof(LOGPALETTE) + n * sizeof(PALETTEENTRY));
    auto* p = reinterpret_cast<LOGPALETTE*>(bytes.data());
    p->palVersion = 0x300;
    p->palNumEntries = n;
    for (WORD i = 0; i < n; ++i)
        (&p->palPalEntry[0])[i] = {static_cast<BYTE>(i), 1, 2, 3};
    return bytes;
}

TEST(CPalette, KeepsItsEntries) {
    const auto registro = Registro(256);
    CPalette p;
    EXPECT_EQ(p.GetEntryCount(), 0);
    ASSERT_TRUE(p.CreatePalette(reinterpret_cast<const LOGPALETTE*>(registro.data())));
    EXPECT_FALSE(p.CreatePalette(reinterpret_cast<const LOGPALETTE*>(registro.data())));
    EXPECT_EQ(p.GetEntryCount(), 256);
    PALETTEENTRY e[3] = {};
    EXPECT_EQ(p.GetPaletteEntries(254, 3, e), 2u) << "two are left from 254 on";
    EXPECT_EQ(e[1].peRed, 255);
    EXPECT_EQ(p.GetPaletteEntries(256, 1, e), 0u);
    e[0] = {7, 8, 9, 0};
    EXPECT_EQ(p.SetPaletteEntries(10, 1, e), 1u);
    EXPECT_EQ(p.GetPaletteEntries(10, 1, &e[2]), 1u);
    EXPECT_EQ(e[2].peBlue, 9);
    EXPECT_TRUE(p.DeleteObject());
    EXPECT_FALSE(p.DeleteObject());
    const auto vacio = Registro(0);
    EXPECT_FALSE(p.CreatePalette(reinterpret_cast<const LOGPALETTE*>(vacio.data())));
    EXPECT_FALSE(p.CreatePalette(nullptr));
}

TEST(CPalette, SelectingGivesBackTheFormerOneAndRealizingChangesNothing) {
    const auto registro = Registro(4);
    CDC dc;
    ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
    CPalette a, b;
    EXPECT_EQ(dc.SelectPalette(&a, FALSE), nullptr) << "it has no entries yet";
    ASSERT_TRUE(a.CreatePalette(reinterpret_cast<const LOGPALETTE*>(registro.data())));
    ASSERT_TRUE(b.CreatePalette(reinterpret_cast<const LOGPALETTE*>(registro.data())));
    CPalette* propia = dc.SelectPalette(&a, FALSE);
    ASSERT_NE(propia, nullptr);
    EXPECT_EQ(dc.RealizePalette(), 0u);
    EXPECT_EQ(dc.SelectPalette(&b, FALSE), &a);
    b.DeleteObject();
    EXPECT_EQ(dc.SelectPalette(&a, FALSE), propia) << "one that is gone is replaced by the device context's own";
    EXPECT_EQ(dc.SelectPalette(propia, FALSE), &a);
}

}  // namespace
