#include "frame/CCamera.h"

#include "support/Contexto.h"
#include "support/RegistroGL.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <utility>
#include <vector>

namespace {

using Punto = CCamera::Punto;

constexpr double kRad = std::numbers::pi / 180.0;

void EsperaPunto(const Punto& obtenido, double x, double y, double z, double tolerancia = 1e-12) {
    EXPECT_NEAR(obtenido.x, x, tolerancia);
    EXPECT_NEAR(obtenido.y, y, tolerancia);
    EXPECT_NEAR(obtenido.z, z, tolerancia);
}

// Difference of two angles in degrees, the short way round.
double Diferencia(double a, double b) {
    return std::remainder(a - b, 360.0);
}

void EsperaAngulos(const CCamera& camara, double x, double y, double z, double tolerancia = 1e-6) {
    EXPECT_NEAR(Diferencia(camara.GetAnguloX(), x), 0.0, tolerancia);
    EXPECT_NEAR(Diferencia(camara.GetAnguloY(), y), 0.0, tolerancia);
    EXPECT_NEAR(Diferencia(camara.GetAnguloZ(), z), 0.0, tolerancia);
}

// The camera that every scene starts with: straight down, north up.
CCamera Cenital() {
    CCamera camara;
    camara.PositionCamera({0, 1, 0, 0}, {0, 0, 0, 0}, {0, 0, -1, 0});
    return camara;
}

}  // namespace

TEST(CCamera, ANewCameraHasItsStartValuesTheOddRightVectorIncluded) {
    const CCamera camara;
    EsperaPunto(camara.Position(), 0, 0, 0, 0);
    EsperaPunto(camara.View(), 0, 1, 0, 0);
    EsperaPunto(camara.GetTrans(), 0, 1, 0, 0);
    EsperaPunto(camara.ViewVector(), 0, 1, 0, 0);
    EsperaPunto(camara.UpVector(), 0, 0, 1, 0);
    EsperaPunto(camara.RightVector(), 1, 0, 1, 0);
    EsperaPunto(camara.Strafe(), 0, 0, 0, 0);
    EXPECT_EQ(camara.GetPitch(), 0.0);
    EXPECT_EQ(camara.GetYaw(), 0.0);
}

TEST(CCamera, StraightDownIsAnglesZero) {
    const CCamera camara = Cenital();
    EXPECT_EQ(camara.GetAnguloX(), 0.0);
    EXPECT_EQ(camara.GetAnguloY(), 0.0);
    EXPECT_EQ(camara.GetAnguloZ(), 0.0);
}

TEST(CCamera, AnglesCarryTheReferenceDirectionsToTheVectors) {
    // R = Rx(x) Ry(z) Rz(y) carries (0, -1, 0) to the view and (0, 0, -1) to up.
    const double x = 25 * kRad, y = 40 * kRad, z = 10 * kRad;
    const Punto vista(std::cos(z) * std::sin(y), -(std::cos(x) * std::cos(y) - std::sin(x) * std::sin(z) * std::sin(y)),
                      -(std::sin(x) * std::cos(y) + std::cos(x) * std::sin(z) * std::sin(y)), 0);
    const Punto arriba(-std::sin(z), std::sin(x) * std::cos(z), -std::cos(x) * std::cos(z), 0);
    CCamera camara = Cenital();
    camara.PositionCamera({0, 0, 0, 0}, vista, arriba);
    EsperaAngulos(camara, 25, 40, 10);
}

TEST(CCamera, TiltAndTurnLeaveTheEyeWhereItWasForBothFlags) {
    for (const int flag : {0, 1}) {
        CCamera camara;
        camara.PositionCamera({1, 2, 3, 0}, {1.5, 1.2, 2.5, 0}, {0, 1, 0.1, 0});
        camara.SumaAnguloX(17, flag, nullptr);
        EsperaPunto(camara.Position(), 1, 2, 3, 0);
        camara.SumaAnguloY(-23, flag, nullptr);
        EsperaPunto(camara.Position(), 1, 2, 3, 0);
        const Punto ref(0.3, 0.2, 0.1, 0);
        camara.SumaAnguloX(5, flag, &ref);
        camara.SumaAnguloY(5, flag, &ref);
        EsperaPunto(camara.Position(), 1, 2, 3, 0);
    }
}

