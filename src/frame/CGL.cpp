// The life of a scene: building, copying and destroying it, compiling its lists, and the render pass. What ties it to
// OpenGL contexts is in CGLContexto.cpp.

#include "frame/CGL.h"

#include "frame/EntradaPublica.h"
#include "frame/ListaGL.h"
#include "platform/CDC.h"
#include "platform/Hilos.h"

#include <algorithm>

namespace {

using Punto = Vertiz::CCoor3D<double>;

// A conic camera looks down its own axis: the station's angles turn the model, which stands along y.
void GiraCamaraConica(const Punto& angulos) {
    glRotated(90, 1, 0, 0);
    glRotated(angulos.x, 1, 0, 0);
    glRotated(-angulos.y, 0, 1, 0);
    glRotated(angulos.z, 0, 0, 1);
}

}  // namespace

// ---- Building, copying, destroying ---------------------------------------------------------------------------------

CGL::CGL() : m_pDuenos(std::make_shared<char>()) {
    m_nHRCShared = static_cast<unsigned>(Procesadores());
    m_Camara.PositionCamera(Punto(0, 1, 0), Punto(0, 0, 0), Punto(0, 0, -1));
}

CGL::CGL(const CGL& otra) : CGLPropio(otra), m_pDuenos(otra.m_pDuenos), m_pPrestamo(otra.m_pPrestamo) {
    Comparte();
}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): EsDeLaFamilia holds of the scene itself too
CGL& CGL::operator=(const CGL& otra) {
    if (EsDeLaFamilia(otra)) return *this;
    Destruir();
    CGLPropio::operator=(otra);
    m_pDuenos = otra.m_pDuenos;
    m_pPrestamo = otra.m_pPrestamo;
    Comparte();
    return *this;
}

// A new copy counts as one more scene that holds the children, and makes contexts of its own for its workers.
void CGL::Comparte() {
    for (CGL* hijo : Hijos())
        ++hijo->m_nPadres;
    CreaContextosCompartidos();
}

CGL::~CGL() {
    Destruir();
    LiberaPagina();
}

void CGL::Destruir() {
    if (!DejaContexto(true)) Anular();
}

void CGL::Anular() {
    m_hRCImpresion = nullptr;
    m_hDCMemoria = nullptr;
    m_hBitmapImpresion = nullptr;
    m_hRC = nullptr;
    m_pDC = nullptr;
    m_pPalette = nullptr;
    for (CGL* hijo : Hijos())
        --hijo->m_nPadres;
    m_Referencias.clear();
    m_Vinculos.clear();
    m_nTexturaFondo = 0;
    m_nTipoImagenFondo = 0;
    m_nTipo = -1;
    m_pDuenos = std::make_shared<char>();
}

void CGL::BorraTexturaFondo() {
    if (m_nTexturaFondo == 0 || !MakeCurrent(nullptr)) return;
    glDeleteTextures(1, &m_nTexturaFondo);
    m_nTexturaFondo = 0;
    wglMakeCurrent(nullptr, nullptr);
}

void CGL::BorraListas() {
    BorraListasMarcas();
    if (m_bFuentes) BorraFuentes();
    for (GLuint* lista : {&m_nListaLineaNueva, &m_nListaCielo, &m_nListaEjes, &m_nListaCamara,
                          &m_nListaCamaraPanoramica, &m_nListaReserva, &m_nListaLimites, &m_nListaMedidas}) {
        BorraLista(*lista);
    }
}

// ---- Compiling -----------------------------------------------------------------------------------------------------

int CGL::Iniciar() {
    if (!MakeCurrent(nullptr)) return 0;
    if (!LeeMaxTexDim()) return 0;
    const int r = OnIniciar() && OnIniciarReferencia(-1) && OnIniciarVinculos() && OnIniciarEjes() &&
                  OnIniciarCamara() && OnIniciarCamaraPanoramica() && OnIniciarPuntosCamara() && OnIniciarLineaNueva(0);
    if (m_nListaFuentes == 0 && !CreaFuentes()) return 0;
    const int rMarcas = r && (m_Marcas.empty() || OnIniciarMarcas());
    const int rMedidas = rMarcas && (m_Medidas.empty() || OnIniciarMedidas());
    return wglMakeCurrent(nullptr, nullptr) ? rMedidas : 0;
}

