// The glyph lists of a scene: when they are made, of what, and how texts show with them.

#include "EscenaVista.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Fuentes.h"
#include "support/Imagen.h"
#include "support/RegistroGL.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace {

class EscenaTextos : public EscenaVista {
  public:
    using EscenaVista::operator=;
    using CGL::m_bFuentes;
    using CGL::m_nListaFuentesSeleccion;
};

// The largest box among the glyphs of a font of Arial, in parts of the em square; 0 when no font can be had.
double LetraMasAlta(CGL& escena, HDC hdc) {
    const Prestado prestado(escena);
    const GLuint lista = glGenLists(1024);
    std::vector<GLYPHMETRICSFLOAT> medidas(1024);
    const BOOL bien = wglUseFontOutlinesW(hdc, 0, 1024, lista, 0.1F, 0.0F, WGL_FONT_POLYGONS, medidas.data());
    glDeleteLists(lista, 1024);
    if (!bien) return 0.0;
    return std::ranges::max(medidas, {}, &GLYPHMETRICSFLOAT::gmfBlackBoxY).gmfBlackBoxY;
}

class ConTextos : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(m_Escena.Monta(m_Tela, kAncho, kAlto));
        static const double alto = LetraMasAlta(m_Escena, hdc());
        m_dLetraMasAlta = alto;
        if (m_dLetraMasAlta == 0.0) GTEST_SKIP() << UltimoFalloGL() << " (package fonts-liberation)";
        m_Escena.m_Data.m_bTextos3D = 0;  // bitmaps are quick
        m_Escena.m_Data.m_nCalidadTextos = 10;
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }
    HDC hdc() { return m_Tela.DC()->GetSafeHdc(); }

    // A white text in the middle of a black picture without the model, 20 terrain units high.
    Imagen Dibuja(const wchar_t* texto) {
        m_Escena.m_bFuentes = 1;
        m_Escena.m_Data.m_bMarcasTerreno = 1;
        m_Escena.m_Planchas.clear();
        m_Escena.SetColorFondo(0);
        m_Escena.ClearMarcas();
        EXPECT_EQ(m_Escena.Iniciar(), 1);
        m_Escena.NuevaMarca({L"m", EscenaPrueba::Punto(20, 40, 25), texto, 20.0});
        return Foto();
    }
    Imagen Foto() {
        EXPECT_EQ(m_Escena.SetBkColor(), 1);
        EXPECT_EQ(m_Escena.Render(), 1);
        std::vector<unsigned char> pixeles(std::size_t{kAncho} * kAlto * 3);
        EXPECT_EQ(m_Escena.CapturaImagen(CSize(kAncho, kAlto), reinterpret_cast<char*>(pixeles.data())), 0);
        Imagen imagen(kAncho, kAlto);
        for (int y = 0; y < kAlto; ++y)
            for (int x = 0; x < kAncho; ++x) {
                const auto* p = &pixeles[std::size_t(3) * (std::size_t(y) * kAncho + std::size_t(x))];
                imagen.Pinta(x, kAlto - 1 - y, {p[2], p[1], p[0]});
            }
        return imagen;
    }
    int Columnas(const Imagen& imagen, int fila) const {
        int n = 0;
        for (int x = 0; x < imagen.ancho; ++x)
            n += imagen.Pixel(x, fila)[0] > 127;
        return n;
    }

    static constexpr int kAncho = 200, kAlto = 160;
    Tela m_Tela{kAncho, kAlto};
    EscenaTextos m_Escena;
    double m_dLetraMasAlta = 0.0;
};

std::string Numero(GLuint n) {
    return std::to_string(n);
}

}  // namespace

TEST_F(ConTextos, AreNotMadeUnlessAskedFor) {
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.CreaFuentes(), 1);
    EXPECT_TRUE(registro.Todas().empty());
    EXPECT_EQ(m_Escena.m_nListaFuentes, 0U);
    EXPECT_EQ(m_Escena.m_nListaFuentesSeleccion, 0U);
}

