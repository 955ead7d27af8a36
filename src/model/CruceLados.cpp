// Crossings are found by triangulating: what is refused crosses what isn't; what was refused goes into a triangulation
// of its own, until nothing is. Each time the refused sides cross at least as often as there are of them, so that the
// rounds cost no more than the crossings that there are.

#include "model/CruceLados.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Vertiz::geometria {
namespace {

using predicados::CLugar;
using predicados::Entero128;

constexpr std::size_t kCrucesMaximos = std::size_t{1} << 24;
constexpr int kRondas = 16;
constexpr std::size_t kCadaCuantos = 256;  // sides between two questions

void OrdenaSinRepetir(std::vector<CLugar>& lugares) {
    std::ranges::sort(lugares);
    lugares.erase(std::ranges::unique(lugares).begin(), lugares.end());
}

// Places in a k-d tree, to be asked for those near a segment.
class CArbol {
  public:
    struct CNodo {
        CLugar lugar;
        int indice;
    };

    explicit CArbol(std::vector<CNodo> nodos) : m_Nodos(std::move(nodos)) { Ordena(0, m_Nodos.size(), 0); }

    // The places whose square of one unit the segment passes through, appended.
    void Encuentra(const CLugar& a, const CLugar& b, std::vector<CNodo>& encontrados) const {
        Busca({a, b, encontrados}, 0, m_Nodos.size(), 0, 0.0, 1.0);
    }

  private:
    static constexpr std::size_t kHoja = 8;
    struct CPregunta {
        CLugar a, b;
        std::vector<CNodo>& encontrados;
    };
    static int Coordenada(const CLugar& p, int eje) { return eje == 0 ? p.x : p.y; }

    void Ordena(std::size_t desde, std::size_t hasta, int eje) {
        if (hasta - desde <= kHoja) return;
        const std::size_t medio = desde + (hasta - desde) / 2;
        const auto lugar = [this](std::size_t i) { return m_Nodos.begin() + static_cast<std::ptrdiff_t>(i); };
        std::nth_element(lugar(desde), lugar(medio), lugar(hasta), [eje](const CNodo& p, const CNodo& q) {
            return Coordenada(p.lugar, eje) < Coordenada(q.lugar, eje);
        });
        Ordena(desde, medio, 1 - eje);
        Ordena(medio + 1, hasta, 1 - eje);
    }

    static void Prueba(const CPregunta& pregunta, const CNodo& nodo) {
        if (predicados::PasaPor(pregunta.a, pregunta.b, nodo.lugar)) pregunta.encontrados.push_back(nodo);
    }

    // t0 to t1 is the part of the segment that may come near the places of this branch. Each branch takes a unit more
    // than it needs, half of which is enough, so that rounding loses nothing.
    void Busca(const CPregunta& pregunta, std::size_t desde, std::size_t hasta, int eje, double t0, double t1) const {
        if (t0 > t1) return;
        if (hasta - desde <= kHoja) {
            for (std::size_t i = desde; i < hasta; ++i)
                Prueba(pregunta, m_Nodos[i]);
            return;
        }
        const std::size_t medio = desde + (hasta - desde) / 2;
        Prueba(pregunta, m_Nodos[medio]);
        const double corte = Coordenada(m_Nodos[medio].lugar, eje), a = Coordenada(pregunta.a, eje);
        const double avance = Coordenada(pregunta.b, eje) - a;
        if (avance == 0.0) {
            if (a <= corte + 1.0) Busca(pregunta, desde, medio, 1 - eje, t0, t1);
            if (a >= corte - 1.0) Busca(pregunta, medio + 1, hasta, 1 - eje, t0, t1);
            return;
        }
        const double bajo = (corte + 1.0 - a) / avance, alto = (corte - 1.0 - a) / avance;
        if (avance > 0.0) {
            Busca(pregunta, desde, medio, 1 - eje, t0, std::min(t1, bajo));
            Busca(pregunta, medio + 1, hasta, 1 - eje, std::max(t0, alto), t1);
        } else {
            Busca(pregunta, desde, medio, 1 - eje, std::max(t0, bajo), t1);
            Busca(pregunta, medio + 1, hasta, 1 - eje, t0, std::min(t1, alto));
        }
    }