int CGL::IniciarSeleccion() {
    if (!MakeCurrent(nullptr)) return 0;
    const int r = OnIniciarSeleccion();
    wglMakeCurrent(nullptr, nullptr);
    return r;
}

int CGL::IniciarHijo(CGL& hijo) const {
    SetVariablesReferencia(&hijo);
    return hijo.Iniciar();
}

int CGL::OnIniciarReferencia(int tipo) {
    return std::ranges::all_of(
        m_Referencias, [&](CGL* hijo) { return (tipo != -1 && hijo->m_nTipo != tipo) || IniciarHijo(*hijo) != 0; });
}

int CGL::OnIniciarVinculos() {
    return std::ranges::all_of(m_Vinculos, [&](CGL* hijo) { return IniciarHijo(*hijo) != 0; });
}

int CGL::IniciarCapa(int (CGL::*capa)(), bool bHijos) {
    const EntradaPublica entrada;
    const auto inicia = [capa](CGL* escena) { return (escena->*capa)() != 0; };
    if (!MakeCurrent(nullptr) || !inicia(this)) return 0;
    if (bHijos) {
        if (m_Data.m_bReferencia && !std::ranges::all_of(m_Referencias, inicia)) return 0;
        if (!std::ranges::all_of(m_Vinculos, inicia)) return 0;
    }
    return entrada.Acaba(1);
}

int CGL::IniciarLimites() {
    return IniciarCapa(&CGL::OnIniciarLimites, m_nTipo == 8);
}

int CGL::IniciarBase() {
    return EsEsferica() ? 1 : IniciarCapa(&CGL::OnIniciarBase, true);
}

int CGL::IniciarArboles() {
    return IniciarCapa(&CGL::OnIniciarArboles, true);
}

int CGL::IniciarEdificios() {
    return IniciarCapa(&CGL::OnIniciarEdificios, true);
}

int CGL::IniciarRupturas() {
    return IniciarCapa(&CGL::OnIniciarRupturas, true);
}

int CGL::IniciarCurvado() {
    return IniciarCapa(&CGL::OnIniciarCurvado, true);
}

// ---- Drawing -------------------------------------------------------------------------------------------------------

int CGL::Resize(int cx, int cy) {
    if (cx < 1 || cy < 1 || !MakeCurrent(nullptr)) return 0;
    const int r = OnResize(cx, cy);
    m_nAncho = cx;
    m_nAlto = cy;
    wglMakeCurrent(nullptr, nullptr);
    return r;
}

int CGL::Render() {
    if (!MakeCurrent(nullptr)) return 0;
    glDisable(GL_COLOR_LOGIC_OP);  // what was drawn in XOR puts back the operation, but leaves it on
    if (!OnRender()) return 0;
    if (m_Data.m_bPuntosCamara) RenderPuntosCamara();

    const auto dibuja = [this](CGL* hijo) { return RenderHijo(*hijo) != 0; };
    if (m_Data.m_bReferencia && !std::ranges::all_of(m_Referencias, dibuja)) return 0;
    if (!std::ranges::all_of(m_Vinculos, dibuja)) return 0;

    if (m_Data.m_nEjes != 0 && m_nTipoImagenFondo == 0 && m_nTipo != 3) OnRenderEjes();
    if (!m_Marcas.empty() && !RenderMarcas()) return 0;
    if (!m_Medidas.empty()) OnRenderMedidas();
    glPointSize(static_cast<GLfloat>(m_Data.m_nGrosorPuntos));

    if (!SwapBuffers(m_pDC->GetSafeHdc())) return 0;
    // After the presentation, since this list draws in XOR on the visible buffer: the sketch lies on the new frame.
    if (m_nListaLineaNueva) glCallList(m_nListaLineaNueva);
    OlvidaErroresGL();
    return wglMakeCurrent(nullptr, nullptr);
}

