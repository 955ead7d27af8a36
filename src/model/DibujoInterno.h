#pragma once
// Internal. What the source files of CDibujo share.

#include "model/CDibujo.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace Vertiz {

/// A polyline that is there: the only kind that areas and joining look at.
template <class T>
bool EsLinea(const CEntidadDigi<T>& e) {
    return e.GetTipoEntidad() == CTipoEntidad::Linea && !e.EsBorrado();
}

/// Points nearer than this in plan, stored units, are the same point: integers only when equal.
template <class T>
inline constexpr double kResolucion = std::is_integral_v<T> ? 0.25 : 0.01;

/// The places where lines end, rounded to the resolution, with the line that last ended there. What it says is checked
/// against the line each time, so that lines may change behind its back.
template <class T>
struct CDibujo<T>::CExtremos {
    static std::pair<std::int64_t, std::int64_t> Clave(const CCoor3D<T>& p) {
        if constexpr (std::is_integral_v<T>) {
            return {p.x, p.y};
        } else {
            const auto redondea = [](double v) {
                const double n = std::round(v / kResolucion<T>);
                return std::abs(n) < 1e18 ? std::int64_t(n) : 0;  // false for what isn't finite, too
            };
            return {redondea(p.x), redondea(p.y)};
        }
    }

    struct CMezcla {
        std::size_t operator()(const std::pair<std::int64_t, std::int64_t>& c) const {
            return (std::uint64_t(c.first) * 0x9E3779B97F4A7C15u ^ std::uint64_t(c.second)) * 0xD6E8FEB86659FD93u >> 16;
        }
    };

    std::unordered_map<std::pair<std::int64_t, std::int64_t>, unsigned, CMezcla> lineas;
};

/// What tables hide; what they don't know is seen. Points are looked up once for each class and echo, not each time.
class CVisibilidad {
  public:
    CVisibilidad(const CDigiTab* digi, const CDigiTab* lidar, const CDigiTab* eco);

    bool AlgoOculto() const { return m_pDigi || m_bPuntosOcultos; }
    bool PuntosOcultos() const { return m_bPuntosOcultos; }
    bool Ve(const CTipoDat& tipo) const;
    template <class T>
    bool VePunto(const CCoor3D<T>& p) const {
        const auto palabra = std::uint32_t(p.GetTipoCompleto());
        return !m_ClaseOculta[palabra >> 24] && !m_EcoOculto[palabra >> 16 & 63];
    }

  private:
    const CDigiTab* m_pDigi = nullptr;  // null when it hides nothing
    bool m_bPuntosOcultos = false;
    std::array<bool, 256> m_ClaseOculta{};
    std::array<bool, 64> m_EcoOculto{};  // return number, and number of returns times 8
};

}  // namespace Vertiz
