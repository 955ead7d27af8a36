#pragma once
// How an image is to be draped over a terrain.

#include "platform/CString.h"
#include "platform/Exporta.h"

/// Options of a load. The resolution belongs to each image and is never stored; the other two are kept in the settings
/// under the keys "Piramidales" and "Interpolacion".
struct LUMBRA_API CDataCargarImagen {
    double m_dResolucion = 0.0;  ///< terrain units for each pixel of the texture, above 0
    int m_bPiramidales = 0;      ///< not 0: halved copies too, for a calm picture from afar
    int m_nInterpolacion = 0;    ///< how the halved copies are sampled, see IRaster::Muestra

    /// Reads from the application's store, keys with `prefijo` before them. What isn't there stays as it is.
    void GetProfile(const CString& seccion, const CString& prefijo);
    void WriteProfile(const CString& seccion, const CString& prefijo) const;
    /// The same with the INI file `fichero`, keys without a prefix.
    void GetPrivateProfile(const CString& fichero, const CString& seccion);
    void WritePrivateProfile(const CString& fichero, const CString& seccion) const;
};
