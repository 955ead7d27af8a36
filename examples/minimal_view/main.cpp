// The smallest host with a window: a hill with its top marked. Drag to turn it, roll the wheel to zoom, double-click to
// bring a place to the middle, P to print it to hill.pdf.

#include "terrain/CEscenaDEM.h"
#include "frame/CVistaGL.h"
#include "model/CTexto.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

using Punto = Vertiz::CCoor3D<double>;

// Texts are drawn by a scene that asks for glyphs.
class EscenaCerro : public CEscenaDEM {
  public:
    using CEscenaDEM::operator=;
    explicit EscenaCerro(Vertiz::CDEM& dem) : CEscenaDEM(&dem) {
        m_bFuentes = 1;
        m_Data.m_bMarcasTerreno = 1;
        SetQuad(1);     // a surface, not points
        SetRelleno(1);  // lit
        SetColorFondo(RGB(60, 90, 130));
        NuevaMarca(Vertiz::CTexto<double>(L"top", Punto(500, 500, 305), L"305 m", 25));
    }
};

class Ventana : public CVistaGL {
  public:
    explicit Ventana(Vertiz::CDEM& dem) { m_pGL = new EscenaCerro(dem); }  // from now on the view's

  protected:
    // The view has made the contexts and set the size. The extents go before the lists, which are compiled in their
    // space.
    void OnInitialUpdate() override {
        m_pGL->OnZoomExtension();
        m_pGL->CreaFuentes();  // before the lists of the marks, which call its glyphs
        CVistaGL::OnInitialUpdate();
        m_pGL->SetBkColor();  // the first frame's; each frame sets that of the next
        Mira();
    }
    void OnLButtonDown(UINT, CPoint pt) override { m_Anterior = pt; }
    void OnMouseMove(UINT flags, CPoint pt) override {
        if (!(flags & MK_LBUTTON)) return;
        m_dAzimut -= 0.01 * (pt.x - m_Anterior.x);
        m_dAltura = std::clamp(m_dAltura + 0.01 * (pt.y - m_Anterior.y), -1.5, 1.5);
        m_Anterior = pt;
        Mira();
    }
    void OnLButtonDblClk(UINT, CPoint pt) override {
        m_pGL->OnZoomCentrado(pt);
        Invalidate();
    }
    BOOL OnMouseWheel(UINT, short delta, CPoint) override {
        m_pGL->SetZoom(m_pGL->GetZoom() * (delta > 0 ? 1.25 : 0.8));
        Invalidate();
        return TRUE;
    }
    void OnKeyDown(UINT tecla, UINT, UINT) override {
        if (tecla != 'P') return;
        CRect cliente;
        GetClientRect(&cliente);
        m_Impresion.m_sFichero = L"hill.pdf";
        m_Impresion.m_bApaisada = cliente.Height() > cliente.Width();  // upright paper holds a wide picture whole
        std::puts(OnFilePrint() ? "The page is in hill.pdf" : "minimal_view: hill.pdf can't be written");
    }

  private:
    // From that side, at the point looked at. In this space y is up, x is east and z is south.
    void Mira() {
        const Punto centro = m_pGL->GetTrans();
        const Punto lado(std::sin(m_dAzimut) * std::cos(m_dAltura), std::sin(m_dAltura),
                         std::cos(m_dAzimut) * std::cos(m_dAltura));
        m_pGL->GetCamara().PositionCamera(centro + lado, centro, Punto(0, 1, 0));
        Invalidate();
    }

    CPoint m_Anterior;
    double m_dAzimut = 0, m_dAltura = 0.6;  // radians: from the south, and over the horizon
};

int main() {
    constexpr unsigned N = 101;
    Vertiz::CDEM dem(N, N, 10, 10, 0, 0);  // a square kilometre
    for (unsigned fila = 0; fila < N; ++fila)
        for (unsigned columna = 0; columna < N; ++columna) {
            const double d = std::hypot(fila - 50.0, columna - 50.0);
            dem.Matriz().Set(fila, columna, static_cast<float>(300 * std::exp(-d * d / 600) + 5 * std::cos(d / 4)));
        }
    dem.ActualizaCantidades();

    Ventana ventana(dem);
    if (!ventana.Create(nullptr, L"Hill", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(100, 100, 900, 700))) {
        std::fprintf(stderr, "minimal_view: no window (lumbra info --gl tells why)\n");
        return 1;
    }
    if (ventana.VentanaNativa() == 0) {
        std::fprintf(stderr, "minimal_view: there is no display, so nobody could see the window; set DISPLAY\n");
        return 1;
    }
    while (ventana.GetSafeHwnd())
        CWnd::DespachaEventos(-1);
    return 0;
}
