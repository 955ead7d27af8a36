#pragma once
// A view for the tests of the frame, with the scene of EscenaPrueba.h, as a host would derive it.

#include "EscenaPrueba.h"
#include "frame/CVistaGL.h"

class VistaPrueba : public CVistaGL {
  public:
    VistaPrueba() = default;
    explicit VistaPrueba(EscenaPrueba* pEscena) { m_pGL = pEscena; }

    BOOL Abre(int ancho = 64, int alto = 48, DWORD estilo = 0) {
        return Create(nullptr, L"Vista", estilo, CRect(0, 0, ancho, alto));
    }
    EscenaPrueba& Escena() { return static_cast<EscenaPrueba&>(*m_pGL); }

    BOOL PreCreateWindow(CREATESTRUCT& cs) override {
        const BOOL r = CVistaGL::PreCreateWindow(cs);
        m_nEstilo = cs.style;
        return r;
    }
    void OnInitialUpdate() override {
        if (m_pGL && m_bEspacio) m_pGL->OnZoomExtension();
        CVistaGL::OnInitialUpdate();
    }

    DWORD m_nEstilo = 0;
    bool m_bEspacio = true;  ///< fix the GL space before the lists are compiled

    using CVistaGL::m_bIniciado;
    using CVistaGL::m_pGL;
    using CVistaGL::OnDraw;
    using CVistaGL::OnEraseBkgnd;
    using CVistaGL::OnPaletteChanged;
    using CVistaGL::OnPreparePrinting;
    using CVistaGL::OnPrint;
    using CVistaGL::OnQueryNewPalette;
    using CVistaGL::OnSize;
};
