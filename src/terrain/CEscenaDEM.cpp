// The grid's scene: its life, the order in which its lists are built, the surface of a cell list, the render pass, and
// the way from points and rays to the surface. The mesh of a matrix is in CEscenaDEMMalla.cpp, walls and floor in
// CEscenaDEMBase.cpp, images in CEscenaDEMTexturas.cpp, trees in CEscenaDEMArboles.cpp, picking in
// CEscenaDEMSeleccion.cpp, what is read and written of single samples in CEscenaDEMEdicion.cpp.

#include "terrain/CEscenaDEM.h"

#include "frame/CTintaAlturas.h"
#include "frame/ColorGL.h"
#include "frame/ListaGL.h"
#include "frame/PasadaGL.h"
#include "model/IPorcentaje.h"

#include <algorithm>
#include <cmath>

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

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): EsDeLaFamilia holds of the scene itself too
CEscenaDEM& CEscenaDEM::operator=(const CEscenaDEM& otra) {
    if (EsDeLaFamilia(otra)) return *this;
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
    while (m_bEsReferencia == 0 && !m_Texturas.empty())
        DescargarImagen(0, 1, 1, 1);
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
    if (m_Data.m_bReferencia != 0 && m_bEsReferencia == 0 && !OnIniciarReferencia(-1)) return 0;
    if (!OnIniciarVinculos() || !OnIniciarCamara() || !OnIniciarPuntosCamara()) return 0;
    if (m_bEsReferencia == 0) {
        if (!OnIniciarCielo()) return 0;
        if (!m_Marcas.empty() && !OnIniciarMarcas()) return 0;
    }
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
    m_ColorDesmonte = ColorGL(m_Data.m_nColorDesmonte);
    m_ColorTerraplen = ColorGL(m_Data.m_nColorTerraplen);
    m_ColorNada = ColorGL(m_Data.m_nColorNada);
    return m_pDEM->EsListaCeldas() ? OnIniciarListaCeldas() : OnIniciarDEMRegular();
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
    return CierraLista(!HayErrorGL());
}

// Without cell shading the whole surface has one colour.
void CEscenaDEM::PreparaColorUnico() const {
    if (m_Data.m_nSombraCeldas != 0) return;
    const Color color = ColorGL(m_Data.m_nColorDEM);
    glColor3f(color[0], color[1], color[2]);
    glDisable(GL_TEXTURE_2D);
}

bool CEscenaDEM::EsPuntoVisible(const CDEM::CPunto& punto) const {
    return punto.m_fCota > m_pDEM->GetNulo() && std::isfinite(punto.m_fCota) && punto.m_nX < m_pDEM->ListaX().size() &&
           punto.m_nY < m_pDEM->ListaY().size();
}

// GL position of a point of the cell list: absolute x and y, and a height that the caller has settled.
CCoor3D<double> CEscenaDEM::PosicionLista(double x, double y, float h) const {
    const CCoor3D<double>& o = m_Maximas.Minima();
    const Vertiz::CDataSemilla& s = m_pDEM->GetSemilla();
    return {(x - o.x - s.GetX()) * m_dFactor - m_dFactor * m_dRangoX * 0.5,
            (h - o.z - m_dRangoZ * 0.5) * m_dFactor * m_fExageracionVertical,
            -((y - o.y - s.GetY()) * m_dFactor - m_dFactor * m_dRangoY * 0.5), 0};
}

// @return false for a cell with a void corner, or with one that isn't there
bool CEscenaDEM::ColocaCelda(const CDEM::CCelda& celda, CeldaGL& enGL) const {
    constexpr int kOrden[4] = {1, 0, 3, 2};
    const std::vector<CDEM::CPunto>& puntos = m_pDEM->Puntos();
    const auto visible = [&](std::uint32_t i) { return i < puntos.size() && EsPuntoVisible(puntos[i]); };
    if (!std::ranges::all_of(celda.m_nPuntos, visible)) return false;
    const double sz = m_pDEM->GetSemilla().GetZ();
    const auto punto = [&](int i) -> const CDEM::CPunto& { return puntos[celda.m_nPuntos[i]]; };
    const double oeste = m_pDEM->ListaX()[punto(0).m_nX], este = m_pDEM->ListaX()[punto(3).m_nX];
    const double sur = m_pDEM->ListaY()[punto(0).m_nY], norte = m_pDEM->ListaY()[punto(1).m_nY];
    for (std::size_t i = 0; i < 4; ++i) {
        enGL.h[i] = static_cast<float>(punto(kOrden[i]).m_fCota - sz);
        enGL.v[i] = PosicionLista(i < 2 ? oeste : este, i == 0 || i == 3 ? norte : sur, enGL.h[i]);
    }
    return true;
}

