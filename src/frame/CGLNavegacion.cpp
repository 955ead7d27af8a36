// The user's moves: zoom, pan, turn, fit, and the rubber-band shapes. They change the camera or the projection; the
// host renders afterwards. In perspective a zoom moves the camera; in orthographic and spherical views it multiplies
// the projection, and a spherical view never pans, since its eye is the sphere's centre.
//
// What is found under a pixel is a point of the model. A view narrower than high shows the model smaller: to the camera
// such a point lies at its coordinates times that scale (EscalaVista).

#include "frame/Angulos.h"
#include "frame/CGL.h"
#include "frame/Cuadrica.h"
#include "frame/EsquinasCaja.h"
#include "frame/LapizXor.h"
#include "frame/MatricesGL.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using Vertiz::CCoor3D;
using Vertiz::CMaximas;

namespace {

// The step of a zoom from what was asked for: the speed of the settings stands for 0.
double PasoZoom(double paso, double velocidad) {
    return std::max(0.2, std::abs(paso == 0.0 ? velocidad : paso));
}

// How much a step zooms by, before the factor 1.2; 0 for a step of exactly 1.
double FactorZoom(double paso) {
    const double v = std::abs(std::log10(paso));
    return v == 1.0 ? v : v * 0.5;
}

// The accumulated zoom has always been kept with the 1.2 in single precision.
constexpr double kFactorAcumulado = 1.2F;

}  // namespace

// Multiplies the projection by diag(plano, plano, fondo, 1).
int CGL::EscalaProyeccion(double plano, double fondo) {
    if (!MakeCurrent(nullptr)) return 0;
    glMatrixMode(GL_PROJECTION);
    if (HayErrorGL()) return 0;
    const GLdouble m[16] = {plano, 0, 0, 0, 0, plano, 0, 0, 0, 0, fondo, 0, 0, 0, 0, 1};
    glMultMatrixd(m);
    wglMakeCurrent(nullptr, nullptr);
    return 1;
}

