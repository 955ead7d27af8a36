#pragma once
// The application of a test that watches the progress of operations, and cancels them.

#include "model/IPorcentaje.h"
#include "platform/CWinApp.h"

#include <string>
#include <utility>
#include <vector>

/// Notes every call and, from a step on, cancels. While it lives, operations find it.
class Progreso : public CWinApp, public Vertiz::IPorcentaje {
  public:
    /// @param cancelaEn  the step, counted from 1 over all stages, that gives 0; 0 for none
    explicit Progreso(int cancelaEn = 0) : m_nCancelaEn(cancelaEn) {}

    int Paso(int nivel, int actual, int total, int) override {
        m_Niveles.push_back(nivel);
        m_Pasos.emplace_back(actual, total);
        return m_nCancelaEn == 0 || static_cast<int>(m_Pasos.size()) < m_nCancelaEn;
    }
    void Empieza(int nivel, unsigned idTexto) override {
        m_Niveles.push_back(nivel);
        m_Etapas.push_back(idTexto);
        ++m_nAbiertas;
    }
    void Termina(int, int) override { --m_nAbiertas; }
    void Pasos(int, int) override {}
    void Reinicia(int, int, int) override {}
    void Mensaje(int, const CString& texto, int) override { m_Mensajes.push_back(texto.Utf8()); }

    std::vector<std::pair<int, int>> m_Pasos;  ///< done and total of each step
    std::vector<unsigned> m_Etapas;            ///< text of each stage opened
    std::vector<int> m_Niveles;                ///< level of each step and stage
    std::vector<std::string> m_Mensajes;       ///< UTF-8
    int m_nAbiertas = 0;                       ///< stages not closed yet

  private:
    int m_nCancelaEn;
};
