// GeoTIFF 1.0: the key directory of chapter 2.4, the tags of chapter 2.6.

#include "raster/GeoTiff.h"

#include "raster/EtiquetasTiff.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vertiz {

std::size_t EtiquetasGeoTiff::CuentaClaves() const {
    if (m_Claves.size() < 4) return 0;
    return std::min<std::size_t>(m_Claves[3], m_Claves.size() / 4 - 1);
}

bool EtiquetasGeoTiff::Clave(std::uint16_t numero, int& valor) const {
    for (std::size_t i = 1; i <= CuentaClaves(); ++i) {
        const std::uint16_t* const entrada = &m_Claves[4 * i];
        if (entrada[0] != numero) continue;
        if (entrada[1] == 0) {
            valor = entrada[3];
            return true;
        }
        if (entrada[1] != etiqueta::kGeoDoubleParams || entrada[3] >= m_Dobles.size()) return false;
        const double doble = m_Dobles[entrada[3]];
        if (!(std::abs(doble) <= std::numeric_limits<int>::max())) return false;
        valor = static_cast<int>(doble);
        return true;
    }
    return false;
}

void EtiquetasGeoTiff::Llena(CGeorreferencia& g) const {
    std::ranges::fill(g.m_dEscala, 1.0);
    std::ranges::fill(g.m_dTransformacion, 0.0);
    std::copy_n(m_Escala.begin(), std::min<std::size_t>(m_Escala.size(), 3), g.m_dEscala);
    std::copy_n(m_Transformacion.begin(), std::min<std::size_t>(m_Transformacion.size(), 16), g.m_dTransformacion);
    g.m_PuntosControl.resize(m_PuntosControl.size() / 6);
    for (std::size_t i = 0; i < g.m_PuntosControl.size(); ++i)
        std::copy_n(&m_PuntosControl[6 * i], 6, g.m_PuntosControl[i].begin());
    Clave(clave::kModelType, g.m_nTipoModelo);
    Clave(clave::kRasterType, g.m_nTipoRaster);
    Clave(clave::kGeographicType, g.m_nTipoGeografico);
    Clave(clave::kAngularUnits, g.m_nUnidadAngular);
}

float ResolucionPulgada(unsigned unidad, float resolucion) {
    if (!std::isfinite(resolucion)) return 1.0F;
    switch (unidad) {
        case 2:
            return resolucion;
        case 3:
            return resolucion * 2.5401F;
        default:
            return 1.0F;
    }
}

}  // namespace Vertiz
