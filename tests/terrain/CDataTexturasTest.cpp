// The records of draped images, and what copying them means.

#include "terrain/CDataTexturas.h"

#include "EscenaImagen.h"
#include "terrain/CDataTexturaSimple.h"
#include "model/CTexto.h"

namespace {

using Vertiz::CDibujo;
using Vertiz::CLinea;

class Registros : public testing::Test {
  protected:
    CarpetaTemporal m_carpeta;
    Teselado m_teselado{2, 3, 4, 4, true};

    // A record with an open file and texture objects.
    CDataTexturas Cargado() {
        CDataTexturas r = m_teselado.Escribe(m_carpeta, "source.tmp");
        r.m_pFichero = std::make_shared<CFile>(r.m_sNombreFichero, CFile::modeReadWrite);
        r.m_pTexturas = std::make_shared<CTexturasGL>();
        r.m_pTexturas->nombres = {11, 12, 13, 14, 15, 16};
        r.m_pTexturas->llenas = {1, 0, 0, 0, 0, 1};
        return r;
    }
};

TEST_F(Registros, ANewOneIsEmpty) {
    const CDataTexturas r;
    EXPECT_EQ(r.m_dSizePixel, 1.0);
    EXPECT_EQ(r.m_Transformacion.m_UnidadAngular.GetCodigo(), 3);
    EXPECT_EQ(r.NumTeselas(), 0u);
    EXPECT_FALSE(r.TieneFichero());
    EXPECT_FALSE(r.EstaDisponible());
    EXPECT_EQ(r.m_bPiramidales + r.m_bCargada + r.m_bCompartida + r.m_bPrestada, 0);
    EXPECT_EQ(r.IdTextura(0, 0), 0u);
}

TEST_F(Registros, TilesAreNumberedByRowsAndAskedForWithinTheLayout) {
    const CDataTexturas r = Cargado();
    EXPECT_EQ(r.NumTeselas(), 6u);
    EXPECT_EQ(r.IdTextura(0, 0), 11u);
    EXPECT_EQ(r.IdTextura(1, 0), 14u);
    EXPECT_EQ(r.IdTextura(1, 2), 16u);
    EXPECT_EQ(r.IdTextura(0, 3), 0u);
    EXPECT_EQ(r.IdTextura(2, 0), 0u);
    EXPECT_TRUE(r.EstaLlena(0, 0));
    EXPECT_FALSE(r.EstaLlena(0, 1));
    EXPECT_TRUE(r.EstaLlena(1, 2));
    EXPECT_FALSE(r.EstaLlena(2, 0));
    EXPECT_TRUE(r.EstaDisponible());
}

TEST_F(Registros, ALayoutThatGrewBeyondItsObjectsHasNoneThere) {
    CDataTexturas r = Cargado();
    r.m_nNumFilas = 5;
    EXPECT_EQ(r.IdTextura(4, 0), 0u);
    r.m_nNumFilas = -5;
    EXPECT_EQ(r.NumTeselas(), 0u);
    EXPECT_EQ(r.IdTextura(0, 0), 0u);
}

TEST_F(Registros, DuplicaCopiesEveryPlainField) {
    CDataTexturas r = Cargado();
    int n = 100;
    for (int CDataTexturas::*campo :
         {&CDataTexturas::m_bPiramidales, &CDataTexturas::m_bCargada, &CDataTexturas::m_nAnchoImagen,
          &CDataTexturas::m_nAltoImagen, &CDataTexturas::m_nCeldasFila, &CDataTexturas::m_nCeldasCol,
          &CDataTexturas::m_nDespCol, &CDataTexturas::m_nDespFila, &CDataTexturas::m_nAnchoUtil,
          &CDataTexturas::m_nAltoUtil, &CDataTexturas::m_nSizeTextura})
        r.*campo = n++;
    r.m_nSizeNivel0 = 1LL << 40;
    r.m_dSizePixel = 0.25, r.m_dOrigenX = 1.5, r.m_dOrigenY = -2.5;
    r.m_Transformacion.m_nTipo = 4;
    r.m_sNombreImagen = L"año.tif";
    r.m_ZonasLibres.emplace_back(Vertiz::CCoor3D<int>(1, 2, 0), Vertiz::CCoor3D<int>(3, 4, 0));
    r.m_TriangulosTextura = {{1, 2}, {}, {3}};
    CDataTexturas copia;
    copia.Duplica(r);
    n = 100;
    for (int CDataTexturas::*campo :
         {&CDataTexturas::m_bPiramidales, &CDataTexturas::m_bCargada, &CDataTexturas::m_nAnchoImagen,
          &CDataTexturas::m_nAltoImagen, &CDataTexturas::m_nCeldasFila, &CDataTexturas::m_nCeldasCol,
          &CDataTexturas::m_nDespCol, &CDataTexturas::m_nDespFila, &CDataTexturas::m_nAnchoUtil,
          &CDataTexturas::m_nAltoUtil, &CDataTexturas::m_nSizeTextura})
        EXPECT_EQ(copia.*campo, n++);
    EXPECT_EQ(copia.m_nSizeNivel0, 1LL << 40);
    EXPECT_EQ(copia.m_nNumFilas, 2);
    EXPECT_EQ(copia.m_nNumCols, 3);
    EXPECT_EQ(copia.m_nAnchoTextura, 4);
    EXPECT_EQ(copia.m_nAltoTextura, 4);
    EXPECT_EQ(copia.m_dSizePixel, 0.25);
    EXPECT_EQ(copia.m_dOrigenX, 1.5);
    EXPECT_EQ(copia.m_dOrigenY, -2.5);
    EXPECT_EQ(copia.m_Transformacion.m_nTipo, 4);
    EXPECT_EQ(copia.m_sNombreImagen, L"año.tif");
    EXPECT_EQ(copia.m_ZonasLibres, r.m_ZonasLibres);
    EXPECT_EQ(copia.m_TriangulosTextura, r.m_TriangulosTextura);
}

TEST_F(Registros, ADuplicateHasAnOpenFileOfItsOwnBesideTheSource) {
    const CDataTexturas r = Cargado();
    CDataTexturas copia;
    copia.Duplica(r);
    ASSERT_TRUE(copia.TieneFichero());
    EXPECT_TRUE(r.TieneFichero());
    EXPECT_NE(copia.m_sNombreFichero, r.m_sNombreFichero);
    EXPECT_EQ(CarpetaRuta(copia.m_sNombreFichero), CarpetaRuta(r.m_sNombreFichero));
    EXPECT_NE(copia.m_pFichero, r.m_pFichero);
    EXPECT_EQ(copia.m_pFichero->GetFilePath(), copia.m_sNombreFichero);
    EXPECT_EQ(Contenido(copia.m_sNombreFichero), m_teselado.Fichero());
    copia.m_pFichero->SeekToBegin();
    EXPECT_TRUE(copia.m_pFichero->Write("changed", 7)) << "for reading and writing";
    EXPECT_EQ(Contenido(r.m_sNombreFichero), m_teselado.Fichero());
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 2u);
}

