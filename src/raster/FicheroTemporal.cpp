#include "raster/FicheroTemporal.h"

namespace Vertiz {

std::unique_ptr<CFile> CreaFicheroTemporal(const CString&, CString&) {
    return nullptr;
}

}  // namespace Vertiz
