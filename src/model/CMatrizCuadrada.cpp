// Growth that keeps a matrix square, rotations and inverses.

#include "model/CMatrizCuadrada.h"

#include <Eigen/Cholesky>
#include <Eigen/LU>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Vertiz {

namespace {

using Densa = Eigen::MatrixXd;

Densa ADensa(const CMatrizCuadrada& m) {
    const unsigned n = m.GetFilas();
    Densa d(n, n);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j)
            d(i, j) = m.Get(i, j);
    return d;
}

bool Entrega(const Densa& d, CMatrizCuadrada& m) {
    if (!d.allFinite()) return false;
    const auto n = unsigned(d.rows());
    if (m.GetFilas() != n) m.Redimensiona(n, n, 0);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j)
            m.Set(i, j, d(i, j));
    return true;
}

// Powers of two that bring the greatest element of each row to about 1; false when a row is all zeros.
bool Escalas(const Densa& d, Eigen::VectorXd& escalas) {
    const Eigen::VectorXd mayores = d.cwiseAbs().rowwise().maxCoeff();
    if ((mayores.array() == 0.0).any()) return false;
    escalas = mayores.unaryExpr([](double v) { return std::ldexp(1.0, -std::ilogb(v)); });
    return true;
}

}  // namespace

void CMatrizCuadrada::AumentaFilas(int n) {
    CMatrizCuadrada mayor(unsigned(std::clamp<std::int64_t>(std::int64_t(GetFilas()) + n, 1, UINT32_MAX)));
    const unsigned comun = std::min(GetFilas(), mayor.GetFilas());
    for (unsigned i = 0; i < comun; ++i)
        for (unsigned j = 0; j < comun; ++j)
            mayor.Set(i, j, Get(i, j));
    Intercambia(mayor);
}

void CMatrizCuadrada::AumentaColumnas(int n) {
    AumentaFilas(n);
}

void CMatrizCuadrada::Redimensiona(unsigned filas, unsigned columnas, int limpiar) {
    const unsigned lado = std::max(filas, columnas);
    CMatriz<double>::Redimensiona(lado, lado, limpiar);
}

void CMatrizCuadrada::MatrizGiros3D(double omega, double fi, double kappa) {
    const double co = std::cos(omega), so = std::sin(omega);
    const double cf = std::cos(fi), sf = std::sin(fi);
    const double ck = std::cos(kappa), sk = std::sin(kappa);
    const double giro[3][3] = {{cf * ck, -cf * sk, sf},
                               {co * sk + so * sf * ck, co * ck - so * sf * sk, -so * cf},
                               {so * sk - co * sf * ck, so * ck + co * sf * sk, co * cf}};
    if (GetFilas() != 3) Redimensiona(3, 3, 0);
    for (unsigned i = 0; i < 3; ++i)
        for (unsigned j = 0; j < 3; ++j)
            Set(i, j, giro[i][j]);
}

bool CMatrizCuadrada::GetAngulos(double& omega, double& fi, double& kappa, double& escala) const {
    if (GetFilas() < 3) return false;
    const Eigen::Matrix3d r = ADensa(*this).topLeftCorner<3, 3>();
    const double determinante = r.determinant();
    if (!(determinante > 0.0) || !std::isfinite(determinante)) return false;

    constexpr double kGrados = 180.0 / std::numbers::pi;
    const double factor = std::cbrt(determinante);
    const double coseno = std::hypot(r(0, 0), r(0, 1));
    fi = std::atan2(r(0, 2), coseno) * kGrados;
    if (coseno > 1e-12 * factor) {
        omega = std::atan2(-r(1, 2), r(2, 2)) * kGrados;
        kappa = std::atan2(-r(0, 1), r(0, 0)) * kGrados;
    } else {
        omega = 0.0;
        kappa = std::atan2(r(1, 0), r(1, 1)) * kGrados;
    }
    escala = factor;
    return true;
}

bool CMatrizCuadrada::InversaCholesky(CMatrizCuadrada& inversa) const {
    if (GetFilas() == 0) return false;
    const Densa a = ADensa(*this);
    if (!a.allFinite() || !(a - a.transpose()).isZero(1e-9 * a.cwiseAbs().maxCoeff())) return false;
    const Eigen::LLT<Densa> factores(a);
    if (factores.info() != Eigen::Success) return false;
    return Entrega(factores.solve(Densa::Identity(a.rows(), a.cols())), inversa);
}

bool CMatrizCuadrada::InversaPivote(CMatrizCuadrada& inversa) const {
    if (GetFilas() == 0) return false;
    const Densa a = ADensa(*this);
    Eigen::VectorXd filas, columnas;
    if (!a.allFinite() || !Escalas(a, filas)) return false;
    const Densa porFilas = filas.asDiagonal() * a;
    if (!Escalas(porFilas.transpose(), columnas)) return false;
    const Eigen::FullPivLU<Densa> factores(porFilas * columnas.asDiagonal());
    if (!factores.isInvertible()) return false;
    return Entrega(columnas.asDiagonal() * factores.inverse() * filas.asDiagonal(), inversa);
}

bool CMatrizCuadrada::Inversa(CMatrizCuadrada& inversa) const {
    return InversaCholesky(inversa) || InversaPivote(inversa);
}

}  // namespace Vertiz
