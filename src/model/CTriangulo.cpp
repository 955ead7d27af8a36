// The geometry of one triangle. Decisions are exact; results are rounded once.

#include "model/CTriangulo.h"

#include "model/Enteros.h"

#include <cmath>
#include <numbers>

namespace Vertiz {

using enteros::Cruz;
using enteros::Entero;
using enteros::Signo;

namespace {

// Two sides and what goes with them, as real vectors.
struct CLados {
    CCoor3D<double> u, v;
    explicit CLados(const CTriangulo& t)
        : u(CCoor3D<double>(*t.Punto2()) - CCoor3D<double>(*t.Punto1())),
          v(CCoor3D<double>(*t.Punto3()) - CCoor3D<double>(*t.Punto1())) {}
};

double Modulo(const CCoor3D<double>& v) {
    return std::hypot(v.x, v.y, v.z);
}

int Media(int a, int b, int c) {
    return static_cast<int>(enteros::Divide(Entero{a} + b + c, 3));
}

}  // namespace

CMaximas<int> CTriangulo::GetMaximas() const {
    CMaximas<int> maximas(*Punto1(), *Punto2());
    maximas.Nuevo(*Punto3());
    return maximas;
}

bool CTriangulo::EsValido() const {
    return std::ranges::find(m_pPuntos, nullptr) == m_pPuntos.end() && Cruz(*Punto1(), *Punto2(), *Punto3()) != 0;
}

double CTriangulo::Pendiente() const {
    const CLados lados(*this);
    const CCoor3D<double> normal = lados.u * lados.v;
    const double plano = std::hypot(normal.x, normal.y);
    return std::atan2(plano, std::abs(normal.z)) * 180.0 / std::numbers::pi;
}

void CTriangulo::CentroMasas(CCoor3D<int>& c) const {
    const CPuntoTIN &p = *Punto1(), &q = *Punto2(), &r = *Punto3();
    c.x = Media(p.x, q.x, r.x), c.y = Media(p.y, q.y, r.y), c.z = Media(p.z, q.z, r.z);
}

double CTriangulo::SuperficiePlana() const {
    return std::abs(static_cast<double>(Cruz(*Punto1(), *Punto2(), *Punto3()))) * 0.5;
}

double CTriangulo::SuperficieReal() const {
    const CLados lados(*this);
    return Modulo(lados.u * lados.v) * 0.5;
}

bool CTriangulo::Contiene(const CCoor2D<int>& punto, bool bBorde) const {
    const int giro = Signo(Cruz(*Punto1(), *Punto2(), *Punto3()));
    if (giro == 0) return false;
    for (int k = 0; k < 3; ++k) {
        const int lado = Signo(Cruz(*Punto(k), *Punto((k + 1) % 3), punto)) * giro;
        if (lado < 0 || (lado == 0 && !bBorde)) return false;
    }
    return true;
}

bool CTriangulo::Proyecta(CCoor3D<int>& punto, bool bBorde, unsigned modo, double escala) const {
    if (!Contiene(punto, bBorde)) return false;
    if (modo != 0) return true;
    const CPuntoTIN &p = *Punto1(), &q = *Punto2(), &r = *Punto3();
    const Entero area = Cruz(p, q, r);
    const Entero suma = p.z * Cruz(q, r, punto) + q.z * Cruz(r, p, punto) + r.z * Cruz(p, q, punto);
    punto.z = escala == 1.0 ? static_cast<int>(enteros::Divide(suma, area))
                            : ACoordenada<int>(static_cast<double>(suma) / static_cast<double>(area) * escala);
    return true;
}

bool CTriangulo::DivideTrianguloX(CTriangulo& t1, CTriangulo& t2, CTriangulo& t3, int x, CPuntoTIN* a,
                                  CPuntoTIN* b) const {
    return Divide(&CCoor3D<int>::x, x, t1, t2, t3, a, b);
}

bool CTriangulo::DivideTrianguloY(CTriangulo& t1, CTriangulo& t2, CTriangulo& t3, int y, CPuntoTIN* a,
                                  CPuntoTIN* b) const {
    return Divide(&CCoor3D<int>::y, y, t1, t2, t3, a, b);
}

bool CTriangulo::Divide(int CCoor3D<int>::*eje, int valor, CTriangulo& t1, CTriangulo& t2, CTriangulo& t3, CPuntoTIN* a,
                        CPuntoTIN* b) const {
    const std::array<const CPuntoTIN*, 3> puntos = m_pPuntos;  // t1 to t3 may be this one
    const auto lado = [&](std::size_t k) {
        const int c = puntos[k]->*eje;
        return c > valor ? 1 : c < valor ? -1 : 0;
    };
    const std::array<int, 3> lados{lado(0), lado(1), lado(2)};
    if (std::ranges::find(lados, 1) == lados.end() || std::ranges::find(lados, -1) == lados.end()) return false;
    const auto corta = [&](const CPuntoTIN& p, const CPuntoTIN& q, CPuntoTIN* nuevo) {
        const auto en = [&](int CCoor3D<int>::*otro) {
            return enteros::Interpola(p.*otro, q.*otro, p.*eje, q.*eje, valor);
        };
        const int x = en(&CCoor3D<int>::x), y = en(&CCoor3D<int>::y), z = en(&CCoor3D<int>::z);
        nuevo->x = x, nuevo->y = y, nuevo->z = z;
    };
    // The vertex that has its side of the line for itself, or the line.
    std::size_t solo = 0;
    while (lados[solo] * lados[(solo + 1) % 3] > 0 || lados[solo] * lados[(solo + 2) % 3] > 0 ||
           (lados[solo] != 0 && lados[(solo + 1) % 3] * lados[(solo + 2) % 3] == 0))
        ++solo;
    const CPuntoTIN *const l = puntos[solo], *const m = puntos[(solo + 1) % 3], *const n = puntos[(solo + 2) % 3];
    if (lados[solo] == 0) {
        corta(*m, *n, a);
        b->x = l->x, b->y = l->y, b->z = l->z;
        t1 = CTriangulo(l, m, a, -1, -1, -1);
        t2 = CTriangulo(l, a, n, -1, -1, -1);
        t3 = CTriangulo();
    } else {
        corta(*l, *m, a);
        corta(*l, *n, b);
        t1 = CTriangulo(l, a, b, -1, -1, -1);
        t2 = CTriangulo(a, m, n, -1, -1, -1);
        t3 = CTriangulo(a, n, b, -1, -1, -1);
    }
    return true;
}

}  // namespace Vertiz
