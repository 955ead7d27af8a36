// What terrains share: the lists of their limits and breaklines, the state that a surface is drawn in, and the sky
// behind it. Images are in CEscenaMDTTexturas.cpp, buildings and trees in files of their own.

#include "terrain/CEscenaMDT.h"

#include "frame/ListaGL.h"
#include "frame/MaterialGL.h"
#include "frame/PasadaGL.h"
#include "frame/PuntoGL.h"
#include "frame/TrazoGL.h"
#include "model/CElementoDigiTab.h"

#include <array>

using Vertiz::CCoor3D;
using Vertiz::CDibujo;
using Vertiz::CElementoDigiTab;
using Vertiz::CLinea;
using Vertiz::CMaximas;
using Vertiz::CTipoEntidad;

namespace {

// Colour and width of an element.
void FijaTrazo(const CElementoDigiTab& elemento, int nColorFondo) {
    FijaColorTrazo(elemento, nColorFondo);
    glLineWidth(elemento.GetGrosor() > 0.0F ? elemento.GetGrosor() : 1.0F);
}

}  // namespace

CEscenaMDT::CEscenaMDT(const CEscenaMDT& otra) : CGL(otra) {
    CopiaCapas(otra);
    CopiaTexturas(otra);
}

CEscenaMDT& CEscenaMDT::operator=(const CEscenaMDT& otra) {
    if (EsDeLaFamilia(otra)) return *this;
    Destruir();
    DescargaTodo();
    CGL::operator=(otra);
    CopiaCapas(otra);
    CopiaTexturas(otra);
    return *this;
}

CGL& CEscenaMDT::operator=(const CGL& otra) {
    if (const auto* terreno = dynamic_cast<const CEscenaMDT*>(&otra)) return *this = *terreno;
    return CGL::operator=(otra);
}

CEscenaMDT::~CEscenaMDT() {
    Destruir();
    DescargaTodo();
}

void CEscenaMDT::CopiaCapas(const CEscenaMDT& otra) {
    m_Arboles = otra.m_Arboles;
    m_pEdificios = otra.m_pEdificios;
    m_nEjeX = otra.m_nEjeX;
    m_nEjeY = otra.m_nEjeY;
    m_nEjeZ = otra.m_nEjeZ;
    m_bLimitesIniciados = otra.m_bLimitesIniciados;
    m_bEdificiosIniciados = otra.m_bEdificiosIniciados;
    m_bRupturasIniciadas = otra.m_bRupturasIniciadas;
    m_bBaseIniciada = otra.m_bBaseIniciada;
    m_bArbolesIniciados = otra.m_bArbolesIniciados;
    m_nTipoSeleccion = otra.m_nTipoSeleccion;
    m_nListaSuperficie = otra.m_nListaSuperficie;
    m_nListaEdificios = otra.m_nListaEdificios;
    m_nListaRupturas = otra.m_nListaRupturas;
    m_nListaBase = otra.m_nListaBase;
    m_nListaArboles = otra.m_nListaArboles;
    m_nListaSeleccion = otra.m_nListaSeleccion;
    m_nListaCurvado = otra.m_nListaCurvado;
}

void CEscenaMDT::OnLiberarContexto(bool bBorrar) {
    for (GLuint* lista : {&m_nListaSuperficie, &m_nListaEdificios, &m_nListaRupturas, &m_nListaBase, &m_nListaArboles,
                          &m_nListaSeleccion, &m_nListaCurvado}) {
        if (bBorrar) BorraLista(*lista);
        *lista = 0;
    }
    // Texture objects have owners of their own: what is only this scene's goes also while copies use the context.
    for (CDataTexturas& registro : m_Texturas)
        BorraTexturasGL(registro, m_hRC != nullptr && wglGetCurrentContext() == m_hRC);
    CGL::OnLiberarContexto(bBorrar);
}

void CEscenaMDT::TerrenoAPantallaGL(double& x, double& y, double& z, const CMaximas<double>& /*maximas*/, double a,
                                    double b, double c, double d) const {
    const double este = x + a - m_dRangoX * m_dFactor * 0.5;
    const double norte = y + b - m_dRangoY * m_dFactor * 0.5;
    const double altura = (z - (c + d) - m_dRangoZ * 0.5) * m_dFactor * m_fExageracionVertical;
    x = static_cast<float>(este);
    y = static_cast<float>(altura);
    z = static_cast<float>(norte);
}

// Six rectangles round the extents, each of three sides: X lowest and highest, then Z, then Y highest and lowest.
void CEscenaMDT::CompilaCaja(const CMaximas<double>& maximas) const {
    const auto &a = maximas.Minima(), &b = maximas.Maxima();
    const float oeste = static_cast<float>(a.x), este = static_cast<float>(b.x);
    const float sur = static_cast<float>(a.y), norte = static_cast<float>(b.y);
    const float bajo = static_cast<float>(a.z), alto = static_cast<float>(b.z);
    const float caras[6][4][3] = {
        {{oeste, sur, bajo}, {oeste, norte, bajo}, {oeste, norte, alto}, {oeste, sur, alto}},
        {{este, sur, bajo}, {este, norte, bajo}, {este, norte, alto}, {este, sur, alto}},
        {{oeste, sur, bajo}, {este, sur, bajo}, {este, norte, bajo}, {oeste, norte, bajo}},
        {{oeste, sur, alto}, {este, sur, alto}, {este, norte, alto}, {oeste, norte, alto}},
        {{oeste, norte, bajo}, {este, norte, bajo}, {este, norte, alto}, {oeste, norte, alto}},
        {{oeste, sur, bajo}, {este, sur, bajo}, {este, sur, alto}, {oeste, sur, alto}},
    };
    for (const auto& cara : caras) {
        glBegin(GL_LINE_STRIP);
        for (const auto& p : cara) {
            CCoor3D<double> gl;
            CajaAGL(p[0], p[1], p[2], gl.x, gl.y, gl.z);
            MandaVertice(gl);
        }
        glEnd();
    }
}

