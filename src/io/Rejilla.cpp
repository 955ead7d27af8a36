// Reading the samples of a raster: size, voids, scale, and where they lie.

#include "io/Rejilla.h"

#include "platform/Numeros.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

namespace Vertiz::io {
namespace {

// A raster's side beyond which its header is taken for a lie: at 1 m it would be a quarter of the Earth.
constexpr int kMaxLado = 10'000'000;

// The band's way of saying "no height", and its scale.
struct Banda {
    GDALRasterBandH m_hBanda;
    GDALRasterBandH m_hMascara = nullptr;  // null when the void value says all
    std::optional<double> m_Nulo;
    bool m_bReal32;
    double m_dEscala, m_dDesplazamiento;

    explicit Banda(GDALRasterBandH banda, const std::optional<double>& nulo)
        : m_hBanda(banda), m_Nulo(nulo), m_bReal32(GDALGetRasterDataType(banda) == GDT_Float32) {
        int hay = 0;
        const double declarado = GDALGetRasterNoDataValue(banda, &hay);
        if (!m_Nulo && hay) m_Nulo = declarado;
        m_dEscala = GDALGetRasterScale(banda, &hay);
        if (!hay || m_dEscala == 0.0 || !std::isfinite(m_dEscala)) m_dEscala = 1.0;
        m_dDesplazamiento = GDALGetRasterOffset(banda, &hay);
        if (!hay || !std::isfinite(m_dDesplazamiento)) m_dDesplazamiento = 0.0;
        if (GDALGetMaskFlags(banda) & GMF_PER_DATASET) m_hMascara = GDALGetMaskBand(banda);
    }

    bool EsNulo(double valor) const {
        if (std::isnan(valor)) return true;
        if (!m_Nulo) return false;
        // Users and headers give the value in decimals, which needn't be the exact float of the samples.
        return valor == *m_Nulo || (m_bReal32 && static_cast<float>(valor) == static_cast<float>(*m_Nulo));
    }
};

void CompruebaForma(GDALDatasetH datos) {
    const int columnas = GDALGetRasterXSize(datos), filas = GDALGetRasterYSize(datos);
    const std::string tamano = std::to_string(columnas) + " x " + std::to_string(filas);
    if (GDALGetRasterCount(datos) < 1) throw CFallo("the file holds no raster band");
    if (columnas < 2 || filas < 2) throw CFallo("a grid of " + tamano + " samples has no cell");
    if (columnas > kMaxLado || filas > kMaxLado) throw CFallo("a grid of " + tamano + " samples is too large");
    const GDALRasterBandH banda = GDALGetRasterBand(datos, 1);
    if (GDALDataTypeIsComplex(GDALGetRasterDataType(banda)))
        throw CFallo("its samples are complex numbers, not heights");
    const auto color = GDALGetRasterColorInterpretation(banda);
    if ((color == GCI_RedBand && GDALGetRasterCount(datos) >= 3) || color == GCI_PaletteIndex)
        throw CFallo("it is a picture in colours, not an elevation grid");
}

// Bare samples beside a header: what such a file lacks would be read as zeros. Where the header doesn't tell a sample's
// size GDAL guesses it from the file's, which fails for a file cut off; those of .flt are floats.
void CompruebaLargo(GDALDatasetH datos, const std::string& ruta) {
    if (std::string_view(GDALGetDriverShortName(GDALGetDatasetDriver(datos))) != "EHdr") return;
    const GDALRasterBandH banda = GDALGetRasterBand(datos, 1);
    if (GDALGetMetadataItem(banda, "NBITS", "IMAGE_STRUCTURE") != nullptr) return;
    std::uintmax_t muestra = static_cast<unsigned>(GDALGetDataTypeSizeBytes(GDALGetRasterDataType(banda)));
    if (ruta.ends_with(".flt")) muestra = sizeof(float);
    const std::uintmax_t largo = muestra * static_cast<unsigned>(GDALGetRasterXSize(datos)) *
                                 static_cast<unsigned>(GDALGetRasterYSize(datos)) *
                                 static_cast<unsigned>(GDALGetRasterCount(datos));
    std::error_code error;
    const std::uintmax_t hay = std::filesystem::file_size(ruta, error);
    if (!error && hay < largo)
        throw CFallo("the file is damaged or cut off: " + std::to_string(hay) + " bytes of " + std::to_string(largo));
}

// The place of the samples that a step takes out of the file: the one in the middle of each step.
Colocacion Coloca(GDALDatasetH datos, unsigned paso, bool& georreferida) {
    Colocacion g{};
    georreferida = GDALGetGeoTransform(datos, g.data()) == CE_None;
    if (!georreferida) return {0.0, paso * 1.0, 0.0, 0.0, 0.0, -1.0 * paso};
    const double det = g[1] * g[5] - g[2] * g[4];
    if (!std::isfinite(det) || det == 0.0 || !std::isfinite(g[0]) || !std::isfinite(g[3]))
        throw CFallo("its georeference has cells without area");
    const double medio = static_cast<double>(paso / 2) + 0.5;
    g[0] += medio * (g[1] + g[2]);
    g[3] += medio * (g[4] + g[5]);
    for (const int i : {1, 2, 4, 5})
        g[static_cast<std::size_t>(i)] *= paso;
    return g;
}

// Turns a matrix whose rows or columns run from the north or from the east. Rotated ones are left for resampling.
void PonSurYOeste(Rejilla& r) {
    auto& t = r.m_Colocacion;
    if (t[2] != 0.0 || t[4] != 0.0) return;
    if (t[5] < 0.0) {
        for (unsigned i = 0, j = r.Filas() - 1; i < j; ++i, --j)
            std::swap_ranges(r.m_Alturas.Fila(i), r.m_Alturas.Fila(i) + r.Columnas(), r.m_Alturas.Fila(j));
        t[3] += t[5] * (r.Filas() - 1);
        t[5] = -t[5];
    }
    if (t[1] < 0.0) {
        for (unsigned i = 0; i < r.Filas(); ++i)
            std::reverse(r.m_Alturas.Fila(i), r.m_Alturas.Fila(i) + r.Columnas());
        t[0] += t[1] * (r.Columnas() - 1);
        t[1] = -t[1];
    }
}

void LeeFila(GDALRasterBandH banda, int fila, int columnas, GDALDataType tipo, void* destino) {
    const CMensajesGdal mensajes;
    if (GDALRasterIO(banda, GF_Read, 0, fila, columnas, 1, destino, columnas, 1, tipo, 0, 0) != CE_None)
        throw CFallo("reading row " + std::to_string(fila + 1) + " failed: the file is damaged or cut off (" +
                     mensajes.Error("no reason given") + ")");
}

void LeeMuestras(const Banda& banda, int columnas, unsigned paso, Rejilla& r, const CAvance& avance, Resumen& resumen) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<double> valores(static_cast<std::size_t>(columnas));
    std::vector<GByte> mascara(banda.m_hMascara ? valores.size() : 0);
    for (unsigned i = 0; i < r.Filas(); ++i) {
        const int fila = static_cast<int>(i * paso + paso / 2);
        LeeFila(banda.m_hBanda, fila, columnas, GDT_Float64, valores.data());
        if (banda.m_hMascara) LeeFila(banda.m_hMascara, fila, columnas, GDT_Byte, mascara.data());
        float* const alturas = r.m_Alturas.Fila(i);
        for (unsigned j = 0; j < r.Columnas(); ++j) {
            const std::size_t k = std::size_t(j) * paso + paso / 2;
            alturas[j] = nan;
            if (banda.EsNulo(valores[k]) || (banda.m_hMascara && mascara[k] == 0)) continue;
            const float altura = static_cast<float>(valores[k] * banda.m_dEscala + banda.m_dDesplazamiento);
            // GDAL brings the infinities of some formats down to the greatest float.
            if (!std::isfinite(altura) || altura == std::numeric_limits<float>::max()) {
                ++resumen.m_nInfinitas;
                continue;
            }
            alturas[j] = altura;
            resumen.Nueva(altura);
        }
        avance.Paso(static_cast<int>(i + 1), static_cast<int>(r.Filas()));
    }
}

unsigned PasoPara(int columnas, int filas, std::size_t maxMuestras) {
    const double muestras = static_cast<double>(columnas) * filas;
    unsigned paso = static_cast<unsigned>(
        std::max(1.0, std::ceil(std::sqrt(muestras / std::max<double>(4.0, static_cast<double>(maxMuestras))))));
    // Thinned to less than two rows or columns there would be no cell left.
    return std::min<unsigned>(paso, static_cast<unsigned>(std::min(columnas, filas)) / 2);
}

}  // namespace

