// The patch of a cell, and the first root of its polynomial along a ray, by subdivision.

#include "model/Parche.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Vertiz {

namespace {

// Exact at both ends, and at equal ones.
double Mezcla(double a, double b, double t) {
    return a == b ? a : a * (1.0 - t) + b * t;
}

// A polynomial by its Bernstein coefficients.
struct Bernstein {
    int m_nGrado = 0;
    std::array<double, 7> m_Coeficientes{};

    // A curve has no more roots than its coefficients have changes of sign.
    bool PuedeTenerRaiz() const {
        const auto fin = m_Coeficientes.begin() + m_nGrado + 1;
        const auto [menor, mayor] = std::minmax_element(m_Coeficientes.begin(), fin);
        return *menor <= 0.0 && *mayor >= 0.0;
    }

    // The halves before and after the middle.
    std::pair<Bernstein, Bernstein> Parte() const {
        Bernstein antes{m_nGrado, {}}, despues = *this;
        for (int i = 0; i <= m_nGrado; ++i) {
            antes.m_Coeficientes[i] = despues.m_Coeficientes[0];
            for (int j = 0; j < m_nGrado - i; ++j)
                despues.m_Coeficientes[j] = 0.5 * (despues.m_Coeficientes[j] + despues.m_Coeficientes[j + 1]);
        }
        return {antes, despues};
    }
};

// The first root from 0 to 1. Halving 50 times leaves less than doubles can tell apart.
std::optional<double> PrimeraRaiz(const Bernstein& p, double inicio, double largo, int nivel) {
    if (!p.PuedeTenerRaiz()) return std::nullopt;
    if (p.m_Coeficientes[0] == 0.0) return inicio;
    if (nivel == 50) return inicio + 0.5 * largo;
    const auto [antes, despues] = p.Parte();
    largo *= 0.5;
    if (const auto raiz = PrimeraRaiz(antes, inicio, largo, nivel + 1)) return raiz;
    return PrimeraRaiz(despues, inicio + largo, largo, nivel + 1);
}

// Combinations of n things taken k at a time, for n up to 6.
double Combinaciones(int n, int k) {
    double c = 1.0;
    for (int i = 1; i <= k; ++i)
        c = c * (n - k + i) / i;
    return c;
}

}  // namespace

Parche::Parche(const std::array<EsquinaParche, 4>& esquinas, bool bSuave) : m_nGrado(bSuave ? 3 : 1) {
    for (int j = 0; j <= m_nGrado; ++j) {
        for (int i = 0; i <= m_nGrado; ++i) {
            // Each corner rules the control points nearest to it; those inside lie a third of its slopes away.
            const bool bEste = 2 * i > m_nGrado, bNorte = 2 * j > m_nGrado;
            const EsquinaParche& e = esquinas[(bNorte ? 2 : 0) + (bEste ? 1 : 0)];
            const double dx = double(bEste ? i - m_nGrado : i) / 3.0, dy = double(bNorte ? j - m_nGrado : j) / 3.0;
            m_Red[j][i] = bSuave ? e.m_dCota + dx * e.m_dPendienteX + dy * e.m_dPendienteY : e.m_dCota;
        }
    }
    m_dMinima = m_dMaxima = m_Red[0][0];
    for (int j = 0; j <= m_nGrado; ++j) {
        for (int i = 0; i <= m_nGrado; ++i) {
            m_dMinima = std::min(m_dMinima, m_Red[j][i]);
            m_dMaxima = std::max(m_dMaxima, m_Red[j][i]);
        }
    }
}

// The polar form of a curve at `inicio`, and `finales` times at `fin`: a control point of its part between the two.
double Parche::Flor(Puntos puntos, double inicio, double fin, int finales) const {
    for (int paso = m_nGrado; paso > 0; --paso)
        for (int i = 0; i < paso; ++i)
            puntos[i] = Mezcla(puntos[i], puntos[i + 1], paso <= finales ? fin : inicio);
    return puntos[0];
}

double Parche::Cota(PuntoParche p) const {
    Puntos columna{};
    for (int j = 0; j <= m_nGrado; ++j)
        columna[j] = Flor(m_Red[j], p.u, p.u, 0);
    return Flor(columna, p.v, p.v, 0);
}

std::optional<double> Parche::PrimerCorte(PuntoParche a, double za, PuntoParche b, double zb) const {
    // Control points of the part of the patch that has a and b in opposite corners; its diagonal is the line.
    std::array<Puntos, kMaximo> parte{};
    for (int i = 0; i <= m_nGrado; ++i) {
        Puntos columna{};
        for (int j = 0; j <= m_nGrado; ++j)
            columna[j] = Flor(m_Red[j], a.u, b.u, i);
        for (int j = 0; j <= m_nGrado; ++j)
            parte[j][i] = Flor(columna, a.v, b.v, j);
    }
    Bernstein diferencia{2 * m_nGrado, {}};
    for (int k = 0; k <= 2 * m_nGrado; ++k) {
        double cota = 0.0;
        for (int i = std::max(0, k - m_nGrado); i <= std::min(k, m_nGrado); ++i)
            cota += Combinaciones(m_nGrado, i) * Combinaciones(m_nGrado, k - i) * parte[k - i][i];
        diferencia.m_Coeficientes[k] = Mezcla(za, zb, k / (2.0 * m_nGrado)) - cota / Combinaciones(2 * m_nGrado, k);
    }
    return PrimeraRaiz(diferencia, 0.0, 1.0, 0);
}

}  // namespace Vertiz
