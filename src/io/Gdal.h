#pragma once
// GDAL's handles and messages, made safe: what opens closes, and no message reaches the terminal. Internal.

#include "platform/CString.h"

#include <gdal.h>
#include <gdal_alg.h>
#include <ogr_srs_api.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace Vertiz::io {

struct CierraDatos {
    void operator()(GDALDatasetH datos) const { GDALClose(datos); }
};
/// An open dataset.
using Datos = std::unique_ptr<void, CierraDatos>;

struct SueltaSistema {
    void operator()(OGRSpatialReferenceH sistema) const { OSRRelease(sistema); }
};
/// A coordinate system, with x before y.
using Sistema = std::unique_ptr<std::remove_pointer_t<OGRSpatialReferenceH>, SueltaSistema>;

struct SueltaTransformador {
    void operator()(void* transformador) const { GDALDestroyGenImgProjTransformer(transformador); }
};
/// The way from a picture's pixels to another picture's, through their systems.
using Transformador = std::unique_ptr<void, SueltaTransformador>;

/// While it lives, this thread's messages of GDAL end here instead of on the terminal. The first error is kept: those
/// that follow are its consequences. GDAL keeps to this thread meanwhile, since threads of its own, which some formats
/// are decoded on, would print what goes wrong in them.
class CMensajesGdal {
  public:
    CMensajesGdal();
    ~CMensajesGdal();
    CMensajesGdal(const CMensajesGdal&) = delete;
    CMensajesGdal& operator=(const CMensajesGdal&) = delete;

    /// The first error, in one line, or `otro` when there was none.
    std::string Error(std::string_view otro) const;

  private:
    static void CPL_STDCALL Recibe(CPLErr clase, CPLErrorNum numero, const char* texto);

    std::string m_Error;
    std::optional<std::string> m_Hilos;  // how many threads this one allowed GDAL before
};

}  // namespace Vertiz::io
