// The store of a picture and the access to its pixels. Everything else, in this class and in those derived from it,
// works on rows that it gets from here.

#include "raster/CRasterDIB.h"

#include "raster/FicheroTemporal.h"
#include "platform/Memoria.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <limits>
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

// Bytes of a row, padded to four.
ULONGLONG BytesDeFila(int ancho, unsigned bits) {
    return (ULONGLONG{bits} * static_cast<unsigned>(std::max(ancho, 0)) + 31) / 32 * 4;
}

std::size_t EntradasPaleta(int bits) {
    return bits == 1 || bits == 4 || bits == 8 ? std::size_t{1} << bits : 0;
}

int EnCentesimas(int pixeles) {
    return static_cast<int>(std::min<LONGLONG>(LONGLONG{pixeles} * 100, std::numeric_limits<int>::max()));
}

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

int CRasterDIB::Alto100() const {
    return EnCentesimas(AltoPixeles());
}

int CRasterDIB::Ancho100() const {
    return EnCentesimas(m_nAncho);
}

UINT CRasterDIB::BytesFila() const {
    return static_cast<UINT>(BytesDeFila(m_Cabecera.biWidth, m_Cabecera.biBitCount));
}

bool CRasterDIB::ReservaBuffer(int ancho, int alto) {
    std::vector<BYTE>().swap(m_Buffer);
    if (ancho < 0 || alto < 0) return false;
    const ULONGLONG fila = BytesDeFila(ancho, 8);  // at most 2^31, so that nothing overflows below
    const ULONGLONG bytes = fila * unsigned(alto) * 3;
    if (!HayMemoria(bytes)) return false;
    try {
        m_Buffer.resize(bytes);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// ---- A new picture -----------------------------------------------------------------------------------------------

bool CRasterDIB::CreaCabecera(int ancho, int alto, int bits, float resolucion, const BYTE* paleta) {
    constexpr ULONGLONG kMaximoFila = std::numeric_limits<int>::max();
    if (ancho < 0 || alto == std::numeric_limits<int>::min() || bits < 1 || bits > 0xFFFF) return false;
    if (BytesDeFila(ancho, static_cast<unsigned>(bits)) > kMaximoFila) return false;

    std::vector<BYTE> entradas(EntradasPaleta(bits) * 4);
    if (paleta != nullptr)
        std::copy_n(paleta, entradas.size(), entradas.begin());  // before Limpiar: it may be this object's own
    else if (bits == 8)
        for (std::size_t i = 0; i < entradas.size(); ++i)
            entradas[i] = static_cast<BYTE>(i % 4 == 3 ? 0 : i / 4);

    Limpiar();
    const double porMetro = resolucion / 0.025401;
    m_nAncho = ancho;
    m_Cabecera = BITMAPINFOHEADER{};
    m_Cabecera.biWidth = ancho;
    m_Cabecera.biHeight = alto;
    m_Cabecera.biBitCount = static_cast<WORD>(bits);
    m_Cabecera.biClrUsed = static_cast<DWORD>(entradas.size() / 4);
    if (std::abs(porMetro) <= std::numeric_limits<LONG>::max())
        m_Cabecera.biXPelsPerMeter = m_Cabecera.biYPelsPerMeter = static_cast<LONG>(porMetro);
    m_Paleta = std::move(entradas);
    return true;
}

bool CRasterDIB::LlenaAlmacen(bool rellenar, const CBloques* datos, unsigned salto) {
    if (datos == nullptr && !rellenar) return true;
    std::vector<BYTE> fila(BytesFila(), 255);
    for (int i = 0; i < AltoPixeles(); ++i) {
        const ULONGLONG p = ULONGLONG{salto} * unsigned(i) * fila.size();
        if (datos != nullptr) {
            if (p >= datos->Bytes()) break;  // what lies past their end stays 0
            std::ranges::fill(fila, BYTE{0});
            datos->Lee(p, fila.data(), std::min<ULONGLONG>(fila.size(), datos->Bytes() - p));
        }
        if (!EscribeAlmacen(ULONGLONG(i) * fila.size(), fila.data(), fila.size())) return false;
    }
    return true;
}

// ---- Store -------------------------------------------------------------------------------------------------------

ULONGLONG CRasterDIB::Posicion(int fila, ULONGLONG byte) const {
    // A row past the top comes out beyond every store, as one below 0 does.
    return static_cast<ULONGLONG>(LONGLONG{AltoPixeles()} - fila - 1) * BytesFila() + byte;
}

bool CRasterDIB::LeeAlmacen(ULONGLONG p, BYTE* destino, std::size_t n) const {
    if (m_bModoFichero == 0) return m_Bloques.Lee(p, destino, n);
    const ULONGLONG total = ULONGLONG{BytesFila()} * ULONGLONG(AltoPixeles());
    if (m_pTemporal == nullptr || p > total || n > total - p) return false;
    return m_pTemporal->Seek(static_cast<LONGLONG>(p), CFile::begin) == p && m_pTemporal->Read(destino, n) == n;
}

bool CRasterDIB::EscribeAlmacen(ULONGLONG p, const BYTE* origen, std::size_t n) {
    if (m_bModoFichero == 0) return m_Bloques.Escribe(p, origen, n);
    const ULONGLONG total = ULONGLONG{BytesFila()} * ULONGLONG(AltoPixeles());
    if (m_pTemporal == nullptr || p > total || n > total - p) return false;
    return m_pTemporal->Seek(static_cast<LONGLONG>(p), CFile::begin) == p && m_pTemporal->Write(origen, n);
}

std::span<BYTE> CRasterDIB::FilaEnMemoria(int fila) {
    if (fila < 0 || fila >= AltoPixeles() || m_Bloques.EstaVacio()) return {};
    return {m_Bloques.Bloque(static_cast<UINT>(AltoPixeles() - 1 - fila)), m_Bloques.Tamano()};
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
