// Placement of images.

#include "model/CDataImagen.h"

namespace Vertiz {

CDataImagen::CDataImagen(double xOeste, double yNorte, double pixelX, double pixelY, int tipo)
    : m_dXOeste(xOeste), m_dYNorte(yNorte), m_dPixelX(pixelX), m_dPixelY(pixelY), m_nTipo(tipo) {}

bool CDataImagen::GetAngulos(double& a, double& b, double& c, double& d) const {
    return m_DataTrans.GetAngulos(a, b, c, d);
}

}  // namespace Vertiz
