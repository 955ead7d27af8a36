// Operations that make a picture of another size: cutting, resampling, halving; and the way back into memory.

#include "raster/CRasterDIB.h"
#include "raster/Resultados.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"
#include "platform/Memoria.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace Vertiz {

namespace {

// For each index of the new picture that of the old, by the nearest.
std::vector<int> IndicesOrigen(int nuevos, int viejos, double factor) {
    std::vector<int> indices(static_cast<std::size_t>(nuevos));
    for (int i = 0; i < nuevos; ++i)
        indices[std::size_t(i)] = static_cast<int>(std::min(std::trunc(i / factor + 0.5), viejos - 1.0));
    return indices;
}

// Pixels by their columns, which ascend. A copy of four bytes is one instruction where three are several, and what it
// takes too much the next pixel overwrites: so it goes as long as another pixel follows on both sides.
template <std::size_t kBytes>
void CopiaElegidos(const BYTE* origen, const std::vector<int>& columnas, BYTE* destino) {
    constexpr std::size_t kDeUnaVez = kBytes == 3 ? 4 : kBytes;
    auto c = columnas.begin();
    for (const auto fin = std::lower_bound(c, columnas.end(), columnas.back()); c != fin; ++c, destino += kBytes)
        std::memcpy(destino, origen + kBytes * std::size_t(*c), kDeUnaVez);
    for (; c != columnas.end(); ++c, destino += kBytes)
        std::memcpy(destino, origen + kBytes * std::size_t(*c), kBytes);
}

// Every second pixel.
template <std::size_t kBytes>
void CopiaAlternos(const BYTE* origen, int n, BYTE* destino) {
    for (std::size_t c = 0; c < std::size_t(n); ++c)
        std::memcpy(destino + kBytes * c, origen + 2 * kBytes * c, kBytes);
}

int MitadPorArriba(int n) {
    return n / 2 + n % 2;
}

}  // namespace

// Bytes of a pixel that is copied; 0 for a depth without access to pixels, which stay white.
std::size_t CRasterDIB::BytesElegibles() const {
    return BytesPixelesFila() > 0 ? std::size_t(BytesPixel()) : 0;
}

// A new picture of the depth and look of this one, in `destino` or, without one, in `propia`; null without room.
IRaster* CRasterDIB::CreaDestino(int ancho, int alto, int modoFichero, IRaster* destino,
                                 std::unique_ptr<CRasterDIB>& propia) const {
    if (destino == nullptr || destino == this) {
        propia = Nuevo(modoFichero);
        propia->SetNombre(m_sRuta);
        propia->m_nNivelMensajes = m_nNivelMensajes;
        destino = propia.get();
    }
    const BYTE* paleta = TienePaleta() ? Paleta() : nullptr;
    auto* const dib = dynamic_cast<CRasterDIB*>(destino);
    const bool porFilas = dib != nullptr && dib->m_bModoFichero == 0 && BytesPixelesFila() > 0;  // by FilasNuevas
    if (!destino->Crear(ancho, alto, m_Cabecera.biBitCount, Resolucion(), !porFilas, nullptr, paleta, false))
        return nullptr;
    if (porFilas && dib->m_bModoFichero != 0 && !dib->LlenaAlmacen(true, nullptr, 1)) return nullptr;
    if (dib != nullptr) dib->HeredaAspecto(*this);
    return destino;
}

// The rows of a picture that CreaDestino made, white until they are written, from the bottom. In memory they are
// written in place, and white is only what the pixels don't reach.
class CRasterDIB::FilasNuevas {
  public:
    FilasNuevas(IRaster& nueva, int columnas, std::size_t bytesPixel)
        : m_Nueva(nueva), m_nColumnas(columnas), m_nBytes(std::size_t(columnas) * bytesPixel) {
        auto* const dib = dynamic_cast<CRasterDIB*>(&nueva);
        if (dib != nullptr && dib->m_bModoFichero == 0 && m_nBytes > 0)
            m_pEnMemoria = dib;
        else
            m_Copia.resize(m_nBytes);
    }
    ~FilasNuevas() {
        for (int f = m_nSiguiente; m_pEnMemoria != nullptr && f < m_pEnMemoria->AltoPixeles(); ++f)
            std::ranges::fill(m_pEnMemoria->FilaEnMemoria(f), BYTE{255});
    }
    FilasNuevas(const FilasNuevas&) = delete;
    FilasNuevas& operator=(const FilasNuevas&) = delete;

    /// Room for all pixels of the next row.
    BYTE* Siguiente() {
        if (m_pEnMemoria == nullptr) return m_Copia.data();
        const std::span<BYTE> fila = m_pEnMemoria->FilaEnMemoria(m_nSiguiente);
        std::ranges::fill(fila.subspan(m_nBytes), BYTE{255});
        return fila.data();
    }
    /// The row is written. @return false when it can't be put into its file
    bool Guarda() {
        const int fila = m_nSiguiente++;
        return m_pEnMemoria != nullptr || m_Nueva.SetFila(m_Copia.data(), fila, 0, m_nColumnas);
    }

  private:
    IRaster& m_Nueva;
    int m_nColumnas;
    std::size_t m_nBytes;
    CRasterDIB* m_pEnMemoria = nullptr;
    std::vector<BYTE> m_Copia;
    int m_nSiguiente = 0;
};

