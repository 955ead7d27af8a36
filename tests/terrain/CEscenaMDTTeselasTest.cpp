// The tiles of draped images: their layout, filling texture objects, and the picture of them all.

#include "EscenaImagen.h"
#include "raster/CTiff.h"

#include <algorithm>
#include <cmath>

namespace {

// ---- Layout --------------------------------------------------------------------------------------------------------

struct Reparto {
    int filasTextura, colsTextura, numFilas, numCols;
    bool cambiado;
    bool operator==(const Reparto&) const = default;
};
std::ostream& operator<<(std::ostream& os, const Reparto& r) {
    return os << r.numFilas << " x " << r.numCols << " tiles of " << r.filasTextura << " x " << r.colsTextura
              << (r.cambiado ? ", changed" : "");
}

Reparto Reparte(int filasTextura, int colsTextura, int filas, int cols) {
    EscenaImagen escena;
    CDataTexturas r;
    const bool cambiado = escena.SetNumFilasCols(filasTextura, colsTextura, filas, cols, r);
    return {filasTextura, colsTextura, r.m_nNumFilas, r.m_nNumCols, cambiado};
}

// The rule as it is told, for square tiles.
Reparto ReparteSegunRegla(int lado, int filas, int cols) {
    int nf = filas / lado, nc = cols / lado;
    if (nf * lado < filas) ++nf;
    if (nc * lado < cols) ++nc;
    if (lado * nf <= 4 * filas / 3 && lado * nc <= 4 * cols / 3) return {lado, lado, nf, nc, false};
    Reparto r = ReparteSegunRegla(lado / 2, filas, cols);
    r.cambiado = true;
    return r;
}

TEST(CEscenaMDTReparto, AnImageThatNearlyFillsATileTakesOne) {
    EXPECT_EQ(Reparte(1024, 1024, 1000, 1000), (Reparto{1024, 1024, 1, 1, false}));
}

TEST(CEscenaMDTReparto, TilesHalveUntilAThirdIsWastedAtMost) {
    EXPECT_EQ(Reparte(1024, 1024, 1100, 1100), (Reparto{256, 256, 5, 5, true}));
    EXPECT_EQ(Reparte(1024, 1024, 768, 768), (Reparto{1024, 1024, 1, 1, false})) << "exactly a third";
    EXPECT_EQ(Reparte(1024, 1024, 767, 767), (Reparto{256, 256, 3, 3, true}));
    EXPECT_EQ(Reparte(1024, 1024, 1, 1), (Reparto{1, 1, 1, 1, true}));
}

TEST(CEscenaMDTReparto, FollowsTheRuleForAllSizes) {
    for (const int lado : {1, 2, 16, 64})
        for (int filas = 1; filas < 150; filas += 7)
            for (int cols = 1; cols < 150; ++cols)
                ASSERT_EQ(Reparte(lado, lado, filas, cols), ReparteSegunRegla(lado, filas, cols))
                    << lado << ": " << filas << " x " << cols;
}

TEST(CEscenaMDTReparto, AWholeTileIsUseful) {
    EscenaImagen escena;
    CDataTexturas r;
    int filas = 64, cols = 64;
    escena.SetNumFilasCols(filas, cols, 100, 90, r);
    EXPECT_EQ(r.m_nAltoUtil, filas);
    EXPECT_EQ(r.m_nAnchoUtil, cols);
}

TEST(CEscenaMDTReparto, WithoutPixelsOrTilesThereIsNoLayoutAndNoEndlessLoop) {
    for (const auto& [tesela, filas, cols] :
         {std::tuple(64, 0, 10), {64, 10, 0}, {64, -3, 10}, {0, 10, 10}, {-8, 10, 10}}) {
        const Reparto r = Reparte(tesela, tesela, filas, cols);
        EXPECT_EQ(r.numFilas + r.numCols, 0) << tesela << ": " << filas << " x " << cols;
        EXPECT_FALSE(r.cambiado);
    }
}

TEST(CEscenaMDTReparto, AShortSideOfATileStaysAPixel) {
    EXPECT_EQ(Reparte(64, 1, 10, 3), (Reparto{4, 1, 3, 3, true}));
    EXPECT_EQ(Reparte(1, 64, 3, 10), (Reparto{1, 4, 3, 3, true}));
}

TEST(CEscenaMDTReparto, LargeImagesDoNotOverflow) {
    EXPECT_EQ(Reparte(1024, 1024, 2147483647, 1), (Reparto{1, 1, 2147483647, 1, true}));
    const Reparto r = Reparte(1, 1, 2147483647, 2147483647);
    EXPECT_EQ(r.numFilas + r.numCols, 0) << "more tiles than can be counted";
}

// ---- Filling -------------------------------------------------------------------------------------------------------

class Llenado : public Imagenes {
  protected:
    GLuint Nombre(unsigned fila = 0, unsigned col = 0) const { return m_escena.m_Texturas[0].IdTextura(fila, col); }
    // The calls that fill a tile, errors asked for among them.
    LlamadasGL Llena(RegistroGL::Errores errores, bool esperado = true) {
        EXPECT_TRUE(m_escena.MakeCurrent(nullptr));
        const RegistroGL registro(errores);
        EXPECT_EQ(m_escena.Textura(0, 0, 0), esperado);
        LlamadasGL llamadas = registro.Todas();
        for (std::string& l : llamadas)
            if (l.starts_with("glTexImage2D")) l.erase(l.rfind(','));  // whether there are pixels
        wglMakeCurrent(nullptr, nullptr);
        return llamadas;
    }
    void EsperaColor(GLuint nombre, int nivel, const Pixel& color) {
        const auto pixeles = Lee(nombre, nivel);
        ASSERT_FALSE(pixeles.empty()) << "level " << nivel;
        for (std::size_t i = 0; i < pixeles.size(); ++i)
            ASSERT_NEAR(pixeles[i], color[i % 3], 8) << "level " << nivel << ", byte " << i;
    }
};

const char* const kNivel = "glTexImage2D(GL_TEXTURE_2D, ";
std::string Nivel(int l, int w, int h) {
    return kNivel + std::to_string(l) + ", GL_COMPRESSED_RGB, " + std::to_string(w) + ", " + std::to_string(h) +
           ", 0, GL_RGB, GL_UNSIGNED_BYTE";
}

LlamadasGL Preparacion(GLuint nombre, const std::string& filtro) {
    return {"glBindTexture(GL_TEXTURE_2D, " + std::to_string(nombre) + ")",
            "glGetError()",
            "glPixelStorei(GL_UNPACK_ALIGNMENT, 1)",
            "glGetError()",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
            "glGetError()",
            "glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE)",
            "glGetError()",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
            "glGetError()",
            "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, " + filtro + ")",
            "glGetError()"};
}

TEST_F(Llenado, WithoutAPyramidThereIsOneLevelAndTheNearestPixelCounts) {
    ASSERT_EQ(Carga(m_escena, Teselado{2, 2, 8, 8}), 1);
    LlamadasGL esperadas = Preparacion(Nombre(), "GL_NEAREST");
    esperadas.insert(esperadas.end(), {Nivel(0, 8, 8), "glGetError()"});
    EXPECT_LLAMADAS(Llena(RegistroGL::Errores::Anotar), (esperadas));
}

TEST_F(Llenado, APyramidIsUploadedDownToOnePixel) {
    ASSERT_EQ(Carga(m_escena, Teselado{2, 2, 8, 8, true}), 1);
    LlamadasGL esperadas = Preparacion(Nombre(), "GL_NEAREST_MIPMAP_NEAREST");
    for (const std::string& nivel : {Nivel(0, 8, 8), Nivel(1, 4, 4), Nivel(2, 2, 2), Nivel(3, 1, 1)})
        esperadas.insert(esperadas.end(), {nivel, "glGetError()"});
    EXPECT_LLAMADAS(Llena(RegistroGL::Errores::Anotar), (esperadas));
}

TEST_F(Llenado, EachTileGetsItsOwnPixelsAtEachLevel) {
    for (const bool piramide : {false, true})
        for (const auto& [ancho, alto] : {std::pair(16, 16), {8, 8}, {4, 4}}) {
            const Teselado t = Teselado{2, 3, ancho, alto, piramide}.Liso();
            ASSERT_EQ(Carga(m_escena, t), 1);
            for (unsigned f = 0; f < 2; ++f)
                for (unsigned c = 0; c < 3; ++c) {
                    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
                    EXPECT_FALSE(m_escena.m_Texturas[0].EstaLlena(f, c));
                    ASSERT_TRUE(m_escena.Textura(0, f, c));
                    EXPECT_TRUE(m_escena.m_Texturas[0].EstaLlena(f, c));
                    for (int l = 0; ancho >> l > 0 && (piramide || l == 0); ++l)
                        EsperaColor(Nombre(f, c), l, t.TonoLiso(l, int(f), int(c)));
                }
        }
}

// Four colours in blocks of four pixels, which compression takes one by one: rows run south, columns east.
TEST_F(Llenado, NorthIsTheFirstRowAndWestTheFirstColumn) {
    Teselado t{1, 1, 8, 8};
    const auto esquina = [](int fila, int col) { return Pixel{std::uint8_t(80 * fila), std::uint8_t(90 * col), 200}; };
    t.tono = [&](int, int fila, int col) { return esquina(fila / 4, col / 4); };
    ASSERT_EQ(Carga(m_escena, t), 1);
    Llena(RegistroGL::Errores::Callar);
    const auto pixeles = Lee(Nombre());
    for (int fila = 0; fila < 8; ++fila)
        for (int col = 0; col < 8; ++col)
            for (int b = 0; b < 3; ++b)
                EXPECT_NEAR(pixeles[std::size_t(3 * (8 * fila + col) + b)], esquina(fila / 4, col / 4)[std::size_t(b)],
                            8);
}

TEST_F(Llenado, TilesThatAreNotSquareHaveTheLevelsOfTheirFile) {
    ASSERT_EQ(Carga(m_escena, Teselado{1, 1, 8, 2, true}), 1);
    EXPECT_LLAMADAS(Solo(Llena(RegistroGL::Errores::Callar), {"glTexImage2D"}),
                    {Nivel(0, 8, 2), Nivel(1, 4, 1), Nivel(2, 2, 0), Nivel(3, 1, 0)});
}

TEST_F(Llenado, LevelsAboveTheLimitAreLeftOut) {
    ASSERT_EQ(Carga(m_escena, Teselado{1, 1, 8, 8, true}), 1);
    m_escena.m_nMaxTexDim = 4;
    EXPECT_LLAMADAS(Solo(Llena(RegistroGL::Errores::Callar), {"glTexImage2D"}),
                    {Nivel(1, 4, 4), Nivel(2, 2, 2), Nivel(3, 1, 1)});
    EXPECT_FALSE(m_escena.m_Texturas[0].EstaLlena(0, 0));
}

TEST_F(Llenado, TheFirstErrorEndsItAndTheNextTryBeginsAnew) {
    ASSERT_EQ(Carga(m_escena, Teselado{1, 1, 8, 8, true}), 1);
    for (const auto& [llamada, n] : {std::pair<const char*, int>("glBindTexture", 1),
                                     {"glPixelStorei", 1},
                                     {"glTexParameteri", 1},
                                     {"glTexParameteri", 2},
                                     {"glTexEnvf", 1},
                                     {"glTexParameteri", 3},
                                     {"glTexParameteri", 4},
                                     {"glTexImage2D", 1},
                                     {"glTexImage2D", 3}}) {
        Llena(RegistroGL::Errores::Callar);
        const FallaGL falla(llamada, n);
        const LlamadasGL hechas = Llena(RegistroGL::Errores::Anotar, false);
        EXPECT_TRUE(falla.Ocurrida()) << llamada << n;
        EXPECT_EQ(hechas.back(), "glGetError()") << llamada << n;
        EXPECT_FALSE(m_escena.m_Texturas[0].EstaLlena(0, 0)) << llamada << n;
    }
    Llena(RegistroGL::Errores::Callar);
    EXPECT_TRUE(m_escena.m_Texturas[0].EstaLlena(0, 0));
}

TEST_F(Llenado, WhatTheFileDoesNotHaveIsWhite) {
    CDataTexturas r = Teselado{1, 2, 8, 8}.Escribe(m_carpeta, "short.tmp");
    std::filesystem::resize_file(RutaSistema(r.m_sNombreFichero), 192);
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp({r}), 1);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    EXPECT_TRUE(m_escena.Textura(0, 0, 1));
    EsperaColor(Nombre(0, 1), 0, {255, 255, 255});
}

