#include "frame/CDataGL.h"

#include <gtest/gtest.h>

TEST(CDataGL, NewSettingsHaveTheirDefaults) {
    const CDataGL d;
    const int luz[11] = {0, 0, 100, 59, 100, 46, 59, 100, 0, 100, 0};
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(d.m_nLuzParam[i], luz[i]) << i;
    EXPECT_EQ(d.m_nColorFondo, 0xFEF1E0);
    EXPECT_EQ(d.m_nColorDEM, 0x62C5DD);
    EXPECT_EQ(d.m_nColorNada, 0xFF0000);
    EXPECT_EQ(d.m_nQuad, 2U);
    EXPECT_EQ(d.m_nModoRelleno, 1U);
    EXPECT_EQ(d.m_nTipoLIDAR, ColorIntensidad);
    EXPECT_EQ(d.m_bOrto, 1);
    EXPECT_EQ(d.m_nEjes, 1U);
    EXPECT_EQ(d.m_bRelleno, 0);
    EXPECT_EQ(d.m_bLuz, 1);
    EXPECT_EQ(d.m_nPasoTrans, 10);
    EXPECT_EQ(d.m_nPasoAngulo, 5);
    EXPECT_EQ(d.m_nAlfaSuperficie, 20);
    EXPECT_EQ(d.m_nAlfaImagen, 50);
    EXPECT_EQ(d.m_nMaxPuntosTrazados, 10000);
    EXPECT_DOUBLE_EQ(d.GetFactorVelocidad(), 1.0);
}

TEST(CDataGL, ASlowerSpeedNeverTakesTheStepsBelowOne) {
    CDataGL d;
    d.m_nPasoTrans = d.m_nPasoAngulo = 1;
    d.ReduceVelocidad();
    EXPECT_EQ(d.m_nPasoTrans, 1);
    EXPECT_EQ(d.m_nPasoAngulo, 1);
    EXPECT_FLOAT_EQ(d.m_fVelocidad, 0.0625F);
}

TEST(CDataGL, StepsAreTruncatedSoThatReducingAndIncreasingNeedNotCancelOut) {
    CDataGL d;
    d.ReduceVelocidad();
    EXPECT_EQ(d.m_nPasoAngulo, 2);
    d.AumentaVelocidad();
    EXPECT_EQ(d.m_nPasoAngulo, 4);
    EXPECT_EQ(d.m_nPasoTrans, 10);
    EXPECT_FLOAT_EQ(d.m_fVelocidad, 0.125F);
}

TEST(CDataGL, TheSpeedFactorLeavesTheSteps) {
    CDataGL d;
    d.SetFactorVelocidad(2.0);
    EXPECT_FLOAT_EQ(d.m_fVelocidad, 0.25F);
    EXPECT_DOUBLE_EQ(d.GetFactorVelocidad(), 2.0);
    EXPECT_EQ(d.m_nPasoTrans, 10);
}

TEST(CDataGL, ComparisonLeavesOutLightPointSizeSpeedStepsAndOwnExtent) {
    const CDataGL base;
    CDataGL d = base;
    d.m_nLuzParam[4] = 1;
    d.m_nGrosorPuntos = 7;
    d.m_fVelocidad = 3.0F;
    d.m_nPasoTrans = 3;
    d.m_nPasoAngulo = 3;
    d.m_bMaximasObjeto = 0;
    EXPECT_TRUE(d == base);
}

TEST(CDataGL, ComparisonSeesEveryOtherSetting) {
    const CDataGL base;
    const auto difiere = [&](auto cambia) {
        CDataGL d = base;
        cambia(d);
        return !(d == base);
    };
    using D = CDataGL;
    int D::*const campos[] = {&D::m_nColorFondo,
                              &D::m_nColorDEM,
                              &D::m_nColorBase,
                              &D::m_nColorLIDAR,
                              &D::m_nColorDesmonte,
                              &D::m_nColorTerraplen,
                              &D::m_nColorNada,
                              &D::m_nSombraCeldas,
                              &D::m_nTipoColorLineas,
                              &D::m_bRotacion,
                              &D::m_bLimites,
                              &D::m_bLimitesProyecto,
                              &D::m_bEdificios,
                              &D::m_bArboles,
                              &D::m_bRupturas,
                              &D::m_bReferencia,
                              &D::m_bCurvado,
                              &D::m_bPuntosCamara,
                              &D::m_bBase,
                              &D::m_bOrto,
                              &D::m_bLuz,
                              &D::m_bRelleno,
                              &D::m_bImagenFondo,
                              &D::m_nCalidadTextos,
                              &D::m_bTextos3D,
                              &D::m_nAlturaTextos,
                              &D::m_bMarcasFoto,
                              &D::m_bMarcasTerreno,
                              &D::m_bMascara,
                              &D::m_bVerPlanos,
                              &D::m_bVerPuntosConPlanos,
                              &D::m_bVerPuntosSinPlanos,
                              &D::m_nMaxPuntosTrazados};
    for (std::size_t i = 0; i < std::size(campos); ++i)
        EXPECT_TRUE(difiere([&](D& d) { ++(d.*campos[i]); })) << "field " << i;
    EXPECT_TRUE(difiere([](D& d) { d.m_nQuad = 1; }));
    EXPECT_TRUE(difiere([](D& d) { d.m_nModoRelleno = 2; }));
    EXPECT_TRUE(difiere([](D& d) { d.m_nEjes = 2; }));
    EXPECT_TRUE(difiere([](D& d) { d.m_nTipoLIDAR = ColorRGB; }));
    EXPECT_TRUE(difiere([](D& d) { d.m_nAlfaSuperficie = 1; }));
    EXPECT_TRUE(difiere([](D& d) { d.m_nAlfaImagen = 1; }));
    EXPECT_TRUE(difiere([](D& d) { d.m_SzImagenFondo = L"cielo.jpg"; }));
    EXPECT_TRUE(difiere([](D& d) { d.m_GamaColor = Vertiz::CDataGamaColor(L"0 1 2 3"); }));
    EXPECT_TRUE(difiere([](D& d) { d.m_VerObjetosMDT.resize(1); }));
}
