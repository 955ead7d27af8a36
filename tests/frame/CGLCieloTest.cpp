// The sky's list, and the reading of its image.

#include "EscenaVista.h"
#include "raster/CBmp.h"
#include "platform/CStdioFile.h"
#include "support/RasterVacio.h"
#include "support/RegistroGL.h"
#include "support/Temporales.h"

namespace {

const LlamadasGL kSinLuz = {"glDisable(GL_LIGHTING)",
                            "glDisable(GL_LIGHT0)",
                            "glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE)",
                            "glEnable(GL_COLOR_MATERIAL)",
                            "glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT, [0, 0, 0, 0])",
                            "glMaterialfv(GL_FRONT_AND_BACK, GL_DIFFUSE, [0, 0, 0, 0])",
                            "glMaterialfv(GL_FRONT_AND_BACK, GL_SPECULAR, [0, 0, 0, 0])",
                            "glMaterialfv(GL_FRONT_AND_BACK, GL_EMISSION, [0, 0, 0, 0])",
                            "glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 128)"};

class ConCielo : public testing::Test {
  protected:
    void SetUp() override {
        m_Escena.SetColorFondo(0x336699);
        ASSERT_TRUE(m_Escena.Monta(m_Tela));
    }
    void TearDown() override { wglMakeCurrent(nullptr, nullptr); }
    LlamadasGL Lista() {
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.OnIniciarCielo(), 1);
        return registro.Lista(m_Escena.m_nListaCielo);
    }
    static LlamadasGL SinImagen(const LlamadasGL& luz) {
        LlamadasGL lista = {"glEnable(GL_DEPTH_TEST)"};
        lista.insert(lista.end(), luz.begin(), luz.end());
        lista.push_back("glColor3f(0.6, 0.4, 0.2)");
        return lista;
    }

    Tela m_Tela;
    EscenaVista m_Escena;
};

/// A raster that tells what it was asked for.
class ImagenFalsa : public RasterVacio {
  public:
    ImagenFalsa(int tipo, int cabecera, int datos) : m_nTipo(tipo), m_nCabecera(cabecera), m_nDatos(datos) {}
    bool SetFichero(CFile* fichero) override {
        m_bFlujo = dynamic_cast<CStdioFile*>(fichero) != nullptr;
        m_sPasos += "abre ";
        return true;
    }
    bool CierraFichero() override {
        m_sPasos += "cierra";
        return true;
    }
    int Leer(bool soloCabecera) override {
        m_sPasos += soloCabecera ? "cabecera " : "datos ";
        return soloCabecera ? m_nCabecera : m_nDatos;
    }
    int Tipo() const override { return m_nTipo; }

    int m_nTipo, m_nCabecera, m_nDatos;
    bool m_bFlujo = false;
    std::string m_sPasos;
};

}  // namespace

TEST_F(ConCielo, WithoutAnImageTheSkyIsTheBackgroundColourOnADarkMaterial) {
    EXPECT_LLAMADAS(Lista(), (SinImagen(kSinLuz)));
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC) << "the hook leaves the context current";
    EXPECT_EQ(m_Escena.m_nTexturaFondo, 0U);
}

TEST_F(ConCielo, ImageScenesAndSphericalOnesKeepTheirLight) {
    for (const int tipo : {3, 8}) {
        m_Escena.SetTipo(tipo);
        EXPECT_LLAMADAS(Lista(), (SinImagen({})));
    }
    m_Escena.SetTipo(1);
    for (const int fondo : {1, 2, 3, 4}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        EXPECT_LLAMADAS(Lista(), (SinImagen(kSinLuz)));
    }
    for (const int fondo : {5, 6}) {
        m_Escena.m_nTipoImagenFondo = fondo;
        EXPECT_LLAMADAS(Lista(), (SinImagen({})));
    }
}

