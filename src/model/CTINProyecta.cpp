// Where points and lines lie on a triangulated terrain.
//
// A point is looked for by a visibility walk from a triangle nearby (O. Devillers, S. Pion, M. Teillaud: Walking in a
// triangulation, 2002), whose random choice of the first side ends it in any triangulation. A walk that comes to a
// border goes on along the level line through the point, from the border sides that this line crosses.

#include "model/BusquedaTIN.h"
#include "model/CTIN.h"
#include "model/Enteros.h"
#include "model/Predicados.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <unordered_set>
#include <utility>

namespace Vertiz {
namespace {

using enteros::Cruz;
using enteros::Entero;
using enteros::Signo;
using predicados::CPlano;

// Side of a point seen along the side of a triangle, 1 inside. Most are clear from the doubles alone.
int Lado(const CPuntoTIN& a, const CPuntoTIN& b, const CPlano& p) {
    const double izquierda = (double(b.x) - a.x) * (p.y - a.y), derecha = (double(b.y) - a.y) * (p.x - a.x);
    const double det = izquierda - derecha;
    constexpr double cota = 1e-15;
    if (std::abs(det) > cota * (std::abs(izquierda) + std::abs(derecha))) return det > 0.0 ? 1 : -1;
    return predicados::Orientacion(CPlano(a), CPlano(b), p);
}

bool TieneVertices(const CTIN& tin, unsigned t) {
    const auto& v = tin.Fila(t).m_nVertices;
    return v[0] != 0 && v[1] != 0 && v[2] != 0;
}

// Looks for triangles, whether they are shown or not.
class CPaseo {
  public:
    CPaseo(const CTIN& tin, const CBusquedaTIN& busqueda, const CPlano& p)
        : m_Tin(tin), m_Busqueda(busqueda), m_Punto(p) {}

    // A triangle whose inside or border has the point, or -1.
    [[nodiscard]] int Busca(unsigned desde) const {
        const int t = Anda(desde);
        return t >= 0 ? t : PorNivel();
    }

    // All triangles that have the point, one that was found being given, and whether no border runs through it.
    // @param cuenta  tells of a triangle whether it takes part in the surface
    template <class Cuenta>
    [[nodiscard]] std::pair<std::vector<unsigned>, bool> Corro(unsigned t, Cuenta cuenta) const {
        std::vector<unsigned> corro{t};
        bool bInterior = true;
        const auto agrega = [&](unsigned u) {
            if (std::ranges::find(corro, u) == corro.end()) corro.push_back(u);
        };
        // Surfaces that touch in the point alone aren't neighbours.
        for (const CBusquedaTIN::CBorde& borde : m_Busqueda.Bordes(m_Punto.y, m_Punto.y))
            if (TieneVertices(borde.m_nTriangulo) && EnLado(borde.m_nTriangulo, borde.m_nLado))
                agrega(borde.m_nTriangulo);
        for (std::size_t i = 0; i < corro.size(); ++i) {
            const unsigned u = corro[i];
            bInterior = bInterior && cuenta(u);
            for (unsigned k = 0; k < 3; ++k) {
                if (!EnLado(u, k)) continue;
                const std::int32_t vecino = m_Tin.Fila(u).m_nVecinos[k];
                if (vecino >= 0 && TieneVertices(unsigned(vecino))) {
                    agrega(unsigned(vecino));
                } else {
                    bInterior = false;
                }
            }
        }
        return {corro, bInterior};
    }

    // The point lies inside, on no side.
    [[nodiscard]] bool Dentro(unsigned t) const {
        for (unsigned k = 0; k < 3; ++k)
            if (Gira(t, k) <= 0) return false;
        return true;
    }

  private:
    [[nodiscard]] bool TieneVertices(unsigned t) const { return Vertiz::TieneVertices(m_Tin, t); }
    [[nodiscard]] const CPuntoTIN& Vertice(unsigned t, unsigned k) const { return m_Tin.Vertice(t, int(k % 3)); }
    [[nodiscard]] int Gira(unsigned t, unsigned k) const { return Lado(Vertice(t, k), Vertice(t, k + 1), m_Punto); }
    [[nodiscard]] bool EnLado(unsigned t, unsigned k) const {
        return predicados::EnSegmento(m_Punto, CPlano(Vertice(t, k)), CPlano(Vertice(t, k + 1)));
    }
    [[nodiscard]] bool Tiene(unsigned t) const {
        bool bArea = false;
        for (unsigned k = 0; k < 3; ++k) {
            const int giro = Gira(t, k);
            if (giro < 0) return false;
            bArea = bArea || giro > 0;
        }
        // Three sides in line with the point: it may lie beyond their ends.
        return bArea || EnLado(t, 0) || EnLado(t, 1) || EnLado(t, 2);
    }

