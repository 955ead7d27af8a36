#pragma once
// An X server of a test's own, with nobody at it.

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

/// Ends with the object.
class Servidor {
  public:
    Servidor() {
        int canal[2];
        if (pipe(canal) != 0) return;
        m_Proceso = fork();
        if (m_Proceso == 0) {
            const std::string fd = std::to_string(canal[1]);
            if (!freopen("/dev/null", "w", stderr)) _exit(127);
            execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "800x600x24", nullptr);
            _exit(127);
        }
        close(canal[1]);
        char numero[16] = {};
        if (read(canal[0], numero, sizeof numero - 1) > 0)
            m_Nombre = std::string(":").append(std::to_string(std::atoi(numero)));
        close(canal[0]);
    }
    ~Servidor() { Mata(); }
    Servidor(const Servidor&) = delete;
    Servidor& operator=(const Servidor&) = delete;

    void Mata() {
        if (m_Proceso <= 0) return;
        kill(m_Proceso, SIGKILL);
        waitpid(m_Proceso, nullptr, 0);
        m_Proceso = 0;
    }

    pid_t m_Proceso = 0;
    std::string m_Nombre;  ///< empty when it didn't start
};
