#pragma once
// Points, lines and areas from files of vectors.

#include "model/CLinea.h"
#include "model/IPorcentaje.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <optional>
#include <vector>

namespace Vertiz {

/// How a file of vectors is read.
struct CDataLeeVectores {
    /// The terrain's coordinate system, as CResultadoDEM::m_WKT; empty: the coordinates are the terrain's.
    CString m_WKT;

    /// The attribute that holds heights. Empty: one of the usual names, if the file has it: height, altura, hoehe,
    /// hauteur, in capitals or not.
    CString m_CampoAltura;
};

/// One point, line or area of a file.
struct CFiguraVector {
    enum Clase { PUNTO, LINEA, AREA };

    Clase m_nClase = PUNTO;
    /// Absolute terrain coordinates, z 0 where the file has none. A point has one line of one point, a line one line;
    /// an area has its outline and then those of its courts, all closed.
    std::vector<CLinea<double>> m_Lineas;
    bool m_bConCota = false;         ///< the file gives heights with the coordinates
    std::optional<double> m_Altura;  ///< what the attribute holds
};

/// What came of reading a file of vectors. All texts are one line, for people, without a name of the file in front but
/// in m_Error.
struct CResultadoVectores {
    int m_nResultado = 0;  ///< 1 read, 0 failed: m_Error says why, 2 cancelled
    CString m_Error;       ///< names the file

    std::vector<CFiguraVector> m_Figuras;
    CString m_CampoAltura;            ///< the attribute that heights were taken from; empty for none
    std::vector<CString> m_Mensajes;  ///< what was done beyond plain reading
    std::vector<CString> m_Avisos;    ///< what the user should look at
};

/// Reads the points, lines and areas of all layers of a file of any vector format that OGR reads (GeoPackage,
/// Shapefile, GeoJSON, DXF ...). Collections come apart, curves become lines of short pieces; codes are those of the
/// layers, or of the attribute "Layer" where there is one. Figures whose coordinates have no place in the terrain's
/// system are left out, with a warning.
///
/// @param porcentaje progress at level 1, and cancel; null for none
/// @thread any; the file isn't written to, nor anything beside it
LUMBRA_API CResultadoVectores LeeVectores(const CString& fichero, const CDataLeeVectores& opciones = {},
                                          IPorcentaje* porcentaje = nullptr);

}  // namespace Vertiz
