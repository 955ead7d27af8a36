// Georeferenced images: extents, origin, and who frees the raster.

#include "raster/CGeoImagen.h"

#include "support/RasterVacio.h"

#include <gmock/gmock.h>

namespace {

using Vertiz::CDataImagen;
using Vertiz::CDataSemilla;
using Vertiz::CDataTransformacion;
using Vertiz::CGeoImagen;
using Vertiz::IRaster;
using Coor = Vertiz::CCoor3D<double>;

// A raster that has a size and tells when it dies.
class CRasterMedido : public RasterVacio {
  public:
    CRasterMedido(int ancho, int alto, int& vivos) : m_nAncho(ancho), m_nAlto(alto), m_nVivos(vivos) { ++m_nVivos; }
    ~CRasterMedido() override { --m_nVivos; }

    int Alto100() const override { return m_nAlto * 100; }
    int Ancho100() const override { return m_nAncho * 100; }
    int Alto() const override { return -m_nAlto; }
    int Ancho() const override { return m_nAncho; }

  private:
    int m_nAncho, m_nAlto;
    int& m_nVivos;
};

class CGeoImagenTest : public testing::Test {
  protected:
    IRaster* Raster(int ancho = 200, int alto = 100) { return new CRasterMedido(ancho, alto, m_nVivos); }
    ~CGeoImagenTest() override { EXPECT_EQ(m_nVivos, 0) << "rasters left behind"; }
    int m_nVivos = 0;
};

const CDataSemilla kSemilla(3, 400000.0, 4000000.0, 10.0);

TEST_F(CGeoImagenTest, ExtentsGoFromTheCornerByPixelsOfBothSizes) {
    const CGeoImagen imagen(Raster(), CDataImagen(1000.0, 5000.0, 0.5, 0.25, CDataImagen::LOCAL), kSemilla);
    EXPECT_EQ(imagen.GetMaximasDouble().Minima(), Coor(1000.0, 4975.0, 0.0));
    EXPECT_EQ(imagen.GetMaximasDouble().Maxima(), Coor(1100.0, 5000.0, 0.0));
    EXPECT_EQ(imagen.GetOrigen(), Coor(0, 0, 0));
}

TEST_F(CGeoImagenTest, AbsoluteImageHasTheSeedsOffsetAsItsOrigin) {
    CDataImagen datos(400100.0, 4000200.0, 2.0, 2.0, CDataImagen::ABSOLUTA);
    datos.DataTrans().m_dCotaReferencia = 650.0;
    const CGeoImagen imagen(Raster(), datos, kSemilla);
    EXPECT_EQ(imagen.GetOrigen(), Coor(400000.0, 4000000.0, 10.0));
    EXPECT_EQ(imagen.GetMaximasDouble().Minima(), Coor(400100.0, 4000000.0, 650.0));
    EXPECT_EQ(imagen.GetMaximasDouble().Maxima(), Coor(400500.0, 4000200.0, 650.0));
}

TEST_F(CGeoImagenTest, ImageWithoutGeoreferenceLiesInItsPixels) {
    const CGeoImagen imagen(Raster(), CDataImagen(7, 8, 9, 9, CDataImagen::SIN_GEORREFERENCIA), kSemilla);
    EXPECT_EQ(imagen.GetMaximasDouble().Minima(), Coor(0.0, -100.0, 0.0));
    EXPECT_EQ(imagen.GetMaximasDouble().Maxima(), Coor(200.0, 0.0, 0.0));
}

TEST_F(CGeoImagenTest, PanoramaIsACubeAboutItsCamera) {
    CDataImagen datos;
    datos.DataTrans().m_nTipo = CDataTransformacion::ESFERICA;
    datos.DataTrans().m_CentroProyeccion = Coor(100, 200, 300);
    const CGeoImagen imagen(Raster(), datos, CDataSemilla());
    EXPECT_TRUE(imagen.EsPanorama());
    EXPECT_EQ(imagen.GetMaximasDouble().Centro(true), Coor(100, 200, 300));
    EXPECT_EQ(imagen.GetMaximasDouble().Maxima(), Coor(100.5, 200.5, 300.5));
}

TEST_F(CGeoImagenTest, WithoutRasterOrPixelSizeTheExtentsAreEmpty) {
    EXPECT_TRUE(CGeoImagen(nullptr, CDataImagen(1, 2, 1, 1, 0), kSemilla).GetMaximasDouble().EstanVacias(true));
    EXPECT_TRUE(CGeoImagen(Raster(), CDataImagen(1, 2, 0, 1, 0), kSemilla).GetMaximasDouble().EstanVacias(true));
    EXPECT_TRUE(CGeoImagen(Raster(), CDataImagen(1, 2, 1, -1, 0), kSemilla).GetMaximasDouble().EstanVacias(true));
}

TEST_F(CGeoImagenTest, ItFreesItsRasterUnlessThatWasTakenAway) {
    { const CGeoImagen imagen(Raster(), CDataImagen(), kSemilla); }
    EXPECT_EQ(m_nVivos, 0);
    IRaster* raster = Raster();
    {
        CGeoImagen imagen(raster, CDataImagen(), kSemilla);
        imagen.SetRaster(nullptr);
    }
    EXPECT_EQ(m_nVivos, 1);
    Vertiz::BorraRaster(raster);
    Vertiz::BorraRaster(nullptr);
}

TEST_F(CGeoImagenTest, ClearFreesTheRasterAndEmptiesTheExtents) {
    CGeoImagen imagen(Raster(), CDataImagen(1, 2, 1, 1, 0), kSemilla);
    imagen.Clear();
    EXPECT_EQ(m_nVivos, 0);
    EXPECT_EQ(imagen.GetRaster(), nullptr);
    EXPECT_TRUE(imagen.GetMaximasDouble().EstanVacias(true));
}

TEST_F(CGeoImagenTest, NewPanoramaHangsStraightAndIsWhole) {
    const CGeoImagen imagen(nullptr, CDataImagen(), kSemilla);
    EXPECT_FALSE(imagen.m_bDirecta);
    EXPECT_FALSE(imagen.m_bSituada);
    EXPECT_THAT(imagen.m_Correcciones, testing::Each(0.0));
    EXPECT_THAT(imagen.m_Resultados, testing::Each(0.0));
    EXPECT_EQ(imagen.m_dPolarInicio, 0.0);
    EXPECT_EQ(imagen.m_dPolarFin, 180.0);
}

TEST_F(CGeoImagenTest, ChangeOfReferenceSystemMovesCornerAndCamera) {
    Vertiz::CDataHelmertNTV2 cambio;
    cambio.m_Origen = Vertiz::CSistemaReferencia(L"30", Vertiz::CElipsoide(), 30, true);
    cambio.m_Destino = Vertiz::CSistemaReferencia(L"31", Vertiz::CElipsoide(), 31, true);
    CDataImagen datos(790000.0, 4600000.0, 1.0, 1.0, CDataImagen::ABSOLUTA);
    datos.DataTrans().m_nTipo = CDataTransformacion::CONICA;
    datos.DataTrans().m_CentroProyeccion = Coor(790000.0, 4600000.0, 900.0);
    CGeoImagen imagen(Raster(), datos, kSemilla);
    ASSERT_EQ(imagen.Transformacion(cambio), 1);
    EXPECT_NEAR(imagen.GetDataImagen().m_dXOeste, 292000.0, 3000.0);  // 2.5 degrees west of the new meridian
    EXPECT_EQ(imagen.GetDataImagen().DataTrans().m_CentroProyeccion.x, imagen.GetDataImagen().m_dXOeste);
    EXPECT_EQ(imagen.GetMaximasDouble().Minima().x, imagen.GetDataImagen().m_dXOeste);

    CGeoImagen local(Raster(), CDataImagen(1, 2, 1, 1, CDataImagen::LOCAL), kSemilla);
    EXPECT_EQ(local.Transformacion(cambio), 0);
    EXPECT_EQ(local.GetDataImagen().m_dXOeste, 1.0);
}

}  // namespace
