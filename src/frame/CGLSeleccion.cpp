// Scenes inside scenes, and selection across them: taking children in and handing them back, what a child inherits, and
// the generic selection, which walks the children and feeds the recorded points and the sketch.

#include "frame/CGL.h"
#include "frame/EntradaPublica.h"

#include <algorithm>
#include <utility>

using Vertiz::CCoor3D;
using Vertiz::CLinea;
using Vertiz::CPosicionEntidad;

namespace {

std::size_t BuscaHijo(const std::vector<CGL*>& hijos, const CString& nombre) {
    const auto it = std::ranges::find(hijos, nombre, &CGL::GetNombre);
    return static_cast<std::size_t>(it - hijos.begin());
}

CGL* DameHijo(const std::vector<CGL*>& hijos, const CString& nombre) {
    const std::size_t i = BuscaHijo(hijos, nombre);
    return i < hijos.size() ? hijos[i] : nullptr;
}

}  // namespace

// ---- Composition ---------------------------------------------------------------------------------------------------

void CGL::ReferenciaNuevo(CGL* r) {
    if (!r || r->Contiene(*this)) return;
    TomaHijo(*r);
    if (r->EsImagenFondo()) {
        SetFondoGrupo(r->m_nTipoImagenFondo - 1);
    } else {
        HeredaImagen(*r, m_nTipoImagenFondo);
    }
    m_Referencias.push_back(r);
    AjustaProyeccion(*r);
}

void CGL::VinculoNuevo(CGL* r) {
    if (!r || r->Contiene(*this)) return;
    TomaHijo(*r);
    const int fondoAnterior = m_nTipoImagenFondo;
    if (r->EsImagenFondo()) SetFondoGrupo(r->m_nTipoImagenFondo - 1);
    HeredaImagen(*r, fondoAnterior);
    m_Vinculos.push_back(r);
    AjustaProyeccion(*r);
}

// Whether the scene is this one or stands somewhere below it: a scene below itself would be walked for ever.
bool CGL::Contiene(const CGL& escena) const {
    return this == &escena || std::ranges::any_of(Hijos(), [&](const CGL* hijo) { return hijo->Contiene(escena); });
}

// Makes a scene a child: tables, extents and context become the parent's. A context of its own goes first, with the
// lists that live in it: their ids would stand for lists of the parent.
void CGL::TomaHijo(CGL& r) {
    if (!r.m_bEsReferencia || r.m_hRC != m_hRC) r.DejaContexto(false);
    r.m_bEsReferencia = 1;
    ++r.m_nPadres;
    r.m_pDigiTab = m_pDigiTab;
    r.m_pLidarTab = m_pLidarTab;
    r.m_pEcoTab = m_pEcoTab;
    r.m_nVersionDigiTab = m_nVersionDigiTab;
    r.m_nVersionLidarTab = m_nVersionLidarTab;
    r.m_nVersionEcoTab = m_nVersionEcoTab;
    r.m_Maximas = m_Maximas;
    r.m_dAspecto = 1.0;  // it draws in the parent's projection, which has the aspect already
    Presta(r);
}

// A child of an image scene is drawn over that image.
// @param fondo this scene's image value before the child came
void CGL::HeredaImagen(CGL& r, int fondo) const {
    if (m_nTipo != 3 && m_nTipo != 8 && fondo != 5 && fondo != 6) return;
    if (!m_DataTransformacion.ExisteTransformacion()) {
        r.m_nTipoImagenFondo = 3;
    } else {
        r.m_nTipoImagenFondo = EsImagenConica() ? 1 : 5;
    }
}

// A conic or spherical background changes the kind of projection.
void CGL::AjustaProyeccion(const CGL& r) {
    if (!r.EsImagenConicaFondo() && !r.EsImagenEsfericaFondo()) return;
    if (m_nAncho > 0 && m_nAlto > 0 && MakeCurrent(nullptr)) {
        OnResize(m_nAncho, m_nAlto);
        wglMakeCurrent(nullptr, nullptr);
    }
    Vertiz::CMaximas<double> maximas;
    GetMaximas(maximas);
    ZoomExtension(maximas);
}

void CGL::SetFondoGrupo(int fondo) {
    m_nTipoImagenFondo = fondo;
    for (CGL* hijo : Hijos())
        hijo->m_nTipoImagenFondo = fondo;
}

// Settles the image values after a child was taken out.
void CGL::AjustaFondoSin(const CGL& r) {
    const auto esOrtoFondo = [](const CGL* hijo) { return hijo->EsImagenOrtoFondo(); };
    const bool bSinImagen = (m_nTipoImagenFondo == 1 && r.EsImagenConicaFondo()) ||
                            (m_nTipoImagenFondo == 3 && std::ranges::none_of(Hijos(), esOrtoFondo)) ||
                            (m_nTipoImagenFondo == 5 && r.EsImagenEsfericaFondo());
    if (bSinImagen) SetFondoGrupo(0);
}

CGL* CGL::DameReferencia(const CString& nombre) {
    return DameHijo(m_Referencias, nombre);
}

CGL* CGL::DameVinculo(const CString& nombre) {
    return DameHijo(m_Vinculos, nombre);
}

// Takes child i out of a list; null past the end.
CGL* CGL::SueltaHijo(std::vector<CGL*>& lista, std::size_t i) {
    if (i >= lista.size()) return nullptr;
    CGL* hijo = lista[i];
    lista.erase(lista.begin() + static_cast<std::ptrdiff_t>(i));
    --hijo->m_nPadres;
    return hijo;
}

CGL* CGL::BorraReferencia(const CString& nombre) {
    CGL* hijo = SueltaHijo(m_Referencias, BuscaHijo(m_Referencias, nombre));
    if (hijo) AjustaFondoSin(*hijo);
    return hijo;
}

CGL* CGL::BorraVinculo(const CString& nombre) {
    CGL* hijo = SueltaHijo(m_Vinculos, BuscaHijo(m_Vinculos, nombre));
    if (hijo) AjustaFondoSin(*hijo);
    return hijo;
}

CGL* CGL::BorraVinculo(unsigned i) {
    CGL* hijo = SueltaHijo(m_Vinculos, i);
    if (!hijo) return nullptr;
    // By index only this scene's value is settled: the children keep theirs, and references are not looked at.
    const auto esOrtoFondo = [](const CGL* vinculo) { return vinculo->EsImagenOrtoFondo(); };
    const bool bSinImagen = (m_nTipoImagenFondo == 1 && hijo->EsImagenConicaFondo()) ||
                            (m_nTipoImagenFondo == 3 && std::ranges::none_of(m_Vinculos, esOrtoFondo));
    if (bSinImagen) m_nTipoImagenFondo = 0;
    return hijo;
}

// A child that copies of this scene hold too is left to them.
void CGL::DestruirHijos(std::vector<CGL*>& lista) {
    for (CGL* hijo : std::exchange(lista, {})) {
        if (--hijo->m_nPadres > 0) continue;
        hijo->Destruir();
        delete hijo;
    }
}

void CGL::SetVariablesReferencia(CGL* r) const {
    r->CGLVista::operator=(*this);
    r->m_DataTransformacion = m_DataTransformacion;
}

void CGL::IgualaVariables(CGL* r) const {
    SetVariablesReferencia(r);
    r->m_Seleccion = m_Seleccion;
    r->m_PuntosSeleccion = m_PuntosSeleccion;
    r->m_VistaSeleccion = m_VistaSeleccion;
    r->m_bVistaSeleccion = m_bVistaSeleccion;
}

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
