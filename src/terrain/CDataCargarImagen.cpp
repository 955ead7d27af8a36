// The options of a load in the two kinds of settings.

#include "terrain/CDataCargarImagen.h"

#include "platform/CWinApp.h"
#include "platform/Perfil.h"

namespace {

constexpr const wchar_t* kPiramidales = L"Piramidales";
constexpr const wchar_t* kInterpolacion = L"Interpolacion";

void Lee(const CString& fichero, const CString& seccion, const wchar_t* clave, int& campo) {
    campo = static_cast<int>(GetPrivateProfileIntW(seccion, clave, campo, fichero));
}

void Escribe(const CString& fichero, const CString& seccion, const wchar_t* clave, int valor) {
    CString texto;
    texto.Format(L"%d", valor);
    WritePrivateProfileStringW(seccion, clave, texto, fichero);
}

}  // namespace

void CDataCargarImagen::GetProfile(const CString& seccion, const CString& prefijo) {
    CWinApp* aplicacion = AfxGetApp();
    if (!aplicacion) return;
    m_bPiramidales = static_cast<int>(aplicacion->GetProfileInt(seccion, prefijo + kPiramidales, m_bPiramidales));
    m_nInterpolacion = static_cast<int>(aplicacion->GetProfileInt(seccion, prefijo + kInterpolacion, m_nInterpolacion));
}

void CDataCargarImagen::WriteProfile(const CString& seccion, const CString& prefijo) const {
    CWinApp* aplicacion = AfxGetApp();
    if (!aplicacion) return;
    aplicacion->WriteProfileInt(seccion, prefijo + kPiramidales, m_bPiramidales);
    aplicacion->WriteProfileInt(seccion, prefijo + kInterpolacion, m_nInterpolacion);
}

void CDataCargarImagen::GetPrivateProfile(const CString& fichero, const CString& seccion) {
    Lee(fichero, seccion, kPiramidales, m_bPiramidales);
    Lee(fichero, seccion, kInterpolacion, m_nInterpolacion);
}

void CDataCargarImagen::WritePrivateProfile(const CString& fichero, const CString& seccion) const {
    Escribe(fichero, seccion, kPiramidales, m_bPiramidales);
    Escribe(fichero, seccion, kInterpolacion, m_nInterpolacion);
}
