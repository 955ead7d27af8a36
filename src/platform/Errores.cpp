// Error codes, their sentences, and the system's numbers that lead to them.

#include "platform/Errores.h"

#include <algorithm>
#include <cerrno>

namespace {

struct Error {
    DWORD codigo;
    int numero;  // errno; 0 where there is none
    const wchar_t* texto;
};

// Several numbers may lead to one code; the first line of a code has its text.
constexpr Error kErrores[] = {
    {ERROR_SUCCESS, 0, L"no error"},
    {ERROR_FILE_NOT_FOUND, ENOENT, L"the file does not exist"},
    {ERROR_PATH_NOT_FOUND, ENOTDIR, L"the folder does not exist"},
    {ERROR_TOO_MANY_OPEN_FILES, EMFILE, L"too many files are open"},
    {ERROR_TOO_MANY_OPEN_FILES, ENFILE, L""},
    {ERROR_ACCESS_DENIED, EACCES, L"access is denied"},
    {ERROR_ACCESS_DENIED, EPERM, L""},
    {ERROR_ACCESS_DENIED, EISDIR, L""},
    {ERROR_INVALID_HANDLE, EBADF, L"the file is not open, or not in this way"},
    {ERROR_NOT_ENOUGH_MEMORY, ENOMEM, L"not enough memory"},
    {ERROR_NOT_SAME_DEVICE, EXDEV, L"the two names are on different disks"},
    {ERROR_WRITE_PROTECT, EROFS, L"the disk is write-protected"},
    {ERROR_GEN_FAILURE, EIO, L"the device failed"},
    {ERROR_SHARING_VIOLATION, EWOULDBLOCK, L"the file is in use"},
    {ERROR_SHARING_VIOLATION, EBUSY, L""},
    {ERROR_SHARING_VIOLATION, ETXTBSY, L""},
    {ERROR_NOT_SUPPORTED, ENOTSUP, L"not supported"},
    {ERROR_FILE_EXISTS, 0, L"the file exists already"},
    {ERROR_INVALID_PARAMETER, EINVAL, L"an argument is wrong"},
    {ERROR_DISK_FULL, ENOSPC, L"the disk is full"},
    {ERROR_DISK_FULL, EDQUOT, L""},
    {ERROR_INSUFFICIENT_BUFFER, ERANGE, L"the buffer is too small"},
    {ERROR_NEGATIVE_SEEK, 0, L"the position is before the start of the file"},
    {ERROR_DIR_NOT_EMPTY, ENOTEMPTY, L"the folder is not empty"},
    {ERROR_ALREADY_EXISTS, EEXIST, L"something of that name exists already"},
    {ERROR_FILENAME_EXCED_RANGE, ENAMETOOLONG, L"the name is too long"},
    {ERROR_FILE_TOO_LARGE, EFBIG, L"the file is too large"},
    {ERROR_CANCELLED, 0, L"it was given up"},
};

thread_local DWORD g_nUltimo = ERROR_SUCCESS;

}  // namespace

DWORD GetLastError() {
    return g_nUltimo;
}
void SetLastError(DWORD codigo) {
    g_nUltimo = codigo;
}

CString TextoError(DWORD codigo) {
    const auto error = std::ranges::find(kErrores, codigo, &Error::codigo);
    if (error != std::end(kErrores)) return error->texto;
    CString texto;
    texto.Format(L"error %u", codigo);
    return texto;
}

DWORD ErrorDeErrno(int numero) {
    if (numero == 0) return ERROR_SUCCESS;
    const auto error = std::ranges::find(kErrores, numero, &Error::numero);
    return error != std::end(kErrores) ? error->codigo : ERROR_GEN_FAILURE;
}
