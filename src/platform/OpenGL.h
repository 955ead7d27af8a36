#pragma once
// The one place where the headers of OpenGL and GLU come in, and the one idiom for its errors.

#include <GL/gl.h>
#include <GL/glu.h>

/// True when OpenGL has recorded an error since the last look; the look clears it. With no current context there is
/// nothing to report, and the answer is false.
[[nodiscard]] inline bool HayErrorGL() {
    return glGetError() != GL_NO_ERROR;
}

/// Forgets all errors recorded so far. There is one flag for each kind at the most; with a lost context they never end.
inline void OlvidaErroresGL() {
    constexpr int kMaxErrores = 16;
    for (int i = 0; i < kMaxErrores && HayErrorGL(); ++i) {
    }
}
