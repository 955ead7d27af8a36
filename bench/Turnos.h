#pragma once
// Turns of two ways to the same result within one measurement, since a machine's speed changes while it works. Of each
// the best turn counts.

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <limits>

/// Processor time of the whole process, its threads too, in seconds: what other programs take doesn't count.
inline double SegundosProceso() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

/// The best turns of a floor and of the library.
struct Turnos {
    double suelo = std::numeric_limits<double>::infinity(), propio = suelo;

    template <class F>
    void Suelo(F hace) {
        suelo = std::min(suelo, Mide(hace));
    }
    template <class F>
    void Propio(F hace) {
        propio = std::min(propio, Mide(hace));
    }
    /// Reports both in milliseconds, and their ratio.
    /// @param veces how often a turn does it
    void Informa(benchmark::State& state, int veces = 1) const {
        state.counters["floor_ms"] = suelo * 1e3 / veces;
        state.counters["own_ms"] = propio * 1e3 / veces;
        state.counters["ratio"] = propio / suelo;
    }

  private:
    template <class F>
    static double Mide(F hace) {
        const double t = SegundosProceso();
        hace();
        return SegundosProceso() - t;
    }
};
