// Pointer and keys of an X11 display. Each run has a server of its own, so that nobody else moves or types.

#include "ManoX11.h"
#include "platform/Backend.h"
#include "platform/CWnd.h"
#include "platform/CursorTeclas.h"
#include "support/ServidorX.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <memory>

namespace {

constexpr short kPulsada = static_cast<short>(0xFF80);

[[maybe_unused]] const auto* entorno = testing::AddGlobalTestEnvironment(new ConServidor);

CPoint Raton() {
    CPoint p(-1, -1);
    EXPECT_TRUE(GetCursorPos(&p));
    return p;
}

}  // namespace

TEST(CursorX11, ThePointerIsReadWhereItWasPut) {
    for (const CPoint& p : {CPoint(400, 300), CPoint(0, 0), CPoint(799, 599), CPoint(17, 230)}) {
        EXPECT_TRUE(SetCursorPos(p.x, p.y));
        EXPECT_EQ(Raton(), p);
        EXPECT_TRUE(SetCursorPos(p.x, p.y)) << "it is there already";
    }
}

TEST(CursorX11, OthersMoveItToo) {
    const ManoX11 mano;
    ASSERT_TRUE(mano.Puede());
    XWarpPointer(mano.Xlib(), None, DefaultRootWindow(mano.Xlib()), 0, 0, 0, 0, 123, 45);
    XSync(mano.Xlib(), False);
    EXPECT_EQ(Raton(), CPoint(123, 45));
}

TEST(CursorX11, BeyondTheScreenItStopsAtTheEdge) {
    EXPECT_TRUE(SetCursorPos(10, 10));
    EXPECT_TRUE(SetCursorPos(5000, 20));
    EXPECT_EQ(Raton(), CPoint(799, 20));
    EXPECT_FALSE(SetCursorPos(5000, 20)) << "it stays where it was";
    EXPECT_TRUE(SetCursorPos(-50, -50));
    EXPECT_EQ(Raton(), CPoint(0, 0));
}

TEST(CursorX11, NowhereToWriteTheAnswerIsRefused) {
    EXPECT_FALSE(GetCursorPos(nullptr));
}

TEST(TeclasX11, AKeyIsDownFromItsPressToItsRelease) {
    ManoX11 mano;
    ASSERT_TRUE(mano.Puede());
    const std::map<int, KeySym> teclas = {
        {'W', XK_w},        {'A', XK_a},           {'S', XK_s},        {'D', XK_d},          {'7', XK_7},
        {VK_UP, XK_Up},     {VK_DOWN, XK_Down},    {VK_LEFT, XK_Left}, {VK_RIGHT, XK_Right}, {VK_SHIFT, XK_Shift_R},
        {VK_F1 + 4, XK_F5}, {VK_ESCAPE, XK_Escape}};
    for (const auto& [vk, simbolo] : teclas) {
        EXPECT_EQ(GetKeyState(vk), 0);
        mano.Pulsa(simbolo);
        for (const auto& [otra, ignorado] : teclas)
            EXPECT_EQ(GetKeyState(otra), otra == vk ? kPulsada : 0) << otra << " while " << vk << " is down";
        mano.Suelta(simbolo);
        EXPECT_EQ(GetKeyState(vk), 0);
    }
}

TEST(TeclasX11, SeveralKeysAreDownAtOnce) {
    ManoX11 mano;
    ASSERT_TRUE(mano.Puede());
    mano.Pulsa(XK_w);
    mano.Pulsa(XK_Left);
    mano.Pulsa(XK_Shift_L);
    EXPECT_EQ(GetKeyState('W'), kPulsada);
    EXPECT_EQ(GetKeyState(VK_LEFT), kPulsada);
    EXPECT_EQ(GetKeyState(VK_SHIFT), kPulsada);
    EXPECT_EQ(GetKeyState('S'), 0);
    mano.Suelta(XK_w);
    EXPECT_EQ(GetKeyState('W'), 0);
    EXPECT_EQ(GetKeyState(VK_LEFT), kPulsada);
    mano.Suelta(XK_Left);
    mano.Suelta(XK_Shift_L);
}

TEST(TeclasX11, WhatIsNoKeyIsNeverDown) {
    ManoX11 mano;
    ASSERT_TRUE(mano.Puede());
    mano.Pulsa(XK_comma);  // a key without a VK_ value here
    mano.Pulsa(XK_w);
    for (const int tecla : {0, -1, -'W', static_cast<int>('w'), 255, 0x157})
        EXPECT_EQ(GetKeyState(tecla), 0) << tecla;
    mano.Suelta(XK_w);
    mano.Suelta(XK_comma);
}

TEST(CursorTeclasX11, AServerThatWentAwayHasNeitherPointerNorKeys) {
    Servidor servidor;
    const std::string antes = std::getenv("DISPLAY");
    setenv("DISPLAY", servidor.m_Nombre.c_str(), 1);
    std::string motivo;
    const auto backend = plataforma::ConectaGLX(motivo);
    ManoX11 mano;
    setenv("DISPLAY", antes.c_str(), 1);
    ASSERT_NE(backend, nullptr) << motivo;
    ASSERT_TRUE(mano.Puede());
    mano.Pulsa(XK_w);
    EXPECT_TRUE(backend->EstaPulsada('W'));
    EXPECT_TRUE(backend->MueveCursor({3, 4}));
    EXPECT_EQ(backend->Cursor(), (plataforma::Posicion{3, 4}));
    mano.Retira();
    servidor.Mata();
    EXPECT_EQ(backend->Cursor(), std::nullopt);
    EXPECT_FALSE(backend->MueveCursor({5, 6}));
    EXPECT_FALSE(backend->EstaPulsada('W'));
}
