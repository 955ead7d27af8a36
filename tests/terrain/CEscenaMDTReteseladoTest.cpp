// Cutting draped images anew into tiles of another size.

#include "EscenaImagen.h"
#include "support/DiscoLleno.h"
#include "support/Progreso.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>

namespace {

// The tiles of the other layout, pixel by pixel from the image's own colours: what the file has to hold.
std::string Recorta(const Teselado& viejo, const Teselado& nuevo) {
    const int ancho = viejo.cols * viejo.anchoUtil, alto = viejo.filas * viejo.altoUtil;
    std::string bytes;
    for (int t = 0; t < nuevo.filas; ++t)
        for (int u = 0; u < nuevo.cols; ++u) {
            int quedan = nuevo.anchoUtil;
            const int fin = (u + 1) * nuevo.anchoUtil;
            if (u == nuevo.cols - 1 && fin > ancho) quedan = std::max(quedan - (fin - viejo.anchoUtil), 0);
            std::string ranura;
            bool leida = quedan == 0;  // what is lost is white
            for (int i = 0; i < nuevo.alto; ++i)
                for (int j = 0; j < nuevo.ancho; ++j) {
                    // A row beyond those that hold image repeats the last one; so do columns.
                    const int primera = t * nuevo.altoUtil - (nuevo.filas * nuevo.altoUtil - alto);
                    const int ultima = std::min(primera + nuevo.altoUtil, alto) - 1;
                    const int fila = std::min(primera + i, ultima);
                    if (fila < 0 || quedan == 0) {
                        ranura.append(3, char(255));
                        continue;
                    }
                    leida = true;
                    for (const std::uint8_t b : Tono(0, fila, u * nuevo.anchoUtil + std::min(j, quedan - 1)))
                        ranura += char(b);
                }
            ranura.resize(std::size_t((nuevo.ancho * 24 + 31) / 32 * 4 * nuevo.alto), char(255));
            bytes += leida ? ranura : std::string(ranura.size(), char(0));
        }
    return bytes;
}

class Reteselado : public Imagenes {
  protected:
    // Whether the record is tied and loaded, and its file holds the other layout.
    void EsperaCortada(const Teselado& viejo, const Teselado& nuevo) {
        const CDataTexturas& r = m_escena.m_Texturas.at(0);
        EXPECT_EQ(r.m_nNumFilas, nuevo.filas);
        EXPECT_EQ(r.m_nNumCols, nuevo.cols);
        EXPECT_EQ(r.m_nAnchoTextura, nuevo.ancho);
        EXPECT_EQ(r.m_nAltoTextura, nuevo.alto);
        EXPECT_EQ(r.m_nAnchoUtil, nuevo.anchoUtil);
        EXPECT_EQ(r.m_nAltoUtil, nuevo.altoUtil);
        EXPECT_EQ(r.m_nSizeTextura, nuevo.Registro().m_nSizeTextura);
        EXPECT_EQ(r.m_nSizeNivel0, nuevo.Registro().m_nSizeNivel0);
        EXPECT_EQ(r.m_bPiramidales, 0);
        EXPECT_EQ(r.m_bCargada, 0);
        EXPECT_TRUE(r.EstaDisponible());
        const std::string esperado = Recorta(viejo, nuevo), hay = Contenido(r.m_sNombreFichero);
        ASSERT_EQ(hay.size(), esperado.size());
        const auto distinto = std::ranges::mismatch(hay, esperado).in1;
        EXPECT_EQ(distinto, hay.end()) << "byte " << distinto - hay.begin();
    }
};

TEST_F(Reteselado, TheTilesHoldTheSameImage) {
    struct Caso {
        Teselado viejo;
        int lado;
        Teselado nuevo;
    };
    const Caso casos[] = {
        {{2, 2, 8, 8, true}, 4, {4, 4, 4, 4}},              // halves, the pyramid dropped
        {{1, 1, 16, 16, true, 13, 11}, 4, {3, 4, 4, 4}},    // the last column and the first row are not full
        {{1, 1, 16, 16, false, 16, 12}, 8, {2, 2, 8, 8}},   // the north tiles are half empty
        {{4, 4, 4, 4}, 16, {1, 1, 16, 16}},                 // larger ones
        {{3, 1, 8, 8, false, 8, 8}, 16, {3, 1, 8, 8}},      // too large: halved again
        {{1, 3, 6, 6, false, 5, 6}, 4, {2, 4, 4, 4}},       // the last tile loses its pixels
        {{2, 2, 3, 3, false, 2, 3}, 2, {3, 2, 2, 2}},       // slots longer than their pixels
        {{1, 1, 64, 64, true, 50, 60}, 1, {60, 50, 1, 1}},  // tiles of a pixel
    };
    for (const Caso& caso : casos) {
        SCOPED_TRACE(testing::Message() << caso.viejo.anchoUtil << " wide to tiles of " << caso.lado);
        ASSERT_EQ(Carga(m_escena, caso.viejo), 1);
        m_escena.m_Asignadas.clear();
        m_escena.CambiaSizeTexturas(caso.lado, caso.lado, Carpeta(), 1);
        EsperaCortada(caso.viejo, caso.nuevo);
        EXPECT_EQ(m_escena.m_Asignadas, (EscenaImagen::Pasos{{0, 2}})) << "tied once, at level 2";
        EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
    }
}

TEST_F(Reteselado, BeyondTheImageATileRepeatsItsLastRowAndColumn) {
    m_escena.m_nSobra = 3;  // as where tiles hold whole cells
    const Teselado viejo{1, 1, 32, 32, true, 30, 21};
    ASSERT_EQ(Carga(m_escena, viejo), 1);
    m_escena.CambiaSizeTexturas(8, 8, Carpeta(), 1);
    EsperaCortada(viejo, {5, 6, 8, 8, false, 5, 5});
}

TEST_F(Reteselado, TilesWithoutRoomForTheImageAreNotCut) {
    m_escena.m_nSobra = 8;
    ASSERT_EQ(Carga(m_escena, Teselado{2, 2, 8, 8}), 1);
    m_escena.CambiaSizeTexturas(8, 8, Carpeta(), 1);
    EXPECT_TRUE(m_escena.m_Texturas[0].EstaDisponible());
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
}

TEST_F(Reteselado, WhatDependsOnTheModelsCellsIsSetBeforeTheRecordIsTied) {
    ASSERT_EQ(Carga(m_escena, Teselado{2, 2, 8, 8}), 1);
    m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 1);
    EXPECT_EQ(m_escena.m_Texturas[0].m_nCeldasCol, 2);
}

