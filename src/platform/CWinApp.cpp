// Which application object is the current one, and where its settings are.

#include "platform/CWinApp.h"

#include "platform/CLumbraApp.h"
#include "platform/Conversiones.h"
#include "platform/FicheroIni.h"
#include "platform/Ficheros.h"
#include "platform/Numeros.h"
#include "platform/Perfil.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>

using namespace plataforma;

namespace {

// Made before anything runs: application objects are usually global, and the order in which they come up isn't ours.
constinit std::mutex g_Aplicaciones;

CLumbraApp g_AplicacionBiblioteca;

CString NombrePrograma() {
    std::error_code error;
    const auto programa = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::string nombre = programa.stem().string();
    return CString(std::string_view(error || nombre.empty() ? "lumbra" : nombre));
}

// A name as one folder, whatever stands in it.
CString Carpeta(CString nombre) {
    nombre.Replace(L'/', L'_');
    nombre.Replace(L'\\', L'_');
    if (nombre == L"." || nombre == L"..") nombre = L"_";
    return nombre;
}

// Where a user's settings live (XDG Base Directory): a relative XDG_CONFIG_HOME doesn't count.
CString CarpetaAjustes() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && *xdg == '/') return CString(xdg);
    const char* casa = std::getenv("HOME");
    return casa && *casa ? JuntaRuta(CString(casa), L".config") : CString();
}

}  // namespace

constinit CWinApp* CWinApp::s_pUltima = nullptr;
constinit CWinApp* CWinApp::s_pBiblioteca = nullptr;

CWinApp::CWinApp(LPCWSTR nombre) {
    PonNombres(nombre);
    const std::lock_guard candado(g_Aplicaciones);
    m_pAnterior = s_pUltima;
    s_pUltima = this;
}

CWinApp::CWinApp(LPCWSTR nombre, DeLaBiblioteca) {
    PonNombres(nombre);
    const std::lock_guard candado(g_Aplicaciones);
    if (!s_pBiblioteca) s_pBiblioteca = this;
}

CWinApp::~CWinApp() {
    const std::lock_guard candado(g_Aplicaciones);
    if (s_pBiblioteca == this) s_pBiblioteca = nullptr;
    for (CWinApp** p = &s_pUltima; *p; p = &(*p)->m_pAnterior) {
        if (*p != this) continue;
        *p = m_pAnterior;
        break;
    }
}

CWinApp* AfxGetApp() {
    const std::lock_guard candado(g_Aplicaciones);
    return CWinApp::s_pUltima ? CWinApp::s_pUltima : CWinApp::s_pBiblioteca;
}

void CWinApp::PonNombres(LPCWSTR nombre) {
    m_pszExeName = NombrePrograma();
    m_pszAppName = nombre && *nombre ? CString(nombre) : m_pszExeName;
    m_pszProfileName = L"perfil.ini";
}

BOOL CWinApp::InitInstance() {
    return TRUE;
}
int CWinApp::ExitInstance() {
    return 0;
}

void CWinApp::SetRegistryKey(LPCWSTR empresa) {
    m_pszRegistryKey = empresa;
}

CString CWinApp::DameFicheroPerfil() const {
    if (m_pszProfileName[0] == L'/') return m_pszProfileName;
    const CString ajustes = CarpetaAjustes();
    if (ajustes.IsEmpty()) return {};
    const CString empresa = m_pszRegistryKey.IsEmpty() ? ajustes : JuntaRuta(ajustes, Carpeta(m_pszRegistryKey));
    return JuntaRuta(JuntaRuta(empresa, Carpeta(m_pszAppName)), m_pszProfileName);
}

UINT CWinApp::GetProfileInt(LPCWSTR seccion, LPCWSTR clave, int defecto) {
    return GetPrivateProfileIntW(seccion, clave, defecto, DameFicheroPerfil());
}

CString CWinApp::GetProfileString(LPCWSTR seccion, LPCWSTR clave, LPCWSTR defecto) {
    FicheroIni ini;
    if (!ini.Lee(DameFicheroPerfil())) return defecto;
    const auto valor = ini.Valor(seccion, clave);
    return valor ? CString(*valor) : CString(defecto);
}

BOOL CWinApp::WriteProfileInt(LPCWSTR seccion, LPCWSTR clave, int valor) {
    CString texto;
    texto.Format(L"%d", valor);
    return WriteProfileString(seccion, clave, texto);
}

BOOL CWinApp::WriteProfileString(LPCWSTR seccion, LPCWSTR clave, LPCWSTR texto) {
    const CString fichero = DameFicheroPerfil();
    std::error_code error;
    if (clave && texto) std::filesystem::create_directories(RutaSistema(CarpetaRuta(fichero)), error);
    return WritePrivateProfileStringW(seccion, clave, texto, fichero);
}
