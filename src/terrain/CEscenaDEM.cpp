// The grid's scene: its life, the order in which its lists are built, the surface of a cell list, the render pass, and
// the way from points and rays to the surface. The mesh of a matrix is in CEscenaDEMMalla.cpp, walls and floor in
// CEscenaDEMBase.cpp.

#include "terrain/CEscenaDEM.h"

#include <cmath>

#include "frame/ListaGL.h"
#include "model/IPorcentaje.h"

using Vertiz::CCoor3D;
using Vertiz::CDEM;
using Vertiz::CMaximas;

namespace {

constexpr unsigned kTextoRupturas = 19068;
constexpr int kNivelMensajes = 3;

// The settings of a grid that stands for a plain image, for the time of its Iniciar.
class AjustesImagen {
  public:
    explicit AjustesImagen(CDataGL& data) : m_Data(data), m_Guardados(data) {
        data.m_nModoRelleno = 1;
        data.m_nQuad = 1;
        data.m_bBase = data.m_bEdificios = data.m_bArboles = data.m_bRupturas = data.m_bLimites = 0;
        data.m_bImagenFondo = 0;
    }
    ~AjustesImagen() { m_Data = m_Guardados; }
    AjustesImagen(const AjustesImagen&) = delete;
    AjustesImagen& operator=(const AjustesImagen&) = delete;

  private:
    CDataGL& m_Data;
    CDataGL m_Guardados;
};

void EnFlotantes(int nColor, float (&destino)[3]) {
    const auto color = static_cast<COLORREF>(nColor);
    destino[0] = GetRValue(color) / 255.0F;
    destino[1] = GetGValue(color) / 255.0F;
    destino[2] = GetBValue(color) / 255.0F;
}

}  // namespace

CEscenaDEM::CEscenaDEM() {
    SetTipo(1);
}

CEscenaDEM::CEscenaDEM(CDEM* pDEM) : CEscenaDEM() {
    m_pDEM = pDEM;
}

CEscenaDEM::CEscenaDEM(const CEscenaDEM& otra, CDEM* pDEM)
    : CEscenaMDT(otra), m_SeleccionCeldas(otra.m_SeleccionCeldas), m_pDEM(pDEM) {}

CEscenaDEM::CEscenaDEM(const CEscenaDEM& otra) : CEscenaDEM(otra, otra.m_pDEM) {}

CEscenaDEM& CEscenaDEM::operator=(const CEscenaDEM& otra) {
    if (this == &otra) return *this;
    CEscenaMDT::operator=(otra);
    m_SeleccionCeldas = otra.m_SeleccionCeldas;
    m_pDEM = otra.m_pDEM;
    return *this;
}

CGL& CEscenaDEM::operator=(const CGL& otra) {
    if (const auto* dem = dynamic_cast<const CEscenaDEM*>(&otra)) return *this = *dem;
    return CEscenaMDT::operator=(otra);
}

CEscenaDEM::~CEscenaDEM() {
    Destruir();
}

void CEscenaDEM::Destruir() {
    CEscenaMDT::Destruir();
    LiberaMalla();
    m_pDEM = nullptr;
}

// ---- Building ------------------------------------------------------------------------------------------------------

int CEscenaDEM::Iniciar() {
    if (m_nTipo == 3) {
        const AjustesImagen ajustes(m_Data);
        return IniciarListas();
    }
    return IniciarListas();
}

int CEscenaDEM::IniciarListas() {
    if (!MakeCurrent(nullptr)) return 0;
    glDisable(GL_LINE_SMOOTH);
    glLineWidth(static_cast<GLfloat>(m_Data.m_nGrosorPuntos));
    glPointSize(static_cast<GLfloat>(m_Data.m_nGrosorPuntos));
    if (!OnIniciar()) return 0;
    if (m_nTipo != 3 && !OnIniciarEjes()) return 0;
    if (!IniciarCapas()) return 0;
    if (m_Data.m_bReferencia != 0 && m_bEsReferencia == 0)
        for (CGL* referencia : m_Referencias) {
            SetVariablesReferencia(referencia);
            if (!referencia->Iniciar()) return 0;
        }
    if (!OnIniciarVinculos() || !OnIniciarCamara() || !OnIniciarPuntosCamara()) return 0;
    if (m_bEsReferencia == 0 && (!OnIniciarCielo() || !OnIniciarMarcas())) return 0;
    m_bLimitesIniciados = m_Data.m_bLimites;
    m_bEdificiosIniciados = m_Data.m_bEdificios;
    m_bRupturasIniciadas = m_Data.m_bRupturas;
    m_bBaseIniciada = m_Data.m_bBase;
    m_bArbolesIniciados = m_Data.m_bArboles;
    return wglMakeCurrent(nullptr, nullptr) ? 1 : 0;
}