TEST(CCamera, TurningKeepsTheDistanceToTheTarget) {
    CCamera camara;
    camara.PositionCamera({1, 2, 3, 0}, {1.5, 1.2, 2.5, 0}, {0, 1, 0, 0});
    const double antes = camara.Position().Distancia(camara.View(), 1);
    camara.SumaAnguloX(17, 1, nullptr);
    camara.SumaAnguloY(31, 0, nullptr);
    camara.SumaAnguloZ(-12, 1, nullptr);
    EXPECT_NEAR(camara.Position().Distancia(camara.View(), 1), antes, 1e-12);
}

TEST(CCamera, AReferencePointIsAddedToTheAxisAsItStands) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {0, 0, -1, 0}, {0, 1, 0, 0});
    const Punto ref(0, 0, -1, 0);  // with the up axis (0, 1, 0) the turn goes round (0, 1, -1)
    Punto esperado = Punto(0, 0, -1, 0).Rotar(-90 * kRad, Punto(0, 1, -1, 0));
    camara.SumaAnguloY(90, 1, &ref);
    EsperaPunto(camara.View(), esperado.x, esperado.y, esperado.z);
}

TEST(CCamera, RollTurnsUpAndLeavesTheViewDirection) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {0, 0, -1, 0}, {0, 1, 0, 0});
    camara.SumaAnguloZ(90, 0, nullptr);
    EsperaPunto(camara.View(), 0, 0, -1);
    EsperaPunto(camara.UpVector(), -1, 0, 0);  // -90 degrees round (0, 0, -1)
}

TEST(CCamera, WantedAnglesAreTakenModulo360) {
    CCamera camara = Cenital();
    camara.SetAngulos(370, -10, 0);
    EsperaAngulos(camara, 10, 350, 0, 1e-5);
}

TEST(CCamera, WalksToManyWantedAngles) {
    std::mt19937 azar(7);
    std::uniform_real_distribution<double> inclinacion(-80, 80), giro(0, 360), alabeo(-60, 60);
    for (int i = 0; i < 30; ++i) {
        const double x = inclinacion(azar), y = giro(azar), z = alabeo(azar);
        CCamera camara = Cenital();
        camara.SetAngulos(x, y, z);
        EsperaAngulos(camara, x, y, z, 1e-4);
    }
}

// The walk to three angles in [0, 360), told in the moves that everybody can make.
void Camina(CCamera& camara, double x, double y, double z) {
    const auto corta = [](double v) { return v < -180.0 ? v + 360.0 : v > 180.0 ? v - 360.0 : v; };
    const auto nulo = [](double v) { return std::abs(v) <= 1e-7; };
    double zLeido = 0.0;
    for (int i = 0; i < 100; ++i) {
        const double a = corta(-camara.GetAnguloY());
        camara.SumaAnguloY(a, 1, nullptr);
        const double b = corta(-camara.GetAnguloX());
        camara.SumaAnguloX(b, 1, nullptr);
        zLeido = camara.GetAnguloZ();
        camara.SumaAnguloZ(corta(-zLeido), 1, nullptr);
        if (nulo(a) && nulo(b) && nulo(corta(-zLeido))) break;
    }
    const auto faltaX = [&] { return corta(x - camara.GetAnguloX()); };
    const auto faltaY = [&] { return corta(y - camara.GetAnguloY()); };
    const auto faltaZ = [&] { return corta(z - (zLeido = camara.GetAnguloZ())); };
    for (int i = 0; i < 100; ++i) {
        for (int j = 0; j < 100; ++j) {
            const bool delReves = zLeido > 90.0 && zLeido < 270.0;
            camara.SumaAnguloX(delReves ? -faltaX() : faltaX(), 1, nullptr);
            camara.SumaAnguloZ(std::max(-10.0, std::min(10.0, faltaZ())), 1, nullptr);
            const double dz = faltaZ();
            if (nulo(faltaX()) && nulo(dz)) break;
        }
        camara.SumaAnguloY(faltaY(), 1, nullptr);
        if (nulo(faltaX()) && nulo(faltaY()) && nulo(corta(z - camara.GetAnguloZ()))) break;
    }
}

