// The beginning of a frame, and backgrounds.

#include "frame/PasadaGL.h"

int EmpiezaCuadro(const CCamera& camara, double aspecto) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (HayErrorGL()) return 0;
    glMatrixMode(GL_MODELVIEW);
    if (HayErrorGL()) return 0;
    glLoadIdentity();
    if (HayErrorGL()) return 0;
    camara.Look();
    if (aspecto < 1.0) glScaled(aspecto, aspecto, aspecto);
    return 1;
}

int RenderFondo(const CGLVista& vista, double aspecto, GLuint lista) {
    for (const GLenum modo : {GL_MODELVIEW, GL_PROJECTION}) {
        glMatrixMode(modo);
        glPushMatrix();
        glLoadIdentity();
    }
    if (vista.GetOrtogonal() != 0) {
        GLint viewport[4] = {};
        glGetIntegerv(GL_VIEWPORT, viewport);
        const double w = viewport[2], h = viewport[3];
        const double horizontal = w <= h ? w * 0.5 / h : 0.5, vertical = w <= h ? 0.5 : h * 0.5 / w;
        glOrtho(-horizontal, horizontal, -vertical, vertical, 0.0, 1.0);
    } else {
        gluPerspective(vista.GetAnguloVista(), aspecto, vista.GetPlanoCerca(), vista.GetPlanoFondo() * 1000.0);
        glScaled(10.0 / aspecto, 10.0, 10.0 / aspecto);
    }
    glRotated(vista.GetAnguloY(), 0.0, 1.0, 0.0);
    glRotated(-vista.GetAnguloZ(), 0.0, 0.0, 1.0);
    glRotated(-vista.GetAnguloX(), 1.0, 0.0, 0.0);
    glMatrixMode(GL_MODELVIEW);
    if (lista != 0) glCallList(lista);
    for (const GLenum modo : {GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(modo);
        glPopMatrix();
    }
    return HayErrorGL() ? 0 : 1;
}