    [[nodiscard]] int Anda(unsigned t) const {
        unsigned azar = 0x9E3779B9U;
        unsigned anterior = ~0U;
        if (!TieneVertices(t)) return -1;
        for (unsigned quedan = m_Busqueda.PasosMaximos(); quedan > 0; --quedan) {
            const CTIN::CFila& fila = m_Tin.Fila(t);
            azar = azar * 1664525U + 1013904223U;
            const unsigned primero = (azar >> 16) % 3;
            bool bPasa = false;
            for (unsigned i = 0; i < 3 && !bPasa; ++i) {
                const unsigned k = (primero + i) % 3;
                const std::int32_t vecino = fila.m_nVecinos[k];
                if ((vecino >= 0 && unsigned(vecino) == anterior) || Gira(t, k) >= 0) continue;
                if (vecino < 0 || !TieneVertices(unsigned(vecino))) return -1;
                anterior = t;
                t = unsigned(vecino);
                bPasa = true;
            }
            if (!bPasa) return Tiene(t) ? int(t) : -1;
        }
        return -1;
    }

    // Along the level line from the west. A vertex on it counts as below.
    [[nodiscard]] bool Encima(unsigned t, unsigned k) const { return double(Vertice(t, k).y) > m_Punto.y; }

    [[nodiscard]] int PorNivel() const {
        std::vector<std::pair<double, CBusquedaTIN::CBorde>> entradas;
        int vueltas = 0;
        for (const CBusquedaTIN::CBorde& borde : m_Busqueda.Bordes(m_Punto.y, m_Punto.y)) {
            const unsigned t = borde.m_nTriangulo, k = borde.m_nLado;
            if (!TieneVertices(t)) continue;
            if (EnLado(t, k) && Tiene(t)) return int(t);
            const bool desde = Encima(t, k), hasta = Encima(t, k + 1);
            if (desde == hasta) continue;
            // West of the point: it lies to the left of a side that goes down, to the right of one that goes up.
            const int giro = Gira(t, k);
            if (desde ? giro <= 0 : giro >= 0) continue;
            vueltas += desde ? 1 : -1;
            const CPuntoTIN &a = Vertice(t, k), &b = Vertice(t, k + 1);
            if (desde)
                entradas.emplace_back(a.x + (double(b.x) - a.x) * (m_Punto.y - a.y) / (double(b.y) - a.y), borde);
        }
        if (vueltas == 0) return -1;
        std::ranges::sort(entradas, [](const auto& a, const auto& b) { return a.first > b.first; });
        for (const auto& [x, borde] : entradas) {
            const int t = HaciaElEste(borde);
            if (t >= 0) return t;
        }
        return -1;
    }

    [[nodiscard]] int HaciaElEste(const CBusquedaTIN::CBorde& borde) const {
        unsigned t = borde.m_nTriangulo, entra = borde.m_nLado;
        for (unsigned quedan = m_Tin.CantidadTriangulos(); quedan > 0; --quedan) {
            if (Tiene(t)) return int(t);
            const unsigned sale = Encima(t, entra + 1) != Encima(t, entra + 2) ? (entra + 1) % 3 : (entra + 2) % 3;
            const std::int32_t vecino = m_Tin.Fila(t).m_nVecinos[sale];
            if (vecino < 0 || !TieneVertices(unsigned(vecino))) return -1;
            const auto& vuelta = m_Tin.Fila(unsigned(vecino)).m_nVecinos;
            const auto lado = std::ranges::find(vuelta, std::int32_t(t));
            if (lado == vuelta.end()) return -1;
            entra = unsigned(lado - vuelta.begin());
            t = unsigned(vecino);
        }
        return -1;
    }

