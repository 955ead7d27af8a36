// INI files through SimpleIni, with what it lacks: encodings, comments at the end, replacing the file at once.

#include "platform/FicheroIni.h"

#include "platform/CFile.h"
#include "platform/Conversiones.h"
#include "platform/Errores.h"
#include "platform/Ficheros.h"
#include "platform/Reemplazo.h"

#include <algorithm>

#define SI_IMPLEMENTATION  // the templates' bodies, too
#define SI_NO_CONVERSION
#include <SimpleIni.h>

namespace plataforma {

namespace {

constexpr ULONGLONG kBytesMaximos = 16 << 20;
constexpr std::string_view kFirmaUtf16 = "\xFF\xFE";

// SimpleIni keeps a comment with what follows it, and drops one that nothing follows. A section of our own behind the
// last one, which is never written, holds the comments at the end of the file. No file has it: control characters
// aren't let in.
constexpr std::string_view kCabeceraUltima = "[\x01]";

struct MenorSinMayusculas {
    bool operator()(const char* a, const char* b) const { return ComparaSinMayusculas(DeUtf8(a), DeUtf8(b)) < 0; }
};
using Ini = CSimpleIniTempl<char, MenorSinMayusculas, SI_ConvertA<char>>;

bool EsControl(wchar_t c) {
    return c < L' ' && c != L'\t';
}

std::wstring SinBlancos(const wchar_t* texto) {
    return CString(texto).Trim(L" \t").Texto();
}

// Line ends as line feeds, and no other control characters.
std::wstring Normaliza(const std::wstring& texto) {
    std::wstring resultado;
    resultado.reserve(texto.size());
    for (size_t i = 0; i < texto.size(); ++i) {
        const bool retorno = texto[i] == L'\r' && (i + 1 == texto.size() || texto[i + 1] != L'\n');
        if (texto[i] == L'\n' || retorno) {
            resultado += L'\n';
        } else if (!EsControl(texto[i])) {
            resultado += texto[i];
        }
    }
    return resultado;
}

// Without the lines that open a section's name and don't close it: SimpleIni takes what follows for the name.
std::string SinCabecerasRotas(std::string_view texto) {
    std::string resultado;
    while (!texto.empty()) {
        const std::string_view linea = texto.substr(0, std::min(texto.find('\n'), texto.size() - 1) + 1);
        const size_t i = linea.find_first_not_of(" \t");
        const bool rota = i != std::string_view::npos && linea[i] == '[' && linea.find(']') == std::string_view::npos;
        if (!rota) resultado += linea;
        texto.remove_prefix(linea.size());
    }
    return resultado;
}

std::wstring DeUtf16Bytes(std::string_view bytes) {
    std::u16string unidades;
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto bajo = static_cast<unsigned char>(bytes[i]), alto = static_cast<unsigned char>(bytes[i + 1]);
        unidades += static_cast<char16_t>(bajo | alto << 8);
    }
    return DeUtf16(unidades);
}

std::string AUtf16Bytes(const std::wstring& texto) {
    std::string bytes(kFirmaUtf16);
    for (char16_t c : AUtf16(texto))
        bytes.append({static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)});
    return bytes;
}

bool EntreComillas(std::wstring_view s) {
    return s.size() >= 2 && (s.front() == L'"' || s.front() == L'\'') && s.front() == s.back();
}

std::wstring SinComillas(std::wstring s) {
    return EntreComillas(s) ? s.substr(1, s.size() - 2) : s;
}

// The value as it has to stand in the file to be read back the same.
std::wstring ConComillas(const std::wstring& s) {
    return s == SinBlancos(s.c_str()) && !EntreComillas(s) ? s : L'"' + s + L'"';
}

// A name that can be read back, without its blanks; empty when there is none.
std::wstring Nombre(const wchar_t* texto, const wchar_t* prohibidos, const wchar_t* malPrincipio) {
    const std::wstring s = SinBlancos(texto);
    const bool mal = s.empty() || s.find_first_of(prohibidos) != std::wstring::npos ||
                     std::wstring_view(malPrincipio).find(s[0]) != std::wstring_view::npos;
    return mal || std::ranges::any_of(s, EsControl) ? std::wstring() : s;
}
std::wstring NombreSeccion(const wchar_t* texto) {
    return Nombre(texto, L"]", L"");
}
std::wstring NombreClave(const wchar_t* texto) {
    return Nombre(texto, L"=", L"[;#");
}

std::vector<std::wstring> EnOrden(Ini::TNamesDepend& nombres) {
    nombres.sort(Ini::Entry::LoadOrder());
    std::vector<std::wstring> resultado;
    for (const auto& nombre : nombres) {
        const std::wstring ancho = DeUtf8(nombre.pItem);
        if (!ancho.empty() && ancho[0] != wchar_t{1}) resultado.push_back(ancho);
    }
    return resultado;
}

}  // namespace

// Several keys of one name are kept apart: the first one counts, and none is lost by writing another.
struct FicheroIni::Datos {
    Datos() : ini(true, true, false) {
        ini.SetSpaces(false);
        ini.SetQuotes(false);
    }
    Ini ini;
};

FicheroIni::FicheroIni() : m_Datos(std::make_unique<Datos>()) {}
FicheroIni::~FicheroIni() = default;

