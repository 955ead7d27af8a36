// The area is triangulated by GLU's tessellator, a plane sweep that needs no OpenGL context and copes with outlines
// that touch or cross. Neighbouring triangles are then merged while they stay convex (S. Hertel, K. Mehlhorn: Fast
// triangulation of simple polygons, 1983), which leaves at most four times as many pieces as the best solution.

#include "model/Convexos.h"

#include "model/Predicados.h"
#include "platform/OpenGL.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace Vertiz::geometria {
namespace {

constexpr unsigned kNinguno = ~0u;

struct CTrabajo {
    std::vector<CEsquina> esquinas;
    std::vector<unsigned> triangulos;  // three corners each
    bool fallo = false;
};

// The tessellator carries the index of a corner as a pointer, one higher so that none is null.
void* AMarca(unsigned i) {
    return reinterpret_cast<void*>(std::uintptr_t{i} + 1);
}
unsigned AIndice(void* marca) {
    return unsigned(reinterpret_cast<std::uintptr_t>(marca) - 1);
}

void AlVertice(void* marca, void* trabajo) {
    static_cast<CTrabajo*>(trabajo)->triangulos.push_back(AIndice(marca));
}

// Being told of edges makes the tessellator give single triangles, no strips or fans.
void AlBorde(GLboolean, void*) {}

void AlFallo(GLenum, void* trabajo) {
    static_cast<CTrabajo*>(trabajo)->fallo = true;
}

// Outlines meet at `lugar`: in one and the same corner, or where no corner was before.
void AlCruce(const GLdouble lugar[3], void* const marcas[4], const GLfloat pesos[4], void** salida, void* trabajo) {
    auto& esquinas = static_cast<CTrabajo*>(trabajo)->esquinas;
    double z = 0;
    for (int i = 0; i < 4 && marcas[i]; i++) {
        const CEsquina& e = esquinas[AIndice(marcas[i])];
        if (e.x == lugar[0] && e.y == lugar[1]) {
            *salida = marcas[i];
            return;
        }
        z += double(pesos[i]) * e.z;
    }
    *salida = AMarca(unsigned(esquinas.size()));
    esquinas.push_back({lugar[0], lugar[1], z, esquinas[AIndice(marcas[0])].linea});
}

struct CCierraTeselador {
    void operator()(GLUtesselator* t) const { gluDeleteTess(t); }
};

template <class F>
void Avisa(GLUtesselator* t, GLenum suceso, F* funcion) {
    gluTessCallback(t, suceso, reinterpret_cast<_GLUfuncptr>(funcion));
}

bool Triangula(const std::vector<std::vector<CEsquina>>& contornos, CTrabajo& trabajo) {
    const std::unique_ptr<GLUtesselator, CCierraTeselador> teselador(gluNewTess());
    if (!teselador) return false;
    GLUtesselator* t = teselador.get();
    Avisa(t, GLU_TESS_VERTEX_DATA, AlVertice);
    Avisa(t, GLU_TESS_EDGE_FLAG_DATA, AlBorde);
    Avisa(t, GLU_TESS_COMBINE_DATA, AlCruce);
    Avisa(t, GLU_TESS_ERROR_DATA, AlFallo);
    gluTessProperty(t, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
    gluTessNormal(t, 0, 0, 1);

    gluTessBeginPolygon(t, &trabajo);
    for (const auto& contorno : contornos) {
        gluTessBeginContour(t);
        for (const CEsquina& e : contorno) {
            GLdouble lugar[3] = {e.x, e.y, 0};
            gluTessVertex(t, lugar, AMarca(unsigned(trabajo.esquinas.size())));
            trabajo.esquinas.push_back(e);
        }
        gluTessEndContour(t);
    }
    gluTessEndPolygon(t);
    return !trabajo.fallo;
}

// Corners at the same place get one number, so that triangles know their neighbours.
void UnificaEsquinas(CTrabajo& trabajo) {
    const auto mezcla = [](const std::pair<double, double>& p) {
        const std::hash<double> h;
        return h(p.first) * 0x9E3779B97F4A7C15u ^ h(p.second);
    };
    std::unordered_map<std::pair<double, double>, unsigned, decltype(mezcla)> primeras(trabajo.esquinas.size(), mezcla);
    for (unsigned& i : trabajo.triangulos) {
        const CEsquina& e = trabajo.esquinas[i];
        i = primeras.try_emplace({e.x, e.y}, i).first->second;
    }
}

// The triangles as a net of half edges, three to a triangle, in which an edge can be taken away.
class CMalla {
  public:
    explicit CMalla(CTrabajo& trabajo) : m_Esquinas(trabajo.esquinas), m_Origen(trabajo.triangulos) {
        OrientaTriangulos();
        EnlazaLados();
    }

    void Une() {
        // A triangle without area is only there to put a corner on its longest side: it goes into the neighbour.
        for (unsigned h = 0; h < m_Origen.size(); h += 3) {
            if (Giro(m_Origen[h], m_Origen[h + 1], m_Origen[h + 2]) == 0) QuitaLado(LadoMayor(h));
        }
        for (unsigned h = 0; h < m_Origen.size(); h++) {
            if (h < m_Gemelo[h] && m_Gemelo[h] != kNinguno && SigueConvexo(h)) QuitaLado(h);
        }
    }

    std::vector<std::vector<unsigned>> Anillos() const {
        std::vector<std::vector<unsigned>> anillos;
        std::vector<bool> visto(m_Origen.size());
        for (unsigned h = 0; h < m_Origen.size(); h++) {
            if (visto[h] || m_Quitado[h]) continue;
            std::vector<unsigned> anillo;
            for (unsigned i = h; !visto[i]; i = m_Siguiente[i]) {
                visto[i] = true;
                anillo.push_back(m_Origen[i]);
            }
            if (TieneArea(anillo)) anillos.push_back(std::move(anillo));
        }
        return anillos;
    }

  private:
    int Giro(unsigned a, unsigned b, unsigned c) const {
        const auto plano = [&](unsigned i) { return CCoor2D<double>(m_Esquinas[i].x, m_Esquinas[i].y); };
        return predicados::Orientacion(plano(a), plano(b), plano(c));
    }

    void OrientaTriangulos() {
        for (unsigned h = 0; h < m_Origen.size(); h += 3) {
            if (Giro(m_Origen[h], m_Origen[h + 1], m_Origen[h + 2]) < 0) std::swap(m_Origen[h + 1], m_Origen[h + 2]);
        }
    }

    void EnlazaLados() {
        const unsigned n = unsigned(m_Origen.size());
        m_Siguiente.resize(n);
        m_Anterior.resize(n);
        m_Gemelo.assign(n, kNinguno);
        m_Quitado.assign(n, false);
        std::unordered_map<std::uint64_t, unsigned> lados(n);
        for (unsigned h = 0; h < n; h++) {
            m_Siguiente[h] = h % 3 == 2 ? h - 2 : h + 1;
            m_Anterior[h] = h % 3 == 0 ? h + 2 : h - 1;
            lados.emplace(Clave(m_Origen[h], Destino(h)), h);
        }
        for (unsigned h = 0; h < n; h++) {
            const auto contrario = lados.find(Clave(Destino(h), m_Origen[h]));
            const auto propio = lados.find(Clave(m_Origen[h], Destino(h)));
            // Twice the same side means outlines on top of each other: such sides stay.
            if (contrario != lados.end() && propio->second == h) m_Gemelo[h] = contrario->second;
        }
        for (unsigned h = 0; h < n; h++) {
            if (m_Gemelo[h] != kNinguno && m_Gemelo[m_Gemelo[h]] != h) m_Gemelo[h] = kNinguno;
        }
    }

    static std::uint64_t Clave(unsigned a, unsigned b) { return std::uint64_t{a} << 32 | b; }
    unsigned Destino(unsigned h) const { return m_Origen[m_Siguiente[h]]; }

    unsigned LadoMayor(unsigned h) const {
        const auto largo = [&](unsigned i) {
            const CEsquina &a = m_Esquinas[m_Origen[i]], &b = m_Esquinas[m_Origen[i % 3 == 2 ? i - 2 : i + 1]];
            return std::hypot(b.x - a.x, b.y - a.y);
        };
        return std::max({h, h + 1, h + 2}, [&](unsigned a, unsigned b) { return largo(a) < largo(b); });
    }

    // Whether the two pieces beside an edge make a convex one: only its ends can spoil it.
    bool SigueConvexo(unsigned h) const {
        const unsigned g = m_Gemelo[h];
        return Giro(m_Origen[m_Anterior[h]], m_Origen[h], Destino(m_Siguiente[g])) >= 0 &&
               Giro(m_Origen[m_Anterior[g]], m_Origen[g], Destino(m_Siguiente[h])) >= 0;
    }

    void QuitaLado(unsigned h) {
        const unsigned g = m_Gemelo[h];
        if (g == kNinguno || m_Quitado[h]) return;
        Enlaza(m_Anterior[h], m_Siguiente[g]);
        Enlaza(m_Anterior[g], m_Siguiente[h]);
        m_Quitado[h] = m_Quitado[g] = true;
        m_Gemelo[h] = m_Gemelo[g] = kNinguno;
    }

    void Enlaza(unsigned h, unsigned siguiente) {
        m_Siguiente[h] = siguiente;
        m_Anterior[siguiente] = h;
    }

    bool TieneArea(const std::vector<unsigned>& anillo) const {
        for (std::size_t i = 2; i < anillo.size(); i++) {
            if (Giro(anillo[0], anillo[i - 1], anillo[i]) != 0) return true;
        }
        return false;
    }

    const std::vector<CEsquina>& m_Esquinas;
    std::vector<unsigned>& m_Origen;  // of each half edge, by index
    std::vector<unsigned> m_Siguiente, m_Anterior, m_Gemelo;
    std::vector<bool> m_Quitado;
};

bool EsFinito(const CEsquina& e) {
    return std::isfinite(e.x) && std::isfinite(e.y) && std::isfinite(e.z);
}

}  // namespace

std::optional<CPiezas> Convexos(const std::vector<std::vector<CEsquina>>& contornos) {
    for (const auto& contorno : contornos) {
        if (!std::all_of(contorno.begin(), contorno.end(), EsFinito)) return std::nullopt;
    }
    CTrabajo trabajo;
    if (!Triangula(contornos, trabajo)) return std::nullopt;
    UnificaEsquinas(trabajo);
    CMalla malla(trabajo);
    malla.Une();
    CPiezas piezas;
    piezas.anillos = malla.Anillos();
    piezas.esquinas = std::move(trabajo.esquinas);
    return piezas;
}

}  // namespace Vertiz::geometria
