#pragma once
// Internal. The viewport and the two matrices of the current context, and the projections through them.

#include "model/CCoor.h"
#include "platform/OpenGL.h"

#include <algorithm>
#include <cmath>

/// Beyond any window, and where sums and differences of two pixels still fit in an int.
constexpr int kPixelLejano = 1'000'000'000;

/// A window coordinate without its fraction. Points next to the eye's plane project to far beyond any window.
inline int Trunca(double v) {
    return static_cast<int>(std::clamp<double>(std::isnan(v) ? 0.0 : v, -kPixelLejano, kPixelLejano));
}

/// A window coordinate as a whole pixel: v + 0.5 without its fraction.
inline int APixel(double v) {
    return Trunca(v + 0.5);
}

/// How large a modelview matrix shows the model: below 1 in views narrower than high, which shrink it so that it fits
/// (EmpiezaCuadro). The camera's coordinates are the model's times this.
/// @return 1.0 exactly where only OpenGL's rounding tells it from that
inline double EscalaModelo(const double* modelview) {
    const double escala = std::hypot(modelview[2], modelview[6], modelview[10]);
    return std::abs(escala - 1.0) < 1e-5 ? 1.0 : escala;
}

/// What GLU needs to go between GL space and window coordinates.
struct MatricesGL {
    GLint viewport[4] = {};
    GLdouble modelview[16] = {};
    GLdouble proyeccion[16] = {};

    /// Reads all three. @return false on a GL error
    [[nodiscard]] bool Lee() {
        glGetIntegerv(GL_VIEWPORT, viewport);
        if (HayErrorGL()) return false;
        glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
        if (HayErrorGL()) return false;
        glGetDoublev(GL_PROJECTION_MATRIX, proyeccion);
        return !HayErrorGL();
    }

    /// GL space to window coordinates: x and y in pixels with y upwards, z the depth from 0 to 1.
    [[nodiscard]] bool Proyecta(const Vertiz::CCoor3D<double>& p, Vertiz::CCoor3D<double>& ventana) const {
        return gluProject(p.x, p.y, p.z, modelview, proyeccion, viewport, &ventana.x, &ventana.y, &ventana.z) ==
               GL_TRUE;
    }
    /// And back.
    [[nodiscard]] bool Desproyecta(double x, double y, double z, Vertiz::CCoor3D<double>& p) const {
        return gluUnProject(x, y, z, modelview, proyeccion, viewport, &p.x, &p.y, &p.z) == GL_TRUE;
    }
};
