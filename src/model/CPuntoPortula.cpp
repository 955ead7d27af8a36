// Geodetic points: UTM to geodetic coordinates and back, and single transformations.
#include "model/CPuntoPortula.h"

#include <cmath>
#include <numbers>

#include "model/CDataTransformacion.h"
#include "model/CElipsoide.h"
#include "model/Geodesia.h"

namespace Vertiz {
namespace {

bool EsHuso(int huso) {
    return huso >= 1 && huso <= 60;
}

// The zone of 6 degrees that holds a longitude in radians; 180 degrees is the start of zone 1 again.
int HusoDeLongitud(double longitud) {
    const double vueltas = longitud / (2.0 * std::numbers::pi) + 0.5;
    return static_cast<int>(std::floor((vueltas - std::floor(vueltas)) * 60.0)) + 1;
}

}  // namespace

CPuntoPortula::CPuntoPortula() : CCoor3D<double>(0.0, 0.0, 0.0, 0) {}

CPuntoPortula::CPuntoPortula(CUnidadAngular unidad, int numero, double px, double py, double pz, double ondulacion,
                             const CString& nombre)
    : CCoor3D<double>(px, py, pz, 0),
      m_Unidad(unidad),
      m_nNumero(numero),
      m_dOndulacion(ondulacion),
      m_Nombre(nombre) {}

bool CPuntoPortula::UTMToGeo(double& latitud, double& longitud, const CElipsoide& elipsoide, int huso,
                             bool norte) const {
    if (!elipsoide.EsValido() || !EsHuso(huso) || !std::isfinite(x) || !std::isfinite(y)) return false;
    auto* const utm = geodesia::Operacion(geodesia::UTM(elipsoide, huso, norte));
    CCoor3D<double> p(x, y, 0.0, 0);
    if (!utm || !geodesia::Aplica(utm, geodesia::Sentido::Inverso, {&p, 1})) return false;
    longitud = p.x;
    latitud = p.y;
    return true;
}

int CPuntoPortula::GeoToUTM(double latitud, double longitud, const CElipsoide& elipsoide, int huso, bool norte) {
    if (!elipsoide.EsValido() || !std::isfinite(latitud) || !std::isfinite(longitud)) return 0;
    if (huso == 0) huso = HusoDeLongitud(longitud);
    if (!EsHuso(huso)) return 0;
    auto* const utm = geodesia::Operacion(geodesia::UTM(elipsoide, huso, norte));
    CCoor3D<double> p(longitud, latitud, 0.0, 0);
    if (!utm || !geodesia::Aplica(utm, geodesia::Sentido::Directo, {&p, 1})) return 0;
    x = p.x;
    y = p.y;
    m_Unidad = CUnidadAngular::NINGUNA;
    return huso;
}

bool CPuntoPortula::Transforma2D(const CDataTransformacion& data) {
    CCoor3D<double> p = *this;
    if (!data.TransformaInversa(p, &z, p)) return false;
    x = p.x;
    y = p.y;
    return true;
}

bool CPuntoPortula::Transforma3D(const CDataTransformacion& data) {
    return data.TransformaInversa(*this, &z, *this);
}

}  // namespace Vertiz