    const CTIN& m_Tin;
    const CBusquedaTIN& m_Busqueda;
    CPlano m_Punto;
};

bool TieneArea(const CTIN& tin, unsigned t) {
    return Cruz(tin.Vertice(t, 0), tin.Vertice(t, 1), tin.Vertice(t, 2)) != 0;
}

}  // namespace

int CTIN::Localiza(double x, double y, bool bBorde, unsigned modo, int desde) const {
    if (m_pBusqueda == nullptr || !std::isfinite(x) || !std::isfinite(y)) return -1;
    const CPaseo paseo(*this, *m_pBusqueda, CPlano(x, y));
    const bool bSabe = desde >= 0 && unsigned(desde) < CantidadTriangulos();
    const int t = paseo.Busca(bSabe ? unsigned(desde) : m_pBusqueda->Cerca(x, y));
    if (t < 0) return -1;
    const auto cuenta = [this, modo](unsigned i) { return modo != 0 || EsVisible(i); };
    if (paseo.Dentro(unsigned(t))) return cuenta(unsigned(t)) ? t : -1;
    if (bBorde && cuenta(unsigned(t)) && TieneArea(*this, unsigned(t))) return t;
    // On a side or a vertex: others that meet there may count.
    const auto [corro, bInterior] = paseo.Corro(unsigned(t), cuenta);
    if (!bBorde && !bInterior) return -1;
    for (const unsigned i : corro)
        if (cuenta(i) && TieneArea(*this, i)) return int(i);
    return -1;
}

namespace {

unsigned* Anota(unsigned* triangulo, int hallado) {
    if (triangulo != nullptr) *triangulo = unsigned(hallado);
    return triangulo;
}

int Comienzo(const unsigned* triangulo) {
    return triangulo != nullptr && *triangulo <= 0x7FFFFFFFU ? int(*triangulo) : -1;
}

}  // namespace

// The height of a triangle's plane, stored units. @param i  has area in plan
double CTIN::AlturaEn(unsigned i, double x, double y) const {
    const CCoor3D<double> a(Vertice(i, 0));
    const CCoor3D<double> u = CCoor3D<double>(Vertice(i, 1)) - a, v = CCoor3D<double>(Vertice(i, 2)) - a;
    const double dx = x - a.x, dy = y - a.y, area = u.x * v.y - u.y * v.x;
    return a.z + ((dx * v.y - dy * v.x) * u.z + (u.x * dy - u.y * dx) * v.z) / area;
}

bool CTIN::Proyecta(CCoor3D<double>& punto, bool bBorde, unsigned modo, unsigned* triangulo) const {
    const double precision = Precision();
    const double x = punto.x * precision, y = punto.y * precision;
    const int t = Localiza(x, y, bBorde, modo, Comienzo(triangulo));
    if (t < 0) return false;
    Anota(triangulo, t);
    punto.z = AlturaEn(unsigned(t), x, y) / precision;
    return true;
}

bool CTIN::Proyecta(CCoor3D<int>& punto, bool bBorde, unsigned modo, unsigned* triangulo) const {
    const int t = Localiza(punto.x, punto.y, bBorde, modo, Comienzo(triangulo));
    if (t < 0) return false;
    Anota(triangulo, t);
    return Triangulo(unsigned(t)).Proyecta(punto, true, 0, 1.0);
}

// ---- Lines ---------------------------------------------------------------------------------------------------------

namespace {

// Where a segment meets sides of triangles that count: exact, rounded once.
class CCortes {
  public:
    CCortes(const CTIN& tin, const CBusquedaTIN& busqueda, unsigned modo)
        : m_Tin(tin), m_Busqueda(busqueda), m_nModo(modo) {}

    // The places between the ends of a segment, in its order.
    const std::vector<CCoor3D<int>>& Busca(const CCoor3D<int>& a, const CCoor3D<int>& b) {
        m_Lugares.clear(), m_Puntos.clear(), m_Vistos.clear(), m_Pendientes.clear();
        // From an end, and from each border: parts without a border between them hang together.
        const int t = m_Tin.Localiza(a.x, a.y, true, 1);
        if (t >= 0) Visita(unsigned(t));
        for (const CBusquedaTIN::CBorde& borde : m_Busqueda.Bordes(std::min(a.y, b.y), std::max(a.y, b.y)))
            if (TieneVertices(m_Tin, borde.m_nTriangulo) && Toca(a, b, borde.m_nTriangulo, borde.m_nLado, false))
                Visita(borde.m_nTriangulo);
        while (!m_Pendientes.empty()) {
            const unsigned u = m_Pendientes.back();
            m_Pendientes.pop_back();
            const bool bCuenta = m_nModo != 0 || m_Tin.EsVisible(u);
            for (unsigned k = 0; k < 3; ++k) {
                const std::int32_t vecino = m_Tin.Fila(u).m_nVecinos[k];
                if (Toca(a, b, u, k, bCuenta) && vecino >= 0) Visita(unsigned(vecino));
            }
        }
        std::ranges::stable_sort(m_Lugares, [](const auto& p, const auto& q) { return p.first < q.first; });
        for (const auto& [parte, lugar] : m_Lugares)
            m_Puntos.push_back(lugar);
        return m_Puntos;
    }

