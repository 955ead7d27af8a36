#pragma once
// Internal. GEOS through its C interface: a context for each thread, geometries that free themselves, and lines to and
// from them. What GEOS can't do comes back as an empty geometry; nothing is printed or thrown.

#include "model/CLinea.h"

#include <geos_c.h>

#include <memory>
#include <vector>

namespace Vertiz::geos {

/// The calling thread's context; lives as long as the thread.
[[nodiscard]] GEOSContextHandle_t Contexto();

/// Frees what GEOS made; the pointers below own it.
struct CLibera {
    void operator()(GEOSGeometry* geometria) const { GEOSGeom_destroy_r(Contexto(), geometria); }
    void operator()(const GEOSPreparedGeometry* preparada) const { GEOSPreparedGeom_destroy_r(Contexto(), preparada); }
};
using Geometria = std::unique_ptr<GEOSGeometry, CLibera>;
using Preparada = std::unique_ptr<const GEOSPreparedGeometry, CLibera>;

/// A line string with the line's heights; empty for fewer than two points or for coordinates that aren't finite.
template <class T>
[[nodiscard]] Geometria DeLinea(const CLinea<T>& linea);

/// A polygon, closed where the line isn't; empty for fewer than three points or for coordinates that aren't finite.
template <class T>
[[nodiscard]] Geometria DePoligono(const CLinea<T>& linea);

/// The lines of a geometry of any kind, with collections taken apart: line strings, and the rings of polygons, the
/// outer one before its holes. All get the given code. Missing heights are 0. Points are left out.
template <class T>
[[nodiscard]] std::vector<CLinea<T>> ALineas(const GEOSGeometry* geometria, const CTipoDat& tipo);

extern template Geometria DeLinea(const CLinea<int>&);
extern template Geometria DeLinea(const CLinea<double>&);
extern template Geometria DePoligono(const CLinea<int>&);
extern template Geometria DePoligono(const CLinea<double>&);
extern template std::vector<CLinea<int>> ALineas(const GEOSGeometry*, const CTipoDat&);
extern template std::vector<CLinea<double>> ALineas(const GEOSGeometry*, const CTipoDat&);

}  // namespace Vertiz::geos
