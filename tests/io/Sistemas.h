#pragma once
// Coordinate systems for the tests of readers.

#include <cpl_conv.h>
#include <ogr_srs_api.h>

#include <string>

/// A system of EPSG's list as text.
inline std::string WKT(int epsg) {
    const OGRSpatialReferenceH s = OSRNewSpatialReference(nullptr);
    OSRImportFromEPSG(s, epsg);
    char* texto = nullptr;
    OSRExportToWkt(s, &texto);
    std::string copia = texto;
    CPLFree(texto);
    OSRRelease(s);
    return copia;
}
