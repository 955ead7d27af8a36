#pragma once
// What the user of an X11 display sees.

#include <X11/Xlib.h>
#include <X11/Xutil.h>

/// Colour of a window's pixel, y downwards; 0xdead where it can't be read.
inline unsigned long ColorVisto(Display* display, Window w, int x, int y) {
    XSync(display, False);
    XImage* imagen = XGetImage(display, w, x, y, 1, 1, AllPlanes, ZPixmap);
    if (!imagen) return 0xdead;
    const unsigned long color = XGetPixel(imagen, 0, 0) & 0xffffff;
    XDestroyImage(imagen);
    return color;
}