void Resumen::Nueva(double altura) {
    if (m_nValidas++ == 0) {
        m_dMin = m_dMin2 = m_dMax = m_dMax2 = altura;
        m_nRepiteMin = m_nRepiteMax = 1;
        return;
    }
    // The second least starts out equal to the least, and takes the first value that differs.
    if (altura < m_dMin) {
        m_dMin2 = m_dMin;
        m_dMin = altura;
        m_nRepiteMin = 1;
    } else if (altura == m_dMin) {
        ++m_nRepiteMin;
    } else if (m_dMin2 == m_dMin || altura < m_dMin2) {
        m_dMin2 = altura;
    }
    if (altura > m_dMax) {
        m_dMax2 = m_dMax;
        m_dMax = altura;
        m_nRepiteMax = 1;
    } else if (altura == m_dMax) {
        ++m_nRepiteMax;
    } else if (m_dMax2 == m_dMax || altura > m_dMax2) {
        m_dMax2 = altura;
    }
}

Rejilla LeeRejilla(const std::string& ruta, const CDataLeeDEM& opciones, const CAvance& avance,
                   CResultadoDEM& resultado, Resumen& resumen) {
    const Datos datos = Abre(ruta, GDAL_OF_RASTER);
    CompruebaForma(datos.get());
    CompruebaLargo(datos.get(), ruta);
    const int columnas = GDALGetRasterXSize(datos.get()), filas = GDALGetRasterYSize(datos.get());
    const unsigned paso = PasoPara(columnas, filas, opciones.m_nMaxMuestras);

    resultado.m_Formato = GDALGetDriverLongName(GDALGetDatasetDriver(datos.get()));
    resultado.m_nColumnasFichero = static_cast<unsigned>(columnas);
    resultado.m_nFilasFichero = static_cast<unsigned>(filas);
    resultado.m_nPaso = paso;
    if (const int bandas = GDALGetRasterCount(datos.get()); bandas > 1)
        resultado.m_Avisos.emplace_back(
            ("the file has " + std::to_string(bandas) + " bands; the first is taken").c_str());

    Rejilla r;
    r.m_Colocacion = Coloca(datos.get(), paso, r.m_bGeorreferida);
    r.m_Sistema = Copia(GDALGetSpatialRef(datos.get()));
    r.m_Alturas = CMatriz<float>(static_cast<unsigned>(filas) / paso, static_cast<unsigned>(columnas) / paso, 1);
    const Banda banda(GDALGetRasterBand(datos.get(), 1), opciones.m_Nulo);
    resultado.m_Nulo = banda.m_Nulo;
    LeeMuestras(banda, columnas, paso, r, avance, resumen);
    PonSurYOeste(r);
    return r;
}

}  // namespace Vertiz::io
