// Selection across scenes: the generic selection, which walks the children and feeds the recorded points and the
// sketch, and what is selected.

#include "frame/CGL.h"
#include "frame/EntradaPublica.h"

using Vertiz::CCoor3D;
using Vertiz::CLinea;
using Vertiz::CPosicionEntidad;

// ---- Picking -------------------------------------------------------------------------------------------------------

// The arguments of a pick, as they travel to the children.
struct CGL::Pulsacion {
    int x;
    int y;
    int desdeInicio;
    unsigned tipo;
    int acumular;
    unsigned modo;
    int bPuntoLibre;
    int e;
    int f;
};

unsigned CGL::OnSeleccion(int x, int y, int desdeInicio, unsigned tipo, int acumular, int bReferencias, int bVinculos,
                          unsigned modo, int bPuntoLibre, int e, int f) {
    return SeleccionaEnHijos({x, y, desdeInicio, tipo, acumular, modo, bPuntoLibre, e, f}, bReferencias != 0,
                             bVinculos != 0);
}

unsigned CGL::OnSeleccionEnVinculos(int x, int y, int desdeInicio, unsigned tipo, int acumular, unsigned modo,
                                    int bPuntoLibre, int e) {
    return SeleccionaEnHijos({x, y, desdeInicio, tipo, acumular, modo, bPuntoLibre, e, 1}, false, true);
}

unsigned CGL::OnSeleccionEnReferencias(int x, int y, int desdeInicio, unsigned tipo, int acumular, unsigned modo,
                                       int bPuntoLibre, int e) {
    return SeleccionaEnHijos({x, y, desdeInicio, tipo, acumular, modo, bPuntoLibre, e, 1}, true, false);
}

unsigned CGL::SeleccionaEnHijos(const Pulsacion& s, bool bReferencias, bool bVinculos) {
    unsigned r = 0;
    CCoor3D<double> p;
    const int nReferencias = static_cast<int>(m_Referencias.size());
    if (bReferencias && !PreguntaHijos(m_Referencias, 1, s, r, p)) return 0;
    // The links are asked even after a hit in a reference, and the last answer stands.
    if (bVinculos && !PreguntaHijos(m_Vinculos, nReferencias + 1, s, r, p)) return 0;

    if (r != 0) {
        if (s.modo != 0 && s.modo != 3) m_PuntosSeleccion.push_back(p);
        if (s.modo < 2) return r;
        CPoint pt(s.x, s.y);
        TerrenoAPantalla(pt, p, nullptr, false);
        SumaALineaNueva(pt);
        return r;
    }
    if (!s.bPuntoLibre || s.modo < 2) return r;
    const CPoint pt(s.x, s.y);
    CCoor3D<double> libre;  // this scene's, whatever a child said before
    BuscaCotaProxima(pt, libre, true);
    if (s.modo != 3) m_PuntosSeleccion.push_back(libre);
    SumaALineaNueva(pt);
    return 1;
}

// Asks one child after another until one answers.
// @param primero Tipo of the first child's points
// @param r       in and out: the last answer
// @param p       out: the point that was hit, when points are asked for
// @return false when a child was hit that cannot give its point
bool CGL::PreguntaHijos(const std::vector<CGL*>& hijos, int primero, const Pulsacion& s, unsigned& r,
                        CCoor3D<double>& p) {
    for (CGL* hijo : hijos) {
        r = hijo->OnSeleccion(s.x, s.y, s.desdeInicio, s.tipo, s.acumular, 0, 0, s.modo != 0, s.bPuntoLibre, s.e, s.f);
        if (r != 0) {
            if (s.modo == 0) return true;
            if (!hijo->DamePuntoSeleccion(p, static_cast<int>(hijo->m_PuntosSeleccion.size()) - 1)) return false;
            p.SetTipo(primero);
            return true;
        }
        ++primero;
    }
    return true;
}

void CGL::SumaALineaNueva(const CPoint& pt) {
    if (!ModificaUltimoPuntoLineaNueva(pt, 1)) InsertaPuntoLineaNueva(pt, true);
    InsertaPuntoLineaNueva(pt, true);
}