int CRasterDIB::Recorta(int fila0, int col0, int fila1, int col1, IRaster* destino) {
    if (!TienePixeles()) return 2;
    if (fila0 < 0 || col0 < 0 || fila0 > fila1 || col0 > col1 || fila1 > AltoPixeles() || col1 > m_nAncho)
        return kTamanoMalo;
    std::unique_ptr<CRasterDIB> propia;
    IRaster* const nueva = CreaDestino(col1 - col0, fila1 - fila0, m_bModoFichero, destino, propia);
    if (nueva == nullptr) return FalloAlmacen();

    const std::size_t bytes = BytesElegibles(), inicio = std::size_t(col0) * bytes;
    FilasNuevas nuevas(*nueva, col1 - col0, bytes);
    std::vector<BYTE> copia;
    for (int r = fila0; r < fila1 && col0 < col1; ++r) {
        const std::span<const BYTE> fila = FilaAlmacen(r, copia);
        if (fila.empty()) return FalloAlmacen();
        std::copy_n(fila.data() + inicio, std::size_t(col1 - col0) * bytes, nuevas.Siguiente());
        if (!nuevas.Guarda()) return FalloAlmacen();
    }
    if (propia != nullptr) TomaImagen(*propia);
    return 1;
}

int CRasterDIB::CambiaTamano(int filas, int columnas, IRaster* destino) {
    if (filas <= 0 || columnas <= 0) return kTamanoMalo;
    return Remuestrea(filas, columnas, double(filas) / AltoPixeles(), double(columnas) / m_nAncho, destino);
}

int CRasterDIB::Escala(double factor, IRaster* destino) {
    constexpr double kMaximo = std::numeric_limits<int>::max();
    const double filas = AltoPixeles() * factor + 0.5, columnas = m_nAncho * factor + 0.5;
    if (!(factor > 0.0) || !(filas <= kMaximo) || !(columnas <= kMaximo)) return kTamanoMalo;
    if (TienePixeles() && (filas < 1.0 || columnas < 1.0)) return kTamanoMalo;
    return Remuestrea(static_cast<int>(filas), static_cast<int>(columnas), factor, factor, destino);
}

int CRasterDIB::Remuestrea(int filas, int columnas, double factorFilas, double factorColumnas, IRaster* destino) {
    if (!TienePixeles() || AltoPixeles() == 0 || m_nAncho == 0) return 2;
    const ULONGLONG bytesIndices = (ULONGLONG(filas) + ULONGLONG(columnas)) * sizeof(int);
    if (!HayMemoria(bytesIndices)) return FalloAlmacen();
    std::unique_ptr<CRasterDIB> propia;
    IRaster* const nueva = CreaDestino(columnas, filas, 0, destino, propia);
    if (nueva == nullptr) return FalloAlmacen();

    const Etapa etapa(m_nNivelMensajes, kTextoOperacion);
    const std::vector<int> origenFilas = IndicesOrigen(filas, AltoPixeles(), factorFilas);
    const std::vector<int> origenColumnas = IndicesOrigen(columnas, m_nAncho, factorColumnas);
    const std::size_t bytes = BytesElegibles();
    FilasNuevas nuevas(*nueva, columnas, bytes);
    std::vector<BYTE> copia;
    for (int r = 0; r < filas; ++r) {
        const std::span<const BYTE> fila = FilaAlmacen(origenFilas[std::size_t(r)], copia);
        if (fila.empty()) return FalloAlmacen();
        if (bytes == 3)
            CopiaElegidos<3>(fila.data(), origenColumnas, nuevas.Siguiente());
        else if (bytes == 1)
            CopiaElegidos<1>(fila.data(), origenColumnas, nuevas.Siguiente());
        if (!nuevas.Guarda()) return FalloAlmacen();
        if (!etapa.Paso(r + 1, filas)) return 2;
    }
    if (propia != nullptr) TomaImagen(*propia);
    return 1;
}

int CRasterDIB::Reducir(int /*interpolacion*/, int nivel) {
    if (!TienePixeles()) return 2;
    const int filas = MitadPorArriba(AltoPixeles()), columnas = MitadPorArriba(m_nAncho);
    std::unique_ptr<CRasterDIB> nueva;
    if (CreaDestino(columnas, filas, m_bModoFichero, nullptr, nueva) == nullptr) return FalloAlmacen();

    const Etapa etapa(nivel, kTextoOperacion);
    const std::size_t bytes = BytesElegibles();
    FilasNuevas nuevas(*nueva, columnas, bytes);
    std::vector<BYTE> copia;
    for (int r = 0; r < filas; ++r) {
        const std::span<const BYTE> fila = FilaAlmacen(2 * r, copia);
        if (fila.empty() && columnas > 0) return FalloAlmacen();
        if (bytes == 3)
            CopiaAlternos<3>(fila.data(), columnas, nuevas.Siguiente());
        else if (bytes == 1)
            CopiaAlternos<1>(fila.data(), columnas, nuevas.Siguiente());
        if (columnas > 0 && !nuevas.Guarda()) return FalloAlmacen();
        if (!etapa.Paso(r, filas)) return 2;
    }
    TomaImagen(*nueva);
    return 1;
}

void CRasterDIB::PasaAMemoria(bool rellenar) {
    if (m_bModoFichero == 0 || m_pTemporal == nullptr) return;
    CBloques bloques;
    if (!bloques.Reserva(static_cast<UINT>(AltoPixeles()), BytesFila())) return;
    m_pTemporal->SeekToBegin();
    for (UINT i = 0; i < bloques.Cantidad(); ++i) {
        if (rellenar) std::fill_n(bloques.Bloque(i), bloques.Tamano(), BYTE{255});
        m_pTemporal->Read(bloques.Bloque(i), bloques.Tamano());
    }
    LiberaTemporal();
    m_bModoFichero = 0;
    m_Bloques = std::move(bloques);
}

int CRasterDIB::LeerReducido(unsigned) {
    return 1;
}

}  // namespace Vertiz
