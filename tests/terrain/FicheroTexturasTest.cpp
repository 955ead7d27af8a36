// The layout of the file of tiles against sums of its own, its name, and reading it.

#include "terrain/FicheroTexturas.h"

#include "EscenaImagen.h"

#include <set>
#include <utility>

namespace {

using Lados = std::vector<std::pair<int, int>>;

Lados LadosDe(int ancho, int alto, bool piramide) {
    Lados lados;
    for (const CNivelTexturas& n : NivelesTexturas(ancho, alto, 1, piramide))
        lados.emplace_back(n.ancho, n.alto);
    return lados;
}

TEST(FicheroTexturas, LevelsHalveUntilBothSidesAreGone) {
    EXPECT_EQ(LadosDe(8, 8, true), (Lados{{8, 8}, {4, 4}, {2, 2}, {1, 1}}));
    EXPECT_EQ(LadosDe(8, 2, true), (Lados{{8, 2}, {4, 1}, {2, 0}, {1, 0}}));
    EXPECT_EQ(LadosDe(5, 3, true), (Lados{{5, 3}, {2, 1}, {1, 0}}));
    EXPECT_EQ(LadosDe(1, 1, true), (Lados{{1, 1}}));
    EXPECT_EQ(LadosDe(1024, 1024, true).size(), 11u);
}

TEST(FicheroTexturas, WithoutAPyramidThereIsTheFullLevelAlone) {
    EXPECT_EQ(LadosDe(8, 2, false), (Lados{{8, 2}}));
}

TEST(FicheroTexturas, TilesWithoutPixelsHaveNoLevels) {
    EXPECT_TRUE(LadosDe(0, 8, true).empty());
    EXPECT_TRUE(LadosDe(8, -1, false).empty());
}

TEST(FicheroTexturas, SlotsAreAsLongAsPicturesWithPaddedRows) {
    for (const auto& [ancho, fila] : {std::pair(1, 4), {2, 8}, {3, 12}, {4, 12}, {5, 16}, {1024, 3072}}) {
        EXPECT_EQ(NivelesTexturas(ancho, 3, 1, false)[0].bytes, 3 * fila) << ancho;
        EXPECT_EQ(NivelesTexturas(ancho, 3, 1, false)[0].BytesFila(), std::size_t(3 * ancho));
    }
}

TEST(FicheroTexturas, EveryTileHasItsPlace) {
    for (const auto& [ancho, alto] : {std::pair(8, 8), {16, 4}, {5, 7}, {1, 1}})
        for (const int cols : {1, 3})
            for (const int filas : {1, 2}) {
                const Teselado t{filas, cols, ancho, alto, true};
                const CDataTexturas r = t.Registro();
                std::int64_t esperado = 0;
                int w = ancho, h = alto;
                const auto niveles = NivelesTexturas(r);
                for (const CNivelTexturas& nivel : niveles) {
                    ASSERT_EQ(nivel.ancho, w);
                    for (unsigned f = 0; f < unsigned(filas); ++f)
                        for (unsigned c = 0; c < unsigned(cols); ++c) {
                            EXPECT_EQ(nivel.Posicion(r.Tesela(f, c)), esperado);
                            esperado += (w * 24 + 31) / 32 * 4 * h;
                        }
                    w /= 2, h /= 2;
                }
                EXPECT_EQ(niveles.back().Fin(r.NumTeselas()), esperado);
                EXPECT_EQ(std::size_t(esperado), t.Fichero().size());
            }
}

TEST(FicheroTexturas, ALevelLiesBeyondFourGigabytesWhereItHasTo) {
    const auto niveles = NivelesTexturas(1024, 1024, 3000, true);
    EXPECT_EQ(niveles[1].inicio, std::int64_t(3) * 1024 * 1024 * 3000);
    EXPECT_EQ(niveles[1].Posicion(2), niveles[1].inicio + 2 * 3 * 512 * 512);
}

TEST(FicheroTexturas, SizesOfARecordFollowFromItsTiles) {
    CDataTexturas r = Teselado{3, 5, 10, 6}.Registro();
    r.m_nSizeTextura = 0, r.m_nSizeNivel0 = 0;
    ASSERT_TRUE(FijaTamanosTextura(r));
    EXPECT_EQ(r.m_nSizeTextura, 32 * 6);
    EXPECT_EQ(r.m_nSizeNivel0, 32 * 6 * 15);
}

TEST(FicheroTexturas, SizesThatDoNotFitAreRefused) {
    const auto fija = [](int filas, int cols, int ancho, int alto) {
        CDataTexturas r;
        r.m_nNumFilas = filas, r.m_nNumCols = cols, r.m_nAnchoTextura = ancho, r.m_nAltoTextura = alto;
        return FijaTamanosTextura(r);
    };
    EXPECT_TRUE(fija(1, 1, 1 << 14, 1 << 15));
    EXPECT_FALSE(fija(1, 1, 1 << 15, 1 << 15)) << "a slot of 3 GiB";
    EXPECT_FALSE(fija(1, 1, 2147483647, 1));
    EXPECT_TRUE(fija(2147483647, 1, 1, 1));
    EXPECT_FALSE(fija(65536, 65536, 1, 1)) << "too many slots";
    EXPECT_FALSE(fija(0, 1, 8, 8));
    EXPECT_FALSE(fija(1, 1, 0, 8));
    EXPECT_FALSE(fija(1, 1, 8, -8));
}

TEST(FicheroTexturas, ANewFileHasAFreshNameInItsFolder) {
    const CarpetaTemporal carpeta;
    std::set<std::string> nombres;
    std::vector<FicheroPasajero> ficheros;
    for (const std::string fin : {"", "/", "\\"})
        for (int i = 0; i < 3; ++i) {
            ficheros.push_back(CreaFicheroTexturas(Ancha(carpeta.Ruta()) + CString(fin.c_str())));
            ASSERT_TRUE(ficheros.back());
            EXPECT_TRUE(ficheros.back()->IsOpen());
            const std::filesystem::path ruta = RutaSistema(ficheros.back()->GetFilePath());
            EXPECT_EQ(ruta.parent_path(), carpeta.Ruta());
            EXPECT_THAT(ruta.filename().string(), testing::MatchesRegex("Texturas[0-9]+\\.tmp"));
            EXPECT_GE(ruta.stem().string().size(), std::string("Texturas").size() + 11)
                << "seconds, milliseconds, count";
            EXPECT_TRUE(nombres.insert(ruta.string()).second);
        }
    EXPECT_EQ(carpeta.CuentaFicheros(), 9u);
    char dato = 'x';
    EXPECT_TRUE(ficheros[0]->Write(&dato, 1));
    ficheros[0]->SeekToBegin();
    EXPECT_EQ(ficheros[0]->Read(&dato, 1), 1u);
}

TEST(FicheroTexturas, WithoutAFolderItIsTheBareName) {
    const CarpetaTemporal carpeta;
    const auto antes = std::filesystem::current_path();
    std::filesystem::current_path(carpeta.Ruta());
    const FicheroPasajero fichero = CreaFicheroTexturas(CString());
    std::filesystem::current_path(antes);
    ASSERT_TRUE(fichero);
    EXPECT_EQ(carpeta.CuentaFicheros(), 1u);
}

TEST(FicheroTexturas, InAFolderThatIsNotThereItIsNotMade) {
    const CarpetaTemporal carpeta;
    EXPECT_FALSE(CreaFicheroTexturas(Ancha(carpeta / "none")));
    EXPECT_FALSE(CreaFicheroTexturas(Ancha(carpeta.Escribe("a file", "x"))));
}

TEST(FicheroTexturas, AFileThatIsNotHandedOverGoesWithItsPointer) {
    const CarpetaTemporal carpeta;
    { const FicheroPasajero fichero = CreaFicheroTexturas(Ancha(carpeta.Ruta())); }
    EXPECT_EQ(carpeta.CuentaFicheros(), 0u);
    { delete CreaFicheroTexturas(Ancha(carpeta.Ruta())).release(); }
    EXPECT_EQ(carpeta.CuentaFicheros(), 1u);
}

TEST(FicheroTexturas, WhatAFileDoesNotHaveIsWhite) {
    const CarpetaTemporal carpeta;
    CFile f(Ancha(carpeta.Escribe("f", "abcdef")), CFile::modeRead);
    std::vector<BYTE> datos(5, BYTE{7});
    ASSERT_TRUE(LeeTesela(f, 1, datos));
    EXPECT_EQ(datos, (std::vector<BYTE>{'b', 'c', 'd', 'e', 'f'}));
    ASSERT_TRUE(LeeTesela(f, 4, datos));
    EXPECT_EQ(datos, (std::vector<BYTE>{'e', 'f', 255, 255, 255}));
    ASSERT_TRUE(LeeTesela(f, 1000, datos));
    EXPECT_EQ(datos, std::vector<BYTE>(5, BYTE{255}));
}

TEST(FicheroTexturas, AFileThatCannotBeReadIsAFailure) {
    const CarpetaTemporal carpeta;
    CFile f(Ancha(carpeta.Escribe("f", "abcdef")), CFile::modeWrite);
    std::vector<BYTE> datos(5);
    EXPECT_FALSE(LeeTesela(f, 0, datos));
    f.Close();
    EXPECT_FALSE(LeeTesela(f, 0, datos));
}

}  // namespace
