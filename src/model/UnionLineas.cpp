// Ends are gathered into nodes through a hash of squares, so that joining doesn't compare every line with every other;
// chains are then walked from node to node.

#include "model/UnionLineas.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_map>

namespace Vertiz::geometria {
namespace {

constexpr unsigned kNinguno = ~0u;

// The ends of line t are 2 t (first) and 2 t + 1 (last).
unsigned Otro(unsigned extremo) {
    return extremo ^ 1;
}

// Numbers the places where ends meet.
class CBuscaNudos {
  public:
    CBuscaNudos(std::span<const CTramo> tramos, const CReglasUnion& reglas)
        : m_Tramos(tramos), m_Reglas(reglas), m_dLado(4 * std::max(reglas.distancia, 1e-12)) {
        m_Cabezas.reserve(2 * tramos.size());
    }

    std::vector<unsigned> Numera() {
        std::vector<unsigned> nudos(2 * m_Tramos.size());
        for (unsigned e = 0; e < nudos.size(); e++) {
            nudos[e] = Busca(e);
            if (nudos[e] == kNinguno) nudos[e] = Crea(e);
        }
        return nudos;
    }

    unsigned Cantidad() const { return unsigned(m_Nudos.size()); }

  private:
    struct CCuadro {
        double i, j;
        bool operator==(const CCuadro&) const = default;
    };
    struct CMezcla {
        std::size_t operator()(const CCuadro& c) const {
            const std::hash<double> h;
            return h(c.i) * 0x9E3779B97F4A7C15u ^ h(c.j);
        }
    };
    struct CNudo {
        unsigned extremo;    // the end that made it
        unsigned siguiente;  // the next node in the same square
    };

    const CCoor3D<double>& Lugar(unsigned extremo) const { return m_Tramos[extremo / 2].extremos[extremo % 2]; }
    double Casilla(double v) const { return std::floor(v / m_dLado); }

    bool Coinciden(unsigned a, unsigned b) const {
        const auto &p = Lugar(a), &q = Lugar(b);
        return m_Tramos[a / 2].grupo == m_Tramos[b / 2].grupo &&
               p.Distancia2(q, 0) <= m_Reglas.distancia * m_Reglas.distancia &&
               (!m_Reglas.comparaCotas || std::abs(p.z - q.z) <= m_Reglas.cota);
    }

    // A square is four times as wide as the distance, so most ends look into one square only.
    unsigned Busca(unsigned extremo) const {
        const auto& p = Lugar(extremo);
        const double d = m_Reglas.distancia;
        for (double i = Casilla(p.x - d); i <= Casilla(p.x + d); i++) {
            for (double j = Casilla(p.y - d); j <= Casilla(p.y + d); j++) {
                const auto cabeza = m_Cabezas.find({i, j});
                if (cabeza == m_Cabezas.end()) continue;
                for (unsigned n = cabeza->second; n != kNinguno; n = m_Nudos[n].siguiente) {
                    if (Coinciden(extremo, m_Nudos[n].extremo)) return n;
                }
            }
        }
        return kNinguno;
    }

    unsigned Crea(unsigned extremo) {
        const auto& p = Lugar(extremo);
        auto& cabeza = m_Cabezas.try_emplace({Casilla(p.x), Casilla(p.y)}, kNinguno).first->second;
        m_Nudos.push_back({extremo, cabeza});
        return cabeza = unsigned(m_Nudos.size() - 1);
    }

    std::span<const CTramo> m_Tramos;
    const CReglasUnion& m_Reglas;
    double m_dLado;
    std::unordered_map<CCuadro, unsigned, CMezcla> m_Cabezas;
    std::vector<CNudo> m_Nudos;
};

class CEncadenador {
  public:
    CEncadenador(std::span<const CTramo> tramos, const CReglasUnion& reglas)
        : m_Tramos(tramos), m_Reglas(reglas), m_Usado(tramos.size()) {
        CBuscaNudos busca(tramos, reglas);
        m_Nudo = busca.Numera();
        m_Posicion.assign(busca.Cantidad(), kNinguno);
        OrdenaPorNudo(busca.Cantidad());
    }

    std::vector<CCadena> Encadena() {
        for (unsigned t = 0; t < m_Tramos.size(); t++) {
            if (m_Usado[t]) continue;
            m_Usado[t] = true;
            m_Camino.assign(1, {t, false});
            Avanza(false);
            DaLaVuelta();
            Avanza(true);
            DaLaVuelta();
            if (!m_Camino.empty()) m_Cadenas.push_back({m_Camino, false});
        }
        return std::move(m_Cadenas);
    }

