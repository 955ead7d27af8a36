// Resampling a grid into another coordinate system, or north up.

#include "io/Rejilla.h"

#include <cpl_conv.h>
#include <cpl_string.h>
#include <gdalwarper.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace Vertiz::io {
namespace {

// What GDAL's resampling takes for void; NaN would do, but not in all of its inner loops.
constexpr double kMarcaVacio = -3.0e38;

// A dataset over the matrix itself, nothing copied. GDAL's places start at the corner of a cell, not in its middle.
Datos SobreMatriz(CMatriz<float>& m, const Colocacion& t, OGRSpatialReferenceH sistema) {
    const GDALDriverH memoria = GDALGetDriverByName("MEM");
    Datos datos(memoria ? GDALCreate(memoria, "", static_cast<int>(m.GetColumnas()), static_cast<int>(m.GetFilas()), 0,
                                     GDT_Float32, nullptr)
                        : nullptr);
    if (!datos) throw CFallo("GDAL has no memory datasets");
    char puntero[64] = "DATAPOINTER=";
    const int n = CPLPrintPointer(puntero + 12, m.Fila(0), 40);
    puntero[12 + n] = '\0';
    char* opciones[] = {puntero, nullptr};
    Colocacion esquina = t;
    esquina[0] -= 0.5 * (t[1] + t[2]);
    esquina[3] -= 0.5 * (t[4] + t[5]);
    if (GDALAddBand(datos.get(), GDT_Float32, opciones) != CE_None ||
        GDALSetGeoTransform(datos.get(), esquina.data()) != CE_None ||
        (sistema && GDALSetSpatialRef(datos.get(), sistema) != CE_None))
        throw CFallo("the grid can't be prepared for resampling");
    GDALSetRasterNoDataValue(GDALGetRasterBand(datos.get(), 1), kMarcaVacio);
    return datos;
}

void Sustituye(CMatriz<float>& m, bool deNaN) {
    const float marca = static_cast<float>(kMarcaVacio), nan = std::numeric_limits<float>::quiet_NaN();
    for (unsigned i = 0; i < m.GetFilas(); ++i)
        for (float& v : std::span(m.Fila(i), m.GetColumnas())) {
            if (deNaN && std::isnan(v)) v = marca;
            if (!deNaN && v <= marca) v = nan;
        }
}

}  // namespace

Rejilla Reproyecta(Rejilla& origen, OGRSpatialReferenceH destino, std::size_t maxMuestras, const CAvance& avance) {
    const CMensajesGdal mensajes;
    Sustituye(origen.m_Alturas, true);
    const Datos datosOrigen = SobreMatriz(origen.m_Alturas, origen.m_Colocacion, origen.m_Sistema.get());
    const OGRSpatialReferenceH sistema = destino ? destino : origen.m_Sistema.get();
    const std::string wktOrigen = WKT(origen.m_Sistema.get()), wktDestino = WKT(sistema);

    const std::string dst = "DST_SRS=" + wktDestino;
    const char* opciones[] = {dst.c_str(), nullptr};
    const Transformador t(GDALCreateGenImgProjTransformer2(
        datosOrigen.get(), nullptr, wktDestino.empty() ? nullptr : const_cast<char**>(opciones)));
    Colocacion esquina{};
    int columnas = 0, filas = 0;
    double limites[4];
    if (!t || GDALSuggestedWarpOutput2(datosOrigen.get(), GDALGenImgProjTransform, t.get(), esquina.data(), &columnas,
                                       &filas, limites, 0) != CE_None)
        throw Fallo("the grid can't be brought to its new coordinate system", mensajes);

    const double reduce = std::max(1.0, std::sqrt(static_cast<double>(columnas) * filas /
                                                  std::max<double>(4.0, static_cast<double>(maxMuestras))));
    const double celda = esquina[1] * reduce;
    const auto lado = [&](double largo) {
        return static_cast<unsigned>(std::max(2.0, std::ceil(largo / celda - 1e-6)));
    };
    const double ancho = esquina[1] * columnas, alto = -esquina[5] * filas;

    Rejilla r;
    r.m_Alturas = CMatriz<float>(lado(alto), lado(ancho), 1);
    r.m_Alturas.Rellena(static_cast<float>(kMarcaVacio));
    r.m_Colocacion = {esquina[0] + 0.5 * celda, celda, 0.0, esquina[3] - alto + 0.5 * celda, 0.0, celda};
    r.m_bGeorreferida = true;
    if (sistema) r.m_Sistema.reset(OSRClone(sistema));

    const Datos datosDestino = SobreMatriz(r.m_Alturas, r.m_Colocacion, sistema);
    AvanceGdal progreso{avance};
    const CPLErr error = GDALReprojectImage(datosOrigen.get(), wktOrigen.empty() ? nullptr : wktOrigen.c_str(),
                                            datosDestino.get(), wktDestino.empty() ? nullptr : wktDestino.c_str(),
                                            GRA_Bilinear, 0.0, 0.05, AvanceGdal::Paso, &progreso, nullptr);
    if (progreso.m_bCancelado) throw CCancelado();
    if (error != CE_None) throw Fallo("resampling the grid failed", mensajes);
    GDALFlushCache(datosDestino.get());
    Sustituye(r.m_Alturas, false);
    return r;
}

}  // namespace Vertiz::io