void CGL::RenderPuntosCamara() const {
    for (unsigned i = 0; i < m_PuntosCamaraGL.NPuntos(); ++i) {
        const Punto& p = m_PuntosCamaraGL.Punto(static_cast<int>(i));
        glPushMatrix();
        glTranslated(p.x, p.y, p.z);
        if (p.GetTipo() == 0) {
            GiraCamaraConica(m_AngulosCamara.Punto(static_cast<int>(i)));  // a station without angles is not turned
            glCallList(m_nListaCamara);
        } else {
            glCallList(m_nListaCamaraPanoramica);
        }
        glPopMatrix();
    }
}

int CGL::RenderHijo(CGL& hijo) const {
    SetVariablesReferencia(&hijo);
    if (!hijo.OnRender()) return 0;
    glFlush();
    return 1;
}

int CGL::RenderMarcas() {
    glDisable(GL_LIGHTING);
    if (HayErrorGL()) return 0;
    glDisable(GL_LIGHT0);
    if (HayErrorGL()) return 0;
    glDisable(GL_TEXTURE_2D);  // the sky leaves it on
    if (HayErrorGL()) return 0;
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    if (HayErrorGL()) return 0;
    if (m_Data.m_bMarcasFoto) OnRenderMarcasFoto();
    if (m_Data.m_bMarcasTerreno) OnRenderMarcasTerreno();
    return 1;
}

int CGL::OutputGlError(const wchar_t*) {
    return HayErrorGL() ? 1 : 0;
}

// ---- What the group holds ------------------------------------------------------------------------------------------

template <class Condicion>
bool CGL::AlgunHijo(Condicion condicion) const {
    return std::ranges::any_of(m_Referencias, condicion) || std::ranges::any_of(m_Vinculos, condicion);
}

template <class Condicion>
bool CGL::Alguna(Condicion condicion) const {
    return condicion(this) || AlgunHijo(condicion);
}

bool CGL::TieneMDT() const {
    return Alguna([](const CGL* e) { return e->EsMDT(); });
}

bool CGL::TieneDEM() const {
    return Alguna([](const CGL* e) { return e->m_nTipo == 1; });
}

bool CGL::TieneTIN() const {
    return Alguna([](const CGL* e) { return e->m_nTipo == 4 || e->m_nTipo == 7; });
}

bool CGL::TieneTIN3D() const {
    return Alguna([](const CGL* e) { return e->m_nTipo == 7; });
}

bool CGL::TieneDibujo() const {
    return Alguna([](const CGL* e) { return e->m_nTipo == 2 || e->m_nTipo == 5 || e->m_nTipo == 6; });
}

bool CGL::TieneCubicacion() const {
    return Alguna([](const CGL* e) { return e->EsCubicacion(); });
}

bool CGL::TienePuntos() const {
    return AlgunHijo([](const CGL* e) { return e->TienePuntos(); });
}

bool CGL::TieneLidar() const {
    return AlgunHijo([](const CGL* e) { return e->TieneLidar(); });
}

bool CGL::TieneLaserTerrestre() const {
    return AlgunHijo([](const CGL* e) { return e->TieneLaserTerrestre(); });
}

bool CGL::TieneSuavizado() const {
    return HaySuavizado() || AlgunHijo([](const CGL* e) { return e->TieneSuavizado(); });
}

bool CGL::TieneRupturas() const {
    return HayRupturas() || AlgunHijo([](const CGL* e) { return e->TieneRupturas(); });
}

bool CGL::HayImagen() const {
    return m_nTipo == 3 || TieneImagen() || AlgunHijo([](const CGL* e) { return e->m_nTipo == 3; });
}
