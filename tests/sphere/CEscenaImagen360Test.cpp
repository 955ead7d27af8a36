// The panorama's scene: who owns what, its texture and its list.

#include "EscenaPanorama.h"
#include "support/RasterVacio.h"
#include "support/RegistroGL.h"

namespace {

using Maximas = Vertiz::CMaximas<double>;

TEST_F(Esferica, IsOfTypeEightAndLooksInPerspectiveFromItsMiddle) {
    EXPECT_EQ(m_Escena.GetTipo(), 8);
    EXPECT_EQ(CEscenaImagen360().GetTipo(), 8);
    EXPECT_EQ(CEscenaImagen360(static_cast<const CGL&>(EscenaPrueba())).GetTipo(), 8);
    EXPECT_TRUE(m_Escena.EsEsferica());
    EXPECT_FALSE(m_Escena.EsOrtografica());
}

TEST_F(Esferica, TakesOverTheViewOfTheSceneItIsMadeFrom) {
    EscenaPrueba otra;
    otra.SetAnguloVista(33.0F);
    otra.SetBase(1);
    const EscenaPanorama escena(otra, nullptr, 0);
    EXPECT_EQ(escena.GetAnguloVista(), 33.0F);
    EXPECT_EQ(escena.GetBase(), 1);
    EXPECT_EQ(escena.GetImagen(), nullptr);
}

TEST_F(Esferica, WithoutAnImageThereIsNothingToBuild) {
    EscenaPanorama escena;
    EXPECT_EQ(escena.OnIniciar(), 0) << "without context either";
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    EXPECT_EQ(escena.OnIniciar(), 0);
    EXPECT_EQ(escena.Iniciar(), 0);
    wglMakeCurrent(nullptr, nullptr);
    Maximas m;
    EXPECT_EQ(escena.GetMaximasObjeto(m), 0);
    EXPECT_TRUE(m.EstanVacias(true));
    EXPECT_EQ(escena.Precision(), 1.0);
}

TEST_F(Esferica, AnImageWithoutPixelsIsNone) {
    EscenaPanorama escena(new ImagenContada(nullptr), 1);
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    EXPECT_EQ(escena.Iniciar(), 0);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Esferica, WithoutAContextNothingIsBuiltOrDrawn) {
    EXPECT_EQ(m_Escena.Iniciar(), 0);
    EXPECT_EQ(m_Escena.OnIniciar(), 0);
    EXPECT_EQ(m_Escena.Render(), 0);
}

// ---- Who frees what --------------------------------------------------------------------------------------------

TEST_F(Esferica, ABorrowedImageIsTheHosts) {
    ImagenContada imagen(new Foto(2, 1));
    { const EscenaPanorama escena(EscenaPanorama(), &imagen, 0); }
    { const EscenaPanorama escena(EscenaPanorama(), &imagen, -1); }
    EXPECT_NE(imagen.GetRaster(), nullptr);
    EXPECT_EQ(ImagenContada::s_nVivas, 2);
}

TEST_F(Esferica, AnOwnedImageGoesWithItsRaster) {
    { const EscenaPanorama escena(EscenaPanorama(), new ImagenContada(new Foto(2, 1)), 3); }
    EXPECT_EQ(ImagenContada::s_nVivas, 1);
    EXPECT_EQ(Foto::s_nVivas, 1);
}

TEST_F(Esferica, ARasterIsFreedOnlyWhenItIsGivenAway) {
    Foto* const foto = new Foto(2, 1);
    {
        const EscenaPanorama escena(EscenaPanorama(), foto, ImagenContada::Panorama(), 0);
        ASSERT_NE(escena.GetImagen(), nullptr);
        EXPECT_EQ(escena.GetImagen()->GetRaster(), foto);
        EXPECT_FALSE(escena.GetImagen()->GetMaximasDouble().EstanVacias(true)) << "extents are worked out";
    }
    EXPECT_EQ(Foto::s_nVivas, 2) << "the raster survives its image";
    for (const int propia : {1, -1})
        const EscenaPanorama escena(EscenaPanorama(), propia > 0 ? foto : new Foto(2, 1), ImagenContada::Panorama(),
                                    propia);
    EXPECT_EQ(Foto::s_nVivas, 1);
}

TEST_F(Esferica, DestroyingLetsTheImageGoOnce) {
    ASSERT_EQ(m_Escena.Monta(m_Tela), 1);
    m_Escena.Destruir();
    EXPECT_EQ(m_Escena.GetImagen(), nullptr);
    EXPECT_EQ(Foto::s_nVivas, 0);
    m_Escena.Destruir();
}

TEST_F(Esferica, DestroyingDeletesListAndTexture) {
    ASSERT_EQ(m_Escena.Monta(m_Tela), 1);
    const RegistroGL registro;
    m_Escena.Destruir();
    EXPECT_EQ(registro.Cuenta("glDeleteTextures"), 1u);
    const LlamadasGL borradas = Solo(registro.Todas(), {"glDeleteLists", "glDeleteTextures"});
    ASSERT_FALSE(borradas.empty());
    EXPECT_TRUE(borradas[0].starts_with("glDeleteLists")) << "the sphere, before what is the frame's";
}

TEST_F(Esferica, TheLastOfTheCopiesFreesTheImage) {
    ASSERT_EQ(m_Escena.Monta(m_Tela), 1);
    auto copia = std::make_unique<EscenaPanorama>(m_Escena);
    EXPECT_EQ(copia->GetImagen(), m_Escena.GetImagen());
    EXPECT_EQ(copia->GetTipo(), 8);
    m_Escena.Destruir();
    EXPECT_EQ(Foto::s_nVivas, 1);
    EXPECT_EQ(copia->Render(), 1) << "with the list that they shared";
    EXPECT_NE(m_Tela.Pixel(32, 24), 0xE0F1FEu);
    copia.reset();
    EXPECT_EQ(Foto::s_nVivas, 0);
}

TEST_F(Esferica, AssignmentTakesTheImageOver) {
    EscenaPanorama otra(new ImagenContada(new Foto(2, 1)), 1);
    ASSERT_EQ(otra.CreaEn(m_Tela), 1);
    ASSERT_EQ(otra.Iniciar(), 1);
    otra = m_Escena;
    EXPECT_EQ(otra.GetImagen(), m_Escena.GetImagen());
    EXPECT_EQ(Foto::s_nVivas, 1) << "its own is gone";
    const CEscenaImagen360& misma = m_Escena;
    m_Escena = misma;
    EXPECT_NE(m_Escena.GetImagen(), nullptr);
    CGL& base = otra;
    base = EscenaPrueba();
    EXPECT_EQ(otra.GetTipo(), 8) << "another kind of scene gives its view alone";
    base = static_cast<const CGL&>(m_Escena);
    EXPECT_EQ(otra.GetImagen(), m_Escena.GetImagen());
}

// ---- Texture and list ------------------------------------------------------------------------------------------

// What OpenGL holds of the texture that is bound: rows of red, green, blue.
std::vector<GLubyte> TexturaActual(int ancho, int alto) {
    std::vector<GLubyte> rgb(std::size_t(3) * ancho * alto);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    return rgb;
}

TEST_F(Esferica, TheTextureIsTheMirroredPictureInRedGreenBlue) {
    const auto color = [](int f, int c) { return Foto::Color{BYTE(10 * f), BYTE(20 * c), BYTE(7 * f + 3 * c)}; };
    for (const auto& [ancho, alto] : {std::pair{7, 5}, {1, 1}, {2, 3}}) {
        EscenaPanorama escena(new ImagenContada(new Foto(ancho, alto, color)), 1);
        ASSERT_EQ(escena.CreaEn(m_Tela), 1);
        const RegistroGL registro;
        ASSERT_EQ(escena.OnIniciar(), 1);
        EXPECT_EQ(registro.Cuenta("glTexImage2D"), 1u);
        const std::vector<GLubyte> rgb = TexturaActual(ancho, alto);
        for (int f = 0; f < alto; ++f)
            for (int c = 0; c < ancho; ++c) {
                const GLubyte* p = &rgb[std::size_t(3) * (f * ancho + c)];
                const Foto::Color esperado = color(f, ancho - 1 - c);
                EXPECT_EQ((Foto::Color{p[0], p[1], p[2]}), esperado) << f << ", " << c;
            }
        wglMakeCurrent(nullptr, nullptr);
    }
}

// Greys of one byte, without palette.
class Gris : public RasterVacio {
  public:
    int Ancho100() const override { return 300; }
    int Alto100() const override { return 200; }
    int BytesPixel() const override { return 1; }
    bool TienePaleta() const override { return false; }
    bool GetFila(BYTE* pixeles, int fila, int, int n) const override {
        for (int c = 0; c < n; ++c)
            pixeles[c] = BYTE(40 * fila + 10 * c + 5);
        return true;
    }
};

TEST_F(Esferica, GreysGoToAllThreeChannels) {
    EscenaPanorama escena(new ImagenContada(new Gris), 1);
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    ASSERT_EQ(escena.OnIniciar(), 1);
    EXPECT_EQ(TexturaActual(3, 2),
              (std::vector<GLubyte>{25, 25, 25, 15, 15, 15, 5, 5, 5, 65, 65, 65, 55, 55, 55, 45, 45, 45}));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Esferica, APaletteGivesItsColours) {
    std::vector<BYTE> paleta(4 * 256);
    const BYTE colores[3][4] = {{1, 2, 3, 0}, {40, 50, 60, 0}, {250, 150, 100, 0}};  // blue first
    std::copy_n(&colores[0][0], 12, paleta.begin());
    auto* foto = new Vertiz::CBmp;
    ASSERT_TRUE(foto->Crear(3, 1, 8, 72.0F, false, nullptr, paleta.data(), false));
    ASSERT_TRUE(foto->TienePaleta());
    for (int c = 0; c < 3; ++c) {
        const BYTE entrada = BYTE(c);
        foto->SetPixel(0, c, &entrada);
    }
    EscenaPanorama escena(new ImagenContada(foto), 1);
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    ASSERT_EQ(escena.OnIniciar(), 1);
    EXPECT_EQ(TexturaActual(3, 1), (std::vector<GLubyte>{100, 150, 250, 60, 50, 40, 3, 2, 1}));
    wglMakeCurrent(nullptr, nullptr);
}

// A raster that claims a size and has no pixel of it.
class SinPixeles : public RasterVacio {
  public:
    SinPixeles(int ancho, int alto) : m_nAncho(ancho), m_nAlto(alto) {}
    int Ancho100() const override { return 100 * m_nAncho; }
    int Alto100() const override { return 100 * m_nAlto; }
    bool GetFila(BYTE*, int, int, int) const override { return false; }

