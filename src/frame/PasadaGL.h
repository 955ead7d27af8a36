#pragma once
// Internal. What the render passes of all scenes share: how a frame begins, and a background that turns with the
// camera.

#include "frame/CGLVista.h"
#include "platform/OpenGL.h"

/// Begins a frame: clears it and sets the camera. A tall view is scaled so that it shows the whole model. Not for a
/// child, which draws in its parent's frame.
/// @param aspecto  width of the view over its height
/// @return 0 on a GL error
[[nodiscard]] int EmpiezaCuadro(const CCamera& camara, double aspecto);

/// Draws a list as a background: from the middle of its space, with nothing of the camera but its turn. Matrices are as
/// before afterwards.
/// @param vista    whose camera, field of view and planes serve; orthographic when its setting is
/// @param aspecto  width of the view over its height; an orthographic one asks the viewport
/// @param lista    0 for none
/// @return 0 on a GL error
[[nodiscard]] int RenderFondo(const CGLVista& vista, double aspecto, GLuint lista);
