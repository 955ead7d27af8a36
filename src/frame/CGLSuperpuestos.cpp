// What is drawn round a scene's model: axes, camera models, light and material, and the colour of a height. The sky is
// in CGLCielo.cpp, marks and measures in CGLMarcas.cpp.

#include "frame/CGL.h"
#include "frame/CTintaAlturas.h"
#include "frame/ColorGL.h"
#include "frame/Cuadrica.h"
#include "frame/ListaGL.h"
#include "frame/MaterialGL.h"
#include "frame/MatricesGL.h"

#include <algorithm>
#include <cmath>

using Vertiz::CCoor3D;

namespace {

constexpr GLfloat kLargoEje = 0.21F, kBaseFlecha = 0.2F;

// One axis: its line, and its arrow where the caller's transformation puts it.
template <class Coloca>
void CompilaEje(GLfloat x, GLfloat y, GLfloat z, Coloca coloca) {
    glColor3f(x, y, z);
    glBegin(GL_LINE_STRIP);
    glVertex3f(0.0F, 0.0F, 0.0F);
    glVertex3f(x * kLargoEje, y * kLargoEje, z * kLargoEje);
    glEnd();
    glPushMatrix();
    coloca();
    Cuadrica cono(GLU_FILL, GLU_SMOOTH);
    gluCylinder(cono, 0.025, 0.0, 0.05, 10, 10);
    glPopMatrix();
}

// The body of a camera model. Its normals don't all point away from their faces: so the models have always been lit.
void CompilaCuerpoCamara(double s) {
    const double a = s * 0.25, b = 2.0 * s / 3.0;
    const struct {
        GLfloat nx, ny, nz;
        double vertices[4][3];
    } caras[] = {
        {0, 0, 1, {{s, b, -a}, {-s, b, -a}, {-s, b, a}, {s, b, a}}},
        {0, 0, -1, {{s, -b, a}, {-s, -b, a}, {-s, -b, -a}, {s, -b, -a}}},
        {1, 0, 0, {{s, b, a}, {-s, b, a}, {-s, -b, a}, {s, -b, a}}},
        {-1, 0, 0, {{s, -b, -a}, {-s, -b, -a}, {-s, b, -a}, {s, b, -a}}},
        {0, -1, 0, {{-s, b, a}, {-s, b, -a}, {-s, -b, -a}, {-s, -b, a}}},
        {0, 1, 0, {{s, b, -a}, {s, b, a}, {s, -b, a}, {s, -b, -a}}},
    };
    glBegin(GL_QUADS);
    for (const auto& cara : caras) {
        glNormal3f(cara.nx, cara.ny, cara.nz);
        for (const auto& v : cara.vertices)
            glVertex3d(v[0], v[1], v[2]);
    }
    glEnd();
}

void CompilaObjetivo(double s) {
    const double r = s / 3.0;
    glPushMatrix();
    glTranslated(0.0, 0.0, s * 0.25);
    glColor3f(0.0F, 0.0F, 1.0F);
    Cuadrica tubo(GLU_FILL, GLU_SMOOTH);
    gluCylinder(tubo, r, r, r, 10, 10);
    glTranslated(0.0, 0.0, r);
    Cuadrica lente(GLU_FILL, GLU_SMOOTH);
    gluDisk(lente, 0.0, r, 10, 10);
    glPopMatrix();
}

bool FijaLuz(GLenum luz, GLenum parametro, float x, float y, float z, float w) {
    const GLfloat valores[4] = {x, y, z, w};
    glLightfv(luz, parametro, valores);
    return !HayErrorGL();
}

bool FijaMaterial(GLenum parametro, float v) {
    const GLfloat valores[4] = {v, v, v, 0.0F};
    glMaterialfv(GL_FRONT_AND_BACK, parametro, valores);
    return !HayErrorGL();
}

// The icons' own space begins and ends with identity matrices.
void ApilaIdentidad(GLenum modo) {
    glMatrixMode(modo);
    glPushMatrix();
    glLoadIdentity();
}

void Desapila(GLenum modo) {
    glMatrixMode(modo);
    glPopMatrix();
}

}  // namespace

// Ends every list that has changed the polygon mode.
void CGL::RestauraModo() const {
    glPolygonMode(GL_FRONT_AND_BACK, GetTipoColorMDT() != 0 ? GL_FILL : GL_LINE);
}

