#pragma once
// Internal. The sums of products that template matching needs, through Fourier transforms.

#include "platform/Tipos.h"

#include <complex>
#include <cstdint>
#include <memory>
#include <vector>

namespace Vertiz {

/// One value a pixel, by rows.
struct CPlanoBytes {
    int m_nAncho = 0, m_nAlto = 0;
    std::vector<BYTE> m_Valores;

    const BYTE* Fila(int fila) const { return &m_Valores[static_cast<std::size_t>(fila) * unsigned(m_nAncho)]; }
};

/// Slides a template over an image and past its edges, where the image counts as 0. Offset (i, j) puts the template's
/// first cell at row i - (h - 1) and column j - (w - 1) of the image.
///
/// The sums come in bands of rows, tile by tile, so that a transform stays in the processor's cache. They are whole
/// numbers, below 2^53 by far, and the transforms err by much less than a half: rounded they are exact.
class CorrelacionFourier {
  public:
    /// Both planes must outlive the object.
    CorrelacionFourier(const CPlanoBytes& imagen, const CPlanoBytes& plantilla);
    ~CorrelacionFourier();

    int Filas() const { return m_Imagen.m_nAlto + m_Plantilla.m_nAlto - 1; }
    int Columnas() const { return m_Imagen.m_nAncho + m_Plantilla.m_nAncho - 1; }

    /// The sums of products of row i of offsets, Columnas() of them. Rows asked for one after the other cost least.
    const std::int64_t* Fila(int i);

  private:
    using Complejo = std::complex<double>;
    struct Transformadas;

    void CalculaFranja(int fila);
    void PonTesela(int fila, int columna, bool imaginaria);
    void TomaSumas(int fila, int columna, bool imaginaria);

    const CPlanoBytes &m_Imagen, &m_Plantilla;
    std::size_t m_nAncho, m_nAlto;  // of a tile
    std::unique_ptr<Transformadas> m_pTransformadas;
    std::vector<Complejo> m_Tesela, m_Espectro;
    std::vector<std::int64_t> m_Franja;
    int m_nFranja = -1;  // first row of the band
};

}  // namespace Vertiz