bool FicheroIni::Lee(const wchar_t* nombre) {
    m_Ruta = RutaReal(RutaSistema(nombre));
    CFile fichero;
    if (!fichero.Open(nombre, CFile::modeRead | CFile::shareDenyNone)) {
        return GetLastError() == ERROR_FILE_NOT_FOUND && !m_Ruta.empty();
    }
    if (fichero.GetLength() > kBytesMaximos) {
        SetLastError(ERROR_FILE_TOO_LARGE);
        return false;
    }
    std::string bytes(static_cast<size_t>(fichero.GetLength()), '\0');
    bytes.resize(fichero.Read(bytes.data(), bytes.size()));
    return fichero.GetError() == ERROR_SUCCESS && Interpreta(bytes);
}

bool FicheroIni::Interpreta(std::string_view bytes) {
    std::wstring texto;
    if (bytes.starts_with(kFirmaUtf16)) {
        m_Codificacion = Codificacion::Utf16;
        texto = DeUtf16Bytes(bytes.substr(kFirmaUtf16.size()));
    } else if (bytes.starts_with(kFirmaUtf8)) {
        m_Codificacion = Codificacion::Utf8ConFirma;
        texto = DeUtf8(bytes.substr(kFirmaUtf8.size()));
    } else {
        m_Codificacion = EsUtf8(bytes) ? Codificacion::Utf8 : Codificacion::Ansi;
        texto = DeBytes(bytes);
    }
    m_bRetornos = texto.find(L"\r\n") != std::wstring::npos;
    const std::string limpio = SinCabecerasRotas(AUtf8(Normaliza(texto))) + "\n" + std::string(kCabeceraUltima) + "\n";
    if (m_Datos->ini.LoadData(limpio.data(), limpio.size()) >= 0) return true;
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return false;
}

std::string FicheroIni::Escribe() const {
    std::string utf8;
    m_Datos->ini.Save(utf8);
    if (const size_t i = utf8.find(kCabeceraUltima); i != std::string::npos) {
        // Sections that were added since stand behind it.
        utf8.erase(i, utf8.find_first_not_of('\n', i + kCabeceraUltima.size()) - i);
    }
    while (utf8.ends_with("\n\n"))
        utf8.pop_back();

    std::wstring texto = DeUtf8(utf8);
    if (m_bRetornos) {
        CString conRetornos(texto);
        conRetornos.Replace(L"\n", L"\r\n");
        texto = conRetornos.Texto();
    }
    switch (m_Codificacion) {
        case Codificacion::Utf16:
            return AUtf16Bytes(texto);
        case Codificacion::Utf8ConFirma:
            return std::string(kFirmaUtf8) + AUtf8(texto);
        case Codificacion::Ansi: {
            const std::string ansi = APagina(texto, CP_ANSI);
            // What the page can't hold, or what would be read as another encoding, makes it a file in UTF-8.
            if (!ansi.starts_with(kFirmaUtf16) && DeBytes(ansi) == texto) return ansi;
            break;
        }
        case Codificacion::Utf8:
            break;
    }
    return AUtf8(texto);
}

bool FicheroIni::Graba() {
    if (!m_bCambiado) return true;
    const std::string bytes = Escribe();
    Reemplazo nuevo(m_Ruta);
    return nuevo && nuevo.Escribe(bytes.data(), bytes.size()) && nuevo.Termina();
}

std::optional<std::wstring> FicheroIni::Valor(const wchar_t* seccion, const wchar_t* clave) const {
    const char* valor =
        m_Datos->ini.GetValue(AUtf8(SinBlancos(seccion)).c_str(), AUtf8(SinBlancos(clave)).c_str(), nullptr);
    if (!valor) return std::nullopt;
    return SinComillas(DeUtf8(valor));
}

std::vector<std::wstring> FicheroIni::Secciones() const {
    Ini::TNamesDepend nombres;
    m_Datos->ini.GetAllSections(nombres);
    return EnOrden(nombres);
}

std::vector<std::wstring> FicheroIni::Claves(const wchar_t* seccion) const {
    Ini::TNamesDepend nombres;
    m_Datos->ini.GetAllKeys(AUtf8(SinBlancos(seccion)).c_str(), nombres);
    return EnOrden(nombres);
}

bool FicheroIni::Pon(const wchar_t* seccion, const wchar_t* clave, const wchar_t* texto) {
    const std::wstring s = NombreSeccion(seccion), valor = texto;
    std::wstring c = NombreClave(clave);
    if (s.empty() || c.empty() || std::ranges::any_of(valor, EsControl)) return false;
    // A key that is there keeps the capitals that it has in the file.
    for (const std::wstring& otra : Claves(s.c_str())) {
        if (ComparaSinMayusculas(otra, c) == 0) c = otra;
    }
    m_Datos->ini.SetValue(AUtf8(s).c_str(), AUtf8(c).c_str(), AUtf8(ConComillas(valor)).c_str(), nullptr, true);
    m_bCambiado = true;
    return true;
}

void FicheroIni::Quita(const wchar_t* seccion, const wchar_t* clave) {
    m_bCambiado |= m_Datos->ini.Delete(AUtf8(SinBlancos(seccion)).c_str(), AUtf8(SinBlancos(clave)).c_str());
}

void FicheroIni::QuitaSeccion(const wchar_t* seccion) {
    m_bCambiado |= m_Datos->ini.Delete(AUtf8(SinBlancos(seccion)).c_str(), nullptr);
}

}  // namespace plataforma
