// Operators new and delete that count.

#include "MemoriaViva.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

MemoriaViva memoria;

namespace {

void* Reserva(std::size_t n) {
    void* p = std::malloc(n != 0 ? n : 1);
    if (p == nullptr) throw std::bad_alloc();
    memoria.ahora += malloc_usable_size(p);
    memoria.maximo = std::max(memoria.maximo, memoria.ahora);
    return p;
}

void Libera(void* p) {
    if (p == nullptr) return;
    memoria.ahora -= malloc_usable_size(p);
    std::free(p);
}

}  // namespace

void* operator new(std::size_t n) {
    return Reserva(n);
}
void* operator new[](std::size_t n) {
    return Reserva(n);
}
void operator delete(void* p) noexcept {
    Libera(p);
}
void operator delete[](void* p) noexcept {
    Libera(p);
}
void operator delete(void* p, std::size_t) noexcept {
    Libera(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    Libera(p);
}
