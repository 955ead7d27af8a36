// Areas of a triangulated terrain, and volumes against planes and other terrains.

#include "model/CTIN.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace Vertiz {
namespace {

// Adds what lies between a triangle and the level 0. @param alturas  of its vertices
void Suma(CVolumen& volumen, double superficie, const std::array<double, 3>& alturas) {
    const auto encima = std::ranges::count_if(alturas, [](double h) { return h > 0.0; });
    const auto debajo = std::ranges::count_if(alturas, [](double h) { return h < 0.0; });
    const double total = superficie * (alturas[0] + alturas[1] + alturas[2]) / 3.0;
    if (encima == 0 || debajo == 0) {
        volumen.m_dEncima += std::max(total, 0.0);
        volumen.m_dDebajo += std::max(-total, 0.0);
        if (encima > 0) volumen.m_dSuperficieEncima += superficie;
        if (debajo > 0) volumen.m_dSuperficieDebajo += superficie;
        return;
    }
    // The vertex that is alone on its side of the level cuts a smaller triangle off.
    const double signo = encima == 1 ? 1.0 : -1.0;
    std::size_t solo = 0;
    while (alturas[solo] * signo <= 0.0)
        ++solo;
    const double h = alturas[solo], parte = h / (h - alturas[(solo + 1) % 3]) * (h / (h - alturas[(solo + 2) % 3]));
    const double punta = superficie * parte, cuna = punta * h / 3.0;
    volumen.m_dEncima += signo > 0.0 ? cuna : total - cuna;
    volumen.m_dDebajo += signo > 0.0 ? cuna - total : -cuna;
    volumen.m_dSuperficieEncima += signo > 0.0 ? punta : superficie - punta;
    volumen.m_dSuperficieDebajo += signo > 0.0 ? superficie - punta : punta;
}

}  // namespace

double CTIN::SuperficiePlana() const {
    double suma = 0.0;
    for (unsigned i = 0; i < CantidadTriangulos(); ++i)
        if (EsVisible(i)) suma += Triangulo(i).SuperficiePlana();
    return suma / (Precision() * Precision());
}

double CTIN::SuperficieReal() const {
    double suma = 0.0;
    for (unsigned i = 0; i < CantidadTriangulos(); ++i)
        if (EsVisible(i)) suma += Triangulo(i).SuperficieReal();
    return suma / (Precision() * Precision());
}

CVolumen CTIN::Volumen(double cota, double pendienteX, double pendienteY) const {
    const double precision = Precision();
    CVolumen volumen;
    for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
        if (!EsVisible(i)) continue;
        std::array<double, 3> alturas{};
        for (int k = 0; k < 3; ++k) {
            const CPuntoTIN& p = Vertice(i, k);
            alturas[std::size_t(k)] =
                p.z / precision - (cota + pendienteX * (p.x / precision) + pendienteY * (p.y / precision));
        }
        Suma(volumen, Triangulo(i).SuperficiePlana() / (precision * precision), alturas);
    }
    return volumen;
}

}  // namespace Vertiz
