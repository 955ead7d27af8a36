// The off-screen device of tests, made by the steps that a host takes.

#include "support/Contexto.h"

#include "platform/OpenGL.h"
#include "support/RegistroGL.h"

#include <cstring>

Lienzo::Lienzo(int ancho, int alto) : m_ancho(ancho), m_alto(alto) {
    if (!m_bitmap.CreateBitmap(ancho, alto, 24) || !m_dc.CreateCompatibleDC(nullptr)) return;
    if (m_dc.SelectObject(&m_bitmap) == nullptr) return;
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof pfd;
    pfd.nVersion = 1;
    pfd.dwFlags = PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL | PFD_SUPPORT_GDI;
    pfd.iPixelType = PFD_TYPE_RGBA;
    pfd.cColorBits = 24;
    pfd.cDepthBits = 32;
    const int formato = ChoosePixelFormat(m_dc.GetSafeHdc(), &pfd);
    if (formato == 0 || !SetPixelFormat(m_dc.GetSafeHdc(), formato, &pfd)) return;
    m_hRC = wglCreateContext(m_dc.GetSafeHdc());
}

Lienzo::~Lienzo() {
    if (m_hRC != nullptr) wglDeleteContext(m_hRC);
    m_dc.DeleteDC();
}

bool Lienzo::Actual() const {
    return wglMakeCurrent(m_dc.GetSafeHdc(), m_hRC) != 0;
}

void Lienzo::Suelta() {
    wglMakeCurrent(nullptr, nullptr);
}

Imagen Lienzo::Lee() const {
    const HDC dcAnterior = wglGetCurrentDC();
    const HGLRC contextoAnterior = wglGetCurrentContext();
    Imagen imagen(m_ancho, m_alto);
    if (!Actual()) return imagen;
    std::vector<std::uint8_t> abajo(imagen.bytes.size());
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, m_ancho, m_alto, GL_RGB, GL_UNSIGNED_BYTE, abajo.data());
    glPopClientAttrib();
    const std::size_t fila = std::size_t(3) * m_ancho;
    for (int y = 0; y < m_alto; ++y) {
        std::memcpy(imagen.bytes.data() + fila * y, abajo.data() + fila * (m_alto - 1 - y), fila);
    }
    wglMakeCurrent(dcAnterior, contextoAnterior);
    return imagen;
}

void Contexto::SetUp() {
    ASSERT_TRUE(m_lienzo.Valido()) << "no off-screen context can be made";
    ASSERT_TRUE(m_lienzo.Actual()) << "the context can't be made current";
}

void Contexto::TearDown() {
    if (!m_lienzo.Valido() || !m_lienzo.Actual()) return;
    for (int i = 0; i < 8; ++i) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR) break;
        ADD_FAILURE() << "the test left an OpenGL error behind: " << NombreGL(error);
    }
    Lienzo::Suelta();
}
