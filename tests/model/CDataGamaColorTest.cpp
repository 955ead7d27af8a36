// The ramp's order, its text, and its way through the stores of settings.

#include "model/CDataGamaColor.h"

#include "platform/CWinApp.h"
#include "platform/Perfil.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Vertiz;

namespace {

class Aplicacion : public CWinApp {
  public:
    explicit Aplicacion(const CarpetaTemporal& carpeta) : CWinApp(L"prueba") {
        m_pszProfileName = CString((carpeta / "perfil.ini").c_str());
    }
};

CDataGamaColor Dificil() {
    CDataGamaColor gama;
    gama.Inserta({1.0 / 3.0, 255, 0, 7});
    gama.Inserta({-12345.678901234567, 1, 2, 3});
    gama.Inserta({std::numeric_limits<double>::max(), 9, 99, 199});
    gama.Inserta({5e-324, 0, 0, 0});
    for (int i = 0; i < 200; ++i)
        gama.Inserta({100.0 + i / 7.0, BYTE(i), BYTE(255 - i), 30});
    return gama;
}

}  // namespace

TEST(CDataGamaColor, TheEmptyTextHasNoStops) {
    EXPECT_TRUE(CDataGamaColor(L"").EstaVacia());
    EXPECT_TRUE(CDataGamaColor(L"  ").EstaVacia());
    EXPECT_EQ(CDataGamaColor().Texto(), L"");
}

TEST(CDataGamaColor, StopsAreOrderedAndNoTwoAreAtOneHeight) {
    const CDataGamaColor gama(L"30 1 2 3; -5.5 4 5 6 ;30 7 8 9;0 0 0 255;");
    ASSERT_EQ(gama.Paradas().size(), 3u);
    EXPECT_EQ(gama.Paradas()[0], (CColorCota{-5.5, 4, 5, 6}));
    EXPECT_EQ(gama.Paradas()[1], (CColorCota{0.0, 0, 0, 255}));
    EXPECT_EQ(gama.Paradas()[2], (CColorCota{30.0, 7, 8, 9}));
    EXPECT_EQ(gama.Texto(), L"-5.5 4 5 6;0 0 0 255;30 7 8 9");
}

TEST(CDataGamaColor, ATextThatBreaksTheFormHasNoStops) {
    for (const wchar_t* texto : {L"1 2 3", L"1 2 3 256", L"1 2 3 -4", L"1,5 2 3 4", L"1 2 3 4 5", L"x",
                                 L"1 2 3 4;;5 6 7 8", L"nan 1 2 3", L"inf 1 2 3", L"1 2 3 4;ñ", L"1e999 1 2 3"})
        EXPECT_TRUE(CDataGamaColor(texto).EstaVacia()) << CString(texto).Utf8();
    CDataGamaColor gama;
    EXPECT_FALSE(gama.Inserta({std::numeric_limits<double>::infinity(), 1, 2, 3}));
    EXPECT_TRUE(gama.EstaVacia());
}

TEST(CDataGamaColor, TheTextGivesTheSameRampBack) {
    EXPECT_EQ(CDataGamaColor(Dificil().Texto()), Dificil());
    EXPECT_FALSE(CDataGamaColor(L"1 2 3 4") == CDataGamaColor(L"1 2 3 5"));
}

TEST(CDataGamaColor, GoesThroughAnIniFileUnchanged) {
    const CarpetaTemporal carpeta;
    const CString fichero((carpeta / "ajustes ñ.ini").c_str());
    for (const CDataGamaColor& gama : {Dificil(), CDataGamaColor(), CDataGamaColor(L"1 2 3 4")}) {
        gama.WritePrivateProfile(fichero, L"Escena", L"Gama");
        CDataGamaColor leida(L"7 7 7 7");
        leida.GetPrivateProfile(fichero, L"Escena", L"Gama");
        EXPECT_EQ(leida, gama);
    }
}

TEST(CDataGamaColor, WhatTheIniFileLacksOrSpoilsChangesNothing) {
    const CarpetaTemporal carpeta;
    const CString fichero((carpeta / "a.ini").c_str());
    CDataGamaColor gama = Dificil();
    gama.GetPrivateProfile(fichero, L"Escena", L"Gama");
    EXPECT_EQ(gama, Dificil());
    WritePrivateProfileStringW(L"Escena", L"GamaColores", L"1 2 3", fichero);
    gama.GetPrivateProfile(fichero, L"Escena", L"Gama");
    EXPECT_EQ(gama, Dificil());
    WritePrivateProfileStringW(L"Escena", L"GamaColores", L"8 1 2 3", fichero);
    gama.GetPrivateProfile(fichero, L"Escena", L"Otra");
    EXPECT_EQ(gama, Dificil());
    gama.GetPrivateProfile(fichero, L"Escena", L"Gama");
    EXPECT_EQ(gama, CDataGamaColor(L"8 1 2 3"));
}

TEST(CDataGamaColor, GoesThroughTheApplicationsStoreUnchanged) {
    const CarpetaTemporal carpeta;
    const Aplicacion aplicacion(carpeta);
    CDataGamaColor leida(L"7 7 7 7");
    leida.GetProfile(L"Escena", L"Gama");
    EXPECT_EQ(leida, CDataGamaColor(L"7 7 7 7")) << "without the key nothing changes";
    for (const CDataGamaColor& gama : {Dificil(), CDataGamaColor(), CDataGamaColor(L"1 2 3 4")}) {
        gama.WriteProfile(L"Escena", L"Gama");
        leida = CDataGamaColor(L"7 7 7 7");
        leida.GetProfile(L"Escena", L"Gama");
        EXPECT_EQ(leida, gama);
    }
}

TEST(CDataGamaColor, TheTerrainRampReachesBeyondBothEndsAndGrowsLighter) {
    for (const auto& [bajo, alto] : {std::pair{120.0, 2400.0}, std::pair{5.0, 5.0}, std::pair{-10.0, -9.9}}) {
        const CDataGamaColor gama = CDataGamaColor::Terreno(bajo, alto);
        ASSERT_GE(gama.Paradas().size(), 2u);
        EXPECT_LT(gama.Paradas().front().m_dCota, bajo);
        EXPECT_GT(gama.Paradas().back().m_dCota, alto);
        double anterior = -1.0;
        for (const CColorCota& p : gama.Paradas()) {
            const double claridad = 0.299 * p.m_nRojo + 0.587 * p.m_nVerde + 0.114 * p.m_nAzul;
            EXPECT_GT(claridad, anterior);
            anterior = claridad;
        }
    }
    EXPECT_TRUE(CDataGamaColor::Terreno(std::nan(""), 1.0).EstaVacia());
}
