#include "raster/TiffGeo.h"

#include <algorithm>

namespace Vertiz {

namespace {

enum Clave : unsigned { kTipoModelo = 1024, kTipoRaster = 1025, kTipoGeografico = 2048, kUnidadAngular = 2054 };

void AnotaClave(std::uint64_t clave, int valor, CGeorreferencia& g, PaginaTiff& pagina) {
    switch (clave) {
        case kTipoModelo:
            g.m_nTipoModelo = valor;
            break;
        case kTipoRaster:
            g.m_nTipoRaster = valor;
            pagina.tipoRasterPropio = true;
            break;
        case kTipoGeografico:
            g.m_nTipoGeografico = valor;
            break;
        case kUnidadAngular:
            g.m_nUnidadAngular = valor;
            break;
        default:
            break;
    }
}

// Each key is four shorts: the key, where its value is (0: here), how many there are, and the value or its index.
void LeeClaves(const ClavesGeo& geo, CGeorreferencia& g, PaginaTiff& pagina) {
    constexpr std::size_t kPorClave = 4;
    if (geo.claves.size() < kPorClave) return;
    const std::size_t cuenta = std::min<std::uint64_t>(geo.claves[3], geo.claves.size() / kPorClave - 1);
    pagina.claves = static_cast<unsigned>(cuenta);
    for (std::size_t i = 1; i <= cuenta; ++i) {
        const std::uint64_t* const clave = &geo.claves[i * kPorClave];
        if (clave[1] == 0) {
            AnotaClave(clave[0], static_cast<int>(clave[3] & 0xFFFF), g, pagina);
        } else if (clave[1] == 34736 && clave[3] < geo.reales.size()) {
            const double valor = geo.reales[clave[3]];
            if (valor >= 0.0 && valor <= 0xFFFF) AnotaClave(clave[0], static_cast<int>(valor), g, pagina);
        }
    }
}

}  // namespace

void LeeGeorreferencia(const ClavesGeo& geo, PaginaTiff& pagina) {
    if (geo.escala.empty() && geo.puntos.empty() && geo.transformacion.empty() && geo.claves.empty()) return;
    CGeorreferencia& g = pagina.georreferencia.emplace();
    std::copy_n(geo.escala.begin(), std::min<std::size_t>(geo.escala.size(), 3), g.m_dEscala);
    std::copy_n(geo.transformacion.begin(), std::min<std::size_t>(geo.transformacion.size(), 16), g.m_dTransformacion);
    g.m_PuntosControl.resize(geo.puntos.size() / 6);
    for (std::size_t i = 0; i < g.m_PuntosControl.size(); ++i)
        std::copy_n(&geo.puntos[i * 6], 6, g.m_PuntosControl[i].begin());
    LeeClaves(geo, g, pagina);
}

}  // namespace Vertiz
