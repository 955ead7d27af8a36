#pragma once
// The view: a window that draws a document, prints it, and shows how it would be printed.

#include "platform/CPrintInfo.h"
#include "platform/CWnd.h"

class CBitmap;
class CDC;

/// Numbers of commands, for WM_COMMAND.
constexpr UINT ID_FILE_PRINT = 0xE107;
constexpr UINT ID_FILE_PRINT_DIRECT = 0xE108;
constexpr UINT ID_FILE_PRINT_PREVIEW = 0xE109;

/// A window that shows something, on the screen and on pages.
///
/// Its life: `Create` calls `PreCreateWindow`, `OnCreate`, `OnSize`, and then `OnInitialUpdate`, once, before the
/// window is shown. On the screen `OnPaint` calls `OnDraw`. A window of a foreign toolkit (`Attach`) gets nothing by
/// itself: the toolkit's host sends WM_CREATE, WM_INITIALUPDATE, and then what happens,
///
///     vista.SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(width, height));
///     vista.InvalidateRect(&exposed);
///     vista.UpdateWindow();
///
/// Printing, by the commands ID_FILE_PRINT, ID_FILE_PRINT_DIRECT and ID_FILE_PRINT_PREVIEW or by calling their
/// functions, goes through these on the caller's thread:
///
///     OnPreparePrinting      pages, paper; FALSE ends it
///       DoPreparePrinting    is there somewhere to print?
///     OnBeginPrinting        the page's device context stands
///     OnPrint                once for each page, of GetFromPage to GetToPage
///       OnVistaPrevia        in a preview, the finished picture of the page
///     OnEndPrinting          also after a failure
///
/// A file appears whole when the last page is done. A failure leaves nothing behind, and what was there before as it
/// was. So does `CDC::AbortDoc`, by which a handler that can't draw its page gives up, in a preview too.
class LUMBRA_API CView : public CWnd {
  public:
    /// Prints by `m_Impresion`.
    /// @return TRUE when the document is in its file or in the printer's queue; FALSE otherwise, also when a handler
    ///         ended it: GetLastError and UltimoFalloGL tell why
    BOOL OnFilePrint();
    /// The same with `m_bDirect` set, for handlers that ask the user.
    BOOL OnFilePrintDirect();
    /// Draws the pages as pictures and hands each to `OnVistaPrevia`. Needs no printer.
    /// @return as `OnFilePrint`
    BOOL OnFilePrintPreview();

    /// What the print commands begin with; the host may change it at any time but during printing.
    CDataImpresion m_Impresion;

  protected:
    CView();
    ~CView() override;

    /// Draws. `GetClipBox` of the device context tells which part is invalid: a view that is whole has NULLREGION.
    virtual void OnDraw(CDC* pDC) = 0;
    /// The window stands and has its size. Invalidates it here.
    virtual void OnInitialUpdate();

    /// First of a print command: may set the number of pages and change `pInfo->m_Datos`, then calls
    /// `DoPreparePrinting`, which is all that it does here.
    /// @return FALSE: nothing is printed
    virtual BOOL OnPreparePrinting(CPrintInfo* pInfo);
    /// Looks whether the page can be had and where it goes: to the file, or to a printer that is looked for, whose name
    /// is set then. Nobody is asked.
    /// @return FALSE when the paper or resolution is out of range or there is no printer; GetLastError and
    ///         UltimoFalloGL tell why
    virtual BOOL DoPreparePrinting(CPrintInfo* pInfo);
    virtual void OnBeginPrinting(CDC* pDC, CPrintInfo* pInfo);
    /// Draws page `m_nCurPage`: `OnDraw` here.
    virtual void OnPrint(CDC* pDC, CPrintInfo* pInfo);
    virtual void OnEndPrinting(CDC* pDC, CPrintInfo* pInfo);
    /// A page of a preview: 24 bits, of the paper's size at `m_nResolucionVista`. Nothing is done with it here.
    /// @param pagina deleted afterwards; who wants to keep it takes it by `Detach`
    virtual void OnVistaPrevia(CBitmap& pagina, CPrintInfo* pInfo);

    void OnPaint() override;
    BOOL OnCommand(WPARAM w, LPARAM l) override;
    LRESULT WindowProc(UINT mensaje, WPARAM w, LPARAM l) override;

  private:
    BOOL Imprime(bool previa, bool directa);
    BOOL ImprimePaginas(CPrintInfo& info);
    BOOL PrevePaginas(CPrintInfo& info);
    bool ImprimePagina(CDC& dc, CPrintInfo& info);
    template <class Funcion>
    bool CadaPagina(CPrintInfo& info, Funcion pagina);

    bool m_bActualizada = false;  // OnInitialUpdate has been called
};
