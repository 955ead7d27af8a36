// What of the view is more than reading and writing a field: the factor of the GL space, and its origin.

#include "frame/CGLVista.h"

#include <algorithm>
#include <cmath>

double CGLVista::FactorDeRangos() const {
    const double mayor = std::max(m_dRangoX, static_cast<double>(m_fExageracionVertical) * m_dRangoZ);
    return mayor == 0.0 ? 1.0 : 1.0 / mayor;
}

void CGLVista::SetExageracionVertical(float e) {
    if (e == 0.0F || !std::isfinite(e)) return;  // heights could never be worked back
    m_fExageracionVertical = e;
    m_dFactor = static_cast<float>(FactorDeRangos());
}

int CGLVista::DameOrigen(Vertiz::CCoor3D<double>& c) const {
    if (m_Maximas.EstanVacias(true)) return 0;
    c = m_Maximas.Minima();
    return 1;
}
