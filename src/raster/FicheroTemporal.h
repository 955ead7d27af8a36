#pragma once
// Internal. Temporary files that hold the pixels of a picture.

#include "platform/CFile.h"
#include "platform/CString.h"

#include <memory>

namespace Vertiz {

/// Creates an empty file for reading and writing, "Imagen<seconds><milliseconds><counter>.tmp", in the folder that the
/// environment names (TEMP, else TMP), else in that of the source image, else in the system's.
/// @param fuente  path of the source image; may be empty
/// @param ruta    out: path of the new file
/// @return null when none can be made
std::unique_ptr<CFile> CreaFicheroTemporal(const CString& fuente, CString& ruta);

/// Creates an empty file for reading and writing, "<prefijo><seconds><milliseconds><counter>.tmp".
/// @param carpeta  where; empty for the bare name
/// @param ruta     out: path of the new file, or the one that couldn't be made
/// @return null when it can't be made
std::unique_ptr<CFile> CreaFicheroNuevo(const CString& carpeta, const wchar_t* prefijo, CString& ruta);

}  // namespace Vertiz
