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
    if (!destino->Crear(ancho, alto, m_Cabecera.biBitCount, Resolucion(), true, nullptr, paleta, false)) return nullptr;
    if (auto* dib = dynamic_cast<CRasterDIB*>(destino)) dib->HeredaAspecto(*this);
    return destino;
}

int CRasterDIB::Recorta(int fila0, int col0, int fila1, int col1, IRaster* destino) {
    if (!TienePixeles()) return 2;
    if (fila0 < 0 || col0 < 0 || fila0 > fila1 || col0 > col1 || fila1 > AltoPixeles() || col1 > m_nAncho)
        return kTamanoMalo;
    std::unique_ptr<CRasterDIB> propia;
    IRaster* const nueva = CreaDestino(col1 - col0, fila1 - fila0, m_bModoFichero, destino, propia);
    if (nueva == nullptr) return FalloAlmacen();

    std::vector<BYTE> copia;
    for (int r = fila0; r < fila1 && col0 < col1; ++r) {
        const std::span<const BYTE> fila = FilaAlmacen(r, copia);
        const std::size_t inicio = std::size_t(col0) * std::size_t(BytesPixel());
        if (fila.empty() || !nueva->SetFila(&fila[inicio], r - fila0, 0, col1 - col0)) return FalloAlmacen();
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
    const int bytes = BytesPixel();
    std::vector<BYTE> copia, pixeles(std::size_t(columnas) * std::size_t(bytes));
    for (int r = 0; r < filas; ++r) {
        const std::span<const BYTE> fila = FilaAlmacen(origenFilas[std::size_t(r)], copia);
        if (fila.empty()) return FalloAlmacen();
        if (bytes == 3)
            CopiaElegidos<3>(fila.data(), origenColumnas, pixeles.data());
        else if (bytes == 1)
            CopiaElegidos<1>(fila.data(), origenColumnas, pixeles.data());
        if (!nueva->SetFila(pixeles.data(), r, 0, columnas)) return FalloAlmacen();
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
    const int bytes = BytesPixel();
    std::vector<BYTE> copia, pixeles(std::size_t(columnas) * std::size_t(bytes));
    for (int r = 0; r < filas; ++r) {
        const std::span<const BYTE> fila = FilaAlmacen(2 * r, copia);
        if (fila.empty() && columnas > 0) return FalloAlmacen();
        if (bytes == 3)
            CopiaAlternos<3>(fila.data(), columnas, pixeles.data());
        else if (bytes == 1)
            CopiaAlternos<1>(fila.data(), columnas, pixeles.data());
        if (columnas > 0 && !nueva->SetFila(pixeles.data(), r, 0, columnas)) return FalloAlmacen();
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
