// Predicates decided in doubles where their error allows it, and otherwise by exact sums.

#include "model/Predicados.h"

#include <algorithm>
#include <cmath>

namespace Vertiz::predicados {
namespace {

// A sum kept as doubles that don't overlap, in growing order, so that its sign is that of the last one. The method is
// that of J. R. Shewchuk, "Adaptive Precision Floating-Point Arithmetic and Fast Robust Geometric Predicates" (1997).
class CSumaExacta {
  public:
    void AgregaProducto(double a, double b) {
        const double producto = a * b;
        Agrega(std::fma(a, b, -producto));
        Agrega(producto);
    }
    [[nodiscard]] int Signo() const {
        if (m_nCuantos == 0) return 0;
        return m_Partes[m_nCuantos - 1] > 0.0 ? 1 : -1;
    }

  private:
    void Agrega(double valor) {
        std::size_t quedan = 0;
        for (std::size_t i = 0; i < m_nCuantos; ++i) {
            const double parte = m_Partes[i];
            const double suma = valor + parte;
            const double virtualParte = suma - valor;
            const double resto = (valor - (suma - virtualParte)) + (parte - virtualParte);
            if (resto != 0.0) m_Partes[quedan++] = resto;
            valor = suma;
        }
        if (valor != 0.0) m_Partes[quedan++] = valor;
        m_nCuantos = quedan;
    }

    std::array<double, 12> m_Partes{};
    std::size_t m_nCuantos = 0;
};

bool EsFinito(const CPlano& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

int OrientacionExacta(const CPlano& a, const CPlano& b, const CPlano& c) {
    CSumaExacta suma;
    suma.AgregaProducto(a.x, b.y);
    suma.AgregaProducto(-a.y, b.x);
    suma.AgregaProducto(b.x, c.y);
    suma.AgregaProducto(-b.y, c.x);
    suma.AgregaProducto(c.x, a.y);
    suma.AgregaProducto(-c.y, a.x);
    return suma.Signo();
}

}  // namespace

int Orientacion(const CPlano& a, const CPlano& b, const CPlano& c) {
    const double izquierda = (a.x - c.x) * (b.y - c.y);
    const double derecha = (a.y - c.y) * (b.x - c.x);
    const double det = izquierda - derecha;
    // Beyond this bound (Shewchuk's ccwerrboundA) rounding can't have turned the sign.
    constexpr double cota = 3.3306690738754716e-16;
    if (std::abs(det) > cota * (std::abs(izquierda) + std::abs(derecha))) return det > 0.0 ? 1 : -1;
    if (!EsFinito(a) || !EsFinito(b) || !EsFinito(c)) return 0;
    if (std::isfinite(izquierda) && std::isfinite(derecha)) return OrientacionExacta(a, b, c);
    constexpr double chico = 0x1p-520;  // a power of two: scales without rounding
    return OrientacionExacta(a * chico, b * chico, c * chico);
}

bool EnSegmento(const CPlano& p, const CPlano& a, const CPlano& b) {
    return p.x >= std::min(a.x, b.x) && p.x <= std::max(a.x, b.x) && p.y >= std::min(a.y, b.y) &&
           p.y <= std::max(a.y, b.y) && Orientacion(a, b, p) == 0;
}

void CContactos::Agrega(const CContacto& contacto) {
    if (nCuantos == 1 && lugares[0].lugar == contacto.lugar) return;
    if (nCuantos < 2) lugares[static_cast<std::size_t>(nCuantos++)] = contacto;
}

namespace {

bool Separados(double a, double b, double c, double d) {
    return std::max(a, b) < std::min(c, d) || std::max(c, d) < std::min(a, b);
}

// Where on the segment a b its point p lies.
double Parametro(const CPlano& p, const CPlano& a, const CPlano& b) {
    if (p == a) return 0.0;
    if (p == b) return 1.0;
    return std::abs(b.x - a.x) > std::abs(b.y - a.y) ? (p.x - a.x) / (b.x - a.x) : (p.y - a.y) / (b.y - a.y);
}

CContacto Cruce(const CPlano& a, const CPlano& b, const CPlano& c, const CPlano& d) {
    const CPlano r = b - a, s = d - c, q = c - a;
    const double det = r.x * s.y - r.y * s.x;
    // Segments that cross by less than a double can tell have a determinant of 0: any place of theirs will do.
    const double t = det != 0.0 ? std::clamp((q.x * s.y - q.y * s.x) / det, 0.0, 1.0) : 0.5;
    const double u = det != 0.0 ? std::clamp((q.x * r.y - q.y * r.x) / det, 0.0, 1.0) : 0.5;
    return {a + r * t, t, u, true};
}

}  // namespace

CContactos Contactos(const CPlano& a, const CPlano& b, const CPlano& c, const CPlano& d) {
    CContactos contactos;
    if (Separados(a.x, b.x, c.x, d.x) || Separados(a.y, b.y, c.y, d.y)) return contactos;
    const int ladoC = Orientacion(a, b, c), ladoD = Orientacion(a, b, d);
    if (ladoC * ladoD > 0) return contactos;
    const int ladoA = Orientacion(c, d, a), ladoB = Orientacion(c, d, b);
    if (ladoA * ladoB > 0) return contactos;
    if (ladoC * ladoD < 0 && ladoA * ladoB < 0) {
        contactos.Agrega(Cruce(a, b, c, d));
        return contactos;
    }
    if (ladoA == 0 && EnSegmento(a, c, d)) contactos.Agrega({a, 0.0, Parametro(a, c, d)});
    if (ladoB == 0 && EnSegmento(b, c, d)) contactos.Agrega({b, 1.0, Parametro(b, c, d)});
    if (ladoC == 0 && EnSegmento(c, a, b)) contactos.Agrega({c, Parametro(c, a, b), 0.0});
    if (ladoD == 0 && EnSegmento(d, a, b)) contactos.Agrega({d, Parametro(d, a, b), 1.0});
    return contactos;
}

}  // namespace Vertiz::predicados
