// What the gestures of the host's window mean.

#include "lumbra/Gestos.h"

#include "model/CLinea.h"
#include "platform/CWnd.h"
#include "lumbra/Camara.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

namespace {

using Punto = Vertiz::CCoor3D<double>;

// One who stands in the south, over the horizon by some degrees, and looks at the middle.
Mirada DesdeElSur(double elevacion) {
    return {Direccion(180, elevacion) * 3.0, Punto(0, 0, 0, 0), Arriba(180, elevacion)};
}

void EsperaIgual(const Punto& a, const Punto& b, const char* que) {
    EXPECT_NEAR(a.x, b.x, 1e-9) << que;
    EXPECT_NEAR(a.y, b.y, 1e-9) << que;
    EXPECT_NEAR(a.z, b.z, 1e-9) << que;
}

void EsperaIgual(const Mirada& a, const Mirada& b) {
    EsperaIgual(a.ojo, b.ojo, "eye");
    EsperaIgual(a.vista, b.vista, "target");
    EsperaIgual(a.arriba, b.arriba, "up");
}

// A point as the eye has it: to the right, up, before it.
Punto Visto(const Mirada& m, const Punto& p) {
    Punto frente = m.vista - m.ojo;
    frente.Normaliza();
    const Punto derecha = frente * m.arriba, d = p - m.ojo;
    const auto por = [&](const Punto& e) { return d.x * e.x + d.y * e.y + d.z * e.z; };
    return {por(derecha), por(m.arriba), por(frente), 0};
}

TEST(Turning, GoesRoundTheVerticalAgainstTheClock) {
    const Mirada m = Gira(DesdeElSur(30), Punto(0, 0, 0, 0), 90, 0, false);
    EsperaIgual(m, {Direccion(90, 30) * 3.0, Punto(0, 0, 0, 0), Arriba(90, 30)});
}

TEST(Turning, RaisesTheEye) {
    EsperaIgual(Gira(DesdeElSur(30), Punto(0, 0, 0, 0), 0, 25, false), DesdeElSur(55));
}

TEST(Turning, KeepsThePivotWhereTheEyeHasIt) {
    const Punto pivote(0.3, 0.1, -0.2, 0);
    const Mirada antes = DesdeElSur(30), despues = Gira(antes, pivote, 37, 12, false);
    EsperaIgual(Visto(antes, pivote), Visto(despues, pivote), "pivot");
}

TEST(Turning, AnUprightViewEndsAtTheVertical) {
    const Punto centro(0, 0, 0, 0);
    EsperaIgual(Gira(DesdeElSur(30), centro, 0, 200, false), DesdeElSur(90));
    EsperaIgual(Gira(DesdeElSur(30), centro, 0, -200, false), DesdeElSur(-90));
    // And it comes back from there.
    EsperaIgual(Gira(Gira(DesdeElSur(30), centro, 0, 200, false), centro, 0, -60, false), DesdeElSur(30));
}

TEST(Turning, GoesOverTheTopWhenTheUserInsists) {
    const Mirada m = Gira(DesdeElSur(30), Punto(0, 0, 0, 0), 0, 90, true);
    EXPECT_LT(m.arriba.y, 0.0);
    EXPECT_NEAR(m.ojo.y, 3.0 * std::sin(ARadianes(120)), 1e-9);
    // Once upside down nothing holds it there.
    EsperaIgual(Gira(m, Punto(0, 0, 0, 0), 0, -90, false), DesdeElSur(30));
}

TEST(Turning, AThousandTurnsLeaveUpAtARightAngle) {
    Mirada m = DesdeElSur(30);
    for (int i = 0; i < 1000; ++i)
        m = Gira(m, Punto(0.1, 0, 0.2, 0), 7.3, i % 2 ? 3.1 : -3.1, false);
    const Punto frente = m.vista - m.ojo;
    EXPECT_NEAR(frente.x * m.arriba.x + frente.y * m.arriba.y + frente.z * m.arriba.z, 0.0, 1e-9);
    EXPECT_NEAR(m.ojo.Distancia(m.vista, 1), 3.0, 1e-9);
}

TEST(Nearing, KeepsThePointInItsDirection) {
    const Punto punto(0.3, 0.1, -0.2, 0);
    const Mirada antes = DesdeElSur(30), despues = Acerca(antes, punto, 0.5);
    EXPECT_NEAR(despues.ojo.Distancia(punto, 1), 0.5 * antes.ojo.Distancia(punto, 1), 1e-12);
    EsperaIgual(Visto(antes, punto) * 0.5, Visto(despues, punto), "point");
}

TEST(Nearing, StopsBeforeThePointAndBeforeTheHorizon) {
    const Punto punto(0, 0, 0, 0);
    Mirada m = DesdeElSur(30);
    for (int i = 0; i < 200; ++i)
        m = Acerca(m, punto, 0.85);
    EXPECT_NEAR(m.ojo.Distancia(punto, 1), 0.02, 1e-9);
    for (int i = 0; i < 200; ++i)
        m = Acerca(m, punto, 1.2);
    EXPECT_NEAR(m.ojo.Distancia(punto, 1), 50.0, 1e-9);
    EsperaIgual(Acerca({punto, Punto(0, 0, 1, 0), Punto(0, 1, 0, 0)}, punto, 0.5), {punto, {0, 0, 1, 0}, {0, 1, 0, 0}});
}

TEST(Pointer, FourPixelsAreStillAClick) {
    EXPECT_TRUE(EsClic(CPoint(10, 10), CPoint(14, 6)));
    EXPECT_FALSE(EsClic(CPoint(10, 10), CPoint(15, 10)));
    EXPECT_FALSE(EsClic(CPoint(10, 10), CPoint(10, 5)));
}

TEST(Pointer, TheSmallerSideIsHalfATurn) {
    EXPECT_DOUBLE_EQ(GradosDeArrastre(300, 400, 300), 180.0);
    EXPECT_DOUBLE_EQ(GradosDeArrastre(-75, 400, 300), -45.0);
    EXPECT_TRUE(std::isfinite(GradosDeArrastre(5, 0, 0)));
}

TEST(Wheel, ANotchBackUndoesOneForth) {
    EXPECT_LT(FactorDeRueda(WHEEL_DELTA), 1.0);
    EXPECT_DOUBLE_EQ(FactorDeRueda(WHEEL_DELTA) * FactorDeRueda(-WHEEL_DELTA), 1.0);
    EXPECT_DOUBLE_EQ(FactorDeRueda(2 * WHEEL_DELTA), FactorDeRueda(WHEEL_DELTA) * FactorDeRueda(WHEEL_DELTA));
}

TEST(Exaggeration, GoesByRoundSteps) {
    EXPECT_EQ(SiguienteExageracion(1.0, 1), 1.5);
    EXPECT_EQ(SiguienteExageracion(1.0, -1), 0.7);
    EXPECT_EQ(SiguienteExageracion(4.0, 1), 5.0);
    EXPECT_EQ(SiguienteExageracion(4.0, -1), 3.0);
    // As scenes keep it.
    EXPECT_EQ(SiguienteExageracion(0.7F, 1), 1.0);
    EXPECT_EQ(SiguienteExageracion(0.7F, -1), 0.5);
}

TEST(Exaggeration, StaysWhereTheStepsEnd) {
    EXPECT_EQ(SiguienteExageracion(100.0, 1), 100.0);
    EXPECT_EQ(SiguienteExageracion(0.1, -1), 0.1);
    EXPECT_EQ(SiguienteExageracion(500.0, 1), 500.0);
    EXPECT_EQ(SiguienteExageracion(500.0, -1), 100.0);
}

TEST(NameOfAFile, IsTheInputsAndTakesNobodysPlace) {
    std::set<std::string> hay;
    const auto libre = [&](const char* entrada) {
        return NombreLibre(entrada, ".pdf", [&](const std::string& n) { return hay.contains(n); });
    };
    EXPECT_EQ(libre("/tmp/peña ñ/modelo.v2.tif"), "modelo.v2.pdf");
    hay = {"a.pdf"};
    EXPECT_EQ(libre("a.tif"), "a-1.pdf");
    hay = {"a.pdf", "a-1.pdf", "a-3.pdf"};
    EXPECT_EQ(libre("sub/a.tif"), "a-2.pdf");
}

TEST(TextOfAPoint, HasSoManyDecimals) {
    EXPECT_EQ(TextoPunto(Punto(500164.61849, -3.5, 0.0004, 0), 3), "500164.618 -3.500 0.000");
    EXPECT_EQ(TextoPunto(Punto(1, 2, 3, 0), 0), "1 2 3");
}

TEST(LengthOfALine, IsToldInPlanAndAlongTheSlope) {
    Vertiz::CLinea<double> linea;
    EXPECT_EQ(MideLinea(linea).plana, 0.0);
    linea << Punto(0, 0, 0, 0);
    EXPECT_EQ(MideLinea(linea).real, 0.0);
    linea << Punto(3, 4, 12, 0) << Punto(3, 4, 0, 0);
    EXPECT_DOUBLE_EQ(MideLinea(linea).plana, 5.0);
    EXPECT_DOUBLE_EQ(MideLinea(linea).real, 25.0);
}

}  // namespace