// The layers that are shown, all anew.
int CEscenaDEM::IniciarCapas() {
    m_bLimitesIniciados = m_bEdificiosIniciados = m_bRupturasIniciadas = m_bBaseIniciada = m_bArbolesIniciados = 0;
    if (m_Data.m_bLimites != 0 && !OnIniciarLimites()) return 0;
    if (m_Data.m_bEdificios != 0 && !OnIniciarEdificios()) return 0;
    if (m_Data.m_bRupturas != 0 && !OnIniciarRupturas()) return 0;
    if (m_Data.m_bBase != 0 && !OnIniciarBase()) return 0;
    if (m_Data.m_bArboles != 0 && !OnIniciarArboles()) return 0;
    return 1;
}

int CEscenaDEM::OnIniciar() {
    if (!MakeCurrent(nullptr)) return 0;
    BorraLista(m_nListaSuperficie);
    if (HayErrorGL()) return 0;
    if (m_pDEM == nullptr) return 0;
    if (GetQuad() == 3) return 1;
    EnFlotantes(m_Data.m_nColorDesmonte, m_ColorDesmonte);
    EnFlotantes(m_Data.m_nColorTerraplen, m_ColorTerraplen);
    EnFlotantes(m_Data.m_nColorNada, m_ColorNada);
    if (m_pDEM->EsListaCeldas()) return OnIniciarListaCeldas();
    const int resultado = OnIniciarDEMRegular();
    if (m_nListaSuperficie > 0) glEndList();
    return resultado != 0 && !HayErrorGL() ? 1 : 0;
}

int CEscenaDEM::OnIniciarListaCeldas() {
    if (!AbreLista(m_nListaSuperficie)) return 0;
    PreparaColorUnico();
    // Strips have no meaning for loose cells: nothing is drawn then.
    if (GetQuad() == 1 || GetQuad() == 2) {
        glBegin(GetQuad() == 1 ? GL_QUADS : GL_POINTS);
        if (GetQuad() == 1)
            CompilaCeldas();
        else
            CompilaPuntos();
        glEnd();
    }
    const bool bien = !HayErrorGL();
    glEndList();
    return bien && !HayErrorGL() ? 1 : 0;
}

// Without cell shading the whole surface has one colour.
void CEscenaDEM::PreparaColorUnico() const {
    if (m_Data.m_nSombraCeldas != 0) return;
    float color[3];
    EnFlotantes(m_Data.m_nColorDEM, color);
    glColor3f(color[0], color[1], color[2]);
    glDisable(GL_TEXTURE_2D);
}

// GL position of a point of the cell list: of each of its coordinates its place in GL space.
CCoor3D<double> CEscenaDEM::PosicionLista(double x, double y, float h) const {
    const CCoor3D<double>& o = m_Maximas.Minima();
    const Vertiz::CDataSemilla& s = m_pDEM->GetSemilla();
    return {(x - o.x - s.GetX()) * m_dFactor - m_dFactor * m_dRangoX * 0.5,
            (h - o.z - m_dRangoZ * 0.5) * m_dFactor * m_fExageracionVertical,
            -((y - o.y - s.GetY()) * m_dFactor - m_dFactor * m_dRangoY * 0.5), 0};
}

void CEscenaDEM::CompilaCeldas() const {
    const std::vector<CDEM::CPunto>& puntos = m_pDEM->Puntos();
    const double nulo = m_pDEM->GetNulo(), sz = m_pDEM->GetSemilla().GetZ();
    for (const CDEM::CCelda& celda : m_pDEM->Celdas()) {
        const CDEM::CPunto* p[4];
        bool entera = true;
        for (int i = 0; i < 4; ++i) {
            entera = entera && celda.m_nPuntos[i] < puntos.size();
            if (!entera) break;
            p[i] = &puntos[celda.m_nPuntos[i]];
            entera = p[i]->m_fCota > nulo && std::isfinite(p[i]->m_fCota);
        }
        if (!entera) continue;
        const auto x = [&](int i) { return m_pDEM->ListaX()[p[i]->m_nX]; };
        const auto y = [&](int i) { return m_pDEM->ListaY()[p[i]->m_nY]; };
        const auto h = [&](int i) { return static_cast<float>(p[i]->m_fCota - sz); };
        // West and south are those of the first point, north that of the second, east that of the fourth.
        const CCoor3D<double> v[4] = {PosicionLista(x(0), y(1), h(1)), PosicionLista(x(0), y(0), h(0)),
                                      PosicionLista(x(3), y(3), h(0)), PosicionLista(x(3), y(2), h(1))};
        const float alturas[4] = {h(1), h(0), h(0), h(1)};
        CCoor3D<double> normal = (v[0] - v[1]) * (v[3] - v[0]);
        normal.Normaliza();
        glNormal3d(normal.x, normal.y, normal.z);
        for (int i = 0; i < 4; ++i) {
            ColorVertice(alturas[i], i);
            glVertex3d(v[i].x, v[i].y, v[i].z);
        }
    }
}

