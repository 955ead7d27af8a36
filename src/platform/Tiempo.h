#pragma once
// The clock, and waiting.

#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <cstdint>

/// A moment, as _ftime64 gives it.
struct __timeb64 {
    std::int64_t time;       ///< seconds since 1970, UTC
    unsigned short millitm;  ///< milliseconds, 0 to 999
    short timezone;          ///< minutes west of Greenwich of the local standard time
    short dstflag;           ///< not 0 while summer time holds
};

/// The time now.
LUMBRA_API void _ftime64(__timeb64* momento);

/// Waits at least that many milliseconds; 0 only lets other threads run.
LUMBRA_API void Sleep(DWORD milisegundos);

/// Milliseconds since the machine started. It never goes back.
LUMBRA_API ULONGLONG GetTickCount64();
