// Texts between encodings: those of Unicode by hand, code pages by the system's iconv.

#include "platform/Conversiones.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

namespace {

constexpr char32_t kSinSentido = 0xFFFD;

bool EsSustituto(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}

char32_t Valida(wchar_t c) {
    const auto punto = static_cast<char32_t>(c);
    return punto > 0x10FFFF || EsSustituto(punto) ? kSinSentido : punto;
}

// Reads one code point from position `i` on and moves behind it; false, and behind the bytes that belong together,
// when they aren't well formed.
bool SiguienteUtf8(std::string_view s, size_t& i, char32_t& punto) {
    const auto primero = static_cast<unsigned char>(s[i++]);
    punto = primero;
    if (primero < 0x80) return true;
    if (primero < 0xC2 || primero > 0xF4) return false;
    const int siguen = primero < 0xE0 ? 1 : primero < 0xF0 ? 2 : 3;
    punto = primero & (0x3F >> siguen);
    // The second byte has a narrower range where a shorter form, a surrogate or a value above U+10FFFF would begin.
    unsigned minimo = primero == 0xE0 ? 0xA0 : primero == 0xF0 ? 0x90 : 0x80;
    unsigned maximo = primero == 0xED ? 0x9F : primero == 0xF4 ? 0x8F : 0xBF;
    for (int n = 0; n < siguen; ++n) {
        if (i == s.size()) return false;
        const auto c = static_cast<unsigned char>(s[i]);
        if (c < minimo || c > maximo) return false;
        punto = punto << 6 | (c & 0x3F);
        minimo = 0x80;
        maximo = 0xBF;
        ++i;
    }
    return true;
}

// A converter of iconv, closed at the end.
class Convertidor {
  public:
    Convertidor(const std::string& a, const std::string& de) : m_cd(iconv_open(a.c_str(), de.c_str())) {}
    Convertidor(const Convertidor&) = delete;
    Convertidor& operator=(const Convertidor&) = delete;
    ~Convertidor() {
        if (Sirve()) iconv_close(m_cd);
    }
    bool Sirve() const { return m_cd != reinterpret_cast<iconv_t>(-1); }

    // Converts all bytes; at those that can't be, passes over `paso` of them and puts `falta` in their place.
    std::string Convierte(std::string_view entrada, size_t paso, std::string_view falta) {
        std::string salida;
        char* p = const_cast<char*>(entrada.data());
        size_t quedan = entrada.size();
        while (quedan > 0) {
            char trozo[1024];
            char* q = trozo;
            size_t libres = sizeof trozo;
            const size_t antes = quedan;
            const bool todo = iconv(m_cd, &p, &quedan, &q, &libres) != static_cast<size_t>(-1);
            salida.append(trozo, q);
            const bool lleno = !todo && errno == E2BIG && (quedan < antes || q != trozo);
            if (todo || lleno) continue;
            salida += falta;
            const size_t salta = std::min(paso, quedan);
            p += salta;
            quedan -= salta;
            iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        }
        return salida;
    }

  private:
    iconv_t m_cd;
};

std::string NombrePagina(unsigned pagina) {
    if (pagina >= 28591 && pagina <= 28606) return "ISO-8859-" + std::to_string(pagina - 28590);
    return "CP" + std::to_string(pagina);
}

// wchar_t as iconv calls it, in the machine's byte order whatever the locale.
constexpr const char* kAncho = "WCHAR_T";

std::string SoloAscii(std::wstring_view texto) {
    std::string bytes;
    for (wchar_t c : texto)
        bytes += c >= 0 && c < 0x80 ? static_cast<char>(c) : '?';
    return bytes;
}

std::wstring SoloAscii(std::string_view bytes) {
    std::wstring texto;
    for (unsigned char c : bytes)
        texto += static_cast<wchar_t>(c < 0x80 ? c : kSinSentido);
    return texto;
}

// Letters whose small form stands at a fixed distance, or beside the capital: even and odd, or odd and even.
enum class Orden { Distancia, ParImpar, ImparPar };
struct Alfabeto {
    char32_t primera, ultima;  // capitals; of both forms for pairs
    Orden orden;
    int distancia;
};
constexpr Alfabeto kAlfabetos[] = {
    {0x41, 0x5A, Orden::Distancia, 32},   {0xC0, 0xD6, Orden::Distancia, 32},
    {0xD8, 0xDE, Orden::Distancia, 32},   {0x100, 0x12F, Orden::ParImpar, 1},
    {0x132, 0x137, Orden::ParImpar, 1},   {0x139, 0x148, Orden::ImparPar, 1},
    {0x14A, 0x177, Orden::ParImpar, 1},   {0x178, 0x178, Orden::Distancia, 0xFF - 0x178},
    {0x179, 0x17E, Orden::ImparPar, 1},   {0x386, 0x386, Orden::Distancia, 38},
    {0x388, 0x38A, Orden::Distancia, 37}, {0x38C, 0x38C, Orden::Distancia, 64},
    {0x38E, 0x38F, Orden::Distancia, 63}, {0x391, 0x3A1, Orden::Distancia, 32},
    {0x3A3, 0x3AB, Orden::Distancia, 32}, {0x400, 0x40F, Orden::Distancia, 80},
    {0x410, 0x42F, Orden::Distancia, 32}, {0x460, 0x481, Orden::ParImpar, 1},
    {0x48A, 0x4BF, Orden::ParImpar, 1},   {0x4D0, 0x52F, Orden::ParImpar, 1},
    {0x1E00, 0x1E95, Orden::ParImpar, 1}, {0x1EA0, 0x1EFF, Orden::ParImpar, 1},
};

bool EsMayuscula(const Alfabeto& a, char32_t c) {
    if (c < a.primera || c > a.ultima) return false;
    return a.orden == Orden::Distancia || (c % 2 == 0) == (a.orden == Orden::ParImpar);
}

}  // namespace

