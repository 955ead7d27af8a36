// Elevation files that the tests make: place of the samples, voids, degrees, rotation, damage, progress.

#include "io/LeeDEM.h"

#include "model/CElipsoide.h"
#include "model/CPuntoPortula.h"
#include "support/Temporales.h"

#include <gdal.h>
#include <gmock/gmock.h>
#include <ogr_srs_api.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <limits>

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using Vertiz::CDataLeeDEM;
using Vertiz::CDEM;
using Vertiz::CResultadoDEM;
using Vertiz::LeeDEM;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

CString Nombre(const std::filesystem::path& p) {
    return CString(p.string().c_str());
}

std::vector<std::string> Textos(const std::vector<CString>& textos) {
    std::vector<std::string> v;
    for (const auto& t : textos)
        v.push_back(t.Utf8());
    return v;
}

// A GeoTIFF of these heights, north row first; `ajusta` may set what else the header has.
struct Tiff {
    int m_nColumnas = 5, m_nFilas = 4;
    GDALDataType m_nTipo = GDT_Float32;
    std::vector<double> m_Alturas;
    std::vector<double> m_Colocacion{440000.0, 10.0, 0.0, 4480000.0, 0.0, -20.0};
    int m_nEPSG = 25830;
    std::optional<double> m_Nulo;
    int m_nBandas = 1;
    std::function<void(GDALDatasetH)> m_Ajusta;

    // A slope: 100 + column + 10 times the row from the north.
    Tiff() {
        for (int f = 0; f < m_nFilas; ++f)
            for (int c = 0; c < m_nColumnas; ++c)
                m_Alturas.push_back(100.0 + c + 10.0 * f);
    }

    void Tamano(int columnas, int filas, const std::function<double(int c, int f)>& altura) {
        m_nColumnas = columnas, m_nFilas = filas;
        m_Alturas.clear();
        for (int f = 0; f < filas; ++f)
            for (int c = 0; c < columnas; ++c)
                m_Alturas.push_back(altura(c, f));
    }

    void Graba(const std::filesystem::path& ruta) const {
        GDALAllRegister();
        const GDALDatasetH d =
            GDALCreate(GDALGetDriverByName("GTiff"), ruta.c_str(), m_nColumnas, m_nFilas, m_nBandas, m_nTipo, nullptr);
        ASSERT_NE(d, nullptr);
        if (!m_Colocacion.empty()) {
            auto t = m_Colocacion;
            GDALSetGeoTransform(d, t.data());
        }
        if (m_nEPSG) {
            const OGRSpatialReferenceH s = OSRNewSpatialReference(nullptr);
            OSRImportFromEPSG(s, m_nEPSG);
            GDALSetSpatialRef(d, s);
            OSRRelease(s);
        }
        for (int b = 1; b <= m_nBandas; ++b) {
            if (m_Nulo) GDALSetRasterNoDataValue(GDALGetRasterBand(d, b), *m_Nulo);
            auto datos = m_Alturas;
            ASSERT_EQ(GDALRasterIO(GDALGetRasterBand(d, b), GF_Write, 0, 0, m_nColumnas, m_nFilas, datos.data(),
                                   m_nColumnas, m_nFilas, GDT_Float64, 0, 0),
                      CE_None);
        }
        if (m_Ajusta) m_Ajusta(d);
        GDALClose(d);
    }
};

class LeeDEMTest : public testing::Test {
  protected:
    CResultadoDEM Lee(const Tiff& tiff, const CDataLeeDEM& opciones = {}, Vertiz::IPorcentaje* p = nullptr) {
        const auto ruta = m_Carpeta / "modelo ñ.tif";
        tiff.Graba(ruta);
        const std::size_t ficheros = m_Carpeta.CuentaFicheros();
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        CResultadoDEM r = LeeDEM(Nombre(ruta), opciones, p);
        EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
        EXPECT_THAT(testing::internal::GetCapturedStdout(), IsEmpty());
        EXPECT_EQ(m_Carpeta.CuentaFicheros(), ficheros) << "a file was left beside";
        EXPECT_EQ(m_Carpeta.CuentaAbiertos(), 0u) << "a file was left open";
        if (r.m_nResultado == 1) {
            EXPECT_TRUE(r.m_pDEM);
            EXPECT_TRUE(r.m_Error.IsEmpty());
        } else {
            EXPECT_FALSE(r.m_pDEM);
        }
        return r;
    }

