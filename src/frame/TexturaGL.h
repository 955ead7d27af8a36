#pragma once
// Internal. Texture objects: how pictures lie on what is drawn.

#include "platform/OpenGL.h"

/// Deletes a texture, if there is one, and zeroes the name.
inline void BorraTextura(GLuint& textura) {
    if (textura != 0) glDeleteTextures(1, &textura);
    textura = 0;
}

/// Binds a texture that is to be filled: repeated, times the colour; rows are taken without padding. Its filters are
/// left to the caller.
/// @return false on a GL error
[[nodiscard]] inline bool PreparaTextura(GLuint textura) {
    glBindTexture(GL_TEXTURE_2D, textura);
    if (HayErrorGL()) return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (HayErrorGL()) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    if (HayErrorGL()) return false;
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    return !HayErrorGL();
}

/// Takes a new texture for a picture that is shown as a whole, and prepares it, without smoothing.
/// @return false on a GL error
[[nodiscard]] inline bool NuevaTextura(GLuint& textura) {
    glGenTextures(1, &textura);
    if (!PreparaTextura(textura)) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    return !HayErrorGL();
}
