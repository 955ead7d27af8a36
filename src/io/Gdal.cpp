// GDAL's messages, kept.

#include "io/Gdal.h"

#include <cpl_conv.h>
#include <cpl_error.h>

#include <algorithm>

namespace Vertiz::io {

namespace {

constexpr const char* kHilos = "GDAL_NUM_THREADS";

}  // namespace

CMensajesGdal::CMensajesGdal() {
    if (const char* hilos = CPLGetThreadLocalConfigOption(kHilos, nullptr)) m_Hilos = hilos;
    CPLSetThreadLocalConfigOption(kHilos, "1");
    CPLPushErrorHandlerEx(Recibe, this);
}

CMensajesGdal::~CMensajesGdal() {
    CPLPopErrorHandler();
    CPLSetThreadLocalConfigOption(kHilos, m_Hilos ? m_Hilos->c_str() : nullptr);
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
