// Which part of a grid each image covers, and what is left for the surface to draw without one.

#include "terrain/CEscenaDEM.h"
#include "terrain/CeldasTextura.h"

#include <algorithm>
#include <cstddef>
#include <vector>

using Vertiz::CMaximas;

namespace {

// A rectangle of the grid: rows of samples from the north, the last one excluded, and columns of cells.
CMaximas<int> Zona(int filaMin, int filaMax, int colMin, int colMax) {
    CMaximas<int> zona;
    zona.Minima() = {colMin, filaMin, 0};
    zona.Maxima() = {colMax, filaMax, 0};
    return zona;
}

// Takes an image's rectangle out of zonas[i], whose parts may go to the end of the list.
// @return whether the zone is still there; otherwise the next one has taken its place
bool Recorta(std::vector<CMaximas<int>>& zonas, std::size_t i, const CMaximas<int>& imagen) {
    const int filaMin = imagen.Minima().y, filaMax = imagen.Maxima().y;
    const int colMin = imagen.Minima().x, colMax = imagen.Maxima().x;
    const CMaximas<int> e = zonas[i];
    const int norte = e.Minima().y, sur = e.Maxima().y, oeste = e.Minima().x, este = e.Maxima().x;
    const auto nueva = [&](int norteNuevo, int surNuevo, int oesteNuevo, int esteNuevo) {
        zonas.push_back(Zona(norteNuevo, surNuevo, oesteNuevo, esteNuevo));
    };
    if (oeste >= colMax || este <= colMin || norte >= filaMax || sur - 1 <= filaMin) return true;
    if (colMin <= oeste && este <= colMax) {
        if (filaMin <= norte && sur - 1 <= filaMax) {
            zonas.erase(zonas.begin() + static_cast<std::ptrdiff_t>(i));
            return false;
        }
        if (norte >= filaMin) {
            zonas[i].Minima().y = filaMax;
            return true;
        }
        zonas[i].Maxima().y = filaMin + 1;
        if (sur - 1 > filaMax) nueva(filaMax, sur, oeste, este);
        return true;
    }
    int esteParte = este;
    if (norte >= filaMin && sur - 1 <= filaMax) {
        if (!(oeste < colMin && este > colMax)) {
            if (oeste < colMin)
                zonas[i].Maxima().x = colMin;
            else
                zonas[i].Minima().x = colMax;
            return true;
        }
        nueva(norte, sur, colMax, este);
        esteParte = colMin;
    }
    const int k = filaMax < sur - 1 ? filaMax : filaMin;
    nueva(k, sur, oeste, esteParte);
    nueva(norte, k + 1, oeste, esteParte);
    zonas.erase(zonas.begin() + static_cast<std::ptrdiff_t>(i));
    return false;
}

}  // namespace

// The rectangle that an image covers; empty for one that lies beside the grid.
CMaximas<int> CEscenaDEM::ZonaImagen(const CDataTexturas& registro) const {
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas()) - 1;
    const int fin = CeldasHasta(registro.m_nCeldasFila, registro.m_nNumFilas, registro.m_nDespFila);
    const int filaMin = std::max(fin - FilasImagen(registro), 0), filaMax = std::min(filas, fin);
    const int oeste = CeldasHasta(registro.m_nCeldasCol, 0, registro.m_nDespCol);
    const int colMin = std::max(oeste, 0), colMax = std::min(oeste + ColumnasImagen(registro), columnas);
    if (filaMin >= std::min(filaMax, filas - 1) || colMin >= colMax) return {};
    return Zona(filaMin, filaMax, colMin, colMax);
}

// Rows and columns of cells that an image reaches over, counted from the edge of its tiles.
int CEscenaDEM::FilasImagen(const CDataTexturas& registro) const {
    return TruncaPorArriba(registro.m_nAltoImagen * registro.m_dSizePixel / m_pDEM->GetCeldaY());
}

int CEscenaDEM::ColumnasImagen(const CDataTexturas& registro) const {
    return TruncaPorArriba(registro.m_nAnchoImagen * registro.m_dSizePixel / m_pDEM->GetCeldaX());
}

int CEscenaDEM::AsignaTexturas(unsigned index, Vertiz::CNivelMensajes /*nivel*/) {
    if (m_pDEM == nullptr || index >= m_Texturas.size()) return 0;
    if (m_pDEM->EsListaCeldas()) return 1;
    const CMaximas<int> imagen = ZonaImagen(m_Texturas[index]);
    const bool fuera = imagen.EstanVacias(false);
    for (unsigned j = 0; j < m_Texturas.size() && !fuera; ++j) {
        std::vector<CMaximas<int>>& zonas = m_Texturas[j].m_ZonasLibres;
        for (std::size_t i = 0; j != index && i < zonas.size();)
            if (Recorta(zonas, i, imagen)) ++i;
    }
    // Beyond the second, an image has no bands of its own: the first two's cover all of the grid.
    if (index > 1) return 1;
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas()) - 1;
    std::vector<CMaximas<int>>& zonas = m_Texturas[index].m_ZonasLibres;
    if (fuera) {
        zonas.push_back(Zona(0, filas, 0, columnas));
        return 1;
    }
    // Bands reach over the image's edge by a row of samples or a column, so that no seam opens.
    const int filaMin = imagen.Minima().y, filaMax = imagen.Maxima().y;
    const int colMin = imagen.Minima().x, colMax = imagen.Maxima().x;
    if (filaMin >= 1) zonas.push_back(Zona(0, filaMin + 1, 0, columnas));
    if (filaMax < filas - 1) zonas.push_back(Zona(filaMax, filas, 0, columnas));
    if (colMin >= 1) zonas.push_back(Zona(filaMin, std::min(filaMax + 1, filas), 0, colMin));
    if (colMax < columnas) zonas.push_back(Zona(filaMin, std::min(filaMax + 1, filas), colMax, columnas));
    return 1;
}
