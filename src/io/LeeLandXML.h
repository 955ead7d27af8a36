#pragma once
// Triangulated terrains from LandXML files.

#include "model/CTIN.h"
#include "model/IPorcentaje.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <memory>
#include <vector>

namespace Vertiz {

/// One surface of a file.
struct CSuperficieLandXML {
    CString m_Nombre, m_Descripcion;
    std::unique_ptr<CTIN> m_pTIN;  ///< never null; faces marked invisible are deleted triangles
};

/// What came of reading a LandXML file. All texts are one line, for people, without a name of the file in front but in
/// m_Error.
struct CResultadoLandXML {
    int m_nResultado = 0;  ///< 1 read, 0 failed: m_Error says why, 2 cancelled
    CString m_Error;       ///< names the file, and the line where there is one

    std::vector<CSuperficieLandXML> m_Superficies;  ///< in the order of the file, on one seed
    CString m_Unidad;               ///< of lengths: "meter", "foot", "USSurveyFoot" ...; empty: not told
    CString m_EPSG;                 ///< code of the coordinate system; empty when the file has none
    std::vector<CString> m_Avisos;  ///< what the user should look at
};

/// Reads all surfaces of a LandXML file (schemas 1.0 to 2.0, http://www.landxml.org), with their points, faces and
/// breaklines. In the file a point is northing, easting and height. Coordinates keep three decimals, more where the
/// terrain is tiny, fewer where it is beyond the integers then; the seed's offset is a whole number of units. Sides of
/// triangles that a breakline of the surface runs along from corner to corner are marked as such.
///
/// A file with declarations of its own (an internal DTD) is refused, and so is one nested deeper than any LandXML is.
/// @param porcentaje progress at level 1, and cancel; null for none
/// @thread any
LUMBRA_API CResultadoLandXML LeeLandXML(const CString& fichero, IPorcentaje* porcentaje = nullptr);

}  // namespace Vertiz
