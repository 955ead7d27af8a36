// The angles of a panorama, against the chain of rotations worked out whole.

#include "sphere/Orientacion.h"

#include "raster/CGeoImagen.h"
#include "model/CElipsoide.h"
#include "model/CPuntoPortula.h"

#include <Eigen/Dense>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

using Angulos = std::array<double, 3>;
using Eigen::Matrix3d;
using Eigen::Vector3d;

constexpr double kGrado = std::numbers::pi / 180.0;
constexpr double kLambda0 = -3.0 * kGrado;

Matrix3d Rx(double t) {
    return (Matrix3d() << 1, 0, 0, 0, std::cos(t), std::sin(t), 0, -std::sin(t), std::cos(t)).finished();
}
Matrix3d Ry(double t) {
    return (Matrix3d() << std::cos(t), 0, -std::sin(t), 0, 1, 0, std::sin(t), 0, std::cos(t)).finished();
}
Matrix3d Rz(double t) {
    return (Matrix3d() << std::cos(t), std::sin(t), 0, -std::sin(t), std::cos(t), 0, 0, 0, 1).finished();
}

// The matrix whose angles are taken, with the frames of the place and of the reference place, which cancel out.
Matrix3d Cadena(const Angulos& grados, double latitud, double longitud) {
    const Matrix3d b = (Matrix3d() << 0, 1, 0, 1, 0, 0, 0, 0, -1).finished();
    const Matrix3d c =
        Rz(grados[2] * kGrado).transpose() * Ry(grados[1] * kGrado).transpose() * Rx(grados[0] * kGrado).transpose();
    const Matrix3d e = Ry(latitud + std::numbers::pi / 2).transpose() * Rz(longitud);
    const Matrix3d g = e * e.transpose() * c;
    const double gamma = std::sin(latitud) * (longitud - kLambda0);
    const Matrix3d w = (Matrix3d() << 1, gamma, 0, -gamma, 1, 0, 0, 0, 1).finished();
    return b * (w * g).transpose() * b;
}

Angulos DeLaCadena(const Matrix3d& m, bool situada) {
    const double s = std::asin(m(2, 0)), p = -std::asin(m(2, 1) / std::cos(s)), q = std::atan2(-m(1, 0), m(0, 0));
    const double signo = situada ? -1.0 : 1.0;
    return {signo * p / kGrado, signo * s / kGrado, signo * q / kGrado};
}

// The turn that the scene makes of the angles.
Matrix3d Giro(const Angulos& r) {
    return (Eigen::AngleAxisd(r[0] * kGrado, Vector3d::UnitX()) * Eigen::AngleAxisd(r[1] * kGrado, Vector3d::UnitY()) *
            Eigen::AngleAxisd(r[2] * kGrado, Vector3d::UnitZ()))
        .toRotationMatrix();
}

Vertiz::CDataImagen Datos(const Angulos& grados) {
    Vertiz::CDataImagen datos;
    datos.DataTrans().m_nTipo = Vertiz::CDataTransformacion::ESFERICA;
    datos.DataTrans().SetAngulos(grados[0], grados[1], grados[2]);
    return datos;
}

class Panorama : public Vertiz::CGeoImagen {
  public:
    explicit Panorama(const Angulos& grados) : CGeoImagen(nullptr, Datos(grados), Vertiz::CDataSemilla()) {}

    /// Puts it at a place by its UTM coordinates in zone 30.
    void Situa(double latitud, double longitud) {
        Vertiz::CPuntoPortula punto;
        ASSERT_EQ(punto.GeoToUTM(latitud, longitud, Vertiz::CElipsoide(), 30, true), 30);
        GetDataImagen().DataTrans().m_CentroProyeccion = {punto.x, punto.y, 700.0, 0};
        m_bSituada = true;
    }
};

void EsperaAngulos(const Angulos& r, const Angulos& esperados, double tolerancia = 1e-8) {
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(r[i], esperados[i], tolerancia) << "angle " << i;
}

constexpr Angulos kVarios[] = {{0, 0, 0},        {10, 20, 30},  {-35, 5, 140},  {170, -60, -100},
                               {0.5, -0.3, 179}, {-80, 30, 15}, {45, 80, -170}, {120, 12, 60}};

TEST(Orientacion, DirectAnglesAreThoseOfTheImagePlusTheCorrections) {
    for (const bool situada : {false, true}) {
        Panorama imagen({12.5, -20.25, 130.0});
        imagen.m_bDirecta = true;
        imagen.m_bSituada = situada;
        EsperaAngulos(OrientacionPanorama(imagen), {12.5, -20.25, 130.0});
        imagen.m_Correcciones[0] = 1.0;
        imagen.m_Correcciones[1] = -2.0;
        imagen.m_Correcciones[2] = 100.0;
        EsperaAngulos(OrientacionPanorama(imagen), {13.5, -22.25, 230.0});
    }
}

TEST(Orientacion, DirectAnglesNeedNoPlace) {
    Panorama imagen({1, 2, 3});
    imagen.m_bDirecta = imagen.m_bSituada = true;
    constexpr double kNada = std::numeric_limits<double>::quiet_NaN();
    imagen.GetDataImagen().DataTrans().m_CentroProyeccion = {kNada, kNada, kNada, 0};
    EsperaAngulos(OrientacionPanorama(imagen), {1, 2, 3});
}

