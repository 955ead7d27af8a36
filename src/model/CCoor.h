#pragma once
// Points of a survey, in the plan and in space, with integer or real coordinates. They are plain values without a
// virtual table: clouds hold millions of them, and a CCoor3D<int> costs 16 bytes.

#include "platform/Exporta.h"

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace Vertiz {

/// A real value as a coordinate of type T: unchanged for double; for int rounded to the nearest (halves away from
/// zero) and kept within its range. Not a number becomes 0.
template <class T>
[[nodiscard]] inline T ACoordenada(double valor) {
    if constexpr (std::is_floating_point_v<T>) {
        return valor;
    } else {
        const double redondo = std::round(valor);
        if (redondo >= std::numeric_limits<T>::max()) return std::numeric_limits<T>::max();
        if (redondo <= std::numeric_limits<T>::min()) return std::numeric_limits<T>::min();
        return std::isnan(redondo) ? T{0} : static_cast<T>(redondo);
    }
}

namespace coordenadas {

/// a + b, a - b. Integers stop at the ends of their range instead of overflowing.
template <class T>
[[nodiscard]] inline T Suma(T a, T b) {
    if constexpr (std::is_floating_point_v<T>) {
        return a + b;
    } else {
        T suma;
        if (!__builtin_add_overflow(a, b, &suma)) return suma;
        return b > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
    }
}
template <class T>
[[nodiscard]] inline T Resta(T a, T b) {
    if constexpr (std::is_floating_point_v<T>) {
        return a - b;
    } else {
        T resta;
        if (!__builtin_sub_overflow(a, b, &resta)) return resta;
        return b < 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
    }
}

}  // namespace coordenadas

template <class T>
class CCoor3D;

/// A point in the plan. T is int (units of 1 / precision of the model) or double. `Tipo` is an integer that travels
/// with the point and takes no part in arithmetic or comparison.
template <class T>
class LUMBRA_API CCoor2D {
  public:
    T x{};
    T y{};

    CCoor2D() = default;
    CCoor2D(T xx, T yy, int tipo = 0) : x(xx), y(yy), m_nTipo(tipo) {}
    /// From real values, rounded.
    template <std::integral U = T>
    CCoor2D(double xx, double yy, int tipo = 0) : x(ACoordenada<T>(xx)), y(ACoordenada<T>(yy)), m_nTipo(tipo) {}
    /// From the other kind of coordinates; reals are rounded to integers, `Tipo` is kept.
    template <class U>
    requires(!std::is_same_v<T, U>) CCoor2D(const CCoor2D<U>& c)
        : x(ACoordenada<T>(c.x)), y(ACoordenada<T>(c.y)), m_nTipo(c.GetTipoCompleto()) {}
    /// The plan of a point in space.
    template <class U>
    CCoor2D(const CCoor3D<U>& c) : x(ACoordenada<T>(c.x)), y(ACoordenada<T>(c.y)), m_nTipo(c.GetTipoCompleto()) {}

    /// The type's low 16 bits.
    [[nodiscard]] short GetTipo() const { return static_cast<short>(m_nTipo); }
    /// All 32 bits of the type.
    [[nodiscard]] std::int32_t GetTipoCompleto() const { return m_nTipo; }
    void SetTipo(std::int32_t tipo) { m_nTipo = tipo; }

    /// Sets the components; integers are rounded to the nearest. `Tipo` stays.
    void ActualizaXY(double xx, double yy) { ActualizaX(xx), ActualizaY(yy); }
    void ActualizaX(double xx) { x = ACoordenada<T>(xx); }
    void ActualizaY(double yy) { y = ACoordenada<T>(yy); }

    CCoor2D& operator+=(const CCoor2D& c) {
        x = coordenadas::Suma(x, c.x), y = coordenadas::Suma(y, c.y);
        return *this;
    }
    CCoor2D& operator-=(const CCoor2D& c) {
        x = coordenadas::Resta(x, c.x), y = coordenadas::Resta(y, c.y);
        return *this;
    }
    CCoor2D& operator*=(double k) {
        ActualizaXY(x * k, y * k);
        return *this;
    }
    CCoor2D& operator/=(double k) {
        ActualizaXY(x / k, y / k);
        return *this;
    }
    [[nodiscard]] CCoor2D operator+(const CCoor2D& c) const { return CCoor2D(*this) += c; }
    [[nodiscard]] CCoor2D operator-(const CCoor2D& c) const { return CCoor2D(*this) -= c; }
    [[nodiscard]] CCoor2D operator*(double k) const { return CCoor2D(*this) *= k; }
    [[nodiscard]] CCoor2D operator/(double k) const { return CCoor2D(*this) /= k; }

    /// Same x and y; `Tipo` doesn't count.
    [[nodiscard]] bool operator==(const CCoor2D& c) const { return x == c.x && y == c.y; }

    /// As in CCoor3D.
    bool Normaliza();
    [[nodiscard]] double Distancia2(const CCoor2D& c) const {
        const double dx = static_cast<double>(c.x) - x, dy = static_cast<double>(c.y) - y;
        return dx * dx + dy * dy;
    }
    [[nodiscard]] double Distancia(const CCoor2D& c) const {
        return std::hypot(static_cast<double>(c.x) - x, static_cast<double>(c.y) - y);
    }
    /// Angle at this point between the directions to a and b: radians, 0 to pi; 0 when a or b is this point.
    [[nodiscard]] double Angulo(const CCoor2D& a, const CCoor2D& b) const;

  private:
    std::int32_t m_nTipo = 0;
};

/// A point in space. T is int (units of 1 / precision of the model) or double. `Tipo` is a 32-bit integer that travels
/// with the point and takes no part in arithmetic or comparison: the kind of a camera station, a mark's orientation,
/// the attribute word of a cloud's point.
template <class T>
class LUMBRA_API CCoor3D {
  public:
    T x{};
    T y{};
    T z{};

    CCoor3D() = default;
    CCoor3D(T xx, T yy, T zz, int tipo = 0) : x(xx), y(yy), z(zz), m_nTipo(tipo) {}
    /// From real values, rounded.
    template <std::integral U = T>
    CCoor3D(double xx, double yy, double zz, int tipo = 0)
        : x(ACoordenada<T>(xx)), y(ACoordenada<T>(yy)), z(ACoordenada<T>(zz)), m_nTipo(tipo) {}
    /// From the other kind of coordinates; reals are rounded to integers, `Tipo` is kept.
    template <class U>
    requires(!std::is_same_v<T, U>) CCoor3D(const CCoor3D<U>& c)
        : x(ACoordenada<T>(c.x)), y(ACoordenada<T>(c.y)), z(ACoordenada<T>(c.z)), m_nTipo(c.GetTipoCompleto()) {}

    /// The type's low 16 bits.
    [[nodiscard]] short GetTipo() const { return static_cast<short>(m_nTipo); }
    /// All 32 bits of the type.
    [[nodiscard]] std::int32_t GetTipoCompleto() const { return m_nTipo; }
    void SetTipo(std::int32_t tipo) { m_nTipo = tipo; }

    /// Sets the components; integers are rounded to the nearest. `Tipo` stays.
    void Actualiza(double xx, double yy, double zz) { ActualizaXY(xx, yy), ActualizaZ(zz); }
    void ActualizaXY(double xx, double yy) { ActualizaX(xx), ActualizaY(yy); }
    void ActualizaX(double xx) { x = ACoordenada<T>(xx); }
    void ActualizaY(double yy) { y = ACoordenada<T>(yy); }
    void ActualizaZ(double zz) { z = ACoordenada<T>(zz); }

    /// Componentwise, keeping this point's `Tipo`. Integers stop at the ends of their range, and are rounded when
    /// scaled.
    CCoor3D& operator+=(const CCoor3D& c) {
        x = coordenadas::Suma(x, c.x), y = coordenadas::Suma(y, c.y), z = coordenadas::Suma(z, c.z);
        return *this;
    }
    CCoor3D& operator-=(const CCoor3D& c) {
        x = coordenadas::Resta(x, c.x), y = coordenadas::Resta(y, c.y), z = coordenadas::Resta(z, c.z);
        return *this;
    }
    CCoor3D& operator*=(double k) {
        Actualiza(x * k, y * k, z * k);
        return *this;
    }
    CCoor3D& operator/=(double k) {
        Actualiza(x / k, y / k, z / k);
        return *this;
    }
    [[nodiscard]] CCoor3D operator+(const CCoor3D& c) const { return CCoor3D(*this) += c; }
    [[nodiscard]] CCoor3D operator-(const CCoor3D& c) const { return CCoor3D(*this) -= c; }
    [[nodiscard]] CCoor3D operator*(double k) const { return CCoor3D(*this) *= k; }
    [[nodiscard]] CCoor3D operator/(double k) const { return CCoor3D(*this) /= k; }

    /// Cross product.
    [[nodiscard]] CCoor3D operator*(const CCoor3D& c) const requires std::is_floating_point_v<T> {
        return {y * c.z - z * c.y, z * c.x - x * c.z, x * c.y - y * c.x, m_nTipo};
    }

    /// No component is infinite or not a number.
    [[nodiscard]] bool EsFinito() const {
        if constexpr (std::is_floating_point_v<T>) return std::isfinite(x) && std::isfinite(y) && std::isfinite(z);
        return true;
    }

    /// Same x, y and z; `Tipo` doesn't count.
    [[nodiscard]] bool operator==(const CCoor3D& c) const { return x == c.x && y == c.y && z == c.z; }

    /// Brings the vector to length 1 (integers are rounded).
    /// @return false, and nothing changes, for a vector of length 0 or with a component that isn't finite
    bool Normaliza();

    /// The point turned round an axis through the origin.
    /// @param angulo radians, counterclockwise seen from the end of the axis
    /// @param eje    of any length; with length 0 the point stays where it is
    [[nodiscard]] CCoor3D Rotar(double angulo, const CCoor3D& eje) const;

    /// Square of the distance to c; dim 0 in plan, 1 in space.
    [[nodiscard]] double Distancia2(const CCoor3D& c, int dim) const {
        const double dx = static_cast<double>(c.x) - x, dy = static_cast<double>(c.y) - y;
        const double dz = dim == 0 ? 0.0 : static_cast<double>(c.z) - z;
        return dx * dx + dy * dy + dz * dz;
    }
    /// Distance to c; dim 0 in plan, 1 in space.
    [[nodiscard]] double Distancia(const CCoor3D& c, int dim) const {
        return std::hypot(static_cast<double>(c.x) - x, static_cast<double>(c.y) - y,
                          dim == 0 ? 0.0 : static_cast<double>(c.z) - z);
    }

    /// Angle in plan at this point between the directions to a and b: radians, 0 to pi; 0 when a or b is this point.
    [[nodiscard]] double Angulo(const CCoor2D<T>& a, const CCoor2D<T>& b) const {
        return CCoor2D<T>(*this).Angulo(a, b);
    }

    /// Distance in plan to the endless line through a and b; to the point a when both are the same.
    [[nodiscard]] double DistanciaARecta(const CCoor3D& a, const CCoor3D& b) const;

    /// Height, on the endless line through a and b, of the place nearest to this point in plan; the height of a when
    /// the line is vertical.
    [[nodiscard]] T InterpolaZ(const CCoor3D& a, const CCoor3D& b) const;

    /// The point at an azimuth (radians, clockwise from +y) and a distance in plan; height and `Tipo` are this one's.
    [[nodiscard]] CCoor3D AzD(double azimut, double distancia) const;

  private:
    std::int32_t m_nTipo = 0;
};

/// A point of real coordinates is one of integers too, when rounded: finite, and within their range.
[[nodiscard]] inline bool CabeEnEnteros(const CCoor3D<double>& c) {
    const auto cabe = [](double v) { return std::abs(v) <= std::numeric_limits<int>::max(); };
    return cabe(c.x) && cabe(c.y) && cabe(c.z);
}

extern template class CCoor2D<int>;
extern template class CCoor2D<double>;
extern template class CCoor3D<int>;
extern template class CCoor3D<double>;

}  // namespace Vertiz
