#pragma once
// A geodetic point: coordinates with a number, a name and the height of the geoid.

#include "model/CCoor.h"
#include "model/CUnidadAngular.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Vertiz {

class CDataTransformacion;
class CElipsoide;

/// A point of a geodetic cloud. Its x, y, z are lengths in metres when its angular unit is 0; otherwise x is the
/// longitude and y the latitude in that unit, z the height in metres.
class LUMBRA_API CPuntoPortula : public CCoor3D<double> {
  public:
    CPuntoPortula();

    /// @param unidad      unit of x and y when they are angles, 0 when they are lengths
    /// @param numero     number of the point
    /// @param ondulacion height of the geoid over the ellipsoid at the point, metres
    /// @param nombre      name, may be empty; copied
    CPuntoPortula(CUnidadAngular unidad, int numero, double x, double y, double z, double ondulacion,
                  const CString& nombre);

    CUnidadAngular GetUnidad() const { return m_Unidad; }
    int GetNumero() const { return m_nNumero; }
    double GetOndulacion() const { return m_dOndulacion; }
    const CString& GetNombre() const { return m_Nombre; }

    /// Latitude and longitude of a point whose x and y are UTM coordinates in metres.
    /// @param latitud, longitud out: radians, north and east positive
    /// @param elipsoide ellipsoid of both
    /// @param huso     UTM zone, 1 to 60
    /// @param norte    true in the northern hemisphere; in the southern one 10 000 km stand before the northing
    /// @return false, with the results untouched, for a bad ellipsoid or zone, or coordinates with no inverse
    /// Source: PROJ, "utm" (the transverse Mercator of Poder and Engsager).
    bool UTMToGeo(double& latitud, double& longitud, const CElipsoide& elipsoide, int huso, bool norte) const;

    /// Sets x and y to the UTM coordinates, in metres, of a latitude and a longitude; z stays. The angular unit
    /// becomes 0. A zone of 0 takes the one that holds the longitude (6 degrees wide, without the exceptions of
    /// Norway and Svalbard).
    /// @param latitud, longitud radians, north and east positive
    /// @return the zone used, or 0 with the point untouched when there is no result
    int GeoToUTM(double latitud, double longitud, const CElipsoide& elipsoide, int huso, bool norte);

    /// The point moved by a transformation, in plan (the height stays) or in space. They go from the image's or the
    /// local system's side to the terrain, like CNubePuntos::Transforma2D and 3D.
    /// @return false, with the point untouched, when it has no image
    bool Transforma2D(const CDataTransformacion& data);
    bool Transforma3D(const CDataTransformacion& data);

  private:
    CUnidadAngular m_Unidad;
    int m_nNumero = 0;
    double m_dOndulacion = 0.0;
    CString m_Nombre;
};

}  // namespace Vertiz