  private:
    int m_nAncho, m_nAlto;
};

TEST_F(Esferica, PixelsThatCantBeReadAreWhite) {
    EscenaPanorama escena(new ImagenContada(new SinPixeles(3, 2)), 1);
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    ASSERT_EQ(escena.OnIniciar(), 1);
    EXPECT_EQ(TexturaActual(3, 2), std::vector<GLubyte>(18, 255));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Esferica, PixelsOfOtherDepthsAreWhite) {
    class Otra : public Gris {
        int BytesPixel() const override { return 4; }
    };
    EscenaPanorama escena(new ImagenContada(new Otra), 1);
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    ASSERT_EQ(escena.OnIniciar(), 1);
    EXPECT_EQ(TexturaActual(3, 2), std::vector<GLubyte>(18, 255));
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Esferica, ASizeOfNothingIsNoImage) {
    EscenaPanorama escena(new ImagenContada(new SinPixeles(0, 2)), 1);
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    EXPECT_EQ(escena.OnIniciar(), 0);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Esferica, TheTextureIsRepeatedUnsmoothedAndTimesTheColour) {
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciar(), 1);
    wglMakeCurrent(nullptr, nullptr);
    LlamadasGL llamadas = Solo(registro.Ejecutadas(), {"glGenTextures", "glBindTexture", "glPixelStorei",
                                                       "glTexParameteri", "glTexEnvf", "glTexImage2D", "glMatrixMode",
                                                       "glPushMatrix", "glNewList", "glEndList", "glPopMatrix"});
    ASSERT_EQ(llamadas.size(), 14u);
    llamadas.erase(llamadas.begin(), llamadas.begin() + 2);  // names that the driver chooses
    for (std::string& l : llamadas)
        if (l.starts_with("glNewList") || l.starts_with("glTexImage2D")) l = l.substr(0, l.rfind(','));
    for (std::string& l : llamadas)
        if (l.starts_with("glNewList")) l = "glNewList";
    EXPECT_LLAMADAS(
        llamadas,
        {"glPixelStorei(GL_UNPACK_ALIGNMENT, 1)", "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
         "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
         "glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE)",
         "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST)",
         "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST)",
         "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 8, 4, 0, GL_RGB, GL_UNSIGNED_BYTE", "glMatrixMode(GL_MODELVIEW)",
         "glPushMatrix()", "glNewList", "glEndList()", "glPopMatrix()"});
}

