// Free memory, as the kernel estimates it, and the process's own limit; large blocks.

#include "platform/Memoria.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

constexpr ULONGLONG kDelSistema = ULONGLONG{4} << 20;  // blocks from here on don't come from the heap

std::atomic<ULONGLONG> limitePruebas{~ULONGLONG{0}};

// The number behind a name in a file of /proc, or all bits set where there is none.
ULONGLONG Dato(const char* fichero, std::string_view nombre) {
    char texto[4096];
    const int descriptor = open(fichero, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return ~ULONGLONG{0};
    const ssize_t n = read(descriptor, texto, sizeof texto);
    close(descriptor);
    const std::string_view todo(texto, n > 0 ? static_cast<std::size_t>(n) : 0);
    std::size_t lugar = todo.find(nombre);
    if (lugar == std::string_view::npos) return ~ULONGLONG{0};
    lugar = todo.find_first_of("0123456789", lugar + nombre.size());
    ULONGLONG valor = ~ULONGLONG{0};
    if (lugar != std::string_view::npos) std::from_chars(todo.data() + lugar, todo.data() + todo.size(), valor);
    return valor;
}

// What the process may still take of its address space.
ULONGLONG LimiteProceso() {
    rlimit limite{};
    if (getrlimit(RLIMIT_AS, &limite) != 0 || limite.rlim_cur == RLIM_INFINITY) return ~ULONGLONG{0};
    const ULONGLONG ocupadas = Dato("/proc/self/status", "VmSize:");
    if (ocupadas == ~ULONGLONG{0}) return limite.rlim_cur;
    return limite.rlim_cur > ocupadas * 1024 ? limite.rlim_cur - ocupadas * 1024 : 0;
}

}  // namespace

bool HayMemoria(ULONGLONG bytes) {
    constexpr ULONGLONG kPocas = ULONGLONG{16} << 20;  // not worth two looks into /proc
    if (bytes > limitePruebas) return false;
    if (bytes < kPocas) return true;
    const ULONGLONG libres = Dato("/proc/meminfo", "MemAvailable:");
    if (libres != ~ULONGLONG{0} && bytes / 1024 >= libres) return false;
    return bytes < LimiteProceso();
}

void LimitaMemoria(ULONGLONG bytes) {
    limitePruebas = bytes;
}

void PideGrandesPaginas(void* bloque, ULONGLONG bytes) {
    const auto pagina = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto inicio = reinterpret_cast<std::uintptr_t>(bloque), primera = (inicio + pagina - 1) / pagina * pagina;
    if (inicio + bytes > primera) madvise(reinterpret_cast<void*>(primera), inicio + bytes - primera, MADV_HUGEPAGE);
}

BYTE* ReservaCeros(ULONGLONG bytes) {
    if (bytes < kDelSistema) return static_cast<BYTE*>(std::calloc(std::max<ULONGLONG>(bytes, 1), 1));
    void* const bloque = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (bloque == MAP_FAILED) return nullptr;
    PideGrandesPaginas(bloque, bytes);
    return static_cast<BYTE*>(bloque);
}

void LiberaCeros(BYTE* bloque, ULONGLONG bytes) {
    if (bytes < kDelSistema)
        std::free(bloque);
    else
        munmap(bloque, bytes);
}