TEST_F(ConTextos, AreTwoBlocksOfOutlinesOneAfterTheOther) {
    m_Escena.m_Data.m_bTextos3D = 1;
    m_Escena.m_bFuentes = 2;
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.CreaFuentes(), 1);
    const GLuint una = m_Escena.m_nListaFuentes, otra = m_Escena.m_nListaFuentesSeleccion;
    ASSERT_NE(una, 0U);
    ASSERT_NE(otra, 0U);
    LlamadasGL pasos = Solo(registro.Ejecutadas(), {"glGenLists", "glDeleteLists", "glNewList"});
    ASSERT_EQ(pasos.size(), 2 * 1025U);
    EXPECT_EQ(pasos[0], "glGenLists(1024)");
    EXPECT_EQ(pasos[1], "glNewList(" + Numero(una) + ", GL_COMPILE)");
    EXPECT_EQ(pasos[1024], "glNewList(" + Numero(una + 1023) + ", GL_COMPILE)");
    EXPECT_EQ(pasos[1025], "glGenLists(1024)");
    EXPECT_EQ(pasos[1026], "glNewList(" + Numero(otra) + ", GL_COMPILE)");
    EXPECT_EQ(registro.Lista(una + 'A'), registro.Lista(otra + 'A')) << "the same letters";
    EXPECT_EQ(registro.Cuenta("glBitmap"), 0U);
    for (const auto& v : registro.Numeros("glVertex3f"))
        ASSERT_TRUE(v[2] == 0.0 || std::abs(v[2] + 0.1) < 1e-6) << "a tenth of an em deep";
    EXPECT_FLOAT_EQ(m_Escena.m_fEscalaFuente, static_cast<float>(m_dLetraMasAlta) / 1.2F);
}

TEST_F(ConTextos, MadeAgainTheOldBlocksGoFirst) {
    m_Escena.m_bFuentes = 1;
    ASSERT_EQ(m_Escena.CreaFuentes(), 1);
    const GLuint una = m_Escena.m_nListaFuentes, otra = m_Escena.m_nListaFuentesSeleccion;
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.CreaFuentes(), 1);
    EXPECT_LLAMADAS(Solo(registro.Ejecutadas(), {"glGenLists", "glDeleteLists"}),
                    {"glDeleteLists(" + Numero(una) + ", 1024)", "glGenLists(1024)",
                     "glDeleteLists(" + Numero(otra) + ", 1024)", "glGenLists(1024)"});
}

TEST_F(ConTextos, QualityIsTheDeviationInHundredths) {
    m_Escena.m_Data.m_bTextos3D = 1;
    m_Escena.m_bFuentes = 1;
    std::vector<std::size_t> vertices;
    for (int calidad : {0, 1, 10}) {
        m_Escena.m_Data.m_nCalidadTextos = calidad;
        const RegistroGL registro;
        ASSERT_EQ(m_Escena.CreaFuentes(), 1);
        vertices.push_back(registro.Cuenta("glVertex3f"));
    }
    EXPECT_GT(vertices[0], 2 * vertices[1]);
    EXPECT_GT(vertices[1], vertices[2]);
}

TEST_F(ConTextos, WithoutThreeDimensionsAreBitmapsOfTheHeightOfTheSettings) {
    m_Escena.m_bFuentes = 1;
    m_Escena.m_fEscalaFuente = 7.0F;
    for (int alto : {14, 40}) {
        m_Escena.m_Data.m_nAlturaTextos = alto;
        const RegistroGL registro;
        ASSERT_EQ(m_Escena.CreaFuentes(), 1);
        EXPECT_EQ(registro.Cuenta("glBitmap"), 2048U);
        EXPECT_EQ(registro.Cuenta("glVertex3f"), 0U);
        const auto letras = registro.Numeros("glBitmap");
        EXPECT_NEAR(letras['H'][1], alto * 0.69, 1.0) << "rows of a capital";
        EXPECT_EQ(m_Escena.m_fEscalaFuente, 1.0F);
    }
}

TEST_F(ConTextos, TheDeviceContextGetsItsFontBack) {
    m_Escena.m_bFuentes = 1;
    const HFONT mia = CreateFontW(-33, 0, 0, 0, 700, 0, 0, 0, 1, 0, 0, 0, 0, L"Arial");
    const HFONT propia = SelectObject(hdc(), mia);
    ASSERT_EQ(m_Escena.CreaFuentes(), 1);
    EXPECT_EQ(SelectObject(hdc(), mia), mia);
    const FallaGL falla("glNewList", 5);
    ASSERT_EQ(m_Escena.CreaFuentes(), 1);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_EQ(SelectObject(hdc(), propia), mia) << "after a failure too";
    DeleteObject(mia);
}

