#pragma once
// Triangulated terrains to files.

#include "model/CTIN.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <span>

namespace Vertiz {

/// A surface to write. The terrain is the caller's.
struct CSuperficieEscrita {
    CString m_Nombre;
    const CTIN* m_pTIN = nullptr;
};

/// Writes terrains as the surfaces of a LandXML 1.2 file, in absolute coordinates: points that aren't deleted, shown
/// triangles, deleted ones as invisible faces where they have all their points, and breaklines.
/// @param unidad  of lengths, as LandXML has them: "meter", "foot", "USSurveyFoot" ...; empty is "meter"
/// @param epsg    code of the coordinate system; may be empty
/// @param error   out: names the file and says why; emptied otherwise
/// @return whether the file was written; a file of that name stays as it was when not
LUMBRA_API bool EscribeLandXML(const CString& fichero, std::span<const CSuperficieEscrita> superficies,
                               const CString& unidad, const CString& epsg, CString& error);

/// Writes the shown triangles of a terrain as a Wavefront OBJ file: x, y and z in absolute coordinates, z upwards.
/// Otherwise as EscribeLandXML.
LUMBRA_API bool EscribeOBJ(const CString& fichero, const CTIN& tin, CString& error);

}  // namespace Vertiz
