// Points, lines and areas of files that the tests make: their parts, heights, systems, damage, progress.

#include "io/LeeVectores.h"

#include "Sistemas.h"
#include "model/CElipsoide.h"
#include "model/CPuntoPortula.h"
#include "support/Progreso.h"
#include "support/Temporales.h"

#include <gdal.h>
#include <gmock/gmock.h>

#include <numbers>

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using Vertiz::CDataLeeVectores;
using Vertiz::CFiguraVector;
using Vertiz::CResultadoVectores;
using Vertiz::LeeVectores;
using Coor = Vertiz::CCoor3D<double>;

// Features of GeoJSON in a plane system, or in degrees (epsg 4326).
std::string Coleccion(const std::vector<std::pair<std::string, std::string>>& figuras, int epsg = 25830) {
    std::string texto =
        R"({"type":"FeatureCollection","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::)" +
        std::to_string(epsg) + R"("}},"features":[)";
    const char* separador = "";
    for (const auto& [geometria, propiedades] : figuras) {
        texto += separador;
        texto += R"({"type":"Feature","properties":{)";
        texto += propiedades + R"(},"geometry":)";
        texto += geometria + "}";
        separador = ",";
    }
    return texto + "]}";
}

const std::string kCuadrado = R"({"type":"Polygon","coordinates":[[[0,0],[10,0],[10,10],[0,10],[0,0]]]})";

class Vectores : public testing::Test {
  protected:
    CResultadoVectores Lee(const std::string& contenido, const CDataLeeVectores& opciones = {},
                           const char* nombre = "casas ñ.geojson", Vertiz::IPorcentaje* progreso = nullptr) {
        return LeeVectores(CString(m_Carpeta.Escribe(nombre, contenido).string().c_str()), opciones, progreso);
    }
    CResultadoVectores LeeBien(const std::string& contenido, const CDataLeeVectores& opciones = {}) {
        CResultadoVectores leidas = Lee(contenido, opciones);
        EXPECT_EQ(leidas.m_nResultado, 1) << leidas.m_Error.Utf8();
        return leidas;
    }
    std::string Error(const std::string& contenido, const CDataLeeVectores& opciones = {},
                      const char* nombre = "casas ñ.geojson") {
        const CResultadoVectores leidas = Lee(contenido, opciones, nombre);
        EXPECT_EQ(leidas.m_nResultado, 0);
        EXPECT_THAT(leidas.m_Figuras, IsEmpty());
        const std::string texto = leidas.m_Error.Utf8();
        EXPECT_THAT(texto, HasSubstr(nombre));
        EXPECT_EQ(texto.find('\n'), std::string::npos);
        return texto;
    }

    CarpetaTemporal m_Carpeta;
};

TEST_F(Vectores, PointsLinesAndAreasKeepTheirParts) {
    const CResultadoVectores leidas = LeeBien(Coleccion(
        {{R"({"type":"Point","coordinates":[440000.5,4480000.25]})", ""},
         {R"({"type":"LineString","coordinates":[[1,2,3],[4,5,6],[7,8,9.5]]})", ""},
         {R"({"type":"Polygon","coordinates":[[[0,0],[10,0],[10,10],[0,10],[0,0]],[[2,2],[4,2],[4,4],[2,2]]]})", ""}}));
    ASSERT_EQ(leidas.m_Figuras.size(), 3u);
    const CFiguraVector &punto = leidas.m_Figuras[0], &linea = leidas.m_Figuras[1], &area = leidas.m_Figuras[2];
    EXPECT_EQ(punto.m_nClase, CFiguraVector::PUNTO);
    ASSERT_EQ(punto.m_Lineas.size(), 1u);
    ASSERT_EQ(punto.m_Lineas[0].NPuntos(), 1u);
    EXPECT_EQ(punto.m_Lineas[0].Punto(0), Coor(440000.5, 4480000.25, 0));
    EXPECT_FALSE(punto.m_bConCota);
    EXPECT_EQ(linea.m_nClase, CFiguraVector::LINEA);
    ASSERT_EQ(linea.m_Lineas.size(), 1u);
    ASSERT_EQ(linea.m_Lineas[0].NPuntos(), 3u);
    EXPECT_EQ(linea.m_Lineas[0].Punto(2), Coor(7, 8, 9.5));
    EXPECT_TRUE(linea.m_bConCota);
    EXPECT_EQ(area.m_nClase, CFiguraVector::AREA);
    ASSERT_EQ(area.m_Lineas.size(), 2u);
    EXPECT_EQ(area.m_Lineas[0].NPuntos(), 5u);
    EXPECT_TRUE(area.m_Lineas[0].EsCerrada());
    EXPECT_TRUE(area.m_Lineas[1].EsCerrada());
    EXPECT_EQ(area.m_Lineas[1].Punto(1), Coor(4, 2, 0));
    EXPECT_THAT(leidas.m_Mensajes, IsEmpty());
}

