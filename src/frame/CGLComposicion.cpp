// Scenes inside scenes: taking children in and handing them back, and what a child inherits.

#include "frame/CGL.h"

#include <algorithm>
#include <utility>

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

std::vector<CGL*> CGL::Hijos() const {
    std::vector<CGL*> hijos = m_Referencias;
    hijos.insert(hijos.end(), m_Vinculos.begin(), m_Vinculos.end());
    return hijos;
}

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

void CGL::ClearReferencias() {
    DestruirHijos(m_Referencias);
}

void CGL::ClearVinculos() {
    DestruirHijos(m_Vinculos);
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