TEST_F(Llenado, FailsOutOfRangeWithoutFileAndWithoutObjects) {
    ASSERT_EQ(Carga(m_escena, Teselado{1, 2, 8, 8}), 1);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    const RegistroGL registro;
    EXPECT_FALSE(m_escena.Textura(1, 0, 0));
    EXPECT_FALSE(m_escena.Textura(0, 1, 0));
    EXPECT_FALSE(m_escena.Textura(0, 0, 2));
    m_escena.m_Texturas[0].m_pFichero->Close();
    EXPECT_FALSE(m_escena.Textura(0, 0, 0));
    m_escena.m_Texturas[0].m_pFichero = nullptr;
    EXPECT_FALSE(m_escena.Textura(0, 0, 0));
    EXPECT_TRUE(registro.Todas().empty()) << "nothing is bound";
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Llenado, AFileThatCannotBeReadIsAFailure) {
    ASSERT_EQ(Carga(m_escena, Teselado{1, 2, 8, 8}), 1);
    CDataTexturas& r = m_escena.m_Texturas[0];
    ASSERT_TRUE(r.m_pFichero->Open(r.m_sNombreFichero, CFile::modeWrite));
    Llena(RegistroGL::Errores::Callar, false);
    EXPECT_FALSE(r.EstaLlena(0, 0));
}

