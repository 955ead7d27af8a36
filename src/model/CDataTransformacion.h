// How the terrain's coordinates go to and from those of a photograph, a panorama or another map.
#pragma once

#include <array>
#include <span>

#include "model/CCoor.h"
#include "model/CDataHelmertNTV2.h"
#include "model/CMatrizCuadrada.h"
#include "model/CUnidadAngular.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// A transformation between the terrain (absolute coordinates) and an image or a second map.
///
/// Transforma always goes from the terrain to the image, TransformaInversa from the image to the terrain. The
/// parameters of a map transformation are those of the way from the image to the terrain, X = F(x), as surveys state
/// them (a world file is type 4): with these types TransformaInversa evaluates F, and Transforma inverts it.
/// CNubePuntos, which speaks from the map's side, calls F Transforma.
///
/// | type | what                    | parameters                | F                                               |
/// |------|-------------------------|---------------------------|-------------------------------------------------|
/// | 0    | none                    |                           |                                                 |
/// | 1    | similarity in space     | tx ty tz omega fi kappa k | X = t + k R x, R = Rx(omega) Ry(fi) Rz(kappa)   |
/// | 2    | similarity in plan      | tx ty a b                 | X = tx + a x - b y, Y = ty + b x + a y          |
/// | 3    | datum, seven parameters | m_Datum                   | CDataHelmertNTV2 without grid, heights change   |
/// | 4    | affine in plan          | tx ty a b c d             | X = tx + a x + b y, Y = ty + c x + d y          |
/// | 5    | polynomial of degree 2  | a0..a5 b0..b5             | X = a0 + a1 x + a2 y + a3 x2 + a4 x y + a5 y2   |
/// | 6    | projective in plan      | a0 a1 a2 b0 b1 b2 c1 c2   | X = (a0 + a1 x + a2 y) / (1 + c1 x + c2 y)      |
/// | 7    | datum, NTv2 grid        | m_Datum                   | CDataHelmertNTV2 with a grid, heights stay      |
/// | 8    | affine in space         | tx ty tz m00..m22         | X = t + M x, M by rows                          |
/// | 11   | conic photograph        |                           | below                                           |
/// | 12   | spherical image         |                           | below                                           |
///
/// In types 5 and 6 Y is as X, by the b.
///
/// Types 1, 3 and 8 are three-dimensional, the other map types leave z alone. Angles are in the record's unit.
///
/// Conic photograph, by the collinearity equations (Kraus, Photogrammetry). With the projection centre C, the rotation
/// R from the camera's axes to the terrain's (the camera looks along its -Z), the focal length f, the principal point
/// (px, py), the interior matrix M from film to pixels and the image centre (cx, cy):
///     q = Rt (P - C), where q.z has to be below 0,
///     u = px - f q.x / q.z, v = py - f q.y / q.z,
///     x = cx + M00 u + M01 v, y = cy - (M10 u + M11 v).
/// So x grows to the right and y downwards where M is positive.
///
/// Spherical image, equirectangular. With q as above, the angles in radians
///     u = px + atan2(-q.x, -q.y), clockwise seen from above, -pi to pi, and v = py + asin(q.z / |q|), upwards,
/// take the place of the film coordinates. So the picture's middle column looks along the sphere's -Y, and its outer
/// ones along +Y. With M = diag(width / 2 pi, height / pi) and the centre (width / 2, height / 2), x and y are pixels;
/// with the identity and a centre of 0 they are radians.
class LUMBRA_API CDataTransformacion {
  public:
    enum Tipo : int {
        NINGUNA = 0,
        SEMEJANZA_3D = 1,
        SEMEJANZA_2D = 2,
        HELMERT_7 = 3,
        AFIN_2D = 4,
        POLINOMIO_2 = 5,
        PROYECTIVA_2D = 6,
        REJILLA_NTV2 = 7,
        AFIN_3D = 8,
        CONICA = 11,
        ESFERICA = 12
    };

