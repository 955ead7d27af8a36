#pragma once
// A disk that takes no more, as far as the process can tell.

#include <sys/resource.h>

#include <csignal>

/// While it lives, no file grows beyond so many bytes: writing there fails, as on a full disk.
class DiscoLleno {
  public:
    explicit DiscoLleno(rlim_t bytes) : m_Antes{}, m_pSenal(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_Antes);
        const rlimit limite{bytes, m_Antes.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limite);
    }
    ~DiscoLleno() {
        setrlimit(RLIMIT_FSIZE, &m_Antes);
        std::signal(SIGXFSZ, m_pSenal);
    }
    DiscoLleno(const DiscoLleno&) = delete;
    DiscoLleno& operator=(const DiscoLleno&) = delete;

  private:
    rlimit m_Antes;
    void (*m_pSenal)(int);
};
