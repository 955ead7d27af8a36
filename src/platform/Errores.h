#pragma once
// The last error of each thread, for the services that answer with nothing but true and false.

#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_NOT_SAME_DEVICE = 17;
constexpr DWORD ERROR_WRITE_PROTECT = 19;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_SHARING_VIOLATION = 32;
constexpr DWORD ERROR_NOT_SUPPORTED = 50;
constexpr DWORD ERROR_FILE_EXISTS = 80;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_DISK_FULL = 112;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
constexpr DWORD ERROR_DIR_NOT_EMPTY = 145;
constexpr DWORD ERROR_ALREADY_EXISTS = 183;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
constexpr DWORD ERROR_CANCELLED = 1223;

/// The code that the last failed service left on this thread. A service that succeeds doesn't clear it.
LUMBRA_API DWORD GetLastError();
LUMBRA_API void SetLastError(DWORD codigo);

/// A short English sentence for a code, without a full stop; with a code of no known meaning, its number.
LUMBRA_API CString TextoError(DWORD codigo);

/// The code for an `errno` of the system; ERROR_GEN_FAILURE for one that has none of its own.
LUMBRA_API DWORD ErrorDeErrno(int numero);
