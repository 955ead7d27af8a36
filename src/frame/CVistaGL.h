#pragma once
// CVistaGL: a window that shows a scene, prints it and shows how it would be printed.
//
// A host derives from it and gives it its scene before the window is made. The scene's GL space has to stand before its
// lists are compiled: that is for OnInitialUpdate, since the view itself knows nothing of the model.
//
//     #include "terrain/CEscenaDEM.h"
//     #include "frame/CVistaGL.h"
//
//     class Ventana : public CVistaGL {
//       public:
//         explicit Ventana(Vertiz::CDEM& dem) {  // borrowed: it outlives the view
//             m_pGL = new CEscenaDEM(&dem);      // from now on the view's
//             m_pGL->SetQuad(1);                 // a surface, where the default is points
//             m_pGL->SetRelleno(1);              // lit
//         }
//
//       protected:
//         void OnInitialUpdate() override {
//             m_pGL->OnZoomExtension();     // the GL space from the model's extents, and the view on them
//             CVistaGL::OnInitialUpdate();  // compiles the lists
//             m_pGL->SetBkColor();          // the first frame's background: each frame sets that of the next one
//         }
//     };
//
//     Ventana ventana(dem);
//     ventana.Create(nullptr, L"Terrain", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 800, 600));
//     while (ventana.GetSafeHwnd()) CWnd::DespachaEventos(-1);
//
// examples/minimal_view is this with a mouse. Where there is no display, Create makes a window in memory that nobody
// sees: VentanaNativa() is 0 then. When Create fails, UltimoFalloGL() tells why.
//
// What happens in Create, in this order: OnCreate makes the scene's contexts on the window, OnSize sets its projection,
// OnInitialUpdate compiles its lists; after that OnDraw draws it whenever a part of the window has to be shown. A host
// that changes the model afterwards calls OnZoomExtension, Iniciar and Invalidate itself, and sets m_bIniciado to what
// Iniciar says. Without OnZoomExtension lists would be compiled against no extents, and nothing would show.
//
// The scene lives as long as the view, or until the derived class deletes it and sets m_pGL to null. A window that is
// closed leaves it as it is: its operations go on, or fail with 0 when the display is gone, and nobody sees what they
// draw. A view that is to be created a second time calls the scene's Destruir before.

#include "platform/CView.h"
#include "platform/Exporta.h"

class CGL;

/// The view of a scene; see the top of this file. Without a scene it is a window on which nothing is drawn.
class LUMBRA_API CVistaGL : public CView {
  protected:
    CVistaGL() = default;
    /// Deletes the scene.
    ~CVistaGL() override;

    /// Keeps siblings and children of the window out of its picture.
    BOOL PreCreateWindow(CREATESTRUCT& cs) override;
    /// Makes the scene's contexts. @return -1 when it can't: there is no window then
    int OnCreate(LPCREATESTRUCT cs) override;
    /// Compiles the scene's lists; m_bIniciado tells whether that went well.
    void OnInitialUpdate() override;
    /// Sets the scene's projection. @param cx, cy pixels
    void OnSize(UINT nType, int cx, int cy) override;
    /// Draws the scene when a part of the window has to be shown.
    void OnDraw(CDC* pDC) override;

    /// Another window has changed the palette of a display with few colours: the scene's is put back.
    void OnPaletteChanged(CWnd* pWnd) override;
    /// The window comes to the front: the display takes over the scene's palette. @return 1
    BOOL OnQueryNewPalette() override;
    /// The scene paints the whole window, so that nothing has to be wiped before. No message leads here.
    BOOL OnEraseBkgnd(CDC*) { return 0; }

    BOOL OnPreparePrinting(CPrintInfo* pInfo) override;
    /// Prints the scene, see CGL::OnPrint.
    void OnPrint(CDC* pDC, CPrintInfo* pInfo) override;

    CGL* m_pGL = nullptr;  ///< owned
    int m_bIniciado = 0;   ///< what the scene's Iniciar said
};
