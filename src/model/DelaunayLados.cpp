// Sides come after all points: the triangles that one cuts give way to two polygons along it, which are triangulated
// anew (M. V. Anglada: An improved incremental algorithm for constructing restricted Delaunay triangulations, 1997).

#include "model/Delaunay.h"

#include <algorithm>

namespace Vertiz::geometria {
namespace {

constexpr int kOtro[3] = {1, 2, 0};     // the next place in a triangle
constexpr int kTercero[3] = {2, 0, 1};  // and the one after it
constexpr std::uint32_t kNinguna = 0xFFFFFFFFU;

// p lies between a and b, with which it is in line, or at b.
bool EntreLugares(const predicados::CLugar& p, const predicados::CLugar& a, const predicados::CLugar& b) {
    return a < b ? a < p && p <= b : b <= p && p < a;
}

}  // namespace

void CDelaunay::AnotaTriangulos() {
    m_Desde.assign(m_Lugares.size() + 1, 0);
    m_Grados.assign(m_Lugares.size() + 1, 0);
    for (int t = 0; t < Cantidad(); ++t)
        for (const int v : T(t).v) {
            Desde(v) = t;
            ++m_Grados[static_cast<std::size_t>(v + 1)];
        }
}

bool CDelaunay::InsertaLado(int puntoA, int puntoB, std::uint32_t marcas) {
    if (m_Desde.empty()) AnotaTriangulos();
    int a = m_Vertices[static_cast<std::size_t>(puntoA)], b = m_Vertices[static_cast<std::size_t>(puntoB)];
    // The search goes round the vertex: better round the one that has fewer triangles.
    if (m_Grados[static_cast<std::size_t>(a + 1)] > m_Grados[static_cast<std::size_t>(b + 1)]) std::swap(a, b);
    m_Cruzados.clear();
    m_Piezas.clear();
    while (a != b && m_Cruzados.empty()) {
        CPuerta puerta = Camina(a, b);
        if (!m_Cruzados.empty()) break;
        if (puerta == kNinguna) puerta = Rellena(a, m_Izquierda.back());
        const CTriangulo& t = T(Triangulo(puerta));
        const int k = Lado(puerta), siguiente = t.v[kOtro[k]] == a ? t.v[kTercero[k]] : t.v[kOtro[k]];
        m_Piezas.push_back({a, siguiente, Bits(t, k)});
        Marca(puerta, (Bits(t, k) | LADO_FIJO) ^ marcas);
        a = siguiente;
    }
    if (m_Cruzados.empty()) return true;
    for (const CPieza& pieza : m_Piezas)
        Marca(BuscaLado(pieza.a, pieza.b), pieza.antes);
    return false;
}

void CDelaunay::Cruzados(int puntoA, int puntoB, std::vector<CLado>& lados) {
    if (m_Desde.empty()) AnotaTriangulos();
    int a = m_Vertices[static_cast<std::size_t>(puntoA)];
    const int b = m_Vertices[static_cast<std::size_t>(puntoB)];
    while (a != b) {
        m_Cruzados.clear();
        const CPuerta puerta = Camina(a, b);
        for (const auto& [u, v] : m_Cruzados)
            lados.emplace_back(m_Puntos[static_cast<std::size_t>(u)], m_Puntos[static_cast<std::size_t>(v)]);
        if (puerta == kNinguna) {
            a = m_Izquierda.back();
            continue;
        }
        const CTriangulo& t = T(Triangulo(puerta));
        const int k = Lado(puerta);
        a = t.v[kOtro[k]] == a ? t.v[kTercero[k]] : t.v[kOtro[k]];
    }
}

// Sets the marks of both sides of a side.
void CDelaunay::Marca(CPuerta puerta, std::uint32_t marcas) {
    CTriangulo& t = T(Triangulo(puerta));
    const CPuerta otra = t.n[Lado(puerta)];
    PonBits(t, Lado(puerta), marcas);
    PonBits(T(Triangulo(otra)), Lado(otra), marcas);
}

// Round a vertex: the side to `hasta`, or to a vertex on the way there; else the one across which the way leads out.
CDelaunay::CPuerta CDelaunay::Sale(int desde, int hasta) {
    int t = Desde(desde);
    for (;;) {
        const int k = Sitio(T(t), desde), p = T(t).v[kOtro[k]], q = T(t).v[kTercero[k]];
        if (p == hasta) return Puerta(t, kTercero[k]);
        if (p != kInfinito) {
            const int giro = Giro(desde, hasta, p);
            if (giro == 0 && EntreLugares(P(p), P(desde), P(hasta))) return Puerta(t, kTercero[k]);
            if (giro < 0 && q != kInfinito && q != hasta && Giro(desde, hasta, q) > 0) return Puerta(t, k);
        }
        t = Triangulo(T(t).n[kOtro[k]]);
    }
}

CDelaunay::CPuerta CDelaunay::BuscaLado(int a, int b) {
    int t = Desde(a);
    for (;;) {
        const int k = Sitio(T(t), a);
        if (T(t).v[kOtro[k]] == b) return Puerta(t, kTercero[k]);
        t = Triangulo(T(t).n[kOtro[k]]);
    }
}

// From a vertex to the next one on the way to `hasta`. If a side leads there, returns it. Else notes the triangles on
// the way, the vertices left and right of it from end to end, and the sides put in that it crosses.
CDelaunay::CPuerta CDelaunay::Camina(int desde, int hasta) {
    CPuerta puerta = Sale(desde, hasta);
    int t = Triangulo(puerta), k = Lado(puerta);
    if (T(t).v[k] != desde) return puerta;
    int derecha = T(t).v[kOtro[k]], izquierda = T(t).v[kTercero[k]];
    m_Cavidad.assign(1, t);
    m_Derecha.assign({desde, derecha});
    m_Izquierda.assign({desde, izquierda});
    for (;;) {
        if ((Bits(T(t), k) & LADO_FIJO) != 0) m_Cruzados.emplace_back(derecha, izquierda);
        puerta = T(t).n[k];
        t = Triangulo(puerta);
        m_Cavidad.push_back(t);
        const int v = T(t).v[Lado(puerta)];
        const int giro = v == hasta ? 0 : Giro(desde, hasta, v);
        if (giro >= 0) m_Izquierda.push_back(v);
        if (giro <= 0) m_Derecha.push_back(v);
        if (giro == 0) return kNinguna;
        k = Sitio(T(t), giro > 0 ? izquierda : derecha);
        (giro > 0 ? izquierda : derecha) = v;
    }
}

// Puts triangles along a new side a b in place of those that it cut, as many as they were, and returns it.
CDelaunay::CPuerta CDelaunay::Rellena(int a, int b) {
    ++m_nNota;
    for (const int t : m_Cavidad)
        T(t).nota = m_nNota;
    // Sides put in may end inside the cavity: they have triangles of it on both sides, and keep their marks.
    m_Enlaces.clear();
    for (const int t : m_Cavidad)
        for (int k = 0; k < 3; ++k) {
            const CPuerta otra = T(t).n[k];
            const bool bBorde = T(Triangulo(otra)).nota != m_nNota;
            if (bBorde || Bits(T(t), k) != 0)
                m_Enlaces.push_back({Clave(T(t).v[kOtro[k]], T(t).v[kTercero[k]]), bBorde ? otra : kNinguna, Bits(T(t), k)});
        }
    m_nHechos = 0;
    RellenaCadena(m_Izquierda);
    std::ranges::reverse(m_Derecha);
    RellenaCadena(m_Derecha);
    Marca(Enlaza(Clave(a, b)), LADO_FIJO);
    Mejora();
    const CPuerta nueva = BuscaLado(a, b);
    Marca(nueva, 0);
    return nueva;
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
            T(t) = {{m_Pila[m_Pila.size() - 2], v, m_Pila.back()}, m_nNota, {}, 0};
            for (int k = 0; k < 3; ++k) {
                m_Enlaces.push_back({Clave(T(t).v[kOtro[k]], T(t).v[kTercero[k]]), Puerta(t, k), 0});
                Desde(T(t).v[k]) = t;
            }
            m_Pila.pop_back();
        }
        m_Pila.push_back(v);
    }
}

