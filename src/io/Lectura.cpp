// Opening of files, and coordinate systems as text.

#include "io/Lectura.h"

#include <cpl_conv.h>

#include <filesystem>
#include <system_error>

namespace Vertiz::io {

CFallo Fallo(const char* que, const CMensajesGdal& mensajes) {
    return CFallo(std::string(que) + " (" + mensajes.Error("no reason given") + ")");
}

int CPL_STDCALL AvanceGdal::Paso(double parte, const char*, void* este) {
    auto& avance = *static_cast<AvanceGdal*>(este);
    try {
        avance.m_Avance.Paso(static_cast<int>(parte * 1000.0), 1000);
    } catch (const CCancelado&) {
        avance.m_bCancelado = true;
    }
    return avance.m_bCancelado ? FALSE : TRUE;
}

Datos Abre(const std::string& ruta, unsigned clase) {
    const bool raster = clase == GDAL_OF_RASTER;
    std::error_code error;
    const std::filesystem::path camino(ruta);
    const auto estado = std::filesystem::status(camino, error);
    if (!std::filesystem::exists(estado)) throw CFallo("no such file");
    if (std::filesystem::is_regular_file(estado) && std::filesystem::file_size(camino, error) == 0 && !error)
        throw CFallo("the file is empty");

    GDALAllRegister();
    const CMensajesGdal mensajes;
    Datos datos(GDALOpenEx(ruta.c_str(), clase | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR, nullptr, nullptr, nullptr));
    // Some formats are folders, so the driver is asked first.
    if (!datos && std::filesystem::is_directory(estado))
        throw CFallo(raster ? "a folder, and not one that holds a grid" : "a folder, and not one that holds vectors");
    if (!datos)
        throw CFallo(
            std::string(raster ? "not a raster that can be read (" : "not a file of vectors that can be read (") +
            mensajes.Error("format not recognised") + ")");
    return datos;
}

std::string WKT(OGRSpatialReferenceH sistema) {
    char* texto = nullptr;
    if (!sistema || OSRExportToWkt(sistema, &texto) != OGRERR_NONE || !texto) return {};
    std::string copia = texto;
    CPLFree(texto);
    return copia;
}

Sistema SistemaDe(const std::string& wkt) {
    if (wkt.empty()) return nullptr;
    Sistema sistema(OSRNewSpatialReference(nullptr));
    if (!sistema || OSRSetFromUserInput(sistema.get(), wkt.c_str()) != OGRERR_NONE)
        throw CFallo("the terrain's coordinate system can't be understood");
    OSRSetAxisMappingStrategy(sistema.get(), OAMS_TRADITIONAL_GIS_ORDER);
    return sistema;
}

Sistema Copia(OGRSpatialReferenceH sistema) {
    if (!sistema) return nullptr;
    Sistema copia(OSRClone(sistema));
    OSRSetAxisMappingStrategy(copia.get(), OAMS_TRADITIONAL_GIS_ORDER);
    return copia;
}

}  // namespace Vertiz::io