    std::vector<CNodo> m_Nodos;
};

// The points at the ends of some sides, without others, and those sides between them.
struct CParte {
    std::vector<CLugar> puntos;
    std::vector<CLadoPedido> tramos;
};

CParte Extremos(std::span<const CLugar> puntos, std::span<const CLadoPedido> tramos, std::span<const int> cuales) {
    CParte parte;
    for (const int i : cuales) {
        const CLadoPedido& tramo = tramos[static_cast<std::size_t>(i)];
        const int n = static_cast<int>(parte.puntos.size());
        parte.puntos.push_back(puntos[static_cast<std::size_t>(tramo.a)]);
        parte.puntos.push_back(puntos[static_cast<std::size_t>(tramo.b)]);
        parte.tramos.push_back({n, n + 1, 0});
    }
    return parte;
}

// Which sides have to be bent.
class CDobleces {
  public:
    CDobleces(std::span<const CLugar> puntos, std::span<const CLadoPedido> tramos, const CArbol& todos)
        : m_Puntos(puntos), m_Tramos(tramos), m_Todos(todos), m_Doblados(tramos.size(), false) {}

    std::vector<bool> Busca(std::span<const CLugar> cruces) {
        std::vector<CLugar> calientes(cruces.begin(), cruces.end()), hechos = calientes, nuevos, quedan;
        for (int ronda = 0; !calientes.empty(); ++ronda) {
            if (ronda == kRondas) {  // bends enough to bend all: that is right as well
                m_Doblados.assign(m_Tramos.size(), true);
                break;
            }
            nuevos.clear();
            DoblaLosQuePasan(calientes, nuevos);
            OrdenaSinRepetir(nuevos);
            quedan.clear();
            std::ranges::set_difference(nuevos, hechos, std::back_inserter(quedan));
            hechos.insert(hechos.end(), quedan.begin(), quedan.end());
            std::ranges::sort(hechos);
            calientes = quedan;
        }
        return std::move(m_Doblados);
    }

  private:
    // Gathers the places that the sides which are bent now come close to.
    void DoblaLosQuePasan(const std::vector<CLugar>& calientes, std::vector<CLugar>& nuevos) {
        std::vector<CArbol::CNodo> nodos, cerca;
        nodos.reserve(calientes.size());
        for (const CLugar& lugar : calientes)
            nodos.push_back({lugar, 0});
        const CArbol arbol(std::move(nodos));
        for (std::size_t i = 0; i < m_Tramos.size(); ++i) {
            if (m_Doblados[i]) continue;
            const CLugar &a = m_Puntos[static_cast<std::size_t>(m_Tramos[i].a)],
                         &b = m_Puntos[static_cast<std::size_t>(m_Tramos[i].b)];
            cerca.clear();
            arbol.Encuentra(a, b, cerca);
            if (std::ranges::all_of(cerca, [&](const auto& nodo) { return nodo.lugar == a || nodo.lugar == b; }))
                continue;
            m_Doblados[i] = true;
            cerca.clear();
            m_Todos.Encuentra(a, b, cerca);
            for (const CArbol::CNodo& nodo : cerca)
                nuevos.push_back(nodo.lugar);
        }
    }

    std::span<const CLugar> m_Puntos;
    std::span<const CLadoPedido> m_Tramos;
    const CArbol& m_Todos;
    std::vector<bool> m_Doblados;
};

// All places that a bent side has to pass through.
std::vector<CArbol::CNodo> Todos(std::span<const CLugar> puntos, std::span<const CLugar> cruces,
                                 std::vector<CLugar>& nuevos) {
    std::vector<CArbol::CNodo> nodos;
    nodos.reserve(puntos.size() + cruces.size());
    for (std::size_t i = 0; i < puntos.size(); ++i)
        nodos.push_back({puntos[i], static_cast<int>(i)});
    std::ranges::sort(nodos, [](const auto& p, const auto& q) {
        return p.lugar != q.lugar ? p.lugar < q.lugar : p.indice < q.indice;
    });
    const auto repetidos = std::ranges::unique(nodos, {}, &CArbol::CNodo::lugar);
    nodos.erase(repetidos.begin(), repetidos.end());
    const std::size_t propios = nodos.size();
    nuevos.clear();
    for (const CLugar& cruce : cruces) {
        const std::span<const CArbol::CNodo> ordenados(nodos.data(), propios);
        if (std::ranges::binary_search(ordenados, cruce, {}, &CArbol::CNodo::lugar)) continue;
        nodos.push_back({cruce, static_cast<int>(puntos.size() + nuevos.size())});
        nuevos.push_back(cruce);
    }
    return nodos;
}

}  // namespace

