// Bringing what was drawn to where it is seen: a window's front buffer, or the bits of a bitmap.
//
// The OpenGL calls of this file go through pointers that the backend gives, since they are the platform's own: whoever
// watches the calls of a scene sees only those that the scene makes.

#include "platform/Contextos.h"
#include "platform/Objetos.h"
#include "platform/OpenGL.h"

#include <GL/glext.h>

namespace plataforma {

namespace {

struct FuncionesGL {
    explicit FuncionesGL(const Backend& b) {
        Toma(b, m_pPushAttrib, "glPushAttrib");
        Toma(b, m_pPopAttrib, "glPopAttrib");
        Toma(b, m_pPushClientAttrib, "glPushClientAttrib");
        Toma(b, m_pPopClientAttrib, "glPopClientAttrib");
        Toma(b, m_pDisable, "glDisable");
        Toma(b, m_pReadBuffer, "glReadBuffer");
        Toma(b, m_pDrawBuffer, "glDrawBuffer");
        Toma(b, m_pPixelStorei, "glPixelStorei");
        Toma(b, m_pPixelTransferf, "glPixelTransferf");
        Toma(b, m_pPixelTransferi, "glPixelTransferi");
        Toma(b, m_pReadPixels, "glReadPixels");
        Toma(b, m_pFlush, "glFlush");
        Toma(b, m_pBlitFramebuffer, "glBlitFramebuffer");
    }
    template <class Funcion>
    static void Toma(const Backend& b, Funcion& funcion, const char* nombre) {
        funcion = reinterpret_cast<Funcion>(b.Funcion(nombre));
    }

    decltype(&glPushAttrib) m_pPushAttrib;
    decltype(&glPopAttrib) m_pPopAttrib;
    decltype(&glPushClientAttrib) m_pPushClientAttrib;
    decltype(&glPopClientAttrib) m_pPopClientAttrib;
    decltype(&glDisable) m_pDisable;
    decltype(&glReadBuffer) m_pReadBuffer;
    decltype(&glDrawBuffer) m_pDrawBuffer;
    decltype(&glPixelStorei) m_pPixelStorei;
    decltype(&glPixelTransferf) m_pPixelTransferf;
    decltype(&glPixelTransferi) m_pPixelTransferi;
    decltype(&glReadPixels) m_pReadPixels;
    decltype(&glFlush) m_pFlush;
    PFNGLBLITFRAMEBUFFERPROC m_pBlitFramebuffer;
};

const FuncionesGL& GL(const Backend& backend) {
    static const FuncionesGL funciones(backend);  // one backend serves the process
    return funciones;
}

// Copies the picture of a buffer of the current context into a bitmap of the same size.
void CopiaEnBitmap(const FuncionesGL& gl, Bitmap& bitmap, GLenum bufer) {
    gl.m_pPushAttrib(GL_PIXEL_MODE_BIT);
    gl.m_pPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    gl.m_pReadBuffer(bufer);
    for (GLenum escala : {GL_RED_SCALE, GL_GREEN_SCALE, GL_BLUE_SCALE})
        gl.m_pPixelTransferf(escala, 1.0f);
    for (GLenum suma : {GL_RED_BIAS, GL_GREEN_BIAS, GL_BLUE_BIAS})
        gl.m_pPixelTransferf(suma, 0.0f);
    gl.m_pPixelTransferi(GL_MAP_COLOR, GL_FALSE);
    for (GLenum cero : {GL_PACK_SWAP_BYTES, GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS})
        gl.m_pPixelStorei(cero, 0);
    gl.m_pPixelStorei(GL_PACK_ALIGNMENT, 4);
    gl.m_pReadPixels(0, 0, bitmap.m_nAncho, bitmap.m_nAlto, bitmap.m_nBits == 32 ? GL_BGRA : GL_BGR, GL_UNSIGNED_BYTE,
                     bitmap.m_Pixeles.data());
    gl.m_pPopClientAttrib();
    gl.m_pPopAttrib();
}

// Copies the back buffer of the current context to its front buffer, and has it shown.
void CopiaAlFrente(const FuncionesGL& gl, int ancho, int alto) {
    gl.m_pPushAttrib(GL_COLOR_BUFFER_BIT | GL_PIXEL_MODE_BIT | GL_SCISSOR_BIT);
    gl.m_pDisable(GL_SCISSOR_TEST);
    gl.m_pReadBuffer(GL_BACK);
    gl.m_pDrawBuffer(GL_FRONT);
    gl.m_pBlitFramebuffer(0, 0, ancho, alto, 0, 0, ancho, alto, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    gl.m_pFlush();
    gl.m_pPopAttrib();
}

bool PresentaVentana(Backend& backend, Lienzo& lienzo, bool actual) {
    if (backend.Capacidades().m_bUnBufer) {
        if (actual) GL(backend).m_pFlush();
        return true;
    }
    if (actual && backend.Capacidades().m_bPresentaCopiando) {
        const auto donde = lienzo.m_Ventana->Medidas();
        if (!donde) return AnotaFallo("the window is no more.");
        CopiaAlFrente(GL(backend), donde->m_nAncho, donde->m_nAlto);
        return true;
    }
    if (!backend.Intercambia(*lienzo.m_Superficie)) return AnotaFallo("the window is no more.");
    return true;
}

bool PresentaMemoria(Backend& backend, Lienzo& lienzo) {
    Bitmap& bitmap = *lienzo.m_Bitmap;
    if (!backend.Capacidades().m_bUnBufer) CopiaAlFrente(GL(backend), bitmap.m_nAncho, bitmap.m_nAlto);
    CopiaEnBitmap(GL(backend), bitmap, GL_BACK);
    return true;
}

}  // namespace

}  // namespace plataforma

using namespace plataforma;

BOOL SwapBuffers(HDC hdc) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo) return AnotaFallo("unknown device context.");
    Backend* backend = BackendActual();
    if (!backend) return FALSE;
    Lienzo& lienzo = *dispositivo->m_Lienzo;
    std::shared_ptr<Superficie> superficie;  // kept while it is shown
    {
        std::lock_guard cierre(CerrojoContextos());
        superficie = lienzo.m_Superficie;
    }
    if (!superficie) return AnotaFallo("the device context has no pixel format.");
    const Actual actual = ActualDelHilo();
    const bool esActual = actual.m_pLienzo == &lienzo;
    if (esActual && !actual.m_bConSuperficie)
        return AnotaFallo("the context draws nowhere: its surface was in use on another thread.");
    if (lienzo.m_Ventana) return PresentaVentana(*backend, lienzo, esActual);
    if (!esActual) return AnotaFallo("the memory device context isn't current on this thread.");
    return PresentaMemoria(*backend, lienzo);
}

BOOL GdiFlush() {
    const Actual actual = ActualDelHilo();
    if (!actual.m_pLienzo) return TRUE;
    Backend* backend = BackendActual();
    GL(*backend).m_pFlush();
    if (actual.m_pLienzo->m_Bitmap && actual.m_bConSuperficie)
        CopiaEnBitmap(GL(*backend), *actual.m_pLienzo->m_Bitmap, GL_FRONT);
    return TRUE;
}
