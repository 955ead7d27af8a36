// The line that the user is digitising. It lies in GL space, and where an image takes part in terrain space too, since
// a point of a photograph cannot be brought back exactly from GL space. Its last point follows the cursor.
//
// It is drawn in XOR on the visible buffer: drawing a segment a second time wipes it, so that the cursor can be
// followed without drawing the scene again. The list holds the same drawing for Render to call on each new frame.

#include "frame/CGL.h"
#include "frame/EntradaPublica.h"
#include "frame/LapizXor.h"
#include "frame/ListaGL.h"
#include "frame/MatricesGL.h"
#include "frame/PuntoGL.h"
#include "frame/TrazoGL.h"

#include <algorithm>

using Vertiz::CCoor3D;
using Vertiz::CLinea;

namespace {

constexpr GLfloat kGrosorMinimo = 3.0F;

void CambiaUltimo(CLinea<double>& linea, const CCoor3D<double>& p) {
    if (linea.NPuntos() > 0) linea.ModificaPunto(linea.NPuntos() - 1, p, true);
}

void BorraUltimo(CLinea<double>& linea) {
    if (linea.NPuntos() > 0) linea.BorraPunto(static_cast<int>(linea.NPuntos()) - 1, 1);
}

}  // namespace

// ---- Drawing -------------------------------------------------------------------------------------------------------

int CGL::OnIniciarLineaNueva(int bDirecto) {
    if (!m_pDigiTab) return 1;
    if (!MakeCurrent(nullptr)) return 0;
    if (!bDirecto) {
        BorraLista(m_nListaLineaNueva);
        if (HayErrorGL()) return 0;
    }
    if (m_LineaNueva.NPuntos() < 2) return 1;
    if (!bDirecto && !AbreLista(m_nListaLineaNueva)) return 0;
    if (!DibujaLineaNueva(bDirecto ? m_LineaNueva.NPuntos() - 2 : 0)) return 0;
    if (bDirecto) {
        glFlush();
        return 1;
    }
    glEndList();
    return HayErrorGL() ? 0 : 1;
}

// Draws from a point on; what it changed but for style and light is put back, also after an error.
int CGL::DibujaLineaNueva(unsigned primero) const {
    const LapizXor lapiz;
    if (!lapiz.Activa() || !EstiloLineaNueva()) return 0;
    TrazaLineaNueva(primero);
    return 1;
}

int CGL::EstiloLineaNueva() const {
    if (m_nTipoLineaNueva == 1) {
        glDisable(GL_LINE_STIPPLE);
        glLineWidth(kGrosorMinimo);
        glColor3f(1.0F, 1.0F, 0.0F);
        return 1;
    }
    Vertiz::CElementoDigiTab elemento = ElementoPorDefecto(L"nuevo");
    m_pDigiTab->GetElemento(m_LineaNueva, elemento);
    FijaColorTrazo(elemento, m_Data.m_nColorFondo);
    if (HayErrorGL()) return 0;
    glLineWidth(std::max(kGrosorMinimo, elemento.GetGrosor()));
    if (HayErrorGL()) return 0;
    FijaEstiloTrazo(elemento.GetEstilo());
    return 1;
}

// Draws from a point on. The kinds 3 and 4 hold the height, or the place in plan, of the first point of all.
void CGL::TrazaLineaNueva(unsigned primero) const {
    const bool bCotaFija = m_nTipoLineaNueva == 3;
    const bool bPlantaFija = m_nTipoLineaNueva == 4;
    CCoor3D<double> t0;
    glBegin(GL_LINE_STRIP);
    for (unsigned i = primero; i < m_LineaNueva.NPuntos(); ++i) {
        CCoor3D<double> p = m_LineaNueva.Punto(static_cast<int>(i));
        if (bCotaFija || bPlantaFija) {
            CCoor3D<double> t;
            GLATerreno(t, p.x, p.y, p.z, 1.0);
            if (i == 0) t0 = t;
            if (bCotaFija) t.z = t0.z;
            if (bPlantaFija) t.ActualizaXY(t0.x, t0.y);
            TerrenoAGL(t, p.x, p.y, p.z, 1.0, false);
        }
        MandaVertice(p);
    }
    glEnd();
}

