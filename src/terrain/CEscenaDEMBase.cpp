// What closes the terrain from below: vertical walls from its borders and the rims of its voids down to a plane, and
// the floor in that plane. Walls stand on the samples that the mesh shows, so both ask for the same step.

#include "terrain/CEscenaDEM.h"
#include "frame/ColorGL.h"
#include "frame/ListaGL.h"

#include <algorithm>

using Vertiz::CCoor3D;

namespace {

// Joining and thinning lines is done at a scale at which a cell measures some units.
constexpr double kEscalaDibujo = 10000.0;
constexpr double kEscalaInversa = 0.0001;
// Corners of the outline nearer than this part of a cell to a straight course are left out.
constexpr double kPartesCelda = 20.0;

void SumaLinea(Vertiz::CDibujo<double>& dibujo, const CCoor3D<double>& desde, const CCoor3D<double>& hasta, float y) {
    Vertiz::CLinea<double> linea(CString(L"nuevo"));
    for (const CCoor3D<double>* p : {&desde, &hasta})
        linea << CCoor3D<double>(p->x * kEscalaDibujo, p->z * kEscalaDibujo, y * kEscalaDibujo, 0);
    dibujo.JuntaAntesDeInsertar(linea);
}

}  // namespace

// One wall, seen from inside the terrain: its upper edge, as offsets from row a and column c of the cell, in steps.
struct CEscenaDEM::Muro {
    int r, c;                   // the cell: scene row and column of its north-west sample
    std::array<int, 2> v0, v1;  // upper edge in the order of the vertices: (rows southwards, columns eastwards)
    std::array<float, 3> normal;
    bool lineaAlReves;  // the outline takes the edge from its second point to its first
};

// What all walls share, and the outlines that the floor is made of.
struct CEscenaDEM::Base {
    Marco marco;
    int x = 1;  // step of the mesh
    int filas = 0;
    int ultimaFila = 0, ultimaColumna = 0;  // the last ones that the mesh reaches
    float y = 0;                            // GL height of the floor
    Color color{};
    Vertiz::CDibujo<double> contornos;
};

int CEscenaDEM::OnIniciarBase() {
    if (m_pDEM == nullptr) return 0;
    if (m_bBaseIniciada != 0 || GetQuad() > 1) return 1;
    if (!MakeCurrent(nullptr)) return 0;
    if (!AbreLista(m_nListaBase)) return 0;
    // Loose cells have no border to be walled.
    if (!m_pDEM->EsListaCeldas()) {
        Base base;
        base.marco = DameMarco();
        base.x = CalculaPaso(m_nPuntosSuavizado).x;
        base.filas = static_cast<int>(m_pDEM->GetFilas());
        const int columnas = static_cast<int>(m_pDEM->GetColumnas());
        base.ultimaFila = (base.filas - 1) - (base.filas - 1) % base.x;
        base.ultimaColumna = (columnas - 1) - (columnas - 1) % base.x;
        base.y = static_cast<float>(CotaBase() * m_dFactor * m_fExageracionVertical);
        base.color = ColorGL(m_Data.m_nColorBase);
        glBegin(GL_QUADS);
        CompilaMuros(base);
        glEnd();
        if (HayErrorGL()) return CierraLista(false);
        CompilaSuelo(base);
    }
    if (!CierraLista(true)) return 0;
    m_bBaseIniciada = 1;
    return 1;
}

// Height of the floor over the middle of the scene's extents, in terrain units. A grid that reaches below the scene
// takes its floor down with it.
double CEscenaDEM::CotaBase() const {
    const double minima = m_pDEM->GetMaximasTotalDouble().Minima().z - m_pDEM->GetSemilla().GetZ();
    return -m_dRangoZ * 0.5 - std::max(m_Maximas.Minima().z - minima, 0.0);
}

void CEscenaDEM::CompilaMuros(Base& base) const {
    for (int r = 0; r < base.ultimaFila; r += base.x)
        for (int c = 0; c < base.ultimaColumna; c += base.x)
            CompilaMurosCelda(base, r, c);
}

