#pragma once
// Square matrices: rotations, and systems of equations to invert.

#include "model/CMatriz.h"

namespace Vertiz {

/// A square matrix of doubles.
class LUMBRA_API CMatrizCuadrada : public CMatriz<double> {
  public:
    /// All elements 0. @param lado  rows and columns; 0 becomes 1
    explicit CMatrizCuadrada(unsigned lado = 3) : CMatriz<double>(lado, lado, 0) {}

    using CMatriz<double>::Redimensiona;
    /// Each grows rows and columns alike.
    void AumentaFilas(int n) override;
    void AumentaColumnas(int n) override;
    /// Takes the larger size for both sides.
    void Redimensiona(unsigned filas, unsigned columnas, int limpiar) override;

    /// Becomes the 3 x 3 rotation R = Rx(omega) Ry(fi) Rz(kappa), the rotation of a photograph in photogrammetry:
    ///     cos f cos k                          -cos f sin k                          sin f
    ///     cos o sin k + sin o sin f cos k      cos o cos k - sin o sin f sin k      -sin o cos f
    ///     sin o sin k - cos o sin f cos k      sin o cos k + cos o sin f sin k       cos o cos f
    /// @param omega, fi, kappa  radians
    void MatrizGiros3D(double omega, double fi, double kappa);

    /// The angles that MatrizGiros3D would give this rotation, in **degrees**: omega and kappa in (-180, 180], fi in
    /// [-90, 90]. With fi at +-90 only omega +- kappa is determined, and omega is 0.
    /// @param escala  out: factor of a rotation with scale, the cube root of its determinant; 1 for a pure rotation
    /// @return false, with nothing changed, for less than 3 x 3 or a determinant of the first 3 x 3 that isn't positive
    bool GetAngulos(double& omega, double& fi, double& kappa, double& escala) const;

    /// Inverse of a symmetric positive definite matrix. @param inversa  may be this matrix
    /// @return false, with nothing changed, when the matrix isn't symmetric, to 1e-9, and positive definite
    bool InversaCholesky(CMatrizCuadrada& inversa) const;
    /// Inverse of any matrix, by elimination with full pivoting. Rows and columns are brought to like size first, so
    /// that matrices of mixed units aren't taken for singular ones. @param inversa  may be this matrix
    /// @return false, with nothing changed, for a singular matrix or one with an element that isn't finite
    bool InversaPivote(CMatrizCuadrada& inversa) const;
    /// InversaCholesky where it applies, InversaPivote otherwise.
    bool Inversa(CMatrizCuadrada& inversa) const;
};

}  // namespace Vertiz
