// The angles of a panorama, from those that were recorded.

#include "sphere/Orientacion.h"

#include "raster/CGeoImagen.h"
#include "model/CElipsoide.h"
#include "model/CPuntoPortula.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using Angulos = std::array<double, 3>;
using Matriz = std::array<std::array<double, 3>, 3>;

constexpr double kGrado = std::numbers::pi / 180.0;
constexpr int kHuso = 30;
constexpr double kMeridianoCentral = -0.05235987755982988;  // of zone 30: 3 degrees west, radians

Matriz operator*(const Matriz& a, const Matriz& b) {
    Matriz m{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            m[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j] + a[i][2] * b[2][j];
    return m;
}

Matriz Traspuesta(const Matriz& a) {
    Matriz m{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            m[i][j] = a[j][i];
    return m;
}

Matriz GiroX(double t) {
    return {{{1, 0, 0}, {0, std::cos(t), -std::sin(t)}, {0, std::sin(t), std::cos(t)}}};
}

Matriz GiroY(double t) {
    return {{{std::cos(t), 0, std::sin(t)}, {0, 1, 0}, {-std::sin(t), 0, std::cos(t)}}};
}

Matriz GiroZ(double t) {
    return {{{std::cos(t), -std::sin(t), 0}, {std::sin(t), std::cos(t), 0}, {0, 0, 1}}};
}

// From true north to grid north, at a place in radians: to first order, so that lengths change a little.
Matriz Convergencia(double latitud, double longitud) {
    const double g = std::sin(latitud) * (longitud - kMeridianoCentral);
    return {{{1, g, 0}, {-g, 1, 0}, {0, 0, 1}}};
}

// Of a panorama with coordinates of its own; any other one stands on the equator, where meridians don't converge.
Matriz ConvergenciaEn(const Vertiz::CGeoImagen& imagen) {
    double latitud = 0.0, longitud = kMeridianoCentral;
    if (imagen.m_bSituada) {
        const Vertiz::CCoor3D<double>& c = imagen.GetDataImagen().DataTrans().m_CentroProyeccion;
        const Vertiz::CPuntoPortula punto(Vertiz::CUnidadAngular::NINGUNA, 0, c.x, c.y, c.z, 0.0, CString());
        punto.UTMToGeo(latitud, longitud, Vertiz::CElipsoide(), kHuso, true);  // without a result, as the others
    }
    return Convergencia(latitud, longitud);
}

// The angles S, P, Q of a matrix whose first column is (cos S cos Q, -cos S sin Q, sin S) and whose last row goes on
// with -cos S sin P. With S upright only P + Q or P - Q is known: P is 0 then, and Q the whole of it.
Angulos AngulosDe(const Matriz& m) {
    constexpr double kSinCoseno = 1e-12;
    const double s = std::asin(std::clamp(m[2][0], -1.0, 1.0)), coseno = std::cos(s);
    if (coseno < kSinCoseno) return {s, 0.0, std::atan2(m[0][1], m[1][1])};
    return {s, -std::asin(std::clamp(m[2][1] / coseno, -1.0, 1.0)), std::atan2(-m[1][0], m[0][0])};
}

}  // namespace

std::array<double, 3> OrientacionPanorama(const Vertiz::CGeoImagen& imagen) {
    Angulos a{};
    double escala = 0.0;
    imagen.GetDataImagen().GetAngulos(a[0], a[1], a[2], escala);
    for (std::size_t i = 0; i < 3; ++i)
        a[i] += imagen.m_Correcciones[i];
    if (imagen.m_bDirecta) return a;

    // The frame at the panorama and that of its reference position are the same, so that between the camera and the
    // terrain there is the convergence alone. The terrain's axes have x and y exchanged and z downwards.
    const Matriz camara = GiroZ(a[2] * kGrado) * GiroY(a[1] * kGrado) * GiroX(a[0] * kGrado);
    constexpr Matriz kEjes = {{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}};
    const auto [s, p, q] = AngulosDe(kEjes * Traspuesta(ConvergenciaEn(imagen) * camara) * kEjes);
    const double sentido = imagen.m_bSituada ? -1.0 : 1.0;
    return {sentido * p / kGrado, sentido * s / kGrado, sentido * q / kGrado};
}
