#pragma once
// Internal. Tells quickly which samples of a grid can't be what a click means. Projecting each by GLU would take most
// of a second on a grid of some millions; here a sample costs three multiplications, since its place in GL space is
// made of one number for its column, one for its row and one for its height.

#include "frame/MatricesGL.h"

#include <array>
#include <cstdint>
#include <vector>

/// A rectangle in window coordinates, y upwards; it may be a point.
struct CajaVentana {
    double x0, x1, y0, y1;
};

/// The sides of the rectangle that a window point lies on: bits, none inside and on the border.
inline std::uint32_t LadosDe(const CajaVentana& caja, const Vertiz::CCoor3D<double>& v) {
    return (v.x < caja.x0 ? 1u : 0u) | (v.x > caja.x1 ? 2u : 0u) | (v.y < caja.y0 ? 4u : 0u) |
           (v.y > caja.y1 ? 8u : 0u);
}

/// Samples whose GL place is (column's x, alturaAGL * height + origenY, row's z) against a rectangle on the screen.
///
/// It answers for sure or not at all: it works in floats with a margin above all that rounding can do, here and in
/// gluProject, and a sample within it has no side. Whoever then asks gluProject decides as if it had been asked always.
class FiltroPantalla {
  public:
    struct Lugares {
        std::vector<double> columnas;  ///< GL x of each column
        double alturaAGL = 0, origenY = 0;
        double ruido = 0;  ///< how far rounding may have moved a GL coordinate
    };
    FiltroPantalla(const MatricesGL& matrices, const CajaVentana& caja, const Lugares& lugares);

    /// The sides of each sample of a row, as LadosDe; 0 also where that isn't sure.
    /// @param z        GL z of the row
    /// @param alturas  one for each column; may hold anything
    void Fila(double z, const float* alturas, std::uint32_t* lados) const;

  private:
    // A linear form of the GL place, with the sum that bounds its rounding: window x or y seen from the rectangle's
    // middle, or the divisor, all before the division.
    struct Forma {
        std::array<double, 4> a{}, cota{};
        std::vector<float> columnas;
    };
    // What a form holds for one row: value = columnas[c] + fila + k * h, sure within margen + kMargen * |h|.
    struct Termino {
        float fila, k, margen, kMargen;
    };
    Termino EnFila(const Forma& forma, double z) const;

    Forma m_X, m_Y, m_W;
    double m_dMedioX, m_dMedioY;  // half the rectangle's sides
    double m_dAlturaAGL, m_dOrigenY, m_dRuido, m_dColumnaMayor = 0;
};