TEST_F(Esferica, TheListIsTheTexturedSphereFilledAndThenTheModeOfTheSettings) {
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    for (const auto& [modo, nombre] : {std::pair{0U, "GL_LINE"}, {1U, "GL_FILL"}, {2U, "GL_FILL"}}) {
        m_Escena.m_Data.m_nModoRelleno = modo;
        LlamadasGL lista = Lista();
        ASSERT_GT(lista.size(), 7u);
        lista[4] = lista[4].substr(0, lista[4].find(','));
        EXPECT_LLAMADAS(
            (LlamadasGL{lista.begin(), lista.begin() + 6}),
            {"glEnable(GL_DEPTH_TEST)", "glColor3f(255, 255, 255)", "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
             "glEnable(GL_TEXTURE_2D)", "glBindTexture(GL_TEXTURE_2D", "glBegin(GL_QUAD_STRIP)"});
        EXPECT_EQ(lista.back(), "glPolygonMode(GL_FRONT_AND_BACK, " + std::string(nombre) + ")");
        EXPECT_EQ(Solo(lista, {"glBegin"}).size(), 128u);
        EXPECT_EQ(Solo(lista, {"glVertex3f"}).size(), 128u * 129u * 2u);
        EXPECT_EQ(Solo(lista, {"glPolygonMode"}).size(), 2u) << "the sphere itself is always filled";
    }
}

