// Headers and directories: byte orders, big files, values in and out of the entry, pages, keys, and what is damaged.

#include "raster/Tiffs.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

namespace {

using namespace tiffs;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Vertiz::CTiff;

constexpr int kNo = 15065;

class CTiffDirectorio : public imagenes::ConTemporales {
  protected:
    std::filesystem::path Fichero(const std::string& bytes) { return m_Carpeta.Escribe("prueba ñ.tif", bytes); }
    int Lee(const std::string& bytes, bool soloCabecera = false) {
        Abierto a(Fichero(bytes));
        if (!a.bCabecera) return -1;
        const int r = a.raster.Leer(soloCabecera);
        if (r != 1) {
            EXPECT_EQ(a.raster.Ancho(), 0);
        }
        return r;
    }
    // Refused with one message, and nothing left.
    void Rechaza(const std::string& bytes) {
        Progreso progreso;
        EXPECT_EQ(Lee(bytes), kNo);
        EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
};

// 2 x 2 greys.
Fabrica Gris(bool grande = false, bool motorola = false) {
    Fabrica f(grande, motorola);
    f.Imagen(2, 2, 1, 8, 1).Trozos({"abcd"});
    return f;
}

std::vector<BYTE> Letras(std::string_view s) {
    return {s.begin(), s.end()};
}

TEST_F(CTiffDirectorio, ReadsTheSameFromClassicAndBigFilesInBothByteOrders) {
    for (const bool grande : {false, true})
        for (const bool motorola : {false, true}) {
            Fabrica f(grande, motorola);
            f.Imagen(2, 2, 1, 16, 1)
                .PonFraccion(282, 300, 1)
                .Pon(296, Fabrica::Short, {2})
                .Pon(278, Fabrica::Long, {1});
            f.Trozos({f.Numero(0, 2) + f.Numero(1000, 2), f.Numero(500, 2) + f.Numero(250, 2)});
            Abierto a(Fichero(f.Bytes()));
            ASSERT_EQ(a.raster.Leer(false), 1) << grande << motorola;
            EXPECT_EQ(a.raster.Ancho(), 2);
            EXPECT_EQ(a.raster.Alto(), -2);
            EXPECT_EQ(a.raster.Alto100(), 200);
            EXPECT_EQ(a.raster.Resolucion(), 300.0F);
            EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(128, 64, 0, 255));
        }
}

TEST_F(CTiffDirectorio, RefusesWhatIsNoTiff) {
    for (const std::string& s :
         {std::string(), std::string("II"), std::string("II*\0", 4), std::string("XX*\0\10\0\0\0", 8),
          std::string("II\54\0\10\0\0\0", 8), std::string("II\53\0\10\0\0\0\20\0\0\0", 12)}) {
        Abierto a(Fichero(s));
        EXPECT_FALSE(a.bCabecera);
        EXPECT_EQ(a.raster.Leer(false), 2);
    }
    CTiff sin;
    EXPECT_FALSE(sin.SetFichero(nullptr));
    EXPECT_EQ(sin.Leer(true), 2);
}

TEST_F(CTiffDirectorio, TakesTwoShortsFromTheEntryAndThreeFromTheirOffset) {
    // Two strips with offsets in SHORT: both fit into the entry's four bytes.
    Fabrica f;
    f.Imagen(2, 2, 1, 8, 1).Pon(278, Fabrica::Short, {1}).Trozos({"ab", "cd"});
    f.Pon(273, Fabrica::Short, {8, 10}).Pon(279, Fabrica::Short, {2, 2});
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_EQ(imagenes::Pixeles(a.raster), Letras("cdab"));
    Fabrica g;
    g.Imagen(2, 3, 1, 8, 1).Pon(278, Fabrica::Short, {1}).Trozos({"ab", "cd", "ef"});
    g.Pon(273, Fabrica::Short, {8, 10, 12}).Pon(279, Fabrica::Short, {2, 2, 2});
    Abierto b(Fichero(g.Bytes()));
    ASSERT_EQ(b.raster.Leer(false), 1);
    EXPECT_EQ(imagenes::Pixeles(b.raster), Letras("efcdab"));
}

TEST_F(CTiffDirectorio, ABigFileHoldsFourShortsInTheEntry) {
    Fabrica f(true);
    f.Imagen(1, 1, 4, 8, 2).Trozos({"rgba"});
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_EQ(imagenes::Pixeles(a.raster), Letras("bgr"));
}

TEST_F(CTiffDirectorio, AHeaderTellsTheFileAndAPictureWhatIsStored) {
    Fabrica f;
    f.Imagen(1, 2, 4, 16, 2).Trozos({std::string(16, 'x')});
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(true), 1);
    EXPECT_EQ(a.raster.Alto(), -2);
    EXPECT_EQ(a.raster.NumMuestras(), 4);
    EXPECT_EQ(a.raster.BytesMuestra(), 8);
    EXPECT_EQ(a.raster.BytesPixel(), 3);
    BYTE pixel[3]{};
    EXPECT_FALSE(a.raster.GetPixel(pixel, 0, 0, 0));
    a.raster.SetFichero(&a.fichero);
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_EQ(a.raster.NumMuestras(), 3);
    EXPECT_EQ(a.raster.BytesMuestra(), 3);
}