// The sum of what the children of the lists asked for answer.
template <class Pregunta>
unsigned CGL::SumaHijos(bool bReferencias, bool bVinculos, Pregunta pregunta) const {
    unsigned suma = 0;
    if (bReferencias) {
        for (CGL* hijo : m_Referencias)
            suma += pregunta(*hijo);
    }
    if (bVinculos) {
        for (CGL* hijo : m_Vinculos)
            suma += pregunta(*hijo);
    }
    return suma;
}

unsigned CGL::OnSeleccionVentana(int x, int y, double radio, int modo, int bReferencias, int bVinculos) {
    return SumaHijos(bReferencias, bVinculos,
                     [&](CGL& hijo) { return hijo.OnSeleccionVentana(x, y, radio, modo, 0, 0); });
}

unsigned CGL::OnSeleccionVentana(CLinea<int>& linea, int modo, int bReferencias, int bVinculos, short tipo, bool b1,
                                 bool b2) {
    return SumaHijos(bReferencias, bVinculos,
                     [&](CGL& hijo) { return hijo.OnSeleccionVentana(linea, modo, 0, 0, tipo, b1, b2); });
}

unsigned CGL::OnSeleccionVentana(int arriba, int abajo, int izquierda, int derecha, int modo, int bReferencias,
                                 int bVinculos) {
    return SumaHijos(bReferencias, bVinculos,
                     [&](CGL& hijo) { return hijo.OnSeleccionVentana(arriba, abajo, izquierda, derecha, modo, 0, 0); });
}

unsigned CGL::OnVistaSeleccion(int v) {
    return SumaHijos(true, true, [v](CGL& hijo) { return hijo.OnVistaSeleccion(v); });
}

unsigned CGL::InvierteSeleccion() {
    return SumaHijos(true, true, [](CGL& hijo) { return hijo.InvierteSeleccion(); });
}

// ---- What is selected ----------------------------------------------------------------------------------------------

void CGL::ClearSeleccion() {
    m_Seleccion.clear();
    for (CGL* hijo : Hijos())
        hijo->ClearSeleccion();
}

void CGL::ClearPuntosSeleccion() {
    m_PuntosSeleccion.clear();
    for (CGL* hijo : Hijos())
        hijo->ClearPuntosSeleccion();
}

void CGL::Deselecciona(int bReferencias, int bVinculos, int bLinea) {
    m_Seleccion.clear();
    m_PuntosSeleccion.clear();
    if (bReferencias) {
        for (CGL* hijo : m_Referencias)
            hijo->Deselecciona(1, 1, 1);
    }
    if (bVinculos) {
        for (CGL* hijo : m_Vinculos)
            hijo->Deselecciona(1, 1, 1);
    }
    if (bLinea) VaciaLineaNueva();
}

void CGL::DeseleccionaLa2() {
    m_Seleccion2.clear();
}

unsigned CGL::CantidadSeleccion(int bReferencias, int bVinculos) const {
    return static_cast<unsigned>(m_Seleccion.size()) +
           SumaHijos(bReferencias, bVinculos, [](const CGL& hijo) { return hijo.CantidadSeleccion(1, 1); });
}

unsigned CGL::CantidadVistaSeleccion() const {
    return static_cast<unsigned>(m_VistaSeleccion.size()) +
           SumaHijos(true, true, [](const CGL& hijo) { return hijo.CantidadVistaSeleccion(); });
}

bool CGL::HaySeleccion(int bReferencias, int bVinculos) const {
    return CantidadSeleccion(bReferencias, bVinculos) != 0;
}

bool CGL::HayVistaSeleccion() const {
    return CantidadVistaSeleccion() != 0;
}

bool CGL::DamePuntoSeleccion(CCoor3D<double>& c, int i) const {
    const auto indice = static_cast<std::size_t>(i);  // a negative one is past the end too
    if (indice >= m_PuntosSeleccion.size()) return false;
    c = m_PuntosSeleccion[indice];
    return true;
}

void CGL::SetSeleccion(const std::vector<CPosicionEntidad>& seleccion) {
    m_Seleccion = seleccion;
}

void CGL::SetVistaSeleccion(std::vector<CPosicionEntidad>& vista, bool bIniciar) {
    const EntradaPublica entrada;
    m_VistaSeleccion = vista;
    m_bVistaSeleccion = 1;
    if (!bIniciar) return;
    MakeCurrent(nullptr);
    entrada.Acaba(OnIniciarVista());
}
