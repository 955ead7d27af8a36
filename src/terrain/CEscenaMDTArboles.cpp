// The trees of a terrain: two kinds, made of a few faces each.

#include "terrain/CEscenaMDT.h"
#include "frame/ListaGL.h"
#include "frame/PuntoGL.h"

#include <array>

namespace {

using Vertiz::CCoor3D;

struct Color {
    float rojo, verde, azul;
};

constexpr int kLados = 8;

// An octagon in plan, x and z, counterclockwise on a map.
using Seccion = std::array<std::array<float, 2>, kLados>;

Seccion Octogono(float r) {
    const auto k = static_cast<float>(r * 0.7071067811865476);
    return {{{0, r}, {k, k}, {r, 0}, {k, -k}, {0, -r}, {-k, -k}, {-r, 0}, {-k, k}}};
}

// Of a face that two vectors span. As on the terrain, it looks to the inner side.
void FijaNormalDe(const CCoor3D<double>& u, const CCoor3D<double>& v) {
    FijaNormal(u * v);
}

// @return 0 a GL error, and the list is closed
int PintaTronco(float x, float y, float z, float altura, float radio, const Color& color) {
    const Seccion seccion = Octogono(radio);
    glBegin(GL_QUADS);
    for (int i = 0; i < kLados; ++i) {
        const auto &p = seccion[static_cast<std::size_t>(i)], &q = seccion[static_cast<std::size_t>((i + 1) % kLados)];
        FijaNormalDe({q[0] - p[0], 0.0, q[1] - p[1]}, {0.0, -altura, 0.0});
        glColor3f(color.rojo, color.verde, color.azul);
        glVertex3f(p[0] + x, y, p[1] + z);
        glVertex3f(q[0] + x, y, q[1] + z);
        glVertex3f(q[0] + x, y + altura, q[1] + z);
        glVertex3f(p[0] + x, y + altura, p[1] + z);
    }
    glEnd();
    return HayErrorGL() ? CierraLista(false) : 1;
}

}  // namespace

int CEscenaMDT::PintaNaranjo(float x, float y, float z, float altura) {
    const float tronco = altura / 3.0F;
    if (!PintaTronco(x, y, z, tronco, altura * 0.1F, {1.0F, 0.5F, 0.0F})) return 0;
    // An icosahedron.
    const float copa = altura - tronco, s = copa / 1.5F, X = 0.5257311F * s, Z = 0.8506508F * s;
    const float centro = y + tronco + copa * 0.5F;
    const CCoor3D<double> vertices[12] = {{-X, 0, Z}, {X, 0, Z},   {-X, 0, -Z}, {X, 0, -Z}, {0, Z, X},  {0, Z, -X},
                                          {0, -Z, X}, {0, -Z, -X}, {Z, X, 0},   {-Z, X, 0}, {Z, -X, 0}, {-Z, -X, 0}};
    static constexpr int kCaras[20][3] = {{0, 4, 1},  {0, 9, 4},  {9, 5, 4},  {4, 5, 8},  {4, 8, 1},
                                          {8, 10, 1}, {8, 3, 10}, {5, 3, 8},  {5, 2, 3},  {2, 7, 3},
                                          {7, 10, 3}, {7, 6, 10}, {7, 11, 6}, {11, 0, 6}, {0, 1, 6},
                                          {6, 1, 10}, {9, 0, 11}, {9, 11, 2}, {9, 2, 5},  {7, 2, 11}};
    glBegin(GL_TRIANGLES);
    for (const auto& cara : kCaras) {
        const CCoor3D<double>&a = vertices[cara[0]], &b = vertices[cara[1]], &c = vertices[cara[2]];
        FijaNormalDe(a - b, b - c);
        glColor3f(0.0F, 1.0F, 0.0F);
        for (const CCoor3D<double>* v : {&c, &b, &a})
            glVertex3f(static_cast<float>(v->x) + x, static_cast<float>(v->y) + centro, static_cast<float>(v->z) + z);
    }
    glEnd();
    return 1;
}

int CEscenaMDT::PintaConifera(float x, float y, float z, float altura) {
    const float tronco = altura * 0.25F;
    if (!PintaTronco(x, y, z, tronco, altura * 0.05F, {0.5F, 0.25F, 0.0F})) return 0;
    // A cone without a base.
    const Seccion seccion = Octogono(altura * 0.25F);
    glBegin(GL_TRIANGLES);
    for (int i = 0; i < kLados; ++i) {
        const auto &p = seccion[static_cast<std::size_t>(i)], &q = seccion[static_cast<std::size_t>((i + 1) % kLados)];
        FijaNormalDe({q[0] - p[0], 0.0, q[1] - p[1]}, {p[0], tronco - altura, p[1]});
        glColor3f(0.0F, 0.25F, 0.0F);
        glVertex3f(q[0] + x, y + tronco, q[1] + z);
        glVertex3f(x, y + altura, z);
        glVertex3f(p[0] + x, y + tronco, p[1] + z);
    }
    glEnd();
    return 1;
}

int CEscenaMDT::DibujarArboles() {
    if (m_bArbolesIniciados != 0) return 1;
    if (!MakeCurrent(nullptr)) return 0;
    BorraLista(m_nListaArboles);
    if (HayErrorGL()) return 0;
    if (m_Arboles.Cantidad() == 0) return 1;
    if (!AbreLista(m_nListaArboles)) return 0;
    const double p = m_Arboles.Precision(), escala = 1.0 / p;
    for (unsigned i = 0; i < m_Arboles.Cantidad(); ++i) {
        const Vertiz::CEntidadDigi<int>& arbol = *m_Arboles[i];
        const int altura = arbol.DameRegistro(kRegistroAltura);
        if (altura < 0 || arbol.NPuntos() == 0) continue;
        const CCoor3D<int>& pie = arbol.Punto(0);
        double x = 0, y = 0, z = 0;
        CajaAGL(pie.x * escala, pie.y * escala, pie.z * escala, x, y, z);
        const double h = altura / p * m_dFactor * m_fExageracionVertical;
        auto* const pinta = arbol.ComparaCodigo(L"0") ? PintaConifera : PintaNaranjo;
        if (!pinta(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z), static_cast<float>(h)))
            return 0;
    }
    if (!CierraLista(true)) return 0;
    m_bArbolesIniciados = 1;
    return 1;
}
