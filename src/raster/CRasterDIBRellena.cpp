// Flood fill. The work list holds seeds, and each is filled out to the whole stretch of its row that has the old
// colour: the region comes out as it would pixel by pixel, with a list that stays short.

#include "raster/CRasterDIB.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"

#include <algorithm>
#include <array>

namespace Vertiz {

namespace {

struct Semilla {
    int fila, columna;
};

template <std::size_t kBytes>
using Color = std::array<BYTE, kBytes>;

template <std::size_t kBytes>
Color<kBytes>* Pixeles(std::span<BYTE> fila) {
    return reinterpret_cast<Color<kBytes>*>(fila.data());
}

// Adds a seed for each stretch of the old colour in columns [desde, hasta) of a row.
template <std::size_t kBytes>
void Siembra(std::span<BYTE> bytesFila, int fila, int desde, int hasta, const Color<kBytes>& viejo,
             std::vector<Semilla>& semillas) {
    const Color<kBytes>* const pixeles = Pixeles<kBytes>(bytesFila);
    for (int c = desde; c < hasta; ++c)
        if (pixeles[c] == viejo && (c == desde || pixeles[c - 1] != viejo)) semillas.push_back({fila, c});
}

}  // namespace

bool CRasterDIB::Rellena(int fila, int columna, const BYTE* pixel, std::vector<int>* pilaFilas,
                         std::vector<int>* pilaColumnas) {
    if (m_Bloques.EstaVacio() || fila < 0 || fila >= AltoPixeles() || columna < 0 || columna >= m_nAncho) return false;
    const bool propia = pilaFilas == nullptr || pilaColumnas == nullptr;
    if (m_Cabecera.biBitCount == 24)
        return propia ? RellenaRegion<3>(fila, columna, pixel)
                      : RellenaPixel<3>(fila, columna, pixel, *pilaFilas, *pilaColumnas);
    if (m_Cabecera.biBitCount == 8)
        return propia ? RellenaRegion<1>(fila, columna, pixel)
                      : RellenaPixel<1>(fila, columna, pixel, *pilaFilas, *pilaColumnas);
    return true;
}

// One step of a list that the caller works off.
template <std::size_t kBytes>
bool CRasterDIB::RellenaPixel(int fila, int columna, const BYTE* pixel, std::vector<int>& filas,
                              std::vector<int>& columnas) {
    Color<kBytes> nuevo;
    std::copy_n(pixel, kBytes, nuevo.begin());
    Color<kBytes>& aqui = Pixeles<kBytes>(FilaEnMemoria(fila))[columna];
    const Color<kBytes> viejo = aqui;
    if (viejo == nuevo) return true;
    aqui = nuevo;
    for (const auto& [f, c] :
         {Semilla{fila, columna - 1}, {fila, columna + 1}, {fila - 1, columna}, {fila + 1, columna}})
        if (f >= 0 && f < AltoPixeles() && c >= 0 && c < m_nAncho && Pixeles<kBytes>(FilaEnMemoria(f))[c] == viejo) {
            filas.push_back(f);
            columnas.push_back(c);
        }
    return true;
}

template <std::size_t kBytes>
bool CRasterDIB::RellenaRegion(int fila, int columna, const BYTE* pixel) {
    Color<kBytes> nuevo;
    std::copy_n(pixel, kBytes, nuevo.begin());
    const Color<kBytes> viejo = Pixeles<kBytes>(FilaEnMemoria(fila))[columna];
    if (viejo == nuevo) return true;

    const Etapa etapa(m_nNivelMensajes, kTextoOperacion);
    std::vector<Semilla> semillas{{fila, columna}};
    while (!semillas.empty()) {
        if (!etapa.Paso(0, static_cast<int>(semillas.size()))) return false;
        const auto [f, c] = semillas.back();
        semillas.pop_back();
        Color<kBytes>* const pixeles = Pixeles<kBytes>(FilaEnMemoria(f));
        if (pixeles[c] != viejo) continue;  // another stretch came by
        int desde = c, hasta = c + 1;
        while (desde > 0 && pixeles[desde - 1] == viejo)
            --desde;
        while (hasta < m_nAncho && pixeles[hasta] == viejo)
            ++hasta;
        std::fill(pixeles + desde, pixeles + hasta, nuevo);
        if (f > 0) Siembra<kBytes>(FilaEnMemoria(f - 1), f - 1, desde, hasta, viejo, semillas);
        if (f + 1 < AltoPixeles()) Siembra<kBytes>(FilaEnMemoria(f + 1), f + 1, desde, hasta, viejo, semillas);
    }
    return true;
}

}  // namespace Vertiz
