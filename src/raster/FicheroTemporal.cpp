// The name and the making of the file that holds a picture's pixels.

#include "raster/FicheroTemporal.h"

#include "platform/Ficheros.h"
#include "platform/Tiempo.h"

namespace Vertiz {

namespace {

// The value of an environment variable; empty without one, or when it is too long to be a folder.
CString Variable(const wchar_t* nombre) {
    constexpr DWORD kLetras = 1024;
    const CString igual = CString(nombre) + L"=", formato = igual + L"%" + nombre + L"%";
    wchar_t texto[kLetras];
    const DWORD letras = ExpandEnvironmentStringsW(formato, texto, kLetras);
    if (letras == 0 || letras > kLetras || formato == texto) return {};  // unchanged: there is no such variable
    return CString(texto).Mid(igual.GetLength());
}

CString CarpetaSistema() {
    wchar_t texto[MAX_PATH]{};
    const DWORD letras = GetTempPathW(MAX_PATH, texto);
    return letras < MAX_PATH ? CString(texto) : CString();
}

CString CarpetaTemporales(const CString& fuente) {
    for (const wchar_t* nombre : {L"TEMP", L"TMP"})
        if (const CString carpeta = Variable(nombre); !carpeta.IsEmpty()) return carpeta;
    const CString carpeta = CarpetaRuta(fuente);
    return carpeta.IsEmpty() ? CarpetaSistema() : carpeta;
}

}  // namespace

std::unique_ptr<CFile> CreaFicheroTemporal(const CString& fuente, CString& ruta) {
    return CreaFicheroNuevo(CarpetaTemporales(fuente), L"Imagen", ruta);
}

std::unique_ptr<CFile> CreaFicheroNuevo(const CString& carpeta, const wchar_t* prefijo, CString& ruta) {
    constexpr UINT kModo = CFile::modeCreate | CFile::modeExclusive | CFile::modeReadWrite;
    __timeb64 ahora{};
    _ftime64(&ahora);
    for (int contador = 0;; ++contador) {
        CString nombre;
        nombre.Format(L"%s%I64d%d%d.tmp", prefijo, ahora.time, ahora.millitm, contador);
        ruta = JuntaRuta(carpeta, nombre);
        auto fichero = std::make_unique<CFile>(ruta, kModo);
        if (fichero->IsOpen()) return fichero;
        if (GetLastError() != ERROR_ALREADY_EXISTS && GetLastError() != ERROR_FILE_EXISTS) return nullptr;
    }
}

}  // namespace Vertiz
