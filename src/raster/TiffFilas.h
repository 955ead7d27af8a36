#pragma once
// Internal. The rows of a page from the top, out of strips or tiles, chunky or planar.

#include "raster/TiffTrozo.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace Vertiz {

/// Half-open, in pixels of the page, rows from the top.
struct VentanaTiff {
    int col0, col1, fila0, fila1;

    int Ancho() const { return col1 - col0; }
    int Alto() const { return fila1 - fila0; }
};

/// What one column of pieces gives of a row.
struct TramoTiff {
    /// The whole row of the piece: of each plane that was asked for, or one of all samples, pixel by pixel.
    std::span<const BYTE* const> filas;
    std::size_t primero;  ///< first pixel of it that counts
    std::size_t n;        ///< how many do
    std::size_t columna;  ///< of the first, in the window
};

/// The rows of a window of a page, from the top. File and page have to outlive it.
class FilasTiff {
  public:
    /// @param planos  those wanted, by number; of a chunky page just 0
    FilasTiff(CFile& fichero, const PaginaTiff& pagina, const VentanaTiff& ventana, std::vector<unsigned> planos);

    /// Goes on to the next row of the window and hands over its stretches, from the left.
    /// @param lugar  room for a row of the picture, where rows that are the picture's own bytes may be made; or null
    /// @return false when the file's data end before it
    template <class F>
    bool Siguiente(F&& tramo, BYTE* lugar = nullptr) {
        if (!m_bBytesDeImagen) lugar = nullptr;
        if (m_nQuedanBanda == 0 && !AbreBanda()) return false;
        --m_nQuedanBanda;
        const std::uint64_t col0 = unsigned(m_Ventana.col0), col1 = unsigned(m_Ventana.col1);
        for (std::size_t t = 0; t < m_nColumnas; ++t) {
            for (std::size_t i = 0; i < m_Planos.size(); ++i)
                if ((m_Filas[i] = m_Lectores[t * m_Planos.size() + i].Fila(lugar)) == nullptr) return false;
            const std::uint64_t borde = (m_nPrimera + t) * m_Pagina.anchoTrozo;
            const std::uint64_t desde = std::max(borde, col0), hasta = std::min(borde + m_Pagina.anchoTrozo, col1);
            tramo(TramoTiff{m_Filas, desde - borde, hasta - desde, desde - col0});
        }
        return true;
    }

  private:
    /// The pieces that the next row of the window lies in.
    bool AbreBanda();

    CFile& m_Fichero;
    const PaginaTiff& m_Pagina;
    VentanaTiff m_Ventana;
    std::vector<unsigned> m_Planos;
    std::uint64_t m_nPrimera;  ///< first column of pieces
    std::size_t m_nColumnas;   ///< how many of them
    std::uint64_t m_nFila;     ///< of the page, where the next band begins
    std::uint64_t m_nQuedanBanda = 0;
    bool m_bBytesDeImagen;                ///< a row of the file is a row of the window, a byte for each pixel
    std::vector<LectorTrozo> m_Lectores;  ///< by columns, then planes
    std::vector<const BYTE*> m_Filas;
};

}  // namespace Vertiz