TEST(CCamera, TheWalkTiltsTheOtherWayWhileTheHeadIsUpsideDown) {
    // On the way the three angles pass where they mean nothing, so where a walk ends hangs on every step of it.
    for (const Punto& meta :
         {Punto(60, 300, 135, 0), Punto(200, 20, 180, 0), Punto(340, 30, 200, 0), Punto(340, 30, 110, 0),
          Punto(45, 10, 100, 0), Punto(25, 70, 50, 0), Punto(25, 175, 50, 0), Punto(25, 185, 50, 0)}) {
        CCamera camara = Cenital(), otra = Cenital();
        for (CCamera* c : {&camara, &otra})
            c->SumaAnguloX(33, 1, nullptr);  // not from the start position
        camara.SetAngulos(meta.x, meta.y, meta.z);
        Camina(otra, meta.x, meta.y, meta.z);
        EsperaPunto(camara.View(), otra.View().x, otra.View().y, otra.View().z, 0);
        EsperaPunto(camara.UpVector(), otra.UpVector().x, otra.UpVector().y, otra.UpVector().z, 0);
        EXPECT_EQ(camara.GetAnguloX(), otra.GetAnguloX());
        EXPECT_EQ(camara.GetAnguloY(), otra.GetAnguloY());
        EXPECT_EQ(camara.GetAnguloZ(), otra.GetAnguloZ());
    }
}

TEST(CCamera, AnglesThatAreNotNumbersChangeNothing) {
    CCamera camara = Cenital();
    camara.SetAngulos(std::numeric_limits<double>::quiet_NaN(), 0, std::numeric_limits<double>::infinity());
    EsperaPunto(camara.View(), 0, 0, 0, 0);
    EsperaAngulos(camara, 0, 0, 0, 0);
}

TEST(CCamera, NoStoredAngleReaches360) {
    std::mt19937 azar(11);
    std::normal_distribution<double> normal;
    for (int i = 0; i < 500; ++i) {
        CCamera camara;
        camara.PositionCamera({0, 0, 0, 0}, {normal(azar), normal(azar), normal(azar), 0},
                              {normal(azar), normal(azar), normal(azar), 0});
        for (const double angulo : {camara.GetAnguloX(), camara.GetAnguloY(), camara.GetAnguloZ()}) {
            EXPECT_GE(angulo, 0.0);
            EXPECT_LT(angulo, 360.0);
        }
    }
}

TEST(CCamera, ACameraThatLooksNowhereKeepsItsAnglesOrStaysFinite) {
    CCamera camara = Cenital();
    camara.PositionCamera({1, 1, 1, 0}, {1, 1, 1, 0}, {0, 0, 0, 0});
    for (const double angulo : {camara.GetAnguloX(), camara.GetAnguloY(), camara.GetAnguloZ()})
        EXPECT_TRUE(std::isfinite(angulo));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double antes = camara.GetAnguloX();
    camara.PositionCamera({nan, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, -1, 0});
    EXPECT_FALSE(camara.CalculaAngulos());
    EXPECT_EQ(camara.GetAnguloX(), antes);
}

TEST(CCamera, YawAndPitchGiveTheVectors) {
    CCamera camara;
    camara.SetYaw(90);
    EsperaPunto(camara.ViewVector(), -1, 0, 0, 1e-6);
    EsperaPunto(camara.View(), -1, 0, 0, 1e-6);
    EsperaPunto(camara.UpVector(), 0, 1, 0, 1e-6);
    EsperaPunto(camara.RightVector(), 0, 0, -1, 1e-6);
    camara.SetPitch(90);  // the pitch stands on the left of the product: it turns the yawed vectors round x
    EsperaPunto(camara.ViewVector(), -1, 0, 0, 1e-6);
    EsperaPunto(camara.UpVector(), 0, 0, 1, 1e-6);
    EsperaPunto(camara.RightVector(), 0, 1, 0, 1e-6);
    EXPECT_EQ(camara.GetPitch(), 90.0);
    EXPECT_EQ(camara.GetYaw(), 90.0);
}

