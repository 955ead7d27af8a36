// Reading of ECW and JPEG 2000: the header by one view, the pixels by workers with a band of rows each.

#include "raster/CECW.h"

#include "raster/CHiloReadECW.h"
#include "raster/NCS.h"
#include "raster/Resultados.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"
#include "platform/Ficheros.h"
#include "platform/Hilos.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>

namespace Vertiz {

namespace {

constexpr int kNivelEtapa = 3;
constexpr unsigned kEspera = 20;  // ms between two looks at the workers

void Avisa(int nivel, const CString& ruta, const std::string& motivo) {
    if (IPorcentaje* porcentaje = PorcentajeActual())
        porcentaje->Mensaje(nivel, NombreRuta(ruta) + L": " + CString(motivo.c_str()), 1);
}

float Suma(std::vector<float>& progresos) {
    float suma = 0.0F;
    for (float& p : progresos)
        suma += std::atomic_ref(p).load(std::memory_order_relaxed);
    return suma;
}

// Shows the progress until the workers have ended, or until the user cancels: that ends the showing, not the reading.
void Acompana(NCS::CEvent& evento, std::vector<float>& progresos) {
    const Etapa etapa(kNivelEtapa, kTextoLeer);
    const int total = 100 * static_cast<int>(progresos.size());
    for (float suma = 0.0F; suma < static_cast<float>(total) - 0.1F; suma = Suma(progresos)) {
        if (!etapa.Paso(static_cast<int>(suma), total)) break;
        if (evento.Wait(kEspera)) break;
    }
    evento.Wait();
}

using CHilos = std::vector<std::unique_ptr<CHiloReadECW>>;

// Reads all bands, each on a thread of its own; the workers given back have ended.
CHilos LeeBandas(CParametrosECW comunes, int n) {
    NCS::CMutex mutex;
    NCS::CEvent evento;
    int activos = n;
    std::vector<float> progresos(static_cast<std::size_t>(n), 0.0F);
    comunes.m_pMutex = &mutex;
    comunes.m_pActivos = &activos;
    comunes.m_nHilos = n;
    comunes.m_pEvento = &evento;
    std::vector<CParametrosECW> parametros(static_cast<std::size_t>(n), comunes);
    CHilos hilos;
    for (int i = 0; i < n; i++)
        hilos.push_back(std::make_unique<CHiloReadECW>(static_cast<std::uint64_t>(i), &progresos));
    for (std::size_t i = 0; i < hilos.size(); i++)
        if (!hilos[i]->Start(&parametros[i])) hilos[i]->Work(&parametros[i]);  // the system has no more threads
    Acompana(evento, progresos);
    for (const auto& hilo : hilos)
        hilo->Join();  // the last one may still hold the lock
    return hilos;
}

}  // namespace

bool CECW::SetFichero(CFile* fichero) {
    m_pFuente = fichero;
    if (m_pFuente != nullptr) m_pFuente->SeekToBegin();
    return true;
}

int CECW::Leer(bool soloCabecera, int x0, int x1, int y0, int y1) {
    const CString ruta = RutaFichero();
    if (ruta.IsEmpty()) return 2;
    return soloCabecera ? LeeCabecera(ruta) : LeerHilos(ruta, Procesadores(), 0, x0, x1, y0, y1);
}

int CECW::Leer(bool, CMatriz<float>**, unsigned, int*, const float*, const float*, int, int, int, int) {
    return kNoSoportado;
}

int CECW::LeerReducido(unsigned reduccion) {
    const CString ruta = RutaFichero();
    return ruta.IsEmpty() ? 2 : LeerHilos(ruta, Procesadores(), reduccion, 0, 0, 0, 0);
}

CString CECW::RutaFichero() const {
    return m_pFuente != nullptr ? m_pFuente->GetFilePath() : m_sRuta;
}

int CECW::LeeCabecera(const CString& ruta) {
    Limpiar();
    NCS::CView vista;
    if (const auto error = vista.Open(RutaSistema(ruta)); error.GetErrorNumber() != 0) {
        Avisa(NivelMensajes(), ruta, NCSGetLastErrorText(error));
        return 0;
    }
    const auto& info = vista.GetFileInfo();
    PonGeorreferencia(std::abs(info.m_dCeldaX), std::abs(info.m_dCeldaY), info.m_dOrigenX, info.m_dOrigenY);
    const bool creada = Crear(info.m_nAncho, info.m_nAlto, 24, 1.0F, false, nullptr, nullptr, true);
    vista.Close();
    return creada ? 1 : 0;
}

int CECW::LeerHilos(const wchar_t* ruta, int numHilos, unsigned reduccion, int x0, int x1, int y0, int y1) {
    if (ruta == nullptr || *ruta == L'\0' || numHilos <= 0) return kTamanoMalo;
    const CString camino(ruta);
    const auto falla = [&](const std::string& motivo) {
        Avisa(NivelMensajes(), camino, motivo);
        Limpiar();
        return 0;
    };

    // A view of the whole window, beside those of the workers: it tells how many rows there are, and lets the workers'
    // views share what they decode.
    NCS::CView vista;
    CParametrosECW parametros;
    parametros.m_sRuta = RutaSistema(camino);
    if (const auto error = vista.Open(parametros.m_sRuta); error.GetErrorNumber() != 0)
        return falla(NCSGetLastErrorText(error));
    const auto& info = vista.GetFileInfo();
    const CVentanaECW ventana = RecortaVentana(info.m_nAncho, info.m_nAlto, x0, x1, y0, y1);
    if (ventana.EstaVacia()) return kTamanoMalo;
    if (const auto error = vista.SetView(TodasLasBandas(info.m_nBandas), ventana.x0, ventana.y0, ventana.x1 - 1,
                                         ventana.y1 - 1, ventana.Ancho(), ventana.Alto());
        error.GetErrorNumber() != 0)
        return falla(NCSGetLastErrorText(error));

    parametros.m_nReduccion = reduccion;
    parametros.m_nX0 = x0;
    parametros.m_nX1 = x1;
    parametros.m_nY0 = y0;
    parametros.m_nY1 = y1;
    const int alto = Reducidos(ventana.Alto(), reduccion);
    CHilos hilos = LeeBandas(parametros, std::min(numHilos, alto));
    vista.Close();

    const auto fallido = std::ranges::find_if(hilos, [](const auto& hilo) { return hilo->HaFallado(); });
    if (fallido != hilos.end()) return falla((*fallido)->Fallo());

    const CHiloReadECW& primero = *hilos.front();
    const int ancho = primero.AnchoFila();
    const double celdaX = primero.CeldaX(), celdaY = primero.CeldaY();
    const double origenX = ventana.x0 * celdaX + primero.OrigenX();
    const double origenY = primero.OrigenY() - ventana.y0 * celdaY;
    CBloques tabla;  // the rows of all workers, the top one first
    for (const auto& hilo : hilos)
        tabla.Anade(hilo->SueltaFilas());
    PonGeorreferencia(celdaX, celdaY, origenX, origenY);
    return Crear(ancho, alto, 24, 1.0F, false, &tabla, nullptr, false) ? 1 : 0;
}

void CECW::PonGeorreferencia(double celdaX, double celdaY, double origenX, double origenY) {
    m_Georreferencia.m_dEscala[0] = celdaX;
    m_Georreferencia.m_dEscala[1] = celdaY;
    m_Georreferencia.m_PuntosControl = {{0.0, 0.0, 0.0, origenX, origenY, 0.0}};
    m_bGeorreferenciada = celdaX != 1.0 || celdaY != 1.0 || origenX != 0.0 || origenY != 0.0;
}

}  // namespace Vertiz
