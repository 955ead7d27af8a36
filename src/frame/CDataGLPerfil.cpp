// The view settings in the two kinds of settings stores. Each key stands here once, in groups; what differs between the
// stores is the order of the groups, and the treatment of three keys. The orders are those that stores in use have.

#include "frame/CDataGL.h"
#include "platform/CWinApp.h"
#include "platform/Numeros.h"
#include "platform/Perfil.h"

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

namespace {

constexpr wchar_t kPrefijoGama[] = L"Gama";
constexpr wchar_t kVelocidad[] = L"Velocidad";
constexpr wchar_t kImagenFondo[] = L"SzImagenFondo";
constexpr DWORD kBuffer = 256;  // characters of a value in an INI file, the null counted

// ---- The keys: each group calls f(key, field). D is CDataGL, const for whoever writes. ----

template <class D, class F>
void Superficie(D& d, F f) {
    f(L"ColorFondo", d.m_nColorFondo);
    f(L"ColorDEM", d.m_nColorDEM);
    f(L"ColorBase", d.m_nColorBase);
    f(L"ColorLIDAR", d.m_nColorLIDAR);
    f(L"ColorDesmonte", d.m_nColorDesmonte);
    f(L"ColorTerraplen", d.m_nColorTerraplen);
    f(L"ColorNada", d.m_nColorNada);
    f(L"ModoRelleno", d.m_nModoRelleno);
    f(L"TipoColorLineas", d.m_nTipoColorLineas);
    f(L"TipoLIDAR", d.m_nTipoLIDAR);
    f(L"SombraCeldas", d.m_nSombraCeldas);
    f(L"Quad", d.m_nQuad);
    f(L"GrosorPuntos", d.m_nGrosorPuntos);
}

template <class D, class F>
void Rotacion(D& d, F f) {
    f(L"Rotacion", d.m_bRotacion);
}

template <class D, class F>
void Objetos(D& d, F f) {
    f(L"Limites", d.m_bLimites);
    f(L"LimitesProyecto", d.m_bLimitesProyecto);
    f(L"Edificios", d.m_bEdificios);
    f(L"Arboles", d.m_bArboles);
    f(L"Rupturas", d.m_bRupturas);
    f(L"Referencia", d.m_bReferencia);
    f(L"Curvado", d.m_bCurvado);
    f(L"PuntosCamara", d.m_bPuntosCamara);
}

template <class D, class F>
void BaseYOrto(D& d, F f) {
    f(L"Base", d.m_bBase);
    f(L"Orto", d.m_bOrto);
}

template <class D, class F>
void Ejes(D& d, F f) {
    f(L"Ejes", d.m_nEjes);
}

template <class D, class F>
void LuzYRelleno(D& d, F f) {
    f(L"Luz", d.m_bLuz);
    f(L"Relleno", d.m_bRelleno);
}

template <class D, class F>
void Cielo(D& d, F f) {
    f(L"ImagenFondo", d.m_bImagenFondo);
}

template <class D, class F>
void Mascara(D& d, F f) {
    f(L"Mascara", d.m_bMascara);
}

template <class D, class F>
void Planos(D& d, F f) {
    f(L"VerPlanos", d.m_bVerPlanos);
    f(L"VerPuntosConPlanos", d.m_bVerPuntosConPlanos);
    f(L"VerPuntosSinPlanos", d.m_bVerPuntosSinPlanos);
}

template <class D, class F>
void LuzYTextos(D& d, F f) {
    for (std::size_t i = 0; i < std::size(d.m_nLuzParam); ++i)
        f((L"LuzParam" + std::to_wstring(i)).c_str(), d.m_nLuzParam[i]);
    f(L"CalidadTextos", d.m_nCalidadTextos);
    f(L"Textos3D", d.m_bTextos3D);
    f(L"AlturaTextos", d.m_nAlturaTextos);
}

template <class D, class F>
void MaximoPuntos(D& d, F f) {
    f(L"NumMaxPuntosTrazados", d.m_nMaxPuntosTrazados);
}

template <class D, class F>
void Transparencias(D& d, F f) {
    f(L"AlfaSuperficie", d.m_nAlfaSuperficie);
    f(L"AlfaImagen", d.m_nAlfaImagen);
}

// The integer keys of the profile store, in its order; `planos` has the three keys of planes.
template <class D, class F, class P>
void ClavesPerfil(D& d, F f, P planos) {
    Superficie(d, f);
    Rotacion(d, f);
    Objetos(d, f);
    BaseYOrto(d, f);
    Ejes(d, f);
    LuzYRelleno(d, f);
    Cielo(d, f);
    Mascara(d, f);
    Planos(d, planos);
    LuzYTextos(d, f);
    MaximoPuntos(d, f);
    Transparencias(d, f);
}

// What INI files have between the planes and the last settings.
template <class D, class F>
void CentroIni(D& d, F f) {
    LuzYRelleno(d, f);
    Ejes(d, f);
    Rotacion(d, f);
    Cielo(d, f);
    f(kImagenFondo, d.m_SzImagenFondo);
    LuzYTextos(d, f);
}

CString TextoVelocidad(float velocidad) {
    return CString(std::string_view(TextoReal(velocidad)));
}

// A value of an INI file as it fits in its buffer; empty when the key isn't there.
CString Valor(const CString& fichero, const CString& seccion, LPCWSTR clave) {
    wchar_t buffer[kBuffer];
    GetPrivateProfileStringW(seccion, clave, L"", buffer, kBuffer, fichero);
    return buffer;
}

// Reads a key into its field, and leaves the field where there is none.
struct LectorIni {
    const CString& fichero;
    const CString& seccion;