    void EsperaFallo(const Tiff& tiff, const char* causa, const CDataLeeDEM& opciones = {}) {
        const CResultadoDEM r = Lee(tiff, opciones);
        EXPECT_EQ(r.m_nResultado, 0);
        EXPECT_THAT(r.m_Error.Utf8(), testing::AllOf(HasSubstr("modelo ñ.tif"), HasSubstr(causa)));
        EXPECT_EQ(r.m_Error.Utf8().find('\n'), std::string::npos);
    }

    CarpetaTemporal m_Carpeta;
};

TEST_F(LeeDEMTest, SamplesStandInTheMiddleOfTheCellsWithRowZeroInTheSouth) {
    const CResultadoDEM r = Lee(Tiff());
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    const CDEM& d = *r.m_pDEM;
    EXPECT_EQ(d.GetColumnas(), 5u);
    EXPECT_EQ(d.GetFilas(), 4u);
    EXPECT_EQ(d.GetCeldaX(), 10.0);
    EXPECT_EQ(d.GetCeldaY(), 20.0);
    EXPECT_EQ(d.GetOeste(), 440005.0);
    EXPECT_EQ(d.GetSur(), 4480000.0 - 70.0);
    EXPECT_EQ(d.Matriz().Get(0, 0), 130.0f);
    EXPECT_EQ(d.Matriz().Get(3, 4), 104.0f);
    EXPECT_EQ(d.DameCeldas(), 12u);
    EXPECT_EQ(r.m_Sistema, L"ETRS89 / UTM zone 30N");
    EXPECT_EQ(r.m_Unidad, L"metre");
    EXPECT_EQ(r.m_Formato, L"GeoTIFF");
    EXPECT_FALSE(r.m_bReproyectado);
    EXPECT_THAT(r.m_Avisos, IsEmpty());
    EXPECT_THAT(r.m_Mensajes, IsEmpty());
    EXPECT_THAT(r.m_Marcas, IsEmpty());
}

TEST_F(LeeDEMTest, SeedKeepsLocalCoordinatesSmallAndLosesNothing) {
    const CResultadoDEM r = Lee(Tiff());
    ASSERT_EQ(r.m_nResultado, 1);
    const auto& semilla = r.m_pDEM->GetSemilla();
    EXPECT_EQ(semilla.GetX(), 440000.0);
    EXPECT_EQ(semilla.GetY(), 4479000.0);
    EXPECT_EQ(semilla.GetDecimales(), 3);
    EXPECT_EQ(r.m_pDEM->GetMaximasDouble().Minima().x + semilla.GetX(), r.m_pDEM->GetOeste());
    EXPECT_EQ(r.m_pDEM->GetMaximasDouble().Maxima().y, 990.0);
}

TEST_F(LeeDEMTest, RastersWithTheSouthOrTheEastFirstAreTurnedRound) {
    Tiff t;
    t.m_Colocacion = {440050.0, -10.0, 0.0, 4479920.0, 0.0, 20.0};
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_EQ(r.m_pDEM->GetOeste(), 440005.0);
    EXPECT_EQ(r.m_pDEM->GetSur(), 4479930.0);
    EXPECT_EQ(r.m_pDEM->Matriz().Get(0, 4), 100.0f);
    EXPECT_EQ(r.m_pDEM->Matriz().Get(3, 0), 134.0f);
}

TEST_F(LeeDEMTest, DeclaredVoidsNaNAndInfinitiesAreVoid) {
    Tiff t;
    t.m_Nulo = 0.0;
    t.m_Alturas[0] = 0.0, t.m_Alturas[1] = kNan, t.m_Alturas[2] = kInf, t.m_Alturas[3] = -kInf;
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_EQ(r.m_nVacios, 4u);
    for (unsigned c = 0; c < 4; ++c)
        EXPECT_FALSE(r.m_pDEM->EsValido(3, c)) << c;
    EXPECT_TRUE(r.m_pDEM->EsValido(3, 4));
    EXPECT_THAT(Textos(r.m_Avisos), Contains(HasSubstr("2 samples are infinite")));
    EXPECT_EQ(r.m_pDEM->GetMaximasTotalDouble().Minima().z, 104.0);
}

