// Sketching a line on the model, and its length.

#include "Visor.h"
#include "platform/Numeros.h"

namespace {

constexpr unsigned kAmarilla = 1;  // kind of sketch line: yellow, wide

}  // namespace

void Visor::EmpiezaCroquis() {
    DejaCroquis();
    m_pGL->SetTipoLineaNueva(kAmarilla);
    m_bCroquis = true;
    m_bCroquisVacio = true;
    Titula("sketch: click the points; Enter ends, Backspace takes back, Escape drops");
}

// The point is fixed, and another one follows the pointer from now on.
void Visor::PuntoCroquis(CPoint pt) {
    AlDia();
    if (m_bCroquisVacio) {
        m_pGL->InsertaPuntoLineaNueva(pt, false);
        m_bCroquisVacio = false;
    } else {
        m_pGL->ModificaUltimoPuntoLineaNueva(pt, 0);
    }
    m_pGL->InsertaPuntoLineaNueva(pt, false);
    Titula(LargoCroquis());
    Redibuja();
}

void Visor::GomaCroquis(CPoint pt) {
    if (m_bCroquisVacio) return;
    if (m_bSucia) return;  // the frame to come shows it where the pointer then is
    m_pGL->ModificaUltimoPuntoLineaNueva(pt, 1);
    Titula(LargoCroquis());
}

void Visor::RetiraCroquis() {
    if (m_bCroquisVacio) return;
    if (m_pGL->NPuntosLineaNueva() <= 2) {
        m_pGL->VaciaLineaNueva();
        m_bCroquisVacio = true;
        Titula("sketch: no point");
    } else {
        m_pGL->BorraUltimoPuntoLineaNueva(1);
        Titula(LargoCroquis());
    }
    Redibuja();
}

// The point that follows the pointer goes; the line stays on the model until the next one, or Escape.
void Visor::AcabaCroquis() {
    m_bCroquis = false;
    if (m_bCroquisVacio) {
        Titula("");
        return;
    }
    AlDia();
    m_pGL->BorraUltimoPuntoLineaNueva(0);
    Di(LargoCroquis());
    Redibuja();
}

void Visor::DejaCroquis() {
    m_bCroquis = false;
    m_bCroquisVacio = true;
    if (m_pGL->NPuntosLineaNueva() > 0) {
        m_pGL->VaciaLineaNueva();
        Redibuja();
    }
    Titula("");
}

std::string Visor::LargoCroquis() const {
    Vertiz::CLinea<double> linea;
    m_pGL->DameLineaNuevaTerreno(linea);
    const Longitudes l = MideLinea(linea);
    const int decimales = m_Contenido.Decimales();
    return "length " + TextoReal(l.plana, decimales) + " in plan, " + TextoReal(l.real, decimales) + " along the slope";
}
