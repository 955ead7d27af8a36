// Lengths, angles and rotations of coordinates, without overflow for any finite ones.

#include "model/CCoor.h"

#include <algorithm>

namespace Vertiz {
namespace {

// Factor that brings a vector to length 1 in two steps: first divided by its largest component, so that the squares
// neither overflow nor vanish.
struct CEscala {
    double mayor = 0.0;
    double longitud = 0.0;
    [[nodiscard]] bool Existe() const { return mayor > 0.0 && std::isfinite(mayor); }
    [[nodiscard]] double operator()(double v) const { return v / mayor / longitud; }
};

CEscala EscalaUnidad(double x, double y, double z) {
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) return {};
    const double mayor = std::max({std::abs(x), std::abs(y), std::abs(z)});
    return {mayor, std::hypot(x / mayor, y / mayor, z / mayor)};
}

}  // namespace

template <class T>
bool CCoor2D<T>::Normaliza() {
    const CEscala unidad = EscalaUnidad(x, y, 0.0);
    if (!unidad.Existe()) return false;
    ActualizaXY(unidad(x), unidad(y));
    return true;
}

template <class T>
double CCoor2D<T>::Angulo(const CCoor2D& a, const CCoor2D& b) const {
    const double ax = static_cast<double>(a.x) - x, ay = static_cast<double>(a.y) - y;
    const double bx = static_cast<double>(b.x) - x, by = static_cast<double>(b.y) - y;
    return std::atan2(std::abs(ax * by - ay * bx), ax * bx + ay * by);
}

template <class T>
bool CCoor3D<T>::Normaliza() {
    const CEscala unidad = EscalaUnidad(x, y, z);
    if (!unidad.Existe()) return false;
    Actualiza(unidad(x), unidad(y), unidad(z));
    return true;
}

// Rodrigues' rotation formula.
template <class T>
CCoor3D<T> CCoor3D<T>::Rotar(double angulo, const CCoor3D& eje) const {
    CCoor3D<double> u(eje);
    if (!u.Normaliza()) return *this;
    const CCoor3D<double> v(*this);
    const double seno = std::sin(angulo), coseno = std::cos(angulo);
    const double sobreEje = (u.x * v.x + u.y * v.y + u.z * v.z) * (1.0 - coseno);
    return v * coseno + (u * v) * seno + u * sobreEje;
}

template <class T>
double CCoor3D<T>::DistanciaARecta(const CCoor3D& a, const CCoor3D& b) const {
    const double rx = static_cast<double>(b.x) - a.x, ry = static_cast<double>(b.y) - a.y;
    const double px = static_cast<double>(x) - a.x, py = static_cast<double>(y) - a.y;
    const double longitud = std::hypot(rx, ry);
    return longitud > 0.0 ? std::abs(rx * py - ry * px) / longitud : std::hypot(px, py);
}

template <class T>
T CCoor3D<T>::InterpolaZ(const CCoor3D& a, const CCoor3D& b) const {
    const double rx = static_cast<double>(b.x) - a.x, ry = static_cast<double>(b.y) - a.y;
    const double px = static_cast<double>(x) - a.x, py = static_cast<double>(y) - a.y;
    const double largo2 = rx * rx + ry * ry;
    if (!(largo2 > 0.0)) return a.z;
    return ACoordenada<T>(a.z + (static_cast<double>(b.z) - a.z) * ((px * rx + py * ry) / largo2));
}

template <class T>
CCoor3D<T> CCoor3D<T>::AzD(double azimut, double distancia) const {
    CCoor3D c(*this);
    c.ActualizaXY(x + distancia * std::sin(azimut), y + distancia * std::cos(azimut));
    return c;
}

template class CCoor2D<int>;
template class CCoor2D<double>;
template class CCoor3D<int>;
template class CCoor3D<double>;

}  // namespace Vertiz
