// Looking styles up in a digitising table.

#include "model/CDigiTab.h"

#include <gtest/gtest.h>

namespace {

using Vertiz::CDigiTab;
using Vertiz::CElementoDigiTab;
using Vertiz::CTipoDat;
using Vertiz::CTipoEntidad;

CElementoDigiTab Fila(int tipo, const CString& codigo, int rojo, int visible = 1) {
    return CElementoDigiTab(tipo, codigo, BYTE(rojo), 0, 0, 1, 0, L"", visible);
}

// The red of the row found, -1 when there is none.
int Rojo(const CDigiTab& tabla, const CString& codigo, CTipoEntidad tipo = CTipoEntidad::Linea) {
    const CElementoDigiTab* fila = tabla.Busca(codigo, tipo);
    return fila ? GetRValue(fila->GetColor()) : -1;
}

TEST(CElementoDigiTab, KeepsWhatItIsMadeOf) {
    const CElementoDigiTab e(CTipoEntidad::Texto, L"ROAD", 1, 2, 3, 2.5F, 4, L"Roads", 0);
    EXPECT_EQ(e.GetCodigo(), L"ROAD");
    EXPECT_TRUE(e.EsTexto());
    EXPECT_EQ(e.GetColor(), 0x030201U);
    EXPECT_EQ(e.GetGrosor(), 2.5F);
    EXPECT_EQ(e.GetEstilo(), 4);
    EXPECT_EQ(e.GetTexto(), L"Roads");
    EXPECT_FALSE(e.EsVisible());
}

TEST(CDigiTab, FailingLookUpLeavesTheElementAsItWas) {
    CDigiTab tabla;
    tabla.Inserta(Fila(0, L"A", 10), false);
    CElementoDigiTab e(0, L"nuevo", 70, 70, 70, 0, 0, L"", 1);
    EXPECT_FALSE(tabla.GetElemento(CTipoDat(0, L"B"), e));
    EXPECT_EQ(e.GetCodigo(), L"nuevo");
    EXPECT_EQ(e.GetColor(), RGB(70, 70, 70));
    EXPECT_TRUE(tabla.GetElemento(L"A", CTipoEntidad::Linea, e));
    EXPECT_EQ(e.GetColor(), RGB(10, 0, 0));
}

TEST(CDigiTab, RowOfTheVeryCodeAndKindIsPreferred) {
    CDigiTab tabla;
    tabla.Inserta(Fila(0, L"*", 1), false);
    tabla.Inserta(Fila(0, L"A*", 2), false);
    tabla.Inserta(Fila(0, L"AB", 3), false);
    tabla.Inserta(Fila(1, L"AB", 4), false);
    EXPECT_EQ(Rojo(tabla, L"AB"), 3);
    EXPECT_EQ(Rojo(tabla, L"AB", CTipoEntidad::Texto), 4);
    EXPECT_EQ(Rojo(tabla, L"AB", CTipoEntidad::SetPuntos), 3);
    EXPECT_EQ(Rojo(tabla, L"AC"), 1) << "the first pattern that fits";
    EXPECT_EQ(Rojo(tabla, L"ab"), 1) << "case counts";
}

TEST(CDigiTab, RowForTextsDoesNotServeLines) {
    CDigiTab tabla;
    tabla.Inserta(Fila(1, L"A", 5), false);
    EXPECT_EQ(Rojo(tabla, L"A"), -1);
}

TEST(CDigiTab, CodeStandsOnceUnlessForced) {
    CDigiTab tabla;
    EXPECT_TRUE(tabla.Inserta(Fila(0, L"A", 1), false));
    EXPECT_FALSE(tabla.Inserta(Fila(0, L"A", 2), false));
    EXPECT_EQ(Rojo(tabla, L"A"), 1);
    EXPECT_TRUE(tabla.Inserta(Fila(0, L"A", 3), true));
    EXPECT_EQ(Rojo(tabla, L"A"), 3);
    EXPECT_EQ(tabla.Cantidad(), 1U);

    EXPECT_TRUE(tabla.Inserta(Fila(0, L"B", 4), false));
    EXPECT_FALSE(tabla.ModificaElemento(1, Fila(0, L"A", 5), false));
    EXPECT_TRUE(tabla.ModificaElemento(1, Fila(0, L"A", 5), true));
    EXPECT_EQ(Rojo(tabla, L"A"), 3) << "the first one counts";
    EXPECT_EQ(Rojo(tabla, L"B"), -1);
    EXPECT_FALSE(tabla.ModificaElemento(2, Fila(0, L"C", 6), true)) << "no such row";
}

TEST(CDigiTab, ManyRowsAreFoundWhereTheyStand) {
    CDigiTab tabla;
    CString codigo;
    for (int i = 0; i < 256; i++) {
        codigo.Format(L"%d", i);
        tabla.Inserta(Fila(0, codigo, i), false);
    }
    for (int i = 0; i < 256; i += 3) {
        codigo.Format(L"x%d", i);
        tabla.ModificaElemento(unsigned(i), Fila(0, codigo, 255 - i), true);
    }
    for (int i = 0; i < 256; i++) {
        codigo.Format(i % 3 == 0 ? L"x%d" : L"%d", i);
        EXPECT_EQ(Rojo(tabla, codigo), i % 3 == 0 ? 255 - i : i);
        EXPECT_EQ(tabla[unsigned(i)].GetCodigo(), codigo);
    }
}

TEST(CDigiTab, HiddenRowsMakeATableOfTheirOwn) {
    CDigiTab tabla;
    tabla.Inserta(Fila(0, L"A", 1, 0), false);
    tabla.Inserta(Fila(0, L"B", 2, 1), false);
    tabla.Inserta(Fila(0, L"C", 3, 0), false);
    const CDigiTab ocultos = tabla.DameOcultos();
    EXPECT_EQ(ocultos.Cantidad(), 2U);
    EXPECT_EQ(Rojo(ocultos, L"A"), 1);
    EXPECT_EQ(Rojo(ocultos, L"B"), -1);
    EXPECT_EQ(Rojo(ocultos, L"C"), 3);
    tabla.clear();
    EXPECT_EQ(tabla.DameOcultos().Cantidad(), 0U);
    EXPECT_EQ(Rojo(tabla, L"A"), -1);
}

}  // namespace
