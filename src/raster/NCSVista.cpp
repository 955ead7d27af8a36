// The view: a window of an open file, line after line.

#include "raster/NCS.h"
#include "raster/NCSOpenJPEG.h"

#include <algorithm>

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
    m_pBanda.reset();
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
    m_nFila = m_nPrimera = y0;
    m_nFinal = y1 + 1;
    return {};
}

int CView::ReadLineBGR(BYTE* linea) {
    if (m_pVentana == nullptr || m_nFila >= m_nFinal) {
        m_Error = {kFallo, "there are no more lines"};
        return m_Error.GetErrorNumber();
    }
    if (m_pBanda == nullptr || m_nFila >= m_pBanda->ventana.y1) TomaBanda();
    m_Error = m_pBanda->error;
    if (m_Error.GetErrorNumber() == 0) {
        m_pBanda->color.Linea(m_nFila++, m_nX, m_nAncho, linea, m_Componentes);
        const int hasta = std::min(m_pBanda->ventana.y1, m_nFinal);
        if (m_nFila == hasta) m_pVentana->Leidas(*m_pBanda, hasta - std::max(m_pBanda->ventana.y0, m_nPrimera));
    }
    return m_Error.GetErrorNumber();
}

void CView::TomaBanda() {
    m_pBanda.reset();  // before the next one needs memory
    m_pBanda = m_pVentana->Banda(m_nFila);
}

CError CView::Close() {
    m_pBanda.reset();
    m_pVentana.reset();
    m_pImagen.reset();
    m_Informacion = {};
    m_Error = {};
    return {};
}

}  // namespace NCS
