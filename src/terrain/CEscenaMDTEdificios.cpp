// The buildings of a terrain: walls between two outlines, and the triangles of a roof.

#include "terrain/CEscenaMDT.h"
#include "frame/ListaGL.h"
#include "frame/PuntoGL.h"

#include <algorithm>

namespace {

using Vertiz::CCoor3D;
using Lugar = CCoor3D<double>;  // in GL space

void FijaColor(const CColorEdificio& color) {
    constexpr float kMaximo = 255.0F;
    glColor3f(color.m_nRojo / kMaximo, color.m_nVerde / kMaximo, color.m_nAzul / kMaximo);
}

// A wall between the foot (b) and the edge of the roof (a).
void CompilaPared(const Lugar& b0, const Lugar& b1, const Lugar& a1, const Lugar& a0, const CColorEdificio& color) {
    FijaNormal((a0 - b1) * (a1 - a0));
    FijaColor(color);
    for (const Lugar* p : {&b0, &b1, &a1, &a0})
        MandaVertice(*p);
}

void CompilaTriangulo(const Lugar& p0, const Lugar& p1, const Lugar& p2) {
    const Lugar normal = (p1 - p0) * (p2 - p1);
    FijaNormal({normal.x, -normal.y, normal.z, 0});
    for (const Lugar* p : {&p0, &p1, &p2})
        MandaVertice(*p);
}

}  // namespace

void CEscenaMDT::RecargarEdificios(const CEdificios* pEdificios) {
    m_pEdificios = pEdificios;
    m_bEdificiosIniciados = 0;
}

void CEscenaMDT::GetEdificios(CEdificios& edificios) const {
    edificios = m_pEdificios != nullptr ? *m_pEdificios : CEdificios();
}

int CEscenaMDT::DibujarEdificios() {
    if (m_bEdificiosIniciados != 0) return 1;
    if (!MakeCurrent(nullptr)) return 0;
    BorraLista(m_nListaEdificios);
    if (HayErrorGL()) return 0;
    if (m_pEdificios == nullptr || m_pEdificios->empty()) return 1;
    if (!AbreLista(m_nListaEdificios)) return 0;
    // One precision for all, that of the first building: so hosts have always filled the set.
    const double escala = 1.0 / m_pEdificios->front().m_Superior.Precision();
    for (const CDataEdificio& edificio : *m_pEdificios)
        if (!CompilaEdificio(edificio, escala)) return CierraLista(false);
    if (!CierraLista(true)) return 0;
    m_bEdificiosIniciados = 1;
    return 1;
}

int CEscenaMDT::CompilaEdificio(const CDataEdificio& edificio, double escala) const {
    const auto lugar = [&](const Vertiz::CEntidadDigi<int>& linea, unsigned i) {
        const CCoor3D<int>& p = linea.Punto(static_cast<int>(i));
        Lugar gl;
        CajaAGL(p.x * escala, p.y * escala, p.z * escala, gl.x, gl.y, gl.z);
        return gl;
    };
    glBegin(GL_QUADS);
    const unsigned partes = std::min(edificio.m_Superior.Cantidad(), edificio.m_Inferior.Cantidad());
    for (unsigned k = 0; k < partes; ++k) {
        const Vertiz::CEntidadDigi<int>&arriba = *edificio.m_Superior[k], &abajo = *edificio.m_Inferior[k];
        const unsigned puntos = std::min(arriba.NPuntos(), abajo.NPuntos());
        for (unsigned i = 0; i + 1 < puntos; ++i) {
            const CCoor3D<int>&p = arriba.Punto(static_cast<int>(i)), &q = arriba.Punto(static_cast<int>(i) + 1);
            if (p.x == q.x && p.y == q.y) continue;
            CompilaPared(lugar(abajo, i), lugar(abajo, i + 1), lugar(arriba, i + 1), lugar(arriba, i),
                         edificio.m_ColorPared);
        }
    }
    glEnd();
    if (HayErrorGL()) return 0;
    for (unsigned i = 0; i < edificio.m_Tejado.Cantidad(); ++i) {
        const Vertiz::CEntidadDigi<int>& triangulo = *edificio.m_Tejado[i];
        if (triangulo.NPuntos() < 3) continue;
        FijaColor(edificio.m_ColorTejado);
        glBegin(GL_TRIANGLES);
        CompilaTriangulo(lugar(triangulo, 0), lugar(triangulo, 1), lugar(triangulo, 2));
        glEnd();
        if (HayErrorGL()) return 0;
    }
    return 1;
}