// ---- The picture of them all ---------------------------------------------------------------------------------------

TEST_F(Imagenes, TheTilesGiveTheirPictureBackInBlueGreenAndRed) {
    for (const auto& t : {Teselado{2, 3, 8, 4, true}, Teselado{1, 1, 4, 4}, Teselado{3, 2, 2, 2}, Teselado{2, 3, 1, 1},
                          Teselado{2, 2, 5, 3}, Teselado{1, 2, 16, 16, false, 11, 13}}) {
        ASSERT_EQ(Carga(m_escena, t), 1);
        Vertiz::CTiff imagen;
        m_escena.GetImagen(&imagen, 0);
        ASSERT_EQ(imagen.Ancho(), t.cols * t.ancho);
        ASSERT_EQ(std::abs(imagen.Alto()), t.filas * t.alto);
        EXPECT_EQ(imagen.BytesPixel(), 3);
        EXPECT_FLOAT_EQ(imagen.Resolucion(), 100.0F);
        for (int fila = 0; fila < t.filas * t.alto; ++fila)
            for (int col = 0; col < t.cols * t.ancho; ++col) {
                BYTE p[3];
                ASSERT_TRUE(imagen.GetPixel(p, t.filas * t.alto - 1 - fila, col, 0));
                const Pixel e = Tono(0, fila / t.alto * t.altoUtil + std::min(fila % t.alto, t.altoUtil - 1),
                                     col / t.ancho * t.anchoUtil + std::min(col % t.ancho, t.anchoUtil - 1));
                ASSERT_EQ((Pixel{p[2], p[1], p[0]}), e) << fila << ", " << col << " of " << t.ancho << " x " << t.alto;
            }
    }
}

TEST_F(Imagenes, WithoutTilesToReadTheRasterStaysAsItWas) {
    ASSERT_EQ(Carga(m_escena, Teselado{1, 2, 8, 8}), 1);
    Vertiz::CTiff imagen;
    m_escena.GetImagen(&imagen, 1);
    m_escena.GetImagen(nullptr, 0);
    EXPECT_EQ(imagen.Ancho(), 0);
    m_escena.m_Texturas[0].m_nNumFilas = 0;
    m_escena.GetImagen(&imagen, 0);
    m_escena.m_Texturas[0].m_nNumFilas = 1 << 30;  // more than any file has
    m_escena.GetImagen(&imagen, 0);
    m_escena.m_Texturas[0].m_nNumFilas = 1;
    m_escena.DescargarImagen(0, 0, 0, 1);
    m_escena.GetImagen(&imagen, 0);
    EXPECT_EQ(imagen.Ancho(), 0);
}

}  // namespace