int CGL::OnIniciarEjes() {
    if (m_bEsReferencia != 0) return 1;
    // A child's Iniciar may have let the context go.
    if (!MakeCurrent(nullptr)) return 0;
    if (!AbreLista(m_nListaEjes)) return 0;
    glDisable(GL_TEXTURE_2D);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    if (!MaterialNulo()) return 0;
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glLineWidth(5.0F);
    glDisable(GL_LINE_STIPPLE);
    CompilaEje(1.0F, 0.0F, 0.0F, [] {
        glTranslatef(kBaseFlecha, 0.0F, 0.0F);
        glRotatef(90.0F, 0.0F, 1.0F, 0.0F);
    });
    CompilaEje(0.0F, 1.0F, 0.0F, [] {
        glTranslatef(0.0F, kBaseFlecha, 0.0F);
        glRotatef(-90.0F, 1.0F, 0.0F, 0.0F);
    });
    CompilaEje(0.0F, 0.0F, 1.0F, [] { glTranslatef(0.0F, 0.0F, kBaseFlecha); });
    RestauraModo();
    glEndList();
    return HayErrorGL() ? 0 : 1;
}

int CGL::OnIniciarCamara() {
    if (m_bEsReferencia != 0) return 1;
    if (!MakeCurrent(nullptr)) return 0;
    if (!AbreLista(m_nListaCamara)) return 0;
    const double s = m_fSizeCamara * m_dFactor;
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glColor3f(1.0F, 0.0F, 0.0F);
    glDisable(GL_TEXTURE_2D);
    CompilaCuerpoCamara(s);
    CompilaObjetivo(s);
    RestauraModo();
    glEndList();
    return HayErrorGL() ? 0 : 1;
}

int CGL::OnIniciarCamaraPanoramica() {
    if (m_bEsReferencia != 0) return 1;
    if (!MakeCurrent(nullptr)) return 0;
    if (!AbreLista(m_nListaCamaraPanoramica)) return 0;
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glDisable(GL_TEXTURE_2D);
    glPushMatrix();
    glTranslatef(0.0F, 0.0F, 0.0F);
    glColor3f(0.0F, 0.0F, 1.0F);
    Cuadrica esfera(GLU_FILL, GLU_SMOOTH);
    gluSphere(esfera, m_fSizeCamara * m_dFactor, 10, 10);
    glPopMatrix();
    RestauraModo();
    glEndList();
    return HayErrorGL() ? 0 : 1;
}

int CGL::OnIniciarPuntosCamara() {
    if (!MakeCurrent(nullptr)) return 0;
    m_PuntosCamaraGL.Clear();
    for (unsigned i = 0; i < m_PuntosCamara.NPuntos(); ++i) {
        const CCoor3D<double>& p = m_PuntosCamara.Punto(static_cast<int>(i));
        double x = 0, y = 0, z = 0;
        // One point for each station whatever happens, so that the angles keep their index.
        TerrenoAGL(p, x, y, z, 1.0, false);
        m_PuntosCamaraGL << CCoor3D<double>(x, y, z, p.GetTipoCompleto());
    }
    return 1;
}

// The projection of the icons' own space, where they keep their size and turn with the camera, and their place in the
// corner or in the middle of the view.
bool CGL::SituaIcono(double fondo, double z) const {
    const double a = m_dAspecto;
    if (EsOrtografica()) {
        glOrtho(-a, a, -1.0, 1.0, -fondo, fondo);
    } else {
        // The height is scaled by the sign of the aspect, not by its inverse.
        const double signo = std::abs(a) <= 1e-7 ? 0.0 : std::copysign(1.0, a);
        glScaled(1.0 / a, signo, -1.0 / a);
    }
    if (GetEjes() == 1) {
        MatricesGL matrices;
        CCoor3D<double> esquina;
        if (!matrices.Lee() || !matrices.Desproyecta(0.0, 0.0, 0.0, esquina)) return false;
        glTranslated(esquina.x + 0.25, esquina.y + 0.25, z);
    }
    glRotated(GetAnguloY(), 0.0, 1.0, 0.0);
    glRotated(-GetAnguloZ(), 0.0, 0.0, 1.0);
    glRotated(-GetAnguloX(), 1.0, 0.0, 0.0);
    return true;
}