TEST_F(CTiffDirectorio, TellsTheResolutionInDotsPerInch) {
    const auto resolucion = [&](unsigned unidad) {
        Fabrica f = Gris();
        f.PonFraccion(282, 100, 1).Pon(296, Fabrica::Short, {unidad});
        Abierto a(Fichero(f.Bytes()));
        EXPECT_EQ(a.raster.Leer(true), 1);
        return a.raster.Resolucion();
    };
    EXPECT_EQ(resolucion(2), 100.0F);
    EXPECT_FLOAT_EQ(resolucion(3), 254.01F);
    EXPECT_EQ(resolucion(1), 1.0F);
    Fabrica mala = Gris();
    mala.PonFraccion(282, 1, 0);
    EXPECT_EQ(Lee(mala.Bytes()), 1);
}

TEST_F(CTiffDirectorio, WalksThroughThePages) {
    Fabrica uno = Gris(), dos;
    dos.Imagen(1, 1, 1, 8, 1).Trozos({"z"});
    const std::string primera = uno.Bytes();
    const std::string todo = uno.Bytes(primera.size() + dos.BytesTrozos()) + dos.Pagina(primera.size(), 0);
    Abierto a(Fichero(todo));
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_EQ(imagenes::Pixeles(a.raster), Letras("cdab"));
    EXPECT_EQ(a.raster.OffsetDirectorio(), primera.size() + 2);
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_EQ(imagenes::Pixeles(a.raster), Letras("z"));
    EXPECT_EQ(a.raster.OffsetDirectorio(), 0u);
    EXPECT_EQ(a.raster.Leer(false), 2);
    EXPECT_EQ(imagenes::Pixeles(a.raster), Letras("z")) << "the last page stays";
    a.raster.SetFichero(&a.fichero);
    ASSERT_EQ(a.raster.Leer(true), 1);
    EXPECT_EQ(a.raster.Ancho(), 2);
}

TEST_F(CTiffDirectorio, ADirectoryThatPointsToItselfEndsThePages) {
    const Fabrica f = Gris();
    Abierto a(Fichero(f.Bytes(8 + f.BytesTrozos())));
    ASSERT_EQ(a.raster.Leer(false), 1);
    Progreso progreso;
    EXPECT_EQ(a.raster.Leer(false), kNo);
    EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
    EXPECT_EQ(a.raster.Ancho(), 0);
    EXPECT_EQ(a.raster.Leer(false), 2);
}

TEST_F(CTiffDirectorio, ACompressedPageIsToldAndTheNextOneRead) {
    Fabrica uno = Gris(), dos = Gris();
    uno.Pon(259, Fabrica::Short, {5});
    const std::string primera = uno.Bytes();
    Abierto a(Fichero(uno.Bytes(primera.size() + 4) + dos.Pagina(primera.size(), 0)));
    Progreso progreso;
    EXPECT_EQ(a.raster.Leer(false), kNo);
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre("Archivo comprimido"));
    EXPECT_EQ(a.raster.Leer(false), 1);
}

