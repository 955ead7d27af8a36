// Comparing settings, and the speed of navigation, which changes by doubling and halving.

#include "frame/CDataGL.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace {

// Truncated, and within 1 and the largest integer, which many doublings pass.
int EscalaPaso(int paso, float factor) {
    const float nuevo = static_cast<float>(paso) * factor;
    constexpr int kMayor = std::numeric_limits<int>::max();
    if (nuevo >= static_cast<float>(kMayor)) return kMayor;
    return nuevo >= 1.0F ? static_cast<int>(nuevo) : 1;
}

// What two settings have to share to count as equal.
auto Comparable(const CDataGL& d) {
    return std::tie(d.m_nColorFondo, d.m_nColorDEM, d.m_nColorBase, d.m_nColorLIDAR, d.m_nColorDesmonte,
                    d.m_nColorTerraplen, d.m_nColorNada, d.m_nSombraCeldas, d.m_nQuad, d.m_nModoRelleno,
                    d.m_nTipoColorLineas, d.m_nTipoLIDAR, d.m_GamaColor, d.m_bRotacion, d.m_bLimites,
                    d.m_bLimitesProyecto, d.m_bEdificios, d.m_bArboles, d.m_bRupturas, d.m_bReferencia, d.m_bCurvado,
                    d.m_bPuntosCamara, d.m_bBase, d.m_bOrto, d.m_bLuz, d.m_bRelleno, d.m_nEjes, d.m_bImagenFondo,
                    d.m_SzImagenFondo, d.m_nCalidadTextos, d.m_bTextos3D, d.m_nAlturaTextos, d.m_nAlfaSuperficie,
                    d.m_nAlfaImagen, d.m_bMarcasFoto, d.m_bMarcasTerreno, d.m_bMascara, d.m_bVerPlanos,
                    d.m_bVerPuntosConPlanos, d.m_bVerPuntosSinPlanos, d.m_nMaxPuntosTrazados);
}

}  // namespace

bool CDataGL::operator==(const CDataGL& otro) const {
    if (Comparable(*this) != Comparable(otro)) return false;
    return std::equal(m_VerObjetosMDT.begin(), m_VerObjetosMDT.end(), otro.m_VerObjetosMDT.begin(),
                      otro.m_VerObjetosMDT.end(), [](const auto& a, const auto& b) { return !(a != b); });
}

void CDataGL::AumentaVelocidad() {
    MultiplicaVelocidad(2.0F);
}

void CDataGL::ReduceVelocidad() {
    MultiplicaVelocidad(0.5F);
}

void CDataGL::MultiplicaVelocidad(float factor) {
    m_fVelocidad *= factor;
    MultiplicaPasos(factor);
}

void CDataGL::MultiplicaPasos(float factor) {
    m_nPasoTrans = EscalaPaso(m_nPasoTrans, factor);
    m_nPasoAngulo = EscalaPaso(m_nPasoAngulo, factor);
}
