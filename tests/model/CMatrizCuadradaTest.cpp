// Rotations by their angles, and inverses held to what they leave over.

#include "model/CMatrizCuadrada.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

using namespace Vertiz;

namespace {

constexpr double kGrado = std::numbers::pi / 180.0;

// The greatest element of a b - 1.
double Residuo(const CMatrizCuadrada& a, const CMatrizCuadrada& b) {
    const unsigned n = a.GetFilas();
    double mayor = 0.0;
    for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = 0; j < n; ++j) {
            double suma = i == j ? -1.0 : 0.0;
            for (unsigned k = 0; k < n; ++k)
                suma += a.Get(i, k) * b.Get(k, j);
            mayor = std::max(mayor, std::abs(suma));
        }
    }
    return mayor;
}

CMatrizCuadrada Aleatoria(unsigned n, unsigned semilla) {
    std::mt19937 azar(semilla);
    std::uniform_real_distribution<double> valor(-1.0, 1.0);
    CMatrizCuadrada m(n);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j)
            m.Set(i, j, valor(azar) + (i == j ? 2.0 : 0.0));
    return m;
}

}  // namespace

TEST(CMatrizCuadrada, MatrizGiros3DHasTheRowsOfTheThreeTurnsMultiplied) {
    const double o = 0.3, f = -0.7, k = 2.1;
    const double rx[3][3] = {{1, 0, 0}, {0, std::cos(o), -std::sin(o)}, {0, std::sin(o), std::cos(o)}};
    const double ry[3][3] = {{std::cos(f), 0, std::sin(f)}, {0, 1, 0}, {-std::sin(f), 0, std::cos(f)}};
    const double rz[3][3] = {{std::cos(k), -std::sin(k), 0}, {std::sin(k), std::cos(k), 0}, {0, 0, 1}};
    CMatrizCuadrada m(5);
    m.MatrizGiros3D(o, f, k);
    ASSERT_EQ(m.GetFilas(), 3u);
    for (unsigned i = 0; i < 3; ++i) {
        for (unsigned j = 0; j < 3; ++j) {
            double esperado = 0.0;
            for (int p = 0; p < 3; ++p)
                for (int q = 0; q < 3; ++q)
                    esperado += rx[i][p] * ry[p][q] * rz[q][j];
            EXPECT_NEAR(m.Get(i, j), esperado, 1e-15) << i << ' ' << j;
        }
    }
    EXPECT_DOUBLE_EQ(m.Get(0, 2), std::sin(f));
    EXPECT_DOUBLE_EQ(m.Get(0, 1), -std::cos(f) * std::sin(k));
    EXPECT_DOUBLE_EQ(m.Get(1, 2), -std::sin(o) * std::cos(f));
}

TEST(CMatrizCuadrada, GetAngulosTakesTheTurnsBackInDegrees) {
    CMatrizCuadrada m(3);
    for (double o = -170.0; o <= 180.0; o += 25.0) {
        for (double f = -89.0; f <= 89.0; f += 17.8) {
            for (double k = -175.0; k <= 180.0; k += 35.5) {
                m.MatrizGiros3D(o * kGrado, f * kGrado, k * kGrado);
                double omega = 0, fi = 0, kappa = 0, escala = 0;
                ASSERT_TRUE(m.GetAngulos(omega, fi, kappa, escala));
                EXPECT_NEAR(omega, o, 1e-10);
                EXPECT_NEAR(fi, f, 1e-10);
                EXPECT_NEAR(kappa, k, 1e-10);
                EXPECT_NEAR(escala, 1.0, 1e-14);
            }
        }
    }
}

TEST(CMatrizCuadrada, GetAngulosLooksStraightUpAndDown) {
    for (const double f : {90.0, -90.0}) {
        CMatrizCuadrada m(3), vuelta(3);
        m.MatrizGiros3D(0.4, f * kGrado, 1.1);
        double omega = 0, fi = 0, kappa = 0, escala = 0;
        ASSERT_TRUE(m.GetAngulos(omega, fi, kappa, escala));
        EXPECT_EQ(omega, 0.0);
        EXPECT_NEAR(fi, f, 1e-9);
        vuelta.MatrizGiros3D(omega * kGrado, fi * kGrado, kappa * kGrado);
        for (unsigned i = 0; i < 9; ++i)
            EXPECT_NEAR(vuelta.Get(i / 3, i % 3), m.Get(i / 3, i % 3), 1e-12);
    }
}

