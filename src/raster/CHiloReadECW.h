#pragma once
// Internal. The worker that reads one band of a picture for CECW.

#include "raster/CBloques.h"
#include "raster/NCS.h"
#include "platform/Tipos.h"

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace Vertiz {

/// A window of a picture: columns [x0, x1) and rows [y0, y1), rows from the top.
struct CVentanaECW {
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;

    int Ancho() const { return x1 - x0; }
    int Alto() const { return y1 - y0; }
    bool EstaVacia() const { return x0 >= x1 || y0 >= y1; }
};

/// What is read of a picture of ancho x alto pixels: a range from a to b counts when a < b, else the whole.
CVentanaECW RecortaVentana(int ancho, int alto, int x0, int x1, int y0, int y1);

/// The indices of all bands of a picture, as a view takes them.
std::vector<UINT> TodasLasBandas(int cuenta);

/// How many of n pixels remain when every r-th is taken.
inline int Reducidos(int n, unsigned r) {
    return r < 2 ? n : static_cast<int>((std::int64_t{n} + r - 1) / r);
}

/// What a worker gets. What it points to belongs to the operation that starts the workers, and outlives them.
struct CParametrosECW {
    NCS::CString m_sRuta;
    NCS::CMutex* m_pMutex = nullptr;
    int* m_pActivos = nullptr;  ///< workers still running, under the lock
    int m_nHilos = 0;
    unsigned m_nReduccion = 0;
    int m_nX0 = 0, m_nX1 = 0, m_nY0 = 0, m_nY1 = 0;  ///< the window asked for; see CECW::Leer
    NCS::CEvent* m_pEvento = nullptr;                ///< set by the last worker
};

/// Reads band i of n bands of the window, through a view of its own, into rows of its own. Whatever goes wrong, Work
/// ends as usual: with its progress at 100, its count closed and Fallo telling the reason.
class CHiloReadECW : public NCS::CThread {
  public:
    /// @param progresos  one percentage for each worker, shared by them all; each writes its own
    CHiloReadECW(std::uint64_t indice, std::vector<float>* progresos) : m_nIndice(indice), m_pProgresos(progresos) {}
    ~CHiloReadECW() override { Join(); }

    /// @param dato  a CParametrosECW
    void Work(void* dato) override;

    // Once Work has ended:
    bool HaFallado() const { return m_bFallo; }
    const char* Fallo() const { return m_szFallo.data(); }
    const BYTE* Fila(int i) const { return m_Filas.Bloque(static_cast<UINT>(i)); }
    /// All of them, to keep.
    CBloques SueltaFilas() { return std::move(m_Filas); }
    int NumFilas() const { return m_nFilas; }
    int AnchoFila() const { return m_nAnchoFila; }
    double OrigenX() const { return m_dOrigenX; }
    double OrigenY() const { return m_dOrigenY; }
    double CeldaX() const { return m_dCeldaX; }
    double CeldaY() const { return m_dCeldaY; }
    const CVentanaECW& Ventana() const { return m_Ventana; }

  private:
    void Lee(const CParametrosECW& parametros);
    void LeeLineas(NCS::CView& vista, int lineas, unsigned paso);
    void Progresa(float porcentaje);

    std::uint64_t m_nIndice;
    float m_fProgresoAnterior = 0.0F;
    std::vector<float>* m_pProgresos;
    CBloques m_Filas;  // BGR, rows padded to four bytes, the top one first
    int m_nFilas = 0;
    int m_nAnchoFila = 0;  // pixels
    double m_dOrigenX = 0.0, m_dOrigenY = 0.0;
    double m_dCeldaX = 1.0, m_dCeldaY = 1.0;  // never negative
    CVentanaECW m_Ventana;
    bool m_bFallo = false;
    std::array<char, 512> m_szFallo{};  // no allocation where memory may be what is missing
};

}  // namespace Vertiz
