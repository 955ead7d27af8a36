// Reading and writing the whole, however many calls it takes.

#include "platform/Descriptor.h"

#include <unistd.h>

#include <cerrno>

namespace plataforma {

bool Descriptor::Cierra() {
    // After a close that was interrupted the descriptor is gone all the same; a second try could close another's.
    return m_fd < 0 || close(Suelta()) == 0 || errno == EINTR;
}

namespace {

// Calls `lee` with what is still missing and how much is there, until all is there or the file ends.
template <class Lectura>
size_t LeeTodo(void* datos, size_t n, bool& bien, Lectura lee) {
    size_t hechos = 0;
    bien = true;
    while (hechos < n) {
        const ssize_t r = lee(static_cast<char*>(datos) + hechos, n - hechos, hechos);
        if (r < 0 && errno == EINTR) continue;
        bien = r >= 0;
        if (r <= 0) break;
        hechos += static_cast<size_t>(r);
    }
    return hechos;
}

}  // namespace

size_t Descriptor::Lee(void* datos, size_t n, bool& bien) const {
    return LeeTodo(datos, n, bien, [fd = m_fd](void* p, size_t m, size_t) { return read(fd, p, m); });
}

size_t Descriptor::LeeEn(unsigned long long posicion, void* datos, size_t n, bool& bien) const {
    return LeeTodo(datos, n, bien, [=, fd = m_fd](void* p, size_t m, size_t hechos) {
        return pread(fd, p, m, static_cast<off_t>(posicion + hechos));
    });
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
