// The walk: turning by the pointer, moving by the keys, counting frames. Pointer and keys are this file's own: it
// defines the platform's functions for them, so that tests say where the pointer is and what is held down.

#include "frame/CCamera.h"
#include "platform/CWnd.h"
#include "platform/CursorTeclas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <optional>

namespace {

using Punto = CCamera::Punto;

constexpr short kPulsada = static_cast<short>(0xFF80);

// What the user does, and what was asked of the display.
struct Usuario {
    std::optional<CPoint> m_Raton;
    bool m_bSeDejaMover = true;
    std::map<int, short> m_Teclas;
    std::vector<CPoint> m_Puestos;
    std::vector<int> m_Preguntadas;
};
Usuario g_Usuario;

}  // namespace

BOOL GetCursorPos(POINT* punto) {
    if (!g_Usuario.m_Raton) return FALSE;
    *punto = *g_Usuario.m_Raton;
    return TRUE;
}

BOOL SetCursorPos(int x, int y) {
    g_Usuario.m_Puestos.push_back({x, y});
    if (!g_Usuario.m_bSeDejaMover) return FALSE;
    g_Usuario.m_Raton = CPoint(x, y);
    return TRUE;
}

short GetKeyState(int tecla) {
    g_Usuario.m_Preguntadas.push_back(tecla);
    const auto it = g_Usuario.m_Teclas.find(tecla);
    return it == g_Usuario.m_Teclas.end() ? short{0} : it->second;
}

namespace {

void EsperaPunto(const Punto& obtenido, const Punto& esperado, double tolerancia = 1e-6) {
    EXPECT_NEAR(obtenido.x, esperado.x, tolerancia);
    EXPECT_NEAR(obtenido.y, esperado.y, tolerancia);
    EXPECT_NEAR(obtenido.z, esperado.z, tolerancia);
}

void EsperaIguales(const CCamera& a, const CCamera& b) {
    EsperaPunto(a.Position(), b.Position(), 0);
    EsperaPunto(a.View(), b.View(), 0);
    EsperaPunto(a.UpVector(), b.UpVector(), 0);
    EsperaPunto(a.Strafe(), b.Strafe(), 0);
    EsperaPunto({a.GetAnguloX(), a.GetAnguloY(), a.GetAnguloZ(), 0},
                {b.GetAnguloX(), b.GetAnguloY(), b.GetAnguloZ(), 0}, 0);
}

// Looks along -z with the head upright: right is x.
CCamera DePie() {
    CCamera camara;
    camara.PositionCamera({1, 2, 3, 0}, {1, 2, 2, 0}, {0, 1, 0, 0});
    return camara;
}

class CCameraPaseo : public testing::Test {
  protected:
    // Tilt and frames outlive cameras: every test begins with both at 0.
    void SetUp() override {
        g_Usuario = Usuario();
        CCamera camara;
        Mueve(camara, 0, 100000);  // down to -1
        Mueve(camara, 0, -1000);
        camara.Update(2.0F);
        g_Usuario = Usuario();
        g_Usuario.m_Raton = CPoint(400, 300);
    }
    // The user moves the pointer from where it rests by (dx, dy) pixels.
    static void Mueve(CCamera& camara, int dx, int dy) {
        g_Usuario.m_Raton = CPoint(400 + dx, 300 + dy);
        camara.SetViewByMouse();
    }
    // Height of the view direction, as an angle.
    static double Inclinacion(const CCamera& camara) { return std::asin(camara.View().y - camara.Position().y); }
    static void Pulsa(int tecla) { g_Usuario.m_Teclas[tecla] = kPulsada; }
};

}  // namespace

// ---- Pointer -------------------------------------------------------------------------------------------------------

TEST_F(CCameraPaseo, APointerAtRestTurnsNothingAndIsLeftAlone) {
    CCamera camara = DePie();
    camara.SetViewByMouse();
    EsperaIguales(camara, DePie());
    EXPECT_TRUE(g_Usuario.m_Puestos.empty());
}

