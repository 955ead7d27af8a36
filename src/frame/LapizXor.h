#pragma once
// Internal. Drawing in XOR on the visible buffer: drawing the same a second time wipes it.

#include "platform/OpenGL.h"

/// From its making on, drawing goes to the visible buffer, where depth doesn't count. At its end the hidden buffer,
/// depth testing and the logical operation are back as they were, also after an error. They are kept on OpenGL's own
/// stack: a list that is compiled with the pen saves what it finds when it is called, not what stood when it was
/// compiled. GL_COLOR_LOGIC_OP stays on; CGL::Render turns it off.
class LapizXor {
  public:
    LapizXor() {
        glPushAttrib(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glDrawBuffer(GL_FRONT);
        glDisable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
    }
    ~LapizXor() {
        glPopAttrib();
        glDrawBuffer(GL_BACK);
        glEnable(GL_COLOR_LOGIC_OP);
    }
    LapizXor(const LapizXor&) = delete;
    LapizXor& operator=(const LapizXor&) = delete;

    /// Turns light and texture off and XOR on. @return false on a GL error
    [[nodiscard]] bool Activa() const {
        glDisable(GL_LIGHTING);
        if (HayErrorGL()) return false;
        glDisable(GL_LIGHT0);
        if (HayErrorGL()) return false;
        glDisable(GL_TEXTURE_2D);  // the sky leaves it on
        glEnable(GL_COLOR_LOGIC_OP);
        glLogicOp(GL_XOR);
        return true;
    }
};
