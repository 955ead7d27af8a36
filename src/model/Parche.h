#pragma once
// The surface of one cell of a grid, and where a straight line meets it. Internal.
//
// A cell is held as a Bezier patch over the unit square, u to the east and v to the north: of degree 1 it is the
// bilinear surface, of degree 3 the Ferguson patch with slopes at its corners and no twist. In this form values stay
// within the control points' range, and the restriction to a straight line is a polynomial in Bernstein form whose
// coefficients are sums of control points: G. Farin, "Curves and Surfaces for CAGD", 5th edition (2002), chapters
// 4, 14.

#include <array>
#include <optional>

namespace Vertiz {

/// A corner's height, and its slopes in height for a whole cell to the east and to the north.
struct EsquinaParche {
    double m_dCota = 0.0, m_dPendienteX = 0.0, m_dPendienteY = 0.0;
};

/// A place in the unit square.
struct PuntoParche {
    double u = 0.0, v = 0.0;
};

/// The surface of a cell. Places are in its unit square, heights are absolute.
class Parche {
  public:
    /// Corners in the order south-west, south-east, north-west, north-east.
    Parche(const std::array<EsquinaParche, 4>& esquinas, bool bSuave);

    double Cota(PuntoParche p) const;
    /// No height of the cell is outside these.
    double CotaMinima() const { return m_dMinima; }
    double CotaMaxima() const { return m_dMaxima; }

    /// Where, from 0 at a to 1 at b, a line whose height goes evenly from za to zb first meets the surface.
    std::optional<double> PrimerCorte(PuntoParche a, double za, PuntoParche b, double zb) const;

  private:
    static constexpr int kMaximo = 4;
    using Puntos = std::array<double, kMaximo>;

    double Flor(Puntos puntos, double inicio, double fin, int finales) const;

    int m_nGrado;
    std::array<Puntos, kMaximo> m_Red{};  ///< [v][u]
    double m_dMinima, m_dMaxima;
};

}  // namespace Vertiz