TEST_F(CTiffDirectorio, NothingIsToldAtALowLevelOfMessages) {
    Fabrica f = Gris();
    f.Pon(259, Fabrica::Short, {5});
    Abierto a(Fichero(f.Bytes()));
    a.raster.SetNivelMensajes(1);
    Progreso progreso;
    EXPECT_EQ(a.raster.Leer(false), kNo);
    EXPECT_THAT(progreso.m_Mensajes, IsEmpty());
    Abierto b(Fichero(Gris().Bytes()));
    b.raster.SetNivelMensajes(1);
    EXPECT_EQ(b.raster.Leer(false), 1);
    EXPECT_THAT(progreso.m_Etapas, IsEmpty());
}

TEST_F(CTiffDirectorio, OtherTagsAreSkippedWhateverTheySay) {
    Fabrica f = Gris();
    f.PonCrudo(700, 7, 1ULL << 30, 0xFFFFFFFF).PonCrudo(305, 2, 0x7FFFFFFF, 0xFFFFFFF0).PonCrudo(40000, 99, 5, 5);
    EXPECT_EQ(Lee(f.Bytes()), 1);
}

TEST_F(CTiffDirectorio, ReadsTheGeoreferencing) {
    Fabrica f = Gris();
    f.PonDobles(33550, {0.5, 0.25, 1}).PonDobles(33922, {0, 0, 0, 400000, 4500000, 7, 1, 2, 3, 4, 5, 6});
    f.Pon(34735, Fabrica::Short, {1, 1, 0, 4, 1024, 0, 1, 1, 1025, 0, 1, 1, 2048, 0, 1, 4258, 2054, 0, 1, 9102});
    Abierto a(Fichero(f.Bytes()));
    EXPECT_FALSE(a.raster.TieneGeorreferencia());
    ASSERT_EQ(a.raster.Leer(true), 1);
    ASSERT_TRUE(a.raster.TieneGeorreferencia());
    const auto& g = *a.raster.Georreferencia();
    EXPECT_THAT(g.m_dEscala, ElementsAre(0.5, 0.25, 1.0));
    ASSERT_THAT(g.m_PuntosControl, SizeIs(2));
    EXPECT_THAT(g.m_PuntosControl[0], ElementsAre(0, 0, 0, 400000, 4500000, 7));
    EXPECT_THAT(g.m_PuntosControl[1], ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(g.m_nTipoModelo, 1);
    EXPECT_EQ(g.m_nTipoRaster, 1);
    EXPECT_EQ(g.m_nTipoGeografico, 4258);
    EXPECT_EQ(g.m_nUnidadAngular, 9102);
    EXPECT_EQ(g.m_nUnidadLineal, 9001);
}

TEST_F(CTiffDirectorio, ReadsATransformationAndAKeyAmongTheDoubles) {
    Fabrica f = Gris();
    std::vector<double> matriz(16);
    for (std::size_t i = 0; i < 16; ++i)
        matriz[i] = double(i) + 0.5;
    f.PonDobles(34264, matriz).PonDobles(34736, {1.5, 3.0});
    f.Pon(34735, Fabrica::Short, {1, 1, 0, 2, 1024, 34736, 1, 1, 1025, 34736, 1, 9});
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(true), 1);
    EXPECT_THAT(a.raster.Georreferencia()->m_dTransformacion, testing::ElementsAreArray(matriz));
    EXPECT_EQ(a.raster.Georreferencia()->m_nTipoModelo, 3);
    EXPECT_EQ(a.raster.Georreferencia()->m_nTipoRaster, 2) << "its index lies past the doubles";
}

TEST_F(CTiffDirectorio, ShortGeoreferencingLeavesTheRestAtItsDefault) {
    Fabrica f = Gris();
    f.PonDobles(33550, {2.0}).PonDobles(33922, {1, 2, 3, 4, 5}).PonDobles(34264, {9.0});
    f.Pon(34735, Fabrica::Short, {1, 1, 0, 9, 1024, 0, 1, 2, 1025, 0});
    Abierto a(Fichero(f.Bytes()));
    ASSERT_EQ(a.raster.Leer(true), 1);
    const auto& g = *a.raster.Georreferencia();
    EXPECT_THAT(g.m_dEscala, ElementsAre(2.0, 1.0, 1.0));
    EXPECT_THAT(g.m_PuntosControl, IsEmpty());
    EXPECT_EQ(g.m_dTransformacion[0], 9.0);
    EXPECT_EQ(g.m_nTipoModelo, 2);
    EXPECT_EQ(g.m_nTipoRaster, 2);
}