TEST_F(Reteselado, TheOldFileStaysWhereItIsAskedFor) {
    const Teselado t{2, 2, 8, 8};
    ASSERT_EQ(Carga(m_escena, t, "old.tmp"), 1);
    m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 0);
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 2u);
    EXPECT_EQ(Contenido(m_carpeta / "old.tmp"), t.Fichero());
}

TEST_F(Reteselado, EveryRecordIsCut) {
    const Teselado t{2, 2, 8, 8};
    ASSERT_EQ(m_escena.CargarFicheroTexturasTemp({t.Escribe(m_carpeta, "a"), t.Escribe(m_carpeta, "b")}), 1);
    m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 1);
    for (const CDataTexturas& r : m_escena.m_Texturas) {
        EXPECT_EQ(r.m_nAnchoTextura, 4);
        EXPECT_TRUE(r.EstaDisponible());
    }
    EXPECT_EQ(m_escena.m_Asignadas, (EscenaImagen::Pasos{{0, 2}, {1, 2}}));
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 2u);
}

TEST_F(Reteselado, TilesAboveTheLimitAreNeverCut) {
    const Teselado t{4, 4, 4, 4};
    ASSERT_EQ(Carga(m_escena, t), 1);
    m_escena.m_nMaxTexDim = 8;
    m_escena.CambiaSizeTexturas(16, 16, Carpeta(), 1);
    EsperaCortada(t, {2, 2, 8, 8});
}

TEST_F(Reteselado, AnImageThatCannotBeLaidOutStaysAsItIs) {
    const Teselado t{2, 2, 8, 8, true};
    ASSERT_EQ(Carga(m_escena, t), 1);
    for (const auto& [alto, ancho, limite] : {std::tuple(0, 4, 1024), {4, -1, 1024}, {4, 4, 0}}) {
        m_escena.m_nMaxTexDim = limite;
        m_escena.CambiaSizeTexturas(alto, ancho, Carpeta(), 1);
        EXPECT_EQ(m_escena.m_Texturas[0].m_nAnchoTextura, 8);
        EXPECT_TRUE(m_escena.m_Texturas[0].EstaDisponible());
        EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
    }
    m_escena.m_nMaxTexDim = 1024;
    m_escena.DescargarImagen(0, 0, 0, 1);
    m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 1);
    EXPECT_EQ(m_escena.m_Texturas[0].m_nAnchoTextura, 8) << "nothing to read from";
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
}

