// The worker's turn: take the context, make the lists, leave the context.

#include "frame/CHiloCreaFuentes.h"

#include "frame/CGL.h"
#include "platform/Fuentes.h"

#include <new>
#include <vector>

namespace Vertiz {

CHiloCreaFuentes::~CHiloCreaFuentes() {
    Stop();
}

void CHiloCreaFuentes::Start(unsigned indice, CEvent* fin, CGL* escena, HGLRC contexto, unsigned short primero,
                             unsigned short ultimo, unsigned base, float desviacion, CCriticalSection* seccion) {
    Stop();
    m_nIndice = indice;
    m_pFin = fin;
    m_pEscena = escena;
    m_hContexto = contexto;
    m_nPrimero = primero;
    m_nUltimo = ultimo;
    m_nBase = base;
    m_fDesviacion = desviacion;
    m_pSeccion = seccion;
    Arranca(this);
}

void CHiloCreaFuentes::Run() {
    if (!m_pEscena || !m_hContexto) return;
    {
        const CSingleLock cierre(m_pSeccion, TRUE);
        if (!m_pEscena->MakeCurrent(&m_hContexto)) return;
    }
    try {
        std::vector<GLYPHMETRICSFLOAT> medidas(m_nUltimo);
        wglUseFontOutlinesW(wglGetCurrentDC(), m_nPrimero, m_nUltimo, m_nBase, m_fDesviacion, 0.1F, WGL_FONT_POLYGONS,
                            medidas.data());
    } catch (const std::bad_alloc&) {  // out of a thread it would end the process; lists are missing then
    }
    glFinish();  // what was sent has to be there when the host draws
    const CSingleLock cierre(m_pSeccion, TRUE);
    wglMakeCurrent(nullptr, nullptr);
}

}  // namespace Vertiz
