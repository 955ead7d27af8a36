// Real elevation files: what is special about each of them comes out right.

#include "io/LeeDEM.h"
#include "support/Temporales.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using Vertiz::CResultadoDEM;

CResultadoDEM Lee(const char* nombre, const Vertiz::CDataLeeDEM& opciones = {}) {
    CResultadoDEM r = Vertiz::LeeDEM(CString((CarpetaDatos() / "dem" / nombre).string().c_str()), opciones);
    EXPECT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    if (!r.m_pDEM) r.m_pDEM = std::make_unique<Vertiz::CDEM>();
    return r;
}

std::vector<std::string> Textos(const std::vector<CString>& textos) {
    std::vector<std::string> v;
    for (const auto& t : textos)
        v.push_back(t.Utf8());
    return v;
}

void EsperaCotas(const CResultadoDEM& r, double minima, double maxima, double tolerancia) {
    EXPECT_NEAR(r.m_pDEM->GetMaximasTotalDouble().Minima().z, minima, tolerancia);
    EXPECT_NEAR(r.m_pDEM->GetMaximasTotalDouble().Maxima().z, maxima, tolerancia);
}

TEST(LeeDEMReal, TownSurfaceModelOfOneMetre) {
    SALTA_SIN_DATOS("dem/dom1_32_356_5699_1_nw_2020.tif");
    const CResultadoDEM r = Lee("dom1_32_356_5699_1_nw_2020.tif");
    EXPECT_EQ(r.m_pDEM->GetColumnas(), 1000u);
    EXPECT_EQ(r.m_pDEM->GetFilas(), 1000u);
    EXPECT_EQ(r.m_pDEM->GetCeldaX(), 1.0);
    EXPECT_THAT(r.m_Sistema.Utf8(), HasSubstr("UTM zone 32N"));
    EsperaCotas(r, 87.29, 167.74, 0.01);
    EXPECT_EQ(r.m_pDEM->GetSemilla().GetX(), 356000.0);
    EXPECT_THAT(r.m_Avisos, IsEmpty());
    EXPECT_THAT(r.m_Marcas, IsEmpty());
}

TEST(LeeDEMReal, NothingIsPrintedWhileADamagedPictureIsDecoded) {
    SALTA_SIN_DATOS("jp2/p1_05.j2k");
    testing::internal::CaptureStderr();
    const CResultadoDEM r = Vertiz::LeeDEM(CString((CarpetaDatos() / "jp2/p1_05.j2k").string().c_str()));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(r.m_nResultado, 0);
    EXPECT_THAT(r.m_Error.Utf8(), HasSubstr("reading row 1 failed"));
}

TEST(LeeDEMReal, BigEndianTileInDegreesGoesToUTM) {
    SALTA_SIN_DATOS("dem/N00E010.hgt");
    const CResultadoDEM r = Lee("N00E010.hgt");
    EXPECT_EQ(r.m_nColumnasFichero, 1201u);
    EXPECT_TRUE(r.m_bReproyectado);
    EXPECT_EQ(r.m_Sistema, L"WGS 84 / UTM zone 32N");
    EXPECT_NEAR(r.m_pDEM->GetCeldaX(), 92.5, 2.0);
    EsperaCotas(r, 1.0, 1005.0, 10.0);  // bilinear resampling takes a little off the top
    EXPECT_THAT(Textos(r.m_Mensajes), Contains(HasSubstr("from degrees")));
}

TEST(LeeDEMReal, CellsOfOddSizeInUTM33S) {
    SALTA_SIN_DATOS("dem/srtm_41_19.tif");
    const CResultadoDEM r = Lee("srtm_41_19.tif");
    EXPECT_EQ(r.m_pDEM->GetColumnas(), 837u);
    EXPECT_EQ(r.m_pDEM->GetFilas(), 661u);
    EXPECT_NEAR(r.m_pDEM->GetCeldaX(), 81.9934262, 1e-6);
    EXPECT_FALSE(r.m_bReproyectado);
    EsperaCotas(r, 0.0, 1699.0, 0.0);
}

TEST(LeeDEMReal, AerialPhotographIsRefused) {
    SALTA_SIN_DATOS("dem/3320D_2010_315_RGB_LATLNG.tif");
    SALTA_SIN_DATOS("dem/rmnp-rgb.tif");
    for (const char* nombre : {"3320D_2010_315_RGB_LATLNG.tif", "rmnp-rgb.tif"}) {
        const auto r = Vertiz::LeeDEM(CString((CarpetaDatos() / "dem" / nombre).string().c_str()));
        EXPECT_EQ(r.m_nResultado, 0);
        EXPECT_THAT(r.m_Error.Utf8(), HasSubstr("picture in colours"));
    }
}