TEST(CCamera, PitchTurnsWhatYawHasTurned) {
    CCamera camara;
    camara.PositionCamera({1, 2, 3, 0}, {1, 2, 2, 0}, {0, 1, 0, 0});
    camara.SetYaw(40);
    camara.SetPitch(25);
    const auto girado = [](const Punto& v) {
        return v.Rotar(40 * kRad, Punto(0, 1, 0, 0)).Rotar(25 * kRad, Punto(1, 0, 0, 0));
    };
    const Punto vista = girado({0, 0, -1, 0}), arriba = girado({0, 1, 0, 0}), derecha = girado({1, 0, 0, 0});
    EsperaPunto(camara.ViewVector(), vista.x, vista.y, vista.z, 1e-6);
    EsperaPunto(camara.View(), 1 + vista.x, 2 + vista.y, 3 + vista.z, 1e-6);
    EsperaPunto(camara.UpVector(), arriba.x, arriba.y, arriba.z, 1e-6);
    EsperaPunto(camara.RightVector(), derecha.x, derecha.y, derecha.z, 1e-6);
    // The angles follow at once, in either setter.
    for (const bool porYaw : {true, false}) {
        porYaw ? camara.SetYaw(10) : camara.SetPitch(-15);
        const CCamera antes = camara;
        camara.Valida();
        EsperaAngulos(camara, antes.GetAnguloX(), antes.GetAnguloY(), antes.GetAnguloZ());
    }
}

TEST(CCamera, TheEyeKeepsItsOffsetFromANewTarget) {
    CCamera camara = Cenital();
    camara.SetTrans({5, 6, 7, 0});
    EsperaPunto(camara.Position(), 5, 7, 7);
    EsperaPunto(camara.View(), 5, 6, 7);
}

TEST(CCamera, DisplacingTheEyePutsTheTargetAlongTheViewVector) {
    CCamera camara;
    camara.DesplazaCamara({1, 2, 3, 0});
    EsperaPunto(camara.Position(), 1, 2, 3);
    EsperaPunto(camara.View(), 1, 3, 3);
}

TEST(CCamera, StrafingIgnoresHeight) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {0, 0, -1, 0}, {1, 1, 0, 0});  // rolled: the right axis has a height
    camara.StrafeCamera(2);
    EXPECT_NE(camara.Strafe().y, 0.0);
    EsperaPunto(camara.Position(), 2 * camara.Strafe().x, 0, 2 * camara.Strafe().z);
    EsperaPunto(camara.View(), 2 * camara.Strafe().x, 0, -1 + 2 * camara.Strafe().z);
}

TEST(CCamera, SidewaysByXMovesExactlyThatMuch) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {0.5, 0, -1, 0}, {0, 1, 0, 0});
    camara.SumaXTrans(3);
    EXPECT_NEAR(camara.Position().x, 3, 1e-12);
}

TEST(CCamera, AViewWithoutLeftAndRightIgnoresSidewaysByX) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0});  // looks along x: right is z
    camara.SumaXTrans(3);
    EsperaPunto(camara.Position(), 0, 0, 0, 0);
    EsperaPunto(camara.View(), 1, 0, 0, 0);
}

TEST(CCamera, AdvanceByYMovesExactlyThatMuchAndALevelViewIgnoresIt) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {1, 1, 0, 0}, {0, 1, 0, 0});
    camara.SumaYTrans(2);
    EXPECT_NEAR(camara.Position().y, 2, 1e-12);
    EXPECT_NEAR(camara.Position().x, 2, 1e-12);
    camara.PositionCamera({0, 0, 0, 0}, {1, 0, 0, 0}, {0, 1, 0, 0});
    camara.SumaYTrans(2);
    EsperaPunto(camara.Position(), 0, 0, 0, 0);
}