// Compiles the list anew, and draws the last segment too when asked to.
// @return as OnIniciarLineaNueva
int CGL::RehazLineaNueva(bool bSegmento) {
    const int r = OnIniciarLineaNueva(0);
    return bSegmento ? OnIniciarLineaNueva(1) : r;
}

int CGL::RenderLineaNueva(int bRapido) {
    const EntradaPublica entrada;
    if (bRapido) {
        entrada.Acaba(OnIniciarLineaNueva(1));
        return 1;
    }
    if (!MakeCurrent(nullptr)) return 0;
    if (m_nListaLineaNueva) glCallList(m_nListaLineaNueva);
    wglMakeCurrent(nullptr, nullptr);
    return 1;
}

// ---- Changing ------------------------------------------------------------------------------------------------------

// The points of images come in absolute coordinates; the scene's are local.
CCoor3D<double> CGL::SinSemilla(const CCoor3D<double>& p) const {
    const bool bFoto = m_nTipoImagenFondo == 1 || m_nTipoImagenFondo == 2 || TieneImagenEsferica();
    if (!EsImagenConica() && !EsImagenEsferica() && !bFoto) return p;
    const Vertiz::CDataSemilla& semilla = DameSemilla();
    return p - CCoor3D<double>(semilla.GetX(), semilla.GetY(), semilla.GetZ());
}

void CGL::InsertaPuntoLineaNueva(const CPoint& pt, bool bBuscarPunto) {
    const EntradaPublica entrada;
    CCoor3D<double> a;
    BuscaCotaProxima(pt, a, bBuscarPunto);
    if (HayImagen()) m_LineaNuevaTerreno << a;
    CCoor3D<double> c;
    TerrenoAGL(a, c.x, c.y, c.z, 1.0, false);
    m_LineaNueva << c;
    entrada.Acaba(RehazLineaNueva(true));
}

void CGL::InsertaPuntoLineaNueva(const CCoor3D<double>& p) {
    const EntradaPublica entrada;
    const CCoor3D<double> a = SinSemilla(p);
    if (HayImagen()) m_LineaNuevaTerreno << a;
    CCoor3D<double> c;
    TerrenoAGL(a, c.x, c.y, c.z, 1.0, true);
    CambiaUltimo(m_LineaNueva, c);
    m_LineaNueva << c;
    entrada.Acaba(RehazLineaNueva(true));
}

bool CGL::ModificaUltimoPuntoLineaNueva(const CPoint& pt, int bGoma) {
    if (m_LineaNueva.NPuntos() == 0) return false;
    const EntradaPublica entrada;
    if (bGoma) OnIniciarLineaNueva(1);
    CCoor3D<double> c = m_LineaNueva.end();
    PantallaATerreno(pt, c, true, false, false);
    CambiaUltimo(m_LineaNueva, c);
    if (SobreFoto()) {
        CCoor3D<double> terreno;
        BuscaCotaProxima(pt, terreno, true);
        m_LineaNuevaTerreno.ModificaPunto(m_LineaNueva.NPuntos() - 1, terreno, true);
    }
    entrada.Acaba(RehazLineaNueva(bGoma != 0));
    return true;
}

bool CGL::ModificaUltimoPuntoLineaNueva(const CCoor3D<double>& p, int bGoma) {
    if (m_LineaNueva.NPuntos() == 0) return false;
    const EntradaPublica entrada;
    if (bGoma) OnIniciarLineaNueva(1);
    const CCoor3D<double> a = SinSemilla(p);
    if (HayImagen()) m_LineaNuevaTerreno.ModificaPunto(m_LineaNueva.NPuntos() - 1, a, true);
    CCoor3D<double> c;
    TerrenoAGL(a, c.x, c.y, c.z, 1.0, true);
    CambiaUltimo(m_LineaNueva, c);
    entrada.Acaba(RehazLineaNueva(bGoma != 0));
    return true;
}

void CGL::VaciaLineaNueva() {
    const EntradaPublica entrada;
    m_LineaNueva.Clear();
    m_LineaNuevaTerreno.Clear();
    entrada.Acaba(RehazLineaNueva(false));
}

void CGL::CierraLineaNueva() {
    const EntradaPublica entrada;
    m_LineaNueva.Cierra();
    m_LineaNuevaTerreno.Cierra();
    entrada.Acaba(RehazLineaNueva(false));
}

