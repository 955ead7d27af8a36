// What every image shares: the temporary file's end, sampling between pixels, and opening by the end of a name.

#include "raster/IRaster.h"

#include "platform/Ficheros.h"

namespace Vertiz {

IRaster::~IRaster() {
    LiberaTemporal();
}

void IRaster::LiberaTemporal() {
    if (m_pTemporal == nullptr) return;
    m_pTemporal->Close();
    m_pTemporal.reset();
    if (m_bCompartido == 0) CFile::Remove(m_sTemporal);
    m_sTemporal = L"";
}

void IRaster::Muestra(BYTE*, int, int, int) const {}

IRaster* CreaRaster(const wchar_t* /*nombre*/) {
    return nullptr;
}

}  // namespace Vertiz