TEST(CCamera, MovingTheCameraGoesAlongTheView) {
    CCamera camara = Cenital();
    camara.MoveCamera(0.25);
    EsperaPunto(camara.Position(), 0, 0.75, 0);
    EsperaPunto(camara.View(), 0, -0.25, 0);
}

TEST(CCamera, ASecondStrafeGoesAlongUpTiltedByTheFirstAngleAndTurnedByTheSecond) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {0, 0, -1, 0}, {0, 1, 0, 0});
    // Up tilted back by a quarter turn is (0, 0, 1); turned by a twelfth round up it leans towards x.
    const double lado = std::sin(std::numbers::pi / 6), fondo = std::cos(std::numbers::pi / 6);
    camara.StrafeCamera2(2, std::numbers::pi / 2, std::numbers::pi / 6);
    EsperaPunto(camara.Strafe(), lado, 0, fondo);
    EsperaPunto(camara.Position(), 2 * lado, 0, 2 * fondo);
    EsperaPunto(camara.View(), 2 * lado, 0, 2 * fondo - 1);
}

TEST(CCamera, HeightMovesAlongTheTurnedUpVector) {
    CCamera camara = Cenital();
    camara.StrafeCamera2(2, 0, 0);
    EsperaPunto(camara.Strafe(), 0, 0, -1);
    EsperaPunto(camara.Position(), 0, 1, -2);
    camara = Cenital();
    camara.SumaZTrans(0.5);  // angles 0: moves by eye z - 0.5 along up
    EsperaPunto(camara.Position(), 0, 1, 0.5);
}

TEST(CCamera, AxesOfAnglesFollowTheOrderOfRotation) {
    // With one angle alone all orders are the same rotation of one axis.
    for (int orden = 1; orden <= 6; ++orden) {
        double m[16];
        CCamera camara;
        camara.AnglesToAxes({0, 30, 0, 0}, m, orden);
        const double esperado[16] = {std::cos(30 * kRad),  0, std::sin(30 * kRad), 0, 0, 1, 0, 0,
                                     -std::sin(30 * kRad), 0, std::cos(30 * kRad), 0, 0, 0, 0, 1};
        for (int i = 0; i < 16; ++i)
            EXPECT_NEAR(m[i], esperado[i], 1e-15) << "order " << orden << ", element " << i;
    }
}

TEST(CCamera, EachOrderIsItsProductOfTurnsAndIsWrittenToTheCamera) {
    const Punto x(1, 0, 0, 0), y(0, 1, 0, 0), z(0, 0, 1, 0);
    struct Orden {
        int numero;
        std::vector<std::pair<double, Punto>> giros;  // the last one acts first
    };
    const std::pair<double, Punto> porX(20 * kRad, x), porY(30 * kRad, y), porZ(40 * kRad, z);
    for (const Orden& orden :
         {Orden{1, {porX, porZ, porY}}, Orden{3, {porY, porZ, porX}}, Orden{4, {porZ, porX, porY}},
          Orden{5, {porZ, porY, porX}}, Orden{0, {porX, porY, porZ}}, Orden{7, {porX, porY, porZ}}}) {
        SCOPED_TRACE(orden.numero);
        double m[16];
        CCamera camara;
        camara.AnglesToAxes({20, 30, 40, 0}, m, orden.numero);
        int columna = 0;
        for (Punto eje : {x, y, z}) {
            for (auto giro = orden.giros.rbegin(); giro != orden.giros.rend(); ++giro)
                eje = eje.Rotar(giro->first, giro->second);
            EsperaPunto({m[columna], m[columna + 4], m[columna + 8], 0}, eje.x, eje.y, eje.z);
            ++columna;
        }
        for (const int borde : {3, 7, 11, 12, 13, 14})
            EXPECT_EQ(m[borde], 0.0);
        EXPECT_EQ(m[15], 1.0);
        EsperaPunto(camara.UpVector(), m[1], m[5], m[9], 0);
        EsperaPunto(camara.View(), m[2], m[6], m[10], 0);
    }
}

