// Rounds and Hilbert's curve.

#include "model/OrdenEspacial.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>

namespace Vertiz::geometria {
namespace {

using predicados::CLugar;

// ---- Hilbert's curve over the whole range of the integers, four bits of x and y at a time
// -----------------------------

struct CTrozo {
    std::uint8_t lugar;   // 8 bits of the place on the curve
    std::uint8_t estado;  // how the next bits lie: 1 x and y change places, 2 both are turned over
};

constexpr CTrozo Camina(unsigned estado, unsigned x, unsigned y) {
    unsigned lugar = 0;
    for (int bit = 3; bit >= 0; --bit) {
        unsigned este = x >> bit & 1U, norte = y >> bit & 1U;
        if ((estado & 1U) != 0) {
            const unsigned otro = este;
            este = norte, norte = otro;
        }
        if ((estado & 2U) != 0) este ^= 1U, norte ^= 1U;
        lugar = lugar << 2 | ((3U * este) ^ norte);
        if (norte == 0) estado ^= este != 0 ? 3U : 1U;
    }
    return {static_cast<std::uint8_t>(lugar), static_cast<std::uint8_t>(estado)};
}

constexpr auto kCurva = [] {
    std::array<CTrozo, 4 * 256> tabla{};
    for (unsigned i = 0; i < tabla.size(); ++i)
        tabla[i] = Camina(i >> 8, i >> 4 & 15U, i & 15U);
    return tabla;
}();

std::uint64_t EnHilbert(const CLugar& p) {
    const std::uint32_t x = static_cast<std::uint32_t>(p.x) ^ 0x80000000U;
    const std::uint32_t y = static_cast<std::uint32_t>(p.y) ^ 0x80000000U;
    std::uint64_t lugar = 0;
    unsigned estado = 0;
    for (int bit = 28; bit >= 0; bit -= 4) {
        const CTrozo trozo = kCurva[estado << 8 | (x >> bit & 15U) << 4 | (y >> bit & 15U)];
        lugar = lugar << 8 | trozo.lugar;
        estado = trozo.estado;
    }
    return lugar;
}

// ---- Rounds
// ------------------------------------------------------------------------------------------------------------

constexpr unsigned kVueltas = 22;

// The round of a place: the last one takes seven of eight, the one before seven of eight of the rest ... Scrambles the
// coordinates by the method of D. Lea and others ("Fast splittable pseudorandom number generators", 2014).
unsigned Vuelta(const CLugar& p) {
    std::uint64_t i = std::uint64_t{static_cast<std::uint32_t>(p.x)} << 32 | static_cast<std::uint32_t>(p.y);
    i += 0x9E3779B97F4A7C15U;
    i = (i ^ i >> 30) * 0xBF58476D1CE4E5B9U;
    i = (i ^ i >> 27) * 0x94D049BB133111EBU;
    return kVueltas - 1 - static_cast<unsigned>(std::countr_zero(i ^ i >> 31)) / 3;
}

struct CPuesto {
    std::uint64_t lugar;
    std::uint32_t indice;
};

}  // namespace

std::vector<std::uint32_t> OrdenEspacial(std::span<const CLugar> puntos) {
    std::array<std::size_t, kVueltas + 1> inicios{};
    for (const CLugar& p : puntos)
        ++inicios[Vuelta(p) + 1];
    for (unsigned i = 0; i < kVueltas; ++i)
        inicios[i + 1] += inicios[i];
    std::vector<CPuesto> puestos(puntos.size());
    auto siguiente = inicios;
    for (std::size_t i = 0; i < puntos.size(); ++i)
        puestos[siguiente[Vuelta(puntos[i])]++] = {EnHilbert(puntos[i]), static_cast<std::uint32_t>(i)};
    const auto lugar = [&](unsigned vuelta) { return puestos.begin() + static_cast<std::ptrdiff_t>(inicios[vuelta]); };
    for (unsigned i = 0; i < kVueltas; ++i)
        std::sort(lugar(i), lugar(i + 1), [](const CPuesto& a, const CPuesto& b) {
            return a.lugar != b.lugar ? a.lugar < b.lugar : a.indice < b.indice;
        });
    std::vector<std::uint32_t> orden(puntos.size());
    std::ranges::transform(puestos, orden.begin(), &CPuesto::indice);
    return orden;
}

}  // namespace Vertiz::geometria
