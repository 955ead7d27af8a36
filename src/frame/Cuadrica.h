#pragma once
// Internal. A GLU quadric that goes with its block.

#include "platform/OpenGL.h"

#include <new>

class Cuadrica {
  public:
    /// @param estilo GLU_FILL, GLU_LINE...  @param normales GLU_SMOOTH, GLU_NONE...
    Cuadrica(GLenum estilo, GLenum normales) : m_p(gluNewQuadric()) {
        if (!m_p) throw std::bad_alloc();  // the one reason for having none, and GLU would write through it
        gluQuadricDrawStyle(m_p, estilo);
        gluQuadricNormals(m_p, normales);
    }
    ~Cuadrica() { gluDeleteQuadric(m_p); }
    Cuadrica(const Cuadrica&) = delete;
    Cuadrica& operator=(const Cuadrica&) = delete;

    operator GLUquadric*() const { return m_p; }

  private:
    GLUquadric* m_p;
};
