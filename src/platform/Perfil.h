#pragma once
// Settings in private INI files, by section and key.
//
// Sections and keys are the same whatever their capitals. Blanks round a name or a value don't count, and quotes round
// a value are taken away; a value that needs them to come back as it was gets them when it is written. A file in UTF-8,
// in UTF-16 with its signature, or in code page 1252 is read, and written again in the same encoding with the same line
// ends; a new one is UTF-8.
//
// A write keeps the other keys and the comments, and puts the whole new file in the old one's place at once: whoever
// reads sees the one or the other. All these functions may be called from several threads. Between two programs that
// write the same file at the same time, the later write wins.

#include "platform/CString.h"
#include "platform/Errores.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

/// Reads a value as text.
/// @param seccion null: gives the names of all sections instead
/// @param clave   null: gives the names of all keys of the section instead
/// @param defecto taken when the key or the file isn't there; null counts as empty; blanks at its end don't count
/// @param buffer  out: the text, cut where it doesn't fit. Names come each with a null behind it, and one more after
///                the last.
/// @param n       characters that fit in `buffer`, the null counted
/// @return characters written, the null not counted: `n` - 1 when the text was cut, `n` - 2 when names were
LUMBRA_API DWORD GetPrivateProfileStringW(LPCWSTR seccion, LPCWSTR clave, LPCWSTR defecto, LPWSTR buffer, DWORD n,
                                          LPCWSTR fichero);

/// Reads a value as a decimal integer: 0 when it doesn't begin with one, `defecto` when it is empty or not there.
LUMBRA_API UINT GetPrivateProfileIntW(LPCWSTR seccion, LPCWSTR clave, int defecto, LPCWSTR fichero);

/// Writes a value; makes the file and the section where they are missing.
/// @param clave null: takes the whole section away
/// @param texto null: takes the key away
/// @return 0 when the file can't be written, or when a name or the text couldn't be read back: a line end in any of
///         them, = in a key or [ ; # at its start, ] in a section, an empty name (ERROR_INVALID_PARAMETER). The file is
///         then as it was.
LUMBRA_API BOOL WritePrivateProfileStringW(LPCWSTR seccion, LPCWSTR clave, LPCWSTR texto, LPCWSTR fichero);
