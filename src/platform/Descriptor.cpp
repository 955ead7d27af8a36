// Reading and writing the whole, however many calls it takes.

#include "platform/Descriptor.h"

#include <unistd.h>

#include <cerrno>

namespace plataforma {

bool Descriptor::Cierra() {
    // After a close that was interrupted the descriptor is gone all the same; a second try could close another's.
    return m_fd < 0 || close(Suelta()) == 0 || errno == EINTR;
}

size_t Descriptor::Lee(void* datos, size_t n, bool& bien) const {
    size_t hechos = 0;
    bien = true;
    while (hechos < n) {
        const ssize_t r = read(m_fd, static_cast<char*>(datos) + hechos, n - hechos);
        if (r < 0 && errno == EINTR) continue;
        bien = r >= 0;
        if (r <= 0) break;
        hechos += static_cast<size_t>(r);
    }
    return hechos;
}

bool Descriptor::Escribe(const void* datos, size_t n) const {
    size_t hechos = 0;
    while (hechos < n) {
        const ssize_t r = write(m_fd, static_cast<const char*>(datos) + hechos, n - hechos);
        if (r < 0 && errno == EINTR) continue;
        if (r < 0) return false;
        hechos += static_cast<size_t>(r);
    }
    return true;
}

}  // namespace plataforma