TEST_F(LeeDEMTest, VoidValueThatAFloatRoundsIsFound) {
    Tiff t;
    t.m_Alturas[7] = 0.1;  // as a float 0.100000001490116
    CDataLeeDEM opciones;
    opciones.m_Nulo = 0.1;
    const CResultadoDEM r = Lee(t, opciones);
    EXPECT_EQ(r.m_nVacios, 1u);
    EXPECT_EQ(r.m_pDEM->GetMaximasTotalDouble().Minima().z, 100.0);
}

TEST_F(LeeDEMTest, NaNAsTheDeclaredVoidValueWorks) {
    Tiff t;
    t.m_Nulo = kNan;
    t.m_Alturas[7] = kNan;
    EXPECT_EQ(Lee(t).m_nVacios, 1u);
}

TEST_F(LeeDEMTest, UndeclaredVoidValueIsToldAndTheOptionSilencesIt) {
    Tiff t;
    t.m_Alturas[0] = t.m_Alturas[1] = -9999.0;
    CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1);
    EXPECT_EQ(r.m_nVacios, 2u);
    ASSERT_EQ(r.m_Marcas.size(), 1u);
    EXPECT_EQ(r.m_Marcas[0].m_dValor, -9999.0);
    EXPECT_EQ(r.m_Marcas[0].m_nMuestras, 2u);
    EXPECT_TRUE(r.m_Marcas[0].m_bVacia);
    EXPECT_THAT(r.m_Avisos, IsEmpty());
    t.m_Alturas[0] = t.m_Alturas[1] = 32767.0;
    r = Lee(t);
    EXPECT_EQ(r.m_nVacios, 0u);
    ASSERT_EQ(r.m_Marcas.size(), 1u);
    EXPECT_EQ(r.m_Marcas[0].m_dValor, 32767.0);
    EXPECT_EQ(r.m_Marcas[0].m_nMuestras, 2u);
    EXPECT_FALSE(r.m_Marcas[0].m_bVacia);

    CDataLeeDEM opciones;
    opciones.m_Nulo = 32767.0;
    r = Lee(t, opciones);
    EXPECT_EQ(r.m_nVacios, 2u);
    EXPECT_THAT(r.m_Marcas, IsEmpty());
}

TEST_F(LeeDEMTest, OneHighTowerOrSeaLevelIsNoVoidValue) {
    Tiff t;
    t.m_Alturas[3] = 900.0;
    EXPECT_THAT(Lee(t).m_Marcas, IsEmpty());
    t.m_Alturas[0] = t.m_Alturas[1] = 0.0;
    EXPECT_THAT(Lee(t).m_Marcas, IsEmpty());
}

TEST_F(LeeDEMTest, UndeclaredVoidValueBelowAnOceanTrenchIsTakenAsHeight) {
    Tiff t;
    t.Tamano(30, 30, [](int c, int f) { return -10000.0 - c - f; });
    t.m_Alturas[0] = t.m_Alturas[1] = -32768.0;
    const CResultadoDEM r = Lee(t);
    EXPECT_EQ(r.m_nVacios, 0u);
    ASSERT_EQ(r.m_Marcas.size(), 1u);
    EXPECT_FALSE(r.m_Marcas[0].m_bVacia);
}

TEST_F(LeeDEMTest, OceanTrenchIsNotVoid) {
    Tiff t;
    t.Tamano(30, 30, [](int c, int f) { return -9000.0 - 50.0 * c - f; });
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1);
    EXPECT_EQ(r.m_nVacios, 0u);
    EXPECT_EQ(r.m_pDEM->GetMaximasTotalDouble().Minima().z, -9000.0 - 50.0 * 29 - 29);
}

