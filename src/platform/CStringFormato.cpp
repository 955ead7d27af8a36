// What Format makes: the conversions of printf, by the kind that each argument really has, and never by the locale.

#include "platform/CString.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

using Argumento = CString::Argumento;
using Clase = Argumento::Clase;

// The most that a width or a precision can ask for: a format from outside must not eat the memory.
constexpr int kTope = 4096;

// What stands between the % and its letter.
struct Conversion {
    bool izquierda = false, mas = false, hueco = false, ceros = false, marca = false;
    int ancho = 0;
    int precision = -1;  // none
    wchar_t letra = 0;
};

std::int64_t ConSigno(const Argumento& a) {
    if (a.clase == Clase::Real) {
        // Beyond the range there is no integer to give; nearest limit, as for a text that is read.
        if (!(a.real > -9.2e18)) return std::isnan(a.real) ? 0 : std::numeric_limits<std::int64_t>::min();
        return a.real < 9.2e18 ? static_cast<std::int64_t>(a.real) : std::numeric_limits<std::int64_t>::max();
    }
    switch (a.bytes) {
        case 1:
            return static_cast<std::int8_t>(a.entero);
        case 2:
            return static_cast<std::int16_t>(a.entero);
        case 4:
            return static_cast<std::int32_t>(a.entero);
        default:
            return static_cast<std::int64_t>(a.entero);
    }
}

std::uint64_t SinSigno(const Argumento& a) {
    if (a.clase == Clase::Real) return static_cast<std::uint64_t>(ConSigno(a));
    return a.bytes >= 8 ? a.entero : a.entero & ((std::uint64_t{1} << 8 * a.bytes) - 1);
}

double Real(const Argumento& a) {
    return a.clase == Clase::Real ? a.real : static_cast<double>(ConSigno(a));
}

// Puts sign, zeros and blanks round the digits.
std::wstring Rellena(const Conversion& c, std::string signo, std::string cifras, bool ceros) {
    const size_t ancho = static_cast<size_t>(c.ancho);
    const size_t largo = signo.size() + cifras.size();
    const size_t faltan = ancho > largo ? ancho - largo : 0;
    if (c.izquierda) {
        cifras.append(faltan, ' ');
    } else if (ceros) {
        cifras.insert(0, faltan, '0');
    } else {
        signo.insert(0, faltan, ' ');
    }
    return DeUtf8(signo + cifras);
}

std::string Signo(const Conversion& c, bool negativo) {
    return negativo ? "-" : c.mas ? "+" : c.hueco ? " " : "";
}

std::wstring Entero(const Conversion& c, const Argumento& a) {
    const bool signado = c.letra == L'd' || c.letra == L'i';
    const std::int64_t conSigno = signado ? ConSigno(a) : 0;
    const bool negativo = conSigno < 0;
    const std::uint64_t valor = !signado   ? SinSigno(a)
                                : negativo ? -static_cast<std::uint64_t>(conSigno)
                                           : static_cast<std::uint64_t>(conSigno);
    const int base = c.letra == L'o' ? 8 : c.letra == L'x' || c.letra == L'X' || c.letra == L'p' ? 16 : 10;
    char digitos[32];
    const auto fin = std::to_chars(digitos, digitos + sizeof digitos, valor, base).ptr;
    std::string cifras(digitos, fin);
    if (c.precision == 0 && valor == 0) cifras.clear();
    if (static_cast<int>(cifras.size()) < c.precision)
        cifras.insert(0, static_cast<size_t>(c.precision) - cifras.size(), '0');

    std::string signo = signado ? Signo(c, negativo) : "";
    if (c.letra == L'p' || (c.marca && base == 16 && valor != 0)) signo = "0x";
    if (c.marca && base == 8 && !cifras.starts_with('0')) cifras.insert(0, 1, '0');
    if (c.letra == L'X') {
        std::ranges::transform(cifras, cifras.begin(), [](char d) { return d >= 'a' ? static_cast<char>(d - 32) : d; });
        if (signo == "0x") signo = "0X";
    }
    return Rellena(c, signo, cifras, c.ceros && c.precision < 0);
}

std::wstring Decimal(const Conversion& c, const Argumento& a) {
    const double valor = Real(a);
    const wchar_t letra = AMinuscula(c.letra);
    const std::chars_format formato = letra == L'f'   ? std::chars_format::fixed
                                      : letra == L'e' ? std::chars_format::scientific
                                                      : std::chars_format::general;
    // 309 digits before the point are the most that a double has.
    char digitos[kTope + 330];
    const auto fin =
        std::to_chars(digitos, digitos + sizeof digitos, std::abs(valor), formato, c.precision < 0 ? 6 : c.precision)
            .ptr;
    std::string cifras(digitos, fin);
    if (letra != c.letra) {
        std::ranges::transform(cifras, cifras.begin(), [](char d) { return d >= 'a' ? static_cast<char>(d - 32) : d; });
    }
    return Rellena(c, Signo(c, std::signbit(valor)), cifras, c.ceros && std::isfinite(valor));
}

