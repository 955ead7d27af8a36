// Directories of TIFF 6.0 and BigTIFF. Every offset, count and size is compared with the file's size, in 64 bits,
// before anything is allocated or read by it.

#include "raster/TiffPagina.h"

#include "raster/GeoTiff.h"
#include "raster/TiffNumeros.h"

#include <algorithm>
#include <limits>
#include <set>

namespace Vertiz {

namespace {

constexpr std::uint64_t kSinLimite = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kSinComprimir = 1, kPackBits = 32773;
constexpr std::uint64_t kTopePackBits = 64;   // bytes that one of PackBits can become: 2 give 128
constexpr std::uint64_t kTopeFichero = 1024;  // of the picture to one of the file; equal pieces may share their bytes

// What is gathered from the entries before it can be judged.
struct Entradas {
    std::vector<std::uint64_t> offsets, bytes;
    std::uint64_t ancho = 0, alto = 0, filasTira = kSinLimite, anchoTesela = 0, altoTesela = 0;
    std::uint64_t compresion = kSinComprimir;
    std::vector<std::uint64_t> bits{1}, formato{1}, submuestreo{2, 2};
    std::uint64_t muestras = 1, planar = 1, extra = 0, alfa = 0;
    bool enTeselas = false;
    EtiquetasGeoTiff geo;
};

std::uint64_t Primero(const std::vector<std::uint64_t>& v, std::uint64_t defecto) {
    return v.empty() ? defecto : v.front();
}

float PrimerReal(const std::vector<double>& v) {
    return v.empty() ? 0.0F : static_cast<float>(v.front());
}

template <std::size_t n>
void Copia(const std::vector<double>& v, float (&destino)[n]) {
    if (v.size() >= n) std::transform(v.begin(), v.begin() + n, destino, [](double x) { return float(x); });
}

// One entry. False when what it points to doesn't lie in the file.
bool Anota(const NumerosTiff& numeros, const EntradaTiff& e, PaginaTiff& p, Entradas& s) {
    bool bien = true;
    const auto enteros = [&](std::uint64_t maximo = kSinLimite) { return numeros.Enteros(e, maximo, bien); };
    const auto entero = [&](std::uint64_t defecto) { return Primero(enteros(1), defecto); };
    const auto reales = [&] { return numeros.Reales(e, bien); };
    switch (e.tag) {
        case etiqueta::kImageWidth:
            s.ancho = entero(0);
            break;
        case etiqueta::kImageLength:
            s.alto = entero(0);
            break;
        case etiqueta::kBitsPerSample:
            s.bits = enteros();
            break;
        case etiqueta::kCompression:
            s.compresion = entero(kSinComprimir);
            break;
        case etiqueta::kPhotometric:
            p.fotometrica = static_cast<unsigned>(std::min<std::uint64_t>(entero(0), 0xFFFF));
            break;
        case etiqueta::kFillOrder:
            p.bitsInvertidos = entero(1) == 2;
            break;
        case etiqueta::kStripOffsets:
            s.offsets = enteros();
            break;
        case etiqueta::kSamplesPerPixel:
            s.muestras = entero(1);
            break;
        case etiqueta::kRowsPerStrip:
            s.filasTira = entero(kSinLimite);
            break;
        case etiqueta::kStripByteCounts:
            s.bytes = enteros();
            break;
        case etiqueta::kMaxSampleValue:
            p.maximoMuestra = double(std::min<std::uint64_t>(entero(0), 0xFFFFFFFF));
            break;
        case etiqueta::kXResolution:
            p.resolucionX = PrimerReal(reales());
            break;
        case etiqueta::kYResolution:
            p.resolucionY = PrimerReal(reales());
            break;
        case etiqueta::kPlanarConfiguration:
            s.planar = entero(1);
            break;
        case etiqueta::kResolutionUnit:
            p.unidadResolucion = static_cast<unsigned>(std::min<std::uint64_t>(entero(1), 0xFFFF));
            break;
        case etiqueta::kWhitePoint:
            if (const auto v = reales(); v.size() >= 2) std::copy_n(v.begin(), 2, p.puntoBlanco);
            break;
        case etiqueta::kColorMap:
            for (const std::uint64_t v : enteros())
                p.mapaColor.push_back(static_cast<std::uint16_t>(v));
            break;
        case etiqueta::kTileWidth:
            s.anchoTesela = entero(0);
            break;
        case etiqueta::kTileLength:
            s.altoTesela = entero(0);
            break;
        case etiqueta::kTileOffsets:
            s.offsets = enteros();
            s.enTeselas = true;
            break;
        case etiqueta::kTileByteCounts:
            s.bytes = enteros();
            break;
        case etiqueta::kExtraSamples:
            s.extra = e.cuenta;
            s.alfa = entero(0);
            break;
        case etiqueta::kSampleFormat:
            s.formato = enteros();
            break;
        case etiqueta::kYCbCrCoefficients:
            Copia(reales(), p.lumaYCbCr);
            break;
        case etiqueta::kYCbCrSubSampling:
            s.submuestreo = enteros(2);
            break;
        case etiqueta::kReferenceBlackWhite:
            Copia(reales(), p.referenciaYCbCr);
            break;
        case etiqueta::kModelPixelScale:
            s.geo.m_Escala = reales();
            break;
        case etiqueta::kModelTiepoint:
            s.geo.m_PuntosControl = reales();
            break;
        case etiqueta::kModelTransformation:
            s.geo.m_Transformacion = reales();
            break;
        case etiqueta::kGeoKeyDirectory:
            for (const std::uint64_t v : enteros())
                s.geo.m_Claves.push_back(static_cast<std::uint16_t>(v));
            break;
        case etiqueta::kGeoDoubleParams:
            s.geo.m_Dobles = reales();
            break;
        default:
            break;
    }
    return bien;
}

bool TodosIguales(const std::vector<std::uint64_t>& v) {
    return std::ranges::adjacent_find(v, std::not_equal_to()) == v.end();
}

// Depth, colours and order of the samples.
CString JuzgaMuestras(PaginaTiff& p, const Entradas& s) {
    if (s.muestras < 1 || s.muestras > 0xFFFF) return L"El número de muestras no es válido";
    p.muestras = static_cast<unsigned>(s.muestras);
    if (!TodosIguales(s.bits) || !TodosIguales(s.formato)) return L"Las muestras son de distinto tamaño";
    const std::uint64_t bits = Primero(s.bits, 1), formato = Primero(s.formato, 1);
    if (formato < 1 || formato > 4) return L"Formato de muestra no soportado";
    p.formato = formato == 4 ? FormatoTiff::Natural : static_cast<FormatoTiff>(formato);
    const bool real = p.formato == FormatoTiff::Real;
    if (real ? bits != 16 && bits != 32 && bits != 64 : (bits < 1 || bits > 32) && bits != 64)
        return L"Número de bits por muestra no soportado";
    p.bits = static_cast<unsigned>(bits);
    if (s.planar != 1 && s.planar != 2) return L"La disposición de las muestras no es válida";
    p.planos = s.planar == 2 && p.muestras > 1;

    if (p.fotometrica == fotometrica::kRGB || p.fotometrica > fotometrica::kPaleta) {
        if (p.muestras < (p.fotometrica == fotometrica::kCMYK ? 4U : 3U)) return L"Faltan muestras de color";
        if (p.muestras > 3 && s.extra > 0) p.alfa = s.alfa == 2 ? AlfaTiff::SinAsociar : AlfaTiff::Asociada;
    }
    if (p.fotometrica == fotometrica::kYCbCr && s.submuestreo != std::vector<std::uint64_t>{1, 1})
        return L"Color submuestreado no soportado";
    if (p.fotometrica == fotometrica::kPaleta) {
        if (p.bits > 8) return L"Paleta de más de 256 colores";
        if (p.mapaColor.size() < std::size_t{3} << p.bits) return L"La paleta está incompleta";
    }
    return {};
}

// Strips that follow each other are read as one.
void JuntaTiras(PaginaTiff& p) {
    const std::uint64_t porPlano = p.TrozosAlto(), planos = p.trozos.size() / porPlano;
    const std::uint64_t bytes = p.BytesFila() * p.altoTrozo;
    for (std::size_t i = 0; i + 1 < p.trozos.size(); ++i)
        if ((i + 1) % porPlano != 0 && p.trozos[i].offset + bytes != p.trozos[i + 1].offset) return;
    for (std::size_t i = 0; i < planos; ++i)
        p.trozos[i] = {p.trozos[i * porPlano].offset, p.BytesFila() * unsigned(p.alto)};
    p.trozos.resize(planos);
    p.altoTrozo = std::uint64_t(p.alto);
}

// Sizes, and where the pieces are.
CString JuzgaTrozos(PaginaTiff& p, const Entradas& s, std::uint64_t tamano) {
    constexpr auto kMaximo = std::uint64_t(std::numeric_limits<int>::max());
    if (s.ancho < 1 || s.ancho > kMaximo || s.alto < 1 || s.alto > kMaximo) return L"El tamaño no es válido";
    p.ancho = static_cast<int>(s.ancho);
    p.alto = static_cast<int>(s.alto);
    p.anchoTrozo = s.enTeselas ? s.anchoTesela : s.ancho;
    p.altoTrozo = s.enTeselas ? s.altoTesela : std::min(s.filasTira, s.alto);
    if (p.anchoTrozo < 1 || p.altoTrozo < 1 || p.anchoTrozo > kMaximo || p.altoTrozo > kMaximo)
        return L"El tamaño de los trozos no es válido";

    const std::uint64_t porPlano = p.TrozosAncho() * p.TrozosAlto(), planos = p.planos ? p.muestras : 1;
    if (porPlano > s.offsets.size() / planos) return L"Faltan trozos de la imagen";
    if (p.packBits && porPlano > s.bytes.size() / planos) return L"Faltan tamaños de trozos";
    const std::uint64_t fila = p.BytesFila();
    p.trozos.reserve(porPlano * planos);
    std::uint64_t total = 0;
    for (std::uint64_t i = 0; i < porPlano * planos; ++i) {
        // Uncompressed pieces are as large as their pixels, whatever their count says: files with wrong counts are
        // many.
        const std::uint64_t primera = i % porPlano / p.TrozosAncho() * p.altoTrozo;
        const std::uint64_t filas = std::min(p.altoTrozo, s.alto - primera), offset = s.offsets[i];
        if (offset == 0 || offset >= tamano) return L"Hay trozos fuera del archivo";
        const std::uint64_t bytes = p.packBits ? s.bytes[i] : tamano - offset;
        if (bytes > tamano - offset || fila > bytes * (p.packBits ? kTopePackBits : 1) ||
            filas > bytes * (p.packBits ? kTopePackBits : 1) / fila)
            return L"Hay trozos fuera del archivo";
        if ((total += filas * fila) / kTopeFichero > tamano) return L"El archivo no contiene la imagen que declara";
        p.trozos.push_back({offset, p.packBits ? bytes : filas * fila});
    }
    if (!p.packBits && !s.enTeselas) JuntaTiras(p);
    return {};
}

}  // namespace

bool PaginaTiff::EsNumerica() const {
    if (fotometrica == fotometrica::kPaleta) return false;
    if (!puntos && !(claves >= 2 && (bits == 16 || bits == 32))) return false;
    return muestras == 1 || BytesMuestra() == bits / 8;
}

std::optional<CabeceraTiff> LeeCabeceraTiff(CFile& fichero) {
    BYTE bytes[16];
    fichero.SeekToBegin();
    const std::size_t leidos = fichero.Read(bytes, sizeof bytes);
    if (leidos < 8) return {};
    CabeceraTiff c;
    c.orden = static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
    if (c.orden != 0x4949 && c.orden != 0x4D4D) return {};
    const NumerosTiff numeros(fichero, c);
    c.version = static_cast<std::uint16_t>(numeros.Numero(bytes + 2, 2));
    if (c.version == 42)
        c.directorio = numeros.Numero(bytes + 4, 4);
    else if (c.version == 43 && leidos == sizeof bytes)
        c.directorio = numeros.Numero(bytes + 8, 8);
    else
        return {};
    return c;
}

CString LeePaginaTiff(CFile& fichero, const CabeceraTiff& cabecera, std::uint64_t offset, PaginaTiff& p) {
    const NumerosTiff numeros(fichero, cabecera);
    p.cambiaOrden = numeros.CambiaOrden();
    const std::optional<std::vector<EntradaTiff>> entradas = numeros.Directorio(offset, p.siguiente);
    if (!entradas) return L"El directorio está fuera del archivo o dañado";
    Entradas s;
    std::set<unsigned>
        vistas;  // the first of a tag counts; reading thousands of them, long as the file, would take hours
    for (const EntradaTiff& e : *entradas)
        if (vistas.insert(e.tag).second && !Anota(numeros, e, p, s))
            return L"Hay datos del directorio fuera del archivo";

    // The place first: it holds also where the pixels can't be taken.
    if (s.geo.HayAlguna()) {
        s.geo.Llena(p.georreferencia.emplace());
        p.claves = s.geo.CuentaClaves();
        int tipoRaster = 0;
        p.puntos = s.geo.Clave(clave::kRasterType, tipoRaster) && tipoRaster == 2;
    }
    if (s.compresion != kSinComprimir && s.compresion != kPackBits) return L"Archivo comprimido";
    p.packBits = s.compresion == kPackBits;
    if (const CString motivo = JuzgaMuestras(p, s); !motivo.IsEmpty()) return motivo;
    if (const CString motivo = JuzgaTrozos(p, s, numeros.Tamano()); !motivo.IsEmpty()) return motivo;
    return {};
}

}  // namespace Vertiz
