#pragma once
// Files by name: does it exist, copy, move, delete; temporary names; paths.
//
// A name comes wide and goes to the system as UTF-8. Both / and \ separate folders, because names arrive from files and
// settings written elsewhere; only a file that really has a \ in its name, and exists, is taken as it stands.
// What fails says so by its result, and GetLastError tells why. Nothing throws but for lack of memory.

#include "platform/CString.h"
#include "platform/Errores.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <string>

/// The name as the system takes it: UTF-8, with / between folders.
LUMBRA_API std::string RutaSistema(LPCWSTR nombre);

/// Folder and name joined by one separator. An empty folder gives the bare name; an absolute name stays as it is.
LUMBRA_API CString JuntaRuta(LPCWSTR carpeta, LPCWSTR nombre);

/// The folder of a path, without a separator at its end (but for the root); empty when the path is a bare name.
LUMBRA_API CString CarpetaRuta(LPCWSTR ruta);

/// What stands behind the last separator.
LUMBRA_API CString NombreRuta(LPCWSTR ruta);

/// Whether a file or a folder of that name exists.
LUMBRA_API BOOL PathFileExists(LPCWSTR nombre);

/// Copies the contents and permissions of a file.
/// @param fallaSiExiste not 0: an existing target is an error (ERROR_FILE_EXISTS); 0: it is replaced
/// @return 0 on failure; a target that this call made is then gone
LUMBRA_API BOOL CopyFileW(LPCWSTR origen, LPCWSTR destino, BOOL fallaSiExiste);

/// Gives a file another name, also on another disk. An existing target is an error (ERROR_ALREADY_EXISTS).
LUMBRA_API BOOL MoveFileW(LPCWSTR origen, LPCWSTR destino);

/// Deletes a file; a folder is refused (ERROR_ACCESS_DENIED).
LUMBRA_API BOOL DeleteFileW(LPCWSTR nombre);

/// Puts the values of environment variables in the place of their names between percent signs. A name that isn't
/// defined stays, with its signs. Not to be called while another thread changes the environment.
/// @param destino may be null with `n` 0, to ask for the size
/// @param n       characters that fit in `destino`, the null counted
/// @return characters that the result needs, the null counted. When that is more than `n`, `destino` holds the empty
///         text.
LUMBRA_API DWORD ExpandEnvironmentStringsW(LPCWSTR origen, LPWSTR destino, DWORD n);

/// The folder for temporary files, with a separator at its end: that of TMP, else of TEMP, else /tmp. Whether it exists
/// isn't looked at.
/// @param n      characters that fit in `buffer`, the null counted
/// @return characters written, the null not counted; when they don't fit, the characters needed, the null counted, and
///         nothing is written
LUMBRA_API DWORD GetTempPathW(DWORD n, LPWSTR buffer);

/// Makes a name for a temporary file: folder, the first three characters of the prefix, a number in hexadecimal,
/// ".tmp".
/// @param numero 0: look for a number that gives a new file, and create it, empty and readable by its owner only;
///               otherwise the number to use, and no file is made
/// @param buffer out: the path; MAX_PATH characters
/// @return the number, or 0 on failure
LUMBRA_API UINT GetTempFileNameW(LPCWSTR carpeta, LPCWSTR prefijo, UINT numero, LPWSTR buffer);
