#pragma once
// A kit for ECW as CECW may be built against one, made for the tests: its pictures are computed, and the test decides
// what goes wrong in them and when.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace NCS {

using CString = std::string;

/// What the test decides and what it sees.
struct CGuion {
    int ancho = 20, alto = 31;
    double celdaX = 1.0, celdaY = -1.0, origenX = 0.0, origenY = 0.0;
    int fallaAbrir = -1;       ///< the view, counted from 0 as they are opened, that can't be opened
    int fallaVista = -1;       ///< the view whose window is refused
    int fallaLinea = -1;       ///< the row that can't be read
    bool lanzaEntero = false;  ///< that row throws something that is no exception of the library
    int demora = 0;            ///< ms for each line
    int hilosMaximos = 1000;   ///< threads that the system gives
    std::atomic<int> abiertas{0}, vivas{0}, hilos{0}, lineas{0};
    std::mutex mutex;
    std::vector<std::vector<int>> ventanas;  ///< x0, y0, x1, y1 of each, as they are set
};
inline CGuion* g_pGuion = nullptr;

class CError {
  public:
    CError(int numero = 0) : m_nNumero(numero) {}
    int GetErrorNumber() const { return m_nNumero; }

  private:
    int m_nNumero;
};
inline const char* NCSGetLastErrorText(const CError&) {
    return "the kit says no";
}

struct CFileInfo {
    int m_nAncho = 0, m_nAlto = 0, m_nBandas = 3;
    double m_dCeldaX = 0.0, m_dCeldaY = 0.0, m_dOrigenX = 0.0, m_dOrigenY = 0.0;
};

class CView {
  public:
    ~CView() { Close(); }
    CError Open(const CString&) {
        const int numero = g_pGuion->abiertas++;
        if (numero == g_pGuion->fallaAbrir) return 5;
        m_nNumero = numero;
        ++g_pGuion->vivas;
        m_Info = {g_pGuion->ancho,   g_pGuion->alto,   3, g_pGuion->celdaX, g_pGuion->celdaY,
                  g_pGuion->origenX, g_pGuion->origenY};
        return 0;
    }
    const CFileInfo& GetFileInfo() const { return m_Info; }
    CError SetView(const std::vector<unsigned>&, int x0, int y0, int x1, int y1, int, int) {
        if (m_nNumero == g_pGuion->fallaVista) return 6;
        m_nX0 = x0;
        m_nX1 = x1;
        m_nFila = y0;
        const std::lock_guard cierre(g_pGuion->mutex);
        g_pGuion->ventanas.push_back({x0, y0, x1, y1});
        return 0;
    }
    int ReadLineBGR(unsigned char* linea) {
        std::this_thread::sleep_for(std::chrono::milliseconds(g_pGuion->demora));
        ++g_pGuion->lineas;
        if (m_nFila == g_pGuion->fallaLinea && g_pGuion->lanzaEntero) throw 7;
        if (m_nFila == g_pGuion->fallaLinea) return 1;
        for (int x = m_nX0; x <= m_nX1; ++x, linea += 3)
            Pixel(x, m_nFila, linea);
        ++m_nFila;
        return 0;
    }
    CError Close() {
        if (m_nNumero >= 0) --g_pGuion->vivas;
        m_nNumero = -1;
        return 0;
    }
    /// Column and row tell the pixel.
    static void Pixel(int x, int y, unsigned char* bgr) {
        bgr[0] = static_cast<unsigned char>(x);
        bgr[1] = static_cast<unsigned char>(y);
        bgr[2] = static_cast<unsigned char>(x * 7 + y * 3);
    }

  private:
    CFileInfo m_Info;
    int m_nNumero = -1, m_nX0 = 0, m_nX1 = 0, m_nFila = 0;
};

using CMutex = std::mutex;
using CMutexLock = std::lock_guard<std::mutex>;

class CEvent {
  public:
    void Set() {
        const std::lock_guard cierre(m_Mutex);
        m_bActivo = true;
        m_Aviso.notify_all();
    }
    void Wait() {
        std::unique_lock cierre(m_Mutex);
        m_Aviso.wait(cierre, [this] { return m_bActivo; });
    }
    bool Wait(unsigned ms) {
        std::unique_lock cierre(m_Mutex);
        return m_Aviso.wait_for(cierre, std::chrono::milliseconds(ms), [this] { return m_bActivo; });
    }

  private:
    std::mutex m_Mutex;
    std::condition_variable m_Aviso;
    bool m_bActivo = false;
};

class CThread {
  public:
    virtual ~CThread() { Join(); }
    bool Start(void* dato) {
        if (g_pGuion->hilos >= g_pGuion->hilosMaximos) return false;
        ++g_pGuion->hilos;
        m_Hilo = std::thread([this, dato] { Work(dato); });
        return true;
    }
    void Join() {
        if (m_Hilo.joinable()) m_Hilo.join();
    }
    virtual void Work(void* dato) = 0;

  private:
    std::thread m_Hilo;
};

}  // namespace NCS
