// Sums of products by tiles: a tile's transform times that of the template, and back (overlap-save).

#include "raster/CorrelacionFourier.h"

#include <kissfft/kissfft.hh>

#include <algorithm>
#include <bit>
#include <cmath>

namespace Vertiz {

namespace {

using Complejo = std::complex<double>;

// The side of a tile for a side of the template: long enough for most of it to be results, and no longer than needed.
std::size_t LadoTesela(int plantilla, int resultado) {
    constexpr unsigned kMenor = 256;
    const unsigned entera = std::bit_ceil(unsigned(resultado) + unsigned(plantilla) - 1);
    return std::min(entera, std::max(kMenor, std::bit_ceil(4U * unsigned(plantilla))));
}

// Turns rows into columns, by blocks that stay in cache.
void Traspone(const Complejo* origen, Complejo* destino, std::size_t filas, std::size_t columnas) {
    constexpr std::size_t kBloque = 16;
    for (std::size_t i0 = 0; i0 < filas; i0 += kBloque)
        for (std::size_t j0 = 0; j0 < columnas; j0 += kBloque)
            for (std::size_t i = i0; i < std::min(i0 + kBloque, filas); ++i)
                for (std::size_t j = j0; j < std::min(j0 + kBloque, columnas); ++j)
                    destino[j * filas + i] = origen[i * columnas + j];
}

}  // namespace

// The transforms of a tile, one axis after the other. A spectrum stays transposed: only its cells' places matter.
struct CorrelacionFourier::Transformadas {
    Transformadas(std::size_t w, std::size_t h)
        : filas(w, false),
          columnas(h, false),
          filasAtras(w, true),
          columnasAtras(h, true),
          giro(w * h),
          ancho(w),
          alto(h) {}

    void Adelante(std::vector<Complejo>& tesela) {
        for (std::size_t i = 0; i < alto; ++i)
            filas.transform(&tesela[i * ancho], &giro[i * ancho]);
        Traspone(giro.data(), tesela.data(), alto, ancho);
        for (std::size_t j = 0; j < ancho; ++j)
            columnas.transform(&tesela[j * alto], &giro[j * alto]);
        tesela.swap(giro);
    }

    void Atras(std::vector<Complejo>& espectro) {
        for (std::size_t j = 0; j < ancho; ++j)
            columnasAtras.transform(&espectro[j * alto], &giro[j * alto]);
        Traspone(giro.data(), espectro.data(), ancho, alto);
        for (std::size_t i = 0; i < alto; ++i)
            filasAtras.transform(&espectro[i * ancho], &giro[i * ancho]);
        espectro.swap(giro);
    }

    kissfft<double> filas, columnas, filasAtras, columnasAtras;
    std::vector<Complejo> giro;
    std::size_t ancho, alto;
};

CorrelacionFourier::CorrelacionFourier(const CPlanoBytes& imagen, const CPlanoBytes& plantilla)
    : m_Imagen(imagen),
      m_Plantilla(plantilla),
      m_nAncho(LadoTesela(plantilla.m_nAncho, Columnas())),
      m_nAlto(LadoTesela(plantilla.m_nAlto, Filas())),
      m_pTransformadas(std::make_unique<Transformadas>(m_nAncho, m_nAlto)),
      m_Tesela(m_nAncho * m_nAlto),
      m_Espectro(m_nAncho * m_nAlto) {
    for (int r = 0; r < plantilla.m_nAlto; ++r)
        std::copy_n(plantilla.Fila(r), plantilla.m_nAncho, &m_Espectro[std::size_t(r) * m_nAncho]);
    m_pTransformadas->Adelante(m_Espectro);
    // What the transforms there and back multiply by is taken off here.
    const double escala = 1.0 / static_cast<double>(m_nAncho * m_nAlto);
    for (Complejo& z : m_Espectro)
        z = std::conj(z) * escala;
}

CorrelacionFourier::~CorrelacionFourier() = default;

const std::int64_t* CorrelacionFourier::Fila(int i) {
    const int alto = static_cast<int>(m_nAlto) - m_Plantilla.m_nAlto + 1;  // rows of results in a tile
    if (m_nFranja != i - i % alto) CalculaFranja(i - i % alto);
    return &m_Franja[std::size_t(i % alto) * std::size_t(Columnas())];
}

// The sums of a band of rows. Two tiles are worked off at once: as the template is real, one as the real part and the
// other as the imaginary part don't disturb each other.
void CorrelacionFourier::CalculaFranja(int fila) {
    const int paso = static_cast<int>(m_nAncho) - m_Plantilla.m_nAncho + 1;
    m_Franja.resize((m_nAlto - std::size_t(m_Plantilla.m_nAlto) + 1) * std::size_t(Columnas()));
    m_nFranja = fila;
    for (int columna = 0; columna < Columnas(); columna += 2 * paso) {
        std::ranges::fill(m_Tesela, Complejo{});
        PonTesela(fila, columna, false);
        PonTesela(fila, columna + paso, true);
        m_pTransformadas->Adelante(m_Tesela);
        for (std::size_t k = 0; k < m_Tesela.size(); ++k)
            m_Tesela[k] *= m_Espectro[k];
        m_pTransformadas->Atras(m_Tesela);
        TomaSumas(fila, columna, false);
        TomaSumas(fila, columna + paso, true);
    }
}

// Brings in the part of the image that the offsets from (fila, columna) on look at.
void CorrelacionFourier::PonTesela(int fila, int columna, bool imaginaria) {
    const int y0 = fila - (m_Plantilla.m_nAlto - 1), x0 = columna - (m_Plantilla.m_nAncho - 1);
    const int desde = std::max(x0, 0);
    const int hasta =
        static_cast<int>(std::min<std::int64_t>(std::int64_t{x0} + std::int64_t(m_nAncho), m_Imagen.m_nAncho));
    for (int y = std::max(y0, 0); y < m_Imagen.m_nAlto && y - y0 < static_cast<int>(m_nAlto); ++y) {
        const BYTE* const origen = m_Imagen.Fila(y);
        // A complex number is an array of its two parts.
        double* const destino =
            reinterpret_cast<double*>(&m_Tesela[std::size_t(y - y0) * m_nAncho]) + (imaginaria ? 1 : 0);
        for (int x = desde; x < hasta; ++x)
            destino[2 * (x - x0)] = origen[x];
    }
}

void CorrelacionFourier::TomaSumas(int fila, int columna, bool imaginaria) {
    const int alto = static_cast<int>(m_nAlto) - m_Plantilla.m_nAlto + 1;
    const int ancho = static_cast<int>(m_nAncho) - m_Plantilla.m_nAncho + 1;
    const int n = std::min(ancho, Columnas() - columna);
    for (int i = 0; i < alto && fila + i < Filas(); ++i) {
        const double* const origen =
            reinterpret_cast<const double*>(&m_Tesela[std::size_t(i) * m_nAncho]) + (imaginaria ? 1 : 0);
        std::int64_t* const destino = &m_Franja[std::size_t(i) * std::size_t(Columnas()) + std::size_t(columna)];
        for (int j = 0; j < n; ++j)
            destino[j] = static_cast<std::int64_t>(origen[2 * j] + 0.5);
    }
}

}  // namespace Vertiz
