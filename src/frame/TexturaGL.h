#pragma once
// Internal. Textures of pictures that are shown as a whole.

#include "platform/OpenGL.h"

/// Deletes a texture, if there is one, and zeroes the name.
inline void BorraTextura(GLuint& textura) {
    if (textura != 0) glDeleteTextures(1, &textura);
    textura = 0;
}

/// Takes a new texture and binds it: repeated, without smoothing, times the colour; rows are taken without padding.
/// @return false on a GL error
[[nodiscard]] inline bool NuevaTextura(GLuint& textura) {
    glGenTextures(1, &textura);
    glBindTexture(GL_TEXTURE_2D, textura);
    if (HayErrorGL()) return false;
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
    if (HayErrorGL()) return false;
    glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    if (HayErrorGL()) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    return !HayErrorGL();
}
