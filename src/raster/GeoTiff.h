#pragma once
// Internal. What both readers of TIFF make of the GeoTIFF tags of a directory.

#include "raster/CGeorreferencia.h"

#include <cstdint>
#include <vector>

namespace Vertiz {

/// The values of the tags as they stand in the file; a tag that it lacks is empty. GeoTIFF 1.0, chapter 2.4 and 2.6.
struct EtiquetasGeoTiff {
    std::vector<double> m_Escala;
    std::vector<double> m_PuntosControl;
    std::vector<double> m_Transformacion;
    std::vector<std::uint16_t> m_Claves;  ///< the key directory: a header of 4 numbers, then 4 for each key
    std::vector<double> m_Dobles;         ///< values of keys that lie outside the directory

    /// At least one of the tags that place a picture or tell its reference system.
    bool HayAlguna() const {
        return !m_Escala.empty() || !m_PuntosControl.empty() || !m_Transformacion.empty() || !m_Claves.empty();
    }
    /// Keys that the directory really holds, whatever its header claims.
    std::size_t CuentaClaves() const;
    /// The value of a key: inline, or a double of the file, rounded towards 0.
    /// @return false when the file lacks the key or its value is a text
    bool Clave(std::uint16_t numero, int& valor) const;
    /// Puts what the tags tell into a georeferencing: the place as a whole, and the keys that are there.
    void Llena(CGeorreferencia& georreferencia) const;
};

/// Dots per inch from a resolution in a TIFF's unit (2 inches, 3 centimetres); 1 for none.
float ResolucionPulgada(unsigned unidad, float resolucion);

}  // namespace Vertiz