// ---- Damage ------------------------------------------------------------------------------------------------------

TEST_F(CTiffDirectorio, RefusesADirectoryOutsideTheFile) {
    Fabrica f;
    Rechaza(f.Header(4000) + "xx");
    Rechaza(f.Header(8) + f.Numero(0x8000, 2) + std::string(12 * 0x8000, '\0'));
    Rechaza(f.Header(8) + f.Numero(9, 2) + std::string(20, '\0'));
    const Fabrica g(true);
    Rechaza(g.Header(16) + g.Numero(1ULL << 40, 8) + std::string(100, '\0'));
    Rechaza(g.Header(~0ULL - 3) + std::string(100, '\0'));
}

TEST_F(CTiffDirectorio, RefusesCountsThatTheFileDoesNotHold) {
    for (const unsigned tag : {258, 273, 279, 320, 324, 33550, 33922, 34264, 34735, 34736, 339}) {
        SCOPED_TRACE(tag);
        Fabrica f = Gris(true);
        const unsigned tipo = tag == 33550 || tag == 33922 || tag == 34264 || tag == 34736 ? Fabrica::Double
                              : tag == 273 || tag == 279 || tag == 324                     ? Fabrica::Long8
                                                                                           : Fabrica::Short;
        Rechaza(f.PonCrudo(tag, tipo, 1ULL << 40, 16).Bytes());
        Rechaza(f.PonCrudo(tag, tipo, 1ULL << 62, 16).Bytes());
        Rechaza(f.PonCrudo(tag, tipo, 64, ~0ULL - 8).Bytes());
    }
}

TEST_F(CTiffDirectorio, RefusesMoreEntriesThanASignedCountHolds) {
    const std::string entrada("\xFF\xFE\1\0\1\0\0\0\0\0\0\0", 12);
    for (const unsigned sobran : {0U, 1U}) {
        Fabrica f = Gris().Pon(65533, Fabrica::Byte, {1});
        std::string bytes = f.Bytes();
        const std::size_t cuantas = 0x7FFF + sobran - f.m_Entradas.size() - 2;  // strips come with two of their own
        const std::size_t directorio = 8 + f.BytesTrozos();
        bytes.replace(directorio, 2, f.Numero(0x7FFF + sobran, 2));
        std::string muchas;
        for (std::size_t i = 0; i < cuantas; ++i)
            muchas += entrada;
        bytes.insert(directorio + 2 + (f.m_Entradas.size() + 2) * 12, muchas);
        EXPECT_EQ(Lee(bytes), sobran != 0 ? kNo : 1);
    }
}

TEST_F(CTiffDirectorio, OnlyTheFirstEntryOfATagCounts) {
    std::string bytes = Gris().Pon(260, Fabrica::Short, {1}).Bytes();
    const std::size_t otra = bytes.find(std::string("\4\1\3\0", 4));
    ASSERT_NE(otra, std::string::npos);
    bytes[otra] = bytes[otra + 1] = 1;  // a second height
    Abierto a(Fichero(bytes));
    ASSERT_EQ(a.raster.Leer(false), 1);
    EXPECT_EQ(a.raster.Alto(), -2);
}

TEST_F(CTiffDirectorio, RefusesPlanesWithoutStrips) {
    Fabrica f;
    f.Imagen(2, 2, 3, 8, 2).Pon(284, Fabrica::Short, {2}).Trozos({"abcd", "efgh"});
    Rechaza(f.Bytes());
    EXPECT_EQ(Lee(f.Trozos({"abcd", "efgh", "ijkl"}).Bytes()), 1);
}

