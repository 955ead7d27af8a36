#include "model/CTipoDat.h"

#include <gtest/gtest.h>

namespace Vertiz {
namespace {

TEST(CTipoDat, KnowsItsKind) {
    EXPECT_TRUE(CTipoDat(0, "nuevo").EsGrafico());
    EXPECT_TRUE(CTipoDat(CTipoEntidad::Clotoide, "").EsGrafico());
    EXPECT_TRUE(CTipoDat(CTipoEntidad::Clotoide, "").EsClotoide());
    EXPECT_TRUE(CTipoDat(CTipoEntidad::Parabola, "").EsParabola());
    EXPECT_TRUE(CTipoDat(CTipoEntidad::Texto, "").EsTexto());
    EXPECT_FALSE(CTipoDat(CTipoEntidad::Texto, "").EsGrafico());
    EXPECT_TRUE(CTipoDat(2, "").EsSetPuntos());
    EXPECT_FALSE(CTipoDat(2, "").EsGrafico());
    EXPECT_EQ(CTipoDat(77, "").GetTipoEntidad(), CTipoEntidad::Linea);
    EXPECT_EQ(CTipoDat(-1, "").GetTipoEntidad(), CTipoEntidad::Linea);
}

TEST(CTipoDat, CarriesADeletionMarkAndACode) {
    CTipoDat tipo(0, "nuevo");
    EXPECT_FALSE(tipo.EsBorrado());
    tipo.SetBorrado(true);
    EXPECT_TRUE(tipo.EsBorrado());
    EXPECT_TRUE(tipo.EsGrafico());
    tipo.SetCodigo(L"año");
    EXPECT_EQ(tipo.GetCodigo(), L"año");
    EXPECT_FALSE(tipo == CTipoDat(0, L"año"));
    tipo.SetBorrado(false);
    EXPECT_TRUE(tipo == CTipoDat(0, L"año"));
    EXPECT_FALSE(tipo == CTipoDat(1, L"año"));
}

TEST(CTipoDat, ComparesItsCodeWithAPattern) {
    const CTipoDat tipo(0, "CURVA10");
    for (const char* si : {"CURVA10", "*", "CURVA*", "*10", "C*A1*", "**", "*U*R*", "CURVA10*"}) {
        EXPECT_TRUE(tipo.ComparaCodigo(si)) << si;
    }
    for (const char* no : {"", "CURVA", "CURVA1", "CURVA100", "curva10", "*11", "*A", "X*", "C*B*"}) {
        EXPECT_FALSE(tipo.ComparaCodigo(no)) << no;
    }
    EXPECT_TRUE(CTipoDat().ComparaCodigo(""));
    EXPECT_TRUE(CTipoDat().ComparaCodigo("*"));
    EXPECT_FALSE(CTipoDat().ComparaCodigo("0"));
    EXPECT_TRUE(CTipoDat(0, "aaab").ComparaCodigo("*ab"));
}

}  // namespace
}  // namespace Vertiz
