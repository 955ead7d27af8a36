#include "frame/CDataGL.h"

#include <gtest/gtest.h>

TEST(CDataGL, NewSettingsHaveTheirDefaults) {
    const CDataGL d;
    const int luz[11] = {0, 0, 100, 59, 100, 46, 59, 100, 0, 100, 0};
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(d.m_nLuzParam[i], luz[i]) << i;
    EXPECT_EQ(d.m_nColorFondo, 0xFEF1E0);
    EXPECT_EQ(d.m_nColorDEM, 0x62C5DD);
    EXPECT_EQ(d.m_nColorBase, 0x808080);
    EXPECT_EQ(d.m_nColorDesmonte, 0x0000FF);
    EXPECT_EQ(d.m_nColorTerraplen, 0x00FF00);
    EXPECT_EQ(d.m_nColorNada, 0xFF0000);
    EXPECT_EQ(d.m_nGrosorPuntos, 1);
    EXPECT_EQ(d.m_nQuad, 2U);
    EXPECT_EQ(d.m_nModoRelleno, 1U);
    EXPECT_EQ(d.m_nTipoLIDAR, ColorIntensidad);
    EXPECT_EQ(d.m_nEjes, 1U);
    for (const int encendido :
         {d.m_bRotacion, d.m_bEdificios, d.m_bArboles, d.m_bRupturas, d.m_bReferencia, d.m_bMaximasObjeto, d.m_bLuz,
          d.m_bLimitesProyecto, d.m_bPuntosCamara, d.m_bMascara, d.m_bVerPuntosSinPlanos, d.m_bOrto, d.m_bTextos3D}) {
        EXPECT_EQ(encendido, 1);
    }
    for (const int apagado : {d.m_nColorLIDAR, d.m_nSombraCeldas, d.m_nTipoColorLineas, d.m_bLimites, d.m_bCurvado,
                              d.m_bBase, d.m_bRelleno, d.m_bMarcasFoto, d.m_bMarcasTerreno, d.m_bVerPlanos,
                              d.m_bVerPuntosConPlanos, d.m_bImagenFondo, d.m_nCalidadTextos}) {
        EXPECT_EQ(apagado, 0);
    }
    EXPECT_TRUE(d.m_GamaColor == Vertiz::CDataGamaColor(L""));
    EXPECT_TRUE(d.m_VerObjetosMDT.empty());
    EXPECT_TRUE(d.m_SzImagenFondo.IsEmpty());
    EXPECT_EQ(d.m_nAlturaTextos, 14);
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

    CDataGL a;
    a.m_VerObjetosMDT = {{3, true}, {4, true}};
    for (const Vertiz::CInfoClasificacion& otro : {Vertiz::CInfoClasificacion{5, true}, {4, false}}) {
        CDataGL b = a;
        EXPECT_TRUE(a == b);
        b.m_VerObjetosMDT.back() = otro;
        EXPECT_FALSE(a == b);
    }
}