TEST(LeeDEMReal, CellsThatAreNotSquareStaySoInDegrees) {
    SALTA_SIN_DATOS("dem/rmnp-dem.tif");
    Vertiz::CDataLeeDEM opciones;
    opciones.m_bConservaGrados = true;
    const CResultadoDEM grados = Lee("rmnp-dem.tif", opciones);
    EXPECT_NEAR(grados.m_pDEM->GetCeldaX(), 0.00275, 1e-5);
    EXPECT_NEAR(grados.m_pDEM->GetCeldaY(), 0.00211, 1e-5);
    EsperaCotas(grados, 2281.0, 4261.0, 0.0);
    const CResultadoDEM utm = Lee("rmnp-dem.tif");
    EXPECT_EQ(utm.m_Sistema, L"WGS 84 / UTM zone 13N");
    EsperaCotas(utm, 2281.0, 4261.0, 60.0);  // the cells are 235 m wide, the peaks are not
    EXPECT_GT(utm.m_nVacios, 0u);
}

TEST(LeeDEMReal, AsciiDemOfNad27) {
    SALTA_SIN_DATOS("dem/SainteHelens.dem");
    const CResultadoDEM r = Lee("SainteHelens.dem");
    EXPECT_EQ(r.m_pDEM->GetColumnas(), 327u);
    EXPECT_EQ(r.m_pDEM->GetFilas(), 468u);
    EXPECT_EQ(r.m_pDEM->GetCeldaX(), 30.0);
    EXPECT_THAT(r.m_Sistema.Utf8(), HasSubstr("UTM"));
    EsperaCotas(r, 682.0, 2543.0, 0.0);
}

TEST(LeeDEMReal, AsciiGridInLocalCoordinates) {
    SALTA_SIN_DATOS("dem/095b_dem_90m.asc");
    const CResultadoDEM r = Lee("095b_dem_90m.asc");
    EXPECT_EQ(r.m_pDEM->GetColumnas(), 351u);
    EXPECT_EQ(r.m_pDEM->GetFilas(), 350u);
    EXPECT_EQ(r.m_pDEM->GetCeldaX(), 90.0);
    EsperaCotas(r, 213.0, 578.0, 0.0);
    EXPECT_FALSE(r.m_bReproyectado);
}

TEST(LeeDEMReal, AsciiGridInUnnamedDegrees) {
    SALTA_SIN_DATOS("dem/srtmgl3_rocky_mountains.asc");
    const CResultadoDEM r = Lee("srtmgl3_rocky_mountains.asc");
    EXPECT_EQ(r.m_nColumnasFichero, 144u);
    EXPECT_TRUE(r.m_bReproyectado);
    EXPECT_EQ(r.m_Sistema, L"WGS 84 / UTM zone 13N");
    EsperaCotas(r, 2186.0, 3345.0, 20.0);
}

TEST(LeeDEMReal, UndeclaredVoidAreaIsToldAndIsAHole) {
    SALTA_SIN_DATOS("dem/hugo_site_filled.asc");
    const CResultadoDEM r = Lee("hugo_site_filled.asc");
    ASSERT_EQ(r.m_Marcas.size(), 1u);
    EXPECT_EQ(r.m_Marcas[0].m_dValor, -9999.0);
    EXPECT_TRUE(r.m_Marcas[0].m_bVacia);
    EXPECT_GT(r.m_nVacios, 100u);
    EXPECT_GT(r.m_pDEM->GetMaximasTotalDouble().Minima().z, 1000.0);
    Vertiz::CDataLeeDEM opciones;
    opciones.m_Nulo = -9999.0;
    const CResultadoDEM dicho = Lee("hugo_site_filled.asc", opciones);
    EXPECT_THAT(dicho.m_Marcas, IsEmpty());
    EXPECT_EQ(dicho.m_nVacios, r.m_nVacios);
}

TEST(LeeDEMReal, AlpineValleyWithAFloatVoidValue) {
    SALTA_SIN_DATOS("dem/elev_vinschgau.tif");
    const CResultadoDEM r = Lee("elev_vinschgau.tif");
    EXPECT_EQ(r.m_nVacios, 445u);
    EXPECT_EQ(r.m_pDEM->GetCeldaX(), 250.0);
    EsperaCotas(r, 388.0, 3863.0, 1.0);
    EXPECT_THAT(r.m_Avisos, IsEmpty());
    EXPECT_THAT(r.m_Marcas, IsEmpty());
}

TEST(LeeDEMReal, SmallGridWithoutGeoreference) {
    SALTA_SIN_DATOS("dem/smalldem.tif");
    const CResultadoDEM r = Lee("smalldem.tif");
    EXPECT_EQ(r.m_pDEM->GetColumnas(), 109u);
    EXPECT_EQ(r.m_pDEM->GetCeldaX(), 1.0);
    EsperaCotas(r, -1.0, 1250.0, 0.5);
    EXPECT_THAT(Textos(r.m_Mensajes), Contains(HasSubstr("no georeference")));
}

}  // namespace
