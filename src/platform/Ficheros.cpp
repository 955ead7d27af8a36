// Files by name, and names of temporary ones.

#include "platform/Ficheros.h"

#include "platform/Conversiones.h"
#include "platform/Descriptor.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

using namespace plataforma;

namespace {

constexpr const wchar_t* kSeparadores = L"/\\";

BOOL Falla(DWORD codigo) {
    SetLastError(codigo);
    return FALSE;
}
BOOL FallaSistema() {
    return Falla(ErrorDeErrno(errno));
}

bool Existe(const std::string& ruta) {
    struct stat estado {};
    return lstat(ruta.c_str(), &estado) == 0;
}

// Copies all bytes from one open file to the other.
bool CopiaBytes(int de, int a) {
    for (;;) {
        const ssize_t n = sendfile(a, de, nullptr, size_t{1} << 30);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return n == 0;
    }
}

bool EsElMismo(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Writes a text with its null; false when it doesn't fit.
bool Entrega(const std::wstring& texto, LPWSTR buffer, DWORD n) {
    if (texto.size() >= n) return false;
    std::copy_n(texto.c_str(), texto.size() + 1, buffer);
    return true;
}

std::wstring NombreTemporal(const std::wstring& carpeta, const std::wstring& prefijo, UINT numero) {
    CString nombre;
    nombre.Format(L"%s%x.tmp", prefijo, numero);
    return JuntaRuta(carpeta.c_str(), nombre).Texto();
}

// Moves where the system can't by itself: to another disk, or where it has no move that spares the target.
BOOL MueveCopiando(LPCWSTR origen, LPCWSTR destino) {
    if (!CopyFileW(origen, destino, TRUE)) {
        return GetLastError() == ERROR_FILE_EXISTS ? Falla(ERROR_ALREADY_EXISTS) : FALSE;
    }
    if (DeleteFileW(origen)) return TRUE;
    const DWORD codigo = GetLastError();
    DeleteFileW(destino);
    return Falla(codigo);
}

}  // namespace

std::string RutaSistema(LPCWSTR nombre) {
    std::string ruta = AUtf8(nombre ? nombre : L"");
    if (ruta.find('\\') != std::string::npos && !Existe(ruta)) std::ranges::replace(ruta, '\\', '/');
    return ruta;
}

CString JuntaRuta(LPCWSTR carpeta, LPCWSTR nombre) {
    const std::wstring_view c(carpeta ? carpeta : L""), n(nombre ? nombre : L"");
    if (c.empty() || n.starts_with(L'/')) return CString(n);
    const bool separada = std::wstring_view(kSeparadores).find(c.back()) != std::wstring_view::npos;
    std::wstring ruta(c.substr(0, c.size() - (separada ? 1 : 0)));
    return ruta.append(L"/").append(n);
}

CString CarpetaRuta(LPCWSTR ruta) {
    const std::wstring r(ruta ? ruta : L"");
    const size_t i = r.find_last_of(kSeparadores);
    if (i == std::wstring::npos) return {};
    return r.substr(0, std::max<size_t>(i, 1));
}

CString NombreRuta(LPCWSTR ruta) {
    const std::wstring r(ruta ? ruta : L"");
    return r.substr(r.find_last_of(kSeparadores) + 1);  // npos + 1 is 0
}

BOOL PathFileExists(LPCWSTR nombre) {
    struct stat estado {};
    return stat(RutaSistema(nombre).c_str(), &estado) == 0 ? TRUE : FallaSistema();
}

BOOL CopyFileW(LPCWSTR origen, LPCWSTR destino, BOOL fallaSiExiste) {
    const std::string rutaDestino = RutaSistema(destino);
    // Without waiting, or the open of a pipe would hang.
    const Descriptor de(open(RutaSistema(origen).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat estado {};
    if (!de || fstat(de.Get(), &estado) != 0) return FallaSistema();
    if (!S_ISREG(estado.st_mode)) return Falla(ERROR_ACCESS_DENIED);

    const int modo = O_WRONLY | O_CLOEXEC | O_NONBLOCK;
    Descriptor a(open(rutaDestino.c_str(), modo | O_CREAT | O_EXCL, estado.st_mode & 0777));
    const bool nuevo = static_cast<bool>(a);
    if (!nuevo) {
        if (errno != EEXIST) return FallaSistema();
        if (fallaSiExiste) return Falla(ERROR_FILE_EXISTS);
        struct stat otro {};
        a = Descriptor(open(rutaDestino.c_str(), modo));
        if (!a || fstat(a.Get(), &otro) != 0) return FallaSistema();
        // Emptying the target would lose the source.
        if (EsElMismo(estado, otro)) return Falla(ERROR_SHARING_VIOLATION);
        if (ftruncate(a.Get(), 0) != 0 || fchmod(a.Get(), estado.st_mode & 0777) != 0) return FallaSistema();
    }
    const bool copiado = CopiaBytes(de.Get(), a.Get());
    if (copiado && a.Cierra()) return TRUE;
    FallaSistema();
    if (nuevo) unlink(rutaDestino.c_str());
    return FALSE;
}

BOOL MoveFileW(LPCWSTR origen, LPCWSTR destino) {
    const int r =
        renameat2(AT_FDCWD, RutaSistema(origen).c_str(), AT_FDCWD, RutaSistema(destino).c_str(), RENAME_NOREPLACE);
    if (r == 0) return TRUE;
    if (errno == EXDEV || errno == EINVAL || errno == ENOSYS) return MueveCopiando(origen, destino);
    return FallaSistema();
}

BOOL DeleteFileW(LPCWSTR nombre) {
    return unlink(RutaSistema(nombre).c_str()) == 0 ? TRUE : FallaSistema();
}

DWORD ExpandEnvironmentStringsW(LPCWSTR origen, LPWSTR destino, DWORD n) {
    const std::wstring_view texto(origen ? origen : L"");
    std::wstring resultado;
    for (size_t i = 0; i < texto.size();) {
        const size_t fin = texto[i] == L'%' ? texto.find(L'%', i + 1) : std::wstring_view::npos;
        const char* valor = nullptr;
        if (fin != std::wstring_view::npos) valor = std::getenv(AUtf8(texto.substr(i + 1, fin - i - 1)).c_str());
        if (valor) {
            resultado += DeUtf8(valor);
            i = fin + 1;
        } else {
            resultado += texto[i++];
        }
    }
    if (destino && n > 0 && !Entrega(resultado, destino, n)) *destino = L'\0';
    return static_cast<DWORD>(resultado.size() + 1);
}

DWORD GetTempPathW(DWORD n, LPWSTR buffer) {
    const char* carpeta = nullptr;
    for (const char* variable : {"TMP", "TEMP"}) {
        carpeta = std::getenv(variable);
        if (carpeta && *carpeta) break;
    }
    const std::wstring ruta = DeUtf8(carpeta && *carpeta ? carpeta : "/tmp");
    const std::wstring conSeparador = JuntaRuta(ruta.c_str(), L"").Texto();
    const auto letras = static_cast<DWORD>(conSeparador.size());
    return buffer && Entrega(conSeparador, buffer, n) ? letras : letras + 1;
}

UINT GetTempFileNameW(LPCWSTR carpeta, LPCWSTR prefijo, UINT numero, LPWSTR buffer) {
    const std::wstring en(carpeta ? carpeta : L"");
    const std::wstring letras = std::wstring(prefijo ? prefijo : L"").substr(0, 3);
    if (numero != 0) {
        if (!Entrega(NombreTemporal(en, letras, numero), buffer, MAX_PATH)) return Falla(ERROR_FILENAME_EXCED_RANGE);
        return numero;
    }
    for (int intento = 0; intento < 10000; ++intento) {
        UINT azar = 0;
        if (getrandom(&azar, sizeof azar, 0) != sizeof azar) return FallaSistema();
        if (azar == 0) continue;
        const std::wstring ruta = NombreTemporal(en, letras, azar);
        if (ruta.size() >= MAX_PATH) return Falla(ERROR_FILENAME_EXCED_RANGE);
        const Descriptor fichero(
            open(RutaSistema(ruta.c_str()).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (fichero) return Entrega(ruta, buffer, MAX_PATH), azar;
        if (errno != EEXIST) return FallaSistema();
    }
    return Falla(ERROR_FILE_EXISTS);
}