// The two triangles at each side have entries of one key, and the marks that it had may have one more. Returns the side
// of the key given.
CDelaunay::CPuerta CDelaunay::Enlaza(std::uint64_t ladoNuevo) {
    std::ranges::sort(m_Enlaces, {}, &CEnlace::clave);
    CPuerta nuevo = kNinguna;
    for (std::size_t i = 0; i < m_Enlaces.size();) {
        CPuerta puertas[2] = {};
        std::uint32_t marcas = 0;
        int cuantas = 0;
        const std::uint64_t clave = m_Enlaces[i].clave;
        for (; i < m_Enlaces.size() && m_Enlaces[i].clave == clave; ++i) {
            marcas |= m_Enlaces[i].marcas;
            if (m_Enlaces[i].puerta != kNinguna) puertas[cuantas++] = m_Enlaces[i].puerta;
        }
        for (const int j : {0, 1}) {
            CTriangulo& t = T(Triangulo(puertas[j]));
            t.n[Lado(puertas[j])] = puertas[1 - j];
            PonBits(t, Lado(puertas[j]), marcas);
        }
        if (clave == ladoNuevo) nuevo = puertas[0];
    }
    return nuevo;
}

// Makes the triangles of the cavity Delaunay's by turning the sides between them, but for those put in (C. L. Lawson:
// Software for C1 surface interpolation, 1977).
void CDelaunay::Mejora() {
    m_Pila = m_Cavidad;
    while (!m_Pila.empty()) {
        const int t = m_Pila.back();
        m_Pila.pop_back();
        for (int k = 0; k < 3; ++k) {
            const CTriangulo& triangulo = T(t);
            const CPuerta otra = triangulo.n[k];
            const CTriangulo& vecino = T(Triangulo(otra));
            if (vecino.nota != m_nNota || Bits(triangulo, k) != 0) continue;
            const auto& v = triangulo.v;
            if (!predicados::EnCirculoUnico(P(v[0]), P(v[1]), P(v[2]), P(vecino.v[Lado(otra)]))) continue;
            m_Pila.push_back(Triangulo(otra));
            m_Pila.push_back(t);
            Voltea(t, k);
            break;
        }
    }
}

