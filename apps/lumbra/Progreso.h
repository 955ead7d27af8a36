#pragma once
// The application object of the host program: it shows the progress of long operations, and their messages.

#include "model/IPorcentaje.h"
#include "platform/CWinApp.h"

#include <string>
#include <vector>

/// On a terminal a line that changes in place; in a pipe nothing but messages. Everything goes to standard error, so
/// that what a command prints stays clean.
class Progreso : public CWinApp, public Vertiz::IPorcentaje {
  public:
    Progreso();
    ~Progreso() override;

    int Paso(int nivel, int actual, int total, int flag) override;
    void Empieza(int nivel, unsigned idTexto) override;
    void Termina(int nivel, int flag) override;
    void Pasos(int nivel, int cantidad) override;
    void Reinicia(int nivel, int modo, int flag) override;
    void Mensaje(int nivel, const CString& texto, int flag) override;

    /// Messages are kept from now on instead of shown.
    void Calla() { m_bCalla = true; }
    /// Shows messages again, and gives those that were kept, in UTF-8.
    std::vector<std::string> Habla();

  private:
    void BorraLinea();

    bool m_bTerminal, m_bCalla = false;
    std::vector<std::string> m_Callados;
    int m_nMostrado = -1;  // percentage on the terminal, -1 when none
};
