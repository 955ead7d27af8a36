#pragma once
// Internal. One stage of a long operation, shown through the application's progress where there is one.

#include "model/IPorcentaje.h"

namespace Vertiz {

/// Opens a stage and closes it at the end of its life. Nothing happens without an application object that shows
/// progress.
class Etapa {
  public:
    Etapa(int nivel, unsigned idTexto) : m_pPorcentaje(PorcentajeActual()), m_nNivel(nivel) {
        if (m_pPorcentaje != nullptr) m_pPorcentaje->Empieza(m_nNivel, idTexto);
    }
    ~Etapa() {
        if (m_pPorcentaje != nullptr) m_pPorcentaje->Termina(m_nNivel, 0);
    }
    Etapa(const Etapa&) = delete;
    Etapa& operator=(const Etapa&) = delete;

    /// One step done, from 1 to total; false once the user has cancelled.
    bool Paso(int actual, int total) const {
        return m_pPorcentaje == nullptr || m_pPorcentaje->Paso(m_nNivel, actual, total, 0) != 0;
    }

    /// Shows a line of text.
    void Mensaje(const CString& texto) const {
        if (m_pPorcentaje != nullptr) m_pPorcentaje->Mensaje(m_nNivel, texto, 1);
    }

  private:
    IPorcentaje* m_pPorcentaje;
    int m_nNivel;
};

}  // namespace Vertiz
