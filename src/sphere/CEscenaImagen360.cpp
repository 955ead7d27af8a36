// The panorama's scene: who owns its image, its texture and its list, and the render pass.

#include "sphere/CEscenaImagen360.h"

#include "frame/ColorGL.h"
#include "frame/ListaGL.h"
#include "frame/PasadaGL.h"
#include "frame/TexturaGL.h"
#include "raster/FilaBGR.h"
#include "sphere/Esfera.h"
#include "sphere/Orientacion.h"

#include <algorithm>
#include <new>
#include <vector>

using Vertiz::CGeoImagen;
using Vertiz::IRaster;

namespace {

constexpr int kTipoEsferica = 8;
constexpr int kDivisiones = 128;

// What of an image is freed with its last scene.
enum class Propiedad { kNada, kSinRaster, kTodo };

std::shared_ptr<CGeoImagen> Toma(CGeoImagen* imagen, Propiedad propiedad) {
    return {imagen, [propiedad](CGeoImagen* i) {
                if (i == nullptr || propiedad == Propiedad::kNada) return;
                if (propiedad == Propiedad::kSinRaster) i->SetRaster(nullptr);
                delete i;
            }};
}

// The picture from its bottom row, as red, green and blue, mirrored: so it reads the right way round from inside.
std::vector<BYTE> Espejo(const IRaster& raster, int columnas, int filas) {
    const std::size_t ancho = 3 * static_cast<std::size_t>(columnas);
    std::vector<BYTE> rgb(ancho * static_cast<std::size_t>(filas));
    Vertiz::FilaBGR fila(raster, columnas);
    for (int i = 0; i < filas; ++i)
        std::ranges::reverse_copy(fila.Lee(i), rgb.begin() + static_cast<std::ptrdiff_t>(ancho) * i);
    return rgb;
}

}  // namespace

CEscenaImagen360::CEscenaImagen360() {
    SetTipo(kTipoEsferica);
}

CEscenaImagen360::CEscenaImagen360(const CGL& otra) : CGL(otra) {
    SetTipo(kTipoEsferica);
}

CEscenaImagen360::CEscenaImagen360(const CGL& otra, CGeoImagen* imagen, int propia) : CEscenaImagen360(otra) {
    m_pImagen = Toma(imagen, propia > 0 ? Propiedad::kTodo : Propiedad::kNada);
}

CEscenaImagen360::CEscenaImagen360(const CGL& otra, IRaster* raster, const Vertiz::CDataImagen& data, int propia)
    : CEscenaImagen360(otra) {
    m_pImagen = Toma(new CGeoImagen(raster, data, Vertiz::CDataSemilla()),
                     propia != 0 ? Propiedad::kTodo : Propiedad::kSinRaster);
}

CEscenaImagen360::CEscenaImagen360(const CEscenaImagen360& otra)
    : CGL(otra), m_nListaEsfera(otra.m_nListaEsfera), m_nTextura(otra.m_nTextura), m_pImagen(otra.m_pImagen) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): EsDeLaFamilia holds of the scene itself too
CEscenaImagen360& CEscenaImagen360::operator=(const CEscenaImagen360& otra) {
    if (EsDeLaFamilia(otra)) return *this;
    CGL::operator=(otra);
    m_nListaEsfera = otra.m_nListaEsfera;
    m_nTextura = otra.m_nTextura;
    m_pImagen = otra.m_pImagen;
    return *this;
}

CGL& CEscenaImagen360::operator=(const CGL& otra) {
    if (const auto* esfera = dynamic_cast<const CEscenaImagen360*>(&otra)) return *this = *esfera;
    CGL::operator=(otra);
    SetTipo(kTipoEsferica);
    return *this;
}

CEscenaImagen360::~CEscenaImagen360() {
    Destruir();
}

void CEscenaImagen360::Destruir() {
    CGL::Destruir();
    m_pImagen.reset();
}

void CEscenaImagen360::OnLiberarContexto(bool bBorrar) {
    if (bBorrar) {
        BorraLista(m_nListaEsfera);
        BorraTextura(m_nTextura);
    }
    m_nListaEsfera = 0;
    m_nTextura = 0;
    CGL::OnLiberarContexto(bBorrar);
}

// ---- Building ------------------------------------------------------------------------------------------------------

int CEscenaImagen360::Iniciar() {
    if (!MakeCurrent(nullptr)) return 0;
    glLineWidth(static_cast<GLfloat>(m_Data.m_nGrosorPuntos));
    glPointSize(static_cast<GLfloat>(m_Data.m_nGrosorPuntos));
    glDisable(GL_LINE_SMOOTH);
    if ((m_Data.m_bMaximasObjeto != 0 || m_bEsReferencia != 0) && !OnIniciar()) return 0;
    if (!OnIniciarEjes() || !OnIniciarSeleccion()) return 0;
    if (m_Data.m_bLimites != 0 && !OnIniciarLimites()) return 0;
    if (m_Data.m_bReferencia != 0 && m_bEsReferencia == 0 && !OnIniciarReferencia(-1)) return 0;
    if (!OnIniciarVinculos()) return 0;
    if (!m_Marcas.empty() && !OnIniciarMarcas()) return 0;
    return wglMakeCurrent(nullptr, nullptr) ? 1 : 0;
}