// A side gets a wall where it is the border of the grid and the cell is whole, and where the cell is not whole but its
// neighbour across that side is.
void CEscenaDEM::CompilaMurosCelda(Base& base, int r, int c) const {
    const int x = base.x, a = base.filas - 1 - r, b = a - x;
    const bool ac = m_pDEM->EsValido(a, c), ad = m_pDEM->EsValido(a, c + x);
    const bool bc = m_pDEM->EsValido(b, c), bd = m_pDEM->EsValido(b, c + x);
    const auto hayMuro = [&](bool lado, bool enfrente, bool borde, int fila, int columna) {
        return lado && enfrente == borde && (borde || m_pDEM->EsCeldaValida(fila, columna, x));
    };
    if (hayMuro(ac && ad, bc && bd, r == 0, a, c)) CompilaMuro(base, {r, c, {0, 0}, {0, 1}, {0, 0, 1}, false});
    if (hayMuro(ad && bd, ac && bc, c == base.ultimaColumna - x, b, c + x))
        CompilaMuro(base, {r, c, {0, 1}, {1, 1}, {-1, 0, 0}, true});
    if (hayMuro(bc && bd, ac && ad, r == base.ultimaFila - x, base.filas - 2 * x - r - 1, c))
        CompilaMuro(base, {r, c, {1, 1}, {1, 0}, {0, 0, -1}, false});
    if (hayMuro(ac && bc, ad && bd, c == 0, b, c - x)) CompilaMuro(base, {r, c, {1, 0}, {0, 0}, {1, 0, 0}, true});
}

void CEscenaDEM::CompilaMuro(Base& base, const Muro& muro) const {
    const double origenZ = m_pDEM->GetSemilla().GetZ();
    CCoor3D<double> p[2];
    for (int i = 0; i < 2; ++i) {
        const auto& [abajo, derecha] = i == 0 ? muro.v0 : muro.v1;
        const int fila = muro.r + abajo * base.x, columna = muro.c + derecha * base.x;
        const auto h = static_cast<float>(m_pDEM->Matriz().Get(base.filas - 1 - fila, columna) - origenZ);
        const CCoor3D<double> terreno(columna * base.marco.celdaX + base.marco.oeste,
                                      base.marco.norte - fila * base.marco.celdaY, h, 0);
        if (!TerrenoAGL(terreno, p[i].x, p[i].y, p[i].z, 1.0, false)) return;
    }
    const auto vertice = [](const CCoor3D<double>& q, double y) {
        glVertex3f(static_cast<float>(q.x), static_cast<float>(y), static_cast<float>(q.z));
    };
    glNormal3f(muro.normal[0], muro.normal[1], muro.normal[2]);
    glColor3f(base.color[0], base.color[1], base.color[2]);
    vertice(p[0], p[0].y);
    vertice(p[1], p[1].y);
    vertice(p[1], base.y);
    vertice(p[0], base.y);
    SumaLinea(base.contornos, p[muro.lineaAlReves ? 1 : 0], p[muro.lineaAlReves ? 0 : 1], base.y);
}

// The lower edges of the walls make closed outlines; what these surround is the floor, in convex pieces since OpenGL
// draws no others.
void CEscenaDEM::CompilaSuelo(Base& base) const {
    Vertiz::CDibujo<double>& suelo = base.contornos;
    suelo.Junta(0, 0, 1, 1, 1, 0, 0, 1);
    Vertiz::CDataGeneralizacion data;
    const float celda =
        std::max(static_cast<float>(m_dFactor * base.marco.celdaX), static_cast<float>(m_dFactor * base.marco.celdaY));
    data.m_fTolerancia = data.m_fToleranciaZ = static_cast<float>(celda * kEscalaDibujo / kPartesCelda);
    suelo.Generaliza(data, 0, nullptr);
    suelo.GeneraConvexos();
    for (unsigned i = 0; i < suelo.Cantidad(); ++i) {
        Vertiz::CEntidadDigi<double>& pieza = *suelo[i];
        if (!pieza.EsCerrada()) continue;
        glBegin(GL_POLYGON);
        glNormal3f(0.0F, 1.0F, 0.0F);
        glColor3f(base.color[0], base.color[1], base.color[2]);
        pieza.Escalar(kEscalaInversa, kEscalaInversa, kEscalaInversa);
        for (const CCoor3D<double>& p : pieza.Puntos().first(pieza.NPuntos() - 1))
            glVertex3f(static_cast<float>(p.x), static_cast<float>(p.z), static_cast<float>(p.y));
        glEnd();
        if (HayErrorGL()) break;
    }
}
