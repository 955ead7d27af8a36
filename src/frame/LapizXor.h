#pragma once
// Internal. Drawing in XOR on the visible buffer: drawing the same a second time wipes it.

#include "platform/OpenGL.h"

/// What the pen changes in OpenGL it puts back in Restaura, but for GL_COLOR_LOGIC_OP, which CGL::Render turns off. Not
/// in a destructor: an error leaves everything as it is.
class LapizXor {
  public:
    /// Turns to the visible buffer, where depth doesn't count.
    void Empieza() {
        glDrawBuffer(GL_FRONT);
        m_bProfundidad = glIsEnabled(GL_DEPTH_TEST);
        glDisable(GL_DEPTH_TEST);
        glGetIntegerv(GL_DEPTH_FUNC, &m_nFuncion);
        glDepthFunc(GL_LEQUAL);
    }
    /// Turns light and texture off and XOR on. @return false on a GL error
    [[nodiscard]] bool Activa() {
        glDisable(GL_LIGHTING);
        if (HayErrorGL()) return false;
        glDisable(GL_LIGHT0);
        if (HayErrorGL()) return false;
        glDisable(GL_TEXTURE_2D);  // the sky leaves it on
        glEnable(GL_COLOR_LOGIC_OP);
        glGetIntegerv(GL_LOGIC_OP_MODE, &m_nOperacion);
        glLogicOp(GL_XOR);
        return true;
    }
    void Restaura() const {
        glDrawBuffer(GL_BACK);
        if (m_bProfundidad == GL_TRUE) glEnable(GL_DEPTH_TEST);
        glDepthFunc(static_cast<GLenum>(m_nFuncion));
        glLogicOp(static_cast<GLenum>(m_nOperacion));
    }

  private:
    GLboolean m_bProfundidad = GL_FALSE;
    GLint m_nFuncion = GL_LESS;
    GLint m_nOperacion = GL_COPY;
};
