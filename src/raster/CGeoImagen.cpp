// Georeferenced images: extents, and the ownership of their raster.

#include "raster/CGeoImagen.h"

namespace Vertiz {

CGeoImagen::CGeoImagen(IRaster* raster, const CDataImagen& imagen, const CDataSemilla& semilla)
    : m_pRaster(raster), m_Imagen(imagen), m_Semilla(semilla) {
    CalculaMaximas();
}

CGeoImagen::~CGeoImagen() {
    BorraRaster(m_pRaster);
}

void CGeoImagen::Clear() {
    BorraRaster(m_pRaster);
    m_pRaster = nullptr;
    CalculaMaximas();
}

void CGeoImagen::CalculaMaximas() {
    const bool absoluta = m_Imagen.m_nTipo == CDataImagen::ABSOLUTA;
    m_Origen = absoluta ? CCoor3D<double>(m_Semilla.GetX(), m_Semilla.GetY(), m_Semilla.GetZ()) : CCoor3D<double>();
    m_Maximas.Borra();

    const auto& trans = m_Imagen.DataTrans();
    if (EsPanorama()) {
        const CCoor3D<double> medio(0.5, 0.5, 0.5);
        m_Maximas.Nuevo(trans.m_CentroProyeccion - medio);
        m_Maximas.Nuevo(trans.m_CentroProyeccion + medio);
        return;
    }
    const bool georreferida = m_Imagen.m_nTipo != CDataImagen::SIN_GEORREFERENCIA;
    const double pixelX = georreferida ? m_Imagen.m_dPixelX : 1.0, pixelY = georreferida ? m_Imagen.m_dPixelY : 1.0;
    if (!m_pRaster || !(pixelX > 0.0) || !(pixelY > 0.0)) return;
    const double oeste = georreferida ? m_Imagen.m_dXOeste : 0.0, norte = georreferida ? m_Imagen.m_dYNorte : 0.0;
    const double factor = m_pRaster->Factor100();
    m_Maximas.Nuevo({oeste, norte, trans.m_dCotaReferencia});
    m_Maximas.Nuevo({oeste + m_pRaster->Ancho100() / factor * pixelX, norte - m_pRaster->Alto100() / factor * pixelY,
                     trans.m_dCotaReferencia});
}

int CGeoImagen::Transformacion(const CDataHelmertNTV2& data) {
    const auto& trans = m_Imagen.DataTrans();
    CCoor3D<double> esquina(m_Imagen.m_dXOeste, m_Imagen.m_dYNorte, trans.m_dCotaReferencia);
    CCoor3D<double> camara = trans.m_CentroProyeccion;
    const bool conEsquina = m_Imagen.m_nTipo == CDataImagen::ABSOLUTA;
    const bool conCamara = EsPanorama() || trans.GetTipo() == CDataTransformacion::CONICA;
    if (!conEsquina && !conCamara) return 0;
    if (conEsquina && !data.Transforma({&esquina, 1})) return 0;
    if (conCamara && !data.Transforma({&camara, 1})) return 0;

    m_Imagen.m_dXOeste = esquina.x;
    m_Imagen.m_dYNorte = esquina.y;
    m_Imagen.DataTrans().m_CentroProyeccion = camara;
    CalculaMaximas();
    return 1;
}

}  // namespace Vertiz
