#pragma once
// Internal. Whether memory can still be had: with overcommit a large allocation succeeds and the process dies later,
// when it touches the pages.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

/// True when so many bytes fit in the machine's free memory and in the process's limit of address space.
LUMBRA_API bool HayMemoria(ULONGLONG bytes);

/// For tests: from now on nothing above so many bytes fits. The default, all bits set, takes the limit away.
LUMBRA_API void LimitaMemoria(ULONGLONG bytes = ~ULONGLONG{0});

/// Asks for large pages under a block that is about to be written through: it is there sooner. Nothing depends on it.
LUMBRA_API void PideGrandesPaginas(void* bloque, ULONGLONG bytes);

/// A block of so many bytes, all 0; null without memory. Blocks of megabytes come straight from the system, which has
/// zeros ready, in large pages where it gives them.
LUMBRA_API BYTE* ReservaCeros(ULONGLONG bytes);
/// Gives back a block of so many bytes that ReservaCeros gave.
LUMBRA_API void LiberaCeros(BYTE* bloque, ULONGLONG bytes);