bool CGL::DuplicaUltimoPuntoLineaNueva() {
    if (m_LineaNueva.NPuntos() == 0) return false;
    const EntradaPublica entrada;
    const CCoor3D<double> ultimo = m_LineaNueva.end();
    m_LineaNueva << ultimo;
    if (HayImagen() && m_LineaNuevaTerreno.NPuntos() > 0) {
        const CCoor3D<double> ultimoTerreno = m_LineaNuevaTerreno.end();
        m_LineaNuevaTerreno << ultimoTerreno;
    }
    entrada.Acaba(RehazLineaNueva(false));
    return true;
}

void CGL::BorraUltimoPuntoLineaNueva(int bGoma) {
    const EntradaPublica entrada;
    BorraUltimoPuntoSeleccion();
    if (m_LineaNueva.NPuntos() >= 2) BorraUltimoDigitado(bGoma != 0);
    MakeCurrent(nullptr);
    entrada.Acaba(OnIniciarSeleccion());
}

// Undoes the last recorded point where it came from.
void CGL::BorraUltimoPuntoSeleccion() {
    if (m_PuntosSeleccion.empty()) return;
    const int dueno = m_PuntosSeleccion.back().GetTipoCompleto();
    if (dueno == 0) {
        if (!m_Seleccion.empty()) m_Seleccion.pop_back();
    } else {
        const std::vector<CGL*> hijos = Hijos();
        const std::size_t i = static_cast<std::size_t>(dueno) - 1;  // past the end for a negative one
        if (i < hijos.size()) hijos[i]->BorraUltimoPuntoLineaNueva(1);
    }
    m_PuntosSeleccion.pop_back();
}

// Deletes the last point or, with bGoma, the one before it, so that the point that follows the cursor stays.
void CGL::BorraUltimoDigitado(bool bGoma) {
    const bool bTerreno = SobreFoto() && m_LineaNuevaTerreno.NPuntos() > 0;
    const CCoor3D<double> a = m_LineaNueva.end();
    const CCoor3D<double> b = m_LineaNuevaTerreno.end();
    OnIniciarLineaNueva(1);
    BorraUltimo(m_LineaNueva);
    if (bTerreno) BorraUltimo(m_LineaNuevaTerreno);
    if (bGoma) {
        OnIniciarLineaNueva(1);
        BorraUltimo(m_LineaNueva);
        m_LineaNueva << a;
        if (bTerreno) {
            BorraUltimo(m_LineaNuevaTerreno);
            m_LineaNuevaTerreno << b;
        }
        OnIniciarLineaNueva(1);
    }
    OnIniciarLineaNueva(0);
}

// ---- Reading -------------------------------------------------------------------------------------------------------

// Point i of the sketch in terrain units divided by escala: the one that was kept, when asked for and there is one.
CCoor3D<double> CGL::PuntoBoceto(unsigned i, bool bGuardado, double escala) const {
    if (bGuardado && i < m_LineaNuevaTerreno.NPuntos()) return m_LineaNuevaTerreno.Punto(static_cast<int>(i)) / escala;
    const CCoor3D<double>& p = m_LineaNueva.Punto(static_cast<int>(i));
    CCoor3D<double> c;
    GLATerreno(c, p.x, p.y, p.z, escala);
    return c;
}

void CGL::DameLineaNuevaTerreno(CLinea<double>& l) const {
    const bool bTerreno = SobreFoto();
    for (unsigned i = 0; i < m_LineaNueva.NPuntos(); ++i)
        l << PuntoBoceto(i, bTerreno, 1.0);
}

void CGL::DameLineaNuevaTerreno(CLinea<int>& l) {
    const double escala = 1.0 / Precision();
    const bool bTerreno = HayImagen();
    for (unsigned i = 0; i < m_LineaNueva.NPuntos(); ++i)
        l << CCoor3D<int>(PuntoBoceto(i, bTerreno, escala));
}

void CGL::DameLineaNuevaPantalla(CLinea<int>& l) {
    if (!MakeCurrent(nullptr)) return;
    MatricesGL matrices;
    if (!matrices.Lee()) return;
    for (unsigned i = 0; i < m_LineaNueva.NPuntos(); ++i) {
        CCoor3D<double> w;
        if (!matrices.Proyecta(m_LineaNueva.Punto(static_cast<int>(i)), w)) return;
        w.y = matrices.viewport[3] - w.y;
        l << CCoor3D<int>(w);
    }
    wglMakeCurrent(nullptr, nullptr);
}
