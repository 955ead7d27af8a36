#pragma once
// Polylines, and the plane geometry that scenes ask of them. What has a subtle geometry behind it (parallels) is GEOS';
// relations are decided exactly on the stored coordinates.

#include "model/CEntidadDigi.h"
#include "model/CTipoDentro.h"

namespace Vertiz {

/// A polyline; with one point, a point entity. T is int (units of 1 / precision) or double.
///
/// As a polygon a line closes by itself, from its last point to its first, and its inside follows the even-odd rule.
template <class T>
class LUMBRA_API CLinea : public CEntidadDigi<T> {
  public:
    CLinea() : CLinea(CTipoDat()) {}
    explicit CLinea(const CString& codigo) : CLinea(CTipoDat(CTipoEntidad::Linea, codigo)) {}
    explicit CLinea(const CTipoDat& tipo) : CEntidadDigi<T>(tipo) {}
    /// From another entity: its code, deletion mark, attributes and points, as a line. Reals are rounded to integers.
    template <class U>
    explicit CLinea(const CEntidadDigi<U>& otra) : CEntidadDigi<T>(otra, CTipoEntidad::Linea) {}

    [[nodiscard]] std::unique_ptr<CEntidadDigi<T>> Clona() const override { return std::make_unique<CLinea>(*this); }

    /// Appends a point.
    CLinea& operator<<(const CCoor3D<T>& punto) {
        this->Agrega(punto);
        return *this;
    }

    /// The last point; on an empty line the origin, and what is written there is lost.
    [[nodiscard]] const CCoor3D<T>& end() const { return this->Punto(static_cast<int>(this->NPuntos()) - 1); }
    [[nodiscard]] CCoor3D<T>& end();

    /// Appends a copy of the first point, unless the line is closed already.
    /// @return false for a line of fewer than two points, which stays open
    bool Cierra();

    /// Where a point lies in plan with respect to this polygon: 1 outside, 2 inside, 3 on a vertex, 4 on a side.
    /// Exact. A point that isn't finite is outside.
    /// @param bConCota true counts a point above or below all of the line's heights as outside
    [[nodiscard]] CTipoDentro EstaDentro(const CCoor3D<T>& punto, bool bConCota = false) const;
    /// Where a rectangle's outline lies in plan: 1 to 6. Only a closed argument can enclose (5).
    [[nodiscard]] CTipoDentro EstaDentro(const CMaximas<T>& rectangulo) const;
    /// Where a line, open or closed, lies in plan: 1 to 6.
    [[nodiscard]] CTipoDentro EstaDentro(const CLinea& linea) const;

    /// The lines share a point in plan, be it an end. Exact.
    [[nodiscard]] bool Intersecta(const CLinea& otra) const;
    /// Appends to this line each place where it meets the other in plan, once, in the order of its own course; where
    /// both run along each other, the ends of the common piece.
    /// @param nCota   height of the new points: 0 none (z = 0), 1 this line's, 2 the other's
    /// @param nMaximo most points to append; -1 all
    /// @return how many were appended
    unsigned Intersecta(const CLinea& otra, int nCota, int nMaximo);

    /// A line at a fixed distance in plan, in the direction of this one; heights come from the nearest place.
    /// @param distancia units of the coordinates, not negative; 0 gives a copy
    /// @param paralela  out: takes this line's header; unchanged on failure
    /// @param esquina   outer corners: 0 mitred, 1 round, 2 bevelled
    /// @param limite    longest mitre, as a multiple of the distance
    /// @param lado      0 to the left, 1 to the right, seen along the line
    /// @return false when there is none: fewer than two different points, or all of it swallowed by a bend
    bool Paralela(double distancia, CLinea& paralela, int esquina, double limite, int lado) const;

    /// Appends another line's points.
    /// @param bTalCual true appends them as they stand; false joins whichever ends are the same point, turning this
    ///                 line, the other, or both, and leaves the common point once
    /// @return false, and nothing changes, when no ends meet or one of the lines is empty
    bool Une(const CLinea& otra, bool bTalCual);

    /// Reverses the order of the points.
    void Voltea();
    /// Gives all points one height.
    void ZFija(T z);
    /// Deletes each point that repeats the one before it; dim 0 compares in plan, 1 in space.
    /// @return how many were deleted
    unsigned BorraPuntosDobles(int dim = 1);

    /// Appends the arc from a to c through b; straight when they lie in line. Heights go evenly with the angle.
    /// @param flecha greatest distance between the arc and its chords, units of the coordinates, above 0
    /// @return false, and nothing changes, for a flecha or coordinates that can't be
    bool Arco(const CCoor3D<T>& a, const CCoor3D<T>& b, const CCoor3D<T>& c, double flecha);
    /// Appends an arc of an ellipse, at the centre's height.
    /// @param semiejeA,semiejeB units of the coordinates, above 0
    /// @param giro         radians from +x to the first axis, counterclockwise
    /// @param desde,hasta  angles on the ellipse's auxiliary circle, radians; hasta may be the lower one
    bool ArcoElipse(const CCoor3D<T>& centro, double semiejeA, double semiejeB, double giro, double desde, double hasta,
                    double flecha);

    /// Centre of the area of a closed line; of the length of an open one; of the points, where that is 0. The height
    /// is the mean of the vertices'. The origin for an empty line.
    [[nodiscard]] CCoor3D<T> Centroide() const;
    /// Area in plan as a polygon, above 0 counterclockwise.
    [[nodiscard]] double Superficie() const;
    /// Length; dim 0 in plan, 1 in space.
    [[nodiscard]] double Longitud(int dim) const;
};

extern template class CLinea<int>;
extern template class CLinea<double>;

}  // namespace Vertiz
