#pragma once
// An X server of a test's own, with nobody at it: for tests that would meddle with a user's, or take it away.

#include "platform/Backend.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

/// Ends with the object.
class Servidor {
  public:
    Servidor() {
        int canal[2];
        if (pipe(canal) != 0) return;
        m_Proceso = fork();
        if (m_Proceso == 0) {
            // It ends with a test that crashes too, and holds nothing of the test's open, which somebody may wait for.
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (!freopen("/dev/null", "w", stderr) || dup2(canal[1], 3) < 0 || close_range(4, ~0u, 0) != 0) _exit(127);
            execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "800x600x24", nullptr);
            _exit(127);
        }
        close(canal[1]);
        // To the end of the line: a server that can't write all of it gives up.
        std::string numero;
        for (char c = 0; read(canal[0], &c, 1) == 1 && c != '\n';)
            numero += c;
        if (!numero.empty()) m_Nombre = ":" + numero;
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

/// The server that every test of a program uses, since a process chooses its backend once. Tests are skipped where
/// there is none to be had.
class ConServidor : public testing::Environment {
  public:
    void SetUp() override {
        s_pServidor = std::make_unique<Servidor>();
        if (s_pServidor->m_Nombre.empty()) GTEST_SKIP() << "Xvfb isn't installed";
        setenv("DISPLAY", s_pServidor->m_Nombre.c_str(), 1);
        ASSERT_TRUE(plataforma::FuerzaBackend("glx"));
    }
    void TearDown() override { s_pServidor.reset(); }

    static inline std::unique_ptr<Servidor> s_pServidor;
};

/// Ends the process of a death test: with 0 when all went well; what went wrong is on the error stream.
[[noreturn]] inline void AcabaProceso() {
    const auto& resultado = *testing::UnitTest::GetInstance()->current_test_info()->result();
    for (int i = 0; i < resultado.total_part_count(); ++i)
        std::fprintf(stderr, "line %d: %s\n", resultado.GetTestPartResult(i).line_number(),
                     resultado.GetTestPartResult(i).message());
    _exit(testing::Test::HasFailure() ? 1 : 0);
}
