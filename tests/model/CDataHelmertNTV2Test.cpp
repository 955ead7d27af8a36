// Changes of datum: the seven parameters against geocentric coordinates worked out here, the grid against a file that
// the test writes.

#include "model/CDataHelmertNTV2.h"

#include "model/CDataTransformacion.h"
#include "model/CPuntoPortula.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numbers>

namespace {

using Vertiz::CDataHelmertNTV2;
using Vertiz::CElipsoide;
using Vertiz::CPuntoPortula;
using Vertiz::CSistemaReferencia;
using Coor = Vertiz::CCoor3D<double>;

constexpr double kPi = std::numbers::pi;

struct Geo {
    double lat, lon, h;
};

Coor AGeocentricas(const CElipsoide& e, const Geo& g) {
    const double n = e.DameA() / std::sqrt(1 - e.DameE2() * std::sin(g.lat) * std::sin(g.lat));
    return {(n + g.h) * std::cos(g.lat) * std::cos(g.lon), (n + g.h) * std::cos(g.lat) * std::sin(g.lon),
            (n * (1 - e.DameE2()) + g.h) * std::sin(g.lat)};
}

Geo AGeodesicas(const CElipsoide& e, const Coor& c) {
    const double p = std::hypot(c.x, c.y);
    double lat = std::atan2(c.z, p * (1 - e.DameE2())), h = 0;
    for (int i = 0; i < 30; ++i) {
        const double n = e.DameA() / std::sqrt(1 - e.DameE2() * std::sin(lat) * std::sin(lat));
        h = p / std::cos(lat) - n;
        lat = std::atan2(c.z, p * (1 - e.DameE2() * n / (n + h)));
    }
    return {lat, std::atan2(c.y, c.x), h};
}

Geo DeUTM(const CSistemaReferencia& s, const Coor& c) {
    Geo g{0, 0, c.z};
    EXPECT_TRUE(
        CPuntoPortula(0, 1, c.x, c.y, c.z, 0, L"").UTMToGeo(g.lat, g.lon, s.GetElipsoide(), s.GetHuso(), s.EsNorte()));
    return g;
}

CDataHelmertNTV2 ED50aETRS89() {
    CDataHelmertNTV2 d;
    d.m_Origen = CSistemaReferencia(L"ED50", *CElipsoide::Busca(20), 30, true);
    d.m_Destino = CSistemaReferencia(L"ETRS89", *CElipsoide::Busca(17), 30, true);
    return d;
}

// The published parameters from ED50 to ETRS89 in the Spanish mainland, position vector.
CDataHelmertNTV2 SieteParametros() {
    CDataHelmertNTV2 d = ED50aETRS89();
    d.m_dTX = -131.032, d.m_dTY = -100.251, d.m_dTZ = -163.354;
    d.m_dRX = -1.2438, d.m_dRY = -0.0195, d.m_dRZ = -1.1436;
    d.m_dEscala = 9.39;
    return d;
}

TEST(CDataHelmertNTV2, SevenParametersActOnGeocentricCoordinates) {
    const CDataHelmertNTV2 d = SieteParametros();
    const Coor antes(440000.0, 4474000.0, 700.0);
    Coor despues = antes;
    ASSERT_TRUE(d.Transforma({&despues, 1}));

    const Coor g = AGeocentricas(d.m_Origen.GetElipsoide(), DeUTM(d.m_Origen, antes));
    const double s = kPi / 180 / 3600, k = 1 + d.m_dEscala * 1e-6;
    const double rx = d.m_dRX * s, ry = d.m_dRY * s, rz = d.m_dRZ * s;
    const Coor movido(d.m_dTX + k * (g.x - rz * g.y + ry * g.z), d.m_dTY + k * (rz * g.x + g.y - rx * g.z),
                      d.m_dTZ + k * (-ry * g.x + rx * g.y + g.z));
    const Geo esperado = AGeodesicas(d.m_Destino.GetElipsoide(), movido);
    const Geo hallado = DeUTM(d.m_Destino, despues);
    EXPECT_NEAR(hallado.lat, esperado.lat, 1e-10);  // less than a millimetre
    EXPECT_NEAR(hallado.lon, esperado.lon, 1e-10);
    EXPECT_NEAR(hallado.h, esperado.h, 1e-3);
    EXPECT_NEAR(despues.x - antes.x, -109.0, 5.0);  // the shift that every Spanish surveyor knows
    EXPECT_NEAR(despues.y - antes.y, -207.0, 5.0);
}

TEST(CDataHelmertNTV2, SevenParametersComeBack) {
    const CDataHelmertNTV2 d = SieteParametros();
    std::array<Coor, 3> puntos{Coor(440000, 4474000, 700), Coor(300000, 4100000, 0), Coor(700000, 4700000, 3000)};
    const auto antes = puntos;
    ASSERT_TRUE(d.Transforma(puntos));
    ASSERT_TRUE(d.TransformaInversa(puntos));
    for (std::size_t i = 0; i < puntos.size(); ++i) {
        EXPECT_NEAR(puntos[i].x, antes[i].x, 1e-3);
        EXPECT_NEAR(puntos[i].y, antes[i].y, 1e-3);
        EXPECT_NEAR(puntos[i].z, antes[i].z, 1e-3);
    }
}

TEST(CDataHelmertNTV2, WithoutParametersOnlyTheZoneChanges) {
    CDataHelmertNTV2 d;
    d.m_Origen = CSistemaReferencia(L"30", *CElipsoide::Busca(17), 30, true);
    d.m_Destino = CSistemaReferencia(L"31", *CElipsoide::Busca(17), 31, true);
    Coor p(790000.0, 4600000.0, 10.0);
    const Geo antes = DeUTM(d.m_Origen, p);
    ASSERT_TRUE(d.Transforma({&p, 1}));
    const Geo despues = DeUTM(d.m_Destino, p);
    EXPECT_NEAR(despues.lat, antes.lat, 1e-11);
    EXPECT_NEAR(despues.lon, antes.lon, 1e-11);
    EXPECT_NEAR(p.z, 10.0, 1e-6);
}

TEST(CDataHelmertNTV2, InvalidChangesLeaveThePoints) {
    CDataHelmertNTV2 sinHuso;
    CDataHelmertNTV2 conNan = SieteParametros();
    conNan.m_dRX = std::nan("");
    for (const CDataHelmertNTV2& d : {sinHuso, conNan}) {
        EXPECT_FALSE(d.EsValida());
        Coor p(1, 2, 3);
        EXPECT_FALSE(d.Transforma({&p, 1}));
        EXPECT_EQ(p, Coor(1, 2, 3));
    }
}

TEST(CDataHelmertNTV2, ResultlessPointIsNotANumberAndOthersAreRight) {
    const CDataHelmertNTV2 d = SieteParametros();
    std::array<Coor, 2> puntos{Coor(std::nan(""), 4474000, 700), Coor(440000, 4474000, 700)};
    EXPECT_FALSE(d.Transforma(puntos));
    EXPECT_TRUE(std::isnan(puntos[0].x));
    EXPECT_NEAR(puntos[1].x, 440000 - 109.0, 5.0);
}

TEST(CDataTransformacion, ChangeOfDatumGoesFromTheImagesSystemToTheTerrains) {
    Vertiz::CDataTransformacion d;
    d.m_nTipo = Vertiz::CDataTransformacion::HELMERT_7;
    d.m_Datum = SieteParametros();
    ASSERT_TRUE(d.ExisteTransformacion());
    const Coor imagen(440000, 4474000, 700, 5);
    const Coor terreno = d.TransformaInversa(imagen, nullptr, -1);
    EXPECT_NEAR(terreno.y - imagen.y, -207.0, 5.0);
    Coor vuelta;
    ASSERT_TRUE(d.Transforma(terreno, vuelta));
    EXPECT_NEAR(vuelta.x, imagen.x, 1e-3);
    EXPECT_NEAR(vuelta.z, imagen.z, 1e-3);
    EXPECT_EQ(vuelta.GetTipo(), 5);
}

// ---- NTv2. A file of one grid, 39 to 41 north and 5 to 2 west, in half degrees, with shifts that are linear in the
// position: bilinear interpolation gives them exactly. Layout: Canada, Geodetic Survey Division, "National
// Transformation Version 2" (records of 16 bytes, longitudes positive to the west, from the south-east corner).

constexpr double kCambioLat = 4.0, kCambioLon = 3.0;  // seconds at 40 N 3.5 W; the longitude's positive to the west

class FicheroNTv2 {
  public:
    FicheroNTv2() : m_Ruta(m_Carpeta / "rejilla 1.gsb") {
        std::ofstream f(m_Ruta, std::ios::binary);
        Entero(f, "NUM_OREC", 11), Entero(f, "NUM_SREC", 11), Entero(f, "NUM_FILE", 1);
        Texto(f, "GS_TYPE", "SECONDS"), Texto(f, "VERSION", "NTv2.0"), Texto(f, "SYSTEM_F", "ED50");
        Texto(f, "SYSTEM_T", "ETRS89"), Real(f, "MAJOR_F", 6378388.0), Real(f, "MINOR_F", 6356911.946);
        Real(f, "MAJOR_T", 6378137.0), Real(f, "MINOR_T", 6356752.314);
        Texto(f, "SUB_NAME", "PRUEBA"), Texto(f, "PARENT", "NONE"), Texto(f, "CREATED", ""), Texto(f, "UPDATED", "");
        Real(f, "S_LAT", 39 * 3600.0), Real(f, "N_LAT", 41 * 3600.0), Real(f, "E_LONG", 2 * 3600.0);
        Real(f, "W_LONG", 5 * 3600.0), Real(f, "LAT_INC", 1800.0), Real(f, "LONG_INC", 1800.0);
        Entero(f, "GS_COUNT", 5 * 7);
        for (int fila = 0; fila < 5; ++fila)
            for (int columna = 0; columna < 7; ++columna) {
                const double lat = 39 + fila * 0.5, oeste = 2 + columna * 0.5;
                const float nodo[4] = {static_cast<float>(kCambioLat + (lat - 40)),
                                       static_cast<float>(kCambioLon + 2 * (oeste - 3.5)), 0.01f, 0.01f};
                f.write(reinterpret_cast<const char*>(nodo), sizeof nodo);
            }
        Real(f, "END", 0.0);
    }