TEST_F(CTiffDirectorio, RefusesStripsThatShareTheirBytesTooOften) {
    for (const unsigned tiras : {1000U, 3000U}) {
        Fabrica f;
        f.Imagen(60000, tiras, 1, 8, 1).Pon(278, Fabrica::Short, {1}).Trozos({std::string(60000, 'a')});
        f.Pon(273, Fabrica::Long, std::vector<std::uint64_t>(tiras, 8));
        if (tiras == 1000U)
            EXPECT_EQ(Lee(f.Bytes(), true), 1);
        else
            Rechaza(f.Bytes());
    }
}

TEST_F(CTiffDirectorio, RefusesRowsThatMemoryDoesNotHold) {
    constexpr unsigned kAncho = 100'000;  // a tenth of a megabyte of greys out of rows of eight times that
    Fabrica f;
    std::string fila;
    for (unsigned i = 0; i < kAncho * 8 / 128; ++i)
        fila += std::string("\x81\0", 2);
    f.Imagen(1, 1, 1, 64, 1).Pon(256, Fabrica::Long, {kAncho}).Pon(259, Fabrica::Short, {32773});
    const std::string bytes = f.Pon(339, Fabrica::Short, {3}).Trozos({fila}).Bytes();
    EXPECT_EQ(Lee(bytes), 1);
    LimitaMemoria(1'000'000);
    Rechaza(bytes);
    LimitaMemoria();
}

TEST_F(CTiffDirectorio, RefusesZeroSizes) {
    for (const unsigned tag : {256, 257, 277, 258, 278})
        Rechaza(Gris().Pon(tag, Fabrica::Short, {0}).Bytes());
    Rechaza(Gris().Pon(324, Fabrica::Long, {8}).Bytes());
    Rechaza(Gris().Pon(324, Fabrica::Long, {8}).Pon(322, Fabrica::Short, {16}).Pon(323, Fabrica::Short, {0}).Bytes());
    Rechaza(Gris().Quita(256).Bytes());
    Rechaza(Gris().Quita(273).Quita(279).Trozos({}).Bytes());
}

TEST_F(CTiffDirectorio, RefusesHugePicturesInSmallFiles) {
    for (const auto& [ancho, alto] : {std::pair{1ULL << 31, 1ULL},
                                      {0x7FFFFFFFULL, 0x7FFFFFFFULL},
                                      {46341ULL, 46341ULL},
                                      {2ULL, 0xFFFFFFFFULL},
                                      {0xFFFFFFFFULL, 2ULL}}) {
        SCOPED_TRACE(ancho);
        for (const unsigned compresion : {1U, 32773U}) {
            Fabrica f = Gris();
            f.Pon(256, Fabrica::Long, {ancho}).Pon(257, Fabrica::Long, {alto}).Pon(278, Fabrica::Long, {alto});
            Rechaza(f.Pon(259, Fabrica::Short, {compresion}).Bytes());
            Rechaza(f.Pon(278, Fabrica::Long, {1}).Bytes());
            f.Pon(258, Fabrica::Short, {64}).Pon(277, Fabrica::Short, {65535});
            Rechaza(f.Bytes());
        }
    }
}

TEST_F(CTiffDirectorio, RefusesStripsBeyondTheEnd) {
    Rechaza(Gris().Pon(273, Fabrica::Long, {1 << 20}).Bytes());
    Rechaza(Gris().Pon(273, Fabrica::Long, {0}).Bytes());
    Rechaza(Gris(true).Pon(273, Fabrica::Long8, {~0ULL}).Bytes());
    Rechaza(Gris().Pon(278, Fabrica::Short, {1}).Bytes());  // two strips, one offset
    Fabrica f = Gris();
    Rechaza(f.Pon(259, Fabrica::Short, {32773}).Pon(279, Fabrica::Long, {1 << 20}).Bytes());
    Rechaza(f.Pon(279, Fabrica::Long, {0}).Bytes());
    Rechaza(f.Quita(279).Pon(279, Fabrica::Ascii - 1, {}).Bytes());
    const std::string cortado = Fabrica().Imagen(100, 100, 1, 8, 1).Trozos({"x"}).Bytes();
    Rechaza(cortado);
}