TEST_F(CCameraPaseo, ThePointerIsPutBackAfterAMoveInEitherDirection) {
    for (const CPoint& d : {CPoint(1, 0), CPoint(0, 1), CPoint(-300, 200)}) {
        CCamera camara = DePie();
        g_Usuario.m_Puestos.clear();
        Mueve(camara, d.x, d.y);
        ASSERT_EQ(g_Usuario.m_Puestos.size(), 1U);
        EXPECT_EQ(g_Usuario.m_Puestos[0], CPoint(400, 300));
        const CCamera girada = camara;
        camara.SetViewByMouse();
        EsperaIguales(camara, girada);
    }
}

TEST_F(CCameraPaseo, SidewaysTurnsRoundYAMilliradianAPixel) {
    CCamera camara = DePie();
    Mueve(camara, -100, 0);
    EsperaPunto(camara.View(), {1 - std::sin(0.1), 2, 3 - std::cos(0.1), 0});
    Mueve(camara, 300, 0);
    EsperaPunto(camara.View(), {1 + std::sin(0.2), 2, 3 - std::cos(0.2), 0});
    EsperaPunto(camara.Position(), {1, 2, 3, 0}, 0);
    EsperaPunto(camara.UpVector(), {0, 1, 0, 0}, 0);
}

TEST_F(CCameraPaseo, UpAndDownTiltsRoundTheRightAxisAndUpStays) {
    CCamera camara = DePie();
    Mueve(camara, 0, -100);
    EsperaPunto(camara.View(), {1, 2 + std::sin(0.1), 3 - std::cos(0.1), 0});
    Mueve(camara, 0, 300);
    EsperaPunto(camara.View(), {1, 2 - std::sin(0.2), 3 - std::cos(0.2), 0});
    EsperaPunto(camara.Position(), {1, 2, 3, 0}, 0);
    EsperaPunto(camara.UpVector(), {0, 1, 0, 0}, 0);
}

TEST_F(CCameraPaseo, TheTiltComesBeforeTheTurnAndTheDistanceStays) {
    // With the head aslant the two don't commute.
    const Punto ojo(1, 2, 3, 0), vista(0.5, -0.2, -2, 0), arriba(0.5, 1, 0.2, 0);
    CCamera camara;
    camara.PositionCamera(ojo, ojo + vista, arriba);
    Mueve(camara, 400, -300);
    Punto derecha = vista * arriba;
    derecha.Normaliza();
    const Punto inclinada = vista.Rotar(0.3, derecha);
    const Punto esperada = ojo + inclinada.Rotar(-0.4, Punto(0, 1, 0, 0));
    EsperaPunto(camara.View(), esperada);
    EXPECT_NEAR(camara.View().Distancia(ojo, 1), vista.Distancia(Punto(0, 0, 0, 0), 1), 1e-12);
}

TEST_F(CCameraPaseo, TheAnglesFollowTheView) {
    CCamera camara = DePie();
    Mueve(camara, -70, -90);
    CCamera otra = DePie();
    otra.PositionCamera(camara.Position(), camara.View(), camara.UpVector());
    EXPECT_NEAR(std::remainder(camara.GetAnguloX() - otra.GetAnguloX(), 360.0), 0.0, 1e-4);
    EXPECT_NEAR(std::remainder(camara.GetAnguloY() - otra.GetAnguloY(), 360.0), 0.0, 1e-4);
    EXPECT_NEAR(std::remainder(camara.GetAnguloZ() - otra.GetAnguloZ(), 360.0), 0.0, 1e-4);
    EXPECT_GT(std::abs(std::remainder(camara.GetAnguloX() - DePie().GetAnguloX(), 360.0)), 1.0);
}

