// The worker's turn: take a row, fill its tiles, take the next.

#include "terrain/CHiloCargaTextura.h"

#include "terrain/CEscenaMDT.h"

#include <algorithm>
#include <atomic>
#include <new>

namespace Vertiz {

CHiloCargaTextura::~CHiloCargaTextura() {
    CHiloCargaTextura::Stop();
}

void CHiloCargaTextura::Start(unsigned id, CEvent* fin, long* contador, std::vector<CDataTexturas>* registros,
                              unsigned index, int tipo, std::vector<CGL*>* referencias, std::vector<CGL*>* vinculos,
                              CEscenaMDT* escena, HGLRC contexto, CCriticalSection* seccion, unsigned* fila,
                              bool* parar) {
    Stop();
    m_nIndice = id;
    m_pFin = fin;
    m_pContador = contador;
    m_pRegistros = registros;
    m_nRegistro = index;
    m_nTipo = tipo;
    m_pReferencias = referencias;
    m_pVinculos = vinculos;
    m_pEscena = escena;
    m_hContexto = contexto;
    m_pSeccion = seccion;
    m_pFila = fila;
    m_pParar = parar;
    // Here and not in the thread: a host that cancels once this returns is always obeyed.
    std::atomic_ref(*m_pParar).store(false);
    if (!Arranca(this)) m_pFin->SetEvent();  // nobody else would
}

void CHiloCargaTextura::Stop() {
    CHilo::Stop();
}

void CHiloCargaTextura::Run() {
    const std::size_t registros = m_pRegistros->size();
    const unsigned filas =
        m_nRegistro < registros ? static_cast<unsigned>(std::max((*m_pRegistros)[m_nRegistro].m_nNumFilas, 0)) : 0;
    while (!HayQueParar()) {
        unsigned r = 0;
        {
            const CSingleLock cierre(m_pSeccion, TRUE);
            if (*m_pFila >= filas) break;
            r = (*m_pFila)++;
            std::atomic_ref(*m_pContador).store(static_cast<long>(r) + 1);
        }
        try {
            Calculo(r);
        } catch (const std::bad_alloc&) {
            Para();  // out of a thread it would end the process
        }
        const CSingleLock cierre(m_pSeccion, TRUE);
        std::atomic_ref(*m_pContador).fetch_add(1);
    }
    if (wglGetCurrentContext() != nullptr) {
        glFinish();  // what was sent has to be there when the host draws
        const CSingleLock cierre(m_pSeccion, TRUE);
        wglMakeCurrent(nullptr, nullptr);
    }
    m_pFin->SetEvent();
}

// A row of tiles. A tile whose context can't be had is passed over.
void CHiloCargaTextura::Calculo(unsigned fila) {
    const CDataTexturas& registro = (*m_pRegistros)[m_nRegistro];
    const auto columnas = static_cast<unsigned>(std::max(registro.m_nNumCols, 0));
    for (unsigned col = 0; col < columnas && !HayQueParar(); ++col) {
        if (m_nTipo != 3 && !HayTriangulos(fila, col)) continue;
        bool actual = false;
        {
            const CSingleLock cierre(m_pSeccion, TRUE);
            if (registro.EstaLlena(fila, col)) continue;
            actual = m_pEscena->MakeCurrent(&m_hContexto) != 0;
            if (actual) m_pEscena->AseguraTexturas(m_nRegistro);  // by one worker for all
        }
        if (actual && !m_pEscena->Textura(m_nRegistro, fila, col)) {
            Para();
            return;
        }
    }
}

// Whether a triangle shows the tile, here or in a child that shows the same images.
bool CHiloCargaTextura::HayTriangulos(unsigned fila, unsigned col) const {
    const auto usa = [&](const CGL* hijo) {
        const auto* terreno = dynamic_cast<const CEscenaMDT*>(hijo);
        return terreno && (terreno->GetTipo() == 1 || terreno->GetTipo() == 4) &&
               terreno->TriangulosTextura(m_nRegistro, fila, col) > 0;
    };
    return m_pEscena->TriangulosTextura(m_nRegistro, fila, col) > 0 ||
           (m_pReferencias && std::ranges::any_of(*m_pReferencias, usa)) ||
           (m_pVinculos && std::ranges::any_of(*m_pVinculos, usa));
}

bool CHiloCargaTextura::HayQueParar() const {
    return std::atomic_ref(*m_pParar).load();
}

void CHiloCargaTextura::Para() {
    std::atomic_ref(*m_pParar).store(true);
}

}  // namespace Vertiz