// Any argument as %s writes it; a number given to it is written, where printf would read it as an address.
std::wstring Texto(const Argumento& a) {
    switch (a.clase) {
        case Clase::Texto:
            return a.texto ? a.texto : DeUtf8(a.estrecho);
        case Clase::Real:
            return Decimal({.letra = L'f'}, a);
        case Clase::Entero:
            return Entero({.letra = L'd'}, a);
        case Clase::Puntero:
            break;
    }
    return Entero({.letra = L'p'}, a);
}

std::wstring TextoRelleno(const Conversion& c, std::wstring texto) {
    if (c.precision >= 0) texto = texto.substr(0, static_cast<size_t>(c.precision));
    const size_t ancho = static_cast<size_t>(c.ancho);
    if (texto.size() < ancho) texto.insert(c.izquierda ? texto.size() : 0, ancho - texto.size(), L' ');
    return texto;
}

// Walks over a format and its arguments.
class Lector {
  public:
    Lector(const wchar_t* formato, std::span<const Argumento> argumentos) : m_p(formato), m_Argumentos(argumentos) {}

    std::wstring Todo() {
        std::wstring salida;
        while (*m_p) {
            if (*m_p != L'%') {
                salida += *m_p++;
            } else if (*++m_p == L'%') {
                salida += *m_p++;
            } else {
                salida += Una();
            }
        }
        return salida;
    }

  private:
    Argumento Siguiente() { return m_i < m_Argumentos.size() ? m_Argumentos[m_i++] : Argumento(0); }
    bool Quedan() const { return m_i < m_Argumentos.size(); }

    bool Bandera(Conversion& c) {
        switch (*m_p) {
            case L'-':
                return c.izquierda = true;
            case L'+':
                return c.mas = true;
            case L' ':
                return c.hueco = true;
            case L'0':
                return c.ceros = true;
            case L'#':
                return c.marca = true;
            default:
                return false;
        }
    }

    // A number in the format, or from the arguments for '*'; it stays between -kTope and kTope.
    int Numero() {
        int n = 0;
        if (*m_p == L'*') {
            ++m_p;
            n = static_cast<int>(std::clamp<std::int64_t>(ConSigno(Siguiente()), -kTope, kTope));
        }
        for (; *m_p >= L'0' && *m_p <= L'9'; ++m_p)
            n = std::min(n * 10 + static_cast<int>(*m_p - L'0'), kTope);
        return n;
    }

    void PasaSize() {
        const std::wstring_view resto(m_p);
        if (resto.starts_with(L"I64") || resto.starts_with(L"I32")) {
            m_p += 3;
            return;
        }
        while (*m_p && std::wstring_view(L"hlLqjztIw").find(*m_p) != std::wstring_view::npos)
            ++m_p;
    }

    std::wstring Una() {
        Conversion c;
        while (Bandera(c))
            ++m_p;
        c.ancho = Numero();
        if (c.ancho < 0) {
            c.izquierda = true;
            c.ancho = -c.ancho;
        }
        if (*m_p == L'.') {
            ++m_p;
            c.precision = std::max(Numero(), -1);
        }
        PasaSize();
        if (!*m_p) return {};
        c.letra = *m_p++;
        switch (c.letra) {
            case L'd':
            case L'i':
            case L'u':
            case L'x':
            case L'X':
            case L'o':
            case L'p':
                return Entero(c, Siguiente());
            case L'f':
            case L'F':
            case L'e':
            case L'E':
            case L'g':
            case L'G':
                return Decimal(c, Siguiente());
            case L's':
            case L'S':
                return TextoRelleno(c, Quedan() ? Texto(Siguiente()) : std::wstring());
            case L'c':
            case L'C':
                c.precision = -1;
                return TextoRelleno(c, std::wstring(1, static_cast<wchar_t>(SinSigno(Siguiente()))));
            default:
                return {c.letra};  // no conversion: the letter itself
        }
    }

    const wchar_t* m_p;
    std::span<const Argumento> m_Argumentos;
    size_t m_i = 0;
};

}  // namespace

CString CString::FormateaLista(const wchar_t* formato, std::span<const Argumento> argumentos) {
    return Lector(formato ? formato : L"", argumentos).Todo();
}
