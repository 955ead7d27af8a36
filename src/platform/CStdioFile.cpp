// Files with a buffer, on the standard library's streams.

#include "platform/CStdioFile.h"

#include "platform/Conversiones.h"
#include "platform/Descriptor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

using namespace plataforma;

namespace {

const char* ModoStdio(UINT modo) {
    const bool crea = (modo & CFile::modeCreate) && !(modo & CFile::modeNoTruncate);
    if (modo & CFile::modeReadWrite) return crea ? "w+b" : "r+b";
    return modo & CFile::modeWrite ? "wb" : "rb";
}

}  // namespace

CStdioFile::CStdioFile(LPCWSTR nombre, UINT modo) {
    CStdioFile::Open(nombre, modo);
}
CStdioFile::~CStdioFile() {
    CStdioFile::Close();
}

BOOL CStdioFile::Open(LPCWSTR nombre, UINT modo) {
    CStdioFile::Close();
    Descriptor fichero(AbreDescriptor(nombre, modo));
    if (!fichero) return FALSE;
    m_pStream = fdopen(fichero.Get(), ModoStdio(modo));
    if (!m_pStream) return Falla(errno);
    fichero.Suelta();
    EmpiezaFichero(nombre);
    m_bTexto = !(modo & typeBinary);
    m_Ultima = Ultima::Nada;
    return TRUE;
}

bool CStdioFile::Close() {
    std::FILE* fichero = std::exchange(m_pStream, nullptr);
    return !fichero || std::fclose(fichero) == 0 || Falla(errno);
}

// Between reading and writing a stream wants a seek.
void CStdioFile::Cambia(Ultima ahora) {
    if (m_Ultima != ahora && m_Ultima != Ultima::Nada) fseeko(m_pStream, 0, SEEK_CUR);
    m_Ultima = ahora;
}

size_t CStdioFile::Read(void* datos, size_t n) {
    if (!IsOpen()) return Falla(EBADF), 0;
    Cambia(Ultima::Lectura);
    const size_t leidos = std::fread(datos, 1, n, m_pStream);
    if (leidos < n && std::ferror(m_pStream)) Falla(errno);
    return leidos;
}

bool CStdioFile::Write(const void* datos, size_t n) {
    if (!IsOpen()) return Falla(EBADF);
    Cambia(Ultima::Escritura);
    return std::fwrite(datos, 1, n, m_pStream) == n || Falla(errno);
}

bool CStdioFile::Flush() {
    if (!IsOpen()) return Falla(EBADF);
    return std::fflush(m_pStream) == 0 || Falla(errno);
}

ULONGLONG CStdioFile::Seek(LONGLONG distancia, UINT desde) {
    const int origen = desde == begin ? SEEK_SET : desde == current ? SEEK_CUR : SEEK_END;
    if (!IsOpen() || fseeko(m_pStream, distancia, origen) != 0) {
        Falla(IsOpen() ? errno : EBADF);
        if (IsOpen() && errno == EINVAL) SetLastError(ERROR_NEGATIVE_SEEK);
        return posicionMala;
    }
    m_Ultima = Ultima::Nada;
    return GetPosition();
}

ULONGLONG CStdioFile::GetPosition() const {
    const off_t posicion = IsOpen() ? ftello(m_pStream) : -1;
    if (posicion >= 0) return static_cast<ULONGLONG>(posicion);
    Falla(IsOpen() ? errno : EBADF);
    return posicionMala;
}

ULONGLONG CStdioFile::GetLength() const {
    struct stat estado {};
    if (!IsOpen() || std::fflush(m_pStream) != 0 || fstat(fileno(m_pStream), &estado) != 0) {
        Falla(IsOpen() ? errno : EBADF);
        return 0;
    }
    return static_cast<ULONGLONG>(estado.st_size);
}

bool CStdioFile::SetLength(ULONGLONG bytes) {
    if (!Flush()) return false;
    return ftruncate(fileno(m_pStream), static_cast<off_t>(bytes)) == 0 || Falla(errno);
}

CFile* CStdioFile::Duplicate() const {
    SetLastError(ERROR_NOT_SUPPORTED);
    return nullptr;
}

BOOL CStdioFile::ReadString(CString& linea) {
    linea.Empty();
    if (!IsOpen()) return Falla(EBADF);
    Cambia(Ultima::Lectura);
    const bool principio = ftello(m_pStream) == 0;
    char* leido = nullptr;
    size_t reservados = 0;
    const ssize_t n = getline(&leido, &reservados, m_pStream);
    const std::unique_ptr<char, decltype(&std::free)> dueno(leido, &std::free);
    if (n < 0 && std::ferror(m_pStream)) Falla(errno);
    std::string_view bytes(leido, n < 0 ? 0 : static_cast<size_t>(n));
    if (principio && bytes.starts_with(kFirmaUtf8)) bytes.remove_prefix(kFirmaUtf8.size());
    if (bytes.ends_with('\n')) {
        bytes.remove_suffix(1);
        if (m_bTexto && bytes.ends_with('\r')) bytes.remove_suffix(1);
    }
    linea = DeBytes(bytes);
    return n >= 0;
}

bool CStdioFile::WriteString(LPCWSTR texto) {
    const std::string bytes = AUtf8(texto ? texto : L"");
    return Write(bytes.data(), bytes.size());
}
