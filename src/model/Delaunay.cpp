// Points go in one by one: the triangles whose circle holds the new point give way to a fan round it (A. Bowyer,
// D. F. Watson, 1981). The order, drawn at random in rounds that double and sorted along a curve inside each (N.
// Amenta, S. Choi, G. Rote: Incremental constructions con BRIO, 2003), keeps both the way to the next point and the
// fans short. Sides come after all points: the triangles that one cuts give way to two polygons along it, which are
// triangulated anew (M. V. Anglada: An improved incremental algorithm for constructing restricted Delaunay
// triangulations, 1997).

#include "model/Delaunay.h"

#include "model/Predicados.h"

#include <algorithm>
#include <bit>

namespace Vertiz::geometria {
namespace {

constexpr int kOtro[3] = {1, 2, 0};     // the next place in a triangle
constexpr int kTercero[3] = {2, 0, 1};  // and the one after it

int Lugar(const CDelaunay::CTriangulo& t, int v) {
    return t.v[0] == v ? 0 : t.v[1] == v ? 1 : 2;
}

// Place of a point on the curve of Hilbert that fills the whole range of the integers.
std::uint64_t EnHilbert(const CCoor2D<int>& p) {
    std::uint32_t x = static_cast<std::uint32_t>(p.x) ^ 0x80000000U, y = static_cast<std::uint32_t>(p.y) ^ 0x80000000U;
    std::uint64_t lugar = 0;
    for (int bit = 31; bit >= 0; --bit) {
        const std::uint32_t este = x >> bit & 1U, norte = y >> bit & 1U;
        lugar = lugar << 2 | ((3U * este) ^ norte);
        if (norte == 0) {
            if (este != 0) x = ~x, y = ~y;
            std::swap(x, y);
        }
    }
    return lugar;
}

// The round of a point: the last one takes half of them, the one before a quarter ... Scrambles the index by the
// method of D. Lea and others ("Fast splittable pseudorandom number generators", 2014).
int Vuelta(std::uint64_t i) {
    i += 0x9E3779B97F4A7C15U;
    i = (i ^ i >> 30) * 0xBF58476D1CE4E5B9U;
    i = (i ^ i >> 27) * 0x94D049BB133111EBU;
    return -std::countr_zero(i ^ i >> 31);
}

}  // namespace

CDelaunay::CDelaunay(std::vector<CCoor2D<int>> puntos)
    : m_Puntos(std::move(puntos)), m_nInfinito(static_cast<int>(m_Puntos.size())) {}

int CDelaunay::Giro(int a, int b, int c) const {
    return predicados::Orientacion(P(a), P(b), P(c));
}

// Which side of t its neighbour is beyond.
int CDelaunay::LadoHacia(int t, int vecino) const {
    const auto& n = T(t).n;
    return n[0] == vecino ? 0 : n[1] == vecino ? 1 : 2;
}

bool CDelaunay::EsLimite(int a, int b) const {
    const auto fijo = m_Fijos.find(Clave(a, b));
    return fijo != m_Fijos.end() && fijo->second;
}

// ---- Points --------------------------------------------------------------------------------------------------------

std::vector<int> CDelaunay::Orden() const {
    struct CPuesto {
        int vuelta, indice;
        std::uint64_t lugar;
    };
    std::vector<CPuesto> puestos(m_Puntos.size());
    for (std::size_t i = 0; i < puestos.size(); ++i)
        puestos[i] = {Vuelta(i), static_cast<int>(i), EnHilbert(m_Puntos[i])};
    std::ranges::sort(puestos, [](const CPuesto& a, const CPuesto& b) {
        return a.vuelta != b.vuelta ? a.vuelta < b.vuelta : a.lugar < b.lugar;
    });
    std::vector<int> orden;
    orden.reserve(puestos.size());
    for (const CPuesto& puesto : puestos)
        orden.push_back(puesto.indice);
    return orden;
}

// The first triangle, of the first two points and the next one that isn't in line with them; they come to the front.
bool CDelaunay::Empieza(std::vector<int>& orden) {
    if (orden.size() < 3) return false;
    const auto tercero =
        std::find_if(orden.begin() + 2, orden.end(), [&](int v) { return Giro(orden[0], orden[1], v) != 0; });
    if (tercero == orden.end()) return false;
    std::swap(orden[2], *tercero);
    if (Giro(orden[0], orden[1], orden[2]) < 0) std::swap(orden[0], orden[1]);
    const int a = orden[0], b = orden[1], c = orden[2], f = m_nInfinito;
    m_Triangulos = {{{a, b, c}, {1, 2, 3}}, {{c, b, f}, {3, 2, 0}}, {{a, c, f}, {1, 3, 0}}, {{b, a, f}, {2, 1, 0}}};
    m_Marcas.assign(4, -1);
    return true;
}

bool CDelaunay::Triangula(const std::function<bool(int)>& sigue) {
    std::vector<int> orden = Orden();
    if (!Empieza(orden)) return true;
    m_Triangulos.reserve(2 * m_Puntos.size() + 2);
    m_Marcas.reserve(m_Triangulos.capacity());
    m_Desde.assign(m_Puntos.size() + 1, 0);
    constexpr std::size_t kCadaCuantos = 4096;
    for (std::size_t i = 3; i < orden.size(); ++i) {
        if (i % kCadaCuantos == 0 && !sigue(static_cast<int>(i))) return false;
        Inserta(orden[i]);
    }
    AnotaTriangulos();
    return true;
}

// The triangle that holds a point, or the infinite one beyond the side of the hull that faces it. Each step goes across
// a side that parts the triangle from the point; in a Delaunay triangulation such a walk never comes back.
int CDelaunay::Localiza(int p) const {
    int t = m_nUltimo, previo = -1;
    while (!EsInfinito(T(t))) {
        const CTriangulo& triangulo = T(t);
        int k = 0;
        while (k < 3 && (triangulo.n[k] == previo || Giro(triangulo.v[kOtro[k]], triangulo.v[kTercero[k]], p) >= 0))
            ++k;
        if (k == 3) break;
        previo = t;
        t = triangulo.n[k];
    }
    return t;
}

// The circle of the triangle holds the point. That of an infinite one is the open half-plane beyond its side of the
// hull, with the side itself.
bool CDelaunay::EnConflicto(int t, int p) const {
    const auto& v = T(t).v;
    if (!EsInfinito(T(t))) return predicados::EnCirculo(P(v[0]), P(v[1]), P(v[2]), P(p)) > 0;
    const int k = Lugar(T(t), m_nInfinito), a = v[kOtro[k]], b = v[kTercero[k]];
    const int giro = Giro(a, b, p);
    return giro > 0 || (giro == 0 && predicados::EnSegmento(P(p), P(a), P(b)));
}

void CDelaunay::Inserta(int p) {
    m_Cavidad.assign(1, Localiza(p));
    m_Marcas[static_cast<std::size_t>(m_Cavidad[0])] = p;
    m_Bordes.clear();
    for (std::size_t i = 0; i < m_Cavidad.size(); ++i) {
        const int t = m_Cavidad[i];
        for (int k = 0; k < 3; ++k) {
            const int vecino = T(t).n[k];
            if (m_Marcas[static_cast<std::size_t>(vecino)] == p) continue;
            if (EnConflicto(vecino, p)) {
                m_Marcas[static_cast<std::size_t>(vecino)] = p;
                m_Cavidad.push_back(vecino);
            } else {
                m_Bordes.push_back({T(t).v[kOtro[k]], T(t).v[kTercero[k]], vecino, LadoHacia(vecino, t)});
            }
        }
    }
    // The fan takes the places of the triangles that go; it has two more.
    m_Nuevos.clear();
    for (std::size_t i = 0; i < m_Bordes.size(); ++i) {
        const CBorde& borde = m_Bordes[i];
        int t = static_cast<int>(m_Triangulos.size());
        if (i < m_Cavidad.size()) {
            t = m_Cavidad[i];
        } else {
            m_Triangulos.emplace_back();
            m_Marcas.push_back(-1);
        }
        T(t) = {{p, borde.a, borde.b}, {borde.t, -1, -1}};
        T(borde.t).n[borde.lado] = t;
        m_Desde[static_cast<std::size_t>(borde.a)] = t;
        m_Nuevos.push_back(t);
    }
    for (const int t : m_Nuevos) {
        const int siguiente = m_Desde[static_cast<std::size_t>(T(t).v[2])];
        T(t).n[1] = siguiente;
        T(siguiente).n[2] = t;
        if (!EsInfinito(T(t))) m_nUltimo = t;
    }
}

void CDelaunay::AnotaTriangulos() {
    m_Grados.assign(m_Puntos.size() + 1, 0);
    for (std::size_t t = 0; t < m_Triangulos.size(); ++t)
        for (const int v : m_Triangulos[t].v) {
            m_Desde[static_cast<std::size_t>(v)] = static_cast<int>(t);
            ++m_Grados[static_cast<std::size_t>(v)];
        }
}

// ---- Sides ---------------------------------------------------------------------------------------------------------

void CDelaunay::Fija(int a, int b, bool bLimite) {
    bool& limite = m_Fijos[Clave(a, b)];
    limite = limite != bLimite;
}

std::optional<CDelaunay::CLado> CDelaunay::InsertaLado(int a, int b, bool bLimite) {
    // The search goes round the vertex: better round the one that has fewer triangles.
    if (m_Grados[static_cast<std::size_t>(a)] > m_Grados[static_cast<std::size_t>(b)]) std::swap(a, b);
    std::optional<CLado> cruce;
    while (a != b) {
        const int siguiente = Avanza(a, b, cruce);
        if (cruce) break;
        Fija(a, siguiente, bLimite);
        a = siguiente;
    }
    return cruce;
}

// Makes the side from a vertex to the first one on the way to `hasta`, and tells which that is.
int CDelaunay::Avanza(int desde, int hasta, std::optional<CLado>& cruce) {
    // Round the vertex, to the triangle that the way leads through. A vertex in line is ahead if it is no further than
    // `hasta` on the same side, which a box tells.
    int t = m_Desde[static_cast<std::size_t>(desde)];
    for (;;) {
        const int k = Lugar(T(t), desde), p = T(t).v[kOtro[k]], q = T(t).v[kTercero[k]];
        if (p == hasta) return p;
        if (p != m_nInfinito) {
            const int giro = Giro(desde, hasta, p);
            if (giro == 0 && predicados::EnSegmento(P(p), P(desde), P(hasta))) return p;
            if (giro < 0 && q != m_nInfinito && q != hasta && Giro(desde, hasta, q) > 0) break;
        }
        t = T(t).n[kOtro[k]];
    }
    // Through the triangles that it cuts, to the vertex where it comes out; what lies on either side makes a chain.
    const int k = Lugar(T(t), desde);
    int derecha = T(t).v[kOtro[k]], izquierda = T(t).v[kTercero[k]], enfrente = k;
    m_Cavidad.assign(1, t);
    m_Derecha = {desde, derecha};
    m_Izquierda = {desde, izquierda};
    for (;;) {
        if (EsFijo(derecha, izquierda)) {
            cruce = CLado{derecha, izquierda};
            return desde;
        }
        const int siguiente = T(t).n[enfrente], lado = LadoHacia(siguiente, t);
        const int v = T(siguiente).v[lado];
        t = siguiente;
        m_Cavidad.push_back(t);
        const int giro = v == hasta ? 0 : Giro(desde, hasta, v);
        if (giro >= 0) m_Izquierda.push_back(v);
        if (giro <= 0) m_Derecha.push_back(v);
        if (giro == 0) {
            Rellena(desde, v);
            return v;
        }
        enfrente = Lugar(T(t), giro > 0 ? izquierda : derecha);
        (giro > 0 ? izquierda : derecha) = v;
    }
}

// Puts triangles along a new side a b in place of those that it cut, as many as they were.
void CDelaunay::Rellena(int a, int b) {
    const int marca = --m_nMarca;
    for (const int t : m_Cavidad)
        m_Marcas[static_cast<std::size_t>(t)] = marca;
    m_Enlaces.clear();
    for (const int t : m_Cavidad)
        for (int k = 0; k < 3; ++k) {
            const int vecino = T(t).n[k];
            if (m_Marcas[static_cast<std::size_t>(vecino)] != marca)
                m_Enlaces.push_back({Clave(T(t).v[kOtro[k]], T(t).v[kTercero[k]]), vecino, LadoHacia(vecino, t)});
        }
    m_nHechos = 0;
    RellenaCadena(m_Izquierda);
    std::ranges::reverse(m_Derecha);
    RellenaCadena(m_Derecha);
    // The two triangles at each side have entries of one key.
    std::ranges::sort(m_Enlaces, {}, &CEnlace::clave);
    for (std::size_t i = 0; i + 1 < m_Enlaces.size(); i += 2) {
        const CEnlace &e = m_Enlaces[i], &f = m_Enlaces[i + 1];
        T(e.t).n[e.lado] = f.t;
        T(f.t).n[f.lado] = e.t;
    }
    Mejora(Clave(a, b));
}

// Triangulates the polygon between a chain and the way from its first vertex to its last, to the left of which it lies.
// All of the chain is seen from that way, so that each corner that turns towards it can be cut off as it comes (G.
// Toussaint, D. Avis: On a convex hull algorithm for polygons and its application to triangulation problems, 1982). A
// vertex may come twice, where a side ends inside the polygon.
void CDelaunay::RellenaCadena(const std::vector<int>& cadena) {
    m_Pila.clear();
    for (const int v : cadena) {
        while (m_Pila.size() >= 2 && Giro(m_Pila[m_Pila.size() - 2], m_Pila.back(), v) < 0) {
            const int t = m_Cavidad[m_nHechos++];
            T(t).v = {m_Pila[m_Pila.size() - 2], v, m_Pila.back()};
            for (int k = 0; k < 3; ++k) {
                m_Enlaces.push_back({Clave(T(t).v[kOtro[k]], T(t).v[kTercero[k]]), t, k});
                m_Desde[static_cast<std::size_t>(T(t).v[k])] = t;
            }
            m_Pila.pop_back();
        }
        m_Pila.push_back(v);
    }
}

// Makes the triangles of the cavity Delaunay's by turning the sides between them, all but the new one (C. L. Lawson:
// Software for C1 surface interpolation, 1977).
void CDelaunay::Mejora(std::uint64_t ladoNuevo) {
    m_Pila = m_Cavidad;
    while (!m_Pila.empty()) {
        const int t = m_Pila.back();
        m_Pila.pop_back();
        for (int k = 0; k < 3; ++k) {
            const CTriangulo& triangulo = T(t);
            const int vecino = triangulo.n[k], b = triangulo.v[kOtro[k]], c = triangulo.v[kTercero[k]];
            const std::uint64_t clave = Clave(b, c);
            if (m_Marcas[static_cast<std::size_t>(vecino)] != m_nMarca || clave == ladoNuevo) continue;
            const int d = T(vecino).v[LadoHacia(vecino, t)];
            if (predicados::EnCirculo(P(triangulo.v[k]), P(b), P(c), P(d)) <= 0 || m_Fijos.contains(clave)) continue;
            Voltea(t, k);
            m_Pila.push_back(t);
            m_Pila.push_back(vecino);
            break;
        }
    }
}

// Puts the other diagonal in place of side k of a triangle.
void CDelaunay::Voltea(int t, int k) {
    const int u = T(t).n[k], j = LadoHacia(u, t);
    const CTriangulo viejo = T(t), otro = T(u);
    const int a = viejo.v[k], b = viejo.v[kOtro[k]], c = viejo.v[kTercero[k]], d = otro.v[j];
    const int ca = viejo.n[kOtro[k]], ab = viejo.n[kTercero[k]], bd = otro.n[kOtro[j]], dc = otro.n[kTercero[j]];
    T(t) = {{a, b, d}, {bd, u, ab}};
    T(u) = {{a, d, c}, {dc, ca, t}};
    T(bd).n[LadoHacia(bd, u)] = t;
    T(ca).n[LadoHacia(ca, t)] = u;
    m_Desde[static_cast<std::size_t>(a)] = m_Desde[static_cast<std::size_t>(b)] = t;
    m_Desde[static_cast<std::size_t>(c)] = m_Desde[static_cast<std::size_t>(d)] = u;
}

}  // namespace Vertiz::geometria