TEST_F(CTiffDirectorio, AWrongByteCountOfUncompressedPixelsDoesNotMatter) {
    for (const std::uint64_t bytes : {0, 1, 1 << 30}) {
        Abierto a(Fichero(Gris().Pon(279, Fabrica::Long, {bytes}).Bytes()));
        ASSERT_EQ(a.raster.Leer(false), 1);
        EXPECT_EQ(imagenes::Pixeles(a.raster), Letras("cdab"));
    }
    EXPECT_EQ(Lee(Gris().Quita(278).Bytes()), 1) << "one strip without RowsPerStrip";
}

TEST_F(CTiffDirectorio, APaletteMayHoldBytesOrTwiceAsMuch) {
    for (const unsigned factor : {1U, 256U}) {
        Fabrica f;
        f.Imagen(2, 1, 1, 1, 3).Trozos({"\x40"});
        std::vector<std::uint64_t> colores{0, 10, 0, 20, 0, 255};  // reds, greens, blues
        for (auto& c : colores)
            c *= factor;
        Abierto a(Fichero(f.Pon(320, Fabrica::Short, colores).Bytes()));
        ASSERT_EQ(a.raster.Leer(false), 1);
        EXPECT_THAT(imagenes::Pixeles(a.raster), ElementsAre(0, 0, 0, 255, 20, 10)) << factor;
    }
}

TEST_F(CTiffDirectorio, RefusesAPaletteTooShort) {
    Fabrica f;
    f.Imagen(2, 2, 1, 8, 3).Trozos({"abcd"});
    Rechaza(f.Bytes());
    Rechaza(f.Pon(320, Fabrica::Short, std::vector<std::uint64_t>(767, 1)).Bytes());
    EXPECT_EQ(Lee(f.Pon(320, Fabrica::Short, std::vector<std::uint64_t>(768, 1)).Bytes()), 1);
    Rechaza(f.Pon(258, Fabrica::Short, {16}).Trozos({"abcdefgh"}).Bytes());
}

TEST_F(CTiffDirectorio, RefusesSamplesThatItCannotTake) {
    Fabrica f;
    f.Imagen(1, 1, 3, 8, 2).Trozos({std::string(64, 'x')});
    Rechaza(Fabrica(f).Pon(258, Fabrica::Short, {5, 6, 5}).Bytes());
    Rechaza(Fabrica(f).Pon(258, Fabrica::Short, {48, 48, 48}).Bytes());
    Rechaza(Fabrica(f).Pon(339, Fabrica::Short, {3, 3, 3}).Bytes());
    Rechaza(Fabrica(f).Pon(339, Fabrica::Short, {5, 5, 5}).Bytes());
    Rechaza(Fabrica(f).Pon(339, Fabrica::Short, {1, 2, 1}).Bytes());
    Rechaza(Fabrica(f).Pon(277, Fabrica::Short, {2}).Bytes());
    Rechaza(Fabrica(f).Pon(284, Fabrica::Short, {3}).Bytes());
    Rechaza(Fabrica(f).Pon(262, Fabrica::Short, {5}).Bytes());
    Rechaza(Fabrica(f).Pon(262, Fabrica::Short, {6}).Bytes());  // subsampled, as it is by default
    Rechaza(Fabrica(f).Pon(262, Fabrica::Short, {4}).Pon(277, Fabrica::Short, {1}).Bytes());
}

TEST_F(CTiffDirectorio, AnyByteMayBeWrong) {
    // Every byte of a small file of tiles turned: it is read or refused, never worse.
    Fabrica f(true);
    f.Imagen(3, 3, 3, 8, 2).Pon(322, Fabrica::Short, {2}).Pon(323, Fabrica::Short, {2}).Quita(278);
    f.Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 1});
    f.Trozos({std::string(12, 'a'), std::string(12, 'b'), std::string(12, 'c'), std::string(12, 'd')}, true);
    const std::string bueno = f.Bytes();
    ASSERT_EQ(Lee(bueno), 1);
    for (std::size_t i = 0; i < bueno.size(); ++i)
        for (const int otro : {0, 0x7F, 0xFF}) {
            std::string malo = bueno;
            malo[i] = char(otro);
            const int r = Lee(malo);
            EXPECT_TRUE(r == 1 || r == 2 || r == kNo || r == -1) << "byte " << i << ": " << r;
        }
    for (std::size_t n = 0; n < bueno.size(); ++n)
        Lee(bueno.substr(0, n));
}

}  // namespace
