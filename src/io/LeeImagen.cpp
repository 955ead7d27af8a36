// From a georeferenced picture to a raster that lies on the terrain.

#include "io/LeeImagen.h"

#include "io/Lectura.h"
#include "raster/CTiff.h"
#include "platform/Numeros.h"

#include <gdal_utils.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace Vertiz {
namespace {

using namespace io;

constexpr int kMaxLado = 30'000;  // of what is read: 2.7 GB of colours at the most

// A list of options for GDAL's utilities.
class Opciones {
  public:
    Opciones& operator<<(const std::string& opcion) {
        m_Textos.push_back(opcion);
        return *this;
    }
    Opciones& operator<<(double valor) { return *this << TextoExacto(valor); }
    char** Lista() {
        m_Lista.clear();
        for (std::string& texto : m_Textos)
            m_Lista.push_back(texto.data());
        m_Lista.push_back(nullptr);
        return m_Lista.data();
    }

  private:
    std::vector<std::string> m_Textos;
    std::vector<char*> m_Lista;
};

bool EsAlfa(GDALDatasetH datos, int banda) {
    return GDALGetRasterColorInterpretation(GDALGetRasterBand(datos, banda)) == GCI_AlphaBand;
}

// The file's bands as red, green, blue, and alpha where there is one: nothing is read yet.
Datos EnColores(GDALDatasetH datos) {
    const int bandas = GDALGetRasterCount(datos);
    if (bandas < 1) throw CFallo("the file holds no raster band");
    for (int b = 1; b <= std::min(bandas, 3); ++b)
        if (GDALGetRasterDataType(GDALGetRasterBand(datos, b)) != GDT_Byte)
            throw CFallo("its samples aren't of 8 bits: not a picture to drape");
    Opciones opciones;
    opciones << "-of"
             << "VRT";
    const bool paleta = GDALGetRasterColorInterpretation(GDALGetRasterBand(datos, 1)) == GCI_PaletteIndex;
    const bool color = bandas >= 3 && !EsAlfa(datos, 2) && !EsAlfa(datos, 3);
    if (paleta) {
        opciones << "-b"
                 << "1"
                 << "-expand"
                 << "rgb";
    } else {
        for (const char* banda : {"1", color ? "2" : "1", color ? "3" : "1"})
            opciones << "-b" << banda;
        if (const int alfa = color ? 4 : 2; bandas >= alfa && EsAlfa(datos, alfa))
            opciones << "-b" << std::to_string(alfa);
    }
    const CMensajesGdal mensajes;
    GDALTranslateOptions* const o = GDALTranslateOptionsNew(opciones.Lista(), nullptr);
    Datos colores(GDALTranslate("", datos, o, nullptr));
    GDALTranslateOptionsFree(o);
    if (!colores) throw Fallo("its bands can't be taken as colours", mensajes);
    return colores;
}

// Where the pixels of the result lie.
struct Malla {
    double pixel = 1.0;
    CMaximas<double> zona;  // whole pixels
    bool recta = false;     // the file's are square and north up, in the terrain's system
    bool talCual = false;   // they are those of the file
};

// Whole cells that hold what the image and the zone share, and pixels that go into them.
void CortaEnCeldas(Malla& malla, const CMaximas<double>& imagen, const CMaximas<double>& zona, double celda) {
    const CCoor3D<double>& origen = zona.Minima();
    malla.talCual = false;
    malla.pixel = malla.pixel < celda ? celda / std::ceil(celda / malla.pixel - 1e-6)
                                      : celda * std::floor(malla.pixel / celda + 1e-6);
    const double paso = std::max(celda, malla.pixel);
    const auto abajo = [paso](double v) { return paso * std::floor(std::max(v, 0.0) / paso + 1e-6); };
    const auto arriba = [&](double v, double total) {
        return malla.pixel * std::ceil(std::min(paso * std::ceil(v / paso - 1e-6), total) / malla.pixel - 1e-6);
    };
    const CCoor3D<double> a = imagen.Minima() - origen, b = imagen.Maxima() - origen, total = zona.Maxima() - origen;
    malla.zona.Nuevo({origen.x + abajo(a.x), origen.y + abajo(a.y), 0});
    malla.zona.Nuevo({origen.x + arriba(b.x, total.x), origen.y + arriba(b.y, total.y), 0});
}

// Whole pixels, counted from a corner of the image, that hold the zone.
void CortaEnPixeles(Malla& malla, const CMaximas<double>& imagen, const CMaximas<double>& zona) {
    const double p = malla.pixel, oeste = imagen.Minima().x, norte = imagen.Maxima().y;
    const auto abajo = [p](double v) { return std::floor(v / p + 1e-6); };
    const auto arriba = [p](double v) { return std::ceil(v / p - 1e-6); };
    CCoor3D<double> a = imagen.Minima(), b = imagen.Maxima();
    if (!zona.EstanVacias(false)) {
        a = {std::max(a.x, zona.Minima().x), std::max(a.y, zona.Minima().y), 0};
        b = {std::min(b.x, zona.Maxima().x), std::min(b.y, zona.Maxima().y), 0};
    }
    malla.zona.Nuevo({oeste + p * abajo(a.x - oeste), norte - p * arriba(norte - a.y), 0});
    malla.zona.Nuevo({oeste + p * arriba(b.x - oeste), norte - p * abajo(norte - b.y), 0});
}

std::string Rango(const CMaximas<double>& m) {
    return "x " + TextoGeneral(m.Minima().x, 9) + " to " + TextoGeneral(m.Maxima().x, 9) + ", y " +
           TextoGeneral(m.Minima().y, 9) + " to " + TextoGeneral(m.Maxima().y, 9);
}

Malla DisponMalla(GDALDatasetH datos, const std::string& wktTerreno, bool otroSistema, const CDataLeeImagen& opciones) {
    std::array<double, 6> t{};
    if (GDALGetGeoTransform(datos, t.data()) != CE_None) throw CFallo("it has no georeference");
    int columnas = GDALGetRasterXSize(datos), filas = GDALGetRasterYSize(datos);
    Malla malla;
    CMaximas<double> imagen;
    malla.recta =
        !otroSistema && t[2] == 0.0 && t[4] == 0.0 && t[1] > 0.0 && t[5] < 0.0 && std::abs(t[1] + t[5]) < 1e-6 * t[1];
    if (!malla.recta) {
        const CMensajesGdal mensajes;
        const std::string destino = "DST_SRS=" + wktTerreno;
        const char* lista[] = {destino.c_str(), nullptr};
        const Transformador transformador(
            GDALCreateGenImgProjTransformer2(datos, nullptr, otroSistema ? const_cast<char**>(lista) : nullptr));
        double limites[4];
        if (!transformador || GDALSuggestedWarpOutput2(datos, GDALGenImgProjTransform, transformador.get(), t.data(),
                                                       &columnas, &filas, limites, 0) != CE_None)
            throw Fallo("it can't be brought to the terrain's coordinate system", mensajes);
    }
    if (!std::isfinite(t[0]) || !std::isfinite(t[3]) || !(t[1] > 0.0)) throw CFallo("its georeference makes no sense");
    imagen.Nuevo({t[0], t[3] + filas * t[5], 0});
    imagen.Nuevo({t[0] + columnas * t[1], t[3], 0});
    const CMaximas<double>& zona = opciones.m_Zona;
    if (!zona.EstanVacias(false) && (imagen.Minima().x >= zona.Maxima().x || imagen.Maxima().x <= zona.Minima().x ||
                                     imagen.Minima().y >= zona.Maxima().y || imagen.Maxima().y <= zona.Minima().y))
        throw CFallo("it lies off the terrain: the image has " + Rango(imagen) + ", the terrain " + Rango(zona));
    malla.pixel = std::max(t[1], opciones.m_dPixelMinimo);
    malla.talCual = malla.recta && malla.pixel == t[1];
    if (opciones.m_dCelda > 0.0 && !zona.EstanVacias(false))
        CortaEnCeldas(malla, imagen, zona, opciones.m_dCelda);
    else
        CortaEnPixeles(malla, imagen, zona);
    return malla;
}

Datos Remuestrea(GDALDatasetH datos, const std::string& wktTerreno, bool otroSistema, const Malla& malla, int columnas,
                 int filas, const CAvance& avance) {
    Opciones opciones;
    opciones << "-of"
             << "MEM"
             << "-dstalpha"
             << "-r" << (malla.talCual ? "near" : "bilinear");
    if (otroSistema) opciones << "-t_srs" << wktTerreno;
    opciones << "-te" << malla.zona.Minima().x << malla.zona.Minima().y << malla.zona.Maxima().x
             << malla.zona.Maxima().y << "-ts" << std::to_string(columnas) << std::to_string(filas);
    const CMensajesGdal mensajes;
    GDALWarpAppOptions* const o = GDALWarpAppOptionsNew(opciones.Lista(), nullptr);
    if (!o) throw Fallo("resampling the image failed", mensajes);
    AvanceGdal progreso{avance};
    GDALWarpAppOptionsSetProgress(o, AvanceGdal::Paso, &progreso);
    GDALDatasetH lista[] = {datos};
    Datos resultado(GDALWarp("", nullptr, 1, lista, o, nullptr));
    GDALWarpAppOptionsFree(o);
    if (progreso.m_bCancelado) throw CCancelado();
    if (!resultado || GDALGetRasterCount(resultado.get()) < 4) throw Fallo("reading the image failed", mensajes);
    return resultado;
}

// Out of GDAL's memory into a raster, whose rows go upwards; what has no colour becomes white.
void Toma(GDALDatasetH datos, int columnas, int filas, CResultadoImagen& resultado) {
    auto raster = std::make_unique<CTiff>();
    if (!raster->Crear(columnas, filas, 24, 72.0F, true, nullptr, nullptr, false)) throw std::bad_alloc();
    const auto n = static_cast<std::size_t>(columnas);
    resultado.m_Cubiertos.resize(n * static_cast<std::size_t>(filas));
    std::vector<BYTE> bgr(3 * n);
    constexpr int kBandas[] = {3, 2, 1, 4};
    std::vector<BYTE> canal(n);
    for (int fila = 0; fila < filas; ++fila) {
        const std::size_t subida = static_cast<std::size_t>(filas - 1 - fila);
        for (std::size_t b = 0; b < 4; ++b) {
            const CMensajesGdal mensajes;
            if (GDALRasterIO(GDALGetRasterBand(datos, kBandas[b]), GF_Read, 0, fila, columnas, 1, canal.data(),
                             columnas, 1, GDT_Byte, 0, 0) != CE_None)
                throw Fallo("reading the image failed", mensajes);
            for (std::size_t c = 0; c < n; ++c) {
                if (b < 3) {
                    bgr[3 * c + b] = canal[c];
                } else {
                    resultado.m_Cubiertos[subida * n + c] = canal[c] != 0;
                    if (canal[c] == 0) std::fill_n(&bgr[3 * c], 3, BYTE{255});
                }
            }
        }
        raster->SetFila(bgr.data(), static_cast<int>(subida), 0, columnas);
    }
    resultado.m_pRaster.reset(raster.release());
}

void Lee(const std::string& ruta, const CDataLeeImagen& opciones, const CAvance& avance, CResultadoImagen& resultado) {
    const Datos fichero = Abre(ruta, GDAL_OF_RASTER);
    const Datos colores = EnColores(fichero.get());
    const Sistema terreno = SistemaDe(opciones.m_WKT.Utf8());
    const Sistema suyo = Copia(GDALGetSpatialRef(fichero.get()));
    const bool otroSistema = terreno && suyo && !OSRIsSame(terreno.get(), suyo.get());
    const std::string wkt = WKT(terreno.get());
    const Malla malla = DisponMalla(colores.get(), wkt, otroSistema, opciones);
    const CMaximas<double>& zona = malla.zona;
    const double ancho = std::round((zona.Maxima().x - zona.Minima().x) / malla.pixel),
                 alto = std::round((zona.Maxima().y - zona.Minima().y) / malla.pixel);
    if (ancho < 1.0 || alto < 1.0) throw CFallo("it lies off the terrain");
    if (std::max(ancho, alto) > kMaxLado)
        throw CFallo("an image of " + TextoGeneral(ancho, 9) + " x " + TextoGeneral(alto, 9) + " pixels is too large");
    const int columnas = static_cast<int>(ancho), filas = static_cast<int>(alto);
    Toma(Remuestrea(colores.get(), wkt, otroSistema, malla, columnas, filas, avance).get(), columnas, filas, resultado);
    if (std::ranges::none_of(resultado.m_Cubiertos, [](unsigned char c) { return c != 0; }))
        throw CFallo("it has no colour on the terrain");
    resultado.m_Imagen = CDataImagen(zona.Minima().x, zona.Maxima().y, malla.pixel, malla.pixel, CDataImagen::ABSOLUTA);

    const std::string nombre = suyo && OSRGetName(suyo.get()) ? OSRGetName(suyo.get()) : "";
    if (otroSistema)
        resultado.m_Mensajes.push_back(Texto("brought from " + (nombre.empty() ? "its own system" : nombre) +
                                             " to the terrain's coordinates, pixels of " +
                                             TextoGeneral(malla.pixel, 6)));
    else if (!malla.recta)
        resultado.m_Mensajes.push_back(
            Texto("resampled to square pixels of " + TextoGeneral(malla.pixel, 6) + ", north up"));
    if (terreno && !suyo) resultado.m_Mensajes.emplace_back(L"no coordinate system given; taken as the terrain's");
}

}  // namespace

CResultadoImagen LeeImagen(const CString& fichero, const CDataLeeImagen& opciones, IPorcentaje* porcentaje) {
    return Protege<CResultadoImagen>(fichero, "image", [&](const std::string& ruta, CResultadoImagen& resultado) {
        Lee(ruta, opciones, CAvance(porcentaje), resultado);
    });
}

}  // namespace Vertiz