TEST(CCamera, TheLeftAxisOfTheSecondOrderHasItsOwnSign) {
    double m[16];
    CCamera camara;
    camara.AnglesToAxes({20, 30, 40, 0}, m, 2);
    const double sx = std::sin(20 * kRad), cx = std::cos(20 * kRad), sy = std::sin(30 * kRad), cy = std::cos(30 * kRad),
                 sz = std::sin(40 * kRad), cz = std::cos(40 * kRad);
    EsperaPunto({m[0], m[4], m[8], 0}, sy * sx * sz + cz * cy, sz * cx, -sy * cz - cy * sx * sz);
    EsperaPunto(camara.UpVector(), sy * sx * cz - sz * cy, cz * cx, cy * sx * cz + sz * sy);
    EsperaPunto(camara.View(), sy * cx, -sx, cy * cx);
}

TEST(CCamera, AnglesComeBackInRangeHoweverFarTheSolutionWanders) {
    // Up almost along the view: the corrections are of many turns.
    CCamera camara = Cenital();
    camara.PositionCamera({0, 0, 0, 0}, {1, 0.2, -0.3, 0}, {1, 0.21, -0.31, 0});
    for (const double angulo : {camara.GetAnguloX(), camara.GetAnguloY(), camara.GetAnguloZ()}) {
        EXPECT_GE(angulo, 0.0);
        EXPECT_LT(angulo, 360.0);
    }
}

TEST(CCamera, MovesBringTheAnglesInStepAllButTheOneAlongTheView) {
    using Accion = void (*)(CCamera&);
    const Accion acciones[] = {[](CCamera& c) {
                                   c.SetTrans({1, 2, 3, 0});
                               },
                               [](CCamera& c) {
                                   c.SumaTrans({1, 2, 3, 0});
                               },
                               [](CCamera& c) { c.StrafeCamera(2); },
                               [](CCamera& c) { c.StrafeCamera2(2, 0.1, 0.2); },
                               [](CCamera& c) {
                                   c.RotateView(0.1, {0, 1, 0, 0}, 1);
                               },
                               [](CCamera& c) {
                                   c.RotateView(0.1, {0, 1, 0, 0}, 0);
                               },
                               [](CCamera& c) { c.SumaAnguloX(5, 1, nullptr); },
                               [](CCamera& c) { c.SumaAnguloY(5, 0, nullptr); },
                               [](CCamera& c) { c.SumaAnguloZ(5, 1, nullptr); },
                               [](CCamera& c) { c.MoveCamera(2); }};
    for (const Accion& accion : acciones) {
        double m[16];
        CCamera camara;
        camara.AnglesToAxes({20, 30, 40, 0}, m, 1);  // vectors alone
        accion(camara);
        CCamera enPaso = camara;
        enPaso.Valida();
        const double falta = std::abs(Diferencia(camara.GetAnguloX(), enPaso.GetAnguloX())) +
                             std::abs(Diferencia(camara.GetAnguloY(), enPaso.GetAnguloY())) +
                             std::abs(Diferencia(camara.GetAnguloZ(), enPaso.GetAnguloZ()));
        const auto cual = &accion - acciones;
        if (&accion == std::end(acciones) - 1)
            EXPECT_GT(falta, 1.0);
        else
            EXPECT_LT(falta, 1e-3) << "action " << cual;
    }
}

TEST(CCamera, PanningMovesEyeAndTarget) {
    CCamera camara = Cenital();
    camara.SumaTrans({1, 2, 3, 0});
    EsperaPunto(camara.Position(), 1, 3, 3);
    EsperaPunto(camara.View(), 1, 2, 3);
}

