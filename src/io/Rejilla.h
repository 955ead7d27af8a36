#pragma once
// A grid of heights as a file holds it, before it becomes a model: samples, their place, their system. Internal.

#include "io/Lectura.h"
#include "io/LeeDEM.h"
#include "model/CMatriz.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace Vertiz::io {

/// From the place in the matrix (column, row; the middle of sample (0, 0) is (0, 0)) to coordinates:
/// x = t[0] + column t[1] + row t[2], y = t[3] + column t[4] + row t[5].
using Colocacion = std::array<double, 6>;

/// Heights and where they lie. Once read, rows run from the south and columns from the west, unless it is rotated.
struct Rejilla {
    static constexpr float kVacio = -9999.0f;  ///< a sample without height, as long as heights don't reach it

    CMatriz<float> m_Alturas;  ///< voids are NaN
    Colocacion m_Colocacion{};
    bool m_bGeorreferida = false;
    Sistema m_Sistema;  ///< null when not known

    unsigned Columnas() const { return m_Alturas.GetColumnas(); }
    unsigned Filas() const { return m_Alturas.GetFilas(); }
};

/// What the heights of a grid are like.
struct Resumen {
    std::size_t m_nValidas = 0, m_nInfinitas = 0;
    double m_dMin = 0.0, m_dMax = 0.0;
    double m_dMin2 = 0.0, m_dMax2 = 0.0;             ///< the next ones after the least and the greatest
    std::size_t m_nRepiteMin = 0, m_nRepiteMax = 0;  ///< how often the least and the greatest occur

    void Nueva(double altura);
};

/// Opens the file and reads the samples of its first band.
/// @throws CFallo, CCancelado, std::bad_alloc
Rejilla LeeRejilla(const std::string& ruta, const CDataLeeDEM& opciones, const CAvance& avance,
                   CResultadoDEM& resultado, Resumen& resumen);

/// The grid resampled north up, in another system or (with null) in its own. What `origen` holds is lost.
/// @throws CFallo, CCancelado, std::bad_alloc
Rejilla Reproyecta(Rejilla& origen, OGRSpatialReferenceH destino, std::size_t maxMuestras, const CAvance& avance);

}  // namespace Vertiz::io