std::optional<std::vector<CLugar>> LugaresDeCruce(CDelaunay& delaunay, std::span<const CLugar> puntos,
                                                  std::span<const CLadoPedido> tramos, std::vector<int> rechazados,
                                                  const std::function<bool()>& sigue) {
    std::vector<CLugar> cruces;
    std::vector<CDelaunay::CLado> lados;
    const auto cruza = [&](CDelaunay& d, const CParte& parte) {
        for (std::size_t i = 0; i < parte.tramos.size(); ++i) {
            if (i % kCadaCuantos == 0 && !sigue()) return false;
            const CLadoPedido& tramo = parte.tramos[i];
            lados.clear();
            d.Cruzados(tramo.a, tramo.b, lados);
            for (const auto& [u, v] : lados)
                cruces.push_back(predicados::CruceRedondeado(
                    parte.puntos[static_cast<std::size_t>(tramo.a)], parte.puntos[static_cast<std::size_t>(tramo.b)],
                    parte.puntos[static_cast<std::size_t>(u)], parte.puntos[static_cast<std::size_t>(v)]));
            if (cruces.size() > kCrucesMaximos) return false;
        }
        return true;
    };
    CParte todo{{puntos.begin(), puntos.end()}, {}};
    for (const int i : rechazados)
        todo.tramos.push_back(tramos[static_cast<std::size_t>(i)]);
    if (!cruza(delaunay, todo)) return std::nullopt;
    while (rechazados.size() > 1) {
        CParte parte = Extremos(puntos, tramos, rechazados);
        CDelaunay otra(parte.puntos);
        otra.Triangula([](int) { return true; });
        if (otra.Cantidad() == 0) break;  // in line: none crosses
        std::vector<int> siguen;
        std::vector<CLadoPedido> fuera;
        for (std::size_t i = 0; i < rechazados.size(); ++i) {
            const CLadoPedido& tramo = parte.tramos[i];
            if (otra.InsertaLado(tramo.a, tramo.b, 0)) continue;
            siguen.push_back(rechazados[i]);
            fuera.push_back(tramo);
        }
        parte.tramos = std::move(fuera);
        if (!cruza(otra, parte)) return std::nullopt;
        rechazados = std::move(siguen);
    }
    OrdenaSinRepetir(cruces);
    return cruces;
}

std::optional<std::vector<CTrozoLado>> ResuelveCruces(std::span<const CLugar> puntos,
                                                      std::span<const CLadoPedido> tramos,
                                                      std::span<const CLugar> cruces, std::vector<CLugar>& nuevos,
                                                      const std::function<bool()>& sigue) {
    const CArbol todos(Todos(puntos, cruces, nuevos));
    const std::vector<bool> doblados = CDobleces(puntos, tramos, todos).Busca(cruces);
    std::vector<CTrozoLado> trozos;
    std::vector<CArbol::CNodo> paso;
    for (std::size_t i = 0; i < tramos.size(); ++i) {
        if (i % kCadaCuantos == 0 && !sigue()) return std::nullopt;
        const int tramo = static_cast<int>(i);
        if (!doblados[i]) {
            trozos.push_back({tramos[i].a, tramos[i].b, tramo});
            continue;
        }
        const CLugar a = puntos[static_cast<std::size_t>(tramos[i].a)],
                     b = puntos[static_cast<std::size_t>(tramos[i].b)];
        paso.clear();
        todos.Encuentra(a, b, paso);
        // No two of them lie side by side: along the way is the order in which it passes their squares.
        const auto avance = [&](const CArbol::CNodo& nodo) {
            return Entero128{std::int64_t{b.x} - a.x} * (std::int64_t{nodo.lugar.x} - a.x) +
                   Entero128{std::int64_t{b.y} - a.y} * (std::int64_t{nodo.lugar.y} - a.y);
        };
        std::ranges::sort(paso, {}, avance);
        for (std::size_t j = 0; j + 1 < paso.size(); ++j)
            trozos.push_back({paso[j].indice, paso[j + 1].indice, tramo});
    }
    return trozos;
}

}  // namespace Vertiz::geometria
