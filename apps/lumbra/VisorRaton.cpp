// The mouse: turning, panning, nearing, picking.

#include "Camara.h"
#include "Visor.h"

#include <algorithm>
#include <cmath>

using Punto = Vertiz::CCoor3D<double>;

void Visor::OnLButtonDown(UINT flags, CPoint pt) {
    Agarra((flags & MK_SHIFT) != 0 ? Arrastre::kDesplaza : Arrastre::kGira, pt);
}

void Visor::OnMButtonDown(UINT /*flags*/, CPoint pt) {
    Agarra(Arrastre::kDesplaza, pt);
}

void Visor::OnMButtonUp(UINT flags, CPoint pt) {
    OnMouseMove(flags, pt);
    m_Agarre.que = Arrastre::kNada;
}

void Visor::OnLButtonUp(UINT flags, CPoint pt) {
    const Agarre suelta = m_Agarre;
    const bool bClic = suelta.que != Arrastre::kNada && !suelta.bMovido && EsClic(suelta.inicio, pt);
    if (!bClic) OnMouseMove(flags, pt);
    m_Agarre.que = Arrastre::kNada;
    m_bClic = bClic && !suelta.bDoble;
    if (bClic && suelta.bDoble)
        PulsaDosVeces(pt);
    else if (bClic)
        Pulsa(pt);
}

// The second press of a double click, unless it becomes a drag, or follows one.
void Visor::OnLButtonDblClk(UINT flags, CPoint pt) {
    OnLButtonDown(flags, pt);
    m_Agarre.bDoble = m_bClic;
}

void Visor::OnMouseMove(UINT flags, CPoint pt) {
    if (m_Agarre.que != Arrastre::kNada)
        Sigue(pt, (flags & MK_CONTROL) != 0);
    else if (m_bCroquis)
        GomaCroquis(pt);
}

BOOL Visor::OnMouseWheel(UINT /*flags*/, short delta, CPoint pt) {
    if (pt != m_PuntoRueda) AplicaRueda();
    m_nRueda += delta;
    m_PuntoRueda = pt;
    Redibuja();
    return TRUE;
}

void Visor::Agarra(Arrastre que, CPoint pt) {
    AplicaRueda();
    m_Agarre = {que, pt, pt, false, false, {}, 0.0};
}

// Finds what is under a pixel, for a gesture to hold. Where nothing is, the middle of the view gives the depth.
// @return false with the middle, or when there is no depth at all
bool Visor::Situa(CPoint pt, Agarre& agarre) {
    AlDia();
    Punto hallado;
    const bool bHay = HallaBajo(*m_pGL, pt, hallado, &agarre.profundidad);
    if (!bHay) {
        CPoint pixel;
        const Mirada m = DameMirada();
        agarre.punto = Punto(0, 0, 0, 0);
        if (m_pGL->TerrenoAPantalla(pixel, m.vista, &agarre.profundidad, true) == 0) return false;
    }
    Punto exacto;
    if (m_pGL->PantallaZATerreno(pt, exacto, agarre.profundidad, true) != 0 && bHay) agarre.punto = exacto;
    return bHay;
}

void Visor::Sigue(CPoint pt, bool bLibre) {
    if (!m_Agarre.bMovido) {
        if (EsClic(m_Agarre.inicio, pt)) return;
        m_Agarre.bMovido = true;
        // Only now that it is a drag: looking for what it holds takes its time.
        if (!m_Contenido.EsPanorama()) Situa(m_Agarre.inicio, m_Agarre);
    }
    if (pt == m_Agarre.ultimo) return;
    if (m_Contenido.EsPanorama()) {
        const double grados = m_pGL->GetAnguloVista() / std::max(1, m_nAlto);
        MiraAlrededor((pt.x - m_Agarre.ultimo.x) * grados, (pt.y - m_Agarre.ultimo.y) * grados);
    } else if (m_Agarre.que == Arrastre::kGira) {
        GiraArrastrando(pt, bLibre);
    } else {
        DesplazaArrastrando(pt);
    }
    m_Agarre.ultimo = pt;
}