TEST_F(ConTextos, AFailureEndsThemWithASuccess) {
    m_Escena.m_bFuentes = 1;
    ASSERT_EQ(m_Escena.CreaFuentes(), 1);
    struct {
        const char* llamada;
        int cual;
        bool primera, segunda;  // blocks that are begun
    } const fallos[] = {{"glDeleteLists", 1, false, false},
                        {"glNewList", 10, true, false},
                        {"glDeleteLists", 2, true, false},
                        {"glNewList", 1034, true, true}};
    for (const auto& f : fallos) {
        const FallaGL falla(f.llamada, f.cual);
        const RegistroGL registro;
        EXPECT_EQ(m_Escena.CreaFuentes(), 1) << f.llamada;
        EXPECT_TRUE(falla.Ocurrida());
        EXPECT_EQ(registro.Cuenta("glGenLists"), std::size_t(f.primera + f.segunda)) << f.llamada << " " << f.cual;
        EXPECT_EQ(m_Escena.m_nListaFuentes != 0, f.primera);
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
        m_Escena.CreaFuentes();
    }
}

TEST_F(ConTextos, AbsurdSettingsAreNoFault) {
    m_Escena.m_Data.m_bTextos3D = 1;
    m_Escena.m_bFuentes = 1;
    for (int calidad : {-5, 1000000}) {
        m_Escena.m_Data.m_nCalidadTextos = calidad;
        EXPECT_EQ(m_Escena.CreaFuentes(), 1);
    }
    m_Escena.m_Data.m_bTextos3D = 0;
    for (int alto : {0, -20, 5000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        m_Escena.m_Data.m_nAlturaTextos = alto;
        EXPECT_EQ(m_Escena.CreaFuentes(), 1);
    }
}

TEST_F(ConTextos, AContextThatTheHostHadTakenStaysItsOwn) {
    m_Escena.m_bFuentes = 1;
    const Prestado prestado(m_Escena);
    EXPECT_EQ(m_Escena.CreaFuentes(), 1);
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
}

TEST(CGLFuentesSinContexto, AreLeftOut) {
    EscenaTextos escena;
    escena.m_bFuentes = 1;
    EXPECT_EQ(escena.CreaFuentes(), 1);
    EXPECT_EQ(escena.m_nListaFuentes, 0U);
}

TEST_F(ConTextos, IniciarMakesThemOnceAndDestruirDeletesThem) {
    m_Escena.m_bFuentes = 1;
    RegistroGL registro;
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_EQ(Solo(registro.Ejecutadas(), {"glGenLists"}).size(),
              std::size_t(std::ranges::count(registro.Ejecutadas(), "glGenLists(1)")) + 2);
    const GLuint una = m_Escena.m_nListaFuentes, otra = m_Escena.m_nListaFuentesSeleccion;
    ASSERT_NE(una, 0U);
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    EXPECT_EQ(m_Escena.m_nListaFuentes, una);
    registro.Olvida();
    m_Escena.Destruir();
    const LlamadasGL borradas = Solo(registro.Ejecutadas(), {"glDeleteLists"});
    for (GLuint bloque : {una, otra})
        EXPECT_EQ(std::ranges::count(borradas, "glDeleteLists(" + Numero(bloque) + ", 1024)"), 1);
    EXPECT_EQ(m_Escena.m_nListaFuentes, 0U);
    EXPECT_EQ(m_Escena.m_nListaFuentesSeleccion, 0U);
}

TEST_F(ConTextos, AChildsOwnGoWithIt) {
    m_Escena.m_bFuentes = 1;
    auto* hijo = new EscenaTextos;
    hijo->SetNombre(L"hijo");
    m_Escena.VinculoNuevo(hijo);
    ASSERT_EQ(m_Escena.Iniciar(), 1);
    const GLuint una = hijo->m_nListaFuentes, otra = hijo->m_nListaFuentesSeleccion;
    ASSERT_NE(una, 0U) << "it inherits the setting";
    ASSERT_NE(una, m_Escena.m_nListaFuentes);
    const RegistroGL registro;
    delete m_Escena.BorraVinculo(L"hijo");
    const LlamadasGL borradas = Solo(registro.Ejecutadas(), {"glDeleteLists"});
    for (GLuint bloque : {una, otra})
        EXPECT_EQ(std::ranges::count(borradas, "glDeleteLists(" + Numero(bloque) + ", 1024)"), 1);
}

TEST_F(ConTextos, AMarkCallsTheGlyphsOfItsText) {
    m_Escena.m_Data.m_bTextos3D = 1;
    Dibuja(L"A");
    const RegistroGL registro;
    m_Escena.NuevaMarca({L"m", EscenaPrueba::Punto(20, 40, 25), L"Año", 6.0});
    const LlamadasGL lista = registro.Lista(m_Escena.m_nListaMarcas + 1);
    EXPECT_LLAMADAS(Solo(lista, {"glListBase", "glCallLists"}), {"glListBase(" + Numero(m_Escena.m_nListaFuentes) + ")",
                                                                 "glCallLists(GL_UNSIGNED_SHORT, [65, 241, 111])"});
    const auto escalas = registro.Numeros("glScalef");
    EXPECT_NEAR(escalas.back()[0], 6.0 * m_Escena.m_dFactor / m_Escena.m_fEscalaFuente, 1e-6);
}

TEST_F(ConTextos, AnOutlineTextFacesTheViewerFromAnywhere) {
    m_Escena.m_Data.m_bTextos3D = 1;
    Dibuja(L"LI");
    const std::pair<EscenaPrueba::Punto, EscenaPrueba::Punto> camaras[] = {{{0, 1, 0}, {0, 0, -1}},
                                                                           {{0.5, 0.6, 0.9}, {0, 1, 0}},
                                                                           {{-0.9, 0.3, 0.2}, {0, 1, 0}},
                                                                           {{0, 0.9, -0.4}, {0, 1, 0}}};
    int cual = 0;
    for (const auto& [ojo, arriba] : camaras) {
        m_Escena.GetCamara().PositionCamera(ojo, EscenaPrueba::Punto(0, 0, 0), arriba);
        const Imagen imagen = Foto();
        EXPECT_TRUE(EscribePng(
            imagen, CarpetasImagen::DelProyecto().salida / ("frame/outline-text-" + std::to_string(++cual) + ".png")));
        int primera = -1, ultima = -1;
        for (int y = 0; y < imagen.alto; ++y)
            if (Columnas(imagen, y) > 0) {
                if (primera < 0) primera = y;
                ultima = y;
            }
        ASSERT_GE(primera, 0) << "nothing shows";
        const int alto = ultima - primera + 1, cabeza = primera + alto / 4;
        EXPECT_GT(alto, 10);
        int pie = 0;  // the mark's point may reach a little below
        for (int y = ultima - 5; y <= ultima; ++y)
            pie = std::max(pie, Columnas(imagen, y));
        EXPECT_GT(pie, 2 * Columnas(imagen, cabeza)) << "the L has its foot below";
        // The stems of both letters, and no slant: the L's stands over the left end of its foot.
        int tallos = 0;
        for (int x = 1; x < imagen.ancho; ++x)
            tallos += imagen.Pixel(x, cabeza)[0] > 127 && imagen.Pixel(x - 1, cabeza)[0] <= 127;
        EXPECT_EQ(tallos, 2) << "camera " << cual;
        const auto izquierda = [&](int fila) {
            int x = 0;
            while (x < imagen.ancho && imagen.Pixel(x, fila)[0] <= 127)
                ++x;
            return x;
        };
        EXPECT_NEAR(izquierda(cabeza), izquierda(primera + alto / 2), 1) << "camera " << cual;
    }
}

TEST_F(ConTextos, TheTallestGlyphIsSixFifthsOfTheMarksHeight) {
    m_Escena.m_Data.m_bTextos3D = 1;
    Dibuja(L"H");
    const RegistroGL registro;
    m_Escena.NuevaMarca({L"m", EscenaPrueba::Punto(20, 40, 25), L"H", 10.0});
    const double escala = registro.Numeros("glScalef").back()[0];
    EXPECT_NEAR(escala * m_dLetraMasAlta, 1.2 * 10.0 * m_Escena.m_dFactor, 1e-5);
}

TEST_F(ConTextos, ABitmapTextHasItsHeightInPixels) {
    for (int cuerpo : {20, 40}) {
        m_Escena.m_Data.m_nAlturaTextos = cuerpo;
        m_Escena.m_bFuentes = 1;
        m_Escena.CreaFuentes();
        const Imagen imagen = Dibuja(L"LI");
        EXPECT_TRUE(EscribePng(
            imagen, CarpetasImagen::DelProyecto().salida / ("frame/bitmap-text-" + std::to_string(cuerpo) + ".png")));
        int filas = 0, ultima = -1;
        for (int y = 0; y < imagen.alto; ++y)
            if (Columnas(imagen, y) > 0) {
                ++filas;
                ultima = y;
            }
        EXPECT_NEAR(filas, cuerpo * 0.69, 3) << "the mark's point reaches a little below";
        ASSERT_GT(filas, 8);
        EXPECT_GT(Columnas(imagen, ultima - 4), Columnas(imagen, ultima - filas + 3)) << "the L has its foot below";
    }
}
