#pragma once
// What a print command knows: where its pages go, how they measure, which of them are wanted, and which is due.

#include "platform/CPoint.h"
#include "platform/CString.h"
#include "platform/Tipos.h"

#include <algorithm>

/// Where pages go and how they measure; the host fills it in. The default is an upright A4 page at 300 dots an inch for
/// the user's default printer, in every locale.
struct CDataImpresion {
    CString m_sFichero;            ///< PDF file to write, which is replaced; empty: to the printer
    CString m_sImpresora;          ///< name of the printer's queue; empty: the user's default printer
    CString m_sTitulo;             ///< of the document, as the printer's queue shows it
    double m_dAnchoPapel = 210.0;  ///< millimetres of the upright page, 1 to 5000
    double m_dAltoPapel = 297.0;
    int m_nResolucion = 300;      ///< pixels an inch, 36 to 2400; a side of the page has 65500 pixels at most
    int m_nResolucionVista = 96;  ///< the same for the pages of a preview
    BOOL m_bApaisada = FALSE;     ///< the page lies: width and height change places
    int m_nCopias = 1;            ///< on a printer
    UINT m_nDesde = 1;            ///< first and last page wanted
    UINT m_nHasta = 0xFFFF;
};

/// A print command under way, handed to every printing function of `CView`.
struct CPrintInfo {
    BOOL m_bPreview = FALSE;          ///< pages are pictures for `CView::OnVistaPrevia`
    BOOL m_bDirect = FALSE;           ///< the user isn't to be asked anything
    BOOL m_bContinuePrinting = TRUE;  ///< set to FALSE by a handler: this page is the last one
    UINT m_nCurPage = 0;              ///< page that is due
    CRect m_rectDraw;                 ///< the page: 0, 0 to its size in pixels
    CDataImpresion m_Datos;

    /// Pages of the document: 1 to 1 unless the view says otherwise in `OnPreparePrinting` or `OnBeginPrinting`.
    void SetMinPage(UINT n) { m_nMinPage = n; }
    void SetMaxPage(UINT n) { m_nMaxPage = n; }
    UINT GetMinPage() const { return m_nMinPage; }
    UINT GetMaxPage() const { return m_nMaxPage; }
    /// First and last page to print: what is wanted of what there is.
    UINT GetFromPage() const { return std::max(m_nMinPage, m_Datos.m_nDesde); }
    UINT GetToPage() const { return std::min(m_nMaxPage, m_Datos.m_nHasta); }

  private:
    UINT m_nMinPage = 1, m_nMaxPage = 1;
};
