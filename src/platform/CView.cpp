// The view: painting, and the order of a print command.

#include "platform/CView.h"

#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/Errores.h"
#include "platform/Impresora.h"
#include "platform/Objetos.h"

#include <algorithm>
#include <memory>
#include <utility>

using namespace plataforma;

CView::CView() = default;
CView::~CView() = default;

void CView::OnInitialUpdate() {
    Invalidate();
}

void CView::OnPaint() {
    CPaintDC dc(this);
    OnDraw(&dc);
}

LRESULT CView::WindowProc(UINT mensaje, WPARAM w, LPARAM l) {
    if (mensaje == WM_CREATE) m_bActualizada = false;  // a second window is to be filled anew
    if (mensaje != WM_INITIALUPDATE) return CWnd::WindowProc(mensaje, w, l);
    if (!std::exchange(m_bActualizada, true)) OnInitialUpdate();
    return 0;
}

BOOL CView::OnCommand(WPARAM w, LPARAM l) {
    switch (LOWORD(w)) {
        case ID_FILE_PRINT:
            OnFilePrint();
            return TRUE;
        case ID_FILE_PRINT_DIRECT:
            OnFilePrintDirect();
            return TRUE;
        case ID_FILE_PRINT_PREVIEW:
            OnFilePrintPreview();
            return TRUE;
        default:
            return CWnd::OnCommand(w, l);
    }
}

BOOL CView::OnPreparePrinting(CPrintInfo* pInfo) {
    return DoPreparePrinting(pInfo);
}

BOOL CView::DoPreparePrinting(CPrintInfo* pInfo) {
    CDataImpresion& datos = pInfo->m_Datos;
    if (!MidePagina(datos, pInfo->m_bPreview ? datos.m_nResolucionVista : datos.m_nResolucion)) return FALSE;
    return pInfo->m_bPreview || !datos.m_sFichero.IsEmpty() || BuscaImpresora(datos.m_sImpresora);
}

void CView::OnBeginPrinting(CDC*, CPrintInfo*) {}

void CView::OnPrint(CDC* pDC, CPrintInfo*) {
    OnDraw(pDC);
}

void CView::OnEndPrinting(CDC*, CPrintInfo*) {}
void CView::OnVistaPrevia(CBitmap&, CPrintInfo*) {}

BOOL CView::OnFilePrint() {
    return Imprime(false, false);
}
BOOL CView::OnFilePrintDirect() {
    return Imprime(false, true);
}
BOOL CView::OnFilePrintPreview() {
    return Imprime(true, false);
}

BOOL CView::Imprime(bool previa, bool directa) {
    CPrintInfo info;
    info.m_bPreview = previa;
    info.m_bDirect = directa;
    info.m_Datos = m_Impresion;
    // What is said when a handler says no and gives no reason.
    AnotaFallo("printing was given up by the view.", ERROR_CANCELLED);
    if (!OnPreparePrinting(&info)) return FALSE;
    return previa ? PrevePaginas(info) : ImprimePaginas(info);
}

// Draws the page that is due.
// @return false when a handler has given the document up, or drawing has
bool CView::ImprimePagina(CDC& dc, CPrintInfo& info) {
    info.m_rectDraw = CRect(0, 0, dc.GetDeviceCaps(HORZRES), dc.GetDeviceCaps(VERTRES));
    OnPrint(&dc, &info);
    const auto dispositivo = Dispositivos().Busca(dc);
    if (!dispositivo) return false;
    return dispositivo->m_Impresora ? dispositivo->m_Impresora->EnPagina() : !dispositivo->m_bAbandonada;
}

// Calls `pagina` for each page that is wanted, until one fails or a handler says that it was the last.
template <class Funcion>
bool CView::CadaPagina(CPrintInfo& info, Funcion pagina) {
    info.m_nCurPage = info.GetFromPage();
    if (info.m_nCurPage > info.GetToPage())
        return AnotaFallo("the document has none of the pages that are wanted.", ERROR_INVALID_PARAMETER);
    while (pagina()) {
        if (!info.m_bContinuePrinting || info.m_nCurPage == info.GetToPage()) return true;
        ++info.m_nCurPage;
    }
    return false;
}

BOOL CView::ImprimePaginas(CPrintInfo& info) {
    CDC dc;
    if (!dc.CreatePrinterDC(info.m_Datos)) return FALSE;
    OnBeginPrinting(&dc, &info);
    const bool bien =
        dc.StartDoc(nullptr) > 0 &&
        CadaPagina(info, [&] { return dc.StartPage() > 0 && ImprimePagina(dc, info) && dc.EndPage() > 0; }) &&
        dc.EndDoc() > 0;
    OnEndPrinting(&dc, &info);
    return bien;  // of a document without EndDoc nothing is left
}

BOOL CView::PrevePaginas(CPrintInfo& info) {
    const auto pagina = MidePagina(info.m_Datos, info.m_Datos.m_nResolucionVista);
    CDC dc;
    if (!pagina || !dc.CreateCompatibleDC(nullptr)) return FALSE;
    Dispositivos().Busca(dc)->m_Pagina = std::make_unique<Pagina>(*pagina);
    OnBeginPrinting(&dc, &info);
    const bool bien = CadaPagina(info, [&] {
        CBitmap hoja;
        if (!hoja.CreateBitmap(pagina->m_nAncho, pagina->m_nAlto, 24)) return false;
        std::ranges::fill(Bitmaps().Busca(hoja)->m_Pixeles, BYTE{255});
        CBitmap* anterior = dc.SelectObject(&hoja);
        const bool dibujada = ImprimePagina(dc, info);
        dc.SelectObject(anterior);
        if (dibujada) OnVistaPrevia(hoja, &info);
        return dibujada;
    });
    OnEndPrinting(&dc, &info);
    return bien;
}