void Visor::GiraArrastrando(const CPoint& hasta, bool bLibre) {
    const double azimut = -GradosDeArrastre(hasta.x - m_Agarre.ultimo.x, m_nAncho, m_nAlto);
    const double elevacion = GradosDeArrastre(hasta.y - m_Agarre.ultimo.y, m_nAncho, m_nAlto);
    PonMirada(Gira(DameMirada(), m_Agarre.punto, azimut, elevacion, bLibre));
}

// The camera goes sideways, so that a point's depth stays: two places of one depth tell how far.
void Visor::DesplazaArrastrando(const CPoint& hasta) {
    AlDia();
    Punto a, b;
    if (m_pGL->PantallaZATerreno(m_Agarre.ultimo, a, m_Agarre.profundidad, true) == 0 ||
        m_pGL->PantallaZATerreno(hasta, b, m_Agarre.profundidad, true) == 0)
        return;
    const Mirada m = DameMirada();
    const Punto d = a - b;
    PonMirada({m.ojo + d, m.vista + d, m.arriba});
}

void Visor::Pulsa(CPoint pt) {
    if (m_bCroquis) {
        PuntoCroquis(pt);
        return;
    }
    if (m_Contenido.EsPanorama()) return;
    AlDia();
    const auto hallado = m_Contenido.Senala(*m_pGL, pt);
    Redibuja();
    if (hallado)
        Di(hallado->lugar + (hallado->detalle.empty() ? "" : " " + hallado->detalle));
    else
        Titula("nothing there");
}

// The first click of the two was one already.
void Visor::PulsaDosVeces(CPoint pt) {
    if (m_bCroquis) {
        AcabaCroquis();
        return;
    }
    Agarre bajo;
    if (m_Contenido.EsPanorama() || !Situa(pt, bajo)) return;
    const Mirada m = DameMirada();
    const Punto d = bajo.punto - m.vista, frente = m.vista - m.ojo;
    // Sideways only: what is in the middle keeps its size.
    const double l2 = Producto(frente, frente);
    const double t = l2 > 0.0 ? Producto(d, frente) / l2 : 0.0;
    const Punto lado = d - frente * t;
    PonMirada({m.ojo + lado, m.vista + lado, m.arriba});
}

// The turns of the wheel that came together are one.
void Visor::AplicaRueda() {
    if (m_nRueda == 0) return;
    const double factor = FactorDeRueda(m_nRueda);
    m_nRueda = 0;
    if (m_Contenido.EsPanorama())
        AbreAngulo(factor);
    else
        Aproxima(m_PuntoRueda, factor);
}

void Visor::Aproxima(CPoint pt, double factor) {
    Agarre bajo;
    m_bSucia = true;
    AlDia();
    if (!Situa(pt, bajo) && m_pGL->PantallaZATerreno(pt, bajo.punto, bajo.profundidad, true) == 0) return;
    const Mirada m = DameMirada();
    if (m_pGL->GetOrtogonal() == 0) {
        PonMirada(Acerca(m, bajo.punto, factor));
        return;
    }
    constexpr double kMenor = 1e-3, kMayor = 1e5;
    const double zoom = m_pGL->GetZoom();
    m_pGL->SetZoom(std::clamp(zoom / factor, std::min(zoom, kMenor), std::max(zoom, kMayor)));
    Punto ahora;
    if (m_pGL->PantallaZATerreno(pt, ahora, bajo.profundidad, true) == 0) return;
    const Punto d = bajo.punto - ahora;
    PonMirada({m.ojo + d, m.vista + d, m.arriba});
}

// The head turns with the pointer: what was under it stays there.
void Visor::MiraAlrededor(double azimut, double elevacion) {
    const Mirada m = DameMirada();
    PonMirada(Gira(m, m.ojo, azimut, -elevacion, false));
}

void Visor::AbreAngulo(double factor) {
    constexpr float kMenor = 5.0F, kMayor = 120.0F;
    m_pGL->SetAnguloVista(std::clamp(static_cast<float>(m_pGL->GetAnguloVista() * factor), kMenor, kMayor));
    m_pGL->Resize(m_nAncho, m_nAlto);
    Redibuja();
}