// Sends a line that starts at the lowest corner of `maximas` as a strip, in GL space. Heights are left as they are.
void CEscenaMDT::CompilaLinea(const CLinea<double>& linea, const CMaximas<double>& maximas) const {
    const CCoor3D<double>& origen = m_Maximas.Minima();
    const double a = (maximas.Minima().x - origen.x) * m_dFactor, b = (maximas.Minima().y - origen.y) * m_dFactor;
    glBegin(GL_LINE_STRIP);
    for (unsigned i = 0; i < linea.NPuntos(); ++i) {
        const CCoor3D<double>& p = linea.Punto(static_cast<int>(i));
        double x = p.x * m_dFactor, y = p.y * m_dFactor, z = p.z;
        TerrenoAPantallaGL(x, y, z, maximas, a, b, 0.0, origen.z);
        glVertex3f(static_cast<float>(x), static_cast<float>(y), static_cast<float>(-z));
    }
    glEnd();
}

// A line of a drawing in terrain units, which in plan starts at the lowest corner of `maximas`: in a group that is not
// the scene's.
CLinea<double> CEscenaMDT::LineaLocal(const Vertiz::CEntidadDigi<int>& entidad, double precision,
                                      const CMaximas<double>& maximas) {
    CLinea<double> linea(entidad);
    linea.Escalar(1.0 / precision, 1.0 / precision, 1.0 / precision);
    linea.Mover(-maximas.Minima().x, -maximas.Minima().y, 0.0);
    return linea;
}

int CEscenaMDT::DibujarLimites(const CDibujo<int>& dibujo, const CMaximas<double>& maximas) {
    if (!AbreLista(m_nListaLimites)) return 0;
    CElementoDigiTab elemento = ElementoPorDefecto(L"LIMITE");
    if (m_pDigiTab != nullptr) m_pDigiTab->GetElemento(L"LIMITE", CTipoEntidad::Linea, elemento);
    FijaTrazo(elemento, m_Data.m_nColorFondo);
    glDisable(GL_LINE_STIPPLE);
    CompilaCaja(maximas);
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i)
        CompilaLinea(LineaLocal(*dibujo[i], dibujo.Precision(), maximas), maximas);
    if (!CierraLista(true)) return 0;
    m_bLimitesIniciados = 1;
    return 1;
}

int CEscenaMDT::DibujarRupturas(const CDibujo<int>& dibujo, const CMaximas<double>& maximas) {
    if (m_bRupturasIniciadas != 0 || m_pDigiTab == nullptr) return 1;
    if (!MakeCurrent(nullptr)) return 0;
    if (!AbreLista(m_nListaRupturas)) return 0;
    glEnable(GL_DEPTH_TEST);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    glEnable(GL_COLOR_MATERIAL);
    glDisable(GL_LIGHTING);
    glDisable(GL_LIGHT0);
    if (!MaterialNulo()) return CierraLista(false);
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
        const Vertiz::CEntidadDigi<int>& entidad = *dibujo[i];
        if (!entidad.EsGrafico() || entidad.EsBorrado()) continue;
        CElementoDigiTab elemento = ElementoPorDefecto(L"nuevo");
        m_pDigiTab->GetElemento(entidad, elemento);
        FijaTrazo(elemento, m_Data.m_nColorFondo);
        if (HayErrorGL()) break;
        FijaEstiloTrazo(elemento.GetEstilo());
        CompilaLinea(LineaLocal(entidad, dibujo.Precision(), maximas), maximas);
    }
    if (!CierraLista(true)) return 0;
    m_bRupturasIniciadas = 1;
    return 1;
}

int CEscenaMDT::SetVariablesVisualizacion() {
    if (!SetMaterial() || !SetLight()) return 0;
    if (m_nTipo != 3) {
        glEnable(GL_DEPTH_TEST);
        if (HayErrorGL()) return 0;
        if (GetRelleno() != 0) {
            glEnable(GL_LIGHTING);
            if (HayErrorGL()) return 0;
            glEnable(GL_LIGHT0);
            if (HayErrorGL()) return 0;
        }
        glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        if (HayErrorGL()) return 0;
        glEnable(GL_COLOR_MATERIAL);
        if (HayErrorGL()) return 0;
    }
    FijaColorFondoGL(m_Data.m_nColorFondo);
    if (HayErrorGL()) return 0;
    glPolygonMode(GL_FRONT_AND_BACK, m_nTipo == 3 || GetTipoColorMDT() != 0 ? GL_FILL : GL_LINE);
    return HayErrorGL() ? 0 : 1;
}

int CEscenaMDT::RenderCielo() {
    return RenderFondo(*this, m_dAspecto, m_nListaCielo);
}