TEST_F(Esferica, TheRangeOfPolarAnglesIsTheImages) {
    m_Escena.GetImagen()->m_dPolarInicio = 60.0;
    m_Escena.GetImagen()->m_dPolarFin = 90.0;
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciar(), 1);
    wglMakeCurrent(nullptr, nullptr);
    for (const auto& v : registro.Numeros("glVertex3f")) {
        EXPECT_LE(v[2], 1e-6) << "from 30 degrees below the horizon up to it";
        EXPECT_GE(v[2], -0.25 - 1e-6);
    }
    const auto v = registro.Numeros("glVertex3f");
    EXPECT_NEAR(v[1][2], 0.0, 1e-6);
    EXPECT_NEAR(v[v.size() - 2][2], -0.25, 1e-6);
}

TEST_F(Esferica, AnotherBuildTakesThePlaceOfTheFormer) {
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.OnIniciar(), 1);
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(registro.Cuenta("glDeleteLists"), 1u);
    EXPECT_EQ(registro.Cuenta("glDeleteTextures"), 1u);
}

TEST_F(Esferica, AnImageTooLargeForOpenGLShowsTheBackground) {
    EscenaPanorama escena(new ImagenContada(new SinPixeles(1 << 17, 1)), 1);
    escena.m_Data.m_nColorFondo = 0x302010;
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    escena.OnZoomExtension();
    const RegistroGL registro;
    ASSERT_EQ(escena.Iniciar(), 1);
    const std::vector<GLuint> listas = registro.Listas();
    ASSERT_FALSE(listas.empty());
    EXPECT_LLAMADAS(registro.Lista(listas[0]),
                    {"glEnable(GL_DEPTH_TEST)", "glColor3f(0.0627451, 0.1254902, 0.1882353)"});
    ASSERT_EQ(escena.Resize(64, 48), 1);
    escena.OnZoomExtension();
    escena.m_Data.m_nEjes = 0;
    escena.SetBkColor();
    ASSERT_EQ(escena.Render(), 1);
    for (const int x : {0, 20, 32, 63})
        EXPECT_EQ(m_Tela.Pixel(x, 24), 0x102030u);
}

TEST_F(Esferica, AnImageTooLargeForMemoryShowsTheBackground) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer ends the process instead";
#endif
    constexpr int kLado = 20'000'000;  // more bytes than a process can address
    EscenaPanorama escena(new ImagenContada(new SinPixeles(kLado, kLado)), 1);
    ASSERT_EQ(escena.CreaEn(m_Tela), 1);
    const RegistroGL registro;
    ASSERT_EQ(escena.OnIniciar(), 1);
    EXPECT_EQ(registro.Cuenta("glTexImage2D"), 0u);
    EXPECT_EQ(registro.Cuenta("glCallList") + registro.Cuenta("glBegin"), 0u);
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(Esferica, GLErrorsInTheTextureOrTheListAreFailures) {
    ASSERT_EQ(m_Escena.CreaEn(m_Tela), 1);
    for (const char* llamada : {"glBindTexture", "glPixelStorei", "glTexEnvf", "glNewList", "glGenTextures"}) {
        {
            const FallaGL falla(llamada, 1);
            EXPECT_EQ(m_Escena.OnIniciar(), 0) << llamada;
            EXPECT_TRUE(falla.Ocurrida()) << llamada;
            wglMakeCurrent(nullptr, nullptr);
        }
        EXPECT_EQ(m_Escena.OnIniciar(), 1) << "after " << llamada;
        wglMakeCurrent(nullptr, nullptr);
    }
    const FallaGL falla("glTexParameteri", 4);
    EXPECT_EQ(m_Escena.Iniciar(), 0);
    EXPECT_TRUE(falla.Ocurrida());
    wglMakeCurrent(nullptr, nullptr);
}

}  // namespace