TEST_F(LeeDEMTest, ScaleAndOffsetGiveHeights) {
    Tiff t;
    t.m_nTipo = GDT_Int16;
    t.m_Nulo = -1;
    t.m_Alturas[0] = -1;
    t.m_Ajusta = [](GDALDatasetH d) {
        GDALSetRasterScale(GDALGetRasterBand(d, 1), 0.5);
        GDALSetRasterOffset(GDALGetRasterBand(d, 1), 1000.0);
    };
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1);
    EXPECT_EQ(r.m_nVacios, 1u);
    EXPECT_EQ(r.m_pDEM->Matriz().Get(0, 0), 1065.0f);
}

TEST_F(LeeDEMTest, AllKindsOfSamplesAreRead) {
    for (const GDALDataType tipo : {GDT_Byte, GDT_UInt16, GDT_Int16, GDT_UInt32, GDT_Int32, GDT_Float32, GDT_Float64}) {
        Tiff t;
        t.m_nTipo = tipo;
        const CResultadoDEM r = Lee(t);
        ASSERT_EQ(r.m_nResultado, 1) << GDALGetDataTypeName(tipo);
        EXPECT_EQ(r.m_pDEM->Matriz().Get(0, 0), 130.0f) << GDALGetDataTypeName(tipo);
    }
}

TEST_F(LeeDEMTest, WithoutGeoreferenceSamplesAreOneUnitApart) {
    Tiff t;
    t.m_Colocacion.clear();
    t.m_nEPSG = 0;
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1);
    EXPECT_EQ(r.m_pDEM->GetCeldaX(), 1.0);
    EXPECT_EQ(r.m_pDEM->GetCeldaY(), 1.0);
    EXPECT_TRUE(r.m_Sistema.IsEmpty());
    EXPECT_THAT(Textos(r.m_Mensajes), Contains(HasSubstr("no georeference")));
}

// ---- Degrees

Tiff EnGrados(double oeste, double norte, double celda, int lado, const std::function<double(int, int)>& altura) {
    Tiff t;
    t.Tamano(lado, lado, altura);
    t.m_Colocacion = {oeste, celda, 0.0, norte, 0.0, -celda};
    t.m_nEPSG = 4326;
    return t;
}

// The height is a plane over latitude and longitude: wherever a sample lands, it has to lie on that plane.
TEST_F(LeeDEMTest, DegreesGoToTheUTMZoneOfTheCentreAndHeightsStayInPlace) {
    const auto altura = [](double lon, double lat) { return 500.0 + 2000.0 * (lon + 4.0) + 1000.0 * (lat - 40.0); };
    const Tiff t = EnGrados(-4.0, 40.1, 0.001, 100,
                            [&](int c, int f) { return altura(-4.0 + (c + 0.5) * 0.001, 40.1 - (f + 0.5) * 0.001); });
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_TRUE(r.m_bReproyectado);
    EXPECT_EQ(r.m_Sistema, L"WGS 84 / UTM zone 30N");
    EXPECT_THAT(Textos(r.m_Mensajes), Contains(testing::AllOf(HasSubstr("from degrees"), HasSubstr("zone 30N"))));
    const CDEM& d = *r.m_pDEM;
    EXPECT_EQ(d.GetCeldaX(), d.GetCeldaY());
    unsigned vistas = 0;
    for (unsigned f = 0; f < d.GetFilas(); f += 7)
        for (unsigned c = 0; c < d.GetColumnas(); c += 7) {
            if (!d.EsValido(f, c)) continue;
            const Vertiz::CPuntoPortula p(0, 1, d.GetOeste() + c * d.GetCeldaX(), d.GetSur() + f * d.GetCeldaY(), 0, 0,
                                          L"");
            double lat = 0, lon = 0;
            ASSERT_TRUE(p.UTMToGeo(lat, lon, Vertiz::CElipsoide(), 30, true));
            const double grado = 57.29577951308232;
            // Beyond the outer samples' middles, half a cell, heights don't go on rising.
            const double margen =
                std::abs(lat * grado - 40.05) > 0.049 || std::abs(lon * grado + 3.95) > 0.049 ? 2.0 : 0.2;
            EXPECT_NEAR(d.Matriz().Get(f, c), altura(lon * grado, lat * grado), margen) << f << " " << c;
            ++vistas;
        }
    EXPECT_GT(vistas, 100u);
}

