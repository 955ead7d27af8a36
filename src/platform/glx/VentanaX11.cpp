// Windows of an X11 display.

#include "platform/glx/VentanaX11.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>

#include <bit>
#include <cstring>

namespace plataforma {

SuperficieGLX::~SuperficieGLX() {
    if (!m_bPbuffer) return;
    GuardaErroresX guarda(m_Display);
    glXDestroyPbuffer(m_Display, m_Dibujable);
}

std::optional<Rectangulo> MideVentana(Display* display, Window id) {
    GuardaErroresX guarda(display);
    Window raiz = 0;
    int x = 0, y = 0;
    unsigned ancho = 0, alto = 0, borde = 0, fondo = 0;
    if (!XGetGeometry(display, id, &raiz, &x, &y, &ancho, &alto, &borde, &fondo)) return std::nullopt;
    return Rectangulo{x, y, static_cast<int>(ancho), static_cast<int>(alto)};
}

VisualID VisualDe(Display* display, const FormatoPixel& formato) {
    int id = 0;
    glXGetFBConfigAttrib(display, static_cast<GLXFBConfig>(formato.m_Nativo), GLX_VISUAL_ID, &id);
    return static_cast<VisualID>(id);
}

std::unique_ptr<VentanaX11> VentanaX11::Crea(ConexionX11& conexion, const FormatoPixel& formato,
                                             const Rectangulo& donde, Window padre, std::string& motivo) {
    Display* display = conexion.Xlib();
    XVisualInfo* visual = glXGetVisualFromFBConfig(display, static_cast<GLXFBConfig>(formato.m_Nativo));
    if (!visual) {
        motivo = "the pixel format has no visual that a window could be made with.";
        return nullptr;
    }
    GuardaErroresX guarda(display);
    const Colormap mapa = XCreateColormap(display, conexion.Raiz(), visual->visual, AllocNone);
    XSetWindowAttributes atributos = {};
    atributos.colormap = mapa;
    atributos.border_pixel = 0;
    atributos.background_pixmap = None;  // the server paints nothing between two pictures
    atributos.event_mask = ExposureMask | StructureNotifyMask | PointerMotionMask | ButtonPressMask |
                           ButtonReleaseMask | KeyPressMask | KeyReleaseMask;
    const Window id =
        XCreateWindow(display, padre ? padre : conexion.Raiz(), donde.m_nX, donde.m_nY,
                      static_cast<unsigned>(donde.m_nAncho), static_cast<unsigned>(donde.m_nAlto), 0, visual->depth,
                      InputOutput, visual->visual, CWColormap | CWBorderPixel | CWBackPixmap | CWEventMask, &atributos);
    const VisualID idVisual = visual->visualid;
    XFree(visual);
    if (const int error = guarda.Error()) {
        XFreeColormap(display, mapa);
        motivo = "the display refuses the window (" + TextoErrorX(error) + ").";
        return nullptr;
    }
    if (!padre) {
        Atom borra = conexion.AtomoBorra();
        XSetWMProtocols(display, id, &borra, 1);
        XSizeHints sitio = {};  // a window manager places windows as it likes unless told that the place is meant
        sitio.flags = USPosition | USSize;
        sitio.x = donde.m_nX;
        sitio.y = donde.m_nY;
        sitio.width = donde.m_nAncho;
        sitio.height = donde.m_nAlto;
        XSetWMNormalHints(display, id, &sitio);
    }
    return std::unique_ptr<VentanaX11>(new VentanaX11(conexion, id, idVisual, mapa, true));
}

std::unique_ptr<VentanaX11> VentanaX11::Envuelve(ConexionX11& conexion, Window id, std::string& motivo) {
    GuardaErroresX guarda(conexion.Xlib());
    XWindowAttributes atributos;
    if (!XGetWindowAttributes(conexion.Xlib(), id, &atributos) || atributos.c_class != InputOutput) {
        motivo = "the display has no window " + std::to_string(id) + " that can be drawn on.";
        return nullptr;
    }
    const VisualID visual = XVisualIDFromVisual(atributos.visual);
    return std::unique_ptr<VentanaX11>(new VentanaX11(conexion, id, visual, 0, false));
}

VentanaX11::~VentanaX11() {
    if (!m_bPropia) return;
    GuardaErroresX guarda(m_Conexion.Xlib());
    XDestroyWindow(m_Conexion.Xlib(), m_Id);
    XFreeColormap(m_Conexion.Xlib(), m_Mapa);
    XFlush(m_Conexion.Xlib());
}

void VentanaX11::Muestra(bool visible) {
    GuardaErroresX guarda(m_Conexion.Xlib());
    if (visible)
        XMapWindow(m_Conexion.Xlib(), m_Id);
    else
        XUnmapWindow(m_Conexion.Xlib(), m_Id);
    XFlush(m_Conexion.Xlib());
}

void VentanaX11::Mueve(const Rectangulo& donde) {
    GuardaErroresX guarda(m_Conexion.Xlib());
    XMoveResizeWindow(m_Conexion.Xlib(), m_Id, donde.m_nX, donde.m_nY, static_cast<unsigned>(donde.m_nAncho),
                      static_cast<unsigned>(donde.m_nAlto));
    XFlush(m_Conexion.Xlib());
}

void VentanaX11::Titula(const std::string& utf8) {
    Display* display = m_Conexion.Xlib();
    GuardaErroresX guarda(display);
    const Atom tipo = XInternAtom(display, "UTF8_STRING", False);
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8.data());
    for (const char* nombre : {"_NET_WM_NAME", "WM_NAME"})
        XChangeProperty(display, m_Id, XInternAtom(display, nombre, False), tipo, 8, PropModeReplace, bytes,
                        static_cast<int>(utf8.size()));
    XFlush(display);
}