    void operator()(LPCWSTR clave, CString& campo) const {
        const CString valor = Valor(fichero, seccion, clave);
        if (!valor.IsEmpty()) campo = valor;
    }
    template <class T>
    void operator()(LPCWSTR clave, T& campo) const {
        const CString valor = Valor(fichero, seccion, clave);
        if (!valor.IsEmpty()) campo = static_cast<T>(LeeEntero(valor.Texto()));
    }
};

CString TextoIni(int valor) {
    return CString(std::string_view(std::to_string(valor)));
}
CString TextoIni(const CString& valor) {
    return valor.Left(kBuffer - 1);
}

}  // namespace

// ---- The application's profile store --------------------------------------------------------------------------------

void CDataGL::GetProfile(const CString& seccion) {
    CWinApp* aplicacion = AfxGetApp();
    CString velocidad = TextoVelocidad(m_fVelocidad);
    if (aplicacion) {
        const auto lee = [&](LPCWSTR clave, auto& campo) {
            const UINT valor = aplicacion->GetProfileInt(seccion, clave, static_cast<int>(campo));
            campo = static_cast<std::remove_reference_t<decltype(campo)>>(static_cast<int>(valor));
        };
        ClavesPerfil(*this, lee, lee);
        m_SzImagenFondo = aplicacion->GetProfileString(seccion, kImagenFondo, m_SzImagenFondo);
        m_GamaColor.GetProfile(seccion, kPrefijoGama);
        velocidad = aplicacion->GetProfileString(seccion, kVelocidad, velocidad);
    }
    AjustaTipoLIDAR();
    PonVelocidad(velocidad);
    AjustaModos();
}

void CDataGL::WriteProfile(const CString& seccion) const {
    CWinApp* aplicacion = AfxGetApp();
    if (!aplicacion) return;
    const auto escribe = [&](LPCWSTR clave, auto valor) {
        aplicacion->WriteProfileInt(seccion, clave, static_cast<int>(valor));
    };
    // All three under one key, so that the last one stays: programs that share the store expect it.
    ClavesPerfil(*this, escribe, [&](LPCWSTR, int valor) { escribe(L"VerPlanos", valor); });
    aplicacion->WriteProfileString(seccion, kImagenFondo, m_SzImagenFondo);
    m_GamaColor.WriteProfile(seccion, kPrefijoGama);
    aplicacion->WriteProfileString(seccion, kVelocidad, TextoVelocidad(m_fVelocidad));
}

// ---- INI files ------------------------------------------------------------------------------------------------------

void CDataGL::GetPrivateProfile(const CString& fichero, const CString& seccion) {
    const LectorIni lee{fichero, seccion};
    Superficie(*this, lee);
    Objetos(*this, lee);
    BaseYOrto(*this, lee);
    Mascara(*this, lee);
    Planos(*this, lee);
    CentroIni(*this, lee);
    MaximoPuntos(*this, lee);
    Transparencias(*this, lee);
    if (const CString velocidad = Valor(fichero, seccion, kVelocidad); !velocidad.IsEmpty()) PonVelocidad(velocidad);
    AjustaModos();
    m_GamaColor.GetPrivateProfile(fichero, seccion, kPrefijoGama);
    AjustaTipoLIDAR();
}

void CDataGL::WritePrivateProfile(const CString& fichero, const CString& seccion) const {
    const auto escribe = [&](LPCWSTR clave, const auto& valor) {
        WritePrivateProfileStringW(seccion, clave, TextoIni(valor), fichero);
    };
    Superficie(*this, escribe);
    Objetos(*this, escribe);
    Mascara(*this, escribe);
    Planos(*this, escribe);
    BaseYOrto(*this, escribe);
    CentroIni(*this, escribe);
    Transparencias(*this, escribe);
    MaximoPuntos(*this, escribe);
    escribe(kVelocidad, TextoVelocidad(m_fVelocidad));
    m_GamaColor.WritePrivateProfile(fichero, seccion, kPrefijoGama);
}

// ---- What both do to what they have read ----------------------------------------------------------------------------

void CDataGL::PonVelocidad(const CString& texto) {
    const double leida = LeeReal(texto.Texto());
    const bool cabe = std::abs(leida) <= std::numeric_limits<float>::max();
    m_fVelocidad = cabe ? static_cast<float>(leida) : 0.0F;
    if (m_fVelocidad == 0.0F) m_fVelocidad = 0.125F;
    MultiplicaPasos(m_fVelocidad * 8.0F);
}

void CDataGL::AjustaModos() {
    if (m_nQuad > 3) m_nQuad = 1;
    if (m_bRotacion > 1) m_bRotacion = 1;
}

// A ramp without stops would leave clouds black.
void CDataGL::AjustaTipoLIDAR() {
    if (m_nTipoLIDAR == ColorHipsometrico && m_GamaColor.EstaVacia()) m_nTipoLIDAR = ColorIntensidad;
}
