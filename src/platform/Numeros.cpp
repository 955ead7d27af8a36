// Numbers and texts on the standard library's conversions, which know no locale.

#include "platform/Numeros.h"

#include <locale.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

// What stands at the start of the text, without blanks and without a plus sign, which from_chars doesn't take.
std::string_view SinBlancos(std::string_view s) {
    const size_t i = s.find_first_not_of(" \t\n\v\f\r");
    if (i == std::string_view::npos) return {};
    s.remove_prefix(i);
    if (s.size() > 1 && s[0] == '+' && s[1] != '-') s.remove_prefix(1);
    return s;
}

// The start of a wide text in which a number can stand; nothing of a number lies beyond ASCII.
std::string Estrecho(std::wstring_view texto) {
    std::string s;
    for (wchar_t c : texto) {
        if (c <= 0 || c >= 0x80) break;
        s += static_cast<char>(c);
    }
    return s;
}

// Too large or too small for a double: from_chars doesn't tell which of the two, strtod does.
double FueraDeRango(const std::string& s) {
    static const locale_t neutro = newlocale(LC_ALL_MASK, "C", nullptr);
    return strtod_l(s.c_str(), nullptr, neutro);
}

template <class T>
T LeeEnteroDe(std::string_view texto) {
    const std::string_view s = SinBlancos(texto);
    T valor = 0;
    const auto [fin, error] = std::from_chars(s.data(), s.data() + s.size(), valor);
    if (error == std::errc::result_out_of_range) {
        return s[0] == '-' ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
    }
    return valor;
}

std::string Texto(double valor, std::chars_format formato, int precision) {
    // The longest: 309 digits before the point.
    std::string s(static_cast<size_t>(precision) + 330, '\0');
    const auto [fin, error] = std::to_chars(s.data(), s.data() + s.size(), valor, formato, precision);
    s.resize(static_cast<size_t>(fin - s.data()));
    return s;
}

}  // namespace

double LeeReal(std::string_view texto) {
    const std::string_view s = SinBlancos(texto);
    double valor = 0.0;
    const auto [fin, error] = std::from_chars(s.data(), s.data() + s.size(), valor);
    return error == std::errc::result_out_of_range ? FueraDeRango(std::string(s.data(), fin)) : valor;
}
double LeeReal(std::wstring_view texto) {
    return LeeReal(std::string_view(Estrecho(texto)));
}

int LeeEntero(std::string_view texto) {
    return LeeEnteroDe<int>(texto);
}
int LeeEntero(std::wstring_view texto) {
    return LeeEnteroDe<int>(Estrecho(texto));
}
std::int64_t LeeEntero64(std::string_view texto) {
    return LeeEnteroDe<std::int64_t>(texto);
}
std::int64_t LeeEntero64(std::wstring_view texto) {
    return LeeEnteroDe<std::int64_t>(Estrecho(texto));
}

std::string TextoExacto(double valor) {
    std::array<char, 32> s;
    return {s.data(), std::to_chars(s.data(), s.data() + s.size(), valor).ptr};
}
std::string TextoReal(double valor, int decimales) {
    return Texto(valor, std::chars_format::fixed, std::max(decimales, 0));
}
std::string TextoGeneral(double valor, int cifras) {
    return Texto(valor, std::chars_format::general, std::max(cifras, 0));
}
