// Georeferenced images: extents, and the ownership of their raster.
#include "raster/CGeoImagen.h"

#include <span>

namespace Vertiz {

CGeoImagen::CGeoImagen(IRaster* raster, const CDataImagen& imagen, const CDataSemilla& semilla)
    : m_pRaster(raster), m_Imagen(imagen), m_Semilla(semilla) {
    CalculaMaximas();
}

CGeoImagen::~CGeoImagen() { BorraRaster(m_pRaster); }

void CGeoImagen::Clear() {
    BorraRaster(m_pRaster);
    m_pRaster = nullptr;
    CalculaMaximas();
}

int CGeoImagen::Transformacion(const CDataHelmertNTV2& data) {
    const auto& trans = m_Imagen.DataTrans();
    CCoor3D<double> puntos[] = {{m_Imagen.m_dXOeste, m_Imagen.m_dYNorte, trans.m_dCotaReferencia, 0},
                                trans.m_CentroProyeccion};
    const bool conCamara = trans.GetTipo() == CDataTransformacion::CONICA || EsPanorama();
    if (m_Imagen.m_nTipo == CDataImagen::SIN_GEORREFERENCIA && !conCamara) return 0;
    if (!data.Transforma(std::span(puntos).first(1)) || (conCamara && !data.Transforma(std::span(puntos).last(1))))
        return 0;
    m_Imagen.m_dXOeste = puntos[0].x;
    m_Imagen.m_dYNorte = puntos[0].y;
    if (conCamara) m_Imagen.DataTrans().m_CentroProyeccion = puntos[1];
    CalculaMaximas();
    return 1;
}
}  // namespace Vertiz
