// Points go in one by one: the triangles whose circle holds the new point give way to a fan round it (A. Bowyer,
// D. F. Watson, 1981). Their order (OrdenEspacial.h) keeps both the way to the next point and the fans short.

#include "model/Delaunay.h"

#include "model/OrdenEspacial.h"

#include <algorithm>

namespace Vertiz::geometria {
namespace {

constexpr int kCadaCuantos = 4096;  // points between two questions

}  // namespace

CDelaunay::CDelaunay(std::span<const CLugar> puntos) : m_Vertices(puntos.size()) {
    const std::vector<std::uint32_t> orden = OrdenEspacial(puntos);
    m_Lugares.reserve(puntos.size() + 1);
    m_Puntos.reserve(puntos.size() + 1);
    m_Lugares.emplace_back();
    m_Puntos.push_back(-1);
    for (const std::uint32_t i : orden) {
        if (CantidadVertices() == 0 || m_Lugares.back() != puntos[i]) {
            m_Lugares.push_back(puntos[i]);
            m_Puntos.push_back(static_cast<int>(i));
        }
        m_Vertices[i] = CantidadVertices();
    }
}

// The first triangle, of the first two vertices and the next one that isn't in line with them, which it returns.
int CDelaunay::Empieza() {
    int c = 3;
    while (c <= CantidadVertices() && Giro(1, 2, c) == 0)
        ++c;
    if (c > CantidadVertices()) return 0;
    const int a = Giro(1, 2, c) > 0 ? 1 : 2, b = 3 - a, f = kInfinito;
    m_Triangulos.reserve(2 * m_Lugares.size());
    m_Triangulos.push_back(Fila(a, b, c, Puerta(1, 2), Puerta(2, 2), Puerta(3, 2)));
    m_Triangulos.push_back(Fila(c, b, f, Puerta(3, 1), Puerta(2, 0), Puerta(0, 0)));
    m_Triangulos.push_back(Fila(a, c, f, Puerta(1, 1), Puerta(3, 0), Puerta(0, 1)));
    m_Triangulos.push_back(Fila(b, a, f, Puerta(2, 1), Puerta(1, 0), Puerta(0, 2)));
    return c;
}

bool CDelaunay::Triangula(const std::function<bool(int)>& sigue) {
    const int tercero = Empieza();
    if (tercero == 0) return true;
    for (int v = 3; v <= CantidadVertices(); ++v) {
        if (v != tercero) Inserta(v);
        if (v % kCadaCuantos == 0 && !sigue(v)) return false;
    }
    return true;
}

// The triangle that holds a place, or the infinite one beyond the side of the hull that faces it. Each step goes across
// a side that parts the triangle from the place; in a Delaunay triangulation such a walk never comes back.
int CDelaunay::Localiza(const CLugar& p) {
    int t = m_nUltimo;
    const auto fuera = [&](const CFila& triangulo, int k) {
        return predicados::Giro(P(V(triangulo, kOtro[k])), P(V(triangulo, kTercero[k])), p) < 0;
    };
    int k = 0;
    while (k < 3 && !fuera(T(t), k))
        ++k;
    while (k < 3) {
        const CPuerta puerta = N(T(t), k);
        t = Triangulo(puerta);
        const CFila& triangulo = T(t);
        if (Infinito(triangulo)) break;
        const int entrada = Lado(puerta);
        k = fuera(triangulo, kOtro[entrada])      ? kOtro[entrada]
            : fuera(triangulo, kTercero[entrada]) ? kTercero[entrada]
                                                  : 3;
    }
    return t;
}

// The circle of the triangle holds the place. That of an infinite one is the open half-plane beyond its side of the
// hull, with the side itself.
bool CDelaunay::EnConflicto(const CFila& t, const CLugar& p) const {
    if (!Infinito(t)) return predicados::EnCirculoUnico(P(V(t, 0)), P(V(t, 1)), P(V(t, 2)), p);
    const int k = Sitio(t, kInfinito);
    const CLugar &a = P(V(t, kOtro[k])), &b = P(V(t, kTercero[k]));
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
    m_Puertas.assign({N(T(primero), 2), N(T(primero), 1), N(T(primero), 0)});
    while (!m_Puertas.empty()) {
        const CPuerta puerta = m_Puertas.back();
        m_Puertas.pop_back();
        const int t = Triangulo(puerta), k = Lado(puerta);
        const CFila& triangulo = T(t);
        if (EnConflicto(triangulo, lugar)) {
            m_Cavidad.push_back(t);
            m_Puertas.push_back(N(triangulo, kTercero[k]));
            m_Puertas.push_back(N(triangulo, kOtro[k]));
        } else {
            m_Bordes.push_back({V(triangulo, kTercero[k]), puerta});
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
        T(t) = Fila(p, borde.a, m_Bordes[static_cast<std::size_t>(siguiente)].a, borde.otra, Puerta(despues, 2),
                    Puerta(previo, 1));
        PonVecino(T(Triangulo(borde.otra)), Lado(borde.otra), Puerta(t, 0));
        previo = t;
        if (!Infinito(T(t))) m_nUltimo = t;
    }
}

// In place: first the numbers that triangles will have go into their second words, then neighbours and marks are put
// in terms of them, and what is infinite drops out.
std::vector<CDelaunay::CFila> CDelaunay::Entrega(std::span<const int> numeros) {
    std::uint32_t cuantos = 0;
    for (CFila& t : m_Triangulos)
        t.SetPalabra(1, Infinito(t) ? 0 : ++cuantos);
    for (CFila& t : m_Triangulos) {
        if (Infinito(t)) continue;
        CFila nueva;
        nueva.SetPalabra(1, t.GetPalabra(1));
        nueva.SetBorrado((t.GetPalabra(0) & kBorrado) != 0);
        for (int k = 0; k < 3; ++k) {
            nueva.m_nVertices[static_cast<unsigned>(k)] = static_cast<std::uint32_t>(
                numeros[static_cast<std::size_t>(m_Puntos[static_cast<std::size_t>(V(t, k))])]);
            // Side k of the result begins at vertex k: it lies opposite to the vertex before.
            const int opuesto = kTercero[k];
            PonVecino(nueva, k, static_cast<int>(T(Triangulo(N(t, opuesto))).GetPalabra(1)) - 1);
            if ((Bits(t, opuesto) & LADO_FIJO) != 0) nueva.SetRuptura(k);
            if ((Bits(t, opuesto) & LADO_LIMITE) != 0) nueva.SetLimite(k);
        }
        t = nueva;
    }
    std::erase_if(m_Triangulos, [](const CFila& t) { return Infinito(t); });
    for (CFila& t : m_Triangulos)
        t.SetPalabra(1, 0);
    return std::move(m_Triangulos);
}

}  // namespace Vertiz::geometria