// Matrices and lights are put back after a failure too, since the frame goes on without the axes.
int CGL::OnRenderEjes() {
    ApilaIdentidad(GL_MODELVIEW);
    ApilaIdentidad(GL_TEXTURE);
    glDisable(GL_LIGHT0);
    glEnable(GL_LIGHT1);
    ApilaIdentidad(GL_PROJECTION);
    const bool situado = SituaIcono(2.0 * m_fPlanoFondo, m_fPlanoFondo * 1.5);
    if (situado) {
        glMatrixMode(GL_MODELVIEW);
        if (m_nListaEjes != 0) glCallList(m_nListaEjes);
    }
    Desapila(GL_TEXTURE);
    glDisable(GL_LIGHT1);
    glEnable(GL_LIGHT0);
    Desapila(GL_PROJECTION);
    Desapila(GL_MODELVIEW);
    return situado ? 1 : 0;
}

int CGL::OnRenderCamara() {
    ApilaIdentidad(GL_MODELVIEW);
    ApilaIdentidad(GL_TEXTURE);
    ApilaIdentidad(GL_PROJECTION);
    const bool situado = SituaIcono(m_fPlanoFondo, 0.75) && SetMaterial() != 0 && SetLight() != 0;
    if (situado) {
        if (GetLuz() != 0) {
            glEnable(GL_LIGHTING);
            glEnable(GL_LIGHT0);
        }
        glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
        glMatrixMode(GL_MODELVIEW);
        if (m_nListaCamara != 0) glCallList(m_nListaCamara);
    }
    Desapila(GL_TEXTURE);
    Desapila(GL_PROJECTION);
    Desapila(GL_MODELVIEW);
    return situado ? 1 : 0;
}

int CGL::SetLight() {
    const int* p = m_Data.m_nLuzParam;
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    if (HayErrorGL()) return 0;
    const float x = (50 - p[0]) / 10.0F, y = (50 - p[2]) / 10.0F, z = (p[1] - 50) / 10.0F;
    const auto cuatro = [](GLenum luz, GLenum parametro, float v) { return FijaLuz(luz, parametro, v, v, v, v); };
    const bool bien = FijaLuz(GL_LIGHT0, GL_POSITION, x, y, z, 1.0F) &&
                      FijaLuz(GL_LIGHT1, GL_POSITION, x, y, z, 1.0F) &&
                      cuatro(GL_LIGHT0, GL_AMBIENT, (p[3] - 50) / 50.0F) && cuatro(GL_LIGHT1, GL_AMBIENT, 0.5F) &&
                      cuatro(GL_LIGHT0, GL_DIFFUSE, (p[4] - 50) / 50.0F) && cuatro(GL_LIGHT1, GL_DIFFUSE, 1.0F) &&
                      cuatro(GL_LIGHT0, GL_SPECULAR, (p[5] - 50) / 50.0F) && cuatro(GL_LIGHT1, GL_SPECULAR, 1.0F);
    return bien ? 1 : 0;
}

int CGL::SetMaterial() {
    const int* p = m_Data.m_nLuzParam;
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    if (HayErrorGL()) return 0;
    if (!FijaMaterial(GL_AMBIENT, (p[6] - 50) / 50.0F) || !FijaMaterial(GL_DIFFUSE, (p[7] - 50) / 50.0F) ||
        !FijaMaterial(GL_SPECULAR, (p[8] - 50) / 50.0F))
        return 0;
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, static_cast<GLfloat>(p[9]) * 5.0F / 100.0F);
    if (HayErrorGL()) return 0;
    return FijaMaterial(GL_EMISSION, static_cast<float>(p[10]) / 100.0F) ? 1 : 0;
}

int CGL::SetBkColor() {
    if (!MakeCurrent(nullptr)) return 0;
    FijaColorFondoGL(m_Data.m_nColorFondo);
    if (HayErrorGL()) return 0;
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (HayErrorGL()) return 0;
    return wglMakeCurrent(nullptr, nullptr) ? 1 : 0;
}

void CGL::glColorTintaHipsometrica(double z, bool bInterpolar, double sombra) const {
    const std::array<float, 3> color = CTintaAlturas(m_Data.m_GamaColor.Paradas())(z, bInterpolar, sombra);
    glColor3f(color[0], color[1], color[2]);
}
