// Files of bytes, on the system's descriptors.

#include "platform/CFile.h"

#include "platform/Conversiones.h"
#include "platform/Descriptor.h"
#include "platform/Ficheros.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

using namespace plataforma;

namespace {

// A descriptor used here, and still its owner's.
class Prestado : public Descriptor {
  public:
    explicit Prestado(int fd) : Descriptor(fd) {}
    ~Prestado() { Suelta(); }
};

int ModoSistema(UINT modo) {
    const int acceso = modo & CFile::modeReadWrite ? O_RDWR : modo & CFile::modeWrite ? O_WRONLY : O_RDONLY;
    return acceso | (modo & CFile::modeCreate ? O_CREAT : 0) | (modo & CFile::modeExclusive ? O_EXCL : 0);
}

// The advisory lock that a share flag asks for: one that denies writing goes together with other readers of its kind.
bool Bloquea(int fd, UINT modo) {
    const UINT reparto = modo & 0x70;
    const bool escribe = modo & (CFile::modeWrite | CFile::modeReadWrite);
    int bloqueo = 0;
    if (reparto == CFile::shareExclusive || reparto == CFile::shareDenyRead) bloqueo = LOCK_EX;
    if (reparto == CFile::shareDenyWrite) bloqueo = escribe ? LOCK_EX : LOCK_SH;
    if (bloqueo == 0 || flock(fd, bloqueo | LOCK_NB) == 0) return true;
    return errno != EWOULDBLOCK;  // a file system without locks
}

bool Sirve(int fd) {
    struct stat estado {};
    if (fstat(fd, &estado) != 0) return false;
    errno = S_ISDIR(estado.st_mode) ? EISDIR : EACCES;
    return !S_ISDIR(estado.st_mode) && !S_ISFIFO(estado.st_mode) && !S_ISSOCK(estado.st_mode);
}

CString RutaAbsoluta(LPCWSTR nombre) {
    std::error_code error;
    const std::string ruta = RutaSistema(nombre);
    const auto absoluta = std::filesystem::absolute(ruta, error);
    return CString(std::string_view(error ? ruta : absoluta.lexically_normal().string()));
}

void LlenaEstado(const struct stat& s, bool escribible, CFileStatus& estado) {
    estado.m_mtime = s.st_mtime;
    estado.m_atime = s.st_atime;
    estado.m_size = static_cast<ULONGLONG>(s.st_size);
    estado.m_attribute =
        static_cast<BYTE>((S_ISDIR(s.st_mode) ? CFileStatus::directory : 0) | (escribible ? 0 : CFileStatus::readOnly));
}

}  // namespace

CFile::CFile(LPCWSTR nombre, UINT modo) {
    CFile::Open(nombre, modo);
}
CFile::~CFile() {
    CFile::Close();
}

bool CFile::Falla(int numero) const {
    const DWORD codigo = ErrorDeErrno(numero);
    if (m_nError == ERROR_SUCCESS) m_nError = codigo;
    SetLastError(codigo);
    return false;
}

int CFile::AbreDescriptor(LPCWSTR nombre, UINT modo) {
    // Opened without waiting, or a pipe would hang; emptied only once the lock is held.
    const mode_t permisos = modo & modeExclusive ? 0600 : 0666;
    Descriptor fichero(open(RutaSistema(nombre).c_str(), ModoSistema(modo) | O_CLOEXEC | O_NONBLOCK, permisos));
    const bool vacia = (modo & modeCreate) && !(modo & modeNoTruncate);
    if (!fichero || !Sirve(fichero.Get()) || !Bloquea(fichero.Get(), modo) ||
        (vacia && ftruncate(fichero.Get(), 0) != 0 && errno != EINVAL)) {  // EINVAL: a device has no length
        SetLastError(ErrorDeErrno(errno));
        return -1;
    }
    fcntl(fichero.Get(), F_SETFL, fcntl(fichero.Get(), F_GETFL) & ~O_NONBLOCK);
    return fichero.Suelta();
}