// @return false for a void
bool CEscenaDEM::ColocaPunto(const CDEM::CPunto& punto, CCoor3D<double>& gl, float& h) const {
    if (!EsPuntoVisible(punto)) return false;
    // Here the origin's height is added where the quads take it away: so this form has always been.
    h = static_cast<float>(punto.m_fCota + m_pDEM->GetSemilla().GetZ());
    gl = PosicionLista(m_pDEM->ListaX()[punto.m_nX], m_pDEM->ListaY()[punto.m_nY], h);
    return true;
}

void CEscenaDEM::CompilaCeldas() const {
    const bool porAltura = ColorPorAltura();
    CTintaAlturas tinta(m_Data.m_GamaColor.Paradas());
    for (const CDEM::CCelda& celda : m_pDEM->Celdas()) {
        CeldaGL c;
        if (!ColocaCelda(celda, c)) continue;
        CCoor3D<double> normal = (c.v[0] - c.v[1]) * (c.v[3] - c.v[0]);
        normal.Normaliza();
        glNormal3d(normal.x, normal.y, normal.z);
        for (int i = 0; i < 4; ++i) {
            const auto lugar = static_cast<std::size_t>(i);
            if (porAltura || m_Data.m_nSombraCeldas != 0) {
                const Color color = porAltura ? ColorAltura(c.h[lugar], tinta) : Tinte(i);
                glColor3f(color[0], color[1], color[2]);
            }
            glVertex3d(c.v[lugar].x, c.v[lugar].y, c.v[lugar].z);
        }
    }
}

void CEscenaDEM::CompilaPuntos() const {
    const bool porAltura = ColorPorAltura();
    CTintaAlturas tinta(m_Data.m_GamaColor.Paradas());
    for (const CDEM::CPunto& punto : m_pDEM->Puntos()) {
        CCoor3D<double> p;
        float h = 0.0F;
        if (!ColocaPunto(punto, p, h)) continue;
        if (porAltura) {
            const Color color = ColorAltura(h, tinta);
            glColor3f(color[0], color[1], color[2]);
        }
        glVertex3d(p.x, p.y, p.z);
    }
}

// The colour of a height: by the ramp, or by cut and fill.
CEscenaDEM::Color CEscenaDEM::ColorAltura(double h, CTintaAlturas& tinta) const {
    return GetTipoColorMDT() == 2 ? tinta(h, true, -1.0) : ColorDesnivel(h);
}

const CEscenaDEM::Color& CEscenaDEM::ColorDesnivel(double h) const {
    if (h > 0.0) return m_ColorTerraplen;
    return h < 0.0 ? m_ColorDesmonte : m_ColorNada;
}

// Cell shading: the tint of a vertex by its place in the cell.
const CEscenaDEM::Color& CEscenaDEM::Tinte(int lugar) {
    static constexpr Color kTintes[4] = {
        {0.2F, 0.8F, 1.0F}, {0.6F, 0.7F, 1.0F}, {0.7F, 0.9F, 1.0F}, {0.7F, 0.8F, 1.0F}};
    return kTintes[lugar];
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

// ---- Drawing -------------------------------------------------------------------------------------------------------

int CEscenaDEM::OnRender() {
    if (m_bEsReferencia == 0 && !EmpiezaCuadro(m_Camara, m_dAspecto)) return 0;
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
    CCoor3D<double> corte;
    if (!m_pDEM->InterseccionVector(CajaATerreno(a.x, a.y, a.z), CajaATerreno(b.x, b.y, b.z), corte)) return false;
    CajaAGL(corte.x, corte.y, corte.z, a.x, a.y, a.z);
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
