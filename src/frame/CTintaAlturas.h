#pragma once
// Internal. The colours of heights, one after the other.

#include "model/CDataGamaColor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

/// Finds the colours of heights in a ramp. It remembers between which stops the last height lay, since heights that
/// follow each other in a terrain lie close together, and a grid asks for millions.
class CTintaAlturas {
  public:
    /// @param paradas must outlive this object, unchanged
    explicit CTintaAlturas(const std::vector<Vertiz::CColorCota>& paradas) : m_Paradas(paradas) {}

    /// Channels from 0 to 1; see CGL::glColorTintaHipsometrica.
    std::array<float, 3> operator()(double z, bool bInterpolar, double sombra) {
        int canales[3] = {0, 0, 0};
        if (Situa(z)) {
            const Vertiz::CColorCota &a = m_Paradas[m_nAlta - 1], &b = m_Paradas[m_nAlta];
            const int bajos[3] = {a.m_nRojo, a.m_nVerde, a.m_nAzul}, altos[3] = {b.m_nRojo, b.m_nVerde, b.m_nAzul};
            const double t = bInterpolar ? (z - a.m_dCota) / (b.m_dCota - a.m_dCota) : 0.0;
            for (int i = 0; i < 3; ++i)
                canales[i] = bInterpolar ? Canal((altos[i] - bajos[i]) * t + 0.5 + bajos[i]) : bajos[i];
        }
        if (sombra >= 0.0)
            for (int& canal : canales)
                canal = Sombreado(canal, sombra);
        // Channels are not clamped: below the first stop they wrap.
        return {kCanales[canales[0] & 0xFF], kCanales[canales[1] & 0xFF], kCanales[canales[2] & 0xFF]};
    }

  private:
    // The values of a channel as OpenGL takes them: a division costs more.
    static constexpr std::array<float, 256> kCanales = [] {
        std::array<float, 256> canales{};
        for (std::size_t i = 0; i < 256; ++i)
            canales[i] = static_cast<float>(i) / 255.0F;
        return canales;
    }();

    // Looks for the first stop above z, from the second on. There is none for fewer than two stops, and at and above
    // the last one.
    bool Situa(double z) {
        const std::size_t n = m_Paradas.size();
        const bool bSigue =
            m_nAlta < n && z < m_Paradas[m_nAlta].m_dCota && (m_nAlta == 1 || z >= m_Paradas[m_nAlta - 1].m_dCota);
        if (bSigue) return true;
        if (n < 2) return false;
        const auto alta = std::upper_bound(m_Paradas.begin() + 1, m_Paradas.end(), z,
                                           [](double cota, const auto& p) { return cota < p.m_dCota; });
        m_nAlta = static_cast<std::size_t>(alta - m_Paradas.begin());
        return m_nAlta < n;
    }

    // A channel without its fraction. Heights far below the ramp give channels that no integer holds: 0.
    static int Canal(double v) { return std::abs(v) < 2e9 ? static_cast<int>(v) : 0; }

    static int Sombreado(int canal, double sombra) {
        if (sombra < 0.5) return Canal(canal * 2.0 * sombra + 0.5);
        return Canal((255.0 - canal) * (2.0 * sombra - 1.0) + canal);
    }

    const std::vector<Vertiz::CColorCota>& m_Paradas;
    std::size_t m_nAlta = static_cast<std::size_t>(-1);  // the upper stop of the last height; past the end for none
};