    /// No transformation: identity matrices, everything else 0.
    /// @param unidad unit of the angles of type 1 and of SetAngulos
    explicit CDataTransformacion(CUnidadAngular unidad = CUnidadAngular::SEXAGESIMAL);

    int m_nTipo = NINGUNA;
    CUnidadAngular m_UnidadAngular;
    std::array<double, 12> m_Parametros{};  ///< types 1, 2, 4, 5, 6, 8, in the order of the table
    CDataHelmertNTV2 m_Datum;               ///< types 3 and 7: from the image's system to the terrain's

    CCoor3D<double> m_CentroProyeccion{0, 0, 0, 0};  ///< types 11, 12: the camera, absolute terrain coordinates
    CMatrizCuadrada m_Rotacion{3};                   ///< types 11, 12: camera's axes to the terrain's
    CMatrizCuadrada m_Interior{2};                   ///< types 11, 12: film to pixels
    CCoor2D<double> m_CentroImagen{0, 0, 0};         ///< types 11, 12: pixels
    CCoor2D<double> m_PuntoPrincipal{0, 0, 0};       ///< types 11, 12: film units
    double m_dFocal = 0.0;                           ///< type 11: film units, above 0
    double m_dCotaReferencia = 0.0;  ///< height taken for an image point without one: the photograph's plane
    int m_nResta180 = 0;             ///< not 0: the panorama's second angle counts from the opposite side

    int GetTipo() const { return m_nTipo; }
    bool Es3D() const { return m_nTipo == SEMEJANZA_3D || m_nTipo == HELMERT_7 || m_nTipo == AFIN_3D; }
    const CMatrizCuadrada& GetRotacion() const { return m_Rotacion; }

    /// Sets the rotation Rx(omega) Ry(fi) Rz(kappa) from angles in the record's unit.
    void SetAngulos(double omega, double fi, double kappa);

    /// The rotation's angles in degrees, as CMatrizCuadrada::GetAngulos gives them; the fourth is its scale.
    /// @return false, with nothing changed, when the rotation has none
    bool GetAngulos(double& omega, double& fi, double& kappa, double& escala) const;

    /// A transformation is set and can be computed: a known type, finite parameters, matrices of the right size that
    /// aren't singular, a focal length above 0. Whether an NTv2 grid can be read shows when it is used.
    bool ExisteTransformacion() const;

    /// Terrain to image. The height of the result is that of the point, but for the three-dimensional types; its Tipo
    /// is kept. Both arguments may be the same point.
    /// @return false, with `imagen` untouched, when the point has no image: behind the camera or in its plane, at a
    ///         panorama's very centre, without inverse, not finite, or no transformation set
    bool Transforma(const CCoor3D<double>& terreno, CCoor3D<double>& imagen) const;

    /// Image to terrain.
    /// @param cota  types 11 and 12: the height of the plane on which the point is looked for; null takes the
    ///              reference height. Other types don't use it
    /// @param fila  number of the scan line, for a camera that takes its picture line by line; -1 for those that take
    ///              it at once, as all types here do: it has no effect
    /// @return the terrain point; its x and y are NaN when there is none, because the ray doesn't meet the plane in
    ///         front of the camera or no transformation is set
    CCoor3D<double> TransformaInversa(const CCoor3D<double>& imagen, const double* cota, int fila) const;

    /// The same with the failure as the result: `terreno` is untouched then.
    bool TransformaInversa(const CCoor3D<double>& imagen, const double* cota, CCoor3D<double>& terreno) const;

    /// Many points at once, in place; what depends on the parameters alone is worked out once. A point without a result
    /// gets NaN in x and y (and in z with the three-dimensional types). Backwards, points of types 11 and 12 are looked
    /// for at their own z.
    /// @return false when a point had no result; without a transformation false with the points untouched
    bool Transforma(std::span<CCoor3D<double>> puntos) const;
    bool TransformaInversa(std::span<CCoor3D<double>> puntos) const;
};

}  // namespace Vertiz