TEST_F(Vectores, CollectionsComeApart) {
    const CResultadoVectores leidas = LeeBien(Coleccion(
        {{R"({"type":"MultiPoint","coordinates":[[1,2],[3,4]]})", R"("height":7)"},
         {R"({"type":"MultiPolygon","coordinates":[[[[0,0],[1,0],[1,1],[0,0]]],[[[5,5],[6,5],[6,6],[5,5]]]]})", ""},
         {R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[9,9]},)"
          R"({"type":"MultiLineString","coordinates":[[[0,0],[1,1]],[[2,2],[3,3]]]}]})",
          ""}}));
    std::vector<int> clases;
    for (const CFiguraVector& f : leidas.m_Figuras)
        clases.push_back(f.m_nClase);
    EXPECT_EQ(clases, (std::vector<int>{0, 0, 2, 2, 0, 1, 1}));
    EXPECT_EQ(leidas.m_Figuras[0].m_Altura, 7.0);
    EXPECT_EQ(leidas.m_Figuras[1].m_Altura, 7.0);
    EXPECT_EQ(leidas.m_Figuras[2].m_Altura, std::nullopt);
}

TEST_F(Vectores, HeightsComeFromAnAttribute) {
    for (const char* campo : {"height", "HEIGHT", "Altura", "hoehe", "hauteur"}) {
        const std::string nombre = campo;
        const CResultadoVectores leidas = LeeBien(Coleccion({{kCuadrado, '"' + nombre + R"(":12.5)"},
                                                             {kCuadrado, '"' + nombre + R"(":null)"},
                                                             {kCuadrado, '"' + nombre + R"(":-3)"}}));
        ASSERT_EQ(leidas.m_Figuras.size(), 3u);
        EXPECT_EQ(leidas.m_CampoAltura.Utf8(), nombre);
        EXPECT_EQ(leidas.m_Figuras[0].m_Altura, 12.5);
        EXPECT_EQ(leidas.m_Figuras[1].m_Altura, std::nullopt);
        EXPECT_EQ(leidas.m_Figuras[2].m_Altura, -3.0);
    }
    EXPECT_TRUE(LeeBien(Coleccion({{kCuadrado, R"("floors":2)"}})).m_CampoAltura.IsEmpty());
}

TEST_F(Vectores, HeightsAsTextMayHaveAUnit) {
    const CResultadoVectores leidas = LeeBien(Coleccion({{kCuadrado, R"("height":"8.25 m")"},
                                                         {kCuadrado, R"("height":" +7")"},
                                                         {kCuadrado, R"("height":"tall")"},
                                                         {kCuadrado, R"("height":"")"}}));
    EXPECT_EQ(leidas.m_Figuras[0].m_Altura, 8.25);
    EXPECT_EQ(leidas.m_Figuras[1].m_Altura, 7.0);
    EXPECT_EQ(leidas.m_Figuras[2].m_Altura, std::nullopt);
    EXPECT_EQ(leidas.m_Figuras[3].m_Altura, std::nullopt);
}

TEST_F(Vectores, TheUserNamesTheAttribute) {
    const std::string texto = Coleccion({{kCuadrado, R"("height":1,"Eaves":4,"name":"a")"}});
    CDataLeeVectores opciones;
    opciones.m_CampoAltura = L"eaves";
    EXPECT_EQ(LeeBien(texto, opciones).m_Figuras[0].m_Altura, 4.0);
    opciones.m_CampoAltura = L"ridge";
    EXPECT_THAT(Error(texto, opciones), HasSubstr("'ridge'; it has height, Eaves, name"));
    EXPECT_THAT(Error(Coleccion({{kCuadrado, ""}}), opciones), HasSubstr("it has none"));
}

TEST_F(Vectores, DegreesAreBroughtToTheTerrain) {
    constexpr double kGrado = std::numbers::pi / 180.0;
    Vertiz::CPuntoPortula p;
    ASSERT_EQ(p.GeoToUTM(40.5 * kGrado, -3.25 * kGrado, Vertiz::CElipsoide(), 30, true), 30);
    CDataLeeVectores opciones;
    opciones.m_WKT = CString(WKT(32630).c_str());
    const CResultadoVectores leidas =
        LeeBien(Coleccion({{R"({"type":"Point","coordinates":[-3.25,40.5,660]})", ""}}, 4326), opciones);
    EXPECT_NEAR(leidas.m_Figuras[0].m_Lineas[0].Punto(0).x, p.x, 1e-3);
    EXPECT_NEAR(leidas.m_Figuras[0].m_Lineas[0].Punto(0).y, p.y, 1e-3);
    EXPECT_NEAR(leidas.m_Figuras[0].m_Lineas[0].Punto(0).z, 660.0, 1e-6);
    EXPECT_THAT(leidas.m_Mensajes.at(0).Utf8(), HasSubstr("brought"));
}

TEST_F(Vectores, FiguresWithoutAPlaceAreLeftOut) {
    CDataLeeVectores opciones;
    opciones.m_WKT = CString(WKT(32630).c_str());
    const CResultadoVectores leidas = LeeBien(Coleccion({{R"({"type":"Point","coordinates":[-3,40]})", ""},
                                                         {R"({"type":"Point","coordinates":[1e9,4e9]})", ""}},
                                                        4326),
                                              opciones);
    EXPECT_EQ(leidas.m_Figuras.size(), 1u);
    EXPECT_THAT(leidas.m_Avisos.at(0).Utf8(), HasSubstr("1 figures have no place"));
}

TEST_F(Vectores, AFileWithoutASystemIsTakenAsTheTerrains) {
    const std::string csv = "WKT,height\n\"POINT (440000 4480000)\",5\n";
    CDataLeeVectores opciones;
    opciones.m_WKT = CString(WKT(32630).c_str());
    const CResultadoVectores leidas = Lee(csv, opciones, "arboles.csv");
    ASSERT_EQ(leidas.m_nResultado, 1) << leidas.m_Error.Utf8();
    EXPECT_EQ(leidas.m_Figuras[0].m_Lineas[0].Punto(0), Coor(440000, 4480000, 0));
    EXPECT_EQ(leidas.m_Figuras[0].m_Altura, 5.0);
    EXPECT_THAT(leidas.m_Mensajes.at(0).Utf8(), HasSubstr("taken as the terrain's"));
}

TEST_F(Vectores, CurvesBecomeLines) {
    const CResultadoVectores leidas = Lee("WKT,n\n\"CIRCULARSTRING (0 0, 10 10, 20 0)\",1\n", {}, "curva.csv");
    ASSERT_EQ(leidas.m_nResultado, 1) << leidas.m_Error.Utf8();
    const auto& linea = leidas.m_Figuras.at(0).m_Lineas.at(0);
    EXPECT_GT(linea.NPuntos(), 10u);
    for (const Coor& p : linea.Puntos())
        EXPECT_NEAR(std::hypot(p.x - 10, p.y), 10.0, 1e-6);
}

TEST_F(Vectores, AnOutlineThatIsOpenIsClosed) {
    const CResultadoVectores leidas = Lee("WKT,n\n\"POLYGON ((0 0, 10 0, 10 10))\",1\n", {}, "abierta.csv");
    ASSERT_EQ(leidas.m_nResultado, 1) << leidas.m_Error.Utf8();
    const auto& contorno = leidas.m_Figuras.at(0).m_Lineas.at(0);
    EXPECT_EQ(contorno.NPuntos(), 4u);
    EXPECT_TRUE(contorno.EsCerrada());
}

TEST_F(Vectores, CodesAreTheLayers) {
    EXPECT_EQ(LeeBien(Coleccion({{kCuadrado, R"("Layer":"EDGE")"}})).m_Figuras[0].m_Lineas[0].GetCodigo().Utf8(),
              "EDGE");
    EXPECT_EQ(Lee(Coleccion({{kCuadrado, ""}}), {}, "walls.geojson").m_Figuras.at(0).m_Lineas[0].GetCodigo().Utf8(),
              "walls");
}

TEST_F(Vectores, FeaturesWithoutGeometryArePassedOver) {
    const CResultadoVectores leidas =
        LeeBien(Coleccion({{"null", ""}, {R"({"type":"Polygon","coordinates":[]})", ""}, {kCuadrado, ""}}));
    EXPECT_EQ(leidas.m_Figuras.size(), 1u);
    EXPECT_THAT(Error(Coleccion({{"null", ""}})), HasSubstr("no point, line or area"));
}

TEST_F(Vectores, WhatCantBeReadIsRefused) {
    EXPECT_THAT(LeeVectores(L"/no/hay.gpkg").m_Error.Utf8(), HasSubstr("no such file"));
    EXPECT_THAT(Error(""), HasSubstr("empty"));
    EXPECT_THAT(Error("hello"), HasSubstr("not a file of vectors"));
    EXPECT_NE(Error(Coleccion({{kCuadrado, ""}}).substr(0, 120)), "");
    EXPECT_THAT(LeeVectores(CString(m_Carpeta.Ruta().string().c_str())).m_Error.Utf8(), HasSubstr("folder"));
}

TEST_F(Vectores, ReadingTellsItsProgressAndCanBeCancelled) {
    const std::string texto = Coleccion({{kCuadrado, ""}, {kCuadrado, ""}, {kCuadrado, ""}});
    Progreso progreso;
    EXPECT_EQ(Lee(texto, {}, "a.geojson", &progreso).m_nResultado, 1);
    EXPECT_EQ(progreso.m_Pasos, (std::vector<std::pair<int, int>>{{1, 3}, {2, 3}, {3, 3}}));
    Progreso cancela(2);
    const CResultadoVectores leidas = Lee(texto, {}, "a.geojson", &cancela);
    EXPECT_EQ(leidas.m_nResultado, 2);
    EXPECT_THAT(leidas.m_Figuras, IsEmpty());
}

}  // namespace
