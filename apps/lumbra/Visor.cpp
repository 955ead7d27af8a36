// The window's life: from its making to its end, and the drawing between.

#include "Visor.h"

#include "Cuadro.h"
#include "platform/CDC.h"
#include "platform/Conversiones.h"
#include "platform/DiagnosticoGL.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <utility>

namespace {

constexpr const char* kPista = "? lists the keys";

volatile std::sig_atomic_t g_bFin = 0;

extern "C" void PideFin(int /*senal*/) {
    g_bFin = 1;
}

}  // namespace

Visor::Visor(Contenido& contenido, OpcionesVisor opciones)
    : m_Contenido(contenido),
      m_Opciones(std::move(opciones)),
      m_Titulo(std::filesystem::path(m_Opciones.fichero).filename().string()),
      m_nAncho(m_Opciones.ancho),
      m_nAlto(m_Opciones.alto) {
    m_pGL = m_Contenido.HazEscena().release();
}

void Visor::Abre() {
    const CRect lugar(0, 0, m_Opciones.ancho, m_Opciones.alto);
    const bool bHecha = Create(nullptr, CString(DeUtf8(m_Titulo)), WS_OVERLAPPEDWINDOW | WS_VISIBLE, lugar);
    if (!m_Fallo.empty()) throw std::runtime_error(m_Fallo);
    if (!bHecha || m_bIniciado == 0) FallaGL("can't open a window");
    Titula(kPista);
}

// Who ends the program from its terminal closes the window: temporary files go, and the settings are kept.
void Visor::Atiende(Visor& visor) {
    constexpr int kPaciencia = 250;  // milliseconds until such an end is noticed
    for (const int senal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(senal, PideFin);
    while (visor.GetSafeHwnd() != nullptr && g_bFin == 0)
        DespachaEventos(kPaciencia);
    visor.DestroyWindow();
}

int Visor::OnCreate(LPCREATESTRUCT cs) {
    if (CVistaGL::OnCreate(cs) == -1) return -1;
    try {
        m_Contenido.Prepara(*m_pGL);
    } catch (const std::exception& fallo) {
        m_Fallo = fallo.what();
        return -1;
    }
    return 0;
}

void Visor::OnInitialUpdate() {
    CVistaGL::OnInitialUpdate();
    if (m_bIniciado == 0) return;
    CRect cliente;
    GetClientRect(&cliente);
    m_pGL->Resize(std::max(1, cliente.Width()), std::max(1, cliente.Height()));
    m_Contenido.PonVista(*m_pGL);
    Encuadra();
}

void Visor::OnSize(UINT tipo, int cx, int cy) {
    m_nAncho = cx;
    m_nAlto = cy;
    CVistaGL::OnSize(tipo, cx, cy);
    Redibuja();
}

void Visor::OnDraw(CDC* pDC) {
    AplicaRueda();
    m_bSucia = false;
    CVistaGL::OnDraw(pDC);
}

// The picture doesn't show the camera's view any more; it is painted when all that waits has been served.
void Visor::Redibuja() {
    m_bSucia = true;
    Invalidate();
}

// What is asked of the scene by pixels is asked of the frame that was drawn last.
void Visor::AlDia() {
    if (!m_bSucia || m_bIniciado == 0) return;
    m_bSucia = false;
    m_pGL->Render();
}

void Visor::Titula(const std::string& texto) {
    SetWindowText(CString(DeUtf8(m_Titulo + (texto.empty() ? "" : " - " + texto))));
}

// A line that the user may want to keep.
void Visor::Di(const std::string& texto) {
    std::printf("%s\n", texto.c_str());
    std::fflush(stdout);
    Titula(texto);
}

Mirada Visor::DameMirada() const {
    const CCamera camara = m_pGL->GetCamara();
    return {camara.Position(), camara.View(), camara.UpVector()};
}

void Visor::PonMirada(const Mirada& mirada) {
    m_pGL->GetCamara().PositionCamera(mirada.ojo, mirada.vista, mirada.arriba);
    Redibuja();
}

void Visor::Encuadra() {
    if (m_nAncho < 1 || m_nAlto < 1) return;
    AlDia();
    m_Contenido.Encuadra(*m_pGL, m_nAncho, m_nAlto);
    Redibuja();
}

// The lists again, after a change that shapes them.
void Visor::Rehaz() {
    m_bIniciado = m_Contenido.Rehaz(*m_pGL) ? 1 : 0;
    if (m_bIniciado == 0) Titula("it can't be drawn so: " + UltimoFalloGL());
    Redibuja();
}
