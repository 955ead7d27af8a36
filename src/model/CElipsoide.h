#pragma once
// Reference ellipsoids, and the table of those that surveys name.

#include "platform/CString.h"
#include "platform/Exporta.h"

#include <array>

namespace Vertiz {

/// A reference ellipsoid: an ellipse turned about its minor axis, given by its semi-major axis (metres) and the
/// square of its first eccentricity.
class LUMBRA_API CElipsoide {
  public:
    /// The library's default ellipsoid, that of WGS-84.
    CElipsoide();

    /// @param id   number in the table; -1 for one that the user defines
    /// @param nombre name shown to users; copied
    /// @param a    semi-major axis, metres
    /// @param e2   first eccentricity squared, from 0 (sphere) to below 1
    CElipsoide(int id, const CString& nombre, double a, double e2);

    int GetId() const { return m_nId; }
    const CString& GetNombre() const { return m_Nombre; }

    /// Semi-major axis, metres.
    double DameA() const { return m_dA; }

    /// First eccentricity squared.
    double DameE2() const { return m_dE2; }

    /// Semi-minor axis a sqrt(1 - e2), metres; 0 when e2 isn't below 1.
    double DameB() const;

    /// Flattening f = (a - b) / a = 1 - sqrt(1 - e2), about 1/298 and not 298; 1 when e2 isn't below 1.
    double DameAplanamiento() const;

    /// True for an ellipsoid that coordinates can be computed on: a above 0, e2 from 0 to below 1, both finite.
    bool EsValido() const;

    static constexpr int kCantidadTabla = 28;

    /// The table of known ellipsoids. The first row, number -1, is the empty one that a user fills in.
    static const std::array<CElipsoide, kCantidadTabla>& Tabla();

    /// The row with this number, or null.
    static const CElipsoide* Busca(int id);

  private:
    int m_nId;
    CString m_Nombre;
    double m_dA;
    double m_dE2;
};

}  // namespace Vertiz
