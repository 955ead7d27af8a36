#pragma once
// The system that coordinates refer to: an ellipsoid and a zone of the transverse Mercator grid on it.

#include "model/CElipsoide.h"
#include "platform/CString.h"

namespace Vertiz {

/// A plane reference system: UTM on an ellipsoid. Coordinates are metres, easting and northing.
class CSistemaReferencia {
  public:
    CSistemaReferencia() = default;

    /// A system known by its name only: the default ellipsoid, and no zone yet.
    explicit CSistemaReferencia(const CString& nombre) : m_Nombre(nombre) {}

    /// @param huso  UTM zone, 1 to 60; 0 when none is set
    /// @param norte true in the northern hemisphere
    CSistemaReferencia(const CString& nombre, const CElipsoide& elipsoide, int huso, bool norte)
        : m_Nombre(nombre), m_Elipsoide(elipsoide), m_nHuso(huso), m_bNorte(norte) {}

    const CString& GetNombre() const { return m_Nombre; }
    const CElipsoide& GetElipsoide() const { return m_Elipsoide; }
    int GetHuso() const { return m_nHuso; }
    bool EsNorte() const { return m_bNorte; }

    /// True when coordinates can be computed in it: a valid ellipsoid and a zone of 1 to 60.
    bool EsValido() const { return m_Elipsoide.EsValido() && m_nHuso >= 1 && m_nHuso <= 60; }

  private:
    CString m_Nombre;
    CElipsoide m_Elipsoide;
    int m_nHuso = 0;
    bool m_bNorte = true;
};

}  // namespace Vertiz
