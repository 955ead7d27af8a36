// GEOS: the context of each thread, and the ways of lines to its geometries and back.

#include "model/Geos.h"

#include <cmath>

namespace Vertiz::geos {
namespace {

// A context without message handlers is silent.
struct CContexto {
    GEOSContextHandle_t handle = GEOS_init_r();
    CContexto() = default;
    CContexto(const CContexto&) = delete;
    CContexto& operator=(const CContexto&) = delete;
    ~CContexto() { GEOS_finish_r(handle); }
};

// Owned by the caller, as GEOS' makers of geometries take it over. Null when a coordinate isn't finite.
template <class T>
GEOSCoordSequence* Secuencia(std::span<const CCoor3D<T>> puntos, bool bCierra) {
    std::vector<double> xyz;
    xyz.reserve((puntos.size() + 1) * 3);
    const auto agrega = [&xyz](const CCoor3D<T>& punto) {
        xyz.insert(xyz.end(),
                   {static_cast<double>(punto.x), static_cast<double>(punto.y), static_cast<double>(punto.z)});
    };
    for (const CCoor3D<T>& punto : puntos)
        agrega(punto);
    const CCoor3D<T>& primero = puntos.front();
    const CCoor3D<T>& ultimo = puntos.back();
    if (bCierra && (primero.x != ultimo.x || primero.y != ultimo.y)) agrega(primero);
    for (const double v : xyz) {
        if (!std::isfinite(v)) return nullptr;
    }
    return GEOSCoordSeq_copyFromBuffer_r(Contexto(), xyz.data(), static_cast<unsigned>(xyz.size() / 3), 1, 0);
}

template <class T>
CLinea<T> LineaDeSecuencia(const GEOSGeometry* geometria, const CTipoDat& tipo) {
    CLinea<T> linea(tipo);
    unsigned cantidad = 0;
    const GEOSCoordSequence* secuencia = GEOSGeom_getCoordSeq_r(Contexto(), geometria);
    if (!secuencia || !GEOSCoordSeq_getSize_r(Contexto(), secuencia, &cantidad)) return linea;
    std::vector<double> xyz(std::size_t{cantidad} * 3);
    if (cantidad == 0 || !GEOSCoordSeq_copyToBuffer_r(Contexto(), secuencia, xyz.data(), 1, 0)) return linea;
    linea.Reserva(cantidad);
    for (std::size_t i = 0; i < xyz.size(); i += 3) {
        const double z = std::isnan(xyz[i + 2]) ? 0.0 : xyz[i + 2];
        linea << CCoor3D<T>(CCoor3D<double>(xyz[i], xyz[i + 1], z));
    }
    return linea;
}

template <class T>
void Reune(const GEOSGeometry* geometria, const CTipoDat& tipo, std::vector<CLinea<T>>& lineas) {
    if (!geometria || GEOSisEmpty_r(Contexto(), geometria) != 0) return;
    switch (GEOSGeomTypeId_r(Contexto(), geometria)) {
        case GEOS_LINESTRING:
        case GEOS_LINEARRING:
            lineas.push_back(LineaDeSecuencia<T>(geometria, tipo));
            break;
        case GEOS_POLYGON: {
            Reune(GEOSGetExteriorRing_r(Contexto(), geometria), tipo, lineas);
            const int huecos = GEOSGetNumInteriorRings_r(Contexto(), geometria);
            for (int i = 0; i < huecos; ++i)
                Reune(GEOSGetInteriorRingN_r(Contexto(), geometria, i), tipo, lineas);
            break;
        }
        case GEOS_MULTILINESTRING:
        case GEOS_MULTIPOLYGON:
        case GEOS_GEOMETRYCOLLECTION: {
            const int partes = GEOSGetNumGeometries_r(Contexto(), geometria);
            for (int i = 0; i < partes; ++i)
                Reune(GEOSGetGeometryN_r(Contexto(), geometria, i), tipo, lineas);
            break;
        }
        default:
            break;
    }
}

}  // namespace

GEOSContextHandle_t Contexto() {
    thread_local const CContexto contexto;
    return contexto.handle;
}

template <class T>
Geometria DeLinea(const CLinea<T>& linea) {
    if (linea.NPuntos() < 2) return nullptr;
    GEOSCoordSequence* secuencia = Secuencia(linea.Puntos(), false);
    return Geometria(secuencia ? GEOSGeom_createLineString_r(Contexto(), secuencia) : nullptr);
}

template <class T>
Geometria DePoligono(const CLinea<T>& linea) {
    if (linea.NPuntos() < 3) return nullptr;
    GEOSCoordSequence* secuencia = Secuencia(linea.Puntos(), true);
    GEOSGeometry* anillo = secuencia ? GEOSGeom_createLinearRing_r(Contexto(), secuencia) : nullptr;
    return Geometria(anillo ? GEOSGeom_createPolygon_r(Contexto(), anillo, nullptr, 0) : nullptr);
}

template <class T>
std::vector<CLinea<T>> ALineas(const GEOSGeometry* geometria, const CTipoDat& tipo) {
    std::vector<CLinea<T>> lineas;
    Reune(geometria, tipo, lineas);
    return lineas;
}

template Geometria DeLinea(const CLinea<int>&);
template Geometria DeLinea(const CLinea<double>&);
template Geometria DePoligono(const CLinea<int>&);
template Geometria DePoligono(const CLinea<double>&);
template std::vector<CLinea<int>> ALineas(const GEOSGeometry*, const CTipoDat&);
template std::vector<CLinea<double>> ALineas(const GEOSGeometry*, const CTipoDat&);

}  // namespace Vertiz::geos
