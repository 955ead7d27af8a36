#pragma once
// The memory that a benchmark holds by operator new: MemoriaViva.cpp replaces the operators.

#include <cstddef>

/// Bytes held now, and the most that were since somebody last set it. For benchmarks of one thread.
struct MemoriaViva {
    std::size_t ahora = 0, maximo = 0;
};
extern MemoriaViva memoria;