TEST_F(LeeDEMTest, SouthernDegreesGoToASouthernZone) {
    const CResultadoDEM r = Lee(EnGrados(20.0, -33.0, 0.01, 20, [](int c, int f) { return 10.0 * c + f; }));
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_EQ(r.m_Sistema, L"WGS 84 / UTM zone 34S");
    EXPECT_GT(r.m_pDEM->GetSur(), 6.0e6);
}

TEST_F(LeeDEMTest, VoidsStayVoidsThroughResamplingAndDoNotBleed) {
    // Half the grid is void; the other half lies at 1000 exactly.
    Tiff t = EnGrados(-4.0, 40.1, 0.001, 100, [](int c, int) { return c < 50 ? -32768.0 : 1000.0; });
    t.m_Nulo = -32768;
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    const CDEM& d = *r.m_pDEM;
    unsigned validas = 0;
    for (unsigned f = 0; f < d.GetFilas(); ++f)
        for (unsigned c = 0; c < d.GetColumnas(); ++c)
            if (d.EsValido(f, c)) {
                ++validas;
                ASSERT_FLOAT_EQ(d.Matriz().Get(f, c), 1000.0f) << f << " " << c;
            }
    // Half a cell more or less along the edge would be 1 percent.
    const double mitad = 0.05 * 85394.0 * 0.1 * 111035.0 * 0.9996 * 0.9996;  // metres of a degree at 40.05 north
    EXPECT_NEAR(validas * d.GetCeldaX() * d.GetCeldaY(), mitad, 0.004 * mitad);
}

TEST_F(LeeDEMTest, DegreesStayWhenAskedFor) {
    CDataLeeDEM opciones;
    opciones.m_bConservaGrados = true;
    const CResultadoDEM r = Lee(EnGrados(-4.0, 40.1, 0.001, 10, [](int c, int f) { return 10.0 * c + f; }), opciones);
    ASSERT_EQ(r.m_nResultado, 1);
    EXPECT_EQ(r.m_Unidad, L"degree");
    EXPECT_NEAR(r.m_pDEM->GetOeste(), -3.9995, 1e-12);
    EXPECT_EQ(r.m_pDEM->GetSemilla().GetX(), -4.0);
    EXPECT_GE(r.m_pDEM->GetSemilla().GetDecimales(), 6);
}

TEST_F(LeeDEMTest, UnnamedDegreesAreRecognised) {
    Tiff t = EnGrados(-105.5, 40.1, 0.001, 50, [](int c, int f) { return 2000.0 + 10.0 * c + f; });
    t.m_nEPSG = 0;
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1);
    EXPECT_EQ(r.m_Sistema, L"WGS 84 / UTM zone 13N");
    EXPECT_THAT(Textos(r.m_Avisos), Contains(HasSubstr("look like degrees")));
}

TEST_F(LeeDEMTest, SmallPlaneGridsAreNotTakenForDegrees) {
    Tiff t;
    t.Tamano(20, 20, [](int c, int f) { return 0.01 * c * f; });  // a table of 2 m in the laboratory
    t.m_Colocacion = {0.0, 0.1, 0.0, 2.0, 0.0, -0.1};
    t.m_nEPSG = 0;
    const CResultadoDEM r = Lee(t);
    EXPECT_EQ(r.m_nResultado, 1);
    EXPECT_FALSE(r.m_bReproyectado);
}

TEST_F(LeeDEMTest, DegreesThatNoZoneHoldsAreRefused) {
    EsperaFallo(EnGrados(-180.0, 80.0, 1.0, 160, [](int c, int f) { return c + f; }), "too wide for a UTM zone");
    EsperaFallo(EnGrados(10.0, 89.0, 0.1, 20, [](int c, int f) { return c + f; }), "beyond 84 of latitude");
}

// ---- Rotation