    CString Nombre() const { return CString(m_Ruta.string().c_str()); }

  private:
    static void Clave(std::ofstream& f, const char* clave) {
        char texto[9];
        std::snprintf(texto, sizeof texto, "%-8s", clave);
        f.write(texto, 8);
    }
    static void Texto(std::ofstream& f, const char* clave, const char* valor) { Clave(f, clave), Clave(f, valor); }
    static void Real(std::ofstream& f, const char* clave, double valor) {
        Clave(f, clave);
        f.write(reinterpret_cast<const char*>(&valor), 8);
    }
    static void Entero(std::ofstream& f, const char* clave, std::int32_t valor) {
        const std::int32_t par[2] = {valor, 0};
        Clave(f, clave);
        f.write(reinterpret_cast<const char*>(par), 8);
    }

    CarpetaTemporal m_Carpeta;
    std::filesystem::path m_Ruta;
};

Coor EnUTM(const CSistemaReferencia& s, double lat, double lon, double z) {
    CPuntoPortula p(0, 1, 0, 0, z, 0, L"");
    EXPECT_NE(p.GeoToUTM(lat * kPi / 180, lon * kPi / 180, s.GetElipsoide(), s.GetHuso(), s.EsNorte()), 0);
    return p;
}

TEST(CDataHelmertNTV2, GridShiftsLatitudeAndLongitudeAndLeavesTheHeight) {
    const FicheroNTv2 fichero;
    CDataHelmertNTV2 d = ED50aETRS89();
    d.m_SzRejilla = fichero.Nombre();
    for (const double lat : {39.25, 40.0, 40.6})
        for (const double oeste : {2.3, 3.5, 4.9}) {
            Coor p = EnUTM(d.m_Origen, lat, -oeste, 655.0);
            ASSERT_TRUE(d.Transforma({&p, 1}));
            const Geo g = DeUTM(d.m_Destino, p);
            EXPECT_NEAR(g.lat * 180 / kPi, lat + (kCambioLat + (lat - 40)) / 3600, 1e-9);
            EXPECT_NEAR(g.lon * 180 / kPi, -(oeste + (kCambioLon + 2 * (oeste - 3.5)) / 3600), 1e-9);
            EXPECT_NEAR(p.z, 655.0, 1e-9);
            ASSERT_TRUE(d.TransformaInversa({&p, 1}));
            const Coor antes = EnUTM(d.m_Origen, lat, -oeste, 655.0);
            EXPECT_NEAR(p.x, antes.x, 1e-3);
            EXPECT_NEAR(p.y, antes.y, 1e-3);
        }
}

TEST(CDataHelmertNTV2, OutsideTheGridThereIsNoResult) {
    const FicheroNTv2 fichero;
    CDataHelmertNTV2 d = ED50aETRS89();
    d.m_SzRejilla = fichero.Nombre();
    std::array<Coor, 2> puntos{EnUTM(d.m_Origen, 45.0, -3.5, 0), EnUTM(d.m_Origen, 40.0, -3.5, 0)};
    EXPECT_FALSE(d.Transforma(puntos));
    EXPECT_TRUE(std::isnan(puntos[0].x));
    EXPECT_TRUE(std::isfinite(puntos[1].x));
}

TEST(CDataHelmertNTV2, MissingGridFailsAndLeavesThePoints) {
    CDataHelmertNTV2 d = ED50aETRS89();
    d.m_SzRejilla = L"/no/such/grid.gsb";
    Coor p(440000, 4474000, 700);
    EXPECT_FALSE(d.Transforma({&p, 1}));
    EXPECT_EQ(p, Coor(440000, 4474000, 700));
    d.m_SzRejilla = L"@/no/such/grid.gsb";  // a mark by which PROJ would go on without it
    EXPECT_FALSE(d.Transforma({&p, 1}));
    EXPECT_EQ(p, Coor(440000, 4474000, 700));
}

}  // namespace
