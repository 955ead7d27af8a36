#pragma once
// Internal. The colours of heights, one after the other.

#include "model/CDataGamaColor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

/// Finds the colours of heights in a ramp. It keeps the stretch of the ramp that the last height was in, since heights
/// that follow each other in a terrain lie close together, and a grid asks for millions.
class CTintaAlturas {
  public:
    /// @param paradas must outlive this object, unchanged
    explicit CTintaAlturas(const std::vector<Vertiz::CColorCota>& paradas) : m_Paradas(paradas) {}

    /// Channels from 0 to 1; see CGL::glColorTintaHipsometrica.
    std::array<float, 3> operator()(double z, bool bInterpolar, double sombra) {
        if (!(z >= m_dDesde && z < m_dHasta)) Situa(z);
        const double t = bInterpolar ? (z - m_dCota) / m_dDesnivel : 0.0;
        const bool cerca = std::abs(t) < kLejos;
        std::array<float, 3> color{};
        for (std::size_t i = 0; i < 3; ++i) {
            const double v = m_Rangos[i] * t + 0.5 + m_Bajos[i];
            int canal = cerca ? static_cast<int>(v) : Canal(v);
            if (sombra >= 0.0) canal = Sombreado(canal, sombra);
            color[i] = kCanales[canal & 0xFF];  // not clamped: below the first stop they wrap
        }
        return color;
    }

  private:
    static constexpr double kLejos = 7e6;  // nearer than this many times the stretch every channel fits an integer

    // The values of a channel as OpenGL takes them: a division costs more.
    static constexpr std::array<float, 256> kCanales = [] {
        std::array<float, 256> canales{};
        for (std::size_t i = 0; i < 256; ++i)
            canales[i] = static_cast<float>(i) / 255.0F;
        return canales;
    }();

    // Takes the stretch below the first stop above z, from the second stop on. There is none for fewer than two stops,
    // and at and above the last one: that is black.
    void Situa(double z) {
        constexpr double kInfinito = std::numeric_limits<double>::infinity();
        const std::size_t n = m_Paradas.size();
        const auto alta = n < 2 ? m_Paradas.end()
                                : std::upper_bound(m_Paradas.begin() + 1, m_Paradas.end(), z,
                                                   [](double cota, const auto& p) { return cota < p.m_dCota; });
        if (alta == m_Paradas.end()) {
            m_dDesde = n < 2 ? -kInfinito : m_Paradas.back().m_dCota;
            m_dHasta = kInfinito;
            m_Bajos = m_Rangos = {};
            return;
        }
        const Vertiz::CColorCota& a = *(alta - 1);
        m_dDesde = alta == m_Paradas.begin() + 1 ? -kInfinito : a.m_dCota;
        m_dHasta = alta->m_dCota;
        m_dCota = a.m_dCota;
        m_dDesnivel = alta->m_dCota - a.m_dCota;
        m_Bajos = {double(a.m_nRojo), double(a.m_nVerde), double(a.m_nAzul)};
        m_Rangos = {alta->m_nRojo - m_Bajos[0], alta->m_nVerde - m_Bajos[1], alta->m_nAzul - m_Bajos[2]};
    }

    // A channel without its fraction; 0 where no integer holds it.
    static int Canal(double v) { return std::abs(v) < 2e9 ? static_cast<int>(v) : 0; }

    static int Sombreado(int canal, double sombra) {
        if (sombra < 0.5) return Canal(canal * 2.0 * sombra + 0.5);
        return Canal((255.0 - canal) * (2.0 * sombra - 1.0) + canal);
    }

    const std::vector<Vertiz::CColorCota>& m_Paradas;
    double m_dDesde = 0.0, m_dHasta = 0.0;        // heights of the stretch: none yet
    double m_dCota = 0.0, m_dDesnivel = 1.0;      // of its lower stop, and up to the upper one
    std::array<double, 3> m_Bajos{}, m_Rangos{};  // channels of the lower stop, and what the upper one has more
};
