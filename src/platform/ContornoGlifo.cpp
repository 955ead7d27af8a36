// Polygons through the tessellator of GLU.

#include "platform/ContornoGlifo.h"

#include "platform/OpenGL.h"

#include <array>
#include <deque>
#include <memory>
#include <new>

namespace plataforma {

namespace {

// One run of the tessellator. It calls back from C code, through which no exception may pass.
class Teselado {
  public:
    using Funcion = void (*)();

    explicit Teselado(bool bBordes) {
        if (!m_Tess) return;
        gluTessProperty(m_Tess.get(), GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_NONZERO);
        gluTessProperty(m_Tess.get(), GLU_TESS_BOUNDARY_ONLY, bBordes ? GL_TRUE : GL_FALSE);
        gluTessNormal(m_Tess.get(), 0, 0, 1);
        Atiende(GLU_TESS_BEGIN_DATA, &Empieza);
        Atiende(GLU_TESS_VERTEX_DATA, &Vertice);
        Atiende(GLU_TESS_COMBINE_DATA, &Combina);
        Atiende(GLU_TESS_ERROR_DATA, &Falla);
        if (!bBordes) Atiende(GLU_TESS_EDGE_FLAG_DATA, &Arista);  // triangles alone, no strips and fans
    }

    bool Hace(const std::vector<Contorno>& contornos) {
        if (!m_Tess) return false;
        gluTessBeginPolygon(m_Tess.get(), this);
        for (const Contorno& contorno : contornos) {
            gluTessBeginContour(m_Tess.get());
            for (const PuntoPlano& p : contorno) {
                auto& v = m_Vertices.emplace_back(std::array{p.x, p.y, 0.0});
                gluTessVertex(m_Tess.get(), v.data(), v.data());
            }
            gluTessEndContour(m_Tess.get());
        }
        gluTessEndPolygon(m_Tess.get());
        return !m_bFallo;
    }

    std::vector<Contorno> m_Salida;  ///< the borders, or one block of triangles

  private:
    template <class F>
    void Atiende(GLenum cual, F* funcion) {
        gluTessCallback(m_Tess.get(), cual, reinterpret_cast<Funcion>(funcion));
    }
    template <class F>
    void Protege(F hace) noexcept {
        try {
            hace();
        } catch (const std::bad_alloc&) {
            m_bFallo = true;
        }
    }
    static Teselado& De(void* dato) { return *static_cast<Teselado*>(dato); }

    static void Empieza(GLenum, void* dato) {
        De(dato).Protege([&] { De(dato).m_Salida.emplace_back(); });
    }
    static void Vertice(void* vertice, void* dato) {
        const auto* v = static_cast<const double*>(vertice);
        De(dato).Protege([&] {
            if (!De(dato).m_bFallo) De(dato).m_Salida.back().push_back({v[0], v[1]});
        });
    }
    // Where contours cross.
    static void Combina(const double lugar[3], void* [4], float[4], void** nuevo, void* dato) {
        *nuevo = nullptr;
        De(dato).Protege([&] {
            *nuevo = De(dato).m_Vertices.emplace_back(std::array{lugar[0], lugar[1], 0.0}).data();
        });
        if (!*nuevo) *nuevo = De(dato).m_Vertices.front().data();  // what comes out isn't used after a failure
    }
    static void Falla(GLenum, void* dato) { De(dato).m_bFallo = true; }
    static void Arista(GLboolean, void*) {}

    std::unique_ptr<GLUtesselator, decltype(&gluDeleteTess)> m_Tess{gluNewTess(), &gluDeleteTess};
    std::deque<std::array<double, 3>> m_Vertices;  // their addresses stay
    bool m_bFallo = false;
};

}  // namespace

bool HallaBordes(const std::vector<Contorno>& contornos, std::vector<Contorno>& bordes) {
    Teselado teselado(true);
    if (!teselado.Hace(contornos)) return false;
    bordes = std::move(teselado.m_Salida);
    return true;
}

bool Triangula(const std::vector<Contorno>& bordes, std::vector<PuntoPlano>& triangulos) {
    Teselado teselado(false);
    if (!teselado.Hace(bordes)) return false;
    triangulos.clear();
    for (const Contorno& bloque : teselado.m_Salida)
        triangulos.insert(triangulos.end(), bloque.begin(), bloque.end());
    return true;
}

}  // namespace plataforma
