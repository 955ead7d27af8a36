// Reading and writing of bitmaps. Format: BITMAPFILEHEADER and BITMAPINFOHEADER of the Windows API, little-endian.

#include "raster/CBmp.h"

#include "raster/Resultados.h"
#include "raster/SalidaImagen.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <optional>

namespace Vertiz {

namespace {

constexpr ULONGLONG kBytesFichero = 14, kBytesInfo = sizeof(BITMAPINFOHEADER);

static_assert(std::endian::native == std::endian::little, "headers go to the file as they lie in memory");

template <class T>
T Dato(const BYTE* bytes) {
    T valor;
    std::memcpy(&valor, bytes, sizeof valor);
    return valor;
}

template <class T>
void Pon(BYTE* bytes, T valor) {
    std::memcpy(bytes, &valor, sizeof valor);
}

bool EsProfundidad(unsigned bits) {
    return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

// A short file is taken for what it holds, but one that holds next to nothing of a big picture lies about its size.
bool Cabe(ULONGLONG imagen, ULONGLONG presentes) {
    constexpr ULONGLONG kPequena = 65536;
    return presentes > 0 && (imagen <= kPequena || imagen / 16 <= presentes);
}

// A row of fewer than 8 bits a pixel, or of 8, by its palette.
void ExpandePaleta(std::span<const BYTE> fila, unsigned bits, std::span<const BYTE> paleta, std::span<BYTE> destino) {
    const unsigned mascara = (1U << bits) - 1, porByte = 8 / bits;
    for (std::size_t c = 0; 3 * c + 2 < destino.size(); ++c) {
        const unsigned indice = fila[c / porByte] >> (8 - bits - c % porByte * bits) & mascara;
        std::copy_n(&paleta[4 * std::size_t{indice}], 3, &destino[3 * c]);
    }
}

// Five bits a channel, blue lowest; the top bit counts for nothing.
void Expande16(std::span<const BYTE> fila, std::span<BYTE> destino) {
    for (std::size_t c = 0; 3 * c + 2 < destino.size(); ++c) {
        const unsigned valor = Dato<WORD>(&fila[2 * c]);
        for (unsigned i = 0; i < 3; ++i) {
            const unsigned canal = valor >> 5 * i & 31;
            destino[3 * c + i] = static_cast<BYTE>((canal * 255 + 15) / 31);
        }
    }
}

void Expande32(std::span<const BYTE> fila, std::span<BYTE> destino) {
    for (std::size_t c = 0; 3 * c + 2 < destino.size(); ++c)
        std::copy_n(&fila[4 * c], 3, &destino[3 * c]);
}

}  // namespace

bool CBmp::TienePaleta() const {
    return m_Cabecera.biBitCount == 8 && !m_Paleta.empty();
}

float CBmp::Resolucion() const {
    return static_cast<float>(m_Cabecera.biXPelsPerMeter * 0.025401);
}

std::unique_ptr<CRasterDIB> CBmp::Nuevo(int modoFichero) const {
    return std::make_unique<CBmp>(modoFichero);
}

bool CBmp::Crear(int ancho, int alto, int bits, float resolucion, bool rellenar, CBloques* datos, const BYTE* paleta,
                 bool soloCabecera) {
    if (!CreaCabecera(ancho, alto, bits, resolucion, paleta)) return false;
    if (soloCabecera) return true;
    m_Cabecera.biHeight = -AltoPixeles();
    if (ReservaAlmacen() && LlenaAlmacen(rellenar, datos, 16)) return true;
    Limpiar();
    return false;
}

// ---- Reading -----------------------------------------------------------------------------------------------------

int CBmp::Leer(bool soloCabecera) {
    if (m_pFuente == nullptr) return 2;
    Limpiar();
    ULONGLONG pixeles = 0;
    if (const wchar_t* fallo = LeeCabecera(pixeles)) {
        Comunica(fallo);
        Limpiar();
        return kNoSoportado;
    }
    if (soloCabecera) return 1;
    const int resultado = LeePixeles(pixeles);
    if (resultado != 1) Limpiar();
    return resultado;
}

// Header and palette, and where the pixels begin; otherwise why not. Every size is compared with the file's before
// anything is made by it.
const wchar_t* CBmp::LeeCabecera(ULONGLONG& pixeles) {
    const ULONGLONG bytesFichero = m_pFuente->GetLength();
    BYTE bytes[kBytesFichero + kBytesInfo];
    m_pFuente->SeekToBegin();
    const std::size_t leidos = m_pFuente->Read(bytes, sizeof bytes);
    if (leidos < kBytesFichero + 4 || bytes[0] != 'B' || bytes[1] != 'M') return L"No es un archivo BMP";
    const ULONGLONG bytesCabecera = Dato<DWORD>(bytes + kBytesFichero);
    if (bytesCabecera < kBytesInfo) return L"Archivo BMP de una versión anterior a Windows";
    if (leidos < sizeof bytes || kBytesFichero + bytesCabecera > bytesFichero) return L"Cabecera BMP incompleta";

    const auto cabecera = Dato<BITMAPINFOHEADER>(bytes + kBytesFichero);
    if (cabecera.biCompression != 0) return L"Archivo comprimido";
    if (!EsProfundidad(cabecera.biBitCount)) return L"Número de bits no válido en la cabecera BMP";
    pixeles = Dato<DWORD>(bytes + 10);
    if (cabecera.biWidth <= 0 || pixeles < sizeof bytes || pixeles > bytesFichero)
        return L"Tamaño no válido en la cabecera BMP";
    if (cabecera.biHeight == 0 ||
        !CreaCabecera(cabecera.biWidth, cabecera.biHeight, cabecera.biBitCount, 0.0F, nullptr))
        return L"Tamaño no válido en la cabecera BMP";
    if (!Cabe(ULONGLONG{BytesFila()} * unsigned(AltoPixeles()), bytesFichero - pixeles))
        return L"El archivo BMP no contiene la imagen que declara su cabecera";

    m_Cabecera.biXPelsPerMeter = cabecera.biXPelsPerMeter;
    m_Cabecera.biYPelsPerMeter = cabecera.biYPelsPerMeter;
    if (!m_Paleta.empty() && cabecera.biClrUsed != 0)
        m_Cabecera.biClrUsed = std::min(cabecera.biClrUsed, m_Cabecera.biClrUsed);
    LeePaleta(kBytesFichero + bytesCabecera);
    return nullptr;
}

void CBmp::LeePaleta(ULONGLONG posicion) {
    if (m_Paleta.empty()) return;
    std::ranges::fill(m_Paleta, BYTE{0});
    m_pFuente->Seek(static_cast<LONGLONG>(posicion), CFile::begin);
    m_pFuente->Read(m_Paleta.data(), std::size_t{m_Cabecera.biClrUsed} * 4);
    BuscaExtremosPaleta();
}

void CBmp::BuscaExtremosPaleta() {
    int menor = 3 * 255 + 1, mayor = 0;
    for (std::size_t i = 0; i < m_Paleta.size(); i += 4) {
        const int suma = m_Paleta[i] + m_Paleta[i + 1] + m_Paleta[i + 2];
        if (suma < menor) menor = suma, m_nOscuro = static_cast<int>(i / 4);
        if (suma > mayor) mayor = suma, m_nBrillante = static_cast<int>(i / 4);
    }
}

int CBmp::LeePixeles(ULONGLONG posicion) {
    std::optional<Etapa> etapa;
    if (m_nNivelMensajes > 1) etapa.emplace(m_nNivelMensajes, kTextoLeer);
    const bool deArribaAbajo = m_Cabecera.biHeight < 0;
    const int alto = AltoPixeles();
    m_Cabecera.biHeight = -alto;
    if (!ReservaPixeles()) return 2;

    m_pFuente->Seek(static_cast<LONGLONG>(posicion), CFile::begin);
    std::vector<BYTE> copia(m_bModoFichero != 0 ? BytesFila() : 0);
    for (int i = 0; i < alto; ++i) {
        const int fila = deArribaAbajo ? alto - 1 - i : i;
        if (m_bModoFichero != 0) {
            const std::size_t leidos = m_pFuente->Read(copia.data(), copia.size());
            if (leidos > 0 && !EscribeAlmacen(Posicion(fila, 0), copia.data(), leidos)) return 2;
            if (etapa && !etapa->Paso(i + 1, alto)) return 2;
        } else {
            const std::span<BYTE> destino = FilaEnMemoria(fila);
            m_pFuente->Read(destino.data(), destino.size());
            // One step for each pair of rows, which change places when the file begins at the bottom.
            if (etapa && i % 2 != 0 && !etapa->Paso((i + 1) / 2, alto / 2)) return 2;
        }
    }
    return 1;
}

// ---- Writing -----------------------------------------------------------------------------------------------------

int CBmp::Grabar(CFile* fichero) {
    if (fichero == nullptr) return kNoSoportado;
    const int alto = AltoPixeles();
    if (!TienePixeles() || alto == 0 || m_nAncho == 0) return 2;
    const ULONGLONG pixeles = kBytesFichero + kBytesInfo + m_Paleta.size();
    const ULONGLONG total = pixeles + ULONGLONG{BytesFila()} * unsigned(alto);
    if (total > std::numeric_limits<DWORD>::max()) return kNoSoportado;

    BITMAPINFOHEADER info = m_Cabecera;
    info.biWidth = m_nAncho;
    info.biHeight = alto;
    BYTE cabecera[kBytesFichero + kBytesInfo]{'B', 'M'};
    Pon(cabecera + 2, static_cast<DWORD>(total));
    Pon(cabecera + 10, static_cast<DWORD>(pixeles));
    Pon(cabecera + kBytesFichero, info);

    const Etapa etapa(m_nNivelMensajes, kTextoGrabar);
    SalidaImagen salida(*fichero);
    if (!salida.Escribe(cabecera, sizeof cabecera) || !salida.Escribe(m_Paleta.data(), m_Paleta.size()))
        return kNoSoportado;
    std::vector<BYTE> copia;
    for (int i = 0; i < alto; ++i) {
        const std::span<const BYTE> fila = FilaAlmacen(i, copia);
        if (fila.empty() || !salida.Escribe(fila.data(), fila.size())) return kNoSoportado;
        if (!etapa.Paso(i + 1, alto)) return 2;
    }
    return salida.Acaba() ? 1 : kNoSoportado;
}

// ---- Depth -------------------------------------------------------------------------------------------------------

int CBmp::Expande() {
    if (!TienePixeles()) return 2;
    const unsigned bits = m_Cabecera.biBitCount;
    if (bits == 24) return 1;
    CBmp nueva(m_bModoFichero);
    nueva.SetNombre(m_sRuta);
    if (!nueva.Crear(m_nAncho, AltoPixeles(), 24, Resolucion(), false, nullptr, nullptr, false)) return 2;

    const Etapa etapa(m_nNivelMensajes, kTextoOperacion);
    std::vector<BYTE> copia, pixeles(std::size_t(m_nAncho) * 3);
    for (int r = 0; r < AltoPixeles(); ++r) {
        const std::span<const BYTE> fila = FilaAlmacen(r, copia);
        if (fila.empty()) return 2;
        if (bits <= 8)
            ExpandePaleta(fila, bits, m_Paleta, pixeles);
        else if (bits == 16)
            Expande16(fila, pixeles);
        else
            Expande32(fila, pixeles);
        if (!nueva.SetFila(pixeles.data(), r, 0, m_nAncho) || !etapa.Paso(r + 1, AltoPixeles())) return 2;
    }
    TomaImagen(nueva);
    return 1;
}

}  // namespace Vertiz
