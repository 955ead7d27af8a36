// Points go in one by one: the triangles whose circle holds the new point give way to a fan round it (A. Bowyer,
// D. F. Watson, 1981). Their order (OrdenEspacial.h) keeps both the way to the next point and the fans short.

#include "model/Delaunay.h"

#include "model/OrdenEspacial.h"

#include <algorithm>

namespace Vertiz::geometria {
namespace {

constexpr int kOtro[3] = {1, 2, 0};     // the next place in a triangle
constexpr int kTercero[3] = {2, 0, 1};  // and the one after it
constexpr int kCadaCuantos = 4096;      // points between two questions

}  // namespace

CDelaunay::CDelaunay(std::span<const CLugar> puntos) : m_Vertices(puntos.size()) {
    const std::vector<std::uint32_t> orden = OrdenEspacial(puntos);
    m_Lugares.reserve(puntos.size());
    m_Puntos.reserve(puntos.size());
    for (const std::uint32_t i : orden) {
        if (m_Lugares.empty() || m_Lugares.back() != puntos[i]) {
            m_Lugares.push_back(puntos[i]);
            m_Puntos.push_back(static_cast<int>(i));
        }
        m_Vertices[i] = static_cast<int>(m_Puntos.size()) - 1;
    }
}

// The first triangle, of the first two vertices and the next one that isn't in line with them, which it returns.
int CDelaunay::Empieza() {
    const int cuantos = static_cast<int>(m_Lugares.size());
    int c = 2;
    while (c < cuantos && Giro(0, 1, c) == 0)
        ++c;
    if (c >= cuantos) return 0;
    const int a = Giro(0, 1, c) > 0 ? 0 : 1, b = 1 - a, f = kInfinito;
    const auto triangulo = [](int u, int v, int w, CPuerta x, CPuerta y, CPuerta z) {
        return CTriangulo{{u, v, w}, 0, {x, y, z}, 0};
    };
    m_Triangulos.reserve(2 * m_Lugares.size());
    m_Triangulos.push_back(triangulo(a, b, c, Puerta(1, 2), Puerta(2, 2), Puerta(3, 2)));
    m_Triangulos.push_back(triangulo(c, b, f, Puerta(3, 1), Puerta(2, 0), Puerta(0, 0)));
    m_Triangulos.push_back(triangulo(a, c, f, Puerta(1, 1), Puerta(3, 0), Puerta(0, 1)));
    m_Triangulos.push_back(triangulo(b, a, f, Puerta(2, 1), Puerta(1, 0), Puerta(0, 2)));
    return c;
}

bool CDelaunay::Triangula(const std::function<bool(int)>& sigue) {
    const int tercero = m_Lugares.size() < 3 ? 0 : Empieza();
    if (tercero == 0) return true;
    for (int i = 2; i < static_cast<int>(m_Lugares.size()); ++i) {
        if (i % kCadaCuantos == 0 && !sigue(i)) return false;
        if (i != tercero) Inserta(i);
    }
    return true;
}

// The triangle that holds a place, or the infinite one beyond the side of the hull that faces it. Each step goes across
// a side that parts the triangle from the place; in a Delaunay triangulation such a walk never comes back.
int CDelaunay::Localiza(const CLugar& p) {
    int t = m_nUltimo;
    const auto fuera = [&](const CTriangulo& triangulo, int k) {
        return predicados::Giro(P(triangulo.v[kOtro[k]]), P(triangulo.v[kTercero[k]]), p) < 0;
    };
    int k = 0;
    while (k < 3 && !fuera(T(t), k))
        ++k;
    while (k < 3) {
        const CPuerta puerta = T(t).n[k];
        t = Triangulo(puerta);
        const CTriangulo& triangulo = T(t);
        if (Infinito(triangulo)) break;
        const int entrada = Lado(puerta);
        k = fuera(triangulo, kOtro[entrada]) ? kOtro[entrada] : fuera(triangulo, kTercero[entrada]) ? kTercero[entrada] : 3;
    }
    return t;
}

// The circle of the triangle holds the place. That of an infinite one is the open half-plane beyond its side of the
// hull, with the side itself.
bool CDelaunay::EnConflicto(const CTriangulo& t, const CLugar& p) const {
    if (!Infinito(t)) return predicados::EnCirculoUnico(P(t.v[0]), P(t.v[1]), P(t.v[2]), p);
    const int k = Sitio(t, kInfinito);
    const CLugar &a = P(t.v[kOtro[k]]), &b = P(t.v[kTercero[k]]);
    const int giro = predicados::Giro(a, b, p);
    return giro > 0 || (giro == 0 && std::min(a, b) < p && p < std::max(a, b));
}

// The cavity is looked through counterclockwise along its border. Its triangles hang together as a tree, for no vertex
// lies inside: so none is met twice.
void CDelaunay::Inserta(int p) {
    const CLugar lugar = P(p);
    const int primero = Localiza(lugar);
    m_Cavidad.assign(1, primero);
    m_Bordes.clear();
    m_Puertas.assign({T(primero).n[2], T(primero).n[1], T(primero).n[0]});
    while (!m_Puertas.empty()) {
        const CPuerta puerta = m_Puertas.back();
        m_Puertas.pop_back();
        const int t = Triangulo(puerta), k = Lado(puerta);
        const CTriangulo& triangulo = T(t);
        if (EnConflicto(triangulo, lugar)) {
            m_Cavidad.push_back(t);
            m_Puertas.push_back(triangulo.n[kTercero[k]]);
            m_Puertas.push_back(triangulo.n[kOtro[k]]);
        } else {
            m_Bordes.push_back({triangulo.v[kTercero[k]], puerta});
        }
    }
    // The fan takes the places of the triangles that go; it has two more.
    const int lados = static_cast<int>(m_Bordes.size());
    m_Cavidad.push_back(Cantidad());
    m_Cavidad.push_back(Cantidad() + 1);
    m_Triangulos.resize(m_Triangulos.size() + 2);
    int previo = m_Cavidad[static_cast<std::size_t>(lados - 1)];
    for (int i = 0; i < lados; ++i) {
        const CBorde borde = m_Bordes[static_cast<std::size_t>(i)];
        const int siguiente = i + 1 < lados ? i + 1 : 0;
        const int t = m_Cavidad[static_cast<std::size_t>(i)], despues = m_Cavidad[static_cast<std::size_t>(siguiente)];
        T(t) = {{p, borde.a, m_Bordes[static_cast<std::size_t>(siguiente)].a},
                0,
                {borde.otra, Puerta(despues, 2), Puerta(previo, 1)},
                0};
        T(Triangulo(borde.otra)).n[Lado(borde.otra)] = Puerta(t, 0);
        previo = t;
        if (!Infinito(T(t))) m_nUltimo = t;
    }
}

}  // namespace Vertiz::geometria