// The scale at which the last frame shows the model.
double CGL::EscalaVista() {
    if (m_dAspecto >= 1.0 || !MakeCurrent(nullptr)) return 1.0;
    GLdouble modelview[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    wglMakeCurrent(nullptr, nullptr);
    return EscalaModelo(modelview);
}

void CGL::OnZoomIn(double paso) {
    const double p = PasoZoom(paso, m_Data.m_fVelocidad);
    if (!EsOrtografica() && !EsEsferica()) {
        m_Camara.MoveCamera(p);
        return;
    }
    const double k = FactorZoom(p);
    if (k != 0.0 && EscalaProyeccion(1.0 / (k * 1.2), 1.0)) m_dZoom /= k * kFactorAcumulado;
}

void CGL::OnZoomOut(double paso) {
    const double p = PasoZoom(paso, m_Data.m_fVelocidad);
    if (!EsOrtografica() && !EsEsferica()) {
        m_Camara.MoveCamera(-p);
        return;
    }
    const double k = FactorZoom(p);
    if (k != 0.0 && EscalaProyeccion(k * 1.2, 1.0)) m_dZoom *= k * kFactorAcumulado;
}

void CGL::OnZoomIn(const CPoint& pt, double paso) {
    OnZoomCentrado(pt);
    OnZoomIn(paso);
}

void CGL::OnZoomOut(const CPoint& pt, double paso) {
    OnZoomCentrado(pt);
    OnZoomOut(paso);
}

CCoor3D<double> CGL::OnZoomCentrado(const CPoint& pt) {
    const CPoint centro(APixel(m_nAncho * 0.5), APixel(m_nAlto * 0.5));
    CCoor3D<double> punto, medio;
    PantallaATerreno(pt, punto, true, false, false);
    PantallaATerreno(centro, medio, true, false, false);
    const CCoor3D<double> d = (medio - punto) * EscalaVista();
    const CCoor3D<double> ojo = m_Camara.Position(), vista = m_Camara.View();
    // The eye of a spherical view stays at the sphere's centre.
    m_Camara.PositionCamera(EsEsferica() ? ojo : ojo - d, vista - d, m_Camara.UpVector());
    return punto;
}

void CGL::OnZoomVentana(int arriba, int abajo, int izquierda, int derecha) {
    if (arriba == abajo || izquierda == derecha) return;
    if (arriba > abajo) std::swap(arriba, abajo);
    if (izquierda > derecha) std::swap(izquierda, derecha);
    const CPoint centro(APixel(izquierda * 0.5 + derecha * 0.5), APixel(arriba * 0.5 + abajo * 0.5));
    const CCoor3D<double> p = OnZoomCentrado(centro);
    const double z = std::min(m_nAncho / (static_cast<double>(derecha) - izquierda),
                              m_nAlto / (static_cast<double>(abajo) - arriba));
    if (z == 0.0) return;
    if (EsOrtografica() || EsEsferica()) {
        if (EscalaProyeccion(z, 1.0)) m_dZoom = z;  // replaced, not multiplied
    } else {
        const double distancia = m_Camara.Position().Distancia(p * EscalaVista(), 1);
        m_Camara.MoveCamera(distancia - distancia / z);
    }
}

void CGL::OnZoomVentana(const CMaximas<double>& m) {
    if (EsEsferica()) {
        ApuntaACaja(m);
        return;
    }
    int izquierda = std::numeric_limits<int>::max(), derecha = std::numeric_limits<int>::min();
    int arriba = izquierda, abajo = derecha;
    for (const CCoor3D<double>& esquina : EsquinasCaja(m)) {
        CPoint pt;
        if (!TerrenoAPantalla(pt, esquina, nullptr, false)) continue;
        izquierda = std::min(izquierda, static_cast<int>(pt.x));
        derecha = std::max(derecha, static_cast<int>(pt.x));
        arriba = std::min(arriba, static_cast<int>(pt.y));
        abajo = std::max(abajo, static_cast<int>(pt.y));
    }
    if (izquierda > derecha) return;  // no corner has a pixel
    if (izquierda == derecha) {
        --izquierda;
        ++derecha;
    }
    if (arriba == abajo) {
        --arriba;
        ++abajo;
    }
    OnZoomVentana(arriba, abajo, izquierda, derecha);
    OnZoomOut(0);
}

// Inside a sphere: looks at the box's centre, and zooms in until the box no longer fits, then one step back.
void CGL::ApuntaACaja(const CMaximas<double>& m) {
    CCoor3D<double> vista;
    TerrenoAGL(m.Centro(true), vista.x, vista.y, vista.z, 1.0, true);
    // A box round the eye lies in no direction.
    if (vista.Distancia(m_Camara.Position(), 1) > 0.0)
        m_Camara.PositionCamera(m_Camara.Position(), vista, m_Camara.UpVector());
    Render();
    GLint viewport[4] = {};
    if (!MakeCurrent(nullptr)) return;
    glGetIntegerv(GL_VIEWPORT, viewport);
    if (HayErrorGL()) return;
    wglMakeCurrent(nullptr, nullptr);
    const auto dentro = [&](const CCoor3D<double>& esquina) {
        CPoint pt;
        return TerrenoAPantalla(pt, esquina, nullptr, false) != 0 && pt.x >= viewport[0] && pt.y >= viewport[1] &&
               pt.x <= viewport[0] + viewport[2] && pt.y <= viewport[1] + viewport[3];
    };
    // A box of one point would fit for ever, and a large step zooms the wrong way.
    bool bCrece = true;
    for (int paso = 0; paso < 100 && bCrece && dentro(m.Minima()) && dentro(m.Maxima()); ++paso) {
        const double zoom = m_dZoom;
        OnZoomIn(0);
        bCrece = m_dZoom > zoom;
    }
    OnZoomOut(0);
}

void CGL::ZoomExtension(const CMaximas<double>& m) {
    m_fEscala = 1.0F;
    CMaximas<double> caja = m;
    if (caja.EstanVacias(true)) {
        caja.Nuevo(CCoor3D<double>(0, 0, 0, 0));
        caja.Nuevo(CCoor3D<double>(2000, 2000, 0, 0));
    }
    if (EstableceMaxMin(caja) != 0 && Iniciar() == 0) return;
    if (m_nAncho == 0 || m_nAlto == 0) return;
    if (!MakeCurrent(nullptr)) return;
    glMatrixMode(GL_MODELVIEW);
    if (HayErrorGL()) return;
    glLoadIdentity();
    if (HayErrorGL()) return;

    const CCoor3D<double> origen(0, 0, 0, 0), vista = m_Camara.View(), ojo = m_Camara.Position();
    if (!EsEsferica())
        m_Camara.PositionCamera(ojo - vista, origen, m_Camara.UpVector());
    else  // where a fit of the scene without its sphere left the target, the direction is kept
        m_Camara.PositionCamera(origen, vista == origen ? vista - ojo : vista, m_Camara.UpVector());
    m_Camara.Look();

    const CCoor3D<double> mitad(m_dRangoX * 0.5 * m_dFactor, m_dRangoZ * 0.5 * m_dFactor * m_fExageracionVertical,
                                m_dRangoY * 0.5 * m_dFactor, 0);
    CMaximas<double> cajaGL;
    cajaGL.Nuevo(mitad);
    cajaGL.Nuevo(mitad * -1.0);
    if (EsOrtografica() ? !AjustaOrto(cajaGL) : !AjustaPerspectiva(cajaGL)) return;
    wglMakeCurrent(nullptr, nullptr);
    m_bMaximasVacias = m.EstanVacias(true);
}

// Scales the projection so that the box fills the window.
bool CGL::AjustaOrto(const CMaximas<double>& cajaGL) {
    MatricesGL matrices;
    if (!matrices.Lee()) return false;
    CMaximas<double> ventana;
    for (const CCoor3D<double>& esquina : EsquinasCaja(cajaGL)) {
        CCoor3D<double> pixel;
        if (matrices.Proyecta(esquina, pixel)) ventana.Nuevo(pixel);
    }
    const double ancho = ventana.Maxima().x - ventana.Minima().x, alto = ventana.Maxima().y - ventana.Minima().y;
    const double zoom = std::min(m_nAncho / ancho, m_nAlto / alto);
    // A box seen edge on both ways has no size to fit.
    if (!std::isfinite(zoom) || zoom <= 0.0) return true;
    m_dZoom = zoom;
    glMatrixMode(GL_PROJECTION);
    const GLdouble escala[16] = {zoom, 0, 0, 0, 0, zoom, 0, 0, 0, 0, zoom, 0, 0, 0, 0, 1};
    glMultMatrixd(escala);
    return true;
}

// Moves the eye along the view until the whole box is seen.
bool CGL::AjustaPerspectiva(const CMaximas<double>& cajaGL) {
    if (EsEsferica()) return true;  // the eye stays
    double radio = 0;
    const CCoor3D<double> vista = m_Camara.View();
    for (const CCoor3D<double>& esquina : EsquinasCaja(cajaGL))
        radio = std::max(radio, vista.Distancia(esquina, 1));
    // The whole angle, not half of it: the model keeps some margin.
    const double distancia = 2.0 * radio / std::tan(ARadianes(m_fAnguloVista));
    const CCoor3D<double> e = m_Camara.Position() - vista;
    const CCoor3D<double> ojo = e * distancia;
    m_Camara.PositionCamera(ojo, ojo - e, m_Camara.UpVector());
    m_Camara.Look();
    return true;
}

void CGL::OnZoomExtension() {
    CMaximas<double> m;
    GetMaximas(m);
    ZoomExtension(m);
}

void CGL::OnZoomExtensionObjeto() {
    CMaximas<double> m;
    if (GetMaximasObjeto(m) != 0) ZoomExtension(m);
}

void CGL::OnZoomExtensionReferencia() {
    CMaximas<double> m;
    if (GetMaximasReferencia(m, -1) != 0) ZoomExtension(m);
}

void CGL::OnZoomExtensionSeleccion() {
    CMaximas<double> m;
    if (GetMaximasSeleccion(m) != 0) ZoomExtension(m);
}

void CGL::SetZoom(double zoom) {
    if (!EsOrtografica() || zoom == 0.0 || !std::isfinite(zoom)) return;  // there would be no way back
    if (EscalaProyeccion(zoom / m_dZoom, 1.0)) m_dZoom = zoom;
}

void CGL::SetAnguloX(double grados, int bVista) {
    SumaAnguloX(grados - GetAnguloX(), bVista, nullptr);
}

void CGL::SetAnguloY(double grados, int bVista) {
    SumaAnguloY(grados - GetAnguloY(), bVista, nullptr);
}

void CGL::SetAnguloZ(double grados, int bVista) {
    SumaAnguloZ(grados - GetAnguloZ(), bVista, nullptr);
}

void CGL::SumaAnguloX(double grados, int bVista, CCoor3D<double>* pivote) {
    GiraVista(grados, (m_Camara.View() - m_Camara.Position()) * m_Camara.UpVector(), bVista, pivote);
}

void CGL::SumaAnguloY(double grados, int bVista, CCoor3D<double>* pivote) {
    GiraVista(grados, m_Camara.View() - m_Camara.Position(), bVista, pivote);
}

void CGL::SumaAnguloZ(double grados, int bVista, CCoor3D<double>* pivote) {
    GiraVista(grados, m_Camara.UpVector(), bVista, pivote);
}

// Turns the view through the modelview matrix that the last frame left, so that the result is what the user sees turn,
// and reads the camera back. The pivot is brought back to where it was.
void CGL::GiraVista(double grados, CCoor3D<double> eje, int bVista, const CCoor3D<double>* pivote) {
    if (EsEsferica()) {
        pivote = nullptr;
        bVista = 0;
    }
    const auto fijo = [&] { return bVista != 0 ? m_Camara.View() : m_Camara.Position(); };
    CPoint pixel;
    double z = 0;
    if (pivote != nullptr && TerrenoAPantalla(pixel, *pivote, &z, true) == 0) pivote = nullptr;
    const CCoor3D<double> antes = pivote != nullptr ? *pivote : fijo();
    eje.Normaliza();
    if (!MakeCurrent(nullptr)) return;
    glMatrixMode(GL_MODELVIEW);
    if (HayErrorGL()) return;
    glRotated(-grados, eje.x, eje.y, eje.z);
    CalculaCamaraDesdeMatrices();
    CCoor3D<double> despues = fijo();
    if (pivote != nullptr && PantallaATerreno(pixel, despues, true, false, false) == 0) despues = antes;
    if (!MakeCurrent(nullptr)) return;
    glMatrixMode(GL_MODELVIEW);
    if (HayErrorGL()) return;
    CCoor3D<double> d = despues - antes;
    if (pivote == nullptr) {
        GLdouble modelview[16];
        glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
        d = d / EscalaModelo(modelview);
    }
    glTranslated(d.x, d.y, d.z);
    CalculaCamaraDesdeMatrices();
    wglMakeCurrent(nullptr, nullptr);
}

void CGL::AumentaAnguloX(int bVista, CCoor3D<double>* pivote) {
    SumaAnguloX(m_Data.m_nPasoAngulo, bVista, pivote);
}

void CGL::AumentaAnguloY(int bVista, CCoor3D<double>* pivote) {
    SumaAnguloY(m_Data.m_nPasoAngulo, bVista, pivote);
}

void CGL::AumentaAnguloZ(int bVista, CCoor3D<double>* pivote) {
    SumaAnguloZ(m_Data.m_nPasoAngulo, bVista, pivote);
}

void CGL::ReduceAnguloX(int bVista, CCoor3D<double>* pivote) {
    SumaAnguloX(-m_Data.m_nPasoAngulo, bVista, pivote);
}

void CGL::ReduceAnguloY(int bVista, CCoor3D<double>* pivote) {
    SumaAnguloY(-m_Data.m_nPasoAngulo, bVista, pivote);
}

void CGL::ReduceAnguloZ(int bVista, CCoor3D<double>* pivote) {
    SumaAnguloZ(-m_Data.m_nPasoAngulo, bVista, pivote);
}

void CGL::AumentaXTrans() {
    DesplazaX(1);
}

void CGL::ReduceXTrans() {
    DesplazaX(-1);
}

void CGL::AumentaZTrans() {
    DesplazaZ(1);
}

void CGL::ReduceZTrans() {
    DesplazaZ(-1);
}

// How far the model moves when what is at the window's middle goes (dx, dy) pixels away, in GL units.
CGL::Paso CGL::MidePaso(int dx, int dy, CCoor3D<double>& d) {
    if (!MakeCurrent(nullptr)) return Paso::SinContexto;
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    if (HayErrorGL()) return Paso::SinContexto;
    wglMakeCurrent(nullptr, nullptr);
    const CPoint centro(viewport[2] / 2, viewport[3] / 2);
    CCoor3D<double> a, b;
    const int ra = PantallaATerreno(centro, a, true, false, false);
    const int rb = PantallaATerreno(CPoint(centro.x + dx, centro.y + dy), b, true, false, false);
    if (ra == 0 || rb == 0) return Paso::SinPunto;
    d = (b - a) * EscalaVista();
    return Paso::Hallado;
}

void CGL::DesplazaX(int sentido) {
    const int pixeles = sentido * m_Data.m_nPasoTrans;
    CCoor3D<double> d;
    const Paso paso = MidePaso(pixeles, 0, d);
    if (paso == Paso::Hallado) SumaTrans(d);
    if (paso == Paso::SinPunto) SumaXTrans(pixeles * m_dFactorPantalla);
}

void CGL::DesplazaZ(int sentido) {
    const int pixeles = sentido * m_Data.m_nPasoTrans;
    CCoor3D<double> d;
    const Paso paso = MidePaso(0, -pixeles, d);
    if (paso == Paso::Hallado) SumaTrans(d);
    if (paso == Paso::SinPunto) SumaZTrans(pixeles * m_dFactorPantalla + m_Camara.View().z);
}

void CGL::CompruebaCotaCamara() {
    if (EsEsferica()) return;
    if (!MakeCurrent(nullptr)) return;
    MatricesGL matrices;
    if (!matrices.Lee()) return;
    const double escala = EscalaModelo(matrices.modelview);
    CCoor3D<double> ventana, c;
    if (!matrices.Proyecta(m_Camara.View() / escala, ventana)) return;
    wglMakeCurrent(nullptr, nullptr);
    const CPoint pt(Trunca(ventana.x), matrices.viewport[3] - Trunca(ventana.y));
    if (PantallaATerreno(pt, c, true, false, false) != 0)
        m_Camara.PositionCamera(m_Camara.Position(), c * escala, m_Camara.UpVector());
}

// Runs traza(matrices, z) with a wide yellow pen in XOR on the front buffer; z is the window depth to draw at, just
// before the far plane.
template <class Traza>
bool CGL::DibujaXor(Traza traza) {
    if (!MakeCurrent(nullptr)) return false;
    glLineWidth(3.0F);
    const LapizXor lapiz;
    MatricesGL matrices;
    if (!matrices.Lee() || !lapiz.Activa()) return false;
    glColor3f(1.0F, 1.0F, 0.0F);
    traza(matrices, 1.0F - m_fPlanoCerca);
    return true;
}

void CGL::DrawZoomRect(int arriba, int abajo, int izquierda, int derecha) {
    const bool bDibujado = DibujaXor([&](const MatricesGL& matrices, float z) {
        const int esquinas[4][2] = {{izquierda, arriba}, {derecha, arriba}, {derecha, abajo}, {izquierda, abajo}};
        glBegin(GL_LINE_LOOP);
        for (const auto& [x, y] : esquinas) {
            CCoor3D<double> p;
            if (matrices.Desproyecta(x, m_nAlto - y, z, p)) glVertex3d(p.x, p.y, p.z);
        }
        glEnd();
    });
    if (bDibujado) wglMakeCurrent(nullptr, nullptr);
}

void CGL::DrawSelCircle(int x0, int y0, int x1, int y1) {
    const bool bDibujado = DibujaXor([&](const MatricesGL& matrices, float z) {
        const int alto = matrices.viewport[3];
        CCoor3D<double> centro, borde;
        if (!matrices.Desproyecta(x0, alto - y0, z, centro) || !matrices.Desproyecta(x1, alto - y1, z, borde)) return;
        const double radio = centro.Distancia(borde, 1);
        glMatrixMode(GL_MODELVIEW);  // a zoom leaves the projection's
        glPushMatrix();
        glTranslated(centro.x, centro.y, centro.z);
        glRotated(90.0, 1.0, 0.0, 0.0);
        const Cuadrica cuadrica(GLU_LINE, GLU_NONE);
        gluDisk(cuadrica, radio, radio, 20, 1);
        glPopMatrix();
    });
    if (bDibujado) wglMakeCurrent(nullptr, nullptr);
}