std::optional<Rectangulo> VentanaX11::Medidas() const {
    return MideVentana(m_Conexion.Xlib(), m_Id);
}

void VentanaX11::Retira() {
    if (!m_bPropia) return;
    GuardaErroresX guarda(m_Conexion.Xlib());
    XSelectInput(m_Conexion.Xlib(), m_Id, 0);
    XUnmapWindow(m_Conexion.Xlib(), m_Id);
    // A parent takes its children along when it is destroyed.
    XReparentWindow(m_Conexion.Xlib(), m_Id, m_Conexion.Raiz(), 0, 0);
    XSync(m_Conexion.Xlib(), False);
}

bool VentanaX11::Admite(const FormatoPixel& formato) const {
    return formato.m_bVentana && VisualDe(m_Conexion.Xlib(), formato) == m_Visual;
}

bool VentanaX11::Pinta(const Imagen& imagen, int x, int y, std::string& motivo) {
    Display* display = m_Conexion.Xlib();
    GuardaErroresX guarda(display);
    XWindowAttributes atributos;
    if (!XGetWindowAttributes(display, m_Id, &atributos)) {
        motivo = "the window is no more.";
        return false;
    }
    const Visual& visual = *atributos.visual;
    if (visual.red_mask != 0xff0000 || visual.green_mask != 0xff00 || visual.blue_mask != 0xff) {
        motivo = "the window has another layout of colours than 8 bits each of red, green and blue.";
        return false;
    }
    // The fourth byte is opacity where the window has any.
    std::vector<std::uint32_t> pixeles(static_cast<std::size_t>(imagen.m_nAncho) *
                                       static_cast<std::size_t>(imagen.m_nAlto));
    for (int i = 0; i < imagen.m_nAlto; ++i)
        std::memcpy(pixeles.data() + static_cast<std::ptrdiff_t>(i) * imagen.m_nAncho,
                    imagen.m_pFilas + static_cast<std::ptrdiff_t>(i) * imagen.m_nPaso,
                    static_cast<std::size_t>(imagen.m_nAncho) * 4);
    for (std::uint32_t& p : pixeles)
        p |= 0xff000000u;
    XImage* ximagen = XCreateImage(display, atributos.visual, static_cast<unsigned>(atributos.depth), ZPixmap, 0,
                                   reinterpret_cast<char*>(pixeles.data()), static_cast<unsigned>(imagen.m_nAncho),
                                   static_cast<unsigned>(imagen.m_nAlto), 32, 0);
    if (!ximagen) {
        motivo = "the display takes no picture of " + std::to_string(imagen.m_nAncho) + " x " +
                 std::to_string(imagen.m_nAlto) + " pixels.";
        return false;
    }
    ximagen->byte_order = std::endian::native == std::endian::little ? LSBFirst : MSBFirst;
    GC lapiz = XCreateGC(display, m_Id, 0, nullptr);
    XPutImage(display, m_Id, lapiz, ximagen, 0, 0, x, y, static_cast<unsigned>(imagen.m_nAncho),
              static_cast<unsigned>(imagen.m_nAlto));
    XFreeGC(display, lapiz);
    ximagen->data = nullptr;  // it is ours
    XDestroyImage(ximagen);
    const int error = guarda.Error();
    if (error) motivo = "the display refuses the picture (" + TextoErrorX(error) + ").";
    return error == 0;
}

std::unique_ptr<Superficie> VentanaX11::CreaSuperficie(const FormatoPixel&, std::string&) {
    // The window itself, and no GLXWindow: the host's toolkit may have made one for a window that is wrapped here, and
    // a window can have only one.
    return std::make_unique<SuperficieGLX>(m_Conexion.Xlib(), m_Id, false);
}

}  // namespace plataforma