std::string AUtf8(std::wstring_view texto) {
    std::string bytes;
    bytes.reserve(texto.size());
    const auto sigue = [&bytes](char32_t c, int bits) { bytes += static_cast<char>(0x80 | ((c >> bits) & 0x3F)); };
    for (wchar_t ancho : texto) {
        const char32_t c = Valida(ancho);
        if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else if (c < 0x800) {
            bytes += static_cast<char>(0xC0 | c >> 6);
            sigue(c, 0);
        } else if (c < 0x10000) {
            bytes += static_cast<char>(0xE0 | c >> 12);
            sigue(c, 6), sigue(c, 0);
        } else {
            bytes += static_cast<char>(0xF0 | c >> 18);
            sigue(c, 12), sigue(c, 6), sigue(c, 0);
        }
    }
    return bytes;
}

std::wstring DeUtf8(std::string_view bytes) {
    std::wstring texto;
    texto.reserve(bytes.size());
    for (size_t i = 0; i < bytes.size();) {
        char32_t punto = 0;
        const bool bien = SiguienteUtf8(bytes, i, punto);
        texto += static_cast<wchar_t>(bien ? punto : kSinSentido);
    }
    return texto;
}

bool EsUtf8(std::string_view bytes) {
    char32_t punto = 0;
    for (size_t i = 0; i < bytes.size();) {
        if (!SiguienteUtf8(bytes, i, punto)) return false;
    }
    return true;
}

std::u16string AUtf16(std::wstring_view texto) {
    std::u16string unidades;
    unidades.reserve(texto.size());
    for (wchar_t ancho : texto) {
        const char32_t c = Valida(ancho);
        if (c < 0x10000) {
            unidades += static_cast<char16_t>(c);
        } else {
            unidades += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            unidades += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return unidades;
}

std::wstring DeUtf16(std::u16string_view unidades) {
    std::wstring texto;
    texto.reserve(unidades.size());
    for (size_t i = 0; i < unidades.size(); ++i) {
        char32_t c = unidades[i];
        if (EsSustituto(c)) {
            const bool pareja = c < 0xDC00 && i + 1 < unidades.size() && (unidades[i + 1] & 0xFC00) == 0xDC00;
            c = pareja ? 0x10000 + ((c - 0xD800) << 10) + (unidades[++i] - 0xDC00) : kSinSentido;
        }
        texto += static_cast<wchar_t>(c);
    }
    return texto;
}

std::string APagina(std::wstring_view texto, unsigned pagina) {
    if (pagina == CP_UTF8) return AUtf8(texto);
    Convertidor convertidor(NombrePagina(pagina), kAncho);
    if (!convertidor.Sirve()) return SoloAscii(texto);
    const std::string_view bytes(reinterpret_cast<const char*>(texto.data()), texto.size() * sizeof(wchar_t));
    return convertidor.Convierte(bytes, sizeof(wchar_t), "?");
}

std::wstring DePagina(std::string_view bytes, unsigned pagina) {
    if (pagina == CP_UTF8) return DeUtf8(bytes);
    Convertidor convertidor(kAncho, NombrePagina(pagina));
    if (!convertidor.Sirve()) return SoloAscii(bytes);
    const wchar_t falta = kSinSentido;
    const std::string ancho =
        convertidor.Convierte(bytes, 1, std::string_view(reinterpret_cast<const char*>(&falta), sizeof falta));
    std::wstring texto(ancho.size() / sizeof(wchar_t), L'\0');
    std::copy(ancho.begin(), ancho.end(), reinterpret_cast<char*>(texto.data()));
    return texto;
}

std::wstring DeBytes(std::string_view bytes) {
    return EsUtf8(bytes) ? DeUtf8(bytes) : DePagina(bytes, CP_ANSI);
}

wchar_t AMinuscula(wchar_t c) {
    const auto punto = static_cast<char32_t>(c);
    for (const Alfabeto& a : kAlfabetos) {
        if (EsMayuscula(a, punto)) return c + a.distancia;
    }
    return c;
}

wchar_t AMayuscula(wchar_t c) {
    for (const Alfabeto& a : kAlfabetos) {
        if (EsMayuscula(a, static_cast<char32_t>(c - a.distancia))) return c - a.distancia;
    }
    return c;
}

int ComparaSinMayusculas(std::wstring_view a, std::wstring_view b) {
    const size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i) {
        const wchar_t x = AMinuscula(a[i]), y = AMinuscula(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}