  private:
    void Visita(unsigned t) {
        if (TieneVertices(m_Tin, t) && m_Vistos.insert(t).second) m_Pendientes.push_back(t);
    }

    // The segment shares a point with a side; it is noted unless it is an end of the segment inside the side.
    bool Toca(const CCoor3D<int>& a, const CCoor3D<int>& b, unsigned t, unsigned k, bool bAnota) {
        const CPuntoTIN &c = m_Tin.Vertice(t, int(k)), &d = m_Tin.Vertice(t, int((k + 1) % 3));
        if (std::max(a.x, b.x) < std::min(c.x, d.x) || std::max(c.x, d.x) < std::min(a.x, b.x) ||
            std::max(a.y, b.y) < std::min(c.y, d.y) || std::max(c.y, d.y) < std::min(a.y, b.y))
            return false;
        const Entero ladoC = Cruz(a, b, c), ladoD = Cruz(a, b, d);
        if (Signo(ladoC) * Signo(ladoD) > 0) return false;
        const Entero ladoA = Cruz(c, d, a), ladoB = Cruz(c, d, b);
        if (Signo(ladoA) * Signo(ladoB) > 0) return false;
        if (!bAnota) return true;
        if (ladoC == 0) AnotaVertice(a, b, c);  // the other end begins the triangle's next side
        if (Signo(ladoC) * Signo(ladoD) < 0 && Signo(ladoA) * Signo(ladoB) < 0) {
            const Entero total = ladoA - ladoB, ancho = ladoC - ladoD;
            const auto en = [&](int p, int q) {
                return int(enteros::Divide(p * total + (Entero{q} - p) * ladoA, total));
            };
            const int z = int(enteros::Divide(c.z * ancho + (Entero{d.z} - c.z) * ladoC, ancho));
            m_Lugares.emplace_back(double(ladoA) / double(total), CCoor3D<int>(en(a.x, b.x), en(a.y, b.y), z));
        }
        return true;
    }

    // A vertex in line with the segment, if between its ends.
    void AnotaVertice(const CCoor3D<int>& a, const CCoor3D<int>& b, const CPuntoTIN& v) {
        const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
        const double parte = std::abs(dx) > std::abs(dy) ? (double(v.x) - a.x) / dx : (double(v.y) - a.y) / dy;
        if (parte > 0.0 && parte < 1.0) m_Lugares.emplace_back(parte, CCoor3D<int>(v.x, v.y, v.z));
    }

    const CTIN& m_Tin;
    const CBusquedaTIN& m_Busqueda;
    unsigned m_nModo;
    std::vector<std::pair<double, CCoor3D<int>>> m_Lugares;  // by their part of the segment
    std::vector<CCoor3D<int>> m_Puntos;
    std::unordered_set<unsigned> m_Vistos;
    std::vector<unsigned> m_Pendientes;
};

}  // namespace

bool CTIN::Proyecta(CLinea<int>& linea, bool bInserta, bool bConserva, bool bBorrados, int sube, int separacion,
                    bool bBorde) const {
    const std::vector<CCoor3D<int>> puntos(linea.Puntos().begin(), linea.Puntos().end());
    const unsigned modo = bBorrados ? 1 : 0;
    unsigned cerca = ~0U;
    bool bTodos = true;
    const double minima = double(separacion) * separacion;
    linea.Clear();
    std::optional<CCortes> cortes;
    if (bInserta && m_pBusqueda != nullptr) cortes.emplace(*this, *m_pBusqueda, modo);
    for (std::size_t i = 0; i < puntos.size(); ++i) {
        CCoor3D<int> punto = puntos[i];
        if (Proyecta(punto, bBorde, modo, &cerca)) {
            punto.z = coordenadas::Suma(punto.z, sube);
            linea << punto;
        } else {
            bTodos = false;
            if (bConserva) linea << punto;
        }
        if (!cortes || i + 1 == puntos.size() || CCoor2D<int>(punto) == CCoor2D<int>(puntos[i + 1])) continue;
        const CCoor3D<int>& siguiente = puntos[i + 1];
        CCoor3D<int> anterior = puntos[i];
        for (const CCoor3D<int>& lugar : cortes->Busca(puntos[i], siguiente)) {
            const double distancia = std::min(lugar.Distancia2(anterior, 0), lugar.Distancia2(siguiente, 0));
            if (distancia == 0.0 || distancia < minima) continue;
            anterior = lugar;
            linea << CCoor3D<int>(lugar.x, lugar.y, coordenadas::Suma(lugar.z, sube), puntos[i].GetTipoCompleto());
        }
    }
    return bTodos;
}

}  // namespace Vertiz