TEST_F(LeeDEMTest, RotatedRastersAreTurnedNorthUp) {
    Tiff t;
    t.Tamano(60, 60, [](int c, int f) { return 100.0 + c + 2.0 * f; });
    // Turned by 30 degrees; cells of 10.
    const double co = 10.0 * std::cos(0.5235987755982988), se = 10.0 * std::sin(0.5235987755982988);
    t.m_Colocacion = {440000.0, co, se, 4480000.0, se, -co};
    const CResultadoDEM r = Lee(t);
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_TRUE(r.m_bReproyectado);
    EXPECT_THAT(Textos(r.m_Mensajes), Contains(HasSubstr("north up")));
    const CDEM& d = *r.m_pDEM;
    unsigned vistas = 0;
    for (unsigned f = 0; f < d.GetFilas(); ++f)
        for (unsigned c = 0; c < d.GetColumnas(); ++c) {
            const double dx = d.GetOeste() + c * d.GetCeldaX() - 440000.0,
                         dy = d.GetSur() + f * d.GetCeldaY() - 4480000.0;
            const double col = (dx * co + dy * se) / 100.0 - 0.5, fila = (dx * se - dy * co) / 100.0 - 0.5;
            if (col < 1 || fila < 1 || col > 58 || fila > 58) continue;
            ASSERT_NEAR(d.Matriz().Get(f, c), 100.0 + col + 2.0 * fila, 0.15) << f << " " << c;
            ++vistas;
        }
    EXPECT_GT(vistas, 1000u);
    EXPECT_GT(r.m_nVacios, 100u);  // the corners
}

// ---- Large grids

TEST_F(LeeDEMTest, LargeGridsAreThinnedOutExactly) {
    Tiff t;
    t.Tamano(100, 90, [](int c, int f) { return 1000.0 * f + c; });
    for (const std::size_t maximo : {2500u, 1000u}) {
        CDataLeeDEM opciones;
        opciones.m_nMaxMuestras = maximo;
        const CResultadoDEM r = Lee(t, opciones);
        ASSERT_EQ(r.m_nResultado, 1);
        const CDEM& d = *r.m_pDEM;
        EXPECT_EQ(r.m_nPaso, maximo == 2500u ? 2u : 3u);
        EXPECT_LE(d.GetFilas() * d.GetColumnas(), maximo);
        EXPECT_THAT(Textos(r.m_Mensajes), Contains(HasSubstr("one sample of every")));
        for (unsigned f = 0; f < d.GetFilas(); ++f)
            for (unsigned c = 0; c < d.GetColumnas(); ++c) {
                const double col = (d.GetOeste() + c * d.GetCeldaX() - 440000.0) / 10.0 - 0.5;
                const double fila = (4480000.0 - d.GetSur() - f * d.GetCeldaY()) / 20.0 - 0.5;
                ASSERT_NEAR(d.Matriz().Get(f, c), 1000.0 * fila + col, 1e-2);
            }
    }
}

// ---- Bad input

TEST_F(LeeDEMTest, MissingFileIsSaid) {
    const CResultadoDEM r = LeeDEM(Nombre(m_Carpeta / "nada.tif"));
    EXPECT_EQ(r.m_nResultado, 0);
    EXPECT_THAT(r.m_Error.Utf8(), testing::AllOf(HasSubstr("nada.tif"), HasSubstr("no such file")));
}

TEST_F(LeeDEMTest, EmptyFileFolderAndOtherFilesAreSaid) {
    EXPECT_THAT(LeeDEM(Nombre(m_Carpeta.Escribe("a.tif", ""))).m_Error.Utf8(), HasSubstr("the file is empty"));
    EXPECT_THAT(LeeDEM(Nombre(m_Carpeta.Escribe("a.txt", "This is no grid.\n"))).m_Error.Utf8(),
                HasSubstr("not a raster"));
    EXPECT_THAT(LeeDEM(Nombre(m_Carpeta.Ruta())).m_Error.Utf8(), HasSubstr("a folder"));
    EXPECT_EQ(LeeDEM(CString()).m_nResultado, 0);
}

TEST_F(LeeDEMTest, TruncatedFilesAtAnyLengthFailOrReadWhole) {
    Tiff t;
    t.Tamano(64, 64, [](int c, int f) { return c + f; });
    const auto ruta = m_Carpeta / "entero.tif";
    t.Graba(ruta);
    std::ifstream f(ruta, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(f)), {});
    unsigned fallos = 0;
    for (std::size_t n = 1; n < bytes.size(); n += 997) {
        const auto cortado = m_Carpeta.Escribe("cortado.tif", std::string_view(bytes).substr(0, n));
        const CResultadoDEM r = LeeDEM(Nombre(cortado));
        fallos += r.m_nResultado == 0 && !r.m_Error.IsEmpty();
    }
    EXPECT_EQ(fallos, (bytes.size() - 2) / 997 + 1);
}