TEST_F(CCameraPaseo, TheTiltStopsAtARadianEachWay) {
    for (const int sentido : {1, -1}) {
        CCamera camara = DePie();
        Mueve(camara, 0, -700 * sentido);
        EXPECT_NEAR(Inclinacion(camara), 0.7 * sentido, 1e-6);
        Mueve(camara, 0, -700 * sentido);
        EXPECT_NEAR(Inclinacion(camara), 1.0 * sentido, 1e-6) << "what still fits";
        const Punto antes = camara.View();
        Mueve(camara, 0, -50 * sentido);
        EsperaPunto(camara.View(), antes, 1e-12);
        Mueve(camara, 0, 400 * sentido);
        EXPECT_NEAR(Inclinacion(camara), 0.6 * sentido, 1e-6) << "back from the end, not from beyond it";
        Mueve(camara, 0, 600 * sentido);
        EXPECT_NEAR(Inclinacion(camara), 0.0, 1e-6);
    }
}

TEST_F(CCameraPaseo, ATiltOfExactlyARadianIsNotBeyondTheEnd) {
    for (const int sentido : {1, -1}) {
        CCamera camara = DePie();
        Mueve(camara, 0, -1000 * sentido);
        EXPECT_NEAR(Inclinacion(camara), 1.0 * sentido, 1e-6);
        Mueve(camara, 0, 1000 * sentido);
        EXPECT_NEAR(Inclinacion(camara), 0.0, 1e-6);
    }
}

TEST_F(CCameraPaseo, AtTheEndOfTheTiltTheViewStillTurns) {
    CCamera camara = DePie();
    Mueve(camara, 0, -1000);
    const Punto antes = camara.View() - camara.Position();
    Mueve(camara, -200, -10);
    EsperaPunto(camara.View() - camara.Position(), antes.Rotar(0.2, Punto(0, 1, 0, 0)));
}

TEST_F(CCameraPaseo, TheTiltIsOneForAllCameras) {
    CCamera una = DePie(), otra = DePie();
    Mueve(una, 0, -900);
    Mueve(otra, 0, -900);
    EXPECT_NEAR(Inclinacion(otra), 0.1, 1e-6);
}

TEST_F(CCameraPaseo, AnUnknownPointerTurnsNothing) {
    CCamera camara = DePie();
    g_Usuario.m_Raton.reset();
    camara.SetViewByMouse();
    EsperaIguales(camara, DePie());
    EXPECT_TRUE(g_Usuario.m_Puestos.empty());
}

TEST_F(CCameraPaseo, APointerThatCannotBePutBackTurnsNothingAndTiltsNothing) {
    CCamera camara = DePie();
    g_Usuario.m_bSeDejaMover = false;
    for (int i = 0; i < 5; ++i)
        Mueve(camara, 50, 600);
    EsperaIguales(camara, DePie());
    g_Usuario.m_bSeDejaMover = true;
    Mueve(camara, 0, 900);
    EXPECT_NEAR(Inclinacion(camara), -0.9, 1e-6);
}

// ---- Keys ----------------------------------------------------------------------------------------------------------

TEST_F(CCameraPaseo, EachKeyMovesEyeAndTargetAHundredUnitsASecond) {
    struct Caso {
        int tecla;
        Punto hacia;
    };
    const Caso casos[] = {{VK_UP, {0, 0, -1, 0}},   {'W', {0, 0, -1, 0}},     {VK_DOWN, {0, 0, 1, 0}},
                          {'S', {0, 0, 1, 0}},      {VK_LEFT, {-1, 0, 0, 0}}, {'A', {-1, 0, 0, 0}},
                          {VK_RIGHT, {1, 0, 0, 0}}, {'D', {1, 0, 0, 0}}};
    for (const Caso& caso : casos) {
        g_Usuario.m_Teclas.clear();
        Pulsa(caso.tecla);
        CCamera camara = DePie();
        camara.CheckForMovement(0.25F);
        EsperaPunto(camara.Position(), DePie().Position() + caso.hacia * 25.0, 1e-12);
        EsperaPunto(camara.View(), DePie().View() + caso.hacia * 25.0, 1e-12);
    }
}