  private:
    void OrdenaPorNudo(unsigned cantidad) {
        m_Inicio.assign(cantidad + 1, 0);
        for (unsigned n : m_Nudo)
            m_Inicio[n + 1]++;
        for (unsigned n = 0; n < cantidad; n++)
            m_Inicio[n + 1] += m_Inicio[n];
        m_Extremos.resize(m_Nudo.size());
        std::vector<unsigned> hueco(m_Inicio.begin(), m_Inicio.end() - 1);
        for (unsigned e = 0; e < m_Nudo.size(); e++)
            m_Extremos[hueco[m_Nudo[e]]++] = e;
    }

    static unsigned Entrada(const CEslabon& e) { return 2 * e.tramo + (e.volteado ? 1 : 0); }
    static unsigned Salida(const CEslabon& e) { return Otro(Entrada(e)); }
    unsigned Grado(unsigned nudo) const { return m_Inicio[nudo + 1] - m_Inicio[nudo]; }

    // Lengthens the path at its end as far as it goes. m_Posicion[n] is how many lines the path has before it passes
    // node n.
    void Avanza(bool contraSentido) {
        for (unsigned i = 0; i < m_Camino.size(); i++)
            m_Posicion[m_Nudo[Entrada(m_Camino[i])]] = i;
        while (!m_Camino.empty()) {
            const unsigned llegada = Salida(m_Camino.back());
            const unsigned nudo = m_Nudo[llegada];
            if (m_Reglas.respetaNudos && Grado(nudo) > 2) break;
            if (m_Posicion[nudo] != kNinguno) {
                ApartaLazo(m_Posicion[nudo]);
                if (m_Camino.empty()) break;
            } else {
                m_Posicion[nudo] = unsigned(m_Camino.size());
            }
            const unsigned sigue = MasRecto(Salida(m_Camino.back()), contraSentido);
            if (sigue == kNinguno) break;
            m_Usado[sigue / 2] = true;
            m_Camino.push_back({sigue / 2, sigue % 2 != 0});
        }
        for (const CEslabon& e : m_Camino)
            m_Posicion[m_Nudo[Entrada(e)]] = m_Posicion[m_Nudo[Salida(e)]] = kNinguno;
    }

    // The path from its line `desde` on is a loop: it becomes a chain of its own.
    void ApartaLazo(unsigned desde) {
        const auto lazo = m_Camino.begin() + desde;
        for (auto e = lazo; e != m_Camino.end(); ++e)
            m_Posicion[m_Nudo[Salida(*e)]] = kNinguno;
        if (desde > 0) m_Posicion[m_Nudo[Entrada(*lazo)]] = desde;
        m_Cadenas.push_back({{lazo, m_Camino.end()}, true});
        m_Camino.erase(lazo, m_Camino.end());
    }

    void DaLaVuelta() {
        std::reverse(m_Camino.begin(), m_Camino.end());
        for (CEslabon& e : m_Camino)
            e.volteado = !e.volteado;
    }

    // Of the free ends where one has come to, the one that goes on straightest.
    unsigned MasRecto(unsigned llegada, bool contraSentido) const {
        const unsigned nudo = m_Nudo[llegada];
        unsigned mejor = kNinguno;
        double giro = -std::numeric_limits<double>::infinity();
        for (unsigned i = m_Inicio[nudo]; i < m_Inicio[nudo + 1]; i++) {
            const unsigned e = m_Extremos[i];
            if (m_Usado[e / 2]) continue;
            if (!m_Reglas.invierte && (e % 2 != 0) != contraSentido) continue;
            const double rectitud = Grado(nudo) > 2 ? Rectitud(llegada, e) : 0;
            if (mejor == kNinguno || rectitud > giro) mejor = e, giro = rectitud;
        }
        return mejor;
    }

    // Cosine of the change of direction.
    double Rectitud(unsigned llegada, unsigned sigue) const {
        const CTramo &a = m_Tramos[llegada / 2], &b = m_Tramos[sigue / 2];
        const auto v = a.extremos[llegada % 2] - a.vecinos[llegada % 2];
        const auto w = b.vecinos[sigue % 2] - b.extremos[sigue % 2];
        const double largo = std::hypot(v.x, v.y) * std::hypot(w.x, w.y);
        return largo > 0 ? (v.x * w.x + v.y * w.y) / largo : -1;
    }

    std::span<const CTramo> m_Tramos;
    const CReglasUnion& m_Reglas;
    std::vector<unsigned> m_Nudo;                // of each end
    std::vector<unsigned> m_Inicio, m_Extremos;  // the ends at each node
    std::vector<bool> m_Usado;
    std::vector<unsigned> m_Posicion;
    std::vector<CEslabon> m_Camino;
    std::vector<CCadena> m_Cadenas;
};

}  // namespace

std::vector<CCadena> Encadena(std::span<const CTramo> tramos, const CReglasUnion& reglas) {
    return CEncadenador(tramos, reglas).Encadena();
}

}  // namespace Vertiz::geometria
