// The keys.

#include "Visor.h"
#include "platform/CursorTeclas.h"
#include "platform/Numeros.h"

#include <cstdio>

void Visor::ListaTeclas() {
    std::puts(
        "Mouse\n"
        "  drag                  turn the model about what is under the pointer; with Ctrl also upside down\n"
        "  Shift and drag        move it; so does the middle button\n"
        "  wheel                 nearer and farther, at the pointer\n"
        "  click                 coordinates of the point, and its cell\n"
        "  double click          bring the point to the middle\n"
        "Keys\n"
        "  arrows                turn; with Shift move\n"
        "  Page Up, Page Down    nearer, farther\n"
        "  F                     fit all of it into the window\n"
        "  Home                  the view of the beginning\n"
        "  O                     orthographic, and back to perspective\n"
        "  + -                   heights more and less exaggerated\n"
        "  B, R                  base, references: show or hide\n"
        "  L                     sketch a line and measure it: clicks add points, Backspace takes the last one back,\n"
        "                        Enter or a double click ends it, Escape drops it\n"
        "  P, S                  print to a PDF, save a picture, in the current folder\n"
        "  ? H F1                this list\n"
        "  Q                     close\n"
        "In a panorama dragging and arrows look round, and the wheel widens and narrows the view.");
    std::fflush(stdout);
}

void Visor::OnKeyDown(UINT tecla, UINT /*repeticiones*/, UINT /*flags*/) {
    AplicaRueda();
    Tecla(tecla);
}

void Visor::Tecla(UINT tecla) {
    const bool bPanorama = m_Contenido.EsPanorama();
    const bool bMayus = GetKeyState(VK_SHIFT) < 0;
    switch (tecla) {
        case 'Q':
            DestroyWindow();
            return;
        case 'F':
            Encuadra();
            return;
        case VK_HOME:
            m_Contenido.PonVista(*m_pGL);
            Redibuja();
            Encuadra();
            return;
        case VK_LEFT:
        case VK_RIGHT:
        case VK_UP:
        case VK_DOWN:
            Flecha(tecla, bMayus);
            return;
        case VK_PRIOR:
        case VK_NEXT:
            OnMouseWheel(0, static_cast<short>(tecla == VK_PRIOR ? WHEEL_DELTA : -WHEEL_DELTA),
                         CPoint(m_nAncho / 2, m_nAlto / 2));
            return;
        case 'P':
            Imprime();
            return;
        case 'S':
            Retrata();
            return;
        case 'H':
        case VK_F1:
        case VK_OEM_2:
            ListaTeclas();
            return;
        case VK_RETURN:
            if (m_bCroquis) AcabaCroquis();
            return;
        case VK_ESCAPE:
            DejaCroquis();
            return;
        case VK_BACK:
            if (m_bCroquis) RetiraCroquis();
            return;
        default:
            break;
    }
    if (bPanorama) return;
    if (tecla == 'L') EmpiezaCroquis();
    if (tecla == 'O') CambiaProyeccion();
    if (tecla == 'B') Cambia(&CGL::GetBase, &CGL::SetBase, true);
    if (tecla == 'R') Cambia(&CGL::GetReferencia, &CGL::SetReferencia, false);
    if (tecla == VK_ADD || tecla == VK_OEM_PLUS) CambiaExageracion(1);
    if (tecla == VK_SUBTRACT || tecla == VK_OEM_MINUS) CambiaExageracion(-1);
}

void Visor::Flecha(UINT tecla, bool bDesplaza) {
    constexpr double kGrados = 5.0;
    constexpr int kParte = 20;  // of the window, for a step sideways
    const int dx = tecla == VK_RIGHT ? 1 : tecla == VK_LEFT ? -1 : 0;
    const int dy = tecla == VK_DOWN ? 1 : tecla == VK_UP ? -1 : 0;
    if (m_Contenido.EsPanorama()) {
        MiraAlrededor(-dx * kGrados, -dy * kGrados);
    } else if (bDesplaza) {
        const CPoint medio(m_nAncho / 2, m_nAlto / 2);
        Agarra(Arrastre::kDesplaza, medio);
        Situa(medio, m_Agarre);
        DesplazaArrastrando(CPoint(medio.x + dx * m_nAncho / kParte, medio.y + dy * m_nAlto / kParte));
        m_Agarre.que = Arrastre::kNada;
    } else {
        const Mirada m = DameMirada();
        PonMirada(Gira(m, Vertiz::CCoor3D<double>(0, 0, 0, 0), -dx * kGrados, dy * kGrados, false));
    }
}

void Visor::CambiaProyeccion() {
    const bool bOrto = m_pGL->GetOrtogonal() == 0;
    m_pGL->SetOrtogonal(bOrto ? 1 : 0);
    m_pGL->Resize(m_nAncho, m_nAlto);
    m_bSucia = true;
    Encuadra();
    Titula(bOrto ? "orthographic" : "perspective");
}

void Visor::CambiaExageracion(int sentido) {
    const double nueva = SiguienteExageracion(m_pGL->GetExageracionVertical(), sentido);
    m_bExageracion = true;
    m_pGL->SetExageracionVertical(static_cast<float>(nueva));
    Rehaz();
    Titula("heights x " + TextoGeneral(nueva, 6));
}

// Turns a setting of the scene over.
void Visor::Cambia(int (CGL::*da)() const, int (CGL::*pon)(int), bool bListas) {
    (m_pGL->*pon)((m_pGL->*da)() != 0 ? 0 : 1);
    if (bListas)
        Rehaz();
    else
        Redibuja();
}
