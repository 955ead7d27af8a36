#pragma once
// What this process holds of memory, as the system counts it.

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

/// A figure of /proc/self/status, in kilobytes; -1 when it isn't there.
/// @param nombre  with its colon: "VmRSS:" what is held, "VmHWM:" the most that was
inline long MemoriaProceso(const char* nombre) {
    std::ifstream estado("/proc/self/status");
    std::string linea;
    while (std::getline(estado, linea))
        if (linea.starts_with(nombre)) return std::atol(linea.c_str() + std::strlen(nombre));
    return -1;
}
