#pragma once
// Internal. An open file of the system that closes itself, and reads and writes that always do the whole.

#include <cstddef>
#include <utility>

namespace plataforma {

/// Owns a file descriptor; -1 is none. A failed operation leaves its reason in `errno`.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(Descriptor&& otro) noexcept : m_fd(std::exchange(otro.m_fd, -1)) {}
    Descriptor& operator=(Descriptor&& otro) noexcept {
        std::swap(m_fd, otro.m_fd);
        return *this;
    }
    ~Descriptor() { Cierra(); }

    explicit operator bool() const { return m_fd >= 0; }
    int Get() const { return m_fd; }
    int Suelta() { return std::exchange(m_fd, -1); }
    bool Cierra();

    /// Reads until `n` bytes are there or the file ends; `bien` tells the end from a failure.
    size_t Lee(void* datos, size_t n, bool& bien) const;
    /// The same from a place on, with the position left alone.
    size_t LeeEn(unsigned long long posicion, void* datos, size_t n, bool& bien) const;
    bool Escribe(const void* datos, size_t n) const;

  private:
    int m_fd = -1;
};

}  // namespace plataforma
