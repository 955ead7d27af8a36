#pragma once
// Pictures of the terrain from above, brought to the terrain's coordinate system.

#include "raster/RasterPropio.h"
#include "model/CDataImagen.h"
#include "model/CMaximas.h"
#include "model/IPorcentaje.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <vector>

namespace Vertiz {

/// How an image is read.
struct CDataLeeImagen {
    /// The terrain's coordinate system, as CResultadoDEM::m_WKT; empty: the image's coordinates are the terrain's.
    CString m_WKT;

    /// Only what lies in this part of the terrain is read, absolute terrain units; the whole image when it is empty.
    CMaximas<double> m_Zona;

    /// Pixels smaller than this, terrain units, are averaged to ones of this size.
    double m_dPixelMinimo = 0.0;

    /// Cells of the grid that the image goes over, counted from the zone's south-west corner; 0 for none. The image is
    /// widened to whole cells then, and its pixels are whole parts of them, or several cells wide, so that the grid's
    /// cells either have a colour or haven't. Cells are taken as high as they are wide.
    double m_dCelda = 0.0;
};

/// What came of reading an image. All texts are one line, for people, without a name of the file in front but in
/// m_Error.
struct CResultadoImagen {
    int m_nResultado = 0;  ///< 1 read, 0 failed: m_Error says why, 2 cancelled
    CString m_Error;       ///< names the file

    RasterPropio m_pRaster;  ///< 24 bits; release() hands it over to who frees it by Borrar
    CDataImagen m_Imagen;    ///< its place, in absolute terrain coordinates; pixels are square
    /// 1 for each pixel that the file has a colour for, 0 for the others, which are white; rows as those of the raster,
    /// the southern one first.
    std::vector<unsigned char> m_Cubiertos;

    std::vector<CString> m_Mensajes;  ///< what was done beyond plain reading
};

/// Reads a picture of the terrain: a georeferenced file of any format that GDAL reads, in colours, greys or with a
/// palette, of 8 bits. Where its system isn't the terrain's, and where it is rotated or its pixels aren't square, it is
/// resampled, bilinearly; otherwise its pixels come as they are.
///
/// It fails for a file without georeference, for samples of more than 8 bits, for an image that lies off the zone or
/// has no colour in it, and for one that would have more than 30 000 pixels a side.
///
/// @param porcentaje progress at level 1, and cancel; null for none
/// @thread any; the file isn't written to, nor anything beside it
LUMBRA_API CResultadoImagen LeeImagen(const CString& fichero, const CDataLeeImagen& opciones = {},
                                      IPorcentaje* porcentaje = nullptr);

}  // namespace Vertiz
