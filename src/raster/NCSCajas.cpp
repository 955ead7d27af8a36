// The walk through the boxes of a file and the first marker of its codestream. Nothing that the file tells is used
// before it is checked against the file's size.

#include "raster/NCSCajas.h"

#include <array>
#include <optional>
#include <span>

namespace NCS {

namespace {

constexpr std::uint64_t kGeoTIFFMaximo = 1U << 22;  // a GeoTIFF of one pixel
constexpr int kCajasMaximas = 10000;
constexpr std::uint32_t kFirma = 0x6A502020;       // "jP  "
constexpr std::uint32_t kCodestream = 0x6A703263;  // "jp2c"
constexpr std::uint32_t kInicioSIZ = 0xFF4FFF51;   // SOC and SIZ, the first markers
constexpr std::uint32_t kUuid = 0x75756964;        // "uuid"
constexpr std::array<BYTE, 16> kUuidGeoJP2{0xB1, 0x4B, 0xF8, 0xBD, 0x08, 0x3D, 0x4B, 0x43,
                                           0xA5, 0xAE, 0x8C, 0xD7, 0xD5, 0xA6, 0xCE, 0x03};

// Numbers stand with the highest byte first.
std::uint64_t Numero(std::span<const BYTE> bytes) {
    std::uint64_t v = 0;
    for (const BYTE b : bytes)
        v = v << 8 | b;
    return v;
}

bool LeeEn(CFile& fichero, std::uint64_t p, std::span<BYTE> bytes) {
    return fichero.Seek(static_cast<LONGLONG>(p), CFile::begin) == p &&
           fichero.Read(bytes.data(), bytes.size()) == bytes.size();
}

struct Caja {
    std::uint32_t tipo = 0;
    std::uint64_t datos = 0;  // offset of what it holds
    std::uint64_t final = 0;  // offset behind it
};

std::optional<Caja> LeeCaja(CFile& fichero, std::uint64_t p, std::uint64_t longitud) {
    std::array<BYTE, 16> cabecera{};
    const std::span<BYTE> bytes(cabecera);
    if (p > longitud || longitud - p < 8 || !LeeEn(fichero, p, bytes.first(8))) return std::nullopt;
    std::uint64_t tamano = Numero(bytes.first(4));
    Caja caja{static_cast<std::uint32_t>(Numero(bytes.subspan(4, 4))), p + 8, 0};
    if (tamano == 1) {
        if (longitud - p < 16 || !LeeEn(fichero, p + 8, bytes.first(8))) return std::nullopt;
        tamano = Numero(bytes.first(8));
        caja.datos = p + 16;
    } else if (tamano == 0) {
        tamano = longitud - p;  // the last box goes to the end
    }
    if (tamano < caja.datos - p || tamano > longitud - p) {
        // A codestream that the file cuts short is for the decoder to judge.
        if (caja.tipo != kCodestream || tamano < caja.datos - p) return std::nullopt;
        tamano = longitud - p;
    }
    caja.final = p + tamano;
    return caja;
}

void LeeUuid(CFile& fichero, const Caja& caja, std::vector<BYTE>& geotiff) {
    std::array<BYTE, 16> uuid{};
    const std::uint64_t bytes = caja.final - caja.datos;
    if (!geotiff.empty() || bytes <= uuid.size() || bytes > kGeoTIFFMaximo) return;
    if (!LeeEn(fichero, caja.datos, uuid) || uuid != kUuidGeoJP2) return;
    geotiff.resize(bytes - uuid.size());
    if (!LeeEn(fichero, caja.datos + uuid.size(), geotiff)) geotiff.clear();
}

bool EsCodestream(std::span<const BYTE, 12> firma) {
    return Numero(firma.first(4)) == kInicioSIZ;
}

bool EsJP2(std::span<const BYTE, 12> firma) {
    return Numero(firma.first(4)) == 12 && Numero(firma.subspan(4, 4)) == kFirma && Numero(firma.last(4)) == 0x0D0A870A;
}

CError OtroFormato(std::span<const BYTE, 12> firma, const CString& ruta) {
    const bool nombreECW = ::CString(ruta.c_str()).Right(4).CompareNoCase(L".ecw") == 0;
    if ((firma[0] == 0x65 && firma[1] == 0x02) || nombreECW)
        return {kFallo,
                "this is an ECW file, and this build of the library has no ECW kit to read it with "
                "(build with LUMBRA_ECW_SDK, or convert the file to JPEG 2000)"};
    return {kFallo, "this is not a JPEG 2000 file"};
}

// Whether a marker segment stands in the main header (A.2): they follow each other up to the first tile.
bool HaySegmento(CFile& fichero, std::uint64_t inicio, unsigned buscado) {
    constexpr unsigned kTesela = 0xFF90;  // SOT
    std::array<BYTE, 4> cabecera{};
    const std::span<const BYTE> bytes(cabecera);
    std::uint64_t p = inicio + 2;
    for (int i = 0; i < kCajasMaximas && LeeEn(fichero, p, cabecera); i++) {
        const std::uint64_t marca = Numero(bytes.first(2)), longitud = Numero(bytes.last(2));
        if (marca == buscado) return true;
        if (marca == kTesela || marca < 0xFF00 || longitud < 2) return false;
        p += 2 + longitud;
    }
    return false;
}

// Size and grids of the SIZ marker (ISO/IEC 15444-1, A.5.1).
CError CompruebaSIZ(CFile& fichero, std::uint64_t longitud, CEstructuraJ2K& estructura) {
    std::array<BYTE, 42> cabecera{};
    const std::span<const BYTE> bytes(cabecera);
    if (!LeeEn(fichero, estructura.m_nInicio, cabecera) || Numero(bytes.first(4)) != kInicioSIZ)
        return {kFallo, "the header of the codestream is damaged"};
    const auto campo = [&](std::size_t i) { return Numero(bytes.subspan(8 + 4 * i, 4)); };
    const std::uint64_t x1 = campo(0), y1 = campo(1), x0 = campo(2), y0 = campo(3);
    const std::uint64_t teselaX = campo(4), teselaY = campo(5), origenX = campo(6), origenY = campo(7);
    const std::uint64_t componentes = Numero(bytes.subspan(40, 2));
    constexpr std::uint64_t kMaximo = 0x7FFFFFFF;
    if (x1 <= x0 || y1 <= y0 || x1 > kMaximo || y1 > kMaximo || teselaX == 0 || teselaY == 0 || origenX > x0 ||
        origenY > y0 || componentes == 0 || Numero(bytes.subspan(4, 2)) != 38 + 3 * componentes)
        return {kFallo, "the header of the codestream claims impossible sizes"};
    estructura.m_nComponentes = static_cast<std::uint32_t>(componentes);
    estructura.m_nTeselaY = static_cast<std::int64_t>(origenY);
    estructura.m_nAltoTesela = static_cast<std::int64_t>(teselaY);
    estructura.m_nTeselas = ((x1 - origenX + teselaX - 1) / teselaX) * ((y1 - origenY + teselaY - 1) / teselaY);
    // Every tile has at least one part, with its two markers.
    constexpr std::uint64_t kBytesTesela = 14;
    if (estructura.m_nTeselas > (longitud - estructura.m_nInicio) / kBytesTesela)
        return {kFallo, "the header claims more tiles than the file can hold"};
    constexpr unsigned kPPM = 0xFF60;
    estructura.m_bCabecerasJuntas = HaySegmento(fichero, estructura.m_nInicio, kPPM);
    return {};
}

}  // namespace

CError LeeEstructura(CFile& fichero, const CString& ruta, CEstructuraJ2K& estructura) {
    const std::uint64_t longitud = fichero.GetLength();
    std::array<BYTE, 12> firma{};
    if (!LeeEn(fichero, 0, firma)) return {kFallo, longitud == 0 ? "the file is empty" : "the file is too short"};
    if (EsCodestream(firma)) {
        estructura.m_bCodestream = true;
        return CompruebaSIZ(fichero, longitud, estructura);
    }
    if (!EsJP2(firma)) return OtroFormato(firma, ruta);

    std::uint64_t p = firma.size();
    for (int i = 0; i < kCajasMaximas; i++) {
        const std::optional<Caja> caja = LeeCaja(fichero, p, longitud);
        if (!caja) break;
        if (caja->tipo == kUuid) LeeUuid(fichero, *caja, estructura.m_GeoTIFF);
        if (caja->tipo == kCodestream && estructura.m_nInicio == 0) estructura.m_nInicio = caja->datos;
        p = caja->final;
    }
    if (estructura.m_nInicio == 0) return {kFallo, "the file has no picture in it"};
    return CompruebaSIZ(fichero, longitud, estructura);
}

}  // namespace NCS