void CEscenaDEM::CompilaPuntos() const {
    const double nulo = m_pDEM->GetNulo(), sz = m_pDEM->GetSemilla().GetZ();
    const unsigned modo = GetTipoColorMDT();
    for (const CDEM::CPunto& punto : m_pDEM->Puntos()) {
        if (!(punto.m_fCota > nulo) || !std::isfinite(punto.m_fCota)) continue;
        // Here the origin's height is added where the quads take it away: so this form has always been.
        const auto h = static_cast<float>(punto.m_fCota + sz);
        const CCoor3D<double> p = PosicionLista(m_pDEM->ListaX()[punto.m_nX], m_pDEM->ListaY()[punto.m_nY], h);
        if (modo == 2 || modo == 6) ColorVertice(h, 0);
        glVertex3d(p.x, p.y, p.z);
    }
}

// The colour of a vertex by its height or, with cell shading, by its place in the cell.
void CEscenaDEM::ColorVertice(double h, int lugar) const {
    constexpr float kTintes[4][3] = {{0.2F, 0.8F, 1.0F}, {0.6F, 0.7F, 1.0F}, {0.7F, 0.9F, 1.0F}, {0.7F, 0.8F, 1.0F}};
    const unsigned modo = GetTipoColorMDT();
    if (modo == 2) {
        glColorTintaHipsometrica(h, true, -1.0);
    } else if (modo == 6) {
        const float* color = h > 0.0 ? m_ColorTerraplen : h < 0.0 ? m_ColorDesmonte : m_ColorNada;
        glColor3f(color[0], color[1], color[2]);
    } else if (m_Data.m_nSombraCeldas != 0) {
        glColor3f(kTintes[lugar][0], kTintes[lugar][1], kTintes[lugar][2]);
    }
}

int CEscenaDEM::OnIniciarLimites() {
    if (m_pDEM == nullptr) return 0;
    if (!MakeCurrent(nullptr)) return 0;
    const CMaximas<double> extension = m_pDEM->GetMaximasDouble();
    Vertiz::CDibujo<int> contorno(m_pDEM->GetSemilla());
    const Vertiz::CNivelMensajes nivel = m_pDEM->Mensajes(Vertiz::CNivelMensajes(0));
    m_pDEM->DameBase(contorno);
    m_pDEM->Mensajes(nivel);
    return DibujarLimites(contorno, extension);
}

int CEscenaDEM::OnIniciarRupturas() {
    if (m_pDEM == nullptr) return 0;
    return DibujarRupturas(m_pDEM->Rupturas(), m_Maximas);
}

// The grid's own picking comes with its selection; until something can be picked there is no list to build.
int CEscenaDEM::OnIniciarSeleccion() {
    return 1;
}

// ---- Drawing -------------------------------------------------------------------------------------------------------

int CEscenaDEM::OnRender() {
    if (m_bEsReferencia == 0) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        if (HayErrorGL()) return 0;
        glMatrixMode(GL_MODELVIEW);
        if (HayErrorGL()) return 0;
        glLoadIdentity();
        if (HayErrorGL()) return 0;
        m_Camara.Look();
        // A tall view shows the whole model. A child draws in its parent's frame, which is scaled already.
        if (m_dAspecto < 1.0) glScaled(m_dAspecto, m_dAspecto, m_dAspecto);
    }
    const auto grosor = static_cast<GLfloat>(m_Data.m_nGrosorPuntos);
    if (m_nListaSeleccion > 0) {
        glDisable(GL_LINE_SMOOTH);
        glLineWidth(grosor * 3.0F);
        glPointSize(grosor * 3.0F);
        glCallList(m_nListaSeleccion);
    }
    if (m_Data.m_bRupturas != 0 && m_nListaRupturas > 0) glCallList(m_nListaRupturas);
    if (m_Data.m_bLimites != 0 && m_nListaLimites > 0) glCallList(m_nListaLimites);
    if (!SetVariablesVisualizacion()) return 0;
    if (GetQuad() != 3 && m_nListaSuperficie > 0) {
        glLineWidth(grosor);
        glPointSize(grosor);
        glCallList(m_nListaSuperficie);
    }
    if (m_Data.m_bEdificios != 0 && m_nListaEdificios > 0) glCallList(m_nListaEdificios);
    if (m_Data.m_bArboles != 0 && m_nListaArboles > 0) glCallList(m_nListaArboles);
    if (GetQuad() < 2 && m_Data.m_bBase != 0 && m_nListaBase > 0) glCallList(m_nListaBase);
    return m_bEsReferencia != 0 ? 1 : RenderCielo();
}

