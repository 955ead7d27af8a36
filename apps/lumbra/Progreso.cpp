// Progress and messages on the terminal.

#include "Progreso.h"

#include "platform/Conversiones.h"

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <utility>

Progreso::Progreso() : CWinApp(L"lumbra"), m_bTerminal(isatty(STDERR_FILENO) == 1) {}

Progreso::~Progreso() {
    BorraLinea();
}

void Progreso::BorraLinea() {
    if (m_nMostrado >= 0) std::fputs("\r\033[K", stderr);
    m_nMostrado = -1;
}

int Progreso::Paso(int /*nivel*/, int actual, int total, int /*flag*/) {
    if (!m_bTerminal || total <= 0) return 1;
    const int porcentaje = static_cast<int>(std::int64_t{100} * actual / total);
    if (porcentaje != m_nMostrado) std::fprintf(stderr, "\r%3d %%", porcentaje);
    m_nMostrado = porcentaje;
    return 1;
}

void Progreso::Empieza(int /*nivel*/, unsigned /*idTexto*/) {}

void Progreso::Termina(int /*nivel*/, int /*flag*/) {
    BorraLinea();
}

void Progreso::Pasos(int /*nivel*/, int /*cantidad*/) {}

void Progreso::Reinicia(int /*nivel*/, int /*modo*/, int /*flag*/) {}

void Progreso::Mensaje(int /*nivel*/, const CString& texto, int /*flag*/) {
    if (m_bCalla) {
        m_Callados.push_back(AUtf8(texto.Texto()));
        return;
    }
    BorraLinea();
    std::fprintf(stderr, "lumbra: %s\n", AUtf8(texto.Texto()).c_str());
}

std::vector<std::string> Progreso::Habla() {
    m_bCalla = false;
    return std::exchange(m_Callados, {});
}