TEST_F(Registros, ADuplicateSharesTheTextureObjectsAndTheSourceIsMarked) {
    const CDataTexturas r = Cargado();
    CDataTexturas copia;
    copia.Duplica(r);
    EXPECT_EQ(r.m_bCompartida, 1);
    EXPECT_EQ(copia.m_bCompartida, 0);
    EXPECT_EQ(copia.IdTextura(1, 1), 15u);
    EXPECT_TRUE(copia.EstaLlena(0, 0));
    EXPECT_EQ(r.m_pTexturas->duenos, 2u);
}

TEST_F(Registros, WhenTheFileCannotBeCopiedThereIsNoneAndNoNameOfOne) {
    CDataTexturas r = Cargado();
    std::filesystem::remove(RutaSistema(r.m_sNombreFichero));
    CDataTexturas copia;
    copia.Duplica(r);
    EXPECT_FALSE(copia.TieneFichero());
    EXPECT_EQ(copia.m_pFichero, nullptr);
    EXPECT_TRUE(copia.m_sNombreFichero.IsEmpty());
    EXPECT_TRUE(r.TieneFichero()) << "the source goes on";
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u) << "nothing is left behind";
}

TEST_F(Registros, WithoutAnOpenFileTheDuplicateHasNone) {
    CDataTexturas r = Cargado();
    r.m_pFichero->Close();
    r.m_pTexturas = nullptr;
    CDataTexturas copia;
    copia.Duplica(r);
    EXPECT_EQ(copia.m_pFichero, nullptr);
    EXPECT_EQ(copia.m_sNombreFichero, r.m_sNombreFichero);
    EXPECT_EQ(copia.m_bPrestada, 1) << "the name is that of the source's file";
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
}

TEST_F(Registros, ADuplicateOfItselfIsItself) {
    CDataTexturas r = Cargado();
    const CDataTexturas& misma = r;
    r.Duplica(misma);
    EXPECT_TRUE(r.TieneFichero());
    EXPECT_EQ(r.m_pTexturas->duenos, 1u);
}

TEST(CDataTexturaSimple, DuplicaCopiesTheColourAndClonesTheDrawing) {
    CDataTexturaSimple a{0x123456, std::make_shared<CDibujo<int>>()}, b;
    a.m_pDibujo->Inserta(CLinea<int>(CString(L"L")));
    b.Duplica(a);
    EXPECT_EQ(b.m_nColor, 0x123456u);
    ASSERT_TRUE(b.m_pDibujo);
    EXPECT_NE(b.m_pDibujo, a.m_pDibujo);
    EXPECT_EQ(b.m_pDibujo->Cantidad(), 1u);
    b.Duplica(CDataTexturaSimple{});
    EXPECT_FALSE(b.m_pDibujo);
}

}  // namespace