// ---- The model -----------------------------------------------------------------------------------------------------

bool CEscenaDEM::Proyecta(CCoor3D<double>& p) const {
    return m_pDEM != nullptr && m_pDEM->Proyecta(p, nullptr, false);
}

bool CEscenaDEM::ProyectaVector(CCoor3D<double>& a, CCoor3D<double> b) const {
    if (m_pDEM == nullptr || m_Maximas.EstanVacias(true)) return false;
    if (m_pDEM->EsListaCeldas()) return true;
    const CCoor3D<double>& o = m_Maximas.Minima();
    const auto terreno = [&](const CCoor3D<double>& p) {
        return CCoor3D<double>(p.x / m_dFactor + m_dRangoX * 0.5 + o.x, m_dRangoY * 0.5 - p.z / m_dFactor + o.y,
                               p.y / m_dFactor / m_fExageracionVertical + m_dRangoZ * 0.5 + o.z, 0);
    };
    CCoor3D<double> corte;
    if (!m_pDEM->InterseccionVector(terreno(a), terreno(b), corte)) return false;
    corte -= o;
    a.x = (corte.x - m_dRangoX * 0.5) * m_dFactor;
    a.z = (m_dRangoY * 0.5 - corte.y) * m_dFactor;
    a.y = (corte.z - m_dRangoZ * 0.5) * m_dFactor * m_fExageracionVertical;
    return true;
}

const Vertiz::CDataSemilla& CEscenaDEM::DameSemilla() const {
    static const Vertiz::CDataSemilla kSinModelo;
    return m_pDEM != nullptr ? m_pDEM->GetSemilla() : kSinModelo;
}

bool CEscenaDEM::HaySuavizado() const {
    return m_pDEM != nullptr && m_pDEM->HaySuavizado();
}

bool CEscenaDEM::HayRupturas() const {
    return m_pDEM != nullptr && m_pDEM->Rupturas().Cantidad() > 0;
}

int CEscenaDEM::GetMaximasObjeto(CMaximas<double>& m) const {
    if (m_pDEM == nullptr || m_pDEM->DameCeldas() == 0) return 0;
    m = m_pDEM->GetMaximasDouble();
    return 1;
}

int CEscenaDEM::GetMaximasSeleccion(CMaximas<double>& /*m*/) const {
    return 0;
}

bool CEscenaDEM::HaySeleccion(int bReferencias, int bVinculos) const {
    return CantidadSeleccion(bReferencias, bVinculos) != 0 || !m_SeleccionCeldas.empty();
}

bool CEscenaDEM::DamePuntoSeleccion2(CCoor3D<double>& /*c*/, int /*i*/) {
    return false;
}

// Plan of the matrix, in local coordinates.
CEscenaDEM::Marco CEscenaDEM::DameMarco() const {
    const CMaximas<double>& total = m_pDEM->GetMaximasTotalDouble();
    const Vertiz::CDataSemilla& semilla = m_pDEM->GetSemilla();
    return {total.Minima().x - semilla.GetX(), total.Maxima().y - semilla.GetY(), m_pDEM->GetCeldaX(),
            m_pDEM->GetCeldaY()};
}

int CEscenaDEM::InsertaRupturas(const CString& fichero) {
    if (m_pDEM == nullptr) return 1;
    Vertiz::IPorcentaje* porcentaje = Vertiz::PorcentajeActual();
    if (porcentaje != nullptr) porcentaje->Empieza(kNivelMensajes, kTextoRupturas);
    Vertiz::CDibujo<int> lineas(m_pDEM->GetSemilla());
    int resultado = lineas.Read(fichero, porcentaje);
    const int cantidad = static_cast<int>(lineas.Cantidad());
    for (int i = 0; i < cantidad && resultado == 1; ++i) {
        if (porcentaje != nullptr && porcentaje->Paso(kNivelMensajes, i + 1, cantidad, 0) == 0) {
            resultado = 2;
            break;
        }
        const Vertiz::CEntidadDigi<int>& entidad = *lineas[static_cast<unsigned>(i)];
        if (entidad.EsBorrado() || entidad.EsTexto() || entidad.NPuntos() < 2) continue;
        m_pDEM->InsertaRuptura(Vertiz::CLinea<int>(entidad));
    }
    if (porcentaje != nullptr) porcentaje->Termina(kNivelMensajes, 0);
    m_bRupturasIniciadas = 0;
    return resultado;
}

void CEscenaDEM::BorraRupturas() {
    if (m_pDEM != nullptr) m_pDEM->Rupturas().Clear();
    m_bRupturasIniciadas = 0;
}
