// The clock, and waiting.

#include "platform/Tiempo.h"

#include <time.h>

#include <chrono>
#include <thread>

void _ftime64(__timeb64* momento) {
    timespec ahora{};
    clock_gettime(CLOCK_REALTIME, &ahora);
    tm local{};
    localtime_r(&ahora.tv_sec, &local);
    const long verano = local.tm_isdst > 0 ? 3600 : 0;
    momento->time = ahora.tv_sec;
    momento->millitm = static_cast<unsigned short>(ahora.tv_nsec / 1000000);
    momento->timezone = static_cast<short>((verano - local.tm_gmtoff) / 60);
    momento->dstflag = verano != 0;
}

void Sleep(DWORD milisegundos) {
    if (milisegundos == 0) {
        std::this_thread::yield();
    } else {
        std::this_thread::sleep_for(std::chrono::milliseconds(milisegundos));
    }
}

ULONGLONG GetTickCount64() {
    timespec t{};
    clock_gettime(CLOCK_BOOTTIME, &t);
    return static_cast<ULONGLONG>(t.tv_sec) * 1000 + static_cast<ULONGLONG>(t.tv_nsec) / 1000000;
}
