#pragma once
// Elevation grids from files, in any raster format that GDAL reads.

#include "model/CDEM.h"
#include "model/CMaximas.h"
#include "model/IPorcentaje.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <memory>
#include <optional>
#include <vector>

namespace Vertiz {

/// How an elevation file is read.
struct CDataLeeDEM {
    /// The value, as the file holds it, that stands for "no height"; in place of what the header says.
    std::optional<double> m_Nulo;

    /// Leave a grid in degrees as it is. Otherwise it is brought to the UTM zone of its centre.
    bool m_bConservaGrados = false;

    /// The system that the grid is brought to, as CResultadoDEM::m_WKT of another one; empty: its own, or UTM. A file
    /// without a system is taken as being in this one.
    CString m_WKT;

    /// A grid with more samples is thinned out: every second, third, ... sample of rows and columns is taken, as it is.
    std::size_t m_nMaxMuestras = 64'000'000;
};

/// A value far from all others, repeated, that the file doesn't declare as void.
struct CMarcaDEM {
    double m_dValor = 0;
    std::size_t m_nMuestras = 0;  ///< that hold it
    bool m_bVacia = false;        ///< taken as void, since it lies below the grid's null level; otherwise as a height
};

/// What came of reading an elevation file. All texts are one line, for people, without a name of the file in front but
/// in m_Error.
struct CResultadoDEM {
    int m_nResultado = 0;          ///< 1 read, 0 failed: m_Error says why, 2 cancelled
    CString m_Error;               ///< names the file
    std::unique_ptr<CDEM> m_pDEM;  ///< the grid, in absolute coordinates, with a seed that keeps local ones small

    std::vector<CString> m_Mensajes;  ///< what was done beyond plain reading
    std::vector<CString> m_Avisos;    ///< what the user should look at
    std::vector<CMarcaDEM> m_Marcas;  ///< values that may stand for "no height": CDataLeeDEM::m_Nulo settles them

    CString m_Formato;  ///< GDAL's name of the format
    CString m_Sistema;  ///< name of the grid's coordinate system; empty when the file has none
    CString m_WKT;      ///< the same system as WKT: what else belongs on the grid is brought to it
    CString m_Unidad;   ///< of the horizontal coordinates: "metre", "degree", ...; empty when not known
    unsigned m_nColumnasFichero = 0, m_nFilasFichero = 0;
    unsigned m_nPaso = 1;          ///< every how many samples one was taken
    bool m_bReproyectado = false;  ///< brought to UTM, or turned north up
    std::optional<double> m_Nulo;  ///< the void value in force, of the header or of the options
    std::size_t m_nVacios = 0;     ///< samples without height in the grid
};

/// Reads the first band of a raster file as an elevation model.
///
/// Samples stand in the middle of the file's cells; cells need not be square. Heights are value x scale + offset as the
/// header has them. Voids are: the void value, whatever a mask of the file hides, what isn't finite, and the heights at
/// or below the grid's null level, which is CDEM::kNuloHabitual, or below everything for a grid that really goes
/// deeper. Rasters with the south or the east first are turned round; rotated ones are resampled to north up.
/// Resampling is bilinear between valid heights; a cell whose nearest sample is void stays void.
///
/// @param fichero    path
/// @param porcentaje progress at level 1, and cancel; null for none
/// @thread any; the file isn't written to, nor anything beside it
LUMBRA_API CResultadoDEM LeeDEM(const CString& fichero, const CDataLeeDEM& opciones = {},
                                IPorcentaje* porcentaje = nullptr);

}  // namespace Vertiz
