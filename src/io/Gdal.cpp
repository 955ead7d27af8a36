// GDAL's messages, kept.

#include "io/Gdal.h"

#include <cpl_error.h>

#include <algorithm>

namespace Vertiz::io {

CMensajesGdal::CMensajesGdal() {
    CPLPushErrorHandlerEx(Recibe, this);
}

CMensajesGdal::~CMensajesGdal() {
    CPLPopErrorHandler();
}

std::string CMensajesGdal::Error(std::string_view otro) const {
    return m_Error.empty() ? std::string(otro) : m_Error;
}

void CPL_STDCALL CMensajesGdal::Recibe(CPLErr clase, CPLErrorNum, const char* texto) {
    auto* const este = static_cast<CMensajesGdal*>(CPLGetErrorHandlerUserData());
    if (clase < CE_Failure || !este->m_Error.empty() || !texto) return;
    este->m_Error = texto;
    std::replace(este->m_Error.begin(), este->m_Error.end(), '\n', ' ');
}

}  // namespace Vertiz::io
