// Geodetic points: UTM against published values and against the arc of meridian worked out by quadrature.

#include "model/CPuntoPortula.h"

#include "model/CElipsoide.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <thread>

namespace {

using Vertiz::CElipsoide;
using Vertiz::CPuntoPortula;

constexpr double kPi = std::numbers::pi;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

double Rad(double grados) {
    return grados * kPi / 180.0;
}

CPuntoPortula Punto(double x, double y) {
    return CPuntoPortula(0, 1, x, y, 100.0, 0.0, L"");
}

// Length of the meridian from the equator: Simpson's rule on a (1 - e2) / (1 - e2 sin2)^1.5.
double ArcoMeridiano(const CElipsoide& e, double latitud) {
    const int n = 2000;
    const double h = latitud / n;
    const auto f = [&](double t) {
        return e.DameA() * (1.0 - e.DameE2()) / std::pow(1.0 - e.DameE2() * std::sin(t) * std::sin(t), 1.5);
    };
    double suma = f(0.0) + f(latitud);
    for (int i = 1; i < n; ++i)
        suma += (i % 2 ? 4.0 : 2.0) * f(i * h);
    return suma * h / 3.0;
}

TEST(CPuntoPortula, CentralMeridianIsTheArcOfMeridianReduced) {
    for (const int id : {8, 17, 20, 26}) {
        const CElipsoide& e = *CElipsoide::Busca(id);
        for (const double grados : {5.0, 28.5, 40.0, 60.0, 83.0}) {
            CPuntoPortula p = Punto(0, 0);
            ASSERT_EQ(p.GeoToUTM(Rad(grados), Rad(-3.0), e, 30, true), 30);
            EXPECT_NEAR(p.x, 500000.0, 1e-6);
            EXPECT_NEAR(p.y, 0.9996 * ArcoMeridiano(e, Rad(grados)), 1e-4) << id << " " << grados;
        }
    }
}

// J. P. Snyder, Map Projections: A Working Manual (1987), numerical example of the transverse Mercator: Clarke 1866,
// central meridian 75 W, scale 0.9996: x 127106.5, y 4484124.4.
TEST(CPuntoPortula, AgreesWithThePublishedExampleOffTheCentralMeridian) {
    const CElipsoide& clarke = *CElipsoide::Busca(8);
    CPuntoPortula p = Punto(0, 0);
    ASSERT_EQ(p.GeoToUTM(Rad(40.5), Rad(-73.5), clarke, 18, true), 18);
    EXPECT_NEAR(p.x, 500000.0 + 127106.5, 0.1);
    EXPECT_NEAR(p.y, 4484124.4, 0.1);

    double latitud = 0, longitud = 0;
    ASSERT_TRUE(Punto(627106.5, 4484124.4).UTMToGeo(latitud, longitud, clarke, 18, true));
    EXPECT_NEAR(latitud, Rad(40.5), 1e-8);
    EXPECT_NEAR(longitud, Rad(-73.5), 1e-8);
}

TEST(CPuntoPortula, SouthernHemisphereCountsFromTenThousandKilometres) {
    const CElipsoide e;
    CPuntoPortula norte = Punto(0, 0), sur = Punto(0, 0);
    ASSERT_NE(norte.GeoToUTM(Rad(34.0), Rad(20.5), e, 0, true), 0);
    ASSERT_NE(sur.GeoToUTM(Rad(-34.0), Rad(20.5), e, 0, false), 0);
    EXPECT_NEAR(sur.x, norte.x, 1e-6);
    EXPECT_NEAR(sur.y, 1.0e7 - norte.y, 1e-6);
}

TEST(CPuntoPortula, ThereAndBackGivesThePointInEveryZone) {
    const CElipsoide e;
    for (int huso = 1; huso <= 60; ++huso) {
        for (const double grados : {-79.9, -45.0, 0.5, 30.0, 79.9}) {
            const double lon = Rad(6.0 * huso - 183.0 + 2.7), lat = Rad(grados);
            CPuntoPortula p = Punto(0, 0);
            ASSERT_EQ(p.GeoToUTM(lat, lon, e, huso, grados > 0), huso);
            double latitud = 9, longitud = 9;
            ASSERT_TRUE(p.UTMToGeo(latitud, longitud, e, huso, grados > 0));
            EXPECT_NEAR(latitud, lat, 1e-11);
            EXPECT_NEAR(longitud, lon, 1e-11);
        }
    }
}

TEST(CPuntoPortula, ZoneZeroTakesTheZoneOfTheLongitude) {
    const CElipsoide e;
    const struct {
        double longitud;
        int huso;
    } casos[] = {{-180.0, 1}, {-177.0, 1}, {-3.7, 30}, {-0.001, 30}, {0.001, 31}, {179.9, 60}, {180.0, 1}, {363.0, 31}};
    for (const auto& c : casos) {
        CPuntoPortula p = Punto(0, 0);
        EXPECT_EQ(p.GeoToUTM(Rad(40.0), Rad(c.longitud), e, 0, true), c.huso) << c.longitud;
    }
}

TEST(CPuntoPortula, HeightNumberAndNameStayWhenCoordinatesChange) {
    CPuntoPortula p(Vertiz::CUnidadAngular::SEXAGESIMAL, 7, -3.0, 40.0, 655.5, 51.2, L"Vértice");
    ASSERT_EQ(p.GeoToUTM(Rad(40.0), Rad(-3.0), CElipsoide(), 30, true), 30);
    EXPECT_EQ(p.z, 655.5);
    EXPECT_EQ(p.GetNumero(), 7);
    EXPECT_EQ(p.GetOndulacion(), 51.2);
    EXPECT_EQ(p.GetNombre(), L"Vértice");
    EXPECT_EQ(p.GetUnidad().GetCodigo(), 0);
}

TEST(CPuntoPortula, ThePoleHasCoordinatesAndComesBack) {
    const CElipsoide e;
    CPuntoPortula p = Punto(0, 0);
    ASSERT_EQ(p.GeoToUTM(kPi / 2, Rad(-3.0), e, 30, true), 30);
    EXPECT_NEAR(p.x, 500000.0, 1e-3);
    EXPECT_NEAR(p.y, 0.9996 * ArcoMeridiano(e, kPi / 2), 1e-3);
    double latitud = 0, longitud = 0;
    ASSERT_TRUE(p.UTMToGeo(latitud, longitud, e, 30, true));
    EXPECT_NEAR(latitud, kPi / 2, 1e-9);
}

TEST(CPuntoPortula, BadInputFailsAndLeavesEverythingAsItWas) {
    const CElipsoide bueno, vacio = CElipsoide::Tabla()[0];
    double latitud = 1.25, longitud = 2.5;
    EXPECT_FALSE(Punto(5e5, 4e6).UTMToGeo(latitud, longitud, vacio, 30, true));
    EXPECT_FALSE(Punto(5e5, 4e6).UTMToGeo(latitud, longitud, bueno, 0, true));
    EXPECT_FALSE(Punto(5e5, 4e6).UTMToGeo(latitud, longitud, bueno, 61, true));
    EXPECT_FALSE(Punto(kNan, 4e6).UTMToGeo(latitud, longitud, bueno, 30, true));
    EXPECT_FALSE(Punto(5e5, std::numeric_limits<double>::infinity()).UTMToGeo(latitud, longitud, bueno, 30, true));
    EXPECT_FALSE(Punto(1e30, 4e6).UTMToGeo(latitud, longitud, bueno, 30, true));
    EXPECT_EQ(latitud, 1.25);
    EXPECT_EQ(longitud, 2.5);

    CPuntoPortula p = Punto(1, 2);
    EXPECT_EQ(p.GeoToUTM(kNan, 0.0, bueno, 30, true), 0);
    EXPECT_EQ(p.GeoToUTM(0.5, kNan, bueno, 0, true), 0);
    EXPECT_EQ(p.GeoToUTM(3.0, 0.0, bueno, 31, true), 0);  // no such latitude
    EXPECT_EQ(p.GeoToUTM(0.5, 0.0, bueno, -1, true), 0);
    EXPECT_EQ(p.GeoToUTM(0.5, 0.0, vacio, 31, true), 0);
    EXPECT_EQ(p.x, 1.0);
    EXPECT_EQ(p.y, 2.0);
}

TEST(CPuntoPortula, ThreadsConvertAtTheSameTime) {
    std::vector<std::thread> hilos;
    std::vector<int> fallos(4, 0);
    for (int t = 0; t < 4; ++t) {
        hilos.emplace_back([t, &fallos] {
            const CElipsoide e;
            for (int i = 0; i < 500; ++i) {
                const int huso = 1 + (i * 7 + t) % 60;
                double latitud = 0, longitud = 0;
                CPuntoPortula p = Punto(0, 0);
                const bool bien = p.GeoToUTM(Rad(40.0), Rad(6.0 * huso - 182.0), e, huso, true) == huso &&
                                  p.UTMToGeo(latitud, longitud, e, huso, true) && std::abs(latitud - Rad(40.0)) < 1e-10;
                fallos[static_cast<std::size_t>(t)] += !bien;
            }
        });
    }
    for (auto& h : hilos)
        h.join();
    EXPECT_THAT(fallos, testing::Each(0));
}

}  // namespace