TEST(Orientacion, WithoutAPlaceOfItsOwnMeridiansDontConverge) {
    for (const Angulos& grados : kVarios) {
        const Panorama imagen(grados);
        const Matrix3d cadena = Cadena(grados, 0.0, kLambda0);
        const Angulos r = OrientacionPanorama(imagen);
        EsperaAngulos(r, DeLaCadena(cadena, false));
        // Tilts are told up to 90 degrees: of a panorama that hangs upside down the angles are those of one upright.
        if (cadena(2, 2) > 0.0) {
            EXPECT_TRUE(Giro(r).isApprox(cadena.transpose(), 1e-9)) << "the turn is the chain's own";
        }
    }
}

TEST(Orientacion, ALocatedPanoramaTurnsByTheConvergenceOfItsPlace) {
    const double lugares[][2] = {{40.4, -3.7}, {43.3, -5.9}, {36.1, -0.4}, {0.0, -4.0}, {62.0, -3.0}};
    for (const auto& lugar : lugares)
        for (const Angulos& grados : kVarios) {
            Panorama imagen(grados);
            imagen.Situa(lugar[0] * kGrado, lugar[1] * kGrado);
            EsperaAngulos(OrientacionPanorama(imagen),
                          DeLaCadena(Cadena(grados, lugar[0] * kGrado, lugar[1] * kGrado), true));
        }
}

TEST(Orientacion, TheConvergenceIsSeenInTheHeading) {
    // Upright in the frame of the camera: away from the central meridian the heading alone changes.
    Panorama imagen({0, 0, 25});
    imagen.Situa(42.0 * kGrado, -3.0 * kGrado);
    const Angulos central = OrientacionPanorama(imagen);
    imagen.Situa(42.0 * kGrado, -5.0 * kGrado);
    const Angulos oeste = OrientacionPanorama(imagen);
    EXPECT_NEAR(oeste[0], central[0], 1e-9);
    EXPECT_NEAR(oeste[1], central[1], 1e-9);
    EXPECT_NEAR(std::abs(oeste[2] - central[2]), std::atan(std::sin(42 * kGrado) * 2 * kGrado) / kGrado, 1e-6);
}

TEST(Orientacion, CorrectionsAreAddedBeforeTheAnglesAreTurned) {
    Panorama imagen({5, 10, 15});
    imagen.m_Correcciones[0] = 20.0;
    imagen.m_Correcciones[1] = -7.5;
    imagen.m_Correcciones[2] = 60.0;
    EsperaAngulos(OrientacionPanorama(imagen), OrientacionPanorama(Panorama({25, 2.5, 75})));
    imagen.Situa(41.0 * kGrado, -1.0 * kGrado);
    EsperaAngulos(OrientacionPanorama(imagen), DeLaCadena(Cadena({25, 2.5, 75}, 41.0 * kGrado, -1.0 * kGrado), true));
}

TEST(Orientacion, WithTheMiddleAngleUprightTheTurnIsStillTheChains) {
    for (const Angulos& grados : {Angulos{90, 0, 180}, {90, 40, 180}, {-90, 0, 0}, {90, -25, 0}, {-90, 70, 180}}) {
        const Angulos r = OrientacionPanorama(Panorama(grados));
        EXPECT_NEAR(std::abs(r[1]), 90.0, 1e-6);
        EXPECT_EQ(std::abs(r[0]), 0.0);
        EXPECT_TRUE(Giro(r).isApprox(Cadena(grados, 0.0, kLambda0).transpose(), 1e-7))
            << grados[0] << ", " << grados[1] << ", " << grados[2];
    }
}

TEST(Orientacion, AConvergenceThatLengthensTheAxesGivesNumbers) {
    // The first order of the convergence makes the sine of the middle angle a little more than 1.
    const double gamma = std::sin(60 * kGrado) * 3 * kGrado;
    for (const double signo : {1.0, -1.0}) {
        Panorama imagen({90, 0, 180 + signo * std::atan(gamma) / kGrado});
        imagen.Situa(60.0 * kGrado, 0.0);
        const Angulos r = OrientacionPanorama(imagen);
        for (const double v : r)
            EXPECT_TRUE(std::isfinite(v));
    }
    Panorama imagen({90, 0, 180 + std::atan(gamma) / kGrado});
    imagen.Situa(60.0 * kGrado, 0.0);
    ASSERT_GT(std::abs(Cadena({90, 0, 180 + std::atan(gamma) / kGrado}, 60 * kGrado, 0.0)(2, 0)), 1.0);
    EXPECT_NEAR(std::abs(OrientacionPanorama(imagen)[1]), 90.0, 1e-9);
}

TEST(Orientacion, ALocatedPanoramaWhosePlaceIsNoneTakesTheEquator) {
    Panorama imagen({10, 20, 30});
    constexpr double kNada = std::numeric_limits<double>::infinity();
    imagen.GetDataImagen().DataTrans().m_CentroProyeccion = {kNada, 0, 0, 0};
    imagen.m_bSituada = true;
    EsperaAngulos(OrientacionPanorama(imagen), DeLaCadena(Cadena({10, 20, 30}, 0.0, kLambda0), true));
}

}  // namespace
