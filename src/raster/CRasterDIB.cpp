// The store of a picture and the access to its pixels. Everything else, in this class and in those derived from it,
// works on rows that it gets from here.

#include "raster/CRasterDIB.h"

#include "raster/FicheroTemporal.h"
#include "platform/Memoria.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <new>
#include <utility>

namespace Vertiz {

namespace {

// A span of a row, clipped to the width: how many of the caller's pixels are passed over, where it begins in the row.
struct Tramo {
    LONGLONG salto, columna, n;

    Tramo(LONGLONG primera, LONGLONG cantidad, LONGLONG ancho)
        : salto(std::max(-primera, LONGLONG{0})),
          columna(std::max(primera, LONGLONG{0})),
          n(std::min(cantidad - salto, ancho - columna)) {}
};

}  // namespace

CRasterDIB::~CRasterDIB() = default;

void CRasterDIB::Limpiar() {
    m_Bloques.Vacia();
    LiberaTemporal();
    m_Cabecera = BITMAPINFOHEADER{0};
    std::vector<BYTE>().swap(m_Paleta);
    std::vector<BYTE>().swap(m_Buffer);
    m_nAncho = 0;
}

void CRasterDIB::SetNombre(const wchar_t* nombre) {
    m_sRuta = nombre != nullptr ? nombre : L"";
    constexpr std::size_t kMaximo = std::size(decltype(m_szNombre){}) - 1;
    std::wcsncpy(m_szNombre, m_sRuta, kMaximo);
    m_szNombre[kMaximo] = L'\0';
}

bool CRasterDIB::SetFichero(CFile* fichero) {
    m_pFuente = fichero;
    if (fichero == nullptr) return false;
    fichero->SeekToBegin();
    return true;
}

UINT CRasterDIB::BytesFila() const {
    const LONGLONG bits = LONGLONG{m_Cabecera.biBitCount} * std::max(m_Cabecera.biWidth, 0);
    return static_cast<UINT>((bits + 31) / 32 * 4);
}

bool CRasterDIB::ReservaBuffer(int ancho, int alto) {
    std::vector<BYTE>().swap(m_Buffer);
    if (ancho < 0 || alto < 0) return false;
    const ULONGLONG fila = (ULONGLONG(ancho) * 8 + 31) / 32 * 4;
    if (fila != 0 && ULONGLONG(alto) * 3 > (ULONGLONG{1} << 62) / fila) return false;
    const ULONGLONG bytes = fila * ULONGLONG(alto) * 3;
    if (!HayMemoria(bytes)) return false;
    try {
        m_Buffer.resize(bytes);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// ---- Store -------------------------------------------------------------------------------------------------------

ULONGLONG CRasterDIB::Posicion(int fila, ULONGLONG byte) const {
    // A row past the top comes out beyond every store, as one below 0 does.
    return static_cast<ULONGLONG>(LONGLONG{AltoPixeles()} - fila - 1) * BytesFila() + byte;
}

bool CRasterDIB::LeeAlmacen(ULONGLONG p, BYTE* destino, std::size_t n) const {
    if (!m_Bloques.EstaVacio()) return m_Bloques.Lee(p, destino, n);
    if (m_pTemporal == nullptr) return false;
    const ULONGLONG total = ULONGLONG{BytesFila()} * ULONGLONG(AltoPixeles());
    if (p > total || n > total - p) return false;
    return m_pTemporal->Seek(static_cast<LONGLONG>(p), CFile::begin) == p && m_pTemporal->Read(destino, n) == n;
}

bool CRasterDIB::EscribeAlmacen(ULONGLONG p, const BYTE* origen, std::size_t n) {
    if (!m_Bloques.EstaVacio()) return m_Bloques.Escribe(p, origen, n);
    if (m_pTemporal == nullptr) return false;
    const ULONGLONG total = ULONGLONG{BytesFila()} * ULONGLONG(AltoPixeles());
    if (p > total || n > total - p) return false;
    return m_pTemporal->Seek(static_cast<LONGLONG>(p), CFile::begin) == p && m_pTemporal->Write(origen, n);
}

std::span<BYTE> CRasterDIB::FilaEnMemoria(int fila) {
    if (fila < 0 || fila >= AltoPixeles() || m_Bloques.EstaVacio()) return {};
    // Every block holds whole rows: ReservaAlmacen makes one for each, and Crear takes others apart.
    const ULONGLONG p = Posicion(fila, 0);
    return {m_Bloques.Bloque(static_cast<UINT>(p / m_Bloques.Tamano())) + p % m_Bloques.Tamano(), BytesFila()};
}

std::span<const BYTE> CRasterDIB::FilaAlmacen(int fila, std::vector<BYTE>& copia) const {
    if (fila < 0 || fila >= AltoPixeles()) return {};
    if (!m_Bloques.EstaVacio()) return const_cast<CRasterDIB*>(this)->FilaEnMemoria(fila);
    copia.resize(BytesFila());
    if (!LeeAlmacen(Posicion(fila, 0), copia.data(), copia.size())) return {};
    return copia;
}

bool CRasterDIB::ReservaAlmacen() {
    m_Bloques.Vacia();
    LiberaTemporal();
    if (m_bModoFichero == 0) return m_Bloques.Reserva(static_cast<UINT>(AltoPixeles()), BytesFila());
    m_pTemporal = CreaFicheroTemporal(m_sRuta, m_sTemporal);
    if (m_pTemporal == nullptr) return false;
    if (m_pTemporal->SetLength(ULONGLONG{BytesFila()} * ULONGLONG(AltoPixeles()))) return true;
    LiberaTemporal();
    return false;
}

void CRasterDIB::TomaImagen(CRasterDIB& otra) {
    Limpiar();
    m_bModoFichero = otra.m_bModoFichero;
    m_pTemporal = std::move(otra.m_pTemporal);
    m_sTemporal = otra.m_sTemporal;
    m_Bloques = std::move(otra.m_Bloques);
    m_bCompartido = otra.m_bCompartido;
    m_Cabecera = otra.m_Cabecera;
    m_Paleta = std::move(otra.m_Paleta);
    m_Buffer = std::move(otra.m_Buffer);
    m_nOscuro = otra.m_nOscuro;
    m_nBrillante = otra.m_nBrillante;
    m_nAncho = otra.m_nAncho;
    otra.Limpiar();
}

// ---- Pixels ------------------------------------------------------------------------------------------------------

bool CRasterDIB::SetPixel(int fila, int columna, const BYTE* pixel) {
    if (m_Bloques.EstaVacio() || fila < 0 || columna < 0 || columna >= Ancho()) return false;
    const int bytes = BytesPixel();
    if (bytes != 1 && bytes != 3) return true;
    return m_Bloques.Escribe(Posicion(fila, ULONGLONG(columna) * unsigned(bytes)), pixel, std::size_t(bytes));
}

bool CRasterDIB::GetPixel(BYTE* pixel, int fila, int columna, int radio) const {
    if (radio != 0) return MediaVentana(pixel, fila, columna, radio);
    if (!TienePixeles() || fila < 0 || columna < 0 || columna >= Ancho()) return false;
    const int bytes = BytesPixel();
    if (bytes != 1 && bytes != 3) return true;
    const ULONGLONG p = Posicion(fila, ULONGLONG(columna) * unsigned(bytes));
    if (!TienePaleta()) return LeeAlmacen(p, pixel, std::size_t(bytes));
    BYTE indice = 0;
    if (!LeeAlmacen(p, &indice, 1)) return false;
    std::copy_n(&m_Paleta[4 * std::size_t{indice}], 3, pixel);
    return true;
}

bool CRasterDIB::MediaVentana(BYTE* pixel, int fila, int columna, int radio) const {
    if (fila < 0 || fila >= AltoPixeles() || columna < 0 || columna >= Ancho()) return false;
    const int bandas = TienePaleta() ? 3 : BytesPixel();
    double sumas[3]{}, pesos = 0.0;
    for (LONGLONG f = std::max(LONGLONG{fila} - radio, LONGLONG{0}); f <= LONGLONG{fila} + radio && f < AltoPixeles();
         ++f)
        for (LONGLONG c = std::max(LONGLONG{columna} - radio, LONGLONG{0});
             c <= LONGLONG{columna} + radio && c < Ancho(); ++c) {
            BYTE vecino[3]{};
            if ((f == fila && c == columna) || !GetPixel(vecino, int(f), int(c), 0)) continue;
            const double peso = 1.0 / std::sqrt(std::pow(double(f - fila), 2) + std::pow(double(c - columna), 2));
            for (int i = 0; i < bandas; ++i)
                sumas[i] += peso * vecino[i];
            pesos += peso;
        }
    if (pesos == 0.0) return GetPixel(pixel, fila, columna, 0);
    for (int i = 0; i < bandas; ++i)
        pixel[i] = static_cast<BYTE>(pixel[i] + static_cast<int>(sumas[i] / pesos));
    return true;
}

bool CRasterDIB::SetFila(const BYTE* pixeles, int fila, int columna, int n) {
    const Tramo tramo(columna, n, Ancho());
    const auto bytes = ULONGLONG(BytesPixel());
    if (!TienePixeles() || fila < 0 || tramo.n <= 0) return false;
    return EscribeAlmacen(Posicion(fila, ULONGLONG(tramo.columna) * bytes), pixeles + ULONGLONG(tramo.salto) * bytes,
                          ULONGLONG(tramo.n) * bytes);
}

bool CRasterDIB::GetFila(BYTE* pixeles, int fila, int columna, int n) const {
    const Tramo tramo(columna, n, Ancho());
    const auto bytes = ULONGLONG(BytesPixel());
    if (!TienePixeles() || fila < 0 || tramo.n <= 0) return false;
    const ULONGLONG p = Posicion(fila, ULONGLONG(tramo.columna) * bytes), cantidad = ULONGLONG(tramo.n) * bytes;
    if (!TienePaleta()) return LeeAlmacen(p, pixeles + ULONGLONG(tramo.salto) * bytes, cantidad);
    std::vector<BYTE> indices(cantidad);
    if (!LeeAlmacen(p, indices.data(), cantidad)) return false;
    BYTE* destino = pixeles + 3 * tramo.salto;
    for (const BYTE indice : indices)
        destino = std::copy_n(&m_Paleta[4 * std::size_t{indice}], 3, destino);
    return true;
}

}  // namespace Vertiz
