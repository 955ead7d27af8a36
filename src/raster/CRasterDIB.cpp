// The store of a picture and the access to its pixels. Everything else, in this class and in those derived from it,
// works on rows that it gets from here.

#include "raster/CRasterDIB.h"

#include "raster/FicheroTemporal.h"
#include "raster/RampaGrises.h"
#include "model/Etapa.h"
#include "platform/Errores.h"
#include "platform/Memoria.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
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

std::size_t EntradasPaleta(int bits) {
    return bits <= 8 ? std::size_t{1} << bits : 0;
}

int EnCentesimas(int pixeles) {
    return static_cast<int>(std::min<LONGLONG>(LONGLONG{pixeles} * 100, std::numeric_limits<int>::max()));
}

}  // namespace

CRasterDIB::~CRasterDIB() = default;

void CRasterDIB::Limpiar() {
    m_Bloques.Vacia();
    LiberaTemporal();
    m_Cabecera = {};
    std::vector<BYTE>().swap(m_Paleta);
    std::vector<BYTE>().swap(m_Buffer);
    m_nAncho = m_nOscuro = m_nBrillante = 0;
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
        std::ranges::copy(RampaGrises(256), entradas.begin());

    Limpiar();
    double porMetro = resolucion / 0.025401;
    // What was whole before it went through dots per inch, whose float moves it a little, is whole again.
    if (const double entero = std::round(porMetro); std::abs(porMetro - entero) <= entero * FLT_EPSILON)
        porMetro = entero;
    m_nAncho = ancho;
    m_Cabecera.biSize = sizeof m_Cabecera;
    m_Cabecera.biPlanes = 1;
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

std::span<BYTE> CRasterDIB::FilaNueva(int fila, std::vector<BYTE>& copia) {
    if (fila < 0 || fila >= AltoPixeles()) return {};
    if (m_bModoFichero == 0) return FilaEnMemoria(fila);
    copia.resize(BytesFila());
    return copia;
}

bool CRasterDIB::GuardaFila(int fila, const std::vector<BYTE>& copia) {
    return m_bModoFichero == 0 || EscribeAlmacen(Posicion(fila, 0), copia.data(), copia.size());
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

bool CRasterDIB::ReservaPixeles() {
    if (ReservaAlmacen()) return true;
    if (m_bModoFichero != 0) return false;
    if (IPorcentaje* const p = PorcentajeActual()) {
        const CString causa = TextoError(ERROR_NOT_ENOUGH_MEMORY), sigue = L"Se procede a crear archivo temporal";
        CString tamano;
        tamano.Format(L"%d x %d = %d", AltoPixeles(), BytesFila(), ULONGLONG{BytesFila()} * unsigned(AltoPixeles()));
        for (const CString& texto : {causa + L". " + sigue, causa, sigue, tamano})
            p->Mensaje(m_nNivelMensajes, texto, 1);
    }
    m_bModoFichero = 1;
    if (ReservaAlmacen()) return true;
    m_bModoFichero = 0;
    return false;
}

void CRasterDIB::HeredaAspecto(const CRasterDIB& otra) {
    m_Paleta = otra.m_Paleta;
    m_nOscuro = otra.m_nOscuro;
    m_nBrillante = otra.m_nBrillante;
}

void CRasterDIB::Comunica(const CString& texto) const {
    IPorcentaje* const p = PorcentajeActual();
    if (p != nullptr && m_nNivelMensajes > 1) p->Mensaje(m_nNivelMensajes, texto, 1);
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

// The stored bytes of n pixels that lie in the picture; false outside, and where a file is broken.
bool CRasterDIB::LeePixeles(int fila, int columna, int n, BYTE* pixeles) const {
    const std::size_t bytes = m_Cabecera.biBitCount / 8U, inicio = bytes * unsigned(columna),
                      total = bytes * unsigned(n);
    if (m_bModoFichero != 0) return LeeAlmacen(Posicion(fila, inicio), pixeles, total);
    const auto bloque = static_cast<UINT>(AltoPixeles() - 1 - fila);
    if (bloque >= m_Bloques.Cantidad() || inicio + total > m_Bloques.Tamano()) return false;
    std::memcpy(pixeles, m_Bloques.Bloque(bloque) + inicio, total);
    return true;
}

bool CRasterDIB::SetPixel(int fila, int columna, const BYTE* pixel) {
    if (fila < 0 || fila >= AltoPixeles() || columna < 0 || columna >= m_nAncho) return false;
    const std::span<BYTE> bytes = FilaEnMemoria(fila);
    if (bytes.empty()) return false;
    if (m_Cabecera.biBitCount == 24)
        std::memcpy(&bytes[3 * std::size_t(columna)], pixel, 3);
    else if (m_Cabecera.biBitCount == 8)
        bytes[std::size_t(columna)] = *pixel;
    return true;
}

bool CRasterDIB::GetPixel(BYTE* pixel, int fila, int columna, int radio) const {
    if (radio != 0) return MediaVentana(pixel, fila, columna, radio);
    if (!TienePixeles() || fila < 0 || fila >= AltoPixeles() || columna < 0 || columna >= m_nAncho) return false;
    if (m_Cabecera.biBitCount == 24) return LeePixeles(fila, columna, 1, pixel);
    if (m_Cabecera.biBitCount != 8) return true;
    BYTE indice = 0;
    if (!LeePixeles(fila, columna, 1, &indice)) return false;
    if (TienePaleta())
        std::memcpy(pixel, &m_Paleta[4 * std::size_t{indice}], 3);
    else
        *pixel = indice;
    return true;
}

bool CRasterDIB::MediaVentana(BYTE* pixel, int fila, int columna, int radio) const {
    BYTE centro[3]{};
    if (!GetPixel(centro, fila, columna, 0)) return false;
    const LONGLONG filaFin = std::min<LONGLONG>(LONGLONG{fila} + radio, AltoPixeles() - 1);
    const LONGLONG inicio = std::max<LONGLONG>(LONGLONG{columna} - radio, 0);
    const LONGLONG fin = std::min<LONGLONG>(LONGLONG{columna} + radio, m_nAncho - 1);
    // Neighbours come as colours of the palette, but only as many bytes as are stored for a pixel are averaged.
    const std::size_t bandas = m_Cabecera.biBitCount / 8U, paso = TienePaleta() ? 3 : bandas;
    std::vector<BYTE> vecinos(inicio <= fin ? std::size_t(fin - inicio + 1) * paso : 0);
    double sumas[3]{}, pesos = 0.0;
    for (LONGLONG f = std::max<LONGLONG>(LONGLONG{fila} - radio, 0); f <= filaFin && !vecinos.empty(); ++f) {
        if (!GetFila(vecinos.data(), int(f), int(inicio), int(fin - inicio + 1))) return false;
        const double df = double(f - fila);
        for (LONGLONG c = inicio; c <= fin; ++c) {
            const double dc = double(c - columna);
            if (df == 0.0 && dc == 0.0) continue;
            const double peso = 1.0 / std::sqrt(df * df + dc * dc);
            for (std::size_t i = 0; i < std::min<std::size_t>(bandas, 3); ++i)
                sumas[i] += peso * vecinos[std::size_t(c - inicio) * paso + i];
            pesos += peso;
        }
    }
    for (std::size_t i = 0; i < std::min<std::size_t>(bandas, 3); ++i)
        pixel[i] = static_cast<BYTE>(pixel[i] + (pesos > 0.0 ? static_cast<int>(sumas[i] / pesos) : centro[i]));
    return true;
}

bool CRasterDIB::SetFila(const BYTE* pixeles, int fila, int columna, int n) {
    const Tramo tramo(columna, n, m_nAncho);
    if (!TienePixeles() || fila < 0 || fila >= AltoPixeles() || tramo.n <= 0) return false;
    if (m_Cabecera.biBitCount != 8 && m_Cabecera.biBitCount != 24) return true;
    const std::size_t bytes = m_Cabecera.biBitCount / 8U;
    return EscribeAlmacen(Posicion(fila, std::size_t(tramo.columna) * bytes),
                          pixeles + std::size_t(tramo.salto) * bytes, std::size_t(tramo.n) * bytes);
}

bool CRasterDIB::GetFila(BYTE* pixeles, int fila, int columna, int n) const {
    const Tramo tramo(columna, n, m_nAncho);
    if (!TienePixeles() || fila < 0 || fila >= AltoPixeles() || tramo.n <= 0) return false;
    if (m_Cabecera.biBitCount != 8 && m_Cabecera.biBitCount != 24) return true;
    const bool conPaleta = TienePaleta();
    BYTE* const destino = pixeles + std::size_t(tramo.salto) * (conPaleta ? 3U : m_Cabecera.biBitCount / 8U);
    const int desde = static_cast<int>(tramo.columna), cuantos = static_cast<int>(tramo.n);
    if (!conPaleta) return LeePixeles(fila, desde, cuantos, destino);

    // The entries go to the end of the caller's bytes, where their colours, written from the start, don't reach them
    // before they are read.
    BYTE* const indices = destino + 2 * std::size_t(cuantos);
    if (!LeePixeles(fila, desde, cuantos, indices)) return false;
    for (std::size_t i = 0; i < std::size_t(cuantos); ++i)
        std::memcpy(destino + 3 * i, &m_Paleta[4 * std::size_t{indices[i]}], 3);
    return true;
}

}  // namespace Vertiz