TEST_F(Reteselado, WithoutItsFolderItEndsQuietlyWithTheImageAsItWas) {
    const Teselado t{2, 2, 8, 8, true};
    ASSERT_EQ(Carga(m_escena, t), 1);
    const Progreso progreso;
    m_escena.CambiaSizeTexturas(4, 4, Ancha(m_carpeta / "none"), 1);
    EXPECT_TRUE(progreso.m_Mensajes.empty());
    EXPECT_EQ(m_escena.m_Texturas[0].m_nAnchoTextura, 8);
    ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
    EXPECT_TRUE(m_escena.Textura(0, 1, 1)) << "it still draws";
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
}

TEST_F(Reteselado, WithoutRoomNothingIsLeftBehindAndTheImageStays) {
    const Teselado t{2, 2, 8, 8, true};
    ASSERT_EQ(Carga(m_escena, t), 1);
    for (const rlim_t bytes : {rlim_t(0), rlim_t(500), rlim_t(767)}) {
        const DiscoLleno lleno(bytes);
        m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 1);
        EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u) << bytes;
        EXPECT_EQ(m_escena.m_Texturas[0].m_nAnchoTextura, 8) << bytes;
        EXPECT_TRUE(m_escena.m_Texturas[0].EstaDisponible()) << bytes;
    }
    EXPECT_EQ(Contenido(m_escena.m_Texturas[0].m_sNombreFichero), t.Fichero());
}

// While it lives, the process can open one more file, and no second one beside it.
class UnDescriptor {
  public:
    UnDescriptor() : m_Antes{} {
        getrlimit(RLIMIT_NOFILE, &m_Antes);
        const rlimit limite{std::min<rlim_t>(m_Antes.rlim_cur, 512), m_Antes.rlim_max};
        const int nulo = open("/dev/null", O_RDONLY);
        m_Ocupados.push_back(nulo);
        setrlimit(RLIMIT_NOFILE, &limite);
        for (int fd = dup(nulo); fd >= 0; fd = dup(nulo))
            m_Ocupados.push_back(fd);
        close(m_Ocupados.back());
        m_Ocupados.pop_back();
    }
    ~UnDescriptor() {
        setrlimit(RLIMIT_NOFILE, &m_Antes);
        for (const int fd : m_Ocupados)
            close(fd);
    }
    UnDescriptor(const UnDescriptor&) = delete;
    UnDescriptor& operator=(const UnDescriptor&) = delete;

  private:
    rlimit m_Antes;
    std::vector<int> m_Ocupados;
};

TEST_F(Reteselado, WithoutItsSecondFileTheUserIsToldBothNamesAndTheImageStays) {
    const Teselado t{2, 2, 8, 8};
    ASSERT_EQ(Carga(m_escena, t), 1);
    const Progreso progreso;
    {
        const UnDescriptor uno;
        m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 1);
    }
    ASSERT_EQ(progreso.m_Mensajes.size(), 1u);
    const std::string& mensaje = progreso.m_Mensajes[0];
    const std::string principio = (m_carpeta / "Texturas").string();
    EXPECT_TRUE(mensaje.starts_with("error\n")) << mensaje;
    EXPECT_EQ(mensaje.find(principio), 6u) << mensaje;
    EXPECT_EQ(mensaje.find(principio, 7), mensaje.find('\n', 6) + 1) << mensaje;
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
    EXPECT_EQ(m_escena.m_Texturas[0].m_nAnchoTextura, 8);
    EXPECT_TRUE(m_escena.m_Texturas[0].EstaDisponible());
}

TEST_F(Reteselado, ARecordThatCannotBeTiedLosesItsNewFile) {
    ASSERT_EQ(Carga(m_escena, Teselado{2, 2, 8, 8}), 1);
    m_escena.m_nFallaEn = 0;
    m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 1);
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u);
    EXPECT_FALSE(m_escena.m_Texturas[0].EstaDisponible());
}

TEST_F(Reteselado, ReferencesAndLinksShowTheNewTiles) {
    auto *referencia = new EscenaImagen, *vinculo = new EscenaImagen;
    m_escena.ReferenciaNuevo(referencia);
    m_escena.VinculoNuevo(vinculo);
    ASSERT_EQ(Carga(m_escena, Teselado{2, 2, 8, 8}), 1);
    m_escena.CambiaSizeTexturas(4, 4, Carpeta(), 1);
    for (const EscenaImagen* hijo : {referencia, vinculo}) {
        EXPECT_EQ(hijo->m_Texturas.at(0).m_nNumFilas, 4);
        EXPECT_EQ(hijo->m_Texturas.at(0).IdTextura(3, 3), m_escena.m_Texturas[0].IdTextura(3, 3));
        EXPECT_TRUE(hijo->m_Texturas.at(0).EstaDisponible());
    }
}

}  // namespace
