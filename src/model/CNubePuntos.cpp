// Clouds of geodetic points.

#include "model/CNubePuntos.h"

#include "model/CDataTransformacion.h"

#include <algorithm>

namespace Vertiz {
namespace {

enum class Sentido { AlTerreno, ALaImagen };

// The coordinates go through the transformation in one piece, so that it prepares itself once.
bool TransformaTodos(std::vector<CPuntoPortula>& puntos, const CDataTransformacion& data, Sentido sentido, bool con3D) {
    std::vector<CCoor3D<double>> coordenadas(puntos.begin(), puntos.end());
    const bool todos =
        sentido == Sentido::AlTerreno ? data.TransformaInversa(coordenadas) : data.Transforma(coordenadas);
    for (std::size_t i = 0; i < puntos.size(); ++i) {
        puntos[i].x = coordenadas[i].x;
        puntos[i].y = coordenadas[i].y;
        if (con3D) puntos[i].z = coordenadas[i].z;
    }
    return todos;
}

}  // namespace

CNubePuntos::CNubePuntos(const CSistemaReferencia& sistema, CUnidadAngular angular, int lineal, short decAngulos,
                         short decLongitudes)
    : m_Sistema(sistema),
      m_UnidadAngular(angular),
      m_nUnidadLineal(lineal),
      m_nDecAngulos(decAngulos),
      m_nDecLongitudes(decLongitudes) {}

bool CNubePuntos::Inserta(const CPuntoPortula& punto, bool sinRepetir, double tolerancia) {
    const auto repite = [&](const CPuntoPortula& otro) {
        const double dx = otro.x - punto.x, dy = otro.y - punto.y;
        return otro.GetNumero() == punto.GetNumero() ||
               (tolerancia > 0.0 && dx * dx + dy * dy <= tolerancia * tolerancia);
    };
    if (sinRepetir && std::any_of(m_Puntos.begin(), m_Puntos.end(), repite)) return false;
    m_Puntos.push_back(punto);
    return true;
}

bool CNubePuntos::Transforma2D(CNubePuntos& resultado, const CDataTransformacion& data) const {
    resultado.m_Puntos = m_Puntos;
    return TransformaTodos(resultado.m_Puntos, data, Sentido::AlTerreno, false);
}

bool CNubePuntos::Transforma3D(CNubePuntos& resultado, const CDataTransformacion& data) const {
    resultado.m_Puntos = m_Puntos;
    return TransformaTodos(resultado.m_Puntos, data, Sentido::AlTerreno, true);
}

bool CNubePuntos::TransformaInversa2D(CNubePuntos& resultado, const CDataTransformacion& data) const {
    resultado.m_Puntos = m_Puntos;
    return TransformaTodos(resultado.m_Puntos, data, Sentido::ALaImagen, false);
}

bool CNubePuntos::TransformaInversa3D(CNubePuntos& resultado, const CDataTransformacion& data) const {
    resultado.m_Puntos = m_Puntos;
    return TransformaTodos(resultado.m_Puntos, data, Sentido::ALaImagen, true);
}

}  // namespace Vertiz
