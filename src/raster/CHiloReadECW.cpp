// One band of a picture, read line by line.

#include "raster/CHiloReadECW.h"

#include "platform/CabeceraDIB.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <exception>
#include <new>
#include <numeric>
#include <stdexcept>
#include <string>

namespace Vertiz {

namespace {

void Exige(const NCS::CError& error) {
    if (error.GetErrorNumber() != 0) throw std::runtime_error(std::string(NCSGetLastErrorText(error)));
}

// Why a line can't be had, where the reader tells.
template <class Vista>
std::string FalloDeLectura(const Vista& vista) {
    std::string texto = "Image decoding failed";
    if constexpr (requires { vista.UltimoError(); }) texto += ": " + std::string(vista.UltimoError().Texto());
    return texto;
}

void RecortaRango(int total, int& a, int& b) {
    const bool valido = a < b;
    a = valido ? std::max(a, 0) : 0;
    b = valido ? std::min(b, total) : total;
}

}  // namespace

CVentanaECW RecortaVentana(int ancho, int alto, int x0, int x1, int y0, int y1) {
    RecortaRango(ancho, x0, x1);
    RecortaRango(alto, y0, y1);
    return {x0, y0, x1, y1};
}

std::vector<UINT> TodasLasBandas(int cuenta) {
    std::vector<UINT> bandas(static_cast<std::size_t>(cuenta));
    std::iota(bandas.begin(), bandas.end(), 0U);
    return bandas;
}

void CHiloReadECW::Work(void* dato) {
    const auto& parametros = *static_cast<const CParametrosECW*>(dato);
    const char* fallo = nullptr;
    try {
        Lee(parametros);
    } catch (const std::bad_alloc&) {
        m_bFallo = true;
        fallo = "there is not enough memory";
    } catch (const std::exception& e) {
        m_bFallo = true;
        std::snprintf(m_szFallo.data(), m_szFallo.size(), "%s", e.what());
    } catch (...) {
        m_bFallo = true;
        fallo = "the reader failed";
    }
    if (fallo != nullptr) std::snprintf(m_szFallo.data(), m_szFallo.size(), "%s", fallo);

    Progresa(100.0F);
    const NCS::CMutexLock cierre(*parametros.m_pMutex);
    if (--*parametros.m_pActivos <= 0) parametros.m_pEvento->Set();
}

void CHiloReadECW::Lee(const CParametrosECW& parametros) {
    NCS::CView vista;
    Exige(vista.Open(parametros.m_sRuta));
    const auto& info = vista.GetFileInfo();
    m_dCeldaX = std::abs(info.m_dCeldaX);
    m_dCeldaY = std::abs(info.m_dCeldaY);
    m_dOrigenX = info.m_dOrigenX;
    m_dOrigenY = info.m_dOrigenY;

    m_Ventana = RecortaVentana(info.m_nAncho, info.m_nAlto, parametros.m_nX0, parametros.m_nX1, parametros.m_nY0,
                               parametros.m_nY1);
    if (m_Ventana.EstaVacia()) throw std::runtime_error("the window lies outside the picture");

    // Bands by integers: they meet without gap or overlap whatever the count of workers.
    const unsigned paso = std::max(parametros.m_nReduccion, 1U);
    const std::int64_t total = Reducidos(m_Ventana.Alto(), paso);
    const auto indice = static_cast<std::int64_t>(m_nIndice);
    const std::int64_t primera = indice * total / parametros.m_nHilos;
    const std::int64_t ultima = (indice + 1) * total / parametros.m_nHilos - 1;
    if (primera > ultima) throw std::runtime_error("there are more workers than rows");

    m_nFilas = static_cast<int>(ultima - primera + 1);
    m_nAnchoFila = Reducidos(m_Ventana.Ancho(), paso);
    if (!m_Filas.Reserva(static_cast<UINT>(m_nFilas), static_cast<UINT>(BytesDeFila(m_nAnchoFila, 24))))
        throw std::bad_alloc();

    const int arriba = m_Ventana.y0 + static_cast<int>(primera * paso);
    const int abajo = m_Ventana.y0 + static_cast<int>(ultima * paso);
    const int lineas = abajo - arriba + 1;
    Exige(vista.SetView(TodasLasBandas(info.m_nBandas), m_Ventana.x0, arriba, m_Ventana.x1 - 1, abajo,
                        m_Ventana.Ancho(), lineas));
    LeeLineas(vista, lineas, paso);
    vista.Close();
}

void CHiloReadECW::LeeLineas(NCS::CView& vista, int lineas, unsigned paso) {
    std::vector<BYTE> entera(paso > 1 ? BytesDeFila(m_Ventana.Ancho(), 24) : 0);
    for (int linea = 0; linea < lineas; linea++) {
        BYTE* const fila = m_Filas.Bloque(static_cast<UINT>(linea) / paso);
        if (vista.ReadLineBGR(paso > 1 ? entera.data() : fila) != 0) throw std::runtime_error(FalloDeLectura(vista));
        if (paso > 1 && static_cast<unsigned>(linea) % paso == 0)
            for (std::size_t i = 0; i < static_cast<std::size_t>(m_nAnchoFila); i++)
                std::copy_n(&entera[3 * paso * i], 3, fila + 3 * i);
        Progresa(static_cast<float>(linea) * 100.0F / static_cast<float>(lineas));
    }
    Progresa(100.0F);
}

void CHiloReadECW::Progresa(float porcentaje) {
    // Whoever waits reads it meanwhile, and the others' stand beside it in memory: whole percents are enough.
    if (porcentaje < 100.0F && porcentaje - m_fProgresoAnterior < 1.0F) return;
    std::atomic_ref((*m_pProgresos)[m_nIndice]).store(porcentaje, std::memory_order_relaxed);
    m_fProgresoAnterior = porcentaje;
}

}  // namespace Vertiz
