// From outside in, through the neighbours.

#include "model/RecorteTriangulos.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vertiz::geometria {
namespace {

// A side put in doesn't count: it was asked for.
bool TieneLadoLargo(const CDelaunay& delaunay, int t, double lado) {
    for (int k = 0; k < 3; ++k) {
        if ((delaunay.Marcas(t, k) & LADO_FIJO) != 0) continue;
        const auto &a = delaunay.Lugar(t, (k + 1) % 3), &b = delaunay.Lugar(t, (k + 2) % 3);
        const double x = double(b.x) - a.x, y = double(b.y) - a.y;
        if (x * x + y * y > lado * lado) return true;
    }
    return false;
}

}  // namespace

// Each side that is a limit or an island's changes sides of it.
unsigned RecortaPorLimites(CDelaunay& delaunay) {
    constexpr std::uint8_t desconocido = 0xFF;
    std::vector<std::uint8_t> lugares(static_cast<std::size_t>(delaunay.Cantidad()), desconocido);
    std::vector<int> pendientes;
    for (int t = 0; t < delaunay.Cantidad(); ++t)
        if (delaunay.EsInfinito(t)) lugares[static_cast<std::size_t>(t)] = 0, pendientes.push_back(t);
    bool bLimites = false;
    while (!pendientes.empty()) {
        const int t = pendientes.back();
        pendientes.pop_back();
        for (int k = 0; k < 3; ++k) {
            const std::uint32_t cambia = delaunay.Marcas(t, k) & (LADO_LIMITE | LADO_ISLA);
            bLimites = bLimites || (cambia & LADO_LIMITE) != 0;
            const int vecino = delaunay.Vecino(t, k);
            std::uint8_t& lugar = lugares[static_cast<std::size_t>(vecino)];
            if (lugar != desconocido) continue;
            lugar = static_cast<std::uint8_t>(lugares[static_cast<std::size_t>(t)] ^ cambia);
            pendientes.push_back(vecino);
        }
    }
    unsigned cuantos = 0;
    for (int t = 0; t < delaunay.Cantidad(); ++t) {
        const std::uint8_t lugar = lugares[static_cast<std::size_t>(t)];
        const bool bFuera = bLimites && (lugar & LADO_LIMITE) == 0;
        if (delaunay.EsInfinito(t) || (!bFuera && (lugar & LADO_ISLA) == 0)) continue;
        delaunay.Borra(t);
        ++cuantos;
    }
    return cuantos;
}

unsigned RecortaPorLado(CDelaunay& delaunay, double lado, bool bTodos) {
    unsigned cuantos = 0;
    std::vector<int> pendientes;
    const auto mira = [&](int t) {
        if (delaunay.EsInfinito(t) || delaunay.EsBorrado(t) || !TieneLadoLargo(delaunay, t, lado)) return;
        delaunay.Borra(t);
        pendientes.push_back(t);
        ++cuantos;
    };
    if (bTodos) {
        for (int t = 0; t < delaunay.Cantidad(); ++t)
            mira(t);
        return cuantos;
    }
    for (int t = 0; t < delaunay.Cantidad(); ++t)
        if (delaunay.EsInfinito(t) || delaunay.EsBorrado(t)) pendientes.push_back(t);
    while (!pendientes.empty()) {
        const int t = pendientes.back();
        pendientes.pop_back();
        for (int k = 0; k < 3; ++k)
            if ((delaunay.Marcas(t, k) & LADO_FIJO) == 0) mira(delaunay.Vecino(t, k));
    }
    return cuantos;
}

}  // namespace Vertiz::geometria
