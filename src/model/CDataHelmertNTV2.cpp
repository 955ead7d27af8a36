// Changes of datum as PROJ pipelines.

#include "model/CDataHelmertNTV2.h"

#include "model/Geodesia.h"
#include "platform/Numeros.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace Vertiz {
namespace {

std::string UTM(const CSistemaReferencia& s) {
    return geodesia::UTM(s.GetElipsoide(), s.GetHuso(), s.EsNorte());
}

std::string Geocentricas(const CElipsoide& e) {
    return "+proj=cart +a=" + TextoExacto(e.DameA()) + " +es=" + TextoExacto(e.DameE2());
}

std::string SieteParametros(const CDataHelmertNTV2& d) {
    return "+proj=helmert +x=" + TextoExacto(d.m_dTX) + " +y=" + TextoExacto(d.m_dTY) + " +z=" + TextoExacto(d.m_dTZ) +
           " +rx=" + TextoExacto(d.m_dRX) + " +ry=" + TextoExacto(d.m_dRY) + " +rz=" + TextoExacto(d.m_dRZ) +
           " +s=" + TextoExacto(d.m_dEscala) + " +convention=position_vector";
}

std::string Tuberia(const CDataHelmertNTV2& d) {
    std::string cambio;
    if (d.m_SzRejilla.IsEmpty())
        cambio = " +step " + Geocentricas(d.m_Origen.GetElipsoide()) + " +step " + SieteParametros(d) + " +step +inv " +
                 Geocentricas(d.m_Destino.GetElipsoide());
    else
        cambio = " +step +proj=hgridshift +grids=" + geodesia::NombreFichero(d.m_SzRejilla);
    return "+proj=pipeline +step +inv " + UTM(d.m_Origen) + cambio + " +step " + UTM(d.m_Destino);
}

bool Cambia(const CDataHelmertNTV2& d, geodesia::Sentido sentido, std::span<CCoor3D<double>> puntos) {
    if (!d.EsValida()) return false;
    auto* const operacion = geodesia::Operacion(Tuberia(d));
    return operacion && geodesia::Aplica(operacion, sentido, puntos);
}

}  // namespace

bool CDataHelmertNTV2::EsValida() const {
    // In PROJ's lists of grids a comma parts names, and an at sign marks one that may be missing without a word.
    if (m_SzRejilla.Find(L',') >= 0 || m_SzRejilla.GetAt(0) == L'@') return false;
    const double parametros[] = {m_dTX, m_dTY, m_dTZ, m_dRX, m_dRY, m_dRZ, m_dEscala};
    return m_Origen.EsValido() && m_Destino.EsValido() &&
           std::all_of(std::begin(parametros), std::end(parametros), [](double p) { return std::isfinite(p); });
}

bool CDataHelmertNTV2::Transforma(std::span<CCoor3D<double>> puntos) const {
    return Cambia(*this, geodesia::Sentido::Directo, puntos);
}

bool CDataHelmertNTV2::TransformaInversa(std::span<CCoor3D<double>> puntos) const {
    return Cambia(*this, geodesia::Sentido::Inverso, puntos);
}

}  // namespace Vertiz