TEST_F(ConCielo, AnImageThatCannotBeReadLeavesTheColour) {
    m_Escena.SetImagenFondo(1);
    m_Escena.SetNombreImagenFondo(L"no such sky.tif");
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarCielo(), 1);
    EXPECT_LLAMADAS(registro.Lista(m_Escena.m_nListaCielo), (SinImagen(kSinLuz)));
    const LlamadasGL textura = Solo(registro.Ejecutadas(), {"glPixelStorei", "glTexParameteri", "glTexEnvf"});
    EXPECT_LLAMADAS(textura, {"glPixelStorei(GL_UNPACK_ALIGNMENT, 1)",
                              "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                              "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
                              "glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE)",
                              "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
                              "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)"});
    EXPECT_EQ(registro.Cuenta("glTexImage2D"), 0U);
}

TEST_F(ConCielo, ListAndTextureAreTakenAnew) {
    m_Escena.SetImagenFondo(1);
    ASSERT_EQ(m_Escena.OnIniciarCielo(), 1);
    EXPECT_NE(m_Escena.m_nTexturaFondo, 0U);
    m_Escena.SetImagenFondo(0);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarCielo(), 1);
    EXPECT_EQ(registro.Cuenta("glDeleteLists"), 1U);
    EXPECT_EQ(registro.Cuenta("glDeleteTextures"), 1U);
    EXPECT_EQ(m_Escena.m_nTexturaFondo, 0U);
}

TEST_F(ConCielo, AnErrorEndsTheSky) {
    m_Escena.SetImagenFondo(1);
    for (const char* nombre : {"glGenTextures", "glTexEnvf", "glNewList", "glColorMaterial", "glMaterialf"}) {
        const FallaGL falla(nombre, 1);
        EXPECT_EQ(m_Escena.OnIniciarCielo(), 0) << nombre;
        EXPECT_TRUE(falla.Ocurrida());
        EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
    }
    EXPECT_EQ(m_Escena.OnIniciarCielo(), 1);
}

TEST_F(ConCielo, TheImageIsReadHeaderFirstAndAJpegThroughAStream) {
    const CarpetaTemporal carpeta;
    const std::string ruta = carpeta.Escribe("cielo.dat", "x").string();
    m_Escena.SetNombreImagenFondo(CString(ruta.c_str()));
    const auto lee = [&](int tipo, int cabecera, int datos, int esperado, const char* pasos) {
        ImagenFalsa falsa(tipo, cabecera, datos);
        Vertiz::IRaster* imagen = &falsa;
        EXPECT_EQ(m_Escena.CargarImagenFondo(&imagen), esperado);
        EXPECT_EQ(falsa.m_sPasos, pasos);
        EXPECT_EQ(falsa.m_bFlujo, tipo == 22);
    };
    lee(20, 1, 1, 1, "abre cabecera datos cierra");
    lee(22, 1, 1, 1, "abre cabecera datos cierra");
    lee(20, 0, 1, 0, "abre cabecera cierra");
    lee(20, 1, 2, 0, "abre cabecera datos cierra");
    m_Escena.SetNombreImagenFondo(L"no such sky.tif");
    lee(20, 1, 1, 0, "");
}

// ---- Real pictures

