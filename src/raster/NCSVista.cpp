// The view: a window of an open file, line after line.

#include "raster/NCS.h"
#include "raster/NCSOpenJPEG.h"

namespace NCS {

CView::CView() = default;
CView::~CView() = default;

CError CView::Open(const CString& ruta) {
    Close();
    m_pImagen = CImagenJ2K::Abre(ruta, m_Error);
    if (m_pImagen != nullptr) m_Informacion = m_pImagen->Informacion();
    return m_Error;
}

CError CView::SetView(const std::vector<UINT>& bandas, int x0, int y0, int x1, int y1, int ancho, int alto) {
    m_pVentana.reset();
    m_Error = {};
    if (m_pImagen == nullptr)
        m_Error = {kFallo, "no file is open"};
    else if (x0 < 0 || y0 < 0 || x1 < x0 || y1 < y0 || x1 >= m_Informacion.m_nAncho || y1 >= m_Informacion.m_nAlto)
        m_Error = {kFallo, "the window lies outside the picture"};
    else if (ancho != x1 - x0 + 1 || alto != y1 - y0 + 1)
        m_Error = {kFallo, "views are at full resolution only"};
    for (const UINT banda : bandas)
        if (banda >= static_cast<UINT>(m_Informacion.m_nBandas)) m_Error = {kFallo, "there is no such band"};
    if (m_Error.GetErrorNumber() != 0) return m_Error;

    m_pVentana = m_pImagen->Ventana({x0, y0, x1 + 1, y1 + 1});
    m_nX = x0;
    m_nAncho = ancho;
    m_nFila = y0;
    m_nFinal = y1 + 1;
    return {};
}

int CView::ReadLineBGR(BYTE* linea) {
    if (m_pVentana == nullptr || m_nFila >= m_nFinal) {
        m_Error = {kFallo, "there are no more lines"};
        return m_Error.GetErrorNumber();
    }
    m_Error = m_pVentana->Decodifica();
    if (m_Error.GetErrorNumber() == 0) m_pVentana->Linea(m_nFila++, m_nX, m_nAncho, linea, m_Componentes);
    return m_Error.GetErrorNumber();
}

CError CView::Close() {
    m_pVentana.reset();
    m_pImagen.reset();
    m_Informacion = {};
    m_Error = {};
    return {};
}

}  // namespace NCS
