// The ramp as a text, and the text in the stores of settings.

#include "model/CDataGamaColor.h"

#include "platform/CWinApp.h"
#include "platform/Numeros.h"
#include "platform/Perfil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>

namespace Vertiz {

namespace {

constexpr wchar_t kClave[] = L"Colores";

// Takes the next number off the front of the text.
template <class N>
bool TomaNumero(std::string_view& texto, N& numero) {
    texto.remove_prefix(std::min(texto.find_first_not_of(" \t"), texto.size()));
    const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), numero);
    if (error != std::errc()) return false;
    texto.remove_prefix(std::size_t(fin - texto.data()));
    return true;
}

std::optional<CColorCota> LeeParada(std::string_view texto) {
    CColorCota parada;
    if (!TomaNumero(texto, parada.m_dCota) || !TomaNumero(texto, parada.m_nRojo) ||
        !TomaNumero(texto, parada.m_nVerde) || !TomaNumero(texto, parada.m_nAzul) ||
        texto.find_first_not_of(" \t") != std::string_view::npos)
        return std::nullopt;
    return parada;
}

// The ramp of a text, or nothing when the text breaks the form.
std::optional<CDataGamaColor> LeeGama(const CString& ancho) {
    // Only ASCII is meaningful; anything else becomes a character that no number has.
    std::string texto;
    for (const wchar_t* c = ancho; *c; ++c)
        texto += *c < 128 ? char(*c) : '?';

    CDataGamaColor gama;
    std::string_view resto = texto;
    while (resto.find_first_not_of(" \t") != std::string_view::npos) {
        const std::size_t fin = std::min(resto.find(';'), resto.size());
        const std::optional<CColorCota> parada = LeeParada(resto.substr(0, fin));
        if (!parada || !gama.Inserta(*parada)) return std::nullopt;
        resto.remove_prefix(std::min(fin + 1, resto.size()));
    }
    return gama;
}

}  // namespace

CDataGamaColor::CDataGamaColor(const CString& texto) {
    if (auto gama = LeeGama(texto)) *this = *std::move(gama);
}

CDataGamaColor CDataGamaColor::Terreno(double cotaMin, double cotaMax) {
    // Lightness rises with height all the way, so that the ramp also reads in black and white.
    static constexpr CColorCota kColores[] = {{0.00, 46, 107, 58},   {0.15, 88, 140, 70},   {0.32, 146, 170, 90},
                                              {0.50, 200, 186, 116}, {0.66, 214, 186, 140}, {0.80, 222, 198, 170},
                                              {0.92, 236, 224, 212}, {1.00, 252, 252, 252}};
    constexpr double kMargen = 0.01;  // of the range, at each end
    const double rango = std::max(cotaMax - cotaMin, 1e-6 * std::max({1.0, std::abs(cotaMin), std::abs(cotaMax)}));
    CDataGamaColor gama;
    for (CColorCota parada : kColores) {
        parada.m_dCota = cotaMin + rango * (parada.m_dCota * (1.0 + 2.0 * kMargen) - kMargen);
        gama.Inserta(parada);
    }
    return gama;
}

bool CDataGamaColor::Inserta(const CColorCota& parada) {
    if (!std::isfinite(parada.m_dCota)) return false;
    const auto lugar = std::lower_bound(m_Paradas.begin(), m_Paradas.end(), parada.m_dCota,
                                        [](const CColorCota& p, double cota) { return p.m_dCota < cota; });
    if (lugar != m_Paradas.end() && lugar->m_dCota == parada.m_dCota)
        *lugar = parada;
    else
        m_Paradas.insert(lugar, parada);
    return true;
}

CString CDataGamaColor::Texto() const {
    std::string texto;
    for (const CColorCota& parada : m_Paradas) {
        if (!texto.empty()) texto += ';';
        texto += TextoExacto(parada.m_dCota);
        for (const int canal : {parada.m_nRojo, parada.m_nVerde, parada.m_nAzul})
            texto += ' ' + std::to_string(canal);
    }
    return CString(texto.c_str());
}

void CDataGamaColor::GetProfile(const CString& seccion, const CString& prefijo) {
    CWinApp* aplicacion = AfxGetApp();
    if (!aplicacion) return;
    if (auto gama = LeeGama(aplicacion->GetProfileString(seccion, prefijo + kClave, Texto()))) *this = *std::move(gama);
}

void CDataGamaColor::WriteProfile(const CString& seccion, const CString& prefijo) const {
    if (CWinApp* aplicacion = AfxGetApp()) aplicacion->WriteProfileString(seccion, prefijo + kClave, Texto());
}

void CDataGamaColor::GetPrivateProfile(const CString& fichero, const CString& seccion, const CString& prefijo) {
    const CString clave = prefijo + kClave, actual = Texto();
    std::wstring valor(1024, L'\0');
    for (;;) {
        const auto leidos =
            GetPrivateProfileStringW(seccion, clave, actual, valor.data(), DWORD(valor.size()), fichero);
        const bool cortado = leidos + 1 >= valor.size();  // a value that fills the buffer may go on
        if (!cortado || valor.size() > (1u << 24)) break;
        valor.resize(valor.size() * 4);
    }
    if (auto gama = LeeGama(CString(valor.c_str()))) *this = *std::move(gama);
}

void CDataGamaColor::WritePrivateProfile(const CString& fichero, const CString& seccion, const CString& prefijo) const {
    WritePrivateProfileStringW(seccion, prefijo + kClave, Texto(), fichero);
}

}  // namespace Vertiz