TEST_F(CCameraPaseo, SidewaysKeepsTheHeight) {
    Pulsa(VK_RIGHT);
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {0, 0, -1, 0}, {1, 1, 0, 0});
    camara.CheckForMovement(0.01F);
    EXPECT_EQ(camara.Position().y, 0.0);
    EXPECT_NEAR(camara.Position().x, std::sqrt(0.5), 1e-6);
    EsperaPunto(camara.Strafe(), {std::sqrt(0.5), -std::sqrt(0.5), 0, 0});
}

TEST_F(CCameraPaseo, AKeyIsDownByTheHighBitOfTheLowByte) {
    for (const auto& [estado, pulsada] : std::map<short, bool>{{short{0x0001}, false},
                                                               {short{0x007F}, false},
                                                               {short{0x0080}, true},
                                                               {static_cast<short>(0xFF81), true},
                                                               {static_cast<short>(0x8000), false}}) {
        g_Usuario.m_Teclas = {{VK_UP, estado}};
        CCamera camara = DePie();
        camara.CheckForMovement(1.0F);
        EXPECT_EQ(camara.Position().z != 3.0, pulsada) << estado;
    }
}

TEST_F(CCameraPaseo, AnArrowAndItsLetterTogetherCountOnce) {
    Pulsa(VK_UP);
    Pulsa('W');
    CCamera camara = DePie();
    camara.CheckForMovement(0.01F);
    EsperaPunto(camara.Position(), {1, 2, 2, 0});
}

TEST_F(CCameraPaseo, AllFourDirectionsAreAskedInOrderAndOppositeOnesCancel) {
    CCamera camara = DePie();
    camara.CheckForMovement(1.0F);
    EsperaIguales(camara, DePie());
    EXPECT_EQ(g_Usuario.m_Preguntadas, (std::vector<int>{VK_UP, 'W', VK_DOWN, 'S', VK_LEFT, 'A', VK_RIGHT, 'D'}));
    for (const int tecla : {static_cast<int>(VK_UP), static_cast<int>('S'), static_cast<int>('A')})
        Pulsa(tecla);
    camara.CheckForMovement(0.01F);
    EsperaPunto(camara.Position(), {0, 2, 3, 0});
    Pulsa('D');
    camara.CheckForMovement(0.01F);
    EsperaPunto(camara.Position(), {0, 2, 3, 0});
}

// ---- Frames --------------------------------------------------------------------------------------------------------

TEST_F(CCameraPaseo, AFrameTurnsFirstAndThenMovesAlongTheNewView) {
    Pulsa('W');
    CCamera camara = DePie();
    g_Usuario.m_Raton = CPoint(300, 300);
    camara.Update(0.01F);
    EsperaPunto(camara.Position(), {1 - std::sin(0.1), 2, 3 - std::cos(0.1), 0});
}

TEST_F(CCameraPaseo, AFrameNotesTheSideThatItBeganWith) {
    CCamera camara;
    camara.PositionCamera({1, 2, 3, 0}, {1, 2, 1, 0}, {0, 5, 0, 0});
    g_Usuario.m_Raton = CPoint(300, 300);
    camara.Update(0.01F);
    EsperaPunto(camara.Strafe(), {1, 0, 0, 0}, 1e-12);
    Pulsa('D');
    camara.Update(0.01F);
    EsperaPunto(camara.Strafe(), {std::cos(0.1), 0, -std::sin(0.1), 0});
}

TEST_F(CCameraPaseo, FramesAreCountedUntilTheirTimeGoesBeyondASecond) {
    CCamera una, otra;
    EXPECT_EQ(CCamera::Fotogramas(), 0);
    for (int vez = 0; vez < 2; ++vez) {
        for (int i = 1; i <= 4; ++i) {
            (i % 2 ? una : otra).Update(0.25F);
            EXPECT_EQ(CCamera::Fotogramas(), i) << "a second isn't beyond it";
        }
        una.Update(0.25F);
        EXPECT_EQ(CCamera::Fotogramas(), 0);
    }
}