TEST(CMatrizCuadrada, GetAngulosSeesTheScaleAndRefusesWhatIsNoRotation) {
    CMatrizCuadrada m(3);
    m.MatrizGiros3D(0.1, 0.2, 0.3);
    for (unsigned i = 0; i < 9; ++i)
        m.Set(i / 3, i % 3, 2.5 * m.Get(i / 3, i % 3));
    double omega = 0, fi = 0, kappa = 0, escala = 0;
    ASSERT_TRUE(m.GetAngulos(omega, fi, kappa, escala));
    EXPECT_NEAR(escala, 2.5, 1e-14);
    EXPECT_NEAR(kappa, 0.3 / kGrado, 1e-12);

    omega = 77.0;
    EXPECT_FALSE(CMatrizCuadrada(3).GetAngulos(omega, fi, kappa, escala));
    EXPECT_FALSE(CMatrizCuadrada(2).GetAngulos(omega, fi, kappa, escala));
    for (unsigned i = 0; i < 3; ++i)
        m.Set(i, 0, -m.Get(i, 0));
    EXPECT_FALSE(m.GetAngulos(omega, fi, kappa, escala)) << "a mirror";
    EXPECT_EQ(omega, 77.0);
}

TEST(CMatrizCuadrada, InversesLeaveNoResidue) {
    for (const unsigned n : {1u, 2u, 3u, 4u, 7u, 20u}) {
        const CMatrizCuadrada a = Aleatoria(n, n);
        CMatrizCuadrada b(1);
        ASSERT_TRUE(a.InversaPivote(b)) << n;
        EXPECT_LT(Residuo(a, b), 1e-12) << n;

        CMatrizCuadrada simetrica(n);  // a' a
        for (unsigned i = 0; i < n; ++i) {
            for (unsigned j = 0; j < n; ++j) {
                double suma = 0.0;
                for (unsigned k = 0; k < n; ++k)
                    suma += a.Get(k, i) * a.Get(k, j);
                simetrica.Set(i, j, suma);
            }
        }
        CMatrizCuadrada c(1), d(1);
        ASSERT_TRUE(simetrica.InversaCholesky(c)) << n;
        EXPECT_LT(Residuo(simetrica, c), 1e-10) << n;
        ASSERT_TRUE(simetrica.Inversa(d));
        EXPECT_LT(Residuo(simetrica, d), 1e-10) << n;
        ASSERT_TRUE(a.Inversa(d));
        EXPECT_LT(Residuo(a, d), 1e-12) << n;
    }
}

TEST(CMatrizCuadrada, InversaPivoteNeedsNoDiagonal) {
    CMatrizCuadrada m(3), inversa(3);
    m.Set(0, 1, 2.0);
    m.Set(1, 2, 4.0);
    m.Set(2, 0, 8.0);
    ASSERT_TRUE(m.InversaPivote(inversa));
    EXPECT_EQ(inversa.Get(1, 0), 0.5);
    EXPECT_EQ(inversa.Get(2, 1), 0.25);
    EXPECT_EQ(inversa.Get(0, 2), 0.125);
}

TEST(CMatrizCuadrada, AnInverseMayReplaceItsMatrix) {
    CMatrizCuadrada a = Aleatoria(4, 3);
    const CMatrizCuadrada copia = a;
    ASSERT_TRUE(a.InversaPivote(a));
    EXPECT_LT(Residuo(copia, a), 1e-13);
}

TEST(CMatrizCuadrada, MixedUnitsAreNotSingular) {
    CMatrizCuadrada m(3), inversa(3);
    m.Set(0, 0, 1e-12);
    m.Set(1, 1, 1.0);
    m.Set(2, 2, 1e12);
    m.Set(0, 1, 1e-13);
    ASSERT_TRUE(m.InversaPivote(inversa));
    EXPECT_LT(Residuo(m, inversa), 1e-12);
}

TEST(CMatrizCuadrada, SingularMatricesHaveNoInverseAndChangeNothing) {
    CMatrizCuadrada m(3), inversa(2);
    inversa.Set(0, 0, 5.0);
    for (unsigned i = 0; i < 9; ++i)
        m.Set(i / 3, i % 3, double(i + 1));  // the middle row is the mean of the others
    EXPECT_FALSE(m.InversaPivote(inversa));
    EXPECT_FALSE(m.Inversa(inversa));
    EXPECT_FALSE(CMatrizCuadrada(4).InversaPivote(inversa));
    EXPECT_FALSE(CMatrizCuadrada(4).InversaCholesky(inversa));
    m = Aleatoria(3, 1);
    EXPECT_FALSE(m.InversaCholesky(inversa)) << "not symmetric";
    m.Set(1, 1, std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(m.Inversa(inversa));
    m.Redimensiona();
    EXPECT_FALSE(m.Inversa(inversa));
    EXPECT_EQ(inversa.GetFilas(), 2u);
    EXPECT_EQ(inversa.Get(0, 0), 5.0);
}

TEST(CMatrizCuadrada, CholeskyRefusesAnIndefiniteMatrix) {
    CMatrizCuadrada m(2), inversa(2);
    m.Set(0, 1, 1.0);
    m.Set(1, 0, 1.0);
    EXPECT_FALSE(m.InversaCholesky(inversa));
    EXPECT_TRUE(m.Inversa(inversa));
    EXPECT_EQ(inversa.Get(0, 1), 1.0);
}