void CFile::EmpiezaFichero(LPCWSTR nombre) {
    m_strFileName = RutaAbsoluta(nombre);
    m_nError = ERROR_SUCCESS;
}

BOOL CFile::Open(LPCWSTR nombre, UINT modo) {
    CFile::Close();
    m_nDescriptor = AbreDescriptor(nombre, modo);
    if (m_nDescriptor < 0) return FALSE;
    EmpiezaFichero(nombre);
    return TRUE;
}

bool CFile::IsOpen() const {
    return m_nDescriptor >= 0;
}

bool CFile::Close() {
    Descriptor fichero(std::exchange(m_nDescriptor, -1));
    return fichero.Cierra() || Falla(errno);
}

void CFile::Abort() {
    Close();
}

size_t CFile::Read(void* datos, size_t n) {
    bool bien = false;
    const size_t leidos = Prestado(m_nDescriptor).Lee(datos, n, bien);
    if (!bien) Falla(errno);
    return leidos;
}

bool CFile::ReadAt(ULONGLONG posicion, void* datos, size_t n, size_t& leidos) const {
    bool bien = false;
    leidos = Prestado(m_nDescriptor).LeeEn(posicion, datos, n, bien);
    if (!bien) SetLastError(ErrorDeErrno(errno));
    return bien;
}

bool CFile::Write(const void* datos, size_t n) {
    return Prestado(m_nDescriptor).Escribe(datos, n) || Falla(errno);
}

bool CFile::Flush() {
    return IsOpen() || Falla(EBADF);
}

ULONGLONG CFile::Seek(LONGLONG distancia, UINT desde) {
    const int origen = desde == begin ? SEEK_SET : desde == current ? SEEK_CUR : SEEK_END;
    const off_t posicion = lseek(m_nDescriptor, distancia, origen);
    if (posicion >= 0) return static_cast<ULONGLONG>(posicion);
    Falla(errno);
    if (errno == EINVAL) SetLastError(ERROR_NEGATIVE_SEEK);
    return posicionMala;
}

ULONGLONG CFile::GetPosition() const {
    const off_t posicion = lseek(m_nDescriptor, 0, SEEK_CUR);
    if (posicion >= 0) return static_cast<ULONGLONG>(posicion);
    Falla(errno);
    return posicionMala;
}

ULONGLONG CFile::GetLength() const {
    struct stat estado {};
    if (fstat(m_nDescriptor, &estado) == 0) return static_cast<ULONGLONG>(estado.st_size);
    Falla(errno);
    return 0;
}

bool CFile::SetLength(ULONGLONG bytes) {
    return ftruncate(m_nDescriptor, static_cast<off_t>(bytes)) == 0 || Falla(errno);
}

CFile* CFile::Duplicate() const {
    Descriptor otro(fcntl(m_nDescriptor, F_DUPFD_CLOEXEC, 0));
    if (!otro) {
        Falla(errno);
        return nullptr;
    }
    auto* copia = new CFile;
    copia->m_strFileName = m_strFileName;
    copia->m_nDescriptor = otro.Suelta();
    return copia;
}

CString CFile::GetFileName() const {
    return NombreRuta(m_strFileName);
}

bool CFile::GetStatus(CFileStatus& estado) const {
    return IsOpen() ? GetStatus(m_strFileName, estado) : Falla(EBADF);
}

bool CFile::GetStatus(LPCWSTR nombre, CFileStatus& estado) {
    const std::string ruta = RutaSistema(nombre);
    struct stat s {};
    if (stat(ruta.c_str(), &s) != 0) {
        SetLastError(ErrorDeErrno(errno));
        return false;
    }
    LlenaEstado(s, access(ruta.c_str(), W_OK) == 0, estado);
    estado.m_szFullName = RutaAbsoluta(nombre);
    return true;
}

bool CFile::Remove(LPCWSTR nombre) {
    return DeleteFileW(nombre);
}
bool CFile::Rename(LPCWSTR viejo, LPCWSTR nuevo) {
    return MoveFileW(viejo, nuevo);
}