TEST(CCamera, HeightGoesByAngleXAndThenByAngleY) {
    CCamera camara;
    camara.PositionCamera({1, 2, 3, 0}, {1.5, 1.2, 2.5, 0}, {0, 1, 0.1, 0});
    CCamera otra = camara;
    camara.SumaZTrans(0.5);
    otra.StrafeCamera2(2.5, otra.GetAnguloX() * kRad, otra.GetAnguloY() * kRad);
    EsperaPunto(camara.Position(), otra.Position().x, otra.Position().y, otra.Position().z);
    EXPECT_GT(std::abs(Diferencia(otra.GetAnguloX(), otra.GetAnguloY())), 1.0);
}

TEST(CCamera, ATurnOfTheViewMovesTheEndThatIsNamed) {
    for (const int flag : {0, 1}) {
        CCamera camara;
        camara.PositionCamera({1, 0, 0, 0}, {1, 0, -2, 0}, {0, 1, 0, 0});
        camara.RotateView(90 * kRad, {0, 1, 0, 0}, flag);  // the direction becomes (-2, 0, 0)
        if (flag) {
            EsperaPunto(camara.Position(), 1, 0, 0, 0);
            EsperaPunto(camara.View(), -1, 0, 0);
        } else {
            EsperaPunto(camara.Position(), 3, 0, -2);
            EsperaPunto(camara.View(), 1, 0, -2, 0);
        }
    }
}

TEST(CCamera, AxesAreOfUnitLengthBeforeTheReferenceIsAddedAndUpIsAfterwards) {
    const Punto ref(0.3, 0.2, 0.5, 0), vista(0, 0, -4, 0), arriba(0, 3, 0, 0);
    const auto nueva = [&] {
        CCamera camara;
        camara.PositionCamera({0, 0, 0, 0}, vista, arriba);
        return camara;
    };
    CCamera camara = nueva();
    camara.SumaAnguloX(20, 1, &ref);
    const Punto ejeX = Punto(1, 0, 0, 0) + ref;
    Punto v = vista.Rotar(20 * kRad, ejeX), u = Punto(0, 1, 0, 0).Rotar(20 * kRad, ejeX);
    EsperaPunto(camara.View(), v.x, v.y, v.z);
    EsperaPunto(camara.UpVector(), u.x, u.y, u.z);
    camara = nueva();
    camara.SumaAnguloY(20, 1, &ref);
    v = vista.Rotar(-20 * kRad, Punto(0, 1, 0, 0) + ref);
    EsperaPunto(camara.View(), v.x, v.y, v.z);
    camara = nueva();
    camara.SumaAnguloZ(20, 1, &ref);
    u = Punto(0, 1, 0, 0).Rotar(-20 * kRad, Punto(0, 0, -1, 0) + ref);
    EsperaPunto(camara.UpVector(), u.x, u.y, u.z);
    EsperaPunto(camara.View(), 0, 0, -4, 0);
}

TEST(CCamera, StepsHaveTheirLengthHoweverFarTheTargetIs) {
    CCamera camara;
    camara.PositionCamera({0, 0, 0, 0}, {0, 0, -4, 0}, {0, 3, 0, 0});
    camara.MoveCamera(0.5);
    EsperaPunto(camara.Position(), 0, 0, -0.5);
    EsperaPunto(camara.View(), 0, 0, -4.5);
    camara.StrafeCamera(0.5);
    EsperaPunto(camara.Position(), 0.5, 0, -0.5);
    camara.DesplazaCamara({0, 0, 0.5, 0});
    EsperaPunto(camara.Position(), 0.5, 0, 0);
    EsperaPunto(camara.View(), 0.5, 1, 0);  // along the view vector, which is the start's
}

using CCameraConContexto = Contexto;

TEST_F(CCameraConContexto, LookingTakesAnErrorThatStandsAway) {
    CCamera camara = Cenital();
    const RegistroGL registro;
    glEnable(GL_TRIANGLES);  // no capability
    camara.Look();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    EXPECT_EQ(registro.Numeros("gluLookAt").at(0), (std::vector<double>{0, 1, 0, 0, 0, 0, 0, 0, -1}));
}
