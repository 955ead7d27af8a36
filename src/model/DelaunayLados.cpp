// Sides come after all points: the triangles that one cuts give way to two polygons along it, which are triangulated
// anew (M. V. Anglada: An improved incremental algorithm for constructing restricted Delaunay triangulations, 1997).

#include "model/Delaunay.h"

#include <algorithm>

namespace Vertiz::geometria {
namespace {

constexpr std::int32_t kNinguna = -1;

// p lies between a and b, with which it is in line, or at b.
bool EntreLugares(const predicados::CLugar& p, const predicados::CLugar& a, const predicados::CLugar& b) {
    return a < b ? a < p && p <= b : b <= p && p < a;
}

}  // namespace

void CDelaunay::AnotaTriangulos() {
    m_Desde.assign(m_Lugares.size(), 0);
    m_Grados.assign(m_Lugares.size(), 0);
    for (int t = 0; t < Cantidad(); ++t)
        for (const std::uint32_t v : T(t).m_nVertices) {
            m_Desde[v] = t;
            ++m_Grados[v];
        }
}

bool CDelaunay::InsertaLado(int puntoA, int puntoB, std::uint32_t marcas) {
    if (m_Desde.empty()) AnotaTriangulos();
    int a = Vertice(puntoA), b = Vertice(puntoB);
    // The search goes round the vertex: better round the one that has fewer triangles.
    if (m_Grados[static_cast<std::size_t>(a)] > m_Grados[static_cast<std::size_t>(b)]) std::swap(a, b);
    m_Cruzados.clear();
    m_Piezas.clear();
    while (a != b) {
        CPuerta puerta = Camina(a, b);
        if (!m_Cruzados.empty()) break;
        if (puerta == kNinguna) puerta = Rellena(a, m_Izquierda.back());
        const CFila& t = T(Triangulo(puerta));
        const int k = Lado(puerta), siguiente = V(t, kOtro[k]) == a ? V(t, kTercero[k]) : V(t, kOtro[k]);
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
    int a = Vertice(puntoA);
    const int b = Vertice(puntoB);
    while (a != b) {
        m_Cruzados.clear();
        const CPuerta puerta = Camina(a, b);
        for (const auto& [u, v] : m_Cruzados)
            lados.emplace_back(m_Puntos[static_cast<std::size_t>(u)], m_Puntos[static_cast<std::size_t>(v)]);
        if (puerta == kNinguna) {
            a = m_Izquierda.back();
            continue;
        }
        const CFila& t = T(Triangulo(puerta));
        const int k = Lado(puerta);
        a = V(t, kOtro[k]) == a ? V(t, kTercero[k]) : V(t, kOtro[k]);
    }
}

// Sets the marks of both sides of a side.
void CDelaunay::Marca(CPuerta puerta, std::uint32_t marcas) {
    CFila& t = T(Triangulo(puerta));
    const CPuerta otra = N(t, Lado(puerta));
    PonBits(t, Lado(puerta), marcas);
    PonBits(T(Triangulo(otra)), Lado(otra), marcas);
}

// Round a vertex: the side to `hasta`, or to a vertex on the way there; else the one across which the way leads out.
CDelaunay::CPuerta CDelaunay::Sale(int desde, int hasta) {
    int t = Desde(desde);
    for (;;) {
        const int k = Sitio(T(t), desde), p = V(T(t), kOtro[k]), q = V(T(t), kTercero[k]);
        if (p == hasta) return Puerta(t, kTercero[k]);
        if (p != kInfinito) {
            const int giro = Giro(desde, hasta, p);
            if (giro == 0 && EntreLugares(P(p), P(desde), P(hasta))) return Puerta(t, kTercero[k]);
            if (giro < 0 && q != kInfinito && q != hasta && Giro(desde, hasta, q) > 0) return Puerta(t, k);
        }
        t = Triangulo(N(T(t), kOtro[k]));
    }
}

CDelaunay::CPuerta CDelaunay::BuscaLado(int a, int b) {
    int t = Desde(a);
    for (;;) {
        const int k = Sitio(T(t), a);
        if (V(T(t), kOtro[k]) == b) return Puerta(t, kTercero[k]);
        t = Triangulo(N(T(t), kOtro[k]));
    }
}

// From a vertex to the next one on the way to `hasta`. If a side leads there, returns it. Else notes the triangles on
// the way, the vertices left and right of it from end to end, and the sides put in that it crosses.
CDelaunay::CPuerta CDelaunay::Camina(int desde, int hasta) {
    CPuerta puerta = Sale(desde, hasta);
    int t = Triangulo(puerta), k = Lado(puerta);
    if (V(T(t), k) != desde) return puerta;
    int derecha = V(T(t), kOtro[k]), izquierda = V(T(t), kTercero[k]);
    m_Cavidad.assign(1, t);
    m_Derecha.assign({desde, derecha});
    m_Izquierda.assign({desde, izquierda});
    for (;;) {
        if ((Bits(T(t), k) & LADO_FIJO) != 0) m_Cruzados.emplace_back(derecha, izquierda);
        puerta = N(T(t), k);
        t = Triangulo(puerta);
        m_Cavidad.push_back(t);
        const int v = V(T(t), Lado(puerta));
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
        T(t).SetPalabra(1, m_nNota);
    // Sides put in may end inside the cavity: they have triangles of it on both sides, and keep their marks.
    m_Enlaces.clear();
    for (const int t : m_Cavidad)
        for (int k = 0; k < 3; ++k) {
            const CPuerta otra = N(T(t), k);
            const bool bBorde = !EnCavidad(Triangulo(otra));
            if (bBorde || Bits(T(t), k) != 0)
                m_Enlaces.push_back(
                    {Clave(V(T(t), kOtro[k]), V(T(t), kTercero[k])), bBorde ? otra : kNinguna, Bits(T(t), k)});
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
            T(t) = Fila(m_Pila[m_Pila.size() - 2], v, m_Pila.back(), 0, 0, 0, m_nNota);
            for (int k = 0; k < 3; ++k) {
                m_Enlaces.push_back({Clave(V(T(t), kOtro[k]), V(T(t), kTercero[k])), Puerta(t, k), 0});
                Desde(V(T(t), k)) = t;
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
            CFila& t = T(Triangulo(puertas[j]));
            PonVecino(t, Lado(puertas[j]), puertas[1 - j]);
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
            const CFila& triangulo = T(t);
            const CPuerta otra = N(triangulo, k);
            if (!EnCavidad(Triangulo(otra)) || Bits(triangulo, k) != 0) continue;
            if (!predicados::EnCirculoUnico(P(V(triangulo, 0)), P(V(triangulo, 1)), P(V(triangulo, 2)),
                                            P(V(T(Triangulo(otra)), Lado(otra)))))
                continue;
            m_Pila.push_back(Triangulo(otra));
            m_Pila.push_back(t);
            Voltea(t, k);
            break;
        }
    }
}

// Puts the other diagonal in place of side k of a triangle.
void CDelaunay::Voltea(int t, int k) {
    const int u = Triangulo(N(T(t), k)), j = Lado(N(T(t), k));
    const CFila viejo = T(t), otro = T(u);
    const int a = V(viejo, k), b = V(viejo, kOtro[k]), c = V(viejo, kTercero[k]), d = V(otro, j);
    T(t) = Fila(a, b, d, 0, 0, 0, m_nNota);
    T(u) = Fila(a, d, c, 0, 0, 0, m_nNota);
    const auto une = [this](int mio, int lado, const CFila& antes, int sitio) {
        const CPuerta otra = N(antes, sitio);
        PonVecino(T(mio), lado, otra);
        PonBits(T(mio), lado, Bits(antes, sitio));
        PonVecino(T(Triangulo(otra)), Lado(otra), Puerta(mio, lado));
    };
    PonVecino(T(t), 1, Puerta(u, 2));
    PonVecino(T(u), 2, Puerta(t, 1));
    une(t, 0, otro, kOtro[j]);
    une(t, 2, viejo, kTercero[k]);
    une(u, 0, otro, kTercero[j]);
    une(u, 1, viejo, kOtro[k]);
    Desde(a) = Desde(b) = t;
    Desde(c) = Desde(d) = u;
}

}  // namespace Vertiz::geometria