TEST_F(LeeDEMTest, TruncatedTextGridSaysSo) {
    const auto ruta =
        m_Carpeta.Escribe("a.asc", "ncols 3\nnrows 3\nxllcorner 0\nyllcorner 0\ncellsize 10\n1 2 3\n4 5 6\n7");
    const CResultadoDEM r = LeeDEM(Nombre(ruta));
    EXPECT_EQ(r.m_nResultado, 0);
    EXPECT_THAT(r.m_Error.Utf8(), HasSubstr("damaged or cut off"));
}

TEST_F(LeeDEMTest, OneRowOrOneColumnHasNoCell) {
    Tiff t;
    t.Tamano(5, 1, [](int c, int) { return c; });
    EsperaFallo(t, "has no cell");
    t.Tamano(1, 5, [](int, int f) { return f; });
    EsperaFallo(t, "has no cell");
}

TEST_F(LeeDEMTest, GridWithoutAnyHeightIsRefused) {
    Tiff t;
    t.Tamano(5, 5, [](int, int) { return -9999.0; });
    t.m_Nulo = -9999.0;
    EsperaFallo(t, "holds a height");
    t.m_Nulo.reset();
    EsperaFallo(t, "holds a height");
    t.Tamano(5, 5, [](int, int) { return kInf; });
    EsperaFallo(t, "holds a height");
}

TEST_F(LeeDEMTest, ColourPicturesAreNotElevation) {
    Tiff t;
    t.m_nTipo = GDT_Byte;
    t.m_nBandas = 3;
    t.m_Ajusta = [](GDALDatasetH d) {
        GDALSetRasterColorInterpretation(GDALGetRasterBand(d, 1), GCI_RedBand);
        GDALSetRasterColorInterpretation(GDALGetRasterBand(d, 2), GCI_GreenBand);
        GDALSetRasterColorInterpretation(GDALGetRasterBand(d, 3), GCI_BlueBand);
    };
    EsperaFallo(t, "picture in colours");
}

TEST_F(LeeDEMTest, FurtherBandsAreTold) {
    Tiff t;
    t.m_nBandas = 2;
    EXPECT_THAT(Textos(Lee(t).m_Avisos), Contains(HasSubstr("2 bands")));
}

// ---- Progress

class CPorcentaje : public Vertiz::IPorcentaje {
  public:
    explicit CPorcentaje(int cancelaEn = -1) : m_nCancelaEn(cancelaEn) {}
    int Paso(int, int actual, int total, int) override {
        EXPECT_LE(actual, total);
        return ++m_nPasos != m_nCancelaEn;
    }
    void Empieza(int, unsigned) override {}
    void Termina(int, int) override {}
    void Pasos(int, int) override {}
    void Reinicia(int, int, int) override {}
    void Mensaje(int, const CString&, int) override {}
    int m_nPasos = 0;

  private:
    int m_nCancelaEn;
};

TEST_F(LeeDEMTest, ProgressIsGivenForEachRow) {
    CPorcentaje p;
    EXPECT_EQ(Lee(Tiff(), {}, &p).m_nResultado, 1);
    EXPECT_EQ(p.m_nPasos, 4);
}

TEST_F(LeeDEMTest, CancelEndsTheReadingAndTheResampling) {
    CPorcentaje alLeer(2);
    const CResultadoDEM r = Lee(Tiff(), {}, &alLeer);
    EXPECT_EQ(r.m_nResultado, 2);
    EXPECT_TRUE(r.m_Error.IsEmpty());
    EXPECT_EQ(alLeer.m_nPasos, 2);

    CPorcentaje alRemuestrear(102);
    EXPECT_EQ(
        Lee(EnGrados(-4.0, 40.1, 0.001, 100, [](int c, int f) { return c + f; }), {}, &alRemuestrear).m_nResultado, 2);
}

}  // namespace