int CEscenaImagen360::OnIniciar() {
    if (m_pImagen == nullptr || m_pImagen->GetRaster() == nullptr) return 0;
    if (!MakeCurrent(nullptr)) return 0;
    BorraLista(m_nListaEsfera);
    if (HayErrorGL()) return 0;
    BorraTextura(m_nTextura);
    bool conTextura = false;
    if (!CargaTextura(conTextura)) return 0;
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    const bool compilada = CompilaEsfera(conTextura);
    glPopMatrix();
    return compilada && !HayErrorGL() ? 1 : 0;
}

// False on a GL error; bBuena tells whether memory and OpenGL took the picture.
bool CEscenaImagen360::CargaTextura(bool& bBuena) {
    const IRaster& raster = *m_pImagen->GetRaster();
    const int columnas = raster.Ancho100() / raster.Factor100(), filas = raster.Alto100() / raster.Factor100();
    if (columnas < 1 || filas < 1 || !NuevaTextura(m_nTextura)) return false;
    try {
        const std::vector<BYTE> rgb = Espejo(raster, columnas, filas);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, columnas, filas, 0, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
        bBuena = !HayErrorGL();
    } catch (const std::bad_alloc&) {
        bBuena = false;  // memory doesn't take it
    }
    return true;
}

bool CEscenaImagen360::CompilaEsfera(bool conTextura) {
    if (!AbreLista(m_nListaEsfera)) return false;
    glEnable(GL_DEPTH_TEST);
    if (!conTextura) {
        FijaColorGL(m_Data.m_nColorFondo);
        return CierraLista(true);
    }
    glColor3f(255.0F, 255.0F, 255.0F);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, m_nTextura);
    _gluSphere(m_fRadioEsfera, kDivisiones, kDivisiones, GLU_SMOOTH, GLU_INSIDE, GLU_FILL, 1, m_pImagen->m_dPolarInicio,
               m_pImagen->m_dPolarFin);
    glPolygonMode(GL_FRONT_AND_BACK, GetTipoColorMDT() != 0 ? GL_FILL : GL_LINE);
    return CierraLista(true);
}

void CEscenaImagen360::_gluSphere(double radio, int meridianos, int paralelos, int normales, int orientacion,
                                  int estilo, int textura, double inicio, double fin) {
    DibujaEsfera(radio, meridianos, paralelos, normales, orientacion, estilo, textura, inicio, fin);
}

// ---- Drawing -------------------------------------------------------------------------------------------------------

int CEscenaImagen360::OnRender() {
    if (m_bEsReferencia == 0 && !EmpiezaCuadro(m_Camara, m_dAspecto)) return 0;
    if (m_Data.m_bLimites != 0 && m_nListaLimites != 0) glCallList(m_nListaLimites);
    glPointSize(static_cast<GLfloat>(m_Data.m_nGrosorPuntos));
    if (m_nListaEsfera != 0 && m_pImagen != nullptr && !DibujaGirada()) return 0;
    FijaColorFondoGL(m_Data.m_nColorFondo);
    glDisable(GL_TEXTURE_2D);
    return HayErrorGL() ? 0 : 1;
}

bool CEscenaImagen360::DibujaGirada() {
    const std::array<double, 3> r = OrientacionPanorama(*m_pImagen);
    std::ranges::copy(r, m_pImagen->m_Resultados);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glRotated(-90.0, 1.0, 0.0, 0.0);  // from the terrain's axes to GL's
    glRotated(r[0], 1.0, 0.0, 0.0);
    glRotated(r[1], 0.0, 1.0, 0.0);
    glRotated(r[2], 0.0, 0.0, 1.0);
    glCallList(m_nListaEsfera);
    const bool bien = !HayErrorGL();
    glPopMatrix();
    return bien;
}

int CEscenaImagen360::RenderConica() {
    return RenderFondo(*this, m_dAspecto, m_nListaEsfera);
}

// ---- The model -----------------------------------------------------------------------------------------------------

int CEscenaImagen360::GetMaximasObjeto(Vertiz::CMaximas<double>& m) const {
    if (m_pImagen == nullptr) return 0;
    m = m_pImagen->GetMaximasDouble();
    m -= m_pImagen->GetOrigen();
    return 1;
}

int CEscenaImagen360::GetMaximasSeleccion(Vertiz::CMaximas<double>& /*m*/) const {
    return 1;
}

bool CEscenaImagen360::DamePuntoSeleccion2(Vertiz::CCoor3D<double>& /*c*/, int /*i*/) {
    return true;
}

const Vertiz::CDataSemilla& CEscenaImagen360::DameSemilla() const {
    static const Vertiz::CDataSemilla kSinModelo;
    return m_pImagen != nullptr ? m_pImagen->GetSemilla() : kSinModelo;
}

double CEscenaImagen360::Precision() const {
    return DameSemilla().Precision();
}
