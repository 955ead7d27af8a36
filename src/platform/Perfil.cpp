// Settings by section and key, each call on the file as it is then.

#include "platform/Perfil.h"

#include "platform/FicheroIni.h"
#include "platform/Numeros.h"

#include <algorithm>
#include <mutex>

using namespace plataforma;

namespace {

// Held from reading a file to putting the new one in its place, or one of two writes could be lost. Who only reads
// needs no lock, since a file is always whole.
constinit std::mutex g_Escritura;

// Names behind each other, each with its null, and one more null at the end.
DWORD EntregaNombres(const std::vector<std::wstring>& nombres, LPWSTR buffer, DWORD n) {
    std::wstring lista;
    for (const std::wstring& nombre : nombres)
        lista.append(nombre).push_back(L'\0');
    const size_t caben = n < 2 ? 0 : std::min<size_t>(lista.size(), n - 1);
    std::copy_n(lista.data(), caben, buffer);
    buffer[caben] = L'\0';
    if (caben == lista.size()) return static_cast<DWORD>(caben);
    if (n < 2) return 0;
    buffer[n - 2] = L'\0';
    return n - 2;
}

DWORD EntregaTexto(const std::wstring& texto, LPWSTR buffer, DWORD n) {
    const size_t caben = std::min<size_t>(texto.size(), n - 1);
    std::copy_n(texto.data(), caben, buffer);
    buffer[caben] = L'\0';
    return static_cast<DWORD>(caben);
}

}  // namespace

DWORD GetPrivateProfileStringW(LPCWSTR seccion, LPCWSTR clave, LPCWSTR defecto, LPWSTR buffer, DWORD n,
                               LPCWSTR fichero) {
    if (!buffer || n == 0) return 0;
    FicheroIni ini;
    const bool leido = ini.Lee(fichero);
    if (!seccion) return EntregaNombres(ini.Secciones(), buffer, n);
    if (!clave) return EntregaNombres(ini.Claves(seccion), buffer, n);
    if (leido) {
        if (const auto valor = ini.Valor(seccion, clave)) return EntregaTexto(*valor, buffer, n);
    }
    return EntregaTexto(CString(defecto).TrimRight(L" \t").Texto(), buffer, n);
}

UINT GetPrivateProfileIntW(LPCWSTR seccion, LPCWSTR clave, int defecto, LPCWSTR fichero) {
    FicheroIni ini;
    if (!ini.Lee(fichero)) return static_cast<UINT>(defecto);
    const std::wstring texto = ini.Valor(seccion, clave).value_or(L"");
    return static_cast<UINT>(texto.empty() ? defecto : LeeEntero(texto));
}

BOOL WritePrivateProfileStringW(LPCWSTR seccion, LPCWSTR clave, LPCWSTR texto, LPCWSTR fichero) {
    if (!seccion) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::lock_guard candado(g_Escritura);
    FicheroIni ini;
    if (!ini.Lee(fichero)) return FALSE;
    if (!clave) {
        ini.QuitaSeccion(seccion);
    } else if (!texto) {
        ini.Quita(seccion, clave);
    } else if (!ini.Pon(seccion, clave, texto)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    return ini.Graba();
}