// Puts the other diagonal in place of side k of a triangle.
void CDelaunay::Voltea(int t, int k) {
    const int u = Triangulo(T(t).n[k]), j = Lado(T(t).n[k]);
    const CTriangulo viejo = T(t), otro = T(u);
    const int a = viejo.v[k], b = viejo.v[kOtro[k]], c = viejo.v[kTercero[k]], d = otro.v[j];
    T(t) = {{a, b, d}, m_nNota, {}, 0};
    T(u) = {{a, d, c}, m_nNota, {}, 0};
    const auto une = [this](int mio, int lado, const CTriangulo& antes, int sitio) {
        const CPuerta otra = antes.n[sitio];
        T(mio).n[lado] = otra;
        PonBits(T(mio), lado, Bits(antes, sitio));
        T(Triangulo(otra)).n[Lado(otra)] = Puerta(mio, lado);
    };
    T(t).n[1] = Puerta(u, 2);
    T(u).n[2] = Puerta(t, 1);
    une(t, 0, otro, kOtro[j]);
    une(t, 2, viejo, kTercero[k]);
    une(u, 0, otro, kTercero[j]);
    une(u, 1, viejo, kOtro[k]);
    Desde(a) = Desde(b) = t;
    Desde(c) = Desde(d) = u;
}

}  // namespace Vertiz::geometria
