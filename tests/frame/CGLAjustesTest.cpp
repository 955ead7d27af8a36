// The accessors of the settings.

#include "EscenaPrueba.h"

TEST(CGLAjustes, SomeSettersHandBackTheFormerValue) {
    EscenaPrueba e;
    EXPECT_EQ(e.SetQuad(1), 2U);
    EXPECT_EQ(e.SetQuad(3), 1U);
    EXPECT_EQ(e.SetBase(1), 0);
    EXPECT_EQ(e.SetLimites(1), 0);
    EXPECT_EQ(e.SetPuntosCamara(0), 1);
    EXPECT_EQ(e.SetRelleno(1), 0);
    EXPECT_EQ(e.SetEdificios(0), 1);
    EXPECT_EQ(e.SetArboles(0), 1);
    EXPECT_EQ(e.SetRupturas(0), 1);
    EXPECT_EQ(e.SetRotacion(0), 1);
    EXPECT_EQ(e.SetOrtogonal(0), 1);
    EXPECT_EQ(e.SetLuz(0), 1);
    EXPECT_EQ(e.SetEjes(2), 1U);
    EXPECT_EQ(e.SetReferencia(0), 1);
    EXPECT_EQ(e.SetCurvado(1), 0);
    EXPECT_EQ(e.SetTipoColorMDT(6), 1U);
    EXPECT_EQ(e.GetTipoColorMDT(), 6U);
    EXPECT_EQ(e.GetEjes(), 2U);
    EXPECT_EQ(e.m_Data.m_nModoRelleno, 6U);
}

TEST(CGLAjustes, ProjectLimitsAlsoDecideWhetherTheExtentsCount) {
    EscenaPrueba e;
    EXPECT_EQ(e.SetLimitesProyecto(0), 1);
    EXPECT_EQ(e.m_Data.m_bMaximasObjeto, 0);
    EXPECT_EQ(e.GetLimitesProyecto(), 0);
}

TEST(CGLAjustes, ALightParameterOutOfRangeReads0AndWritesNothing) {
    EscenaPrueba e;
    EXPECT_EQ(e.GetLightParam(3), 59);
    e.SetLightParam(80, 3);
    EXPECT_EQ(e.GetLightParam(3), 80);
    const CDataGL antes = e.GetData();
    e.SetLightParam(80, 11);
    e.SetLightParam(80, -1);
    EXPECT_EQ(e.GetLightParam(11), 0);
    EXPECT_EQ(e.GetLightParam(-1), 0);
    for (short i = 0; i < 11; ++i)
        EXPECT_EQ(e.GetLightParam(i), antes.m_nLuzParam[i]);
}

TEST(CGLAjustes, TheViewIsOrthographicUnlessOffOrSpherical) {
    EscenaPrueba e;
    EXPECT_TRUE(e.EsOrtografica());
    e.SetOrtogonal(0);
    EXPECT_FALSE(e.EsOrtografica());
    e.SetOrtogonal(1);
    e.SetTipo(8);
    EXPECT_FALSE(e.EsOrtografica());
    EXPECT_TRUE(e.EsEsferica());
    e.SetTipo(2);
    e.SetImagenEsfericaFondo();
    EXPECT_TRUE(e.EsEsferica());
    EXPECT_TRUE(e.EsImagenEsfericaFondo());
    e.SetImagenConicaFondo();
    EXPECT_TRUE(e.EsOrtografica());
    EXPECT_TRUE(e.TieneImagenConica());
    e.SetImagenOrtoFondo();
    EXPECT_TRUE(e.TieneImagenOrto());
    EXPECT_TRUE(e.HayImagen());
}