namespace {

constexpr int kBloque = 4;  // pixels of a side that a driver compresses together

// A bitmap file of blocks of one colour: red, green, blue and white above, black below. With 8 bits by a palette.
CString EscribeBmp(const CarpetaTemporal& carpeta, int bits) {
    const BYTE colores[5][3] = {{0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {255, 255, 255}, {0, 0, 0}};  // blue first
    std::vector<BYTE> paleta(1024);
    for (std::size_t i = 0; i < 5; ++i)
        std::copy_n(colores[i], 3, &paleta[4 * i]);
    Vertiz::CBmp bmp;
    EXPECT_TRUE(
        bmp.Crear(4 * kBloque, 2 * kBloque, bits, 72, false, nullptr, bits == 8 ? paleta.data() : nullptr, false));
    for (int c = 0; c < 4 * kBloque; ++c)
        for (int f = 0; f < 2 * kBloque; ++f) {
            const auto color = BYTE(f >= kBloque ? c / kBloque : 4);
            EXPECT_TRUE(bmp.SetPixel(f, c, bits == 8 ? &color : colores[color]));
        }
    const CString ruta((carpeta.Ruta() / "cielo.bmp").string().c_str());
    CFile fichero;
    EXPECT_TRUE(fichero.Open(ruta, CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary));
    EXPECT_EQ(bmp.Grabar(&fichero), 1);
    return ruta;
}

}  // namespace

TEST_F(ConCielo, ABitmapBecomesATiffOfTheSamePixels) {
    const CarpetaTemporal carpeta;
    for (const int bits : {8, 24}) {
        const CString ruta = EscribeBmp(carpeta, bits);
        m_Escena.SetNombreImagenFondo(ruta);
        Vertiz::IRaster* imagen = Vertiz::CreaRaster(ruta);
        ASSERT_NE(imagen, nullptr);
        ASSERT_EQ(m_Escena.CargarImagenFondo(&imagen), 1);
        EXPECT_EQ(imagen->Tipo(), 20);
        EXPECT_EQ(imagen->BytesPixel(), bits / 8);
        EXPECT_EQ(imagen->TienePaleta(), bits == 8);
        BYTE pixel[3]{};
        ASSERT_TRUE(imagen->GetPixel(pixel, kBloque, kBloque, 0));
        EXPECT_THAT(pixel, testing::ElementsAre(0, 255, 0));
        Vertiz::BorraRaster(imagen);
    }
}

TEST_F(ConCielo, AnImageIsSentInRowsOfRedGreenAndBlueAndHangsOnASphere) {
    const CarpetaTemporal carpeta;
    m_Escena.SetNombreImagenFondo(EscribeBmp(carpeta, 8));
    m_Escena.SetImagenFondo(1);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciarCielo(), 1);
    ASSERT_EQ(registro.Cuenta("glTexImage2D"), 1U);
    const LlamadasGL enviada = Solo(registro.Ejecutadas(), {"glTexImage2D"});
    EXPECT_LLAMADAS(enviada, {"glTexImage2D(GL_TEXTURE_2D, 0, GL_COMPRESSED_RGB, 16, 8, 0, GL_RGB, "
                              "GL_UNSIGNED_BYTE, ...)"});
    std::vector<GLubyte> textura(4 * kBloque * 2 * kBloque * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glBindTexture(GL_TEXTURE_2D, m_Escena.m_nTexturaFondo);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, textura.data());
    const auto texel = [&](int fila, int columna) {
        const GLubyte* t = &textura[std::size_t(3 * (fila * kBloque * 4 * kBloque + columna * kBloque))];
        return std::vector<int>{t[0] > 127, t[1] > 127, t[2] > 127};
    };
    EXPECT_THAT(texel(0, 0), testing::ElementsAre(0, 0, 0));
    EXPECT_THAT(texel(1, 0), testing::ElementsAre(1, 0, 0));
    EXPECT_THAT(texel(1, 1), testing::ElementsAre(0, 1, 0));
    EXPECT_THAT(texel(1, 2), testing::ElementsAre(0, 0, 1));
    EXPECT_THAT(texel(1, 3), testing::ElementsAre(1, 1, 1));
    const LlamadasGL lista = registro.Lista(m_Escena.m_nListaCielo);
    const LlamadasGL esfera(lista.begin() + std::ptrdiff_t(1 + kSinLuz.size()), lista.end());
    EXPECT_LLAMADAS(
        Sin(esfera, {"glPushAttrib"}),
        {"glColor3f(255, 255, 255)", "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)", "glEnable(GL_TEXTURE_2D)",
         "glBindTexture(GL_TEXTURE_2D, " + std::to_string(m_Escena.m_nTexturaFondo) + ")", "glPushMatrix()",
         "gluSphere(1, 20, 16)", "glPopAttrib()", "glPopMatrix()", "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"});
    EXPECT_EQ(Solo(lista, {"glPushAttrib"}).size(), 1U);
}
