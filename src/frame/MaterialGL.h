#pragma once
// Internal. The dark material of what is not lit.

#include "platform/OpenGL.h"

/// Sets ambient, diffuse, specular and emission to zero and the shininess to its highest. @return false on a GL error
[[nodiscard]] inline bool MaterialNulo() {
    const GLfloat nulo[4] = {0.0F, 0.0F, 0.0F, 0.0F};
    for (const GLenum parametro : {GL_AMBIENT, GL_DIFFUSE, GL_SPECULAR, GL_EMISSION}) {
        glMaterialfv(GL_FRONT_AND_BACK, parametro, nulo);
        if (HayErrorGL()) return false;
    }
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 128.0F);
    return !HayErrorGL();
}
